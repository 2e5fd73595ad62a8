#include "Documentation/TextOperations/TextOperation.h"
#include "Vorn/Text.h"

#include <iomanip>
#include <sstream>

using namespace Vorn;

const TextOperations STANDARD_STRING_OPERATIONS = {
    {"`string_view(text)`, `string_view(first, last)`, `sv`",
     [] {
         EXPECT_EQ(TextView("é").getLength(), 2u);
         EXPECT_EQ(TextView(u"é").getLength(), 1u);
         EXPECT_TRUE(TextView(static_cast<const char*>(nullptr)).isEmpty());
     }},
    {"`string_view(text, n)`",
     [] {
         EXPECT_EQ(TextView("one two", 3).getLength(), 3u);
         expectText(TextView(u"éa", 1), "é");
     }},
    {"`begin`, `end`, `rbegin`, `rend`",
     [] {
         inBoth("é😀", [](const String& text) {
             std::u32string codes;
             for (const UTF32Char c : codePoints(text)) codes.push_back(static_cast<char32_t>(c));
             EXPECT_TRUE(codes == U"é😀");
         });
     }},
    {"`data`",
     [] {
         const String text = makeString("é");
         EXPECT_EQ(TextView(text).getUTF8()[0], 0xC3);
     }},
    {"`size`, `length`",
     [] {
         EXPECT_EQ(TextView(makeString("é😀")).getLength(), 6u);
         EXPECT_EQ(TextView(makeString(u"é😀")).getLength(), 3u);
     }},
    {"`empty`",
     [] {
         EXPECT_TRUE(TextView(std::string()).isEmpty());
         EXPECT_FALSE(TextView("a").isEmpty());
     }},
    {"`operator[]`, `at`",
     [] {
         inBoth("é😀", [](const String& text) {
             EXPECT_EQ(codePointAt(text, 1), UTF32Char(0x1F600));
             EXPECT_EQ(codePointAt(text, 2), std::nullopt);
         });
     }},
    {"`front`",
     [] {
         inBoth("😀a", [](const String& text) { EXPECT_EQ(codePointAt(text, 0), UTF32Char(0x1F600)); });
         EXPECT_EQ(codePointAt("", 0), std::nullopt);
     }},
    {"`back`", [] { inBoth("a😀", [](const String& text) { expectText(last(text, 1), "😀"); }); }},
    {"`remove_prefix`",
     [] {
         inBoth("ab😀", [](const String& text) {
             expectText(slice(text, 2), "😀");
             expectText(substring(text, 2), "😀");
         });
     }},
    {"`remove_suffix`", [] { inBoth("ab😀", [](const String& text) { expectText(dropLast(text, 2), "a"); }); }},
    {"`copy`",
     [] {
         inBoth("é😀", [](const String& text) {
             char dest[5];
             const ConvertedText part = toUTF8(text, dest, sizeof(dest));
             EXPECT_EQ(std::string(dest, part.written), "é");
             expectText(TextView(text).slice(part.read), "😀");
         });
     }},
    {"`substr`",
     [] {
         inBoth("ab😀c", [](const String& text) {
             expectText(slice(text, 1, 1), "b");
             expectText(substring(text, 2, 1), "😀");
         });
     }},
    {"`compare`",
     [] {
         EXPECT_EQ(compare("a", "b"), -1);
         EXPECT_EQ(compare(u"😀", "\uFFFD"), 1);
         EXPECT_EQ(compare(std::string("é"), u"é"), 0);
     }},
    {"`compare(pos, n, text)`", [] { EXPECT_EQ(compare(slice("a😀b", 1, 4), u"😀"), 0); }},
    {"`starts_with`",
     [] {
         inBoth("éa", [](const String& text) {
             EXPECT_TRUE(startsWith(text, U'é'));
             EXPECT_FALSE(startsWith(text, "\xC3"));
         });
     }},
    {"`ends_with`",
     [] {
         inBoth("aé", [](const String& text) {
             EXPECT_TRUE(endsWith(text, "é"));
             EXPECT_FALSE(endsWith(text, "\xA9"));
         });
     }},
    {"`contains`", [] { inBoth("aéb", [](const String& text) { EXPECT_TRUE(contains(text, u"é")); }); }},
    {"`find`",
     [] {
         EXPECT_EQ(find("aéb", "b"), 3u);
         EXPECT_EQ(find(u"aéb", 'b'), 2u);
     }},
    {"`find(needle, pos)`",
     [] {
         EXPECT_EQ(findNext("é,é,", ",", 3), 5u);
         EXPECT_EQ(findNext("a", "a", 2), NOT_FOUND);
         EXPECT_EQ(findNext("a", "", 1), 1u);
     }},
    {"`rfind`",
     [] {
         EXPECT_EQ(findLast("é,é,", ","), 5u);
         EXPECT_EQ(findLast("ab", ""), 2u);
     }},
    {"`rfind(needle, pos)`",
     [] {
         EXPECT_EQ(findPrevious("a,é,b", ",", 1 + 1), 1u);
         EXPECT_EQ(findPrevious("a,é,b", ",", 1), NOT_FOUND);
     }},
    {"`find_first_of`",
     [] {
         EXPECT_EQ(findAnyOf("à;é", "é;"), 2u);
         EXPECT_EQ(findAnyOf("à", "é"), NOT_FOUND) << "they share a byte";
         EXPECT_EQ(findNextAnyOf("a;b;", ";", 2), 3u);
     }},
    {"`find_last_of`", [] { EXPECT_EQ(findLastAnyOf(u"a;é;b", ";,"), 3u); }},
    {"`find_first_not_of`",
     [] {
         EXPECT_EQ(findNoneOf("  é", " "), 2u);
         EXPECT_EQ(findNextNoneOf("é  b", " ", 2), 4u);
     }},
    {"`find_last_not_of`", [] { EXPECT_EQ(findLastNoneOf("é  ", " "), 0u); }},
    {"`==`", [] { EXPECT_TRUE(equals(u"é", std::string_view("é"))); }},
    {"`<=>`, `<`",
     [] {
         EXPECT_TRUE(ordered("a") < ordered(u"b"));
         EXPECT_TRUE((ordered(u"\uFFFD") <=> ordered("😀")) < 0);
     }},
    {"`std::hash`", [] { EXPECT_EQ(TextHash()(u"é"), TextHash()(makeString("é"))); }},
    {"`<<`",
     [] {
         std::ostringstream stream;
         stream << std::setw(4) << std::setfill('.') << makeString(u"é");
         EXPECT_EQ(stream.str(), "...é");
     }},
    {"`string(text)`, `assign`",
     [] {
         const std::string text = "é";
         expectText(makeString(text), "é");
     }},
    {"`string(n, c)`", [] { expectText(repeat("é", 3), "ééé"); }},
    {"`c_str`",
     [] {
         inBoth("é😀", [](const String& text) {
             const std::string bytes = toUTF8(text);
             EXPECT_STREQ(bytes.c_str(), "é😀");
         });
     }},
    {"`push_back`, `append`, `+=`, `append_range`",
     [] {
         TextBuilder builder;
         builder.append("a").append('b', U'😀', makeString(u"é"));
         expectText(builder.take(), "ab😀é");
     }},
    {"`+`",
     [] {
         expectText(concat("a", std::string("é"), u"😀"), "aé😀");
         expectText(makeString("a") + "é", "aé");
     }},
    {"`pop_back`", [] { inBoth("é😀", [](const String& text) { expectText(dropLast(text, 1), "é"); }); }},
    {"`insert`, `insert_range`", [] { expectText(insert("éb", 2, u"😀"), "é😀b"); }},
    {"`erase`", [] { expectText(erase(u"é😀b", 1, 2), "éb"); }},
    {"`replace(pos, n, text)`, `replace_with_range`",
     [] {
         expectText(replaceRange("é😀b", 2, 4, "-"), "é-b");
         EXPECT_THROW(replaceRange("é", 1, 1, "-"), Exception<4>) << "inside a character";
     }},
    {"`resize`",
     [] {
         inBoth("é😀", [](const String& text) {
             expectText(padEnd(text, 4, U'·'), "é😀··");
             expectText(substring(text, 0, 1), "é");
         });
     }},
    {"`clear`",
     [] {
         TextBuilder builder;
         builder.append("é");
         builder.clear();
         EXPECT_TRUE(builder.isEmpty());
     }},
    {"`reserve`",
     [] {
         TextBuilder builder;
         builder.reserve(20);
         expectText(builder.append("é").take(), "é");
     }},
    {"`shrink_to_fit`",
     [] {
         TextBuilder builder;
         builder.reserve(1000);
         expectText(builder.append("é").build(), "é");
     }},
    {"`std::erase(text, c)`",
     [] { inBoth("aéaé", [](const String& text) { expectText(replaceAll(text, "é", ""), "aa"); }); }},
    {"`std::erase_if`",
     [] { inBoth("1.000,5é", [](const String& text) { expectText(join(split(text, anyOf(".,é")), ""), "10005"); }); }},
    {"`>>`",
     [] {
         std::istringstream stream("é😀 two");
         String text;
         stream >> text;
         expectText(text, "é😀");
     }},
    {"`std::getline`",
     [] { inBoth("é\r\n😀\nb", [](const String& text) {
              expectPieces(lines(text), {"é", "😀", "b"});
          }); }},
    {"`stoi`, `stol`, `stoul`, `stoll`, `stoull`",
     [] {
         EXPECT_EQ(parse<int>("-7"), -7);
         EXPECT_EQ(parse<unsigned long long>(u"18446744073709551615"), 18446744073709551615ull);
         EXPECT_EQ(parse<int>("99999999999"), std::nullopt);
     }},
    {"`stoi(text, &pos, base)`",
     [] {
         const NumberPrefix<int> size = parsePrefix<int>("ffpx", 16);
         EXPECT_EQ(size.value, 255);
         expectText(size.rest, "px");
     }},
    {"`stof`, `stod`",
     [] {
         EXPECT_EQ(parse<float>("0.1"), 0.1f);
         EXPECT_EQ(parse<double>(u"-1e308"), -1e308);
     }},
    {"`to_string`",
     [] {
         expectText(toText(-42), "-42");
         expectText(toText(0.1), "0.1");
     }},
};
