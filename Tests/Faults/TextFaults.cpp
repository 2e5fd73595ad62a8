#include "Faults/Operation.h"
#include "Vorn/Text/CodePoints.h"
#include "Vorn/Text/MakeString.h"
#include "Vorn/Text/TextConversion.h"
#include "Vorn/Text/TextOrder.h"
#include "Vorn/Text/TextSearch.h"

#include <string>

namespace {

using Vorn::String;
using Vorn::TextView;

// Longer than any standard string, and any needle, that needs no memory.
const std::string TEXT = std::string(400, 'x') + "\xC3\xA4\xE2\x82\xAC\xF0\x9D\x84\x9E and more";
const std::u16string WIDE = std::u16string(400, u'x') + u"\u00E4\u20AC\U0001D11E and more";
const std::u32string CODES = U"\u00E4\u20AC\U0001D11E and more";

// A static string is never freed, so it must stay reachable.
void keep(const String& string) {
    static String kept[64];
    static unsigned int count = 0;
    kept[count++ % 64] = string;
}

} // namespace

std::vector<Operation> textOperations() {
    return {
        {"MakeString",
         Outcome::THROWS,
         {"makeString"},
         [](Attempt& attempt) {
             attempt([] {
                 Vorn::makeString(TEXT);
                 Vorn::makeString(WIDE);
                 Vorn::makeString(CODES);
             });
         }},
        {"MakeStringReplacing",
         Outcome::THROWS,
         {"makeStringReplacing"},
         [](Attempt& attempt) {
             attempt([] {
                 Vorn::makeStringReplacing("a\xFF");
                 Vorn::makeStringReplacing(CODES);
             });
         }},
        {"TryMakeString",
         Outcome::THROWS,
         {"tryMakeString"},
         [](Attempt& attempt) {
             attempt([] {
                 Vorn::tryMakeString(TEXT);
                 Vorn::tryMakeString(CODES);
             });
         }},
        {"TryMakeString_Malformed",
         Outcome::ALLOCATES_NOTHING,
         {},
         [](Attempt& attempt) { attempt([] { Vorn::tryMakeString("a\xFF"); }); }},
        {"MakeStaticString",
         Outcome::THROWS,
         {"makeStaticString"},
         [](Attempt& attempt) { attempt([] { keep(Vorn::makeStaticString("a literal")); }); }},
        {"TextConversion_ToStandardStrings",
         Outcome::THROWS,
         {"toUTF8", "toUTF16", "toUTF32"},
         [](Attempt& attempt) {
             attempt([] {
                 Vorn::toUTF8(WIDE);
                 Vorn::toUTF16(TEXT);
                 Vorn::toUTF32(TEXT);
             });
         }},
        {"TextConversion_IntoMemory",
         Outcome::ALLOCATES_NOTHING,
         {"lengthInUTF8", "lengthInUTF16"},
         [](Attempt& attempt) {
             attempt([] {
                 char bytes[100];
                 char16_t units[100];
                 char32_t codes[100];
                 Vorn::toUTF8(WIDE, bytes, 100);
                 Vorn::toUTF16(TEXT, units, 100);
                 Vorn::toUTF32(TEXT, codes, 100);
                 Vorn::lengthInUTF8(WIDE);
                 Vorn::lengthInUTF16(TEXT);
             });
         }},
        {"TextConversion_ToStrings",
         Outcome::THROWS,
         {"inUTF8", "inUTF16"},
         [](Attempt& attempt) {
             attempt([] {
                 Vorn::inUTF8(WIDE);
                 Vorn::inUTF16(TEXT);
             });
         }},
        {"TextSearch_NeedlesOfAnotherEncoding",
         Outcome::THROWS,
         {"find", "findNext", "findLast", "findPrevious", "count", "findIgnoringASCIICase",
          "findNextIgnoringASCIICase"},
         [](Attempt& attempt) {
             attempt([] {
                 Vorn::find(TEXT, WIDE);
                 Vorn::findNext(WIDE, TEXT, 1);
                 Vorn::findLast(TEXT, WIDE);
                 Vorn::findPrevious(WIDE, TEXT, 1);
                 Vorn::count(TEXT, WIDE);
                 Vorn::findIgnoringASCIICase(TEXT, WIDE);
                 Vorn::findNextIgnoringASCIICase(WIDE, TEXT, 1);
             });
         }},
        {"TextSearch_OtherSearches",
         Outcome::ALLOCATES_NOTHING,
         {"startsWith", "endsWith", "findAnyOf", "findNoneOf", "findLastAnyOf", "findLastNoneOf", "findNextAnyOf",
          "findNextNoneOf", "equalsIgnoringASCIICase", "compareIgnoringASCIICase", "startsWithIgnoringASCIICase",
          "endsWithIgnoringASCIICase"},
         [](Attempt& attempt) {
             attempt([] {
                 Vorn::find(TEXT, TEXT);
                 Vorn::find(TEXT, 'x');
                 Vorn::startsWith(TEXT, WIDE);
                 Vorn::endsWith(TEXT, WIDE);
                 Vorn::findAnyOf(TEXT, WIDE);
                 Vorn::findNoneOf(TEXT, WIDE);
                 Vorn::findLastAnyOf(TEXT, WIDE);
                 Vorn::findLastNoneOf(TEXT, WIDE);
                 Vorn::findNextAnyOf(TEXT, WIDE, 1);
                 Vorn::findNextNoneOf(TEXT, WIDE, 1);
                 Vorn::equalsIgnoringASCIICase(TEXT, WIDE);
                 Vorn::compareIgnoringASCIICase(TEXT, WIDE);
                 Vorn::startsWithIgnoringASCIICase(TEXT, WIDE);
                 Vorn::endsWithIgnoringASCIICase(TEXT, WIDE);
             });
         }},
        {"TextOrder",
         Outcome::ALLOCATES_NOTHING,
         {"compare", "equals", "hashOfText", "codePointCount", "offsetOfCodePoint", "boundaryAtOrBefore",
          "boundaryAtOrBehind", "isASCII"},
         [](Attempt& attempt) {
             attempt([] {
                 Vorn::compare(TEXT, WIDE);
                 Vorn::equals(TEXT, WIDE);
                 Vorn::hashOfText(WIDE);
                 Vorn::codePointCount(TEXT);
                 Vorn::offsetOfCodePoint(TEXT, 3);
                 Vorn::boundaryAtOrBefore(TEXT, 3);
                 Vorn::boundaryAtOrBehind(TEXT, 3);
                 Vorn::isASCII(TEXT);
             });
         }},
        {"TextView_OfBothEncodings",
         Outcome::ALLOCATES_NOTHING,
         {"TextView::isInUTF16"},
         [](Attempt& attempt) {
             const String string("\xF0\x9F\x98\x80");
             string.getData()->getBuffer<Vorn::UTF16Char>();
             attempt([&] { EXPECT_TRUE(TextView(string).isUTF8()); });
         }},
    };
}
