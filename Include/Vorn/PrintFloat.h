/// @file
/// PrintFloat: prints floating-point numbers into a buffer of the caller.
///
///     unsigned char text[32];
///     unsigned int size = Vorn::printDec(1.5f, text, 32, 2, Vorn::FLOAT_EXPONENT_NONE);    // "1.50", size 4
///     size = Vorn::printHex(-3.0f, text, 32);                                              // "-0x1.8p1", size 8
///
/// Each function returns the number of units that the text needs. A text that fits is written without a terminator. If
/// it does not fit, the buffer stays unchanged. A null buffer asks for the size only.
///
/// Decimal text comes from the streams of the standard library, with its rounding and its spelling of infinity and NaN.
/// Hexadecimal text is the exact value.
///
/// Cost: decimal text builds a stream for each call and formats the value two or three times; in hot code use
/// `toText` or `writeText` (Vorn/Text/TextNumbers.h). Hexadecimal text uses no stream and allocates nothing.
///
/// Threads: `measureDec` reads the global locale, which no thread may change meanwhile. All other functions use their
/// arguments only.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/Private/Surprise.h"
#include "Vorn/Types.h"

namespace Vorn {

/// The layout of decimal text.
enum FloatExponent {
    FLOAT_EXPONENT_AUTO VORN_SURPRISE(
        "can write beyond the buffer, mostly hexadecimal text; use toText(value) or another layout") =
        0,                   ///< both `fixed` and `scientific`, which many standard libraries print as hexadecimal text
    FLOAT_EXPONENT_NONE = 1, ///< no exponent, as with `std::fixed`
    FLOAT_EXPONENT_ALWAYS = 2 ///< with an exponent, as with `std::scientific`
};

/// The size in units of the text that `printDec` prints, but in the GLOBAL LOCALE, which `printDec` does not use. To
/// measure in the "C" locale call `printDec` with a null buffer.
/// @warning With `FLOAT_EXPONENT_AUTO` the size can be less than `printDec` writes; see there.
/// @{
VORN_SURPRISE("measures in the global locale, which printDec does not use; call printDec with a null buffer")
VORN_API unsigned int measureDec(float value, unsigned int precision, FloatExponent exponent);
VORN_SURPRISE("measures in the global locale, which printDec does not use; call printDec with a null buffer")
VORN_API unsigned int measureDec(double value, unsigned int precision, FloatExponent exponent);
/// @}

/// Prints decimal text with `precision` digits after the point, in the "C" locale. Returns the size in units.
///
/// Only the digits that can differ from 0 pass through a stream, so every precision up to 2147483647 is safe. Throws
/// the exceptions of the standard library, such as `std::runtime_error` if the locale cannot be built.
/// @warning For a precision of 2147483648 or more the stream reads a negative one and prints six digits.
/// @warning `FLOAT_EXPONENT_AUTO`, as any value other than the two others, can write BEYOND the end of the buffer. The
///     result is the smaller of the sizes with an exponent and with both flags set, but the text is always the one with
///     both flags. Pass a buffer that holds both texts, or choose another layout.
/// @{
VORN_API unsigned int printDec(float value, unsigned char* buffer, unsigned int bufferSize, unsigned int precision,
                               FloatExponent exponent);
VORN_API unsigned int printDec(float value, UTF16Char* buffer, unsigned int bufferSize, unsigned int precision,
                               FloatExponent exponent);
VORN_API unsigned int printDec(double value, unsigned char* buffer, unsigned int bufferSize, unsigned int precision,
                               FloatExponent exponent);
VORN_API unsigned int printDec(double value, UTF16Char* buffer, unsigned int bufferSize, unsigned int precision,
                               FloatExponent exponent);
/// @}

/// The size in units of the text that `printHex` prints, also for values for which `printHex` throws.
/// @{
VORN_API unsigned int measureHex(float value) noexcept;
VORN_API unsigned int measureHex(double value) noexcept;
/// @}

/// Prints the exact value in hexadecimal; throws for some small negative values. Returns the size in units.
///
/// The text is an optional "-", "0x1" (also for subnormal numbers), the fraction in upper-case digits, and "p" with the
/// binary exponent unless that is 0. Zero prints as "0x0", infinity as "INF" and NaN as "NAN" without a sign.
///
/// Throws `Exception<2>`: "count < bufferSize : unexpected large exponent" for the longest texts, which are those of
/// negative values with all fraction digits and an exponent below -99. Print the magnitude of such values.
VORN_SURPRISE("throws for long negative values with an exponent below -99; use toHexText(value)")
VORN_API unsigned int printHex(float value, unsigned char* buffer, unsigned int bufferSize);

/// Prints a `double` as the form for `float` does, but every magnitude ABOVE 2 to the power 1017 as "NAN", also
/// infinity. It throws for exponents below -999 in place of -99.
VORN_SURPRISE(
    "throws for long negative values with an exponent below -999, and prints large ones as NAN; use toHexText(value)")
VORN_API unsigned int printHex(double value, unsigned char* buffer, unsigned int bufferSize);

/// Prints as the form for bytes does, but only the FIRST HALF of the exponent: as many of its bytes as it has units,
/// then zeros. For the whole text print bytes and convert each to a unit.
/// @{
VORN_SURPRISE("prints only the first half of the exponent; use toHexText(value)")
VORN_API unsigned int printHex(float value, UTF16Char* buffer, unsigned int bufferSize);
VORN_SURPRISE("prints only the first half of the exponent; use toHexText(value)")
VORN_API unsigned int printHex(double value, UTF16Char* buffer, unsigned int bufferSize);
/// @}

VORN_ALLOW_SURPRISES_BEGIN

/// The same for buffers of `char`.
/// @{
inline unsigned int printDec(float value, char* buffer, unsigned int bufferSize, unsigned int precision,
                             FloatExponent exponent) {
    return printDec(value, reinterpret_cast<unsigned char*>(buffer), bufferSize, precision, exponent);
}
inline unsigned int printDec(double value, char* buffer, unsigned int bufferSize, unsigned int precision,
                             FloatExponent exponent) {
    return printDec(value, reinterpret_cast<unsigned char*>(buffer), bufferSize, precision, exponent);
}
VORN_SURPRISE("throws for long negative values with an exponent below -99; use toHexText(value)")
inline unsigned int printHex(float value, char* buffer, unsigned int bufferSize) {
    return printHex(value, reinterpret_cast<unsigned char*>(buffer), bufferSize);
}
VORN_SURPRISE(
    "throws for long negative values with an exponent below -999, and prints large ones as NAN; use toHexText(value)")
inline unsigned int printHex(double value, char* buffer, unsigned int bufferSize) {
    return printHex(value, reinterpret_cast<unsigned char*>(buffer), bufferSize);
}
/// @}

VORN_ALLOW_SURPRISES_END

} // namespace Vorn
