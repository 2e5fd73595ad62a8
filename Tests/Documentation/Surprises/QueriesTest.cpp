#include "Documentation/Surprises/Surprise.h"
#include "Support/AllocationCounter.h"
#include "Support/ExpectedLeak.h"
#include "Vorn/String/Interop.h"
#include "Vorn/String/String.h"
#include "Vorn/Text.h"

#include <algorithm>

namespace {

using namespace Vorn;

using Units = std::basic_string<UTF16Char>;

// A string in UTF-16 with its units.
struct Wide {
    explicit Wide(const std::u16string& units)
        : text(units.begin(), units.end()), string(text.c_str(), static_cast<unsigned int>(text.size())) {}
    Wide(const Wide&) = delete;
    Wide& operator=(const Wide&) = delete;

    const Units text;
    String string;
};

template <class CharType>
String substringOf(const String& string, int offset, unsigned int length) {
    return String(string.getData()->substr<CharType>(offset, length));
}

std::string textOf(const String& string) { return std::string(view(string)); }

// With a UTF-16 buffer that was built from UTF-8.
String builtWide(const char* text) {
    const String string(text);
    string.getData()->getBuffer<UTF16Char>();
    return string;
}

} // namespace

const Surprises QUERY_SURPRISES = {
    {"`endsWith`",
     [] {
         EXPECT_FALSE(String("abc").endsWith("bc"));
         EXPECT_TRUE(String("abc").endsWith("xx"));
         EXPECT_FALSE(String("abc").endsWith("xxxx"));
     },
     [] {
         EXPECT_TRUE(endsWith(String("abc"), "bc"));
         EXPECT_FALSE(endsWith(String("abc"), "xx"));
         EXPECT_FALSE(endsWith(String("abc"), "xxxx"));
     }},
    {"`contains`",
     [] {
         EXPECT_TRUE(String("xab").contains("ab"));
         EXPECT_FALSE(String("xab", 3).contains("ab")) << "not terminated: offsets 0 and 2";
         EXPECT_TRUE(String("xyab", 4).contains("ab"));
         EXPECT_FALSE(Wide(u"xab").string.contains("ab"));
     },
     [] {
         EXPECT_TRUE(contains(String("xab", 3), "ab"));
         EXPECT_TRUE(contains(Wide(u"xab").string, "ab"));
     }},
    {"`contains` with bytes above 127",
     [] {
         EXPECT_TRUE(String("\xC3\xA9").contains("\xC3\xA9"));
         EXPECT_FALSE(String("\xC3\xA9", 2).contains("\xC3\xA9"));
     },
     [] {
         EXPECT_TRUE(contains(String("\xC3\xA9", 2), "\xC3\xA9"));
         EXPECT_TRUE(contains(Wide(u"\u00E9").string, "\xC3\xA9"));
     }},
    {"`equals`, `startsWith`, `endsWith` with bytes above 127",
     [] {
         const String string("\xC3\xA9");
         EXPECT_FALSE(string.equals("\xC3\xA9"));
         EXPECT_FALSE(string.startsWith("\xC3\xA9"));
         EXPECT_TRUE(string.endsWith("\xC3\xA9")) << "reports a difference";
     },
     [] {
         const String string("\xC3\xA9");
         EXPECT_TRUE(equals(string, "\xC3\xA9"));
         EXPECT_TRUE(startsWith(string, "\xC3\xA9"));
         EXPECT_TRUE(endsWith(string, u"\u00E9"));
     }},
    {"`count(0)`",
     [] {
         EXPECT_EQ(String("a\xC0\x80").count('\0'), 0u);
         EXPECT_EQ(Wide(std::u16string(u"\0a", 2)).string.count('\0'), 1u);
     },
     [] {
         EXPECT_EQ(count(String("a\xC0\x80"), U'\0'), 1u);
         EXPECT_EQ(count(Wide(std::u16string(u"\0a", 2)).string, U'\0'), 1u);
     }},
    {"`a == b` with supplementary characters",
     [] { EXPECT_FALSE(builtWide("\xF0\x9F\x98\x80") == Wide(u"\U0001F600").string); },
     [] { EXPECT_TRUE(equals(builtWide("\xF0\x9F\x98\x80"), Wide(u"\U0001F600").string)); }},
    {"`a < b`, both in UTF-16", [] { EXPECT_TRUE(Wide(u"\u0141").string < Wide(u"B").string); },
     [] {
         EXPECT_EQ(compare(Wide(u"\u0141").string, Wide(u"B").string), 1);
         EXPECT_TRUE(CodePointLess()(Wide(u"B").string, Wide(u"\u0141").string));
     }},
    {"`a < b` in UTF-16 with supplementary characters",
     [] {
         const Wide pair(u"\U0001F600"), other(u"\uE000\U0001F600");
         EXPECT_TRUE(pair.string < other.string);
         EXPECT_TRUE(other.string < pair.string);
     },
     [] {
         const Wide pair(u"\U0001F600"), other(u"\uE000\U0001F600");
         EXPECT_EQ(compare(pair.string, other.string), 1);
         EXPECT_EQ(compare(other.string, pair.string), -1);
     }},
    {"`a < b` across encodings",
     [] {
         EXPECT_TRUE(Wide(u"\U0001F600").string < String("\xEF\xB7\xB0")) << "a pair is less than U+FDF0";
         EXPECT_FALSE(String("\xEF\xB7\xB0") < Wide(u"\U0001F600").string);
     },
     [] {
         EXPECT_EQ(compare(Wide(u"\U0001F600").string, String("\xEF\xB7\xB0")), 1);
         EXPECT_EQ(compare(String("\xEF\xB7\xB0"), Wide(u"\U0001F600").string), -1);
     }},
    {"`a < b`, one with U+0000",
     [] {
         const String null("\xC0\x80"), both("\xC0\x80\xC0\x80"), del("\x7F"), mixed("\x7F\xC0\x80");
         EXPECT_TRUE(del < null) << "as 0xC0 0x80";
         EXPECT_TRUE(null < mixed) << "both hold one: U+0000 first";
         EXPECT_FALSE(mixed < null);
     },
     [] {
         const String null("\xC0\x80"), del("\x7F"), mixed("\x7F\xC0\x80");
         EXPECT_EQ(compare(null, del), -1);
         EXPECT_EQ(compare(null, mixed), -1);
         EXPECT_EQ(compare(del, mixed), -1);
     }},
    {"`a == b` with U+0000 or surrogate pairs in UTF-16",
     [] {
         const Wide wide(u"\U00040000");
         wide.string.getCString();
         EXPECT_FALSE(wide.string == String("\xF1\x80\x80\x80"));
     },
     [] {
         const Wide wide(u"\U00040000");
         wide.string.getCString();
         EXPECT_TRUE(equals(wide.string, "\xF1\x80\x80\x80"));
     }},
    {"`getUnicodeCharAt`, UTF-16",
     [] {
         const Wide wide(u"a\U0001F600z");
         EXPECT_EQ(wide.string.getUnicodeCharAt(0), U'a');
         EXPECT_EQ(wide.string.getUnicodeCharAt(1), 0xFFFFFFFFu);
         EXPECT_EQ(wide.string.getUnicodeCharAt(2), 0xFFFFFFFFu);
         EXPECT_EQ(wide.string.getUnicodeCharAt(-1), U'z');
         EXPECT_EQ(wide.string.getUnicodeCharAt(-3), 0x1F600u);
         EXPECT_EQ(wide.string.getUnicodeCharAt(-4), U'a');
     },
     [] {
         const Wide wide(u"a\U0001F600z");
         EXPECT_EQ(codePointAt(wide.string, 1), UTF32Char(0x1F600));
         EXPECT_EQ(codePointAt(wide.string, 2), UTF32Char('z'));
     }},
    {"`getUnicodeLength` with supplementary characters",
     [] { EXPECT_THROW(builtWide("\xF0\x9F\x98\x80").getUnicodeLength(), Exception<2>); },
     [] { EXPECT_EQ(codePointCount(builtWide("\xF0\x9F\x98\x80")), 1u); }},
    {"`substr<unsigned char>`",
     [] {
         const String string("ab\xC3\xA9z");
         EXPECT_EQ(textOf(substringOf<unsigned char>(string, 0, 2)), "ab");
         EXPECT_THROW(substringOf<unsigned char>(string, 0, 4), Exception<7>);
     },
     [] {
         const String string("ab\xC3\xA9z");
         EXPECT_EQ(toUTF8(slice(string, 0, 4)), "ab\xC3\xA9");
         EXPECT_EQ(toUTF8(substring(string, 2, 1)), "\xC3\xA9");
     }},
    {"`substr<unsigned char>` of U+0000 or a character from U+100000 on",
     [] {
         EXPECT_ANY_THROW(substringOf<unsigned char>(String("a\xC0\x80"
                                                            "b"),
                                                     1, 3));
         EXPECT_ANY_THROW(substringOf<unsigned char>(String("a\xF4\x80\x80\x80"
                                                            "b"),
                                                     1, 5));
         const String string("a\xC0\x80", 3);
         EXPECT_EQ(textOf(substringOf<unsigned char>(String("a\xC0\x80"
                                                            "b"),
                                                     0, 3)),
                   "a");
         EXPECT_ANY_THROW(substringOf<unsigned char>(String("a\xC0\x80"), 0, 3));
     },
     [] {
         const String string("a\xC0\x80\xF4\x80\x80\x80z");
         EXPECT_EQ(toUTF8(slice(string, 1, 2)), std::string(1, '\0'));
         EXPECT_EQ(toUTF8(slice(string, 3, 4)), "\xF4\x80\x80\x80");
     }},
    {"`substr` at the end of the text",
     [] {
         const char text[] = {'a', 'b', '\xA9'}; // the byte behind the text is a trail byte
         EXPECT_THROW(substringOf<unsigned char>(String(text, 2), 2, 1), Exception<4>) << "reads the third byte";
     },
     [] {
         const String string("abc", 2);
         EXPECT_EQ(toUTF8(slice(string, 1, 1)), "b");
         EXPECT_EQ(toUTF8(slice(string, 2)), "");
     }},
    {"`substr` of the other encoding, negative offset up to the end",
     [] {
         const Wide wide(u"ab\u00E9");
         const ExpectedLeak leak;
         EXPECT_ANY_THROW(substringOf<unsigned char>(wide.string, -2, 2));
     },
     [] {
         EXPECT_EQ(toUTF8(last(inUTF8(Wide(u"abc").string), 2)), "bc");
         EXPECT_EQ(toUTF8(last(inUTF16(String("abc")), 2)), "bc");
     }},
    {"`substr<unsigned char>` of UTF-16 with pairs, offset of 0 or more",
     [] {
         const ExpectedLeak leak;
         EXPECT_ANY_THROW(substringOf<unsigned char>(Wide(u"a\U0001F600z").string, 0, 4));
     },
     [] {
         const Wide wide(u"a\U0001F600z");
         EXPECT_EQ(toUTF8(slice(inUTF8(wide.string), 1, 4)), "\xF0\x9F\x98\x80");
     }},
    {"`substr` of the other encoding, offset inside a character",
     [] {
         EXPECT_TRUE(substringOf<unsigned char>(Wide(u"a\u00E9\U0001F600").string, 2, 1).isEmpty());
         const ExpectedLeak leak;
         EXPECT_THROW(substringOf<unsigned char>(Wide(u"a\u00E9z").string, 2, 1), Exception<4>);
         EXPECT_THROW(substringOf<unsigned char>(Wide(u"a\u00E9\U0001F600").string, -5, 1), Exception<4>);
     },
     [] { EXPECT_THROW(slice(inUTF8(Wide(u"\u00E9").string), 1, 1), Exception<4>); }},
    {"`substr` of the other encoding that throws",
     [] {
         const ExpectedLeak leak;
         const Wide wide(u"ab\u00E9");
         const std::size_t live = liveAllocationCount();
         try {
             substringOf<unsigned char>(wide.string, -2, 2);
             ADD_FAILURE() << "did not raise";
         } catch (const AllExceptions&) {
         }
         EXPECT_GT(liveAllocationCount(), live);
     },
     [] {
         const Wide wide(u"a\u00E9");
         const std::size_t live = liveAllocationCount();
         EXPECT_THROW(slice(inUTF8(wide.string), 2, 1), Exception<4>);
         EXPECT_EQ(liveAllocationCount(), live);
     }},
    {"`+=`, UTF-16 on the left",
     [] {
         const Wide left(u"abcd"), right(u"z");
         String joined = left.string;
         joined += right.string;
         const UTF16Char* const units = joined.getData()->getPrivateBuffer<UTF16Char>();
         ASSERT_TRUE(units);
         EXPECT_EQ(joined.getData()->getUTF16Length(), 5u);
         EXPECT_EQ(Units(units, 2), (Units{'a', 'b'}));
         EXPECT_NE(Units(units, 4), left.text);
         EXPECT_EQ(units[4], 'z');
     },
     [] { EXPECT_EQ(toUTF8(concat(Wide(u"ab").string, "cd")), "abcd"); }},
    {"`+=` of UTF-16 text with U+0000 to UTF-8 text",
     [] {
         String joined("a");
         const Wide right(std::u16string(u"bc\0", 3));
         const ExpectedLeak leak;
         try {
             joined += right.string;
             EXPECT_NE(textOf(joined), "abc\xC0\x80");
         } catch (const AllExceptions& exception) {
             EXPECT_EQ(exception.getCode(), 7) << "the truncated character at the end";
         }
     },
     [] { EXPECT_EQ(toUTF8(concat(String("a"), Wide(std::u16string(u"\0b", 2)).string)), std::string("a\0b", 3)); }},
    {"`+=` that is refused",
     [] {
         // The text became malformed behind the library's back.
         char text[] = "abc";
         String joined(text);
         text[1] = '\x80';
         const ExpectedLeak leak;
         EXPECT_THROW(joined += String("d"), Exception<7>);
         EXPECT_TRUE(joined.isNull()) << "it held the last reference";
     },
     [] {
         String string("a");
         EXPECT_THROW(string = concat(string, "\xFF"), Exception<7>);
         EXPECT_EQ(toUTF8(string), "a");
     }},
};
