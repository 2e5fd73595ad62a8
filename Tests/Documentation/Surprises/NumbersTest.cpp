#include "Documentation/Surprises/Surprise.h"
#include "Vorn/ParseFloat.h"
#include "Vorn/ParseInt.h"
#include "Vorn/PrintFloat.h"
#include "Vorn/PrintInt.h"
#include "Vorn/String/String.h"
#include "Vorn/Text.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <locale>

namespace {

using namespace Vorn;

// What a parser returned and counted.
template <class T>
struct Read {
    T value;
    unsigned int count;
    friend bool operator==(const Read& a, const Read& b) { return a.value == b.value && a.count == b.count; }
    friend std::ostream& operator<<(std::ostream& stream, const Read& read) {
        return stream << read.value << " of " << read.count;
    }
};

const unsigned char* bytes(const char* text) { return reinterpret_cast<const unsigned char*>(text); }

using IntParser = int (*)(const unsigned char*, unsigned int*, unsigned int);
using UIntParser = unsigned int (*)(const unsigned char*, unsigned int*, unsigned int);
using FloatParser = float (*)(const unsigned char*, unsigned int*, unsigned int);
using DoubleParser = double (*)(const unsigned char*, unsigned int*, unsigned int);

template <class T>
Read<T> read(T (*parse)(const unsigned char*, unsigned int*, unsigned int), const char* text,
             unsigned int length = 0xFFFFFFFF) {
    Read<T> result{0, 99};
    result.value = parse(bytes(text), &result.count, length);
    return result;
}

Read<int> readInt(const char* text, unsigned int length = 0xFFFFFFFF) {
    return read<int>(parseInt<int, unsigned char>, text, length);
}
Read<int> readHex(const char* text, unsigned int length = 0xFFFFFFFF) {
    return read<int>(parseHex<int, unsigned char>, text, length);
}
Read<int> readDec(const char* text, unsigned int length = 0xFFFFFFFF) {
    return read<int>(parseDec<int, unsigned char>, text, length);
}
Read<unsigned int> readUHex(const char* text) {
    return read<unsigned int>(parseUHex<unsigned int, unsigned char>, text);
}
Read<unsigned int> readUInt(const char* text) {
    return read<unsigned int>(parseUInt<unsigned int, unsigned char>, text);
}
Read<float> readFloat(const char* text, unsigned int length = 0xFFFFFFFF) {
    return read<float>(static_cast<FloatParser>(parseFloat), text, length);
}
Read<double> readDouble(const char* text) { return read<double>(static_cast<DoubleParser>(parseDouble), text); }

double fromChars(std::string_view text) {
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

std::string printed(unsigned int value) {
    unsigned char text[11];
    return std::string(reinterpret_cast<const char*>(text), printDec(value, text, 11));
}
std::string printedHex(int value, HexWithPrefix prefix) {
    unsigned char text[16] = {};
    return std::string(reinterpret_cast<const char*>(text), printHex(value, prefix, text, 16));
}
std::string printed(double value, unsigned int precision, FloatExponent exponent) {
    unsigned char text[400] = {};
    const unsigned int size = printDec(value, text, 400, precision, exponent);
    return std::string(reinterpret_cast<const char*>(text), size);
}
template <class T>
std::string printedHex(T value) {
    unsigned char text[64] = {};
    const unsigned int size = printHex(value, text, 64);
    return std::string(reinterpret_cast<const char*>(text), size);
}

std::basic_string<UTF16Char> widened(const std::string& text) { return {text.begin(), text.end()}; }

struct Comma : std::numpunct<char> {
    char do_thousands_sep() const override { return '\''; }
    std::string do_grouping() const override { return "\3"; }
};

} // namespace

const Surprises NUMBER_SURPRISES = {
    {"All parsers, `length`",
     [] {
         EXPECT_EQ(readInt("123", 2), (Read<int>{12, 2})) << "limits after a digit";
         EXPECT_EQ(readInt("-5", 1), (Read<int>{-5, 2})) << "reads beyond a sign";
     },
     [] {
         EXPECT_EQ(parsePrefix<int>(TextView("123", 2)).value, 12);
         EXPECT_EQ(parsePrefix<int>(TextView("-5", 1)).value, std::nullopt);
     }},
    {"`parseInt` and its like on \"12abc\", \"\", \"99999999999\"",
     [] {
         EXPECT_EQ(readInt("12abc").value, 12);
         EXPECT_EQ(readInt("").value, 0);
         EXPECT_EQ(readInt("99999999999").value, static_cast<int>(static_cast<unsigned int>(99999999999ull)));
     },
     [] {
         for (const char* text : {"12abc", "", "99999999999"}) EXPECT_EQ(parse<int>(text), std::nullopt) << text;
     }},
    {"`parseX<T>(String)`", [] { EXPECT_EQ(parseInt<int>(String("xyz")), 0); },
     [] {
         EXPECT_EQ(parse<int>(String("abc")), std::nullopt);
         EXPECT_EQ(parse<int>(String("12")), 12);
     }},
    {"`parseHex`, `parseDec` on \"-\"",
     [] {
         EXPECT_EQ(readHex("-").count, 1u);
         EXPECT_EQ(readDec("-").count, 1u);
         EXPECT_EQ(readInt("-").count, 0u);
     },
     [] { EXPECT_EQ(parse<int>("-", 16), std::nullopt); }},
    {"`parseHex`, `parseDec` behind a sign",
     [] {
         EXPECT_EQ(readDec("-123", 2), (Read<int>{-12, 3}));
         EXPECT_EQ(readHex("-123", 2), (Read<int>{-0x12, 3}));
     },
     [] { EXPECT_EQ(parse<int>(TextView("-123", 3), 16), -0x12); }},
    {"`parseUHex`, `parseHex` on \"0xZ\"",
     [] {
         EXPECT_EQ(readUHex("0xZ"), (Read<unsigned int>{0, 2}));
         EXPECT_EQ(readHex("0xZ"), (Read<int>{0, 2}));
         EXPECT_EQ(readUInt("0xZ").count, 0u);
     },
     [] { EXPECT_EQ(parse<unsigned int>("0xZ", BASE_BY_PREFIX), std::nullopt); }},
    {"Integer parsers on \"0X1F\"",
     [] {
         EXPECT_EQ(readInt("0X1F"), (Read<int>{0, 1}));
         EXPECT_EQ(readFloat("0X1F").value, 31.0f);
     },
     [] { EXPECT_EQ(parse<int>("0X1F", BASE_BY_PREFIX), 31); }},
    {"Integer parsers on \" -5\"",
     [] {
         EXPECT_EQ(readInt(" -5"), (Read<int>{0, 0}));
         EXPECT_EQ(readInt("- 5").value, -5);
     },
     [] {
         EXPECT_EQ(parse<int>(trim(" -5")), -5);
         EXPECT_EQ(parse<int>("- 5"), std::nullopt);
     }},
    {"`parseFloat`, `parseDouble`",
     [] {
         unsigned int differences = 0;
         for (int i = 1; i < 1000; ++i) {
             const std::string text = "0." + std::to_string(123456789 + i * 7919);
             differences += readDouble(text.c_str()).value != fromChars(text);
         }
         EXPECT_GT(differences, 0u);
     },
     [] { EXPECT_EQ(parse<double>("2.2250738585072011e-308"), fromChars("2.2250738585072011e-308")); }},
    {"`parseDouble` on \"4294967296\"", [] { EXPECT_EQ(readDouble("4294967296").value, 0.0); },
     [] { EXPECT_EQ(parse<double>("4294967296"), 4294967296.0); }},
    {"`parseDouble` on \"0x1.80000000\"", [] { EXPECT_EQ(readDouble("0x1.80000000").value, 0.5); },
     [] { EXPECT_EQ(parse<double>("0x1.80000000"), 1.5); }},
    {"`parseFloat` on \"inf\", \"nan\"",
     [] {
         for (const char* const text : {"inf", "nan"}) {
             EXPECT_TRUE(std::isnan(readFloat(text).value));
             EXPECT_EQ(readFloat(text).count, 0u);
         }
     },
     [] {
         EXPECT_EQ(parse<float>("inf"), std::numeric_limits<float>::infinity());
         EXPECT_TRUE(std::isnan(parse<float>("nan").value_or(0)));
     }},
    {"`parseFloat` on \"1e5\" with a length of 3",
     [] {
         EXPECT_EQ(readFloat("1e5", 3), (Read<float>{1, 1}));
     },
     [] { EXPECT_EQ(parse<float>(TextView("1e5", 3)), 100000.0f); }},
    {"`parseFloat` on \" -1\" with a length of 0xFFFFFFFF",
     [] {
         EXPECT_TRUE(std::isnan(readFloat(" -1").value));
         EXPECT_EQ(readFloat(" -1").count, 99u) << "not written";
     },
     [] { EXPECT_EQ(parse<float>(trim(" -1")), -1.0f); }},
    {"`parseFloat(String)` beside `parseInt<T>(String)`",
     [] {
         char text[] = "12";
         const String both(text);
         both.getData()->getBuffer<UTF16Char>();
         text[0] = '3'; // now the two buffers differ
         EXPECT_EQ(parseFloat(both), 12.0f);
         EXPECT_EQ(parseInt<int>(both), 32);
         EXPECT_TRUE(std::isnan(parseFloat(String())));
         EXPECT_ANY_THROW(parseInt<int>(String()));
     },
     [] {
         EXPECT_EQ(parse<float>(String()), std::nullopt);
         EXPECT_EQ(parse<int>(String()), std::nullopt);
     }},
    {"`measureDec` of an integer",
     [] {
         for (const unsigned int value : {100000u, 100003u}) EXPECT_EQ(measureDec(value), 5u);
         EXPECT_EQ(printed(100000u).size(), 6u);
     },
     [] {
         char text[11];
         EXPECT_EQ(writeText(text, 11, 100000), 6u);
     }},
    {"`printDec(n, nullptr, 0)`", [] { EXPECT_EQ(printDec(100000u, static_cast<unsigned char*>(nullptr), 0), 5u); },
     [] { EXPECT_EQ(writeText(nullptr, 0, 100000), 6u); }},
    {"`printDec` of an integer to `UTF16Char*`",
     [] {
         UTF16Char text[11] = {};
         printDec(1234u, text, 11);
         EXPECT_EQ(text[1], '2');
         EXPECT_EQ(text[2], 0);
     },
     [] { EXPECT_TRUE(toUTF16(toText(1234)) == u"1234"); }},
    {"`printHex(-255, HEX_WITHOUT_PREFIX, ...)`", [] { EXPECT_EQ(printedHex(-255, HEX_WITHOUT_PREFIX), "xFF"); },
     [] { EXPECT_EQ(toUTF8(toText(-255, 16)), "-ff"); }},
    {"`printDec` of a float, `FLOAT_EXPONENT_AUTO`",
     [] {
         unsigned char text[64] = {};
         const unsigned int size = printDec(1.1, text, 64, 2, FLOAT_EXPONENT_AUTO);
         const std::string written(reinterpret_cast<const char*>(text));
         EXPECT_EQ(size, 8u) << "of 1.10e+00";
         EXPECT_NE(written, "1.10e+00");
         EXPECT_GT(written.size(), size);
     },
     [] { EXPECT_EQ(toUTF8(toText(1e20)), "1e+20"); }},
    {"`measureDec` of a float",
     [] {
         const std::locale old = std::locale::global(std::locale(std::locale::classic(), new Comma));
         const unsigned int measured = measureDec(1234567.0, 0, FLOAT_EXPONENT_NONE);
         const std::string text = printed(1234567.0, 0, FLOAT_EXPONENT_NONE);
         std::locale::global(old);
         EXPECT_EQ(measured, 9u) << "1'234'567";
         EXPECT_EQ(text, "1234567");
     },
     [] { EXPECT_EQ(toUTF8(toFixedText(1234567, 2)), "1234567.00"); }},
    {"`printDec` and `measureDec` of a float, precision of 2^31 and more",
     [] {
         EXPECT_EQ(printed(1.5, 0x80000000, FLOAT_EXPONENT_NONE), "1.500000");
         EXPECT_EQ(measureDec(1.5, 0x80000000, FLOAT_EXPONENT_NONE), 8u);
     },
     [] { EXPECT_EQ(measureDec(1.5, 2147483647, FLOAT_EXPONENT_NONE), 2147483649u); }},
    {"`printHex` of a `double` from 2 to the power 1017 upward",
     [] {
         EXPECT_EQ(printedHex(std::ldexp(1.5, 1017)), "NAN");
         EXPECT_EQ(printedHex(std::ldexp(1.0, 1020)), "NAN");
         EXPECT_NE(printedHex(std::ldexp(1.0, 1017)), "NAN");
     },
     [] { EXPECT_EQ(parse<double>(toHexText(std::ldexp(1.5, 1020))), std::ldexp(1.5, 1020)); }},
    {"`printHex` of a negative float with a full fraction and an exponent below -99 (`double`: -999)",
     [] { EXPECT_THROW(printedHex(-std::ldexp(1.99999988f, -110)), Exception<2>); },
     [] {
         const double value = -std::ldexp(1.9999999, -110);
         EXPECT_EQ(parse<double>(toHexText(value)), value);
     }},
    {"`printHex` of a float to `UTF16Char*`",
     [] {
         UTF16Char text[64] = {};
         const float value = std::ldexp(1.5f, 100);
         const unsigned int size = printHex(value, text, 64);
         EXPECT_NE(std::basic_string<UTF16Char>(text, size), widened(printedHex(value)));
         EXPECT_EQ(text[size - 1], 0);
     },
     [] { EXPECT_TRUE(toUTF16(toHexText(1.5)) == u"0x1.8p+0") << toUTF8(toHexText(1.5)); }},
};
