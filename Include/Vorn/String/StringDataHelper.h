/// @file
/// StringDataHelper: lengths and conversions of whole buffers between UTF-8 and UTF-16.
///
/// The functions expect valid text and its scan result as `charset`, as every StringData holds them; they report a
/// mismatch as a broken invariant (`Exception<2>`). UTF-8 text contains no zero byte: U+0000 is 0xC0 0x80. Of `info`
/// and `sourceInfo`, only `m_length` is read.
///
/// Cost: a conversion measures the text and then writes it, in two passes with one allocation; ASCII is not measured.
///
/// Threads: the functions share no state.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/Private/Surprise.h"
#include "Vorn/String/StringDataTypes.h"
#include "Vorn/Types.h"

namespace Vorn {

/// Returns the length of a UTF-8 text in UTF-16, in units. Throws `Exception<2>` if the text does not fit `charset`,
/// and for a text with both U+0000 and a 4-byte character.
VORN_SURPRISE("throws for a text with U+0000 and characters of 4 bytes; use toUTF16(text)")
VORN_API unsigned int stringDataGetUTF16Length(const unsigned char* buffer, const StringDataBufferInfo& info,
                                               StringDataSubCharset charset);

/// Returns the length of a UTF-16 text in UTF-8, in bytes, which is not always the number of bytes that the conversion
/// writes: U+0000 counts 1 under `STRING_DATA_UCS2` and is written as 2, and U+007F counts 2 under
/// `STRING_DATA_UNICODE` and is written as 1. Throws `Exception<2>` if the text does not fit `charset`. Throws
/// `Exception<4>`: "length : text too long!" for more than 0xFFFFFFFE bytes.
/// @warning If the last unit is a first surrogate, it reads one unit further. Valid text never ends so.
VORN_SURPRISE("is not always the number of bytes that the conversion writes; use toUTF8(text)")
VORN_API unsigned int stringDataGetUTF8Length(const UTF16Char* buffer, const StringDataBufferInfo& info,
                                              StringDataSubCharset charset);

/// Returns the number of characters in a UTF-8 text. It does not validate: each unmatched trail byte counts as one.
/// Throws `Exception<2>` if the text does not fit `charset`.
VORN_API unsigned int stringDataGetUnicodeLength(const unsigned char* buffer, const StringDataBufferInfo& info,
                                                 StringDataSubCharset charset);

/// Returns the number of characters in a UTF-16 text. Throws `Exception<2>` if the text does not fit `charset`; under
/// `STRING_DATA_UCS2` only the unit 0xFDEF does not.
VORN_API unsigned int stringDataGetUnicodeLength(const UTF16Char* buffer, const StringDataBufferInfo& info,
                                                 StringDataSubCharset charset);

/// Converts UTF-8 to UTF-16, but drops the first surrogate of each 4-byte character; the end of the buffer then
/// contains one zero unit for each of them. All other text is converted exactly.
///
/// Returns a new terminated buffer, which the caller frees with `delete[]`, and sets the length, ownership and
/// terminated flag of `destInfo`. Throws `Exception<2>` if the text does not fit `charset`, and then leaks nothing.
VORN_SURPRISE("drops the first surrogate of each character of 4 bytes; use toUTF16(text)")
VORN_API UTF16Char* stringDataConvertToUTF16(const unsigned char* sourceBuffer, const StringDataBufferInfo& sourceInfo,
                                             StringDataSubCharset charset, StringDataBufferInfo& destInfo);

/// Converts as `stringDataConvertToUTF16` into a new buffer of at least `capacity` units and a terminator. The units
/// from the end of the text to the end of the buffer are zero. Throws `Exception<4>`: "length : text too long!" for a
/// capacity of 0xFFFFFFFF.
VORN_SURPRISE("drops the first surrogate of each character of 4 bytes; use toUTF16(text)")
VORN_API UTF16Char* stringDataConvertCreateUTF16(const unsigned char* sourceBuffer,
                                                 const StringDataBufferInfo& sourceInfo, StringDataSubCharset charset,
                                                 unsigned int capacity);

/// Converts as `stringDataConvertToUTF16` into the caller's memory, without a terminator. Returns the length in units,
/// and writes nothing if `destLength` is smaller. It writes nothing where a new buffer would end with zero units. If it
/// throws because of the text, `dest` holds the beginning of the result.
VORN_SURPRISE("drops the first surrogate of each character of 4 bytes; use toUTF16(text)")
VORN_API unsigned int stringDataConvertCopyToUTF16(const unsigned char* sourceBuffer,
                                                   const StringDataBufferInfo& sourceInfo, StringDataSubCharset charset,
                                                   UTF16Char* dest, unsigned int destLength);

/// Converts UTF-16 to UTF-8, but not all text exactly:
///
/// - Surrogate pairs of the planes 4, 8, 12 and 16, whose first unit ends in 0xC0 to 0xFF, become malformed bytes.
/// - Under `STRING_DATA_UCS2`, each U+0000 is written as two bytes and counted as one. The end of the text is truncated
///   by as many bytes. If a character starts behind the counted length, throws `Exception<2>`: "j < destLength :
///   destination buffer too short!".
/// - Under `STRING_DATA_UNICODE`, the buffer ends with one zero byte for each U+007F.
///
/// Returns a new terminated buffer, which the caller frees with `delete[]`, and sets the length, ownership and
/// terminated flag of `destInfo`. Throws `Exception<2>` if the text does not fit `charset`, and then leaks nothing.
/// Throws `Exception<4>`: "length : text too long!" as `stringDataGetUTF8Length` does, before it allocates.
VORN_SURPRISE("converts U+0000 and some supplementary characters wrongly; use toUTF8(text)")
VORN_API unsigned char* stringDataConvertToUTF8(const UTF16Char* sourceBuffer, const StringDataBufferInfo& sourceInfo,
                                                StringDataSubCharset charset, StringDataBufferInfo& destInfo);

/// Converts as `stringDataConvertToUTF8` into a new buffer of at least `capacity` bytes and a terminator. The bytes
/// behind the text are zero, unless a text with U+0000 has written beyond its length. Throws `Exception<4>`: "length :
/// text too long!" also for a capacity of 0xFFFFFFFF.
VORN_SURPRISE("converts U+0000 and some supplementary characters wrongly; use toUTF8(text)")
VORN_API unsigned char* stringDataConvertCreateUTF8(const UTF16Char* sourceBuffer,
                                                    const StringDataBufferInfo& sourceInfo,
                                                    StringDataSubCharset charset, unsigned int capacity);

/// Converts as `stringDataConvertToUTF8` into the caller's memory, without a terminator. Returns the length in bytes,
/// and writes nothing if `destLength` is smaller. It writes nothing where a new buffer would end with zero bytes.
/// Throws `Exception<4>`: "length : text too long!" as `stringDataGetUTF8Length` does, before it writes. If it throws
/// because of the text, `dest` holds the beginning of the result.
/// @warning A text with U+0000 under `STRING_DATA_UCS2` is written up to two bytes past `destLength`, and does not
///     throw while its characters start below `destLength`. Allocate two bytes more than `destLength`.
VORN_SURPRISE("converts U+0000 and some supplementary characters wrongly; use toUTF8(text)")
VORN_API unsigned int stringDataConvertCopyToUTF8(const UTF16Char* sourceBuffer, const StringDataBufferInfo& sourceInfo,
                                                  StringDataSubCharset charset, unsigned char* dest,
                                                  unsigned int destLength);

/// Converts UTF-16 without surrogates to UTF-8 in the caller's memory. U+0000 becomes 0xC0 0x80. No unit is refused.
/// Throws `Exception<2>`: "j < destLength : destination buffer too short!".
/// @warning The size is tested only at the start of a character: the last one can be written up to 2 bytes past
///     `destLength`. Allocate as many bytes more.
VORN_SURPRISE("can write behind `destLength`; use toUTF8(text, dest, capacity)")
VORN_API void stringDataConvertToUTF8FromUCS2(unsigned char* dest, unsigned int destLength,
                                              const UTF16Char* sourceBuffer, unsigned int sourceLength);

/// Converts UTF-16 with surrogate pairs to UTF-8 in the caller's memory, as above.
/// @warning A pair whose first unit has a low byte of 0xC0 or more becomes malformed bytes: 0xD8C0 0xDC00 becomes 0xF0
///     0xC0 0x80 0x80. The last character can be written up to 3 bytes past `destLength`. If the last unit is a first
///     surrogate, it reads one unit further.
VORN_SURPRISE("can write behind `destLength`; use toUTF8(text, dest, capacity)")
VORN_API void stringDataConvertToUTF8FromUTF16(unsigned char* dest, unsigned int destLength,
                                               const UTF16Char* sourceBuffer, unsigned int sourceLength);

} // namespace Vorn
