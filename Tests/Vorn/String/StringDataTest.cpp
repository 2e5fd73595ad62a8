#include "Vorn/String/StringData.h"

#include "Support/AllocationCounter.h"
#include "Support/Report.h"
#include "Support/StringDataProbe.h"
#include "Support/Texts.h"
#include "Vorn/String/String.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <type_traits>

namespace {

using namespace Vorn;
using VornPrivate::StringDataProbe;

static_assert(!std::is_polymorphic_v<StringData> && !std::is_copy_constructible_v<StringData> &&
              !std::is_copy_assignable_v<StringData>);
static_assert(std::is_same_v<decltype(std::declval<const StringData&>().getRefCount()), unsigned int>);

template <class CharType>
class StringDataConstruction : public testing::Test {
protected:
    using Other = OtherEncoding<CharType>;

    // What every record that was built from one buffer holds, whatever the text.
    static void expectBuilt(const StringData& record, const CharType* buffer, unsigned int length,
                            StringAllocationType type, bool terminated) {
        const StringDataBufferInfo& info = record.getBufferInfo<CharType>();
        EXPECT_EQ(record.getPrivateBuffer<CharType>(), buffer);
        EXPECT_EQ(info.m_length, length);
        EXPECT_EQ(info.m_offset, 0u);
        EXPECT_EQ(info.m_allocationType, type);
        EXPECT_EQ(record.getAllocationType<CharType>(), type);
        EXPECT_EQ(info.m_nullTerminated, terminated ? 1u : 0u);
        EXPECT_EQ(record.getPrevious<CharType>(), nullptr);
        EXPECT_EQ(record.getNext<CharType>(), nullptr);

        const StringDataBufferInfo& other = record.getBufferInfo<Other>();
        EXPECT_EQ(record.getPrivateBuffer<Other>(), nullptr);
        EXPECT_EQ(other.m_length, 0u);
        EXPECT_EQ(other.m_offset, 0u);
        EXPECT_EQ(other.m_allocationType, STRING_DATA_NONE);
        EXPECT_EQ(other.m_nullTerminated, 0u);
        EXPECT_EQ(other.m_previous, nullptr);
        EXPECT_EQ(other.m_next, nullptr);

        EXPECT_EQ(record.getRefCount(), 0u);
        EXPECT_FALSE(record.isNull());
        EXPECT_EQ(record.isEmpty(), length == 0);
        EXPECT_FALSE(record.isStaticConstString());
    }
};

using Encodings = testing::Types<unsigned char, UTF16Char>;
TYPED_TEST_SUITE(StringDataConstruction, Encodings, );

TYPED_TEST(StringDataConstruction, LengthsAndTerminatorsDetermineTheText) {
    static const struct {
        const char* name;
        std::string_view buffer;
        unsigned int length;
        unsigned int builtLength;
        bool terminated;
    } rows[] = {
        {"measured", std::string_view("abc\0", 4), NPOS, 3, true},
        {"measured up to the first zero only", std::string_view("ab\0cd\0", 6), NPOS, 2, true},
        {"measured and empty", std::string_view("\0", 1), NPOS, 0, true},
        {"with the terminator counted", std::string_view("abc\0", 4), 4, 3, true},
        {"without the terminator", std::string_view("abc\0", 4), 3, 3, false},
        {"nothing behind the text", "abc", 3, 3, false},
        {"a part", "abc", 2, 2, false},
        {"one unit", "a", 1, 1, false},
        {"the terminator alone", std::string_view("\0", 1), 1, 0, true},
        {"nothing", "abc", 0, 0, false},
        {"nothing, in front of a zero", std::string_view("\0", 1), 0, 0, false}, // is not looked at
    };
    for (const auto& row : rows) {
        for (const StringAllocationType type : {STRING_DATA_EXTERNAL, STRING_DATA_STATIC}) {
            SCOPED_TRACE(row.name);
            const auto buffer = callerBuffer<TypeParam>(row.buffer);
            {
                const StringData record(buffer.get(), row.length, type);
                this->expectBuilt(record, buffer.get(), row.builtLength, type, row.terminated);
                EXPECT_EQ(record.getCharset(), STRING_DATA_ASCII);
                EXPECT_FALSE(record.haveEmbeddedNulls());
            }
            EXPECT_EQ(narrow(buffer.get(), row.buffer.size()), row.buffer); // unchanged, and not owned
        }
    }
}

TYPED_TEST(StringDataConstruction, DynamicBlocksAreOwnedAndFreed) {
    const std::size_t live = liveAllocationCount();
    {
        TypeParam* const block = newBlock<TypeParam>(std::string_view("abc\0", 4));
        const StringData record(block, 4, STRING_DATA_DYNAMIC);
        this->expectBuilt(record, block, 3, STRING_DATA_DYNAMIC, true);
        EXPECT_EQ(liveArraySize(block), 4 * sizeof(TypeParam));
    }
    EXPECT_EQ(liveAllocationCount(), live);
}

TYPED_TEST(StringDataConstruction, OtherBuffersAreBorrowed) {
    for (const StringAllocationType type : {STRING_DATA_NONE, STRING_DATA_EXTERNAL, STRING_DATA_STATIC}) {
        TypeParam* const block = newBlock<TypeParam>("abc");
        { const StringData record(block, 3, type); }
        EXPECT_EQ(liveArraySize(block), 3 * sizeof(TypeParam));
        delete[] block;
    }
}

TYPED_TEST(StringDataConstruction, BuildingCopiesNothing) {
    const auto buffer = callerBuffer<TypeParam>("abcdef");
    EXPECT_EQ(allocationsDuring([&] { const StringData record(buffer.get(), 6, STRING_DATA_EXTERNAL); }), 0u);
}

TYPED_TEST(StringDataConstruction, NullBufferIsRefusedWithAnyLength) {
    for (const unsigned int length : {0u, 1u, 5u, NPOS}) {
        for (const StringAllocationType type : {STRING_DATA_EXTERNAL, STRING_DATA_STATIC, STRING_DATA_DYNAMIC}) {
            const Report report =
                reportOf<4>([&] { StringData(static_cast<const TypeParam*>(nullptr), length, type); });
            EXPECT_EQ(report.message, "buffer must not be null!!!!");
            EXPECT_EQ(report.function, "Vorn::StringData::initialise");
            EXPECT_EQ(report.type, "::Vorn::E::PARAMETER");
        }
    }
}

TEST(StringData, CharsetAndNullsComeFromTheScan) {
    const std::string big = "\xF0\x90\x80\x80";
    static const struct {
        const char* name;
        std::vector<unsigned char> utf8;
        std::vector<UTF16Char> utf16;
        StringDataSubCharset charset;
        bool nulls;
    } rows[] = {
        {"ASCII", {'a', 0x7F}, {'a', 0x7F}, STRING_DATA_ASCII, false},
        {"two bytes", {'a', 0xC3, 0xA9}, {'a', 0xE9}, STRING_DATA_UCS2, false},
        {"three bytes", {0xE2, 0x82, 0xAC}, {0x20AC}, STRING_DATA_UCS2, false},
        {"four bytes", {0xF0, 0x90, 0x80, 0x80}, {0xD800, 0xDC00}, STRING_DATA_UNICODE, false},
        {"U+0000", {0xC0, 0x80, 'a'}, {0, 'a'}, STRING_DATA_UCS2, true},
        {"U+0000 and four bytes", {0xC0, 0x80, 0xF0, 0x90, 0x80, 0x80}, {0, 0xD800, 0xDC00}, STRING_DATA_UNICODE, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const StringData utf8(row.utf8.data(), static_cast<unsigned int>(row.utf8.size()), STRING_DATA_EXTERNAL);
        EXPECT_EQ(utf8.getCharset(), row.charset);
        EXPECT_EQ(utf8.haveEmbeddedNulls(), row.nulls);
        const StringData utf16(row.utf16.data(), static_cast<unsigned int>(row.utf16.size()), STRING_DATA_EXTERNAL);
        EXPECT_EQ(utf16.getCharset(), row.charset);
        EXPECT_EQ(utf16.haveEmbeddedNulls(), row.nulls);
    }
}

// A zero unit at the end is a terminator, whatever it was meant as; a second one is U+0000.
TEST(StringData, OnlyOneZeroUnitIsTakenOff) {
    const UTF16Char units[] = {'a', 0, 0};
    const StringData record(units, 3, STRING_DATA_EXTERNAL);
    EXPECT_EQ(record.getBufferInfo<UTF16Char>().m_length, 2u);
    EXPECT_EQ(record.getBufferInfo<UTF16Char>().m_nullTerminated, 1u);
    EXPECT_TRUE(record.haveEmbeddedNulls());
    EXPECT_EQ(record.getCharset(), STRING_DATA_UCS2);
}

TEST(StringData, InvalidTextIsRefusedAndTheBufferStaysWithTheCaller) {
    static const struct {
        const char* name;
        std::vector<unsigned char> utf8;
        std::vector<UTF16Char> utf16;
        const char* message;
    } rows[] = {
        {"trail", {'a', 0x80}, {}, "Unmatched trail UTF-8 byte detected!"},
        {"zero inside",
         {'a', 0, 'b'},
         {},
         "ASCII null detected! This implementation does not support ASCII null, please use the sequence 0xC0 0x80 to "
         "represent null."},
        {"truncated sequence", {'a', 0xC3}, {}, "Unmatched lead UTF-8 byte for a 2-byte sequence!"},
        {"truncated sequence before the terminator",
         {'a', 0xC3, 0},
         {},
         "Unmatched lead UTF-8 byte for a 2-byte sequence!"},
        {"second surrogate", {}, {'a', 0xDC00}, "Unmatched second surrogate code!"},
        {"first surrogate", {}, {'a', 0xD800}, "Unmatched first surrogate character!"},
    };
    const auto check = [](const auto& units, const char* message) {
        using CharType = typename std::decay_t<decltype(units)>::value_type;
        if (units.empty()) return;
        for (const StringAllocationType type : {STRING_DATA_EXTERNAL, STRING_DATA_STATIC, STRING_DATA_DYNAMIC}) {
            CharType* const block = newBlock(units);
            const std::size_t live = liveAllocationCount();
            {
                const Report report =
                    reportOf<7>([&] { delete new StringData(block, static_cast<unsigned int>(units.size()), type); });
                EXPECT_EQ(report.message, message);
                EXPECT_EQ(report.function, "stringDataBufferScan");
                EXPECT_EQ(report.file, "Source/Vorn/StringDataHelper");
                EXPECT_EQ(report.type, "::Vorn::E::UNICODE");
                // Through the handle, which allocates the record itself.
                EXPECT_EQ(reportOf<7>([&] { String(block, static_cast<unsigned int>(units.size()), type); }).message,
                          message);
            }
            EXPECT_EQ(liveAllocationCount(), live);
            EXPECT_TRUE(std::equal(units.begin(), units.end(), block));
            delete[] block;
        }
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        check(row.utf8, row.message);
        check(row.utf16, row.message);
    }
}

TEST(StringData, CountsHandlesAndIsDestroyedWithTheLast) {
    const std::size_t live = liveAllocationCount();
    auto* const record = new StringData(newBlock<unsigned char>("abc"), 3, STRING_DATA_DYNAMIC);
    EXPECT_EQ(record->getRefCount(), 0u);
    record->incRefCount();
    EXPECT_EQ(record->getRefCount(), 1u);
    record->incRefCount();
    EXPECT_EQ(record->getRefCount(), 2u);
    record->decRefCount();
    EXPECT_EQ(record->getRefCount(), 1u);
    EXPECT_EQ(liveAllocationCount(), live + 2);
    record->decRefCount();
    EXPECT_EQ(liveAllocationCount(), live);
}

TEST(StringData, StaticRecordSurvivesEveryRelease) {
    static const unsigned char utf8[] = {'a', 0};
    static const UTF16Char utf16[] = {'a', 0};
    StringData* const record = StringDataProbe::makeStatic(utf8, utf16, 1);
    const std::size_t live = liveAllocationCount();
    EXPECT_TRUE(record->isStaticConstString());
    for (int round = 0; round < 3; ++round) {
        record->incRefCount();
        EXPECT_EQ(record->getRefCount(), 1u);
        record->decRefCount();
        EXPECT_EQ(record->getRefCount(), 0u);
    }
    EXPECT_EQ(liveAllocationCount(), live);
    delete record;
}

TEST(StringData, UTF8BlockIsFreedFirst) {
    auto* const record = new StringData(newBlock<UTF16Char>("abc"), 3, STRING_DATA_DYNAMIC);
    record->getBuffer<unsigned char>();
    const void* const utf16 = record->getPrivateBuffer<UTF16Char>();
    delete record;
    EXPECT_EQ(lastReleasedArray(), utf16);
}

TEST(StringData, RecordWithoutBuffersIsANullString) {
    StringData* const record = StringDataProbe::makeNull();
    EXPECT_TRUE(record->isNull());
    EXPECT_TRUE(record->isEmpty());
    EXPECT_EQ(record->getUTF8Length(), 0u);
    EXPECT_EQ(record->getUTF16Length(), 0u);
    unsigned char bytes[] = {'x'};
    UTF16Char units[] = {'x'};
    EXPECT_EQ(record->copyToUTF8(bytes, 1), 0u);
    EXPECT_EQ(record->copyToUTF16(units, 1), 0u);
    EXPECT_EQ(bytes[0], 'x');
    EXPECT_EQ(units[0], u'x');
    std::string text = "old";
    record->copyTo(text);
    EXPECT_EQ(text, "");
    delete record;
}

TEST(StringData, EitherEncodingOfNoLengthMakesItEmpty) {
    static const unsigned char utf8[] = {0};
    static const UTF16Char utf16[] = {0};
    const StringData onlyUTF8(utf8, 1, STRING_DATA_STATIC);
    const StringData onlyUTF16(utf16, 1, STRING_DATA_STATIC);
    EXPECT_TRUE(onlyUTF8.isEmpty() && !onlyUTF8.isNull());
    EXPECT_TRUE(onlyUTF16.isEmpty() && !onlyUTF16.isNull());

    static const unsigned char text[] = {'a', 0};
    static const UTF16Char wideText[] = {'a', 0};
    StringData* const both = StringDataProbe::makeStatic(text, wideText, 1);
    EXPECT_FALSE(both->isEmpty());
    StringDataProbe::info<unsigned char>(*both).m_length = 0;
    EXPECT_TRUE(both->isEmpty());
    StringDataProbe::info<unsigned char>(*both).m_length = 1;
    StringDataProbe::info<UTF16Char>(*both).m_length = 0;
    EXPECT_TRUE(both->isEmpty());
    delete both;
}

TEST(StringData, StaticEmptyRecordIsBuiltInBothEncodings) {
    const StringData& empty = StringData::s_emptyString;
    const auto check = [&]<class CharType>(CharType) {
        const StringDataBufferInfo& info = empty.getBufferInfo<CharType>();
        ASSERT_NE(empty.getPrivateBuffer<CharType>(), nullptr);
        EXPECT_EQ(empty.getPrivateBuffer<CharType>()[0], CharType(0));
        EXPECT_EQ(info.m_length, 0u);
        EXPECT_EQ(info.m_offset, 0u);
        EXPECT_EQ(info.m_allocationType, STRING_DATA_STATIC);
        EXPECT_EQ(info.m_nullTerminated, 1u);
        EXPECT_EQ(info.m_previous, nullptr);
        EXPECT_EQ(info.m_next, nullptr);
        EXPECT_EQ(allocationsDuring([&] {
                      EXPECT_EQ(empty.getTerminatedBuffer<CharType>(), empty.getPrivateBuffer<CharType>());
                      EXPECT_EQ(empty.getBuffer<CharType>(), empty.getPrivateBuffer<CharType>());
                  }),
                  0u);
    };
    for (const StringData* record : {&StringData::s_emptyString, String::s_emptyString.getData()}) {
        SCOPED_TRACE(record == &empty ? "of StringData" : "of String");
        EXPECT_EQ(record->getCharset(), STRING_DATA_ASCII);
        EXPECT_TRUE(record->isStaticConstString());
        EXPECT_TRUE(record->isEmpty());
        EXPECT_FALSE(record->isNull());
        EXPECT_FALSE(record->haveEmbeddedNulls());
    }
    check(static_cast<unsigned char>(0));
    check(static_cast<UTF16Char>(0));
}

TEST(StringData, CountOfTheStaticEmptyRecordStartsAtNoneAndReturnsThere) {
    EXPECT_EQ(StringData::s_emptyString.getRefCount(), 0u);
    {
        const String handle(&StringData::s_emptyString);
        EXPECT_EQ(StringData::s_emptyString.getRefCount(), 1u);
    }
    EXPECT_EQ(StringData::s_emptyString.getRefCount(), 0u);
    EXPECT_TRUE(StringData::s_emptyString.isEmpty());
}

// Texts in both encodings whose conversions are exact.
struct PlainText {
    const char* name;
    std::string utf8;
    std::u16string utf16;
};
const PlainText plainTexts[] = {
    {"nothing", "", u""},
    {"ASCII", "abc", u"abc"},
    {"two bytes", "a\xC3\xA9", u"a\u00E9"},
    {"three bytes", "\xE2\x82\xAC", u"\u20AC"},
};

StringData utf8Record(const std::string& text) {
    return StringData(reinterpret_cast<const unsigned char*>(text.c_str()), static_cast<unsigned int>(text.size()),
                      STRING_DATA_EXTERNAL);
}

std::vector<UTF16Char> wideUnits(const std::u16string& text) {
    return std::vector<UTF16Char>(text.begin(), text.end());
}

TEST(StringData, LengthsAndCopiesAnswerForBothEncodingsAndBuildNothing) {
    for (const PlainText& row : plainTexts) {
        SCOPED_TRACE(row.name);
        const auto size8 = static_cast<unsigned int>(row.utf8.size());
        const auto size16 = static_cast<unsigned int>(row.utf16.size());
        std::vector<UTF16Char> units = wideUnits(row.utf16);
        units.push_back(0);
        const StringData records[] = {
            StringData(reinterpret_cast<const unsigned char*>(row.utf8.c_str()), size8, STRING_DATA_EXTERNAL),
            StringData(units.data(), size16 + 1, STRING_DATA_EXTERNAL),
        };
        for (const StringData& record : records) {
            EXPECT_EQ(record.getUTF8Length(), size8);
            EXPECT_EQ(record.getUTF16Length(), size16);

            std::vector<unsigned char> bytes(size8 + 1, 0x55);
            for (const unsigned int capacity : {size8, size8 + 1}) {
                std::fill(bytes.begin(), bytes.end(), static_cast<unsigned char>(0x55));
                EXPECT_EQ(record.copyToUTF8(bytes.data(), capacity), size8);
                EXPECT_EQ(std::memcmp(bytes.data(), row.utf8.data(), size8), 0);
                EXPECT_EQ(bytes[size8], 0x55); // no terminator
            }
            std::vector<UTF16Char> wide(size16 + 1, 0x55);
            for (const unsigned int capacity : {size16, size16 + 1}) {
                std::fill(wide.begin(), wide.end(), static_cast<UTF16Char>(0x55));
                EXPECT_EQ(record.copyToUTF16(wide.data(), capacity), size16);
                EXPECT_TRUE(std::equal(units.begin(), units.end() - 1, wide.begin()));
                EXPECT_EQ(wide[size16], 0x55);
            }

            std::string text = "old";
            record.copyTo(text);
            EXPECT_EQ(text, row.utf8);
        }
        EXPECT_EQ(records[0].getPrivateBuffer<UTF16Char>(), nullptr);
        EXPECT_EQ(records[1].getPrivateBuffer<unsigned char>(), nullptr);
    }
}

TEST(StringData, CopyIntoTooSmallABufferWritesNothing) {
    const unsigned char utf8[] = {'a', 'b', 0xC3, 0xA9};
    const UTF16Char utf16[] = {'a', 'b', 0xE9};
    const StringData held8(utf8, 4, STRING_DATA_EXTERNAL);
    const StringData held16(utf16, 3, STRING_DATA_EXTERNAL);
    unsigned char bytes[] = {0x55, 0x55, 0x55, 0x55};
    UTF16Char units[] = {0x55, 0x55, 0x55};

    // The encoding at hand says that it does not fit, a conversion says how much it needs.
    for (const unsigned int capacity : {0u, 1u, 3u}) {
        EXPECT_EQ(held8.copyToUTF8(bytes, capacity), NPOS);
        EXPECT_EQ(held16.copyToUTF8(bytes, capacity), 4u);
    }
    for (const unsigned int capacity : {0u, 1u, 2u}) {
        EXPECT_EQ(held16.copyToUTF16(units, capacity), NPOS);
        EXPECT_EQ(held8.copyToUTF16(units, capacity), 3u);
    }
    EXPECT_TRUE(std::all_of(bytes, bytes + 4, [](unsigned char unit) { return unit == 0x55; }));
    EXPECT_TRUE(std::all_of(units, units + 3, [](UTF16Char unit) { return unit == 0x55; }));
}

TEST(StringData, CopyOfNoTextNeedsNoCapacity) {
    const unsigned char utf8[] = {0};
    const UTF16Char utf16[] = {0};
    const StringData held8(utf8, 1, STRING_DATA_EXTERNAL);
    const StringData held16(utf16, 1, STRING_DATA_EXTERNAL);
    for (const StringData* record : {&held8, &held16}) {
        EXPECT_EQ(record->copyToUTF8(nullptr, 0), 0u);
        EXPECT_EQ(record->copyToUTF16(nullptr, 0), 0u);
        EXPECT_EQ(record->getUTF8Length(), 0u);
        EXPECT_EQ(record->getUTF16Length(), 0u);
    }
}

// If a record has both buffers, each query reads the buffer of its encoding.
TEST(StringData, HeldBuffersAnswerForTheirOwnEncoding) {
    const unsigned char utf8[] = {'a', 'b', 'c', 0};
    const UTF16Char utf16[] = {'x', 'y', 0};
    StringData* const record = StringDataProbe::makeStatic(utf8, utf16, 3);
    StringDataProbe::info<UTF16Char>(*record).m_length = 2;
    EXPECT_EQ(record->getUTF8Length(), 3u);
    EXPECT_EQ(record->getUTF16Length(), 2u);
    std::string text;
    record->copyTo(text);
    EXPECT_EQ(text, "abc");
    unsigned char bytes[3] = {};
    UTF16Char units[2] = {};
    EXPECT_EQ(record->copyToUTF8(bytes, 3), 3u);
    EXPECT_EQ(narrow(bytes, 3), "abc");
    EXPECT_EQ(record->copyToUTF16(units, 2), 2u);
    EXPECT_EQ(narrow(units, 2), "xy");
    delete record;
}

TEST(StringData, EmbeddedNullStaysTwoBytesInCopies) {
    const unsigned char utf8[] = {'a', 0xC0, 0x80, 'b'};
    const StringData held8(utf8, 4, STRING_DATA_EXTERNAL);
    std::string text;
    held8.copyTo(text);
    EXPECT_EQ(text, "a\xC0\x80"
                    "b");
    EXPECT_EQ(held8.getUTF16Length(), 3u);
    UTF16Char units[3] = {0x55, 0x55, 0x55};
    EXPECT_EQ(held8.copyToUTF16(units, 3), 3u);
    EXPECT_EQ(units[0], u'a');
    EXPECT_EQ(units[1], 0);
    EXPECT_EQ(units[2], u'b');

    const UTF16Char utf16[] = {'a', 0, 'b'};
    const StringData held16(utf16, 3, STRING_DATA_EXTERNAL);
    held16.copyTo(text);
    EXPECT_EQ(text, "a\xC0\x80"
                    "b");
    EXPECT_EQ(held16.getUTF8Length(), 3u); // one less than the text takes: U+0000 is counted once
}

TEST(StringData, SurrogatePairsBecomeFourBytes) {
    const UTF16Char utf16[] = {0xD800, 0xDC00, 'a'};
    const StringData held16(utf16, 3, STRING_DATA_EXTERNAL);
    EXPECT_EQ(held16.getUTF8Length(), 5u);
    std::string text;
    held16.copyTo(text);
    EXPECT_EQ(text, "\xF0\x90\x80\x80"
                    "a");
    const StringData held8 = utf8Record(text);
    EXPECT_EQ(held8.getUTF16Length(), 3u);
}

} // namespace
