#include "Documentation/TextOperations/TextOperation.h"
#include "Vorn/Text.h"
#include "Vorn/Text/FormatFmt.h"

#include <map>
#include <sstream>
#include <unordered_map>

using namespace Vorn;

const TextOperations QSTRING_CONVERSION_OPERATIONS = {
    {"`toInt`, `toLong`, `toShort`, `toLongLong`",
     [] {
         EXPECT_EQ(parse<int>(u"-42"), -42);
         EXPECT_EQ(parse<short>("40000"), std::nullopt);
         EXPECT_EQ(parse<long long>("9223372036854775807"), 9223372036854775807);
         EXPECT_EQ(parse<int>("42é"), std::nullopt);
     }},
    {"`toUInt`, `toULong`, `toUShort`, `toULongLong`",
     [] {
         EXPECT_EQ(parse<unsigned int>("4294967295"), 4294967295u);
         EXPECT_EQ(parse<unsigned int>("-1"), std::nullopt);
     }},
    {"`toInt(&ok, base)`",
     [] {
         EXPECT_EQ(parse<int>("ff", 16), 255);
         EXPECT_EQ(parse<int>(u"0x1F", BASE_BY_PREFIX), 31);
     }},
    {"`toInt(&ok)` with a reason",
     [] {
         int value = 7;
         EXPECT_EQ(parseInto(value, "99999999999"), NumberError::OUT_OF_RANGE);
         EXPECT_EQ(parseInto(value, "é"), NumberError::MALFORMED);
         EXPECT_EQ(value, 7);
         EXPECT_EQ(parseInto(value, u"8"), NumberError::NONE);
         EXPECT_EQ(value, 8);
     }},
    {"`toFloat`", [] { EXPECT_EQ(parse<float>(u"0.1"), 0.1f); }},
    {"`toDouble`",
     [] {
         EXPECT_EQ(parse<double>("1e-3"), 1e-3);
         EXPECT_EQ(parse<double>("1,5"), std::nullopt);
     }},
    {"`number(n)`, `setNum(n)`",
     [] {
         expectText(toText(-42), "-42");
         expectText(toText(18446744073709551615ull), "18446744073709551615");
     }},
    {"`number(n, base)`, `setNum(n, base)`",
     [] {
         expectText(toText(255, 16), "ff");
         expectText(toText(-5, 2), "-101");
     }},
    {"`number(d)`, `number(d, 'g', QLocale::FloatingPointShortest)`",
     [] {
         expectText(toText(0.1), "0.1");
         expectText(toText(1e300), "1e+300");
     }},
    {"`number(d, 'f', digits)`, `setNum(d, 'f', digits)`",
     [] {
         expectText(toFixedText(2.5, 2), "2.50");
         expectText(toFixedText(-0.125, 1), "-0.1");
     }},
    {"`arg(n)`, `arg(text)`",
     [] {
         EXPECT_EQ(fmt::format("{} of {}", makeString(u"é😀"), 3), "é😀 of 3");
         expectText(concat(makeString("é"), " of ", 3), "é of 3");
     }},
    {"`arg(a1, a2, …)` with `%2 %1`",
     [] { EXPECT_EQ(fmt::format("{1} {0}", makeString("é"), makeString(u"😀")), "😀 é"); }},
    {"`arg(n, width, base, fill)`",
     [] {
         EXPECT_EQ(fmt::format("{:08x}", 255), "000000ff");
         expectText(padStart(toText(255, 16), 8, U'0'), "000000ff");
     }},
    {"`arg(d, width, 'f', digits)`", [] { EXPECT_EQ(fmt::format("{:8.2f}", 2.5), "    2.50"); }},
    {"`asprintf`, `vasprintf`", [] { EXPECT_EQ(fmt::format("{:>4}|{:<3}", makeString("é"), 5), "   é|5  "); }},
    {"`toUtf8`, `toStdString`, `operator const char*`",
     [] { inBoth("é😀", [](const String& text) { EXPECT_EQ(toUTF8(text), "é😀"); }); }},
    {"`toStdU16String`", [] { inBoth("é😀", [](const String& text) { EXPECT_TRUE(toUTF16(text) == u"é😀"); }); }},
    {"`toUcs4`, `toStdU32String`",
     [] { inBoth("é😀", [](const String& text) { EXPECT_TRUE(toUTF32(text) == U"é😀"); }); }},
    {"`toWCharArray`",
     [] {
         char32_t wide[4];
         EXPECT_EQ(toUTF32(u"é😀", wide, 4).written, 2u);
         EXPECT_EQ(wide[1], U'😀');
         char16_t units[4];
         EXPECT_EQ(toUTF16("é😀", units, 4).written, 3u);
     }},
    {"conversion of the string itself",
     [] {
         const String text = makeString(u"é😀");
         EXPECT_EQ(inUTF16(text).getData(), text.getData());
         EXPECT_TRUE(TextView(inUTF8(text)).isUTF8());
         expectText(inUTF8(text), "é😀");
     }},
    {"`<<` to a text stream",
     [] {
         std::ostringstream stream;
         stream << makeString(u"é😀");
         EXPECT_EQ(stream.str(), "é😀");
     }},
    {"`>>` from a text stream",
     [] {
         std::istringstream stream("é😀 b");
         String text;
         stream >> text;
         expectText(text, "é😀");
     }},
    {"`QTextStream::readLine`",
     [] { inBoth("é\r\n😀", [](const String& text) {
              expectPieces(lines(text), {"é", "😀"});
          }); }},
    {"`nullTerminate`, `nullTerminated`",
     [] {
         const String text = makeString(TextView("éb", 2));
         EXPECT_STREQ(text.getCString(), "é");
     }},
    {"`QMap<QString, T>`",
     [] {
         std::map<String, int, CodePointLess> map;
         map[makeString(u"é")] = 1;
         EXPECT_EQ(map.find("é")->second, 1);
     }},
    {"`QHash<QString, T>`",
     [] {
         std::unordered_map<String, int, TextHash, TextEqual> map;
         map[makeString(u"é")] = 1;
         EXPECT_EQ(map.find("é")->second, 1);
     }},
    {"interned keys",
     [] {
         EXPECT_EQ(Name("é"), Name(u"é"));
         EXPECT_NE(Name("é"), Name("e"));
     }},
};
