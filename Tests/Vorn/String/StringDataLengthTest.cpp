#include "Vorn/String/StringDataHelper.h"

#include "Reference/SampleTexts.h"
#include "Reference/TextLength.h"
#include "Support/AllocationCounter.h"
#include "Support/BufferInfo.h"
#include "Support/GuardedBuffer.h"
#include "Support/Outcome.h"

#include <gtest/gtest.h>

namespace {

using reference::Bytes;
using reference::Codes;
using reference::Units;
using Vorn::STRING_DATA_ASCII;
using Vorn::STRING_DATA_UCS2;
using Vorn::STRING_DATA_UNICODE;
using Vorn::StringDataSubCharset;
using Vorn::UTF16Char;

// The verdicts, and some that are none: those take the branch of STRING_DATA_UNICODE.
constexpr int CHARSETS[] = {1, 2, 3, 0, 4, -1};

Outcome utf16Length(const unsigned char* buffer, std::size_t length, int charset) {
    return outcomeOf([&] {
        return Vorn::stringDataGetUTF16Length(buffer, infoOf(length), static_cast<StringDataSubCharset>(charset));
    });
}
Outcome utf8Length(const UTF16Char* buffer, std::size_t length, int charset) {
    return outcomeOf([&] {
        return Vorn::stringDataGetUTF8Length(buffer, infoOf(length), static_cast<StringDataSubCharset>(charset));
    });
}
template <class Unit>
Outcome unicodeLength(const Unit* buffer, std::size_t length, int charset) {
    return outcomeOf([&] {
        return Vorn::stringDataGetUnicodeLength(buffer, infoOf(length), static_cast<StringDataSubCharset>(charset));
    });
}

// Compares both lengths of a text, valid or not, with the reference for every charset.
bool measuresAsTold(const Bytes& text) {
    const auto length = static_cast<unsigned int>(text.size());
    const GuardedBuffer<unsigned char> block(text);
    bool same = true;
    for (const int charset : CHARSETS) {
        const Outcome expectedUnits = reference::utf16Length(text, length, charset);
        const Outcome expectedCharacters = reference::unicodeLength(text, length, charset);
        const Outcome units = utf16Length(block.data(), length, charset);
        const Outcome characters = unicodeLength(block.data(), length, charset);
        EXPECT_EQ(units, expectedUnits) << "charset " << charset << ": " << reference::shown(text);
        EXPECT_EQ(characters, expectedCharacters) << "charset " << charset << ": " << reference::shown(text);
        same = same && units == expectedUnits && characters == expectedCharacters;
        if (charset == 3 && length > 2) break; // the others differ in nothing, as short texts show
    }
    return same;
}

bool measuresAsTold(const Units& text) {
    const auto length = static_cast<unsigned int>(text.size());
    const GuardedBuffer<UTF16Char> block(text);
    bool same = true;
    for (const UTF16Char behind : {UTF16Char(0), UTF16Char(0xDC00)}) {
        // One unit follows the text, because the byte count reads it after a first surrogate at the end.
        Units longer = text;
        longer.push_back(behind);
        const GuardedBuffer<UTF16Char> longerBlock(longer);
        for (const int charset : CHARSETS) {
            const Outcome expectedBytes = reference::utf8Length(longer, length, charset);
            const Outcome expectedCharacters = reference::unicodeLength(text, length, charset);
            const Outcome bytes = utf8Length(longerBlock.data(), length, charset);
            const Outcome characters = unicodeLength(block.data(), length, charset);
            EXPECT_EQ(bytes, expectedBytes) << "charset " << charset << ": " << reference::shown(text);
            EXPECT_EQ(characters, expectedCharacters) << "charset " << charset << ": " << reference::shown(text);
            same = same && bytes == expectedBytes && characters == expectedCharacters;
            if (charset == 3 && length > 2) break;
        }
        if (text.empty() || !reference::isFirstSurrogate(text.back())) break;
    }
    return same;
}

TEST(StringDataLength, NothingIsReadOfAnEmptyText) {
    for (const int charset : CHARSETS) {
        EXPECT_EQ(utf16Length(nullptr, 0, charset), Outcome{});
        EXPECT_EQ(utf8Length(nullptr, 0, charset), Outcome{});
        EXPECT_EQ(unicodeLength<unsigned char>(nullptr, 0, charset), Outcome{});
        EXPECT_EQ(unicodeLength<UTF16Char>(nullptr, 0, charset), Outcome{});
    }
}

struct Row {
    const char* name;
    StringDataSubCharset charset;
    const char* message; // null for a result
    unsigned int result;
};
struct BytesRow : Row {
    Bytes text;
};
struct UnitsRow : Row {
    Units text;
};

Outcome expectedOf(const Row& row, const char* function) {
    if (!row.message) return {row.result, {}};
    return raised(2, row.message, function, "Source/Vorn/StringDataHelper");
}

constexpr StringDataSubCharset A = STRING_DATA_ASCII;
constexpr StringDataSubCharset U = STRING_DATA_UCS2;
constexpr StringDataSubCharset F = STRING_DATA_UNICODE;

const char* const NULL_ASCII_UTF8 = "buffer[i] : ASCII null detected in UTF-8 buffer!! This implementation of UTF-8 "
                                    "does not support ASCII null!";
const char* const NON_ASCII_UTF8 = "buffer[i] <= 127 : non-ASCII detected in UTF-8 buffer marked for ASCII only!!";
const char* const NULL_ASCII_UTF16 = "buffer[i] : null detected in UTF-16 buffer that is marked as ASCII only!! This "
                                     "not allowed!";
const char* const NON_ASCII_UTF16 = "buffer[i] <= 127 : non-ASCII detected in UTF-16 buffer marked for ASCII only!!";
const char* const NULL_UTF8 =
    "c : ASCII null detected in UTF-8 buffer!! This implementation of UTF-8 does not support ASCII null!";
const char* const INVALID_UTF8 = "c != 0xFDEF : Invalid Unicode character detected in UTF-8 buffer!!";
const char* const INVALID_UTF16 = "c != 0xFDEF : Invalid Unicode character detected in UTF-16 buffer!!";
const char* const TRAIL = "c != 0xFDD0 : unmatched trail UTF-8 byte detected!!";
const char* const FOUR_BYTES =
    "c != 0xFDD4 : 4-byte UTF-8 character detected in a buffer marked for 2-byte or below only!!";
const char* const LEAD2 = "i < length : unmatched 2-byte UTF-8 lead byte!!";
const char* const LEAD3 = "i < length : unmatched 3-byte UTF-8 lead byte!!";
const char* const LEAD4 = "i < length : unmatched 4-byte UTF-8 lead byte!!";
const char* const OVERLONG2_UCS2 = "!c || c > 127 : Overlong 2-byte UTF-8 character detected!!";
const char* const OVERLONG2_FULL = "c || c > 127 : Overlong 2-byte UTF-8 character detected!!";
const char* const OVERLONG3 = "c > 0x07FF : Overlong 3-byte UTF-8 character detected!!";
const char* const OVERLONG4 = "c > 0xFFFF : Overlong 4-byte UTF-8 character detected!!";
const char* const SECOND = "c != 0xFDD2 : unmatched second UTF-16 surrogate detected!!";
const char* const FIRST = "Unicode::getUTF32Char(buffer[i]) == 0xFDD2 : unmatched first UTF-16 surrogate detected!!";

TEST(StringDataLength, UTF16LengthOfKnownTexts) {
    const BytesRow rows[] = {
        {{"plain", A, nullptr, 3}, {0x61, 0x62, 0x7F}},
        {{"zero under ASCII", A, NULL_ASCII_UTF8, 0}, {0x61, 0x00, 0xFF}},
        {{"accent under ASCII", A, NON_ASCII_UTF8, 0}, {0x61, 0xC3, 0xA9}},
        {{"first non-ASCII byte", A, NON_ASCII_UTF8, 0}, {0x80}},
        {{"null", U, nullptr, 2}, {0x61, 0xC0, 0x80}},
        {{"null with the charset UNICODE", F, OVERLONG2_FULL, 0}, {0x61, 0xC0, 0x80}},
        {{"null before four bytes", F, OVERLONG2_FULL, 0}, {0xC0, 0x80, 0xF0, 0x90, 0x80, 0x80}},
        {{"overlong one under UCS-2", U, OVERLONG2_UCS2, 0}, {0xC0, 0x81}},
        {{"overlong 127 under UCS-2", U, OVERLONG2_UCS2, 0}, {0xC1, 0xBF}},
        {{"overlong one passes with the charset UNICODE", F, nullptr, 1}, {0xC0, 0x81}},
        {{"overlong 127 passes with the charset UNICODE", F, nullptr, 1}, {0xC1, 0xBF}},
        {{"two and three bytes", U, nullptr, 3}, {0xC2, 0x80, 0xDF, 0xBF, 0xEF, 0xBF, 0xBD}},
        {{"four bytes", F, nullptr, 2}, {0xF0, 0x90, 0x80, 0x80}},
        {{"last character", F, nullptr, 2}, {0xF4, 0x8F, 0xBF, 0xBD}},
        {{"all sizes", F, nullptr, 5}, {0x61, 0xC3, 0xA9, 0xE2, 0x82, 0xAC, 0xF0, 0x9F, 0x98, 0x80}},
        {{"four bytes under UCS-2", U, FOUR_BYTES, 0}, {0xF0, 0x90, 0x80, 0x80}},
        {{"a lone lead of four under UCS-2", U, FOUR_BYTES, 0}, {0xF0}},
        {{"zero byte under UCS-2", U, NULL_UTF8, 0}, {0x00}},
        {{"zero byte with the charset UNICODE", F, NULL_UTF8, 0}, {0xC3, 0xA9, 0x00}},
        {{"a byte that leads nothing under UCS-2", U, INVALID_UTF8, 0}, {0xF5}},
        {{"a byte that leads nothing", F, INVALID_UTF8, 0}, {0xFF}},
        {{"trail byte under UCS-2", U, TRAIL, 0}, {0x80}},
        {{"trail byte", F, TRAIL, 0}, {0xBF}},
        {{"lead of two alone under UCS-2", U, LEAD2, 0}, {0xC2}},
        {{"lead of two alone", F, LEAD2, 0}, {0xC2}},
        {{"lead of three alone under UCS-2", U, LEAD3, 0}, {0xE1}},
        {{"lead of three and one trail under UCS-2", U, LEAD3, 0}, {0xE1, 0x80}},
        {{"lead of three and one trail", F, LEAD3, 0}, {0xE1, 0x80}},
        {{"lead of three before a letter at the end", F, LEAD3, 0}, {0xE1, 0x41}},
        {{"lead of four and two trails", F, LEAD4, 0}, {0xF1, 0x80, 0x80}},
        {{"lead of four alone", F, LEAD4, 0}, {0xF1}},
        {{"surrogate under UCS-2", U, INVALID_UTF8, 0}, {0xED, 0xA0, 0x80}},
        {{"noncharacter", F, INVALID_UTF8, 0}, {0xEF, 0xBF, 0xBE}},
        {{"noncharacter of plane 1", F, INVALID_UTF8, 0}, {0xF0, 0x9F, 0xBF, 0xBE}},
        {{"overlong three bytes under UCS-2", U, OVERLONG3, 0}, {0xE0, 0x9F, 0xBF}},
        {{"overlong three bytes", F, OVERLONG3, 0}, {0xE0, 0x80, 0x80}},
        {{"overlong four bytes, which pass the scan", F, OVERLONG4, 0}, {0xF0, 0x80, 0x80, 0x80}},
        {{"last overlong four bytes", F, OVERLONG4, 0}, {0xF0, 0x8F, 0xBF, 0xBD}},
    };
    for (const BytesRow& row : rows) {
        EXPECT_EQ(utf16Length(GuardedBuffer<unsigned char>(row.text).data(), row.text.size(), row.charset),
                  expectedOf(row, "Vorn::stringDataGetUTF16Length"))
            << row.name;
        EXPECT_TRUE(measuresAsTold(row.text)) << row.name;
    }
}

TEST(StringDataLength, UTF16LengthReportsWhatTheDecodersRaise) {
    const unsigned char two[] = {0xC2, 0x41};
    const unsigned char three[] = {0xE1, 0x80, 0x41};
    const unsigned char four[] = {0xF1, 0x80, 0x80, 0x41};
    const Outcome badTwo = raised(2, "(trail & 0xC0) == 0x80 : Invalid trail byte in 2-byte UTF-8 sequence",
                                  "Vorn::UTF32::getUTF32Char", "Include/Vorn/String/UTF32");
    const Outcome badThree = raised(2, "(seq & 0x00F0C0C0) == 0x00E08080 : Invalid 3-byte UTF-8 sequence!",
                                    "Vorn::UTF8::invalid3ByteUnicode", "Include/Vorn/String/UTF8");
    for (const int charset : {2, 3}) {
        EXPECT_EQ(utf16Length(two, 2, charset), badTwo);
        EXPECT_EQ(unicodeLength(two, 2, charset), badTwo);
        EXPECT_EQ(utf16Length(three, 3, charset), badThree);
        EXPECT_EQ(unicodeLength(three, 3, charset), badThree);
    }
    EXPECT_EQ(utf16Length(four, 4, 3), raised(2, "(seq & 0xF8C0C0C0) == 0xF0808080 : Invalid 4-byte UTF-8 sequence!",
                                              "Vorn::UTF8::invalid4ByteUnicode", "Include/Vorn/String/UTF8"));
}

TEST(StringDataLength, UTF8LengthOfKnownTexts) {
    const UnitsRow rows[] = {
        {{"plain", A, nullptr, 3}, {0x61, 0x62, 0x7F}},
        {{"zero under ASCII", A, NULL_ASCII_UTF16, 0}, {0x61, 0, 0xFFFF}},
        {{"accent under ASCII", A, NON_ASCII_UTF16, 0}, {0x61, 0xE9}},
        {{"only the high byte is set", A, NON_ASCII_UTF16, 0}, {0x61, 0x100}},
        {{"first non-ASCII unit", A, NON_ASCII_UTF16, 0}, {0x80}},
        {{"127 under UCS-2", U, nullptr, 1}, {0x7F}},
        {{"127 counts two with the charset UNICODE", F, nullptr, 2}, {0x7F}},
        {{"126 counts one with the charset UNICODE", F, nullptr, 1}, {0x7E}},
        {{"null counts one under UCS-2", U, nullptr, 1}, {0}},
        {{"null counts two with the charset UNICODE", F, nullptr, 2}, {0}},
        {{"edges under UCS-2", U, nullptr, 13}, {1, 0x80, 0x7FF, 0x800, 0xFFFD, 0x7E, 0x7F}},
        {{"edges with the charset UNICODE", F, nullptr, 14}, {1, 0x80, 0x7FF, 0x800, 0xFFFD, 0x7E, 0x7F}},
        {{"pair", F, nullptr, 4}, {0xD800, 0xDC00}},
        {{"last pair", F, nullptr, 4}, {0xDBFF, 0xDFFD}},
        {{"a noncharacter in a pair is not seen", F, nullptr, 4}, {0xD83F, 0xDFFF}},
        {{"first surrogate under UCS-2", U, "count >= 1 : Invalid code!", 0}, {0xD800, 0xDC00}},
        {{"second surrogate under UCS-2", U, "count >= 1 : Invalid code!", 0}, {0xDC00}},
        {{"noncharacter under UCS-2", U, "count >= 1 : Invalid code!", 0}, {0x61, 0xFDD0}},
        {{"FFFF under UCS-2", U, "count >= 1 : Invalid code!", 0}, {0xFFFF}},
        {{"noncharacter", F, INVALID_UTF16, 0}, {0xFDEF}},
        {{"FFFE", F, INVALID_UTF16, 0}, {0xFFFE}},
        {{"second surrogate alone", F, SECOND, 0}, {0x61, 0xDC00}},
        {{"first surrogate before a letter", F, FIRST, 0}, {0xD800, 0x61}},
        {{"two first surrogates", F, FIRST, 0}, {0xD800, 0xD800, 0xDC00}},
    };
    for (const UnitsRow& row : rows) {
        EXPECT_EQ(utf8Length(GuardedBuffer<UTF16Char>(row.text).data(), row.text.size(), row.charset),
                  expectedOf(row, "Vorn::stringDataGetUTF8Length"))
            << row.name;
        EXPECT_TRUE(measuresAsTold(row.text)) << row.name;
    }
}

TEST(StringDataLength, UTF8LengthLooksBehindAFirstSurrogateAtTheEnd) {
    const UTF16Char pair[] = {0x61, 0xD800, 0xDC00};
    EXPECT_EQ(utf8Length(pair, 2, 3), (Outcome{5, {}}));
    const UTF16Char letter[] = {0x61, 0xD800, 0x62};
    EXPECT_EQ(utf8Length(letter, 2, 3), raised(2, FIRST, "Vorn::stringDataGetUTF8Length", reference::HELPER_FILE));
}

TEST(StringDataLength, UnicodeLengthOfKnownUTF8) {
    const char* const nonUCS2 =
        "c <= 0xFFFD : non-UCS-2 character detected in a UTF-8 buffer that is marked for UCS-2 only!!";
    const BytesRow rows[] = {
        {{"plain", A, nullptr, 3}, {0x61, 0x62, 0x7F}},
        {{"zero under ASCII", A, NULL_ASCII_UTF8, 0}, {0x61, 0x00, 0xFF}},
        {{"accent under ASCII", A, NON_ASCII_UTF8, 0}, {0x61, 0xC3, 0xA9}},
        {{"two and three bytes", U, nullptr, 4}, {0xC2, 0x80, 0x41, 0xEF, 0xBF, 0xBD, 0xC0, 0x80}},
        {{"four bytes", F, nullptr, 2}, {0x61, 0xF0, 0x9F, 0x98, 0x80}},
        {{"four bytes under UCS-2", U, nonUCS2, 0}, {0x61, 0xF0, 0x90, 0x80, 0x80}},
        {{"overlong four bytes under UCS-2 are small", U, nullptr, 1}, {0xF0, 0x80, 0x80, 0x80}},
        {{"last overlong four bytes under UCS-2", U, nullptr, 1}, {0xF0, 0x8F, 0xBF, 0xBD}},
        {{"trail bytes count one each", U, nullptr, 3}, {0x80, 0xBF, 0x90}},
        {{"trail bytes count one each, charset UNICODE", F, nullptr, 3}, {0x80, 0xBF, 0x90}},
        {{"zero bytes count one each", U, nullptr, 2}, {0x00, 0x00}},
        {{"zero bytes count one each, charset UNICODE", F, nullptr, 2}, {0x00, 0x00}},
        {{"overlong forms count", F, nullptr, 3}, {0xC1, 0xBF, 0xE0, 0x80, 0x80, 0xF0, 0x80, 0x80, 0x80}},
        {{"a byte that leads nothing under UCS-2", U, INVALID_UTF8, 0}, {0xF5}},
        {{"a byte that leads nothing", F, INVALID_UTF8, 0}, {0xFF}},
        {{"truncated two", U, INVALID_UTF8, 0}, {0x61, 0xC2}},
        {{"truncated three", F, INVALID_UTF8, 0}, {0xE1, 0x80}},
        {{"truncated four", F, INVALID_UTF8, 0}, {0xF1, 0x80, 0x80}},
        {{"truncated four under UCS-2", U, INVALID_UTF8, 0}, {0xF1, 0x80, 0x80}},
        {{"surrogate", F, INVALID_UTF8, 0}, {0xED, 0xA0, 0x80}},
        {{"noncharacter of plane 1 under UCS-2", U, INVALID_UTF8, 0}, {0xF0, 0x9F, 0xBF, 0xBE}},
    };
    for (const BytesRow& row : rows) {
        EXPECT_EQ(unicodeLength(GuardedBuffer<unsigned char>(row.text).data(), row.text.size(), row.charset),
                  expectedOf(row, "Vorn::stringDataGetUnicodeLength"))
            << row.name;
        EXPECT_TRUE(measuresAsTold(row.text)) << row.name;
    }
}

TEST(StringDataLength, UnicodeLengthOfKnownUTF16) {
    const char* const invalidUCS2 = "Unicode::getUCS2Char(static_cast<UTF32Char>(buffer[i])) != 0xFDEF : Invalid UCS-2 "
                                    "character detected in a buffer marked as UCS-2 only!";
    const UnitsRow rows[] = {
        {{"plain", A, nullptr, 3}, {0x61, 0x62, 0x7F}},
        {{"zero under ASCII", A, NULL_ASCII_UTF16, 0}, {0x61, 0, 0xFFFF}},
        {{"accent under ASCII", A, NON_ASCII_UTF16, 0}, {0x61, 0xE9}},
        {{"characters under UCS-2", U, nullptr, 3}, {0, 0xE9, 0xFFFD}},
        {{"noncharacters and surrogates pass under UCS-2", U, nullptr, 5}, {0xFDD0, 0xFDEE, 0xFFFE, 0xD800, 0xDC00}},
        {{"but for one", U, invalidUCS2, 0}, {0x61, 0xFDEF}},
        {{"pair", F, nullptr, 2}, {0x61, 0xD83D, 0xDE00}},
        {{"null with the charset UNICODE", F, nullptr, 2}, {0, 0x7F}},
        {{"a noncharacter in a pair is not seen", F, nullptr, 1}, {0xDBFF, 0xDFFF}},
        {{"noncharacter", F, INVALID_UTF16, 0}, {0xFDD0}},
        {{"FFFE", F, INVALID_UTF16, 0}, {0x61, 0xFFFE}},
        {{"second surrogate alone", F, SECOND, 0}, {0xDFFF}},
        {{"first surrogate at the end", F, "i < length : unmatched first UTF-16 surrogate detected!!", 0}, {0xD800}},
        {{"first surrogate before a letter", F, FIRST, 0}, {0xD800, 0x61}},
    };
    for (const UnitsRow& row : rows) {
        EXPECT_EQ(unicodeLength(GuardedBuffer<UTF16Char>(row.text).data(), row.text.size(), row.charset),
                  expectedOf(row, "Vorn::stringDataGetUnicodeLength"))
            << row.name;
        EXPECT_TRUE(measuresAsTold(row.text)) << row.name;
    }
}

// Bytes that the count of a valid text differs by from those that the text takes.
std::ptrdiff_t miscount(const Codes& codes) {
    if (reference::charsetOf(codes) == STRING_DATA_UNICODE) return std::count(codes.begin(), codes.end(), 0x7Fu);
    return -std::count(codes.begin(), codes.end(), 0u);
}

TEST(StringDataLength, RandomTextsOfAllScripts) {
    for (const Codes& codes : reference::randomTexts({0, 1, 2, 7, 8, 9, 16, 31, 64, 200, 3000})) {
        const Bytes bytes = reference::toUTF8(codes);
        const Units units = reference::toUTF16(codes);
        const StringDataSubCharset charset = reference::charsetOf(codes);
        if (charset != STRING_DATA_UNICODE || !reference::holds(codes, 0)) {
            EXPECT_EQ(utf16Length(bytes.data(), bytes.size(), charset).value, units.size());
        }
        EXPECT_EQ(utf8Length(units.data(), units.size(), charset).value,
                  static_cast<std::size_t>(static_cast<std::ptrdiff_t>(bytes.size()) + miscount(codes)));
        EXPECT_EQ(unicodeLength(bytes.data(), bytes.size(), charset).value, codes.size());
        EXPECT_EQ(unicodeLength(units.data(), units.size(), charset).value, codes.size());
        ASSERT_TRUE(measuresAsTold(bytes));
        ASSERT_TRUE(measuresAsTold(units));
    }
}

TEST(StringDataLength, EveryUnitAndEveryTwoBytes) {
    for (unsigned int unit = 0; unit <= 0xFFFF; unit += unit < 0x900 ? 1 : rowStep()) {
        // The inner surrogates are all alike, and each costs several failures.
        if (reference::isSurrogate(unit) && reference::isSurrogate(unit + 1) && unit % 64 != 0) continue;
        ASSERT_TRUE(measuresAsTold(Units{static_cast<UTF16Char>(unit)}));
    }
    for (const unsigned int byte : reference::allBytes) {
        const auto first = static_cast<unsigned char>(byte);
        ASSERT_TRUE(measuresAsTold(Bytes{first}));
        for (const unsigned char second : reference::selectedBytes) ASSERT_TRUE(measuresAsTold(Bytes{first, second}));
    }
}

TEST(StringDataLength, ThreeAndFourBytesAtEveryEdge) {
    const unsigned char leads[] = {0xE0, 0xE1, 0xED, 0xEF, 0xF0, 0xF1, 0xF4, 0xF5};
    const unsigned char seconds[] = {0x00, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xB7, 0xBF, 0xC0};
    const unsigned char lasts[] = {0x00, 0x80, 0x90, 0xB0, 0xBD, 0xBE, 0xBF, 0xC2};
    for (const unsigned char b1 : leads) {
        for (const unsigned char b2 : seconds) {
            for (const unsigned char b3 : lasts) {
                ASSERT_TRUE(measuresAsTold(Bytes{b1, b2, b3}));
                if (b1 < 0xF0) continue;
                for (const unsigned char b4 : lasts) ASSERT_TRUE(measuresAsTold(Bytes{b1, b2, b3, b4}));
            }
        }
    }
}

TEST(StringDataLength, PairsOfUnitsAtEveryEdge) {
    const UTF16Char units[] = {0,      0x7E,   0x7F,   0x80,   0xD7FF, 0xD800, 0xDBFF, 0xDC00,
                               0xDFFF, 0xE000, 0xFDD0, 0xFDEF, 0xFDF0, 0xFFFD, 0xFFFE, 0xFFFF};
    for (const UTF16Char first : units) {
        for (const UTF16Char second : units) {
            ASSERT_TRUE(measuresAsTold(Units{first, second}));
            ASSERT_TRUE(measuresAsTold(Units{0x61, first, second}));
        }
    }
}

TEST(StringDataLength, AnErrorAtEveryPositionIsReportedWithTheSameText) {
    for (const Codes& codes : reference::randomTexts({17})) {
        for (const Bytes& text : reference::damaged(reference::toUTF8(codes), reference::badBytes)) {
            ASSERT_TRUE(measuresAsTold(text));
        }
        for (const Units& text : reference::damaged(reference::toUTF16(codes), reference::badUnits)) {
            ASSERT_TRUE(measuresAsTold(text));
        }
    }
}

TEST(StringDataLength, DamageInLongPlainText) {
    const Codes codes(100, 0x61);
    for (const Bytes& text : reference::damaged(reference::toUTF8(codes), reference::badBytes)) {
        ASSERT_TRUE(measuresAsTold(text));
    }
    for (const Units& text : reference::damaged(reference::toUTF16(codes), reference::badUnits)) {
        ASSERT_TRUE(measuresAsTold(text));
    }
}

TEST(StringDataLength, AllocatesNothing) {
    const Bytes bytes = reference::toUTF8(Codes(300, 0x20AC));
    const Units units = reference::toUTF16(Codes(300, 0x20AC));
    EXPECT_EQ(allocationsDuring([&] {
                  Vorn::stringDataGetUTF16Length(bytes.data(), infoOf(bytes.size()), STRING_DATA_UCS2);
                  Vorn::stringDataGetUTF8Length(units.data(), infoOf(units.size()), STRING_DATA_UCS2);
                  Vorn::stringDataGetUnicodeLength(bytes.data(), infoOf(bytes.size()), STRING_DATA_UCS2);
                  Vorn::stringDataGetUnicodeLength(units.data(), infoOf(units.size()), STRING_DATA_UCS2);
              }),
              0u);
}

} // namespace
