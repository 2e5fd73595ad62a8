#include "Vorn/String/String.h"

#include "Support/AllocationCounter.h"
#include "Support/ExpectedLeak.h"
#include "Support/Report.h"
#include "Support/StringDataProbe.h"
#include "Support/Texts.h"

#include <gtest/gtest.h>

namespace {

using namespace Vorn;

using Byte = unsigned char;

TEST(StringConcatenation, OfNullAndEmptyStrings) {
    const std::string text = "text";
    const String empty(bytesOf(text), 0);

    String null;
    null += String();
    EXPECT_EQ(null.getData(), nullptr);
    null += empty;
    EXPECT_EQ(null.getData(), String::s_emptyString.getData());

    String stays = empty;
    stays += String();
    EXPECT_EQ(stays.getData(), empty.getData());
    stays += String::getEmptyString();
    EXPECT_EQ(stays.getData(), empty.getData());

    const String right = over(text);
    for (String left : {String(), empty, String::getEmptyString()}) {
        const unsigned int count = right.getData()->getRefCount();
        EXPECT_EQ(allocationsDuring([&] { left += right; }), 0u);
        EXPECT_EQ(left.getData(), right.getData());
        EXPECT_EQ(right.getData()->getRefCount(), count + 1);
    }

    String left = right;
    left += empty;
    left += String();
    EXPECT_EQ(left.getData(), right.getData());

    const String noBuffer(VornPrivate::StringDataProbe::makeNull());
    left += noBuffer;
    EXPECT_EQ(left.getData(), right.getData());
    String fromNoBuffer = noBuffer;
    fromNoBuffer += right;
    EXPECT_EQ(fromNoBuffer.getData(), right.getData());
}

TEST(StringConcatenation, IsUTF8IfTheLeftSideHasUTF8) {
    const std::string left = "l\xC3\xA9"
                             "ft ",
                      right = "right";
    const UTF16Text wideRight = utf16Of({'r', 0x20AC, 0x1F600});
    for (const bool both : {false, true}) {
        String string = over(left);
        if (both) string.getData()->getTerminatedBuffer<UTF16Char>();
        const String before = string;
        EXPECT_EQ(allocationsDuring([&] { string += over(right); }), 3u) << "block, record and the right record";
        EXPECT_EQ(textOf(*string.getData()), left + right);
        EXPECT_EQ(string.getData()->getRefCount(), 1u);
        EXPECT_EQ(string.getData()->getAllocationType<Byte>(), STRING_DATA_DYNAMIC);
        EXPECT_TRUE(string.getData()->getBufferInfo<Byte>().m_nullTerminated);
        EXPECT_EQ(string.getData()->getPrivateBuffer<UTF16Char>(), nullptr);
        EXPECT_EQ(string.getCharset(), STRING_DATA_UCS2);
        EXPECT_EQ(textOf(*before.getData()), left);
        EXPECT_EQ(before.getData()->getRefCount(), 1u);

        const String wide = over(wideRight);
        string += wide;
        EXPECT_EQ(textOf(*string.getData()), left + right + utf8Of({'r', 0x20AC, 0x1F600}));
        EXPECT_EQ(string.getCharset(), STRING_DATA_UNICODE);
        EXPECT_EQ(wide.getData()->getPrivateBuffer<Byte>(), nullptr);
    }
}

TEST(StringConcatenation, SetsCharsetAndNullsAfresh) {
    const std::string left = "a", right = utf8Of({0});
    String string = over(left);
    EXPECT_FALSE(string.haveEmbeddedNulls());
    string += over(right);
    EXPECT_TRUE(string.haveEmbeddedNulls());
    EXPECT_EQ(string.getCharset(), STRING_DATA_UCS2);
}

TEST(StringConcatenation, ToItself) {
    const std::string text = "ab";
    String string = over(text);
    string += string;
    string += string;
    EXPECT_EQ(textOf(*string.getData()), "abababab");
}

TEST(StringConcatenation, CanBeChained) {
    const std::string text = "ab", more = "cd";
    String string = over(text);
    EXPECT_EQ(&(string += over(more)), &string);
    (string += over(text)) += over(more);
    EXPECT_EQ(textOf(*string.getData()), "abcdabcd");
}

TEST(StringConcatenation, OfUTF16KeepsHalfOfTheLeftText) {
    struct Row {
        UTF16Text left;
        UTF16Text expected; // without the right text
    };
    const Row rows[] = {
        {VORN_UTF16("abcd"), {'a', 'b', 0, 0}},
        {VORN_UTF16("ab"), {'a', 0}},
        {VORN_UTF16("abc"), {'a', 'b', 0}},
        {VORN_UTF16("a"), {'a'}},
        {{0x1234, 0x2345, 0x3456}, {0x1234, 0x45, 0}}, // the low byte of the second unit
    };
    const UTF16Text right = VORN_UTF16("right");
    const std::string narrow = "narrow";
    for (const Row& row : rows) {
        String string = over(row.left);
        string += over(right);
        EXPECT_EQ(unitsOf(*string.getData()), row.expected + right);
        EXPECT_EQ(string.getData()->getPrivateBuffer<Byte>(), nullptr);
        EXPECT_TRUE(string.getData()->getBufferInfo<UTF16Char>().m_nullTerminated);
        EXPECT_EQ(string.getData()->getRefCount(), 1u);

        string = over(row.left);
        string += over(narrow);
        EXPECT_EQ(unitsOf(*string.getData()), row.expected + VORN_UTF16("narrow"));
    }
}

// "ab" of which the second half is zero, in front of a lone second surrogate: refused by the scan.
struct Refused {
    Refused() : string(over(left)), right(over(rightText)) {
        // The right text becomes its second surrogate, which the scan does not take.
    }
    UTF16Text left = VORN_UTF16("ab");
    std::string rightText = "\xF0\x90\x80\x80";
    String string;
    String right;
};

TEST(StringConcatenation, RefusedByTheScanLeavesANullStringIfItHadTheLastReference) {
    Refused refused;
    const std::size_t live = liveAllocationCount();
    {
        const ExpectedLeak leak;
        expectRaises<7>([&] { refused.string += refused.right; }, "Unmatched second surrogate code!",
                        "stringDataBufferScan", "Source/Vorn/StringDataHelper");
    }
    EXPECT_EQ(refused.string.getData(), nullptr);
    EXPECT_EQ(liveAllocationCount(), live - 1 + 1) << "the left record is freed, the block is leaked";
}

TEST(StringConcatenation, RefusedByTheScanStillPointsAtARecordThatAnotherHolds) {
    Refused refused;
    const String other = refused.string;
    StringData* const record = other.getData();
    {
        const ExpectedLeak leak;
        expectRaises<7>([&] { refused.string += refused.right; }, "Unmatched second surrogate code!",
                        "stringDataBufferScan", "Source/Vorn/StringDataHelper");
    }
    EXPECT_EQ(refused.string.getData(), record);
    EXPECT_EQ(record->getRefCount(), 1u);
    record->incRefCount(); // the reference that the string has released
}

TEST(StringConcatenation, RefusedConversionChangesNothingAndLeavesNoBlock) {
    const std::string left = "left";
    const UTF16Text right = utf16Of({0, 0, 'a'}); // measured one byte short for each U+0000
    String string = over(left);
    const String wide = over(right);
    const StringData* const record = string.getData();
    const std::size_t live = liveAllocationCount();
    expectRaises<2>([&] { string += wide; }, "j < destLength : destination buffer too short!",
                    "Vorn::stringDataConvertToUTF8FromUCS2", "Source/Vorn/StringDataHelper");
    EXPECT_EQ(liveAllocationCount(), live);
    EXPECT_EQ(string.getData(), record);
    EXPECT_EQ(record->getRefCount(), 1u);
}

TEST(StringConcatenation, StaysInsideItsBlockWhenTheLastCharacterOverruns) {
    const std::string left = "left";
    for (const Codes& codes : {Codes{0, 0, 0xFFFD}, Codes{0, 0xFFFD}, Codes{0, 'b'}, Codes{'b', 0}}) {
        const UTF16Text right = utf16Of(codes);
        String string = over(left);
        const ExpectedLeak leak;
        try {
            string += over(right);
        } catch (const Exception<7>&) {
            EXPECT_EQ(string.getData(), nullptr);
        }
    }
}

TEST(StringConcatenation, WithoutMemoryChangesNothing) {
    const std::string left = "left", right = "right";
    const UTF16Text wideLeft = VORN_UTF16("left");
    const String wide = over(right);
    for (const bool isShared : {false, true}) {
        for (const String& start : {over(left), over(wideLeft)}) {
            for (const std::size_t failing : {1u, 2u, 3u}) {
                SCOPED_TRACE(::testing::Message()
                             << "failing " << failing << (isShared ? ", shared" : ", sole handle"));
                String string = start.getData()->getBufferInfo<unsigned char>().m_length ? over(left) : over(wideLeft);
                const String other = isShared ? string : String();
                const StringData* const record = string.getData();
                const std::size_t live = liveAllocationCount();
                failAllocation(failing);
                if (failing == 3) {
                    string += wide;
                    failAllocation(0);
                    EXPECT_NE(string.getData(), record);
                    continue;
                }
                EXPECT_THROW(string += wide, std::bad_alloc);
                failAllocation(0);
                EXPECT_EQ(string.getData(), record);
                EXPECT_EQ(record->getRefCount(), 1u + isShared);
                EXPECT_EQ(string, start);
                EXPECT_EQ(liveAllocationCount(), live);
            }
        }
    }
}

} // namespace
