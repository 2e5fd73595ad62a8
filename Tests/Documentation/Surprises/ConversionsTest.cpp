#include "Documentation/Surprises/Surprise.h"
#include "Vorn/String/Interop.h"
#include "Vorn/String/StringDataHelper.h"
#include "Vorn/String/UTF16.h"
#include "Vorn/String/UTF32.h"
#include "Vorn/String/UTF8.h"
#include "Vorn/Text.h"

#include <memory>

namespace {

using namespace Vorn;

using Bytes = std::basic_string<unsigned char>;
using Units = std::basic_string<UTF16Char>;

const StringDataSubCharset ASCII = STRING_DATA_ASCII, UCS2 = STRING_DATA_UCS2, UNICODE = STRING_DATA_UNICODE;

StringDataBufferInfo infoOf(std::size_t length) {
    StringDataBufferInfo info{};
    info.m_length = static_cast<unsigned int>(length);
    return info;
}

Bytes bytesOf(const std::string& text) { return {text.begin(), text.end()}; }
Units unitsOf(const std::u16string& text) { return {text.begin(), text.end()}; }

String over(const Bytes& text) { return String(text.c_str(), static_cast<unsigned int>(text.size())); }

unsigned int utf16Length(const Bytes& text, StringDataSubCharset charset) {
    return stringDataGetUTF16Length(text.c_str(), infoOf(text.size()), charset);
}
unsigned int utf8Length(const Units& text, StringDataSubCharset charset) {
    return stringDataGetUTF8Length(text.c_str(), infoOf(text.size()), charset);
}

// What a conversion records as its result.
Units toUTF16(const Bytes& text, StringDataSubCharset charset) {
    StringDataBufferInfo info{};
    const std::unique_ptr<UTF16Char[]> buffer(
        stringDataConvertToUTF16(text.c_str(), infoOf(text.size()), charset, info));
    return Units(buffer.get(), info.m_length);
}
Bytes toUTF8(const Units& text, StringDataSubCharset charset) {
    StringDataBufferInfo info{};
    const std::unique_ptr<unsigned char[]> buffer(
        stringDataConvertToUTF8(text.c_str(), infoOf(text.size()), charset, info));
    return Bytes(buffer.get(), info.m_length);
}

std::string messageOf(const Bytes& text) {
    return reportOf<7>([&] { over(text); }).message;
}

const char* const NULL_AND_EMOJI = "\xC0\x80\xF0\x9F\x98\x80";

} // namespace

const Surprises CONVERSION_SURPRISES = {
    {"the scan of UTF-8",
     [] {
         const Bytes text = bytesOf("\xF0\x80\x80\x80");
         const String string = over(text);
         EXPECT_EQ(string.getCharset(), STRING_DATA_UNICODE);
         EXPECT_THROW(string.getData()->getUTF16Length(), Exception<2>);
         EXPECT_THROW(string.getData()->getBuffer<UTF16Char>(), Exception<2>);
     },
     [] { EXPECT_EQ(tryMakeString("a\xF0\x8F\x80\x80").errorOffset, 1u); }},
    {"the scan of a truncated 4-byte sequence",
     [] { EXPECT_EQ(messageOf(bytesOf("\xF0\x9F\x98")), "Unmatched first surrogate character!"); }, nullptr},
    {"the scan of a zero byte",
     [] {
         EXPECT_THROW(over(Bytes{'a', 0, 'b'}), Exception<7>);
         EXPECT_EQ(String(Bytes{'a', 0, 'b'}.c_str()).getData()->getUTF8Length(), 1u);
     },
     [] { EXPECT_EQ(toUTF32(makeString(std::string("a\0b", 3))).size(), 3u); }},
    {"`STRING_DATA_ASCII`", [] { EXPECT_EQ(over(bytesOf("a\xC0\x80")).getCharset(), STRING_DATA_UCS2); },
     [] {
         EXPECT_TRUE(isASCII(String("a\xC0\x80")));
         EXPECT_FALSE(isASCII("\xC3\xA9"));
     }},
    {"`stringDataGetUTF16Length`", [] { EXPECT_THROW(utf16Length(bytesOf(NULL_AND_EMOJI), UNICODE), Exception<2>); },
     [] { EXPECT_EQ(lengthInUTF16("\xC0\x80\xF0\x9F\x98\x80"), 3u); }},
    {"`stringDataGetUTF8Length`",
     [] {
         EXPECT_EQ(utf8Length(Units{0}, UCS2), 1u);
         unsigned char written[4] = {};
         stringDataConvertToUTF8FromUCS2(written, 2, Units{0}.c_str(), 1);
         EXPECT_EQ(written[1], 0x80);
         EXPECT_EQ(utf8Length(Units{0x7F, 0xD83D, 0xDE00}, UNICODE), 6u);
         EXPECT_EQ(toUTF8(Units{0x7F, 0xD83D, 0xDE00}, UNICODE).substr(0, 5), bytesOf("\x7F\xF0\x9F\x98\x80"));
     },
     [] {
         for (const auto& text : {std::u16string(u"\0a", 2), std::u16string(u"\x7F\U0001F600")})
             EXPECT_EQ(lengthInUTF8(text), toUTF8(text).size());
     }},
    {"`stringDataGetUTF8Length` of a first surrogate at the end",
     [] {
         // The unit behind is part of the character: 4 bytes with a second surrogate there.
         const Units text{0xD83D, 0xDE00};
         EXPECT_EQ(stringDataGetUTF8Length(text.c_str(), infoOf(1), UNICODE), 4u);
     },
     [] { EXPECT_EQ(lengthInUTF8(std::u16string(1, char16_t(0xD800))), 3u) << "U+FFFD"; }},
    {"`stringDataGetUnicodeLength`",
     [] {
         const Bytes text{'a', 0x80, 0, 0x80};
         EXPECT_EQ(stringDataGetUnicodeLength(text.c_str(), infoOf(4), UCS2), 4u);
         const Units lone{0xD83D, 0xFFFE}, refused{0xFDEF};
         EXPECT_EQ(stringDataGetUnicodeLength(lone.c_str(), infoOf(2), UCS2), 2u);
         EXPECT_THROW(stringDataGetUnicodeLength(refused.c_str(), infoOf(1), UCS2), Exception<2>);
     },
     [] {
         EXPECT_EQ(codePointCount("a\xC3\xA9"), 2u);
         EXPECT_FALSE(tryMakeString("\x80"));
     }},
    {"`stringDataConvert...UTF16` of 4-byte characters",
     [] {
         const Units converted = toUTF16(bytesOf("a\xF0\x9F\x98\x80"
                                                 "b"),
                                         UNICODE);
         EXPECT_EQ(converted.size(), 4u);
         EXPECT_EQ(converted.substr(0, 3), (Units{'a', 0xDE00, 'b'}));
     },
     [] { EXPECT_TRUE(toUTF16("\xF0\x9F\x98\x80") == u"\U0001F600"); }},
    {"`stringDataConvert...UTF8` of a pair whose first unit ends in 0xC0 to 0xFF",
     [] {
         EXPECT_THROW(over(toUTF8(Units{0xD8C0, 0xDC00}, UNICODE)), Exception<7>);
     },
     [] { EXPECT_EQ(toUTF8(u"\U00040000"), "\xF1\x80\x80\x80"); }},
    {"`stringDataConvert...UTF8` of U+0000 under `STRING_DATA_UCS2`",
     [] {
         EXPECT_THROW(toUTF8(Units{0, 'a'}, UCS2), Exception<2>);
         EXPECT_EQ(toUTF8(Units{0x41, 0}, UCS2), (Bytes{0x41, 0xC0}));
     },
     [] {
         EXPECT_EQ(TextView(inUTF8(std::u16string(u"\0z", 2))).getLength(), 3u);
         EXPECT_EQ(toUTF8(std::u16string(u"A\0", 2)), std::string("A\0", 2));
     }},
    {"`stringDataConvert...UTF8` of U+007F under `STRING_DATA_UNICODE`",
     [] {
         const Bytes converted = toUTF8(Units{0x7F, 0xD83D, 0xDE00}, UNICODE);
         EXPECT_EQ(converted.size(), 6u);
         EXPECT_EQ(converted.substr(0, 5), bytesOf("\x7F\xF0\x9F\x98\x80"));
     },
     [] { EXPECT_EQ(toUTF8(u"\x7F\U0001F600"), "\x7F\xF0\x9F\x98\x80"); }},
    {"`stringDataConvertCopyToUTF8`, `...UTF16`",
     [] {
         unsigned char bytes[] = {0xAA, 0xAA};
         UTF16Char units[] = {0xAA, 0xAA};
         EXPECT_EQ(stringDataConvertCopyToUTF8(unitsOf(u"abc").c_str(), infoOf(3), ASCII, bytes, 2), 3u);
         EXPECT_EQ(stringDataConvertCopyToUTF16(bytesOf("abc").c_str(), infoOf(3), ASCII, units, 2), 3u);
         EXPECT_EQ(bytes[0], 0xAA);
         EXPECT_EQ(units[0], 0xAA);
     },
     [] {
         char bytes[2];
         const ConvertedText converted = toUTF8(u"abc", bytes, 2);
         EXPECT_EQ(converted.written, 2u);
         EXPECT_EQ(converted.read, 2u);
         EXPECT_EQ(bytes[1], 'b');
     }},
    {"`stringDataConvertCopyToUTF8`, `...UTF16`",
     [] {
         unsigned char bytes[] = {0xAA, 0xAA};
         UTF16Char units[] = {0xAA, 0xAA};
         stringDataConvertCopyToUTF8(unitsOf(u"a").c_str(), infoOf(1), ASCII, bytes, 2);
         stringDataConvertCopyToUTF16(bytesOf("a").c_str(), infoOf(1), ASCII, units, 2);
         EXPECT_EQ(bytes[1], 0xAA);
         EXPECT_EQ(units[1], 0xAA);
     },
     [] {
         EXPECT_STREQ(toUTF8(u"a").c_str(), "a");
         EXPECT_EQ(toUTF16("a").c_str()[1], u'\0');
     }},
    {"`stringDataConvertToUTF8FromUCS2`, `...FromUTF16`",
     [] {
         unsigned char three[4] = {}, four[4] = {};
         stringDataConvertToUTF8FromUCS2(three, 1, Units{0x20AC}.c_str(), 1);
         stringDataConvertToUTF8FromUTF16(four, 1, Units{0xD83D, 0xDE00}.c_str(), 2);
         EXPECT_EQ(three[2], 0xAC);
         EXPECT_EQ(four[3], 0x80);
     },
     [] {
         char dest[4] = {0, 0, 0, 'x'};
         EXPECT_EQ(toUTF8(u"a\u20AC", dest, 3).written, 1u);
         EXPECT_EQ(dest[3], 'x');
     }},
    {"`stringDataConvertToUTF8FromUCS2` of a surrogate, 0xFFFE or 0xFFFF",
     [] {
         for (const unsigned int unit : {0xD800u, 0xFFFEu, 0xFFFFu}) {
             unsigned char dest[3] = {};
             stringDataConvertToUTF8FromUCS2(dest, 3, Units{static_cast<UTF16Char>(unit)}.c_str(), 1);
             EXPECT_THROW(over(Bytes(dest, 3)), Exception<7>) << unit;
         }
     },
     [] { EXPECT_EQ(toUTF8(std::u16string(1, char16_t(0xDC00))), "\xEF\xBF\xBD"); }},
    {"`destInfo` of a conversion",
     [] {
         StringDataBufferInfo info{};
         info.m_offset = 7;
         const std::unique_ptr<unsigned char[]> buffer(
             stringDataConvertToUTF8(unitsOf(u"ab").c_str(), infoOf(2), ASCII, info));
         EXPECT_EQ(info.m_length, 2u);
         EXPECT_EQ(info.m_allocationType, STRING_DATA_DYNAMIC);
         EXPECT_TRUE(info.m_nullTerminated);
         EXPECT_EQ(info.m_offset, 7u);
     },
     [] {
         StringDataBufferInfo info{};
         const std::unique_ptr<unsigned char[]> buffer(
             stringDataConvertToUTF8(unitsOf(u"ab").c_str(), infoOf(2), ASCII, info));
         EXPECT_EQ(info.m_offset, 0u);
         EXPECT_EQ(info.m_previous, nullptr);
     }},
};
