// What StringDataHelper.cpp does for StringData alone: the scan at the door, and conversion into a standard string.
#pragma once

#include "Vorn/String/StringData.h"
#include "Vorn/String/StringDataHelper.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace Vorn {

/// A block for `length` units and a terminator. Raises std::bad_alloc also for a size that wraps in a 32-bit process.
template <class CharType>
std::unique_ptr<CharType[]> allocateText(std::uint64_t length) {
    const std::uint64_t size = length + 1;
    return std::unique_ptr<CharType[]>(new CharType[size < SIZE_MAX ? static_cast<std::size_t>(size) : SIZE_MAX]);
}

/// Makes the units of a block zero from `written` up to `size`.
template <class CharType>
void clearUnwritten(CharType* block, std::size_t written, std::size_t size) {
    if (written < size) std::fill(block + written, block + size, static_cast<CharType>(0));
}

/// Bit of a scan's result: the text holds U+0000. The two bits below it are the StringDataSubCharset.
inline constexpr unsigned int SCAN_HAS_NULL = 4;

/// Proves a text valid in one pass and returns its verdict. A `length` of 0xFFFFFFFF is replaced by the units up to the
/// terminator. Raises `Exception<4>` with "Buffer is null!", and `Exception<7>` for text that is not valid.
unsigned int stringDataScanBuffer(const unsigned char* buffer, unsigned int& length);
unsigned int stringDataScanBuffer(const UTF16Char* buffer, unsigned int& length);

/// Replaces `dest` by the text in UTF-8, as `stringDataConvertToUTF8` writes it.
void stringDataConvertToUTF8(std::string& dest, const UTF16Char* sourceBuffer, const StringDataBufferInfo& sourceInfo,
                             StringDataSubCharset charset);

/// Writes a part of a text that is UCS-2 or not, as `stringDataConvertToUTF8FromUCS2` or
/// `stringDataConvertToUTF8FromUTF16` does and with their failures. Returns the index behind the last byte.
std::size_t stringDataConvertToUTF8FromWide(StringDataSubCharset charset, unsigned char* dest, unsigned int destLength,
                                            const UTF16Char* sourceBuffer, unsigned int sourceLength);

/// Copies a text into a block of the library, as `StringData::copyToUTF8` or `copyToUTF16` with this capacity does, but
/// without measuring it again: `length` is its measured length. Units of it that the conversion does not write are
/// zero.
void copyToBlock(const StringData& text, unsigned char* dest, unsigned int length, unsigned int capacity);
void copyToBlock(const StringData& text, UTF16Char* dest, unsigned int length, unsigned int capacity);

/// Bytes behind the terminator that a conversion of a part of this UTF-16 text may write: U+0000 is measured as one
/// byte and written as two, so that the last character can begin in the last place and go on behind it.
inline unsigned int overrunOfUTF8(const StringData& text) { return text.haveEmbeddedNulls() ? 2 : 0; }

} // namespace Vorn
