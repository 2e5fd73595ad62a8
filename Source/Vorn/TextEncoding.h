/// @file
/// TextEncoding: converts ordinary text between UTF-8 and UTF-16. Private.
///
/// Nothing here throws: StringDataHelper.cpp tests the sizes and reports what cannot be converted.
#pragma once

#include "UTF8Runs.h"
#include "Vorn/String/UTF16.h"
#include "Vorn/Types.h"

namespace VornPrivate {

using Vorn::UTF16Char;

/// The position of a conversion to UTF-16.
struct Conversion {
    const unsigned char* source;
    UTF16Char* dest;
};

/// Converts ordinary UTF-8, and zero bytes, to UTF-16. Stops at any other character, at the last three bytes of the
/// source or at the end of the destination. A character of four bytes is written as its second surrogate alone.
template <bool Full>
[[gnu::noinline]] inline Conversion convertOrdinary(Conversion at, const unsigned char* sourceEnd,
                                                    const UTF16Char* destEnd) {
    auto [source, dest] = at;
    for (; sourceEnd - source >= 4 && dest != destEnd; ++dest) {
        if (*source < 0x80) {
            *dest = *source;
            source += 1;
        } else if (isOrdinary2(source)) {
            *dest = static_cast<UTF16Char>(decode2(source));
            source += 2;
        } else if (isOrdinary3(source)) {
            *dest = static_cast<UTF16Char>(decode3(source));
            source += 3;
        } else if (Full && isOrdinary4(source)) {
            *dest = static_cast<UTF16Char>(0xDC00 | (decode4(source) & 0x3FF));
            source += 4;
        } else {
            break;
        }
    }
    return {source, dest};
}

/// Bytes of the longest character in UTF-8.
constexpr unsigned int LONGEST_CHARACTER = 4;

/// Writes a unit that is no first surrogate. Returns a pointer behind the last byte written.
inline unsigned char* encodeUnit(unsigned char* dest, unsigned int unit) {
    if (unit - 1 < 0x7F) {
        *dest++ = static_cast<unsigned char>(unit);
    } else if (unit < 0x800) {
        *dest++ = static_cast<unsigned char>(0xC0 | (unit >> 6));
        *dest++ = static_cast<unsigned char>(0x80 | (unit & 0x3F));
    } else {
        *dest++ = static_cast<unsigned char>(0xE0 | (unit >> 12));
        *dest++ = static_cast<unsigned char>(0x80 | ((unit >> 6) & 0x3F));
        *dest++ = static_cast<unsigned char>(0x80 | (unit & 0x3F));
    }
    return dest;
}

/// Writes a surrogate pair. Returns a pointer behind the last byte written.
/// @warning The bytes are malformed if the low byte of `first` is 0xC0 or more: the carry into the lead byte is lost.
///     `UTF8::getUTF8(first, second)` follows another rule.
inline unsigned char* encodePair(unsigned char* dest, unsigned int first, unsigned int second) {
    *dest++ = static_cast<unsigned char>(0xF0 + (((first + 4) >> 8) & 3));
    *dest++ = static_cast<unsigned char>(0x90 + ((first & 0xFF) >> 2));
    *dest++ = static_cast<unsigned char>(0x80 + ((first & 3) << 4) + ((second >> 6) & 0x0F));
    *dest++ = static_cast<unsigned char>(0x80 + (second & 0x3F));
    return dest;
}

/// Writes the character of a surrogate pair. Returns a pointer behind the last byte written.
inline unsigned char* encodeExactPair(unsigned char* dest, unsigned int first, unsigned int second) {
    const unsigned int code = 0x10000 + ((first & 0x3FF) << 10 | (second & 0x3FF));
    *dest++ = static_cast<unsigned char>(0xF0 | (code >> 18));
    *dest++ = static_cast<unsigned char>(0x80 | ((code >> 12) & 0x3F));
    *dest++ = static_cast<unsigned char>(0x80 | ((code >> 6) & 0x3F));
    *dest++ = static_cast<unsigned char>(0x80 | (code & 0x3F));
    return dest;
}

/// Writes the character at unit `i` and moves `i` behind it. Returns a pointer behind the last byte written.
template <bool Pairs>
inline unsigned char* encodeCharacter(unsigned char* dest, const UTF16Char* sourceBuffer, unsigned int& i) {
    const UTF16Char unit = sourceBuffer[i++];
    if (Pairs && Vorn::UTF16::isFirstSurrogate(unit)) return encodePair(dest, unit, sourceBuffer[i++]);
    return encodeUnit(dest, unit);
}

} // namespace VornPrivate
