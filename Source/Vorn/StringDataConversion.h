/// @file
/// StringDataConversion: the conversions that string records need besides those of StringDataHelper.h. Private.
#pragma once

#include "Vorn/String/StringData.h"
#include "Vorn/String/StringDataHelper.h"

#include <cstddef>
#include <string>

namespace Vorn {

/// Replaces `dest` with the text in UTF-8, as `stringDataConvertToUTF8` writes it. Throws what that throws.
void stringDataConvertToUTF8(std::string& dest, const UTF16Char* sourceBuffer, const StringDataBufferInfo& sourceInfo,
                             StringDataSubCharset charset);

/// Converts a part of a text by `stringDataConvertToUTF8FromUCS2`, or `stringDataConvertToUTF8FromUTF16` for a charset
/// of `STRING_DATA_UNICODE`. Returns the index behind the last byte written.
std::size_t stringDataConvertToUTF8FromWide(StringDataSubCharset charset, unsigned char* dest, unsigned int destLength,
                                            const UTF16Char* sourceBuffer, unsigned int sourceLength);

/// Copies a text to a block of the library, as `StringData::copyToUTF8` or `copyToUTF16` does with this capacity, but
/// without measuring it again. Returns the index behind the last unit written, which can differ from the measured
/// length.
/// @{
std::size_t copyToBlock(const StringData& text, unsigned char* dest, unsigned int capacity);
std::size_t copyToBlock(const StringData& text, UTF16Char* dest, unsigned int capacity);
/// @}

/// Returns the number of bytes that a conversion of a part of this UTF-16 text can write past the terminator: U+0000 is
/// measured as one byte and written as two, so the last character can start in the last byte.
inline unsigned int overrunOfUTF8(const StringData& text) { return text.haveEmbeddedNulls() ? 2 : 0; }

} // namespace Vorn
