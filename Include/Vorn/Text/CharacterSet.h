/// @file
/// CharacterSet: the characters that `trim` removes and at which `split` divides a text.
///
///     const CharacterSet quotes = anyOf("'\"");
///     const CharacterSet dash = U'\u2013';   // a single character
///     bool isBlank = CharacterSet(WHITE_SPACE).contains(0x3000);
///
/// White space is what Unicode's property White_Space names: U+0009 to U+000D, U+0020, U+0085, U+00A0, U+1680, U+2000
/// to U+200A, U+2028, U+2029, U+202F, U+205F and U+3000. U+200B and U+FEFF are no white space.
///
/// Cost: a set of up to three characters beyond ASCII, and any number in ASCII, takes no memory of its own. Whether a
/// set contains a character beyond ASCII takes time in proportion to the number of those in it.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/Text/TextView.h"
#include "Vorn/Types.h"

#include <string>
#include <type_traits>

namespace VornPrivate {

template <class Char>
inline constexpr bool IS_CHARACTER = std::is_same_v<Char, char> || std::is_same_v<Char, char16_t> ||
                                     std::is_same_v<Char, char32_t> || std::is_same_v<Char, Vorn::UTF32Char>;

} // namespace VornPrivate

namespace Vorn {

/// Returns true for a character of white space.
[[nodiscard]] constexpr bool isWhiteSpace(UTF32Char c) noexcept {
    if (c < 0x80) return c - 9 < 5 || c == 0x20;
    return c == 0x85 || c == 0xA0 || c == 0x1680 || c - 0x2000 < 11 || c == 0x2028 || c == 0x2029 || c == 0x202F ||
           c == 0x205F || c == 0x3000;
}

/// Stands for the set of all white space.
struct WhiteSpace {};
inline constexpr WhiteSpace WHITE_SPACE{};

/// A set of characters.
class CharacterSet {
public:
    /// The empty set.
    CharacterSet() noexcept : m_ascii{0, 0}, m_hasWhiteSpace(false) {}

    /// The set of one character: a `char` of ASCII, a `char16_t` that is no surrogate, a `char32_t` or a UTF32Char.
    ///
    /// Throws `Exception<4>`: "Invalid ASCII character!" for a `char` above 127. Throws `Exception<7>`: "Invalid
    /// Unicode character!" for a code that no text can have: a surrogate, a noncharacter, or one above U+10FFFF.
    template <class Char, std::enable_if_t<VornPrivate::IS_CHARACTER<Char>, int> = 0>
    CharacterSet(Char c) : CharacterSet() { // NOLINT(google-explicit-constructor)
        if constexpr (std::is_same_v<Char, char>) {
            if (static_cast<unsigned char>(c) > 127) VORN_THROW(E::PARAMETER, "Invalid ASCII character!");
            add(static_cast<unsigned char>(c));
        } else {
            addChecked(static_cast<UTF32Char>(c));
        }
    }

    CharacterSet(WhiteSpace) noexcept; // NOLINT(google-explicit-constructor)

    /// Returns true if the set contains the character.
    [[nodiscard]] bool contains(UTF32Char c) const noexcept {
        if (c < 0x80) return (m_ascii[c >> 6] >> (c & 63) & 1) != 0;
        return m_hasWhiteSpace ? isWhiteSpace(c) : m_others.find(static_cast<char32_t>(c)) != std::u32string::npos;
    }

    bool isEmpty() const noexcept { return !hasLongCharacters() && (m_ascii[0] | m_ascii[1]) == 0; }

    /// Returns true if the set contains a character that takes more than one byte in the UTF-8 text of a String.
    bool hasLongCharacters() const noexcept { return m_hasWhiteSpace || !m_others.empty() || (m_ascii[0] & 1) != 0; }

    /// The only character of a set of one; NOT_FOUND for other sets.
    VORN_API UTF32Char getSingle() const noexcept;

private:
    friend VORN_API CharacterSet anyOf(TextView characters);

    void add(UTF32Char c) {
        if (c < 0x80)
            m_ascii[c >> 6] |= 1ull << (c & 63);
        else
            m_others.push_back(static_cast<char32_t>(c));
    }
    VORN_API void addChecked(UTF32Char c);

    unsigned long long m_ascii[2]; // one bit for each character below 0x80
    std::u32string m_others;
    bool m_hasWhiteSpace; // the characters beyond ASCII are those of white space
};

inline CharacterSet::CharacterSet(WhiteSpace) noexcept : CharacterSet() {
    for (UTF32Char c = 9; c <= 13; ++c) m_ascii[0] |= 1ull << c;
    m_ascii[0] |= 1ull << 0x20;
    m_hasWhiteSpace = true;
}

/// The set of the characters of a text, which is copied. Malformed units belong to no set.
[[nodiscard]] VORN_API CharacterSet anyOf(TextView characters);

} // namespace Vorn
