// Validation, lengths and conversions of whole buffers: all that throws. What never throws lies in headers by topic:
// OrdinaryText.h skips and counts ordinary text, TextEncoding.h converts it, both with the kernels of this processor. A
// loop here calls them for the ordinary text from its position on, and decides about the character where they stop.
#include "Vorn/String/StringDataHelper.h"

#include "OrdinaryText.h"
#include "StringDataConversion.h"
#include "StringDataScan.h"
#include "TextBlock.h"
#include "TextEncoding.h"
#include "Vorn/Assert.h"
#include "Vorn/Private/Sentinels.h"
#include "Vorn/String/Unicode.h"

#include <algorithm>
#include <cstdint>
#include <memory>

namespace Vorn {

namespace {

using namespace VornPrivate;

constexpr unsigned int UNKNOWN_LENGTH = 0xFFFFFFFF;
constexpr char SCAN[] = "stringDataBufferScan";

unsigned int scanResult(bool hasNull, bool twoByteClass, bool fullClass) {
    const unsigned int charset = fullClass ? STRING_DATA_UNICODE : twoByteClass ? STRING_DATA_UCS2 : STRING_DATA_ASCII;
    return charset | (hasNull ? SCAN_HAS_NULL : 0);
}

// Validates a UTF-8 text. In a text of unknown length, the terminator fails every test for a trail byte.
template <bool Terminated>
unsigned int stringDataBufferScan(const unsigned char* buffer, unsigned int& length) {
    // Called for the bytes behind a lead byte in order, so no index wraps around.
    const auto hasTrailAt = [&](unsigned int i) {
        if (!Terminated) return i < length && isTrail(buffer[i]);
        if (!isTrail(buffer[i])) return false;
        if (i == MAX_TEXT_LENGTH) VORN_THROW(E::PARAMETER, "length : text too long!", SCAN);
        return true;
    };
    OrdinaryText<UTF8Steps<true, false>, Terminated> ordinary(buffer, length);
    RunCounts run;
    bool hasNull = false;
    bool fullClass = false;

    unsigned int i = 0;
    for (;;) {
        i = ordinary.skip(i, run);
        if (Terminated ? buffer[i] == 0 : i == length) break;
        if (Terminated && i == MAX_TEXT_LENGTH) VORN_THROW(E::PARAMETER, "length : text too long!");

        switch (UTF32::getUTF32Char(buffer[i])) {
        case TRAIL_BYTE: VORN_THROW(E::UNICODE, "Unmatched trail UTF-8 byte detected!");
        case 0:
            VORN_THROW(E::UNICODE,
                       "ASCII null detected! This implementation does not support ASCII null, please use the "
                       "sequence 0xC0 0x80 to represent null.");
        case LEAD_OF_TWO:
            if (!hasTrailAt(i + 1)) VORN_THROW(E::UNICODE, "Unmatched lead UTF-8 byte for a 2-byte sequence!");
            // Runs have skipped all other sequences.
            if (UTF32::getUTF32Char(buffer[i], buffer[i + 1]) != 0)
                VORN_THROW(E::UNICODE, "Invalid overlong 2-byte sequence!");
            hasNull = true;
            i += 2;
            break;
        case LEAD_OF_THREE:
            if (!hasTrailAt(i + 1) || !hasTrailAt(i + 2))
                VORN_THROW(E::UNICODE, "Unmatched lead UTF-8 byte for a 3-byte sequence!");
            if (UTF32::getUTF32Char(buffer[i], buffer[i + 1], buffer[i + 2]) == INVALID_CHARACTER)
                VORN_THROW(E::UNICODE, "Invalid character!");
            VORN_THROW(E::UNICODE, "Invalid overlong 3-byte sequence!");
        case LEAD_OF_FOUR:
            // The text of an unpaired surrogate is specified here. Overlong forms are accepted.
            if (!hasTrailAt(i + 1) || !hasTrailAt(i + 2) || !hasTrailAt(i + 3))
                VORN_THROW(E::UNICODE, "Unmatched first surrogate character!");
            if (UTF8::invalidUnicode(buffer[i], buffer[i + 1], buffer[i + 2], buffer[i + 3]))
                VORN_THROW(E::UNICODE, "Invalid character with code ending in FFFE or FFFF!");
            fullClass = true;
            i += 4;
            break;
        default: VORN_THROW(E::UNICODE, "Invalid character!");
        }
    }
    length = i;
    return scanResult(hasNull, run.beyondASCII || hasNull, run.fourBytes != 0 || fullClass);
}

// Validates a UTF-16 text.
template <bool Terminated>
unsigned int stringDataBufferScan(const UTF16Char* buffer, unsigned int& length) {
    const auto endedAt = [&](unsigned int i) { return Terminated ? buffer[i] == 0 : i == length; };
    OrdinaryText<UTF16Steps<true, false, 0x80>, Terminated> ordinary(buffer, length);
    WideCounts run;
    bool hasNull = false;

    unsigned int i = 0;
    for (;;) {
        i = ordinary.skip(i, run);
        if (endedAt(i)) break;
        if (Terminated && i == MAX_TEXT_LENGTH) VORN_THROW(E::PARAMETER, "length : text too long!");

        const UTF16Char unit = buffer[i++];
        switch (UTF32::getUTF32Char(unit)) {
        case FIRST_SURROGATE:
            if (endedAt(i)) {
                length = i; // set also by this failure, as far as the text was measured
                VORN_THROW(E::UNICODE, "Unmatched first surrogate character!");
            }
            if (!UTF16::isSecondSurrogate(buffer[i])) VORN_THROW(E::UNICODE, "Unmatched first surrogate character!");
            if (Terminated && i == MAX_TEXT_LENGTH) VORN_THROW(E::PARAMETER, "length : text too long!");
            VORN_THROW(E::UNICODE, "Invalid character with code ending in FFFE or FFFF!");
        case SECOND_SURROGATE: VORN_THROW(E::UNICODE, "Unmatched second surrogate code!");
        case INVALID_CHARACTER: VORN_THROW(E::UNICODE, "Invalid character!");
        default: hasNull = true; // U+0000: runs have skipped all other characters
        }
    }
    length = i;
    return scanResult(hasNull, run.beyondASCII || hasNull, run.pairs != 0);
}

} // namespace

unsigned int stringDataScanBuffer(const unsigned char* buffer, unsigned int& length) {
    if (!buffer) VORN_THROW(E::PARAMETER, "Buffer is null!");
    const bool isMeasured = length < UNKNOWN_LENGTH;
    return isMeasured ? stringDataBufferScan<false>(buffer, length) : stringDataBufferScan<true>(buffer, length);
}

unsigned int stringDataScanBuffer(const UTF16Char* buffer, unsigned int& length) {
    if (!buffer) VORN_THROW(E::PARAMETER, "Buffer is null!");
    const bool isMeasured = length < UNKNOWN_LENGTH;
    return isMeasured ? stringDataBufferScan<false>(buffer, length) : stringDataBufferScan<true>(buffer, length);
}

namespace {

// The checks of text that is marked as ASCII. Each throws for the first unit that is not. `Function` is the function
// text of the report.

template <const auto& Function>
void checkLengthOfASCII(const unsigned char* buffer, unsigned int length) {
    for (unsigned int i = skipASCII(buffer, length); i < length; ++i) {
        VORN_INTERNAL_ASSERT(buffer[i],
                             "ASCII null detected in UTF-8 buffer!! This implementation of UTF-8 does not support "
                             "ASCII null!",
                             Function);
        VORN_INTERNAL_ASSERT(buffer[i] <= 127, "non-ASCII detected in UTF-8 buffer marked for ASCII only!!", Function);
    }
}

template <const auto& Function>
void checkLengthOfASCII(const UTF16Char* buffer, unsigned int length) {
    for (unsigned int i = skipASCII(buffer, length); i < length; ++i) {
        VORN_INTERNAL_ASSERT(
            buffer[i], "null detected in UTF-16 buffer that is marked as ASCII only!! This not allowed!", Function);
        VORN_INTERNAL_ASSERT(buffer[i] <= 127, "non-ASCII detected in UTF-16 buffer marked for ASCII only!!", Function);
    }
}

constexpr char GET_UTF16_LENGTH[] = "Vorn::stringDataGetUTF16Length";
constexpr char GET_UTF8_LENGTH[] = "Vorn::stringDataGetUTF8Length";
constexpr char GET_UNICODE_LENGTH[] = "Vorn::stringDataGetUnicodeLength";

// Returns the length in UTF-16 of a UTF-8 text that is not ASCII. Runs of ordinary text pass all checks.
template <bool Full>
unsigned int measureUTF16(const unsigned char* buffer, unsigned int length) {
    OrdinaryText<UTF8Steps<Full, true>, false> ordinary(buffer, length);
    RunCounts run;
    unsigned int units = 0; // of the characters that runs do not skip
    std::uint64_t i = 0;    // may pass the end by 3 bytes
    while ((i = ordinary.skip(static_cast<unsigned int>(i), run)) < length) {
        UTF32Char c = Unicode::getUTF32Char(buffer[i]);
        VORN_INTERNAL_ASSERT(
            c,
            "ASCII null detected in UTF-8 buffer!! This implementation of UTF-8 does not support ASCII "
            "null!",
            GET_UTF16_LENGTH);
        VORN_INTERNAL_ASSERT(c != 0xFDEF, "Invalid Unicode character detected in UTF-8 buffer!!", GET_UTF16_LENGTH);
        if constexpr (!Full) {
            VORN_INTERNAL_ASSERT(c != 0xFDD4,
                                 "4-byte UTF-8 character detected in a buffer marked for 2-byte or below only!!",
                                 GET_UTF16_LENGTH);
        }
        VORN_INTERNAL_ASSERT(c != 0xFDD0, "unmatched trail UTF-8 byte detected!!", GET_UTF16_LENGTH);
        if (c == LEAD_OF_TWO) {
            ++i;
            VORN_INTERNAL_ASSERT(i < length, "unmatched 2-byte UTF-8 lead byte!!", GET_UTF16_LENGTH);
            c = Unicode::getUTF32Char(buffer[i - 1], buffer[i]);
            VORN_INTERNAL_ASSERT(c != 0xFDEF, "Invalid Unicode character detected in UTF-8 buffer!!", GET_UTF16_LENGTH);
            if constexpr (Full) {
                // As specified, it fails for 0xC0 0x80 and accepts 1 to 127.
                VORN_INTERNAL_ASSERT(c || c > 127, "Overlong 2-byte UTF-8 character detected!!", GET_UTF16_LENGTH);
            } else {
                VORN_INTERNAL_ASSERT(!c || c > 127, "Overlong 2-byte UTF-8 character detected!!", GET_UTF16_LENGTH);
            }
        } else if (c == LEAD_OF_THREE) {
            i += 2;
            VORN_INTERNAL_ASSERT(i < length, "unmatched 3-byte UTF-8 lead byte!!", GET_UTF16_LENGTH);
            c = Unicode::getUTF32Char(buffer[i - 2], buffer[i - 1], buffer[i]);
            VORN_INTERNAL_ASSERT(c != 0xFDEF, "Invalid Unicode character detected in UTF-8 buffer!!", GET_UTF16_LENGTH);
            VORN_INTERNAL_ASSERT(c > 0x07FF, "Overlong 3-byte UTF-8 character detected!!", GET_UTF16_LENGTH);
        } else if constexpr (Full) {
            i += 3;
            VORN_INTERNAL_ASSERT(i < length, "unmatched 4-byte UTF-8 lead byte!!", GET_UTF16_LENGTH);
            c = Unicode::getUTF32Char(buffer[i - 3], buffer[i - 2], buffer[i - 1], buffer[i]);
            VORN_INTERNAL_ASSERT(c != 0xFDEF, "Invalid Unicode character detected in UTF-8 buffer!!", GET_UTF16_LENGTH);
            VORN_INTERNAL_ASSERT(c > 0xFFFF, "Overlong 4-byte UTF-8 character detected!!", GET_UTF16_LENGTH);
            ++units;
        }
        ++units;
        ++i;
    }
    return run.characters + run.fourBytes + units;
}

// Returns the length in UTF-8 of a UTF-16 text without surrogates.
std::uint64_t measureUTF8OfUCS2(const UTF16Char* buffer, unsigned int length) {
    OrdinaryText<UTF16Steps<false, true, 0x80>, false> ordinary(buffer, length);
    WideCounts run;
    unsigned int i = 0;
    while ((i = ordinary.skip(i, run)) < length) {
        const int count = UTF8::countUTF8(buffer[i]);
        VORN_INTERNAL_ASSERT(count >= 1, "Invalid code!", GET_UTF8_LENGTH);
        VORN_INTERNAL_ASSERT(count <= 3, "Invalid UCS-2 character detected in a buffer marked as UCS-2 only!",
                             GET_UTF8_LENGTH);
        ++i; // U+0000, which counts as one byte
    }
    return length + run.extraBytes;
}

// Returns the length in UTF-8 of any UTF-16 text. U+007F counts as two bytes.
std::uint64_t measureUTF8OfUTF16(const UTF16Char* buffer, unsigned int length) {
    OrdinaryText<UTF16Steps<true, true, 0x7F>, false> ordinary(buffer, length);
    WideCounts run;
    std::uint64_t bytes = 0; // one for each unit of a run, and those of the characters that runs do not skip
    unsigned int i = 0;
    while (i < length) {
        const unsigned int start = i;
        i = ordinary.skip(i, run);
        bytes += i - start;
        if (i == length) break;

        const UTF32Char c = Unicode::getUTF32Char(buffer[i]);
        VORN_INTERNAL_ASSERT(c != 0xFDEF, "Invalid Unicode character detected in UTF-16 buffer!!", GET_UTF8_LENGTH);
        VORN_INTERNAL_ASSERT(c != 0xFDD2, "unmatched second UTF-16 surrogate detected!!", GET_UTF8_LENGTH);
        if (c == FIRST_SURROGATE) {
            VORN_INTERNAL_ASSERT(i < length, "unmatched first UTF-16 surrogate detected!!", GET_UTF8_LENGTH);
            ++i;
            VORN_INTERNAL_ASSERT(Unicode::getUTF32Char(buffer[i]) == 0xFDD2,
                                 "unmatched first UTF-16 surrogate detected!!", GET_UTF8_LENGTH);
            bytes += 4;
        } else {
            bytes += 2; // U+0000
        }
        ++i;
    }
    return bytes + run.extraBytes;
}

// Returns the number of characters of a UTF-8 text that is not ASCII.
template <bool Full>
unsigned int countCharacters(const unsigned char* buffer, unsigned int length) {
    OrdinaryText<UTF8Steps<Full, true>, false> ordinary(buffer, length);
    RunCounts run;
    unsigned int characters = 0; // of those that runs do not skip
    for (unsigned int i = 0; (i = ordinary.skip(i, run)) < length; ++characters) {
        const UTF32Char c = Unicode::getUTF32Char(buffer, i, length);
        VORN_INTERNAL_ASSERT(c != 0xFDEF, "Invalid Unicode character detected in UTF-8 buffer!!", GET_UNICODE_LENGTH);
        if constexpr (!Full)
            VORN_INTERNAL_ASSERT(c <= 0xFFFD,
                                 "non-UCS-2 character detected in a UTF-8 buffer that is marked for UCS-2 only!!",
                                 GET_UNICODE_LENGTH);
    }
    return run.characters + characters;
}

// Returns the length in UTF-8 of a UTF-16 text that is not ASCII.
std::uint64_t measureUTF8(const UTF16Char* buffer, unsigned int length, StringDataSubCharset charset) {
    return charset == STRING_DATA_UCS2 ? measureUTF8OfUCS2(buffer, length) : measureUTF8OfUTF16(buffer, length);
}

} // namespace

unsigned int stringDataGetUTF16Length(const unsigned char* buffer, const StringDataBufferInfo& info,
                                      StringDataSubCharset charset) {
    const unsigned int length = info.m_length;
    if (length == 0) return 0;
    switch (charset) {
    case STRING_DATA_ASCII: checkLengthOfASCII<GET_UTF16_LENGTH>(buffer, length); return length;
    case STRING_DATA_UCS2: return measureUTF16<false>(buffer, length);
    default: return measureUTF16<true>(buffer, length);
    }
}

unsigned int stringDataGetUTF8Length(const UTF16Char* buffer, const StringDataBufferInfo& info,
                                     StringDataSubCharset charset) {
    const unsigned int length = info.m_length;
    if (length == 0) return 0;
    if (charset == STRING_DATA_ASCII) {
        checkLengthOfASCII<GET_UTF8_LENGTH>(buffer, length);
        return length;
    }
    const std::uint64_t bytes = measureUTF8(buffer, length, charset);
    if (bytes > MAX_TEXT_LENGTH) VORN_THROW(E::PARAMETER, "length : text too long!");
    return static_cast<unsigned int>(bytes);
}

unsigned int stringDataGetUnicodeLength(const unsigned char* buffer, const StringDataBufferInfo& info,
                                        StringDataSubCharset charset) {
    const unsigned int length = info.m_length;
    if (length == 0) return 0;
    if (charset == STRING_DATA_ASCII) {
        checkLengthOfASCII<GET_UNICODE_LENGTH>(buffer, length);
        return length;
    }

    return charset == STRING_DATA_UCS2 ? countCharacters<false>(buffer, length) : countCharacters<true>(buffer, length);
}

unsigned int stringDataGetUnicodeLength(const UTF16Char* buffer, const StringDataBufferInfo& info,
                                        StringDataSubCharset charset) {
    const unsigned int length = info.m_length;
    if (length == 0) return 0;
    if (charset == STRING_DATA_ASCII) {
        checkLengthOfASCII<GET_UNICODE_LENGTH>(buffer, length);
        return length;
    }
    if (charset == STRING_DATA_UCS2) {
        OrdinaryText<UTF16Steps<false, false, 0x80>, false> ordinary(buffer, length);
        WideCounts run;
        for (unsigned int i = 0; (i = ordinary.skip(i, run)) < length; ++i)
            VORN_INTERNAL_ASSERT(Unicode::getUCS2Char(static_cast<UTF32Char>(buffer[i])) != 0xFDEF,
                                 "Invalid UCS-2 character detected in a buffer marked as UCS-2 only!");
        return length;
    }

    OrdinaryText<UTF16Steps<true, true, 0x80>, false> ordinary(buffer, length);
    WideCounts run;
    unsigned int pairs = 0; // of those that runs do not skip
    for (unsigned int i = 0; (i = ordinary.skip(i, run)) < length; ++i) {
        const UTF32Char c = Unicode::getUTF32Char(buffer[i]);
        VORN_INTERNAL_ASSERT(c != 0xFDEF, "Invalid Unicode character detected in UTF-16 buffer!!");
        VORN_INTERNAL_ASSERT(c != 0xFDD2, "unmatched second UTF-16 surrogate detected!!");
        if (c == FIRST_SURROGATE) {
            ++i;
            VORN_INTERNAL_ASSERT(i < length, "unmatched first UTF-16 surrogate detected!!");
            VORN_INTERNAL_ASSERT(Unicode::getUTF32Char(buffer[i]) == 0xFDD2,
                                 "unmatched first UTF-16 surrogate detected!!");
            ++pairs;
        }
    }
    return length - run.pairs - pairs;
}

namespace {

constexpr char CONVERT_TO_UTF16[] = "Vorn::stringDataConvertToUTF16";
constexpr char CONVERT_CREATE_UTF16[] = "Vorn::stringDataConvertCreateUTF16";
constexpr char CONVERT_COPY_TO_UTF16[] = "Vorn::stringDataConvertCopyToUTF16";
constexpr char CONVERT_TO_UTF8[] = "Vorn::stringDataConvertToUTF8";
constexpr char CONVERT_CREATE_UTF8[] = "Vorn::stringDataConvertCreateUTF8";
constexpr char CONVERT_COPY_TO_UTF8[] = "Vorn::stringDataConvertCopyToUTF8";

// Throws for unit `i`, where plain ASCII ends, unless that is the end of the text.
template <const auto& Function>
void checkASCII(const unsigned char* sourceBuffer, unsigned int i, unsigned int length) {
    if (i == length) return;
    VORN_INTERNAL_ASSERT(sourceBuffer[i],
                         "ASCII null detected in UTF-8 buffer! This implementation of UTF-8 does not support ASCII "
                         "null!",
                         Function);
    VORN_INTERNAL_ASSERT(sourceBuffer[i] <= 127,
                         "non-ASCII character detected in UTF-8 buffer! This buffer is marked as ASCII only!",
                         Function);
}

template <const auto& Function>
void checkASCII(const UTF16Char* sourceBuffer, unsigned int i, unsigned int length) {
    if (i == length) return;
    VORN_INTERNAL_ASSERT(sourceBuffer[i], "null detected in a buffer marked as ASCII only! This is not allowed!",
                         Function);
    VORN_INTERNAL_ASSERT(sourceBuffer[i] <= 127,
                         "non-ASCII character detected in UTF-16 buffer! This buffer is marked as ASCII only!",
                         Function);
}

// The loops of all conversions return the index behind the last unit that they write.

template <const auto& Function, class Target, class Source>
unsigned int convertPlain(Target* dest, const Source* sourceBuffer, unsigned int length) {
    checkASCII<Function>(sourceBuffer, copyASCII(dest, sourceBuffer, length), length);
    return length;
}

unsigned int stringDataConvertToUTF16FromNonASCIIUTF8(StringDataSubCharset charset, UTF16Char* dest,
                                                      unsigned int destLength, const unsigned char* sourceBuffer,
                                                      unsigned int sourceLength) {
    const TextProgress converted = textKernels().toUTF16(sourceBuffer, sourceLength, dest, destLength, false);
    auto i = static_cast<unsigned int>(converted.source);
    auto j = static_cast<unsigned int>(converted.dest);
    while (i < sourceLength) {
        VORN_INTERNAL_ASSERT(j < destLength, "destination buffer too short");
        const Conversion start{sourceBuffer + i, dest + j};
        const Conversion at = charset == STRING_DATA_UCS2
                                  ? convertOrdinary<false>(start, sourceBuffer + sourceLength, dest + destLength)
                                  : convertOrdinary<true>(start, sourceBuffer + sourceLength, dest + destLength);
        i = static_cast<unsigned int>(at.source - sourceBuffer);
        j = static_cast<unsigned int>(at.dest - dest);
        if (at.dest != start.dest) continue;

        if (charset == STRING_DATA_UCS2) {
            const UTF32Char c = UTF32::getUTF32Char(sourceBuffer, i, sourceLength);
            VORN_INTERNAL_ASSERT(c <= 0xFFFD,
                                 "non-UCS-2 character detected in a UTF-8 buffer that is marked for UCS-2 only!!");
            dest[j++] = static_cast<UTF16Char>(c);
        } else {
            // Only the second surrogate of a pair is stored, as specified. As many units of the measured length remain
            // at the end.
            dest[j++] = static_cast<UTF16Char>(UTF16::getUTF16(sourceBuffer, i, sourceLength));
        }
    }
    return j;
}

// The size of a caller's memory, of which only `destLength` is known: a character that starts inside is written whole.
constexpr std::size_t UNKNOWN_SIZE = SIZE_MAX;

Pairs pairsOf(bool hasPairs) { return hasPairs ? Pairs::STORED : Pairs::APART; }

// Converts a text to UTF-8. `destLength` is tested only at the start of a character. The bytes of a character that
// starts before `destLength` and ends behind `blockSize` bytes are dropped where they are outside the block.
template <bool HasPairs, const auto& Function>
std::size_t encodeText(unsigned char* dest, unsigned int destLength, std::size_t blockSize,
                       const UTF16Char* sourceBuffer, unsigned int sourceLength, bool isMeasured) {
    unsigned int i = 0;
    std::size_t j = 0; // may pass `destLength` by 3 bytes
    // The kernels read all of a measured text. Of any other, no unit is read that is not needed to fill the
    // destination.
    for (std::size_t passed = 1; passed != 0;) {
        const std::size_t room = std::min<std::size_t>(destLength, blockSize) - j;
        const std::size_t length = isMeasured ? sourceLength - i : std::min<std::size_t>(sourceLength - i, room / 3);
        const TextProgress converted =
            textKernels().toUTF8(sourceBuffer + i, length, dest + j, room, pairsOf(HasPairs));
        passed = isMeasured ? 0 : converted.source;
        i += static_cast<unsigned int>(converted.source);
        j += converted.dest;
    }
    while (i < sourceLength) {
        VORN_INTERNAL_ASSERT(j < destLength, "destination buffer too short!", Function);
        if (blockSize - j >= LONGEST_CHARACTER) {
            j = static_cast<std::size_t>(encodeCharacter<HasPairs>(dest + j, sourceBuffer, i) - dest);
        } else {
            unsigned char character[LONGEST_CHARACTER];
            const auto size =
                static_cast<std::size_t>(encodeCharacter<HasPairs>(character, sourceBuffer, i) - character);
            std::copy_n(character, std::min(size, blockSize - j), dest + j);
            j += size;
        }
    }
    return j;
}

constexpr char FROM_UCS2[] = "Vorn::stringDataConvertToUTF8FromUCS2";
constexpr char FROM_UTF16[] = "Vorn::stringDataConvertToUTF8FromUTF16";

std::size_t encodeWide(StringDataSubCharset charset, unsigned char* dest, unsigned int destLength,
                       std::size_t blockSize, const UTF16Char* sourceBuffer, unsigned int sourceLength,
                       bool isMeasured) {
    if (charset == STRING_DATA_UCS2)
        return encodeText<false, FROM_UCS2>(dest, destLength, blockSize, sourceBuffer, sourceLength, isMeasured);
    return encodeText<true, FROM_UTF16>(dest, destLength, blockSize, sourceBuffer, sourceLength, isMeasured);
}

} // namespace

std::size_t stringDataConvertToUTF8FromWide(StringDataSubCharset charset, unsigned char* dest, unsigned int destLength,
                                            const UTF16Char* sourceBuffer, unsigned int sourceLength) {
    return encodeWide(charset, dest, destLength, UNKNOWN_SIZE, sourceBuffer, sourceLength, false);
}

void stringDataConvertToUTF8FromUCS2(unsigned char* dest, unsigned int destLength, const UTF16Char* sourceBuffer,
                                     unsigned int sourceLength) {
    encodeText<false, FROM_UCS2>(dest, destLength, UNKNOWN_SIZE, sourceBuffer, sourceLength, false);
}

void stringDataConvertToUTF8FromUTF16(unsigned char* dest, unsigned int destLength, const UTF16Char* sourceBuffer,
                                      unsigned int sourceLength) {
    encodeText<true, FROM_UTF16>(dest, destLength, UNKNOWN_SIZE, sourceBuffer, sourceLength, false);
}

namespace {

// The conversions of both directions. `Function` is the function text that the checks of ASCII report.

template <class Source>
unsigned int measureConverted(const Source* sourceBuffer, const StringDataBufferInfo& sourceInfo,
                              StringDataSubCharset charset) {
    if (charset == STRING_DATA_ASCII) return sourceInfo.m_length;
    if constexpr (sizeof(Source) == 1)
        return stringDataGetUTF16Length(sourceBuffer, sourceInfo, charset);
    else
        return stringDataGetUTF8Length(sourceBuffer, sourceInfo, charset);
}

template <const auto& Function, class Target, class Source>
std::size_t convertInto(Target* dest, unsigned int destLength, std::size_t blockSize, const Source* sourceBuffer,
                        unsigned int sourceLength, StringDataSubCharset charset) {
    if (charset == STRING_DATA_ASCII) return convertPlain<Function>(dest, sourceBuffer, sourceLength);
    if constexpr (sizeof(Source) == 1)
        return stringDataConvertToUTF16FromNonASCIIUTF8(charset, dest, destLength, sourceBuffer, sourceLength);
    else
        return encodeWide(charset, dest, destLength, blockSize, sourceBuffer, sourceLength, true);
}

template <const auto& Function, class Target, class Source>
Target* convertToNew(const Source* sourceBuffer, const StringDataBufferInfo& sourceInfo, StringDataSubCharset charset,
                     StringDataBufferInfo& destInfo) {
    const unsigned int length = measureConverted(sourceBuffer, sourceInfo, charset);
    std::unique_ptr<Target[]> dest = allocateText<Target>(length);
    const std::size_t blockSize = static_cast<std::size_t>(length) + 1;
    const std::size_t written =
        convertInto<Function>(dest.get(), length, blockSize, sourceBuffer, sourceInfo.m_length, charset);
    clearUnwritten(dest.get(), written, length);
    dest[length] = 0;
    destInfo.m_length = length;
    destInfo.m_allocationType = STRING_DATA_DYNAMIC;
    destInfo.m_nullTerminated = 1;
    return dest.release();
}

template <const auto& Function, class Target, class Source>
Target* convertToCapacity(const Source* sourceBuffer, const StringDataBufferInfo& sourceInfo,
                          StringDataSubCharset charset, unsigned int capacity) {
    if (capacity > MAX_TEXT_LENGTH) VORN_THROW(E::PARAMETER, "length : text too long!", Function);
    const unsigned int length = measureConverted(sourceBuffer, sourceInfo, charset);
    const unsigned int size = std::max(capacity, length);
    std::unique_ptr<Target[]> dest = allocateText<Target>(size);
    const std::size_t blockSize = static_cast<std::size_t>(size) + 1;
    // Only a conversion to UTF-16 may use the whole capacity.
    const unsigned int destLength = sizeof(Target) == 2 ? size : length;
    const std::size_t written =
        convertInto<Function>(dest.get(), destLength, blockSize, sourceBuffer, sourceInfo.m_length, charset);
    clearUnwritten(dest.get(), written, size);
    dest[size] = 0;
    dest[length] = 0;
    return dest.release();
}

template <const auto& Function, class Target, class Source>
unsigned int convertToCopy(const Source* sourceBuffer, const StringDataBufferInfo& sourceInfo,
                           StringDataSubCharset charset, Target* dest, unsigned int destLength) {
    const unsigned int length = measureConverted(sourceBuffer, sourceInfo, charset);
    if (destLength >= length)
        convertInto<Function>(dest, destLength, UNKNOWN_SIZE, sourceBuffer, sourceInfo.m_length, charset);
    return length;
}

template <const auto& Function, class Source, class Target>
std::size_t convertToBlock(const StringData& text, Target* dest, unsigned int capacity) {
    return convertInto<Function>(dest, capacity, UNKNOWN_SIZE, text.getPrivateBuffer<Source>(),
                                 text.getBufferInfo<Source>().m_length, text.getCharset());
}

} // namespace

std::size_t copyToBlock(const StringData& text, unsigned char* dest, unsigned int capacity) {
    if (text.getPrivateBuffer<unsigned char>()) return text.copyToUTF8(dest, capacity);
    if (!text.getPrivateBuffer<UTF16Char>()) return 0;
    return convertToBlock<CONVERT_COPY_TO_UTF8, UTF16Char>(text, dest, capacity);
}

std::size_t copyToBlock(const StringData& text, UTF16Char* dest, unsigned int capacity) {
    if (text.getPrivateBuffer<UTF16Char>()) return text.copyToUTF16(dest, capacity);
    if (!text.getPrivateBuffer<unsigned char>()) return 0;
    return convertToBlock<CONVERT_COPY_TO_UTF16, unsigned char>(text, dest, capacity);
}

UTF16Char* stringDataConvertToUTF16(const unsigned char* sourceBuffer, const StringDataBufferInfo& sourceInfo,
                                    StringDataSubCharset charset, StringDataBufferInfo& destInfo) {
    return convertToNew<CONVERT_TO_UTF16, UTF16Char>(sourceBuffer, sourceInfo, charset, destInfo);
}

UTF16Char* stringDataConvertCreateUTF16(const unsigned char* sourceBuffer, const StringDataBufferInfo& sourceInfo,
                                        StringDataSubCharset charset, unsigned int capacity) {
    return convertToCapacity<CONVERT_CREATE_UTF16, UTF16Char>(sourceBuffer, sourceInfo, charset, capacity);
}

unsigned int stringDataConvertCopyToUTF16(const unsigned char* sourceBuffer, const StringDataBufferInfo& sourceInfo,
                                          StringDataSubCharset charset, UTF16Char* dest, unsigned int destLength) {
    return convertToCopy<CONVERT_COPY_TO_UTF16>(sourceBuffer, sourceInfo, charset, dest, destLength);
}

unsigned char* stringDataConvertToUTF8(const UTF16Char* sourceBuffer, const StringDataBufferInfo& sourceInfo,
                                       StringDataSubCharset charset, StringDataBufferInfo& destInfo) {
    return convertToNew<CONVERT_TO_UTF8, unsigned char>(sourceBuffer, sourceInfo, charset, destInfo);
}

unsigned char* stringDataConvertCreateUTF8(const UTF16Char* sourceBuffer, const StringDataBufferInfo& sourceInfo,
                                           StringDataSubCharset charset, unsigned int capacity) {
    return convertToCapacity<CONVERT_CREATE_UTF8, unsigned char>(sourceBuffer, sourceInfo, charset, capacity);
}

unsigned int stringDataConvertCopyToUTF8(const UTF16Char* sourceBuffer, const StringDataBufferInfo& sourceInfo,
                                         StringDataSubCharset charset, unsigned char* dest, unsigned int destLength) {
    return convertToCopy<CONVERT_COPY_TO_UTF8>(sourceBuffer, sourceInfo, charset, dest, destLength);
}

void stringDataConvertToUTF8(std::string& dest, const UTF16Char* sourceBuffer, const StringDataBufferInfo& sourceInfo,
                             StringDataSubCharset charset) {
    const unsigned int length = sourceInfo.m_length;
    if (length == 0 || charset == STRING_DATA_ASCII) {
        const unsigned int end = skipASCII(sourceBuffer, length);
        dest.clear();
        dest.reserve(length);
        dest.resize(end);
        copyASCII(reinterpret_cast<unsigned char*>(dest.data()), sourceBuffer, end);
        checkASCII<CONVERT_TO_UTF8>(sourceBuffer, end, length);
        return;
    }

    // A failed check leaves `dest` empty, and a text that is too long leaves it as it was.
    std::string before;
    before.swap(dest);
    const std::uint64_t size = measureUTF8(sourceBuffer, length, charset);
    dest.swap(before);
    if (size > MAX_TEXT_LENGTH) VORN_THROW(E::PARAMETER, "length : text too long!", GET_UTF8_LENGTH);
    dest.clear();
    dest.reserve(static_cast<std::size_t>(size));

    unsigned char part[4096];
    const bool pairs = charset != STRING_DATA_UCS2;
    for (unsigned int i = 0; i < length;) {
        const TextProgress converted =
            textKernels().toUTF8(sourceBuffer + i, length - i, part, sizeof(part), pairsOf(pairs));
        dest.append(reinterpret_cast<const char*>(part), converted.dest);
        i += static_cast<unsigned int>(converted.source);
        // The kernel has left a few units at the end of the text or of the part.
        const unsigned int partEnd = i + std::min(length - i, 32u);
        unsigned char* end = part;
        while (i < partEnd)
            end = pairs ? encodeCharacter<true>(end, sourceBuffer, i) : encodeCharacter<false>(end, sourceBuffer, i);
        dest.append(reinterpret_cast<const char*>(part), static_cast<std::size_t>(end - part));
    }
}

} // namespace Vorn
