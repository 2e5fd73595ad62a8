/// @file
/// ParseFloat: reads floating-point numbers from text.
///
///     unsigned int count = 0;
///     double value = Vorn::parseDouble(text, &count, length);    // "-2.5e10", ".5", "5.", "0x1.8p-3"
///
/// The parsers are fast and NOT correctly rounded: digits are summed in the target type, so the last bits can differ
/// from the nearest value. The bits are the same on every platform. For the nearest value use `parse`
/// (Vorn/Text/TextNumbers.h).
///
/// The text is white space (9 to 13 and 32), a sign, and then a decimal number with fraction and exponent, or "0x" and
/// a hexadecimal number with fraction and binary exponent. White space, sign, fraction and exponent may be missing.
/// White space before the sign is accepted, unlike by the integer parsers.
/// Letters are accepted in both cases. Infinity and NaN cannot be read: text whose first letter is "n", or "i" with or
/// without a sign, gives NaN with a count of 0.
///
/// Cost: one pass, no allocation, no locale.
///
/// Threads: the parsers use their arguments only.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/Private/Surprise.h"
#include "Vorn/Types.h"

namespace Vorn {

class String;

#define VORN_PRIVATE_PARSE_SURPRISE \
    VORN_SURPRISE(                  \
        "is not the nearest value, and reads text behind `length`; use parse<float>(text) or parse<double>(text)")

/// Reads a `float` from the start of a buffer. Text without a number gives 0, or -0 after a "-".
///
/// The whole part has 64 bits and wraps around.
///
/// `count`, if not null, receives the number of units that were read, with these exceptions:
///
/// - Without a digit it counts the white space and the sign, so that it can be positive.
/// - It is 0 if `length` ends before the number begins, and for the letters "n" and "i".
/// - It is NOT written, and the result is NaN, if a comma stands in the place of the sign, or with the default `length`
///   if a sign follows white space: in general if `length - i + 1` as an `int` is negative for a sign at index i.
///
/// `length` is in units and may be 0. 0xFFFFFFFF means that a zero unit ends the text.
///
/// Throws `Exception<1>`: "str : null pointer!".
///
/// @warning `length` is NOT a strict limit. The text must be followed by a unit that is neither a digit nor white
///     space, such as a terminator. White space is skipped beyond `length`. A point after the whole part is read
///     wherever it stands: "5." with a length of 1 gives a count of 2. The limits of Vorn/ParseInt.h apply to each part
///     of the number.
/// @warning A decimal exponent is read only if two units after the "e" lie within `length`: "1e5" with a length of 3
///     gives 1 and a count of 1. Pass a length that includes one unit behind the number, such as the terminator or a
///     delimiter, or write "1e05".
/// @{
VORN_PRIVATE_PARSE_SURPRISE VORN_API float parseFloat(const unsigned char* str, unsigned int* count = nullptr,
                                                      unsigned int length = 0xFFFFFFFF);
VORN_PRIVATE_PARSE_SURPRISE VORN_API float parseFloat(const UTF16Char* str, unsigned int* count = nullptr,
                                                      unsigned int length = 0xFFFFFFFF);
/// @}

/// Reads a `double` as `parseFloat` reads a `float`, but whole parts from 4294967296 on WRAP AROUND.
///
/// The whole part has 32 bits here, so "4294967296" gives 0.
/// @warning The hexadecimal fraction has 32 bits too. With 8 digits its denominator is negative: "0x1.80000000" gives
///     0.5. Write at most 7 digits, or use std::from_chars.
/// @{
VORN_PRIVATE_PARSE_SURPRISE VORN_API double parseDouble(const unsigned char* str, unsigned int* count = nullptr,
                                                        unsigned int length = 0xFFFFFFFF);
VORN_PRIVATE_PARSE_SURPRISE VORN_API double parseDouble(const UTF16Char* str, unsigned int* count = nullptr,
                                                        unsigned int length = 0xFFFFFFFF);
/// @}

/// The same as `parseFloat`.
/// @{
VORN_PRIVATE_PARSE_SURPRISE VORN_API float parseReal(const unsigned char* str, unsigned int* count = nullptr,
                                                     unsigned int length = 0xFFFFFFFF);
VORN_PRIVATE_PARSE_SURPRISE VORN_API float parseReal(const UTF16Char* str, unsigned int* count = nullptr,
                                                     unsigned int length = 0xFFFFFFFF);
/// @}

VORN_ALLOW_SURPRISES_BEGIN

/// The same for text of `char`. With one argument such a text is converted to a String, as below.
/// @{
VORN_PRIVATE_PARSE_SURPRISE inline float parseFloat(const char* str, unsigned int* count,
                                                    unsigned int length = 0xFFFFFFFF) {
    return parseFloat(reinterpret_cast<const unsigned char*>(str), count, length);
}
VORN_PRIVATE_PARSE_SURPRISE inline double parseDouble(const char* str, unsigned int* count,
                                                      unsigned int length = 0xFFFFFFFF) {
    return parseDouble(reinterpret_cast<const unsigned char*>(str), count, length);
}
VORN_PRIVATE_PARSE_SURPRISE inline float parseReal(const char* str, unsigned int* count,
                                                   unsigned int length = 0xFFFFFFFF) {
    return parseReal(reinterpret_cast<const unsigned char*>(str), count, length);
}
/// @}

VORN_ALLOW_SURPRISES_END

/// Reads a number from the UTF-16 buffer of the string, or from the UTF-8 buffer if there is no other: NOT in the order
/// of the integer parsers. Nothing is converted. A null string gives NaN, an empty string gives 0, and nothing is
/// thrown.
///
/// @warning The unit after the text is read, as with a buffer.
/// @warning A `std::string` is converted to a String, which leaks its copy. Pass its bytes instead.
/// @{
VORN_PRIVATE_PARSE_SURPRISE VORN_API float parseFloat(String str);
VORN_PRIVATE_PARSE_SURPRISE VORN_API double parseDouble(String str);
VORN_PRIVATE_PARSE_SURPRISE VORN_API float parseReal(String str);
/// @}

#undef VORN_PRIVATE_PARSE_SURPRISE

} // namespace Vorn
