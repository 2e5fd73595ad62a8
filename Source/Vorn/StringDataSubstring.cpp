// Substrings: of the encoding that exists without copying, and of the other encoding by converting only the substring.
#include "RecordMemory.h"
#include "StringDataConversion.h"
#include "TextBlock.h"
#include "Vorn/Private/Sentinels.h"
#include "Vorn/String/StringData.h"
#include "Vorn/String/Unicode.h"

#include <algorithm>
#include <cstdint>
#include <type_traits>

namespace Vorn {

namespace {

using namespace VornPrivate;

// Returns the index that an offset means in a text of `length` units, or a value above `length` if it is out of range.
unsigned int resolveOffset(int offset, unsigned int length) {
    if (offset >= 0) return static_cast<unsigned int>(offset);
    const unsigned int back = 0u - static_cast<unsigned int>(offset);
    return back <= length ? length - back : 0xFFFFFFFF;
}

} // namespace

template <class CharType>
StringData* StringData::substr(int offset, unsigned int length) const {
    if (isNull()) {
        if (offset != 0) VORN_THROW(E::PARAMETER, "Invalid Offset!");
        return &s_emptyString;
    }
    const CharType* const buffer = bufferOf<CharType>();
    if (!buffer) return substrConvert<CharType>(offset, length);

    StringDataBufferInfo& info = infoOf<CharType>();
    const unsigned int start = resolveOffset(offset, info.m_length);
    if (start > info.m_length) VORN_THROW(E::PARAMETER, "Invalid Offset!");
    bool reachesEnd = false;
    if (length >= info.m_length - start) {
        length = info.m_length - start;
        reachesEnd = info.m_nullTerminated;
    }

    if constexpr (sizeof(CharType) == 1) {
        if (!UTF8::validUTF8Lead(buffer[start])) VORN_THROW(E::PARAMETER, "Invalid Offset!");
        // Specified: the end moves back behind a lead byte or an ASCII character. The scan refuses a substring that
        // ends with a character of several bytes, because the lead byte is kept.
        while (length != 0 && !UTF8::validUTF8Lead(buffer[start + length - 1])) --length;
    } else {
        UTF32Char c = Unicode::getUTF32Char(buffer[start]);
        VORN_INTERNAL_ASSERT(c != 0xFDEF, "Invalid UTF-16 buffer detected!");
        if (c == SECOND_SURROGATE) VORN_THROW(E::PARAMETER, "Invalid Offset!");
        if (start + length != 0) { // there is no unit before the text
            c = Unicode::getUTF32Char(buffer[start + length - 1]);
            VORN_INTERNAL_ASSERT(c != 0xFDEF, "Invalid UTF-16 buffer detected!");
            if (length != 0 && c == FIRST_SURROGATE) --length;
        }
    }
    if (length == 0) return &s_emptyString;
    // Includes the unit behind the substring at the end of a terminated text: the terminator, or the first unit that
    // was trimmed.
    const std::uint64_t scannedLength = std::uint64_t(length) + reachesEnd;

    switch (info.m_allocationType) {
    case STRING_DATA_STATIC: return new StringData(buffer + start, scannedLength, STRING_DATA_STATIC, CountedLength());
    case STRING_DATA_EXTERNAL:
    case STRING_DATA_DYNAMIC: break;
    default: VORN_THROW(E::INTERNAL, "Invalid allocation type!");
    }
    StringData* const substring = new StringData(buffer + start, scannedLength, STRING_DATA_EXTERNAL, CountedLength());
    substring->m_isPart = m_isPart;
    insertBehind<CharType>(*this, *substring, start);
    return substring;
}

template <class CharType>
StringData* StringData::substrConvert(int offset, unsigned int length) const {
    if (m_charset == STRING_DATA_ASCII) return substrConvertASCIITo<CharType>(offset, length);
    if constexpr (sizeof(CharType) == 1)
        return m_charset == STRING_DATA_UCS2 ? substrConvertUCS2ToUTF8(offset, length)
                                             : substrConvertUTF16ToUTF8(offset, length);
    else
        return substrConvertUTF8ToUTF16(offset, length);
}

// A failure after the allocation, such as a scan that refuses the substring, leaks the block. This is specified for all
// four conversions.
template <class Target>
StringData* StringData::substrConvertASCIITo(int offset, unsigned int length) const {
    using Source = std::conditional_t<sizeof(Target) == 1, UTF16Char, unsigned char>;
    const Source* const source = bufferOf<Source>();
    const unsigned int sourceLength = infoOf<Source>().m_length;
    const unsigned int start = resolveOffset(offset, sourceLength);
    if (start > sourceLength) VORN_THROW(E::PARAMETER, "Invalid offset!");
    length = std::min(length, sourceLength - start);
    if (length == 0) return &s_emptyString;

    RecordMemory record; // before the block: if either allocation fails, nothing leaks
    Target* const block = allocateText<Target>(length).release();
    for (unsigned int i = 0; i < length; ++i) block[i] = static_cast<Target>(source[start + i]);
    block[length] = 0;
    return record.own(new (record.get())
                          StringData(block, std::uint64_t(length) + 1, STRING_DATA_DYNAMIC, CountedLength()));
}

namespace {

// A range of the source, and its length in units of the target. If `count` is 0, the substring is empty.
struct ConvertedRange {
    unsigned int start;
    unsigned int end;
    unsigned int count;
};

// Offsets and lengths count units of the target, so the source is measured up to the substring: from its start for an
// offset of 0 or more, from its end for a negative one. The rules by encoding:
//
//     source             target    offset inside a character   pair or 4 bytes in    negative offset, substring up
//                                                              the substring         to the end of the text
//     UTF-8              UTF-8     throws                      kept; last: throws    ends there
//     UTF-16             UTF-16    throws                      kept                  ends there
//     UTF-8 or UTF-16,   other     does not exist              does not exist        ends there
//     ASCII
//     UTF-16, UCS-2      UTF-8     throws                      does not exist        throws
//     UTF-16, Unicode    UTF-8     0 or more: empty text       0 or more: throws     throws
//                                  negative: throws            negative: converted
//     UTF-8              UTF-16    0 or more: empty text       converted             as many zero units
//                                  negative: throws
//
// An offset behind the end of the text throws for the first three rows and returns the empty text for the others. An
// offset before its start throws. A last character that is only partly within the length is left out, except in the
// first row, where the scan refuses its lead byte.
//
// Each struct measures for one of the last three rows. `skip` measures before the substring, `take` inside it, and
// `back` from the end of the text towards its start; each moves the index over one character.

struct MeasureUCS2AsUTF8 {
    using Source = UTF16Char;
    static constexpr char FUNCTION[] = "Vorn::StringData::substrConvertUCS2ToUTF8";
    static constexpr bool REFUSES_INSIDE = true; // an offset inside a character

    static unsigned int skip(const UTF16Char* buffer, unsigned int& i, unsigned int) { return take(buffer, i, 0); }
    static unsigned int take(const UTF16Char* buffer, unsigned int& i, unsigned int) {
        const unsigned int byteCount = UTF8::countUTF8(static_cast<unsigned int>(buffer[i++]));
        VORN_INTERNAL_ASSERT(byteCount > 0, "Invalid UTF-16 buffer!", FUNCTION);
        return byteCount;
    }
    static unsigned int back(const UTF16Char* buffer, unsigned int& i, unsigned int, bool) {
        const int byteCount = UTF8::countUTF8(buffer[--i]);
        VORN_INTERNAL_ASSERT(byteCount > 0, "Invalid UTF-16 buffer!", FUNCTION);
        return static_cast<unsigned int>(byteCount);
    }
};

struct MeasureUTF16AsUTF8 {
    using Source = UTF16Char;
    static constexpr char FUNCTION[] = "Vorn::StringData::substrConvertUTF16ToUTF8";
    static constexpr bool REFUSES_INSIDE = false; // an offset inside a character

    static unsigned int skip(const UTF16Char* buffer, unsigned int& i, unsigned int) {
        int byteCount = UTF8::countUTF8(buffer[i++]);
        if (byteCount == -1) {
            byteCount = UTF8::countUTF8(buffer[i++]);
            VORN_INTERNAL_ASSERT(byteCount == -2, "Invalid UTF-16 buffer!", FUNCTION);
            return 4;
        }
        VORN_INTERNAL_ASSERT(byteCount > 0, "Invalid UTF-16 buffer!", FUNCTION);
        return static_cast<unsigned int>(byteCount);
    }

    // As specified, tests the unit behind a pair for the second surrogate, so that a substring with a pair throws.
    static unsigned int take(const UTF16Char* buffer, unsigned int& utf16End, unsigned int bufferLength) {
        int byteCount = UTF8::countUTF8(buffer[utf16End++]);
        if (byteCount == -1) {
            VORN_INTERNAL_ASSERT(++utf16End < bufferLength, "Invalid UTF-16 buffer!", FUNCTION);
            byteCount = UTF8::countUTF8(buffer[utf16End++]);
            VORN_INTERNAL_ASSERT(byteCount == -2, "Invalid UTF-16 buffer!", FUNCTION);
            return 4;
        }
        VORN_INTERNAL_ASSERT(byteCount > 0, "Invalid UTF-16 buffer!", FUNCTION);
        return static_cast<unsigned int>(byteCount);
    }

    static unsigned int back(const UTF16Char* buffer, unsigned int& i, unsigned int, bool) {
        int byteCount = UTF8::countUTF8(buffer[--i]);
        if (byteCount == -2) {
            byteCount = UTF8::countUTF8(buffer[--i]);
            VORN_INTERNAL_ASSERT(byteCount == -1, "Invalid UTF-16 buffer!", FUNCTION);
            return 4;
        }
        VORN_INTERNAL_ASSERT(byteCount > 0, "Invalid UTF-16 buffer!", FUNCTION);
        return static_cast<unsigned int>(byteCount);
    }
};

struct MeasureUTF8AsUTF16 {
    using Source = unsigned char;
    static constexpr char FUNCTION[] = "Vorn::StringData::substrConvertUTF8ToUTF16";
    static constexpr bool REFUSES_INSIDE = false; // an offset inside a character

    static unsigned int skip(const unsigned char* buffer, unsigned int& i, unsigned int bufferLength) {
        return take(buffer, i, bufferLength);
    }
    static unsigned int take(const unsigned char* buffer, unsigned int& i, unsigned int bufferLength) {
        const UTF32Char c = Unicode::getUTF32Char(buffer, i, bufferLength);
        VORN_INTERNAL_ASSERT(c != 0xFDEF, "Invalid UTF-8 buffer!", FUNCTION);
        return c < 0x10000 ? 1 : 2;
    }

    // Moves `i` from behind a character to its first byte. At the start of the text the index wraps around.
    static unsigned int back(const unsigned char* buffer, unsigned int& i, unsigned int bufferLength,
                             bool behindSubstring) {
        UTF32Char c = Unicode::getUTF32Char(buffer[--i]);
        if (behindSubstring) VORN_INTERNAL_ASSERT(c, "null byte found in UTF-8!", FUNCTION);
        if (c < 0x80) return 1;
        --i;
        VORN_INTERNAL_ASSERT(c == 0xFDD0 && i < bufferLength, "Invalid UTF-8 buffer!", FUNCTION);
        c = Unicode::getUTF32Char(buffer[i]);
        if (c == LEAD_OF_TWO) {
            c = Unicode::getUTF32Char(buffer[i], buffer[i + 1]);
            VORN_INTERNAL_ASSERT(!c || c >= 0x80, "overlong 2byte sequence!", FUNCTION);
            return 1;
        }
        --i;
        VORN_INTERNAL_ASSERT(c == 0xFDD0 && i < bufferLength, "Invalid UTF-8 buffer!", FUNCTION);
        c = Unicode::getUTF32Char(buffer[i]);
        if (c == LEAD_OF_THREE) {
            c = Unicode::getUTF32Char(buffer[i], buffer[i + 1], buffer[i + 2]);
            VORN_INTERNAL_ASSERT(c >= 0x800, "overlong 3byte sequence!", FUNCTION);
            return 1;
        }
        --i;
        VORN_INTERNAL_ASSERT(c == 0xFDD0 && i < bufferLength, "Invalid UTF-8 buffer!", FUNCTION);
        c = Unicode::getUTF32Char(buffer[i]);
        VORN_INTERNAL_ASSERT(c == 0xFDD4, "Invalid UTF-8 buffer!", FUNCTION);
        c = Unicode::getUTF32Char(buffer[i], buffer[i + 1], buffer[i + 2], buffer[i + 3]);
        VORN_INTERNAL_ASSERT(c >= 0x1000, "overlong 4byte sequence!", FUNCTION);
        return 2;
    }
};

// Measures from the start of the text. An offset inside a character that the measure does not refuse is never equal to
// the sum: the loop ends at the end of the text, and the substring is empty.
template <class Measure>
ConvertedRange findFromStart(const typename Measure::Source* buffer, unsigned int bufferLength, unsigned int offset,
                             unsigned int length) {
    unsigned int i = 0;
    for (std::uint64_t sum = 0; sum != offset && i < bufferLength;) {
        sum += Measure::skip(buffer, i, bufferLength);
        if (Measure::REFUSES_INSIDE && sum > offset) VORN_THROW(E::PARAMETER, "Invalid offset!", Measure::FUNCTION);
    }

    ConvertedRange range{i, i, 0};
    while (i < bufferLength && range.count != length) {
        const unsigned int measure = Measure::take(buffer, i, bufferLength);
        if (measure > length - range.count) break;
        range.count += measure;
        range.end = i;
    }
    return range;
}

// Measures from the end of the text: first the characters behind the substring, then the substring. All indices count
// down from 0. For a substring that reaches the end of the text the end stays 0, as specified, and the conversion uses
// the range as it is.
template <class Measure>
ConvertedRange findFromEnd(const typename Measure::Source* buffer, unsigned int bufferLength, int offset,
                           unsigned int length) {
    const std::int64_t endMark = std::int64_t(offset) + std::min(length, 0u - static_cast<unsigned int>(offset));
    unsigned int i = bufferLength;
    unsigned int end = 0;
    std::int64_t running = 0;
    while (endMark < running) {
        if (i == 0) VORN_THROW(E::PARAMETER, "Invalid offset!", Measure::FUNCTION);
        running -= Measure::back(buffer, i, bufferLength, true);
        end = i;
    }

    ConvertedRange range{end, end, static_cast<unsigned int>(running - offset)};
    while (running != offset) {
        if (offset > running || i == 0) VORN_THROW(E::PARAMETER, "Invalid offset!", Measure::FUNCTION);
        running -= Measure::back(buffer, i, bufferLength, false);
        range.start = i;
    }
    return range;
}

template <class Measure>
ConvertedRange findRange(const typename Measure::Source* buffer, unsigned int bufferLength, int offset,
                         unsigned int length) {
    if (bufferLength == 0 && offset != 0) VORN_THROW(E::PARAMETER, "Invalid offset!", Measure::FUNCTION);
    const ConvertedRange range =
        offset < 0 ? findFromEnd<Measure>(buffer, bufferLength, offset, length)
                   : findFromStart<Measure>(buffer, bufferLength, static_cast<unsigned int>(offset), length);
    if (range.count > MAX_TEXT_LENGTH) VORN_THROW(E::PARAMETER, "length : text too long!", Measure::FUNCTION);
    return range;
}

// A block for a substring and its terminator.
template <class CharType>
CharType* allocateSubstring(const ConvertedRange& range, unsigned int overrun = 0) {
    return allocateText<CharType>(std::uint64_t(range.count) + overrun).release();
}

// Writes the substring and its terminator. Units of the measured length that the conversion does not write become zero.
void convertRange(unsigned char* block, const ConvertedRange& range, StringDataSubCharset charset,
                  const UTF16Char* source) {
    const std::size_t written =
        stringDataConvertToUTF8FromWide(charset, block, range.count, source + range.start, range.end - range.start);
    clearUnwritten(block, written, range.count);
    block[range.count] = 0;
}

} // namespace

StringData* StringData::substrConvertUCS2ToUTF8(int offset, unsigned int length) const {
    const ConvertedRange range = findRange<MeasureUCS2AsUTF8>(m_UTF16Buffer, m_utf16Info.m_length, offset, length);
    if (range.count == 0) return &s_emptyString;
    RecordMemory record; // before the block: if either allocation fails, nothing leaks
    unsigned char* const block = allocateSubstring<unsigned char>(range, overrunOfUTF8(*this));
    convertRange(block, range, STRING_DATA_UCS2, m_UTF16Buffer);
    return record.own(new (record.get())
                          StringData(block, std::uint64_t(range.count) + 1, STRING_DATA_DYNAMIC, CountedLength()));
}

StringData* StringData::substrConvertUTF16ToUTF8(int offset, unsigned int length) const {
    const ConvertedRange range = findRange<MeasureUTF16AsUTF8>(m_UTF16Buffer, m_utf16Info.m_length, offset, length);
    if (range.count == 0) return &s_emptyString;
    RecordMemory record; // before the block: if either allocation fails, nothing leaks
    unsigned char* const block = allocateSubstring<unsigned char>(range, overrunOfUTF8(*this));
    convertRange(block, range, STRING_DATA_UNICODE, m_UTF16Buffer);
    return record.own(new (record.get())
                          StringData(block, std::uint64_t(range.count) + 1, STRING_DATA_DYNAMIC, CountedLength()));
}

StringData* StringData::substrConvertUTF8ToUTF16(int offset, unsigned int length) const {
    const ConvertedRange range = findRange<MeasureUTF8AsUTF16>(m_UTF8Buffer, m_utf8Info.m_length, offset, length);
    if (range.count == 0) return &s_emptyString;
    RecordMemory record; // before the block: if either allocation fails, nothing leaks
    UTF16Char* const block = allocateSubstring<UTF16Char>(range, 0);
    unsigned int j = 0;
    // An overlong form of 4 bytes is measured as one unit and read as two. Units behind the measured length are
    // dropped.
    for (unsigned int i = range.start; i < range.end && j < range.count;) {
        const unsigned int word = UTF16::getUTF16(m_UTF8Buffer, i, range.end);
        if (word > 0xFFFF) block[j++] = static_cast<UTF16Char>(word >> 16);
        if (j < range.count) block[j++] = static_cast<UTF16Char>(word);
    }
    clearUnwritten(block, j, range.count);
    block[range.count] = 0;
    return record.own(new (record.get())
                          StringData(block, std::uint64_t(range.count) + 1, STRING_DATA_DYNAMIC, CountedLength()));
}

template VORN_API StringData* StringData::substr<unsigned char>(int offset, unsigned int length) const;
template VORN_API StringData* StringData::substr<UTF16Char>(int offset, unsigned int length) const;

} // namespace Vorn
