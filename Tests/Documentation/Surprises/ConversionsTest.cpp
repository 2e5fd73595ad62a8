#include "Documentation/Surprises/Surprise.h"
#include "Vorn/String/Interop.h"
#include "Vorn/String/StringDataHelper.h"
#include "Vorn/String/UTF16.h"
#include "Vorn/String/UTF32.h"
#include "Vorn/String/UTF8.h"

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
String over(const Units& text) { return String(text.c_str(), static_cast<unsigned int>(text.size())); }

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

Bytes packed(unsigned int word) {
    Bytes bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        if (word >> shift & 0xFF) bytes += static_cast<unsigned char>(word >> shift);
    return bytes;
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
     [] {
         const auto isOverlong = [](const Bytes& text) {
             for (std::size_t i = 0; i + 1 < text.size(); ++i)
                 if (text[i] == 0xF0 && text[i + 1] >= 0x80 && text[i + 1] <= 0x8F) return true;
             return false;
         };
         EXPECT_TRUE(isOverlong(bytesOf("\xF0\x8F\xBF\xBF")));
         EXPECT_FALSE(isOverlong(bytesOf("\xF0\x90\x80\x80")));
         EXPECT_EQ(over(bytesOf("\xF0\x90\x80\x80")).getData()->getUTF16Length(), 2u);
     }},
    {"the scan of a truncated 4-byte sequence",
     [] { EXPECT_EQ(messageOf(bytesOf("\xF0\x9F\x98")), "Unmatched first surrogate character!"); }, nullptr},
    {"the scan of a zero byte",
     [] {
         EXPECT_THROW(over(Bytes{'a', 0, 'b'}), Exception<7>);
         EXPECT_EQ(String(Bytes{'a', 0, 'b'}.c_str()).getData()->getUTF8Length(), 1u);
     },
     [] {
         EXPECT_TRUE(over(bytesOf("a\xC0\x80"
                                  "b"))
                         .haveEmbeddedNulls());
     }},
    {"`STRING_DATA_ASCII`", [] { EXPECT_EQ(over(bytesOf("a\xC0\x80")).getCharset(), STRING_DATA_UCS2); },
     [] { EXPECT_TRUE(over(bytesOf("a\xC0\x80")).haveEmbeddedNulls()); }},
    {"`stringDataGetUTF16Length`", [] { EXPECT_THROW(utf16Length(bytesOf(NULL_AND_EMOJI), UNICODE), Exception<2>); },
     [] {
         EXPECT_EQ(utf16Length(bytesOf("a\xF0\x9F\x98\x80"), UNICODE), 3u);
         EXPECT_EQ(utf16Length(bytesOf("a\xC0\x80"), UCS2), 2u);
     }},
    {"`stringDataGetUTF8Length`",
     [] {
         EXPECT_EQ(utf8Length(Units{0}, UCS2), 1u);
         unsigned char written[4] = {};
         stringDataConvertToUTF8FromUCS2(written, 2, Units{0}.c_str(), 1);
         EXPECT_EQ(written[1], 0x80);
         EXPECT_EQ(utf8Length(Units{0x7F, 0xD83D, 0xDE00}, UNICODE), 6u);
         EXPECT_EQ(toUTF8(Units{0x7F, 0xD83D, 0xDE00}, UNICODE).substr(0, 5), bytesOf("\x7F\xF0\x9F\x98\x80"));
     },
     [] { EXPECT_EQ(utf8Length(unitsOf(u"a\u00E9\U0001F600"), UNICODE), 7u); }},
    {"`stringDataGetUTF8Length` of a first surrogate at the end",
     [] {
         // The unit behind is part of the character: 4 bytes with a second surrogate there.
         const Units text{0xD83D, 0xDE00};
         EXPECT_EQ(stringDataGetUTF8Length(text.c_str(), infoOf(1), UNICODE), 4u);
     },
     [] { EXPECT_THROW(over(Units{0xD83D}), Exception<7>); }},
    {"`stringDataGetUnicodeLength`",
     [] {
         const Bytes text{'a', 0x80, 0, 0x80};
         EXPECT_EQ(stringDataGetUnicodeLength(text.c_str(), infoOf(4), UCS2), 4u);
         const Units lone{0xD83D, 0xFFFE}, refused{0xFDEF};
         EXPECT_EQ(stringDataGetUnicodeLength(lone.c_str(), infoOf(2), UCS2), 2u);
         EXPECT_THROW(stringDataGetUnicodeLength(refused.c_str(), infoOf(1), UCS2), Exception<2>);
     },
     [] {
         EXPECT_THROW(over(Bytes{'a', 0x80, 'b'}), Exception<7>);
     }},
    {"`stringDataConvert...UTF16` of 4-byte characters",
     [] {
         const Units converted = toUTF16(bytesOf("a\xF0\x9F\x98\x80"
                                                 "b"),
                                         UNICODE);
         EXPECT_EQ(converted.size(), 4u);
         EXPECT_EQ(converted.substr(0, 3), (Units{'a', 0xDE00, 'b'}));
     },
     [] { EXPECT_EQ(UTF16::getSurrogatePair(0x1F600), 0xD83DDE00u); }},
    {"`stringDataConvert...UTF8` of a pair whose first unit ends in 0xC0 to 0xFF",
     [] {
         EXPECT_THROW(over(toUTF8(Units{0xD8C0, 0xDC00}, UNICODE)), Exception<7>);
     },
     [] {
         const Bytes text =
             packed(UTF8::getUTF8(UTF32::getUTF32Char(static_cast<UTF16Char>(0xD8C0), static_cast<UTF16Char>(0xDC00))));
         EXPECT_EQ(over(text).getUnicodeCharAt(0), 0x40000u);
     }},
    {"`stringDataConvert...UTF8` of U+0000 under `STRING_DATA_UCS2`",
     [] {
         EXPECT_THROW(toUTF8(Units{0, 'a'}, UCS2), Exception<2>);
         EXPECT_EQ(toUTF8(Units{0x41, 0}, UCS2), (Bytes{0x41, 0xC0}));
     },
     [] { EXPECT_EQ(toUTF8(unitsOf(u"a\u00E9"), UCS2), bytesOf("a\xC3\xA9")); }},
    {"`stringDataConvert...UTF8` of U+007F under `STRING_DATA_UNICODE`",
     [] {
         const Bytes converted = toUTF8(Units{0x7F, 0xD83D, 0xDE00}, UNICODE);
         EXPECT_EQ(converted.size(), 6u);
         EXPECT_EQ(converted.substr(0, 5), bytesOf("\x7F\xF0\x9F\x98\x80"));
     },
     [] {
         EXPECT_EQ(toUTF8(Units{'a', 0xD83D, 0xDE00}, UNICODE), bytesOf("a\xF0\x9F\x98\x80"));
     }},
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
         unsigned char bytes[3];
         EXPECT_LE(stringDataConvertCopyToUTF8(unitsOf(u"abc").c_str(), infoOf(3), ASCII, bytes, 3), 3u);
         EXPECT_EQ(bytes[2], 'c');
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
         StringDataBufferInfo info{};
         const std::unique_ptr<unsigned char[]> buffer(
             stringDataConvertToUTF8(unitsOf(u"a").c_str(), infoOf(1), ASCII, info));
         EXPECT_STREQ(reinterpret_cast<const char*>(buffer.get()), "a");
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
         const unsigned int destLength = 4;
         unsigned char dest[destLength + 3] = {};
         stringDataConvertToUTF8FromUTF16(dest, destLength, Units{'a', 'b', 'c', 0xD83D, 0xDE00}.c_str(), 5);
         EXPECT_EQ(dest[6], 0x80);
     }},
    {"`stringDataConvertToUTF8FromUCS2` of a surrogate, 0xFFFE or 0xFFFF",
     [] {
         for (const unsigned int unit : {0xD800u, 0xFFFEu, 0xFFFFu}) {
             unsigned char dest[3] = {};
             stringDataConvertToUTF8FromUCS2(dest, 3, Units{static_cast<UTF16Char>(unit)}.c_str(), 1);
             EXPECT_THROW(over(Bytes(dest, 3)), Exception<7>) << unit;
         }
     },
     [] {
         for (const unsigned int unit : {0xD800u, 0xFFFEu, 0xFFFFu})
             EXPECT_THROW(over(Units{static_cast<UTF16Char>(unit)}), Exception<7>) << unit;
     }},
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
