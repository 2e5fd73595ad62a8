#include "Documentation/Surprises/Surprise.h"
#include "Support/AllocationCounter.h"
#include "Support/ExpectedLeak.h"
#include "Vorn/String/Interop.h"
#include "Vorn/String/String.h"

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

bool endsWithText(const String& string, std::string_view needle) {
    const std::string_view text = view(string);
    return text.size() >= needle.size() && text.substr(text.size() - needle.size()) == needle;
}

const char* const EMOJI = "\xF0\x9F\x98\x80";

} // namespace

const Surprises QUERY_SURPRISES = {
    {"`endsWith`",
     [] {
         EXPECT_FALSE(String("abc").endsWith("bc"));
         EXPECT_TRUE(String("abc").endsWith("xx"));
         EXPECT_FALSE(String("abc").endsWith("xxxx"));
     },
     [] {
         const String string("abc");
         EXPECT_TRUE(endsWithText(string, "bc"));
         EXPECT_TRUE(string.getData()->getUTF8Length() >= 2 && !string.endsWith("bc"));
         EXPECT_FALSE(endsWithText(string, "xxxx"));
     }},
    {"`contains`",
     [] {
         EXPECT_TRUE(String("xab").contains("ab"));
         EXPECT_FALSE(String("xab", 3).contains("ab")) << "not terminated: offsets 0 and 2";
         EXPECT_TRUE(String("xyab", 4).contains("ab"));
         EXPECT_FALSE(Wide(u"xab").string.contains("ab"));
     },
     [] {
         const Wide wide(u"xab");
         wide.string.getCString();
         wide.string.getCString();
         EXPECT_TRUE(wide.string.contains("ab"));
         const String text("xab", 3);
         EXPECT_EQ(view(text).find("ab"), 1u);
     }},
    {"`contains` with bytes above 127",
     [] {
         EXPECT_TRUE(String("\xC3\xA9").contains("\xC3\xA9"));
         EXPECT_FALSE(String("\xC3\xA9", 2).contains("\xC3\xA9"));
     },
     [] {
         const String text("\xC3\xA9", 2);
         EXPECT_EQ(view(text).find("\xC3\xA9"), 0u);
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
         EXPECT_TRUE(string == String("\xC3\xA9"));
         EXPECT_TRUE(view(string) == "\xC3\xA9");
     }},
    {"`count(0)`",
     [] {
         EXPECT_EQ(String("a\xC0\x80").count('\0'), 0u);
         EXPECT_EQ(Wide(std::u16string(u"\0a", 2)).string.count('\0'), 1u);
     },
     nullptr},
    {"`a == b` with supplementary characters",
     [] { EXPECT_FALSE(builtWide("\xF0\x9F\x98\x80") == Wide(u"\U0001F600").string); },
     [] {
         const std::string text = EMOJI;
         EXPECT_TRUE(String(EMOJI) == String(text.c_str()));
     }},
    {"`a < b`, both in UTF-16", [] { EXPECT_TRUE(Wide(u"\u0141").string < Wide(u"B").string); },
     [] { EXPECT_TRUE(String("B") < String("\xC5\x81")); }},
    {"`a < b` in UTF-16 with supplementary characters",
     [] {
         const Wide pair(u"\U0001F600"), other(u"\uE000\U0001F600");
         EXPECT_TRUE(pair.string < other.string);
         EXPECT_TRUE(other.string < pair.string);
     },
     [] {
         const String pair(EMOJI), other("\xEE\x80\x80\xF0\x9F\x98\x80");
         EXPECT_TRUE(other < pair);
         EXPECT_FALSE(pair < other);
     }},
    {"`a < b` across encodings",
     [] {
         EXPECT_TRUE(Wide(u"\U0001F600").string < String("\xEF\xB7\xB0")) << "a pair is less than U+FDF0";
         EXPECT_FALSE(String("\xEF\xB7\xB0") < Wide(u"\U0001F600").string);
     },
     [] {
         EXPECT_FALSE(String(EMOJI) < String("\xEF\xB7\xB0"));
         EXPECT_TRUE(String("\xEF\xB7\xB0") < String(EMOJI));
     }},
    {"`a < b`, one with U+0000",
     [] {
         const String null("\xC0\x80"), both("\xC0\x80\xC0\x80"), del("\x7F"), mixed("\x7F\xC0\x80");
         EXPECT_TRUE(del < null) << "as 0xC0 0x80";
         EXPECT_TRUE(null < mixed) << "both hold one: U+0000 first";
         EXPECT_FALSE(mixed < null);
     },
     [] {
         EXPECT_TRUE(String("\x01") < String("\x7F"));
         EXPECT_FALSE(String("\x7F") < String("\x01"));
     }},
    {"`a == b` with U+0000 or surrogate pairs in UTF-16",
     [] {
         const Wide wide(u"\U00040000");
         wide.string.getCString();
         EXPECT_FALSE(wide.string == String("\xF1\x80\x80\x80"));
     },
     [] {
         const std::string text = "\xF1\x80\x80\x80";
         EXPECT_TRUE(String("\xF1\x80\x80\x80") == String(text.c_str()));
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
         const String string("a\xF0\x9F\x98\x80z");
         EXPECT_EQ(string.getUnicodeCharAt(1), 0x1F600u);
         EXPECT_EQ(string.getUnicodeCharAt(2), U'z');
     }},
    {"`getUnicodeLength` with supplementary characters",
     [] { EXPECT_THROW(builtWide("\xF0\x9F\x98\x80").getUnicodeLength(), Exception<2>); },
     [] {
         const String string("\xF0\x9F\x98\x80");
         EXPECT_EQ(string.getUnicodeLength(), 1u);
         string.getData()->getBuffer<UTF16Char>();
     }},
    {"`substr<unsigned char>`",
     [] {
         const String string("ab\xC3\xA9z");
         EXPECT_EQ(textOf(substringOf<unsigned char>(string, 0, 2)), "ab");
         EXPECT_THROW(substringOf<unsigned char>(string, 0, 4), Exception<7>);
     },
     [] { EXPECT_EQ(textOf(substringOf<unsigned char>(String("ab\xC3\xA9z"), 0, 5)), "ab\xC3\xA9z"); }},
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
         EXPECT_EQ(textOf(substringOf<unsigned char>(String("a\xE2\x82\xAC"
                                                            "b"),
                                                     1, 4)),
                   "\xE2\x82\xAC"
                   "b");
     }},
    {"`substr` at the end of the text",
     [] {
         const char text[] = {'a', 'b', '\xA9'}; // the byte behind the text is a trail byte
         EXPECT_THROW(substringOf<unsigned char>(String(text, 2), 2, 1), Exception<4>) << "reads the third byte";
     },
     [] { EXPECT_TRUE(substringOf<unsigned char>(String("ab"), 2, 1).isEmpty()); }},
    {"`substr` of the other encoding, negative offset up to the end",
     [] {
         const Wide wide(u"ab\u00E9");
         const ExpectedLeak leak;
         EXPECT_ANY_THROW(substringOf<unsigned char>(wide.string, -2, 2));
     },
     [] { EXPECT_EQ(textOf(substringOf<unsigned char>(Wide(u"ab\u00E9").string, 1, 3)), "b\xC3\xA9"); }},
    {"`substr<unsigned char>` of UTF-16 with pairs, offset of 0 or more",
     [] {
         const ExpectedLeak leak;
         EXPECT_ANY_THROW(substringOf<unsigned char>(Wide(u"a\U0001F600z").string, 0, 4));
     },
     [] {
         const Wide wide(u"a\U0001F600z");
         wide.string.getCString();
         EXPECT_EQ(textOf(substringOf<unsigned char>(wide.string, 0, 6)), "a\xF0\x9F\x98\x80z");
     }},
    {"`substr` of the other encoding, offset inside a character",
     [] {
         EXPECT_TRUE(substringOf<unsigned char>(Wide(u"a\u00E9\U0001F600").string, 2, 1).isEmpty());
         const ExpectedLeak leak;
         EXPECT_THROW(substringOf<unsigned char>(Wide(u"a\u00E9z").string, 2, 1), Exception<4>);
         EXPECT_THROW(substringOf<unsigned char>(Wide(u"a\u00E9\U0001F600").string, -5, 1), Exception<4>);
     },
     nullptr},
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
     nullptr},
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
     [] {
         const Wide left(u"abcd"), right(u"z");
         String joined = left.string;
         joined.getCString();
         joined += right.string;
         EXPECT_EQ(textOf(joined), "abcdz");
     }},
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
     [] {
         String joined("a");
         joined += Wide(u"bcd").string;
         EXPECT_EQ(textOf(joined), "abcd");
     }},
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
         String joined("abc");
         joined += String("d");
         EXPECT_EQ(textOf(joined), "abcd");
     }},
};
