/// @file
/// VectorConvert: conversions with a shuffle of 16 bytes, for SSSE3 and later. Private.
///
/// All is in an unnamed namespace, so that each file keeps its own copies. Results are stored in whole vectors, whose
/// rest the next results overwrite. The loops stop early enough that this rest lies within the whole text.
#pragma once

#include "TextKernelTables.h"
#include "VectorScan.h"
#include "VectorsX86.h"

namespace VornPrivate {
namespace {

inline __m128i blend(__m128i mask, __m128i set, __m128i clear) { return _mm_blendv_epi8(clear, set, mask); }

/// UTF-8 to UTF-16. The code of a character is formed in the word of each of its bytes, from that byte and the two
/// before it. The word of the last byte has all of it, and is selected.
///
///     bytes      |  61     |  D0     BF     |  E4     BD     A0     |
///     words      |  0061   |  ....   043F   |  ....   ....   4F60   |
///     selected   |  x      |         x      |                x      |
TextProgress convertToUTF16(const unsigned char* source, std::size_t length, UTF16Char* dest,
                            std::size_t room) noexcept {
    const __m128i zero = _mm_setzero_si128();
    const auto isTrail = [](__m128i v) { return _mm_cmplt_epi8(v, _mm_set1_epi8(-64)); };
    std::size_t i = 0;
    std::size_t j = 0;
    // Eight words are stored for each eight bytes. 32 bytes behind them have eight characters at least.
    while (length - i >= 48 && room - j >= 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + i));
        if (_mm_movemask_epi8(bytes) == 0) {
            V16::widen(bytes, dest + j);
            i += 16;
            j += 16;
            continue;
        }
        const __m128i trails = isTrail(bytes);
        const unsigned int isNextTrail = (source[i + 16] & 0xC0) == 0x80;
        const unsigned int starts =
            (~static_cast<unsigned int>(_mm_movemask_epi8(trails)) & 0xFFFF) | (isNextTrail ? 0 : 0x10000);
        const unsigned int ends = starts >> 1;
        if (ends == 0) break; // malformed

        const __m128i trails1 = _mm_slli_si128(trails, 1);
        const __m128i fours = _mm_and_si128(_mm_and_si128(trails, trails1), _mm_slli_si128(trails, 2));
        const bool hasFours = !V16::isZero(fours);
        const auto wordsOf = [&](auto unpack) {
            const __m128i byte = unpack(bytes, zero);
            const __m128i before1 = unpack(_mm_slli_si128(bytes, 1), zero);
            const __m128i before2 = unpack(_mm_slli_si128(bytes, 2), zero);
            const __m128i low = _mm_or_si128(_mm_and_si128(byte, _mm_set1_epi16(0x3F)),
                                             _mm_and_si128(_mm_slli_epi16(before1, 6), _mm_set1_epi16(0xFC0)));
            const __m128i trail = unpack(trails, trails);
            __m128i words = blend(trail, low, byte);
            words = _mm_or_si128(
                words, _mm_and_si128(_mm_slli_epi16(before2, 12), _mm_and_si128(trail, unpack(trails1, trails1))));
            if (hasFours) {
                const __m128i second = _mm_or_si128(_mm_and_si128(words, _mm_set1_epi16(0x3FF)),
                                                    _mm_set1_epi16(static_cast<short>(0xDC00)));
                words = blend(unpack(fours, fours), second, words);
            }
            return words;
        };
        const auto store = [&](__m128i words, unsigned int mask) {
            V16::store(dest + j, _mm_shuffle_epi8(words, V16::load(COMPRESS_WORDS.bytes[mask])));
            j += static_cast<std::size_t>(__builtin_popcount(mask));
        };
        store(wordsOf([](__m128i a, __m128i b) { return _mm_unpacklo_epi8(a, b); }), ends & 0xFF);
        store(wordsOf([](__m128i a, __m128i b) { return _mm_unpackhi_epi8(a, b); }), ends >> 8);
        i += static_cast<std::size_t>(31 - __builtin_clz(starts)); // the last character can be incomplete
    }
    return {i, j};
}

/// Four characters of UTF-8, each in the lowest three bytes of a word, and the shuffle that moves them together.
struct Characters {
    __m128i words;
    unsigned int index;
    std::size_t size;
};

/// Encodes units in words of 32 bits, 0x01 to 0xFFFF.
inline Characters encodeFour(__m128i units) {
    const __m128i isLong = _mm_cmpgt_epi32(units, _mm_set1_epi32(0x7F));
    const __m128i isThree = _mm_cmpgt_epi32(units, _mm_set1_epi32(0x7FF));
    const __m128i tail = _mm_or_si128(_mm_and_si128(units, _mm_set1_epi32(0x3F)), _mm_set1_epi32(0x80));
    const __m128i last = _mm_slli_epi32(blend(isLong, tail, units), 16);
    const __m128i middle = _mm_or_si128(_mm_and_si128(_mm_slli_epi32(units, 2), _mm_set1_epi32(0x3F00)),
                                        blend(isThree, _mm_set1_epi32(0x8000), _mm_set1_epi32(0xC000)));
    const __m128i first = _mm_or_si128(_mm_srli_epi32(units, 12), _mm_set1_epi32(0xE0));
    const auto index = static_cast<unsigned int>(_mm_movemask_ps(_mm_castsi128_ps(isLong))) |
                       static_cast<unsigned int>(_mm_movemask_ps(_mm_castsi128_ps(isThree))) << 4;
    return {_mm_or_si128(_mm_or_si128(first, middle), last), index,
            4 + static_cast<std::size_t>(__builtin_popcount(index))};
}

inline __m128i joined(const Characters& characters) {
    return _mm_shuffle_epi8(characters.words, V16::load(COMPRESS_CHARACTERS.bytes[characters.index]));
}

/// Writes a surrogate pair, as `encodePair` does.
inline void storePair(unsigned char* dest, unsigned int first, unsigned int second) {
    dest[0] = static_cast<unsigned char>(0xF0 + (((first + 4) >> 8) & 3));
    dest[1] = static_cast<unsigned char>(0x90 + ((first & 0xFF) >> 2));
    dest[2] = static_cast<unsigned char>(0x80 + ((first & 3) << 4) + ((second >> 6) & 0x0F));
    dest[3] = static_cast<unsigned char>(0x80 + (second & 0x3F));
}

TextProgress convertToUTF8(const UTF16Char* source, std::size_t length, unsigned char* dest, std::size_t room,
                           bool pairs) noexcept {
    const __m128i zero = _mm_setzero_si128();
    std::size_t i = 0;
    std::size_t j = 0;
    // 16 bytes are stored for each four units, of which each becomes a byte at least.
    while (length - i >= 24 && room - j >= 32) {
        const __m128i units = V16::load(source + i);
        if (V16::isZero(notPlain16<V16>(units))) {
            const __m128i more = V16::load(source + i + 8);
            if (V16::isZero(notPlain16<V16>(more))) {
                V16::store(dest + j, _mm_packus_epi16(units, more));
                i += 16;
                j += 16;
                continue;
            }
        }
        const __m128i starts = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xFC00)));
        const __m128i firsts = _mm_cmpeq_epi16(starts, _mm_set1_epi16(static_cast<short>(0xD800)));
        const __m128i zeros = _mm_cmpeq_epi16(units, zero);
        if (!V16::isZero(_mm_or_si128(zeros, firsts)) && (pairs || !V16::isZero(zeros))) {
            // One by one, up to 32 bytes.
            for (std::size_t end = i + 8; i < end; ++i) {
                const unsigned int unit = source[i];
                if (pairs && (unit & 0xFC00) == 0xD800) {
                    storePair(dest + j, unit, source[++i]);
                    j += 4;
                } else if (unit - 1 < 0x7F) {
                    dest[j++] = static_cast<unsigned char>(unit);
                } else if (unit < 0x800) {
                    dest[j++] = static_cast<unsigned char>(0xC0 | unit >> 6);
                    dest[j++] = static_cast<unsigned char>(0x80 | (unit & 0x3F));
                } else {
                    dest[j++] = static_cast<unsigned char>(0xE0 | unit >> 12);
                    dest[j++] = static_cast<unsigned char>(0x80 | (unit >> 6 & 0x3F));
                    dest[j++] = static_cast<unsigned char>(0x80 | (unit & 0x3F));
                }
            }
            continue;
        }
        const Characters low = encodeFour(_mm_unpacklo_epi16(units, zero));
        const Characters high = encodeFour(_mm_unpackhi_epi16(units, zero));
        V16::store(dest + j, joined(low));
        j += low.size;
        V16::store(dest + j, joined(high));
        j += high.size;
        i += 8;
    }
    return {i, j};
}

TextProgress matchEncodings(const UTF16Char* wide, std::size_t wideLength, const unsigned char* text,
                            std::size_t length, bool) noexcept {
    const __m128i zero = _mm_setzero_si128();
    std::size_t i = 0;
    std::size_t j = 0;
    while (wideLength - i >= 8 && length - j >= 32) {
        const __m128i units = V16::load(wide + i);
        if (!V16::isZero(_mm_or_si128(refusedUnits<V16>(units), surrogates<V16>(units)))) break;
        const Characters low = encodeFour(_mm_unpacklo_epi16(units, zero));
        const Characters high = encodeFour(_mm_unpackhi_epi16(units, zero));
        const auto differ = [&](const Characters& characters, const unsigned char* at) {
            const std::uint64_t equal = V16::equal8(joined(characters), V16::load(at));
            return (~equal & ((1u << characters.size) - 1)) != 0;
        };
        if (differ(low, text + j) || differ(high, text + j + low.size)) break;
        i += 8;
        j += low.size + high.size;
    }
    return {i, j};
}

} // namespace
} // namespace VornPrivate
