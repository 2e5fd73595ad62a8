#include "Vorn/Text/TextNumbers.h"

#include "Vorn/Assert.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <memory>

namespace VornPrivate {

using Vorn::NumberError;
using Vorn::NumberText;
using Vorn::UTF16Char;

/// The value of a digit or letter; 36 for other units.
template <class CharType>
unsigned int digitOf(CharType unit) noexcept {
    const unsigned int decimal = static_cast<unsigned int>(unit) - '0';
    if (decimal < 10) return decimal;
    const unsigned int letter = (static_cast<unsigned int>(unit) | 0x20) - 'a';
    return letter < 26 && unit < 0x80 ? letter + 10 : 36;
}

template <class CharType>
bool isLetter(const CharType* at, const CharType* end, char lower) noexcept {
    return at != end && *at < 0x80 && (*at | 0x20) == lower;
}

/// Moves `at` behind a prefix with a digit behind it.
template <class CharType>
unsigned int skipPrefix(const CharType*& at, const CharType* end, unsigned int base) noexcept {
    const bool byPrefix = base == Vorn::BASE_BY_PREFIX;
    if (end - at >= 3 && *at == '0') {
        if (isLetter(at + 1, end, 'x') && digitOf(at[2]) < 16) {
            at += 2;
            return 16;
        }
        if (byPrefix && isLetter(at + 1, end, 'b') && digitOf(at[2]) < 2) {
            at += 2;
            return 2;
        }
    }
    return byPrefix ? 10 : 16;
}

template <class CharType>
NumberText::Integer readInteger(const CharType* begin, const CharType* end, unsigned int base, unsigned long long most,
                                unsigned long long mostNegative) noexcept {
    const CharType* at = begin;
    bool isNegative = at != end && *at == '-';
    if (at != end && *at == 'x' && base == Vorn::BASE_OF_PRINT_HEX) {
        isNegative = true;
        base = 16; // no prefix follows
    }
    const NumberText::Integer malformed{0, 0, NumberError::MALFORMED, false};
    if (isNegative) {
        if (mostNegative == 0) return malformed;
        ++at;
    }
    if (base < 2) base = skipPrefix(at, end, base);

    unsigned long long magnitude = 0;
    bool isTooLarge = false;
    const CharType* const digits = at;
    if (base == 10) { // 19 digits always fit
        const CharType* const last = end - at > 19 ? at + 19 : end;
        for (unsigned int digit; at != last && (digit = static_cast<unsigned int>(*at) - '0') < 10; ++at)
            magnitude = magnitude * 10 + digit;
    }
    for (unsigned int digit; at != end && (digit = digitOf(*at)) < base; ++at) {
        isTooLarge |= __builtin_mul_overflow(magnitude, base, &magnitude);
        isTooLarge |= __builtin_add_overflow(magnitude, digit, &magnitude);
    }
    if (at == digits) return malformed;
    isTooLarge = isTooLarge || magnitude > (isNegative ? mostNegative : most);
    return {isTooLarge ? 0 : magnitude, static_cast<unsigned int>(at - begin),
            isTooLarge ? NumberError::OUT_OF_RANGE : NumberError::NONE, isNegative};
}

/// True if a word of lower-case letters stands at the start of a text, in either case.
template <class CharType>
bool startsWithWord(const CharType* at, const CharType* end, const char* word) noexcept {
    for (; *word; ++word, ++at) {
        if (!isLetter(at, end, *word)) return false;
    }
    return true;
}

/// Reads a number; `end` is then its size.
// Returns the end of hexadecimal digits if an exponent with two signs follows, which some std::from_chars take for one
// with a sign; otherwise `end`.
const char* endOfHexDigits(const char* at, const char* end) noexcept {
    while (at != end && (digitOf(static_cast<unsigned char>(*at)) < 16 || *at == '.')) ++at;
    return end - at > 2 && (*at | 0x20) == 'p' && at[1] == '+' && at[2] == '-' ? at : end;
}

template <class T>
NumberError readFloat(const char* begin, const char* end, T& value, unsigned int& size) noexcept {
    const bool isNegative = begin != end && *begin == '-';
    const char* const number = begin + isNegative;
    const auto sign = [isNegative](T magnitude) { return isNegative ? -magnitude : magnitude; };
    const auto finish = [&](const char* last) { size = static_cast<unsigned int>(last - begin); };
    if (number == end || *number == '-') return NumberError::MALFORMED;

    const auto* const letters = reinterpret_cast<const unsigned char*>(number);
    const auto* const lettersEnd = reinterpret_cast<const unsigned char*>(end);
    if (isLetter(letters, lettersEnd, 'i')) {
        if (!startsWithWord(letters, lettersEnd, "inf")) return NumberError::MALFORMED;
        value = sign(std::numeric_limits<T>::infinity());
        finish(number + (startsWithWord(letters, lettersEnd, "infinity") ? 8 : 3));
        return NumberError::NONE;
    }
    if (isLetter(letters, lettersEnd, 'n')) {
        if (!startsWithWord(letters, lettersEnd, "nan")) return NumberError::MALFORMED;
        value = std::copysign(std::numeric_limits<T>::quiet_NaN(), isNegative ? T(-1) : T(1));
        finish(number + 3);
        return NumberError::NONE;
    }

    std::from_chars_result result{number, std::errc::invalid_argument};
    if (end - number > 2 && *number == '0' && (number[1] | 0x20) == 'x' && number[2] != '-') {
        result = std::from_chars(number + 2, endOfHexDigits(number + 2, end), value, std::chars_format::hex);
        const int first = number[2] | 0x20; // of "inf" and "nan"; "f" and "a" are digits
        if (first == 'i' || first == 'n') result.ec = std::errc::invalid_argument;
    }
    if (result.ec == std::errc::invalid_argument) result = std::from_chars(number, end, value);
    if (result.ec == std::errc::invalid_argument) return NumberError::MALFORMED;
    finish(result.ptr);
    if (result.ec != std::errc()) return NumberError::OUT_OF_RANGE;
    value = sign(value);
    return NumberError::NONE;
}

template <class T>
NumberError readFloat(Vorn::TextView text, T& value, unsigned int& size) {
    if (text.isUTF8()) {
        const char* const bytes = reinterpret_cast<const char*>(text.getUTF8());
        return readFloat(bytes, bytes + text.getLength(), value, size);
    }
    // Digits, letters, signs and points, which are all bytes.
    const UTF16Char* const units = text.getUTF16();
    unsigned int length = 0;
    while (length != text.getLength() &&
           (digitOf(units[length]) < 36 || units[length] == '.' || units[length] == '-' || units[length] == '+'))
        ++length;
    char small[127] = {};
    std::unique_ptr<char[]> large;
    if (length > sizeof small) large.reset(new char[length]);
    char* const bytes = large ? large.get() : small;
    std::transform(units, units + length, bytes, [](UTF16Char unit) { return static_cast<char>(unit); });
    return readFloat(bytes, bytes + length, value, size);
}

void assertBase(unsigned int base) {
    if (base < 2 || base > 36) VORN_THROW(Vorn::E::PARAMETER, "base : Invalid base!");
}

template <class T>
unsigned int printFloat(char* buffer, T value) noexcept {
    return static_cast<unsigned int>(std::to_chars(buffer, buffer + NumberText::DECIMAL_CAPACITY, value).ptr - buffer);
}

} // namespace VornPrivate

namespace Vorn {

NumberText::Integer NumberText::read(TextView text, unsigned int base, unsigned long long most,
                                     unsigned long long mostNegative) {
    if (base != BASE_BY_PREFIX && base != BASE_OF_PRINT_HEX) VornPrivate::assertBase(base);
    if (text.isUTF8()) {
        const unsigned char* const bytes = text.getUTF8();
        return VornPrivate::readInteger(bytes, bytes + text.getLength(), base, most, mostNegative);
    }
    const UTF16Char* const units = text.getUTF16();
    return VornPrivate::readInteger(units, units + text.getLength(), base, most, mostNegative);
}

NumberError NumberText::read(TextView text, float& value, unsigned int& end) {
    return VornPrivate::readFloat(text, value, end);
}

NumberError NumberText::read(TextView text, double& value, unsigned int& end) {
    return VornPrivate::readFloat(text, value, end);
}

NumberError NumberText::read(TextView text, bool& value, unsigned int& end) noexcept {
    const auto startsWith = [&](const char* word) {
        unsigned int i = 0;
        for (; word[i]; ++i) {
            if (i == text.getLength()) return false;
            const unsigned int unit = text.isUTF8() ? text.getUTF8()[i] : static_cast<unsigned int>(text.getUTF16()[i]);
            if (unit != static_cast<unsigned char>(word[i])) return false;
        }
        end = i;
        return true;
    };
    value = startsWith("true");
    return value || startsWith("false") ? NumberError::NONE : NumberError::MALFORMED;
}

unsigned int NumberText::print(char* buffer, unsigned int capacity, unsigned long long magnitude, bool isNegative,
                               unsigned int base) {
    VornPrivate::assertBase(base);
    if (capacity > isNegative) {
        const std::to_chars_result result =
            std::to_chars(buffer + isNegative, buffer + capacity, magnitude, static_cast<int>(base));
        if (result.ec == std::errc()) {
            if (isNegative) *buffer = '-';
            return static_cast<unsigned int>(result.ptr - buffer);
        }
    }
    char text[CAPACITY]; // only to measure
    return print(text, CAPACITY, magnitude, isNegative, base);
}

unsigned int NumberText::print(char* buffer, float value) noexcept { return VornPrivate::printFloat(buffer, value); }

unsigned int NumberText::print(char* buffer, double value) noexcept { return VornPrivate::printFloat(buffer, value); }

unsigned int NumberText::print(char* buffer, bool value) noexcept {
    return copy(value ? "true" : "false", value ? 4 : 5, buffer, DECIMAL_CAPACITY);
}

String NumberText::makeString(const char* text, unsigned int size) {
    std::unique_ptr<unsigned char[]> block(new unsigned char[size + 1]);
    std::memcpy(block.get(), text, size);
    block[size] = 0;
    const String result(block.get(), size, STRING_DATA_DYNAMIC, true);
    block.release();
    return result;
}

unsigned int NumberText::copy(const char* text, unsigned int size, char* buffer, unsigned int capacity) noexcept {
    if (size <= capacity) std::memcpy(buffer, text, size);
    return size;
}

String toFixedText(double value, unsigned int digits) {
    // Behind this number of digits all are 0: every value is a multiple of 2 to the power -1074.
    constexpr unsigned int MOST_DIGITS = 1074;
    constexpr unsigned int CAPACITY = 1 + 309 + 1 + MOST_DIGITS;
    std::string text(CAPACITY, '\0');
    const std::size_t most = std::min<std::size_t>(VornPrivate::MAX_TEXT_LENGTH, text.max_size());
    if (digits > most - CAPACITY) VORN_THROW(E::PARAMETER, "length : text too long!");
    const int printed = static_cast<int>(std::min(digits, MOST_DIGITS));
    const std::to_chars_result result =
        std::to_chars(text.data(), text.data() + CAPACITY, value, std::chars_format::fixed, printed);
    text.resize(static_cast<std::size_t>(result.ptr - text.data()));
    if (std::isfinite(value) && digits > MOST_DIGITS) text.append(digits - MOST_DIGITS, '0');
    return NumberText::makeString(text.data(), static_cast<unsigned int>(text.size()));
}

String toHexText(double value) {
    char buffer[NumberText::CAPACITY];
    char* at = buffer;
    if (std::signbit(value)) *at++ = '-';
    if (std::isfinite(value)) {
        *at++ = '0';
        *at++ = 'x';
    }
    const double magnitude = std::copysign(value, 1.0);
    at = std::to_chars(at, buffer + sizeof buffer, magnitude, std::chars_format::hex).ptr;
    return NumberText::makeString(buffer, static_cast<unsigned int>(at - buffer));
}

} // namespace Vorn
