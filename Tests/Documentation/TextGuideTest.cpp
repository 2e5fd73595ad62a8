// Compiles and runs the code of Documentation/TextInTenMinutes.md. Each block of code of the page stands in this file
// as it is, but for white space and comments.
#include "Support/AllocationCounter.h"
#include "Support/GuidePage.h"
#include "Vorn/Text.h"
#include "Vorn/Text/FormatFmt.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

using namespace Vorn;

TEST(TextGuide, EachBlockOfCodeIsCompiledHere) {
    expectCodeStandsIn(VORN_TEXT_GUIDE_SOURCE, GuidePage(VORN_TEXT_GUIDE_PAGE));
}

TEST(TextGuide, OwnedTextAndLiterals) {
    const std::string line = "Größe 😀";
    String title = makeString(line);
    const String wide = makeString(u"Größe 😀");
    const String& heading = VORN_TEXT("Options");
    EXPECT_EQ(toUTF8(title), line);
    EXPECT_FALSE(TextView(wide).isUTF8());
    EXPECT_EQ(toUTF8(heading), "Options");
    {
        const std::string utf8 = toUTF8(wide);
        const std::u16string utf16 = toUTF16(title);
        const std::u32string codes = toUTF32(title);
        EXPECT_EQ(utf8, line);
        EXPECT_TRUE(utf16 == u"Größe 😀");
        EXPECT_TRUE(codes == U"Größe 😀");
    }
}

TEST(TextGuide, MalformedInput) {
    unsigned int offset = 0;
    std::string reason;
    const auto report = [&](unsigned int errorOffset, const char* error) {
        offset = errorOffset;
        reason = error;
    };
    const String shown = makeStringReplacing("caf\xC3!");
    const MadeString made = tryMakeString("caf\xC3!");
    if (!made) report(made.errorOffset, made.error);
    EXPECT_EQ(toUTF8(shown), "caf\uFFFD!");
    EXPECT_EQ(offset, 3u);
    EXPECT_EQ(reason, "an incomplete character");
    EXPECT_THROW(makeString("caf\xC3!"), Exception<7>);
}

bool isPicture(TextView path) { return endsWithIgnoringASCIICase(path, ".png"); }

TEST(TextGuide, Views) {
    const String file = makeString("icon.png");
    const bool all =
        isPicture("icon.PNG") && isPicture(u"icon.png") && isPicture(std::string("a.png")) && isPicture(file);
    EXPECT_TRUE(all);
}

TEST(TextGuide, Characters) {
    for (const String& title : {makeString("Größe 😀"), makeString(u"Größe 😀")}) {
        std::u32string drawn;
        const auto draw = [&](UTF32Char c) { drawn.push_back(static_cast<char32_t>(c)); };
        for (const UTF32Char c : codePoints(title)) draw(c);
        const unsigned int characters = codePointCount(title);
        const std::optional<UTF32Char> last = codePointAt(title, 6);
        const auto bytes = lengthInUTF8(title);
        EXPECT_TRUE(drawn == U"Größe 😀");
        EXPECT_EQ(characters, 7u);
        EXPECT_EQ(last, UTF32Char(U'😀'));
        EXPECT_EQ(bytes, 12u);
    }
}

TEST(TextGuide, SearchAndPieces) {
    for (const String& text : {makeString("größe: 12; // px"), makeString(u"größe: 12; // px")}) {
        const unsigned int colon = find(text, ':');
        const bool isComment = startsWith(text, "//") || contains(text, u"#");
        const unsigned int next = findNext(text, "//", colon);
        const unsigned int end = findAnyOf(text, ",;");
        EXPECT_EQ(toUTF8(TextView(text).slice(colon, 1)), ":");
        EXPECT_FALSE(isComment);
        EXPECT_EQ(toUTF8(TextView(text).slice(next)), "// px");
        EXPECT_EQ(findNext(text, "//", NOT_FOUND), NOT_FOUND);
        EXPECT_EQ(toUTF8(TextView(text).slice(end, 1)), ";");
    }
    for (const String& text : {makeString("größe: 12;"), makeString(u"größe: 12;")}) {
        const unsigned int colon = find(text, ':');
        std::string first, second;
        const auto set = [&](const String& a, const String& b) {
            first = toUTF8(a);
            second = toUTF8(b);
        };
        const String key = trim(slice(text, 0, colon));
        if (const auto pair = splitOnce(text, ':')) set(pair->first, removeSuffix(trim(pair->second), ";"));
        EXPECT_EQ(toUTF8(key), "größe");
        EXPECT_EQ(first + "|" + second, "größe|12");
    }
}

TEST(TextGuide, Order) {
    const String title = makeString("Größe 😀"), wide = makeString(u"Größe 😀");
    std::map<String, int, CodePointLess> levels;
    levels[makeString(u"intro")] = 1;
    const auto found = levels.find("intro");
    const bool isSame = equals(title, wide);
    const bool isBefore = compare("a", title) < 0;
    ASSERT_TRUE(found != levels.end());
    EXPECT_EQ(found->second, 1);
    EXPECT_TRUE(isSame);
    EXPECT_FALSE(isBefore);
}

TEST(TextGuide, LinesChangesAndJoining) {
    const String page = makeString("one  two\r\n😀\n"), title = makeString("Größe"), key = makeString("größe");
    const String file = makeString(u"a\\😀");
    std::vector<String> words;
    for (const TextView row : lines(page)) {
        for (const TextView word : splitNonEmpty(row)) words.push_back(makeString(word));
    }
    const String path = replaceAll(file, "\\", "/");
    const String shout = toUpperASCII(key);
    const String caption = concat(title, ", level ", 42, U'…');
    const String list = join(words, ", ");
    TextBuilder builder;
    for (const String& word : words) builder.append(word, '\n');
    const String column = builder.take();
    EXPECT_EQ(toUTF8(path), "a/😀");
    EXPECT_EQ(toUTF8(shout), "GRößE");
    EXPECT_EQ(toUTF8(caption), "Größe, level 42…");
    EXPECT_EQ(toUTF8(list), "one, two, 😀");
    EXPECT_EQ(toUTF8(column), "one\ntwo\n😀\n");
}

TEST(TextGuide, Numbers) {
    const std::optional<int> count = parse<int>("42");
    const int lives = parse<int>("42 apples").value_or(3);
    const NumberPrefix<float> width = parsePrefix<float>("1.5em");
    const String shortest = toText(0.1f);
    const String price = toFixedText(2.5, 2);
    EXPECT_EQ(count, 42);
    EXPECT_EQ(lives, 3);
    EXPECT_EQ(width.value, 1.5f);
    EXPECT_EQ(toUTF8(width.rest), "em");
    EXPECT_EQ(toUTF8(shortest), "0.1");
    EXPECT_EQ(toUTF8(price), "2.50");
}

TEST(TextGuide, FormatAndStreams) {
    const String title = makeString("Größe 😀");
    std::ostringstream captured;
    std::streambuf* const console = std::cout.rdbuf(captured.rdbuf());
    const std::string row = fmt::format("{:<8}|{:>6.1f}", title, 2.5);
    std::cout << std::setw(10) << TextView(title) << '\n';
    std::cout.rdbuf(console);
    EXPECT_EQ(row, "Größe 😀 |   2.5");
    EXPECT_EQ(captured.str(), "   Größe 😀\n");
}

TEST(TextGuide, Names) {
    const Name jump("jump");
    std::unordered_map<Name, int> actions = {{jump, 1}};
    const bool isKnown = Name::lookUp("unknown command").has_value();
    EXPECT_EQ(actions.at(Name(u"jump")), 1);
    EXPECT_FALSE(isKnown);
}

// The rows of the page's table of costs.
TEST(TextGuide, Costs) {
    const auto literal = [] { return VORN_TEXT("😀").getData(); };
    const auto name = [] { return VORN_NAME("😀 name"); };
    literal();
    name();
    const String text = makeString("größe, 12");
    String kept;
    EXPECT_EQ(allocationsDuring([&] { kept = makeString("größe"); }), 2u);
    EXPECT_EQ(allocationsDuring([&] { kept = concat(text, ", level ", 42); }), 2u);
    EXPECT_EQ(allocationsDuring([&] { kept = toText(0.1f); }), 2u);
    EXPECT_EQ(allocationsDuring([&] { kept = text; }), 0u);
    EXPECT_EQ(allocationsDuring([&] { kept = trim(text); }), 0u);
    EXPECT_EQ(allocationsDuring([&] { kept = makeString(""); }), 0u);
    EXPECT_EQ(allocationsDuring([&] { kept = slice(text, 2); }), 1u);
    unsigned int sum = 0;
    EXPECT_EQ(allocationsDuring([&] {
                  sum += find(text, ',') + (compare(text, u"größe") > 0);
                  for (const TextView piece : split(text, ',')) sum += piece.getLength();
              }),
              0u);
    EXPECT_EQ(sum, 7u + 1 + 10);
    EXPECT_EQ(allocationsDuring([&] {
                  literal();
                  name();
              }),
              0u);
    EXPECT_EQ(sizeof(String), 2 * sizeof(void*));
    EXPECT_LE(sizeof(StringData), 128u);
}

} // namespace
