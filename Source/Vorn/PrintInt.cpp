#include "Vorn/PrintInt.h"

#include "Vorn/HexDigit.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace VornPrivate {

namespace {

using Vorn::HexWithPrefix;

/// The sign (1 for a negative value, else 0) and the magnitude of an `int`.
struct SignedParts {
    explicit SignedParts(int value) noexcept
        : negative(static_cast<unsigned int>(value) >> 31),
          magnitude((static_cast<unsigned int>(value) ^ (0 - negative)) + negative) {}

    unsigned int negative;
    unsigned int magnitude;
};

/// The result of `measureDec`. The thresholds from 100004 on are specified not to be powers of ten.
constexpr unsigned int measureDecDigits(unsigned int value) noexcept {
    return 1u + (value >= 10) + (value >= 100) + (value >= 1000) + (value >= 10000) + (value >= 100004) +
           (value >= 1000046) + (value >= 10000463) + (value >= 100718957) + (value >= 1410065408);
}

/// The exact number of decimal digits: an estimate from the bit length, which is exact or one too small, and a
/// comparison with a power of ten. log10(2) is about 1233 / 4096.
unsigned int countDecDigits(unsigned int value) noexcept {
    static constexpr unsigned int POWERS[] = {0,      10,      100,      1000,      10000,
                                              100000, 1000000, 10000000, 100000000, 1000000000};
    const unsigned int guess = (static_cast<unsigned int>(std::bit_width(value | 1)) * 1233) >> 12;
    return guess + (value >= POWERS[guess]);
}

/// Two digits for each value below 100.
struct DigitPairs {
    constexpr DigitPairs() {
        for (int i = 0; i < 100; ++i) {
            digits[2 * i] = static_cast<unsigned char>('0' + i / 10);
            digits[2 * i + 1] = static_cast<unsigned char>('0' + i % 10);
        }
    }
    unsigned char digits[200] = {};
};
constexpr DigitPairs DIGIT_PAIRS;

/// Writes the two digits of a value below 100 in front of `end`.
template <class CharType>
CharType* writeDigitPair(unsigned int value, CharType* end) noexcept {
    const unsigned char* const pair = DIGIT_PAIRS.digits + 2 * value;
    end -= 2;
    if constexpr (sizeof(CharType) == 1) {
        std::memcpy(end, pair, 2);
    } else {
        std::copy_n(pair, 2, end);
    }
    return end;
}

/// Writes the digits of `value` so that they end in front of `end`.
template <class CharType>
void writeDecDigits(unsigned int value, CharType* end) noexcept {
    while (value >= 10000) { // four digits at a time: each division depends on the previous one
        const unsigned int four = value % 10000;
        value /= 10000;
        end = writeDigitPair(four % 100, end);
        end = writeDigitPair(four / 100, end);
    }
    if (value >= 100) {
        end = writeDigitPair(value % 100, end);
        value /= 100;
    }
    if (value >= 10) {
        writeDigitPair(value, end);
    } else {
        *--end = static_cast<CharType>('0' + value);
    }
}

template <class CharType>
unsigned int printDecDigits(unsigned int magnitude, CharType* buffer, unsigned int bufferSize,
                            unsigned int negative) noexcept {
    if constexpr (sizeof(CharType) == 1) {
        if (magnitude < 10 && bufferSize > negative) { // frequent enough to spare it the count
            buffer[0] = '-';
            buffer[negative] = static_cast<CharType>('0' + magnitude);
            return 1 + negative;
        }
    }
    const unsigned int count = countDecDigits(magnitude) + negative;
    if (count > bufferSize) return count;
    if constexpr (sizeof(CharType) == 1) {
        buffer[0] = '-'; // the first digit covers it unless the value is negative
        writeDecDigits(magnitude, buffer + count);
    } else {
        CharType text[11];
        text[0] = '-';
        writeDecDigits(magnitude, text + count);
        std::memcpy(buffer, text, count); // copies as many bytes as the text has units: the first half
    }
    return count;
}

/// The number of hexadecimal digits. All bits below the highest one are set and counted, which gives the bit length.
constexpr unsigned int measureHexDigits(unsigned int value) noexcept {
    value |= value >> 1;
    value |= value >> 2;
    value |= value >> 4;
    value |= value >> 8;
    value |= value >> 16;
    value -= (value >> 1) & 0x55555555;
    value = (value & 0x33333333) + ((value >> 2) & 0x33333333);
    value = (value + (value >> 4)) & 0x0F0F0F0F;
    const unsigned int bits = (value * 0x01010101) >> 24;
    return ((bits + 3) >> 2) + (bits == 0);
}

/// Builds "-0x" and all eight digits, and prints the end of that: the digits, and as many units before them as prefix
/// and sign have. A sign without a prefix therefore prints the "x".
template <class CharType>
unsigned int printHexDigits(unsigned int value, HexWithPrefix prefix, CharType* buffer, unsigned int bufferSize,
                            unsigned int negative) noexcept {
    const unsigned int count = measureHexDigits(value);
    const unsigned int total = count + prefix + negative;
    if (total > bufferSize) return total;

    constexpr unsigned int SIZE = 11;
    CharType text[SIZE];
    for (unsigned int i = 0; i < 8; ++i) text[SIZE - 1 - i] = hexDigitChar((value >> (4 * i)) & 15);
    CharType* const first = text + SIZE - count;
    first[-3] = '-';
    first[-2] = '0';
    first[-1] = 'x';
    std::memcpy(buffer, first - prefix - negative, total * sizeof(CharType));
    return total;
}

template <class CharType>
unsigned int printDec(int value, CharType* buffer, unsigned int bufferSize) noexcept {
    if (!buffer) return Vorn::measureDec(value);
    const SignedParts parts(value);
    return printDecDigits(parts.magnitude, buffer, bufferSize, parts.negative);
}

template <class CharType>
unsigned int printDec(unsigned int value, CharType* buffer, unsigned int bufferSize) noexcept {
    if (!buffer) return Vorn::measureDec(value);
    return printDecDigits(value, buffer, bufferSize, 0);
}

template <class CharType>
unsigned int printHex(int value, HexWithPrefix prefix, CharType* buffer, unsigned int bufferSize) noexcept {
    if (!buffer) return Vorn::measureHex(value, prefix);
    const SignedParts parts(value);
    return printHexDigits(parts.magnitude, prefix, buffer, bufferSize, parts.negative);
}

template <class CharType>
unsigned int printHex(unsigned int value, HexWithPrefix prefix, CharType* buffer, unsigned int bufferSize) noexcept {
    if (!buffer) return Vorn::measureHex(value, prefix);
    return printHexDigits(value, prefix, buffer, bufferSize, 0);
}

} // namespace

} // namespace VornPrivate

namespace Vorn {

unsigned int measureDec(int value) noexcept {
    const VornPrivate::SignedParts parts(value);
    return VornPrivate::measureDecDigits(parts.magnitude) + parts.negative;
}

unsigned int measureDec(unsigned int value) noexcept { return VornPrivate::measureDecDigits(value); }

unsigned int printDec(int value, unsigned char* buffer, unsigned int bufferSize) noexcept {
    return VornPrivate::printDec(value, buffer, bufferSize);
}

unsigned int printDec(int value, UTF16Char* buffer, unsigned int bufferSize) noexcept {
    return VornPrivate::printDec(value, buffer, bufferSize);
}

unsigned int printDec(unsigned int value, unsigned char* buffer, unsigned int bufferSize) noexcept {
    return VornPrivate::printDec(value, buffer, bufferSize);
}

unsigned int printDec(unsigned int value, UTF16Char* buffer, unsigned int bufferSize) noexcept {
    return VornPrivate::printDec(value, buffer, bufferSize);
}

unsigned int measureHex(int value, HexWithPrefix prefix) noexcept {
    const VornPrivate::SignedParts parts(value);
    return VornPrivate::measureHexDigits(parts.magnitude) + prefix + parts.negative;
}

unsigned int measureHex(unsigned int value, HexWithPrefix prefix) noexcept {
    return VornPrivate::measureHexDigits(value) + prefix;
}

unsigned int printHex(int value, HexWithPrefix prefix, unsigned char* buffer, unsigned int bufferSize) noexcept {
    return VornPrivate::printHex(value, prefix, buffer, bufferSize);
}

unsigned int printHex(int value, HexWithPrefix prefix, UTF16Char* buffer, unsigned int bufferSize) noexcept {
    return VornPrivate::printHex(value, prefix, buffer, bufferSize);
}

unsigned int printHex(unsigned int value, HexWithPrefix prefix, unsigned char* buffer,
                      unsigned int bufferSize) noexcept {
    return VornPrivate::printHex(value, prefix, buffer, bufferSize);
}

unsigned int printHex(unsigned int value, HexWithPrefix prefix, UTF16Char* buffer, unsigned int bufferSize) noexcept {
    return VornPrivate::printHex(value, prefix, buffer, bufferSize);
}

} // namespace Vorn
