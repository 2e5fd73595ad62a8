#include "Vorn/ParseFloat.h"

#include "Vorn/Assert.h"
#include "Vorn/ParseDigits.h"
#include "Vorn/String/String.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

// Sums are computed in double and rounded to the target type where a variable of that type is written. A product or a
// quotient of two floats has the same bits whether it is rounded once or computed in double first.

namespace VornPrivate {

template <class T>
struct FloatType;

template <>
struct FloatType<float> {
    using Whole = unsigned long long; // type of the whole part and of a hexadecimal fraction
    using Bits = unsigned int;
    static constexpr unsigned int HEX_FRACTION_DIGITS = 6;
    static constexpr float TENTH = 0.1f;
};

template <>
struct FloatType<double> {
    using Whole = unsigned int;
    using Bits = unsigned long long;
    static constexpr unsigned int HEX_FRACTION_DIGITS = 12;
    static constexpr double TENTH = 0.1;
};

static_assert(std::numeric_limits<float>::is_iec559 && std::numeric_limits<double>::is_iec559);

template <class T>
constexpr T NOT_A_NUMBER = std::numeric_limits<T>::quiet_NaN();

/// A value and the index after the number.
template <class T>
struct FloatRead {
    T value;
    unsigned int end;
};

/// The upper-case form of a letter.
template <class CharType>
constexpr unsigned int upperCase(CharType c) noexcept {
    return static_cast<unsigned int>(c) & ~0x20u;
}

/// `base` to the power `exponent`, each product rounded to `T`.
template <class T>
constexpr T integerPower(T base, int exponent) noexcept {
    const unsigned int sign = signMask(static_cast<unsigned int>(exponent));
    unsigned int n = (static_cast<unsigned int>(exponent) ^ sign) - sign;
    T result = 1;
    while (true) {
        if (n & 1) result *= base;
        n >>= 1;
        if (n == 0) break;
        base *= base;
    }
    return sign ? T(1) / result : result;
}

/// Adds the digits from index `i` on, as a decimal fraction, to `value`. Returns the index after the last digit.
template <class T, class CharType>
inline unsigned int addFraction(const CharType* str, unsigned int i, unsigned int length, T& value) noexcept {
    if (i >= length) return i;
    const CharType* unit = str + i;
    T weight = FloatType<T>::TENTH;
    const auto addDigit = [&] {
        const int digit = getDecimal(*unit);
        if (digit < 0) return false;
        value = static_cast<T>(static_cast<double>(value) + static_cast<double>(weight) * digit);
        weight *= FloatType<T>::TENTH; // has the same bits as a rounded product in double
        ++unit;
        return true;
    };
    const auto end = [&] { return static_cast<unsigned int>(unit - str); };
    unsigned int remaining = length - i;
    for (; remaining >= 4; remaining -= 4) {
        if (!addDigit() || !addDigit() || !addDigit() || !addDigit()) return end();
    }
    while (remaining > 0 && addDigit()) --remaining;
    return end();
}

/// Reads the exponent from index `i` on, which is after its letter, and multiplies `value` by that power of ten.
template <class T, class CharType>
[[gnu::noinline]] T applyExponent(T value, const CharType* str, unsigned int& i, unsigned int length) noexcept {
    unsigned int count;
    const int exponent = parseSignedDecimalDigits<int>(str + i, &count, length - i);
    i += count;
    return integerPower(T(10), exponent) * value;
}

/// Reads a decimal number without a sign from index `i` on.
template <class T, class CharType>
inline FloatRead<T> parseDecimal(const CharType* str, unsigned int i, unsigned int length) noexcept {
    unsigned int count;
    T value = static_cast<T>(parseDecimalDigits<typename FloatType<T>::Whole>(str + i, &count, length - i));
    i += count;
    if (str[i] == '.') i = addFraction(str, i + 1, length, value);
    if (i + 2 < length && upperCase(str[i]) == 'E') {
        unsigned int end = i + 1;
        value = applyExponent(value, str, end, length);
        return {value, end};
    }
    return {value, i};
}

/// Reads a hexadecimal number without a sign from index `i` on, which is after "0x".
template <class T, class CharType>
[[gnu::noinline]] FloatRead<T> parseHexadecimal(const CharType* str, unsigned int i, unsigned int length) noexcept {
    using Whole = typename FloatType<T>::Whole;
    unsigned int count;
    T value = static_cast<T>(parseHexadecimalDigits<Whole>(str + i, &count, length - i));
    i += count;
    if (count == 0 || i >= length) return {value, i};

    Whole fraction = 0;
    unsigned int digits = 0;
    if (str[i] == '.') {
        ++i;
        if (i >= length) return {value, i};
        fraction =
            parseHexadecimalDigits<Whole>(str + i, &digits, std::min(length - i, FloatType<T>::HEX_FRACTION_DIGITS));
        i += digits;
        if (i < length) { // digits beyond the limit are read, too, and ignored
            parseHexadecimalDigits<Whole>(str + i, &count, length - i);
            i += count;
        }
    }

    int exponent = 0;
    if (i + 1 < length && upperCase(str[i]) == 'P') {
        ++i;
        exponent = parseSignedDecimalDigits<int>(str + i, &count, length - i);
        i += count;
    }
    if (fraction != 0) {
        // Half of the denominator is one bit of a signed word of 32 bits. The shift wraps for more than 8 digits; with
        // 8 digits the word is negative.
        const double half = static_cast<int>(1u << ((4 * digits - 1) % 32));
        const double denominator = 2 * half;
        const T numerator = static_cast<T>(denominator * static_cast<double>(value) + static_cast<double>(fraction));
        value = static_cast<T>(static_cast<double>(numerator) / denominator);
    }
    return {static_cast<T>(std::ldexp(static_cast<double>(value), exponent)), i};
}

template <class T, class CharType>
T parseFloatType(const CharType* str, unsigned int* count, unsigned int length) {
    using Bits = typename FloatType<T>::Bits;
    VORN_ASSERT(str, "null pointer!");
    const auto finish = [count](T value, unsigned int end) {
        if (count) *count = end;
        return value;
    };

    unsigned int i = skipWhiteSpace(str);
    if (upperCase(str[i]) == 'N') return finish(NOT_A_NUMBER<T>, 0);

    // The sign is read without a branch: whether a number has one cannot be predicted.
    const unsigned int first = str[i];
    const bool isSigned = (first == '+') | (first == '-');
    const bool isUnbounded = static_cast<int>(length - i + 1) < 0;
    if ((first == ',') | (isSigned & isUnbounded)) return NOT_A_NUMBER<T>; // `count` is specified to stay unchanged
    const Bits sign = static_cast<Bits>(first == '-') << (sizeof(T) * 8 - 1);
    i += isSigned;
    if (upperCase(str[i]) == 'I') return finish(NOT_A_NUMBER<T>, 0);

    FloatRead<T> read;
    if (i + 2 < length && str[i] == '0' && upperCase(str[i + 1]) == 'X') {
        read = parseHexadecimal<T>(str, i + 2, length);
    } else if (i >= length) {
        return finish(T(0), 0);
    } else {
        read = parseDecimal<T>(str, i, length);
    }
    return finish(std::bit_cast<T>(std::bit_cast<Bits>(read.value) | sign), read.end);
}

/// Reads the UTF-16 buffer, or the UTF-8 buffer if there is no other. The integer parsers prefer UTF-8.
template <class T>
T parseFloatString(const Vorn::String& str) {
    if (const Vorn::StringData* const data = str.getData()) {
        if (const Vorn::UTF16Char* const utf16 = data->getPrivateBuffer<Vorn::UTF16Char>())
            return parseFloatType<T>(utf16, nullptr, data->getBufferInfo<Vorn::UTF16Char>().m_length);
        if (const unsigned char* const utf8 = data->getPrivateBuffer<unsigned char>())
            return parseFloatType<T>(utf8, nullptr, data->getBufferInfo<unsigned char>().m_length);
    }
    return NOT_A_NUMBER<T>;
}

} // namespace VornPrivate

namespace Vorn {

float parseFloat(const unsigned char* str, unsigned int* count, unsigned int length) {
    return VornPrivate::parseFloatType<float>(str, count, length);
}

float parseFloat(const UTF16Char* str, unsigned int* count, unsigned int length) {
    return VornPrivate::parseFloatType<float>(str, count, length);
}

float parseFloat(String str) { return VornPrivate::parseFloatString<float>(str); }

double parseDouble(const unsigned char* str, unsigned int* count, unsigned int length) {
    return VornPrivate::parseFloatType<double>(str, count, length);
}

double parseDouble(const UTF16Char* str, unsigned int* count, unsigned int length) {
    return VornPrivate::parseFloatType<double>(str, count, length);
}

double parseDouble(String str) { return VornPrivate::parseFloatString<double>(str); }

float parseReal(const unsigned char* str, unsigned int* count, unsigned int length) {
    return VornPrivate::parseFloatType<float>(str, count, length);
}

float parseReal(const UTF16Char* str, unsigned int* count, unsigned int length) {
    return VornPrivate::parseFloatType<float>(str, count, length);
}

float parseReal(String str) { return VornPrivate::parseFloatString<float>(str); }

} // namespace Vorn
