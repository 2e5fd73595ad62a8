// PrintFloat: floating-point numbers to text in a caller's buffer.
//
//     unsigned char text[32];
//     unsigned int size = Vorn::printDec(1.5f, text, 32, 2, Vorn::FLOAT_EXPONENT_NONE);    // "1.50", size 4
//     size = Vorn::printHex(-3.0f, text, 32);                                              // "-0x1.8p1", size 8
//
// As in PrintInt.h the result is the number of units that the text needs, a text that does not fit leaves the buffer as
// it was, a null buffer asks for the size only, and nothing is terminated.
//
// Decimal text comes from the streams of the standard library, with its rounding and its spelling of infinity and NaN.
// Hexadecimal text is the exact value.
//
// Cost: decimal text builds a stream for each call and formats the value two or three times; in hot code take
// std::to_chars. Hexadecimal text needs no stream and no heap. Threads: `measureDec` reads the global locale, which
// nobody may change meanwhile; all else is a function of its arguments.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/Types.h"

namespace Vorn {

/// The layout of decimal text.
enum FloatExponent {
    FLOAT_EXPONENT_AUTO = 0,  ///< `fixed` and `scientific` both set, which many libraries print in hexadecimal
    FLOAT_EXPONENT_NONE = 1,  ///< no exponent, as by `std::fixed`
    FLOAT_EXPONENT_ALWAYS = 2 ///< with an exponent, as by `std::scientific`
};

/// The size of what `printDec` prints, if the program's global locale is the classic one: this alone uses the global
/// locale. With `FLOAT_EXPONENT_AUTO` the size may be less than is printed; see there.
VORN_API unsigned int measureDec(float value, unsigned int precision, FloatExponent exponent);
VORN_API unsigned int measureDec(double value, unsigned int precision, FloatExponent exponent);

/// Prints with `precision` digits behind the point, in the "C" locale whatever the global one is. Every precision is
/// safe: only the digits that can differ from 0 pass through a stream. Throws what the standard library throws, such as
/// `std::runtime_error` where the locale cannot be built.
/// @warning A stream takes a precision of 2^31 and more for a negative one and prints six digits.
/// @warning With `FLOAT_EXPONENT_AUTO` (and any value but the two others) the result is the smaller of the sizes with
///     an exponent and with both flags set, but the text written is the one with both flags set, also where that is
///     the longer one. Such a text runs over the end of a buffer that only the smaller one fits. Give room for both, or
///     choose one of the other layouts.
VORN_API unsigned int printDec(float value, unsigned char* buffer, unsigned int bufferSize, unsigned int precision,
                               FloatExponent exponent);
VORN_API unsigned int printDec(float value, UTF16Char* buffer, unsigned int bufferSize, unsigned int precision,
                               FloatExponent exponent);
VORN_API unsigned int printDec(double value, unsigned char* buffer, unsigned int bufferSize, unsigned int precision,
                               FloatExponent exponent);
VORN_API unsigned int printDec(double value, UTF16Char* buffer, unsigned int bufferSize, unsigned int precision,
                               FloatExponent exponent);

/// The size of what `printHex` prints, also where `printHex` raises.
VORN_API unsigned int measureHex(float value) noexcept;
VORN_API unsigned int measureHex(double value) noexcept;

/// The exact value: an optional "-", "0x1" also for subnormal numbers, the fraction in upper-case digits, and "p" with
/// the binary exponent unless that is 0. Zero is "0x0", infinity "INF", and NaN "NAN" without a sign.
///
/// Raises `Exception<2>` "count < bufferSize : unexpected large exponent" for texts of the greatest length: negative
/// values with all fraction digits in use and an exponent below -99.
VORN_API unsigned int printHex(float value, unsigned char* buffer, unsigned int bufferSize);

/// Takes every value from 2 to the power 1017 upward for NaN, infinity too, but for that power itself: they print as
/// "NAN". Apart from that as for `float`; here the exponents below -999 raise.
VORN_API unsigned int printHex(double value, unsigned char* buffer, unsigned int bufferSize);

/// Prints only the first half of the exponent: as many bytes of it as it has units, and zeros for the rest. Apart from
/// that as for bytes.
VORN_API unsigned int printHex(float value, UTF16Char* buffer, unsigned int bufferSize);
VORN_API unsigned int printHex(double value, UTF16Char* buffer, unsigned int bufferSize);

} // namespace Vorn
