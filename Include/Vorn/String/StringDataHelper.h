// StringDataHelper: lengths and conversions of whole buffers, between UTF-8 and UTF-16.
//
// These functions trust that the text is valid and that `charset` is its verdict, as every StringData has them; what
// they check, they check as invariants of the library. This UTF-8 has no zero byte: U+0000 is 0xC0 0x80.
//
// Of `info` and `sourceInfo`, only `m_length` is read. Each conversion measures and then writes, in two passes and with
// one allocation; ASCII is not measured. Reentrant.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/String/StringDataTypes.h"
#include "Vorn/Types.h"

namespace Vorn {

/// Units that a UTF-8 text takes in UTF-16.
/// Raises `Exception<2>` if the text does not fit the verdict, and for a text with both U+0000 and a 4-byte character.
VORN_API unsigned int stringDataGetUTF16Length(const unsigned char* buffer, const StringDataBufferInfo& info,
                                               StringDataSubCharset charset);

/// Not always the bytes that the conversion writes: U+0000 counts 1 under `STRING_DATA_UCS2` and takes 2, and U+007F
/// counts 2 under `STRING_DATA_UNICODE` and takes 1. Otherwise the bytes that a UTF-16 text takes in UTF-8.
/// Raises `Exception<2>` if the text does not fit the verdict. Throws `Exception<4>`: "length : text too long!" if the
/// text takes more than 0xFFFFFFFE bytes.
/// @warning A first surrogate as the last unit makes it read one unit further. Valid text has none.
VORN_API unsigned int stringDataGetUTF8Length(const UTF16Char* buffer, const StringDataBufferInfo& info,
                                              StringDataSubCharset charset);

/// Characters in a UTF-8 text. No validator: lone trail bytes count as one each.
/// Raises `Exception<2>` if the text does not fit the verdict.
VORN_API unsigned int stringDataGetUnicodeLength(const unsigned char* buffer, const StringDataBufferInfo& info,
                                                 StringDataSubCharset charset);

/// Characters in a UTF-16 text. Raises `Exception<2>` if the text does not fit the verdict; under `STRING_DATA_UCS2`
/// only the unit 0xFDEF does so.
VORN_API unsigned int stringDataGetUnicodeLength(const UTF16Char* buffer, const StringDataBufferInfo& info,
                                                 StringDataSubCharset charset);

/// Loses the first surrogate of each 4-byte character: it becomes its second surrogate alone, and the end of the buffer
/// holds one zero unit for each of them. All other text converts exactly.
/// Returns a new terminated buffer, the caller's to free with array delete, and fills length, type and terminated flag
/// of `destInfo`. Raises `Exception<2>` if the text does not fit the verdict, and leaves no buffer behind.
VORN_API UTF16Char* stringDataConvertToUTF16(const unsigned char* sourceBuffer, const StringDataBufferInfo& sourceInfo,
                                             StringDataSubCharset charset, StringDataBufferInfo& destInfo);

/// As `stringDataConvertToUTF16`, into a new buffer of at least `capacity` units and a terminator, with zero units from
/// the end of the text to the end of the buffer. Throws `Exception<4>`: "length : text too long!" for a capacity of
/// 0xFFFFFFFF.
VORN_API UTF16Char* stringDataConvertCreateUTF16(const unsigned char* sourceBuffer,
                                                 const StringDataBufferInfo& sourceInfo, StringDataSubCharset charset,
                                                 unsigned int capacity);

/// As `stringDataConvertToUTF16`, into the caller's memory and without a terminator. Returns the length in units, and
/// writes nothing if `destLength` is below that. Where a new buffer would end with zero units, nothing is written.
VORN_API unsigned int stringDataConvertCopyToUTF16(const unsigned char* sourceBuffer,
                                                   const StringDataBufferInfo& sourceInfo, StringDataSubCharset charset,
                                                   UTF16Char* dest, unsigned int destLength);

/// Garbles some text: pairs of the planes 4, 8, 12 and 16, whose first unit ends in 0xC0 to 0xFF, become malformed
/// bytes; under `STRING_DATA_UCS2` each U+0000 is written as two bytes and counted as one, so that the end of the text
/// is cut by as many bytes, or fails with "j < destLength : destination buffer too short!" if a character starts behind
/// the counted length; under `STRING_DATA_UNICODE` one byte at the end is zero for each U+007F. Returns a new
/// terminated buffer, the caller's to free with array delete, and fills length, type and terminated flag of `destInfo`.
/// Raises `Exception<2>` if the text does not fit the verdict, and leaves no buffer behind. Throws `Exception<4>`:
/// "length : text too long!" as `stringDataGetUTF8Length` does, before it allocates.
VORN_API unsigned char* stringDataConvertToUTF8(const UTF16Char* sourceBuffer, const StringDataBufferInfo& sourceInfo,
                                                StringDataSubCharset charset, StringDataBufferInfo& destInfo);

/// As `stringDataConvertToUTF8`, into a new buffer of at least `capacity` bytes and a terminator, with zero bytes from
/// the end of the text to the end of the buffer. Throws `Exception<4>`: "length : text too long!" also for a capacity
/// of 0xFFFFFFFF.
VORN_API unsigned char* stringDataConvertCreateUTF8(const UTF16Char* sourceBuffer,
                                                    const StringDataBufferInfo& sourceInfo,
                                                    StringDataSubCharset charset, unsigned int capacity);

/// As `stringDataConvertToUTF8`, into the caller's memory and without a terminator. Returns the length in bytes, and
/// writes nothing if `destLength` is below that. Where a new buffer would end with zero bytes, nothing is written.
/// Throws `Exception<4>`: "length : text too long!" as `stringDataGetUTF8Length` does, before it writes.
/// @warning A text with U+0000 under `STRING_DATA_UCS2` is written up to two bytes past `destLength`: leave room for
///     them. It does not fail as long as its characters start below `destLength`.
VORN_API unsigned int stringDataConvertCopyToUTF8(const UTF16Char* sourceBuffer, const StringDataBufferInfo& sourceInfo,
                                                  StringDataSubCharset charset, unsigned char* dest,
                                                  unsigned int destLength);

/// Writes units that are characters by themselves as UTF-8, U+0000 as 0xC0 0x80. No unit is refused.
/// Raises `Exception<2>` with "j < destLength : destination buffer too short!".
/// @warning Room is tested at the start of a character only: the last one can be written up to 2 bytes past
/// `destLength`.
VORN_API void stringDataConvertToUTF8FromUCS2(unsigned char* dest, unsigned int destLength,
                                              const UTF16Char* sourceBuffer, unsigned int sourceLength);

/// The same for text with surrogate pairs.
/// @warning A pair whose first unit has a low byte from 0xC0 becomes malformed bytes: 0xD8C0 0xDC00 gives
///     0xF0 0xC0 0x80 0x80. The last character can be written up to 3 bytes past `destLength`. A first surrogate as the
///     last unit makes it read one unit further.
VORN_API void stringDataConvertToUTF8FromUTF16(unsigned char* dest, unsigned int destLength,
                                               const UTF16Char* sourceBuffer, unsigned int sourceLength);

} // namespace Vorn
