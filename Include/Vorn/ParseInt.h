/// @file
/// ParseInt: reads integers from text.
///
///     unsigned int count;
///     int value = Vorn::parseInt<int>(text, &count, length);    // "-42", "0x1F"; a count of 0: no number
///
///                values     radix                           sign
///     parseInt   signed     16 behind "0x", otherwise 10    "-" or "+"
///     parseUInt  unsigned   16 behind "0x", otherwise 10    none
///     parseHex   signed     16, "0x" may stand in front     "-" or "+"
///     parseUHex  unsigned   16, "0x" may stand in front     none
///     parseDec   signed     10                              "-" or "+"
///     parseUDec  unsigned   10                              none
///
/// Each parser reads bytes, UTF-16 units and strings. It skips white space (9 to 13 and 32) before the digits, also
/// between a sign and the digits, but NOT before a sign: "- 5" gives -5, and " -5" is no number. Only "0x" with a
/// lower-case "x" is a prefix.
///
/// Malformed text is not a failure. Text without a number gives 0, text after the number is ignored, and a value that
/// is too large wraps around. To distinguish "0" from text without a number, or to find the end of the number, read
/// `count`. To detect overflow, limit the number of digits before the call.
///
/// Cost: one pass, no allocation, no locale.
///
/// Threads: the parsers use their arguments only.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/Private/Surprise.h"

namespace Vorn {

class String;

#define VORN_PRIVATE_PARSE_SURPRISE \
    VORN_SURPRISE(                  \
        "reads text behind `length`, ignores what follows the number and wraps large values; use parse<T>(text)")

/// Reads an integer from the start of a buffer and returns its value, or 0 if there is no number.
///
/// `T` is `char`, `signed char`, `short`, `int`, `long` or `long long` for the signed parsers and the unsigned form of
/// one of these for the unsigned parsers. `CharType` is `unsigned char` or `UTF16Char` and is deduced from `str`.
///
/// `count`, if not null, receives the number of units that were read, including white space, sign and prefix; 0 if
/// there is no number. There are two exceptions. `parseHex` and `parseDec` always count a sign: a lone "-" gives a
/// count of 1, where `parseInt` gives 0. `parseHex` and `parseUHex` count a "0x" without digits; `parseInt` and
/// `parseUInt` give 0.
///
/// `length` is in units. 0xFFFFFFFF means that a zero unit ends the text.
///
/// Throws `Exception<1>`: "str : null pointer!". Throws `Exception<1>` for a `length` of 0: "length > 0 : empty
/// buffer!" (`parseHex` and `parseDec`) or "length > 0 : empty string!" (the other parsers).
///
/// @warning `length` is NOT a strict limit. The text must be followed by a unit that is neither a digit nor white
///     space, such as a terminator. A scan stops at `length` only if the last unit before it was a digit of the number.
///     White space is skipped beyond `length`, and the digits after it are read. If only a sign or a prefix lies within
///     `length`, the digits after it are read. After a sign `parseHex` and `parseDec` can read one more digit, or the
///     "x" of a prefix and all digits after it.
/// @{
template <class T, class CharType>
VORN_PRIVATE_PARSE_SURPRISE VORN_API T parseInt(const CharType* str, unsigned int* count = nullptr,
                                                unsigned int length = 0xFFFFFFFF);
template <class T, class CharType>
VORN_PRIVATE_PARSE_SURPRISE VORN_API T parseUInt(const CharType* str, unsigned int* count = nullptr,
                                                 unsigned int length = 0xFFFFFFFF);
template <class T, class CharType>
VORN_PRIVATE_PARSE_SURPRISE VORN_API T parseHex(const CharType* str, unsigned int* count = nullptr,
                                                unsigned int length = 0xFFFFFFFF);
template <class T, class CharType>
VORN_PRIVATE_PARSE_SURPRISE VORN_API T parseUHex(const CharType* str, unsigned int* count = nullptr,
                                                 unsigned int length = 0xFFFFFFFF);
template <class T, class CharType>
VORN_PRIVATE_PARSE_SURPRISE VORN_API T parseDec(const CharType* str, unsigned int* count = nullptr,
                                                unsigned int length = 0xFFFFFFFF);
template <class T, class CharType>
VORN_PRIVATE_PARSE_SURPRISE VORN_API T parseUDec(const CharType* str, unsigned int* count = nullptr,
                                                 unsigned int length = 0xFFFFFFFF);
/// @}

VORN_ALLOW_SURPRISES_BEGIN

/// The same for a literal and other text of `char`.
/// @{
template <class T>
VORN_PRIVATE_PARSE_SURPRISE T parseInt(const char* str, unsigned int* count = nullptr,
                                       unsigned int length = 0xFFFFFFFF) {
    return parseInt<T>(reinterpret_cast<const unsigned char*>(str), count, length);
}
template <class T>
VORN_PRIVATE_PARSE_SURPRISE T parseUInt(const char* str, unsigned int* count = nullptr,
                                        unsigned int length = 0xFFFFFFFF) {
    return parseUInt<T>(reinterpret_cast<const unsigned char*>(str), count, length);
}
template <class T>
VORN_PRIVATE_PARSE_SURPRISE T parseHex(const char* str, unsigned int* count = nullptr,
                                       unsigned int length = 0xFFFFFFFF) {
    return parseHex<T>(reinterpret_cast<const unsigned char*>(str), count, length);
}
template <class T>
VORN_PRIVATE_PARSE_SURPRISE T parseUHex(const char* str, unsigned int* count = nullptr,
                                        unsigned int length = 0xFFFFFFFF) {
    return parseUHex<T>(reinterpret_cast<const unsigned char*>(str), count, length);
}
template <class T>
VORN_PRIVATE_PARSE_SURPRISE T parseDec(const char* str, unsigned int* count = nullptr,
                                       unsigned int length = 0xFFFFFFFF) {
    return parseDec<T>(reinterpret_cast<const unsigned char*>(str), count, length);
}
template <class T>
VORN_PRIVATE_PARSE_SURPRISE T parseUDec(const char* str, unsigned int* count = nullptr,
                                        unsigned int length = 0xFFFFFFFF) {
    return parseUDec<T>(reinterpret_cast<const unsigned char*>(str), count, length);
}
/// @}

VORN_ALLOW_SURPRISES_END

/// Reads an integer from the UTF-8 buffer of the string, or from the UTF-16 buffer if there is no other. Nothing is
/// converted. The result does not distinguish "0" from text without a number.
///
/// Throws `Exception<4>`: "null string!". For an empty string throws the `Exception<1>` of a `length` of 0.
///
/// @warning The unit after the text is read, as with a buffer.
/// @{
template <class T>
VORN_PRIVATE_PARSE_SURPRISE VORN_API T parseInt(const String& str);
template <class T>
VORN_PRIVATE_PARSE_SURPRISE VORN_API T parseUInt(const String& str);
template <class T>
VORN_PRIVATE_PARSE_SURPRISE VORN_API T parseHex(const String& str);
template <class T>
VORN_PRIVATE_PARSE_SURPRISE VORN_API T parseUHex(const String& str);
template <class T>
VORN_PRIVATE_PARSE_SURPRISE VORN_API T parseDec(const String& str);
template <class T>
VORN_PRIVATE_PARSE_SURPRISE VORN_API T parseUDec(const String& str);
/// @}

#undef VORN_PRIVATE_PARSE_SURPRISE

} // namespace Vorn
