#include "Vorn/StringDataScan.h"

#include "Reference/SampleTexts.h"
#include "Reference/TextScan.h"
#include "Support/AllocationCounter.h"
#include "Support/ExactBuffer.h"
#include "Support/GuardedBuffer.h"
#include "Support/Outcome.h"
#include "Support/Report.h"

#include <gtest/gtest.h>

namespace {

using reference::Bytes;
using reference::Codes;
using reference::NPOS;
using reference::ScanResult;
using reference::Units;
using Vorn::stringDataScanBuffer;
using Vorn::UTF16Char;

static_assert(VornPrivate::SCAN_HAS_NULL == 4);

template <class Unit>
ScanResult scanned(const Unit* buffer, unsigned int length) {
    ScanResult result;
    result.length = length;
    result.outcome = outcomeOf([&] { return stringDataScanBuffer(buffer, result.length); });
    return result;
}

// Compares both forms with the reference, on memory that ends where the scan must stop reading.
template <class Unit>
bool scansAsTold(const std::vector<Unit>& text) {
    const auto length = static_cast<unsigned int>(text.size());
    const GuardedBuffer<Unit> counted(text);
    const ScanResult expectedCounted = reference::scan(text, length);
    const ScanResult actualCounted = scanned(counted.data(), length);
    EXPECT_EQ(actualCounted, expectedCounted) << "counted: " << reference::shown(text);

    std::vector<Unit> upToTheTerminator(text.begin(), std::find(text.begin(), text.end(), Unit(0)));
    upToTheTerminator.push_back(Unit(0));
    const GuardedBuffer<Unit> terminated(upToTheTerminator);
    const ScanResult expectedTerminated = reference::scan(upToTheTerminator, NPOS);
    const ScanResult actualTerminated = scanned(terminated.data(), NPOS);
    EXPECT_EQ(actualTerminated, expectedTerminated) << "terminated: " << reference::shown(text);
    return actualCounted == expectedCounted && actualTerminated == expectedTerminated;
}

const char* const NO_NULL = "ASCII null detected! This implementation does not support ASCII null, please use the "
                            "sequence 0xC0 0x80 to represent null.";
const char* const TRAIL = "Unmatched trail UTF-8 byte detected!";
const char* const INVALID = "Invalid character!";
const char* const LEAD2 = "Unmatched lead UTF-8 byte for a 2-byte sequence!";
const char* const LEAD3 = "Unmatched lead UTF-8 byte for a 3-byte sequence!";
const char* const OVERLONG2 = "Invalid overlong 2-byte sequence!";
const char* const OVERLONG3 = "Invalid overlong 3-byte sequence!";
const char* const FIRST = "Unmatched first surrogate character!";
const char* const SECOND = "Unmatched second surrogate code!";
const char* const FFFE = "Invalid character with code ending in FFFE or FFFF!";

TEST(StringDataScan, NullBufferIsRefusedWhateverItsLength) {
    for (const unsigned int length : {0u, 1u, 100u, NPOS}) {
        unsigned int kept = length;
        expectRaises<4>([&] { stringDataScanBuffer(static_cast<const unsigned char*>(nullptr), kept); },
                        "Buffer is null!", "Vorn::stringDataScanBuffer", "Source/Vorn/StringDataHelper");
        expectRaises<4>([&] { stringDataScanBuffer(static_cast<const UTF16Char*>(nullptr), kept); }, "Buffer is null!",
                        "Vorn::stringDataScanBuffer", "Source/Vorn/StringDataHelper");
        EXPECT_EQ(kept, length);
    }
}

TEST(StringDataScan, FailureCarriesTheUnicodeCode) {
    const unsigned char bytes[] = {0x80};
    unsigned int length = 1;
    const Report report = reportOf<7>([&] { stringDataScanBuffer(bytes, length); });
    EXPECT_EQ(report.code, Vorn::E::UNICODE);
    EXPECT_EQ(report.type, "::Vorn::E::UNICODE");
    EXPECT_EQ(report.message, TRAIL);
    EXPECT_EQ(report.function, "stringDataBufferScan");
    EXPECT_EQ(report.file, "Source/Vorn/StringDataHelper");
    EXPECT_EQ(report.lineString, "__LINE__");
    EXPECT_GT(report.line, 0u);
}

TEST(StringDataScan, EmptyBufferIsASCIIInAllForms) {
    const unsigned char noByte[] = {0};
    const UTF16Char noUnit[] = {0};
    EXPECT_EQ(scanned(noByte, 0), (ScanResult{{1, {}}, 0}));
    EXPECT_EQ(scanned(noByte, NPOS), (ScanResult{{1, {}}, 0}));
    EXPECT_EQ(scanned(noUnit, 0), (ScanResult{{1, {}}, 0}));
    EXPECT_EQ(scanned(noUnit, NPOS), (ScanResult{{1, {}}, 0}));
    EXPECT_TRUE(scansAsTold(Bytes{}));
    EXPECT_TRUE(scansAsTold(Units{}));
}

TEST(StringDataScan, ResultsOfUTF8) {
    const struct {
        const char* name;
        Bytes bytes;
        unsigned int result;
    } rows[] = {
        {"letters", {0x61, 0x62, 0x63}, 1},
        {"lowest and highest of ASCII", {0x01, 0x7F}, 1},
        {"null", {0xC0, 0x80}, 6},
        {"null behind a letter", {0x61, 0xC0, 0x80}, 6},
        {"null and four bytes", {0xC0, 0x80, 0xF0, 0x90, 0x80, 0x80}, 7},
        {"first of two bytes", {0xC2, 0x80}, 2},
        {"last of two bytes", {0xDF, 0xBF}, 2},
        {"first of three bytes", {0xE0, 0xA0, 0x80}, 2},
        {"last before the surrogates", {0xED, 0x9F, 0xBF}, 2},
        {"first after the surrogates", {0xEE, 0x80, 0x80}, 2},
        {"last before the noncharacters", {0xEF, 0xB7, 0x8F}, 2},
        {"first behind the noncharacters", {0xEF, 0xB7, 0xB0}, 2},
        {"last of three bytes", {0xEF, 0xBF, 0xBD}, 2},
        {"first of four bytes", {0xF0, 0x90, 0x80, 0x80}, 3},
        {"last character", {0xF4, 0x8F, 0xBF, 0xBD}, 3},
        {"an overlong form of four bytes passes", {0xF0, 0x80, 0x80, 0x80}, 3},
        {"the last overlong form of four bytes passes", {0xF0, 0x8F, 0xBF, 0xBD}, 3},
        {"all sizes", {0x61, 0xC3, 0xA9, 0xE2, 0x82, 0xAC, 0xF0, 0x9F, 0x98, 0x80}, 3},
        {"the widest wins, at any position", {0xF0, 0x9F, 0x98, 0x80, 0xC3, 0xA9, 0x61}, 3},
    };
    for (const auto& row : rows) {
        const auto length = static_cast<unsigned int>(row.bytes.size());
        EXPECT_EQ(scanned(GuardedBuffer<unsigned char>(row.bytes).data(), length),
                  (ScanResult{{row.result, {}}, length}))
            << row.name;
        Bytes terminated = row.bytes;
        terminated.push_back(0);
        EXPECT_EQ(scanned(GuardedBuffer<unsigned char>(terminated).data(), NPOS),
                  (ScanResult{{row.result, {}}, length}))
            << row.name;
        EXPECT_TRUE(scansAsTold(row.bytes)) << row.name;
    }
}

TEST(StringDataScan, FailuresOfUTF8) {
    const struct {
        const char* name;
        Bytes bytes;
        const char* message;
    } rows[] = {
        {"first trail byte alone", {0x80}, TRAIL},
        {"last trail byte alone", {0xBF}, TRAIL},
        {"trail byte behind a whole character", {0xC3, 0xA9, 0x80}, TRAIL},
        {"a byte that leads nothing", {0xF5}, INVALID},
        {"the largest byte", {0xFF}, INVALID},
        {"lead of two alone", {0xC2}, LEAD2},
        {"lead of two before a letter", {0xC2, 0x41}, LEAD2},
        {"lead of two before a lead", {0xC2, 0xC2, 0x80}, LEAD2},
        {"a lead of two is matched before its value is looked at", {0xC0, 0x41}, LEAD2},
        {"overlong one", {0xC0, 0x81}, OVERLONG2},
        {"last overlong of two", {0xC1, 0xBF}, OVERLONG2},
        {"lead of three alone", {0xE1}, LEAD3},
        {"lead of three and one trail", {0xE1, 0x80}, LEAD3},
        {"lead of three before a letter", {0xE1, 0x41, 0x80}, LEAD3},
        {"lead of three, second trail missing", {0xE1, 0x80, 0x41}, LEAD3},
        {"overlong zero of three", {0xE0, 0x80, 0x80}, OVERLONG3},
        {"last overlong of three", {0xE0, 0x9F, 0xBF}, OVERLONG3},
        {"first surrogate", {0xED, 0xA0, 0x80}, INVALID},
        {"last surrogate", {0xED, 0xBF, 0xBF}, INVALID},
        {"first noncharacter", {0xEF, 0xB7, 0x90}, INVALID},
        {"last of the noncharacters' block", {0xEF, 0xB7, 0xAF}, INVALID},
        {"noncharacter FFFE", {0xEF, 0xBF, 0xBE}, INVALID},
        {"noncharacter FFFF", {0xEF, 0xBF, 0xBF}, INVALID},
        {"lead of four alone", {0xF0}, FIRST},
        {"lead of four and one trail", {0xF0, 0x90}, FIRST},
        {"lead of four and two trails", {0xF0, 0x90, 0x80}, FIRST},
        {"lead of four, first trail missing", {0xF0, 0x41, 0x80, 0x80}, FIRST},
        {"lead of four, second trail missing", {0xF0, 0x90, 0x41, 0x80}, FIRST},
        {"lead of four, third trail missing", {0xF0, 0x90, 0x80, 0x41}, FIRST},
        {"noncharacter of plane 1", {0xF0, 0x9F, 0xBF, 0xBE}, FFFE},
        {"noncharacter of the last plane", {0xF4, 0x8F, 0xBF, 0xBE}, FFFE},
        {"behind Unicode", {0xF4, 0x90, 0x80, 0x80}, FFFE},
        {"far behind Unicode", {0xF4, 0xBF, 0xBF, 0xBF}, FFFE},
        {"overlong surrogate of four", {0xF0, 0x8D, 0xA0, 0x80}, FFFE},
        {"overlong noncharacter of four", {0xF0, 0x8F, 0xB7, 0x90}, FFFE},
        {"overlong FFFE of four", {0xF0, 0x8F, 0xBF, 0xBE}, FFFE},
        {"the first failure is reported", {0x41, 0xFF, 0x80}, INVALID},
    };
    for (const auto& row : rows) {
        const auto length = static_cast<unsigned int>(row.bytes.size());
        const ScanResult expected{reference::refused(row.message), length};
        EXPECT_EQ(scanned(GuardedBuffer<unsigned char>(row.bytes).data(), length), expected) << row.name;
        Bytes terminated = row.bytes;
        terminated.push_back(0);
        EXPECT_EQ(scanned(GuardedBuffer<unsigned char>(terminated).data(), NPOS), (ScanResult{expected.outcome, NPOS}))
            << row.name;
        EXPECT_TRUE(scansAsTold(row.bytes)) << row.name;
    }
}

TEST(StringDataScan, ZeroByteIsRefusedByTheCountAndEndsTheTerminatedForm) {
    const unsigned char bytes[] = {0x61, 0x00, 0x62};
    EXPECT_EQ(scanned(bytes, 3), (ScanResult{reference::refused(NO_NULL), 3}));
    EXPECT_EQ(scanned(bytes, NPOS), (ScanResult{{1, {}}, 1}));
    const unsigned char letters[] = "abc";
    EXPECT_EQ(scanned(letters, NPOS), (ScanResult{{1, {}}, 3}));
    EXPECT_EQ(scanned(letters, 4), (ScanResult{reference::refused(NO_NULL), 4}));
    EXPECT_EQ(scanned(letters, 2), (ScanResult{{1, {}}, 2}));
}

TEST(StringDataScan, OnlyTheLargestLengthMeansATerminator) {
    Bytes bytes(256, 0x61);
    bytes[1] = 0x00;
    Units units(256, 0x61);
    units[1] = 0x0000;
    units[2] = 0xDC00;
    for (const unsigned int length : {0xFFFFFFF0u, 0xFFFFFFFEu}) {
        EXPECT_EQ(scanned(bytes.data(), length), (ScanResult{reference::refused(NO_NULL), length}));
        EXPECT_EQ(scanned(units.data(), length), (ScanResult{reference::refused(SECOND), length}));
    }
}

TEST(StringDataScan, ResultsOfUTF16) {
    const struct {
        const char* name;
        Units units;
        unsigned int result;
    } rows[] = {
        {"letters", {0x61, 0x62, 0x63}, 1},
        {"lowest and highest of ASCII", {0x01, 0x7F}, 1},
        {"behind ASCII", {0x80}, 2},
        {"last before the surrogates", {0xD7FF}, 2},
        {"first after the surrogates", {0xE000}, 2},
        {"last before the noncharacters", {0xFDCF}, 2},
        {"first behind the noncharacters", {0xFDF0}, 2},
        {"last character of plane 0", {0xFFFD}, 2},
        {"first pair", {0xD800, 0xDC00}, 3},
        {"last pair", {0xDBFF, 0xDFFD}, 3},
        {"the widest wins, at any position", {0xD83D, 0xDE00, 0xE9, 0x61}, 3},
    };
    for (const auto& row : rows) {
        const auto length = static_cast<unsigned int>(row.units.size());
        EXPECT_EQ(scanned(GuardedBuffer<UTF16Char>(row.units).data(), length), (ScanResult{{row.result, {}}, length}))
            << row.name;
        Units terminated = row.units;
        terminated.push_back(0);
        EXPECT_EQ(scanned(GuardedBuffer<UTF16Char>(terminated).data(), NPOS), (ScanResult{{row.result, {}}, length}))
            << row.name;
        EXPECT_TRUE(scansAsTold(row.units)) << row.name;
    }
}

TEST(StringDataScan, ZeroUnitIsTextByTheCountAndEndsTheTerminatedForm) {
    const UTF16Char null[] = {0};
    EXPECT_EQ(scanned(null, 1), (ScanResult{{6, {}}, 1}));
    EXPECT_EQ(scanned(null, NPOS), (ScanResult{{1, {}}, 0}));
    const UTF16Char between[] = {0x61, 0, 0xD800, 0xDC00};
    EXPECT_EQ(scanned(between, 2), (ScanResult{{6, {}}, 2}));
    EXPECT_EQ(scanned(between, 4), (ScanResult{{7, {}}, 4}));
    EXPECT_EQ(scanned(between, NPOS), (ScanResult{{1, {}}, 1}));
}

TEST(StringDataScan, FailuresOfUTF16) {
    const struct {
        const char* name;
        Units units;
        const char* message;
        unsigned int terminatedLength; // what the terminated form leaves in length
    } rows[] = {
        {"first surrogate at the end", {0xD800}, FIRST, 1},
        {"first surrogate at the end of a text", {0x61, 0x62, 0xDBFF}, FIRST, 3},
        {"first surrogate before a letter", {0xD800, 0x41}, FIRST, NPOS},
        {"two first surrogates", {0xD800, 0xD800, 0xDC00}, FIRST, NPOS},
        {"first surrogate before a noncharacter", {0xD800, 0xFFFF}, FIRST, NPOS},
        {"noncharacter FFFE of plane 1", {0xD83F, 0xDFFE}, FFFE, NPOS},
        {"noncharacter FFFF of plane 1", {0xD83F, 0xDFFF}, FFFE, NPOS},
        {"noncharacter of the last plane", {0xDBFF, 0xDFFE}, FFFE, NPOS},
        {"second surrogate alone", {0xDC00}, SECOND, NPOS},
        {"second surrogate behind a pair", {0xD800, 0xDC00, 0xDFFF}, SECOND, NPOS},
        {"first noncharacter", {0xFDD0}, INVALID, NPOS},
        {"last of the noncharacters' block", {0xFDEF}, INVALID, NPOS},
        {"FFFE", {0xFFFE}, INVALID, NPOS},
        {"FFFF", {0xFFFF}, INVALID, NPOS},
        {"the first failure is reported", {0x41, 0xDC00, 0xFFFF}, SECOND, NPOS},
    };
    for (const auto& row : rows) {
        const auto length = static_cast<unsigned int>(row.units.size());
        const ScanResult expected{reference::refused(row.message), length};
        EXPECT_EQ(scanned(GuardedBuffer<UTF16Char>(row.units).data(), length), expected) << row.name;
        Units terminated = row.units;
        terminated.push_back(0);
        EXPECT_EQ(scanned(GuardedBuffer<UTF16Char>(terminated).data(), NPOS),
                  (ScanResult{expected.outcome, row.terminatedLength}))
            << row.name;
        EXPECT_TRUE(scansAsTold(row.units)) << row.name;
    }
    const UTF16Char beforeZero[] = {0xD800, 0, 0x41};
    EXPECT_EQ(scanned(beforeZero, 3), (ScanResult{reference::refused(FIRST), 3}));
}

TEST(StringDataScan, NothingBehindTheFirstFailureIsReadInTheTerminatedForm) {
    // These have no terminator: the scan must throw at the last unit of the block, whatever precedes it.
    const Bytes byteEnds[] = {{0x80},
                              {0xFF},
                              {0xC2, 0x41},
                              {0xC1, 0x80},
                              {0xE1, 0x41},
                              {0xE1, 0x80, 0x41},
                              {0xED, 0xA0, 0x80},
                              {0xF0, 0x41},
                              {0xF1, 0x80, 0x41},
                              {0xF1, 0x80, 0x80, 0x41},
                              {0xF4, 0x90, 0x80, 0x80}};
    const Units unitEnds[] = {{0xDC00}, {0xFFFF}, {0xD800, 0x41}, {0xD83F, 0xDFFE}};
    for (std::size_t before = 0; before < 40; ++before) {
        for (const Bytes& end : byteEnds) {
            Bytes text(before, 0x61);
            text.insert(text.end(), end.begin(), end.end());
            const ExactBuffer<unsigned char> block(text, before % 8);
            EXPECT_EQ(scanned(block.data(), NPOS), reference::scan(text, NPOS)) << reference::shown(text);
        }
        for (const Units& end : unitEnds) {
            Units text(before, 0x61);
            text.insert(text.end(), end.begin(), end.end());
            const ExactBuffer<UTF16Char> block(text, before % 8);
            EXPECT_EQ(scanned(block.data(), NPOS), reference::scan(text, NPOS)) << reference::shown(text);
        }
    }
}

TEST(StringDataScan, EveryByteAndEveryTwoBytes) {
    for (const unsigned int first : reference::allBytes) {
        const auto byte = static_cast<unsigned char>(first);
        ASSERT_TRUE(scansAsTold(Bytes{byte}));
        // Behind ASCII the second byte is unpaired: one such row is enough.
        if (first > 0x41 && first < 0x7F) continue;
        for (unsigned int second = first % rowStep(); second <= 0xFF; second += rowStep()) {
            ASSERT_TRUE(scansAsTold(Bytes{byte, static_cast<unsigned char>(second)}));
        }
    }
}

TEST(StringDataScan, ThreeAndFourBytesAtEveryEdge) {
    const unsigned char seconds[] = {0x00, 0x41, 0x7F, 0x80, 0x8D, 0x8F, 0x90, 0x9F, 0xA0, 0xB7, 0xBF, 0xC0};
    const unsigned char others[] = {0x00, 0x7F, 0x80, 0x8F, 0x90, 0xA0, 0xAF, 0xB0, 0xB7, 0xBD, 0xBE, 0xBF, 0xC0};
    const unsigned char lasts[] = {0x00, 0x41, 0x80, 0xBD, 0xBE, 0xBF, 0xC2};
    for (unsigned int lead = 0xE0; lead <= 0xF5; ++lead) {
        const auto b1 = static_cast<unsigned char>(lead);
        for (const unsigned char b2 : seconds) {
            for (const unsigned char b3 : others) {
                ASSERT_TRUE(scansAsTold(Bytes{b1, b2, b3}));
                if (lead < 0xEF) continue;
                for (const unsigned char b4 : lasts) ASSERT_TRUE(scansAsTold(Bytes{b1, b2, b3, b4}));
            }
        }
    }
}

TEST(StringDataScan, EveryCharacterOfUnicodeInUTF8AndUTF16) {
    for (unsigned int start = 0; start < 0x110000; start += 0x400) {
        Codes codes;
        for (unsigned int code = start; code < start + 0x400; ++code) {
            if (reference::isCharacter(code)) codes.push_back(code);
        }
        if (codes.empty()) continue;
        const Bytes bytes = reference::toUTF8(codes);
        const Units units = reference::toUTF16(codes);
        const unsigned int word = static_cast<unsigned int>(reference::charsetOf(codes)) + (start == 0 ? 4 : 0);
        auto length = static_cast<unsigned int>(bytes.size());
        ASSERT_EQ(scanned(bytes.data(), length), (ScanResult{{word, {}}, length})) << start;
        length = static_cast<unsigned int>(units.size());
        ASSERT_EQ(scanned(units.data(), length), (ScanResult{{word, {}}, length})) << start;
    }
}

TEST(StringDataScan, EveryUnit) {
    for (const unsigned int unit : reference::allUnits) {
        ASSERT_TRUE(scansAsTold(Units{static_cast<UTF16Char>(unit)}));
    }
}

TEST(StringDataScan, PairsOfUnitsAtEveryEdge) {
    const UTF16Char units[] = {0,      0x01,   0x41,   0x7F,   0x80,   0x7FF,  0xD7FF, 0xD800, 0xD83F,
                               0xD8C0, 0xDA00, 0xDBFE, 0xDBFF, 0xDC00, 0xDC01, 0xDFFD, 0xDFFE, 0xDFFF,
                               0xE000, 0xFDCF, 0xFDD0, 0xFDEF, 0xFDF0, 0xFFFD, 0xFFFE, 0xFFFF};
    for (const UTF16Char first : units) {
        for (const UTF16Char second : units) {
            ASSERT_TRUE(scansAsTold(Units{first, second}));
            for (const UTF16Char third : {UTF16Char(0), UTF16Char(0xDC00)}) {
                ASSERT_TRUE(scansAsTold(Units{first, second, third}));
            }
        }
    }
}

TEST(StringDataScan, RandomTextsOfAllScripts) {
    for (const Codes& codes : reference::randomTexts({0, 1, 2, 3, 7, 8, 9, 15, 16, 17, 31, 33, 64, 200, 3000})) {
        const unsigned int word =
            static_cast<unsigned int>(reference::charsetOf(codes)) + (reference::holds(codes, 0) ? 4 : 0);
        const Bytes bytes = reference::toUTF8(codes);
        const Units units = reference::toUTF16(codes);
        for (std::size_t shift = 0; shift < 8; ++shift) {
            auto length = static_cast<unsigned int>(bytes.size());
            EXPECT_EQ(scanned(ExactBuffer<unsigned char>(bytes, shift).data(), length),
                      (ScanResult{{word, {}}, length}));
            length = static_cast<unsigned int>(units.size());
            EXPECT_EQ(scanned(ExactBuffer<UTF16Char>(units, shift).data(), length), (ScanResult{{word, {}}, length}));
        }
        ASSERT_TRUE(scansAsTold(bytes));
        ASSERT_TRUE(scansAsTold(units));
    }
}

TEST(StringDataScan, AnErrorAtEveryPositionIsReportedWithTheSameText) {
    for (const Codes& codes : reference::randomTexts({23, 70})) {
        for (const Bytes& text : reference::damaged(reference::toUTF8(codes), reference::badBytes)) {
            ASSERT_TRUE(scansAsTold(text));
        }
        for (const Units& text : reference::damaged(reference::toUTF16(codes), reference::badUnits)) {
            ASSERT_TRUE(scansAsTold(text));
        }
    }
}

TEST(StringDataScan, DamageInLongPlainText) {
    const Codes codes(200, 0x61);
    for (const Bytes& text : reference::damaged(reference::toUTF8(codes), reference::badBytes)) {
        ASSERT_TRUE(scansAsTold(text));
    }
    for (const Units& text : reference::damaged(reference::toUTF16(codes), reference::badUnits)) {
        ASSERT_TRUE(scansAsTold(text));
    }
}

TEST(StringDataScan, AllocatesNothing) {
    const Bytes bytes = reference::toUTF8(Codes(300, 0x20AC));
    const Units units = reference::toUTF16(Codes(300, 0x20AC));
    EXPECT_EQ(allocationsDuring([&] {
                  auto length = static_cast<unsigned int>(bytes.size());
                  stringDataScanBuffer(bytes.data(), length);
                  length = static_cast<unsigned int>(units.size());
                  stringDataScanBuffer(units.data(), length);
              }),
              0u);
}

} // namespace
