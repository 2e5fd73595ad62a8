#include "Vorn/String/StringDataHelper.h"

#include "Reference/SampleTexts.h"
#include "Support/AllocationCounter.h"
#include "Support/BufferInfo.h"
#include "Support/Report.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

using reference::Bytes;
using reference::Codes;
using reference::Units;
using Vorn::STRING_DATA_ASCII;
using Vorn::STRING_DATA_UCS2;
using Vorn::STRING_DATA_UNICODE;
using Vorn::StringDataBufferInfo;
using Vorn::StringDataSubCharset;
using Vorn::UTF16Char;

constexpr UTF16Char UNWRITTEN = 0xA5A5;

TEST(StringDataConvertToUTF16, KnownTexts) {
    const struct {
        const char* name;
        StringDataSubCharset charset;
        Bytes bytes;
        Units units; // without the terminator
    } rows[] = {
        {"plain", STRING_DATA_ASCII, {0x61, 0x62, 0x7F}, {0x61, 0x62, 0x7F}},
        {"null crosses as a zero unit", STRING_DATA_UCS2, {0x61, 0xC0, 0x80}, {0x0061, 0x0000}},
        {"two and three bytes", STRING_DATA_UCS2, {0xC3, 0xA9, 0xEF, 0xBF, 0xBD}, {0x00E9, 0xFFFD}},
        {"only the second surrogate of the last character", STRING_DATA_UNICODE, {0xF4, 0x8F, 0xBF, 0xBD}, {0xDFFD, 0}},
        {"and so does one in the midst",
         STRING_DATA_UNICODE,
         {0x61, 0xF0, 0x90, 0x80, 0x80, 0x62},
         {0x0061, 0xDC00, 0x0062, 0}},
        {"one zero unit for each",
         STRING_DATA_UNICODE,
         {0xF0, 0x9F, 0x98, 0x80, 0xC3, 0xA9, 0xF0, 0x9F, 0x98, 0x81},
         {0xDE00, 0x00E9, 0xDE01, 0, 0}},
    };
    for (const auto& row : rows) {
        StringDataBufferInfo destInfo = infoOf(0);
        const std::unique_ptr<UTF16Char[]> dest(
            Vorn::stringDataConvertToUTF16(row.bytes.data(), infoOf(row.bytes.size()), row.charset, destInfo));
        EXPECT_EQ(Units(dest.get(), dest.get() + destInfo.m_length), row.units) << row.name;
        EXPECT_EQ(dest[row.units.size()], 0) << row.name;
    }
}

TEST(StringDataConvertToUTF16, CopyAsksForTheSizeWithALengthOfZero) {
    const Bytes text = reference::toUTF8({0x61, 0x20AC, 0x1F600});
    UTF16Char untouched = UNWRITTEN;
    EXPECT_EQ(Vorn::stringDataConvertCopyToUTF16(text.data(), infoOf(text.size()), STRING_DATA_UNICODE, &untouched, 0),
              4u);
    EXPECT_EQ(untouched, UNWRITTEN);
    EXPECT_EQ(Vorn::stringDataConvertCopyToUTF16(text.data(), infoOf(text.size()), STRING_DATA_UNICODE, nullptr, 0),
              4u);
    EXPECT_EQ(Vorn::stringDataConvertCopyToUTF16(text.data(), infoOf(1), STRING_DATA_ASCII, nullptr, 0), 1u);
}

TEST(StringDataConvertToUTF16, CopyThatIsTooShortTestsNothingUnderASCII) {
    const unsigned char text[] = {0xFF, 0x00};
    UTF16Char untouched = UNWRITTEN;
    EXPECT_EQ(Vorn::stringDataConvertCopyToUTF16(text, infoOf(2), STRING_DATA_ASCII, &untouched, 1), 2u);
    EXPECT_EQ(untouched, UNWRITTEN);
}

TEST(StringDataConvertToUTF16, FailuresNameTheOuterFunction) {
    const std::string null("sourceBuffer[i] : ASCII null detected in UTF-8 buffer! This implementation of UTF-8 does "
                           "not support ASCII null!");
    const std::string nonASCII("sourceBuffer[i] <= 127 : non-ASCII character detected in UTF-8 buffer! This buffer is "
                               "marked as ASCII only!");
    const std::string file("Source/Vorn/StringDataHelper");
    const unsigned char texts[][3] = {{0x61, 0x00, 0x80}, {0x61, 0x80, 0x00}};
    for (const bool first : {true, false}) {
        const unsigned char* const text = texts[first ? 0 : 1];
        const std::string& message = first ? null : nonASCII;
        StringDataBufferInfo destInfo = infoOf(0);
        UTF16Char dest[] = {UNWRITTEN, UNWRITTEN, UNWRITTEN};
        expectRaises<2>([&] { Vorn::stringDataConvertToUTF16(text, infoOf(3), STRING_DATA_ASCII, destInfo); }, message,
                        "Vorn::stringDataConvertToUTF16", file);
        expectRaises<2>([&] { Vorn::stringDataConvertCreateUTF16(text, infoOf(3), STRING_DATA_ASCII, 9); }, message,
                        "Vorn::stringDataConvertCreateUTF16", file);
        expectRaises<2>([&] { Vorn::stringDataConvertCopyToUTF16(text, infoOf(3), STRING_DATA_ASCII, dest, 3); },
                        message, "Vorn::stringDataConvertCopyToUTF16", file);
        EXPECT_EQ(Units(dest, dest + 3), (Units{0x61, UNWRITTEN, UNWRITTEN}));
    }
}

TEST(StringDataConvertToUTF16, CreateAllocatesTheBuffer) {
    const Bytes text = reference::toUTF8({0x61, 0xE9, 0x62});
    const struct {
        unsigned int capacity;
        Units units;
    } rows[] = {
        {0, {0x61, 0xE9, 0x62, 0}},
        {2, {0x61, 0xE9, 0x62, 0}},
        {3, {0x61, 0xE9, 0x62, 0}},
        {6, {0x61, 0xE9, 0x62, 0, 0, 0, 0}},
    };
    for (const auto& row : rows) {
        const std::unique_ptr<UTF16Char[]> dest(
            Vorn::stringDataConvertCreateUTF16(text.data(), infoOf(text.size()), STRING_DATA_UCS2, row.capacity));
        EXPECT_EQ(lastAllocationSize(), row.units.size() * sizeof(UTF16Char));
        EXPECT_EQ(Units(dest.get(), dest.get() + row.units.size()), row.units) << row.capacity;
    }
}

// Every character in texts of 0x400: each but the supplementary ones comes out whole.
TEST(StringDataConvertToUTF16, EveryCharacter) {
    for (unsigned int start = 0; start < 0x110000; start += 0x400) {
        Codes codes;
        for (unsigned int code = start; code < start + 0x400; ++code) {
            if (reference::isCharacter(code)) codes.push_back(code);
        }
        const Bytes bytes = reference::toUTF8(codes);
        Units expected;
        for (const unsigned int code : codes) {
            expected.push_back(static_cast<UTF16Char>(code > 0xFFFF ? reference::secondSurrogateOf(code) : code));
        }
        Units dest(codes.size() * 2 + 1, UNWRITTEN);
        const unsigned int n =
            Vorn::stringDataConvertCopyToUTF16(bytes.data(), infoOf(bytes.size()), reference::charsetOf(codes),
                                               dest.data(), static_cast<unsigned int>(dest.size()));
        ASSERT_EQ(n, reference::toUTF16(codes).size()) << start;
        expected.resize(dest.size(), UNWRITTEN);
        ASSERT_EQ(dest, expected) << start;
    }
}

} // namespace
