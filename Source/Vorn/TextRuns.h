// TextRuns: steps over ordinary text, many units at a time.
//
// Ordinary is what needs no decision: plain ASCII (0x01 to 0x7F) and valid characters that fit one UTF-16 unit, without
// U+0000. The loops that decide about everything else stay simple, and text of most scripts hardly enters them. Nothing
// here raises. Where a text has no known end, nothing behind the unit that a run stops at is read, and a run stops at
// the longest length that a text can have.
#pragma once

#include "Vorn/String/StringDataTypes.h"
#include "Vorn/Types.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace VornPrivate {

using Vorn::UTF16Char;

static_assert(std::endian::native == std::endian::little, "blocks are tested with their first unit in the lowest bits");

template <class Word, class CharType>
inline Word loadWord(const CharType* units) {
    Word word;
    std::memcpy(&word, units, sizeof(word));
    return word;
}

/// Nonzero if one of the units in `word` is not 0x01 to 0x7F; its lowest set bit is in the first of these. Subtracting
/// 1 borrows into the top bits of a zero unit, and larger units have some of these bits themselves.
template <class CharType>
inline std::uint64_t oddUnits(std::uint64_t word) {
    constexpr bool BYTES = sizeof(CharType) == 1;
    constexpr std::uint64_t ONES = BYTES ? 0x0101010101010101 : 0x0001000100010001;
    constexpr std::uint64_t TOPS = BYTES ? 0x8080808080808080 : 0xFF80FF80FF80FF80;
    return ((word - ONES) | word) & TOPS;
}

inline bool isPlain(unsigned int unit) { return unit - 1 < 0x7F; }

/// Index from `i` on of the first unit that is not plain ASCII, or `end`.
template <class CharType>
inline unsigned int findPlainEnd(const CharType* buffer, unsigned int i, unsigned int end) {
    constexpr unsigned int UNITS = sizeof(std::uint64_t) / sizeof(CharType);
    // Between words of other scripts runs are short, and a guessed branch beats the wait for a computed index.
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

/// The same for a text that ends at a zero unit; MAX_TEXT_LENGTH if there is no such unit up to there.
template <class CharType>
inline unsigned int findPlainEnd(const CharType* buffer, unsigned int i) {
    for (; i <= MAX_TEXT_LENGTH - 4; i += 4)
        for (unsigned int k = 0; k < 4; ++k)
            if (!isPlain(buffer[i + k])) return i + k;
    while (i < MAX_TEXT_LENGTH && isPlain(buffer[i])) ++i;
    return i;
}

inline bool isTrail(unsigned int byte) { return (byte & 0xC0) == 0x80; }

/// True for a code of three bytes that is neither overlong nor a surrogate nor a noncharacter.
inline bool isOrdinaryCode3(unsigned int code) {
    return code - 0x800 < 0xD800 - 0x800 || code - 0xE000 < 0xFDD0 - 0xE000 || code - 0xFDF0 < 0xFFFE - 0xFDF0;
}

/// True for a code beyond 0xFFFF that is no noncharacter.
inline bool isOrdinaryCode4(unsigned int code) { return code - 0x10000 < 0x100000 && (code & 0xFFFE) != 0xFFFE; }

inline unsigned int decode2(const unsigned char* bytes) { return (bytes[0] & 0x1Fu) << 6 | (bytes[1] & 0x3Fu); }
inline unsigned int decode3(const unsigned char* bytes) {
    return (bytes[0] & 0x0Fu) << 12 | (bytes[1] & 0x3Fu) << 6 | (bytes[2] & 0x3Fu);
}
inline unsigned int decode4(const unsigned char* bytes) {
    return (bytes[0] & 0x07u) << 18 | (bytes[1] & 0x3Fu) << 12 | (bytes[2] & 0x3Fu) << 6 | (bytes[3] & 0x3Fu);
}

/// True if an ordinary character of two, three or four bytes stands here. No byte behind one that refuses it is read.
inline bool isOrdinary2(const unsigned char* bytes) { return bytes[0] - 0xC2u <= 0xDF - 0xC2 && isTrail(bytes[1]); }
inline bool isOrdinary3(const unsigned char* bytes) {
    return (bytes[0] & 0xF0) == 0xE0 && isTrail(bytes[1]) && isTrail(bytes[2]) && isOrdinaryCode3(decode3(bytes));
}
inline bool isOrdinary4(const unsigned char* bytes) {
    return (bytes[0] & 0xF8) == 0xF0 && isTrail(bytes[1]) && isTrail(bytes[2]) && isTrail(bytes[3]) &&
           isOrdinaryCode4(decode4(bytes));
}

/// What a run of ordinary UTF-8 consisted of.
struct RunCounts {
    unsigned int characters = 0;
    unsigned int fourBytes = 0; ///< characters of four bytes
    bool beyondASCII = false;   ///< characters of two or three bytes
};

/// Where a text ends at the latest. A terminated text is one whose end is not known: it has an address only, which no
/// object need reach to, and which may wrap around in a 32-bit process.
template <bool Terminated>
using TextEnd = std::conditional_t<Terminated, std::uintptr_t, const unsigned char*>;

inline std::size_t bytesUpTo(const unsigned char* end, const unsigned char* at) {
    return static_cast<std::size_t>(end - at);
}
inline std::size_t bytesUpTo(std::uintptr_t end, const unsigned char* at) {
    return end - reinterpret_cast<std::uintptr_t>(at);
}

// Runs of one length each. They stay out of line, where all that they need fits the registers.

template <bool Terminated>
[[gnu::noinline]] inline const unsigned char* skipOrdinary2(const unsigned char* at, TextEnd<Terminated> end) {
    while (bytesUpTo(end, at) >= 2 && isOrdinary2(at)) {
        at += 2;
        if constexpr (!Terminated) {
            // Four characters at once: 110xxxx? 10?????? with one of the x set, or they would be overlong.
            while (end - at >= 8) {
                const auto word = loadWord<std::uint64_t>(at);
                const std::uint64_t high = word & 0x001E001E001E001E;
                if ((word & 0xC0E0C0E0C0E0C0E0) != 0x80C080C080C080C0 ||
                    ((high - 0x0001000100010001) & 0x8000800080008000))
                    break;
                at += 8;
            }
        }
    }
    return at;
}

template <bool Terminated>
[[gnu::noinline]] inline const unsigned char* skipOrdinary3(const unsigned char* at, TextEnd<Terminated> end) {
    while (bytesUpTo(end, at) >= 3 && isOrdinary3(at)) at += 3;
    return at;
}

template <bool Terminated>
[[gnu::noinline]] inline const unsigned char* skipOrdinary4(const unsigned char* at, TextEnd<Terminated> end) {
    while (bytesUpTo(end, at) >= 4 && isOrdinary4(at)) at += 4;
    return at;
}

/// Steps over ordinary UTF-8 from `i` on. Gives the index of the first byte that is no such character, or the end.
/// Characters of four bytes are ordinary if `Full` is set.
template <bool Full, bool Terminated>
inline unsigned int skipOrdinary(const unsigned char* buffer, unsigned int i, unsigned int length, RunCounts& counts) {
    TextEnd<Terminated> end;
    if constexpr (Terminated)
        end = reinterpret_cast<std::uintptr_t>(buffer) + MAX_TEXT_LENGTH;
    else
        end = buffer + length;
    for (;;) {
        const unsigned int start = i;
        if constexpr (Terminated)
            i = findPlainEnd(buffer, i);
        else
            i = findPlainEnd(buffer, i, length);
        counts.characters += i - start;
        if (i == (Terminated ? MAX_TEXT_LENGTH : length)) return i;

        const unsigned char* const at = buffer + i;
        if ((*at & 0xE0) == 0xC0) {
            const auto bytes = static_cast<unsigned int>(skipOrdinary2<Terminated>(at, end) - at);
            if (bytes == 0) return i;
            counts.characters += bytes / 2;
            counts.beyondASCII = true;
            i += bytes;
        } else if ((*at & 0xF0) == 0xE0) {
            const auto bytes = static_cast<unsigned int>(skipOrdinary3<Terminated>(at, end) - at);
            if (bytes == 0) return i;
            counts.characters += bytes / 3;
            counts.beyondASCII = true;
            i += bytes;
        } else if (Full && *at >= 0xF0) {
            const auto bytes = static_cast<unsigned int>(skipOrdinary4<Terminated>(at, end) - at);
            if (bytes == 0) return i;
            counts.characters += bytes / 4;
            counts.fourBytes += bytes / 4;
            i += bytes;
        } else {
            return i;
        }
    }
}

/// Where a conversion to UTF-16 stands.
struct Conversion {
    const unsigned char* source;
    UTF16Char* dest;
};

/// Converts ordinary text and U+0000 as a single byte, up to a character that is neither, to the last three bytes of
/// the source or to the end of the destination. Of a character of four bytes, the second surrogate is written alone.
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

/// True for a unit that is a character by itself and not U+0000.
inline bool isOrdinaryUnit(unsigned int unit) {
    return unit - 1 < 0xD800 - 1 || unit - 0xE000 < 0xFDD0 - 0xE000 || unit - 0xFDF0 < 0xFFFE - 0xFDF0;
}

/// True for a surrogate pair that is a character.
inline bool isOrdinaryPair(unsigned int first, unsigned int second) {
    return (first & 0xFC00) == 0xD800 && (second & 0xFC00) == 0xDC00 &&
           !((first & 0x3F) == 0x3F && (second & 0x3FE) == 0x3FE);
}

/// What a run of ordinary UTF-16 takes in UTF-8: how many of its units need at least two bytes, and three bytes, if
/// units from `FirstOfTwo` on need two; and how many pairs it holds.
template <unsigned int FirstOfTwo>
struct UnitCounts {
    unsigned int twoBytes = 0;
    unsigned int threeBytes = 0;
    unsigned int pairs = 0;
};

constexpr unsigned int UNIT_BLOCK = 32;

/// Counts a block of UNIT_BLOCK units and returns true, or returns false if one of them is no ordinary character. All
/// is done in words of 16 bits, of which compilers make vectors.
template <unsigned int FirstOfTwo>
inline bool countOrdinaryBlock(const UTF16Char* units, UnitCounts<FirstOfTwo>& counts) {
    const auto maskOf = [](bool condition) { return static_cast<std::int16_t>(-condition); };
    std::uint16_t block[UNIT_BLOCK];
    std::memcpy(block, units, sizeof(block));
    std::int16_t odd = 0;
    std::int16_t twoBytes = 0; // both counted downwards, as masks add up
    std::int16_t threeBytes = 0;
#pragma GCC unroll 1 // unrolled, the loop would not become vectors
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

/// Steps over ordinary UTF-16 from `i` on. Gives the index of the first unit that is none, or the end. Pairs are
/// ordinary if `Full` is set.
template <bool Full, bool Terminated, unsigned int FirstOfTwo>
inline unsigned int skipOrdinary(const UTF16Char* buffer, unsigned int i, unsigned int end,
                                 UnitCounts<FirstOfTwo>& counts) {
    if constexpr (Terminated) end = MAX_TEXT_LENGTH;
    for (;;) {
        const unsigned int start = i;
        if constexpr (!Terminated) {
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
