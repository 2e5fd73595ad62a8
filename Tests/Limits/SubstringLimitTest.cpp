// Substrings, joined texts and copies of long texts.
#include "Limits/LimitSupport.h"

#include "Support/Outcome.h"
#include "Support/Texts.h"

#include <climits>
#include <cstring>

namespace limits {
namespace {

using SubstringLimit = LimitTest;

// Frees the record of a substring, whatever it is.
template <class CharType>
std::uint64_t lengthOfSubstring(const StringData& record, int offset, unsigned int length) {
    const String substring(record.substr<CharType>(offset, length));
    return substring.getData()->getBufferInfo<CharType>().m_length;
}

TEST_F(SubstringLimit, OffsetsInUTF8) {
    for (const std::uint64_t length : {LARGEST_INT, HALF, LONGEST}) {
        const LongASCII text(length);
        for (const int offset : {0, INT_MAX, -1, INT_MIN + 1, INT_MIN}) {
            SCOPED_TRACE(std::to_string(length) + " bytes, offset " + std::to_string(offset));
            const std::int64_t start = offset < 0 ? std::int64_t(length) + offset : offset;
            if (start < 0) {
                expectRaises<4>([&] { text.record()->substr<unsigned char>(offset, 1); }, "Invalid Offset!",
                                "Vorn::StringData::substr");
                continue;
            }
            const String substring(text.record()->substr<unsigned char>(offset, 1));
            if (start == std::int64_t(length)) {
                EXPECT_EQ(substring.getData(), &StringData::s_emptyString);
                continue;
            }
            EXPECT_EQ(substring.getData()->getUTF8Length(), 1u);
            EXPECT_EQ(substring.getData()->getPrivateBuffer<unsigned char>(), text.bytes() + start);
        }
    }
}

// The unit behind the longest text is counted in, although 0xFFFFFFFF as a length means that it is not known.
TEST_F(SubstringLimit, TheWholeOfTheLongest) {
    const LongASCII bytes(LONGEST);
    EXPECT_EQ(lengthOfSubstring<unsigned char>(*bytes.record(), 0, NPOS), LONGEST);
    EXPECT_EQ(lengthOfSubstring<unsigned char>(*bytes.record(), INT_MIN, NPOS), HALF);
    const LongWide units(u"a", LONGEST, STRING_DATA_UCS2);
    units.units()[5] = 0;
    const String substring(units.record()->substr<UTF16Char>(0, NPOS));
    EXPECT_EQ(substring.getData()->getBufferInfo<UTF16Char>().m_length, LONGEST) << "not up to the zero unit";
    EXPECT_TRUE(substring.haveEmbeddedNulls());
}

TEST_F(SubstringLimit, ConversionsOfASCII) {
    const LongWide units(u"a", LONGEST, STRING_DATA_ASCII);
    units.units()[LONGEST - HALF] = 'b';
    units.units()[INT_MAX] = 'c';
    EXPECT_STREQ(String(units.record()->substr<unsigned char>(INT_MIN, 2)).getCString(), "bc");
    EXPECT_STREQ(String(units.record()->substr<unsigned char>(INT_MAX, 2)).getCString(), "ca");
    const LongWide shorter(u"a", LARGEST_INT, STRING_DATA_ASCII);
    expectRaises<4>([&] { shorter.record()->substr<unsigned char>(INT_MIN, 1); }, "Invalid offset!",
                    "Vorn::StringData::substrConvertASCIITo");
    EXPECT_EQ(shorter.record()->substr<unsigned char>(INT_MAX, NPOS), &StringData::s_emptyString);
}

TEST_F(SubstringLimit, ConversionsWhoseResultIsTooLong) {
    // 0xFFFFFFFF is a multiple of three, so that this length takes one character less than the text has.
    const LongWide ucs2(u"\u4E00", 1431655766, STRING_DATA_UCS2);
    expectTooLong([&] { ucs2.record()->substr<unsigned char>(0, NPOS); }, "Vorn::StringData::substrConvertUCS2ToUTF8",
                  "Source/Vorn/StringDataSubstring");
    EXPECT_EQ(lengthOfSubstring<unsigned char>(*ucs2.record(), 3, 4), 3u);
}

// The sum on the way passes the offset, and then 2^32.
TEST_F(SubstringLimit, AnOffsetInsideACharacterIsNotMetTwice) {
    const LongWide wide(u"\u4E00", 1431655770, STRING_DATA_UNICODE);
    EXPECT_EQ(wide.record()->substr<unsigned char>(2, 3), &StringData::s_emptyString);
}

TEST_F(SubstringLimit, TheSmallestOffsetOfConversions) {
    const char* const function = "Vorn::StringData::substrConvertUCS2ToUTF8";
    const LongWide two(u"\u00E9", HALF / 2 + 1, STRING_DATA_UCS2); // two bytes more than the offset goes back
    EXPECT_STREQ(String(two.record()->substr<unsigned char>(INT_MIN, 4)).getCString(), "\xC3\xA9\xC3\xA9");
    const LongWide three(u"\u4E00", HALF / 3 + 2, STRING_DATA_UCS2);
    expectRaises<4>([&] { three.record()->substr<unsigned char>(INT_MIN, 0); }, "Invalid offset!", function);
}

TEST_F(SubstringLimit, JoinedTextsThatAreTooLong) {
    const char* const function = "Vorn::String::operator +=";
    const struct {
        const char* name;
        std::uint64_t left;
        std::uint64_t right;
    } rows[] = {{"sum 2^32 - 1", LARGEST_INT, HALF},
                {"sum 2^32", HALF, HALF},
                {"a byte to the longest", LONGEST, 1},
                {"the longest to a byte", 1, LONGEST},
                {"sum 2^33 - 4", LONGEST, LONGEST}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        {
            const LongASCII left(row.left), right(row.right);
            String joined = left.string();
            const String other = right.string();
            expectTooLong([&] { joined += other; }, function, STRING_FILE);
            EXPECT_EQ(joined.getData(), left.record());
            EXPECT_EQ(left.record()->getRefCount(), 1u);
        }
        const LongWide left(u"a", row.left, STRING_DATA_ASCII), right(u"a", row.right, STRING_DATA_ASCII);
        String joined = left.string();
        const String other = right.string();
        expectTooLong([&] { joined += other; }, function, STRING_FILE);
        EXPECT_EQ(joined.getData(), left.record());
        EXPECT_EQ(left.record()->getRefCount(), 1u);
    }
}

TEST_F(SubstringLimit, JoinedTextOfTheLongestLength) {
    const LongASCII half(LARGEST_INT);
    half.bytes()[LARGEST_INT - 1] = 'z';
    String joined = half.string();
    joined += joined;
    ASSERT_EQ(joined.getData()->getUTF8Length(), LONGEST);
    const unsigned char* const bytes = joined.getData()->getPrivateBuffer<unsigned char>();
    EXPECT_EQ(bytes[LARGEST_INT - 1], 'z');
    EXPECT_EQ(bytes[LARGEST_INT], 'a');
    EXPECT_EQ(bytes[LONGEST - 1], 'z');
    EXPECT_EQ(bytes[LONGEST], 0);
    EXPECT_TRUE(joined.getData()->getBufferInfo<unsigned char>().m_nullTerminated);
}

TEST_F(SubstringLimit, StandardStringsThatAreTooLong) {
    std::string text(static_cast<std::size_t>(TOO_LONG + 1 + 5), 'a');
    expectTooLong([&] { static_cast<void>(String(text)); }, "Vorn::String::String", STRING_FILE);
    text.resize(static_cast<std::size_t>(TOO_LONG));
    expectTooLong([&] { static_cast<void>(String(text)); }, "Vorn::String::String", STRING_FILE);
}

TEST_F(SubstringLimit, CapacitiesOfCopies) {
    const LongASCII bytes(LONGEST);
    unsigned char memory[] = "before";
    EXPECT_EQ(bytes.record()->copyToUTF8(memory, 0xFFFFFFFD), 0xFFFFFFFF);
    const LongWide units(u"a", LONGEST, STRING_DATA_ASCII);
    UTF16Char wideMemory[] = u"before";
    EXPECT_EQ(units.record()->copyToUTF16(wideMemory, 0xFFFFFFFD), 0xFFFFFFFF);
    EXPECT_EQ(units.record()->copyToUTF8(memory, 0xFFFFFFFD), 0xFFFFFFFE) << "the length that it takes";
    EXPECT_EQ(bytes.record()->copyToUTF16(wideMemory, 0xFFFFFFFD), 0xFFFFFFFE) << "the length that it takes";
    EXPECT_STREQ(reinterpret_cast<char*>(memory), "before");
    EXPECT_EQ(wideMemory, std::u16string_view(u"before"));

    const LongMemory dest("b", LONGEST, LongMemory::ALIASED);
    EXPECT_EQ(bytes.record()->copyToUTF8(dest.begin(), 0xFFFFFFFE), LONGEST);
    EXPECT_EQ(dest.begin()[LONGEST - 1], 'a');
}

TEST_F(SubstringLimit, TerminatingTheLongest) {
    const LongText<char> text("a", LONGEST);
    text.units()[LONGEST - 1] = 'z';
    const auto record = recordOver(reinterpret_cast<unsigned char*>(text.units()), LONGEST);
    Probe::setStaticConst(*record, false);
    Probe::info<unsigned char>(*record).m_nullTerminated = 0;
    const unsigned char* const bytes = record->getTerminatedBuffer<unsigned char>();
    EXPECT_EQ(record->getUTF8Length(), LONGEST);
    EXPECT_EQ(bytes[LONGEST - 1], 'z');
    EXPECT_EQ(bytes[LONGEST], 0);
}

} // namespace
} // namespace limits
