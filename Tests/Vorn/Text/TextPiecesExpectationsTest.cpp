// What users of other string types expect of trim, split, lines, join and replace.
#include "Support/TextForms.h"
#include "Vorn/Text/TextBuilder.h"
#include "Vorn/Text/TextChange.h"
#include "Vorn/Text/TextConversion.h"
#include "Vorn/Text/TextPieces.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using namespace Vorn;
using Texts = std::vector<std::string>;

template <class Range>
Texts textsOf(const Range& range) {
    Texts texts;
    for (TextView piece : range) texts.push_back(toUTF8(piece));
    return texts;
}

TEST(Expectations, Split) {
    struct Row {
        const char* text;
        const char* separator;
        Texts all;
        Texts nonEmpty;
        Texts two; // at most two pieces
    };
    const Row rows[] = {
        {"", ",", {""}, {}, {""}},
        {",", ",", {"", ""}, {}, {"", ""}},
        {"a", ",", {"a"}, {"a"}, {"a"}},
        {"a,b,c", ",", {"a", "b", "c"}, {"a", "b", "c"}, {"a", "b,c"}},
        {",a,,b,", ",", {"", "a", "", "b", ""}, {"a", "b"}, {"", "a,,b,"}},
        {"a, b,c", ", ", {"a", "b,c"}, {"a", "b,c"}, {"a", "b,c"}},
        {"aaa", "aa", {"", "a"}, {"a"}, {"", "a"}},
        {"aaaa", "aa", {"", "", ""}, {}, {"", "aa"}},
        {"one::two", "::", {"one", "two"}, {"one", "two"}, {"one", "two"}},
        {"abc", "abcd", {"abc"}, {"abc"}, {"abc"}},
        {"a\xC3\xA9z", "\xC3\xA9", {"a", "z"}, {"a", "z"}, {"a", "z"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.text) + " at " + row.separator);
        EXPECT_EQ(textsOf(split(row.text, row.separator)), row.all);
        EXPECT_EQ(textsOf(split(makeString(row.text), row.separator)), row.all);
        EXPECT_EQ(textsOf(splitNonEmpty(row.text, row.separator)), row.nonEmpty);
        EXPECT_EQ(textsOf(split(row.text, row.separator, 2)), row.two);
        EXPECT_EQ(textsOf(split(row.text, row.separator, 0)), Texts());
        EXPECT_EQ(textsOf(split(row.text, row.separator, 1)), Texts{row.text});
    }
    EXPECT_EQ(textsOf(splitNonEmpty("  Mary  had\ta \n lamb ")), (Texts{"Mary", "had", "a", "lamb"}));
    EXPECT_EQ(textsOf(splitNonEmpty("  a  b c ", WHITE_SPACE, 2)), (Texts{"a", "b c "}));
    EXPECT_EQ(textsOf(splitNonEmpty(" \t ")), Texts());
    EXPECT_EQ(textsOf(split("2020-11-03 23:59", anyOf("- :"))), (Texts{"2020", "11", "03", "23", "59"}));
    EXPECT_EQ(textsOf(split("a,b", CharacterSet())), Texts{"a,b"});
}

TEST(Expectations, Lines) {
    struct Row {
        const char* text;
        Texts lines;
    };
    const Row rows[] = {
        {"", {}},
        {"\n", {""}},
        {"one", {"one"}},
        {"one\n", {"one"}},
        {"one\n\n", {"one", ""}},
        {"foo\r\nbar\n\nbaz\r", {"foo", "bar", "", "baz"}},
        {"\r\r\n\n\r", {"", "", "", ""}},
        {"a\n\rb", {"a", "", "b"}},
        {"\nfoo", {"", "foo"}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(textsOf(lines(row.text)), row.lines) << row.text;
        EXPECT_EQ(textsOf(lines(makeString(toUTF16(row.text)))), row.lines) << row.text;
    }
}

TEST(Expectations, SplitOnce) {
    const auto shown = [](const auto& pair) {
        return pair ? Texts{toUTF8(pair->first), toUTF8(pair->second)} : Texts();
    };
    EXPECT_EQ(shown(splitOnce("cfg=foo=bar", '=')), (Texts{"cfg", "foo=bar"}));
    EXPECT_EQ(shown(splitOnceAtEnd("cfg=foo=bar", '=')), (Texts{"cfg=foo", "bar"}));
    EXPECT_EQ(shown(splitOnce("cfg", '=')), Texts());
    EXPECT_EQ(shown(splitOnce("cfg=", '=')), (Texts{"cfg", ""}));
    EXPECT_EQ(shown(splitOnceAtEnd("=", "=")), (Texts{"", ""}));
    EXPECT_EQ(shown(splitOnceAtEnd("aaa", "aa")), (Texts{"a", ""}));
    EXPECT_EQ(shown(splitOnce("", '=')), Texts());
}

TEST(Expectations, TrimAndAffixes) {
    EXPECT_EQ(toUTF8(trim("\n Hello\tworld\t\n")), "Hello\tworld");
    EXPECT_EQ(toUTF8(trimStart("  a  ")), "a  ");
    EXPECT_EQ(toUTF8(trimEnd("  a  ")), "  a");
    EXPECT_EQ(toUTF8(trim("\xE3\x80\x80 a \xC2\xA0")), "a");
    EXPECT_EQ(toUTF8(trim("xxfooxx", 'x')), "foo");
    EXPECT_EQ(toUTF8(trim("123foo1bar123", anyOf("123"))), "foo1bar");
    EXPECT_EQ(toUTF8(trim("")), "");
    EXPECT_EQ(toUTF8(trim(String())), "");
    EXPECT_TRUE(trim(String()).isNotNull());
    EXPECT_EQ(toUTF8(removePrefix("foo:foo:bar", "foo:")), "foo:bar");
    EXPECT_EQ(toUTF8(removePrefix("foo", "bar")), "foo");
    EXPECT_EQ(toUTF8(removePrefix("foo", "")), "foo");
    EXPECT_EQ(toUTF8(removeSuffix("bar:foo", ":foo")), "bar");
    EXPECT_EQ(toUTF8(removeSuffix("foo", "foofoo")), "foo");
    EXPECT_EQ(toUTF8(substring("h\xC3\xA9llo", 1, 2)), "\xC3\xA9l");
    EXPECT_EQ(toUTF8(substring("abc", 3)), "");
    EXPECT_EQ(toUTF8(substring("abc", 1, 0)), "");
}

TEST(Expectations, JoinAndReplace) {
    EXPECT_EQ(toUTF8(join(Texts{"a", "b", "c"}, "/")), "a/b/c");
    EXPECT_EQ(toUTF8(join(Texts{"a"}, "/")), "a");
    EXPECT_EQ(toUTF8(join(Texts{}, "/")), "");
    EXPECT_EQ(toUTF8(replaceAll("this is old", "old", "new")), "this is new");
    EXPECT_EQ(toUTF8(replaceAll("aaa", "aa", "b")), "ba");
    EXPECT_EQ(toUTF8(replaceAll("aXbX", "X", "")), "ab");
    EXPECT_EQ(toUTF8(replaceAll("a", "a", "aa")), "aa");
    EXPECT_EQ(toUTF8(replaceFirst("foo foo 123", "foo", "new")), "new foo 123");
    EXPECT_EQ(toUTF8(repeat("abc", 3)), "abcabcabc");
    EXPECT_EQ(toUTF8(repeat("abc", 0)), "");
    EXPECT_EQ(toUTF8(padStart("5", 3, U'0')), "005");
    EXPECT_EQ(toUTF8(padEnd("\xC3\xA9", 3, U'.')), "\xC3\xA9..");
    EXPECT_EQ(toUTF8(padStart("12345", 3)), "12345");
    EXPECT_EQ(toUTF8(toUpperASCII("Gr\xC3\xBC\xC3\x9F"
                                  "e z{")),
              "GR\xC3\xBC\xC3\x9F"
              "E Z{");
}

} // namespace
