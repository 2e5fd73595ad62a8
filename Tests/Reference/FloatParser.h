// The float parsers, written as simply as possible: every value is stored before it is used again, so that each step
// rounds.
#pragma once

#include "Reference/IntegerParser.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <type_traits>
#include <vector>

namespace reference {

/// The value, and the count if one is written.
template <class T>
struct ParsedFloat {
    T value;
    std::optional<unsigned int> count;
};

template <class T>
T rounded(double value) {
    volatile T stored = static_cast<T>(value);
    return stored;
}

/// `base` to the power `exponent` by repeated squaring.
template <class T>
T integerPower(T base, int exponent) {
    unsigned int n = static_cast<unsigned int>(std::abs(static_cast<long long>(exponent)));
    T result = 1;
    while (true) {
        if (n % 2 == 1) result = rounded<T>(static_cast<double>(result) * static_cast<double>(base));
        n /= 2;
        if (n == 0) break;
        base = rounded<T>(static_cast<double>(base) * static_cast<double>(base));
    }
    return exponent < 0 ? rounded<T>(1 / static_cast<double>(result)) : result;
}

/// Reads a text that ends in a terminator. Reading beyond it throws.
template <class T, class CharType>
class FloatParser {
public:
    FloatParser(const CharType* text, unsigned int size) : m_text(text), m_units(text, text + size + 1) {}

    ParsedFloat<T> parse(unsigned int length) const {
        unsigned int i = 0;
        while (unit(i) == 32 || (unit(i) >= 9 && unit(i) <= 13)) ++i;
        if (letter(i) == 'N') return {NOT_A_NUMBER, 0};
        bool negative = false;
        if (unit(i) == '+' || unit(i) == ',' || unit(i) == '-') {
            const unsigned int left = length - i + 1;
            if (left >= 0x80000000 || unit(i) == ',') return {NOT_A_NUMBER, std::nullopt};
            negative = unit(i) == '-';
            ++i;
        }
        if (letter(i) == 'I') return {NOT_A_NUMBER, 0};
        T value = 0;
        if (i + 2 < length && unit(i) == '0' && letter(i + 1) == 'X') {
            value = hexadecimal(i, length);
        } else if (i >= length) {
            return {0, 0};
        } else {
            value = decimal(i, length);
        }
        if (negative) value = withSignBit(value);
        return {value, i};
    }

private:
    static constexpr T NOT_A_NUMBER = std::numeric_limits<T>::quiet_NaN();
    static constexpr bool IS_FLOAT = std::is_same_v<T, float>;

    unsigned int unit(unsigned int index) const { return m_units.at(index); }
    unsigned int letter(unsigned int index) const { return unit(index) & 0xFFFFFFDF; }

    IntegerParser<CharType> from(unsigned int index) const {
        return IntegerParser<CharType>(m_text + index, static_cast<unsigned int>(m_units.size()) - 1 - index);
    }

    static T withSignBit(T value) {
        unsigned char bytes[sizeof(T)];
        std::memcpy(bytes, &value, sizeof(T));
        bytes[sizeof(T) - 1] |= 0x80; // little-endian
        std::memcpy(&value, bytes, sizeof(T));
        return value;
    }

    static T whole(unsigned long long value) {
        volatile T stored;
        if (IS_FLOAT) {
            stored = static_cast<T>(value);
        } else {
            stored = static_cast<T>(static_cast<unsigned int>(value));
        }
        return stored;
    }

    int exponent(unsigned int& i, unsigned int length) const {
        const ParsedInteger parsed = from(i).parseDec(length - i);
        i += parsed.count;
        return static_cast<int>(parsed.value);
    }

    T decimal(unsigned int& i, unsigned int length) const {
        const ParsedInteger parsed = from(i).parseUDec(length - i);
        i += parsed.count;
        T value = whole(parsed.value);
        if (unit(i) == '.') {
            ++i;
            T weight = IS_FLOAT ? static_cast<T>(0.1f) : static_cast<T>(0.1);
            const T factor = weight;
            while (i < length && unit(i) >= '0' && unit(i) <= '9') {
                volatile double product = static_cast<double>(weight) * static_cast<int>(unit(i) - '0');
                volatile double sum = static_cast<double>(value) + product;
                value = rounded<T>(sum);
                weight = rounded<T>(static_cast<double>(weight) * static_cast<double>(factor));
                ++i;
            }
        }
        int power = 0;
        if (i + 2 < length && letter(i) == 'E') {
            ++i;
            power = exponent(i, length);
        }
        return rounded<T>(static_cast<double>(integerPower<T>(10, power)) * static_cast<double>(value));
    }

    T hexadecimal(unsigned int& i, unsigned int length) const {
        i += 2;
        ParsedInteger parsed = from(i).parseUHex(length - i);
        i += parsed.count;
        T value = whole(parsed.value);
        if (parsed.count == 0 || i >= length) return value;
        unsigned long long fraction = 0;
        unsigned int digits = 0;
        if (unit(i) == '.') {
            ++i;
            if (i >= length) return value;
            const unsigned int limit = IS_FLOAT ? 6 : 12;
            parsed = from(i).parseUHex(length - i < limit ? length - i : limit);
            fraction = IS_FLOAT ? parsed.value : parsed.value % 0x100000000;
            digits = parsed.count;
            i += digits;
            if (i < length) i += from(i).parseUHex(length - i).count;
        }
        int power = 0;
        if (i + 1 < length && letter(i) == 'P') {
            ++i;
            power = exponent(i, length);
        }
        if (fraction != 0) {
            const unsigned int shift = (4 * digits - 1) % 32;
            const double half = shift == 31 ? -2147483648.0 : static_cast<double>(1u << shift);
            const double denominator = half + half;
            volatile double product = denominator * static_cast<double>(value);
            volatile double sum = product + static_cast<double>(fraction);
            const T numerator = rounded<T>(sum);
            value = rounded<T>(static_cast<double>(numerator) / denominator);
        }
        return rounded<T>(std::ldexp(static_cast<double>(value), power));
    }

    const CharType* m_text;
    std::vector<CharType> m_units;
};

} // namespace reference
