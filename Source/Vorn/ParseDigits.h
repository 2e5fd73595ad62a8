/// @file
/// ParseDigits: the scanners of all number parsers. They do not check their arguments; ParseInt.cpp and ParseFloat.cpp
/// do.
///
/// The path from each public parser. The fast path reads text that begins with a digit of a decimal number; the search
/// skips white space, sign and prefix. Every path ends in `sumDigits`. The forms for strings (ParseStrNum) select a
/// buffer and call the function in the second column.
///
///     public       checks arguments       scanner                   fast path           search
///     parseUInt    parseUIntInline        parseAutoRadix            sumLeadingDigits    searchAutoRadix
///     parseInt     parseIntInline         parseSignedAutoRadix      sumLeadingDigits    searchSignedAutoRadix
///     parseUDec    parseUDecInline        parseDecimalDigits        sumLeadingDigits    searchDecimalDigits
///     parseDec     ParseSignedNum<10>     parseSignedDigits         sumLeadingDigits    searchSignedDigits
///     parseUHex    parseUHexInline        parseHexadecimalDigits    none                parseDigits
///     parseHex     ParseSignedNum<16>     parseSignedDigits         none                searchSignedDigits
///
/// searchSignedAutoRadix continues with parseAutoRadix; searchDecimalDigits and searchSignedDigits with parseDigits.
/// The float parsers (parseFloatType) read the whole part with parseDecimalDigits or parseHexadecimalDigits, the
/// fraction of a hexadecimal number with parseHexadecimalDigits, and exponents with parseSignedDecimalDigits.
///
/// A scanner reads one unit at a time and stops at the unit that ends the number, so that terminated text is safe with
/// any `length`. `length` ends a scan only directly after a digit; digits beyond `length` are specified to be read
/// otherwise.
#pragma once

#include "Vorn/Private/UnicodeBits.h" // range tests without branches

#include <type_traits>

namespace VornPrivate {

/// Returns true for 9 to 13 and 32.
constexpr bool isWhiteSpace(unsigned int c) noexcept { return (rangeMask(c, 9, 13) | rangeMask(c, ' ', ' ')) != 0; }

/// The value of a decimal digit, or -1. The single comparison compiles without a branch, or as the branch of a loop
/// that ends after the digits.
constexpr int getDecimal(unsigned int c) noexcept {
    const unsigned int digit = c - '0';
    return digit < 10 ? static_cast<int>(digit) : -1;
}

/// The value of a hexadecimal digit in either case, or -1.
constexpr int getHexa(unsigned int c) noexcept {
    const unsigned int letter = c & ~0x20u;
    return static_cast<int>(((c - ('0' - 1)) & rangeMask(c, '0', '9')) |
                            ((letter - ('A' - 11)) & rangeMask(letter, 'A', 'F'))) -
           1;
}

/// The first digit of a decimal scan.
template <class CharType>
constexpr int getFirstValue(const CharType* str, unsigned int& pos, unsigned int) noexcept {
    return getDecimal(str[pos]);
}

/// The first digit of a hexadecimal scan, after "0x" if both units lie within `length`. The second unit is read only
/// after a zero digit, so the scan of an empty text stops at its terminator.
template <class CharType>
constexpr int getFirstHexaValue(const CharType* str, unsigned int& pos, unsigned int length) noexcept {
    const unsigned int zero = static_cast<unsigned int>(pos + 1 < length) & static_cast<unsigned int>(str[pos] == '0');
    pos += 2 * (zero & static_cast<unsigned int>(str[pos + zero] == 'x'));
    return getHexa(str[pos]);
}

/// The unsigned type in which values are summed, at least as wide as `T`: the truncated sum equals a sum that wraps at
/// each step.
template <class T>
using Sum = std::conditional_t<sizeof(T) <= sizeof(unsigned int), unsigned int, unsigned long long>;

template <class T>
constexpr T negated(T value) noexcept {
    return static_cast<T>(0 - static_cast<Sum<T>>(value));
}

/// The index of the first unit that is not white space. No length limits this search.
template <class CharType>
constexpr unsigned int skipWhiteSpace(const CharType* str) noexcept {
    unsigned int i = 0;
    while (str[i] <= ' ' && isWhiteSpace(str[i])) ++i; // the comparison is false for most first units
    return i;
}

/// The value of `digit`, which is unit `pos`, and the digits after it. Sets `end` to the index after the last digit.
template <class T, unsigned int radix, int (*getDigit)(unsigned int), class CharType>
constexpr T sumDigits(const CharType* str, unsigned int pos, unsigned int length, int digit,
                      unsigned int& end) noexcept {
    const CharType* unit = str + pos;
    unsigned int remaining = length - pos; // wraps if `pos` is beyond the limit already, which then ends nothing
    Sum<T> value = 0;
    do {
        value = value * radix + static_cast<unsigned int>(digit);
        if (--remaining == 0) break;
        digit = getDigit(*++unit);
    } while (digit >= 0);
    end = length - remaining;
    return static_cast<T>(value);
}

/// The fast path, for text that begins with a decimal digit. The functions that search are not inlined, so that this
/// path costs little more than the digits.
template <class T, class CharType>
constexpr T sumLeadingDigits(const CharType* str, unsigned int* count, unsigned int length) noexcept {
    unsigned int end = 0;
    const T value = sumDigits<T, 10, &getDecimal>(str, 0, length, getDecimal(str[0]), end);
    if (count) *count = end;
    return value;
}

/// The general path of `parseAutoRadix`.
template <class T, class CharType>
[[gnu::noinline]] T searchAutoRadix(const CharType* str, unsigned int* count, unsigned int length) noexcept {
    unsigned int i = skipWhiteSpace(str);
    const bool hexadecimal = i + 2 < length && str[i] == '0' && str[i + 1] == 'x';
    if (hexadecimal) i += 2;

    const int digit = hexadecimal ? getHexa(str[i]) : getDecimal(str[i]);
    unsigned int end = 0;
    T value = 0;
    if (digit >= 0) {
        value = hexadecimal ? sumDigits<T, 16, &getHexa>(str, i, length, digit, end)
                            : sumDigits<T, 10, &getDecimal>(str, i, length, digit, end);
    }
    if (count) *count = end;
    return value;
}

/// Returns true if a decimal number begins with the first unit; false for "0", which can be the start of "0x".
template <class CharType>
constexpr bool startsDecimal(const CharType* str) noexcept {
    return static_cast<unsigned int>(str[0]) - '1' < 9;
}

/// Reads an unsigned number, hexadecimal after "0x" and decimal otherwise. `count` is 0 if no digit follows "0x".
template <class T, class CharType>
T parseAutoRadix(const CharType* str, unsigned int* count, unsigned int length) noexcept {
    if (startsDecimal(str)) return sumLeadingDigits<T>(str, count, length);
    return searchAutoRadix<T>(str, count, length);
}

/// Reads a sign, if the first unit is one, and then a number as `parseAutoRadix`. The sign is counted if a number
/// follows.
template <class T, class CharType>
[[gnu::noinline]] T searchSignedAutoRadix(const CharType* str, unsigned int* count, unsigned int length) noexcept {
    const unsigned int sign = str[0];
    if (sign != '-' && sign != '+') return searchAutoRadix<T>(str, count, length);
    const T value = parseAutoRadix<T>(str + 1, count, length - 1);
    if (count && *count != 0) ++*count;
    return sign == '-' ? negated(value) : value;
}

template <class T, class CharType>
T parseSignedAutoRadix(const CharType* str, unsigned int* count, unsigned int length) noexcept {
    if (startsDecimal(str)) return sumLeadingDigits<T>(str, count, length);
    return searchSignedAutoRadix<T>(str, count, length);
}

/// Reads an unsigned number of one radix. `count` includes white space and "0x" even if no digit follows "0x".
template <class T, class CharType, int radix, int (*getFirst)(const CharType*, unsigned int&, unsigned int),
          int (*getDigit)(unsigned int)>
T parseDigits(const CharType* str, unsigned int* count, unsigned int length) noexcept {
    const unsigned int start = skipWhiteSpace(str);
    unsigned int pos = start;
    const int digit = getFirst(str, pos, length);
    const T value = digit < 0 ? T(0) : sumDigits<T, radix, getDigit>(str, pos, length, digit, pos);
    if (count) *count = pos == start ? 0 : pos;
    return value;
}

/// Reads a sign, if the first unit is one, and then a number as `parseDigits`. The sign is always counted, and `length`
/// is not reduced by it.
template <class T, class CharType, int radix, int (*getFirst)(const CharType*, unsigned int&, unsigned int),
          int (*getDigit)(unsigned int)>
[[gnu::noinline]] T searchSignedDigits(const CharType* str, unsigned int* count, unsigned int length) noexcept {
    const unsigned int sign = str[0];
    const unsigned int signs = sign == '-' || sign == '+';
    const T value = parseDigits<T, CharType, radix, getFirst, getDigit>(str + signs, count, length);
    if (count) *count += signs;
    return sign == '-' ? negated(value) : value;
}

template <class T, class CharType, int radix, int (*getFirst)(const CharType*, unsigned int&, unsigned int),
          int (*getDigit)(unsigned int)>
T parseSignedDigits(const CharType* str, unsigned int* count, unsigned int length) noexcept {
    if constexpr (radix == 10) {
        if (getDecimal(str[0]) >= 0) return sumLeadingDigits<T>(str, count, length);
    }
    return searchSignedDigits<T, CharType, radix, getFirst, getDigit>(str, count, length);
}

template <class T, class CharType>
[[gnu::noinline]] T searchDecimalDigits(const CharType* str, unsigned int* count, unsigned int length) noexcept {
    return parseDigits<T, CharType, 10, &getFirstValue<CharType>, &getDecimal>(str, count, length);
}

template <class T, class CharType>
T parseDecimalDigits(const CharType* str, unsigned int* count, unsigned int length) noexcept {
    if (getDecimal(str[0]) >= 0) return sumLeadingDigits<T>(str, count, length);
    return searchDecimalDigits<T>(str, count, length);
}

template <class T, class CharType>
T parseHexadecimalDigits(const CharType* str, unsigned int* count, unsigned int length) noexcept {
    return parseDigits<T, CharType, 16, &getFirstHexaValue<CharType>, &getHexa>(str, count, length);
}

template <class T, class CharType>
T parseSignedDecimalDigits(const CharType* str, unsigned int* count, unsigned int length) noexcept {
    return parseSignedDigits<T, CharType, 10, &getFirstValue<CharType>, &getDecimal>(str, count, length);
}

} // namespace VornPrivate
