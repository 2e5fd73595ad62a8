/// @file
/// ExactConversion: converts any text between UTF-8, UTF-16 and UTF-32 exactly. Private.
///
/// Malformed units become U+FFFD, one for each maximal subpart of a character. U+0000 is written as a zero unit, or for
/// the text of a String (`ForString`) in UTF-8 as 0xC0 0x80. Nothing here throws or allocates.
#pragma once

#include "Vorn/OrdinaryText.h"
#include "Vorn/PlainText.h"
#include "Vorn/Private/TextDecoding.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace VornPrivate {

using Vorn::UTF32Char;

/// Returns true if all bytes are 0x01 to 0x7F. Short texts take a few operations.
inline bool isPlainText(const unsigned char* text, unsigned int length) {
    return length <= SHORT_UNITS ? isShortPlain(text, length) : skipASCII(text, length) == length;
}

/// Calls `f` with the units and the length of a text.
template <class F>
auto withUnits(Vorn::TextView text, F f) {
    return text.isUTF8() ? f(text.getUTF8(), text.getLength()) : f(text.getUTF16(), text.getLength());
}

/// The number of units of a code point in UTF-8 or UTF-16.
template <class Target, bool ForString>
constexpr unsigned int unitsOf(UTF32Char code) noexcept {
    if (sizeof(Target) == 2) return code < 0x10000 ? 1 : 2;
    if (code < 0x80) return ForString && code == 0 ? 2 : 1;
    return code < 0x800 ? 2 : code < 0x10000 ? 3 : 4;
}

/// How ordinary text of each encoding is passed and measured.
template <class Source>
using ExactSteps = std::conditional_t<sizeof(Source) == 1, UTF8Steps<true, true>, UTF16Steps<true, true, 0x80>>;

/// The length of a text in UTF-8 or UTF-16.
template <class Target, bool ForString, class Source>
std::uint64_t convertedLength(const Source* source, unsigned int length) {
    OrdinaryText<ExactSteps<Source>, false> ordinary(source, length);
    typename ExactSteps<Source>::Result run;
    std::uint64_t others = 0;    // units of the result for characters that runs do not skip
    unsigned int otherUnits = 0; // units of these characters
    for (unsigned int i = 0; (i = ordinary.skip(i, run)) < length;) {
        const DecodedCharacter character = decodeNext(source + i, source + length);
        others += unitsOf<Target, ForString>(character.code);
        otherUnits += character.units;
        i += character.units;
    }
    const unsigned int runUnits = length - otherUnits;
    if constexpr (sizeof(Source) == sizeof(Target))
        return runUnits + others;
    else if constexpr (sizeof(Source) == 1)
        return std::uint64_t(run.characters) + run.fourBytes + others;
    else
        return std::uint64_t(runUnits) + run.extraBytes + others;
}

/// Copies blocks of ASCII from `source` to `dest`, and moves both behind them.
template <bool ForString, class Source, class Target>
inline void convertPlain(const Source*& source, const Source* end, Target*& dest) {
    constexpr std::ptrdiff_t BLOCK = 16;
    while (end - source >= BLOCK) {
        Source all = 0;
        bool hasNull = false; // of two bytes in the UTF-8 of a String
        for (std::ptrdiff_t k = 0; k < BLOCK; ++k) {
            all = static_cast<Source>(all | source[k]);
            if (ForString && sizeof(Target) == 1) hasNull |= source[k] == 0;
        }
        if (all >= 0x80 || hasNull) return;
        for (std::ptrdiff_t k = 0; k < BLOCK; ++k) dest[k] = static_cast<Target>(source[k]);
        source += BLOCK;
        dest += BLOCK;
    }
}

inline char32_t* encodeTo(char32_t* dest, UTF32Char code) noexcept {
    *dest = code;
    return dest + 1;
}

/// Writes a text in another encoding, character by character. Returns the end.
template <bool ForString, class Source, class Target>
Target* convertCharacters(const Source* source, const Source* end, Target* dest) {
    while (source != end) {
        if (*source < 0x80) convertPlain<ForString>(source, end, dest);
        // Other scripts have few runs of sixteen plain characters.
        for (unsigned int k = 0; k < 16 && source != end; ++k) {
            const DecodedCharacter character = decodeNext(source, end);
            source += character.units;
            if constexpr (ForString)
                dest = encodeForString(dest, character.code);
            else
                dest = encodeTo(dest, character.code);
        }
    }
    return dest;
}

/// Writes ordinary text, which has been measured, in another encoding or the same one. Returns the end.
template <class Source, class Target>
Target* convertRun(const Source* source, unsigned int length, Target* dest,
                   const typename ExactSteps<Source>::Result& run) {
    if constexpr (sizeof(Source) == sizeof(Target)) {
        std::memcpy(dest, source, std::size_t(length) * sizeof(Source));
        return dest + length;
    } else {
        TextProgress done{0, 0};
        if (length >= SHORT_TEXT) {
            if constexpr (sizeof(Source) == 1)
                done = textKernels().toUTF16(source, length, dest, std::size_t(run.characters) + run.fourBytes, true);
            else
                done = textKernels().toUTF8(source, length, dest, static_cast<std::size_t>(length + run.extraBytes),
                                            Pairs::EXACT);
        }
        return convertCharacters<false>(source + done.source, source + length, dest + done.dest);
    }
}

/// Writes a text in another encoding, or the same one, to memory of the length that `convertedLength` returns. Returns
/// the end.
template <bool ForString, class Source, class Target>
Target* convertExactly(const Source* source, unsigned int length, Target* dest) {
    const Source* const end = source + length;
    if constexpr (sizeof(Target) == sizeof(char32_t)) {
        return convertCharacters<ForString>(source, end, dest);
    } else {
        OrdinaryText<ExactSteps<Source>, false> ordinary(source, length);
        for (unsigned int i = 0; i < length;) {
            typename ExactSteps<Source>::Result run;
            const unsigned int runEnd = ordinary.skip(i, run);
            dest = convertRun(source + i, runEnd - i, dest, run);
            i = runEnd;
            if (i == length) break;
            const DecodedCharacter character = decodeNext(source + i, end);
            i += character.units;
            if constexpr (ForString)
                dest = encodeForString(dest, character.code);
            else
                dest = encodeTo(dest, character.code);
        }
        return dest;
    }
}

} // namespace VornPrivate
