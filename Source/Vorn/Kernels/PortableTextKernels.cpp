// The portable kernels, without any instruction of a set.
#include "../PlainText.h"
#include "../TextEncoding.h"
#include "../UTF16Runs.h"
#include "../UTF8Runs.h"
#include "TextKernelTables.h"

#include <algorithm>

namespace VornPrivate {

namespace portable {

namespace {

// The runs of plain code have lengths of 32 bits.
constexpr std::size_t LONGEST_RUN = 0x40000000;
unsigned int runLength(std::size_t length) { return static_cast<unsigned int>(std::min(length, LONGEST_RUN)); }

template <bool Full>
UTF8Run runOf(const unsigned char* text, std::size_t length) {
    RunCounts counts;
    const unsigned int end = skipOrdinary<Full, false>(text, 0, runLength(length), counts);
    return {end, counts.characters, counts.fourBytes, counts.beyondASCII || counts.fourBytes != 0};
}

template <bool Full, unsigned int FirstOfTwo>
UTF16Run runOf(const UTF16Char* text, std::size_t length) {
    UnitCounts<FirstOfTwo> counts;
    const unsigned int end = skipOrdinary<Full, false>(text, 0, runLength(length), counts);
    return {end, std::size_t(counts.twoBytes) + counts.threeBytes + 2 * std::size_t(counts.pairs), counts.pairs,
            counts.twoBytes != 0 || counts.pairs != 0};
}

bool isAlwaysSupported() noexcept { return true; }

UTF16Run scanUTF16(const UTF16Char* text, std::size_t length) noexcept { return runOf<true, 0x80>(text, length); }

UTF16Run measureUTF16(const UTF16Char* text, std::size_t length, unsigned int firstOfTwo, bool full) noexcept {
    if (full) return firstOfTwo == 0x7F ? runOf<true, 0x7F>(text, length) : runOf<true, 0x80>(text, length);
    return firstOfTwo == 0x7F ? runOf<false, 0x7F>(text, length) : runOf<false, 0x80>(text, length);
}

template <class Unit>
std::size_t skipASCII(const Unit* text, std::size_t length) noexcept {
    return findPlainEnd(text, 0, runLength(length));
}

std::size_t skipTerminatedASCII(const unsigned char* text, std::size_t length) noexcept {
    std::size_t i = 0;
    while (i < length && isPlain(text[i])) ++i;
    return i;
}

// Copied in blocks that stay in the cache between their check and their copy.
template <class Source, class Dest>
std::size_t copyASCII(const Source* source, std::size_t length, Dest* dest) noexcept {
    constexpr unsigned int BLOCK = 1024;
    const unsigned int end = runLength(length);
    unsigned int i = 0;
    while (i < end) {
        const unsigned int blockEnd = i + std::min(end - i, BLOCK);
        const unsigned int plainEnd = findPlainEnd(source, i, blockEnd);
        for (; i < plainEnd; ++i) dest[i] = static_cast<Dest>(source[i]);
        if (plainEnd < blockEnd) break;
    }
    return i;
}

std::size_t matchUnits(const unsigned char* text, const UTF16Char* wide, std::size_t length) noexcept {
    std::size_t i = 0;
    while (i < length && text[i] == wide[i]) ++i;
    return i;
}

template <class Unit>
std::size_t count(const Unit* text, std::size_t length, Unit unit) noexcept {
    std::size_t found = 0;
    for (std::size_t i = 0; i < length; ++i) found += text[i] == unit;
    return found;
}

void locate8(const unsigned char* text, std::size_t blocks, unsigned char byte, std::uint64_t* masks) noexcept {
    for (std::size_t k = 0; k < blocks; ++k) {
        masks[k] = 0;
        for (unsigned int bit = 0; bit < 64; ++bit)
            masks[k] |= static_cast<std::uint64_t>(text[64 * k + bit] == byte) << bit;
    }
}

std::size_t findZero(const UTF16Char* text, std::size_t length) noexcept {
    std::size_t i = 0;
    while (i < length && text[i] != 0) ++i;
    return i;
}

} // namespace

UTF8Run scanUTF8(const unsigned char* text, std::size_t length) noexcept { return runOf<true>(text, length); }

UTF8Run measureUTF8(const unsigned char* text, std::size_t length, bool full) noexcept {
    return full ? runOf<true>(text, length) : runOf<false>(text, length);
}

TextProgress toUTF16(const unsigned char* source, std::size_t length, UTF16Char* dest, std::size_t room,
                     bool exact) noexcept {
    const unsigned char* const sourceEnd = source + length;
    const UTF16Char* const destEnd = dest + room;
    Conversion at{source, dest};
    if (exact) {
        for (;;) {
            at = convertOrdinary<false>(at, sourceEnd, destEnd);
            if (sourceEnd - at.source < 4 || destEnd - at.dest < 2 || !isOrdinary4(at.source)) break;
            const unsigned int code = decode4(at.source) - 0x10000;
            *at.dest++ = static_cast<UTF16Char>(0xD800 + (code >> 10));
            *at.dest++ = static_cast<UTF16Char>(0xDC00 + (code & 0x3FF));
            at.source += 4;
        }
    } else {
        at = convertOrdinary<true>(at, sourceEnd, destEnd);
    }
    return {static_cast<std::size_t>(at.source - source), static_cast<std::size_t>(at.dest - dest)};
}

TextProgress toUTF8(const UTF16Char* source, std::size_t length, unsigned char* dest, std::size_t room,
                    Pairs pairs) noexcept {
    unsigned int i = 0;
    std::size_t j = 0;
    while (i < runLength(length) && room - j >= LONGEST_CHARACTER) {
        const bool isPair = pairs != Pairs::APART && (source[i] & 0xFC00) == 0xD800;
        if (isPair && i + 1 == length) break; // the unit behind it is left to the caller
        unsigned char* end = dest + j;
        if (!isPair)
            end = encodeUnit(end, source[i]);
        else if (pairs == Pairs::EXACT)
            end = encodeExactPair(end, source[i], source[i + 1]);
        else
            end = encodePair(end, source[i], source[i + 1]);
        i += isPair ? 2 : 1;
        j = static_cast<std::size_t>(end - dest);
    }
    return {i, j};
}

TextProgress match(const UTF16Char* wide, std::size_t wideLength, const unsigned char* text, std::size_t length,
                   bool full) noexcept {
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < wideLength && length - j >= LONGEST_CHARACTER) {
        const bool isPair = full && wideLength - i >= 2 && isOrdinaryPair(wide[i], wide[i + 1]);
        if (isPair) {
            const unsigned int code = 0x10000 + ((wide[i] & 0x3FFu) << 10 | (wide[i + 1] & 0x3FFu));
            if (!isOrdinary4(text + j) || decode4(text + j) != code) break;
            i += 2;
            j += 4;
            continue;
        }
        if (!isOrdinaryUnit(wide[i])) break;
        const unsigned int unit = wide[i];
        const unsigned char* const at = text + j;
        if (unit < 0x80) {
            if (*at != unit) break;
            j += 1;
        } else if (unit < 0x800) {
            if (!isOrdinary2(at) || decode2(at) != unit) break;
            j += 2;
        } else {
            if (!isOrdinary3(at) || decode3(at) != unit) break;
            j += 3;
        }
        ++i;
    }
    return {i, j};
}

} // namespace portable

constinit const TextKernels portableTextKernels = {
    "portable",
    portable::isAlwaysSupported,
    portable::scanUTF8,
    portable::measureUTF8,
    portable::scanUTF16,
    portable::measureUTF16,
    portable::copyASCII<unsigned char, UTF16Char>,
    portable::copyASCII<UTF16Char, unsigned char>,
    portable::skipASCII<unsigned char>,
    portable::skipASCII<UTF16Char>,
    portable::skipTerminatedASCII,
    portable::toUTF16,
    portable::toUTF8,
    portable::match,
    portable::matchUnits,
    portable::count<unsigned char>,
    portable::count<UTF16Char>,
    portable::findZero,
    portable::locate8,
};

} // namespace VornPrivate
