#include "Documentation/Surprises/Surprise.h"
#include "Vorn/String/String.h"
#include "Vorn/String/UTF16.h"
#include "Vorn/String/UTF32.h"
#include "Vorn/String/UTF8.h"
#include "Vorn/Text.h"

#include <string>

namespace {

using namespace Vorn;

using Byte = unsigned char;

UTF16Char unit(unsigned int value) { return static_cast<UTF16Char>(value); }
Byte byte(unsigned int value) { return static_cast<Byte>(value); }

bool isAccepted(const std::string& text) {
    try {
        const String string(text.c_str(), static_cast<unsigned int>(text.size()));
        return true;
    } catch (const Exception<7>&) {
        return false;
    }
}

} // namespace

const Surprises CODE_POINT_SURPRISES = {
    {"`UTF8::validUTF8Lead`",
     [] {
         EXPECT_EQ(UTF8::validUTF8Lead(0xF4), 0u);
         EXPECT_EQ(UTF8::validUTF8Lead(0xF3), 1u);
         EXPECT_TRUE(isAccepted("\xF4\x80\x80\x80"));
     },
     [] { EXPECT_EQ(*codePoints("\xF4\x80\x80\x80").begin(), 0x100000u); }},
    {"`UTF32::getUTF32Char(byte)`",
     [] {
         for (const unsigned int lead : {0xC0u, 0xC1u, 0xC2u}) EXPECT_EQ(UTF32::getUTF32Char(byte(lead)), 0xFDD2u);
     },
     [] {
         EXPECT_EQ(*codePoints("\xC1\xBF").begin(), 0xFFFDu);
         EXPECT_EQ(*codePoints("\xC0\xBF").begin(), 0xFFFDu);
         EXPECT_EQ(*codePoints("\xC0\x80").begin(), 0u);
         EXPECT_EQ(*codePoints("\xC2\x80").begin(), 0x80u);
     }},
    {"sentinel 0xFDD2",
     [] {
         EXPECT_EQ(UTF32::getUTF32Char(byte(0xC3)), 0xFDD2u);
         EXPECT_EQ(UTF32::getUTF32Char(unit(0xDC00)), 0xFDD2u);
     },
     [] { EXPECT_NE(UTF32::getUTF32Char(byte(0xC3)), UTF32::getUTF32Char(unit(0xC3))) << "the type decides"; }},
    {"`UTF8::countUTF8(code)`",
     [] {
         EXPECT_EQ(UTF8::countUTF8(0x80000080u), 1u);
         EXPECT_EQ(UTF8::countUTF8(0xFFFFFFFFu), 1u);
         EXPECT_EQ(UTF8::countUTF8(0x110000u), 0u);
     },
     [] {
         const auto count = [](unsigned int code) { return code <= 0x10FFFF ? UTF8::countUTF8(code) : 0; };
         EXPECT_EQ(count(0x80000080u), 0u);
         EXPECT_EQ(count(0x10FFFDu), 4u);
     }},
    {"`UTF8::getUTF8(code)`",
     [] {
         EXPECT_EQ(UTF8::getUTF8(0x80000080u), 0x80000080u);
         EXPECT_EQ(UTF8::getUTF8(0x110000u), 0xFDEFu);
     },
     [] {
         EXPECT_THROW(concat(char32_t(0x80000080)), Exception<7>);
         EXPECT_EQ(toUTF8(concat(char32_t(0xE9))), "\xC3\xA9");
     }},
    {"`UTF8::getUTF8(0)`", [] { EXPECT_EQ(UTF8::getUTF8(0u), 0u); },
     [] {
         const String text = concat(char32_t(0));
         EXPECT_TRUE(text.haveEmbeddedNulls());
         EXPECT_STREQ(text.getCString(), "\xC0\x80");
     }},
    {"`UTF8::getUTF8(first, second)`, `getUTF8ForUTF16`",
     [] {
         EXPECT_EQ(UTF8::getUTF8(unit(0xDA00), unit(0xDC00)), UTF8::getUTF8(unit(0xD800), unit(0xDC00)));
         EXPECT_EQ(UTF8::getUTF8ForUTF16(0xDA00DC00), UTF8::getUTF8ForUTF16(0xD800DC00));
         EXPECT_EQ(UTF8::getUTF8(unit(0xD83F), unit(0xDFFE)), 0xF09FBFBEu) << "U+1FFFE, a noncharacter";
         EXPECT_EQ(UTF8::getUTF8(unit(0xD8BF), unit(0xDC00)),
                   UTF8::getUTF8(UTF32::getUTF32Char(unit(0xD8BF), unit(0xDC00))));
     },
     [] {
         EXPECT_EQ(toUTF8(u"\U00090000"), "\xF2\x90\x80\x80");
         EXPECT_EQ(UTF8::getUTF8(UTF32::getUTF32Char(unit(0xDA00), unit(0xDC00))), 0xF2908080u);
         EXPECT_EQ(UTF8::getUTF8(UTF32::getUTF32Char(unit(0xD83F), unit(0xDFFE))), 0xFDEFu);
     }},
    {"`UTF8::invalid3ByteUnicode`, `invalid4ByteUnicode`",
     [] {
         EXPECT_EQ(UTF8::invalid3ByteUnicode(0xE08080), 0u);
         EXPECT_EQ(UTF8::invalid4ByteUnicode(0xF0808080), 0u);
         EXPECT_EQ(UTF8::invalid4ByteUnicode(0xF08DA080), 1u) << "U+D800";
         EXPECT_EQ(UTF8::invalid4ByteUnicode(0xF08FB790), 1u) << "U+FDD0";
     },
     [] {
         EXPECT_FALSE(tryMakeString("\xE0\x80\x80"));
         EXPECT_FALSE(tryMakeString("\xF0\x80\x80\x80"));
     }},
    {"`UTF16::getUCS2Char(code)`",
     [] {
         EXPECT_EQ(UTF16::getUCS2Char(0x40u), 0x41u);
         EXPECT_EQ(UTF16::getUCS2Char(0x41u), 0x41u);
     },
     [] {
         const unsigned int code = 0x40;
         EXPECT_EQ(UTF16Char(code), 0x40u);
         EXPECT_TRUE(toUTF16("@B") == u"@B");
     }},
    {"`UTF16::getUCS2Char(byte)`",
     [] {
         for (unsigned int value = 0x80; value < 0x100; ++value) {
             const unsigned int result = UTF16::getUCS2Char(byte(value));
             EXPECT_TRUE(result >= 0xFDD0 && result <= 0xFDEF) << value;
         }
     },
     [] { EXPECT_TRUE(toUTF16("\xC3\xA9") == u"\u00E9"); }},
    {"`UTF16::getUTF16(code)`",
     [] {
         EXPECT_EQ(UTF16::getUTF16(0x40u), 0x41u);
         EXPECT_EQ(UTF16::getUTF16(0x10000u), 0xD800DC00u);
         EXPECT_NE(UTF16::getUTF16(0xFFFEu), 0xFDEFu);
         EXPECT_NE(UTF16::getUTF16(0xFFFFu), 0xFDEFu);
         EXPECT_NE(UTF16::getUTF16(0x110000u), 0xFDEFu);
     },
     [] {
         const auto units = [](unsigned int code) { return code < 0x10000 ? code : UTF16::getSurrogatePair(code); };
         EXPECT_EQ(units(0x40), 0x40u);
         EXPECT_EQ(units(0x1F600), 0xD83DDE00u);
     }},
    {"`UTF16::getUTF16(b1, b2, b3, b4)`",
     [] { EXPECT_EQ(UTF16::getUTF16(byte(0xF0), byte(0x80), byte(0x80), byte(0x80)), 0xDBC0DC00u); },
     [] {
         EXPECT_EQ(toUTF16("\xF0\x80\x80\x80").front(), u'\uFFFD');
         EXPECT_TRUE(toUTF16("\xF0\x90\x80\x80") == u"\U00010000");
     }},
    {"`UTF16::getUTF16ForUTF8(seq)`",
     [] {
         EXPECT_EQ(UTF16::getUTF16ForUTF8(0x41), 0xFF000041u);
         const unsigned int pair = UTF16::getUTF16(byte(0xF0), byte(0x9F), byte(0x98), byte(0x80));
         EXPECT_EQ(UTF16::getUTF16ForUTF8(0xF09F9880) >> 16, (pair >> 16) - 0xC0);
         EXPECT_EQ(UTF16::getUTF16ForUTF8(0xFF123456), 0xFF123456u);
     },
     [] { EXPECT_TRUE(toUTF16("A\xF0\x9F\x98\x80") == u"A\U0001F600"); }},
    {"`UTF16::getUTF16(buffer, i, length)`",
     [] {
         const Byte text[] = {0xF0, 0x9F, 0x98, 0x80};
         unsigned int i = 0;
         EXPECT_EQ(UTF16::getUTF16(text, i, 2), 0xD83DDE00u) << "reads four bytes of two";
     },
     [] {
         const Byte text[] = {0xF0, 0x9F, 0x98, 0x80};
         std::vector<UTF32Char> read;
         for (const UTF32Char c : codePoints(TextView(text, 2))) read.push_back(c);
         EXPECT_EQ(read, std::vector<UTF32Char>{0xFFFD});
     }},
    {"`UTF32::getUTF32CharForUTF8(seq)`",
     [] {
         EXPECT_EQ(UTF32::getUTF32CharForUTF8(0xE08480) & 0xFF000000, 0u) << "U+0100 in three bytes";
         EXPECT_EQ(UTF32::getUTF32CharForUTF8(0xE0A080), 0x800u);
         EXPECT_EQ(UTF32::getUTF32CharForUTF8(0xE08180) & 0xFF000000, 0xFF000000u) << "U+0040 in three bytes";
         EXPECT_EQ(UTF32::getUTF32CharForUTF8(0xC180) & 0xFF000000, 0xFF000000u) << "U+0040 in two";
     },
     [] { EXPECT_LT(UTF32::getUTF32CharForUTF8(0xE08480), 0x800u); }},
    {"`UTF32::getUTF32Char(lead, trail)`", [] { EXPECT_EQ(UTF32::getUTF32Char(byte(0xC0), byte(0x80)), 0u); },
     [] {
         EXPECT_EQ(*codePoints("\xC1\x81").begin(), 0xFFFDu);
         EXPECT_EQ(*codePoints("\xC0\x80").begin(), 0u);
     }},
    {"`UTF32::getUTF32Char(b1, b2, b3)`",
     [] { EXPECT_EQ(UTF32::getUTF32Char(byte(0xE0), byte(0x81), byte(0x81)), 0x41u); },
     [] {
         EXPECT_EQ(*codePoints("\xE0\x81\x81").begin(), 0xFFFDu);
         EXPECT_EQ(*codePoints("\xE0\xA0\x80").begin(), 0x800u);
     }},
    {"`UTF32::getUTF32Char(bytes, i, length)`",
     [] {
         const Byte text[] = {0xE2, 0x82, 0, 0};
         unsigned int i = 0;
         UTF32::getUTF32Char(text, i, 1);
         EXPECT_GT(i, 1u);
     },
     [] {
         const Byte text[] = {0x41, 0xE2, 0, 0};
         std::vector<UTF32Char> read;
         for (const UTF32Char c : codePoints(TextView(text, 2))) read.push_back(c);
         EXPECT_EQ(read, (std::vector<UTF32Char>{0x41, 0xFFFD}));
     }},
    {"`UTF32::getUTF32Char(units, i, length)`",
     [] {
         const UTF16Char pair[] = {unit(0xD83D), unit(0xDE00)}, unpaired[] = {unit(0xD83D), unit(0x41)};
         unsigned int i = 0, j = 0;
         EXPECT_EQ(UTF32::getUTF32Char(pair, i, 2), 0xFDEFu);
         EXPECT_EQ(i, 2u);
         EXPECT_THROW(UTF32::getUTF32Char(unpaired, j, 2), Exception<2>);
     },
     [] {
         const UTF16Char units[] = {unit(0xD83D), unit(0xDE00), unit(0xD83D), unit(0x41)};
         std::vector<UTF32Char> read;
         for (const UTF32Char c : codePoints(TextView(units, 4))) read.push_back(c);
         EXPECT_EQ(read, (std::vector<UTF32Char>{0x1F600, 0xFFFD, 0x41}));
     }},
    {"the three readers at the end",
     [] {
         const Byte text[] = {0};
         const UTF16Char units[] = {0};
         unsigned int i = 0, j = 0, k = 0;
         EXPECT_EQ(UTF32::getUTF32Char(text, i, 0), 0xFFFFu);
         EXPECT_EQ(UTF32::getUTF32Char(units, j, 0), 0xFFFFu);
         EXPECT_EQ(UTF16::getUTF16(text, k, 0), 0xFFFFu);
         EXPECT_EQ(i + j + k, 0u);
     },
     [] {
         const std::string letter(1, 'A');
         unsigned int count = 0;
         for (const UTF32Char c : codePoints(letter)) count += c == 0x41;
         EXPECT_EQ(count, 1u);
         EXPECT_TRUE(codePoints("").empty());
     }},
};
