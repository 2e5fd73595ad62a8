// ParseFloat: text to floating-point numbers.
//
//     unsigned int count;
//     double value = Vorn::parseDouble(text, &count, length);    // "-2.5e10", ".5", "5.", "0x1.8p-3"
//
// A fast scanner that is not correctly rounded: digits are summed in the target type, so the last bits may differ from
// the nearest value. The bits are the same on every platform. Where the nearest value is needed, take std::from_chars.
//
// White space (9 to 13 and 32), then a sign, then a decimal number with fraction and exponent, or "0x" and a
// hexadecimal number with fraction and binary exponent. Letters count in both cases. There is no spelling of infinity
// or NaN: text that begins with one gives NaN with a count of 0, as does every other text whose first letter is "n" (or
// "i", which a sign may precede).
//
// Cost: one pass, no allocation, no locale. Threads: pure functions of their arguments.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/Types.h"

namespace Vorn {

class String;

/// @name Floating-point numbers from a buffer
///
/// `count`, if not null, receives the index reached, from `str` on. It may be positive where no digit was read: text
/// without a number gives 0, or -0 behind "-", and counts the white space and the sign. It is 0 where `length` ends
/// before the number begins and for the letters above, and it stays as it was where the result is NaN because of a
/// comma in the place of a sign, or because of a sign where `length` less its index plus 1 is negative as an `int`:
/// with a `length` of 0xFFFFFFFF, a sign behind white space.
///
/// `length` is in units and may be 0. 0xFFFFFFFF serves for text that a zero unit ends.
///
/// Raise `Exception<1>` "str : null pointer!" for a null `str`; nothing else is a failure.
///
/// @warning `length` is no strict bound; the text must be followed by a unit that is neither digit nor white space,
///     such as a terminator. White space is skipped without regard to it. A point behind a whole part is looked at, and
///     consumed, wherever it stands: "5." with a length of 1 counts 2. What ParseInt.h says of its bounds holds for the
///     parts.
/// @warning A decimal exponent needs two units behind the "e" within `length`: "1e5" with a length of 3 is 1, with a
///     count of 1.
/// @{
VORN_API float parseFloat(const unsigned char* str, unsigned int* count = nullptr, unsigned int length = 0xFFFFFFFF);
VORN_API float parseFloat(const UTF16Char* str, unsigned int* count = nullptr, unsigned int length = 0xFFFFFFFF);

/// The whole part wraps around at 2 to the power 32, not at 64 as in `parseFloat`: "4294967296" gives 0. So does the
/// hexadecimal fraction, of which 8 digits divide by a negative number: "0x1.80000000" gives 0.5.
VORN_API double parseDouble(const unsigned char* str, unsigned int* count = nullptr, unsigned int length = 0xFFFFFFFF);
VORN_API double parseDouble(const UTF16Char* str, unsigned int* count = nullptr, unsigned int length = 0xFFFFFFFF);

/// `parseFloat` under a second name.
VORN_API float parseReal(const unsigned char* str, unsigned int* count = nullptr, unsigned int length = 0xFFFFFFFF);
VORN_API float parseReal(const UTF16Char* str, unsigned int* count = nullptr, unsigned int length = 0xFFFFFFFF);
/// @}

/// @name Floating-point numbers from a string
///
/// As above, read from the UTF-16 buffer of the string if it has one, else from the UTF-8 buffer: the other way round
/// than the integer parsers. Nothing is converted. A null string gives NaN and an empty one 0; nothing is raised. The
/// warnings hold for the units behind the text.
/// @{
VORN_API float parseFloat(String str);
VORN_API double parseDouble(String str);
VORN_API float parseReal(String str);
/// @}

} // namespace Vorn
