#include "Vorn/String/UTF16.h"

#include "Vorn/String/Unicode.h"

#include "Reference/CodePoints.h"
#include "Support/Outcome.h"
#include "Support/Report.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using Vorn::UTF16;
using Vorn::UTF16Char;

static_assert(std::is_empty_v<UTF16>);
static_assert(std::is_base_of_v<UTF16, Vorn::Unicode>);
static_assert(std::is_same_v<decltype(UTF16::isSurrogate(UTF16Char())), unsigned int>);
static_assert(std::is_same_v<decltype(UTF16::isFirstSurrogate(UTF16Char())), unsigned int>);
static_assert(std::is_same_v<decltype(UTF16::isSecondSurrogate(UTF16Char())), unsigned int>);
static_assert(std::is_same_v<decltype(UTF16::isUCS2NonCharacter(UTF16Char())), unsigned int>);
static_assert(std::is_same_v<decltype(UTF16::getUCS2Char(0u)), UTF16Char>);
static_assert(std::is_same_v<decltype(UTF16::getUCS2Char(static_cast<unsigned char>(0))), UTF16Char>);
static_assert(std::is_same_v<decltype(UTF16::getUCS2Char(0, 0)), UTF16Char>);
static_assert(std::is_same_v<decltype(UTF16::getUCS2Char(0, 0, 0)), UTF16Char>);
static_assert(std::is_same_v<decltype(UTF16::getSurrogatePair(0u)), unsigned int>);
static_assert(std::is_same_v<decltype(UTF16::getUTF16(0u)), unsigned int>);
static_assert(std::is_same_v<decltype(UTF16::getUTF16(0, 0, 0, 0)), unsigned int>);
static_assert(std::is_same_v<decltype(UTF16::getUTF16ForUTF8(0u)), unsigned int>);

constexpr const char* FILE_TEXT = "Include/Vorn/String/UTF16";

const Outcome BAD_LEAD2 = raised(2, "(lead & 0xE0) == 0xC0 : Invalid lead byte in 2-byte UTF-8 sequence",
                                 "Vorn::UTF32::getUTF32Char", "Include/Vorn/String/UTF32");
const Outcome BAD_TRAIL2 = raised(2, "(trail & 0xC0) == 0x80 : Invalid trail byte in 2-byte UTF-8 sequence",
                                  "Vorn::UTF32::getUTF32Char", "Include/Vorn/String/UTF32");
const Outcome BAD_3_BYTES = raised(2, "(seq & 0x00F0C0C0) == 0x00E08080 : Invalid 3-byte UTF-8 sequence!",
                                   "Vorn::UTF8::invalid3ByteUnicode", "Include/Vorn/String/UTF8");
const Outcome BAD_4_BYTES = raised(2, "(seq & 0xF8C0C0C0) == 0xF0808080 : Invalid 4-byte UTF-8 sequence!",
                                   "Vorn::UTF8::invalid4ByteUnicode", "Include/Vorn/String/UTF8");

TEST(UTF16, KindsOfEveryUnit) {
    for (const unsigned int c : reference::allUnits) {
        const auto unit = static_cast<UTF16Char>(c);
        ASSERT_EQ(UTF16::isSurrogate(unit), reference::isSurrogate(c) ? 1u : 0u) << c;
        ASSERT_EQ(UTF16::isFirstSurrogate(unit), reference::isFirstSurrogate(c) ? 1u : 0u) << c;
        ASSERT_EQ(UTF16::isSecondSurrogate(unit), reference::isSecondSurrogate(c) ? 1u : 0u) << c;
        ASSERT_EQ(UTF16::isUCS2NonCharacter(unit), reference::isNonCharacter(c) ? 1u : 0u) << c;
    }
}

unsigned int narrowed(unsigned int c) {
    if (c > 0xFFFD) return 0xFFFF;
    if (reference::isSurrogate(c) || reference::isNonCharacter(c)) return c;
    return c % 2 == 0 ? c + 1 : c;
}

TEST(UTF16, NarrowingSetsTheLowestBitOfEvenCodes) {
    const auto actual = [](unsigned int c) { return static_cast<unsigned int>(UTF16::getUCS2Char(c)); };
    expectSameOver(reference::allCodes, actual, narrowed);
    expectSameOver(reference::wordsOfAllSizes(), actual, narrowed);
    expectSameOver(reference::Interval(0x7FFEFFFF, 0x80020000), actual, narrowed);
    expectSameOver(reference::Interval(0xFFFF0000, 0xFFFFFFFF), actual, narrowed);
    const struct {
        const char* name;
        unsigned int code;
        unsigned int unit;
    } rows[] = {
        {"even", 0x40, 0x41},
        {"odd", 0x41, 0x41},
        {"zero", 0, 1},
        {"two bytes", 0x80, 0x81},
        {"three bytes", 0x800, 0x801},
        {"the largest even character", 0xFFFC, 0xFFFD},
        {"the largest character", 0xFFFD, 0xFFFD},
        {"an even surrogate", 0xD800, 0xD800},
        {"the last even surrogate", 0xDFFE, 0xDFFE},
        {"an even noncharacter", 0xFDD0, 0xFDD0},
        {"the last even one of the block", 0xFDEE, 0xFDEE},
        {"the code of invalid", 0xFDEF, 0xFDEF},
        {"FFFE", 0xFFFE, 0xFFFF},
        {"FFFF", 0xFFFF, 0xFFFF},
        {"a supplementary code", 0x10000, 0xFFFF},
        {"a supplementary code with low bits of a small one", 0x10041, 0xFFFF},
        {"behind Unicode", 0x110000, 0xFFFF},
        {"sign bit", 0x80000000, 0xFFFF},
        {"no upper end", 0xFFFFFFFF, 0xFFFF},
    };
    for (const auto& row : rows) EXPECT_EQ(UTF16::getUCS2Char(row.code), row.unit) << row.name;
}

TEST(UTF16, UnitOfEveryByteKeepsSentinels) {
    for (const unsigned int byte : reference::allBytes) {
        ASSERT_EQ(UTF16::getUCS2Char(static_cast<unsigned char>(byte)), reference::kindOfByte(byte)) << byte;
    }
}

Outcome unitOf2Bytes(unsigned int lead, unsigned int trail) {
    if (!reference::within(lead, 0xC0, 0xDF)) return BAD_LEAD2;
    if (!reference::isTrailByte(trail)) return BAD_TRAIL2;
    return {reference::codeOfSequence(lead * 0x100 + trail, 2), {}};
}

TEST(UTF16, UnitOfEveryTwoBytes) {
    for (unsigned int lead = 0xC0; lead <= 0xDF; ++lead) {
        for (const unsigned int trail : reference::allBytes) {
            ASSERT_EQ(outcomeOf([&] {
                          return UTF16::getUCS2Char(static_cast<unsigned char>(lead),
                                                    static_cast<unsigned char>(trail));
                      }),
                      unitOf2Bytes(lead, trail))
                << lead << " " << trail;
        }
    }
    for (const unsigned char lead : reference::selectedBytes) {
        for (const unsigned char trail : reference::selectedBytes) {
            ASSERT_EQ(outcomeOf([&] { return UTF16::getUCS2Char(lead, trail); }), unitOf2Bytes(lead, trail))
                << lead << " " << trail;
        }
    }
}

Outcome unitOf3Bytes(unsigned int seq) {
    if (!reference::hasPattern(seq, 3)) return BAD_3_BYTES;
    return {reference::isInvalid3Bytes(seq) ? 0xFDEF : reference::codeOfSequence(seq, 3), {}};
}

TEST(UTF16, UnitOfThreeBytes) {
    for (const unsigned int code : reference::allUnits) {
        const unsigned int seq = reference::sequence(code, 3);
        ASSERT_EQ(UTF16::getUCS2Char(static_cast<unsigned char>(seq >> 16), static_cast<unsigned char>(seq >> 8),
                                     static_cast<unsigned char>(seq)),
                  unitOf3Bytes(seq).value)
            << code;
    }
    for (const unsigned char b1 : reference::selectedBytes) {
        for (const unsigned char b2 : reference::selectedBytes) {
            for (const unsigned char b3 : {b1, b2, static_cast<unsigned char>(0x80)}) {
                ASSERT_EQ(outcomeOf([&] { return UTF16::getUCS2Char(b1, b2, b3); }),
                          unitOf3Bytes(b1 * 0x10000u + b2 * 0x100u + b3));
            }
        }
    }
}

TEST(UTF16, SurrogatePairOfEveryCode) {
    for (unsigned int code = 0x10000; code <= 0x10FFFF; ++code) {
        if (reference::isNonCharacter(code)) continue;
        ASSERT_EQ(UTF16::getSurrogatePair(code),
                  reference::firstSurrogateOf(code) * 0x10000 + reference::secondSurrogateOf(code))
            << code;
    }
}

TEST(UTF16, SurrogatePairRefusesOtherCodesInOrder) {
    const struct {
        const char* name;
        unsigned int code;
        const char* message;
    } rows[] = {
        {"zero", 0, "c > 0xFFFF : invalid code for surrogate pair!"},
        {"FFFE of plane 0", 0xFFFE, "c > 0xFFFF : invalid code for surrogate pair!"},
        {"last of plane 0", 0xFFFF, "c > 0xFFFF : invalid code for surrogate pair!"},
        {"noncharacter of the last plane", 0x10FFFE, "c <= 0x10FFFD : invalid Unicode!"},
        {"last code", 0x10FFFF, "c <= 0x10FFFD : invalid Unicode!"},
        {"behind Unicode", 0x110000, "c <= 0x10FFFD : invalid Unicode!"},
        {"sign bit", 0x80000000, "c <= 0x10FFFD : invalid Unicode!"},
        {"largest word", 0xFFFFFFFF, "c <= 0x10FFFD : invalid Unicode!"},
        {"noncharacter FFFE of plane 1", 0x1FFFE, "0xFFFE != (c & 0xFFFE) : invalid Unicode!"},
        {"noncharacter FFFF of plane 1", 0x1FFFF, "0xFFFE != (c & 0xFFFE) : invalid Unicode!"},
        {"noncharacter FFFE of plane 15", 0xFFFFE, "0xFFFE != (c & 0xFFFE) : invalid Unicode!"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        expectRaises<2>([&] { UTF16::getSurrogatePair(row.code); }, row.message, "Vorn::UTF16::getSurrogatePair",
                        FILE_TEXT);
    }
}

// The pair of a code below 0x100000 + 0x10000, and the remaining bits of any other code.
unsigned int uncheckedPair(unsigned int c) { return 0xD800DC00 + (c - 0x10000) / 0x400 % 0x400 * 0x10000 + c % 0x400; }

TEST(UTF16, UTF16OfEveryCode) {
    const auto expected = [](unsigned int c) { return c < 0xFFFE ? narrowed(c) : uncheckedPair(c); };
    const auto actual = [](unsigned int c) { return UTF16::getUTF16(c); };
    expectSameOver(reference::allCodes, actual, expected);
    expectSameOver(reference::wordsOfAllSizes(), actual, expected);
    const struct {
        const char* name;
        unsigned int code;
        unsigned int result;
    } rows[] = {
        {"even", 0x40, 0x41},
        {"FFFE is packed", 0xFFFE, 0xDBFFDFFE},
        {"FFFF is packed", 0xFFFF, 0xDBFFDFFF},
        {"first pair", 0x10000, 0xD800DC00},
        {"noncharacter", 0x1FFFE, 0xD83FDFFE},
        {"last character", 0x10FFFD, 0xDBFFDFFD},
        {"behind Unicode", 0x110000, 0xD800DC00},
        {"largest word", 0xFFFFFFFF, 0xDBBFDFFF},
    };
    for (const auto& row : rows) EXPECT_EQ(UTF16::getUTF16(row.code), row.result) << row.name;
}

Outcome pairOf4Bytes(unsigned int seq) {
    if (!reference::hasPattern(seq, 4)) return BAD_4_BYTES;
    return {reference::isInvalid4Bytes(seq) ? 0xFDEF : uncheckedPair(reference::codeOfSequence(seq, 4)), {}};
}

unsigned int utf16Of4Bytes(unsigned int seq) {
    return UTF16::getUTF16(static_cast<unsigned char>(seq >> 24), static_cast<unsigned char>(seq >> 16),
                           static_cast<unsigned char>(seq >> 8), static_cast<unsigned char>(seq));
}

TEST(UTF16, PairOfEveryFourBytes) {
    for (const unsigned int code : reference::Interval(0, 0x1FFFFF)) {
        const unsigned int seq = reference::sequence(code, 4);
        const unsigned int pair = utf16Of4Bytes(seq);
        const bool character = reference::isCharacter(code) && code > 0xFFFF;
        if (character) {
            ASSERT_EQ(pair, reference::firstSurrogateOf(code) * 0x10000 + reference::secondSurrogateOf(code)) << code;
        }
        ASSERT_EQ(pair, pairOf4Bytes(seq).value) << code;
    }
    EXPECT_EQ(utf16Of4Bytes(0xF0808080), 0xDBC0DC00u);
    EXPECT_EQ(utf16Of4Bytes(0xF08FBFBD), 0xDBFFDFFDu);
    EXPECT_EQ(utf16Of4Bytes(0xF48FBFBE), 0xFDEFu);
}

TEST(UTF16, PairOfFourBytesAssertsThePattern) {
    for (const unsigned int seq : {0u, 0x41u, 0x7F808080u, 0xEF808080u, 0xF8808080u, 0xF07F8080u, 0xF0C08080u,
                                   0xF0807F80u, 0xF080C080u, 0xF080807Fu, 0xF08080C0u, 0xFFFFFFFFu}) {
        ASSERT_EQ(outcomeOf([&] { return utf16Of4Bytes(seq); }), BAD_4_BYTES) << seq;
    }
}

Outcome utf16ForUTF8(unsigned int seq) {
    if (reference::hasPattern(seq, 4)) {
        if (reference::isInvalid4Bytes(seq)) return {0xFDEF, {}};
        if (seq < 0xF0908080) return {0xFF000000 + reference::codeOfSequence(seq, 4), {}};
        const unsigned int b1 = seq / 0x1000000;
        const unsigned int b2 = seq / 0x10000 % 0x40;
        const unsigned int b3 = seq / 0x100 % 0x40;
        const unsigned int first = 0xD700 + b1 % 4 * 0x100 + b2 * 4 + b3 / 0x10;
        const unsigned int second = 0xDC00 + b3 % 0x10 * 0x40 + seq % 0x40;
        return {first * 0x10000 + second, {}};
    }
    if (reference::hasPattern(seq, 3)) {
        if (reference::isInvalid3Bytes(seq)) return {0xFDEF, {}};
        return {reference::codeOfSequence(seq, 3) + (seq < 0xE08480 ? 0xFF000000 : 0), {}};
    }
    unsigned int p = reference::hasPattern(seq, 2) ? reference::codeOfSequence(seq, 2) : seq;
    if (seq < 0xC280) p += 0xFF000000;
    if (p == 0) return raised(2, "p || seq < 0x80 : Invalid sequence!", "Vorn::UTF16::getUTF16ForUTF8", FILE_TEXT);
    return {p, {}};
}

TEST(UTF16, UTF16OfPackedWords) {
    expectSameOver(
        reference::packedWords(),
        [](unsigned int seq) { return outcomeOf([&] { return UTF16::getUTF16ForUTF8(seq); }); }, utf16ForUTF8);
    const struct {
        const char* name;
        unsigned int seq;
        unsigned int result;
    } rows[] = {
        {"ASCII is marked", 0x41, 0xFF000041},
        {"zero is marked", 0, 0xFF000000},
        {"overlong zero is marked", 0xC080, 0xFF000000},
        {"a lone trail byte is marked", 0x80, 0xFF000080},
        {"no pattern, below the threshold", 0xC27F, 0xFF00C27F},
        {"first of two bytes", 0xC280, 0x80},
        {"no pattern, above the threshold", 0xC2C0, 0xC2C0},
        {"last of two bytes", 0xDFBF, 0x7FF},
        {"overlong three bytes", 0xE08080, 0xFF000000},
        {"overlong three bytes from code 0x100 pass", 0xE08480, 0x100},
        {"last overlong three bytes", 0xE09FBF, 0x7FF},
        {"surrogate", 0xEDA080, 0xFDEF},
        {"overlong four bytes", 0xF08FB78F, 0xFF00FDCF},
        {"first unit is 0xC0 too low", 0xF0908080, 0xD740DC00},
        {"bit 2 of the lead takes no part", 0xF4808080, 0xD700DC00},
        {"noncharacter", 0xF48FBFBE, 0xFDEF},
    };
    for (const auto& row : rows) EXPECT_EQ(UTF16::getUTF16ForUTF8(row.seq), row.result) << row.name;
    expectRaises<2>([] { UTF16::getUTF16ForUTF8(0x10C080); }, "p || seq < 0x80 : Invalid sequence!",
                    "Vorn::UTF16::getUTF16ForUTF8", FILE_TEXT);
}

Outcome readOne(const unsigned char* bytes, unsigned int& i, unsigned int length) {
    if (i >= length) return {0xFFFF, {}};
    const unsigned int at = i;
    switch (reference::kindOfByte(bytes[at])) {
    case 0xFDD2: i += 2; return i > length ? Outcome{0xFDEF, {}} : unitOf2Bytes(bytes[at], bytes[at + 1]);
    case 0xFDD3:
        i += 3;
        return i > length ? Outcome{0xFDEF, {}}
                          : unitOf3Bytes(bytes[at] * 0x10000u + bytes[at + 1] * 0x100u + bytes[at + 2]);
    case 0xFDD4:
        i += 4;
        return pairOf4Bytes(bytes[at] * 0x1000000u + bytes[at + 1] * 0x10000u + bytes[at + 2] * 0x100u + bytes[at + 3]);
    default: i += 1; return {reference::kindOfByte(bytes[at]), {}};
    }
}

TEST(UTF16, ReaderTakesOneCharacterAndMovesAlsoOnFailure) {
    const unsigned char seconds[] = {0x00, 0x41, 0x80, 0x90, 0xA0, 0xB7, 0xBF, 0xC2, 0xFF};
    const unsigned char others[] = {0x00, 0x80, 0x90, 0xBE, 0xBF, 0xF0};
    for (const unsigned int b1 : reference::allBytes) {
        for (const unsigned char b2 : seconds) {
            for (const unsigned char b3 : others) {
                for (const unsigned char b4 : others) {
                    // The bytes after a byte that is no lead are not read: one such row is enough.
                    if ((b1 < 0xC0 || b1 > 0xF4) && b2 + b3 + b4 != 0) continue;
                    // Three bytes more, because a sequence of four bytes is read past the end.
                    const unsigned char bytes[] = {static_cast<unsigned char>(b1), b2, b3, b4, 0x80, 0x81, 0x82};
                    for (unsigned int length = 0; length <= 4; ++length) {
                        for (unsigned int start = 0; start <= length + 1; ++start) {
                            // Later start indices depend on fewer bytes: a part of the rows is enough.
                            if (start > 0 && b1 != 0x41) break;
                            unsigned int i = start;
                            unsigned int expectedIndex = start;
                            const Outcome expected = readOne(bytes, expectedIndex, length);
                            ASSERT_EQ(outcomeOf([&] { return UTF16::getUTF16(bytes, i, length); }), expected)
                                << b1 << " " << +b2 << " " << +b3 << " " << +b4 << " of " << length << " at " << start;
                            ASSERT_EQ(i, expectedIndex);
                        }
                    }
                }
            }
        }
    }
}

TEST(UTF16, ReaderReadsFourBytesPastTheEnd) {
    const unsigned char bytes[] = {0xF0, 0x9F, 0x98, 0x80};
    for (unsigned int length = 1; length <= 4; ++length) {
        unsigned int i = 0;
        EXPECT_EQ(UTF16::getUTF16(bytes, i, length), 0xD83DDE00u);
        EXPECT_EQ(i, 4u);
    }
}

TEST(UTF16, ReaderOfShortSequencesStaysInTheBuffer) {
    for (const unsigned char lead : {static_cast<unsigned char>(0xC2), static_cast<unsigned char>(0xE1)}) {
        const std::vector<unsigned char> bytes{lead};
        unsigned int i = 0;
        EXPECT_EQ(UTF16::getUTF16(bytes.data(), i, 1), 0xFDEFu);
        EXPECT_EQ(i, lead == 0xC2 ? 2u : 3u);
        EXPECT_EQ(UTF16::getUTF16(bytes.data(), i, 1), 0xFFFFu);
        EXPECT_EQ(i, lead == 0xC2 ? 2u : 3u);
    }
}

} // namespace
