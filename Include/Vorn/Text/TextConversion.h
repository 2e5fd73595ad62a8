/// @file
/// TextConversion: exact conversions between UTF-8, UTF-16 and UTF-32.
///
///     const std::string path = toUTF8(name);               // of any text, in either encoding
///     const std::u16string label = toUTF16(name);
///     const ConvertedText part = toUTF8(name, line, 80);   // as many whole characters as fit
///     const String wide = inUTF16(name);                   // the same string if it is in UTF-16 already
///
/// Every character is converted exactly, supplementary characters and U+0000 included. U+0000 is a zero unit in
/// standard strings and in memory, and 0xC0 0x80 in the UTF-8 of a String. Malformed units of a view become U+FFFD, one
/// for each longest part of a character. No function builds a buffer in the record of a String.
///
/// Cost: a text is measured and then written, in two passes with one allocation.
///
/// Threads: the functions share no state.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/String/String.h"
#include "Vorn/Text/TextView.h"
#include "Vorn/Types.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

namespace Vorn {

/// The text in another encoding, U+0000 as a zero unit. The standard strings hold it without an end of their own.
/// @{
[[nodiscard]] VORN_API std::string toUTF8(TextView text);
[[nodiscard]] VORN_API std::u16string toUTF16(TextView text);
[[nodiscard]] VORN_API std::u32string toUTF32(TextView text);
/// @}

/// The number of units that the conversions of a text write.
/// @{
[[nodiscard]] VORN_API std::uint64_t lengthInUTF8(TextView text) noexcept;
[[nodiscard]] VORN_API std::uint64_t lengthInUTF16(TextView text) noexcept;
/// @}

/// What a conversion into the caller's memory has done.
struct ConvertedText {
    std::size_t written; ///< units written, without a terminator
    unsigned int read;   ///< units of the text that they stand for; continue with `text.slice(read)`
};

/// Writes as many whole characters of a text as fit into `capacity` units, U+0000 as a zero unit. Writes no terminator.
/// The whole text is written if `read` is its length. `dest` must not overlap the text.
/// @{
[[nodiscard]] VORN_API ConvertedText toUTF8(TextView text, char* dest, std::size_t capacity) noexcept;
[[nodiscard]] VORN_API ConvertedText toUTF16(TextView text, char16_t* dest, std::size_t capacity) noexcept;
[[nodiscard]] VORN_API ConvertedText toUTF32(TextView text, char32_t* dest, std::size_t capacity) noexcept;
/// @}

/// An owned string of the text in UTF-8 or UTF-16, with no buffer of another encoding.
///
/// A String whose text is in that encoding is returned as it is: it shares its record. Everything else is converted or
/// copied as `makeString` does. Throws `Exception<7>` for malformed text as `makeString` does, and `Exception<4>`:
/// "length : text too long!" if the string would have more than 0xFFFFFFFE units.
/// @{
[[nodiscard]] VORN_API String inUTF8(TextView text);
[[nodiscard]] VORN_API String inUTF16(TextView text);
template <class S, std::enable_if_t<std::is_base_of<String, S>::value, int> = 0>
[[nodiscard]] String inUTF8(const S& text) {
    const TextView view(text);
    return view.isUTF8() ? String(text) : inUTF8(view);
}
template <class S, std::enable_if_t<std::is_base_of<String, S>::value, int> = 0>
[[nodiscard]] String inUTF16(const S& text) {
    const TextView view(text);
    return view.isUTF8() ? inUTF16(view) : String(text);
}
/// @}

} // namespace Vorn
