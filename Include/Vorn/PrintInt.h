/// @file
/// PrintInt: prints integers of 32 bits into a buffer of the caller.
///
///     unsigned char text[11];
///     unsigned int size = Vorn::printDec(-42, text, 11);    // "-42", size 3
///
/// Each function returns the number of units that the text needs. A text that fits is written without a terminator. If
/// it does not fit, the buffer stays unchanged. A null buffer asks for the size only, whatever `bufferSize` is.
///
/// Cost: no allocation, no locale.
///
/// Threads: the functions use their arguments only.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/Private/Surprise.h"
#include "Vorn/Types.h"

namespace Vorn {

/// Selects whether hexadecimal text begins with "0x". The value is the size of the prefix in units.
enum HexWithPrefix { HEX_WITHOUT_PREFIX = 0, HEX_WITH_PREFIX = 2 };

/// The size of decimal text in units; ONE TOO SMALL for the magnitudes 100000 to 100003, 1000000 to 1000045, 10000000
/// to 10000462, 100000000 to 100718956 and 1000000000 to 1410065407. Has no branch and no loop.
/// @warning `printDec` writes nothing into a buffer of the size that is too small. Use a buffer of 11 units, which
///     holds every value.
/// @{
VORN_SURPRISE("is one too small for some values; use writeText(buffer, capacity, value), or a buffer of 11 units")
VORN_API unsigned int measureDec(int value) noexcept;
VORN_SURPRISE("is one too small for some values; use writeText(buffer, capacity, value), or a buffer of 11 units")
VORN_API unsigned int measureDec(unsigned int value) noexcept;
/// @}

/// Prints decimal text and returns its size in units. With a null buffer it returns `measureDec`, which is ONE TOO
/// SMALL for some values.
/// @{
VORN_API unsigned int printDec(int value, unsigned char* buffer, unsigned int bufferSize) noexcept;
VORN_API unsigned int printDec(unsigned int value, unsigned char* buffer, unsigned int bufferSize) noexcept;
/// @}

/// Prints only the FIRST HALF of the decimal text: as many bytes as the text has units. Returns the size in units.
/// @warning For 12345 the buffer receives the units "1" and "2" and the low byte of the unit "3"; the result is 5. For
///     the whole text print bytes and convert each to a unit.
/// @{
VORN_SURPRISE("prints only the first half of the text; use toText(value)")
VORN_API unsigned int printDec(int value, UTF16Char* buffer, unsigned int bufferSize) noexcept;
VORN_SURPRISE("prints only the first half of the text; use toText(value)")
VORN_API unsigned int printDec(unsigned int value, UTF16Char* buffer, unsigned int bufferSize) noexcept;
/// @}

/// The size in units of the text that `printHex` prints. Has no branch and no loop.
/// @{
VORN_API unsigned int measureHex(int value, HexWithPrefix prefix) noexcept;
VORN_API unsigned int measureHex(unsigned int value, HexWithPrefix prefix) noexcept;
/// @}

/// Prints sign and magnitude in upper-case hexadecimal digits; without a prefix the sign is "x", NOT "-". Returns the
/// size in units.
///
/// -255 prints as "-0xFF" with a prefix and as "xFF" without. For the bits of the two's complement print the value as
/// `unsigned int`.
/// @{
VORN_SURPRISE("prints \"x\" as the sign if there is no prefix; use toText(value, 16)")
VORN_API unsigned int printHex(int value, HexWithPrefix prefix, unsigned char* buffer,
                               unsigned int bufferSize) noexcept;
VORN_SURPRISE("prints \"x\" as the sign if there is no prefix; use toText(value, 16)")
VORN_API unsigned int printHex(int value, HexWithPrefix prefix, UTF16Char* buffer, unsigned int bufferSize) noexcept;
/// @}

/// Prints upper-case hexadecimal digits: "FF", or "0xFF" with a prefix. Returns the size in units.
/// @{
VORN_API unsigned int printHex(unsigned int value, HexWithPrefix prefix, unsigned char* buffer,
                               unsigned int bufferSize) noexcept;
VORN_API unsigned int printHex(unsigned int value, HexWithPrefix prefix, UTF16Char* buffer,
                               unsigned int bufferSize) noexcept;
/// @}

VORN_ALLOW_SURPRISES_BEGIN

/// The same for buffers of `char`.
/// @{
inline unsigned int printDec(int value, char* buffer, unsigned int bufferSize) noexcept {
    return printDec(value, reinterpret_cast<unsigned char*>(buffer), bufferSize);
}
inline unsigned int printDec(unsigned int value, char* buffer, unsigned int bufferSize) noexcept {
    return printDec(value, reinterpret_cast<unsigned char*>(buffer), bufferSize);
}
VORN_SURPRISE("prints \"x\" as the sign if there is no prefix; use toText(value, 16)")
inline unsigned int printHex(int value, HexWithPrefix prefix, char* buffer, unsigned int bufferSize) noexcept {
    return printHex(value, prefix, reinterpret_cast<unsigned char*>(buffer), bufferSize);
}
inline unsigned int printHex(unsigned int value, HexWithPrefix prefix, char* buffer, unsigned int bufferSize) noexcept {
    return printHex(value, prefix, reinterpret_cast<unsigned char*>(buffer), bufferSize);
}
/// @}

VORN_ALLOW_SURPRISES_END

} // namespace Vorn
