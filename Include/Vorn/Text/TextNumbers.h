/// @file
/// TextNumbers: numbers from text and text from numbers, exactly.
///
///     std::optional<int> count = Vorn::parse<int>(text);         // "-42"; empty for "42 apples", "+42", " 42" and ""
///     std::optional<float> size = Vorn::parse<float>("2.5e-3");  // the nearest float
///     Vorn::String label = Vorn::toText(0.1f);                   // "0.1": the shortest text that is read back as 0.1f
///
/// The whole text must be the number. White space, a "+" in front and separators of digits are not part of a number. No
/// locale is used. A value that the type does not hold is a failure, not another value.
///
/// What is printed is read back bit for bit: by `parse` every text of `toText`, and every text that the functions of
/// PrintInt.h and PrintFloat.h print as bytes, if it has all digits of the value. Of NaN the sign is kept, and the
/// payload is not.
///
/// The types are `bool`, all integers except the character types, `float` and `double`. `signed char` and `unsigned
/// char` are integers, `char` is a character.
///
/// Cost: printing integers of base 10 takes the time of std::to_chars. Reading a whole text in UTF-8 with `parse` in
/// base 10 takes that of std::from_chars, and up to 2 ns more for float and double; other reading takes about 4 ns more
/// than std::from_chars. Reading allocates nothing, except for a floating-point number of more than 127 units in
/// UTF-16; `toText` allocates a String.
///
/// Threads: the functions use their arguments only.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/String/String.h"
#include "Vorn/Text/TextView.h"

#include <charconv>
#include <limits>
#include <optional>
#include <string>
#include <type_traits>

namespace VornPrivate {

template <class T, class... Types>
inline constexpr bool IS_ONE_OF = (std::is_same_v<T, Types> || ...);

template <class T>
inline constexpr bool IS_NUMBER =
    IS_ONE_OF<T, bool, signed char, unsigned char, short, unsigned short, int, unsigned int, long, unsigned long,
              long long, unsigned long long, float, double>;

template <class T>
inline constexpr bool IS_INTEGER = IS_NUMBER<T>&& std::is_integral_v<T> && !std::is_same_v<T, bool>;

} // namespace VornPrivate

namespace Vorn {

/// Why a text is not the number that was asked for.
enum class NumberError : unsigned char {
    NONE,        ///< it is one
    MALFORMED,   ///< it is no number, or more than a number
    OUT_OF_RANGE ///< it is a number that the type does not hold: too large, or too near to 0 but not 0
};

/// The base of an integer whose text says it: "0x" or "0X" stands before hexadecimal digits, "0b" or "0B" before binary
/// ones. Otherwise the digits are decimal. A "-" stands before the prefix: "-0x1F".
inline constexpr unsigned int BASE_BY_PREFIX = 0;

/// The base of what `printHex` prints of an integer: hexadecimal digits of either case, with or without "0x". Without
/// a prefix that function prints "x" as the sign of a negative number: "xFF" is -255, as "-FF" and "-0xFF" are.
inline constexpr unsigned int BASE_OF_PRINT_HEX = 1;

/// A number at the start of a text.
template <class T>
struct NumberPrefix {
    std::optional<T> value;                ///< the number; empty if there is an error
    TextView rest;                         ///< the text behind the number; the whole text if it begins with none
    NumberError error = NumberError::NONE; ///< why there is no number
};

/// Support of the functions below, not for direct use.
struct NumberText {
    /// A number as it was read.
    struct Integer {
        unsigned long long magnitude; // 0 if there is an error
        unsigned int end;             // the first unit behind the number
        NumberError error;
        bool isNegative;
    };

    /// `mostNegative` is the magnitude of the least value; 0 for unsigned types, which have no "-".
    VORN_API static Integer read(TextView text, unsigned int base, unsigned long long most,
                                 unsigned long long mostNegative);
    VORN_API static NumberError read(TextView text, float& value, unsigned int& end);
    VORN_API static NumberError read(TextView text, double& value, unsigned int& end);
    VORN_API static NumberError read(TextView text, bool& value, unsigned int& end) noexcept;

    static constexpr unsigned int CAPACITY = 65;         ///< holds each text of `print`
    static constexpr unsigned int DECIMAL_CAPACITY = 24; ///< holds each of them in the base 10

    /// Writes the text to `buffer`, not terminated, and returns its size. Without a capacity the buffer holds
    /// DECIMAL_CAPACITY bytes; otherwise a text that does not fit leaves it unchanged.
    VORN_API static unsigned int print(char* buffer, unsigned int capacity, unsigned long long magnitude,
                                       bool isNegative, unsigned int base);
    VORN_API static unsigned int print(char* buffer, float value) noexcept;
    VORN_API static unsigned int print(char* buffer, double value) noexcept;
    VORN_API static unsigned int print(char* buffer, bool value) noexcept;

    VORN_API static String makeString(const char* text, unsigned int size);
    VORN_API static unsigned int copy(const char* text, unsigned int size, char* buffer,
                                      unsigned int capacity) noexcept;

    static unsigned int sizeOf(const char* buffer, const std::to_chars_result& result) noexcept {
        return static_cast<unsigned int>(result.ptr - buffer);
    }

    template <class T>
    static unsigned int printAny(char* buffer, unsigned int capacity, T value, unsigned int base) {
        static_assert(VornPrivate::IS_NUMBER<T>, "numbers are bool, integers, float and double; write a char with "
                                                 "makeString, and convert other types before");
        if constexpr (VornPrivate::IS_INTEGER<T>) {
            constexpr unsigned int MOST = std::numeric_limits<T>::digits10 + 2; // with the sign
            if (base == 10 && capacity >= MOST) return sizeOf(buffer, std::to_chars(buffer, buffer + MOST, value));
            const bool isNegative = value < T(0);
            const unsigned long long bits = static_cast<unsigned long long>(value);
            return print(buffer, capacity, isNegative ? 0 - bits : bits, isNegative, base);
        } else if (capacity >= DECIMAL_CAPACITY) {
            return print(buffer, value);
        } else {
            char text[CAPACITY];
            return copy(text, print(text, value), buffer, capacity);
        }
    }

    template <class T>
    static NumberError readAny(TextView text, T& value, unsigned int& end, unsigned int base) {
        static_assert(VornPrivate::IS_NUMBER<T>, "parse reads bool, integers (signed char and unsigned char, not "
                                                 "char), float and double; for a String use makeString");
        if constexpr (VornPrivate::IS_INTEGER<T>) {
            using Limits = std::numeric_limits<T>;
            const auto most = static_cast<unsigned long long>(Limits::max());
            const Integer number = read(text, base, most, Limits::is_signed ? most + 1 : 0);
            value = static_cast<T>(number.isNegative ? 0 - number.magnitude : number.magnitude);
            end = number.end;
            return number.error;
        } else {
            return read(text, value, end);
        }
    }

    /// True for a digit, behind a "-" or not: "inf" and "nan" have forms that only std::from_chars takes.
    static bool startsWithDigit(const char* at, const char* end) noexcept {
        if (at != end && *at == '-') ++at;
        return at != end && *at >= '0' && *at <= '9';
    }

    template <class T>
    static NumberError readWhole(TextView text, T& value, unsigned int base) {
        if constexpr (VornPrivate::IS_NUMBER<T> && !std::is_same_v<T, bool>) {
            if (base == 10 && text.isUTF8()) { // what is no such number is read again, to find out why
                const char* const begin = reinterpret_cast<const char*>(text.getUTF8());
                const char* const last = begin + text.getLength();
                if (VornPrivate::IS_INTEGER<T> || startsWithDigit(begin, last)) {
                    const std::from_chars_result result = std::from_chars(begin, last, value);
                    if (result.ec == std::errc() && result.ptr == last) return NumberError::NONE;
                }
            }
        }
        unsigned int end = 0;
        const NumberError error = readAny(text, value, end, base);
        return end == text.getLength() ? error : NumberError::MALFORMED;
    }
};

/// Reads the longest number at the start of a text: "12px" gives 12 and the rest "px".
///
/// @param text The text.
/// @param base 2 to 36 for integers, BASE_BY_PREFIX or BASE_OF_PRINT_HEX. Others have the base 10, and floating-point
///     numbers behind "0x" the base 16.
///
/// - `bool`: "true" and "false".
/// - Integers: digits, in either case, behind a "-" if the type is signed.
/// - `float` and `double`: "-2.5e10", ".5", "5.", "0x1.8p-3", and in any case "inf", "infinity" and "nan". The value is
///   the nearest one, and of two as near the one with an even last bit.
///
/// The rest of a number that is out of range begins behind its digits. Throws `Exception<4>`: "base : Invalid base!".
template <class T>
[[nodiscard]] NumberPrefix<T> parsePrefix(TextView text, unsigned int base = 10) {
    NumberPrefix<T> result;
    T value{};
    unsigned int end = 0;
    result.error = NumberText::readAny(text, value, end, base);
    if (result.error == NumberError::NONE) result.value = value;
    result.rest = text.slice(end);
    return result;
}

/// Reads a text that is a number as a whole; empty if it is none, or out of range. See `parsePrefix`.
/// @{
template <class T>
[[nodiscard, gnu::always_inline]] inline std::optional<T>
parse(TextView text) { // a call returns an optional through memory
    T value{};
    if (NumberText::readWhole(text, value, 10) != NumberError::NONE) return std::nullopt;
    return value;
}
template <class T>
[[nodiscard, gnu::always_inline]] inline std::optional<T> parse(TextView text, unsigned int base) {
    static_assert(VornPrivate::IS_INTEGER<T>, "only integers have a base: write parse<T>(text)");
    T value{};
    if (NumberText::readWhole(text, value, base) != NumberError::NONE) return std::nullopt;
    return value;
}
/// @}

/// As `parse`, but says why a text is no number. `value` is unchanged if there is an error.
template <class T>
NumberError parseInto(T& value, TextView text, unsigned int base = 10) {
    T number{};
    const NumberError error = NumberText::readWhole(text, number, base);
    if (error == NumberError::NONE) value = number;
    return error;
}

/// The text of a number: "true" or "false"; an integer in decimal digits; of a floating-point number the shortest text
/// that `parse` reads back bit for bit, with an exponent where that is shorter: "0.1", "1e+20", "-0", "inf", "-inf",
/// "nan". A `float` has fewer digits than the `double` of the same value.
template <class T>
[[nodiscard]] String toText(T value) {
    char buffer[NumberText::CAPACITY];
    return NumberText::makeString(buffer, NumberText::printAny(buffer, sizeof buffer, value, 10));
}

/// The text of an integer in a base from 2 to 36, with lower-case letters, without a prefix, and with "-" if it is
/// negative. Throws `Exception<4>`: "base : Invalid base!".
template <class T>
[[nodiscard]] String toText(T value, unsigned int base) {
    static_assert(VornPrivate::IS_INTEGER<T>, "only integers have a base: for digits behind the point use toFixedText");
    char buffer[NumberText::CAPACITY];
    return NumberText::makeString(buffer, NumberText::printAny(buffer, sizeof buffer, value, base));
}

/// The text of a number with `digits` digits behind the point and no exponent, correctly rounded: 2.5 with 2 digits is
/// "2.50". With 0 digits there is no point. Infinity and NaN are as in `toText`.
[[nodiscard]] VORN_API String toFixedText(double value, unsigned int digits);

/// The exact value in hexadecimal, as `printHex` writes it, but for all values: "-0x1.8p+1", "0x0p+0".
[[nodiscard]] VORN_API String toHexText(double value);

/// Writes the text of `toText` into a buffer if it fits, not terminated. Returns its size in bytes, also if it does not
/// fit; the buffer is then unchanged. 65 bytes hold every number in every base, and 24 every number in decimal.
template <class T>
unsigned int writeText(char* buffer, unsigned int capacity, T value) {
    return NumberText::printAny(buffer, capacity, value, 10);
}

/// Appends the text of `toText`.
template <class T>
void appendText(std::string& text, T value) {
    char buffer[NumberText::CAPACITY];
    text.append(buffer, NumberText::printAny(buffer, sizeof buffer, value, 10));
}

} // namespace Vorn
