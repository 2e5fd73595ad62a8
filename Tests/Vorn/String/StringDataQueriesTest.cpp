#include "Vorn/String/String.h"

#include "Support/Random.h"
#include "Support/Report.h"
#include "Support/StringDataProbe.h"
#include "Support/Texts.h"

#include <gtest/gtest.h>

namespace {

using namespace Vorn;

using Byte = unsigned char;

const signed char* needleOf(const std::string& text) { return reinterpret_cast<const signed char*>(text.c_str()); }

TEST(StringQueries, RefuseNullAndEmptyNeedles) {
    const std::string text = "abc";
    const UTF16Text wide = VORN_UTF16("abc");
    const String noBuffer(VornPrivate::StringDataProbe::makeNull());
    const signed char empty[] = {0};
    for (const String& string : {over(text), over(wide), noBuffer, String::getEmptyString()}) {
        const StringData& data = *string.getData();
        for (const signed char* needle : {static_cast<const signed char*>(nullptr), &empty[0]}) {
            expectRaises<4>([&] { data.equals(needle); }, "Invalid ASCII string!", "Vorn::StringData::equals");
            expectRaises<4>([&] { data.startsWith(needle); }, "Invalid ASCII string!", "Vorn::StringData::startsWith");
            expectRaises<4>([&] { data.endsWith(needle); }, "Invalid ASCII string!", "Vorn::StringData::endsWith");
            expectRaises<4>([&] { data.contains(needle); }, "Invalid string!", "Vorn::StringData::contains");
        }
        const char* const none = nullptr;
        expectRaises<4>([&] { string.equals(""); }, "Invalid ASCII string!", "Vorn::StringData::equals");
        expectRaises<4>([&] { string.startsWith(none); }, "Invalid ASCII string!", "Vorn::StringData::startsWith");
        expectRaises<4>([&] { string.endsWith(""); }, "Invalid ASCII string!", "Vorn::StringData::endsWith");
        expectRaises<4>([&] { string.contains(none); }, "Invalid string!", "Vorn::StringData::contains");
        expectRaises<4>([&] { data.count(static_cast<signed char>(0x80)); }, "Invalid ASCII character!",
                        "Vorn::StringData::count");
        expectRaises<4>([&] { string.count(static_cast<char>(0xFF)); }, "Invalid ASCII character!",
                        "Vorn::StringData::count");
    }
}

TEST(StringQueries, OfANullStringLookAtNoArgument) {
    const String null;
    const char* const none = nullptr;
    const signed char* const noneSigned = nullptr;
    EXPECT_FALSE(null.equals(none) || null.startsWith(none) || null.endsWith(none) || null.contains(none));
    EXPECT_FALSE(null.equals(noneSigned) || null.startsWith(noneSigned));
    EXPECT_FALSE(null.endsWith(noneSigned) || null.contains(noneSigned));
    EXPECT_FALSE(null.endsWith("a"));
    EXPECT_EQ(null.count(static_cast<char>(0x80)), 0u);
    EXPECT_EQ(null.count(static_cast<signed char>(-1)), 0u);
    EXPECT_EQ(null.getUnicodeLength(), 0u);
    EXPECT_EQ(null.getUnicodeCharAt(0), NPOS);
}

TEST(StringQueries, OfARecordWithoutABuffer) {
    const String null(VornPrivate::StringDataProbe::makeNull());
    EXPECT_FALSE(null.equals("a") || null.startsWith("a") || null.endsWith("a") || null.contains("a"));
    EXPECT_EQ(null.count('a'), 0u);
    EXPECT_EQ(null.getUnicodeLength(), 0u);
    EXPECT_EQ(null.getUnicodeCharAt(0), NPOS);
    EXPECT_EQ(null.getUnicodeCharAt(-1), NPOS);
}

// The plain meaning of each question, for texts and needles of bytes.
bool steppingFind(const std::string& text, const std::string& needle) {
    for (std::size_t i = 0; i + needle.size() <= text.size(); i += needle.size())
        if (text.compare(i, needle.size(), needle) == 0) return true;
    return false;
}

TEST(StringQueries, OfAllShortTextsAndNeedles) {
    std::vector<std::string> texts{""};
    for (std::size_t i = 0; i < texts.size(); ++i)
        if (texts[i].size() < 5)
            for (const char c : {'a', 'b'}) texts.push_back(texts[i] + c);
    for (const std::string& text : texts) {
        const UTF16Text wide(text.begin(), text.end());
        const String terminated = over(text), open(bytesOf(text), lengthOf(text)), utf16 = over(wide);
        const String openUTF16(wide.c_str(), lengthOf(wide));
        for (const String& string : {terminated, open, utf16, openUTF16}) {
            for (const std::string& needle : texts) {
                if (needle.empty() || needle.size() > 3) continue;
                SCOPED_TRACE(text + " / " + needle);
                const bool shorter = text.size() < needle.size();
                const bool ends = !shorter && text.compare(text.size() - needle.size(), needle.size(), needle) == 0;
                const bool found = text.find(needle) != std::string::npos;
                const bool isTerminated = string.getData() == terminated.getData();
                EXPECT_EQ(string.equals(needle.c_str()), text == needle);
                EXPECT_EQ(string.startsWith(needle.c_str()), text.compare(0, needle.size(), needle) == 0);
                EXPECT_EQ(string.endsWith(needle.c_str()), !shorter && !ends);
                EXPECT_EQ(string.contains(needle.c_str()), isTerminated ? found : steppingFind(text, needle));
                EXPECT_EQ(string.contains(needleOf(needle)), string.contains(needle.c_str()));
                EXPECT_EQ(string.equals(needleOf(needle)), string.equals(needle.c_str()));
                EXPECT_EQ(string.startsWith(needleOf(needle)), string.startsWith(needle.c_str()));
                EXPECT_EQ(string.endsWith(needleOf(needle)), string.endsWith(needle.c_str()));
            }
            for (const char c : {'a', 'b', 'c', '\0'}) {
                EXPECT_EQ(string.count(c), std::count(text.begin(), text.end(), c));
                EXPECT_EQ(string.count(static_cast<signed char>(c)), string.count(c));
            }
        }
    }
}

TEST(StringQueries, ANeedleByteAbove127MatchesNothing) {
    const std::string text = "\xC3\xA9";
    const UTF16Text wide = {0xC3, 0xA9};
    for (const String& string : {String(bytesOf(text), 2), over(wide)}) {
        EXPECT_FALSE(string.equals(text.c_str()));
        EXPECT_FALSE(string.startsWith("\xC3"));
        EXPECT_TRUE(string.endsWith("\xA9"));
        EXPECT_FALSE(string.contains(text.c_str()));
    }
    EXPECT_TRUE(over(text).contains("\xA9")) << "a plain search in terminated UTF-8";
}

TEST(StringQueries, ContainsAnswersOtherwiseOnceTheTextIsTerminated) {
    const std::string text = "abcd";
    const String string(bytesOf(text), 3);
    EXPECT_TRUE(string.contains("c"));
    EXPECT_FALSE(string.contains("bc"));
    string.getCString();
    EXPECT_FALSE(string.contains("bc")) << "the first call copies and does not flag it";
    string.getCString();
    EXPECT_TRUE(string.contains("bc"));
}

TEST(StringQueries, PreferUTF8) {
    const std::string text = "abc";
    const String string = over(text);
    const UTF16Char wrong[] = {'x', 'y', 'z', 0};
    VornPrivate::StringDataProbe::setBuffer<UTF16Char>(*string.getData(), wrong);
    EXPECT_TRUE(string.equals("abc") && string.startsWith("ab") && string.contains("bc") && !string.endsWith("bc"));
    EXPECT_EQ(string.count('a'), 1u);
}

TEST(StringQueries, CountSeesZeroUnitsInUTF16Only) {
    const UTF16Text wide = utf16Of({0, 'a', 0, 0});
    const std::string text = utf8Of({0, 'a', 0, 0});
    EXPECT_EQ(String(wide.c_str(), 4).count('\0'), 2u) << "the last one is the terminator";
    EXPECT_EQ(over(wide).count('\0'), 3u);
    EXPECT_EQ(over(text).count('\0'), 0u);
    const UTF16Text high = {0x161, 0x61, 0x6161};
    EXPECT_EQ(over(high).count('a'), 1u);
}

TEST(StringQueries, UnicodeLengthCountsCharacters) {
    const Codes codes[] = {{}, {'a'}, {'a', 0xE9, 0x20AC}, {0, 0}, {'a', 0x10000, 'b'}, {0x1F600, 0x1F600}};
    for (const Codes& text : codes) {
        const std::string utf8 = utf8Of(text);
        const UTF16Text utf16 = utf16Of(text);
        EXPECT_EQ(over(utf8).getUnicodeLength(), text.size());
        EXPECT_EQ(over(utf16).getUnicodeLength(), text.size());
        EXPECT_EQ(over(utf8).getData()->getUnicodeLength(), text.size());
    }
}

TEST(StringQueries, UnicodeLengthTakesTheUTF16Buffer) {
    const std::string text = "a\xF0\x90\x80\x80";
    const String both = over(text);
    both.getData()->getTerminatedBuffer<UTF16Char>();
    expectRaises<2>([&] { both.getUnicodeLength(); }, "c != 0xFDD2 : unmatched second UTF-16 surrogate detected!!",
                    "Vorn::stringDataGetUnicodeLength");
}

// The character at an index by the plain rules; `units` where a pair cannot be read forwards and counts twice
// backwards.
unsigned int referenceCharAt(const Codes& codes, int index, bool units) {
    if (!units) {
        const int size = static_cast<int>(codes.size());
        if (index >= size || index < -size) return NPOS;
        return codes[static_cast<std::size_t>(index < 0 ? index + size : index)];
    }
    if (index >= 0) {
        for (std::size_t i = 0; i < codes.size() && codes[i] < 0x10000; ++i)
            if (static_cast<int>(i) == index) return codes[i];
        return NPOS;
    }
    int place = 0;
    for (std::size_t i = codes.size(); i > 0; --i) {
        place -= codes[i - 1] < 0x10000 ? 1 : 2;
        if (place == index) return codes[i - 1];
    }
    return NPOS;
}

TEST(StringQueries, UnicodeCharAtOfRandomTexts) {
    Random random(2304);
    const unsigned int alphabet[] = {'a', 'z', 0x7F, 0, 0xE9, 0x7FF, 0x800, 0xFFFD, 0x10000, 0x10FFFD};
    const unsigned int sizes[] = {3, 8, 10};
    for (int round = 0; round < repetitions(20000); ++round) {
        const unsigned int size = sizes[random.below(3)];
        Codes codes(random.below(7));
        for (unsigned int& c : codes) c = alphabet[random.below(size)];
        const std::string utf8 = utf8Of(codes);
        const UTF16Text utf16 = utf16Of(codes);
        const String narrow = over(utf8), wide = over(utf16);
        const int limit = static_cast<int>(utf8.size()) + 2;
        for (int index = -limit; index <= limit; ++index) {
            ASSERT_EQ(narrow.getUnicodeCharAt(index), referenceCharAt(codes, index, false)) << index;
            ASSERT_EQ(wide.getUnicodeCharAt(index), referenceCharAt(codes, index, true)) << index;
        }
        EXPECT_EQ(narrow.getUnicodeCharAt(0x7FFFFFFF), NPOS);
        EXPECT_EQ(wide.getUnicodeCharAt(-0x7FFFFFFF - 1), NPOS);
        EXPECT_EQ(narrow.getUnicodeCharAt(-0x7FFFFFFF - 1), NPOS);
    }
}

TEST(StringQueries, UnicodeCharAtEndsTheWalkOnBrokenText) {
    struct Row {
        const char* name;
        std::string text;
        int index;
        unsigned int expected;
    };
    const Row rows[] = {
        {"overlong four bytes forwards", "\xF0\x80\x80\x80", 0, 0},
        {"overlong four bytes backwards", "\xF0\x80\x80\x80", -1, NPOS},
        {"lone lead", "a\xC3", -1, NPOS},
        {"lead that runs out", "a\xC3", 1, NPOS},
        {"lone trail", "\x80", -1, NPOS},
        {"trail behind ASCII", "a\x80", -1, NPOS},
        {"trail behind ASCII, beyond it", "ba\x80", -2, NPOS},
        {"wrong lead for one", "\xE2\x80", -1, NPOS},
        {"wrong lead for two", "\xC3\x80\x80", -1, NPOS},
        {"wrong lead for three", "\xE2\x80\x80\x80", -1, NPOS},
        {"four trails", "\xF0\x80\x80\x80\x80", -1, NPOS},
        {"zero byte", std::string("a\0", 2), -1, NPOS},
        {"overlong two", "\xC1\xBF", -1, NPOS},
        {"overlong three", "\xE0\x9F\xBF", -1, NPOS},
        {"surrogate", "\xED\xA0\x80", -1, NPOS},
        {"overlong four", "\xF0\x8F\xBF\xBD", -1, NPOS},
        {"noncharacter", "\xF4\x8F\xBF\xBE", -1, NPOS},
        {"noncharacter forwards",
         "\xEF\xBF\xBE"
         "a",
         1, NPOS},
        {"good behind bad",
         "\x80"
         "a",
         -1, 'a'},
    };
    static constexpr unsigned char valid[] = "x";
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        StringData data(valid, 2, STRING_DATA_STATIC);
        VornPrivate::StringDataProbe::setBuffer<Byte>(data, bytesOf(row.text));
        VornPrivate::StringDataProbe::info<Byte>(data).m_length = lengthOf(row.text);
        VornPrivate::StringDataProbe::setCharset(data, STRING_DATA_UNICODE);
        EXPECT_EQ(data.getUnicodeCharAt(row.index), row.expected);
    }

    const UTF16Char validUnits[] = {'x', 0};
    const UTF16Char units[] = {'a', 0xDC00, 'b', 0xD800, 'c', 0xFFFE, 'd', 0xD800, 0xDC00, 'e', 0};
    StringData data(validUnits, 2, STRING_DATA_STATIC);
    VornPrivate::StringDataProbe::setBuffer<UTF16Char>(data, units);
    VornPrivate::StringDataProbe::setCharset(data, STRING_DATA_UNICODE);
    const auto charAt = [&](unsigned int length, int index) {
        VornPrivate::StringDataProbe::info<UTF16Char>(data).m_length = length;
        return data.getUnicodeCharAt(index);
    };
    EXPECT_EQ(charAt(10, -1), unsigned('e'));
    EXPECT_EQ(charAt(10, -2), NPOS);
    EXPECT_EQ(charAt(10, -3), 0x10000u);
    EXPECT_EQ(charAt(10, -4), unsigned('d'));
    EXPECT_EQ(charAt(10, -5), NPOS) << "a noncharacter";
    EXPECT_EQ(charAt(5, -1), unsigned('c'));
    EXPECT_EQ(charAt(5, -2), NPOS) << "a first surrogate";
    EXPECT_EQ(charAt(3, -2), NPOS) << "a second surrogate alone";
    EXPECT_EQ(charAt(3, -3), NPOS) << "behind it";
    EXPECT_EQ(charAt(10, 1), NPOS);
}

TEST(StringQueries, FetchersAssertCharsetAndBuffer) {
    using VornPrivate::StringDataProbe;
    const std::string text = "abc";
    const UTF16Text wide = VORN_UTF16("abc");
    const String narrow = over(text), utf16 = over(wide);
    StringDataProbe::setCharset(*utf16.getData(), STRING_DATA_UCS2);
    expectRaises<2>([&] { StringDataProbe::getASCIIChar<UTF16Char>(*utf16.getData(), 0); },
                    "m_charset == STRING_DATA_ASCII : string is not ASCII!",
                    "Vorn::StringData::getASCIICharFromBuffer");
    expectRaises<2>([&] { StringDataProbe::getASCIIChar<UTF16Char>(*narrow.getData(), 0); },
                    "getPrivateBuffer<CharType>() : buffer is null!", "Vorn::StringData::getASCIICharFromBuffer");
    expectRaises<2>([&] { StringDataProbe::getUCS2Char(*narrow.getData(), 0); },
                    "m_charset == STRING_DATA_UCS2 : string is not UCS-2!",
                    "Vorn::StringData::getUCS2CharFromUTF16Buffer");
    StringDataProbe::setCharset(*narrow.getData(), STRING_DATA_UCS2);
    expectRaises<2>([&] { StringDataProbe::getUCS2Char(*narrow.getData(), 0); },
                    "m_UTF16Buffer : UTF-16 buffer is null!", "Vorn::StringData::getUCS2CharFromUTF16Buffer");
    for (const int index : {0, 5}) {
        expectRaises<2>([&] { StringDataProbe::getUTF32Char<UTF16Char>(*narrow.getData(), index); },
                        "getPrivateBuffer<CharType>() : UTF-8 buffer is null!",
                        "Vorn::StringData::getUTF32CharFromBuffer");
        expectRaises<2>([&] { StringDataProbe::getUTF32Char<Byte>(*utf16.getData(), index); },
                        "getPrivateBuffer<CharType>() : UTF-8 buffer is null!",
                        "Vorn::StringData::getUTF32CharFromBuffer");
    }
}

} // namespace
