#include "Vorn/String/String.h"

#include "Support/AllocationCounter.h"
#include "Support/Report.h"
#include "Support/StringDataProbe.h"
#include "Support/Texts.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

using namespace Vorn;

using Byte = unsigned char;

// Replaces the text of a static record, without a scan.
template <class CharType>
void setText(StringData& data, const CharType* buffer, unsigned int length) {
    VornPrivate::StringDataProbe::setBuffer<CharType>(data, buffer);
    VornPrivate::StringDataProbe::info<CharType>(data).m_length = length;
    VornPrivate::StringDataProbe::info<CharType>(data).m_allocationType = STRING_DATA_STATIC;
}

TEST(Substring, SharesTheTextOfItsParent) {
    const std::string text = "one two three";
    const String parent = over(text);
    String substring;
    EXPECT_EQ(allocationsDuring([&] { substring = String(parent.getData()->substr<Byte>(4, 3)); }), 1u);
    EXPECT_EQ(substring.getData()->getRefCount(), 1u);
    EXPECT_EQ(substring.getData()->getPrivateBuffer<Byte>(), bytesOf(text) + 4);
    EXPECT_EQ(substring.getData()->getAllocationType<Byte>(), STRING_DATA_EXTERNAL);
    EXPECT_EQ(substring.getData()->getBufferInfo<Byte>().m_length, 3u);
    EXPECT_EQ(substring.getData()->getBufferInfo<Byte>().m_offset, 4u);
    EXPECT_FALSE(substring.getData()->getBufferInfo<Byte>().m_nullTerminated);
    EXPECT_EQ(substring.getData()->getPrivateBuffer<UTF16Char>(), nullptr);
    EXPECT_EQ(textOf(*substring.getData()), "two");
}

TEST(Substring, ComesWithACountOfZero) {
    const std::string text = "abc";
    const String parent = over(text);
    StringData* const substring = parent.getData()->substr<Byte>(1, 1);
    EXPECT_EQ(substring->getRefCount(), 0u);
    const String owner(substring);
    EXPECT_EQ(parent.getData()->getRefCount(), 1u);
}

TEST(Substring, StandsDirectlyBehindItsParentInTheChain) {
    const std::string text = "0123456789";
    const String parent = over(text);
    const String first(parent.getData()->substr<Byte>(2, 6));
    const String second(parent.getData()->substr<Byte>(1, 2));
    const String inner(first.getData()->substr<Byte>(3, 2));
    EXPECT_EQ(parent.getData()->getNext<Byte>(), second.getData());
    EXPECT_EQ(second.getData()->getPrevious<Byte>(), parent.getData());
    EXPECT_EQ(second.getData()->getNext<Byte>(), first.getData());
    EXPECT_EQ(first.getData()->getPrevious<Byte>(), second.getData());
    EXPECT_EQ(first.getData()->getNext<Byte>(), inner.getData());
    EXPECT_EQ(inner.getData()->getPrevious<Byte>(), first.getData());
    EXPECT_EQ(inner.getData()->getNext<Byte>(), nullptr);
    EXPECT_EQ(inner.getData()->getBufferInfo<Byte>().m_offset, 5u);
    EXPECT_EQ(textOf(*inner.getData()), "56");
    EXPECT_EQ(parent.getData()->getNext<UTF16Char>(), nullptr);
}

TEST(Substring, OfUTF16StandsInItsOwnChain) {
    const UTF16Text text = VORN_UTF16("0123456789");
    const String parent = over(text);
    const String first(parent.getData()->substr<UTF16Char>(2, 6));
    const String inner(first.getData()->substr<UTF16Char>(-2, NPOS));
    EXPECT_EQ(first.getData()->getPrevious<UTF16Char>(), parent.getData());
    EXPECT_EQ(first.getData()->getNext<UTF16Char>(), inner.getData());
    EXPECT_EQ(inner.getData()->getPrevious<UTF16Char>(), first.getData());
    EXPECT_EQ(inner.getData()->getBufferInfo<UTF16Char>().m_offset, 6u);
    EXPECT_EQ(inner.getData()->getAllocationType<UTF16Char>(), STRING_DATA_EXTERNAL);
    EXPECT_EQ(inner.getData()->getPrevious<Byte>(), nullptr);
    EXPECT_EQ(unitsOf(*inner.getData()), VORN_UTF16("67"));
}

TEST(Substring, TakesOverTheBlockOfADyingOwner) {
    auto* const block = new unsigned char[6]{'a', 'b', 'c', 'd', 'e', 0};
    String parent(block, 6, STRING_DATA_DYNAMIC);
    const String substring(parent.getData()->substr<Byte>(1, 3));
    parent = String();
    EXPECT_EQ(substring.getData()->getAllocationType<Byte>(), STRING_DATA_DYNAMIC);
    EXPECT_EQ(substring.getData()->getPrivateBuffer<Byte>(), block + 1);
    EXPECT_EQ(substring.getData()->getBufferInfo<Byte>().m_offset, 1u);
    EXPECT_EQ(textOf(*substring.getData()), "bcd");
}

TEST(Substring, CopiesTheTextOfABorrowedBufferWhenItsParentIsDestroyed) {
    auto text = std::make_unique<std::string>("abcdef");
    String parent = over(*text);
    const String first(parent.getData()->substr<Byte>(1, 3));
    const String second(parent.getData()->substr<Byte>(2, NPOS));
    parent = String();
    text.reset();
    EXPECT_EQ(textOf(*first.getData()), "bcd");
    EXPECT_EQ(textOf(*second.getData()), "cdef");
}

TEST(Substring, OfAStaticBufferIsStaticAndUnlinked) {
    static constexpr unsigned char text[] = "static text";
    String parent(text, 12, STRING_DATA_STATIC);
    const String substring(parent.getData()->substr<Byte>(7, NPOS));
    EXPECT_EQ(substring.getData()->getAllocationType<Byte>(), STRING_DATA_STATIC);
    EXPECT_EQ(substring.getData()->getPrevious<Byte>(), nullptr);
    EXPECT_EQ(parent.getData()->getNext<Byte>(), nullptr);
    EXPECT_EQ(substring.getData()->getPrivateBuffer<Byte>(), text + 7);
    EXPECT_TRUE(substring.getData()->getBufferInfo<Byte>().m_nullTerminated);
    parent = String();
    EXPECT_EQ(textOf(*substring.getData()), "text");

    static constexpr UTF16Char units[] = VORN_UTF16("static");
    const String wide(units, 6, STRING_DATA_STATIC);
    const String wideCut(wide.getData()->substr<UTF16Char>(1, 2));
    EXPECT_EQ(wideCut.getData()->getAllocationType<UTF16Char>(), STRING_DATA_STATIC);
    EXPECT_EQ(wide.getData()->getNext<UTF16Char>(), nullptr);
    EXPECT_EQ(unitsOf(*wideCut.getData()), VORN_UTF16("ta"));
}

TEST(Substring, OfTheWholeTerminatedTextIsTerminated) {
    const std::string text = "whole";
    const UTF16Text units = VORN_UTF16("whole");
    const String parent = over(text);
    const String substring(parent.getData()->substr<Byte>(0, NPOS));
    EXPECT_NE(substring.getData(), parent.getData());
    EXPECT_EQ(substring.getData()->getPrivateBuffer<Byte>(), bytesOf(text));
    EXPECT_EQ(substring.getData()->getBufferInfo<Byte>().m_length, 5u);
    EXPECT_TRUE(substring.getData()->getBufferInfo<Byte>().m_nullTerminated);
    EXPECT_EQ(allocationsDuring([&] { EXPECT_STREQ(substring.getCString(), "whole"); }), 0u);

    const String wide = over(units);
    const String tail(wide.getData()->substr<UTF16Char>(2, 3));
    EXPECT_TRUE(tail.getData()->getBufferInfo<UTF16Char>().m_nullTerminated);
    EXPECT_EQ(unitsOf(*tail.getData()), VORN_UTF16("ole"));
    const String middle(wide.getData()->substr<UTF16Char>(1, 3));
    EXPECT_FALSE(middle.getData()->getBufferInfo<UTF16Char>().m_nullTerminated);
}

TEST(Substring, OfTheEndOfAnUnterminatedTextIsNotTerminated) {
    const std::string text = "abcdef";
    const String parent(bytesOf(text), 4);
    const String substring(parent.getData()->substr<Byte>(2, NPOS));
    EXPECT_FALSE(substring.getData()->getBufferInfo<Byte>().m_nullTerminated);
    EXPECT_EQ(textOf(*substring.getData()), "cd");
    // The unit behind the text starts a character here, so the offset passes.
    EXPECT_EQ(parent.getData()->substr<Byte>(4, 1), &StringData::s_emptyString);
}

TEST(Substring, EmptyResultsAreTheEmptyRecord) {
    const std::string text = "abc";
    const UTF16Text units = VORN_UTF16("abc");
    const String narrow = over(text);
    const String wide = over(units);
    for (const int offset : {0, 1, 3, -1, -3}) {
        EXPECT_EQ(narrow.getData()->substr<Byte>(offset, 0), &StringData::s_emptyString) << offset;
        EXPECT_EQ(wide.getData()->substr<UTF16Char>(offset, 0), &StringData::s_emptyString) << offset;
        EXPECT_EQ(narrow.getData()->substr<UTF16Char>(offset, 0), &StringData::s_emptyString) << offset;
        EXPECT_EQ(wide.getData()->substr<Byte>(offset, 0), &StringData::s_emptyString) << offset;
    }
    EXPECT_EQ(narrow.getData()->substr<Byte>(3, 7), &StringData::s_emptyString);
    EXPECT_EQ(wide.getData()->substr<UTF16Char>(3, 7), &StringData::s_emptyString);
    EXPECT_EQ(StringData::s_emptyString.substr<Byte>(0, NPOS), &StringData::s_emptyString);
    EXPECT_EQ(StringData::s_emptyString.substr<UTF16Char>(0, NPOS), &StringData::s_emptyString);
    EXPECT_EQ(StringData::s_emptyString.getRefCount(), 0u);
}

TEST(Substring, RefusesOffsetsOutsideTheText) {
    const std::string text = "abc";
    const UTF16Text units = VORN_UTF16("abc");
    const String narrow = over(text);
    const String wide = over(units);
    for (const int offset : {4, 100, 0x7FFFFFFF, -4, -100, -0x7FFFFFFF - 1}) {
        expectRaises<4>([&] { narrow.getData()->substr<Byte>(offset, 1); }, "Invalid Offset!",
                        "Vorn::StringData::substr");
        expectRaises<4>([&] { wide.getData()->substr<UTF16Char>(offset, 0); }, "Invalid Offset!",
                        "Vorn::StringData::substr");
        expectRaises<4>([&] { narrow.getData()->substr<UTF16Char>(offset, 0); }, "Invalid offset!",
                        "Vorn::StringData::substrConvertASCIITo");
        expectRaises<4>([&] { wide.getData()->substr<Byte>(offset, 1); }, "Invalid offset!",
                        "Vorn::StringData::substrConvertASCIITo");
    }
    EXPECT_EQ(narrow.getData()->getNext<Byte>(), nullptr);
}

TEST(Substring, RefusesOffsetsInsideACharacter) {
    const std::string text = "a\xC3\xA9\xE2\x82\xAC\xF0\x90\x80\x80";
    const UTF16Text units = utf16Of({0x61, 0x10000, 0x62});
    const String narrow = over(text);
    const String wide = over(units);
    for (const int offset : {2, 4, 5, 7, 8, 9, -1}) {
        expectRaises<4>([&] { narrow.getData()->substr<Byte>(offset, 0); }, "Invalid Offset!",
                        "Vorn::StringData::substr");
    }
    expectRaises<4>([&] { wide.getData()->substr<UTF16Char>(2, 0); }, "Invalid Offset!", "Vorn::StringData::substr");
    expectRaises<4>([&] { wide.getData()->substr<UTF16Char>(-2, 5); }, "Invalid Offset!", "Vorn::StringData::substr");
}

TEST(Substring, RefusesOffsetsOnOverlongLeadsAndOnLeadsOfPlane16) {
    const std::string text = "\xC0\x80\xF4\x8F\xBF\xBD";
    const String narrow = over(text);
    expectRaises<4>([&] { narrow.getData()->substr<Byte>(0, 2); }, "Invalid Offset!", "Vorn::StringData::substr");
    expectRaises<4>([&] { narrow.getData()->substr<Byte>(2, 4); }, "Invalid Offset!", "Vorn::StringData::substr");
}

TEST(Substring, OfUTF8TrimsToTheLastLeadByteAndKeepsIt) {
    struct Row {
        const char* name;
        std::string text;
        int offset;
        unsigned int length;
        const char* failure; // of the scan, or null
        std::string result;
    };
    const Row rows[] = {
        {"ends on ASCII", "\xC3\xA9z\xC3\xA9", 0, 3, nullptr, "\xC3\xA9z"},
        {"ends behind two bytes", "\xC3\xA9z", 0, 2, "Unmatched lead UTF-8 byte for a 2-byte sequence!", ""},
        {"ends inside two bytes", "z\xC3\xA9", 0, 2, "Unmatched lead UTF-8 byte for a 2-byte sequence!", ""},
        {"ends behind three bytes", "\xE2\x82\xACz", 0, 3, "Unmatched lead UTF-8 byte for a 3-byte sequence!", ""},
        {"ends behind four bytes", "\xF0\x90\x80\x80z", 0, 4, "Unmatched first surrogate character!", ""},
        {"two bytes at the end come back whole", "z\xC3\xA9", 0, NPOS, nullptr, "z\xC3\xA9"},
        {"three bytes at the end", "z\xE2\x82\xAC", 0, NPOS, "Unmatched lead UTF-8 byte for a 3-byte sequence!", ""},
        {"four bytes at the end", "z\xF0\x90\x80\x80", 0, NPOS, "Unmatched first surrogate character!", ""},
        {"a final U+0000 is dropped", "z\xC0\x80y", 0, 3, nullptr, "z"},
        {"a final U+0000 at the end stays as its lead", "z\xC0\x80", 0, NPOS,
         "Unmatched lead UTF-8 byte for a 2-byte sequence!", ""},
        {"0xF4 is no lead here", "z\xF4\x8F\xBF\xBDy", 0, 5, nullptr, "z"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const String parent = over(row.text);
        const std::size_t live = liveAllocationCount();
        if (row.failure) {
            expectRaises<7>([&] { parent.getData()->substr<Byte>(row.offset, row.length); }, row.failure,
                            "stringDataBufferScan");
            EXPECT_EQ(liveAllocationCount(), live);
            EXPECT_EQ(parent.getData()->getNext<Byte>(), nullptr);
        } else {
            const String substring(parent.getData()->substr<Byte>(row.offset, row.length));
            EXPECT_EQ(textOf(*substring.getData()), row.result);
        }
    }
}

TEST(Substring, TrimmedToNothingIsEmpty) {
    const std::string text = "ab\x80"; // the end of a substring that another substring continues
    const std::string null = "\xC0\x80";
    StringData data(bytesOf(text), 2, STRING_DATA_STATIC);
    setText<Byte>(data, bytesOf(null), 2);
    expectRaises<4>([&] { data.substr<Byte>(0, 2); }, "Invalid Offset!", "Vorn::StringData::substr");
    EXPECT_EQ(data.substr<Byte>(2, 0), &StringData::s_emptyString);
}

TEST(Substring, OfATrimmedEndIsNotTerminated) {
    const std::string text = "z\xC3\xA9";
    const String parent = over(text);
    const String substring(parent.getData()->substr<Byte>(0, NPOS));
    EXPECT_FALSE(substring.getData()->getBufferInfo<Byte>().m_nullTerminated);
    EXPECT_EQ(substring.getData()->getBufferInfo<Byte>().m_length, 3u);
    EXPECT_STREQ(substring.getCString(), "z\xC3\xA9");
}

TEST(Substring, OfUTF16LeavesOutAFinalFirstSurrogate) {
    const UTF16Text units = utf16Of({0x61, 0x10000, 0x62});
    const String parent = over(units);
    const String substring(parent.getData()->substr<UTF16Char>(0, 2));
    EXPECT_EQ(unitsOf(*substring.getData()), VORN_UTF16("a"));
    EXPECT_EQ(parent.getData()->substr<UTF16Char>(1, 1), &StringData::s_emptyString);
    const String whole(parent.getData()->substr<UTF16Char>(1, 2));
    EXPECT_EQ(unitsOf(*whole.getData()), utf16Of({0x10000}));
}

TEST(Substring, OfUTF16AssertsThatItsEndsAreCharacters) {
    const UTF16Char units[] = {0xFDD0, 'a', 'b', 0xFFFE, 'c', 0};
    const UTF16Char valid[] = {'x', 0};
    StringData data(valid, 2, STRING_DATA_STATIC);
    setText<UTF16Char>(data, units, 5);
    const char* const message = "c != 0xFDEF : Invalid UTF-16 buffer detected!";
    expectRaises<2>([&] { data.substr<UTF16Char>(0, 2); }, message, "Vorn::StringData::substr");
    expectRaises<2>([&] { data.substr<UTF16Char>(1, 3); }, message, "Vorn::StringData::substr");
    // With a length of 0, the last unit is the one before the offset, and at offset 0 there is none.
    expectRaises<2>([&] { data.substr<UTF16Char>(4, 0); }, message, "Vorn::StringData::substr");
    expectRaises<2>([&] { data.substr<UTF16Char>(1, 0); }, message, "Vorn::StringData::substr");
    EXPECT_EQ(data.substr<UTF16Char>(2, 0), &StringData::s_emptyString);
    setText<UTF16Char>(data, units + 1, 2);
    EXPECT_EQ(data.substr<UTF16Char>(0, 0), &StringData::s_emptyString);
}

TEST(Substring, RefusesAnUnknownAllocationType) {
    const std::string text = "abc";
    const UTF16Text units = VORN_UTF16("abc");
    StringData narrow(bytesOf(text), 4, STRING_DATA_NONE);
    StringData wide(units.c_str(), 4, STRING_DATA_NONE);
    expectRaises<2>([&] { narrow.substr<Byte>(0, 1); }, "Invalid allocation type!", "Vorn::StringData::substr");
    expectRaises<2>([&] { wide.substr<UTF16Char>(0, 1); }, "Invalid allocation type!", "Vorn::StringData::substr");
    EXPECT_EQ(narrow.substr<Byte>(1, 0), &StringData::s_emptyString);
}

TEST(Substring, OfARecordWithoutABuffer) {
    const String null(VornPrivate::StringDataProbe::makeNull());
    StringData& data = *null.getData();
    EXPECT_EQ(data.substr<Byte>(0, 5), &StringData::s_emptyString);
    EXPECT_EQ(data.substr<UTF16Char>(0, 5), &StringData::s_emptyString);
    for (const int offset : {1, -1}) {
        expectRaises<4>([&] { data.substr<Byte>(offset, 0); }, "Invalid Offset!", "Vorn::StringData::substr");
        expectRaises<4>([&] { data.substr<UTF16Char>(offset, 0); }, "Invalid Offset!", "Vorn::StringData::substr");
    }
}

TEST(Substring, PrefersTheBufferAtHand) {
    const std::string text = "abc";
    const String both = over(text);
    const UTF16Char* const units = both.getData()->getTerminatedBuffer<UTF16Char>();
    const String substring(both.getData()->substr<UTF16Char>(1, 2));
    EXPECT_EQ(substring.getData()->getPrivateBuffer<UTF16Char>(), units + 1);
    EXPECT_EQ(substring.getData()->getPrevious<UTF16Char>(), both.getData());
    EXPECT_EQ(both.getData()->getNext<Byte>(), nullptr);
}

} // namespace
