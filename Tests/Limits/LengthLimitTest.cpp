// Lengths in the other encoding, and all that builds on them.
#include "Limits/LimitSupport.h"

#include "Support/Outcome.h"

#include "Vorn/ExceptionString.h"
#include "Vorn/String/Unicode.h"

#include <csignal>
#include <functional>

namespace limits {
namespace {

constexpr const char* UTF8_LENGTH = "Vorn::stringDataGetUTF8Length";

// U+4E00 takes three bytes: the largest count that fits a text, the one whose sum is 0xFFFFFFFF, and the one whose sum
// wraps around to 2.
constexpr std::uint64_t FITS = 1431655764;
constexpr std::uint64_t MISFITS = 1431655765;
constexpr std::uint64_t WRAPS = 1431655766;

using LengthLimit = LimitTest;

TEST_F(LengthLimit, OfUTF16InUTF8) {
    const Outcome tooLong = raised(4, "length : text too long!", UTF8_LENGTH, HELPER_FILE);
    const struct {
        const char* name;
        std::u16string_view pattern;
        std::u16string_view end; // in place of the last units
        std::uint64_t units;
        StringDataSubCharset charset;
        Outcome expected;
    } rows[] = {
        {"two bytes, largest that fits", u"\u00E9", u"", LARGEST_INT, STRING_DATA_UCS2, {0xFFFFFFFE, {}}},
        {"two bytes, sum 2^32", u"\u00E9", u"", HALF, STRING_DATA_UCS2, tooLong},
        {"three bytes, largest that fits", u"\u4E00", u"", FITS, STRING_DATA_UCS2, {0xFFFFFFFC, {}}},
        {"three bytes, sum 2^32 - 2", u"\u4E00", u"\u00E9", FITS + 1, STRING_DATA_UCS2, {0xFFFFFFFE, {}}},
        {"three bytes, sum 2^32 - 1", u"\u4E00", u"", MISFITS, STRING_DATA_UCS2, tooLong},
        {"three bytes, sum 2^32 + 2", u"\u4E00", u"", WRAPS, STRING_DATA_UCS2, tooLong},
        {"beside a pair, sum 2^32 - 4", u"\u4E00", u"aa\U00010000", FITS + 2, STRING_DATA_UNICODE, {0xFFFFFFFC, {}}},
        {"beside a pair, sum 2^32 + 5", u"\u4E00", u"aa\U00010000", FITS + 5, STRING_DATA_UNICODE, tooLong},
        {"pairs, largest that fits", u"\U00010000", u"", LARGEST_INT - 1, STRING_DATA_UNICODE, {0xFFFFFFFC, {}}},
        {"pairs, sum 2^32", u"\U00010000", u"", HALF, STRING_DATA_UNICODE, tooLong},
        {"U+007F counts two bytes", u"\u007F", u"\U00010000", LARGEST_INT, STRING_DATA_UNICODE, {0xFFFFFFFE, {}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const LongWide text(row.pattern, row.units, row.charset);
        row.end.copy(text.units() + row.units - row.end.size(), row.end.size());
        EXPECT_EQ(outcomeOf([&] { return stringDataGetUTF8Length(text.units(), text.info(), row.charset); }),
                  row.expected);
    }
}

TEST_F(LengthLimit, OfUTF8InUTF16) {
    const struct {
        const char* name;
        std::string_view pattern;
        StringDataSubCharset charset;
        unsigned int expected;
    } rows[] = {
        {"one byte", "a", STRING_DATA_ASCII, 0xFFFFFFFE},
        {"two bytes", "\xC3\xA9", STRING_DATA_UCS2, 0x7FFFFFFF},
        {"three bytes", "\xE4\xB8\x80", STRING_DATA_UCS2, 1431655764},
        {"four bytes", "\xF0\x90\x80\x80", STRING_DATA_UNICODE, 0x7FFFFFFE},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::uint64_t length = LONGEST - LONGEST % row.pattern.size();
        const LongText<char> text(row.pattern, length);
        const auto* const bytes = reinterpret_cast<unsigned char*>(text.units());
        const StringDataBufferInfo info{nullptr, nullptr, text.length(), 0, STRING_DATA_STATIC, 1};
        EXPECT_EQ(stringDataGetUTF16Length(bytes, info, row.charset), row.expected);
    }
}

// A text of U+4E00 whose length in UTF-8 wraps around to 2, and everything that would allocate by that length.
TEST_F(LengthLimit, EveryUserOfALengthInUTF8) {
    const LongWide wide(u"\u4E00", WRAPS, STRING_DATA_UCS2);
    const UTF16Char* const units = wide.units();
    const StringDataBufferInfo& info = wide.info();
    unsigned char memory[8] = "before!";
    const std::string untouched = "before";
    std::string standard = untouched;
    StringDataBufferInfo destInfo{};
    String left("left", 4, STRING_DATA_STATIC);
    const String leftBefore = left;
    UTF8String edited("left", 4, STRING_DATA_STATIC);
    const StringData* const editedBefore = edited.getData();
    const String text = wide.string();

    const struct {
        const char* name;
        std::function<void()> run;
    } rows[] = {
        {"getUTF8Length", [&] { wide.record()->getUTF8Length(); }},
        {"copyToUTF8", [&] { wide.record()->copyToUTF8(memory, sizeof(memory)); }},
        {"copyTo", [&] { wide.record()->copyTo(standard); }},
        {"getCString", [&] { text.getCString(); }},
        {"stringDataConvertToUTF8", [&] { stringDataConvertToUTF8(units, info, STRING_DATA_UCS2, destInfo); }},
        {"stringDataConvertCreateUTF8", [&] { stringDataConvertCreateUTF8(units, info, STRING_DATA_UCS2, 9); }},
        {"stringDataConvertCopyToUTF8", [&] { stringDataConvertCopyToUTF8(units, info, STRING_DATA_UCS2, memory, 8); }},
        {"+=", [&] { left += text; }},
        {"append", [&] { edited.append(text); }},
        {"replace", [&] { edited.replace(text, 0, 4); }},
        {"reserve", [&] { UTF8String(text).reserve(1); }},
        {"getLength", [&] { wide.string().getLength(); }},
        {"find", [&] { wide.string().find('a'); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        expectTooLong(row.run, UTF8_LENGTH, HELPER_FILE);
    }
    EXPECT_STREQ(reinterpret_cast<char*>(memory), "before!");
    EXPECT_EQ(standard, untouched);
    EXPECT_EQ(destInfo.m_length, 0u);
    EXPECT_EQ(left.getData(), leftBefore.getData());
    EXPECT_EQ(left.getData()->getRefCount(), 2u);
    EXPECT_EQ(edited.getData(), editedBefore);
    EXPECT_EQ(wide.record()->getPrivateBuffer<unsigned char>(), nullptr);
}

TEST_F(LengthLimit, AReportTextThatIsTooLongInUTF8EndsTheProcess) {
    const LongWide wide(u"\u4E00", WRAPS, STRING_DATA_UCS2);
    EXPECT_EXIT(ExceptionString(wide.string(), 0.0f), testing::KilledBySignal(SIGABRT), "");
}

TEST_F(LengthLimit, CapacitiesOfConversions) {
    const std::u16string wide = u"\u00E9";
    const StringDataBufferInfo wideInfo{nullptr, nullptr, 1, 0, STRING_DATA_STATIC, 1};
    expectTooLong([&] { stringDataConvertCreateUTF8(wide.data(), wideInfo, STRING_DATA_UCS2, 0xFFFFFFFF); },
                  "Vorn::stringDataConvertCreateUTF8", HELPER_FILE);
    const auto* const bytes = reinterpret_cast<const unsigned char*>("\xC3\xA9");
    const StringDataBufferInfo bytesInfo{nullptr, nullptr, 2, 0, STRING_DATA_STATIC, 1};
    expectTooLong([&] { stringDataConvertCreateUTF16(bytes, bytesInfo, STRING_DATA_UCS2, 0xFFFFFFFF); },
                  "Vorn::stringDataConvertCreateUTF16", HELPER_FILE);
}

// The bytes of the last character that begins inside the destination reach beyond 2^32; the next one is refused.
TEST_F(LengthLimit, AConversionThatFillsItsDestination) {
    const LongWide wide(u"\u4E00", WRAPS + 1, STRING_DATA_UCS2);
    wide.units()[0] = 0x00E9;
    const LongMemory dest(std::string_view("\0", 1), TOO_LONG + 8, LongMemory::ALIASED);
    expectRaises<2>(
        [&] {
            stringDataConvertToUTF8FromUCS2(dest.begin(), 0xFFFFFFFF, wide.units(), static_cast<unsigned>(WRAPS + 1));
        },
        "j < destLength : destination buffer too short!", "Vorn::stringDataConvertToUTF8FromUCS2", HELPER_FILE);
}

TEST_F(LengthLimit, ASCIIInUTF16BecomesUTF8) {
    const LongWide wide(u"a", LONGEST, STRING_DATA_ASCII);
    wide.units()[LONGEST - 1] = 'z';
    StringDataBufferInfo info{};
    const std::unique_ptr<unsigned char[]> bytes(
        stringDataConvertToUTF8(wide.units(), wide.info(), STRING_DATA_ASCII, info));
    EXPECT_EQ(info.m_length, LONGEST);
    EXPECT_EQ(bytes[0], 'a');
    EXPECT_EQ(bytes[LONGEST - 2], 'a');
    EXPECT_EQ(bytes[LONGEST - 1], 'z');
    EXPECT_EQ(bytes[LONGEST], 0);
}

// Readers of single characters at the end of the longest text: the index stays behind the text instead of starting
// again at its first byte.
TEST_F(LengthLimit, ReadersOfTruncatedCharacters) {
    const struct {
        const char* name;
        unsigned char lead;
        std::uint64_t i;
        unsigned int expectedIndex;
    } rows[] = {
        {"two bytes", 0xC3, LONGEST - 1, 0xFFFFFFFF},         {"three bytes", 0xE4, LONGEST - 2, 0xFFFFFFFF},
        {"three bytes, last", 0xE4, LONGEST - 1, 0xFFFFFFFF}, {"four bytes", 0xF0, LONGEST - 3, 0xFFFFFFFF},
        {"four bytes, last", 0xF0, LONGEST - 1, 0xFFFFFFFF},
    };
    const LongMemory text("\x80", LONGEST);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        text.begin()[row.i] = row.lead;
        auto i = static_cast<unsigned int>(row.i);
        EXPECT_EQ(UTF32::getUTF32Char(text.begin(), i, 0xFFFFFFFE), 0xFDEFu);
        EXPECT_EQ(i, row.expectedIndex);
        if (row.lead != 0xF0) {
            i = static_cast<unsigned int>(row.i);
            EXPECT_EQ(UTF16::getUTF16(text.begin(), i, 0xFFFFFFFE), 0xFDEFu);
            EXPECT_EQ(i, row.expectedIndex);
        }
        text.begin()[row.i] = 0x80;
    }
    const LongUTF16 wide(u"a", TOO_LONG, false);
    wide.units()[LONGEST] = 0xD800;
    unsigned int i = 0xFFFFFFFE;
    EXPECT_EQ(UTF32::getUTF32Char(wide.units(), i, 0xFFFFFFFF), 0xFDEFu);
    EXPECT_EQ(i, 0xFFFFFFFF);
}

} // namespace
} // namespace limits
