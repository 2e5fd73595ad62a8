// ParseDigits: the scanners behind all number parsers. They check nothing; the callers have done so.
//
// A scanner reads one unit at a time and never one behind the unit that ends the number, so that terminated text is
// safe whatever `length` says. `length` ends a scan only where the index meets it right behind a digit: callers hand in
// text that ends at a terminator or a delimiter, and rely on a digit beyond a tight bound being read.
#pragma once

#include "Vorn/String/UnicodeBits.h" // range tests without branches

#include <type_traits>

namespace VornPrivate {

/// True for 9 to 13 and 32.
constexpr bool isWhiteSpace(unsigned int c) noexcept { return (rangeMask(c, 9, 13) | rangeMask(c, ' ', ' ')) != 0; }

/// The value of a decimal digit, or -1. One comparison of a difference: alone it takes no branch, and in a loop that
/// ends behind the digits it becomes the branch of the loop.
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

/// The first digit of a hexadecimal scan, behind "0x" if `length` leaves room for the two. The second unit is looked at
/// only behind a zero digit, so the scan of an empty text ends at its terminator.
template <class CharType>
constexpr int getFirstHexaValue(const CharType* str, unsigned int& pos, unsigned int length) noexcept {
    const unsigned int zero = static_cast<unsigned int>(pos + 1 < length) & static_cast<unsigned int>(str[pos] == '0');
    pos += 2 * (zero & static_cast<unsigned int>(str[pos + zero] == 'x'));
    return getHexa(str[pos]);
}

/// Values are summed without a sign, in a word at least as wide as theirs: cutting the sum at the end gives what
/// wrapping at each step would give.
template <class T>
using Sum = std::conditional_t<sizeof(T) <= sizeof(unsigned int), unsigned int, unsigned long long>;

template <class T>
constexpr T negated(T value) noexcept {
    return static_cast<T>(0 - static_cast<Sum<T>>(value));
}

/// Index of the first unit that is no white space. No length bounds this search.
template <class CharType>
constexpr unsigned int skipWhiteSpace(const CharType* str) noexcept {
    unsigned int i = 0;
    while (str[i] <= ' ' && isWhiteSpace(str[i])) ++i; // most texts are through after the comparison
    return i;
}

/// Sums `digit`, which is unit `pos`, and the digits behind it. `end` becomes the index behind them.
template <class T, unsigned int radix, int (*getDigit)(unsigned int), class CharType>
constexpr T sumDigits(const CharType* str, unsigned int pos, unsigned int length, int digit,
                      unsigned int& end) noexcept {
    const CharType* unit = str + pos;
    unsigned int remaining = length - pos; // wraps if the bound lies behind already, and then ends nothing
    Sum<T> value = 0;
    do {
        value = value * radix + static_cast<unsigned int>(digit);
        if (--remaining == 0) break;
        digit = getDigit(*++unit);
    } while (digit >= 0);
    end = length - remaining;
    return static_cast<T>(value);
}

/// Most texts begin with a digit of a decimal number. These need no search for white space, sign or prefix, and the
/// functions that search stay out of line, so that this way costs little more than the digits.
template <class T, class CharType>
constexpr T sumLeadingDigits(const CharType* str, unsigned int* count, unsigned int length) noexcept {
    unsigned int end = 0;
    const T value = sumDigits<T, 10, &getDecimal>(str, 0, length, getDecimal(str[0]), end);
    if (count) *count = end;
    return value;
}

/// The whole of `parseAutoRadix`.
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

/// True for a text of a decimal number and nothing before it: not for "0", which may begin "0x".
template <class CharType>
constexpr bool startsDecimal(const CharType* str) noexcept {
    return static_cast<unsigned int>(str[0]) - '1' < 9;
}

/// An unsigned number, hexadecimal behind "0x" and decimal otherwise. `count` is 0 if "0x" has no digit behind it.
template <class T, class CharType>
T parseAutoRadix(const CharType* str, unsigned int* count, unsigned int length) noexcept {
    if (startsDecimal(str)) return sumLeadingDigits<T>(str, count, length);
    return searchAutoRadix<T>(str, count, length);
}

/// As `searchAutoRadix`, behind a sign if the very first unit is one. The sign is counted if a number follows.
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

/// An unsigned number of one radix. `count` covers white space and "0x" even if no digit follows "0x".
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

/// As `parseDigits`, behind a sign if the very first unit is one. The sign is counted always, and `length` bounds the
/// text behind it as if there were none.
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
