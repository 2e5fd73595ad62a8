// PrintInt: integers of 32 bits to text in a caller's buffer.
//
//     unsigned char text[11];
//     unsigned int size = Vorn::printDec(-42, text, 11);    // "-42", size 3
//
// The result is always the number of units that the text needs. A text that fits is written, without a terminator; one
// that does not fit leaves the buffer as it was. A null buffer asks for the size only, whatever `bufferSize` is.
//
// Cost: no allocation, no locale. Threads: pure functions of their arguments.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/Types.h"

namespace Vorn {

/// Whether hexadecimal text begins with "0x". The value is the number of units that this takes.
enum HexWithPrefix { HEX_WITHOUT_PREFIX = 0, HEX_WITH_PREFIX = 2 };

/// One less than the text needs for magnitudes from 100000 to 100003, 1000000 to 1000045, 10000000 to 10000462,
/// 100000000 to 100718956 and 1000000000 to 1410065407; exact everywhere else. No branch, no loop.
/// @warning A buffer that is made for such a value by this size stays empty. 11 units hold every value.
VORN_API unsigned int measureDec(int value) noexcept;
VORN_API unsigned int measureDec(unsigned int value) noexcept;

/// Prints all digits; with a null buffer gives `measureDec`, which is one too small for the values listed there.
VORN_API unsigned int printDec(int value, unsigned char* buffer, unsigned int bufferSize) noexcept;
VORN_API unsigned int printDec(unsigned int value, unsigned char* buffer, unsigned int bufferSize) noexcept;

/// Prints the first half of the text only: as many bytes as the text has units. Of 12345 the buffer receives the units
/// 1 and 2 and the low byte of the unit 3; the result is 5. For the whole text print bytes and widen them.
VORN_API unsigned int printDec(int value, UTF16Char* buffer, unsigned int bufferSize) noexcept;
VORN_API unsigned int printDec(unsigned int value, UTF16Char* buffer, unsigned int bufferSize) noexcept;

/// The exact size of what `printHex` prints. No branch, no loop.
VORN_API unsigned int measureHex(int value, HexWithPrefix prefix) noexcept;
VORN_API unsigned int measureHex(unsigned int value, HexWithPrefix prefix) noexcept;

/// Without a prefix a negative value begins with "x" in place of "-": -255 prints as "xFF". With a prefix it is
/// "-0xFF": the magnitude, in upper-case digits. To see the two's complement bits, print the `unsigned int`.
VORN_API unsigned int printHex(int value, HexWithPrefix prefix, unsigned char* buffer,
                               unsigned int bufferSize) noexcept;
VORN_API unsigned int printHex(int value, HexWithPrefix prefix, UTF16Char* buffer, unsigned int bufferSize) noexcept;

/// "FF", or "0xFF" with a prefix.
VORN_API unsigned int printHex(unsigned int value, HexWithPrefix prefix, unsigned char* buffer,
                               unsigned int bufferSize) noexcept;
VORN_API unsigned int printHex(unsigned int value, HexWithPrefix prefix, UTF16Char* buffer,
                               unsigned int bufferSize) noexcept;

} // namespace Vorn
