#include "Vorn/PrintFloat.h"

#include "Vorn/Assert.h"
#include "Vorn/HexDigit.h"
#include "Vorn/PrintInt.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <locale>
#include <ostream>
#include <streambuf>
#include <type_traits>

namespace VornPrivate {

using Vorn::FloatExponent;

/// The character type of the stream that prints units of a type. Streams exist for `char` and `wchar_t`, of any width.
template <class CharType>
using StreamChar = std::conditional_t<sizeof(CharType) == 1, char, wchar_t>;

/// A stream buffer that counts characters and, if it has a destination, stores them. It has no put area, so each
/// character is passed to `overflow`. It does not check the size of the destination.
template <class CharType>
class FloatOutBuf : public std::basic_streambuf<StreamChar<CharType>> {
    using Base = std::basic_streambuf<StreamChar<CharType>>;

public:
    FloatOutBuf() : m_buffer(nullptr), m_count(0) {}

    unsigned int getCount() const { return m_count; }

    void reset(CharType* buffer) {
        m_buffer = buffer;
        m_count = 0;
    }

protected:
    typename Base::int_type overflow(typename Base::int_type c) override {
        if (m_buffer) m_buffer[m_count] = static_cast<CharType>(c);
        ++m_count;
        return c;
    }

private:
    CharType* m_buffer;   // null: count only
    unsigned int m_count; // characters since the last reset
};

/// Prints `value` once and returns the number of characters.
template <class T, class CharType>
unsigned int writePass(std::basic_ostream<StreamChar<CharType>>& stream, FloatOutBuf<CharType>& buffer, T value) {
    stream << value;
    stream.flush();
    return buffer.getCount();
}

/// Splits a precision into the digits that a stream prints and the zeros that this file adds.
struct DecimalPrecision {
    /// After this number of digits behind the point all digits are 0 in both layouts: every value is a multiple of the
    /// smallest subnormal value, which is 2 to the power of minus this number.
    template <class T>
    static constexpr unsigned int FRACTION_DIGITS = static_cast<unsigned int>(std::numeric_limits<T>::digits -
                                                                              std::numeric_limits<T>::min_exponent);

    /// Zeros that result from the precision alone bypass the stream, because a stream can build its text on the stack.
    /// A stream converts its precision to `int` and prints six digits if that is negative.
    template <class T>
    DecimalPrecision(T value, unsigned int precision) : streamed(-1), zeros(0) {
        if (precision > static_cast<unsigned int>(std::numeric_limits<int>::max())) return;
        const unsigned int digits = std::min(precision, FRACTION_DIGITS<T>);
        streamed = static_cast<std::streamsize>(digits);
        if (std::isfinite(value)) zeros = precision - digits;
    }

    std::streamsize streamed;
    unsigned int zeros; // added after the digits if exactly one of `fixed` and `scientific` is set; with both no digit
                        // is missing
};

/// Prints once or twice to find the size. Flags are added and never removed: after the two passes of the automatic
/// layout both are set. A further pass prints as the second pass did, even if the first one was shorter.
template <class T, class CharType>
unsigned int countPasses(std::basic_ostream<StreamChar<CharType>>& stream, FloatOutBuf<CharType>& buffer, T value,
                         unsigned int zeros, FloatExponent exponent) {
    if (exponent == Vorn::FLOAT_EXPONENT_NONE) {
        stream.setf(std::ios_base::fixed);
        return writePass(stream, buffer, value) + zeros;
    }
    stream.setf(std::ios_base::scientific);
    const unsigned int first = writePass(stream, buffer, value) + zeros;
    if (exponent == Vorn::FLOAT_EXPONENT_ALWAYS) return first;

    buffer.reset(nullptr);
    stream.setf(std::ios_base::fixed);
    const unsigned int second = writePass(stream, buffer, value);
    return first < second ? first : second;
}

/// The size of decimal text in the global locale; `printDecFloat` uses the "C" locale.
template <class T>
unsigned int measureDecFloat(T value, unsigned int precision, FloatExponent exponent) {
    const DecimalPrecision split(value, precision);
    FloatOutBuf<char> buffer;
    std::basic_ostream<char> stream(&buffer);
    stream.precision(split.streamed);
    stream.width(0);
    return countPasses(stream, buffer, value, split.zeros, exponent);
}

/// Inserts `zeros` zeros before the exponent, or at the end if there is none.
template <class CharType>
void insertZeros(CharType* text, unsigned int size, unsigned int zeros) {
    CharType* const end = text + size;
    CharType* const digitsEnd = std::find(text, end, static_cast<CharType>('e'));
    std::copy_backward(digitsEnd, end, end + zeros);
    std::fill_n(digitsEnd, zeros, static_cast<CharType>('0'));
}

template <class T, class CharType>
unsigned int printDecFloat(T value, CharType* destination, unsigned int destinationSize, unsigned int precision,
                           FloatExponent exponent) {
    const DecimalPrecision split(value, precision);
    FloatOutBuf<CharType> buffer;
    const std::locale locale("C");
    buffer.pubimbue(locale);
    std::basic_ostream<StreamChar<CharType>> stream(&buffer);
    stream.imbue(locale);
    stream.precision(split.streamed);
    stream.width(0);
    const unsigned int count = countPasses(stream, buffer, value, split.zeros, exponent);
    if (destination && count <= destinationSize) {
        buffer.reset(destination);
        const unsigned int size = writePass(stream, buffer, value);
        const bool isOneLayout = exponent == Vorn::FLOAT_EXPONENT_NONE || exponent == Vorn::FLOAT_EXPONENT_ALWAYS;
        if (isOneLayout && split.zeros != 0) insertZeros(destination, size, split.zeros);
    }
    return count;
}

/// The bits of a value.
template <class T>
struct FloatBits;

template <>
struct FloatBits<float> {
    static constexpr unsigned int BUFFER_SIZE = 16; // one unit less than the longest text and one further unit need

    explicit FloatBits(float value) : high(std::bit_cast<unsigned int>(value)), low(0) {}

    unsigned int high; // sign, exponent and the upper bits of the mantissa
    unsigned int low;  // further bits of the mantissa
};

template <>
struct FloatBits<double> {
    static constexpr unsigned int BUFFER_SIZE = 24; // as above

    explicit FloatBits(double value)
        : high(static_cast<unsigned int>(std::bit_cast<unsigned long long>(value) >> 32)),
          low(static_cast<unsigned int>(std::bit_cast<unsigned long long>(value))) {}

    unsigned int high;
    unsigned int low;
};

/// Tests for NaN with the masks of a `float`, as specified for both types: of the exponent of a `double` the upper
/// eight bits are tested, and the lower three count as mantissa.
template <class T>
bool isNaNBits(FloatBits<T> bits) noexcept {
    return (bits.low != 0 || (bits.high & 0x7FFFFF) != 0) && (bits.high & 0x7F800000) == 0x7F800000;
}

template <class T>
unsigned int isNegative(FloatBits<T> bits) noexcept {
    return bits.high >> 31;
}

/// A magnitude as (1 + fraction) times a power of two. All computations are exact.
struct BinaryParts {
    explicit BinaryParts(double magnitude) noexcept {
        fraction = std::ldexp(std::frexp(magnitude, &exponent), 1) - 1;
        --exponent;
    }

    /// Removes the first hexadecimal digit from the fraction and returns it.
    unsigned int takeDigit() noexcept {
        double digit;
        fraction = std::modf(std::ldexp(fraction, 4), &digit);
        return static_cast<unsigned int>(digit);
    }

    double fraction;
    int exponent;
};

template <class T>
unsigned int measureHexFloat(T value) noexcept {
    const FloatBits<T> bits(value);
    if (isNaNBits(bits)) return 3;
    unsigned int count = 3 + isNegative(bits);
    const T magnitude = std::abs(value);
    if (magnitude == std::numeric_limits<T>::infinity() || magnitude == 0) return count;

    BinaryParts parts(magnitude);
    if (parts.fraction > 0) ++count;
    for (; parts.fraction > 0; ++count) parts.takeDigit();
    if (parts.exponent != 0) count += 1 + Vorn::measureDec(parts.exponent);
    return count;
}

/// Prints a text of three characters with its sign.
template <class CharType>
unsigned int printSpecial(const char* text, unsigned int negative, CharType* destination,
                          unsigned int destinationSize) noexcept {
    const unsigned int total = 3 + negative;
    if (total > destinationSize) return total;
    if (negative) *destination++ = '-';
    std::copy_n(text, 3, destination);
    return total;
}

template <class T, class CharType>
unsigned int printHexFloat(T value, CharType* destination, unsigned int destinationSize) {
    if (!destination) return measureHexFloat(value);
    const FloatBits<T> bits(value);
    if (isNaNBits(bits)) return printSpecial("NAN", 0, destination, destinationSize);
    const unsigned int negative = isNegative(bits);
    const T magnitude = std::abs(value);
    if (magnitude == std::numeric_limits<T>::infinity()) {
        return printSpecial("INF", negative, destination, destinationSize);
    }
    if (magnitude == 0) return printSpecial("0x0", negative, destination, destinationSize);

    constexpr unsigned int bufferSize = FloatBits<T>::BUFFER_SIZE;
    CharType buffer[bufferSize] = {}; // remains zero where printDec does not write the end of the exponent
    unsigned int count = 0;
    if (negative) buffer[count++] = '-';
    for (const char c : {'0', 'x', '1'}) buffer[count++] = static_cast<CharType>(c);
    BinaryParts parts(magnitude);
    if (parts.fraction > 0) buffer[count++] = '.';
    while (parts.fraction > 0) buffer[count++] = hexDigitChar(parts.takeDigit());
    if (parts.exponent != 0) {
        buffer[count++] = 'p';
        count += Vorn::printDec(parts.exponent, buffer + count, bufferSize - count);
    }
    VORN_INTERNAL_ASSERT(count < bufferSize, "unexpected large exponent");
    if (count <= destinationSize) std::copy_n(buffer, count, destination);
    return count;
}

} // namespace VornPrivate

namespace Vorn {

unsigned int measureDec(float value, unsigned int precision, FloatExponent exponent) {
    return VornPrivate::measureDecFloat(value, precision, exponent);
}

unsigned int measureDec(double value, unsigned int precision, FloatExponent exponent) {
    return VornPrivate::measureDecFloat(value, precision, exponent);
}

unsigned int printDec(float value, unsigned char* buffer, unsigned int bufferSize, unsigned int precision,
                      FloatExponent exponent) {
    return VornPrivate::printDecFloat(value, buffer, bufferSize, precision, exponent);
}

unsigned int printDec(float value, UTF16Char* buffer, unsigned int bufferSize, unsigned int precision,
                      FloatExponent exponent) {
    return VornPrivate::printDecFloat(value, buffer, bufferSize, precision, exponent);
}

unsigned int printDec(double value, unsigned char* buffer, unsigned int bufferSize, unsigned int precision,
                      FloatExponent exponent) {
    return VornPrivate::printDecFloat(value, buffer, bufferSize, precision, exponent);
}

unsigned int printDec(double value, UTF16Char* buffer, unsigned int bufferSize, unsigned int precision,
                      FloatExponent exponent) {
    return VornPrivate::printDecFloat(value, buffer, bufferSize, precision, exponent);
}

unsigned int measureHex(float value) noexcept { return VornPrivate::measureHexFloat(value); }

unsigned int measureHex(double value) noexcept { return VornPrivate::measureHexFloat(value); }

unsigned int printHex(float value, unsigned char* buffer, unsigned int bufferSize) {
    return VornPrivate::printHexFloat(value, buffer, bufferSize);
}

unsigned int printHex(float value, UTF16Char* buffer, unsigned int bufferSize) {
    return VornPrivate::printHexFloat(value, buffer, bufferSize);
}

unsigned int printHex(double value, unsigned char* buffer, unsigned int bufferSize) {
    return VornPrivate::printHexFloat(value, buffer, bufferSize);
}

unsigned int printHex(double value, UTF16Char* buffer, unsigned int bufferSize) {
    return VornPrivate::printHexFloat(value, buffer, bufferSize);
}

} // namespace Vorn
