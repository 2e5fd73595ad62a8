// Numbers between guard pages: parsers read no further than the terminator, printers write no further than their text.
#include "Support/GuardedBuffer.h"
#include "Vorn/ParseFloat.h"
#include "Vorn/ParseInt.h"
#include "Vorn/PrintFloat.h"
#include "Vorn/PrintInt.h"
#include "Vorn/Types.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace {

using Vorn::UTF16Char;

template <class CharType>
class GuardedNumbers : public testing::Test {};
using CharTypes = testing::Types<unsigned char, UTF16Char>;
TYPED_TEST_SUITE(GuardedNumbers, CharTypes, );

constexpr GuardedEdge EDGES[] = {GuardedEdge::END, GuardedEdge::START};

// The values that all parsers read from a text, and the counts.
template <class CharType>
std::vector<std::uint64_t> parsed(const CharType* text, unsigned int length) {
    std::vector<std::uint64_t> results;
    const auto add = [&](auto parse) {
        unsigned int count = 77;
        const auto value = parse(&count);
        using Value = std::remove_const_t<decltype(value)>;
        if constexpr (std::is_same_v<Value, float>)
            results.push_back(std::isnan(value) ? 1 : std::bit_cast<std::uint32_t>(value));
        else if constexpr (std::is_same_v<Value, double>)
            results.push_back(std::isnan(value) ? 1 : std::bit_cast<std::uint64_t>(value));
        else
            results.push_back(static_cast<std::uint64_t>(value));
        results.push_back(count);
    };
    add([&](unsigned int* count) { return Vorn::parseFloat(text, count, length); });
    add([&](unsigned int* count) { return Vorn::parseDouble(text, count, length); });
    add([&](unsigned int* count) { return Vorn::parseReal(text, count, length); });
    if (length == 0) return results; // refused by the others
    add([&](unsigned int* count) { return Vorn::parseInt<int>(text, count, length); });
    add([&](unsigned int* count) { return Vorn::parseInt<long long>(text, count, length); });
    add([&](unsigned int* count) { return Vorn::parseUInt<unsigned int>(text, count, length); });
    add([&](unsigned int* count) { return Vorn::parseHex<int>(text, count, length); });
    add([&](unsigned int* count) { return Vorn::parseUHex<unsigned long long>(text, count, length); });
    add([&](unsigned int* count) { return Vorn::parseDec<short>(text, count, length); });
    add([&](unsigned int* count) { return Vorn::parseUDec<unsigned char>(text, count, length); });
    return results;
}

TYPED_TEST(GuardedNumbers, AreParsedAsInOrdinaryMemory) {
    const char* const texts[] = {"",
                                 "0",
                                 "7",
                                 "-7",
                                 "+12",
                                 "- 5",
                                 " 42",
                                 "  \t\n 9",
                                 "-",
                                 "+",
                                 "0x",
                                 "0x1F",
                                 "-0xab",
                                 "0xg",
                                 "1.",
                                 ".5",
                                 "-2.5e",
                                 "1e5",
                                 "1e-",
                                 "1e+10",
                                 "1.5e10",
                                 "0x1.8p-3",
                                 "0x1p",
                                 "0x.8p+1",
                                 "nan",
                                 "inf",
                                 "-inf",
                                 "-i",
                                 "n",
                                 ",",
                                 "-,",
                                 "5,",
                                 "x",
                                 "0123456",
                                 "3.4028",
                                 "9999999",
                                 "1e400",
                                 "1e-400",
                                 "0x1.80000000000000000001",
                                 "12345678901234567890123456789012345678901234567890"};
    for (const std::string text : texts) {
        std::basic_string<TypeParam> terminated(text.begin(), text.end());
        terminated.push_back(0);
        const std::basic_string<TypeParam> behind = terminated + std::basic_string<TypeParam>(20, TypeParam('5'));
        for (const GuardedEdge edge : EDGES) {
            const GuardedBuffer<TypeParam> guarded(terminated, edge);
            for (const unsigned int length : {static_cast<unsigned int>(text.size()), 0xFFFFFFFFu})
                EXPECT_EQ(parsed(guarded.data(), length), parsed(behind.data(), length)) << text << ", " << length;
        }
    }
}

// Prints into memory that ends with the text, as it is measured by a first call.
template <class CharType, class Print>
void expectPrinted(Print print) {
    CharType text[2000] = {};
    const unsigned int size = print(text, 2000u);
    ASSERT_LE(size, 2000u);
    for (const GuardedEdge edge : EDGES) {
        const GuardedBuffer<CharType> guarded(size, edge);
        EXPECT_EQ(print(guarded.data(), size), size);
        EXPECT_EQ(guarded.units(), std::vector<CharType>(text, text + size));
        if (size == 0) continue;
        const GuardedBuffer<CharType> small(size - 1, edge);
        EXPECT_EQ(print(small.data(), size - 1), size);
        EXPECT_EQ(small.units(), std::vector<CharType>(size - 1)) << "a text that does not fit is not written";
    }
}

TYPED_TEST(GuardedNumbers, ArePrintedInsideTheirText) {
    using Buffer = TypeParam*;
    for (const int value :
         {0, 7, -7, 10, 99, -100, 12345, 100000, -1000000, 2147483647, std::numeric_limits<int>::min()}) {
        const auto bits = static_cast<unsigned int>(value);
        expectPrinted<TypeParam>([&](Buffer b, unsigned int size) { return Vorn::printDec(value, b, size); });
        expectPrinted<TypeParam>([&](Buffer b, unsigned int size) { return Vorn::printDec(bits, b, size); });
        for (const Vorn::HexWithPrefix prefix : {Vorn::HEX_WITH_PREFIX, Vorn::HEX_WITHOUT_PREFIX}) {
            expectPrinted<TypeParam>(
                [&](Buffer b, unsigned int size) { return Vorn::printHex(value, prefix, b, size); });
            expectPrinted<TypeParam>(
                [&](Buffer b, unsigned int size) { return Vorn::printHex(bits, prefix, b, size); });
        }
    }
    for (const double value : {0.0, -0.0, 1.5, -2.25, 1e10, 1e-10, 123456.789, 1e300, 5e-324,
                               std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        const auto narrow = static_cast<float>(value);
        if constexpr (sizeof(TypeParam) == 1) {
            if (std::isfinite(value)) {
                expectPrinted<TypeParam>([&](Buffer b, unsigned int size) { return Vorn::printHex(value, b, size); });
                if (std::isfinite(narrow))
                    expectPrinted<TypeParam>(
                        [&](Buffer b, unsigned int size) { return Vorn::printHex(narrow, b, size); });
            }
        }
        for (const Vorn::FloatExponent exponent : {Vorn::FLOAT_EXPONENT_NONE, Vorn::FLOAT_EXPONENT_ALWAYS}) {
            for (const unsigned int precision : {0u, 1u, 17u, 400u}) {
                expectPrinted<TypeParam>(
                    [&](Buffer b, unsigned int size) { return Vorn::printDec(value, b, size, precision, exponent); });
                expectPrinted<TypeParam>(
                    [&](Buffer b, unsigned int size) { return Vorn::printDec(narrow, b, size, precision, exponent); });
            }
        }
    }
}

} // namespace
