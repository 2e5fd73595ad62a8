#include "Vorn/PrintFloat.h"

#include "Vorn/ParseFloat.h"

#include "Support/AllocationCounter.h"
#include "Support/Printed.h"
#include "Support/Random.h"
#include "Support/Report.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <limits>
#include <locale>
#include <sstream>
#include <vector>

namespace {

using Vorn::FLOAT_EXPONENT_ALWAYS;
using Vorn::FLOAT_EXPONENT_AUTO;
using Vorn::FLOAT_EXPONENT_NONE;
using Vorn::FloatExponent;
using Vorn::UTF16Char;

template <class T>
constexpr T INFINITE = std::numeric_limits<T>::infinity();
template <class T>
constexpr T NOT_A_NUMBER = std::numeric_limits<T>::quiet_NaN();

static_assert(FLOAT_EXPONENT_AUTO == 0 && FLOAT_EXPONENT_NONE == 1 && FLOAT_EXPONENT_ALWAYS == 2);

// Hexadecimal text ----------------------------------------------------------------------------------------------------

// The expected text of a value, from its bits, and the size of its exponent without the "p".
struct HexText {
    explicit HexText(float value) : HexText(static_cast<double>(value), std::isnan(value)) {}

    explicit HexText(double value)
        : HexText(value, std::isnan(value) || std::abs(value) > 0x1p1017) {} // the special rule of double

    HexText(double value, bool isNaN) {
        if (isNaN) {
            text = "NAN";
            return;
        }
        const unsigned long long bits = std::bit_cast<unsigned long long>(value);
        if (bits >> 63) text = "-";
        if (std::isinf(value)) {
            text += "INF";
            return;
        }
        if (value == 0) {
            text += "0x0";
            return;
        }
        constexpr unsigned long long ONE = 1ull << 52;
        unsigned long long mantissa = bits & (ONE - 1);
        int exponent = static_cast<int>((bits >> 52) & 0x7FF) - 1023;
        if (exponent == -1023) {
            ++exponent;
            for (; mantissa < ONE; mantissa *= 2) --exponent;
            mantissa -= ONE;
        }
        text += "0x1";
        if (mantissa != 0) text += '.';
        for (; mantissa != 0; mantissa = (mantissa * 16) % ONE) text += "0123456789ABCDEF"[mantissa * 16 / ONE];
        if (exponent == 0) return;
        text += 'p';
        const std::string digits = std::to_string(exponent);
        text += digits;
        exponentSize = digits.size();
    }

    // Only as many bytes of the exponent are written as it has units.
    std::u16string wide() const {
        std::u16string units(text.begin(), text.end());
        const std::size_t exponentStart = units.size() - exponentSize;
        for (std::size_t i = exponentStart + (exponentSize + 1) / 2; i < units.size(); ++i) units[i] = 0;
        return units;
    }

    std::string text;
    std::size_t exponentSize = 0;
};

template <class T>
void expectHex(T value) {
    const HexText expected(value);
    SCOPED_TRACE(expected.text);
    const unsigned int size = static_cast<unsigned int>(expected.text.size());
    const auto printBytes = [&](unsigned char* buffer, unsigned int capacity) {
        return Vorn::printHex(value, buffer, capacity);
    };
    const auto printUnits = [&](UTF16Char* buffer, unsigned int capacity) {
        return Vorn::printHex(value, buffer, capacity);
    };
    EXPECT_EQ(Vorn::measureHex(value), size);
    EXPECT_EQ(Vorn::printHex(value, static_cast<unsigned char*>(nullptr), 99), size);
    EXPECT_EQ(Vorn::printHex(value, static_cast<UTF16Char*>(nullptr), 0), size);

    if (size >= (sizeof(T) == 4 ? 16 : 24)) {
        for (const unsigned int capacity : {0u, 40u}) {
            const Printed<unsigned char> printed(capacity, [&](unsigned char* buffer, unsigned int) {
                expectRaises<2>([&] { printBytes(buffer, capacity); }, "count < bufferSize : unexpected large exponent",
                                "VornPrivate::printHexFloat", "Source/Vorn/PrintFloat");
                return 0u;
            });
            EXPECT_TRUE(printed.isUntouched());
            UTF16Char units[40];
            expectRaises<2>([&] { printUnits(units, capacity); }, "count < bufferSize : unexpected large exponent",
                            "VornPrivate::printHexFloat", "Source/Vorn/PrintFloat");
        }
        return;
    }
    expectPrinted(widened<unsigned char>(expected.text), printBytes);
    const std::u16string wide = expected.wide();
    expectPrinted(std::basic_string<UTF16Char>(wide.begin(), wide.end()), printUnits);
}

template <class T>
std::string hexOf(T value) {
    unsigned char buffer[40];
    return narrow(buffer, Vorn::printHex(value, buffer, 40));
}

TEST(PrintHexFloat, Texts) {
    EXPECT_EQ(hexOf(1.0f), "0x1");
    EXPECT_EQ(hexOf(1.5f), "0x1.8");
    EXPECT_EQ(hexOf(-1.5f), "-0x1.8");
    EXPECT_EQ(hexOf(0.5f), "0x1p-1");
    EXPECT_EQ(hexOf(3.0f), "0x1.8p1");
    EXPECT_EQ(hexOf(0.0f), "0x0");
    EXPECT_EQ(hexOf(-0.0f), "-0x0");
    EXPECT_EQ(hexOf(0.1f), "0x1.99999Ap-4");
    EXPECT_EQ(hexOf(0.1), "0x1.999999999999Ap-4");
    EXPECT_EQ(hexOf(-0.0), "-0x0");
    EXPECT_EQ(hexOf(1024.0), "0x1p10");
    EXPECT_EQ(hexOf(std::numeric_limits<float>::denorm_min()), "0x1p-149");
    EXPECT_EQ(hexOf(std::numeric_limits<double>::denorm_min()), "0x1p-1074");
    EXPECT_EQ(hexOf(INFINITE<float>), "INF");
    EXPECT_EQ(hexOf(-INFINITE<float>), "-INF");
    EXPECT_EQ(hexOf(NOT_A_NUMBER<float>), "NAN");
    EXPECT_EQ(hexOf(-NOT_A_NUMBER<float>), "NAN");
}

TEST(PrintHexFloat, SpecialValuesInBuffersOfEverySize) {
    for (const float value : {0.0f, INFINITE<float>, NOT_A_NUMBER<float>, 1.0f}) {
        expectHex(value);
        expectHex(-value);
    }
    expectHex(0.0);
    expectHex(-0.0);
    expectHex(NOT_A_NUMBER<double>);
}

TEST(PrintHexFloat, LargeDoublesAreTakenForNaN) {
    EXPECT_EQ(hexOf(INFINITE<double>), "NAN");
    EXPECT_EQ(hexOf(-INFINITE<double>), "NAN");
    EXPECT_EQ(hexOf(0x1p1020), "NAN");
    EXPECT_EQ(hexOf(std::numeric_limits<double>::max()), "NAN");
    EXPECT_EQ(hexOf(0x1p1017), "0x1p1017");
    EXPECT_EQ(hexOf(-0x1p1017), "-0x1p1017");
    EXPECT_EQ(hexOf(std::nextafter(0x1p1017, INFINITE<double>)), "NAN"); // a bit in the low word only
    EXPECT_EQ(hexOf(0x1p1017 * 1.5), "NAN");
    EXPECT_EQ(hexOf(std::nextafter(0x1p1017, 0.0)), "0x1.FFFFFFFFFFFFFp1016");
    EXPECT_EQ(Vorn::measureHex(INFINITE<double>), 3u);
    EXPECT_EQ(Vorn::measureHex(-INFINITE<double>), 3u);
}

TEST(PrintHexFloat, EveryExponent) {
    for (const unsigned int mantissa : {0u, 1u, 0x7FFFFFu, 0x400000u, 0x555555u, 0x123450u}) {
        for (unsigned int exponent = 0; exponent < 256; ++exponent) {
            const float value = std::bit_cast<float>((exponent << 23) | mantissa);
            expectHex(value);
            expectHex(-value);
        }
    }
    for (const unsigned long long mantissa : {0x0ull, 0x1ull, 0xFFFFFFFFFFFFFull, 0x5555555555550ull}) {
        for (unsigned long long exponent = 0; exponent < 2048; ++exponent) {
            const double value = std::bit_cast<double>((exponent << 52) | mantissa);
            expectHex(value);
            expectHex(-value);
        }
    }
    for (int bit = 0; bit < 52; ++bit) {
        expectHex(std::bit_cast<double>(1ull << bit)); // the subnormal powers of two
        expectHex(-std::bit_cast<double>((2ull << bit) - 1));
    }
    for (int bit = 0; bit < 23; ++bit) {
        expectHex(std::bit_cast<float>(1u << bit));
        expectHex(-std::bit_cast<float>((2u << bit) - 1));
    }
}

TEST(PrintHexFloat, LongestTextsAreRejected) {
    const float full = 0x1.FFFFFEp-126f; // 15 units
    EXPECT_EQ(hexOf(full), "0x1.FFFFFEp-126");
    EXPECT_EQ(Vorn::measureHex(-full), 16u);
    unsigned char buffer[40];
    expectRaises<2>([&] { Vorn::printHex(-full, buffer, 40); }, "count < bufferSize : unexpected large exponent",
                    "VornPrivate::printHexFloat", "Source/Vorn/PrintFloat");
    EXPECT_EQ(hexOf(-0x1.FFFFFEp-99f), "-0x1.FFFFFEp-99");
    EXPECT_EQ(hexOf(-0x1.FFFFFEp126f), "-0x1.FFFFFEp126");
    EXPECT_EQ(hexOf(0x1.FFFFFFFFFFFFFp-1022), "0x1.FFFFFFFFFFFFFp-1022");
    EXPECT_EQ(hexOf(-0x1.FFFFFFFFFFFFFp-999), "-0x1.FFFFFFFFFFFFFp-999");
    EXPECT_EQ(Vorn::measureHex(-0x1.FFFFFFFFFFFFFp-1000), 24u);
    expectRaises<2>([&] { Vorn::printHex(-0x1.FFFFFFFFFFFFFp-1000, buffer, 40); },
                    "count < bufferSize : unexpected large exponent", "VornPrivate::printHexFloat",
                    "Source/Vorn/PrintFloat");
}

TEST(PrintHexFloat, WideExponentsArriveHalf) {
    UTF16Char units[16];
    for (UTF16Char& unit : units) unit = 0xABCD;
    EXPECT_EQ(Vorn::printHex(0x1.8p-126f, units, 16), 10u);
    const UTF16Char expected[] = {'0', 'x', '1', '.', '8', 'p', '-', '1', 0, 0, 0xABCD};
    for (int i = 0; i < 11; ++i) EXPECT_EQ(units[i], expected[i]) << i;
}

TEST(PrintHexFloat, RandomValues) {
    Random random(5);
    for (int round = 0; round < repetitions(20000); ++round) {
        expectHex(std::bit_cast<float>(random()));
        expectHex(std::bit_cast<double>(random.bits64()));
        if (HasFailure()) return;
    }
}

TEST(PrintHexFloat, ParsingGivesThePrintedFloatBack) {
    const auto expectRoundTrip = [](float value) {
        unsigned char buffer[17];
        if (std::isnan(value) || std::isinf(value) || Vorn::measureHex(value) == 16) return;
        const unsigned int size = Vorn::printHex(value, buffer, 16);
        buffer[size] = 0;
        unsigned int count;
        const float parsed = Vorn::parseFloat(buffer, &count, size);
        ASSERT_EQ(std::bit_cast<unsigned int>(parsed), std::bit_cast<unsigned int>(value)) << narrow(buffer, size);
        ASSERT_EQ(count, size);
    };
    for (unsigned int exponent = 0; exponent < 255; ++exponent) {
        const unsigned int power = exponent << 23;
        for (const unsigned int bits : {power, power + 1, power - 1}) {
            expectRoundTrip(std::bit_cast<float>(bits));
            expectRoundTrip(std::bit_cast<float>(bits | 0x80000000));
        }
    }
    for (int bit = 0; bit < 23; ++bit) expectRoundTrip(std::bit_cast<float>(1u << bit));
    Random random(6);
    for (int round = 0; round < repetitions(10000000); ++round) expectRoundTrip(std::bit_cast<float>(random()));
}

// Decimal text --------------------------------------------------------------------------------------------------------

// The text of a value from a stream of the standard library.
template <class T>
std::string streamed(T value, unsigned int precision, std::ios_base::fmtflags flags, const std::locale& locale) {
    std::ostringstream stream;
    stream.imbue(locale);
    stream.setf(flags);
    stream.precision(static_cast<std::streamsize>(precision));
    stream << value;
    return stream.str();
}

constexpr std::ios_base::fmtflags FIXED = std::ios_base::fixed;
constexpr std::ios_base::fmtflags SCIENTIFIC = std::ios_base::scientific;

template <class T>
void expectDec(T value, unsigned int precision, FloatExponent exponent, const std::string& text) {
    SCOPED_TRACE(text);
    expectPrinted(widened<unsigned char>(text), [&](unsigned char* buffer, unsigned int capacity) {
        return Vorn::printDec(value, buffer, capacity, precision, exponent);
    });
    expectPrinted(widened<UTF16Char>(text), [&](UTF16Char* buffer, unsigned int capacity) {
        return Vorn::printDec(value, buffer, capacity, precision, exponent);
    });
    EXPECT_EQ(Vorn::measureDec(value, precision, exponent), text.size());
    EXPECT_EQ(Vorn::printDec(value, static_cast<unsigned char*>(nullptr), 0, precision, exponent), text.size());
    EXPECT_EQ(Vorn::printDec(value, static_cast<UTF16Char*>(nullptr), 99, precision, exponent), text.size());
}

TEST(PrintDecFloat, FixedAndScientificTexts) {
    expectDec(1.5f, 2, FLOAT_EXPONENT_NONE, "1.50");
    expectDec(1.5f, 2, FLOAT_EXPONENT_ALWAYS, "1.50e+00");
    expectDec(-2.5, 0, FLOAT_EXPONENT_NONE, "-2");
    expectDec(0.0, 0, FLOAT_EXPONENT_NONE, "0");
    expectDec(-0.0f, 1, FLOAT_EXPONENT_NONE, "-0.0");
    expectDec(1234567.0, 1, FLOAT_EXPONENT_NONE, "1234567.0");
    expectDec(0.1f, 12, FLOAT_EXPONENT_NONE, "0.100000001490");
    expectDec(0.1, 12, FLOAT_EXPONENT_NONE, "0.100000000000");
    expectDec(INFINITE<float>, 3, FLOAT_EXPONENT_NONE, "inf");
    expectDec(-INFINITE<double>, 3, FLOAT_EXPONENT_ALWAYS, "-inf");
    expectDec(NOT_A_NUMBER<double>, 3, FLOAT_EXPONENT_NONE, "nan");
}

TEST(PrintDecFloat, TextsAreThoseOfAStream) {
    const std::locale& classic = std::locale::classic();
    for (const double value : {0.0, 1.0, -1.5, 0.1, 123.456, -98765.4321, 1e10, 1e-10, 6.02e23, -1.6e-19}) {
        for (const unsigned int precision : {0u, 1u, 2u, 6u, 9u, 15u}) {
            const float single = static_cast<float>(value);
            expectDec(value, precision, FLOAT_EXPONENT_NONE, streamed(value, precision, FIXED, classic));
            expectDec(single, precision, FLOAT_EXPONENT_NONE, streamed(single, precision, FIXED, classic));
            expectDec(value, precision, FLOAT_EXPONENT_ALWAYS, streamed(value, precision, SCIENTIFIC, classic));
            expectDec(single, precision, FLOAT_EXPONENT_ALWAYS, streamed(single, precision, SCIENTIFIC, classic));
        }
    }
}

// The automatic layout returns the size of the shorter text and writes the text with both flags.
template <class T, class CharType>
void expectAuto(T value, unsigned int precision, FloatExponent exponent) {
    const std::locale& classic = std::locale::classic();
    const std::string first = streamed(value, precision, SCIENTIFIC, classic);
    const std::string second = streamed(value, precision, SCIENTIFIC | FIXED, classic);
    const unsigned int count = static_cast<unsigned int>(std::min(first.size(), second.size()));
    SCOPED_TRACE(first + " or " + second);
    CharType buffer[64];
    for (unsigned int capacity = count - 1; capacity <= count + 1; ++capacity) {
        for (CharType& unit : buffer) unit = Printed<CharType>::UNTOUCHED;
        EXPECT_EQ(Vorn::printDec(value, buffer, capacity, precision, exponent), count);
        if (capacity < count) {
            EXPECT_EQ(buffer[0], Printed<CharType>::UNTOUCHED);
        } else {
            EXPECT_EQ(narrow(buffer, second.size()), second); // over the end if that is the longer one
            EXPECT_EQ(buffer[second.size()], Printed<CharType>::UNTOUCHED);
        }
    }
    EXPECT_EQ(Vorn::measureDec(value, precision, exponent), count);
    EXPECT_EQ(Vorn::printDec(value, static_cast<CharType*>(nullptr), 0, precision, exponent), count);
}

TEST(PrintDecFloat, AutomaticLayoutCountsTheShorterTextAndWritesTheLast) {
    bool firstWon = false;
    bool secondWon = false;
    for (const double value : {0.0, 1.0, -1.5, 0.1, 123.456, 1e10, -1e-10, 6.02e23}) {
        for (const unsigned int precision : {0u, 2u, 9u}) {
            for (const int exponent : {0, 3}) { // all that is not one of the two others
                const FloatExponent layout = static_cast<FloatExponent>(exponent);
                const float single = static_cast<float>(value);
                expectAuto<double, unsigned char>(value, precision, layout);
                expectAuto<double, UTF16Char>(value, precision, layout);
                expectAuto<float, unsigned char>(single, precision, layout);
                expectAuto<float, UTF16Char>(single, precision, layout);
            }
            const std::size_t first = streamed(value, precision, SCIENTIFIC, std::locale::classic()).size();
            const std::size_t second = streamed(value, precision, SCIENTIFIC | FIXED, std::locale::classic()).size();
            firstWon |= first < second;
            secondWon |= second < first;
        }
    }
    EXPECT_TRUE(firstWon && secondWon) << "the values must show both outcomes";
}

// The text of a value from the C library, which supports any precision below 2^31.
std::string formatted(double value, unsigned int precision, FloatExponent exponent) {
    const char* const format = exponent == FLOAT_EXPONENT_NONE ? "%.*f" : "%.*e";
    std::string text(precision + 400, '?');
    const int size = std::snprintf(text.data(), text.size(), format, static_cast<int>(precision), value);
    text.resize(static_cast<std::size_t>(size));
    return text;
}

// The text in a heap buffer of exactly its size.
template <class CharType, class T>
std::string printedExactly(T value, unsigned int precision, FloatExponent exponent, std::size_t size) {
    std::vector<CharType> units(size, Printed<CharType>::UNTOUCHED);
    EXPECT_EQ(Vorn::printDec(value, units.data(), static_cast<unsigned int>(size - 1), precision, exponent), size);
    EXPECT_EQ(units.front(), Printed<CharType>::UNTOUCHED) << "too small a buffer is left alone";
    EXPECT_EQ(Vorn::printDec(value, units.data(), static_cast<unsigned int>(size), precision, exponent), size);
    return narrow(units.data(), size);
}

template <class T>
void expectLongDec(T value, unsigned int precision) {
    for (const FloatExponent exponent : {FLOAT_EXPONENT_NONE, FLOAT_EXPONENT_ALWAYS}) {
        const std::string expected = formatted(value, precision, exponent);
        SCOPED_TRACE(formatted(value, 9, exponent) + (sizeof(T) == 4 ? "f, precision " : ", precision ") +
                     std::to_string(precision));
        EXPECT_EQ(Vorn::measureDec(value, precision, exponent), expected.size());
        EXPECT_TRUE((printedExactly<unsigned char>(value, precision, exponent, expected.size()) == expected));
        EXPECT_TRUE((printedExactly<UTF16Char>(value, precision, exponent, expected.size()) == expected));
    }
    const std::size_t scientific = formatted(value, precision, FLOAT_EXPONENT_ALWAYS).size();
    const std::size_t both = streamed(value, 6, SCIENTIFIC | FIXED, std::locale::classic()).size();
    for (const FloatExponent exponent : {FLOAT_EXPONENT_AUTO, static_cast<FloatExponent>(3)}) {
        EXPECT_EQ(Vorn::measureDec(value, precision, exponent), std::min(scientific, both)) << precision;
        unsigned char buffer[64] = {};
        EXPECT_EQ(Vorn::printDec(value, buffer, 64, precision, exponent), std::min(scientific, both)) << precision;
    }
}

// Values with the most digits before and after the point, with few and with none.
constexpr double LONGEST[] = {0.0,
                              -0.0,
                              1.5,
                              -0.1,
                              1e22,
                              std::numeric_limits<double>::max(),
                              std::numeric_limits<double>::min(),
                              -std::numeric_limits<double>::denorm_min(),
                              0x1.FFFFFFFFFFFFFp-1022,
                              0x0.FFFFFFFFFFFFFp-1022};
constexpr float LONGEST_SINGLE[] = {0.0f,
                                    1.5f,
                                    -0.1f,
                                    1e10f,
                                    std::numeric_limits<float>::max(),
                                    std::numeric_limits<float>::min(),
                                    -std::numeric_limits<float>::denorm_min(),
                                    0x1.FFFFFEp-126f,
                                    0x0.FFFFFEp-126f};

TEST(PrintDecFloat, EveryPrecisionPrintsAllItsDigits) {
    for (const unsigned int precision : {0u, 1u, 111u, 148u, 149u, 150u, 766u, 767u, 1073u, 1074u, 1075u, 1100u}) {
        for (const double value : LONGEST) expectLongDec(value, precision);
        for (const float value : LONGEST_SINGLE) expectLongDec(value, precision);
    }
    for (const double value : {1.5, -std::numeric_limits<double>::denorm_min()}) expectLongDec(value, 1000000);
    for (const float value : {-1.5f, std::numeric_limits<float>::denorm_min()}) expectLongDec(value, 1000000);
    expectLongDec(-0.1, 10000000); // such a text once overflowed the stack
}

TEST(PrintDecFloat, WhatIsNotFiniteHasNoZeros) {
    for (const unsigned int precision : {1074u, 1100u, 1000000u, 2147483647u, 2147483648u, 4294967295u}) {
        for (const FloatExponent exponent : {FLOAT_EXPONENT_AUTO, FLOAT_EXPONENT_NONE, FLOAT_EXPONENT_ALWAYS}) {
            expectDec(INFINITE<double>, precision, exponent, "inf");
            expectDec(-INFINITE<float>, precision, exponent, "-inf");
            expectDec(NOT_A_NUMBER<double>, precision, exponent, "nan");
            expectDec(NOT_A_NUMBER<float>, precision, exponent, "nan");
        }
    }
}

TEST(PrintDecFloat, TheLargestPrecisionsAreCountedOnly) {
    const struct {
        double value;
        FloatExponent exponent;
        unsigned int others; // characters besides the digits behind the point
    } rows[] = {
        {1.5, FLOAT_EXPONENT_NONE, 2},   {-1.5, FLOAT_EXPONENT_ALWAYS, 7},
        {1e22, FLOAT_EXPONENT_NONE, 24}, {std::numeric_limits<double>::max(), FLOAT_EXPONENT_NONE, 310},
        {0.0, FLOAT_EXPONENT_ALWAYS, 6}, {std::numeric_limits<double>::denorm_min(), FLOAT_EXPONENT_ALWAYS, 7},
    };
    unsigned char byte = 0xEE;
    UTF16Char unit = 0xEEEE;
    for (const auto& row : rows) {
        for (const unsigned int precision : {2147483646u, 2147483647u}) {
            SCOPED_TRACE(row.value);
            const unsigned int size = precision + row.others;
            EXPECT_EQ(Vorn::measureDec(row.value, precision, row.exponent), size);
            EXPECT_EQ(Vorn::printDec(row.value, &byte, 1, precision, row.exponent), size);
            EXPECT_EQ(Vorn::printDec(row.value, &unit, 1, precision, row.exponent), size);
            EXPECT_EQ(Vorn::printDec(row.value, static_cast<unsigned char*>(nullptr), 0, precision, row.exponent),
                      size);
        }
    }
    EXPECT_EQ(byte, 0xEE);
    EXPECT_EQ(unit, 0xEEEE);
    EXPECT_EQ(Vorn::measureDec(0.5f, 2147483647u, FLOAT_EXPONENT_NONE), 2147483649u);
    EXPECT_EQ(Vorn::measureDec(0.5f, 2147483647u, FLOAT_EXPONENT_ALWAYS), 2147483653u);
}

// A stream reads these as negative.
TEST(PrintDecFloat, PrecisionsFromTwoToThe31stOnPrintSixDigits) {
    for (const unsigned int precision : {2147483648u, 2147483649u, 4294967295u}) {
        expectDec(1.5, precision, FLOAT_EXPONENT_NONE, "1.500000");
        expectDec(-0.1f, precision, FLOAT_EXPONENT_NONE, "-0.100000");
        expectDec(1.5, precision, FLOAT_EXPONENT_ALWAYS, "1.500000e+00");
        expectDec(-0.1f, precision, FLOAT_EXPONENT_ALWAYS, "-1.000000e-01");
        expectAuto<double, unsigned char>(123.456, precision, FLOAT_EXPONENT_AUTO);
    }
}

template <class StreamChar>
class Grouping : public std::numpunct<StreamChar> {
protected:
    std::string do_grouping() const override { return "\3"; }
    StreamChar do_thousands_sep() const override { return '\''; }
};

// Installs a global locale during its lifetime.
class GlobalLocale {
public:
    explicit GlobalLocale(const std::locale& locale) : m_former(std::locale::global(locale)) {}
    ~GlobalLocale() { std::locale::global(m_former); }

private:
    std::locale m_former;
};

TEST(PrintDecFloat, OnlyMeasuringFollowsTheGlobalLocale) {
    const std::locale narrowOnly(std::locale::classic(), new Grouping<char>);
    const GlobalLocale global(std::locale(narrowOnly, new Grouping<wchar_t>)); // the stream of UTF-16 units is wide
    EXPECT_EQ(Vorn::measureDec(1234567.0, 0, FLOAT_EXPONENT_NONE), 9u);        // 1'234'567
    EXPECT_EQ(Vorn::measureDec(1234567.0f, 0, FLOAT_EXPONENT_NONE), 9u);
    unsigned char bytes[16];
    ASSERT_EQ(Vorn::printDec(1234567.0, bytes, 16, 0, FLOAT_EXPONENT_NONE), 7u);
    EXPECT_EQ(narrow(bytes, 7), "1234567");
    UTF16Char units[16];
    ASSERT_EQ(Vorn::printDec(1234567.0f, units, 16, 0, FLOAT_EXPONENT_NONE), 7u);
    EXPECT_EQ(narrow(units, 7), "1234567");
    EXPECT_EQ(Vorn::printDec(1234567.0, static_cast<unsigned char*>(nullptr), 0, 0, FLOAT_EXPONENT_NONE), 7u);
    EXPECT_EQ(Vorn::measureDec(1234567.0, 5000, FLOAT_EXPONENT_NONE), 9u + 1 + 5000);
}

TEST(PrintHexFloat, PrintersTakeNothingFromTheHeap) {
    unsigned char bytes[40];
    UTF16Char units[40];
    EXPECT_EQ(allocationsDuring([&] {
                  Vorn::printHex(0.1f, bytes, 40);
                  Vorn::printHex(0.1, units, 40);
                  Vorn::measureHex(0.1);
              }),
              0u);
}

} // namespace
