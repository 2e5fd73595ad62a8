/// @file
/// UTF8Runs: skips and counts runs of ordinary UTF-8. Private.
///
/// Ordinary text needs no decision: plain ASCII (0x01 to 0x7F) and valid characters other than U+0000. The validating
/// loops of StringDataHelper.cpp decide about everything else, and rarely run for ordinary text. Nothing here throws.
/// In a text of unknown length, no byte behind the one where a run stops is read, and a run stops at the longest length
/// that a text can have.
#pragma once

#include "PlainText.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace VornPrivate {

inline bool isTrail(unsigned int byte) { return (byte & 0xC0) == 0x80; }

/// Returns true for a code of three bytes that is neither overlong nor a surrogate nor a noncharacter.
inline bool isOrdinaryCode3(unsigned int code) {
    return code - 0x800 < 0xD800 - 0x800 || code - 0xE000 < 0xFDD0 - 0xE000 || code - 0xFDF0 < 0xFFFE - 0xFDF0;
}

/// Returns true for a code above 0xFFFF that is no noncharacter.
inline bool isOrdinaryCode4(unsigned int code) { return code - 0x10000 < 0x100000 && (code & 0xFFFE) != 0xFFFE; }

inline unsigned int decode2(const unsigned char* bytes) { return (bytes[0] & 0x1Fu) << 6 | (bytes[1] & 0x3Fu); }
inline unsigned int decode3(const unsigned char* bytes) {
    return (bytes[0] & 0x0Fu) << 12 | (bytes[1] & 0x3Fu) << 6 | (bytes[2] & 0x3Fu);
}
inline unsigned int decode4(const unsigned char* bytes) {
    return (bytes[0] & 0x07u) << 18 | (bytes[1] & 0x3Fu) << 12 | (bytes[2] & 0x3Fu) << 6 | (bytes[3] & 0x3Fu);
}

/// Return true if the bytes are an ordinary character of two, three or four bytes. No byte behind one that decides is
/// read.
inline bool isOrdinary2(const unsigned char* bytes) { return bytes[0] - 0xC2u <= 0xDF - 0xC2 && isTrail(bytes[1]); }
inline bool isOrdinary3(const unsigned char* bytes) {
    return (bytes[0] & 0xF0) == 0xE0 && isTrail(bytes[1]) && isTrail(bytes[2]) && isOrdinaryCode3(decode3(bytes));
}
inline bool isOrdinary4(const unsigned char* bytes) {
    return (bytes[0] & 0xF8) == 0xF0 && isTrail(bytes[1]) && isTrail(bytes[2]) && isTrail(bytes[3]) &&
           isOrdinaryCode4(decode4(bytes));
}

/// The characters in a run of ordinary UTF-8.
struct RunCounts {
    unsigned int characters = 0;
    unsigned int fourBytes = 0; ///< characters of four bytes
    bool beyondASCII = false;   ///< true if there are characters of two or three bytes
};

/// The last possible end of a text. For a text of unknown length it is only an address, since it can be outside of
/// every object and can wrap around in a 32-bit process.
template <bool Terminated>
using TextEnd = std::conditional_t<Terminated, std::uintptr_t, const unsigned char*>;

inline std::size_t bytesUpTo(const unsigned char* end, const unsigned char* at) {
    return static_cast<std::size_t>(end - at);
}
inline std::size_t bytesUpTo(std::uintptr_t end, const unsigned char* at) {
    return end - reinterpret_cast<std::uintptr_t>(at);
}

// Runs of characters of one length. Out of line, so that all of their variables fit the registers. In a text of unknown
// length, the distance to the last possible end is tested once for four characters.

/// Skips up to `end`, in steps of four, characters of `Size` bytes that `isOrdinary` accepts. Returns true if a
/// character stopped it, and false if fewer than four can follow.
template <std::size_t Size, class Test>
inline bool skipFours(const unsigned char*& at, std::uintptr_t end, Test isOrdinary) {
    while (bytesUpTo(end, at) >= 4 * Size) {
        for (unsigned int k = 0; k < 4; ++k, at += Size)
            if (!isOrdinary(at)) return true;
    }
    return false;
}

template <bool Terminated>
[[gnu::noinline]] inline const unsigned char* skipOrdinary2(const unsigned char* at, TextEnd<Terminated> end) {
    if constexpr (Terminated) {
        if (skipFours<2>(at, end, isOrdinary2)) return at;
    }
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
    if constexpr (Terminated) {
        if (skipFours<3>(at, end, isOrdinary3)) return at;
    }
    while (bytesUpTo(end, at) >= 3 && isOrdinary3(at)) at += 3;
    return at;
}

template <bool Terminated>
[[gnu::noinline]] inline const unsigned char* skipOrdinary4(const unsigned char* at, TextEnd<Terminated> end) {
    if constexpr (Terminated) {
        if (skipFours<4>(at, end, isOrdinary4)) return at;
    }
    while (bytesUpTo(end, at) >= 4 && isOrdinary4(at)) at += 4;
    return at;
}

/// Skips ordinary UTF-8 from `i` on. Returns the index of the first byte that is no ordinary character, or the end.
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

} // namespace VornPrivate
