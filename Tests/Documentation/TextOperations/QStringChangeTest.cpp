#include "Documentation/TextOperations/TextOperation.h"
#include "Vorn/Text.h"

#include <algorithm>
#include <iterator>

using namespace Vorn;

const TextOperations QSTRING_CHANGE_OPERATIONS = {
    {"`left`, `first`", [] { inBoth("é😀b", [](const String& text) { expectText(substring(text, 0, 2), "é😀"); }); }},
    {"`right`, `last`",
     [] {
         inBoth("aé😀", [](const String& text) {
             expectText(last(text, 2), "é😀");
             expectText(last(text, 99), "aé😀");
         });
     }},
    {"`mid(pos)`, `sliced(pos)`",
     [] {
         inBoth("é😀b", [](const String& text) {
             expectText(substring(text, 1), "😀b");
             expectText(substring(text, 3), "");
         });
     }},
    {"`mid(pos, n)`, `sliced(pos, n)`, `slice`",
     [] {
         EXPECT_EQ(toUTF8(slice(u"é😀b", 1, 2)), "😀");
         inBoth("é😀b", [](const String& text) { expectText(substring(text, 1, 1), "😀"); });
     }},
    {"`chop`, `chopped`", [] { inBoth("é😀b", [](const String& text) { expectText(dropLast(text, 2), "é"); }); }},
    {"`truncate`",
     [] {
         expectText(slice(makeString(u"é😀b"), 0, 3), "é😀");
         EXPECT_THROW(slice(makeString(u"é😀b"), 0, 2), Exception<4>);
     }},
    {"`trimmed`", [] { inBoth(" \u3000é\t", [](const String& text) { expectText(trim(text), "é"); }); }},
    {"`simplified`",
     [] { inBoth("  é \t 😀\n", [](const String& text) { expectText(join(splitNonEmpty(text), " "), "é 😀"); }); }},
    {"`split(separator)`",
     [] {
         inBoth("é,,😀", [](const String& text) {
             expectPieces(split(text, ','), {"é", "", "😀"});
             std::vector<String> kept;
             for (const String piece : split(text, ',')) kept.push_back(piece);
             expectText(kept[2], "😀");
         });
     }},
    {"`split(…, Qt::SkipEmptyParts)`",
     [] { inBoth(",é,,😀,", [](const String& text) {
              expectPieces(splitNonEmpty(text, ','), {"é", "😀"});
          }); }},
    {"`split(QString())` into characters", [] { EXPECT_EQ(*++codePoints(u"é😀").begin(), 0x1F600u); }},
    {"`tokenize`, `QStringTokenizer`",
     [] {
         const TextView text = u"é::😀";
         const auto piece = split(text, "::");
         auto at = piece.begin();
         expectText(*++at, "😀");
     }},
    {"`section(c, n, n)`",
     [] {
         const TextView text = "root:x:😀:0";
         const auto fields = split(text, ':');
         expectText(*std::next(fields.begin(), 2), "😀");
     }},
    {"`section(separator, 0, 0)`",
     [] {
         const auto parts = splitOnce("é=😀=b", '=');
         ASSERT_TRUE(parts);
         expectText(parts->first, "é");
         expectText(parts->second, "😀=b");
     }},
    {"`section(separator, -1)`",
     [] {
         const auto parts = splitOnceAtEnd(u"/home/é/😀", '/');
         ASSERT_TRUE(parts);
         expectText(parts->second, "😀");
     }},
    {"`QStringList::join`",
     [] {
         const std::vector<String> items = {makeString("é"), makeString(u"😀")};
         expectText(join(items, "; "), "é; 😀");
     }},
    {"`QStringList::filter`, `indexOf`, `contains`",
     [] {
         const std::vector<String> items = {makeString("é"), makeString(u"😀")};
         EXPECT_TRUE(
             std::any_of(items.begin(), items.end(), [](const String& item) { return TextEqual()(item, "😀"); }));
     }},
    {"`append`, `push_back`, `+=`",
     [] {
         TextBuilder builder;
         builder.append(makeString("é"), U'😀', "b", 1);
         expectText(builder.take(), "é😀b1");
     }},
    {"`prepend`, `push_front`", [] { expectText(concat("> ", makeString(u"é😀")), "> é😀"); }},
    {"`+`, `%` of QStringBuilder",
     [] {
         expectText(makeString("é") + u"😀", "é😀");
         expectText(concat("a", 1, U'é'), "a1é");
     }},
    {"`insert`",
     [] {
         expectText(insert(makeString(u"é😀"), 1, "-"), "é-😀");
         expectText(insert(makeString("é😀"), 6, "-"), "é😀-");
     }},
    {"`remove(pos, n)`, `removeAt`, `erase`", [] { expectText(erase(makeString("é😀b"), 2, 4), "éb"); }},
    {"`removeFirst`", [] { inBoth("😀b", [](const String& text) { expectText(substring(text, 1), "b"); }); }},
    {"`removeLast`", [] { inBoth("b😀", [](const String& text) { expectText(dropLast(text, 1), "b"); }); }},
    {"`remove(text)`, `remove(c)`",
     [] { inBoth("é😀é", [](const String& text) { expectText(replaceAll(text, "é", ""), "😀"); }); }},
    {"`removeIf`, `erase_if`",
     [] { inBoth("1 000·é", [](const String& text) { expectText(join(split(text, anyOf(" ·")), ""), "1000é"); }); }},
    {"`replace(pos, n, after)`", [] { expectText(replaceRange(makeString(u"é😀b"), 1, 2, "--"), "é--b"); }},
    {"`replace(before, after)`",
     [] { inBoth("é-é", [](const String& text) { expectText(replaceAll(text, "é", "😀"), "😀-😀"); }); }},
    {"`repeated`", [] { inBoth("é😀", [](const String& text) { expectText(repeat(text, 2), "é😀é😀"); }); }},
    {"`leftJustified`", [] { inBoth("é😀", [](const String& text) { expectText(padEnd(text, 4, U'.'), "é😀.."); }); }},
    {"`rightJustified`", [] { inBoth("é😀", [](const String& text) { expectText(padStart(text, 4, U'·'), "··é😀"); }); }},
    {"`resize(n, fill)`", [] { expectText(padEnd("é", 3, U'_'), "é__"); }},
    {"`toUpper`", [] { inBoth("aé😀", [](const String& text) { expectText(toUpperASCII(text), "Aé😀"); }); }},
    {"`toLower`, `toCaseFolded`",
     [] { inBoth("AÉ😀", [](const String& text) { expectText(toLowerASCII(text), "aÉ😀"); }); }},
    {"`isUpper`",
     [] {
         const String text = makeString(u"AÉ1");
         EXPECT_TRUE(equals(text, toUpperASCII(text)));
         EXPECT_FALSE(equals("Ab", toUpperASCII("Ab")));
     }},
    {"`isLower`",
     [] {
         EXPECT_TRUE(equals("aé", toLowerASCII("aé")));
         EXPECT_FALSE(equals("aB", toLowerASCII("aB")));
     }},
    {"`QChar::isSpace`",
     [] {
         EXPECT_TRUE(isWhiteSpace(0x3000));
         EXPECT_FALSE(isWhiteSpace('a'));
     }},
};
