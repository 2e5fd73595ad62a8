#include "Vorn/Text/TextNumbers.h"

#include "Support/Random.h"
#include "Vorn/PrintFloat.h"
#include "Vorn/PrintInt.h"
#include "Vorn/Text/TextView.h"

#include <bit>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>
#include <string>

namespace {

using namespace Vorn;

std::u16string wide(const std::string& text) { return std::u16string(text.begin(), text.end()); }

std::string textOf(const String& s) {
    std::string text;
    s.copyTo(text);
    return text;
}

template <class T>
std::string shown(const std::optional<T>& value) {
    if (!value) return "empty";
    if constexpr (std::is_floating_point_v<T>) {
        if (std::isnan(*value)) return std::signbit(*value) ? "-nan" : "nan"; // streams of Windows print no sign
    }
    std::ostringstream stream;
    stream.precision(17);
    stream << +*value;
    return stream.str();
}

// The value and the rest of a number, or the error.
template <class T>
std::string prefixOf(TextView text, unsigned int base = 10) {
    const NumberPrefix<T> prefix = parsePrefix<T>(text, base);
    std::string result = prefix.error == NumberError::MALFORMED      ? "malformed"
                         : prefix.error == NumberError::OUT_OF_RANGE ? "out of range"
                                                                     : shown(prefix.value);
    result += " |";
    for (unsigned int i = 0; i < prefix.rest.getLength(); ++i)
        result += static_cast<char>(prefix.rest.isUTF8() ? prefix.rest.getUTF8()[i] : prefix.rest.getUTF16()[i]);
    return result;
}

struct Row {
    const char* text;
    const char* expected;
};

template <class T>
void expectPrefixes(std::initializer_list<Row> rows, unsigned int base = 10) {
    for (const auto& [text, expected] : rows) {
        EXPECT_EQ(prefixOf<T>(text, base), expected) << text;
        EXPECT_EQ(prefixOf<T>(wide(text), base), expected) << text << " in UTF-16";
        // The whole text is a number if nothing is left.
        const NumberPrefix<T> prefix = parsePrefix<T>(text, base);
        const bool isWhole = prefix.value && prefix.rest.isEmpty();
        T value = T(1);
        EXPECT_EQ(parseInto(value, text, base) == NumberError::NONE, isWhole) << text;
        EXPECT_EQ(shown(std::optional<T>(value)), isWhole ? shown(prefix.value) : "1") << text;
        if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
            EXPECT_EQ(shown(parse<T>(text, base)), isWhole ? shown(prefix.value) : "empty") << text;
        } else {
            EXPECT_EQ(shown(parse<T>(text)), isWhole ? shown(prefix.value) : "empty") << text;
        }
    }
}

TEST(TextNumbers, ReadsIntegers) {
    expectPrefixes<int>({{"42", "42 |"},
                         {"-42", "-42 |"},
                         {"0", "0 |"},
                         {"-0", "0 |"},
                         {"007", "7 |"},
                         {"2147483647", "2147483647 |"},
                         {"-2147483648", "-2147483648 |"},
                         {"2147483648", "out of range |"},
                         {"-2147483649x", "out of range |x"},
                         {"18446744073709551616", "out of range |"},
                         {"99999999999999999999999999", "out of range |"},
                         {"00000000000000000000000000000000001", "1 |"},
                         {"12px", "12 |px"},
                         {"1 2", "1 | 2"},
                         {"1e5", "1 |e5"},
                         {"", "malformed |"},
                         {"-", "malformed |-"},
                         {"--1", "malformed |--1"},
                         {"+1", "malformed |+1"},
                         {" 1", "malformed | 1"},
                         {"- 1", "malformed |- 1"},
                         {"x", "malformed |x"},
                         {"0x10", "0 |x10"}});
    expectPrefixes<unsigned int>({{"4294967295", "4294967295 |"},
                                  {"4294967296", "out of range |"},
                                  {"-0", "malformed |-0"},
                                  {"-1", "malformed |-1"}});
    expectPrefixes<long long>(
        {{"-9223372036854775808", "-9223372036854775808 |"}, {"9223372036854775808", "out of range |"}});
    expectPrefixes<unsigned long long>(
        {{"18446744073709551615", "18446744073709551615 |"}, {"18446744073709551616", "out of range |"}});
    expectPrefixes<signed char>({{"-128", "-128 |"}, {"127", "127 |"}, {"128", "out of range |"}});
    expectPrefixes<unsigned char>({{"255", "255 |"}, {"256", "out of range |"}});
    expectPrefixes<bool>({{"true", "1 |"},
                          {"false", "0 |"},
                          {"truest", "1 |st"},
                          {"True", "malformed |True"},
                          {"1", "malformed |1"},
                          {"", "malformed |"},
                          {"tru", "malformed |tru"}});
}

TEST(TextNumbers, ReadsBases) {
    expectPrefixes<int>({{"ff", "255 |"}, {"-FF", "-255 |"}, {"0xff", "0 |xff"}, {"g", "malformed |g"}}, 16);
    expectPrefixes<int>({{"zz", "1295 |"}, {"-ZZ", "-1295 |"}, {"{", "malformed |{"}}, 36);
    expectPrefixes<int>({{"102", "2 |2"}, {"2", "malformed |2"}}, 2);
    expectPrefixes<int>({{"0x1F", "31 |"},
                         {"0X1f", "31 |"},
                         {"-0x1F", "-31 |"},
                         {"0b101", "5 |"},
                         {"0B2", "0 |B2"},
                         {"12", "12 |"},
                         {"ff", "malformed |ff"},
                         {"0x", "0 |x"},
                         {"0x-1", "0 |x-1"},
                         {"0xG", "0 |xG"},
                         {"x1", "malformed |x1"},
                         {"010", "10 |"}},
                        BASE_BY_PREFIX);
    expectPrefixes<int>({{"xFF", "-255 |"},
                         {"-0xFF", "-255 |"},
                         {"0xFF", "255 |"},
                         {"FF", "255 |"},
                         {"0b1", "177 |"},
                         {"x", "malformed |x"},
                         {"x0x1F", "0 |x1F"},
                         {"X1", "malformed |X1"}},
                        BASE_OF_PRINT_HEX);
    for (const unsigned int base : {37u, 38u, 0xFFFFFFFFu}) {
        EXPECT_THROW(parse<int>("1", base), Exception<4>) << base;
        EXPECT_THROW(toText(1, base), Exception<4>) << base;
    }
    EXPECT_THROW(toText(1, 0), Exception<4>);
    EXPECT_THROW(toText(1, 1), Exception<4>);
}

TEST(TextNumbers, ReadsNoOtherUnitsAsDigits) {
    for (unsigned int unit = 0; unit <= 0xFFFF; ++unit) {
        const char16_t text[] = {static_cast<char16_t>(unit), 0};
        const bool isDigit = unit >= '0' && unit <= '9';
        const bool isLetter = (unit >= 'a' && unit <= 'z') || (unit >= 'A' && unit <= 'Z');
        ASSERT_EQ(parse<int>(TextView(text, 1)).has_value(), isDigit) << unit;
        ASSERT_EQ(parse<int>(TextView(text, 1), 36).has_value(), isDigit || isLetter) << unit;
        ASSERT_EQ(parse<double>(TextView(text, 1)).has_value(), isDigit) << unit;
    }
    for (unsigned int byte = 0; byte < 256; ++byte) {
        const unsigned char text[] = {static_cast<unsigned char>(byte)};
        const bool isDigit = byte >= '0' && byte <= '9';
        EXPECT_EQ(parse<int>(TextView(text, 1)).has_value(), isDigit) << byte;
        EXPECT_EQ(parse<int>(TextView(text, 1), 36).has_value(), isDigit || (byte < 128 && std::isalpha(int(byte))))
            << byte;
    }
}

TEST(TextNumbers, ReadsFloats) {
    expectPrefixes<double>({{"1", "1 |"},
                            {"-2.5e10", "-25000000000 |"},
                            {".5", "0.5 |"},
                            {"5.", "5 |"},
                            {"5.px", "5 |px"},
                            {"1e", "1 |e"},
                            {"1e+", "1 |e+"},
                            {"1E-2", "0.01 |"},
                            {".", "malformed |."},
                            {"-.", "malformed |-."},
                            {"", "malformed |"},
                            {"-", "malformed |-"},
                            {"--1", "malformed |--1"},
                            {"+1", "malformed |+1"},
                            {" 1", "malformed | 1"},
                            {"1,5", "1 |,5"},
                            {"e5", "malformed |e5"},
                            {"0x1.8p-3", "0.1875 |"},
                            {"-0X1.8P1", "-3 |"},
                            {"0x.8", "0.5 |"},
                            {"0x8.", "8 |"},
                            {"0x1p", "1 |p"},
                            {"0x1p+-3", "1 |p+-3"},
                            {"0x", "0 |x"},
                            {"0x.", "0 |x."},
                            {"0xg", "0 |xg"},
                            {"0x-1", "0 |x-1"},
                            {"0xinf", "0 |xinf"},
                            {"0xnan", "0 |xnan"},
                            {"0x+1", "0 |x+1"},
                            {"inf", "inf |"},
                            {"-INF", "-inf |"},
                            {"Infinity", "inf |"},
                            {"infinit", "inf |init"},
                            {"in", "malformed |in"},
                            {"nan", "nan |"},
                            {"-NaN", "-nan |"},
                            {"nan(1)", "nan |(1)"},
                            {"na", "malformed |na"},
                            {"1e309", "out of range |"},
                            {"-1e309x", "out of range |x"},
                            {"1e-400", "out of range |"},
                            {"0e999999999999999999999", "0 |"},
                            {"4.9e-324", "4.9406564584124654e-324 |"},
                            {"1e99999999999999999999", "out of range |"}});
    expectPrefixes<float>(
        {{"3.5e38", "out of range |"}, {"1e-46", "out of range |"}, {"0.1", "0.10000000149011612 |"}});
}

// Against the nearest value of the C library.
template <class T>
void expectNearest(const std::string& text) {
    char* end = nullptr;
    errno = 0;
    T expected;
    if constexpr (sizeof(T) == 4)
        expected = std::strtof(text.c_str(), &end);
    else
        expected = std::strtod(text.c_str(), &end);
#if defined(_WIN32) // whose strtod rounds some ties of subnormal values up
    T nearest;
    const std::from_chars_result read = std::from_chars(text.data(), end, nearest);
    if (read.ec == std::errc() && read.ptr == end) expected = nearest;
#endif
    // Too large, or too near to 0 but not 0.
    const std::string digits = text.substr(0, text.find_first_of(text.find('x') == std::string::npos ? "e" : "p"));
    const bool isZero = digits.find_first_of("123456789abcdefABCDEF") == std::string::npos;
    const bool isOut = std::isinf(expected) || (expected == 0 && !isZero);
    const NumberPrefix<T> prefix = parsePrefix<T>(text);
    ASSERT_EQ(prefix.rest.getLength(), text.size() - static_cast<std::size_t>(end - text.c_str())) << text;
    ASSERT_EQ(prefix.error, isOut ? NumberError::OUT_OF_RANGE : NumberError::NONE) << text;
    if (isOut) return;
    ASSERT_TRUE(prefix.value) << text;
    ASSERT_EQ(*prefix.value, expected) << text;
    ASSERT_EQ(std::signbit(*prefix.value), std::signbit(expected)) << text;
    const std::u16string units = wide(text);
    const NumberPrefix<T> same = parsePrefix<T>(units);
    ASSERT_TRUE(same.value) << text;
    ASSERT_EQ(*same.value, *prefix.value) << text;
}

TEST(TextNumbers, ReadsTheNearestValueOfRandomDigits) {
    Random random(701);
    const auto digits = [&](std::string& text, unsigned int most, const char* set, unsigned int count) {
        for (unsigned int n = 1 + random.below(most); n != 0; --n) text += set[random.below(count)];
    };
    for (int i = 0; i < repetitions(40000); ++i) {
        std::string text = random.below(2) ? "-" : "";
        const bool isHex = random.below(3) == 0;
        const char* const set = isHex ? "0123456789abcdefABCDEF" : "0123456789";
        const unsigned int count = isHex ? 22 : 10;
        const unsigned int most = random.below(20) == 0 ? 200 : 20;
        if (isHex) text += "0x";
        digits(text, most, set, count);
        if (random.below(2)) {
            text += '.';
            digits(text, most, set, count);
        }
        if (random.below(2)) {
            text += isHex ? 'p' : 'e';
            if (random.below(2)) text += '-';
            text += std::to_string(random.below(isHex ? 1100 : 330));
        }
        expectNearest<float>(text);
        expectNearest<double>(text);
    }
}

TEST(TextNumbers, ReadsTheNearestValueAtTies) {
    for (int exponent = -1074; exponent < 1023; exponent += 7) {
        const double value = std::ldexp(1.0 + std::ldexp(1.0, -20), exponent);
        const double above = std::nextafter(value, INFINITY);
        char text[2000];
        std::snprintf(text, sizeof text, "%.1100f", value);
        expectNearest<double>(text);
        // The middle of two values has one more binary digit, printed exactly as a long double where that is wider.
        if constexpr (std::numeric_limits<long double>::digits >= 64) {
            const long double middle = (static_cast<long double>(value) + above) / 2;
            std::snprintf(text, sizeof text, "%.1200Lf", middle);
            expectNearest<double>(text);
            std::string more = text;
            more += "1";
            expectNearest<double>(more);
        }
    }
}

template <class T>
void expectSameBits(T value, const std::string& text) {
    const std::optional<T> again = parse<T>(text);
    ASSERT_TRUE(again) << text;
    if (std::isnan(value)) {
        ASSERT_TRUE(std::isnan(*again)) << text;
        return;
    }
    ASSERT_EQ(*again, value) << text;
    ASSERT_EQ(std::signbit(*again), std::signbit(value)) << text;
}

template <class T, class Bits>
void expectRoundTrips(Bits bits) {
    const T value = std::bit_cast<T>(bits);
    const String text = toText(value);
    expectSameBits(value, textOf(text));
    ASSERT_EQ(parse<T>(text).has_value(), true);
    if (std::isnan(value)) {
        ASSERT_EQ(std::signbit(*parse<T>(text)), std::signbit(value));
    }
    std::string appended = "x=";
    appendText(appended, value);
    ASSERT_EQ(appended, "x=" + textOf(text));
    expectSameBits(value, textOf(toHexText(static_cast<double>(value))));
    expectSameBits(value, textOf(toFixedText(static_cast<double>(value), sizeof(T) == 4 ? 149 : 1074)));

    unsigned char buffer[1500];
    const auto printed = [&](unsigned int size) { return std::string(buffer, buffer + size); };
    // Longer texts are refused, and larger values of a double are printed as NAN.
    const int leastExponent = sizeof(T) == 4 ? -99 : -999;
    if (!std::isnan(value) && (value > 0 || std::abs(value) >= std::ldexp(T(1), leastExponent)) &&
        std::abs(value) <= std::ldexp(1.0, 1016)) {
        expectSameBits(value, printed(printHex(value, buffer, sizeof buffer)));
    }
    const unsigned int precision = sizeof(T) == 4 ? 8 : 16;
    expectSameBits(value, printed(printDec(value, buffer, sizeof buffer, precision, FLOAT_EXPONENT_ALWAYS)));
}

TEST(TextNumbers, ReadsBackWhatIsPrintedOfFloats) {
    Random random(702);
    for (const unsigned int special : {0u, 0x80000000u, 1u, 0x80000001u, 0x007FFFFFu, 0x00800000u, 0x7F7FFFFFu,
                                       0xFF7FFFFFu, 0x7F800000u, 0xFF800000u, 0x7FC00000u, 0xFFC00000u, 0x3DCCCCCDu}) {
        expectRoundTrips<float>(special);
    }
    for (int i = 0; i < repetitions(10000); ++i) expectRoundTrips<float>(random());
}

TEST(TextNumbers, ReadsBackWhatIsPrintedOfDoubles) {
    Random random(703);
    for (const unsigned long long special :
         {0ull, 1ull << 63, 1ull, (1ull << 63) | 1, 0x000FFFFFFFFFFFFFull, 0x0010000000000000ull, 0x7FEFFFFFFFFFFFFFull,
          0x7FF0000000000000ull, 0xFFF0000000000000ull, 0x7FF8000000000000ull, 0xFFF8000000000000ull,
          0x400921FB54442D18ull}) {
        expectRoundTrips<double>(special);
    }
    for (int i = 0; i < repetitions(5000); ++i) expectRoundTrips<double>(random.bits64());
}

TEST(TextNumbers, ReadsBackEachFloatOfSomeExponents) {
    for (unsigned int bits = 0x3F800000; bits < 0x3F800000 + 0x800000; bits += 37) {
        const float value = std::bit_cast<float>(bits);
        char buffer[24];
        const unsigned int size = writeText(buffer, sizeof buffer, value);
        ASSERT_EQ(parse<float>(TextView(buffer, size)), value);
    }
}

TEST(TextNumbers, ReadsBackWhatIsPrintedOfIntegers) {
    Random random(704);
    for (int i = 0; i < repetitions(20000); ++i) {
        const int value = static_cast<int>(random() >> random.below(32)) * (random.below(2) ? 1 : -1);
        const unsigned int bits = static_cast<unsigned int>(value);
        unsigned char buffer[16];
        const auto view = [&](unsigned int size) { return TextView(buffer, size); };
        ASSERT_EQ(parse<int>(view(printDec(value, buffer, 16))), value);
        ASSERT_EQ(parse<unsigned int>(view(printDec(bits, buffer, 16))), bits);
        for (const HexWithPrefix prefix : {HEX_WITHOUT_PREFIX, HEX_WITH_PREFIX}) {
            ASSERT_EQ(parse<int>(view(printHex(value, prefix, buffer, 16)), BASE_OF_PRINT_HEX), value);
            ASSERT_EQ(parse<unsigned int>(view(printHex(bits, prefix, buffer, 16)), BASE_OF_PRINT_HEX), bits);
        }
        const unsigned int base = 2 + random.below(35);
        ASSERT_EQ(parse<int>(toText(value, base), base), value) << value << " in base " << base;
        const auto large = static_cast<long long>(random.bits64());
        ASSERT_EQ(parse<long long>(toText(large, base), base), large) << large << " in base " << base;
        ASSERT_EQ(textOf(toText(large)), std::to_string(large));
    }
}

template <class T>
void expectAllValues() {
    for (int value = std::numeric_limits<T>::min(); value <= std::numeric_limits<T>::max(); ++value) {
        ASSERT_EQ(textOf(toText(static_cast<T>(value))), std::to_string(value));
        ASSERT_EQ(parse<T>(std::to_string(value)), static_cast<T>(value));
    }
    EXPECT_EQ(parse<T>(std::to_string(std::numeric_limits<T>::max() + 1)), std::nullopt);
    EXPECT_EQ(parse<T>(std::to_string(std::numeric_limits<T>::min() - 1)), std::nullopt);
}

TEST(TextNumbers, PrintsAndReadsAllSmallIntegers) {
    expectAllValues<signed char>();
    expectAllValues<unsigned char>();
    expectAllValues<short>();
    expectAllValues<unsigned short>();
}

TEST(TextNumbers, PrintsEachType) {
    EXPECT_EQ(textOf(toText(true)), "true");
    EXPECT_EQ(textOf(toText(false)), "false");
    EXPECT_EQ(textOf(toText(0.1f)), "0.1");
    EXPECT_EQ(textOf(toText(0.1)), "0.1");
    EXPECT_EQ(textOf(toText(1e20)), "1e+20");
    EXPECT_EQ(textOf(toText(-0.0)), "-0");
    EXPECT_EQ(textOf(toText(-INFINITY)), "-inf");
    EXPECT_EQ(textOf(toText(-9223372036854775807ll - 1)), "-9223372036854775808");
    EXPECT_EQ(textOf(toText(-9223372036854775807ll - 1, 2)), "-1" + std::string(63, '0'));
    EXPECT_EQ(textOf(toText(18446744073709551615ull, 16)), "ffffffffffffffff");
    EXPECT_EQ(textOf(toFixedText(2.5, 2)), "2.50");
    EXPECT_EQ(textOf(toFixedText(2.5, 0)), "2");
    EXPECT_EQ(textOf(toFixedText(-1e300, 0)).size(), 302u);
    EXPECT_EQ(textOf(toFixedText(0.5, 1200)), "0.5" + std::string(1199, '0'));
    EXPECT_EQ(textOf(toFixedText(INFINITY, 1200)), "inf");
    EXPECT_THROW(toFixedText(0.5, 0xFFFFFFFE), Exception<4>);
    if (sizeof(void*) == 4) {
        EXPECT_THROW(toFixedText(0.5, 0x80000000), Exception<4>);
    }
    EXPECT_EQ(textOf(toHexText(-3.0)), "-0x1.8p+1");
    EXPECT_EQ(textOf(toHexText(0.0)), "0x0p+0");
    EXPECT_EQ(textOf(toHexText(-INFINITY)), "-inf");
    EXPECT_EQ(textOf(toHexText(3.14159265358979323846)), "0x1.921fb54442d18p+1");
}

TEST(TextNumbers, WritesIntoABuffer) {
    char buffer[4] = {'#', '#', '#', '#'};
    EXPECT_EQ(writeText(buffer, 3, -1234), 5u);
    EXPECT_EQ(std::string(buffer, 4), "####");
    EXPECT_EQ(writeText(buffer, 3, -12), 3u);
    EXPECT_EQ(std::string(buffer, 4), "-12#");
    EXPECT_EQ(writeText(static_cast<char*>(nullptr), 0, 1.5f), 3u);
}

TEST(TextNumbers, ReadsStringsOfBothEncodings) {
    EXPECT_EQ(parse<int>(String("-42")), -42);
    EXPECT_EQ(parse<int>(String()), std::nullopt);
    const std::u16string units = u"0x1.8p1";
    EXPECT_EQ(parse<double>(String(reinterpret_cast<const UTF16Char*>(units.c_str()))), 3.0);
    std::u16string longText = u"0.";
    longText.append(300, u'3');
    EXPECT_EQ(parse<double>(longText), 1.0 / 3);
}

} // namespace
