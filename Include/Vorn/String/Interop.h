/// @file
/// Interop: strings in ordinary C++ code: literals, hashing, ranges, comparison and output. The library itself does not
/// use these functions.
///
///     using namespace Vorn;                        // the literals too
///     const String name = "door"_vs;               // no copy; allocates only the record
///     std::unordered_map<String, Door> doors;      // equal strings hash equally, in any encoding
///     for (unsigned char byte : bytes(name)) ...   // UTF-8
///     if (name == std::string_view("door")) std::cout << name;
///
/// Sorted containers use `operator<` of String. It is an order only for texts that are all held in UTF-8 and of which
/// none, or all, contain U+0000.
///
/// Cost: as each function states. Threads: reading a string can build a buffer in its record; see String.h.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/String/String.h"
#include "Vorn/Types.h"

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <type_traits>

namespace VornPrivate {

/// The result type of a comparison; defined for exactly these types, so that no argument is converted.
template <class S, class Text>
using IfStringAndText = std::enable_if_t<
    std::conjunction<std::disjunction<std::is_same<Text, std::string>, std::is_same<Text, std::string_view>>,
                     std::is_base_of<Vorn::String, S>>::value,
    bool>;

} // namespace VornPrivate

namespace Vorn {

/// A range over the bytes of a text in UTF-8, without a terminator.
class ByteRange {
public:
    constexpr ByteRange(const unsigned char* first, unsigned int count) noexcept : m_first(first), m_count(count) {}

    constexpr const unsigned char* begin() const noexcept { return m_first; }
    constexpr const unsigned char* end() const noexcept { return m_first + m_count; }
    constexpr unsigned int size() const noexcept { return m_count; }
    constexpr bool empty() const noexcept { return m_count == 0; }

private:
    const unsigned char* m_first;
    unsigned int m_count;
};

/// The bytes of the text in UTF-8; an empty range for a null string. Builds the UTF-8 buffer if the record has none.
///
/// Throws as `stringDataConvertToUTF8` does. Texts that the conversion corrupts are corrupt here, too.
/// @warning The range is invalidated by the destruction of the string and by any call that can move its text; see
///     `String::getCString`.
/// @{
inline ByteRange bytes(const String& s) {
    if (!s.getData()) return {nullptr, 0};
    const unsigned char* const buffer = s.getData()->getBuffer<unsigned char>();
    return {buffer, s.getData()->getBufferInfo<unsigned char>().m_length};
}
ByteRange bytes(String&& temporary) = delete; // the range would outlive the text: give the string a name
/// @}

/// The result of `bytes` as a view of chars. Throws as `bytes` does and is invalidated as its result is.
/// @{
inline std::string_view view(const String& s) {
    const ByteRange range = bytes(s);
    return {reinterpret_cast<const char*>(range.begin()), range.size()};
}
std::string_view view(String&& temporary) = delete; // the view would outlive the text: give the string a name
/// @}

/// A hash of the text. Equal strings have the same hash in every encoding. Builds no buffer.
VORN_API std::size_t hashOf(const String& s);

/// Returns true if `text` is the text of the string in UTF-8; false for a null string. U+0000 is 0xC0 0x80.
///
/// Builds no buffer in the record. A text that is held only in UTF-16 is converted into a temporary std::string.
VORN_API bool isText(const String& s, std::string_view text);

/// Writes the text in UTF-8 to the stream, padded with the stream's fill character to its width in code points, and
/// sets the width to 0. A null string is an empty text. U+0000 is written as 0xC0 0x80. Builds no buffer.
VORN_API std::ostream& operator<<(std::ostream& stream, const String& s);

/// Compares a String or UTF8String with a std::string or std::string_view as `isText` does. No argument is converted.
/// @warning A literal is converted to a String. There is no such `operator<`: `s < text` converts a std::string to a
///     String, which never frees its copy.
/// @{
template <class S, class Text>
VornPrivate::IfStringAndText<S, Text> operator==(const S& s, const Text& text) {
    return isText(s, text);
}
template <class S, class Text>
VornPrivate::IfStringAndText<S, Text> operator==(const Text& text, const S& s) {
    return isText(s, text);
}
template <class S, class Text>
VornPrivate::IfStringAndText<S, Text> operator!=(const S& s, const Text& text) {
    return !isText(s, text);
}
template <class S, class Text>
VornPrivate::IfStringAndText<S, Text> operator!=(const Text& text, const S& s) {
    return !isText(s, text);
}
/// @}

inline namespace Literals {

/// A string that refers to a literal. Allocates the record only.
/// Throws `Exception<7>` if the literal is not valid in its encoding or contains a zero byte. Throws `Exception<4>`:
/// "length : text too long!" for a literal of more than 0xFFFFFFFE units.
/// @{
inline String operator""_vs(const char* literal, std::size_t length) {
    if (length > VornPrivate::MAX_TEXT_LENGTH) VORN_THROW(E::PARAMETER, "length : text too long!");
    return String(literal, static_cast<unsigned int>(length), STRING_DATA_STATIC, true);
}
inline String operator""_vs(const UTF16Char* literal, std::size_t length) {
    if (length > VornPrivate::MAX_TEXT_LENGTH) VORN_THROW(E::PARAMETER, "length : text too long!");
    return String(literal, static_cast<unsigned int>(length), STRING_DATA_STATIC, true);
}
/// @}

} // namespace Literals

} // namespace Vorn

namespace std {

/// The hash of strings for the containers of the standard library.
template <>
struct hash<Vorn::String> {
    size_t operator()(const Vorn::String& s) const { return Vorn::hashOf(s); }
};

} // namespace std
