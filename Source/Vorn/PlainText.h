/// @file
/// PlainText: finds the end of plain ASCII, eight bytes or four units at a time. Private.
///
/// Plain ASCII is 0x01 to 0x7F. Nothing here throws. In a text of unknown length, no unit behind the first one that is
/// not plain is read.
#pragma once

#include "Vorn/String/StringDataTypes.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace VornPrivate {

static_assert(std::endian::native == std::endian::little, "blocks are tested with their first unit in the lowest bits");

template <class Word, class CharType>
inline Word loadWord(const CharType* units) {
    Word word;
    std::memcpy(&word, units, sizeof(word));
    return word;
}

/// Returns nonzero if one of the units in `word` is not 0x01 to 0x7F; the lowest set bit is in the first such unit.
/// Subtracting 1 borrows into the top bits of a zero unit, and larger units have some of these bits set.
template <class CharType>
inline std::uint64_t oddUnits(std::uint64_t word) {
    constexpr bool BYTES = sizeof(CharType) == 1;
    constexpr std::uint64_t ONES = BYTES ? 0x0101010101010101 : 0x0001000100010001;
    constexpr std::uint64_t TOPS = BYTES ? 0x8080808080808080 : 0xFF80FF80FF80FF80;
    return ((word - ONES) | word) & TOPS;
}

inline bool isPlain(unsigned int unit) { return unit - 1 < 0x7F; }

/// Texts of so many units are tested by `isShortPlain`, which takes less time than a call.
constexpr unsigned int SHORT_UNITS = 64;

/// Returns true if all units of a short text are plain ASCII. The last word overlaps the one in front of it.
template <class CharType>
inline bool isShortPlain(const CharType* buffer, unsigned int length) {
    constexpr unsigned int UNITS = sizeof(std::uint64_t) / sizeof(CharType);
    if (length < UNITS) {
        if (sizeof(CharType) == 1 && length >= 4) {
            const std::uint64_t first = loadWord<std::uint32_t>(buffer);
            const std::uint64_t last = loadWord<std::uint32_t>(buffer + length - 4);
            return !oddUnits<CharType>(first | last << 32);
        }
        bool plain = true;
        for (unsigned int i = 0; i < length; ++i) plain &= isPlain(buffer[i]);
        return plain;
    }
    std::uint64_t odd = oddUnits<CharType>(loadWord<std::uint64_t>(buffer + length - UNITS));
    if (odd) return false; // most text of other scripts
    for (unsigned int i = 0; i < length - UNITS; i += UNITS)
        odd |= oddUnits<CharType>(loadWord<std::uint64_t>(buffer + i));
    return !odd;
}

/// Returns the index of the first unit from `i` on that is not plain ASCII, or `end`.
template <class CharType>
inline unsigned int findPlainEnd(const CharType* buffer, unsigned int i, unsigned int end) {
    constexpr unsigned int UNITS = sizeof(std::uint64_t) / sizeof(CharType);
    // Runs between words of other scripts are short: a predicted branch costs less than computing the index.
    for (unsigned int k = 0; k < 4; ++k, ++i)
        if (i == end || !isPlain(buffer[i])) return i;
    while (end - i >= 4 * UNITS) {
        std::uint64_t odd = 0;
        for (unsigned int k = 0; k < 4; ++k) odd |= oddUnits<CharType>(loadWord<std::uint64_t>(buffer + i + k * UNITS));
        if (odd) break;
        i += 4 * UNITS;
    }
    while (end - i >= UNITS && !oddUnits<CharType>(loadWord<std::uint64_t>(buffer + i))) i += UNITS;
    while (i < end && isPlain(buffer[i])) ++i;
    return i;
}

/// As above, for a text that ends at a zero unit. Stops at MAX_TEXT_LENGTH.
template <class CharType>
inline unsigned int findPlainEnd(const CharType* buffer, unsigned int i) {
    for (; i <= MAX_TEXT_LENGTH - 4; i += 4)
        for (unsigned int k = 0; k < 4; ++k)
            if (!isPlain(buffer[i + k])) return i + k;
    while (i < MAX_TEXT_LENGTH && isPlain(buffer[i])) ++i;
    return i;
}

} // namespace VornPrivate
