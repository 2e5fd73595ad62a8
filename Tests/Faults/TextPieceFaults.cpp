#include "Faults/Operation.h"
#include "Support/Texts.h"
#include "Vorn/Text/MakeString.h"
#include "Vorn/Text/TextBuilder.h"
#include "Vorn/Text/TextChange.h"
#include "Vorn/Text/TextPieces.h"

#include <string>

namespace {

using namespace Vorn;

const std::string LONG = "a separator that is long enough to need memory of its own";

// Runs `operation` on a string of each encoding, which must be as before if memory ends.
template <class Operation>
void onEachString(Attempt& attempt, Operation&& operation) {
    const std::string text = " Some, text, that needs a block of its own ";
    const String inUTF8 = makeString(text);
    const String inUTF16 = makeString(UTF16Text(text.begin(), text.end()));
    attempt(
        [&] {
            operation(inUTF8);
            operation(inUTF16);
        },
        [&] {
            EXPECT_EQ(textOf(*inUTF8.getData()), text);
            EXPECT_EQ(textOf(*inUTF16.getData()), text);
        });
}

} // namespace

std::vector<Operation> textPieceOperations() {
    return {
        {"TextPieces_Views",
         Outcome::ALLOCATES_NOTHING,
         {"TextPart::trim", "TextPart::substring", "TextPart::removePrefix", "TextPart::removeSuffix",
          "TextPart::slice", "TextPart::startOfLast", "TextSplitter::findNext", "TextSplitter::findLast",
          "TextSplitter::setSet", "TextSplitter::setText", "CharacterSet::getSingle", "CharacterSet::addChecked",
          "anyOf(TextView)"},
         [](Attempt& attempt) {
             attempt([] {
                 const TextView text = " a, b; c\r\n";
                 removeSuffix(removePrefix(substring(trim(text, anyOf(" \t")), 1, 5), ","), "c");
                 for (TextView piece : split(text, ", ")) trimEnd(piece, U'\u2003');
                 for (TextView piece : splitNonEmpty(text)) trimStart(piece);
                 splitOnceAtEnd(text, ';');
                 dropLast(slice(text, 1, 4), 1);
             });
         }},
        {"TextPieces_LongSeparator",
         Outcome::THROWS,
         {},
         [](Attempt& attempt) {
             attempt([] {
                 split("a", LONG);
                 split(u"a", LONG);
                 anyOf("\xC3\xA9\xC3\xA8\xC3\xA0\xC3\xB9\xE2\x82\xAC");
             });
         }},
        {"TextPieces_Strings",
         Outcome::THROWS,
         {"TextPart::share", "StringData::isEditSeenByParts"},
         [](Attempt& attempt) {
             onEachString(attempt, [](const String& s) {
                 const String part = trim(s);
                 for (const TextPiece& piece : split(s, ',')) piece.toString();
                 splitOnce(part, ',');
             });
         }},
        {"Concat",
         Outcome::THROWS,
         {"TextJoining::concat", "TextItem::writeCharacter"},
         [](Attempt& attempt) {
             onEachString(attempt, [](const String& s) {
                 concat(s, ", ", 42, U'\u20AC');
                 s + s;
             });
         }},
        {"TextBuilder",
         Outcome::THROWS,
         {"TextBuilder::TextBuilder(TextBuilder&&)", "TextBuilder::~TextBuilder()",
          "TextBuilder::operator=(TextBuilder&&)", "TextBuilder::reserve(unsigned int)", "TextBuilder::build() const",
          "TextBuilder::take()", "TextBuilder::appendItems"},
         [](Attempt& attempt) {
             onEachString(attempt, [](const String& s) {
                 TextBuilder builder;
                 builder.reserve(10);
                 builder.append(s, 1).append("in UTF-8");
                 builder.build();
                 TextBuilder other = std::move(builder);
                 builder = std::move(other);
                 builder.take();
             });
         }},
        {"TextChange",
         Outcome::THROWS,
         {"TextChange::replace", "TextChange::replaceRange", "TextChange::repeat", "TextChange::pad",
          "TextChange::changeCase"},
         [](Attempt& attempt) {
             onEachString(attempt, [](const String& s) {
                 replaceAll(s, ",", LONG);
                 replaceRange(s, 0, 1, LONG);
                 repeat(s, 5);
                 padStart(s, 100);
                 toUpperASCII(s);
             });
         }},
    };
}
