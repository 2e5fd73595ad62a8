#include "Vorn/Text/TextSearch.h"

#include "Support/AllocationCounter.h"
#include "Support/RandomTexts.h"
#include "Vorn/String/UTF8String.h"
#include "Vorn/Text/MakeString.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using namespace Vorn;
using Characters = std::vector<reference::DecodedCharacter>;

// A text in either encoding and its characters.
struct Sample {
    std::string bytes;
    std::u16string units;
    bool isUTF8;
    Characters characters;

    TextView view() const { return isUTF8 ? TextView(bytes) : TextView(units); }
    unsigned int length() const { return static_cast<unsigned int>(isUTF8 ? bytes.size() : units.size()); }
    unsigned int offsetOf(std::size_t i) const { return i < characters.size() ? characters[i].offset : length(); }
};

Sample sampleOf(const std::string& bytes) { return {bytes, {}, true, reference::decodedCharacters(bytes)}; }
Sample sampleOf(const std::u16string& units) { return {{}, units, false, reference::decodedCharacters(units)}; }

unsigned int folded(unsigned int code, bool isFolding) {
    return isFolding && code >= 'A' && code <= 'Z' ? code + 32 : code;
}

bool matchesAt(const Characters& text, std::size_t at, const Characters& needle, bool isFolding = false) {
    if (needle.size() > text.size() - at) return false;
    for (std::size_t k = 0; k < needle.size(); ++k) {
        if (needle[k].isMalformed || text[at + k].isMalformed) return false;
        if (folded(needle[k].code, isFolding) != folded(text[at + k].code, isFolding)) return false;
    }
    return true;
}

// The offsets of all occurrences.
std::vector<unsigned int> occurrences(const Sample& text, const Sample& needle, bool isFolding = false) {
    std::vector<unsigned int> offsets;
    for (std::size_t i = 0; i <= text.characters.size(); ++i)
        if (matchesAt(text.characters, i, needle.characters, isFolding)) offsets.push_back(text.offsetOf(i));
    return offsets;
}

unsigned int firstFrom(const std::vector<unsigned int>& offsets, unsigned int from) {
    const auto at = std::lower_bound(offsets.begin(), offsets.end(), from);
    return at == offsets.end() ? NOT_FOUND : *at;
}

unsigned int lastBefore(const std::vector<unsigned int>& offsets, unsigned int before) {
    const auto at = std::lower_bound(offsets.begin(), offsets.end(), before);
    return at == offsets.begin() ? NOT_FOUND : at[-1];
}

bool isInSet(const reference::DecodedCharacter& character, const Characters& set) {
    return !character.isMalformed && std::any_of(set.begin(), set.end(), [&](const auto& other) {
        return !other.isMalformed && other.code == character.code;
    });
}

// All searches for one needle, against the reference.
void expectSearches(const Sample& text, const Sample& needle) {
    const TextView t = text.view(), n = needle.view();
    SCOPED_TRACE("text: " + (text.isUTF8 ? inHex(text.bytes) : inHex(text.units)) +
                 "needle: " + (needle.isUTF8 ? inHex(needle.bytes) : inHex(needle.units)));
    const std::vector<unsigned int> all = occurrences(text, needle), alike = occurrences(text, needle, true);
    EXPECT_EQ(find(t, n), firstFrom(all, 0));
    EXPECT_EQ(findLast(t, n), lastBefore(all, NOT_FOUND));
    EXPECT_EQ(contains(t, n), !all.empty());
    EXPECT_EQ(findIgnoringASCIICase(t, n), firstFrom(alike, 0));
    EXPECT_EQ(containsIgnoringASCIICase(t, n), !alike.empty());
    for (unsigned int offset = 0; offset <= text.length() + 1; ++offset) {
        EXPECT_EQ(findNext(t, n, offset), firstFrom(all, offset)) << offset;
        EXPECT_EQ(findPrevious(t, n, offset), lastBefore(all, offset)) << offset;
        EXPECT_EQ(findNextIgnoringASCIICase(t, n, offset), firstFrom(alike, offset)) << offset;
    }

    unsigned int counted = 0;
    const std::size_t step = needle.characters.empty() ? 1 : needle.characters.size();
    for (std::size_t i = 0; i <= text.characters.size();) {
        const bool isMatch = matchesAt(text.characters, i, needle.characters);
        counted += isMatch;
        i += isMatch ? step : 1;
    }
    EXPECT_EQ(count(t, n), counted);

    EXPECT_EQ(startsWith(t, n), matchesAt(text.characters, 0, needle.characters));
    EXPECT_EQ(startsWithIgnoringASCIICase(t, n), matchesAt(text.characters, 0, needle.characters, true));
    const bool fits = needle.characters.size() <= text.characters.size();
    const std::size_t last = text.characters.size() - needle.characters.size();
    EXPECT_EQ(endsWith(t, n), fits && matchesAt(text.characters, last, needle.characters));
    EXPECT_EQ(endsWithIgnoringASCIICase(t, n), fits && matchesAt(text.characters, last, needle.characters, true));

    // The needle as a set.
    std::vector<unsigned int> inSet, outside;
    for (const reference::DecodedCharacter& character : text.characters)
        (isInSet(character, needle.characters) ? inSet : outside).push_back(character.offset);
    EXPECT_EQ(findAnyOf(t, n), firstFrom(inSet, 0));
    EXPECT_EQ(findNoneOf(t, n), firstFrom(outside, 0));
    EXPECT_EQ(findLastAnyOf(t, n), lastBefore(inSet, NOT_FOUND));
    EXPECT_EQ(findLastNoneOf(t, n), lastBefore(outside, NOT_FOUND));
    for (unsigned int offset = 0; offset <= text.length() + 1; ++offset) {
        EXPECT_EQ(findNextAnyOf(t, n, offset), firstFrom(inSet, offset)) << offset;
        EXPECT_EQ(findNextNoneOf(t, n, offset), firstFrom(outside, offset)) << offset;
    }
}

void expectCharacterSearches(const Sample& text, char32_t code) {
    const TextView t = text.view();
    const Sample needle = sampleOf(reference::encodedUTF8(std::u32string(1, code)));
    const std::vector<unsigned int> all = occurrences(text, needle);
    EXPECT_EQ(find(t, code), firstFrom(all, 0));
    EXPECT_EQ(findNext(t, code, 2), firstFrom(all, 2));
    EXPECT_EQ(findLast(t, code), lastBefore(all, NOT_FOUND));
    EXPECT_EQ(findPrevious(t, code, 2), lastBefore(all, 2));
    EXPECT_EQ(contains(t, code), !all.empty());
    EXPECT_EQ(count(t, code), all.size());
    EXPECT_EQ(startsWith(t, code), matchesAt(text.characters, 0, needle.characters));
    EXPECT_EQ(endsWith(t, code),
              !text.characters.empty() && matchesAt(text.characters, text.characters.size() - 1, needle.characters));
}

// A part of a text in either encoding, perhaps in another case or with U+0000 in its other spelling.
Sample partOf(const Sample& text, Random& random) {
    std::u32string codes;
    const auto size = static_cast<unsigned int>(text.characters.size());
    const unsigned int start = random.below(size + 1), length = random.below(4);
    for (unsigned int i = start; i < size && i < start + length; ++i) codes.push_back(text.characters[i].code);
    if (random.below(4) == 0)
        for (char32_t& code : codes)
            if (code >= 'a' && code <= 'z') code -= 32;
    if (random.below(2)) return sampleOf(reference::encodedUTF16(codes));
    std::string bytes = reference::encodedUTF8(codes);
    if (random.below(2))
        for (std::size_t at = 0; (at = bytes.find('\0', at)) != std::string::npos;) bytes.replace(at, 1, "\xC0\x80");
    return sampleOf(bytes);
}

TEST(TextSearch, MatchesTheReferenceOnRandomTexts) {
    Random random(7);
    for (int i = 0; i < repetitions(2500); ++i) {
        const Sample bytes = sampleOf(randomBytes(random, 8)), units = sampleOf(randomUnits(random, 8));
        for (const Sample& text : {bytes, units}) {
            expectSearches(text, partOf(text, random));
            expectSearches(text, i % 2 ? sampleOf(randomBytes(random, 1)) : sampleOf(randomUnits(random, 1)));
            expectCharacterSearches(text, BOUNDARY_CODES[random.below(28)]);
        }
        if (HasFailure()) return;
    }
}

// Few letters, so that needles nearly match everywhere, and long enough for the two-way search.
TEST(TextSearch, FindsInRepetitiveTexts) {
    Random random(8);
    for (int i = 0; i < repetitions(20); ++i) {
        std::u32string codes, part;
        const char32_t letters[] = {U'a', U'b', i % 2 ? U'\u00E9' : U'A'};
        for (unsigned int k = 0; k < 600; ++k) codes.push_back(letters[random.below(8) == 0 ? 1 + random.below(2) : 0]);
        part = codes.substr(random.below(500), 1 + random.below(90));
        if (random.below(2)) part.back() = U'b';
        expectSearches(sampleOf(reference::encodedUTF8(codes)), sampleOf(reference::encodedUTF16(part)));
        expectSearches(sampleOf(reference::encodedUTF16(codes)), sampleOf(reference::encodedUTF8(part)));
        if (HasFailure()) return;
    }
}

TEST(TextSearch, TakesLinearTime) {
    const std::size_t size = 400000;
    const std::string text(size, 'a');
    const std::u16string wide(size, u'a');
    std::string needle(size / 4, 'a'), mirrored(size / 4, 'a');
    needle.back() = 'b';
    mirrored.front() = 'b';
    for (const TextView t : {TextView(text), TextView(wide)}) {
        EXPECT_EQ(find(t, needle), NOT_FOUND);
        EXPECT_EQ(find(t, mirrored), NOT_FOUND);
        EXPECT_EQ(findLast(t, needle), NOT_FOUND);
        EXPECT_EQ(findLast(t, mirrored), NOT_FOUND);
        EXPECT_EQ(findIgnoringASCIICase(t, needle), NOT_FOUND);
        EXPECT_EQ(count(t, "aab"), 0u);
        EXPECT_EQ(count(t, "aa"), size / 2);
        EXPECT_EQ(find(t, std::string(size, 'a')), 0u);
        EXPECT_EQ(find(t, std::string(size + 1, 'a')), NOT_FOUND);
        EXPECT_EQ(findLast(t, std::u16string(size + 1, u'a')), NOT_FOUND);
    }
}

TEST(TextSearch, TakesEachKindOfNeedle) {
    const String text = makeString("path/to/icon.png");
    EXPECT_EQ(find(text, '/'), 4u);
    EXPECT_EQ(find(text, u'/'), 4u);
    EXPECT_EQ(find(text, U'/'), 4u);
    EXPECT_EQ(find(text, UTF32Char(0x2F)), 4u);
    EXPECT_EQ(find(text, 0x2F), 4u);
    EXPECT_EQ(find(text, "to"), 5u);
    EXPECT_EQ(find(text, u"to"), 5u);
    EXPECT_EQ(find(text, u8"to"), 5u);
    EXPECT_EQ(find(text, std::string("to")), 5u);
    EXPECT_EQ(find(text, std::u16string_view(u"to")), 5u);
    EXPECT_EQ(find(text, makeString("to")), 5u);
    EXPECT_EQ(find(text, UTF8String(makeString("to"))), 5u);
    EXPECT_EQ(findLast(text, '/'), 7u);
    EXPECT_EQ(find(text, String()), 0u);
    EXPECT_EQ(find(String(), "x"), NOT_FOUND);
    EXPECT_TRUE(endsWith(text, ".png"));
    EXPECT_TRUE(endsWith(text, u'g'));
    EXPECT_TRUE(startsWith(text, "path"));
    EXPECT_TRUE(contains(text, "icon"));
    EXPECT_EQ(count(text, '/'), 2u);
    EXPECT_TRUE(equalsIgnoringASCIICase(text, u"PATH/to/ICON.png"));
    EXPECT_FALSE(equalsIgnoringASCIICase("\xC3\xA9", "\xC3\x89"));
    EXPECT_EQ(compareIgnoringASCIICase("ABC", u"abd"), -1);
    EXPECT_EQ(compareIgnoringASCIICase("abcd", u"ABC"), 1);
    EXPECT_EQ(compareIgnoringASCIICase("[", "A"), -1); // A counts as a
}

TEST(TextSearch, FindsNoPartOfACharacter) {
    const char* const text = "\xC3\xA9\xC3\xA8";
    EXPECT_EQ(find(text, '\xC3'), NOT_FOUND);
    EXPECT_EQ(find(text, '\xA9'), NOT_FOUND);
    EXPECT_EQ(find(text, "\xC3"), NOT_FOUND);
    EXPECT_EQ(find(text, "\xA9"), NOT_FOUND);
    EXPECT_EQ(count(text, '\xC3'), 0u);
    EXPECT_FALSE(startsWith(text, '\xC3'));
    EXPECT_FALSE(startsWith(text, "\xC3"));
    EXPECT_FALSE(endsWith(text, "\xA8"));
    EXPECT_EQ(find(u"\U0001F600", u"\xD83D"), NOT_FOUND);
    EXPECT_EQ(find(u"\U0001F600", char16_t(0xD83D)), NOT_FOUND);
    EXPECT_EQ(findAnyOf(text, "\xC3"), NOT_FOUND);
    EXPECT_EQ(find("\xFF", 0xFFFD), NOT_FOUND);
    EXPECT_EQ(find("\xFF\xEF\xBF\xBD", 0xFFFD), 1u);
    EXPECT_EQ(find("abc", -1), NOT_FOUND);
    EXPECT_EQ(find("abc", 0x110000), NOT_FOUND);
}

TEST(TextSearch, AllocatesOnlyForLongNeedlesOfAnotherEncoding) {
    const std::string text(5000, 'x');
    const std::u16string shortNeedle(100, u'x'), longNeedle(400, u'x');
    EXPECT_EQ(allocationsDuring([&] {
                  EXPECT_EQ(find(text, text), 0u);
                  EXPECT_EQ(find(text, shortNeedle), 0u);
                  EXPECT_EQ(count(text, "xx"), 2500u);
                  EXPECT_TRUE(startsWith(text, longNeedle));
              }),
              0u);
    EXPECT_EQ(allocationsDuring([&] { EXPECT_EQ(find(text, longNeedle), 0u); }), 1u);
}

} // namespace
