// Texts of all lengths on entry: counted and measured, and measured ones that do not end where a text must.
#include "Limits/LimitSupport.h"

#include "Vorn/String/StringOwnerMap.h"

#include <cstring>

// g++ 12 with sanitizers takes the deleted key of a table, which is compared only after an erasure, for one that is
// compared always.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

namespace limits {
namespace {

constexpr const char* SCAN = "stringDataBufferScan";
constexpr unsigned int MEASURE = 0xFFFFFFFF;

using ScanLimit = LimitTest;

template <class CharType>
void expectText(const CharType* units, std::uint64_t length, unsigned int given, bool terminated,
                StringDataSubCharset charset, bool hasNull = false) {
    SCOPED_TRACE(std::to_string(length) + " units, length argument " + std::to_string(given));
    const StringData record(units, given, STRING_DATA_STATIC);
    EXPECT_EQ(record.getBufferInfo<CharType>().m_length, length);
    EXPECT_EQ(record.getBufferInfo<CharType>().m_nullTerminated, terminated);
    EXPECT_EQ(record.getCharset(), charset);
    EXPECT_EQ(record.haveEmbeddedNulls(), hasNull);
}

TEST_F(ScanLimit, CountedUTF8) {
    const LongText<char> text("a", LONGEST);
    const auto* const bytes = reinterpret_cast<unsigned char*>(text.units());
    for (const std::uint64_t length : {LARGEST_INT, HALF, LONGEST}) {
        const unsigned char* const end = bytes + LONGEST; // texts that end before the guard
        const auto given = static_cast<unsigned int>(length);
        expectText(end - length, length, given, false, STRING_DATA_ASCII);
        if (length != LONGEST) expectText(end - length, length, given + 1, true, STRING_DATA_ASCII);
    }
    for (const std::uint64_t i : {LARGEST_INT, LONGEST - 1}) { // the last place is seen
        text.units()[i] = '\x80';
        expectRaises<7>([&] { StringData(bytes, 0xFFFFFFFE, STRING_DATA_STATIC); },
                        "Unmatched trail UTF-8 byte detected!", SCAN);
        text.units()[i] = 'a';
    }
}

TEST_F(ScanLimit, CountedUTF16) {
    const LongUTF16 text(u"a", LONGEST);
    text.units()[LONGEST - 1] = 0x4E00;
    for (const std::uint64_t length : {LARGEST_INT, HALF, LONGEST})
        expectText(text.units() + LONGEST - length, length, static_cast<unsigned int>(length), false, STRING_DATA_UCS2);
    text.units()[LONGEST - 1] = 0xD800;
    expectRaises<7>([&] { StringData(text.units(), 0xFFFFFFFE, STRING_DATA_STATIC); },
                    "Unmatched first surrogate character!", SCAN);
}

TEST_F(ScanLimit, MeasuredUTF8) {
    const LongText<char> text("a", LONGEST);
    const auto* const bytes = reinterpret_cast<unsigned char*>(text.units());
    expectText(bytes, LONGEST, MEASURE, true, STRING_DATA_ASCII);
    // The length with its terminator is 0xFFFFFFFF, which is measured.
    EXPECT_EQ(String(bytes, 0xFFFFFFFE, STRING_DATA_STATIC, true).getData()->getUTF8Length(), LONGEST);
}

TEST_F(ScanLimit, MeasuredUTF16) {
    const LongUTF16 text(u"a", HALF);
    expectText(text.units(), HALF, MEASURE, true, STRING_DATA_ASCII);
}

// The first byte behind the longest text and its missing terminator cannot be read.
TEST_F(ScanLimit, MeasuredUTF8ThatDoesNotEnd) {
    const struct {
        const char* name;
        std::string_view pattern;
    } rows[] = {{"one byte", "a"},
                {"two bytes", "\xC3\xA9"},
                {"three bytes", "\xE4\xB8\x80"},
                {"four bytes", "\xF0\x90\x80\x80"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const LongMemory text(row.pattern, TOO_LONG);
        expectTooLong([&] { StringData(text.begin(), MEASURE, STRING_DATA_STATIC); }, SCAN, HELPER_FILE);
    }
}

TEST_F(ScanLimit, MeasuredUTF8ThatEndsOneByteTooLate) {
    const LongText<char> text("a", TOO_LONG);
    const auto* const bytes = reinterpret_cast<unsigned char*>(text.units());
    expectTooLong([&] { StringData(bytes, MEASURE, STRING_DATA_STATIC); }, SCAN, HELPER_FILE);
}

TEST_F(ScanLimit, MeasuredUTF16ThatDoesNotEnd) {
    for (const std::u16string_view pattern : {u"\u4E00", u"\U00010000"}) {
        SCOPED_TRACE(pattern.size() == 1 ? "single units" : "pairs");
        const LongUTF16 text(pattern, TOO_LONG, false);
        expectTooLong([&] { StringData(text.units(), MEASURE, STRING_DATA_STATIC); }, SCAN, HELPER_FILE);
    }
}

// The malformed unit behind a zero unit is met only if the length is not measured.
TEST_F(ScanLimit, ALengthWithATerminatorIsNotMeasured) {
    constexpr unsigned int LENGTH = 0xFFFFFFFE; // 0xFFFFFFFF with the terminator
    const LongUTF16 wide(u"a", LONGEST);
    wide.units()[3] = 0;
    wide.units()[5] = 0xDC00;
    EXPECT_THROW(String(wide.units(), LENGTH, STRING_DATA_STATIC, true), Exception<7>);
    StringOwnerMap<UTF16Char> wideMap;
    EXPECT_THROW(wideMap.mapString(wide.units(), LENGTH, true), Exception<7>);

    const LongText<char> narrow("a", LONGEST);
    const auto* const bytes = reinterpret_cast<unsigned char*>(narrow.units());
    narrow.units()[3] = 0;
    EXPECT_THROW(String(narrow.units(), LENGTH, STRING_DATA_STATIC, true), Exception<7>);
    EXPECT_THROW(String(bytes, LENGTH, STRING_DATA_STATIC, true), Exception<7>);
    StringOwnerMap<unsigned char> narrowMap;
    EXPECT_THROW(narrowMap.mapString(bytes, LENGTH, true), Exception<7>);
}

TEST_F(ScanLimit, AMeasuredTextThatDoesNotEndIsNotMapped) {
    const LongMemory text("a", TOO_LONG);
    StringOwnerMap<unsigned char> map;
    expectRaises<4>([&] { map.mapString(text.begin(), MEASURE, false); }, "length : text too long!", SCAN, HELPER_FILE);
    EXPECT_EQ(map.size(), 0u);
    EXPECT_NO_THROW(map.addStaticString(text.begin())) << "not marked as owned";
}

// A character that would end behind the longest text is not read whole.
TEST_F(ScanLimit, MeasuredTextsThatEndInsideACharacter) {
    const struct {
        const char* name;
        std::string_view end; // of a text of 0xFFFFFFFF bytes
        int code;
        const char* message;
    } rows[] = {
        {"trail too late", "\xC3\xA9", 4, "length : text too long!"},
        {"second trail too late", "\xE4\xB8\x80", 4, "length : text too long!"},
        {"third trail too late", "\xF0\x90\x80\x80", 4, "length : text too long!"},
        {"no trail", std::string_view("\xC3\0", 2), 7, "Unmatched lead UTF-8 byte for a 2-byte sequence!"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const LongMemory text("a", TOO_LONG);
        std::memcpy(text.begin() + TOO_LONG - row.end.size(), row.end.data(), row.end.size());
        const auto scan = [&] { StringData(text.begin(), MEASURE, STRING_DATA_STATIC); };
        if (row.code == 4)
            expectRaises<4>(scan, row.message, SCAN, HELPER_FILE);
        else
            expectRaises<7>(scan, row.message, SCAN, HELPER_FILE);
    }
}

} // namespace
} // namespace limits
