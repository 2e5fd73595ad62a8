// ParseInt: text to integers.
//
//     unsigned int count;
//     int value = Vorn::parseInt<int>(text, &count, length);    // "-42", "0x1F"; a count of 0: no number
//
//                values     radix                           sign
//     parseInt   signed     16 behind "0x", otherwise 10    "-" or "+"
//     parseUInt  unsigned   16 behind "0x", otherwise 10    none
//     parseHex   signed     16, "0x" may stand in front     "-" or "+"
//     parseUHex  unsigned   16, "0x" may stand in front     none
//     parseDec   signed     10                              "-" or "+"
//     parseUDec  unsigned   10                              none
//
// Each reads bytes, UTF-16 units and strings. White space (9 to 13 and 32) is skipped in front of the digits, and
// behind a sign too, but not in front of a sign: " -5" is no number and "- 5" is -5. Only a lower-case "x" makes a
// prefix.
//
// The parsers are lenient: text that is no number gives 0, text behind a number is left alone, and a value that is too
// large wraps around without a word. To tell "0" from no number, or to notice what follows, look at `count`; where
// overflow must be noticed, bound the number of digits first.
//
// Cost: one pass, no allocation, no locale. Threads: pure functions of their arguments.
#pragma once

#include "Vorn/Config.h"

namespace Vorn {

class String;

/// @name Integers from a buffer
///
/// `T` is `char`, `signed char`, `short`, `int`, `long` or `long long` for the signed families, one of their unsigned
/// forms for the others; `CharType` is `unsigned char` or `UTF16Char` and follows from `str`.
///
/// `count`, if not null, receives the units consumed from `str` on, with white space, sign and prefix; 0 if there is no
/// number. It is not read. After a sign `parseHex` and `parseDec` always count the sign: a lone "-" gives 0 with a
/// count of 1, where `parseInt` gives a count of 0. "0x" without a digit behind it counts in `parseHex` and `parseUHex`
/// and not in `parseInt` and `parseUInt`.
///
/// `length` is in units; 0xFFFFFFFF means that a zero unit ends the text.
///
/// Raise `Exception<1>` "str : null pointer!" for a null `str`, and for a `length` of 0 "length > 0 : empty buffer!"
/// (`parseHex` and `parseDec`) or "length > 0 : empty string!" (the others).
///
/// @warning `length` is no strict bound; the text must be followed by a unit that is neither digit nor white space,
///     such as a terminator. A scan ends at `length` only if it arrives there right behind a digit. White space is
///     skipped without regard to it, after which digits may be read beyond it; so may any number of digits behind a
///     sign or prefix that is all there is within `length`. Behind a sign `parseHex` and `parseDec` may read one digit
///     too many, or the "x" of a prefix and all digits behind it.
/// @{
template <class T, class CharType>
VORN_API T parseInt(const CharType* str, unsigned int* count = nullptr, unsigned int length = 0xFFFFFFFF);
template <class T, class CharType>
VORN_API T parseUInt(const CharType* str, unsigned int* count = nullptr, unsigned int length = 0xFFFFFFFF);
template <class T, class CharType>
VORN_API T parseHex(const CharType* str, unsigned int* count = nullptr, unsigned int length = 0xFFFFFFFF);
template <class T, class CharType>
VORN_API T parseUHex(const CharType* str, unsigned int* count = nullptr, unsigned int length = 0xFFFFFFFF);
template <class T, class CharType>
VORN_API T parseDec(const CharType* str, unsigned int* count = nullptr, unsigned int length = 0xFFFFFFFF);
template <class T, class CharType>
VORN_API T parseUDec(const CharType* str, unsigned int* count = nullptr, unsigned int length = 0xFFFFFFFF);
/// @}

/// @name Integers from a string
///
/// As above, read from the UTF-8 buffer of the string if it has one, else from the UTF-16 buffer; nothing is converted.
/// These forms cannot tell "0" from text that is no number. The warning holds for the unit behind the text.
///
/// Raise `Exception<4>` "null string!" for a null string and the `Exception<1>` of a zero length for an empty one.
/// @{
template <class T>
VORN_API T parseInt(const String& str);
template <class T>
VORN_API T parseUInt(const String& str);
template <class T>
VORN_API T parseHex(const String& str);
template <class T>
VORN_API T parseUHex(const String& str);
template <class T>
VORN_API T parseDec(const String& str);
template <class T>
VORN_API T parseUDec(const String& str);
/// @}

} // namespace Vorn
