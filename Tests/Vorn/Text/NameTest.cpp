#include "Vorn/Text/Name.h"

#include "Support/AllocationCounter.h"
#include "Support/Random.h"
#include "Vorn/Text/MakeString.h"
#include "Vorn/Text/TextConversion.h"

#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace {

using namespace Vorn;

static_assert(Name().isEmpty());
static_assert(Name::hashOf("jump") != Name::hashOf("crouch"));
static_assert(Name().getHash() == Name::hashOf(""));

std::string textOf(Name name) { return std::string(name.getText()); }

TEST(Name, IsEqualForEqualTexts) {
    const Name name("d\xC3\xB6or");
    for (const Name same : {Name(u"d\u00F6or"), Name(String("d\xC3\xB6or")), Name(std::string("d\xC3\xB6or")), name}) {
        EXPECT_EQ(name, same);
        EXPECT_EQ(name.c_str(), same.c_str());
        EXPECT_EQ(&name.getString(), &same.getString());
    }
    EXPECT_NE(name, Name("d\xC3\xB6ors"));
    EXPECT_NE(name, Name());
    EXPECT_EQ(textOf(name), "d\xC3\xB6or");
    EXPECT_EQ(name.c_str()[5], '\0');
}

TEST(Name, KeepsEmojiAndNull) {
    const std::u16string_view emoji = u"\U0001F600!";
    EXPECT_EQ(textOf(Name(emoji)), "\xF0\x9F\x98\x80!");
    EXPECT_EQ(Name(emoji), Name("\xF0\x9F\x98\x80!"));
    const Name zero(std::string("a\0b", 3));
    EXPECT_EQ(zero, Name("a\xC0\x80"
                         "b"));
    EXPECT_EQ(zero, Name(std::u16string(u"a\0b", 3)));
    EXPECT_EQ(textOf(zero), std::string("a\0b", 3));
    EXPECT_EQ(zero.getHash(), Name::hashOf(std::string_view("a\0b", 3)));
    EXPECT_EQ(zero.getString(), String("a\xC0\x80"
                                       "b"));
    EXPECT_NE(zero, Name("a"));
}

TEST(Name, IsEmptyForEmptyTexts) {
    for (const Name name : {Name(), Name(""), Name(u""), Name(String()), Name(TextView())}) {
        EXPECT_TRUE(name.isEmpty());
        EXPECT_EQ(name, Name());
        EXPECT_EQ(textOf(name), "");
        EXPECT_STREQ(name.c_str(), "");
        EXPECT_TRUE(name.getString().isNotNull());
        EXPECT_EQ(name.getHash(), Name::hashOf(""));
    }
    EXPECT_EQ(Name::lookUp(""), Name());
    EXPECT_FALSE(Name("x").isEmpty());
}

TEST(Name, LooksUpWithoutStoring) {
    EXPECT_EQ(Name::lookUp("never stored"), std::nullopt);
    EXPECT_EQ(Name::lookUp("never stored"), std::nullopt);
    const Name name("stored");
    EXPECT_EQ(Name::lookUp("stored"), name);
    EXPECT_EQ(Name::lookUp(u"stored"), name);
    EXPECT_EQ(allocationsDuring([] { Name::lookUp("stored"); }), 0u);
    EXPECT_EQ(allocationsDuring([] { Name("stored"); }), 0u);
    EXPECT_EQ(allocationsDuring([&] { return String(name.getString()).isEmpty(); }), 0u);
}

TEST(Name, RefusesMalformedText) {
    const Name replacement("\xEF\xBF\xBD");
    const std::vector<TextView> texts = {"\xFF",    "\xC0",         "a\xC0\x81",           "\xED\xA0\x80",
                                         u"\xFFFE", "\xEF\xB7\x90", TextView(u"\xD83D", 1)};
    for (const TextView& text : texts) {
        EXPECT_THROW(Name{text}, Exception<7>);
        EXPECT_EQ(Name::lookUp(text), std::nullopt);
    }
    EXPECT_EQ(Name(u"\xFFFD"), replacement);
}

// A text with 0xC0 is converted into a buffer of its own length, in which U+FFFD has no room at the end.
TEST(Name, RefusesTextsThatEndMalformed) {
    for (std::size_t length = 180; length != 260; ++length) {
        for (const char* const end : {"\xC0", "\xC0\x80\xFF", "\xC0\x80\xE4\xB8"}) {
            SCOPED_TRACE(length);
            const std::string text = std::string(length, 'a') + end;
            EXPECT_THROW(Name{text}, Exception<7>);
            EXPECT_EQ(Name::lookUp(text), std::nullopt);
        }
    }
}

TEST(Name, HashesLiteralsAtCompileTime) {
    const auto action = [](Name name) {
        switch (name.getHash()) {
        case Name::hashOf("jump"): return 1;
        case Name::hashOf("a name of more than eight bytes"): return 2;
        case Name::hashOf(""): return 3;
        default: return 0;
        }
    };
    EXPECT_EQ(action(Name(u"jump")), 1);
    EXPECT_EQ(action(Name("a name of more than eight bytes")), 2);
    EXPECT_EQ(action(Name()), 3);
    EXPECT_EQ(action(Name("jumps")), 0);
}

// At compile time and at run time, for each length of the rest.
template <std::size_t... Lengths>
void expectSameHashes(std::index_sequence<Lengths...>) {
    static constexpr std::string_view TEXT = "0123456789abcdefghijklmnopqrstuvwxyz\xC3\xA9";
    static constexpr std::uint64_t HASHES[] = {Name::hashOf(TEXT.substr(0, Lengths))...};
    for (std::size_t length = 0; length < sizeof...(Lengths); ++length) {
        const std::string text(TEXT.substr(0, length));
        EXPECT_EQ(Name::hashOf(text), HASHES[length]) << length;
    }
}

TEST(Name, HashesTheSameAtCompileTime) { expectSameHashes(std::make_index_sequence<39>()); }

TEST(Name, HashesDifferForSimilarTexts) {
    std::set<std::uint64_t> hashes;
    std::set<unsigned int> low;
    std::size_t count = 0;
    const auto add = [&](const std::string& text) {
        EXPECT_TRUE(hashes.insert(Name::hashOf(text)).second) << text;
        low.insert(static_cast<unsigned int>(Name::hashOf(text)) & 0xFFFF);
        ++count;
    };
    for (int i = 0; i < 20000; ++i) add("item" + std::to_string(i));
    for (std::size_t length = 0; length < 100; ++length) {
        add(std::string(length, '\0'));
        if (length != 0) add(std::string(length, 'a'));
        std::string other(length, 'a');
        if (length != 0) {
            other.back() = 'b';
            add(other);
        }
    }
    EXPECT_GT(low.size(), 16000u) << "of " << count << " with 65536 values";
}

TEST(Name, OrdersByCodePoint) {
    const std::vector<std::string> sorted = {"", "A", "AB", "B", "a", "\xC3\xA9", "\xEE\x80\x80", "\xF0\x9F\x98\x80"};
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        for (std::size_t j = 0; j < sorted.size(); ++j) {
            const Name a(sorted[i]), b(sorted[j]);
            EXPECT_EQ(a < b, i < j);
            EXPECT_EQ(a > b, i > j);
            EXPECT_EQ(a <= b, i <= j);
            EXPECT_EQ(a >= b, i >= j);
            EXPECT_EQ(a == b, i == j);
        }
    }
}

TEST(Name, IsAKey) {
    std::unordered_map<Name, int> hashed;
    std::map<Name, int> ordered;
    hashed[Name("one")] = ordered[Name("one")] = 1;
    hashed[Name("two")] = ordered[Name("two")] = 2;
    EXPECT_EQ(hashed.at(Name(u"one")), 1);
    EXPECT_EQ(ordered.at(Name(u"two")), 2);
    const auto place = [] { return &VORN_NAME("one"); };
    EXPECT_EQ(place(), place());
    EXPECT_EQ(*place(), Name("one"));
}

// Against a map of standard strings, through several replacements of the table.
TEST(Name, AgreesWithAMap) {
    Random random(811);
    std::map<std::string, Name> model;
    for (int i = 0; i < 6000; ++i) {
        std::string text;
        for (unsigned int n = random.below(12); n != 0; --n) text += static_cast<char>('a' + random.below(3));
        const auto known = model.find(text);
        const std::optional<Name> found = Name::lookUp(text);
        if (known != model.end()) {
            ASSERT_EQ(found, known->second) << text;
        }
        const Name name = random.below(2) ? Name(text) : Name(std::u16string(text.begin(), text.end()));
        ASSERT_EQ(name.getText(), text);
        ASSERT_EQ(name.getHash(), Name::hashOf(text));
        if (known != model.end()) {
            ASSERT_EQ(name, known->second) << text;
        }
        model.emplace(text, name);
    }
    std::set<const char*> addresses;
    for (const auto& [text, name] : model) {
        ASSERT_EQ(name, Name(text));
        addresses.insert(name.c_str());
    }
    EXPECT_EQ(addresses.size(), model.size());
}

} // namespace
