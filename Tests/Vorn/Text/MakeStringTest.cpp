#include "Vorn/Text/MakeString.h"

#include "Support/AllocationCounter.h"
#include "Support/RandomTexts.h"
#include "Support/Threads.h"
#include "Vorn/Exception.h"
#include "Vorn/String/UTF8String.h"
#include "Vorn/Text/CodePoints.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <list>
#include <string>
#include <vector>

namespace {

using namespace Vorn;

// The units of a string in the encoding that it has, which must be the only one, terminated and owned.
std::string bytesOf(const String& s) {
    const StringData& data = *s.getData();
    const unsigned char* const bytes = data.getPrivateBuffer<unsigned char>();
    const StringDataBufferInfo& info = data.getBufferInfo<unsigned char>();
    EXPECT_EQ(data.getPrivateBuffer<UTF16Char>(), nullptr);
    EXPECT_EQ(info.m_allocationType, STRING_DATA_DYNAMIC);
    EXPECT_EQ(info.m_nullTerminated, 1u);
    EXPECT_EQ(info.m_offset, 0u);
    EXPECT_EQ(bytes[info.m_length], 0);
    EXPECT_EQ(data.getRefCount(), 1u);
    return std::string(bytes, bytes + info.m_length);
}

std::u16string unitsOf(const String& s) {
    const StringData& data = *s.getData();
    const UTF16Char* const units = data.getPrivateBuffer<UTF16Char>();
    const StringDataBufferInfo& info = data.getBufferInfo<UTF16Char>();
    EXPECT_EQ(data.getPrivateBuffer<unsigned char>(), nullptr);
    EXPECT_EQ(info.m_allocationType, STRING_DATA_DYNAMIC);
    EXPECT_EQ(info.m_nullTerminated, 1u);
    EXPECT_EQ(units[info.m_length], 0);
    EXPECT_EQ(data.getRefCount(), 1u);
    return std::u16string(units, units + info.m_length);
}

bool canHold(unsigned int code) { return (code & 0xFFFE) != 0xFFFE && (code < 0xFDD0 || code > 0xFDEF); }

std::string stringBytes(const std::u32string& codes) {
    std::string text;
    for (const char32_t code : codes) reference::appendUTF8(text, code);
    return text;
}

// The charset and the flag of U+0000 are those that String finds when it validates the same units.
template <class CharType>
void expectProperties(const String& s) {
    const StringData& data = *s.getData();
    const unsigned int length = data.getBufferInfo<CharType>().m_length;
    const String again(data.getPrivateBuffer<CharType>(), length + 1, STRING_DATA_STATIC); // with the terminator
    EXPECT_EQ(s.getCharset(), again.getCharset());
    EXPECT_EQ(s.haveEmbeddedNulls(), again.haveEmbeddedNulls());
}

void expectOwned(const String& s, const std::u32string& codes, const std::string&) {
    EXPECT_EQ(inHex(bytesOf(s)), inHex(stringBytes(codes)));
    expectProperties<unsigned char>(s);
}
void expectOwned(const String& s, const std::u32string& codes, const std::u16string&) {
    EXPECT_EQ(inHex(unitsOf(s)), inHex(reference::encodedUTF16(codes)));
    expectProperties<UTF16Char>(s);
}

// All forms on one text, against the reference.
template <class Text>
void expectMade(const Text& text) {
    SCOPED_TRACE("units: " + inHex(text));
    if (text.empty()) {
        EXPECT_EQ(makeString(text).getData(), &StringData::s_emptyString);
        EXPECT_EQ(makeStringReplacing(text).getData(), &StringData::s_emptyString);
        EXPECT_EQ(tryMakeString(text).text.getData(), &StringData::s_emptyString);
        return;
    }
    unsigned int errorOffset = NOT_FOUND;
    std::u32string codes;
    for (const reference::DecodedCharacter& character : reference::decodedCharacters(text)) {
        const bool isGood = !character.isMalformed && canHold(character.code);
        if (!isGood && errorOffset == NOT_FOUND) errorOffset = character.offset;
        codes.push_back(isGood ? character.code : 0xFFFD);
    }
    expectOwned(makeStringReplacing(text), codes, text);

    const MadeString made = tryMakeString(text);
    EXPECT_EQ(made.errorOffset, errorOffset);
    EXPECT_EQ(static_cast<bool>(made), errorOffset == NOT_FOUND);
    if (errorOffset == NOT_FOUND) {
        EXPECT_EQ(made.error, nullptr);
        expectOwned(made.text, codes, text);
        expectOwned(makeString(text), codes, text);
        return;
    }
    EXPECT_TRUE(made.text.isNull());
    std::string expected = sizeof(text[0]) == 1 ? "Malformed UTF-8 at offset " : "Malformed UTF-16 at offset ";
    expected += std::to_string(errorOffset);
    expected += ": ";
    expected += made.error;
    expected += "!";
    try {
        makeString(text);
        ADD_FAILURE() << "no exception";
    } catch (const Exception<7>& e) {
        EXPECT_EQ(std::string(e.getMessage()), expected);
    }
}

TEST(MakeString, CopiesEachKindOfText) {
    const UTF16Char wide[] = {0xE9, 0};
    EXPECT_EQ(bytesOf(makeString("caf\xC3\xA9")), "caf\xC3\xA9");
    EXPECT_EQ(bytesOf(makeString(u8"é")), "\xC3\xA9");
    EXPECT_EQ(bytesOf(makeString(std::string("ab"))), "ab");
    EXPECT_EQ(bytesOf(makeString(std::string_view("abc").substr(1))), "bc");
    EXPECT_EQ(bytesOf(makeString(std::u8string_view(u8"é"))), "\xC3\xA9");
    EXPECT_EQ(bytesOf(makeString(U"é\U0001F600")), "\xC3\xA9\xF0\x9F\x98\x80");
    EXPECT_EQ(bytesOf(makeString(std::u32string(2, U'é'))), "\xC3\xA9\xC3\xA9");
    EXPECT_EQ(bytesOf(makeString(std::vector<unsigned int>{0x61, 0x20AC})), "a\xE2\x82\xAC");
    EXPECT_EQ(bytesOf(makeString(std::list<char32_t>{0x61, 0x20AC})), "a\xE2\x82\xAC");
    EXPECT_EQ(bytesOf(makeString(codePoints(u"a\u20AC"))), "a\xE2\x82\xAC");
    EXPECT_EQ(unitsOf(makeString(u"é\U0001F600")), u"é\U0001F600");
    EXPECT_EQ(unitsOf(makeString(std::u16string(2, u'é'))), u"éé");
    EXPECT_EQ(unitsOf(makeString(wide)), u"é");
    EXPECT_EQ(bytesOf(makeString(String("borrowed"))), "borrowed");
    const UTF8String edited = makeString("edited");
    EXPECT_EQ(bytesOf(edited), "edited");
}

TEST(MakeString, SharesTheEmptyRecord) {
    for (const String& s : {makeString(""), makeString(std::string()), makeString(u""), makeString(U""),
                            makeString(String()), makeString(std::vector<unsigned int>()), makeStringReplacing(""),
                            tryMakeString("").text, makeStaticString("")})
        EXPECT_EQ(s.getData(), &StringData::s_emptyString);
}

TEST(MakeString, AcceptsNull) {
    const std::string zeros("a\0b\0", 4);
    EXPECT_EQ(inHex(bytesOf(makeString(zeros))), "61 C0 80 62 C0 80 ");
    EXPECT_TRUE(makeString(zeros).haveEmbeddedNulls());
    EXPECT_EQ(inHex(bytesOf(makeString("a\xC0\x80"))), "61 C0 80 ");
    EXPECT_EQ(inHex(unitsOf(makeString(std::u16string(u"a\0", 2)))), "61 00 ");
    EXPECT_EQ(inHex(bytesOf(makeString(std::u32string(1, 0)))), "C0 80 ");
}

TEST(MakeString, NamesTheReason) {
    struct Row {
        std::string text;
        unsigned int offset;
        const char* error;
    };
    const Row rows[] = {
        {"ab\x80", 2, "a trail byte without a lead byte"},
        {"\xC0\xAF", 0, "an overlong form"},
        {"\xE0\x9F\x80", 0, "an overlong form"},
        {"\xF0\x8F\x80\x80", 0, "an overlong form"},
        {"a\xED\xA0\x80", 1, "a surrogate"},
        {"a\xF4\x90\x80\x80", 1, "a code above U+10FFFF"},
        {"a\xF5\x80\x80\x80", 1, "a code above U+10FFFF"},
        {"a\xFF", 1, "a byte that is in no character"},
        {"a\xE2\x82", 1, "an incomplete character"},
        {"a\xE2"
         "a",
         1, "an incomplete character"},
        {"\xEF\xB7\x90", 0, "a noncharacter"},
        {"\xF4\x8F\xBF\xBF", 0, "a noncharacter"},
    };
    for (const Row& row : rows) {
        const MadeString made = tryMakeString(row.text);
        EXPECT_EQ(made.errorOffset, row.offset) << inHex(row.text);
        EXPECT_STREQ(made.error, row.error) << inHex(row.text);
    }
    EXPECT_STREQ(tryMakeString(u"a\xD800").error, "a first surrogate without a second one");
    EXPECT_STREQ(tryMakeString(u"a\xDC00").error, "a second surrogate without a first one");
    EXPECT_STREQ(tryMakeString(u"a\xFFFE").error, "a noncharacter");
    EXPECT_STREQ(tryMakeString(std::u32string{U'a', 0xD800}).error, "a surrogate");
    EXPECT_STREQ(tryMakeString(std::u32string{U'a', 0x110000}).error, "a code above U+10FFFF");
    EXPECT_EQ(tryMakeString(std::u32string{U'a', 0xFFFF}).errorOffset, 1u);
    EXPECT_THROW(makeString(std::vector<unsigned int>{0xFFFFFFFF}), Exception<7>);
    EXPECT_EQ(bytesOf(makeStringReplacing(std::vector<unsigned int>{0xFFFFFFFF, 0xD800, 0x61})),
              "\xEF\xBF\xBD\xEF\xBF\xBD"
              "a");
}

TEST(MakeString, TruncatedAndChangedAtEveryPosition) {
    std::u32string codes(BOUNDARY_CODES, std::end(BOUNDARY_CODES));
    const std::string bytes = reference::encodedUTF8(codes);
    for (std::size_t i = 0; i <= bytes.size(); ++i) {
        expectMade(bytes.substr(0, i));
        for (const int byte : {0x00, 0x41, 0x80, 0xBF, 0xC0, 0xE0, 0xED, 0xEF, 0xF0, 0xF4, 0xFF}) {
            std::string changed = bytes;
            if (i < bytes.size()) changed[i] = static_cast<char>(byte);
            expectMade(changed);
        }
    }
    const std::u16string units = reference::encodedUTF16(codes);
    for (std::size_t i = 0; i <= units.size(); ++i) {
        expectMade(units.substr(0, i));
        for (const int unit : {0x0000, 0x0041, 0xD800, 0xDC00, 0xDFFF, 0xFDD0, 0xFFFF}) {
            std::u16string changed = units;
            if (i < units.size()) changed[i] = static_cast<char16_t>(unit);
            expectMade(changed);
        }
    }
}

TEST(MakeString, MatchesTheReferenceOnRandomTexts) {
    Random random(3);
    for (int i = 0; i < repetitions(3000); ++i) {
        expectMade(randomBytes(random, static_cast<unsigned int>(i % 64)));
        expectMade(randomUnits(random, static_cast<unsigned int>(i % 64)));
        expectMade(reference::encodedUTF8(randomCodes(random, 100)));
        expectMade(reference::encodedUTF16(randomCodes(random, 100)));
    }
}

TEST(MakeString, AllocatesTheTextAndTheRecord) {
    const std::string text = "sixteen bytes!!!";
    const std::size_t live = liveAllocationCount();
    EXPECT_EQ(allocationsDuring([&] {
                  const String s = makeString(text);
                  const String copy = s;
                  EXPECT_EQ(liveAllocationCount(), live + 2);
              }),
              2u);
    EXPECT_EQ(liveAllocationCount(), live);
    EXPECT_FALSE(tryMakeString("\xFF"));
    EXPECT_EQ(liveAllocationCount(), live);
}

const String& literalOf(int i) {
    switch (i % 4) {
    case 0: return VORN_TEXT("Options");
    case 1: return VORN_TEXT(u8"\u00D6ffnen \U0001F600");
    case 2: return VORN_TEXT(u"\u00D6ffnen \U0001F600");
    default: return VORN_TEXT("a\0b");
    }
}

TEST(MakeString, MakesALiteralOnce) {
    for (int i = 0; i < 4; ++i) {
        const String& s = literalOf(i);
        const std::size_t count = allocationCount();
        EXPECT_EQ(&literalOf(i), &s);
        const String copy = literalOf(i);
        EXPECT_EQ(copy.getData(), s.getData());
        EXPECT_TRUE(s.getData()->isStaticConstString());
        // No use builds a buffer.
        EXPECT_NE(s.getData()->getTerminatedBuffer<unsigned char>(), nullptr);
        EXPECT_NE(s.getData()->getTerminatedBuffer<UTF16Char>(), nullptr);
        EXPECT_EQ(allocationCount(), count);
    }
    const std::u32string emoji = U"\u00D6ffnen \U0001F600";
    EXPECT_EQ(literalOf(1).getCString(), reference::encodedUTF8(emoji));
    const std::basic_string<UTF16Char> units = literalOf(1).getData()->getBuffer<UTF16Char>();
    EXPECT_EQ(std::u16string(units.begin(), units.end()), reference::encodedUTF16(emoji));
    EXPECT_EQ(literalOf(2).getCString(), reference::encodedUTF8(emoji));
    EXPECT_TRUE(literalOf(1) == literalOf(2));
    EXPECT_EQ(std::string(literalOf(3).getCString()), "a\xC0\x80"
                                                      "b");
    EXPECT_TRUE(literalOf(3).haveEmbeddedNulls());
    EXPECT_EQ(literalOf(1).getCharset(), STRING_DATA_UNICODE);
    EXPECT_EQ(literalOf(0).getCharset(), STRING_DATA_ASCII);
    EXPECT_EQ(VORN_TEXT("").getData(), &StringData::s_emptyString);
    EXPECT_THROW(VORN_TEXT("\xFF"), Exception<7>);
}

// What is replaced says nothing about the charset, wherever the blocks of a scan end.
TEST(MakeString, FindsTheCharsetOfWhatReplacedUnitsLeave) {
    for (const std::string broken : {"\xF0", "\xF0\x9F", "\xF0\x9F\xBF", "\xF0\x9F\xBF\xBF"}) {
        for (std::size_t offset = 56; offset < 140; ++offset) {
            std::string text(offset, 'a');
            text += broken;
            text.append(100, 'b');
            const String made = makeStringReplacing(text);
            EXPECT_EQ(made.getCharset(), STRING_DATA_UCS2) << broken.size() << " bytes at " << offset;
        }
    }
}

TEST(MakeString, SharesALiteralBetweenThreads) {
    inThreads(4, [](int) {
        for (int i = 0; i < 2000; ++i) {
            const String copy = VORN_TEXT("made by one of the threads");
            if (copy.getCString()[0] != 'm') std::abort();
        }
    });
}

template <class Text>
concept CanMake = requires(Text text) {
    makeString(text);
};

TEST(MakeString, RefusesWhatIsNoText) {
    EXPECT_TRUE(CanMake<const char*>);
    EXPECT_FALSE(CanMake<std::nullptr_t>);
    EXPECT_FALSE(CanMake<int>);
    EXPECT_FALSE(CanMake<std::vector<char>>);
    EXPECT_FALSE(CanMake<std::vector<int>>);
    EXPECT_FALSE(CanMake<std::vector<unsigned char>>);
}

} // namespace
