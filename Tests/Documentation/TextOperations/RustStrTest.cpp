#include "Documentation/TextOperations/TextOperation.h"
#include "Vorn/Text.h"

using namespace Vorn;

const TextOperations RUST_STR_OPERATIONS = {
    {"`len`",
     [] {
         inBoth("a😀b", [](const String& text) { EXPECT_EQ(lengthInUTF8(text), 6u); });
         EXPECT_EQ(TextView(makeString(u"a😀b")).getLength(), 4u);
     }},
    {"`is_empty`",
     [] {
         EXPECT_TRUE(TextView(String()).isEmpty());
         EXPECT_TRUE(TextView("").isEmpty());
         EXPECT_FALSE(TextView(u" ").isEmpty());
     }},
    {"`is_char_boundary`",
     [] {
         EXPECT_TRUE(isBoundary("a😀", 1));
         EXPECT_FALSE(isBoundary("a😀", 3));
         EXPECT_TRUE(isBoundary("a😀", 5));
         EXPECT_FALSE(isBoundary("a😀", 6)) << "behind the end";
         EXPECT_FALSE(isBoundary(u"a😀", 2));
     }},
    {"`floor_char_boundary`",
     [] {
         EXPECT_EQ(boundaryAtOrBefore("a😀", 4), 1u);
         EXPECT_EQ(boundaryAtOrBefore(u"a😀", 2), 1u);
         EXPECT_EQ(boundaryAtOrBefore("a😀", 100), 5u);
     }},
    {"`ceil_char_boundary`",
     [] {
         EXPECT_EQ(boundaryAtOrBehind("a😀b", 2), 5u);
         EXPECT_EQ(boundaryAtOrBehind(u"a😀b", 2), 3u);
         EXPECT_EQ(boundaryAtOrBehind("a😀b", 100), 6u);
     }},
    {"`as_bytes`, `as_ptr`",
     [] {
         const String text = makeString("é");
         ASSERT_NE(TextView(text).getUTF8(), nullptr);
         EXPECT_EQ(TextView(text).getUTF8()[0], 0xC3);
         EXPECT_EQ(TextView(makeString(u"é")).getUTF8(), nullptr);
         EXPECT_EQ(TextView(inUTF8(makeString(u"é"))).getUTF8()[1], 0xA9);
     }},
    {"`bytes`", [] { inBoth("é!", [](const String& text) { EXPECT_EQ(toUTF8(text), "\xC3\xA9!"); }); }},
    {"`chars`",
     [] {
         inBoth("a😀", [](const String& text) {
             std::u32string codes;
             for (const UTF32Char c : codePoints(text)) codes.push_back(static_cast<char32_t>(c));
             EXPECT_TRUE(codes == U"a😀");
         });
     }},
    {"`chars().rev()`",
     [] {
         inBoth("a😀", [](const String& text) {
             const CodePoints codes = codePoints(text);
             auto at = codes.end();
             EXPECT_EQ(*--at, 0x1F600u);
             EXPECT_EQ(*--at, UTF32Char('a'));
             EXPECT_TRUE(at == codes.begin());
         });
     }},
    {"`chars().count()`", [] { inBoth("a😀b", [](const String& text) { EXPECT_EQ(codePointCount(text), 3u); }); }},
    {"`chars().nth(n)`",
     [] {
         inBoth("a😀b", [](const String& text) {
             EXPECT_EQ(codePointAt(text, 1), UTF32Char(0x1F600));
             EXPECT_EQ(codePointAt(text, 3), std::nullopt);
         });
     }},
    {"`char_indices`",
     [] {
         inBoth("a😀b", [](const String& text) {
             std::vector<unsigned int> offsets;
             const CodePoints codes = codePoints(text);
             for (auto at = codes.begin(); at != codes.end(); ++at) offsets.push_back(at.offset());
             const unsigned int behind = TextView(text).isUTF8() ? 5 : 3;
             EXPECT_EQ(offsets, (std::vector<unsigned int>{0, 1, behind}));
         });
     }},
    {"`char_indices().nth(n)`",
     [] {
         EXPECT_EQ(offsetOfCodePoint("a😀b", 2), 5u);
         EXPECT_EQ(offsetOfCodePoint(u"a😀b", 2), 3u);
         EXPECT_EQ(offsetOfCodePoint("a😀b", 4), NOT_FOUND);
     }},
    {"`encode_utf16`", [] { inBoth("a😀", [](const String& text) { EXPECT_TRUE(toUTF16(text) == u"a😀"); }); }},
    {"`get(a..b)`, `[a..b]`",
     [] {
         const String text = makeString("a😀b");
         expectText(slice(text, 1, 4), "😀");
         expectRaises<4>([&] { slice(text, 2, 3); }, "Invalid offset!");
         expectText(slice(u"a😀b", 1, 2), "😀");
     }},
    {"`get(a..)`, `[a..]`",
     [] {
         expectText(slice(makeString("a😀b"), 5), "b");
         expectText(slice(makeString(u"a😀b"), 3), "b");
     }},
    {"`split_at`, `split_at_checked`",
     [] {
         inBoth("key=😀", [](const String& text) {
             const unsigned int offset = find(text, '=');
             expectText(slice(text, 0, offset), "key");
             expectText(slice(text, offset), "=😀");
         });
     }},
    {"`contains`",
     [] {
         inBoth("one 😀 two", [](const String& text) {
             EXPECT_TRUE(contains(text, "😀 t"));
             EXPECT_TRUE(contains(text, U'😀'));
             EXPECT_TRUE(contains(text, makeString(u"two")));
             EXPECT_FALSE(contains(text, "\x9F\x98")) << "bytes within a character";
         });
     }},
    {"`contains(closure)`, `contains([char])`",
     [] {
         inBoth("one;two", [](const String& text) {
             EXPECT_NE(findAnyOf(text, ",;é"), NOT_FOUND);
             EXPECT_EQ(findAnyOf(text, ".é"), NOT_FOUND);
         });
     }},
    {"`starts_with`",
     [] {
         inBoth("😀 one", [](const String& text) {
             EXPECT_TRUE(startsWith(text, "😀"));
             EXPECT_TRUE(startsWith(text, u"😀 o"));
             EXPECT_TRUE(startsWith(text, ""));
             EXPECT_FALSE(startsWith(text, "\xF0\x9F")) << "a part of a character";
         });
     }},
    {"`ends_with`",
     [] {
         inBoth("icon.png", [](const String& text) {
             EXPECT_TRUE(endsWith(text, ".png"));
             EXPECT_TRUE(endsWith(text, u"png"));
             EXPECT_FALSE(endsWith(text, "a longer text than icon.png"));
         });
     }},
    {"`find`",
     [] {
         EXPECT_EQ(find("😀 one one", "one"), 5u);
         EXPECT_EQ(find(u"😀 one one", "one"), 3u);
         EXPECT_EQ(find("one", U'😀'), NOT_FOUND);
     }},
    {"`find(closure)`, `find([char])`",
     [] {
         EXPECT_EQ(findAnyOf("😀 a=b", "=:"), 6u);
         EXPECT_EQ(findNoneOf("  é", " "), 2u);
     }},
    {"`rfind`",
     [] {
         EXPECT_EQ(findLast("a/😀/b", '/'), 6u);
         EXPECT_EQ(findLast(u"a/😀/b", '/'), 4u);
         EXPECT_EQ(findLast("ab", "/"), NOT_FOUND);
     }},
    {"`rfind(closure)`, `rfind([char])`",
     [] {
         EXPECT_EQ(findLastAnyOf("a/b\\😀", "/\\"), 3u);
         EXPECT_EQ(findLastNoneOf("é  ", " "), 0u);
     }},
    {"`split`",
     [] {
         inBoth("a,😀,,b", [](const String& text) {
             expectPieces(split(text, ','), {"a", "😀", "", "b"});
             expectPieces(split(text, ",,"), {"a,😀", "b"});
         });
         expectPieces(split("", ','), {""});
     }},
    {"`split([char])`, `split(closure)`",
     [] {
         inBoth("a,b;c—d", [](const String& text) { expectPieces(split(text, anyOf(",;—")), {"a", "b", "c", "d"}); });
     }},
    {"`splitn`",
     [] { inBoth("a::b::😀", [](const String& text) {
              expectPieces(split(text, "::", 2), {"a", "b::😀"});
          }); }},
    {"`split_once`",
     [] {
         inBoth("name=😀=x", [](const String& text) {
             const auto pair = splitOnce(text, '=');
             ASSERT_TRUE(pair);
             expectText(pair->first, "name");
             expectText(pair->second, "😀=x");
             EXPECT_FALSE(splitOnce(text, ':'));
         });
     }},
    {"`rsplit_once`",
     [] {
         inBoth("a/😀/c", [](const String& text) {
             const auto pair = splitOnceAtEnd(text, '/');
             ASSERT_TRUE(pair);
             expectText(pair->first, "a/😀");
             expectText(pair->second, "c");
         });
     }},
    {"`rsplit`, `rsplitn`",
     [] {
         String rest = makeString(u"a/b/😀");
         std::vector<std::string> found;
         while (const auto pair = splitOnceAtEnd(rest, '/')) {
             found.push_back(toUTF8(pair->second));
             rest = pair->first;
         }
         EXPECT_EQ(found, (std::vector<std::string>{"😀", "b"}));
         expectText(rest, "a");
     }},
    {"`split_whitespace`",
     [] {
         inBoth("  two\u3000words ", [](const String& text) { expectPieces(splitNonEmpty(text), {"two", "words"}); });
     }},
    {"`split_ascii_whitespace`",
     [] {
         inBoth(" a\tb\u00A0c\n", [](const String& text) {
             expectPieces(splitNonEmpty(text, anyOf(" \t\n\f\r")), {"a", "b\u00A0c"});
         });
     }},
    {"`split_terminator`",
     [] { inBoth("a;😀;", [](const String& text) {
              expectPieces(split(removeSuffix(text, ";"), ';'), {"a", "😀"});
          }); }},
    {"`lines`",
     [] {
         inBoth("one\r\n😀\n\nend\n", [](const String& text) { expectPieces(lines(text), {"one", "😀", "", "end"}); });
     }},
    {"`matches().count()`",
     [] {
         inBoth("aaa 😀😀", [](const String& text) {
             EXPECT_EQ(count(text, "aa"), 1u);
             EXPECT_EQ(count(text, U'😀'), 2u);
         });
     }},
    {"`matches`, `match_indices`",
     [] {
         const TextView text = "a😀b😀";
         std::vector<unsigned int> offsets;
         for (unsigned int at = find(text, "😀"); at != NOT_FOUND; at = findNext(text, "😀", at + 4))
             offsets.push_back(at);
         EXPECT_EQ(offsets, (std::vector<unsigned int>{1, 6}));
     }},
    {"`rmatches`, `rmatch_indices`",
     [] {
         const TextView text = u"a😀b😀";
         std::vector<unsigned int> offsets;
         for (unsigned int at = findLast(text, "😀"); at != NOT_FOUND; at = findPrevious(text, "😀", at))
             offsets.push_back(at);
         EXPECT_EQ(offsets, (std::vector<unsigned int>{4, 1}));
     }},
    {"`trim`",
     [] { inBoth(" \t\u3000two words\n ", [](const String& text) { expectText(trim(text), "two words"); }); }},
    {"`trim_start`, `trim_left`",
     [] { inBoth("\u2003a ", [](const String& text) { expectText(trimStart(text), "a "); }); }},
    {"`trim_end`, `trim_right`",
     [] { inBoth(" a\u2003", [](const String& text) { expectText(trimEnd(text), " a"); }); }},
    {"`trim_ascii`",
     [] { inBoth("\t\u00A0a\n", [](const String& text) { expectText(trim(text, anyOf(" \t\n\f\r")), "\u00A0a"); }); }},
    {"`trim_ascii_start`",
     [] { inBoth("\t a\n", [](const String& text) { expectText(trimStart(text, anyOf(" \t\n\f\r")), "a\n"); }); }},
    {"`trim_ascii_end`",
     [] { inBoth("\ta \n", [](const String& text) { expectText(trimEnd(text, anyOf(" \t\n\f\r")), "\ta"); }); }},
    {"`trim_matches`",
     [] {
         inBoth("--😀-", [](const String& text) {
             expectText(trim(text, '-'), "😀");
             expectText(trim(text, anyOf("-😀")), "");
         });
     }},
    {"`trim_start_matches`, `trim_left_matches`",
     [] { inBoth("007", [](const String& text) { expectText(trimStart(text, '0'), "7"); }); }},
    {"`trim_end_matches`, `trim_right_matches`",
     [] { inBoth("1.500é", [](const String& text) { expectText(trimEnd(text, anyOf("0é")), "1.5"); }); }},
    {"`strip_prefix`",
     [] {
         inBoth("😀-one", [](const String& text) {
             expectText(removePrefix(text, "😀-"), "one");
             expectText(removePrefix(text, "one"), "😀-one");
         });
     }},
    {"`strip_suffix`",
     [] {
         inBoth("icon.png", [](const String& text) {
             expectText(removeSuffix(text, u".png"), "icon");
             expectText(removeSuffix(text, ".gif"), "icon.png");
         });
     }},
    {"`trim_prefix`, `trim_suffix`",
     [] {
         expectText(removePrefix("/home", "/"), "home");
         expectText(removeSuffix(u"home/", "/"), "home");
     }},
    {"`strip_circumfix`", [] { expectText(removeSuffix(removePrefix(makeString("«é»"), "«"), "»"), "é"); }},
    {"`parse`",
     [] {
         EXPECT_EQ(parse<int>("-42"), -42);
         EXPECT_EQ(parse<int>("42 apples"), std::nullopt);
         EXPECT_EQ(parse<double>(makeString(u"2.5e-3")), 2.5e-3);
         EXPECT_EQ(parse<bool>("true"), true);
         EXPECT_EQ(parse<unsigned char>("256"), std::nullopt);
     }},
    {"`is_ascii`",
     [] {
         inBoth("plain", [](const String& text) { EXPECT_TRUE(isASCII(text)); });
         inBoth("plàin", [](const String& text) { EXPECT_FALSE(isASCII(text)); });
         EXPECT_TRUE(isASCII(makeString(std::string_view("\0", 1)))) << "U+0000";
     }},
    {"`eq_ignore_ascii_case`",
     [] {
         EXPECT_TRUE(equalsIgnoringASCIICase("Title É", makeString(u"tITLE É")));
         EXPECT_FALSE(equalsIgnoringASCIICase("É", "é"));
     }},
    {"`to_ascii_uppercase`, `make_ascii_uppercase`",
     [] { inBoth("aé😀z", [](const String& text) { expectText(toUpperASCII(text), "Aé😀Z"); }); }},
    {"`to_ascii_lowercase`, `make_ascii_lowercase`",
     [] { inBoth("AÉ😀Z", [](const String& text) { expectText(toLowerASCII(text), "aÉ😀z"); }); }},
    {"`replace`",
     [] { inBoth("a\\b\\c", [](const String& text) { expectText(replaceAll(text, "\\", "😀"), "a😀b😀c"); }); }},
    {"`replacen(…, 1)`",
     [] { inBoth("a-b-c", [](const String& text) { expectText(replaceFirst(text, "-", "😀"), "a😀b-c"); }); }},
    {"`replacen`",
     [] { inBoth("a-b-c-d", [](const String& text) { expectText(join(split(text, "-", 2 + 1), "😀"), "a😀b😀c-d"); }); }},
    {"`repeat`",
     [] {
         inBoth("😀=", [](const String& text) { expectText(repeat(text, 3), "😀=😀=😀="); });
         expectText(repeat("a", 0), "");
     }},
    {"`to_string`, `to_owned`, `into_string`",
     [] {
         const std::string line = "é😀";
         const String owned = makeString(line);
         expectText(owned, "é😀");
         EXPECT_NE(static_cast<const void*>(TextView(owned).getUTF8()), line.data());
     }},
    {"`as_str`",
     [] {
         const String text = makeString("é");
         EXPECT_EQ(TextView(text).getLength(), 2u);
     }},
    {"`str::from_utf8`",
     [] {
         EXPECT_TRUE(tryMakeString("é"));
         const MadeString malformed = tryMakeString("é\xC3(");
         EXPECT_FALSE(malformed);
         EXPECT_EQ(malformed.errorOffset, 2u);
         EXPECT_NE(malformed.error, nullptr);
     }},
    {"`utf8_chunks`",
     [] {
         unsigned int malformed = 0;
         const CodePoints codes = codePoints("a\xC3z\xFF");
         for (auto at = codes.begin(); at != codes.end(); ++at) malformed += at.isMalformed();
         EXPECT_EQ(malformed, 2u);
     }},
    {"`==`, `eq`",
     [] {
         EXPECT_TRUE(equals(makeString("a😀"), makeString(u"a😀")));
         EXPECT_FALSE(equals("a", "a "));
     }},
    {"`cmp`, `partial_cmp`",
     [] {
         EXPECT_EQ(compare(makeString(u"\uFFFD"), makeString("😀")), -1) << "U+FFFD before U+1F600 in UTF-16 too";
         EXPECT_EQ(compare("b", "ab"), 1);
         EXPECT_EQ(compare("é", u"é"), 0);
     }},
    {"`<`, `<=`, `max`, `min`",
     [] {
         EXPECT_TRUE(ordered(u"\uFFFD") < ordered("😀"));
         EXPECT_TRUE(ordered("a") >= ordered(u"a"));
     }},
    {"`Hash`",
     [] {
         EXPECT_EQ(hashOfText(makeString("a😀")), hashOfText(makeString(u"a😀")));
         EXPECT_NE(hashOfText("a"), hashOfText("b"));
     }},
    {"`concat` of a slice",
     [] {
         const std::vector<String> items = {makeString("a"), makeString(u"😀"), makeString("b")};
         expectText(join(items, ""), "a😀b");
     }},
    {"`join` of a slice",
     [] {
         const std::vector<String> items = {makeString("a"), makeString(u"😀")};
         expectText(join(items, ", "), "a, 😀");
     }},
};
