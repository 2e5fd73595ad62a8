#include "Vorn/String/UTF32.h"

#include "Vorn/String/Unicode.h"

#include "Reference/CodePoints.h"
#include "Support/Effort.h"
#include "Support/ExactBuffer.h"
#include "Support/Outcome.h"
#include "Support/Report.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using Vorn::UTF16Char;
using Vorn::UTF32;

static_assert(std::is_empty_v<UTF32>);
static_assert(std::is_base_of_v<UTF32, Vorn::Unicode>);
static_assert(std::is_same_v<Vorn::UTF32Char, unsigned int>);
static_assert(std::is_same_v<decltype(UTF32::getUTF32CharForUCS2(UTF16Char())), unsigned int>);
static_assert(std::is_same_v<decltype(UTF32::getUTF32Char(UTF16Char())), unsigned int>);
static_assert(std::is_same_v<decltype(UTF32::getUTF32Char(UTF16Char(), UTF16Char())), unsigned int>);
static_assert(std::is_same_v<decltype(UTF32::getUTF32CharForUTF16(0u)), unsigned int>);
static_assert(std::is_same_v<decltype(UTF32::getUTF32Char(static_cast<unsigned char>(0))), unsigned int>);
static_assert(std::is_same_v<decltype(UTF32::getUTF32Char(0, 0, 0)), unsigned int>);
static_assert(std::is_same_v<decltype(UTF32::getUTF32Char(0, 0, 0, 0)), unsigned int>);
static_assert(std::is_same_v<decltype(UTF32::getUTF32CharForUTF8(0u)), unsigned int>);

const std::string FUNCTION("Vorn::UTF32::getUTF32Char");
const std::string FILE_TEXT("Include/Vorn/String/UTF32");

const Outcome BAD_FIRST = raised(2, "(first & 0xFC00) == 0xD800 : invalid first surrogate!", FUNCTION, FILE_TEXT);
const Outcome BAD_SECOND = raised(2, "(second & 0xFC00) == 0xDC00 : invalid second surrogate!", FUNCTION, FILE_TEXT);
const Outcome BAD_LEAD2 =
    raised(2, "(lead & 0xE0) == 0xC0 : Invalid lead byte in 2-byte UTF-8 sequence", FUNCTION, FILE_TEXT);
const Outcome BAD_TRAIL2 =
    raised(2, "(trail & 0xC0) == 0x80 : Invalid trail byte in 2-byte UTF-8 sequence", FUNCTION, FILE_TEXT);
const Outcome BAD_3_BYTES = raised(2, "(seq & 0x00F0C0C0) == 0x00E08080 : Invalid 3-byte UTF-8 sequence!",
                                   "Vorn::UTF8::invalid3ByteUnicode", "Include/Vorn/String/UTF8");
const Outcome BAD_4_BYTES = raised(2, "(seq & 0xF8C0C0C0) == 0xF0808080 : Invalid 4-byte UTF-8 sequence!",
                                   "Vorn::UTF8::invalid4ByteUnicode", "Include/Vorn/String/UTF8");

Outcome codeOf2Bytes(unsigned int lead, unsigned int trail) {
    if (!reference::within(lead, 0xC0, 0xDF)) return BAD_LEAD2;
    if (!reference::isTrailByte(trail)) return BAD_TRAIL2;
    return {reference::codeOfSequence(lead * 0x100 + trail, 2), {}};
}

Outcome codeOf3Bytes(unsigned int b1, unsigned int b2, unsigned int b3) {
    const unsigned int seq = b1 * 0x10000 + b2 * 0x100 + b3;
    if (!reference::hasPattern(seq, 3)) return BAD_3_BYTES;
    return {reference::isInvalid3Bytes(seq) ? 0xFDEF : reference::codeOfSequence(seq, 3), {}};
}

Outcome codeOf4Bytes(unsigned int b1, unsigned int b2, unsigned int b3, unsigned int b4) {
    const unsigned int seq = b1 * 0x1000000 + b2 * 0x10000 + b3 * 0x100 + b4;
    if (!reference::hasPattern(seq, 4)) return BAD_4_BYTES;
    return {reference::isInvalid4Bytes(seq) ? 0xFDEF : reference::codeOfSequence(seq, 4), {}};
}

Outcome codeOfPair(unsigned int first, unsigned int second) {
    if (!reference::isFirstSurrogate(first)) return BAD_FIRST;
    if (!reference::isSecondSurrogate(second)) return BAD_SECOND;
    const unsigned int code = reference::codeOfPair(first, second);
    return {reference::isNonCharacter(code) ? 0xFDEF : code, {}};
}

TEST(UTF32, CodeOfEveryUnit) {
    for (const unsigned int c : reference::allUnits) {
        const auto unit = static_cast<UTF16Char>(c);
        ASSERT_EQ(UTF32::getUTF32Char(unit), reference::kindOfUnit(c)) << c;
        ASSERT_EQ(UTF32::getUTF32CharForUCS2(unit), reference::isCharacter(c) ? c : 0xFDEF) << c;
    }
}

TEST(UTF32, CodeOfEverySurrogatePair) {
    for (unsigned int first = 0xD800; first <= 0xDBFF; ++first) {
        for (unsigned int second = 0xDC00; second <= 0xDFFF; ++second) {
            const unsigned int code = reference::codeOfPair(first, second);
            const unsigned int expected = reference::isNonCharacter(code) ? 0xFDEF : code;
            if (UTF32::getUTF32Char(static_cast<UTF16Char>(first), static_cast<UTF16Char>(second)) == expected &&
                UTF32::getUTF32CharForUTF16(first * 0x10000 + second) == expected) {
                continue;
            }
            FAIL() << std::hex << first << " " << second;
        }
    }
    EXPECT_EQ(UTF32::getUTF32Char(UTF16Char(0xDBFF), UTF16Char(0xDFFD)), 0x10FFFDu);
    EXPECT_EQ(UTF32::getUTF32Char(UTF16Char(0xDBFF), UTF16Char(0xDFFE)), 0xFDEFu);
    EXPECT_EQ(UTF32::getUTF32Char(UTF16Char(0xD83F), UTF16Char(0xDFFF)), 0xFDEFu);
}

TEST(UTF32, SurrogatesAreCheckedInOrder) {
    const unsigned int units[] = {0, 0x41, 0xD7FF, 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xE000, 0xFFFF};
    for (const unsigned int first : units) {
        for (const unsigned int second : units) {
            const Outcome expected = codeOfPair(first, second);
            EXPECT_EQ(outcomeOf([&] {
                          return UTF32::getUTF32Char(static_cast<UTF16Char>(first), static_cast<UTF16Char>(second));
                      }),
                      expected)
                << first << " " << second;
            if (expected.failure.empty()) continue;
            expectRaises<2>([&] { UTF32::getUTF32CharForUTF16(first * 0x10000 + second); },
                            "(pair & 0xFC00FC00) == 0xD800DC00 : invalid surrogate pair!",
                            "Vorn::UTF32::getUTF32CharForUTF16", FILE_TEXT);
        }
    }
}

TEST(UTF32, KindOfEveryByte) {
    for (const unsigned int byte : reference::allBytes) {
        ASSERT_EQ(UTF32::getUTF32Char(static_cast<unsigned char>(byte)), reference::kindOfByte(byte)) << byte;
    }
    EXPECT_EQ(UTF32::getUTF32Char(static_cast<unsigned char>(0xC0)), 0xFDD2u);
    EXPECT_EQ(UTF32::getUTF32Char(static_cast<unsigned char>(0xC1)), 0xFDD2u);
    EXPECT_EQ(UTF32::getUTF32Char(static_cast<unsigned char>(0xF4)), 0xFDD4u);
    EXPECT_EQ(UTF32::getUTF32Char(static_cast<unsigned char>(0xF5)), 0xFDEFu);
}

TEST(UTF32, CodeOfEveryTwoBytes) {
    for (const unsigned int lead : reference::allBytes) {
        const unsigned int step = reference::within(lead, 0xC0, 0xDF) ? 1 : rowStep();
        for (unsigned int trail = lead % step; trail <= 0xFF; trail += step) {
            ASSERT_EQ(outcomeOf([&] {
                          return UTF32::getUTF32Char(static_cast<unsigned char>(lead),
                                                     static_cast<unsigned char>(trail));
                      }),
                      codeOf2Bytes(lead, trail))
                << lead << " " << trail;
        }
    }
    EXPECT_EQ(UTF32::getUTF32Char(static_cast<unsigned char>(0xC0), static_cast<unsigned char>(0x80)), 0u);
}

TEST(UTF32, CodeOfThreeBytes) {
    for (const unsigned int code : reference::allUnits) {
        const unsigned int seq = reference::sequence(code, 3);
        ASSERT_EQ(UTF32::getUTF32Char(static_cast<unsigned char>(seq >> 16), static_cast<unsigned char>(seq >> 8),
                                      static_cast<unsigned char>(seq)),
                  reference::isSurrogate(code) || reference::isNonCharacter(code) ? 0xFDEF : code);
    }
    for (const unsigned char b1 : reference::selectedBytes) {
        for (const unsigned char b2 : reference::selectedBytes) {
            for (const unsigned char b3 : reference::selectedBytes) {
                ASSERT_EQ(outcomeOf([&] { return UTF32::getUTF32Char(b1, b2, b3); }), codeOf3Bytes(b1, b2, b3))
                    << +b1 << " " << +b2 << " " << +b3;
            }
        }
    }
}

TEST(UTF32, CodeOfEveryFourBytes) {
    for (const unsigned int code : reference::Interval(0, 0x1FFFFF)) {
        const unsigned int seq = reference::sequence(code, 4);
        const bool invalid = code > 0x10FFFD || reference::isSurrogate(code) || reference::isNonCharacter(code);
        ASSERT_EQ(UTF32::getUTF32Char(static_cast<unsigned char>(seq >> 24), static_cast<unsigned char>(seq >> 16),
                                      static_cast<unsigned char>(seq >> 8), static_cast<unsigned char>(seq)),
                  invalid ? 0xFDEF : code);
    }
}

TEST(UTF32, CodeOfFourBytesOfEveryKind) {
    const unsigned char firsts[] = {0x00, 0x80, 0xEF, 0xF0, 0xF4, 0xF5, 0xF7, 0xF8, 0xFF};
    const unsigned char others[] = {0x00, 0x7F, 0x80, 0x8F, 0x90, 0xBD, 0xBE, 0xBF, 0xC0, 0xFF};
    for (const unsigned char b1 : firsts) {
        for (const unsigned char b2 : others) {
            for (const unsigned char b3 : others) {
                for (const unsigned char b4 : others) {
                    ASSERT_EQ(outcomeOf([&] { return UTF32::getUTF32Char(b1, b2, b3, b4); }),
                              codeOf4Bytes(b1, b2, b3, b4))
                        << +b1 << " " << +b2 << " " << +b3 << " " << +b4;
                }
            }
        }
    }
}

Outcome codeForUTF8(unsigned int seq) {
    if (reference::hasPattern(seq, 4)) {
        if (reference::isInvalid4Bytes(seq)) return {0xFDEF, {}};
        return {reference::codeOfSequence(seq, 4) + (seq < 0xF0908080 ? 0xFF000000 : 0), {}};
    }
    if (reference::hasPattern(seq, 3)) {
        if (reference::isInvalid3Bytes(seq)) return {0xFDEF, {}};
        return {reference::codeOfSequence(seq, 3) + (seq < 0xE08480 ? 0xFF000000 : 0), {}};
    }
    if (reference::hasPattern(seq, 2)) {
        return {reference::codeOfSequence(seq, 2) + (seq < 0xC280 ? 0xFF000000 : 0), {}};
    }
    if (seq < 0x80) return {seq, {}};
    return raised(2, "seq < 0x00000080 : invalid UTF-8 sequence!", "Vorn::UTF32::getUTF32CharForUTF8",
                  "Source/Vorn/UTF32");
}

TEST(UTF32, CodeOfPackedWords) {
    // Most words have no pattern: a part of them is tested, since all of them would take seconds.
    std::vector<unsigned int> words;
    unsigned int refused = 0;
    for (const unsigned int word : reference::packedWords()) {
        const bool known = word < 0x80 || reference::hasPattern(word, 2) || reference::hasPattern(word, 3) ||
                           reference::hasPattern(word, 4);
        if (known || ++refused % (32 * rowStep()) == 0) words.push_back(word);
    }
    expectSameOver(
        words, [](unsigned int seq) { return outcomeOf([&] { return UTF32::getUTF32CharForUTF8(seq); }); },
        codeForUTF8);
    const struct {
        const char* name;
        unsigned int seq;
        unsigned int code;
    } rows[] = {
        {"zero", 0, 0},
        {"last of one byte", 0x7F, 0x7F},
        {"overlong zero is marked", 0xC080, 0xFF000000},
        {"last overlong two bytes", 0xC1BF, 0xFF00007F},
        {"first of two bytes", 0xC280, 0x80},
        {"last of two bytes", 0xDFBF, 0x7FF},
        {"overlong three bytes are marked below 0x100", 0xE083BF, 0xFF0000FF},
        {"overlong three bytes pass from 0x100", 0xE08480, 0x100},
        {"last overlong three bytes", 0xE09FBF, 0x7FF},
        {"first of three bytes", 0xE0A080, 0x800},
        {"surrogate", 0xEDA080, 0xFDEF},
        {"noncharacter", 0xEFB790, 0xFDEF},
        {"noncharacter FFFE", 0xEFBFBE, 0xFDEF},
        {"overlong four bytes are marked", 0xF0808080, 0xFF000000},
        {"overlong four bytes below a noncharacter", 0xF08FB78F, 0xFF00FDCF},
        {"overlong noncharacter", 0xF08FB790, 0xFDEF},
        {"overlong surrogate", 0xF08DA080, 0xFDEF},
        {"first of four bytes", 0xF0908080, 0x10000},
        {"last character", 0xF48FBFBD, 0x10FFFD},
        {"noncharacter of the last plane", 0xF48FBFBE, 0xFDEF},
        {"behind Unicode", 0xF4908080, 0xFDEF},
    };
    for (const auto& row : rows) EXPECT_EQ(UTF32::getUTF32CharForUTF8(row.seq), row.code) << row.name;
    for (const unsigned int seq : {0x80u, 0xFFu, 0xC2u, 0xC0C0u, 0xE080u, 0xF8808080u, 0xFFFFFFFFu}) {
        expectRaises<2>([&] { UTF32::getUTF32CharForUTF8(seq); }, "seq < 0x00000080 : invalid UTF-8 sequence!",
                        "Vorn::UTF32::getUTF32CharForUTF8", "Source/Vorn/UTF32");
    }
}

Outcome readOne(const unsigned char* bytes, unsigned int& i, unsigned int length) {
    if (i >= length) return {0xFFFF, {}};
    const unsigned int at = i;
    const unsigned int kind = reference::kindOfByte(bytes[at]);
    i += kind == 0xFDD2 ? 2 : kind == 0xFDD3 ? 3 : kind == 0xFDD4 ? 4 : 1;
    if (i > length) return {0xFDEF, {}};
    switch (i - at) {
    case 2: return codeOf2Bytes(bytes[at], bytes[at + 1]);
    case 3: return codeOf3Bytes(bytes[at], bytes[at + 1], bytes[at + 2]);
    case 4: return codeOf4Bytes(bytes[at], bytes[at + 1], bytes[at + 2], bytes[at + 3]);
    default: return {kind, {}};
    }
}

TEST(UTF32, ByteReaderTakesOneCharacterAndMovesAlsoOnFailure) {
    const unsigned char seconds[] = {0x00, 0x41, 0x80, 0x90, 0xA0, 0xB7, 0xBF, 0xC2, 0xFF};
    const unsigned char others[] = {0x00, 0x80, 0x90, 0xBE, 0xBF, 0xF0};
    for (const unsigned int b1 : reference::allBytes) {
        for (const unsigned char b2 : seconds) {
            for (const unsigned char b3 : others) {
                for (const unsigned char b4 : others) {
                    // The bytes after a byte that is no lead are not read: one such row is enough.
                    if ((b1 < 0xC0 || b1 > 0xF4) && b2 + b3 + b4 != 0) continue;
                    const std::vector<unsigned char> bytes{static_cast<unsigned char>(b1), b2, b3, b4};
                    for (unsigned int length = 0; length <= 4; ++length) {
                        const ExactBuffer<unsigned char> block(
                            std::vector<unsigned char>(bytes.begin(), bytes.begin() + length));
                        for (unsigned int start = 0; start <= length + 1; ++start) {
                            // Later start indices depend on fewer bytes: a part of the rows is enough.
                            if (start > 0 && b1 != 0x41) break;
                            unsigned int i = start;
                            unsigned int expectedIndex = start;
                            const Outcome expected = readOne(block.data(), expectedIndex, length);
                            ASSERT_EQ(outcomeOf([&] { return UTF32::getUTF32Char(block.data(), i, length); }), expected)
                                << b1 << " " << +b2 << " " << +b3 << " " << +b4 << " of " << length << " at " << start;
                            ASSERT_EQ(i, expectedIndex);
                        }
                    }
                }
            }
        }
    }
}

TEST(UTF32, ByteReaderOfATruncatedSequenceStandsBeyondTheEnd) {
    const unsigned char bytes[] = {0xC2};
    unsigned int i = 0;
    EXPECT_EQ(UTF32::getUTF32Char(bytes, i, 1), 0xFDEFu);
    EXPECT_EQ(i, 2u);
    EXPECT_EQ(UTF32::getUTF32Char(bytes, i, 1), 0xFFFFu);
    EXPECT_EQ(i, 2u);
}

TEST(UTF32, ByteReaderWalksATextOfAllSizes) {
    const unsigned char text[] = {0x61, 0xC3, 0xA9, 0xE2, 0x82, 0xAC, 0xF0, 0x9F, 0x98, 0x80, 0xC0, 0x80, 0x80, 0xF5};
    const unsigned int codes[] = {0x61, 0xE9, 0x20AC, 0x1F600, 0, 0xFDD0, 0xFDEF, 0xFFFF, 0xFFFF};
    unsigned int i = 0;
    for (const unsigned int code : codes) EXPECT_EQ(UTF32::getUTF32Char(text, i, sizeof text), code);
    EXPECT_EQ(i, sizeof text);
}

Outcome readOneUnit(const UTF16Char* units, unsigned int& i, unsigned int length) {
    if (i >= length) return {0xFFFF, {}};
    const unsigned int kind = reference::kindOfUnit(units[i]);
    ++i;
    if (kind == 0xFDD1) {
        if (i < length && !reference::isSecondSurrogate(units[i])) return BAD_SECOND;
        ++i;
        return {0xFDEF, {}};
    }
    return {kind == 0xFDD2 ? 0xFDEF : kind, {}};
}

TEST(UTF32, WideReaderTakesOneCharacterAndMovesAlsoOnFailure) {
    const UTF16Char others[] = {0, 0x41, 0xD7FF, 0xD800, 0xDBFF, 0xDC00, 0xDFFE, 0xDFFF, 0xE000, 0xFFFF};
    for (const unsigned int c : reference::allUnits) {
        const auto unit = static_cast<UTF16Char>(c);
        for (const UTF16Char other : others) {
            // The next unit is read only after a first surrogate, in the same way for all of them.
            if (other != 0x41 && !(reference::isFirstSurrogate(c) && c % 0x40 == 0)) continue;
            for (unsigned int length = 0; length <= 2; ++length) {
                const UTF16Char units[] = {unit, other};
                const ExactBuffer<UTF16Char> block(std::vector<UTF16Char>(units, units + length));
                for (unsigned int start = 0; start <= length + 1; ++start) {
                    unsigned int i = start;
                    unsigned int expectedIndex = start;
                    const Outcome expected = readOneUnit(block.data(), expectedIndex, length);
                    ASSERT_EQ(outcomeOf([&] { return UTF32::getUTF32Char(block.data(), i, length); }), expected)
                        << c << " " << +other << " of " << length << " at " << start;
                    ASSERT_EQ(i, expectedIndex);
                }
            }
        }
    }
}

TEST(UTF32, WideReaderThrowsThePairAway) {
    const UTF16Char pair[] = {0xD83D, 0xDE00};
    unsigned int i = 0;
    EXPECT_EQ(UTF32::getUTF32Char(pair, i, 2), 0xFDEFu);
    EXPECT_EQ(i, 2u);
    EXPECT_EQ(UTF32::getUTF32Char(pair, i, 2), 0xFFFFu);
    EXPECT_EQ(i, 2u);

    i = 0;
    EXPECT_EQ(UTF32::getUTF32Char(pair, i, 1), 0xFDEFu);
    EXPECT_EQ(i, 2u);

    const UTF16Char broken[] = {0xD83D, 0x41};
    i = 0;
    expectRaises<2>([&] { UTF32::getUTF32Char(broken, i, 2); },
                    "(second & 0xFC00) == 0xDC00 : invalid second surrogate!", FUNCTION, FILE_TEXT);
    EXPECT_EQ(i, 1u);
}

TEST(Unicode, HasAllOperationsUnderOneName) {
    using Vorn::Unicode;
    EXPECT_EQ(Unicode::countUTF8(0x20ACu), 3u);
    EXPECT_EQ(Unicode::getUTF8(0x20ACu), 0xE282ACu);
    EXPECT_EQ(Unicode::isSurrogate(UTF16Char(0xD800)), 1u);
    EXPECT_EQ(Unicode::getUCS2Char(0x40u), 0x41u);
    EXPECT_EQ(Unicode::getUTF16(0x1F600u), 0xD83DDE00u);
    EXPECT_EQ(Unicode::getUTF32Char(UTF16Char(0xD83D), UTF16Char(0xDE00)), 0x1F600u);
}

} // namespace
