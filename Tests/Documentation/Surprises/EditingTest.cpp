#include "Documentation/Surprises/Surprise.h"
#include "Support/AllocationCounter.h"
#include "Support/StringDataProbe.h"
#include "Vorn/PrintInt.h"
#include "Vorn/String/ASCIITable.h"
#include "Vorn/String/Interop.h"
#include "Vorn/String/UTF8String.h"
#include "Vorn/Text.h"

namespace {

using namespace Vorn;

using Units = std::basic_string<UTF16Char>;

std::string textOf(const String& string) { return std::string(view(string)); }

ASCIITable tableOf(const char* characters) { return ASCIITable(reinterpret_cast<const signed char*>(characters)); }

template <int N, class Run>
void expectThrows(Run&& run) {
    EXPECT_THROW(run(), Exception<N>);
}

} // namespace

const Surprises EDITING_SURPRISES = {
    {"`ASCIITable::check` of a byte above 127",
     [] { EXPECT_EQ(tableOf("a").check(static_cast<signed char>(0xC3)), 0); },
     [] {
         EXPECT_TRUE(anyOf("a\u00E9").contains(0xE9));
         EXPECT_FALSE(anyOf("a").contains(0xE9));
     }},
    {"`UTF8String::find` and its like from inside a character",
     [] {
         const UTF8String string("\xC3\xA9"
                                 "a");
         EXPECT_EQ(string.find(U'a', 1), 1u) << "it is at 2";
     },
     [] {
         const UTF8String text("\xC3\xA9x");
         EXPECT_EQ(findNext(text, 'x', 1), 2u);
     }},
    {"`UTF8String::get`, `operator[]` from 0x80000000 up",
     [] {
         EXPECT_EQ(UTF8String("abc").get(0xFFFFFFFF), 'c');
         EXPECT_EQ(UTF8String("abc")[0xFFFFFFFE], 'b');
         expectThrows<4>([] { UTF8String("abc").get(0x80000000); });
     },
     [] { EXPECT_EQ(UTF8String("abc").getBuffer()[2], 'c'); }},
    {"`insert`, `replace` in texts of 2 GiB and more",
     [] {
         // The index is refused before the text is read, so a record that claims the length will do.
         UTF8String string("abc");
         StringDataBufferInfo& info = VornPrivate::StringDataProbe::info<unsigned char>(*string.getData());
         info.m_length = 0x80000000;
         for (const int index : {0, 1, -1, 0x7FFFFFFF}) {
             expectThrows<4>([&] { string.insert(U'x', index); });
             expectThrows<4>([&] { string.replace(U'x', index, 1); });
         }
         info.m_length = 3;
     },
     [] {
         EXPECT_EQ(toUTF8(insert(UTF8String("abc"), 1, "x")), "axbc");
         EXPECT_EQ(toUTF8(replaceRange(UTF8String("abc"), 1, 1, "x")), "axc");
     }},
    {"`UTF8String::match`", [] { EXPECT_EQ(UTF8String("xab").match("ab", 1), 1u); },
     [] {
         const UTF8String text("xab");
         EXPECT_TRUE(startsWith(slice(text, 1), "ab"));
         EXPECT_FALSE(startsWith(slice(text, 0), "ab"));
         EXPECT_EQ(text.match("ab", 1) + 2, 3u);
     }},
    {"`UTF8String::skip(s)`", [] { EXPECT_EQ(UTF8String("ababba").skip("ab"), 4u); },
     [] {
         const UTF8String text("abac");
         EXPECT_EQ(findNextNoneOf(text, "ab", 0), 3u);
     }},
    {"`UTF8String::previous` behind 4 bytes",
     [] {
         const UTF8String string("\xF0\x9F\x98\x80z");
         expectThrows<2>([&] { string.previous(4); });
         EXPECT_EQ(string.previous(3), 0u) << "inside the character";
         EXPECT_EQ(UTF8String("\xF0\x9F\x98\x80").previous(4), 0u) << "at the end";
     },
     [] {
         const UTF8String text("\xF0\x9F\x98\x80z");
         EXPECT_EQ(boundaryAtOrBefore(text, 4 - 1), 0u);
     }},
    {"`UTF8String::reserve`",
     [] {
         UTF8String string = String("abc");
         string.reserve(100);
         EXPECT_GE(allocationsDuring([&] { string.append(U'd'); }), 1u);
     },
     [] {
         TextBuilder builder;
         builder.reserve(100);
         EXPECT_EQ(allocationsDuring([&] { builder.append("abc").append("def"); }), 0u);
         EXPECT_EQ(toUTF8(builder.build()), "abcdef");
     }},
    {"Edits of `UTF8String()`",
     [] {
         UTF8String string;
         expectThrows<2>([&] { string.append(U'a'); });
     },
     [] { EXPECT_EQ(toUTF8(concat(UTF8String(), "abc")), "abc"); }},
    {"Copies of a `UTF8String()` after `reserve`",
     [] {
         UTF8String string;
         string.reserve(10);
         EXPECT_EQ(string.getData()->getRefCount(), 0u) << "the first copy that is destroyed destroys the record";
     },
     [] {
         TextBuilder builder;
         builder.reserve(10);
         const String string = builder.append("abc").build();
         const String copy = string;
         EXPECT_EQ(copy.getData()->getRefCount(), 2u);
     }},
    {"`append` and its like of UTF-16 text that cannot be converted",
     [] {
         const Units text{0, 'a'};
         UTF8String string = String("xyz");
         expectThrows<2>([&] { string.append(String(text.c_str(), 2)); });
         EXPECT_GT(string.getLength(), 3u);
     },
     [] {
         const std::u16string units(u"\0z", 2);
         EXPECT_EQ(toUTF8(concat(UTF8String("a"), units)), std::string("a\0z", 3));
     }},
    {"Edits of a text that has become malformed",
     [] {
         UTF8String string = String("abc");
         string.append(0x80000080u); // a byte that is no character
         expectThrows<7>([&] { string.append(U'd'); });
         EXPECT_NE(textOf(string).substr(0, 3), "abc");
     },
     [] {
         const UTF8String text("a\u00E9");
         EXPECT_THROW(concat(text, char32_t(0x80000080)), Exception<7>);
         EXPECT_THROW(insert(text, 2, "b"), Exception<4>) << "inside a character";
         EXPECT_THROW(erase(text, 1, 1), Exception<4>);
         EXPECT_THROW(replaceRange(text, 0, 2, "b"), Exception<4>);
         EXPECT_EQ(textOf(text), "a\u00E9");
     }},
    {"Edits that do not lengthen the text",
     [] {
         UTF8String string = String("abc");
         string.append(U'd'); // a record and a block of its own
         const String part(string.getData()->substr<unsigned char>(1, 2));
         const UTF16Char old = string.getData()->getBuffer<UTF16Char>()[1];
         string.replace(U'X', 1, 1);
         EXPECT_EQ(textOf(part), "Xc");
         EXPECT_EQ(string.getData()->getBuffer<UTF16Char>()[1], old);
     },
     [] {
         UTF8String string = String("abc");
         string.append(U'd');
         const String part(string.getData()->substr<unsigned char>(1, 2));
         string.getData()->getBuffer<UTF16Char>();
         const String replaced = replaceRange(string, 1, 1, "X");
         EXPECT_EQ(textOf(part), "bc");
         EXPECT_EQ(toUTF8(replaced), "aXcd");
         EXPECT_EQ(replaced.getData()->getBuffer<UTF16Char>()[1], 'X');
     }},
    {"`getCharset`, `haveEmbeddedNulls` after an edit",
     [] {
         UTF8String string = String("abc");
         string.append(U'\u00E9');
         EXPECT_EQ(string.getCharset(), STRING_DATA_ASCII);
         string.append(0u);
         EXPECT_EQ(string.getCharset(), STRING_DATA_UCS2) << "of the text before this edit";
         EXPECT_FALSE(string.haveEmbeddedNulls());
     },
     [] {
         const UTF8String string = String("abc");
         EXPECT_EQ(concat(string, U'\u00E9').getCharset(), STRING_DATA_UCS2);
         EXPECT_TRUE(insert(string, 1, concat(U'\0')).haveEmbeddedNulls());
         EXPECT_EQ(erase(concat(string, U'\u00E9'), 3).getCharset(), STRING_DATA_ASCII);
         EXPECT_EQ(replaceRange(string, 0, 1, "\u00E9").getCharset(), STRING_DATA_UCS2);
     }},
    {"`append` and its like of codes from 0x80000080 up",
     [] {
         UTF8String string = String("abc");
         string.append(0x80000100u);
         EXPECT_EQ(textOf(string), std::string("abc\0", 4));
     },
     [] { EXPECT_THROW(concat(UTF8String("a"), char32_t(0x80000080)), Exception<7>); }},
    {"Negative index",
     [] {
         UTF8String string = String("abc");
         EXPECT_EQ(string.find(U'b', -2), 1u);
         string.erase(-2, 1);
         EXPECT_EQ(textOf(string), "ac");
         string.insert(U'x', -2);
         EXPECT_EQ(textOf(string), "acx");
         string.replace(U'y', -3, 1);
         EXPECT_EQ(textOf(string), "acxy");
     },
     [] {
         EXPECT_EQ(toUTF8(insert("ab", 1, "-")), "a-b");
         EXPECT_THROW(insert("ab", 0xFFFFFFFF, "-"), Exception<4>);
     }},
    {"`insert(\"\")`, `erase(i, 0)`",
     [] {
         UTF8String string = String("abc");
         string.insert(String(""), 100);
         string.erase(100, 0);
         EXPECT_EQ(textOf(string), "abc");
         expectThrows<4>([&] { string.erase(100, 1); });
     },
     [] {
         EXPECT_THROW(insert("ab", 3, ""), Exception<4>);
         EXPECT_THROW(erase("ab", 3, 0), Exception<4>);
     }},
    {"`appendDecimal(100000)`",
     [] {
         UTF8String string = String("n = ");
         string.appendDecimal(100000);
         EXPECT_EQ(string.getLength(), 9u);
         EXPECT_EQ(textOf(string).substr(4), std::string(5, '\0'));
     },
     [] { EXPECT_EQ(toUTF8(concat(UTF8String("a"), 100000)), "a100000"); }},
};
