#include "Documentation/TextOperations/TextOperation.h"
#include "Vorn/Text.h"

using namespace Vorn;

const TextOperations QSTRING_SEARCH_OPERATIONS = {
    {"`QString(const char*)`, `fromUtf8`, `fromStdString`, `operator=`",
     [] {
         expectText(makeString("é😀"), "é😀");
         expectText(makeString(std::string("é")), "é");
         EXPECT_THROW(makeString("\xFF"), Exception<7>);
         expectText(makeStringReplacing("\xFF"), "\uFFFD");
     }},
    {"`fromUtf16`, `fromStdU16String`, `QString(const QChar*, n)`",
     [] {
         const char16_t units[] = u"é😀b";
         expectText(makeString(TextView(units, 3)), "é😀");
         expectText(makeString(toUTF16("é😀b")), "é😀b");
     }},
    {"`fromUcs4`, `fromStdU32String`", [] { expectText(makeString(std::u32string_view(U"é😀")), "é😀"); }},
    {"`fromWCharArray`, `fromStdWString`", [] { expectText(makeString(std::wstring(L"é")), "é"); }},
    {"`QString(QChar)`", [] { expectText(concat(U'😀'), "😀"); }},
    {"`QString(n, c)`, `fill`", [] { expectText(repeat("é", 3), "ééé"); }},
    {"`QStringLiteral`, `u\"\"_s`",
     [] {
         const String& first = VORN_TEXT("é😀");
         expectText(first, "é😀");
         expectText(VORN_TEXT(u"é"), "é");
         expectText(VORN_TEXT(u8"é"), "é");
     }},
    {"`QLatin1StringView`, `QUtf8StringView`, `QStringView`, `QAnyStringView`",
     [] {
         const String text = makeString(u"é");
         EXPECT_EQ(TextView(text).getLength(), 1u);
         EXPECT_EQ(TextView("é").getLength(), 2u);
     }},
    {"`isNull`",
     [] {
         EXPECT_TRUE(String().isNull());
         EXPECT_FALSE(makeString("").isNull());
         EXPECT_TRUE(equals(String(), ""));
     }},
    {"`isEmpty`",
     [] {
         EXPECT_TRUE(TextView(String()).isEmpty());
         EXPECT_FALSE(TextView(u"é").isEmpty());
     }},
    {"`size`, `length`, `count()`",
     [] {
         EXPECT_EQ(TextView(u"é😀").getLength(), 3u);
         EXPECT_EQ(lengthInUTF16(makeString("é😀")), 3u);
     }},
    {"`at`, `operator[]`",
     [] { inBoth("é😀", [](const String& text) { EXPECT_EQ(codePointAt(text, 1), UTF32Char(0x1F600)); }); }},
    {"`front`", [] { inBoth("😀é", [](const String& text) { EXPECT_EQ(codePointAt(text, 0), UTF32Char(0x1F600)); }); }},
    {"`back`", [] { inBoth("é😀", [](const String& text) { expectText(last(text, 1), "😀"); }); }},
    {"`begin`, `end`, `cbegin`, `constBegin`, `rbegin` and their ends",
     [] {
         inBoth("é😀", [](const String& text) {
             unsigned int sum = 0;
             for (const UTF32Char c : codePoints(text)) sum += c;
             EXPECT_EQ(sum, 0xE9u + 0x1F600u);
         });
     }},
    {"`data`, `constData`, `unicode`, `utf16`",
     [] {
         EXPECT_EQ(TextView(makeString("é")).getUTF16(), nullptr);
         const String text = inUTF16(makeString("é😀"));
         EXPECT_EQ(TextView(text).getUTF16()[1], 0xD83D);
     }},
    {"`fromRawData`, `setRawData`",
     [] {
         const char buffer[] = {'a', 'b'};
         expectText(TextView(buffer, 2), "ab");
     }},
    {"`setUnicode`, `setUtf16`, `assign`, `swap`",
     [] {
         String text = makeString("old");
         text = makeString(u"é");
         expectText(text, "é");
     }},
    {"`clear`",
     [] {
         String text = makeString("old");
         text = makeString("");
         EXPECT_TRUE(TextView(text).isEmpty());
     }},
    {"`reserve`",
     [] {
         TextBuilder builder;
         builder.reserve(20);
         expectText(builder.append("é").take(), "é");
     }},
    {"`squeeze`, `shrink_to_fit`",
     [] {
         TextBuilder builder;
         builder.reserve(1000);
         expectText(builder.append("é").build(), "é");
     }},
    {"`isValidUtf16`",
     [] {
         EXPECT_TRUE(tryMakeString(u"é😀"));
         const MadeString malformed = tryMakeString(std::u16string{u'a', char16_t(0xDC00)});
         EXPECT_FALSE(malformed);
         EXPECT_EQ(malformed.errorOffset, 1u);
     }},
    {"`compare`, `QString::compare(a, b)`",
     [] {
         EXPECT_EQ(compare(u"\uFFFD", u"😀"), -1);
         EXPECT_EQ(compare(makeString("é"), u"é"), 0);
     }},
    {"`compare(…, Qt::CaseInsensitive)`",
     [] {
         EXPECT_EQ(compareIgnoringASCIICase("ABé", u"abé"), 0);
         EXPECT_EQ(compareIgnoringASCIICase("a", "B"), -1);
     }},
    {"`==`, `!=`", [] { EXPECT_TRUE(equals(u"é😀", "é😀")); }},
    {"`<`, `<=`, `>`, `>=`, `<=>`",
     [] {
         EXPECT_TRUE(ordered(u"\uFFFD") < ordered(u"😀"));
         EXPECT_TRUE(ordered("b") > ordered(u"a"));
     }},
    {"`qHash`", [] { EXPECT_EQ(hashOfText(u"é😀"), hashOfText("é😀")); }},
    {"`contains(text)`, `contains(c)`",
     [] {
         inBoth("é😀b", [](const String& text) {
             EXPECT_TRUE(contains(text, U'😀'));
             EXPECT_TRUE(contains(text, u"😀b"));
         });
     }},
    {"`contains(…, Qt::CaseInsensitive)`",
     [] { inBoth("é One", [](const String& text) { EXPECT_TRUE(containsIgnoringASCIICase(text, "oNE")); }); }},
    {"`startsWith`", [] { inBoth("😀b", [](const String& text) { EXPECT_TRUE(startsWith(text, "😀")); }); }},
    {"`startsWith(…, Qt::CaseInsensitive)`",
     [] { inBoth("HTTP://é", [](const String& text) { EXPECT_TRUE(startsWithIgnoringASCIICase(text, "http:")); }); }},
    {"`endsWith`",
     [] {
         inBoth("b😀", [](const String& text) {
             EXPECT_TRUE(endsWith(text, U'😀'));
             EXPECT_FALSE(endsWith(text, "b"));
         });
     }},
    {"`endsWith(…, Qt::CaseInsensitive)`",
     [] { inBoth("é.PNG", [](const String& text) { EXPECT_TRUE(endsWithIgnoringASCIICase(text, u".png")); }); }},
    {"`indexOf(needle)`",
     [] {
         EXPECT_EQ(find(u"😀ab", "b"), 3u);
         EXPECT_EQ(find("😀ab", 'b'), 5u);
     }},
    {"`indexOf(needle, from)`", [] { EXPECT_EQ(findNext(u"é,😀,", ",", 2), 4u); }},
    {"`indexOf(…, Qt::CaseInsensitive)`",
     [] {
         EXPECT_EQ(findIgnoringASCIICase("é One one", "ONE"), 3u);
         EXPECT_EQ(findNextIgnoringASCIICase("é One one", "ONE", 4), 7u);
     }},
    {"`lastIndexOf(needle)`", [] { EXPECT_EQ(findLast(u"é,😀,b", ','), 4u); }},
    {"`lastIndexOf(needle, from)`", [] { EXPECT_EQ(findPrevious(u"é,😀,b", ",", 3 + 1), 1u); }},
    {"`count(needle)`",
     [] {
         inBoth("aaa😀😀", [](const String& text) {
             EXPECT_EQ(count(text, U'😀'), 2u);
             EXPECT_EQ(count(text, "aa"), 1u);
         });
     }},
};
