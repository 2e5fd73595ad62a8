/// @file
/// Types: the code units and code points that text consists of.
#pragma once

#include <cwchar> // WCHAR_MAX

namespace Vorn {

/// One UTF-16 code unit of 16 bits: `wchar_t` where that has 16 bits, `char16_t` elsewhere.
#if WCHAR_MAX <= 0xFFFF
using UTF16Char = wchar_t;
#else
using UTF16Char = char16_t;
#endif

/// A literal of UTF16Char: `VORN_UTF16("text")`, `VORN_UTF16('c')` or `VORN_UTF16("text"_vs)`. Use it where a unit, an
/// array or a pointer must be of UTF16Char; functions that take a TextView accept `u"text"` on every platform.
///
///     const Vorn::UTF16Char title[] = VORN_UTF16("Menü");
#if WCHAR_MAX <= 0xFFFF
#define VORN_UTF16(literal) L##literal
#else
#define VORN_UTF16(literal) u##literal
#endif

/// A code point, a sentinel (see Vorn/String/UTF32.h) or a packed word of 32 bits.
using UTF32Char = unsigned int;

static_assert(sizeof(UTF16Char) == 2, "a UTF-16 code unit has 16 bits");
static_assert(sizeof(UTF32Char) == 4, "a code point has 32 bits");

// The library's functions take the units of its own build, which defines VORN_SHORT_WCHAR for its users if need be.
#if defined(_WIN32) || defined(VORN_SHORT_WCHAR)
static_assert(sizeof(wchar_t) == 2, "the library was built with a wchar_t of 16 bits: compile with -fshort-wchar");
#else
static_assert(sizeof(wchar_t) == 4, "the library was built with a wchar_t of 32 bits: compile without -fshort-wchar");
#endif

} // namespace Vorn
