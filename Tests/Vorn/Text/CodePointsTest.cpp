#include "Vorn/Text/CodePoints.h"

#include "Support/RandomTexts.h"
#include "Vorn/String/UTF8String.h"
#include "Vorn/Text/MakeString.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <ranges>
#include <string>
#include <vector>

namespace {

using namespace Vorn;

// All operations on one text, against the reference.
template <class Text>
void expectDecoded(const Text& text) {
    SCOPED_TRACE("units: " + inHex(text));
    const std::vector<reference::DecodedCharacter> expected = reference::decodedCharacters(text);
    const CodePoints codes = codePoints(text);

    std::vector<reference::DecodedCharacter> actual;
    for (auto at = codes.begin(); at != codes.end(); ++at)
        actual.push_back({*at, at.offset(), at.length(), at.isMalformed()});
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(actual[i].code, expected[i].code) << i;
        EXPECT_EQ(actual[i].offset, expected[i].offset) << i;
        EXPECT_EQ(actual[i].units, expected[i].units) << i;
        EXPECT_EQ(actual[i].isMalformed, expected[i].isMalformed) << i;
    }

    std::u32string backwards;
    for (auto at = codes.rbegin(); at != codes.rend(); ++at) backwards.push_back(*at);
    std::reverse(backwards.begin(), backwards.end());
    EXPECT_EQ(inHex(backwards), inHex(reference::decoded(text)));

    const auto count = static_cast<unsigned int>(expected.size());
    EXPECT_EQ(codePointCount(text), count);
    for (unsigned int n = 0; n < count; ++n) {
        EXPECT_EQ(offsetOfCodePoint(text, n), expected[n].offset) << n;
        EXPECT_EQ(codePointAt(text, n), std::optional<UTF32Char>(expected[n].code)) << n;
    }
    EXPECT_EQ(offsetOfCodePoint(text, count), text.size());
    EXPECT_EQ(offsetOfCodePoint(text, count + 1), NOT_FOUND);
    EXPECT_EQ(offsetOfCodePoint(text, NOT_FOUND), NOT_FOUND);
    EXPECT_EQ(codePointAt(text, count), std::nullopt);

    const auto length = static_cast<unsigned int>(text.size());
    bool isPlain = true;
    for (unsigned int n = 0; n < count; ++n) {
        const unsigned int start = expected[n].offset;
        const unsigned int end = n + 1 < count ? expected[n + 1].offset : length;
        for (unsigned int offset = start; offset < end; ++offset) {
            EXPECT_EQ(isBoundary(text, offset), offset == start) << offset;
            EXPECT_EQ(boundaryAtOrBefore(text, offset), start) << offset;
            EXPECT_EQ(boundaryAtOrBehind(text, offset), offset == start ? start : end) << offset;
        }
        isPlain &= expected[n].code < 0x80;
    }
    EXPECT_TRUE(isBoundary(text, length));
    EXPECT_FALSE(isBoundary(text, length + 1));
    for (const unsigned int offset : {length, length + 1, NOT_FOUND}) {
        EXPECT_EQ(boundaryAtOrBefore(text, offset), length);
        EXPECT_EQ(boundaryAtOrBehind(text, offset), length);
    }
    EXPECT_EQ(isASCII(text), isPlain);
}

TEST(CodePoints, DecodesEveryBoundary) {
    for (const char32_t code : BOUNDARY_CODES) {
        const std::u32string codes = {U'x', code, U'y'};
        expectDecoded(reference::encodedUTF8(codes));
        expectDecoded(reference::encodedUTF16(codes));
    }
    expectDecoded(std::string("\xEF\xB7\x90\xEF\xBF\xBF")); // noncharacters decode as they are
    EXPECT_EQ(codePointAt("\xEF\xBF\xBF", 0), std::optional<UTF32Char>(0xFFFF));
    EXPECT_EQ(codePointAt(u"\xFFFE", 0), std::optional<UTF32Char>(0xFFFE));
}

TEST(CodePoints, DecodesEveryPairOfBytesAndEveryLeadByte) {
    for (unsigned int first = 0; first < 256; ++first) {
        for (unsigned int second = 0; second < 256; ++second) {
            const std::string two = {static_cast<char>(first), static_cast<char>(second)};
            if (first >= 0xC0 && (second & 0x0F) == 0) expectDecoded(two + "\x80\x80\x80");
            if (second % 16 == 15) expectDecoded(two);
        }
    }
}

TEST(CodePoints, DecodesMalformedTextAsTheReferenceDoes) {
    Random random(1);
    for (int i = 0; i < repetitions(2000); ++i) {
        expectDecoded(randomBytes(random, 12));
        expectDecoded(randomUnits(random, 12));
        if (HasFatalFailure()) return;
    }
}

TEST(CodePoints, FindsTheFirstCharacterBeyondASCII) {
    for (unsigned int length = 0; length < 40; ++length) {
        for (unsigned int at = 0; at <= length; ++at) {
            std::u32string codes(length, U'x');
            if (at < length) codes[at] = U'\0';
            EXPECT_TRUE(isASCII(reference::encodedUTF8(codes))) << length << " " << at;
            EXPECT_TRUE(isASCII(reference::encodedUTF16(codes))) << length << " " << at;
            EXPECT_TRUE(isASCII(makeString(codes))) << length << " " << at;
            if (at == length) continue;
            for (const char32_t code : {U'\x80', U'\u0400', U'\U00010000'}) {
                codes[at] = code;
                EXPECT_FALSE(isASCII(reference::encodedUTF8(codes))) << length << " " << at;
                EXPECT_FALSE(isASCII(reference::encodedUTF16(codes))) << length << " " << at;
            }
        }
    }
}

TEST(CodePoints, CountsLongTexts) {
    Random random(2);
    for (unsigned int i = 0; i < 40; ++i) {
        const std::u32string codes = randomCodes(random, 400);
        const auto count = static_cast<unsigned int>(codes.size());
        const std::string bytes = reference::encodedUTF8(codes);
        const std::u16string units = reference::encodedUTF16(codes);
        EXPECT_EQ(codePointCount(bytes), count);
        EXPECT_EQ(codePointCount(units), count);
        EXPECT_EQ(offsetOfCodePoint(bytes, count), bytes.size());
        EXPECT_EQ(offsetOfCodePoint(units, count / 2), reference::encodedUTF16(codes.substr(0, count / 2)).size());
        EXPECT_EQ(offsetOfCodePoint(bytes, count / 2), reference::encodedUTF8(codes.substr(0, count / 2)).size());
    }
}

TEST(CodePoints, ReadsStringsInBothEncodings) {
    const String bytes("a\xC0\x80\xF0\x9F\x98\x80");
    const UTF16Char units[] = {'a', 0, 0xD83D, 0xDE00};
    const String wide(units, 4);
    for (const String& s : {bytes, wide, String(UTF8String(bytes))}) {
        EXPECT_EQ(codePointCount(s), 3u);
        EXPECT_EQ(codePointAt(s, 1), std::optional<UTF32Char>(0u));
        EXPECT_EQ(codePointAt(s, 2), std::optional<UTF32Char>(0x1F600u));
    }
    EXPECT_EQ(codePointCount(String()), 0u);
    EXPECT_TRUE(codePoints("").empty());
}

TEST(CodePoints, WorksWithStandardAlgorithms) {
    const std::string text = "h\xC3\xA9llo w\xC3\xB6rld";
    const CodePoints codes = codePoints(text);
    EXPECT_EQ(std::find(codes.begin(), codes.end(), 0xF6u).offset(), 8u);
    EXPECT_EQ(std::count(codes.begin(), codes.end(), UTF32Char('l')), 3);
    EXPECT_EQ(std::distance(codes.begin(), codes.end()), 11);
    EXPECT_EQ(*std::prev(codes.end()), UTF32Char('d'));
    std::u32string reversed;
    std::reverse_copy(codes.begin(), codes.end(), std::back_inserter(reversed));
    EXPECT_TRUE(reversed == U"dlröw olléh");
    EXPECT_TRUE(std::is_sorted(codePoints("abc").begin(), codePoints("abc").end()));
    static_assert(std::ranges::bidirectional_range<CodePoints>);
    static_assert(std::ranges::common_range<CodePoints>);
    EXPECT_EQ(std::ranges::count_if(codes, [](UTF32Char c) { return c > 0x7F; }), 2);
}

template <class Text>
concept HasCodePoints = requires(Text&& text) {
    codePoints(static_cast<Text&&>(text));
};

TEST(CodePoints, RefusesTemporaryTexts) {
    EXPECT_TRUE(HasCodePoints<std::string&>);
    EXPECT_TRUE(HasCodePoints<const String&>);
    EXPECT_TRUE(HasCodePoints<const char*>);
    EXPECT_TRUE(HasCodePoints<std::string_view>);
    EXPECT_FALSE(HasCodePoints<std::string>);
    EXPECT_FALSE(HasCodePoints<String>);
    EXPECT_FALSE(HasCodePoints<UTF8String>);
}

} // namespace
