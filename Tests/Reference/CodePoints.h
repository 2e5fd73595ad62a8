// Single characters in slow, plain arithmetic: the definitions of the encodings, without a mask or a shift. Shares no
// code with the library.
#pragma once

#include <random>
#include <vector>

namespace reference {

constexpr bool within(unsigned int c, unsigned int first, unsigned int last) { return first <= c && c <= last; }

constexpr bool isFirstSurrogate(unsigned int c) { return within(c, 0xD800, 0xDBFF); }
constexpr bool isSecondSurrogate(unsigned int c) { return within(c, 0xDC00, 0xDFFF); }
constexpr bool isSurrogate(unsigned int c) { return within(c, 0xD800, 0xDFFF); }
constexpr bool isNonCharacter(unsigned int c) {
    return within(c, 0xFDD0, 0xFDEF) || c % 0x10000 == 0xFFFE || c % 0x10000 == 0xFFFF;
}

/// True for a code that is valid in text.
constexpr bool isCharacter(unsigned int c) { return c <= 0x10FFFF && !isSurrogate(c) && !isNonCharacter(c); }

/// Bytes of a character in UTF-8.
constexpr unsigned int sizeInUTF8(unsigned int c) { return c < 0x80 ? 1 : c < 0x800 ? 2 : c < 0x10000 ? 3 : 4; }

/// The sequence of `size` bytes that holds c, packed big-endian; overlong if c needs fewer.
constexpr unsigned int sequence(unsigned int c, unsigned int size) {
    switch (size) {
    case 1: return c;
    case 2: return (0xC0 + c / 0x40) * 0x100 + (0x80 + c % 0x40);
    case 3: return (0xE0 + c / 0x1000) * 0x10000 + (0x80 + c / 0x40 % 0x40) * 0x100 + (0x80 + c % 0x40);
    default:
        return (0xF0 + c / 0x40000) * 0x1000000 + (0x80 + c / 0x1000 % 0x40) * 0x10000 +
               (0x80 + c / 0x40 % 0x40) * 0x100 + (0x80 + c % 0x40);
    }
}

/// The code in the bits of a packed sequence of `size` bytes, valid or not.
constexpr unsigned int codeOfSequence(unsigned int seq, unsigned int size) {
    const unsigned int last = seq % 0x40;
    const unsigned int third = seq / 0x100 % 0x40 * 0x40;
    const unsigned int second = seq / 0x10000 % 0x40 * 0x1000;
    switch (size) {
    case 2: return seq / 0x100 % 0x20 * 0x40 + last;
    case 3: return seq / 0x10000 % 0x10 * 0x1000 + third + last;
    default: return seq / 0x1000000 % 8 * 0x40000 + second + third + last;
    }
}

constexpr bool isTrailByte(unsigned int byte) { return within(byte, 0x80, 0xBF); }

/// True if the last `size` bytes of the word are a lead byte of that size and its trail bytes. The bytes before them
/// are not tested.
constexpr bool hasPattern(unsigned int seq, unsigned int size) {
    const unsigned int b1 = seq / 0x1000000;
    const unsigned int b2 = seq / 0x10000 % 0x100;
    const unsigned int b3 = seq / 0x100 % 0x100;
    const unsigned int b4 = seq % 0x100;
    if (!isTrailByte(b4)) return false;
    switch (size) {
    case 2: return within(b3, 0xC0, 0xDF);
    case 3: return within(b2, 0xE0, 0xEF) && isTrailByte(b3);
    default: return within(b1, 0xF0, 0xF7) && isTrailByte(b2) && isTrailByte(b3);
    }
}

constexpr unsigned int firstSurrogateOf(unsigned int c) { return 0xD800 + (c - 0x10000) / 0x400; }
constexpr unsigned int secondSurrogateOf(unsigned int c) { return 0xDC00 + (c - 0x10000) % 0x400; }
constexpr unsigned int codeOfPair(unsigned int first, unsigned int second) {
    return 0x10000 + (first - 0xD800) * 0x400 + (second - 0xDC00);
}

/// True for packed words of 3 and 4 bytes that are refused.
constexpr bool isInvalid3Bytes(unsigned int seq) {
    return within(seq, 0xEDA080, 0xEDBFBF) || within(seq, 0xEFB790, 0xEFB7AF) || seq == 0xEFBFBE || seq == 0xEFBFBF;
}
constexpr bool isInvalid4Bytes(unsigned int seq) {
    return within(seq % 0x100000, 0xFBFBE, 0xFBFBF) || seq > 0xF48FBFBE || within(seq, 0xF08DA080, 0xF08DBFBF) ||
           within(seq, 0xF08FB790, 0xF08FB7AF);
}

/// The kind of a byte, as a sentinel of the library.
constexpr unsigned int kindOfByte(unsigned int byte) {
    if (byte < 0x80) return byte;
    if (byte < 0xC0) return 0xFDD0;
    if (byte < 0xE0) return 0xFDD2;
    if (byte < 0xF0) return 0xFDD3;
    return byte < 0xF5 ? 0xFDD4 : 0xFDEF;
}

/// The kind of a unit, as a sentinel of the library.
constexpr unsigned int kindOfUnit(unsigned int unit) {
    if (isFirstSurrogate(unit)) return 0xFDD1;
    if (isSecondSurrogate(unit)) return 0xFDD2;
    return isNonCharacter(unit) ? 0xFDEF : unit;
}

/// All values from `first` to `last`.
class Interval {
public:
    constexpr Interval(unsigned int first, unsigned int last) : m_first(first), m_last(last) {}

    class Iterator {
    public:
        constexpr explicit Iterator(unsigned long long value) : m_value(value) {}
        constexpr unsigned int operator*() const { return static_cast<unsigned int>(m_value); }
        constexpr Iterator& operator++() {
            ++m_value;
            return *this;
        }
        constexpr bool operator!=(const Iterator& other) const { return m_value != other.m_value; }

    private:
        unsigned long long m_value;
    };

    constexpr Iterator begin() const { return Iterator(m_first); }
    constexpr Iterator end() const { return Iterator(m_last + 1ull); }
    constexpr unsigned int last() const { return m_last; }

private:
    unsigned int m_first;
    unsigned int m_last;
};

/// Every byte, every unit, and every code of Unicode with some beyond.
inline constexpr Interval allBytes(0, 0xFF);
inline constexpr Interval allUnits(0, 0xFFFF);
inline constexpr Interval allCodes(0, 0x110FFF);

/// Words of 32 bits from the whole range: the surroundings of each power of two, of its sums with the places where
/// codes change their kind, and random ones.
inline std::vector<unsigned int> wordsOfAllSizes() {
    std::vector<unsigned int> words;
    const unsigned int places[] = {0x80, 0x800, 0xD800, 0xE000, 0xFDD0, 0xFDF0, 0xFFFE, 0x10000, 0x10FFFE, 0x110000};
    for (unsigned int bit = 0; bit < 32; ++bit) {
        const unsigned int power = 1u << bit;
        for (unsigned int near = 0; near <= 0x120; ++near) words.insert(words.end(), {power + near, power - near});
        for (const unsigned int place : places) {
            for (unsigned int near = 0; near <= 3; ++near) {
                words.insert(words.end(), {power + place + near, power + place - near, power - place - near});
            }
        }
    }
    std::mt19937 random(1);
    for (int i = 0; i < 100000; ++i) words.push_back(static_cast<unsigned int>(random()));
    return words;
}

/// Packed words: every one of one, two and three bytes in its pattern, every one of four, the same with strange upper
/// bytes, words that miss a pattern by one bit, and everything in `wordsOfAllSizes`.
inline std::vector<unsigned int> packedWords() {
    std::vector<unsigned int> words = wordsOfAllSizes();
    for (const unsigned int word : allUnits) words.insert(words.end(), {word, word + 0x10000, word + 0x80000000});
    for (const unsigned int code : Interval(0, 0xFFFF)) {
        const unsigned int word = sequence(code, 3);
        words.insert(words.end(), {word, word + 0x1000000, word + 0xE1000000});
    }
    for (const unsigned int code : Interval(0, 0x1FFFFF)) words.push_back(sequence(code, 4));
    for (const unsigned int code : {0u, 0x7Fu, 0xD800u, 0xFDD0u, 0xFFFEu, 0x10000u, 0x3FFFFu, 0x10FFFDu, 0x1FFFFFu}) {
        for (unsigned int bit = 0; bit < 32; ++bit) {
            words.push_back(sequence(code, 4) ^ (1u << bit));
            if (code < 0x10000) words.push_back(sequence(code, 3) ^ (1u << bit));
            if (code < 0x800) words.push_back(sequence(code, 2) ^ (1u << bit));
        }
    }
    return words;
}

/// Bytes at the limits of byte kinds, and their neighbours.
inline constexpr unsigned char selectedBytes[] = {0x00, 0x01, 0x7E, 0x7F, 0x80, 0x81, 0x8D, 0x8F, 0x90, 0x9F, 0xA0,
                                                  0xAF, 0xB0, 0xB7, 0xBD, 0xBE, 0xBF, 0xC0, 0xC1, 0xC2, 0xDF, 0xE0,
                                                  0xED, 0xEF, 0xF0, 0xF3, 0xF4, 0xF5, 0xF7, 0xF8, 0xFF};

} // namespace reference
