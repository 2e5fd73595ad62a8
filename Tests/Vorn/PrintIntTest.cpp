#include "Vorn/PrintInt.h"

#include "Vorn/ParseInt.h"

#include "Support/AllocationCounter.h"
#include "Support/Printed.h"
#include "Support/Random.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <limits>

namespace {

using Vorn::HEX_WITH_PREFIX;
using Vorn::HEX_WITHOUT_PREFIX;
using Vorn::HexWithPrefix;
using Vorn::UTF16Char;

constexpr int INT_LOWEST = std::numeric_limits<int>::min();

template <class Value>
void expectDec(Value value) {
    const std::string text = std::to_string(value);
    expectPrinted(widened<unsigned char>(text), [&](unsigned char* buffer, unsigned int capacity) {
        return Vorn::printDec(value, buffer, capacity);
    });

    // 16-bit units: as many bytes as the text has units.
    const unsigned int size = static_cast<unsigned int>(text.size());
    const auto run = [&](UTF16Char* buffer, unsigned int capacity) { return Vorn::printDec(value, buffer, capacity); };
    for (const unsigned int capacity : {size, 20u}) {
        const Printed<UTF16Char> printed(capacity, run);
        EXPECT_EQ(printed.result(), size);
        for (unsigned int i = 0; i < size; ++i) {
            unsigned int expected = Printed<UTF16Char>::UNTOUCHED;
            if (2 * i + 1 < size) {
                expected = static_cast<unsigned char>(text[i]);
            } else if (2 * i + 1 == size) {
                expected = (expected & 0xFF00) | static_cast<unsigned char>(text[i]); // little-endian
            }
            EXPECT_EQ(printed.units()[i], expected) << text << ", unit " << i;
        }
    }
    for (unsigned int capacity = 0; capacity < size; ++capacity)
        EXPECT_TRUE(Printed<UTF16Char>(capacity, run).isUntouched());
}

std::string hexText(unsigned int magnitude) {
    char text[16];
    std::snprintf(text, sizeof(text), "%X", magnitude);
    return text;
}

unsigned int magnitudeOf(int value) {
    return static_cast<unsigned int>(value < 0 ? -static_cast<long long>(value) : static_cast<long long>(value));
}

template <class Value>
void expectHex(Value value, HexWithPrefix prefix, const std::string& text) {
    SCOPED_TRACE(text);
    expectPrinted(widened<unsigned char>(text), [&](unsigned char* buffer, unsigned int capacity) {
        return Vorn::printHex(value, prefix, buffer, capacity);
    });
    expectPrinted(widened<UTF16Char>(text), [&](UTF16Char* buffer, unsigned int capacity) {
        return Vorn::printHex(value, prefix, buffer, capacity);
    });
    EXPECT_EQ(Vorn::measureHex(value, prefix), text.size());
    EXPECT_EQ(Vorn::printHex(value, prefix, static_cast<unsigned char*>(nullptr), 99), text.size());
    EXPECT_EQ(Vorn::printHex(value, prefix, static_cast<UTF16Char*>(nullptr), 0), text.size());
}

// The powers of two and of ten, the thresholds of measureDec, and their neighbours.
std::vector<unsigned int> notableValues() {
    std::vector<unsigned int> values = {100004, 1000046, 10000463, 100718957, 1410065408, 12345, 1234567890};
    for (int bit = 0; bit < 32; ++bit) values.push_back(1u << bit);
    for (unsigned int power = 1; power < 1000000000; power *= 10) values.push_back(power);
    values.push_back(1000000000);
    const std::size_t count = values.size();
    for (std::size_t i = 0; i < count; ++i) {
        values.push_back(values[i] - 1);
        values.push_back(values[i] + 1);
    }
    values.push_back(0xFFFFFFFF);
    return values;
}

TEST(PrintDec, TextsFitOrStayAway) {
    for (const unsigned int value : notableValues()) {
        expectDec(value);
        expectDec(static_cast<int>(value));
        expectDec(static_cast<int>(0 - value));
    }
}

TEST(PrintDec, SmallAndRandomValues) {
    unsigned char buffer[16];
    const auto expectPrinted = [&](unsigned int value) {
        const unsigned int size = Vorn::printDec(value, buffer, 16);
        ASSERT_EQ(narrow(buffer, size), std::to_string(value));
        const unsigned int signedSize = Vorn::printDec(static_cast<int>(value), buffer, 16);
        ASSERT_EQ(narrow(buffer, signedSize), std::to_string(static_cast<int>(value)));
    };
    for (int value = 0; value < repetitions(1000000); ++value) expectPrinted(static_cast<unsigned int>(value));
    Random random(1);
    for (int round = 0; round < repetitions(1000000); ++round) expectPrinted(random() >> random.below(32));
}

TEST(PrintDec, WideTextsArriveHalf) {
    UTF16Char buffer[5];
    for (UTF16Char& unit : buffer) unit = 0xABCD;
    EXPECT_EQ(Vorn::printDec(12345, buffer, 5), 5u);
    const UTF16Char expected[] = {'1', '2', 0xAB00 | '3', 0xABCD, 0xABCD};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(buffer[i], expected[i]) << i;
}

// The exact number of digits.
unsigned int digitsOf(unsigned int value) { return static_cast<unsigned int>(std::to_string(value).size()); }

bool isMeasuredShort(unsigned int value) {
    return (value >= 100000 && value <= 100003) || (value >= 1000000 && value <= 1000045) ||
           (value >= 10000000 && value <= 10000462) || (value >= 100000000 && value <= 100718956) ||
           (value >= 1000000000 && value <= 1410065407);
}

void expectMeasuredDec(unsigned int value) {
    const unsigned int expected = digitsOf(value) - (isMeasuredShort(value) ? 1 : 0);
    ASSERT_EQ(Vorn::measureDec(value), expected) << value;
    ASSERT_EQ(Vorn::printDec(value, static_cast<unsigned char*>(nullptr), 0), expected) << value;
    ASSERT_EQ(Vorn::printDec(value, static_cast<UTF16Char*>(nullptr), 99), expected) << value;
    const int asInt = static_cast<int>(value);
    const unsigned int magnitude = magnitudeOf(asInt);
    const unsigned int expectedInt = digitsOf(magnitude) - (isMeasuredShort(magnitude) ? 1 : 0) + (asInt < 0 ? 1 : 0);
    ASSERT_EQ(Vorn::measureDec(asInt), expectedInt) << asInt;
    ASSERT_EQ(Vorn::printDec(asInt, static_cast<unsigned char*>(nullptr), 0), expectedInt) << asInt;
    ASSERT_EQ(Vorn::printDec(asInt, static_cast<UTF16Char*>(nullptr), 0), expectedInt) << asInt;
}

TEST(MeasureDec, IsOneTooSmallInFiveRanges) {
    for (const unsigned int value : notableValues()) {
        expectMeasuredDec(value);
        expectMeasuredDec(0 - value);
    }
    for (unsigned int value = 0; value < 2000; ++value) expectMeasuredDec(value);
    for (unsigned int value = 99990; value < 100020; ++value) expectMeasuredDec(value);
    for (unsigned int value = 999990; value < 1000060; ++value) expectMeasuredDec(value);
    for (unsigned int value = 9999990; value < 10000480; ++value) expectMeasuredDec(value);
    Random random(2);
    for (int round = 0; round < repetitions(500000); ++round) expectMeasuredDec(random() >> random.below(32));
}

TEST(MeasureDec, BufferOfTheMeasuredSizeMayStayEmpty) {
    EXPECT_EQ(Vorn::measureDec(99999), 5u);
    EXPECT_EQ(Vorn::measureDec(100000), 5u);
    EXPECT_EQ(Vorn::measureDec(100004), 6u);
    EXPECT_EQ(Vorn::measureDec(-100000), 6u);
    EXPECT_EQ(Vorn::measureDec(1000000000), 9u);
    const Printed<unsigned char> printed(
        9, [](unsigned char* buffer, unsigned int capacity) { return Vorn::printDec(1000000000, buffer, capacity); });
    EXPECT_EQ(printed.result(), 10u);
    EXPECT_TRUE(printed.isUntouched());
}

TEST(PrintHex, TextsOfNotableValues) {
    for (const unsigned int value : notableValues()) {
        expectHex(value, HEX_WITHOUT_PREFIX, hexText(value));
        expectHex(value, HEX_WITH_PREFIX, "0x" + hexText(value));
        for (const int asInt : {static_cast<int>(value), static_cast<int>(0 - value)}) {
            const std::string digits = hexText(magnitudeOf(asInt));
            expectHex(asInt, HEX_WITHOUT_PREFIX, (asInt < 0 ? "x" : "") + digits);
            expectHex(asInt, HEX_WITH_PREFIX, (asInt < 0 ? "-0x" : "0x") + digits);
        }
    }
}

TEST(PrintHex, SignWithoutPrefixIsAnX) {
    expectHex(-255, HEX_WITHOUT_PREFIX, "xFF");
    expectHex(-255, HEX_WITH_PREFIX, "-0xFF");
    expectHex(-1, HEX_WITH_PREFIX, "-0x1");
    expectHex(INT_LOWEST, HEX_WITH_PREFIX, "-0x80000000");
    expectHex(INT_LOWEST, HEX_WITHOUT_PREFIX, "x80000000");
    expectHex(0, HEX_WITHOUT_PREFIX, "0");
    expectHex(0u, HEX_WITH_PREFIX, "0x0");
    expectHex(0x89ABCDEFu, HEX_WITHOUT_PREFIX, "89ABCDEF");
    expectHex(0x01234567u, HEX_WITH_PREFIX, "0x1234567");
}

TEST(PrintHex, MeasureAgreesForRandomValues) {
    Random random(3);
    for (int round = 0; round < repetitions(500000); ++round) {
        const unsigned int value = random() >> random.below(32);
        const int asInt = static_cast<int>(random.below(2) ? value : 0 - value);
        unsigned char buffer[16];
        ASSERT_EQ(Vorn::printHex(value, HEX_WITH_PREFIX, buffer, 16), Vorn::measureHex(value, HEX_WITH_PREFIX));
        ASSERT_EQ(Vorn::measureHex(value, HEX_WITHOUT_PREFIX), hexText(value).size());
        ASSERT_EQ(Vorn::printHex(asInt, HEX_WITHOUT_PREFIX, buffer, 16), Vorn::measureHex(asInt, HEX_WITHOUT_PREFIX));
    }
}

template <class Value>
void expectRoundTrip(Value value) {
    unsigned char bytes[12];
    unsigned int count;
    unsigned int size = Vorn::printDec(value, bytes, 11);
    bytes[size] = 0;
    if constexpr (std::numeric_limits<Value>::is_signed) {
        ASSERT_EQ(Vorn::parseDec<Value>(bytes, &count, size), value);
        ASSERT_EQ(Vorn::parseInt<Value>(bytes), value);
    } else {
        ASSERT_EQ(Vorn::parseUDec<Value>(bytes, &count, size), value);
        ASSERT_EQ(Vorn::parseUInt<Value>(bytes), value);
    }
    ASSERT_EQ(count, size);

    UTF16Char units[12];
    size = Vorn::printHex(value, HEX_WITH_PREFIX, units, 11);
    units[size] = 0;
    if constexpr (std::numeric_limits<Value>::is_signed) {
        ASSERT_EQ(Vorn::parseHex<Value>(units, &count, size), value);
        ASSERT_EQ(Vorn::parseInt<Value>(units), value);
    } else {
        ASSERT_EQ(Vorn::parseUHex<Value>(units, &count, size), value);
        ASSERT_EQ(Vorn::parseUInt<Value>(units), value);
    }
    ASSERT_EQ(count, size);
}

TEST(PrintInteger, ParsingGivesThePrintedValueBack) {
    for (const unsigned int value : notableValues()) {
        for (const unsigned int either : {value, 0 - value}) {
            expectRoundTrip(either);
            expectRoundTrip(static_cast<int>(either));
        }
    }
    Random random(4);
    for (int round = 0; round < repetitions(10000000); ++round) {
        const unsigned int value = random();
        expectRoundTrip(value);
        expectRoundTrip(static_cast<int>(value));
        if (HasFatalFailure()) return;
    }
}

TEST(PrintInteger, PrintersTakeNothingFromTheHeap) {
    unsigned char bytes[16];
    UTF16Char units[16];
    EXPECT_EQ(allocationsDuring([&] {
                  Vorn::printDec(INT_LOWEST, bytes, 16);
                  Vorn::printDec(INT_LOWEST, units, 16);
                  Vorn::printHex(INT_LOWEST, HEX_WITH_PREFIX, bytes, 16);
                  Vorn::printHex(INT_LOWEST, HEX_WITH_PREFIX, units, 16);
              }),
              0u);
}

} // namespace
