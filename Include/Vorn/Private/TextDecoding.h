// TextDecoding: reads and writes single characters of UTF-8 and UTF-16. Support of the headers in Vorn/Text; not for
// direct use.
//
// Units that belong to no character are malformed and decode as U+FFFD, one for each maximal subpart of a character:
// the longest sequence of units that starts a character. U+0000 is the byte 0 or the bytes 0xC0 0x80. Noncharacters
// decode as they are.
#pragma once

#include "Vorn/Text/TextView.h"
#include "Vorn/Types.h"

namespace VornPrivate {

inline constexpr Vorn::UTF32Char REPLACEMENT_CHARACTER = 0xFFFD;
inline constexpr Vorn::UTF32Char LAST_CODE_POINT = 0x10FFFF;

/// A character of a text.
struct DecodedCharacter {
    Vorn::UTF32Char code; ///< U+FFFD if the units are malformed
    unsigned int units;   ///< the number of units, at least 1
    bool isMalformed;
};

constexpr DecodedCharacter malformedUnits(unsigned int units) noexcept { return {REPLACEMENT_CHARACTER, units, true}; }

constexpr bool isTrailByte(unsigned int byte) noexcept { return (byte & 0xC0) == 0x80; }
constexpr bool isSurrogateCode(unsigned int code) noexcept { return (code & 0xFFFFF800) == 0xD800; }
constexpr bool isHighSurrogate(unsigned int unit) noexcept { return (unit & 0xFFFFFC00) == 0xD800; }
constexpr bool isLowSurrogate(unsigned int unit) noexcept { return (unit & 0xFFFFFC00) == 0xDC00; }
constexpr bool isNoncharacter(unsigned int code) noexcept {
    return code - 0xFDD0 < 0x20 || ((code & 0xFFFE) == 0xFFFE && code <= LAST_CODE_POINT);
}

/// True for every code point that a String can hold.
constexpr bool isCharacter(unsigned int code) noexcept {
    return code <= LAST_CODE_POINT && !isSurrogateCode(code) && !isNoncharacter(code);
}

/// Decodes a character of two bytes or more, or units that are malformed.
inline DecodedCharacter decodeBeyondASCII(const unsigned char* at, const unsigned char* end) noexcept {
    const unsigned int lead = *at;
    const auto left = end - at;
    if (lead < 0xC2) {
        const bool isNull = lead == 0xC0 && left >= 2 && at[1] == 0x80;
        return isNull ? DecodedCharacter{0, 2, false} : malformedUnits(1);
    }
    if (lead < 0xE0) {
        if (left < 2 || !isTrailByte(at[1])) return malformedUnits(1);
        return {(lead & 0x1F) << 6 | (at[1] & 0x3Fu), 2, false};
    }
    // The second byte excludes overlong forms, surrogates and codes above U+10FFFF.
    if (lead > 0xF4 || left < 2 || !isTrailByte(at[1])) return malformedUnits(1);
    const unsigned int second = at[1];
    if (lead < 0xF0) {
        if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second >= 0xA0)) return malformedUnits(1);
        if (left < 3 || !isTrailByte(at[2])) return malformedUnits(2);
        return {(lead & 0x0F) << 12 | (second & 0x3F) << 6 | (at[2] & 0x3Fu), 3, false};
    }
    if ((lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second >= 0x90)) return malformedUnits(1);
    if (left < 3 || !isTrailByte(at[2])) return malformedUnits(2);
    if (left < 4 || !isTrailByte(at[3])) return malformedUnits(3);
    return {(lead & 0x07) << 18 | (second & 0x3F) << 12 | (at[2] & 0x3Fu) << 6 | (at[3] & 0x3Fu), 4, false};
}

/// Decodes the character at `at`, which is before `end`.
inline DecodedCharacter decodeNext(const unsigned char* at, const unsigned char* end) noexcept {
    if (*at < 0x80) return {*at, 1, false};
    return decodeBeyondASCII(at, end);
}

inline DecodedCharacter decodeNext(const Vorn::UTF16Char* at, const Vorn::UTF16Char* end) noexcept {
    const unsigned int unit = *at;
    if (!isSurrogateCode(unit)) return {unit, 1, false};
    if (!isHighSurrogate(unit) || end - at < 2 || !isLowSurrogate(at[1])) return malformedUnits(1);
    return {0x10000 + ((unit & 0x3FF) << 10) + (at[1] & 0x3FFu), 2, false};
}

/// Decodes the character that ends at `at`, which is behind `begin`; both are boundaries of characters.
inline DecodedCharacter decodePrevious(const unsigned char* begin, const unsigned char* at) noexcept {
    if (at[-1] < 0x80) return {at[-1], 1, false};
    const unsigned int most = at - begin < 4 ? static_cast<unsigned int>(at - begin) : 4;
    for (unsigned int units = 1; units <= most; ++units) {
        const unsigned char* const lead = at - units;
        if (isTrailByte(*lead)) continue;
        const DecodedCharacter character = decodeNext(lead, at);
        if (character.units == units) return character;
        break;
    }
    return malformedUnits(1);
}

inline DecodedCharacter decodePrevious(const Vorn::UTF16Char* begin, const Vorn::UTF16Char* at) noexcept {
    if (isLowSurrogate(at[-1]) && at - begin >= 2 && isHighSurrogate(at[-2])) return decodeNext(at - 2, at);
    return decodeNext(at - 1, at);
}

/// Decodes the character at an offset that is before the end of the text.
inline DecodedCharacter decodeAt(Vorn::TextView text, unsigned int offset) noexcept {
    if (text.isUTF8()) return decodeNext(text.getUTF8() + offset, text.getUTF8() + text.getLength());
    return decodeNext(text.getUTF16() + offset, text.getUTF16() + text.getLength());
}

/// Decodes the character that ends at an offset, which is not 0.
inline DecodedCharacter decodeBefore(Vorn::TextView text, unsigned int offset) noexcept {
    if (text.isUTF8()) return decodePrevious(text.getUTF8(), text.getUTF8() + offset);
    return decodePrevious(text.getUTF16(), text.getUTF16() + offset);
}

/// Writes a code point, which is not a surrogate and at most U+10FFFF, in at most four bytes or two units. Returns a
/// pointer behind it. U+0000 is written as one unit.
inline unsigned char* encodeTo(unsigned char* dest, Vorn::UTF32Char code) noexcept {
    if (code < 0x80) {
        *dest++ = static_cast<unsigned char>(code);
        return dest;
    }
    if (code < 0x800) {
        *dest++ = static_cast<unsigned char>(0xC0 | code >> 6);
    } else {
        if (code < 0x10000) {
            *dest++ = static_cast<unsigned char>(0xE0 | code >> 12);
        } else {
            *dest++ = static_cast<unsigned char>(0xF0 | code >> 18);
            *dest++ = static_cast<unsigned char>(0x80 | (code >> 12 & 0x3F));
        }
        *dest++ = static_cast<unsigned char>(0x80 | (code >> 6 & 0x3F));
    }
    *dest++ = static_cast<unsigned char>(0x80 | (code & 0x3F));
    return dest;
}

inline Vorn::UTF16Char* encodeTo(Vorn::UTF16Char* dest, Vorn::UTF32Char code) noexcept {
    if (code >= 0x10000) {
        *dest++ = static_cast<Vorn::UTF16Char>(0xD7C0 + (code >> 10));
        code = 0xDC00 | (code & 0x3FF);
    }
    *dest++ = static_cast<Vorn::UTF16Char>(code);
    return dest;
}

/// The same for the text of a String: in UTF-8, U+0000 is written as 0xC0 0x80.
inline unsigned char* encodeForString(unsigned char* dest, Vorn::UTF32Char code) noexcept {
    if (code != 0) return encodeTo(dest, code);
    *dest++ = 0xC0;
    *dest++ = 0x80;
    return dest;
}
inline Vorn::UTF16Char* encodeForString(Vorn::UTF16Char* dest, Vorn::UTF32Char code) noexcept {
    return encodeTo(dest, code);
}

/// Defined for temporaries that own text; a view or an iterator of one would dangle.
template <class Text>
struct OwnsText : std::is_base_of<Vorn::String, Text> {};
template <class Unit, class Traits, class Allocator>
struct OwnsText<std::basic_string<Unit, Traits, Allocator>> : std::true_type {};
template <class Text>
using IfTemporaryText = std::enable_if_t<
    !std::is_lvalue_reference<Text>::value && OwnsText<std::remove_cv_t<std::remove_reference_t<Text>>>::value, int>;

} // namespace VornPrivate
