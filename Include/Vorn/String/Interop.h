// Interop: strings in ordinary C++ code. Additions for comfort, which the library itself does not use:
//
//     using namespace Vorn::Literals;
//     const String name = "door"_vs;                  // no copy, no allocation but the record
//     std::unordered_map<String, Door> doors;         // equal strings hash equally, whatever encodings they are held
//     in for (unsigned char byte : bytes(name)) ...      // UTF-8 if (name == std::string_view("door")) std::cout <<
//     name;
//
// Sorted containers take `operator<` of String, which is an order only for texts that are all held in UTF-8.
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

/// The text in UTF-8; none for a null string. Builds the UTF-8 buffer if the record lacks it.
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
VORN_API std::size_t hash(const String& s);

/// Writes the text in UTF-8; nothing for a null string. Builds no buffer.
VORN_API std::ostream& operator<<(std::ostream& stream, const String& s);

/// True if the string is not null and has exactly this text in UTF-8. For these two types only: a literal becomes a
/// String, and a std::string must not, since a String that is made from one never frees its copy.
template <class Text>
std::enable_if_t<std::is_same<Text, std::string>::value || std::is_same<Text, std::string_view>::value, bool>
operator==(const String& s, const Text& text) {
    return s.getData() && view(s) == std::string_view(text);
}
template <class Text>
std::enable_if_t<std::is_same<Text, std::string>::value || std::is_same<Text, std::string_view>::value, bool>
operator!=(const String& s, const Text& text) {
    return !(s == text);
}

inline namespace Literals {

/// A string over a literal, which lives for ever.
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
    size_t operator()(const Vorn::String& s) const { return Vorn::hash(s); }
};

} // namespace std
