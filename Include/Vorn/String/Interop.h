// Interop: strings in ordinary C++ code. Additions for comfort, which the library itself does not use:
//
//     using namespace Vorn::Literals;
//     const String name = "door"_vs;               // no copy, no allocation but the record
//     std::unordered_map<String, Door> doors;      // equal strings hash equally, in any encoding
//     for (unsigned char byte : bytes(name)) ...   // UTF-8
//     if (name == std::string_view("door")) std::cout << name;
//
// Sorted containers take `operator<` of String, which is an order only for texts that are all held in UTF-8 and of
// which none, or all, hold U+0000.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/String/String.h"
#include "Vorn/Types.h"

#include <cstddef>
#include <functional> // std::hash
#include <iosfwd>
#include <string>
#include <string_view>
#include <type_traits>

namespace VornPrivate {

/// The result of a comparison, for these types exactly: no side is converted.
template <class S, class Text>
using IfStringAndText = std::enable_if_t<
    std::conjunction<std::disjunction<std::is_same<Text, std::string>, std::is_same<Text, std::string_view>>,
                     std::is_base_of<Vorn::String, S>>::value,
    bool>;

} // namespace VornPrivate

namespace Vorn {

/// The bytes of a text in UTF-8, without a terminator.
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

/// The text in UTF-8; none for a null string. Builds the UTF-8 buffer if the record lacks it, with what
/// `stringDataConvertToUTF8` garbles and raises.
/// @warning Dies with the string, and at the next call that can move its text; see `String::getCString`.
inline ByteRange bytes(const String& s) {
    if (!s.getData()) return {nullptr, 0};
    const unsigned char* const buffer = s.getData()->getBuffer<unsigned char>();
    return {buffer, s.getData()->getBufferInfo<unsigned char>().m_length};
}

/// The same as a view of chars.
inline std::string_view view(const String& s) {
    const ByteRange range = bytes(s);
    return {reinterpret_cast<const char*>(range.begin()), range.size()};
}

/// A number that equal strings share, whatever encodings they are held in. Builds no buffer.
VORN_API std::size_t hashOf(const String& s);

/// True if the string is not null and `text` is its text in UTF-8, U+0000 being 0xC0 0x80. Builds no buffer; text that
/// is held in UTF-16 only is written into a std::string for the comparison.
VORN_API bool isText(const String& s, std::string_view text);

/// Writes the text in UTF-8, U+0000 as 0xC0 0x80; nothing for a null string. Builds no buffer.
VORN_API std::ostream& operator<<(std::ostream& stream, const String& s);

/// `isText`, for a String or UTF8String beside a std::string or std::string_view. A std::string is not made a String
/// for it, which would never free its copy; a literal is.
/// @warning There is no such `operator<`: in `s < text`, a std::string does become a String.
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

inline namespace Literals {

/// A string over a literal, which lives for ever. Raises `Exception<7>` for one that is not valid, also for a zero byte
/// inside it.
inline String operator""_vs(const char* literal, std::size_t length) {
    return String(literal, static_cast<unsigned int>(length), STRING_DATA_STATIC, true);
}
inline String operator""_vs(const UTF16Char* literal, std::size_t length) {
    return String(literal, static_cast<unsigned int>(length), STRING_DATA_STATIC, true);
}

} // namespace Literals

} // namespace Vorn

namespace std {

/// Hashes strings for the containers of the standard library.
template <>
struct hash<Vorn::String> {
    size_t operator()(const Vorn::String& s) const { return Vorn::hashOf(s); }
};

} // namespace std
