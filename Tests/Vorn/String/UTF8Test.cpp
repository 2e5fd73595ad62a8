#include "Vorn/String/UTF8.h"

#include "Vorn/String/Unicode.h"

#include "Reference/CodePoints.h"
#include "Support/Outcome.h"
#include "Support/Report.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using Vorn::UTF16Char;
using Vorn::UTF8;

constexpr const char* FILE_TEXT = "Include/Vorn/String/UTF8";

static_assert(std::is_empty_v<UTF8> && std::is_empty_v<Vorn::Unicode>);
static_assert(std::is_base_of_v<UTF8, Vorn::Unicode>);
static_assert(std::is_same_v<decltype(UTF8::validUTF8Lead('a')), unsigned int>);
static_assert(std::is_same_v<decltype(UTF8::validUTF8Trail('a')), unsigned int>);
static_assert(std::is_same_v<decltype(UTF8::countUTF8(0u)), unsigned int>);
static_assert(std::is_same_v<decltype(UTF8::countUTF8(UTF16Char('a'))), int>);
static_assert(std::is_same_v<decltype(UTF8::getUTF8(0u)), unsigned int>);
static_assert(std::is_same_v<decltype(UTF8::getUTF8(UTF16Char('a'))), unsigned int>);
static_assert(std::is_same_v<decltype(UTF8::getUTF8ForUCS2(UTF16Char('a'))), unsigned int>);
static_assert(std::is_same_v<decltype(UTF8::getUTF8(UTF16Char('a'), UTF16Char('b'))), unsigned int>);
static_assert(std::is_same_v<decltype(UTF8::getUTF8ForUTF16(0u)), unsigned int>);
static_assert(std::is_same_v<decltype(UTF8::invalid3ByteUnicode(0u)), unsigned int>);
static_assert(std::is_same_v<decltype(UTF8::invalid4ByteUnicode(0u)), unsigned int>);

TEST(UTF8, ValidLeadLeavesOutF4AndOverlongLeads) {
    expectSameOver(
        reference::allBytes, [](unsigned int c) { return UTF8::validUTF8Lead(static_cast<unsigned char>(c)); },
        [](unsigned int c) { return c < 0x80 || reference::within(c, 0xC2, 0xF3) ? 1u : 0u; });
    EXPECT_EQ(UTF8::validUTF8Lead(0xF4), 0u);
    EXPECT_EQ(Vorn::Unicode::getUTF32Char(static_cast<unsigned char>(0xF4)), 0xFDD4u);
}

TEST(UTF8, ValidTrailIsTheContinuationBytes) {
    expectSameOver(
        reference::allBytes, [](unsigned int c) { return UTF8::validUTF8Trail(static_cast<unsigned char>(c)); },
        [](unsigned int c) { return reference::isTrailByte(c) ? 1u : 0u; });
}

unsigned int countOfCode(unsigned int c) {
    if (c >= 0x80000080) return 1;
    return reference::isCharacter(c) ? reference::sizeInUTF8(c) : 0;
}

TEST(UTF8, CountOfEveryCode) {
    const auto count = [](unsigned int c) { return UTF8::countUTF8(c); };
    expectSameOver(reference::allCodes, count, countOfCode);
    expectSameOver(reference::wordsOfAllSizes(), count, countOfCode);
    expectSameOver(reference::Interval(0x7FFFFF00, 0x80020000), count, countOfCode);
    expectSameOver(reference::Interval(0x800FF000, 0x80111000), count, countOfCode);
    expectSameOver(reference::Interval(0xFFFF0000, 0xFFFFFFFF), count, countOfCode);
}

TEST(UTF8, CountOfKnownCodes) {
    const struct {
        const char* name;
        unsigned int code;
        unsigned int count;
    } rows[] = {
        {"U+0000 is one byte at this level", 0, 1},
        {"last of one byte", 0x7F, 1},
        {"first of two", 0x80, 2},
        {"last of two", 0x7FF, 2},
        {"first of three", 0x800, 3},
        {"last before the surrogates", 0xD7FF, 3},
        {"first surrogate", 0xD800, 0},
        {"last surrogate", 0xDFFF, 0},
        {"first after the surrogates", 0xE000, 3},
        {"last before the noncharacters", 0xFDCF, 3},
        {"first noncharacter", 0xFDD0, 0},
        {"last of the noncharacters' block", 0xFDEF, 0},
        {"first behind the noncharacters", 0xFDF0, 3},
        {"replacement character", 0xFFFD, 3},
        {"noncharacter FFFE", 0xFFFE, 0},
        {"noncharacter FFFF", 0xFFFF, 0},
        {"first of four", 0x10000, 4},
        {"FDD0 of a higher plane is a character", 0x1FDD0, 4},
        {"noncharacter of plane 1", 0x1FFFE, 0},
        {"last character", 0x10FFFD, 4},
        {"noncharacter of the last plane", 0x10FFFE, 0},
        {"behind Unicode", 0x110000, 0},
        {"last that is refused", 0x8000007F, 0},
        {"the count turns here", 0x80000080, 1},
        {"largest word", 0xFFFFFFFF, 1},
    };
    for (const auto& row : rows) EXPECT_EQ(UTF8::countUTF8(row.code), row.count) << row.name;
}

TEST(UTF8, CountOfEveryUnit) {
    const auto expected = [](unsigned int c) {
        if (reference::isFirstSurrogate(c)) return -1;
        if (reference::isSecondSurrogate(c)) return -2;
        return reference::isNonCharacter(c) ? 0 : static_cast<int>(reference::sizeInUTF8(c));
    };
    expectSameOver(
        reference::allUnits, [](unsigned int c) { return UTF8::countUTF8(static_cast<UTF16Char>(c)); }, expected);
    EXPECT_EQ(UTF8::countUTF8(UTF16Char(0)), 1);
    EXPECT_EQ(UTF8::countUTF8(UTF16Char(0xD800)), -1);
    EXPECT_EQ(UTF8::countUTF8(UTF16Char(0xDFFF)), -2);
}

TEST(UTF8, SequenceOfEveryCode) {
    const auto expected = [](unsigned int c) {
        if (c >= 0x80000080) return c;
        return reference::isCharacter(c) ? reference::sequence(c, reference::sizeInUTF8(c)) : 0xFDEF;
    };
    const auto actual = [](unsigned int c) { return UTF8::getUTF8(c); };
    expectSameOver(reference::allCodes, actual, expected);
    expectSameOver(reference::wordsOfAllSizes(), actual, expected);
    EXPECT_EQ(UTF8::getUTF8(0u), 0u);
    EXPECT_EQ(UTF8::getUTF8(0xE9u), 0xC3A9u);
    EXPECT_EQ(UTF8::getUTF8(0x20ACu), 0xE282ACu);
    EXPECT_EQ(UTF8::getUTF8(0x1F600u), 0xF09F9880u);
    EXPECT_EQ(UTF8::getUTF8(0x8000007Fu), 0xFDEFu);
    EXPECT_EQ(UTF8::getUTF8(0x80000080u), 0x80000080u);
}

TEST(UTF8, SequenceOfEveryUnit) {
    const auto expected = [](unsigned int c) {
        return reference::isCharacter(c) ? reference::sequence(c, reference::sizeInUTF8(c)) : reference::kindOfUnit(c);
    };
    expectSameOver(
        reference::allUnits, [](unsigned int c) { return UTF8::getUTF8(static_cast<UTF16Char>(c)); }, expected);
}

TEST(UTF8, SequenceForUCS2RefusesSurrogatesPlainly) {
    const auto expected = [](unsigned int c) {
        return reference::isCharacter(c) ? reference::sequence(c, reference::sizeInUTF8(c)) : 0xFDEF;
    };
    expectSameOver(
        reference::allUnits, [](unsigned int c) { return UTF8::getUTF8ForUCS2(static_cast<UTF16Char>(c)); }, expected);
}

// Bits 8 and 9 of the first surrogate are lost, and bits 6 and 7 are added to the second byte.
unsigned int sequenceOfPair(unsigned int first, unsigned int second) {
    return 0xF0908080 + first % 0x100 / 4 * 0x10000 + first % 4 * 0x1000 + second % 0x400 / 0x40 * 0x100 +
           second % 0x40;
}

TEST(UTF8, SequenceOfEverySurrogatePair) {
    for (unsigned int first = 0xD800; first <= 0xDBFF; ++first) {
        expectSameOver(
            reference::Interval(0xDC00, 0xDFFF),
            [&](unsigned int second) {
                return UTF8::getUTF8(static_cast<UTF16Char>(first), static_cast<UTF16Char>(second));
            },
            [&](unsigned int second) { return sequenceOfPair(first, second); });
        expectSameOver(
            reference::Interval(0xDC00, 0xDFFF),
            [&](unsigned int second) { return UTF8::getUTF8ForUTF16(first * 0x10000 + second); },
            [&](unsigned int second) { return sequenceOfPair(first, second); });
        if (HasFailure()) FAIL() << "first surrogate 0x" << std::hex << first;
    }
}

TEST(UTF8, SequenceOfASurrogatePairIsTrueUpToPlane3) {
    for (unsigned int code = 0x10000; code < 0x40000; ++code) {
        const auto first = static_cast<UTF16Char>(reference::firstSurrogateOf(code));
        const auto second = static_cast<UTF16Char>(reference::secondSurrogateOf(code));
        ASSERT_EQ(UTF8::getUTF8(first, second), reference::sequence(code, 4)) << code;
    }
}

TEST(UTF8, SequenceOfKnownSurrogatePairs) {
    const struct {
        const char* name;
        unsigned int pair;
        unsigned int sequence;
    } rows[] = {
        {"first pair", 0xD800DC00, 0xF0908080},
        {"bit 9 of the first surrogate is lost", 0xDA00DC00, 0xF0908080},
        {"bit 8 of the first surrogate is lost", 0xD900DC00, 0xF0908080},
        {"a malformed second byte", 0xDBC0DC00, 0xF0C08080},
        {"noncharacters pass", 0xD83FDFFF, 0xF09FBFBF},
        {"last that is right", 0xD8BFDFFF, 0xF0BFBFBF},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(UTF8::getUTF8ForUTF16(row.pair), row.sequence) << row.name;
        EXPECT_EQ(UTF8::getUTF8(static_cast<UTF16Char>(row.pair >> 16), static_cast<UTF16Char>(row.pair)), row.sequence)
            << row.name;
    }
}

TEST(UTF8, SurrogatesAreCheckedInOrder) {
    const std::string function("Vorn::UTF8::getUTF8");
    const std::string badFirst("(first & 0xFC00) == 0xD800 : invalid first surrogate!");
    const std::string badSecond("(second & 0xFC00) == 0xDC00 : invalid second surrogate!");
    for (const unsigned int first : {0u, 0x41u, 0xD7FFu, 0xDC00u, 0xDFFFu, 0xE000u, 0xFFFFu}) {
        for (const unsigned int second : {0u, 0x41u, 0xDBFFu, 0xDC00u, 0xDFFFu, 0xE000u, 0xFFFFu}) {
            expectRaises<2>([&] { UTF8::getUTF8(static_cast<UTF16Char>(first), static_cast<UTF16Char>(second)); },
                            badFirst, function, FILE_TEXT);
        }
    }
    for (const unsigned int second : {0u, 0x41u, 0xD800u, 0xDBFFu, 0xE000u, 0xFFFFu}) {
        for (const unsigned int first : {0xD800u, 0xDBFFu}) {
            expectRaises<2>([&] { UTF8::getUTF8(static_cast<UTF16Char>(first), static_cast<UTF16Char>(second)); },
                            badSecond, function, FILE_TEXT);
        }
    }
    for (const unsigned int pair : {0u, 0x41u, 0xD7FFDC00u, 0xDC00DC00u, 0xD800DBFFu, 0xD800E000u, 0xFFFFFFFFu}) {
        expectRaises<2>([&] { UTF8::getUTF8ForUTF16(pair); },
                        "(pair & 0xFC00FC00) == 0xD800DC00 : invalid surrogate pair!", "Vorn::UTF8::getUTF8ForUTF16",
                        FILE_TEXT);
    }
}

Outcome invalid3Bytes(unsigned int seq) {
    if (reference::hasPattern(seq, 3)) return {reference::isInvalid3Bytes(seq) ? 1u : 0u, {}};
    return raised(2, "(seq & 0x00F0C0C0) == 0x00E08080 : Invalid 3-byte UTF-8 sequence!",
                  "Vorn::UTF8::invalid3ByteUnicode", FILE_TEXT);
}

Outcome invalid4Bytes(unsigned int seq) {
    if (reference::hasPattern(seq, 4)) return {reference::isInvalid4Bytes(seq) ? 1u : 0u, {}};
    return raised(2, "(seq & 0xF8C0C0C0) == 0xF0808080 : Invalid 4-byte UTF-8 sequence!",
                  "Vorn::UTF8::invalid4ByteUnicode", FILE_TEXT);
}

TEST(UTF8, Invalid3BytesAreSurrogatesAndNoncharacters) {
    for (unsigned int code = 0; code <= 0xFFFF; ++code) {
        const bool invalid = reference::isSurrogate(code) || reference::isNonCharacter(code);
        ASSERT_EQ(UTF8::invalid3ByteUnicode(reference::sequence(code, 3)), invalid ? 1u : 0u) << code;
    }
}

TEST(UTF8, Invalid4BytesAreNoncharactersSomeOverlongFormsAndAllBeyondTheLastCharacter) {
    for (unsigned int code = 0; code <= 0x1FFFFF; ++code) {
        const bool invalid = reference::isSurrogate(code) || reference::isNonCharacter(code) || code > 0x10FFFD;
        ASSERT_EQ(UTF8::invalid4ByteUnicode(reference::sequence(code, 4)), invalid ? 1u : 0u) << code;
    }
}

TEST(UTF8, Invalid3BytesOfEveryKind) {
    const unsigned char others[] = {0x00, 0x7F, 0x80, 0x90, 0x9F, 0xA0, 0xAF, 0xB0, 0xB7, 0xBE, 0xBF, 0xC0, 0xFF};
    for (const unsigned char b1 : reference::selectedBytes) {
        for (const unsigned char b2 : others) {
            for (const unsigned char b3 : others) {
                const unsigned int seq = b1 * 0x10000u + b2 * 0x100u + b3;
                const Outcome expected = invalid3Bytes(seq);
                ASSERT_EQ(outcomeOf([&] { return UTF8::invalid3ByteUnicode(seq); }), expected) << seq;
                ASSERT_EQ(outcomeOf([&] { return UTF8::invalidUnicode(b1, b2, b3); }), expected) << seq;
            }
        }
    }
}

TEST(UTF8, Invalid4BytesOfEveryKind) {
    const unsigned char seconds[] = {0x00, 0x7F, 0x80, 0x8D, 0x8F, 0x90, 0x9F, 0xBF, 0xC0, 0xFF};
    const unsigned char thirds[] = {0x00, 0x7F, 0x80, 0x9F, 0xA0, 0xB7, 0xBF, 0xC0, 0xFF};
    const unsigned char fourths[] = {0x00, 0x7F, 0x80, 0x8F, 0x90, 0xAF, 0xB0, 0xBD, 0xBE, 0xBF, 0xC0};
    for (const unsigned char b1 : reference::selectedBytes) {
        for (const unsigned char b2 : seconds) {
            for (const unsigned char b3 : thirds) {
                for (const unsigned char b4 : fourths) {
                    const unsigned int seq = b1 * 0x1000000u + b2 * 0x10000u + b3 * 0x100u + b4;
                    const Outcome expected = invalid4Bytes(seq);
                    ASSERT_EQ(outcomeOf([&] { return UTF8::invalidUnicode(b1, b2, b3, b4); }), expected) << seq;
                }
            }
        }
    }
}

TEST(UTF8, PatternsOfPackedWordsWithStrangeUpperBytes) {
    const struct {
        const char* name;
        unsigned int seq;
        unsigned int invalid;
    } rows[] = {
        {"surrogate", 0x00EDA080, 1},
        {"last surrogate", 0x00EDBFBF, 1},
        {"last before the surrogates", 0x00ED9FBF, 0},
        {"first after the surrogates", 0x00EE8080, 0},
        {"the whole word is compared", 0x01EDA080, 0},
        {"the whole word is compared", 0xFFEFBFBF, 0},
        {"overlong", 0x00E08080, 0},
    };
    for (const auto& row : rows) EXPECT_EQ(UTF8::invalid3ByteUnicode(row.seq), row.invalid) << row.name;
    EXPECT_EQ(UTF8::invalid4ByteUnicode(0xF48FBFBD), 0u);
    EXPECT_EQ(UTF8::invalid4ByteUnicode(0xF48FBFBE), 1u);
    EXPECT_EQ(UTF8::invalid4ByteUnicode(0xF4908080), 1u);
    EXPECT_EQ(UTF8::invalid4ByteUnicode(0xF7BFBFBF), 1u);
    EXPECT_EQ(UTF8::invalid4ByteUnicode(0xF08D9FBF), 0u);
    EXPECT_EQ(UTF8::invalid4ByteUnicode(0xF08FBFBD), 0u);
}

} // namespace
