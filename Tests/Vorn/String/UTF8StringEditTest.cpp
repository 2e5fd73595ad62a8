#include "Vorn/String/UTF8String.h"

#include "Support/AllocationCounter.h"
#include "Support/ExpectedLeak.h"
#include "Support/Random.h"
#include "Support/Report.h"
#include "Support/StringDataProbe.h"
#include "Support/Texts.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>

namespace {

using namespace Vorn;

using Byte = unsigned char;

constexpr const char* FILE_TEXT = "Source/Vorn/UTF8String";
constexpr const char* NOT_ALONE = "getRefCount() == 1 : Can't set length on a string with more than one reference!!!";

std::string textOf(const UTF8String& string) {
    return std::string(reinterpret_cast<const char*>(string.getBuffer()), string.getLength());
}

const StringDataBufferInfo& infoOf(const UTF8String& string) { return string.getData()->getBufferInfo<Byte>(); }

// A string of its own: dynamic, counted once, terminated or not.
UTF8String own(const std::string& text, bool terminated = true) {
    auto block = std::make_unique<Byte[]>(text.size() + 1);
    if (!text.empty()) std::memcpy(block.get(), text.data(), text.size());
    UTF8String string(block.get(), lengthOf(text) + terminated, STRING_DATA_DYNAMIC);
    block.release();
    return string;
}

TEST(UTF8StringReserve, WithoutARecordLeavesOneThatNobodyCounts) {
    UTF8String string;
    EXPECT_EQ(allocationsDuring([&] { EXPECT_EQ(string.reserve(10), 10u); }), 2u) << "the block and the record";
    EXPECT_EQ(string.getLength(), 0u);
    ASSERT_NE(string.getData(), nullptr);
    EXPECT_EQ(string.getData()->getRefCount(), 0u);
    EXPECT_EQ(infoOf(string).m_allocationType, STRING_DATA_DYNAMIC);
    EXPECT_TRUE(infoOf(string).m_nullTerminated);
    EXPECT_STREQ(string.getCString(), "");
}

TEST(UTF8StringReserve, OfASharedRecordCopies) {
    const std::string text = "shared";
    const String other = over(text);
    UTF8String string(other);
    EXPECT_EQ(string.reserve(3), 6u);
    EXPECT_NE(string.getData(), other.getData());
    EXPECT_EQ(string.getData()->getRefCount(), 1u);
    EXPECT_EQ(other.getData()->getRefCount(), 1u);
    EXPECT_EQ(infoOf(string).m_allocationType, STRING_DATA_DYNAMIC);
    EXPECT_TRUE(infoOf(string).m_nullTerminated);
    EXPECT_EQ(textOf(string), text);
    EXPECT_NE(string.getBuffer(), bytesOf(text));
}

TEST(UTF8StringReserve, AllocatesExactlyTheRequestedCapacity) {
    UTF8String string = own("abc");
    StringData* const record = string.getData();
    EXPECT_EQ(allocationsDuring([&] { EXPECT_EQ(string.reserve(20), 20u); }), 1u);
    EXPECT_EQ(lastAllocationSize(), 21u);
    EXPECT_EQ(string.getData(), record);
    EXPECT_EQ(string.getBuffer()[3], 0);
    for (int i = 4; i <= 20; ++i) EXPECT_EQ(string.getBuffer()[i], 0) << i;
    const Byte* const buffer = string.getBuffer();
    EXPECT_EQ(allocationsDuring([&] { EXPECT_EQ(string.reserve(3), 3u); }), 0u);
    EXPECT_EQ(string.getBuffer(), buffer);
    EXPECT_EQ(allocationsDuring([&] { string.reserve(20); }), 1u) << "existing capacity is ignored";
    EXPECT_EQ(own("hello").reserve(3), 5u);
}

TEST(UTF8StringReserve, OfAStaticConstantCopies) {
    UTF8String string(String::getEmptyString());
    StringData* const constant = String::s_emptyString.getData();
    const unsigned int count = constant->getRefCount();
    EXPECT_EQ(string.reserve(0), 0u);
    EXPECT_EQ(constant->getRefCount(), count - 1);
    EXPECT_NE(string.getData(), constant);
    string.append('x');
    EXPECT_EQ(textOf(string), "x");

    UTF8String fromData(&StringData::s_emptyString); // its own count is 1 now, and it is a constant all the same
    fromData.append('y');
    EXPECT_EQ(textOf(fromData), "y");
    EXPECT_EQ(StringData::s_emptyString.getRefCount(), 0u);
    EXPECT_TRUE(StringData::s_emptyString.isEmpty());
}

TEST(UTF8StringReserve, OfATextThatIsNotDynamicCopies) {
    const std::string text = "outside";
    UTF8String string(bytesOf(text), 7);
    StringData* const record = string.getData();
    EXPECT_EQ(string.reserve(0), 7u);
    EXPECT_EQ(string.getData(), record);
    EXPECT_NE(string.getBuffer(), bytesOf(text));
    EXPECT_EQ(infoOf(string).m_allocationType, STRING_DATA_DYNAMIC);
    EXPECT_TRUE(infoOf(string).m_nullTerminated);
}

TEST(UTF8StringReserve, DropsUTF16WhenItRebuilds) {
    const UTF16Text wide = utf16Of({'a', 0x20AC});
    for (const bool shared : {false, true}) {
        UTF8String string(over(wide));
        const String other = shared ? String(string) : String();
        EXPECT_EQ(string.reserve(9), 9u);
        EXPECT_EQ(textOf(string), "a\xE2\x82\xAC");
        EXPECT_EQ(string.getData()->getPrivateBuffer<UTF16Char>(), nullptr);
        EXPECT_EQ(string.getData()->getAllocationType<UTF16Char>(), STRING_DATA_NONE);
        EXPECT_EQ(string.getBuffer()[9], 0);
    }
}

TEST(UTF8StringReserve, OfARecordWithoutABuffer) {
    for (const bool shared : {false, true}) {
        UTF8String string((String(VornPrivate::StringDataProbe::makeNull())));
        const String other = shared ? String(string) : String();
        StringData* const record = string.getData();
        expectRaises<4>([&] { string.reserve(4); }, "buffer must not be null!!!!", "Vorn::StringData::initialise");
        EXPECT_EQ(string.getData(), shared ? nullptr : record);
        EXPECT_EQ(record->getRefCount(), 1u);
    }
}

TEST(UTF8StringReserve, TextThatTheScanRefusesIsLostToAStringThatSharedIt) {
    const UTF16Text wide = utf16Of({0x40000}); // becomes malformed bytes
    const String other = over(wide);
    UTF8String string(other);
    const std::size_t live = liveAllocationCount();
    EXPECT_THROW(string.reserve(1), Exception<7>);
    EXPECT_EQ(liveAllocationCount(), live);
    EXPECT_EQ(string.getData(), nullptr);
    EXPECT_EQ(other.getData()->getRefCount(), 1u);
    EXPECT_EQ(unitsOf(*other.getData()), wide);
}

TEST(UTF8StringReserve, TextThatTheScanRefusesIsLostToAStringThatWasAlone) {
    UTF8String string = own("ab");
    string.append(0x80000080); // writes a zero byte
    StringData* const record = string.getData();
    const std::size_t live = liveAllocationCount();
    EXPECT_THROW(string.append('c'), Exception<7>);
    EXPECT_EQ(liveAllocationCount(), live - 1) << "the old text is freed, the new one is not stored";
    EXPECT_EQ(string.getData(), record);
    EXPECT_TRUE(string.isNull());
    EXPECT_EQ(record->getRefCount(), 1u);
}

TEST(UTF8StringReserve, WithoutMemoryChangesNothing) {
    const std::string text = "text";
    const String other = over(text);
    UTF8String shared(other), alone(bytesOf(text), 4), none;
    const std::size_t live = liveAllocationCount();
    for (std::size_t failing = 1; failing <= 2; ++failing) {
        failAllocation(failing);
        EXPECT_THROW(none.reserve(9), std::bad_alloc);
        EXPECT_EQ(none.getData(), nullptr);
    }
    failAllocation(1);
    EXPECT_THROW(shared.reserve(9), std::bad_alloc);
    EXPECT_EQ(shared.getData(), other.getData());
    EXPECT_EQ(other.getData()->getRefCount(), 2u);
    failAllocation(1);
    EXPECT_THROW(alone.reserve(9), std::bad_alloc);
    EXPECT_EQ(alone.getBuffer(), bytesOf(text));
    failAllocation(0);
    EXPECT_EQ(liveAllocationCount(), live);
}

TEST(UTF8StringReserve, MoreThanATextCanHaveIsRefused) {
    const std::string text = "text";
    const UTF16Text wide = VORN_UTF16("wide");
    UTF8String none, alone(bytesOf(text), 4), shared(over(text)), fromWide(over(wide));
    const String other = shared;
    const std::pair<const char*, UTF8String*> rows[] = {
        {"no record", &none}, {"its own record", &alone}, {"a shared record", &shared}, {"UTF-16", &fromWide}};
    for (const auto& [name, string] : rows) {
        SCOPED_TRACE(name);
        const StringData* const data = string->getData();
        const std::size_t live = liveAllocationCount();
        UTF8String& refused = *string; // a lambda cannot capture a part of a binding
        expectRaises<4>([&] { refused.reserve(0xFFFFFFFF); }, "length : text too long!", "Vorn::UTF8String::reserve",
                        "Source/Vorn/UTF8String");
        EXPECT_EQ(liveAllocationCount(), live);
        EXPECT_EQ(string->getData(), data);
    }
    EXPECT_EQ(alone.getBuffer(), bytesOf(text));
    EXPECT_EQ(unitsOf(*fromWide.getData()), wide);
}

#if UINTPTR_MAX == 0xFFFFFFFF // any other process may well have the memory
TEST(UTF8StringReserve, MoreThanTheProcessHasIsRefused) {
    const std::string text = "text";
    const UTF16Text wide = u"wide";
    UTF8String none, alone(bytesOf(text), 4), fromWide(over(wide));
    EXPECT_THROW(none.reserve(0xFFFFFFFE), std::bad_alloc);
    EXPECT_THROW(alone.reserve(0xFFFFFFFE), std::bad_alloc);
    EXPECT_THROW(fromWide.reserve(0xFFFFFFFE), std::bad_alloc);
    EXPECT_EQ(none.getData(), nullptr);
    EXPECT_EQ(alone.getBuffer(), bytesOf(text));
    EXPECT_EQ(unitsOf(*fromWide.getData()), wide);
}
#endif

TEST(UTF8StringReserve, WithoutMemoryForTheRecordAStringKeepsTheOneThatItShares) {
    const std::string text = "text";
    const String other = over(text);
    UTF8String string(other);
    const std::size_t live = liveAllocationCount();
    failAllocation(2);
    EXPECT_THROW(string.reserve(9), std::bad_alloc);
    failAllocation(0);
    EXPECT_EQ(liveAllocationCount(), live);
    EXPECT_EQ(string.getData(), other.getData());
    EXPECT_EQ(other.getData()->getRefCount(), 2u);
}

TEST(UTF8StringEdit, OfAStringWithoutARecordFails) {
    const char* const function = "Vorn::StringData::setLength";
    const char* const file = "Include/Vorn/String/StringData";
    const std::size_t live = liveAllocationCount();
    const std::string text = "text";
    {
        const String s = over(text);
        for (int attempt = 0; attempt < 2; ++attempt) {
            UTF8String string;
            const auto fails = [&](auto run) {
                expectRaises<2>(run, NOT_ALONE, function, file);
                EXPECT_EQ(string.getLength(), 0u);
                EXPECT_EQ(string.getData()->getRefCount(), 0u);
            };
            fails([&] { string.append('A'); });
            fails([&] { string.append('A'); });
            fails([&] { string.append(s); });
            fails([&] { string.appendDecimal(7); });
            fails([&] { string.appendHexaDecimal(7, HEX_WITH_PREFIX); });
            fails([&] { string.insert('A', 0); });
            fails([&] { string.insert(s, -1); });
            fails([&] { string.replace('A', 0, 0); });
            fails([&] { string.replace(s, 0, 5); });
            fails([&] { string.erase(0, 1); });
            string.replace(String(), 0, 0); // moves nothing and so sets no length
            if (attempt == 1) string = s;
        }
    }
    EXPECT_EQ(liveAllocationCount(), live) << "the string destroys such a record";
}

TEST(UTF8StringEdit, SetLengthNeedsADynamicTextOfOneHandle) {
    const std::string text = "text";
    const String outside = over(text);
    expectRaises<2>(
        [&] { outside.getData()->setLength(1); },
        "getAllocationType<CharType>() == STRING_DATA_DYNAMIC : Can't set length of a non-dynamic string!!!",
        "Vorn::StringData::setLength", "Include/Vorn/String/StringData");
    const UTF8String string = own("text");
    string.getData()->setLength(2);
    EXPECT_EQ(textOf(string), "te");
    EXPECT_EQ(string.getBuffer()[2], 'x');
    expectRaises<4>([&] { string.getData()->setLength(0xFFFFFFFF); }, "length : text too long!",
                    "Vorn::StringData::setLength", "Include/Vorn/String/StringData");
    EXPECT_EQ(textOf(string), "te");
    const String other = string;
    expectRaises<2>([&] { string.getData()->setLength(1); }, NOT_ALONE, "Vorn::StringData::setLength",
                    "Include/Vorn/String/StringData");
}

TEST(UTF8StringEdit, AppendsCharacters) {
    struct Row {
        unsigned int c;
        std::string bytes;
    };
    const Row rows[] = {
        {0, "\xC0\x80"},
        {1, "\x01"},
        {0x7F, "\x7F"},
        {0x80, "\xC2\x80"},
        {0x7FF, "\xDF\xBF"},
        {0x800, "\xE0\xA0\x80"},
        {0xFFFD, "\xEF\xBF\xBD"},
        {0x10000, "\xF0\x90\x80\x80"},
        {0x10FFFD, "\xF4\x8F\xBF\xBD"},
        {0x80000080, std::string(1, '\0')}, // taken for a single byte
        {0xFFFFFFFF, "\x7F"},
    };
    for (const Row& row : rows) {
        UTF8String string = own("ab");
        string.append(row.c);
        EXPECT_EQ(textOf(string), "ab" + row.bytes);
        EXPECT_EQ(string.getBuffer()[string.getLength()], 0);
        EXPECT_TRUE(infoOf(string).m_nullTerminated);
        string = own("ab");
        string.insert(row.c, 1);
        EXPECT_EQ(textOf(string), "a" + row.bytes + "b");
        string = own("abcdef");
        string.replace(row.c, 1, 3);
        EXPECT_EQ(textOf(string), "a" + row.bytes + "ef");
    }
}

TEST(UTF8StringEdit, RefusesCodesBeforeAnythingElse) {
    const UTF8String original = own("\xC3\xA9");
    UTF8String string = original;
    for (const unsigned int c : {0xD800u, 0xDFFFu, 0xFDD0u, 0xFFFEu, 0x1FFFFu, 0x110000u, 0x8000007Fu}) {
        const char* const message = "Invalid Unicode character!";
        expectRaises<7>([&] { string.append(c); }, message, "Vorn::UTF8String::append", FILE_TEXT);
        expectRaises<7>([&] { string.insert(c, 99); }, message, "Vorn::UTF8String::insert", FILE_TEXT);
        expectRaises<7>([&] { string.replace(c, 99, 1); }, message, "Vorn::UTF8String::replace", FILE_TEXT);
    }
    EXPECT_EQ(string.getData(), original.getData());
}

TEST(UTF8StringEdit, RefusesIndexesOutsideTheText) {
    const UTF8String original = own("abc");
    UTF8String string = original;
    const String s = own("x");
    const char* const message = "Invalid index!";
    for (const int index : {4, 100, 0x7FFFFFFF}) {
        const char* const function = "Vorn::UTF8String::assertValidInsertIndex";
        int i = index;
        expectRaises<4>([&] { string.assertValidInsertIndex(i); }, message, function, FILE_TEXT);
        expectRaises<4>([&] { string.insert('x', index); }, message, function, FILE_TEXT);
        expectRaises<4>([&] { string.insert(s, index); }, message, function, FILE_TEXT);
        expectRaises<4>([&] { string.replace('x', index, 0); }, message, function, FILE_TEXT);
        expectRaises<4>([&] { string.replace(s, index, 0); }, message, function, FILE_TEXT);
        expectRaises<4>([&] { string.replace(String(), index, 0); }, message, function, FILE_TEXT);
    }
    for (const int index : {4, 100, -4, -100, -0x7FFFFFFF - 1})
        expectRaises<4>([&] { string.erase(index, 1); }, message, "Vorn::UTF8String::erase", FILE_TEXT);
    EXPECT_EQ(string.getData(), original.getData());

    // An edit that does nothing does not look at the index.
    string.insert(String(), 100);
    string.insert(String::getEmptyString(), 100);
    string.erase(100, 0);
    EXPECT_EQ(string.getData(), original.getData());

    for (const int index : {-1, -100, 3}) {
        int i = index;
        EXPECT_EQ(string.assertValidInsertIndex(i), 3u);
        EXPECT_EQ(i, 3);
    }
}

TEST(UTF8StringEdit, RefusesPlacesInsideACharacterOnceItIsPrivate) {
    const UTF8String original = own("\xC3\xA9z");
    const String s = own("xyz");
    const auto fails = [&](auto edit, const char* message, const char* function) {
        UTF8String string = original;
        expectRaises<4>([&] { edit(string); }, message, function, FILE_TEXT);
        EXPECT_NE(string.getData(), original.getData());
        EXPECT_EQ(textOf(string), "\xC3\xA9z");
        EXPECT_EQ(string.getData()->getRefCount(), 1u);
    };
    const char* const insert = "Vorn::UTF8String::insert";
    const char* const replace = "Vorn::UTF8String::replace";
    const char* const erase = "Vorn::UTF8String::erase";
    fails([](UTF8String& string) { string.insert('x', 1); }, "Invalid index!", insert);
    fails([&](UTF8String& string) { string.insert(s, 1); }, "Invalid index!", insert);
    fails([](UTF8String& string) { string.replace('x', 1, 1); }, "Invalid index!", replace);
    fails([](UTF8String& string) { string.replace('x', 0, 1); }, "Invalid length!", replace);
    fails([&](UTF8String& string) { string.replace(s, 1, 2); }, "Invalid index!", replace);
    fails([&](UTF8String& string) { string.replace(s, 0, 1); }, "Invalid length!", replace);
    fails([](UTF8String& string) { string.erase(1, 1); }, "Invalid index!", erase);
    fails([](UTF8String& string) { string.erase(-2, 1); }, "Invalid index!", erase);
    fails([](UTF8String& string) { string.erase(0, 1); }, "Invalid length!", erase);
}

TEST(UTF8StringEdit, NegativePlaces) {
    UTF8String string = own("abc");
    string.insert('x', -1);
    string.insert(String(own("yz")), -100);
    EXPECT_EQ(textOf(string), "abcxyz");
    string.replace('!', -5, 3);
    EXPECT_EQ(textOf(string), "abcxyz!");
    string.erase(-1, 1);
    string.erase(-3, 2);
    EXPECT_EQ(textOf(string), "abcz");
    string.erase(0, 1000);
    EXPECT_EQ(textOf(string), "");
    string.insert('q', 0);
    EXPECT_EQ(textOf(string), "q");
}

TEST(UTF8StringEdit, CostsNothingUnlessItLengthensTheText) {
    UTF8String string = own("abcdef");
    const String s = own("xy");
    const String null = own("\xC0\x80");
    EXPECT_EQ(allocationsDuring([&] {
                  string.replace(null, 4, 2);
                  string.replace(s, 4, 2);
                  string.replace('e', 4, 1);
                  string.replace('f', 5, 1);
                  string.replace('z', 0, 1);
                  string.replace(s, 1, 2);
                  string.replace(s, 0, 3);
                  string.erase(1, 2);
                  string.replace(String(), 0, 1);
              }),
              0u);
    EXPECT_EQ(textOf(string), "ef");
    EXPECT_EQ(allocationsDuring([&] { string.append('g'); }), 1u);
    EXPECT_EQ(lastAllocationSize(), 4u);
}

TEST(UTF8StringEdit, TerminatesAnUnterminatedText) {
    const std::string text = "hello world";
    UTF8String string(bytesOf(text), 5);
    string.append('A');
    EXPECT_EQ(string.getLength(), 6u);
    EXPECT_TRUE(infoOf(string).m_nullTerminated);
    EXPECT_STREQ(string.getCString(), "helloA");

    UTF8String dynamic = own("hello", false);
    dynamic.erase(4, 1);
    EXPECT_STREQ(dynamic.getCString(), "hell");
}

TEST(UTF8StringEdit, LeavesOtherHoldersAlone) {
    const std::string text = "text";
    const String holder = over(text);
    UTF8String first(holder);
    UTF8String second = first;
    first.append('1');
    second.insert('2', 0);
    EXPECT_EQ(textOf(first), "text1");
    EXPECT_EQ(textOf(second), "2text");
    EXPECT_STREQ(holder.getCString(), "text");
    first.append(String(first));
    EXPECT_EQ(textOf(first), "text1text1");
    first.insert(first, 1);
    EXPECT_EQ(textOf(first), "ttext1text1ext1text1");
    first.replace(first, 0, 19);
    EXPECT_EQ(textOf(first), "ttext1text1ext1text11");
}

TEST(UTF8StringEdit, ThatRebuildsLeavesTheBlockToItsSubstrings) {
    UTF8String string = own("abcdef");
    const String substring(string.getData()->substr<Byte>(2, 3));
    string.append(substring);
    EXPECT_EQ(textOf(string), "abcdefcde");
    EXPECT_STREQ(substring.getCString(), "cde");
}

TEST(UTF8StringEdit, InPlaceMayWriteASubstringOfTheTextOverItself) {
    UTF8String string = own("hello world");
    const String substring(string.getData()->substr<Byte>(0, 5));
    string.replace(substring, 3, 5);
    EXPECT_EQ(textOf(string), "helhellorld");
}

TEST(UTF8StringEdit, KeepsTheCharsetOfTheTextBefore) {
    UTF8String string = own("ab");
    string.append(0x10000);
    EXPECT_EQ(string.getCharset(), STRING_DATA_ASCII);
    string.append(0);
    EXPECT_EQ(string.getCharset(), STRING_DATA_UNICODE) << "the scan has read the text as it was";
    EXPECT_FALSE(string.haveEmbeddedNulls());
    string.append('x');
    EXPECT_TRUE(string.haveEmbeddedNulls());
}

TEST(UTF8StringEdit, ThatDoesNotRebuildLeavesAnOlderUTF16Buffer) {
    UTF8String string = own("abc");
    string.getData()->getTerminatedBuffer<UTF16Char>();
    string.erase(0, 1);
    EXPECT_EQ(unitsOf(*string.getData()), VORN_UTF16("abc"));
    EXPECT_EQ(textOf(string), "bc");
    string.append('d');
    EXPECT_EQ(string.getData()->getPrivateBuffer<UTF16Char>(), nullptr);
}

TEST(UTF8StringEdit, AppendsTextsOfBothEncodings) {
    const UTF16Text wide = utf16Of({'w', 0x20AC, 0x1F600});
    UTF8String string = own("a");
    const String s = over(wide);
    string.append(s);
    EXPECT_EQ(textOf(string), "aw\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(s.getData()->getPrivateBuffer<Byte>(), nullptr);
    string.append(String());
    string.append(String::getEmptyString());
    EXPECT_EQ(string.getLength(), 9u);
}

TEST(UTF8StringEdit, StaysInsideItsBlockWhenTheLastCharacterOverruns) {
    for (const Codes& codes : {Codes{0, 0, 0xFFFD}, Codes{0, 0xFFFD}, Codes{0, 'b'}, Codes{'b', 0}, Codes{0, 0, 'b'}}) {
        const UTF16Text wide = utf16Of(codes);
        UTF8String string = own("ab");
        try {
            string.append(over(wide));
        } catch (const Exception<2>&) {
        }
        EXPECT_EQ(string.getBuffer()[string.getLength()], 0);
        EXPECT_EQ(textOf(string).substr(0, 2), "ab");
    }
}

TEST(UTF8StringEdit, WithoutMemoryChangesNothing) {
    const UTF16Text wide = utf16Of({'h', 0, 0xE9}); // is converted beside the string
    const String s = over(wide);
    UTF8String string = own("hello");
    for (std::size_t failing = 1; failing <= 2; ++failing) {
        const auto fails = [&](auto edit) {
            failAllocation(failing);
            EXPECT_THROW(edit(), std::bad_alloc);
            failAllocation(0);
            EXPECT_EQ(textOf(string), "hello");
        };
        fails([&] { string.append(s); });
        fails([&] { string.insert(s, 2); });
        fails([&] { string.replace(s, 1, 1); });
    }
}

TEST(UTF8StringEdit, AppendsNumbers) {
    UTF8String string = own("n=");
    for (const unsigned int value : {0u, 7u, 42u, 99999u, 123456u, 4294967295u}) {
        string = own("n=");
        string.appendDecimal(value);
        EXPECT_EQ(textOf(string), "n=" + std::to_string(value));
        EXPECT_EQ(string.getBuffer()[string.getLength()], 0);
    }
    string = own("h=");
    string.appendHexaDecimal(0xBEEF, HEX_WITH_PREFIX);
    string.appendHexaDecimal(0xFFFFFFFF, HEX_WITHOUT_PREFIX);
    string.appendHexaDecimal(0, HEX_WITH_PREFIX);
    EXPECT_EQ(textOf(string), "h=0xBEEFFFFFFFFF0x0");
}

TEST(UTF8StringEdit, AppendsZeroBytesForNumbersThatAreMeasuredShort) {
    UTF8String string = own("n=");
    string.appendDecimal(100000);
    EXPECT_EQ(textOf(string), "n=" + std::string(5, '\0'));
    EXPECT_EQ(string.getBuffer()[7], 0);
}

// All edits at random, on many strings with common records, compared with std::string.
TEST(UTF8StringModel, RandomEdits) {
    Random random(2808);
    const unsigned int alphabet[] = {'a', 'b', 'z', 0, 0xE9, 0x20AC, 0x1F600};
    struct Entry {
        UTF8String string;
        std::string text;
    };
    const std::size_t live = liveAllocationCount();
    {
        std::vector<std::unique_ptr<Entry>> entries;
        std::string bytes = "start \xC3\xA9 text";
        for (int i = 0; i < 6; ++i) entries.push_back(std::make_unique<Entry>(Entry{UTF8String(over(bytes)), bytes}));
        const auto isTrailAt = [](const std::string& text, std::size_t i) {
            return i < text.size() && (text[i] & 0xC0) == 0x80;
        };
        for (int step = 0; step < repetitions(300000); ++step) {
            Entry& entry = *entries[random.below(6)];
            UTF8String& string = entry.string;
            std::string& text = entry.text;
            const Entry& other = *entries[random.below(6)];
            const int n = static_cast<int>(text.size());
            const int index = static_cast<int>(random.below(static_cast<unsigned int>(n) + 4)) - 2;
            const unsigned int length = random.below(8) == 0 ? 1000 : random.below(6);
            const unsigned int c = alphabet[random.below(7)];
            std::string sequence;
            appendUTF8(sequence, c);
            const bool withString = random.below(3) == 0 && other.text.size() + text.size() < 200;
            if (withString) sequence = other.text;

            switch (random.below(7)) {
            case 0:
                if (withString)
                    string.append(other.string);
                else
                    string.append(c);
                text += sequence;
                break;
            case 1:
            case 2: {
                const bool isReplace = random.below(2) == 0;
                const std::size_t start = index < 0 ? text.size() : static_cast<std::size_t>(index);
                const std::size_t removed =
                    isReplace && start <= text.size() ? std::min<std::size_t>(length, text.size() - start) : 0;
                const bool skipped = !isReplace && sequence.empty();
                const bool valid = start <= text.size() && !isTrailAt(text, start) && !isTrailAt(text, start + removed);
                const auto edit = [&] {
                    if (isReplace && withString)
                        string.replace(other.string, index, length);
                    else if (isReplace)
                        string.replace(c, index, length);
                    else if (withString)
                        string.insert(other.string, index);
                    else
                        string.insert(c, index);
                };
                if (skipped || valid) {
                    edit();
                    if (!skipped) text.replace(start, removed, std::string(sequence));
                } else {
                    EXPECT_THROW(edit(), Exception<4>);
                }
                break;
            }
            case 3: {
                const int start = index < 0 ? index + n : index;
                if (length == 0) {
                    string.erase(index, length);
                } else if (start < 0 || start > n || isTrailAt(text, static_cast<std::size_t>(start)) ||
                           isTrailAt(text, static_cast<std::size_t>(start) + length)) {
                    EXPECT_THROW(string.erase(index, length), Exception<4>);
                } else {
                    string.erase(index, length);
                    text.erase(static_cast<std::size_t>(start), length);
                }
                break;
            }
            case 4: {
                const Entry copy = other; // entry and other may be the same
                string = copy.string;
                text = copy.text;
                break;
            }
            case 5: EXPECT_EQ(string.reserve(length), std::max(length, static_cast<unsigned int>(n))); break;
            default:
                if (text.size() > 60) {
                    string = UTF8String(String(own("new")));
                    text = "new";
                }
                string.appendDecimal(static_cast<unsigned int>(step % 1000));
                text += std::to_string(step % 1000);
                break;
            }
            for (const auto& checked : entries) {
                ASSERT_EQ(textOf(checked->string), checked->text) << step;
                ASSERT_STREQ(checked->string.getCString(), checked->text.c_str()) << step;
            }
        }
    }
    EXPECT_EQ(liveAllocationCount(), live);
}

} // namespace
