#include "Documentation/TextOperations/TextOperation.h"
#include "Vorn/Text.h"

#include <map>
#include <sstream>
#include <unordered_map>

using namespace Vorn;

const TextOperations RUST_STRING_OPERATIONS = {
    {"`new`",
     [] {
         EXPECT_FALSE(makeString("").isNull());
         EXPECT_TRUE(TextView(makeString("")).isEmpty());
     }},
    {"`with_capacity`",
     [] {
         TextBuilder builder;
         builder.reserve(100);
         builder.append("é");
         expectText(builder.take(), "é");
     }},
    {"`from_utf8`",
     [] {
         expectText(makeString("é😀"), "é😀");
         EXPECT_THROW(makeString("\xC3"), Exception<7>);
     }},
    {"`from_utf8_lossy`, `from_utf8_lossy_owned`",
     [] { expectText(makeStringReplacing("a\xF0\x9F\x98z"), "a\uFFFDz"); }},
    {"`from_utf16`",
     [] {
         const String text = makeString(u"a😀");
         EXPECT_EQ(TextView(text).getEncoding(), TextEncoding::UTF16);
         expectText(text, "a😀");
         EXPECT_THROW(makeString(std::u16string(1, char16_t(0xD83D))), Exception<7>);
     }},
    {"`from_utf16_lossy`",
     [] {
         expectText(makeStringReplacing(std::u16string{u'a', char16_t(0xD83D), u'z'}), "a\uFFFDz");
     }},
    {"`from(char)`, `char::to_string`",
     [] {
         expectText(concat(U'😀'), "😀");
         expectText(concat('a'), "a");
     }},
    {"`from(&str)`, `from(&String)`, `clone`",
     [] {
         const String text = makeString(std::string_view("é"));
         const String copy = text;
         EXPECT_EQ(copy.getData(), text.getData());
         expectText(text, "é");
     }},
    {"`from_iter` of `char`",
     [] {
         const std::vector<char32_t> codes = {U'a', U'😀'};
         expectText(makeString(codes), "a😀");
         expectText(makeString(std::u32string_view(U"a😀")), "a😀");
     }},
    {"`from_iter` of `&str`, `collect`",
     [] {
         const std::vector<std::string> items = {"a", "😀"};
         expectText(join(items, ""), "a😀");
     }},
    {"`into_bytes`", [] { inBoth("é😀", [](const String& text) { EXPECT_EQ(toUTF8(text), "é😀"); }); }},
    {"`as_str`, `deref`",
     [] {
         const String text = makeString(u"é");
         EXPECT_EQ(TextView(text).getLength(), 1u);
     }},
    {"`push_str`, `+=`, `extend`",
     [] {
         TextBuilder builder;
         builder.append("one ", makeString(u"😀"), " ", 42);
         expectText(builder.build(), "one 😀 42");
     }},
    {"`push`",
     [] {
         TextBuilder builder;
         builder.append('a', U'😀');
         builder.appendCodePoint(0xE9);
         expectText(builder.take(), "a😀é");
     }},
    {"`extend` of `char`",
     [] {
         TextBuilder builder;
         for (const UTF32Char c : codePoints(u"a😀")) builder.appendCodePoint(c);
         expectText(builder.take(), "a😀");
     }},
    {"`+`",
     [] {
         expectText(makeString("a") + u"😀", "a😀");
         expectText("é" + makeString(u"😀"), "é😀");
     }},
    {"`format!`", [] { expectText(concat(makeString("level "), 42, ' ', 0.1f, U'😀'), "level 42 0.1😀"); }},
    {"`capacity`",
     [] {
         TextBuilder builder;
         builder.reserve(10);
         EXPECT_EQ(builder.getLength(), 0u);
     }},
    {"`reserve`, `reserve_exact`",
     [] {
         TextBuilder builder;
         builder.append("é").reserve(1000);
         expectText(builder.build(), "é");
     }},
    {"`shrink_to_fit`",
     [] {
         TextBuilder builder;
         builder.reserve(1000);
         builder.append("é");
         expectText(builder.build(), "é");
     }},
    {"`truncate`",
     [] {
         inBoth("ab😀", [](const String& text) { expectText(slice(text, 0, 2), "ab"); });
         expectRaises<4>([] { slice(makeString("😀"), 0, 2); }, "Invalid offset!");
     }},
    {"`pop`",
     [] {
         inBoth("ab😀", [](const String& text) {
             expectText(dropLast(text, 1), "ab");
             expectText(last(text, 1), "😀");
         });
     }},
    {"`remove`",
     [] {
         expectText(erase(makeString("a😀b"), 1, 4), "ab");
         expectText(erase(makeString(u"a😀b"), 1, 2), "ab");
     }},
    {"`remove_matches`",
     [] { inBoth("a--b--😀", [](const String& text) { expectText(replaceAll(text, "--", ""), "ab😀"); }); }},
    {"`retain`",
     [] {
         inBoth("1 000é000", [](const String& text) { expectText(join(split(text, anyOf(" é")), ""), "1000000"); });
     }},
    {"`insert`, `insert_str`",
     [] {
         expectText(insert(makeString("a😀"), 5, "é"), "a😀é");
         expectText(insert(makeString(u"a😀"), 1, concat('-', 1)), "a-1😀");
     }},
    {"`replace_range`",
     [] {
         expectText(replaceRange(makeString("a😀b"), 1, 4, "--"), "a--b");
         expectText(replaceRange(makeString(u"a😀b"), 1, 2, "é"), "aéb");
     }},
    {"`drain`",
     [] {
         const String text = makeString(u"a😀b");
         expectText(slice(text, 0, 3), "a😀");
         expectText(erase(text, 0, 3), "b");
     }},
    {"`split_off`",
     [] {
         inBoth("one😀", [](const String& text) {
             expectText(slice(text, 3), "😀");
             expectText(slice(text, 0, 3), "one");
         });
     }},
    {"`extend_from_within`",
     [] {
         const String text = makeString("a😀");
         expectText(concat(text, slice(text, 1, 4)), "a😀😀");
     }},
    {"`clear`",
     [] {
         TextBuilder builder;
         builder.append("é");
         builder.clear();
         EXPECT_TRUE(builder.isEmpty());
         builder.append("b");
         expectText(builder.take(), "b");
     }},
    {"`len`",
     [] {
         EXPECT_EQ(lengthInUTF8(makeString(u"é😀")), 6u);
         TextBuilder builder;
         builder.append("é");
         EXPECT_EQ(builder.getLength(), 2u);
     }},
    {"`is_empty`",
     [] {
         EXPECT_TRUE(TextView(makeString("")).isEmpty());
         EXPECT_TRUE(TextBuilder().isEmpty());
     }},
    {"`replace_first`",
     [] { inBoth("a😀a", [](const String& text) { expectText(replaceFirst(text, "a", "b"), "b😀a"); }); }},
    {"`replace_last`",
     [] {
         const String text = makeString("a😀a");
         expectText(replaceRange(text, findLast(text, "a"), 1, "b"), "a😀b");
     }},
    {"`into_chars`",
     [] {
         const String text = makeString(u"😀");
         EXPECT_EQ(*codePoints(text).begin(), 0x1F600u);
     }},
    {"`leak`",
     [] {
         static const String text = makeStaticString("é😀");
         expectText(text, "é😀");
         expectText(VORN_TEXT(u"é"), "é");
     }},
    {"`==` with `&str`",
     [] {
         EXPECT_TRUE(equals(makeString(u"é"), std::string_view("é")));
         EXPECT_TRUE(equals(String(), "")) << "a null string is an empty text";
     }},
    {"`Ord` in sorted maps",
     [] {
         std::map<String, int, CodePointLess> levels;
         levels[makeString(u"\uFFFD")] = 1;
         levels[makeString("😀")] = 2;
         EXPECT_EQ(levels.begin()->second, 1);
         EXPECT_EQ(levels.find("😀")->second, 2);
     }},
    {"`Hash` in maps",
     [] {
         std::unordered_map<String, int, TextHash, TextEqual> table;
         table[makeString("a😀")] = 7;
         EXPECT_EQ(table.at(makeString(u"a😀")), 7);
         EXPECT_TRUE(table.find("a😀") != table.end());
     }},
    {"`fmt::Write`, `write!`",
     [] {
         TextBuilder builder;
         builder.append("x=", 1.5, ", y=", -2, '\n');
         expectText(builder.take(), "x=1.5, y=-2\n");
     }},
    {"`Display`",
     [] {
         std::ostringstream stream;
         stream << makeString("é😀");
         EXPECT_EQ(stream.str(), "é😀");
     }},
    {"`ToString` of numbers",
     [] {
         expectText(toText(0.1f), "0.1");
         expectText(toText(-42), "-42");
         EXPECT_EQ(parse<double>(toText(1.0 / 3)), 1.0 / 3);
     }},
    {"`from_utf8` of a fixed part",
     [] {
         const unsigned char bytes[] = {0xC3, 0xA9, 'x'};
         expectText(makeString(TextView(bytes, 2)), "é");
     }},
};
