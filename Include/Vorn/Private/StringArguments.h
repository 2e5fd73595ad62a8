// StringArguments: which arguments of strings are texts that something else owns. Support of String.h and UTF8String.h;
// not for direct use.
#pragma once

#include "Vorn/Types.h"

#include <string>
#include <string_view>
#include <type_traits>

namespace VornPrivate {

template <class Unit>
inline constexpr bool IS_STRING_UNIT =
    std::is_same_v<Unit, char> || std::is_same_v<Unit, unsigned char> || std::is_same_v<Unit, Vorn::UTF16Char>;

/// Defined for the code units of strings, which are not const.
template <class Unit>
using IfStringUnit = std::enable_if_t<IS_STRING_UNIT<Unit>, int>;

/// Defined for pointers to code units.
template <class Pointer>
using IfStringPointer =
    std::enable_if_t<std::is_pointer_v<Pointer> && IS_STRING_UNIT<std::remove_cv_t<std::remove_pointer_t<Pointer>>>,
                     int>;

/// Defined for the texts of the standard library.
template <class Text>
using IfStandardText =
    std::enable_if_t<std::is_same_v<Text, std::string> || std::is_same_v<Text, std::string_view>, int>;

template <class>
inline constexpr bool NEVER = false;

} // namespace VornPrivate
