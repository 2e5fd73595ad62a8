// Order and equality by code point, and a hash that agrees with them.
//
// The hash is that of the code points in UTF-8, U+0000 as one zero byte. Ordinary UTF-8 is hashed in place; anything
// else is written in that form to a small buffer first. Blocks of 32 bytes are mixed by multiplication to 128 bits.
#include "Vorn/Text/TextOrder.h"

#include "Vorn/Text/ExactConversion.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>

namespace Vorn {

namespace {

using namespace VornPrivate;

// Returns the number of equal units at the start of both texts.
template <class CharType>
unsigned int equalUnits(const CharType* a, const CharType* b, unsigned int length) {
    constexpr unsigned int UNITS = sizeof(std::uint64_t) / sizeof(CharType);
    unsigned int i = 0;
    for (; length - i >= UNITS && i < 4 * UNITS; i += UNITS)
        if (loadWord<std::uint64_t>(a + i) != loadWord<std::uint64_t>(b + i)) break;
    if (i == 4 * UNITS)
        for (const unsigned int block : {512u, 64u})
            while (length - i >= block && std::memcmp(a + i, b + i, block * sizeof(CharType)) == 0) i += block;
    while (length - i >= UNITS && loadWord<std::uint64_t>(a + i) == loadWord<std::uint64_t>(b + i)) i += UNITS;
    while (i < length && a[i] == b[i]) ++i;
    return i;
}

// Returns how many of the equal units before `at` can belong to a character that goes on behind them.
unsigned int openUnits(const unsigned char* begin, const unsigned char* at) {
    for (unsigned int back = 1; back <= 3 && at - begin >= static_cast<std::ptrdiff_t>(back); ++back)
        if (!isTrailByte(at[-static_cast<std::ptrdiff_t>(back)]))
            return at[-static_cast<std::ptrdiff_t>(back)] < 0x80 ? 0 : back;
    return 0;
}
unsigned int openUnits(const UTF16Char* begin, const UTF16Char* at) {
    return at != begin && isHighSurrogate(at[-1]) ? 1 : 0;
}

int compareCodes(UTF32Char a, UTF32Char b) { return a < b ? -1 : a > b ? 1 : 0; }

// Compares texts of one encoding: skips what is equal unit by unit, and decodes where units differ.
template <class CharType>
int compareSame(const CharType* a, const CharType* endA, const CharType* b, const CharType* endB) {
    const CharType* boundary = a; // no character that starts before it goes on
    for (;;) {
        const auto leftA = static_cast<unsigned int>(endA - a), leftB = static_cast<unsigned int>(endB - b);
        const unsigned int same = equalUnits(a, b, leftA < leftB ? leftA : leftB);
        const unsigned int open = openUnits(boundary, a + same);
        a += same;
        b += same;
        const CharType* const differing = a;
        a -= open;
        b -= open;
        do {
            if (a == endA || b == endB) return compareCodes(a != endA, b != endB);
            const DecodedCharacter inA = decodeNext(a, endA), inB = decodeNext(b, endB);
            if (inA.code != inB.code) return compareCodes(inA.code, inB.code);
            a += inA.units;
            b += inB.units;
        } while (a <= differing);
        boundary = a;
    }
}

int compareMixed(const unsigned char* a, const unsigned char* endA, const UTF16Char* b, const UTF16Char* endB) {
    constexpr std::ptrdiff_t BLOCK = 16;
    for (;;) {
        while (endA - a >= BLOCK && endB - b >= BLOCK) {
            std::uint16_t difference = 0; // words of 16 bits are compared as vectors
            for (std::ptrdiff_t k = 0; k < BLOCK; ++k)
                difference = static_cast<std::uint16_t>(difference | (a[k] ^ b[k]) | (a[k] & 0x80));
            if (difference) break;
            a += BLOCK;
            b += BLOCK;
        }
        for (std::ptrdiff_t k = 0; k < BLOCK; ++k) {
            if (a == endA || b == endB) return compareCodes(a != endA, b != endB);
            const DecodedCharacter inA = decodeNext(a, endA), inB = decodeNext(b, endB);
            if (inA.code != inB.code) return compareCodes(inA.code, inB.code);
            a += inA.units;
            b += inB.units;
        }
    }
}

} // namespace

int compare(TextView a, TextView b) noexcept {
    const unsigned char* const bytesA = a.getUTF8();
    const unsigned char* const bytesB = b.getUTF8();
    const UTF16Char* const unitsA = a.getUTF16();
    const UTF16Char* const unitsB = b.getUTF16();
    const unsigned int lengthA = a.getLength(), lengthB = b.getLength();
    if (lengthA == 0 || lengthB == 0) return compareCodes(lengthA != 0, lengthB != 0);
    if (bytesA && bytesB) return compareSame(bytesA, bytesA + lengthA, bytesB, bytesB + lengthB);
    if (unitsA && unitsB) return compareSame(unitsA, unitsA + lengthA, unitsB, unitsB + lengthB);
    if (bytesA) return compareMixed(bytesA, bytesA + lengthA, unitsB, unitsB + lengthB);
    return -compareMixed(bytesB, bytesB + lengthB, unitsA, unitsA + lengthA);
}

bool equals(TextView a, TextView b) noexcept {
    if (a.isUTF8() && b.isUTF8() && a.getLength() == b.getLength() &&
        (a.isEmpty() || std::memcmp(a.getUTF8(), b.getUTF8(), a.getLength()) == 0))
        return true;
    return compare(a, b) == 0;
}

namespace {

constexpr std::uint64_t KEYS[] = {0x9E3779B97F4A7C15, 0xBF58476D1CE4E5B9, 0x94D049BB133111EB, 0xD6E8FEB86659FD93};

// Multiplies to 128 bits and folds the halves.
std::uint64_t mix(std::uint64_t a, std::uint64_t b) {
#if defined(__SIZEOF_INT128__)
    __extension__ using Wide = unsigned __int128;
    const Wide product = static_cast<Wide>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
#else
    const std::uint64_t lowA = a & 0xFFFFFFFF, highA = a >> 32, lowB = b & 0xFFFFFFFF, highB = b >> 32;
    const std::uint64_t low = lowA * lowB, first = highA * lowB, second = lowA * highB;
    const std::uint64_t middle = (low >> 32) + (first & 0xFFFFFFFF) + (second & 0xFFFFFFFF);
    const std::uint64_t high = highA * highB + (first >> 32) + (second >> 32) + (middle >> 32);
    return (middle << 32 | (low & 0xFFFFFFFF)) ^ high;
#endif
}

// Hashes bytes that are added in parts of any length.
class ByteHash {
public:
    void add(const unsigned char* bytes, std::size_t count) {
        m_total += count;
        if (m_held + count > BLOCK && m_held != 0) {
            const std::size_t part = BLOCK - m_held;
            std::memcpy(m_block + m_held, bytes, part);
            addBlock(m_block);
            m_held = 0;
            bytes += part;
            count -= part;
        }
        for (; count > BLOCK; bytes += BLOCK, count -= BLOCK) addBlock(bytes);
        std::memcpy(m_block + m_held, bytes, count);
        m_held += count;
    }

    std::size_t result() const { return finish(m_first, m_second, m_block, m_held, m_total); }

    // The same for all bytes at once.
    static std::size_t of(const unsigned char* bytes, std::size_t count) {
        ByteHash hash;
        std::size_t left = count;
        for (; left > BLOCK; bytes += BLOCK, left -= BLOCK) hash.addBlock(bytes);
        return finish(hash.m_first, hash.m_second, bytes, left, count);
    }

private:
    static constexpr std::size_t BLOCK = 32;

    void addBlock(const unsigned char* block) {
        m_first = mix(load(block) ^ KEYS[0], load(block + 8) ^ m_first);
        m_second = mix(load(block + 16) ^ KEYS[1], load(block + 24) ^ m_second);
    }

    // Mixes the last 0 to 32 bytes. The words of a short rest overlap, and the total length makes them differ.
    static std::size_t finish(std::uint64_t first, std::uint64_t second, const unsigned char* rest, std::size_t count,
                              std::size_t total) {
        std::uint64_t a = 0, b = 0;
        if (count > 16) first = mix(load(rest) ^ KEYS[2], load(rest + 8) ^ first);
        if (count >= 8) {
            a = load(rest + (count > 16 ? count - 16 : 0));
            b = load(rest + count - 8);
        } else if (count >= 4) {
            a = loadWord<std::uint32_t>(rest);
            b = loadWord<std::uint32_t>(rest + count - 4);
        } else if (count != 0) {
            a = std::uint64_t(rest[0]) << 16 | std::uint64_t(rest[count / 2]) << 8 | rest[count - 1];
        }
        const std::uint64_t hash = mix(mix(a ^ KEYS[1], b ^ first) ^ KEYS[3] ^ total, second ^ KEYS[2]);
        return static_cast<std::size_t>(hash ^ (hash >> 32));
    }

    static std::uint64_t load(const unsigned char* bytes) { return loadWord<std::uint64_t>(bytes); }

    std::uint64_t m_first = KEYS[2];
    std::uint64_t m_second = KEYS[3];
    std::size_t m_held = 0;
    std::size_t m_total = 0;
    unsigned char m_block[BLOCK] = {};
};

std::size_t hashOf(const unsigned char* text, unsigned int length) {
    if (isPlainText(text, length)) return ByteHash::of(text, length);
    OrdinaryText<UTF8Steps<true, false>, false> ordinary(text, length);
    RunCounts run;
    unsigned int i = ordinary.skip(0, run);
    if (i == length) return ByteHash::of(text, length);
    ByteHash hash;
    hash.add(text, i);
    while (i < length) {
        const DecodedCharacter character = decodeNext(text + i, text + length);
        unsigned char bytes[4];
        hash.add(bytes, static_cast<std::size_t>(encodeTo(bytes, character.code) - bytes));
        i += character.units;
        const unsigned int start = i;
        i = ordinary.skip(i, run);
        hash.add(text + start, i - start);
    }
    return hash.result();
}

std::size_t hashOf(const UTF16Char* text, unsigned int length) {
    constexpr unsigned int UNITS = 64; // converted at once, in at most 3 bytes each
    unsigned char bytes[3 * UNITS];
    ByteHash hash;
    for (unsigned int i = 0; i < length;) {
        unsigned int count = length - i < UNITS ? length - i : UNITS;
        if (i + count < length && isHighSurrogate(text[i + count - 1])) --count; // no pair is divided
        const unsigned char* const end = convertExactly<false>(text + i, count, bytes);
        hash.add(bytes, static_cast<std::size_t>(end - bytes));
        i += count;
    }
    return hash.result();
}

} // namespace

std::size_t hashOfText(TextView text) noexcept {
    return text.isUTF8() ? hashOf(text.getUTF8(), text.getLength()) : hashOf(text.getUTF16(), text.getLength());
}

} // namespace Vorn
