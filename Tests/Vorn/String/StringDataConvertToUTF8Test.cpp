#include "Vorn/StringDataConversion.h"
#include "Vorn/StringDataScan.h"

#include "Reference/SampleTexts.h"
#include "Reference/TextConversion.h"
#include "Reference/TextScan.h"
#include "Support/AllocationCounter.h"
#include "Support/BufferInfo.h"
#include "Support/GuardedBuffer.h"
#include "Support/Outcome.h"
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

constexpr unsigned char UNWRITTEN = FRESH_BYTE;

TEST(StringDataConvertToUTF8, KnownTexts) {
    const struct {
        const char* name;
        StringDataSubCharset charset;
        Units units;
        Bytes bytes; // without the terminator
    } rows[] = {
        {"plain", STRING_DATA_ASCII, {0x61, 0x62, 0x7F}, {0x61, 0x62, 0x7F}},
        {"two bytes", STRING_DATA_UCS2, {0x00E9}, {0xC3, 0xA9}},
        {"three bytes", STRING_DATA_UCS2, {0xFFFD}, {0xEF, 0xBF, 0xBD}},
        {"edges", STRING_DATA_UCS2, {0x7F, 0x80, 0x7FF, 0x800}, {0x7F, 0xC2, 0x80, 0xDF, 0xBF, 0xE0, 0xA0, 0x80}},
        {"the terminator replaces the last byte of a final null", STRING_DATA_UCS2, {0x0041, 0x0000}, {0x41, 0xC0}},
        {"null with the charset UNICODE", STRING_DATA_UNICODE, {0x0000, 0x0041}, {0xC0, 0x80, 0x41}},
        {"127 leaves a zero byte at the end", STRING_DATA_UNICODE, {0x7F, 0x41, 0x7F}, {0x7F, 0x41, 0x7F, 0, 0}},
        {"first pair", STRING_DATA_UNICODE, {0xD800, 0xDC00}, {0xF0, 0x90, 0x80, 0x80}},
        {"last pair that is right", STRING_DATA_UNICODE, {0xD8BF, 0xDFFF}, {0xF0, 0xBF, 0xBF, 0xBF}},
        {"a malformed pair", STRING_DATA_UNICODE, {0xD8C0, 0xDC00}, {0xF0, 0xC0, 0x80, 0x80}},
        {"a malformed pair that carries into the lead",
         STRING_DATA_UNICODE,
         {0xD8FC, 0xDC00},
         {0xF1, 0xCF, 0x80, 0x80}},
        {"right again from 0xD900", STRING_DATA_UNICODE, {0xD900, 0xDC00}, {0xF1, 0x90, 0x80, 0x80}},
        {"a malformed pair of the last plane", STRING_DATA_UNICODE, {0xDBC0, 0xDC00}, {0xF3, 0xC0, 0x80, 0x80}},
        {"the last pair", STRING_DATA_UNICODE, {0xDBFF, 0xDFFD}, {0xF0, 0xCF, 0xBF, 0xBD}},
    };
    for (const auto& row : rows) {
        StringDataBufferInfo destInfo = infoOf(0);
        const GuardedBuffer<UTF16Char> source(row.units);
        const std::unique_ptr<unsigned char[]> dest(
            Vorn::stringDataConvertToUTF8(source.data(), infoOf(row.units.size()), row.charset, destInfo));
        EXPECT_EQ(Bytes(dest.get(), dest.get() + destInfo.m_length), row.bytes) << row.name;
        EXPECT_EQ(dest[row.bytes.size()], 0) << row.name;
    }
}

TEST(StringDataConvertToUTF8, PairsWithALowByteFromC0AreRefusedByTheScan) {
    for (unsigned int first = 0xD800; first <= 0xDBFF; ++first) {
        const Units pair{static_cast<UTF16Char>(first), 0xDC41};
        Bytes dest(4);
        ASSERT_EQ(Vorn::stringDataConvertCopyToUTF8(pair.data(), infoOf(2), STRING_DATA_UNICODE, dest.data(), 4), 4u);
        unsigned int i = 0;
        ASSERT_EQ(dest, reference::encoded(pair, i, true)) << first;
        unsigned int length = 4;
        if (first % 0x100 < 0xC0) {
            ASSERT_EQ(Vorn::stringDataScanBuffer(dest.data(), length), 3u) << first;
        } else {
            ASSERT_EQ(outcomeOf([&] { return Vorn::stringDataScanBuffer(dest.data(), length); }),
                      reference::refused("Unmatched first surrogate character!"))
                << first;
        }
    }
}

TEST(StringDataConvertToUTF8, NullBeforeAnotherCharacterExceedsTheLengthUnderUCS2) {
    const std::string message("j < destLength : destination buffer too short!");
    const std::string function("Vorn::stringDataConvertToUTF8FromUCS2");
    const std::string file("Source/Vorn/StringDataHelper");
    const UTF16Char text[] = {0x0041, 0x0000, 0x0042};
    StringDataBufferInfo destInfo = infoOf(77);
    const std::size_t blocks = liveAllocationCount();
    expectRaises<2>([&] { Vorn::stringDataConvertToUTF8(text, infoOf(3), STRING_DATA_UCS2, destInfo); }, message,
                    function, file);
    expectRaises<2>([&] { Vorn::stringDataConvertCreateUTF8(text, infoOf(3), STRING_DATA_UCS2, 100); }, message,
                    function, file);
    EXPECT_EQ(liveAllocationCount(), blocks);
    EXPECT_TRUE(isUntouched(destInfo, 77));

    unsigned char dest[] = {UNWRITTEN, UNWRITTEN, UNWRITTEN, UNWRITTEN, UNWRITTEN};
    expectRaises<2>([&] { Vorn::stringDataConvertCopyToUTF8(text, infoOf(3), STRING_DATA_UCS2, dest, 3); }, message,
                    function, file);
    EXPECT_EQ(Bytes(dest, dest + 5), (Bytes{0x41, 0xC0, 0x80, UNWRITTEN, UNWRITTEN}));
}

TEST(StringDataConvertToUTF8, ThreeBytesBehindNullsStayInTheNewBlock) {
    // The last character begins on the last byte that was counted. Its second byte gives way to the terminator, and its
    // third is outside the block: the address sanitizer reports it if it is written.
    const UTF16Char text[] = {0x0000, 0x0000, 0x20AC};
    const Bytes expected{0xC0, 0x80, 0xC0, 0x80, 0xE2, 0x00};
    StringDataBufferInfo destInfo = infoOf(0);
    const std::unique_ptr<unsigned char[]> dest(
        Vorn::stringDataConvertToUTF8(text, infoOf(3), STRING_DATA_UCS2, destInfo));
    EXPECT_EQ(destInfo.m_length, 5u);
    EXPECT_EQ(lastAllocationSize(), 6u);
    EXPECT_EQ(Bytes(dest.get(), dest.get() + 6), expected);
    const std::unique_ptr<unsigned char[]> block(
        Vorn::stringDataConvertCreateUTF8(text, infoOf(3), STRING_DATA_UCS2, 0));
    EXPECT_EQ(lastAllocationSize(), 6u);
    EXPECT_EQ(Bytes(block.get(), block.get() + 6), expected);
}

TEST(StringDataConvertToUTF8, CopyAsksForTheSizeAndWritesNoTerminator) {
    const Units text = reference::toUTF16({0x61, 0xE9, 0x20AC, 0x1F600});
    Bytes dest(11, UNWRITTEN);
    for (unsigned int destLength = 0; destLength < 10; ++destLength) {
        EXPECT_EQ(Vorn::stringDataConvertCopyToUTF8(text.data(), infoOf(text.size()), STRING_DATA_UNICODE, dest.data(),
                                                    destLength),
                  10u);
        EXPECT_EQ(dest, Bytes(11, UNWRITTEN));
    }
    EXPECT_EQ(Vorn::stringDataConvertCopyToUTF8(text.data(), infoOf(text.size()), STRING_DATA_UNICODE, nullptr, 0),
              10u);
    EXPECT_EQ(Vorn::stringDataConvertCopyToUTF8(text.data(), infoOf(text.size()), STRING_DATA_UNICODE, dest.data(), 10),
              10u);
    EXPECT_EQ(dest, (Bytes{0x61, 0xC3, 0xA9, 0xE2, 0x82, 0xAC, 0xF0, 0x9F, 0x98, 0x80, UNWRITTEN}));
}

TEST(StringDataConvertToUTF8, CreateAllocatesTheBuffer) {
    const UTF16Char text[] = {0x61, 0xE9};
    const struct {
        unsigned int capacity;
        Bytes bytes;
    } rows[] = {
        {0, {0x61, 0xC3, 0xA9, 0}},    {2, {0x61, 0xC3, 0xA9, 0}},          {3, {0x61, 0xC3, 0xA9, 0}},
        {4, {0x61, 0xC3, 0xA9, 0, 0}}, {6, {0x61, 0xC3, 0xA9, 0, 0, 0, 0}},
    };
    for (const auto& row : rows) {
        const std::unique_ptr<unsigned char[]> dest(
            Vorn::stringDataConvertCreateUTF8(text, infoOf(2), STRING_DATA_UCS2, row.capacity));
        EXPECT_EQ(lastAllocationSize(), row.bytes.size());
        EXPECT_EQ(Bytes(dest.get(), dest.get() + row.bytes.size()), row.bytes) << row.capacity;
    }
}

TEST(StringDataConvertToUTF8, FailuresNameTheOuterFunction) {
    const std::string null("sourceBuffer[i] : null detected in a buffer marked as ASCII only! This is not allowed!");
    const std::string nonASCII("sourceBuffer[i] <= 127 : non-ASCII character detected in UTF-16 buffer! This buffer is "
                               "marked as ASCII only!");
    const std::string file("Source/Vorn/StringDataHelper");
    const UTF16Char texts[][3] = {{0x61, 0x00, 0x80}, {0x61, 0x161, 0x00}};
    for (const bool first : {true, false}) {
        const UTF16Char* const text = texts[first ? 0 : 1];
        const std::string& message = first ? null : nonASCII;
        StringDataBufferInfo destInfo = infoOf(0);
        unsigned char dest[] = {UNWRITTEN, UNWRITTEN, UNWRITTEN};
        std::string string;
        expectRaises<2>([&] { Vorn::stringDataConvertToUTF8(text, infoOf(3), STRING_DATA_ASCII, destInfo); }, message,
                        "Vorn::stringDataConvertToUTF8", file);
        expectRaises<2>([&] { Vorn::stringDataConvertCreateUTF8(text, infoOf(3), STRING_DATA_ASCII, 9); }, message,
                        "Vorn::stringDataConvertCreateUTF8", file);
        expectRaises<2>([&] { Vorn::stringDataConvertCopyToUTF8(text, infoOf(3), STRING_DATA_ASCII, dest, 3); },
                        message, "Vorn::stringDataConvertCopyToUTF8", file);
        EXPECT_EQ(Bytes(dest, dest + 3), (Bytes{0x61, UNWRITTEN, UNWRITTEN}));
        expectRaises<2>([&] { Vorn::stringDataConvertToUTF8(string, text, infoOf(3), STRING_DATA_ASCII); }, message,
                        "Vorn::stringDataConvertToUTF8", file);
        EXPECT_EQ(string, "a") << "what stood before the fault was appended, and nothing else";
    }
}

// The two inner loops, with the text in memory of its own size and writable memory behind the destination.

using InnerLoop = void (*)(unsigned char*, unsigned int, const UTF16Char*, unsigned int);

void checkInnerLoop(InnerLoop loop, bool pairs, const Units& text, unsigned int length, unsigned int destLength) {
    Bytes expected(destLength + 8, UNWRITTEN);
    Bytes dest = expected;
    const Outcome outcome = reference::fill(pairs, expected, destLength, text, length);
    const GuardedBuffer<UTF16Char> source(text);
    EXPECT_EQ(failureOf([&] { loop(dest.data(), destLength, source.data(), length); }), outcome.failure)
        << reference::shown(text);
    EXPECT_EQ(dest, expected) << reference::shown(text);
}

TEST(StringDataConvertToUTF8, InnerLoopsRefuseNoUnit) {
    for (const unsigned int c : reference::allUnits) {
        const auto unit = static_cast<UTF16Char>(c);
        unsigned char dest[4] = {UNWRITTEN, UNWRITTEN, UNWRITTEN, UNWRITTEN};
        Bytes expected;
        reference::appendUTF8(expected, c);
        expected.resize(4, UNWRITTEN);
        Vorn::stringDataConvertToUTF8FromUCS2(dest, 4, &unit, 1);
        ASSERT_EQ(Bytes(dest, dest + 4), expected) << c;
        if (reference::isFirstSurrogate(c)) continue;
        std::fill_n(dest, 4, UNWRITTEN);
        Vorn::stringDataConvertToUTF8FromUTF16(dest, 4, &unit, 1);
        ASSERT_EQ(Bytes(dest, dest + 4), expected) << c;
    }
}

TEST(StringDataConvertToUTF8, InnerLoopTakesAnySecondUnitBehindAFirstSurrogate) {
    for (unsigned int first = 0xD800; first <= 0xDBFF; first += 7) {
        for (unsigned int second = 0; second <= 0xFFFF; second += 641) {
            checkInnerLoop(Vorn::stringDataConvertToUTF8FromUTF16, true,
                           {static_cast<UTF16Char>(first), static_cast<UTF16Char>(second)}, 2, 4);
        }
    }
    // The first surrogate is the last unit: the unit behind the text is taken with it.
    checkInnerLoop(Vorn::stringDataConvertToUTF8FromUTF16, true, {0x41, 0xD83D, 0xDE00}, 2, 5);
}

TEST(StringDataConvertToUTF8, InnerLoopsTestTheCapacityAtTheStartOfACharacterOnly) {
    const Units texts[] = {
        {0x41}, {0}, {0xE9}, {0x20AC}, {0xD83D, 0xDE00}, {0x41, 0xE9, 0x20AC, 0xD83D, 0xDE00, 0x42, 0}};
    for (const Units& text : texts) {
        const auto length = static_cast<unsigned int>(text.size());
        for (unsigned int destLength = 0; destLength <= 16; ++destLength) {
            checkInnerLoop(Vorn::stringDataConvertToUTF8FromUCS2, false, text, length, destLength);
            checkInnerLoop(Vorn::stringDataConvertToUTF8FromUTF16, true, text, length, destLength);
        }
    }
    checkInnerLoop(Vorn::stringDataConvertToUTF8FromUCS2, false, {}, 0, 0);
    checkInnerLoop(Vorn::stringDataConvertToUTF8FromUTF16, true, {}, 0, 0);

    unsigned char dest[] = {UNWRITTEN, UNWRITTEN};
    const UTF16Char text[] = {0x41, 0x42};
    expectRaises<2>([&] { Vorn::stringDataConvertToUTF8FromUCS2(dest, 1, text, 2); },
                    "j < destLength : destination buffer too short!", "Vorn::stringDataConvertToUTF8FromUCS2",
                    "Source/Vorn/StringDataHelper");
    expectRaises<2>([&] { Vorn::stringDataConvertToUTF8FromUTF16(dest, 1, text, 2); },
                    "j < destLength : destination buffer too short!", "Vorn::stringDataConvertToUTF8FromUTF16",
                    "Source/Vorn/StringDataHelper");
    EXPECT_EQ(dest[1], UNWRITTEN);
}

TEST(StringDataConvertToUTF8, InnerLoopsOnRandomTextsWithLittleCapacity) {
    for (const Codes& codes : reference::randomTexts({5, 8, 40})) {
        const Units text = reference::toUTF16(codes);
        const auto length = static_cast<unsigned int>(text.size());
        const auto full = static_cast<unsigned int>(reference::toUTF8(codes).size());
        for (unsigned int destLength = full > 20 ? full - 20 : 0; destLength <= full + 1; ++destLength) {
            checkInnerLoop(Vorn::stringDataConvertToUTF8FromUCS2, false, text, length, destLength);
            checkInnerLoop(Vorn::stringDataConvertToUTF8FromUTF16, true, text, length, destLength);
        }
    }
}

// The standard string.

bool replacesString(const Units& text, int charset) {
    const auto length = static_cast<unsigned int>(text.size());
    Units longer = text;
    longer.push_back(0);
    const GuardedBuffer<UTF16Char> source(longer);
    std::string expected;
    std::string dest("what stood here before");
    const Outcome expectedOutcome = reference::toStandardString(longer, length, charset, expected);
    const std::string failure = failureOf([&] {
        Vorn::stringDataConvertToUTF8(dest, source.data(), infoOf(length), static_cast<StringDataSubCharset>(charset));
    });
    EXPECT_EQ(failure, expectedOutcome.failure) << "charset " << charset << ": " << reference::shown(text);
    if (!failure.empty()) return failure == expectedOutcome.failure;
    EXPECT_EQ(dest, expected) << "charset " << charset << ": " << reference::shown(text);
    return expectedOutcome.failure.empty() && dest == expected;
}

TEST(StringDataConvertToUTF8, StandardStringIsClearedWhateverComesNext) {
    for (const int charset : {1, 2, 3}) {
        std::string dest("what stood here before");
        Vorn::stringDataConvertToUTF8(dest, nullptr, infoOf(0), static_cast<StringDataSubCharset>(charset));
        EXPECT_EQ(dest, "");
    }
    const UTF16Char text[] = {0x41, 0xFFFF};
    for (const int charset : {2, 3}) {
        std::string dest("what stood here before");
        EXPECT_THROW(Vorn::stringDataConvertToUTF8(dest, text, infoOf(2), static_cast<StringDataSubCharset>(charset)),
                     Vorn::Exception<2>);
        EXPECT_EQ(dest, "") << "measuring comes before the first byte";
    }
}

TEST(StringDataConvertToUTF8, StandardStringTakesWhatTheOtherFormsCannot) {
    const struct {
        const char* name;
        StringDataSubCharset charset;
        Units units;
        std::string text;
    } rows[] = {
        {"null in the midst under UCS-2", STRING_DATA_UCS2, {0x41, 0, 0x42}, "\x41\xC0\x80\x42"},
        {"null at the end under UCS-2", STRING_DATA_UCS2, {0x41, 0}, "\x41\xC0\x80"},
        {"127 with the charset UNICODE", STRING_DATA_UNICODE, {0x7F, 0xD83D, 0xDE00}, "\x7F\xF0\x9F\x98\x80"},
        {"a malformed pair", STRING_DATA_UNICODE, {0xD8C0, 0xDC00}, "\xF0\xC0\x80\x80"},
    };
    for (const auto& row : rows) {
        std::string dest;
        Vorn::stringDataConvertToUTF8(dest, row.units.data(), infoOf(row.units.size()), row.charset);
        EXPECT_EQ(dest, row.text) << row.name;
        EXPECT_TRUE(replacesString(row.units, row.charset)) << row.name;
    }
}

TEST(StringDataConvertToUTF8, StandardStringReservesTheCountedLength) {
    const Units text(50, 0x7F);
    std::string dest;
    Vorn::stringDataConvertToUTF8(dest, text.data(), infoOf(text.size()), STRING_DATA_UNICODE);
    EXPECT_EQ(dest.size(), 50u);
    EXPECT_GE(dest.capacity(), 100u);

    for (const Codes& codes : reference::randomTexts({100})) {
        if (reference::holds(codes, 0)) continue;
        const Units units = reference::toUTF16(codes);
        std::string once;
        EXPECT_EQ(allocationsDuring([&] {
                      Vorn::stringDataConvertToUTF8(once, units.data(), infoOf(units.size()),
                                                    reference::charsetOf(codes));
                  }),
                  1u);
    }
}

TEST(StringDataConvertToUTF8, StandardStringOfRandomAndDamagedTexts) {
    for (const Codes& codes : reference::randomTexts({0, 1, 2, 9, 64, 200, 3000})) {
        const Units units = reference::toUTF16(codes);
        for (const int charset : {1, 2, 3, 0}) ASSERT_TRUE(replacesString(units, charset));
    }
    for (const Codes& codes : reference::randomTexts({12})) {
        for (const Units& text : reference::damaged(reference::toUTF16(codes), reference::badUnits)) {
            for (const int charset : {1, 2, 3}) ASSERT_TRUE(replacesString(text, charset));
        }
    }
}

} // namespace
