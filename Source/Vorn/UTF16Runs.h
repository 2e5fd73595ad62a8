/// @file
/// UTF16Runs: skips and counts runs of ordinary UTF-16. Private.
///
/// Ordinary text needs no decision: units that are valid characters other than U+0000, and valid surrogate pairs.
/// Nothing here throws. In a text of unknown length, no unit behind the one where a run stops is read, and a run stops
/// at the longest length that a text can have.
#pragma once

#include "Vorn/String/StringDataTypes.h"
#include "Vorn/Types.h"

#include <cstdint>
#include <cstring>

namespace VornPrivate {

using Vorn::UTF16Char;

/// Returns true for a unit that is a character by itself and not U+0000.
inline bool isOrdinaryUnit(unsigned int unit) {
    return unit - 1 < 0xD800 - 1 || unit - 0xE000 < 0xFDD0 - 0xE000 || unit - 0xFDF0 < 0xFFFE - 0xFDF0;
}

/// Returns true for a surrogate pair that is a character.
inline bool isOrdinaryPair(unsigned int first, unsigned int second) {
    return (first & 0xFC00) == 0xD800 && (second & 0xFC00) == 0xDC00 &&
           !((first & 0x3F) == 0x3F && (second & 0x3FE) == 0x3FE);
}

/// The units in a run of ordinary UTF-16 by their size in UTF-8. Units from `FirstOfTwo` on need at least two bytes.
template <unsigned int FirstOfTwo>
struct UnitCounts {
    unsigned int twoBytes = 0;   ///< units that need at least two bytes
    unsigned int threeBytes = 0; ///< units that need three bytes
    unsigned int pairs = 0;      ///< surrogate pairs
};

constexpr unsigned int UNIT_BLOCK = 32;

/// Counts a block of UNIT_BLOCK units and returns true, or returns false if one of them is no ordinary character. All
/// operations are on words of 16 bits, which compilers turn into vectors.
template <unsigned int FirstOfTwo>
inline bool countOrdinaryBlock(const UTF16Char* units, UnitCounts<FirstOfTwo>& counts) {
    const auto maskOf = [](bool condition) { return static_cast<std::int16_t>(-condition); };
    std::uint16_t block[UNIT_BLOCK];
    std::memcpy(block, units, sizeof(block));
    std::int16_t odd = 0;
    std::int16_t twoBytes = 0; // both are negative counts, since a mask is -1
    std::int16_t threeBytes = 0;
#pragma GCC unroll 1 // an unrolled loop is not turned into vectors
    for (unsigned int k = 0; k < UNIT_BLOCK; ++k) {
        const std::uint16_t unit = block[k];
        odd = static_cast<std::int16_t>(odd | maskOf(unit == 0) | maskOf((unit & 0xF800) == 0xD800) |
                                        maskOf(static_cast<std::uint16_t>(unit - 0xFDD0) < 0x20) |
                                        maskOf((unit & 0xFFFE) == 0xFFFE));
        twoBytes = static_cast<std::int16_t>(twoBytes + maskOf(unit >= FirstOfTwo));
        threeBytes = static_cast<std::int16_t>(threeBytes + maskOf(unit >= 0x800));
    }
    if (odd) return false;
    counts.twoBytes -= static_cast<unsigned int>(twoBytes);
    counts.threeBytes -= static_cast<unsigned int>(threeBytes);
    return true;
}

/// Skips units that are characters by themselves, in steps of eight, in a text of unknown length. Returns the index of
/// the first other unit, or one from which on fewer than eight units can follow.
template <unsigned int FirstOfTwo>
inline unsigned int skipEights(const UTF16Char* buffer, unsigned int i, unsigned int end,
                               UnitCounts<FirstOfTwo>& counts) {
    for (; end - i >= 8; i += 8) {
        for (unsigned int k = 0; k < 8; ++k) {
            if (!isOrdinaryUnit(buffer[i + k])) return i + k;
            counts.twoBytes += buffer[i + k] >= FirstOfTwo;
            counts.threeBytes += buffer[i + k] >= 0x800;
        }
    }
    return i;
}

/// Skips ordinary UTF-16 from `i` on. Returns the index of the first unit that is no ordinary character, or the end.
/// Pairs are ordinary if `Full` is set.
template <bool Full, bool Terminated, unsigned int FirstOfTwo>
inline unsigned int skipOrdinary(const UTF16Char* buffer, unsigned int i, unsigned int end,
                                 UnitCounts<FirstOfTwo>& counts) {
    if constexpr (Terminated) end = MAX_TEXT_LENGTH;
    for (;;) {
        const unsigned int start = i;
        if constexpr (Terminated) {
            i = skipEights(buffer, i, end, counts);
        } else {
            while (end - i >= UNIT_BLOCK && countOrdinaryBlock(buffer + i, counts)) i += UNIT_BLOCK;
        }
        const unsigned int blockEnd = end - i > UNIT_BLOCK ? i + UNIT_BLOCK : end;
        for (; i < blockEnd && isOrdinaryUnit(buffer[i]); ++i) {
            counts.twoBytes += buffer[i] >= FirstOfTwo;
            counts.threeBytes += buffer[i] >= 0x800;
        }
        if constexpr (Full) {
            // The second unit is read only behind a first surrogate, which is no terminator.
            while (end - i >= 2 && (buffer[i] & 0xFC00) == 0xD800 && isOrdinaryPair(buffer[i], buffer[i + 1])) {
                ++counts.pairs;
                i += 2;
            }
        }
        if (i == start) return i;
    }
}

} // namespace VornPrivate
