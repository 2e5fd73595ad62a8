#include "Vorn/Text/TextConversion.h"

#include "Support/AllocationCounter.h"
#include "Support/RandomTexts.h"
#include "Vorn/Exception.h"
#include "Vorn/String/UTF8String.h"
#include "Vorn/Text/MakeString.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using namespace Vorn;

// Writes into memory of every capacity, between guards, and expects a prefix of whole characters.
template <class Unit, class Text>
void expectInto(const Text& text, const std::vector<reference::DecodedCharacter>& characters,
                ConvertedText (*convert)(TextView, Unit*, std::size_t),
                std::basic_string<Unit> (*encode)(const std::u32string&)) {
    std::basic_string<Unit> whole;
    for (const reference::DecodedCharacter& character : characters) whole += encode(std::u32string(1, character.code));
    for (std::size_t capacity = 0; capacity <= whole.size() + 3; ++capacity) {
        std::basic_string<Unit> expected;
        unsigned int read = 0;
        for (const reference::DecodedCharacter& character : characters) {
            const std::basic_string<Unit> next = encode(std::u32string(1, character.code));
            if (expected.size() + next.size() > capacity) break;
            expected += next;
            read += character.units;
        }
        const std::vector<Unit> before(capacity, Unit(0x55));
        std::vector<Unit> memory = before;
        const ConvertedText converted = convert(text, memory.data(), capacity);
        EXPECT_EQ(converted.read, read) << capacity;
        ASSERT_EQ(converted.written, expected.size()) << capacity;
        EXPECT_TRUE(std::equal(expected.begin(), expected.end(), memory.begin())) << capacity;
        for (std::size_t i = expected.size(); i < capacity; ++i) EXPECT_EQ(memory[i], Unit(0x55)) << i;
    }
}

std::u32string encodedUTF32(const std::u32string& codes) { return codes; }

// All conversions of one text, against the reference.
template <class Text>
void expectConverted(const Text& text, bool isIntoMemory) {
    SCOPED_TRACE("units: " + inHex(text));
    const std::u32string codes = reference::decoded(text);
    EXPECT_EQ(inHex(toUTF8(text)), inHex(reference::encodedUTF8(codes)));
    EXPECT_EQ(inHex(toUTF16(text)), inHex(reference::encodedUTF16(codes)));
    EXPECT_EQ(inHex(toUTF32(text)), inHex(codes));
    EXPECT_EQ(lengthInUTF8(text), reference::encodedUTF8(codes).size());
    EXPECT_EQ(lengthInUTF16(text), reference::encodedUTF16(codes).size());
    if (!isIntoMemory) return;
    const std::vector<reference::DecodedCharacter> characters = reference::decodedCharacters(text);
    expectInto<char>(text, characters, toUTF8, reference::encodedUTF8);
    expectInto<char16_t>(text, characters, toUTF16, reference::encodedUTF16);
    expectInto<char32_t>(text, characters, toUTF32, encodedUTF32);
}

std::string stringBytes(const std::u32string& codes) {
    std::string text;
    for (const char32_t code : codes) reference::appendUTF8(text, code);
    return text;
}

// Strings of valid code points in both encodings.
void expectStrings(const std::u32string& codes) {
    SCOPED_TRACE("codes: " + inHex(codes));
    const String bytes = makeString(codes);
    const String units = makeString(reference::encodedUTF16(codes));
    for (const String& s : {bytes, units}) {
        EXPECT_EQ(inHex(toUTF8(s)), inHex(reference::encodedUTF8(codes)));
        EXPECT_EQ(inHex(toUTF16(s)), inHex(reference::encodedUTF16(codes)));
        EXPECT_EQ(inHex(toUTF32(s)), inHex(codes));
        const String asUTF8 = inUTF8(s), asUTF16 = inUTF16(s);
        EXPECT_EQ(asUTF8.getCharset(), bytes.getCharset());
        EXPECT_EQ(asUTF16.getCharset(), units.getCharset());
        EXPECT_EQ(asUTF8.haveEmbeddedNulls(), bytes.haveEmbeddedNulls());
        if (codes.empty()) continue;
        EXPECT_TRUE(TextView(asUTF8).isUTF8());
        EXPECT_FALSE(TextView(asUTF16).isUTF8());
        EXPECT_EQ(inHex(std::string(asUTF8.getCString())), inHex(stringBytes(codes)));
        const UTF16Char* const stored = asUTF16.getData()->getPrivateBuffer<UTF16Char>();
        EXPECT_EQ(inHex(std::u16string(stored, stored + asUTF16.getData()->getUTF16Length() + 1)),
                  inHex(reference::encodedUTF16(codes) + u'\0'));
        EXPECT_EQ((TextView(s).isUTF8() ? asUTF8 : asUTF16).getData(), s.getData());
    }
}

TEST(TextConversion, ConvertsEveryCharacter) {
    std::u32string codes;
    for (char32_t code = 0; code <= 0x10FFFF; ++code) {
        if (code == 0xD800) code = 0xE000;
        codes.push_back(code);
        if (codes.size() < 4096) continue;
        const std::string bytes = reference::encodedUTF8(codes);
        const std::u16string units = reference::encodedUTF16(codes);
        EXPECT_TRUE(toUTF8(bytes) == bytes) << static_cast<unsigned int>(code);
        EXPECT_TRUE(toUTF8(units) == bytes) << static_cast<unsigned int>(code);
        EXPECT_TRUE(toUTF16(bytes) == units) << static_cast<unsigned int>(code);
        EXPECT_TRUE(toUTF16(units) == units) << static_cast<unsigned int>(code);
        EXPECT_TRUE(toUTF32(bytes) == codes) << static_cast<unsigned int>(code);
        EXPECT_TRUE(toUTF32(units) == codes) << static_cast<unsigned int>(code);
        codes.clear();
    }
}

TEST(TextConversion, ConvertsNullAndEmptyTexts) {
    EXPECT_EQ(toUTF8(String()), "");
    EXPECT_EQ(toUTF16(""), u"");
    EXPECT_EQ(toUTF8("\xC0\x80"
                     "a"),
              std::string("\0a", 2));
    EXPECT_EQ(toUTF16(std::string("\0a", 2)), std::u16string(u"\0a", 2));
    EXPECT_EQ(inUTF8(u"").getData(), &StringData::s_emptyString);
    EXPECT_EQ(inUTF16("").getData(), &StringData::s_emptyString);
    const ConvertedText nothing = toUTF8("", nullptr, 0);
    EXPECT_EQ(nothing.written, 0u);
    EXPECT_EQ(nothing.read, 0u);
}

TEST(TextConversion, MatchesTheReferenceOnRandomTexts) {
    Random random(4);
    for (int i = 0; i < repetitions(1500); ++i) {
        expectConverted(randomBytes(random, 10), i % 5 == 0);
        expectConverted(randomUnits(random, 10), i % 5 == 0);
        const std::u32string codes = randomCodes(random, 60);
        expectConverted(reference::encodedUTF8(codes), false);
        expectConverted(reference::encodedUTF16(codes), false);
        expectStrings(codes);
        if (HasFatalFailure()) return;
    }
}

TEST(TextConversion, MakesStringsOfViews) {
    EXPECT_EQ(std::string(inUTF8(u"\u00E9\U0001F600").getCString()), "\xC3\xA9\xF0\x9F\x98\x80");
    EXPECT_EQ(std::string(inUTF8("abc").getCString()), "abc");
    EXPECT_EQ(inUTF8("abc").getData()->getAllocationType<unsigned char>(), STRING_DATA_DYNAMIC);
    EXPECT_EQ(inUTF8(std::string("abc")).getData()->getAllocationType<unsigned char>(), STRING_DATA_DYNAMIC);
    EXPECT_THROW(inUTF8("\xFF"), Exception<7>);
    EXPECT_THROW(inUTF8(u"\xD800"), Exception<7>);
    EXPECT_THROW(inUTF16("\xFF"), Exception<7>);
    EXPECT_THROW(inUTF16("\xEF\xBF\xBF"), Exception<7>);
    UTF8String editable = inUTF8(u"\U0001F600");
    editable.append('!');
    EXPECT_EQ(std::string(editable.getCString()), "\xF0\x9F\x98\x80!");
}

TEST(TextConversion, BuildsNoBufferAndAllocatesOnce) {
    const String s = makeString("a text that is long enough to need memory of its own");
    EXPECT_EQ(allocationsDuring([&] { toUTF16(s); }), 1u);
    EXPECT_EQ(allocationsDuring([&] { inUTF16(s); }), 2u);
    EXPECT_EQ(allocationsDuring([&] { inUTF8(s); }), 0u);
    EXPECT_EQ(s.getData()->getPrivateBuffer<UTF16Char>(), nullptr);
}

} // namespace
