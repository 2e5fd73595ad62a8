#include "Vorn/Text/TextOrder.h"

#include "Support/AllocationCounter.h"
#include "Support/RandomTexts.h"
#include "Vorn/String/UTF8String.h"
#include "Vorn/Text/MakeString.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace {

using namespace Vorn;

// A text in either encoding and what it means.
struct Sample {
    std::string bytes;
    std::u16string units;
    bool isUTF8;
    std::u32string codes;

    TextView view() const { return isUTF8 ? TextView(bytes) : TextView(units); }
};

Sample sampleOf(const std::string& bytes) { return {bytes, {}, true, reference::decoded(bytes)}; }
Sample sampleOf(const std::u16string& units) { return {{}, units, false, reference::decoded(units)}; }

int signOf(int value) { return value < 0 ? -1 : value > 0 ? 1 : 0; }

void expectOrder(const Sample& a, const Sample& b) {
    const int expected = signOf(a.codes.compare(b.codes));
    const auto what = [&] { return "a: " + inHex(a.codes) + "b: " + inHex(b.codes); };
    EXPECT_EQ(compare(a.view(), b.view()), expected) << what();
    EXPECT_EQ(compare(b.view(), a.view()), -expected) << what();
    EXPECT_EQ(equals(a.view(), b.view()), expected == 0) << what();
    if (expected == 0) {
        EXPECT_EQ(hashOfText(a.view()), hashOfText(b.view())) << what();
    }
    EXPECT_EQ(CodePointLess()(a.view(), b.view()), expected < 0) << what();
    EXPECT_EQ(TextEqual()(a.view(), b.view()), expected == 0) << what();
    EXPECT_EQ(ordered(a.view()) < ordered(b.view()), expected < 0) << what();
    EXPECT_EQ(ordered(a.view()) == ordered(b.view()), expected == 0) << what();
    EXPECT_TRUE((ordered(a.view()) <=> ordered(b.view())) == (expected <=> 0)) << what();
}

TEST(TextOrder, OrdersAllPairsOfBoundaries) {
    std::vector<Sample> samples = {sampleOf(std::string()), sampleOf(std::u16string()),
                                   sampleOf(std::string("\xC0\x80")), sampleOf(std::string("\xFF")),
                                   sampleOf(std::u16string(1, 0xD800))};
    for (const char32_t code : BOUNDARY_CODES) {
        for (const std::u32string& codes : {std::u32string(1, code), std::u32string{U'a', code}}) {
            samples.push_back(sampleOf(reference::encodedUTF8(codes)));
            samples.push_back(sampleOf(reference::encodedUTF16(codes)));
        }
    }
    for (const Sample& a : samples)
        for (const Sample& b : samples) expectOrder(a, b);
}

// Texts with a long common start, which differ in one place: in a character, in the spelling of U+0000, or in what is
// malformed.
TEST(TextOrder, MatchesTheReferenceOnRandomTexts) {
    Random random(5);
    for (int i = 0; i < repetitions(4000); ++i) {
        const std::u32string start = randomCodes(random, i % 3 == 0 ? 80 : 4);
        const std::string startBytes = reference::encodedUTF8(start);
        const std::u16string startUnits = reference::encodedUTF16(start);
        const std::string end = i % 2 ? randomBytes(random, 2) : "";
        const Sample samples[] = {sampleOf(startBytes + randomBytes(random, 3) + end),
                                  sampleOf(startBytes + randomBytes(random, 3) + end),
                                  sampleOf(startUnits + randomUnits(random, 3)),
                                  sampleOf(startUnits + randomUnits(random, 3)), sampleOf(startBytes)};
        for (const Sample& a : samples)
            for (const Sample& b : samples) expectOrder(a, b);
    }
}

TEST(TextOrder, HashesEqualTextsEquallyAtEveryLength) {
    Random random(6);
    for (unsigned int length = 0; length < 300; ++length) {
        std::u32string codes(length, U'a');
        for (char32_t& code : codes) code = 'a' + random.below(26);
        if (length % 3 == 1) codes[random.below(length)] = BOUNDARY_CODES[random.below(28)];
        const std::string bytes = reference::encodedUTF8(codes);
        const std::size_t hash = hashOfText(bytes);
        EXPECT_EQ(hashOfText(reference::encodedUTF16(codes)), hash) << inHex(codes);
        EXPECT_EQ(hashOfText(makeString(bytes)), hash) << inHex(codes);
        EXPECT_EQ(hashOfText(std::string("\xFF") + bytes), hashOfText(std::string("\xEF\xBF\xBD") + bytes));
        EXPECT_EQ(hashOfText(bytes + std::string(1, '\0')), hashOfText(bytes + "\xC0\x80"));
    }
}

TEST(TextOrder, HashesDifferentTextsDifferently) {
    std::unordered_set<std::size_t> hashes;
    std::size_t count = 0;
    const auto add = [&](const std::string& text) {
        hashes.insert(hashOfText(text));
        ++count;
    };
    for (unsigned int i = 0; i < 20000; ++i) {
        add("item" + std::to_string(i));
        add("a longer name of an item in a table of names " + std::to_string(i));
    }
    for (std::size_t length = 0; length < 200; ++length) add(std::string(length, 'a'));
    for (std::size_t length = 1; length < 200; ++length) add(std::string(length, '\0'));
    // Of 40,000 values of 32 bits, a few pairs collide.
    EXPECT_LE(count - hashes.size(), sizeof(std::size_t) == 8 ? 0u : 4u);
    std::size_t buckets[64] = {};
    for (const std::size_t hash : hashes) ++buckets[hash % 64];
    for (const std::size_t size : buckets) EXPECT_LT(size, 2 * count / 64);
}

template <class Key>
void findsByViews() {
    std::map<Key, int, CodePointLess> sorted;
    std::unordered_map<Key, int, TextHash, TextEqual> hashed;
    std::set<Key, CodePointLess> keys;
    const char* const texts[] = {"", "door", "d\xC3\xB6r", "\xF0\x9F\x98\x80", "\xEF\xBF\xBD", "z"};
    int n = 0;
    for (const char* const text : texts) {
        sorted[Key(makeString(text))] = n;
        hashed[Key(makeString(text))] = n;
        keys.insert(Key(makeString(text)));
        ++n;
    }
    n = 0;
    for (const char* const text : texts) {
        const std::string bytes = text;
        const std::u16string units = reference::encodedUTF16(reference::decoded(bytes));
        EXPECT_EQ(allocationsDuring([&] {
                      EXPECT_EQ(sorted.find(text)->second, n);
                      EXPECT_EQ(sorted.find(std::string_view(bytes))->second, n);
                      EXPECT_EQ(sorted.find(TextView(units))->second, n);
                      EXPECT_EQ(hashed.find(std::string_view(bytes))->second, n);
                      EXPECT_EQ(hashed.find(TextView(units))->second, n);
                      EXPECT_TRUE(keys.contains(bytes));
                      EXPECT_TRUE(keys.contains(units));
                  }),
                  0u);
        ++n;
    }
    EXPECT_EQ(hashed.find("missing"), hashed.end());
    EXPECT_EQ(sorted.size(), 6u);
    EXPECT_EQ(sorted.find(Key(makeString(u"d\u00F6r")))->second, 2);
    EXPECT_EQ(hashed.at(Key(makeString(u"\U0001F600"))), 3);
}

TEST(TextOrder, FindsKeysByViewsWithoutAString) {
    findsByViews<String>();
    findsByViews<UTF8String>();
    std::map<std::string, int, CodePointLess> levels;
    levels["intro"] = 1;
    EXPECT_EQ(levels.find(u"intro")->second, 1);
}

TEST(TextOrder, SortsByCodePoint) {
    std::vector<String> texts = {
        makeString(u"\U0001F600"),       makeString("\xEF\xBF\xBD"), makeString(u"b"), makeString("a"), String(),
        makeString(std::string(1, '\0'))};
    std::sort(texts.begin(), texts.end(), CodePointLess());
    std::vector<std::u32string> sorted;
    for (const String& text : texts) {
        std::u32string codes;
        if (!text.isEmpty()) {
            const TextView view = text;
            codes = view.isUTF8()
                        ? reference::decoded(std::string(view.getUTF8(), view.getUTF8() + view.getLength()))
                        : reference::decoded(std::u16string(view.getUTF16(), view.getUTF16() + view.getLength()));
        }
        sorted.push_back(codes);
    }
    EXPECT_TRUE(std::is_sorted(sorted.begin(), sorted.end()));
}

} // namespace
