/// @file
/// TextKernels: the inner loops of validation, measuring, conversion and comparison, for each instruction set. Private.
///
/// A kernel processes ordinary text from the start, and stops in front of the first block that it cannot decide:
/// malformed text, noncharacters, U+0000, or fewer units than a block. The caller continues there in plain code, which
/// decides everything and raises the failures. A kernel can stop early, but never behind the first character that is
/// not ordinary, and never inside a character. Nothing here throws. Nothing outside the given units is read or written.
///
/// The portable kernels are the meaning of all others: they stop at the first character that is not ordinary.
#pragma once

#include "Vorn/Types.h"

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace VornPrivate {

using Vorn::UTF16Char;

/// The ordinary UTF-8 that a kernel has passed.
struct UTF8Run {
    std::size_t length;     ///< bytes
    std::size_t characters; ///< 0 if they are not counted
    std::size_t fourBytes;  ///< characters of four bytes; any number above 0 stands for some if they are not counted
    bool beyondASCII;       ///< true if there are characters of several bytes
};

/// The ordinary UTF-16 that a kernel has passed.
struct UTF16Run {
    std::size_t length;     ///< units
    std::size_t extraBytes; ///< bytes in UTF-8 less the number of units; 0 if they are not counted
    std::size_t pairs;      ///< surrogate pairs
    bool beyondASCII;       ///< true if there are units above 0x7F
};

/// What a kernel has read from one text and written to, or found equal in, another one.
struct TextProgress {
    std::size_t source;
    std::size_t dest;
};

/// How surrogate pairs become UTF-8.
enum class Pairs {
    APART,  ///< as two characters of three bytes
    STORED, ///< as `encodePair` writes them
    EXACT   ///< as the character of four bytes
};

/// The kernels of one instruction set.
struct TextKernels {
    const char* name;
    bool (*isSupported)() noexcept;

    /// Validates UTF-8 and finds its charset.
    UTF8Run (*scanUTF8)(const unsigned char* text, std::size_t length) noexcept;
    /// Validates UTF-8 and counts. Stops at characters of four bytes unless `full` is set.
    UTF8Run (*measureUTF8)(const unsigned char* text, std::size_t length, bool full) noexcept;

    /// Validates UTF-16 and finds its charset.
    UTF16Run (*scanUTF16)(const UTF16Char* text, std::size_t length) noexcept;
    /// Validates UTF-16 and counts. Units from `firstOfTwo` on count as two bytes at least. Stops at surrogates unless
    /// `full` is set.
    UTF16Run (*measureUTF16)(const UTF16Char* text, std::size_t length, unsigned int firstOfTwo, bool full) noexcept;

    /// Copies units of 0x01 to 0x7F to the other encoding. Returns their number.
    std::size_t (*widenASCII)(const unsigned char* source, std::size_t length, UTF16Char* dest) noexcept;
    std::size_t (*narrowASCII)(const UTF16Char* source, std::size_t length, unsigned char* dest) noexcept;
    /// Returns the number of units of 0x01 to 0x7F at the start.
    std::size_t (*skipASCII8)(const unsigned char* text, std::size_t length) noexcept;
    std::size_t (*skipASCII16)(const UTF16Char* text, std::size_t length) noexcept;
    /// Returns the index of the first byte that is not 0x01 to 0x7F, or `length`, which is not 0. Can read the
    /// aligned block in which that byte is.
    std::size_t (*skipTerminatedASCII)(const unsigned char* text, std::size_t length) noexcept;

    /// Converts text that has been validated, also with U+0000 and overlong forms of two bytes. Writes no more than
    /// `room` units, and none behind the last one of the whole text. A character of four bytes becomes a pair if
    /// `exact` is set, and its second surrogate alone otherwise, as in `stringDataConvertToUTF16`.
    TextProgress (*toUTF16)(const unsigned char* source, std::size_t length, UTF16Char* dest, std::size_t room,
                            bool exact) noexcept;
    /// Converts units to UTF-8, also U+0000 and unpaired surrogates. A first surrogate is encoded with the unit behind
    /// it unless pairs are encoded apart. Exact conversion needs text that has been validated. Writes no more than
    /// `room` bytes, and none behind the last one of the whole text.
    TextProgress (*toUTF8)(const UTF16Char* source, std::size_t length, unsigned char* dest, std::size_t room,
                           Pairs pairs) noexcept;

    /// Returns how much of ordinary text is equal in both encodings. Stops at surrogates unless `full` is set.
    TextProgress (*match)(const UTF16Char* wide, std::size_t wideLength, const unsigned char* text, std::size_t length,
                          bool full) noexcept;
    /// Returns the number of leading units that are equal as numbers.
    std::size_t (*matchUnits)(const unsigned char* text, const UTF16Char* wide, std::size_t length) noexcept;

    /// Count the units that equal `unit`, in the whole text.
    std::size_t (*count8)(const unsigned char* text, std::size_t length, unsigned char unit) noexcept;
    std::size_t (*count16)(const UTF16Char* text, std::size_t length, UTF16Char unit) noexcept;
    /// Returns the index of the first zero unit, or `length`. Can read the aligned block in which the text ends.
    std::size_t (*findZero)(const UTF16Char* text, std::size_t length) noexcept;
    /// Sets one bit for each byte that equals `byte`, in a mask for each block of 64 bytes, the first in the lowest
    /// bit.
    void (*locate8)(const unsigned char* text, std::size_t blocks, unsigned char byte, std::uint64_t* masks) noexcept;
};

/// The kernels of all instruction sets that this build knows, the portable ones first and the fastest last, and a null
/// pointer behind them.
extern const TextKernels* const allTextKernels[];

/// The first use replaces the null pointer. Relaxed: all threads store the same address of constant data.
extern std::atomic<const TextKernels*> chosenTextKernels;
const TextKernels& chooseTextKernels() noexcept;

/// Returns the fastest kernels that this processor supports. Callable at any time, also before `main`.
inline const TextKernels& textKernels() noexcept {
    const TextKernels* const chosen = chosenTextKernels.load(std::memory_order_relaxed);
    return chosen ? *chosen : chooseTextKernels();
}

} // namespace VornPrivate
