#include "Vorn/ParseFloat.h"

#include "Vorn/String/String.h"

#include "Reference/FloatParser.h"
#include "Support/AllocationCounter.h"
#include "Support/Random.h"
#include "Support/Report.h"
#include "Support/Texts.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

namespace {

using Vorn::UTF16Char;

constexpr unsigned int WHOLE = 0xFFFFFFF0; // stands for the length of the text
constexpr unsigned int UNTOUCHED = 0xDEADBEEF;
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

template <class T, class CharType>
T parse(const CharType* str, unsigned int* count, unsigned int length) {
    if constexpr (sizeof(T) == sizeof(float)) {
        return Vorn::parseFloat(str, count, length);
    } else {
        return Vorn::parseDouble(str, count, length);
    }
}

unsigned int bitsOf(float value) { return std::bit_cast<unsigned int>(value); }
unsigned long long bitsOf(double value) { return std::bit_cast<unsigned long long>(value); }

// The value of a whole text, through both unit types.
template <class T>
T valueOf(const std::string& text) {
    const TerminatedUnits units(std::string_view{text});
    const T value = parse<T>(units.bytes(), nullptr, units.size());
    EXPECT_EQ(bitsOf(parse<T>(units.units(), nullptr, units.size())), bitsOf(value)) << text;
    return value;
}

struct Row {
    const char* text;
    unsigned int length;
    double value; // exact in both types
    unsigned int count;
};

template <class T, class CharType>
void expectRow(const Row& row) {
    SCOPED_TRACE(std::string(sizeof(T) == 4 ? "float" : "double") + " of \"" + row.text + "\", length " +
                 std::to_string(row.length));
    const TerminatedUnits text(std::string_view{row.text});
    const unsigned int length = row.length == WHOLE ? text.size() : row.length;
    unsigned int count = UNTOUCHED;
    const T value = parse<T>(text.as<CharType>(), &count, length);
    EXPECT_EQ(bitsOf(value), bitsOf(static_cast<T>(row.value))) << value;
    EXPECT_EQ(count, row.count);
    EXPECT_EQ(bitsOf(parse<T>(text.as<CharType>(), nullptr, length)), bitsOf(value));
}

template <class T>
void expectRowsOf(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        expectRow<T, unsigned char>(row);
        expectRow<T, UTF16Char>(row);
    }
}

void expectRows(const std::vector<Row>& rows) {
    expectRowsOf<float>(rows);
    expectRowsOf<double>(rows);
}

TEST(ParseFloat, DecimalNumbers) {
    expectRows({
        {"3.5", WHOLE, 3.5, 3},
        {"  -2.5e1x", WHOLE, -25, 8},
        {"\t\n\v\f\r 2", WHOLE, 2, 7},
        {".5", WHOLE, 0.5, 2},
        {"5.", WHOLE, 5, 2},
        {".", WHOLE, 0, 1},
        {"-.", WHOLE, -0.0, 2},
        {"+3.5", WHOLE, 3.5, 4},
        {"- 3.5", WHOLE, -3.5, 5}, // the whole part skips white space
        {"1.5.5", WHOLE, 1.5, 3},
        {"1. 5", WHOLE, 1, 2}, // the fraction does not
        {"1.5/", WHOLE, 1.5, 3},
        {"1.5:", WHOLE, 1.5, 3},
        {"007", WHOLE, 7, 3},
        {"0", WHOLE, 0, 1},
        {"-0", WHOLE, -0.0, 2},
        {"+0", WHOLE, 0, 2},
        {"--1", WHOLE, -0.0, 1},
        {"12345", 3, 123, 3},
        {"1.55", 3, 1.5, 3},
        {"1.55", 2, 1, 2},
        {"1.55", 1, 1, 2}, // the point is looked at, and consumed, behind the length
        {"5.", 1, 5, 2},
        {"   125", 2, 0, 0},
        {"   125", 3, 0, 0},
        {"   125", 4, 1, 4},
    });
}

TEST(ParseFloat, DecimalExponents) {
    expectRows({
        {"1e5", WHOLE, 1, 1}, // two units must follow the letter within the length
        {"1e5", 4, 100000, 3},
        {"1e5", NPOS, 100000, 3},
        {"1E05", WHOLE, 100000, 4},
        {"1e+5", WHOLE, 100000, 4},
        {"1e+", WHOLE, 1, 1},
        {"1e+", NPOS, 1, 3}, // the sign of an exponent counts without a digit
        {"1e+x", WHOLE, 1, 3},
        {"1exy", WHOLE, 1, 2},
        {"1e", NPOS, 1, 2},
        {"1e 5", WHOLE, 100000, 4},
        {"1e- 2", WHOLE, 0.01, 5},
        {"e05", WHOLE, 0, 3},
        {"-e05", WHOLE, -0.0, 4},
        {".e05", WHOLE, 0, 4},
        {"5.e01", WHOLE, 50, 5},
        {"1e00", WHOLE, 1, 4},
        {"1e1234", WHOLE, HUGE_VAL, 6},
        {"-1e1234", WHOLE, -HUGE_VAL, 7},
        {"1e-1234", WHOLE, 0, 7},
        {"-1e-1234", WHOLE, -0.0, 8},
        {"1e4294967297", WHOLE, 10, 12}, // the exponent wraps
        {"1e2147483648", WHOLE, 0, 12},
    });
    expectRowsOf<double>({{"1e50", WHOLE, 1e50, 4}});
    EXPECT_TRUE(std::isnan(valueOf<float>("0e999"))); // 0 times an overflown power
    EXPECT_TRUE(std::isnan(valueOf<double>("0e999")));
}

TEST(ParseFloat, TextWithoutANumber) {
    expectRows({
        {"nan", WHOLE, NOT_A_NUMBER, 0},
        {"NaN", WHOLE, NOT_A_NUMBER, 0},
        {"nonsense", WHOLE, NOT_A_NUMBER, 0},
        {" n", WHOLE, NOT_A_NUMBER, 0},
        {"N", NPOS, NOT_A_NUMBER, 0},
        {"n1", WHOLE, NOT_A_NUMBER, 0},
        {"inf", WHOLE, NOT_A_NUMBER, 0},
        {"-INF", WHOLE, NOT_A_NUMBER, 0},
        {"Infinity", WHOLE, NOT_A_NUMBER, 0},
        {"+i", WHOLE, NOT_A_NUMBER, 0},
        {" i", WHOLE, NOT_A_NUMBER, 0},
        {"+N", WHOLE, 0, 1}, // behind a sign an n is a letter like any other
        {"-N", WHOLE, -0.0, 1},
        {"abc", WHOLE, 0, 0},
        {"  abc", WHOLE, 0, 2},
        {"-abc", WHOLE, -0.0, 1},
        {"", NPOS, 0, 0},
        {"-", WHOLE, 0, 0}, // the length ends before the number begins
        {"-", 2, -0.0, 1},
        {" ", WHOLE, 0, 0},
        {"\x0E", WHOLE, 0, 0},
        {"\x85", WHOLE, 0, 0},
        {"M", WHOLE, 0, 0},
        {"O", WHOLE, 0, 0},
        {"H", WHOLE, 0, 0},
        {"J", WHOLE, 0, 0},
        {"*5", WHOLE, 0, 0},
        {"/5", WHOLE, 0, 0},
    });
}

TEST(ParseFloat, CommaAndUnboundedSignsLeaveTheCountAlone) {
    expectRows({
        {",5", WHOLE, NOT_A_NUMBER, UNTOUCHED},
        {" ,5", WHOLE, NOT_A_NUMBER, UNTOUCHED},
        {",", 0, NOT_A_NUMBER, UNTOUCHED},
        {"-,5", WHOLE, -0.0, 1},
        {"-1", NPOS, -1, 2},
        {" -1", NPOS, NOT_A_NUMBER, UNTOUCHED},
        {" +1", NPOS, NOT_A_NUMBER, UNTOUCHED},
        {" 1", NPOS, 1, 2},
        {"-1", 0x7FFFFFFE, -1, 2},
        {"-1", 0x7FFFFFFF, NOT_A_NUMBER, UNTOUCHED},
        {" -1", 0x7FFFFFFF, -1, 3},
        {"   -1", 1, NOT_A_NUMBER, UNTOUCHED},
        {"   -1", 2, 0, 0},
        {"   -1", 5, -1, 5},
    });
}

TEST(ParseFloat, ZeroLengthIsNoFailure) {
    expectRows({
        {"", 0, 0, 0},
        {"5", 0, 0, 0},
        {"-5", 0, 0, 0},
        {"  5", 0, 0, 0},
        {"n", 0, NOT_A_NUMBER, 0},
        {" N", 0, NOT_A_NUMBER, 0},
        {"i", 0, NOT_A_NUMBER, 0},
        {"-I", 0, NOT_A_NUMBER, 0},
        {",", 0, NOT_A_NUMBER, UNTOUCHED},
    });
}

TEST(ParseFloat, HexadecimalNumbers) {
    expectRows({
        {"0x10", WHOLE, 16, 4},
        {"0X10", WHOLE, 16, 4},
        {"-0xaB", WHOLE, -171, 5},
        {"  +0x10", WHOLE, 16, 7},
        {"0x1.8", WHOLE, 1.5, 5},
        {"0x1.8p1", WHOLE, 3, 7},
        {"0x1.8P1", WHOLE, 3, 7},
        {"0x1p-1", WHOLE, 0.5, 6},
        {"0x1p+4", WHOLE, 16, 6},
        {"0x1p4", WHOLE, 16, 5},
        {"0x1p4", 4, 1, 3}, // one unit must follow the letter within the length
        {"0x1p", WHOLE, 1, 3},
        {"0x1p", NPOS, 1, 4},
        {"0x1px", WHOLE, 1, 4},
        {"0x1p-", WHOLE, 1, 5},
        {"0x1.p4", WHOLE, 16, 6},
        {"0x1.", WHOLE, 1, 4},
        {"0x1.", NPOS, 1, 4},
        {"0x1.8", 4, 1, 4},
        {"0x1.8", 3, 1, 3},
        {"0x12", 3, 1, 3},
        {"0x", WHOLE, 0, 1}, // decimal 0
        {"0x", 3, 0, 2},
        {"0x", NPOS, 0, 2},
        {"0xg", WHOLE, 0, 2},
        {"-0xg", WHOLE, -0.0, 3},
        {"0x.8", WHOLE, 0, 2}, // no digit before the point
        {"0x-1", WHOLE, 0, 2},
        {"0x 1", WHOLE, 1, 4},               // the parts skip white space
        {"0x1.8 5", WHOLE, 1.5, 7},          // and so does the search for digits beyond the limit
        {"0x1. 8", WHOLE, 1 + 8 / 256.0, 6}, // which counts as a digit
        {"0x0x5", WHOLE, 5, 5},              // and a further prefix
        {"0x1.0x8", WHOLE, 1 + 8 / 4096.0, 7},
        {"0x1p99999", WHOLE, HUGE_VAL, 9},
        {"-0x1p99999", WHOLE, -HUGE_VAL, 10},
        {"0x1p-99999", WHOLE, 0, 10},
        {"0x1.000000", WHOLE, 1, 10},
        {"0x1.000001", WHOLE, 0x1.000001p0, 10},
        {"0x1e3", WHOLE, 0x1e3, 5}, // an e is a digit
    });
    expectRowsOf<float>({
        {"0x1.123456789", WHOLE, 0x1.123456p0, 13}, // six digits count
        {"0x1.80000000", WHOLE, 1.5, 12},
        {"0x1.0000001", WHOLE, 1, 11},
        {"0x1.0000018", WHOLE, 1, 11}, // a seventh digit would round up
        {"0xFFFFFFFFFFFFFFFF", WHOLE, 0x1p64, 18},
        {"0x10000000000000000", WHOLE, 0, 19},
    });
    expectRowsOf<double>({
        {"0x1.123456789", WHOLE, 1 + 0x23456789 / 16.0, 13},
        {"0x1.0000001", WHOLE, 0x1.0000001p0, 11},
        {"0x1.80000000", WHOLE, 0.5, 12}, // with 8 digits the denominator is negative
        {"0x1.00000001", WHOLE, 1 - 0x1p-32, 12},
        {"0x1.000000001", WHOLE, 1 + 1 / 16.0, 13}, // and from 9 digits on it starts again
        {"0x1.0000000001", WHOLE, 1 + 1 / 256.0, 14},
        {"0x1.00000000001", WHOLE, 1 + 1 / 4096.0, 15},
        {"0x1.000000000001", WHOLE, 1 + 1 / 65536.0, 16},
        {"0x1.0000000000001", WHOLE, 1, 17}, // twelve digits count
        {"0x1.100000000000", WHOLE, 1, 16},  // of which the last eight have bits
        {"0xFFFFFFFF", WHOLE, 4294967295.0, 10},
        {"0x100000000", WHOLE, 0, 11},
    });
}

TEST(ParseFloat, WholePartsWrapAtTheirOwnWidth) {
    expectRowsOf<double>({
        {"4294967295", WHOLE, 4294967295.0, 10},
        {"4294967296", WHOLE, 0, 10},
        {"99999999999", WHOLE, 1215752191, 11},
    });
    expectRowsOf<float>({
        {"4294967296", WHOLE, 4294967296.0, 10},
        {"18446744073709551616", WHOLE, 0, 20},
        {"18446744073709551615", WHOLE, 0x1p64, 20},
    });
}

struct Bits {
    const char* text;
    unsigned int asFloat;
    unsigned long long asDouble;
};

// Computed with exact arithmetic and one rounding for each step.
constexpr Bits BITS[] = {
    {"0.1", 0x3DCCCCCD, 0x3FB999999999999A},
    {"0.2", 0x3E4CCCCD, 0x3FC999999999999A},
    {"0.3", 0x3E99999A, 0x3FD3333333333334},
    {"0.7", 0x3F333333, 0x3FE6666666666667},
    {"0.123456789", 0x3DFCD6EA, 0x3FBF9ADD37396360},
    {"123.456", 0x42F6E979, 0x405EDD2F1A9FBE77},
    {"3.14159265358979", 0x40490FD9, 0x400921FB54442D11},
    {"2.718281828459045", 0x402DF854, 0x4005BF0A8B145769},
    {"0.999999999", 0x3F800000, 0x3FEFFFFFFF768FA1},
    {"9.99999999999", 0x411FFFFF, 0x4023FFFFFFFFEA03},
    {"1234567.891", 0x4996B43F, 0x4132D687E4189375},
    {"16777217", 0x4B800000, 0x4170000010000000},
    {"16777219", 0x4B800002, 0x4170000030000000},
    {"33554435", 0x4C000001, 0x4180000018000000},
    {"4294967295", 0x4F800000, 0x41EFFFFFFFE00000},
    {"4294967297.5", 0x4F800000, 0x3FF8000000000000},
    {"9007199254740993", 0x5A000000, 0x3FF0000000000000},
    {"9223372036854775807", 0x5F000000, 0x41EFFFFFFFE00000},
    {"9223372036854775809", 0x5F000000, 0x3FF0000000000000},
    {"18446744073709551615", 0x5F800000, 0x41EFFFFFFFE00000},
    {"18446744073709551616.25", 0x3E800000, 0x3FD0000000000000},
    {"1.5e10", 0x505F8476, 0x420BF08EB0000000},
    {"1e-05", 0x3727C5AC, 0x3EE4F8B588E368F1},
    {"1e010", 0x501502F9, 0x4202A05F20000000},
    {"1e-10", 0x2EDBE6FF, 0x3DDB7CDFD9D7BDBB},
    {"1e038", 0x7E96769A, 0x47D2CED32A16A1B1},
    {"1e039", 0x7F800000, 0x48078287F49C4A1E},
    {"1e-38", 0x006CE3EE, 0x380B38FB9DAA78E4},
    {"1e-39", 0x00000000, 0x37D5C72FB1552D83},
    {"1e0308", 0x7F800000, 0x7FE1CCF385EBC8A3},
    {"1e0309", 0x7F800000, 0x7FF0000000000000},
    {"1e-308", 0x00000000, 0x000730D67819E8D1},
    {"1e-320", 0x00000000, 0x0000000000000000},
    {"3.4028235e38", 0x7F800000, 0x47EFFFFFE54DAFF7},
    {"1.17549435e-38", 0x00800000, 0x380FFFFFFF9FDBA6},
    {"0.33333333333333333333333333333333333333333333333333", 0x3EAAAAAB, 0x3FD5555555555556},
    {"0.1234567890123456789012345678901234567890123456789", 0x3DFCD6EA, 0x3FBF9ADD3746F65F},
    {"123456789.987654321", 0x4CEB79A3, 0x419D6F3457F35BA6},
    {"98765.4321e-07", 0x3C21D139, 0x3F843A2730AD044C},
    {"12.5e+2", 0x449C4000, 0x4093880000000000},
    {"255.255", 0x437F4148, 0x406FE828F5C28F5C},
    {"0.0625", 0x3D800000, 0x3FB0000000000001},
    {"100000.00001", 0x47C35000, 0x40F86A00000A7C5B},
    {"8388607.5", 0x4AFFFFFF, 0x415FFFFFE0000000},
    {"8388608.5", 0x4B000001, 0x4160000010000000},
    {"1.00000011920928955", 0x3F800001, 0x3FF0000020000000},
};

TEST(ParseFloat, BitsAreThoseOfTheSteps) {
    for (const Bits& row : BITS) {
        EXPECT_EQ(bitsOf(valueOf<float>(row.text)), row.asFloat) << row.text;
        EXPECT_EQ(bitsOf(valueOf<double>(row.text)), row.asDouble) << row.text;
    }
}

TEST(ParseFloat, EveryDecimalExponent) {
    for (int exponent = -400; exponent <= 400; ++exponent) {
        std::string text = exponent < 0 ? "1e-" : "1e+";
        text += std::to_string(std::abs(exponent));
        EXPECT_EQ(bitsOf(valueOf<float>(text)), bitsOf(reference::integerPower<float>(10, exponent))) << text;
        EXPECT_EQ(bitsOf(valueOf<double>(text)), bitsOf(reference::integerPower<double>(10, exponent))) << text;
    }
}

// `mantissa`, of `digits` bits with the highest one set, as 1 and a fraction times two to the power `exponent`: rounded
// to even where subnormal numbers have fewer bits.
template <class UInt>
UInt composed(UInt mantissa, int digits, int exponent, int maxExponent) {
    if (exponent > maxExponent) return static_cast<UInt>(2 * maxExponent + 1) << (digits - 1);
    const int minExponent = 1 - maxExponent;
    if (exponent >= minExponent) {
        return (static_cast<UInt>(exponent + maxExponent - 1) << (digits - 1)) + mantissa;
    }
    const int shift = minExponent - exponent;
    if (shift > digits) return 0;
    const UInt half = UInt(1) << (shift - 1);
    const UInt rest = mantissa & (2 * half - 1);
    UInt kept = shift == digits ? 0 : mantissa >> shift;
    if (rest > half || (rest == half && (kept & 1))) ++kept;
    return kept;
}

TEST(ParseFloat, EveryBinaryExponent) {
    struct Fraction {
        const char* text;
        unsigned int asFloat;
        unsigned long long asDouble;
    };
    constexpr Fraction FRACTIONS[] = {
        {"0x1", 0x800000, 0x10000000000000},        {"0x1.8", 0xC00000, 0x18000000000000},
        {"0x1.000002", 0x800001, 0x10000020000000}, {"0x1.FFFFFE", 0xFFFFFF, 0x1FFFFFE0000000},
        {"0x1.555554", 0xAAAAAA, 0x15555540000000},
    };
    for (const Fraction& fraction : FRACTIONS) {
        for (int exponent = -1100; exponent <= 1100; ++exponent) {
            std::string text = fraction.text;
            text += 'p';
            text += std::to_string(exponent);
            EXPECT_EQ(bitsOf(valueOf<float>(text)), composed(fraction.asFloat, 24, exponent, 127)) << text;
            EXPECT_EQ(bitsOf(valueOf<double>(text)), composed(fraction.asDouble, 53, exponent, 1023)) << text;
        }
    }
}

template <class T, class CharType>
void expectAsReference(const TerminatedUnits& text, unsigned int length) {
    const reference::FloatParser<T, CharType> reference(text.as<CharType>(), text.size());
    const auto expected = reference.parse(length);
    unsigned int count = UNTOUCHED;
    const T value = parse<T>(text.as<CharType>(), &count, length);
    std::string description = sizeof(T) == 4 ? "float of \"" : "double of \"";
    description += narrow(text.bytes(), text.size()) + "\", length " + std::to_string(length);
    if (std::isnan(expected.value)) {
        ASSERT_TRUE(std::isnan(value)) << description;
    } else {
        ASSERT_EQ(bitsOf(value), bitsOf(expected.value)) << description;
    }
    ASSERT_EQ(count, expected.count.value_or(UNTOUCHED)) << description;
}

// Number texts, most of them malformed.
TerminatedUnits randomText(Random& random) {
    std::string text;
    const auto add = [&](std::string_view alphabet, unsigned int limit) {
        for (unsigned int size = random.below(limit + 1); size > 0; --size) {
            text.push_back(alphabet[random.below(static_cast<unsigned int>(alphabet.size()))]);
        }
    };
    const auto sometimes = [&](std::string_view part) {
        if (random.below(3) == 0) text += part;
    };
    const bool hexadecimal = random.below(3) == 0;
    const std::string_view digits = hexadecimal ? "0123456789abcdefABCDEF" : "0123456789";
    if (random.below(4) == 0) add(" \t\n", 3);
    if (random.below(3) == 0) add("+-", 1);
    if (random.below(40) == 0) add("nNiI,", 1);
    if (hexadecimal) text += random.below(2) ? "0x" : "0X";
    add(digits, random.below(4) == 0 ? 22 : 7);
    if (random.below(4) != 0) {
        text += '.';
        if (random.below(10) == 0) add(" ", 7);
        if (random.below(10) == 0) text += "0x";
        add(digits, random.below(4) == 0 ? 60 : 9);
    }
    if (random.below(20) == 0) add(" 0x", 4);
    if (random.below(2)) {
        text += hexadecimal ? (random.below(2) ? 'p' : 'P') : (random.below(2) ? 'e' : 'E');
        sometimes("-");
        sometimes("+");
        add("0123456789", random.below(8) == 0 ? 10 : 2);
    }
    if (random.below(4) == 0) add("x.eEpP-+ ,nN/:@G`g", 3);
    std::vector<unsigned int> codes;
    for (const char c : text) codes.push_back(static_cast<unsigned char>(c) + (random.below(200) == 0 ? 0x100u : 0u));
    return TerminatedUnits(codes);
}

TEST(ParseFloat, RandomTextsAgreeWithThePlainReference) {
    Random random(7);
    for (int round = 0; round < repetitions(300000); ++round) {
        const TerminatedUnits text = randomText(random);
        const unsigned int lengths[] = {text.size(), NPOS, random.below(16), text.size() + 1};
        const unsigned int length = lengths[random.below(4)];
        expectAsReference<float, unsigned char>(text, length);
        expectAsReference<float, UTF16Char>(text, length);
        expectAsReference<double, unsigned char>(text, length);
        expectAsReference<double, UTF16Char>(text, length);
        if (HasFatalFailure()) return;
    }
}

TEST(ParseFloat, ParseRealIsParseFloat) {
    for (const Bits& row : BITS) {
        const TerminatedUnits text(std::string_view{row.text});
        unsigned int count = UNTOUCHED;
        EXPECT_EQ(bitsOf(Vorn::parseReal(text.bytes(), &count, text.size())), row.asFloat);
        EXPECT_EQ(count, text.size());
        EXPECT_EQ(bitsOf(Vorn::parseReal(text.units(), &count, text.size())), row.asFloat);
        EXPECT_EQ(count, text.size());
    }
}

TEST(ParseFloat, WithoutALengthTheTextEndsAtItsTerminator) {
    // Longer than any length that could have been meant by mistake, such as one unit or a few.
    std::string digits = "12.";
    digits.append(90, '0');
    digits += "5e1";
    const TerminatedUnits text(std::string_view{digits});
    const auto expectWhole = [&](auto parse, auto expected) {
        unsigned int count = UNTOUCHED;
        EXPECT_EQ(parse(text.bytes(), &count), expected);
        EXPECT_EQ(count, text.size());
        count = UNTOUCHED;
        EXPECT_EQ(parse(text.units(), &count), expected);
        EXPECT_EQ(count, text.size());
    };
    expectWhole([](auto str, unsigned int* count) { return Vorn::parseFloat(str, count); }, 120.0f);
    expectWhole([](auto str, unsigned int* count) { return Vorn::parseDouble(str, count); }, 120.0);
    expectWhole([](auto str, unsigned int* count) { return Vorn::parseReal(str, count); }, 120.0f);
    EXPECT_EQ(Vorn::parseFloat(text.bytes()), 120.0f);
    EXPECT_EQ(Vorn::parseFloat(text.units()), 120.0f);
    EXPECT_EQ(Vorn::parseDouble(text.bytes()), 120.0);
    EXPECT_EQ(Vorn::parseDouble(text.units()), 120.0);
    EXPECT_EQ(Vorn::parseReal(text.bytes()), 120.0f);
    EXPECT_EQ(Vorn::parseReal(text.units()), 120.0f);
}

TEST(ParseFloat, NullPointersAreRefused) {
    const unsigned char* const bytes = nullptr;
    const UTF16Char* const units = nullptr;
    unsigned int count = UNTOUCHED;
    const auto expectRefused = [](auto run) {
        expectRaises<1>(run, "str : null pointer!", "VornPrivate::parseFloatType", "Source/Vorn/ParseFloat");
    };
    expectRefused([&] { Vorn::parseFloat(bytes, &count, 1); });
    expectRefused([&] { Vorn::parseFloat(units, &count, 1); });
    expectRefused([&] { Vorn::parseDouble(bytes, &count, 1); });
    expectRefused([&] { Vorn::parseDouble(units, &count, 1); });
    expectRefused([&] { Vorn::parseReal(bytes, &count, 0); });
    expectRefused([&] { Vorn::parseReal(units, &count, 0); });
    EXPECT_EQ(count, UNTOUCHED);
}

TEST(ParseFloatString, EitherBufferIsRead) {
    const TerminatedUnits text("-2.5x");
    for (const Vorn::String& string : {Vorn::String(text.bytes()), Vorn::String(text.units())}) {
        EXPECT_EQ(Vorn::parseFloat(string), -2.5f);
        EXPECT_EQ(Vorn::parseDouble(string), -2.5);
        EXPECT_EQ(Vorn::parseReal(string), -2.5f);
        EXPECT_EQ(string.getData()->getRefCount(), 1u);
    }
    const Vorn::String utf8(text.bytes());
    Vorn::parseFloat(utf8);
    EXPECT_EQ(utf8.getData()->getPrivateBuffer<UTF16Char>(), nullptr) << "nothing is converted";
}

TEST(ParseFloatString, UTF16IsReadWhereThereAreBoth) {
    unsigned char text[] = {'4', '2', 0};
    const Vorn::String string(text);
    ASSERT_NE(string.getData()->getBuffer<UTF16Char>(), nullptr);
    text[0] = '7'; // now the two differ
    EXPECT_EQ(Vorn::parseFloat(string), 42.0f);
    EXPECT_EQ(Vorn::parseDouble(string), 42.0);
    EXPECT_EQ(Vorn::parseReal(string), 42.0f);
}

TEST(ParseFloatString, LengthBoundsTheText) {
    const TerminatedUnits text("1.5e5");
    EXPECT_EQ(Vorn::parseDouble(Vorn::String(text.bytes())), 1.5); // two units must follow the letter
    EXPECT_EQ(Vorn::parseFloat(Vorn::String(text.units(), 1)), 1.0f);
}

TEST(ParseFloatString, NullStringsAreNaNAndEmptyOnesZero) {
    EXPECT_EQ(bitsOf(Vorn::parseFloat(Vorn::String())), 0x7FC00000u);
    EXPECT_EQ(bitsOf(Vorn::parseReal(Vorn::String())), 0x7FC00000u);
    EXPECT_EQ(bitsOf(Vorn::parseDouble(Vorn::String())), 0x7FF8000000000000u);
    EXPECT_EQ(bitsOf(Vorn::parseFloat(Vorn::String::getEmptyString())), 0u);
    EXPECT_EQ(bitsOf(Vorn::parseReal(Vorn::String::getEmptyString())), 0u);
    EXPECT_EQ(bitsOf(Vorn::parseDouble(Vorn::String::getEmptyString())), 0u);
}

TEST(ParseFloat, ParsersTakeNothingFromTheHeap) {
    const TerminatedUnits text("-123.456e-07");
    EXPECT_EQ(allocationsDuring([&] {
                  Vorn::parseFloat(text.bytes(), nullptr, text.size());
                  Vorn::parseDouble(text.units(), nullptr, text.size());
              }),
              0u);
}

} // namespace
