#include "Vorn/String/Interop.h"

#include "Support/AllocationCounter.h"
#include "Support/Random.h"
#include "Support/StringDataProbe.h"
#include "Support/Texts.h"
#include "Vorn/String/UTF8String.h"

#include <gtest/gtest.h>

#include <cstring>
#include <iomanip>
#include <memory>
#include <sstream>
#include <unordered_set>

namespace {

using namespace Vorn;

TEST(Interop, LiteralsAreStaticStrings) {
    const String string = "door"_vs;
    EXPECT_STREQ(string.getCString(), "door");
    EXPECT_EQ(string.getData()->getAllocationType<unsigned char>(), STRING_DATA_STATIC);
    EXPECT_TRUE(string.getData()->getBufferInfo<unsigned char>().m_nullTerminated);
    EXPECT_EQ(VORN_UTF16("door"_vs), string);
    EXPECT_EQ((VORN_UTF16("door"_vs)).getData()->getAllocationType<UTF16Char>(), STRING_DATA_STATIC);
    EXPECT_TRUE((""_vs).isEmpty());
}

TEST(Interop, ComparesWithLiteralsAndStandardStrings) {
    const std::string text = "door";
    for (const String& string : {"door"_vs, VORN_UTF16("door"_vs)}) {
        EXPECT_TRUE(string == "door" && "door" == string && string != "doors" && string < "e");
        EXPECT_TRUE(string == text && string == std::string_view(text) && !(string != text));
        EXPECT_TRUE(string != std::string("doors") && string != std::string_view());
        EXPECT_TRUE(text == string && std::string_view(text) == string && !(text != string));
        EXPECT_TRUE(std::string("doors") != string && std::string_view() != string);
    }
    EXPECT_TRUE(std::string_view(text) == text && text == std::string_view(text)) << "no business of ours";
    EXPECT_TRUE(UTF8String("door") == text && text == UTF8String("door") && UTF8String("door") == "door"_vs);
    EXPECT_FALSE(String() == std::string() || std::string() == String());
    EXPECT_TRUE(String::getEmptyString() == std::string());
}

TEST(Interop, ComparesAndWritesEveryTextExactlyAndBuildsNothing) {
    Random random(23);
    const unsigned int alphabet[] = {'a', 0, 0x7F, 0xE9, 0x20AC, 0x10000, 0x40000, 0x10FFFD};
    for (int round = 0; round < repetitions(2000); ++round) {
        Codes codes(random.below(5));
        for (unsigned int& c : codes) c = alphabet[random.below(8)];
        const UTF16Text wide = utf16Of(codes);
        const std::string text = utf8Of(codes);
        const String string = over(wide);
        std::ostringstream stream;
        stream << string;
        EXPECT_EQ(stream.str(), text);
        EXPECT_TRUE(string == text);
        EXPECT_FALSE(string == text + "a");
        EXPECT_FALSE(string == text.substr(0, text.size() - 1) + "b");
        EXPECT_EQ(string.getData()->getPrivateBuffer<unsigned char>(), nullptr);
    }
    const std::string pair = utf8Of({'a', 0x1F600});
    const String halved = over(pair);
    halved.getData()->getTerminatedBuffer<UTF16Char>(); // holds the second surrogate only
    EXPECT_TRUE(halved == pair);
}

TEST(Interop, EditedTextIsReadInUTF8) {
    auto block = std::make_unique<unsigned char[]>(6);
    std::memcpy(block.get(), "hello", 6);
    UTF8String string(block.release(), 5, STRING_DATA_DYNAMIC, true);
    string.getData()->getTerminatedBuffer<UTF16Char>(); // stays behind
    string.erase(0, 1);
    string.replace('m', 1, 1);
    const String expected = "emlo"_vs;
    ASSERT_EQ(string, expected);
    EXPECT_TRUE(string == std::string("emlo"));
    EXPECT_EQ(hashOf(string), hashOf(expected));
    std::ostringstream stream;
    stream << string;
    EXPECT_EQ(stream.str(), "emlo");
}

TEST(Interop, WritesTheTextOfARecordWithMalformedBytes) {
    const UTF16Char units[] = {0xDBC0, 0xDC00, 'a', 0};
    const String string(units);
    string.getData()->getBuffer<unsigned char>(); // malformed bytes
    std::ostringstream stream;
    stream << std::setw(3) << string;
    EXPECT_EQ(stream.str(), " \xF4\x80\x80\x80"
                            "a");
    EXPECT_TRUE(string == std::string("\xF4\x80\x80\x80"
                                      "a"));
}

TEST(Interop, ANullStringTakesTheWidthOfItsField) {
    std::ostringstream stream;
    stream << std::setw(3) << String() << 'x';
    EXPECT_EQ(stream.str(), "   x");
}

TEST(Interop, AWidthCountsCodePoints) {
    const UTF16Text wide = utf16Of({0xE9, 0x1F600, 0});
    const struct {
        String text;
        const char* expected;
    } rows[] = {
        {"abc"_vs, "...abc|"},
        {"\xC3\xA9t\xC3\xA9"_vs, "...\xC3\xA9t\xC3\xA9|"},
        {"\xF0\x9F\x98\x80"_vs, ".....\xF0\x9F\x98\x80|"},
        {"a\xC0\x80"_vs, "....a\xC0\x80|"},
        {over(wide), "...\xC3\xA9\xF0\x9F\x98\x80\xC0\x80|"},
        {"longer than the field \xC3\xA9"_vs, "longer than the field \xC3\xA9|"},
    };
    for (const auto& row : rows) {
        std::ostringstream stream;
        stream << std::setfill('.') << std::setw(6) << row.text << '|';
        EXPECT_EQ(stream.str(), row.expected);
    }
    std::ostringstream left;
    left << std::left << std::setfill('.') << std::setw(3) << "\xC3\xA9"_vs << '|';
    EXPECT_EQ(left.str(), "\xC3\xA9..|");
}

TEST(Interop, StandardStringsMakeNoStringInAComparison) {
    const std::string text = "door";
    const String string = "door"_vs;
    string.getData()->getTerminatedBuffer<UTF16Char>();
    EXPECT_EQ(allocationsDuring([&] { EXPECT_TRUE(string == text && text == string && !(text != string)); }), 0u);
}

TEST(Interop, RangesOfBytes) {
    const UTF16Text wide = utf16Of({'a', 0xE9, 0x20AC});
    for (const String& string : {over(wide), "a\xC3\xA9\xE2\x82\xAC"_vs}) {
        std::string found;
        for (const unsigned char byte : bytes(string)) found.push_back(static_cast<char>(byte));
        EXPECT_EQ(found, "a\xC3\xA9\xE2\x82\xAC");
        EXPECT_EQ(bytes(string).size(), 6u);
        EXPECT_EQ(view(string), found);
    }
    const String null, empty = ""_vs;
    EXPECT_TRUE(bytes(null).empty() && view(null).empty() && bytes(empty).empty());
    EXPECT_EQ(bytes(null).begin(), bytes(null).end());
}

TEST(Interop, LiteralsAreTerminatedTextsThatNobodyCopies) {
    const String bytes = "abc"_vs, units = VORN_UTF16("abc"_vs);
    const StringDataBufferInfo& info8 = bytes.getData()->getBufferInfo<unsigned char>();
    const StringDataBufferInfo& info16 = units.getData()->getBufferInfo<UTF16Char>();
    for (const StringDataBufferInfo* info : {&info8, &info16}) {
        EXPECT_EQ(info->m_length, 3u);
        EXPECT_EQ(info->m_nullTerminated, 1u);
        EXPECT_EQ(info->m_allocationType, STRING_DATA_STATIC);
    }
    const unsigned char* const buffer = bytes.getData()->getPrivateBuffer<unsigned char>();
    EXPECT_EQ(bytes.getData()->getTerminatedBuffer<unsigned char>(), buffer);
}

TEST(Interop, StreamsWriteUTF8) {
    const UTF16Text wide = utf16Of({'a', 0x20AC});
    const String string = over(wide);
    std::ostringstream stream;
    stream << string << '|' << String() << '|' << "door"_vs;
    EXPECT_EQ(stream.str(), "a\xE2\x82\xAC||door");
    EXPECT_EQ(string.getData()->getPrivateBuffer<unsigned char>(), nullptr);
}

TEST(Interop, HashAgreesWithEqualityInAllForms) {
    Random random(12);
    const unsigned int alphabet[] = {'a', 'b', 0, 0xE9, 0x20AC, 0x10000, 0x40000};
    const unsigned int sizes[] = {2, 3, 5, 7};
    for (int round = 0; round < repetitions(5000); ++round) {
        const unsigned int size = sizes[random.below(4)];
        Codes codes(random.below(5));
        for (unsigned int& c : codes) c = alphabet[random.below(size)];
        Codes other = codes;
        if (random.below(2)) other.push_back(alphabet[random.below(size)]);
        std::vector<String> forms;
        const std::string utf8[] = {utf8Of(codes), utf8Of(other)};
        const UTF16Text utf16[] = {utf16Of(codes), utf16Of(other)};
        for (int i = 0; i < 2; ++i) {
            forms.push_back(over(utf8[i]));
            forms.push_back(over(utf16[i]));
            forms.push_back(over(utf8[i]));
            forms.push_back(over(utf16[i]));
            try {
                forms[forms.size() - 2].getData()->getTerminatedBuffer<UTF16Char>();
                if (utf8[i].find('\xC0') == std::string::npos) forms.back().getCString();
            } catch (const Exception<2>&) { // not every text can be converted
            }
        }
        for (const String& a : forms)
            for (const String& b : forms)
                ASSERT_TRUE(a != b || std::hash<String>()(a) == std::hash<String>()(b)) << utf8[0] << " " << utf8[1];
    }
    EXPECT_EQ(std::hash<String>()(String()), std::hash<String>()(String()));
}

TEST(Interop, HashReadsTheBufferThatDecidesEquality) {
    // The conversion of this text to UTF-8 is corrupt at its end.
    const UTF16Text null = utf16Of({'a', 0});
    const String corrupt = over(null);
    corrupt.getCString();
    ASSERT_EQ(corrupt, over(null));
    EXPECT_EQ(hashOf(corrupt), hashOf(over(null)));
    // The conversion of this text to UTF-16 contains second surrogates only.
    const std::string pair = utf8Of({'a', 0x1F600});
    const String halved = over(pair);
    halved.getData()->getTerminatedBuffer<UTF16Char>();
    ASSERT_EQ(halved, over(pair));
    EXPECT_EQ(hashOf(halved), hashOf(over(pair)));
}

TEST(Interop, HashDistinguishesTexts) {
    std::unordered_set<std::size_t> hashes;
    std::unordered_set<String> strings;
    std::vector<std::string> texts;
    for (int i = 0; i < 5000; ++i) texts.push_back("text " + std::to_string(i));
    for (const std::string& text : texts) {
        hashes.insert(hashOf(over(text)));
        strings.insert(over(text));
        strings.insert(over(text));
    }
    EXPECT_EQ(hashes.size(), texts.size());
    EXPECT_EQ(strings.size(), texts.size());
    EXPECT_EQ(strings.count(over(texts[7])), 1u);
    const UTF16Text wide(texts[7].begin(), texts[7].end());
    EXPECT_EQ(strings.count(over(wide)), 1u);
}

} // namespace
