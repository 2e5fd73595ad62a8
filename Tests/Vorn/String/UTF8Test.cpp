#include "Vorn/String/Unicode.h"

#include "Support/Report.h"

#include <gtest/gtest.h>

namespace {

using Vorn::Unicode;
using Vorn::UTF16Char;

TEST(Unicode, KnownResults) {
    using namespace Vorn;
    EXPECT_EQ(UTF8::countUTF8(0u), 1u);
    EXPECT_EQ(UTF8::countUTF8(0x7FFu), 2u);
    EXPECT_EQ(UTF8::countUTF8(0xFFFDu), 3u);
    EXPECT_EQ(UTF8::countUTF8(0xFDD0u), 0u);
    EXPECT_EQ(UTF8::countUTF8(0x10FFFDu), 4u);
    EXPECT_EQ(UTF8::countUTF8(0x110000u), 0u);
    EXPECT_EQ(UTF8::countUTF8(0x8000007Fu), 0u);
    EXPECT_EQ(UTF8::countUTF8(0x80000080u), 1u);
    EXPECT_EQ(UTF8::countUTF8(0xFFFFFFFFu), 1u);
    EXPECT_EQ(UTF8::getUTF8(UTF16Char(0xDBC0), UTF16Char(0xDC00)), 0xF0C08080u);
    EXPECT_EQ(UTF8::getUTF8(UTF16Char(0xD83F), UTF16Char(0xDFFF)), 0xF09FBFBFu);
    EXPECT_EQ(UTF8::getUTF8(UTF16Char(0xDA00), UTF16Char(0xDC00)), 0xF0908080u);
    EXPECT_EQ(UTF16::getUCS2Char(0x40u), 0x41);
    EXPECT_EQ(UTF16::getUCS2Char(0x80000000u), 0xFFFF);
    EXPECT_EQ(UTF16::getUTF16(0xFFFEu), 0xDBFFDFFEu);
    EXPECT_EQ(UTF16::getUTF16(0x110000u), 0xD800DC00u);
    EXPECT_EQ(UTF16::getUTF16(0x1FFFEu), 0xD83FDFFEu);
    EXPECT_EQ(UTF16::getUTF16ForUTF8(0x41), 0xFF000041u);
    EXPECT_EQ(UTF16::getUTF16ForUTF8(0xF0908080), 0xD740DC00u);
    EXPECT_EQ(UTF16::getUTF16ForUTF8(0xF4808080), 0xD700DC00u);
    EXPECT_EQ(UTF16::getUTF16(0xF0, 0x80, 0x80, 0x80), 0xDBC0DC00u);
    EXPECT_EQ(UTF16::getUTF16(0xF0, 0x8F, 0xBF, 0xBD), 0xDBFFDFFDu);
    EXPECT_EQ(UTF32::getUTF32CharForUTF8(0xF08FB78F), 0xFF00FDCFu);
    EXPECT_EQ(UTF32::getUTF32CharForUTF8(0xE09FBF), 0x7FFu);
    EXPECT_EQ(UTF32::getUTF32CharForUTF8(0xC1BF), 0xFF00007Fu);
    EXPECT_EQ(UTF32::getUTF32Char(UTF16Char(0xDBFF), UTF16Char(0xDFFD)), 0x10FFFDu);
    EXPECT_EQ(UTF32::getUTF32Char(UTF16Char(0xDBFF), UTF16Char(0xDFFE)), 0xFDEFu);
    expectRaises<2>([] { UTF32::getUTF32CharForUTF8(0x80); }, "seq < 0x00000080 : invalid UTF-8 sequence!",
                    "Vorn::UTF32::getUTF32CharForUTF8", "Source/Vorn/UTF32");
    expectRaises<2>([] { UTF16::getUTF16ForUTF8(0x10C080); }, "p || seq < 0x80 : Invalid sequence!",
                    "Vorn::UTF16::getUTF16ForUTF8", "Include/Vorn/String/UTF16");
}

} // namespace
