/// @file
/// VectorConvert: conversions over vectors of 16 bytes of any instruction set that shuffles them. Private.
///
/// All is in an unnamed namespace, so that each file keeps its own copies. Results are stored in whole vectors, whose
/// rest the next results overwrite. The loops stop early enough that this rest lies within the whole text.
#pragma once

#include "TextKernelTables.h"
#include "VectorScan.h"

namespace VornPrivate {
namespace {

/// UTF-8 to UTF-16. The code of a character is formed in the word of each of its bytes, from that byte and the two
/// before it. The word of the last byte has all of it, and is selected.
///
///     bytes      |  61     |  D0     BF     |  E4     BD     A0     |
///     words      |  0061   |  ....   043F   |  ....   ....   4F60   |
///     selected   |  x      |         x      |                x      |
///
/// Of a character of four bytes, the word of the third byte can become the first surrogate.
template <class V>
TextProgress convertToUTF16(const unsigned char* source, std::size_t length, UTF16Char* dest, std::size_t room,
                            bool exact) noexcept {
    using Bytes = typename V::Bytes;
    const Bytes zero = V::zero();
    std::size_t i = 0;
    std::size_t j = 0;
    // Eight words are stored for each eight bytes. 32 bytes behind them have eight characters at least.
    while (length - i >= 48 && room - j >= 16) {
        const Bytes bytes = V::load(source + i);
        if (V::maskOfTops(bytes) == 0) {
            V::widen(bytes, dest + j);
            i += 16;
            j += 16;
            continue;
        }
        const Bytes trails = V::trails(bytes);
        const unsigned int isNextTrail = (source[i + 16] & 0xC0) == 0x80;
        const unsigned int starts =
            (~static_cast<unsigned int>(V::maskOf(trails)) & 0xFFFF) | (isNextTrail ? 0 : 0x10000);
        unsigned int selected = starts >> 1;
        if (selected == 0) break; // malformed

        const Bytes byte1 = V::template behind<1>(bytes);
        const Bytes byte2 = V::template behind<2>(bytes);
        const Bytes trails1 = V::template behind<1>(trails);
        const Bytes fours = V::bitAnd(V::bitAnd(trails, trails1), V::template behind<2>(trails));
        const Bytes thirds = V::withoutFirst(fours);
        const bool hasFours = !V::isZero(fours);
        if (exact && hasFours) selected |= static_cast<unsigned int>(V::maskOf(thirds));
        const auto wordsOf = [&](auto unpack) __attribute__((always_inline)) {
            const auto bits = [](Bytes words, unsigned int mask) { return V::bitAnd(words, V::splat16(mask)); };
            const Bytes byte = unpack(bytes, zero);
            const Bytes before1 = unpack(byte1, zero);
            const Bytes before2 = unpack(byte2, zero);
            const Bytes low = V::bitOr(bits(byte, 0x3F), bits(V::template shiftLeft16<6>(before1), 0xFC0));
            const Bytes trail = unpack(trails, trails);
            Bytes words = V::blend(trail, low, byte);
            words = V::bitOr(
                words, V::bitAnd(V::template shiftLeft16<12>(before2), V::bitAnd(trail, unpack(trails1, trails1))));
            if (hasFours) {
                const Bytes second = V::bitOr(bits(words, 0x3FF), V::splat16(0xDC00));
                words = V::blend(unpack(fours, fours), second, words);
                // 110110 and the bits of the code above the lowest ten, less 0x40.
                const Bytes high = V::bitOr(V::template shiftLeft16<8>(bits(before2, 0x07)),
                                            V::bitOr(V::template shiftLeft16<2>(bits(before1, 0x3F)),
                                                     bits(V::template shiftRight16<4>(byte), 0x03)));
                words = V::blend(unpack(thirds, thirds), V::add16(high, V::splat16(0xD800 - 0x40)), words);
            }
            return words;
        };
        const auto store = [&](Bytes words, unsigned int mask) {
            V::store(dest + j, V::lookUp(words, V::load(COMPRESS_WORDS.bytes[mask])));
            j += onesIn(mask);
        };
        store(wordsOf([](Bytes a, Bytes b) { return V::unpackLow8(a, b); }), selected & 0xFF);
        store(wordsOf([](Bytes a, Bytes b) { return V::unpackHigh8(a, b); }), selected >> 8);
        i += static_cast<std::size_t>(31 - __builtin_clz(starts)); // the last character can be incomplete
    }
    return {i, j};
}

/// Bytes of UTF-8 that have been moved together.
template <class V>
struct Packed {
    typename V::Bytes bytes;
    std::size_t size;
};

/// Encodes four units in words of 32 bits, 0x01 to 0xFFFF. Each becomes the lowest three bytes of its word at first.
template <class V>
inline Packed<V> packFour(typename V::Bytes units) {
    using Bytes = typename V::Bytes;
    const Bytes isLong = V::greater32(units, V::splat32(0x7F));
    const Bytes isThree = V::greater32(units, V::splat32(0x7FF));
    const Bytes tail = V::bitOr(V::bitAnd(units, V::splat32(0x3F)), V::splat32(0x80));
    const Bytes last = V::template shiftLeft32<16>(V::blend(isLong, tail, units));
    const Bytes middle = V::bitOr(V::bitAnd(V::template shiftLeft32<2>(units), V::splat32(0x3F00)),
                                  V::blend(isThree, V::splat32(0x8000), V::splat32(0xC000)));
    const Bytes first = V::bitOr(V::template shiftRight32<12>(units), V::splat32(0xE0));
    const unsigned int index = V::maskOf32(isLong) | V::maskOf32(isThree) << 4;
    const Bytes words = V::bitOr(V::bitOr(first, middle), last);
    return {V::lookUp(words, V::load(COMPRESS_CHARACTERS.bytes[index])), 4 + onesIn(index)};
}

/// Encodes eight units below 0x800, or with `Surrogates` also in pairs, as two bytes each, or one.
template <class V, bool Surrogates>
inline Packed<V> packEight(typename V::Bytes units, Pairs pairs) {
    using Bytes = typename V::Bytes;
    const auto bits = [](Bytes words, unsigned int mask) { return V::bitAnd(words, V::splat16(mask)); };
    const Bytes tail = V::template shiftLeft16<8>(bits(units, 0x3F));
    Bytes words = V::bitOr(V::bitOr(V::template shiftRight16<6>(units), tail), V::splat16(0x80C0));
    if constexpr (Surrogates) {
        const Bytes kind = bits(units, 0xFC00);
        const bool exact = pairs == Pairs::EXACT;
        const Bytes sum = V::add16(bits(units, exact ? 0x3FF : 0xFFFF), V::splat16(exact ? 0x40 : 4));
        const Bytes top = bits(V::template shiftRight16<8>(sum), exact ? 7 : 3);
        const Bytes next = V::template shiftLeft16<6>(bits(exact ? sum : units, 0xFC));
        const Bytes first = V::add16(V::bitOr(top, next), V::splat16(exact ? 0x80F0 : 0x90F0));
        const Bytes before = V::template behind<2>(units);
        const Bytes second = V::bitOr(V::bitOr(tail, bits(V::template shiftRight16<6>(units), 0x0F)),
                                      V::bitOr(V::template shiftLeft16<4>(bits(before, 3)), V::splat16(0x8080)));
        words = V::blend(V::equal16(kind, V::splat16(0xD800)), first, words);
        words = V::blend(V::equal16(kind, V::splat16(0xDC00)), second, words);
    }
    const Bytes isShort = V::equal16(notPlain16<V>(units), V::zero());
    words = V::blend(isShort, V::template shiftLeft16<8>(units), words);
    const unsigned int index = V::maskOf16(isShort);
    return {V::lookUp(words, V::load(COMPRESS_PAIRS.bytes[index])), 16 - onesIn(index)};
}

/// Returns the number of the eight units that pairs and units below 0x800 fill: eight, or seven if the last one is the
/// first half of a pair. Returns 0 if there are others.
template <class V>
inline std::size_t unitsInPairs(typename V::Bytes units) {
    using Bytes = typename V::Bytes;
    const auto maskOf = [=](unsigned int bits, unsigned int value) {
        return V::maskOf16(V::equal16(V::bitAnd(units, V::splat16(bits)), V::splat16(value)));
    };
    const Bytes isBelow = V::equal16(V::bitAnd(units, V::splat16(0xF800)), V::zero());
    const unsigned int firsts = maskOf(0xFC00, 0xD800);
    const unsigned int seconds = maskOf(0xFC00, 0xDC00);
    if ((firsts | seconds | V::maskOf16(isBelow)) != 0xFF || (firsts << 1 & 0xFF) != seconds) return 0;
    return 8 - (firsts >> 7);
}

/// Writes a unit that is in no pair.
inline unsigned char* storeUnit(unsigned char* dest, unsigned int unit) {
    if (unit - 1 < 0x7F) {
        *dest++ = static_cast<unsigned char>(unit);
    } else if (unit < 0x800) {
        *dest++ = static_cast<unsigned char>(0xC0 | unit >> 6);
        *dest++ = static_cast<unsigned char>(0x80 | (unit & 0x3F));
    } else {
        *dest++ = static_cast<unsigned char>(0xE0 | unit >> 12);
        *dest++ = static_cast<unsigned char>(0x80 | (unit >> 6 & 0x3F));
        *dest++ = static_cast<unsigned char>(0x80 | (unit & 0x3F));
    }
    return dest;
}

/// Writes a surrogate pair, exactly or as `encodePair` does.
inline unsigned char* storePair(unsigned char* dest, unsigned int first, unsigned int second, bool exact) {
    const unsigned int sum = exact ? (first & 0x3FF) + 0x40 : first + 4;
    dest[0] = static_cast<unsigned char>(0xF0 + (sum >> 8 & (exact ? 7 : 3)));
    dest[1] = static_cast<unsigned char>(exact ? 0x80 + (sum >> 2 & 0x3F) : 0x90 + (first >> 2 & 0x3F));
    dest[2] = static_cast<unsigned char>(0x80 + ((first & 3) << 4) + (second >> 6 & 0x0F));
    dest[3] = static_cast<unsigned char>(0x80 + (second & 0x3F));
    return dest + 4;
}

template <class V>
TextProgress convertToUTF8(const UTF16Char* source, std::size_t length, unsigned char* dest, std::size_t room,
                           Pairs pairs) noexcept {
    using Bytes = typename V::Bytes;
    std::size_t i = 0;
    std::size_t j = 0;
    const auto store = [&](const Packed<V>& packed) {
        V::store(dest + j, packed.bytes);
        j += packed.size;
    };
    // 16 bytes are stored for each four units, of which each becomes a byte at least.
    while (length - i >= 24 && room - j >= 32) {
        const Bytes units = V::load(source + i);
        if (V::isZero(notPlain16<V>(units))) {
            const Bytes more = V::load(source + i + 8);
            if (V::isZero(notPlain16<V>(more))) {
                V::store(dest + j, V::narrow(units, more));
                i += 16;
                j += 16;
                continue;
            }
        }
        if (V::isZero(V::bitAnd(units, V::splat16(0xF800)))) {
            store(packEight<V, false>(units, pairs));
            i += 8;
            continue;
        }
        const Bytes kind = V::bitAnd(units, V::splat16(0xFC00));
        const bool hasFirsts = !V::isZero(V::equal16(kind, V::splat16(0xD800)));
        if (hasFirsts && pairs != Pairs::APART) {
            if (const std::size_t count = unitsInPairs<V>(units)) {
                store(packEight<V, true>(units, pairs));
                i += count;
                j -= 2 * (8 - count);
                continue;
            }
        } else if (V::isZero(V::equal16(units, V::zero()))) {
            store(packFour<V>(V::unpackLow16(units, V::zero())));
            store(packFour<V>(V::unpackHigh16(units, V::zero())));
            i += 8;
            continue;
        }
        // One by one, up to 32 bytes.
        unsigned char* end = dest + j;
        for (const std::size_t next = i + 8; i < next; ++i) {
            const unsigned int unit = source[i];
            if (pairs != Pairs::APART && (unit & 0xFC00) == 0xD800)
                end = storePair(end, unit, source[++i], pairs == Pairs::EXACT);
            else
                end = storeUnit(end, unit);
        }
        j = static_cast<std::size_t>(end - dest);
    }
    return {i, j};
}

template <class V>
TextProgress matchEncodings(const UTF16Char* wide, std::size_t wideLength, const unsigned char* text,
                            std::size_t length, bool full) noexcept {
    using Bytes = typename V::Bytes;
    const auto differ = [](const Packed<V>& packed, std::size_t size, const unsigned char* at) {
        const std::uint64_t equal = V::equal8(packed.bytes, V::load(at));
        return (~equal & ((1u << size) - 1)) != 0;
    };
    std::size_t i = 0;
    std::size_t j = 0;
    while (wideLength - i >= 8 && length - j >= 32) {
        const Bytes units = V::load(wide + i);
        if (!V::isZero(refusedUnits<V>(units))) break;
        if (!V::isZero(surrogates<V>(units))) {
            const std::size_t count = full ? unitsInPairs<V>(units) : 0;
            const auto maskOf = [=](unsigned int bits, unsigned int value) {
                return V::maskOf16(V::equal16(V::bitAnd(units, V::splat16(bits)), V::splat16(value)));
            };
            if (count == 0 || (maskOf(0xFC3F, 0xD83F) << 1 & maskOf(0xFFFE, 0xDFFE)) != 0) break;
            const Packed<V> packed = packEight<V, true>(units, Pairs::EXACT);
            const std::size_t size = packed.size - 2 * (8 - count);
            if (differ(packed, size, text + j)) break;
            i += count;
            j += size;
            continue;
        }
        if (V::isZero(V::bitAnd(units, V::splat16(0xF800)))) {
            const Packed<V> packed = packEight<V, false>(units, Pairs::APART);
            if (differ(packed, packed.size, text + j)) break;
            i += 8;
            j += packed.size;
            continue;
        }
        const Packed<V> low = packFour<V>(V::unpackLow16(units, V::zero()));
        const Packed<V> high = packFour<V>(V::unpackHigh16(units, V::zero()));
        if (differ(low, low.size, text + j) || differ(high, high.size, text + j + low.size)) break;
        i += 8;
        j += low.size + high.size;
    }
    return {i, j};
}

} // namespace
} // namespace VornPrivate
