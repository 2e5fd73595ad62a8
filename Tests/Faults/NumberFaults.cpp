#include "Faults/Operation.h"
#include "Support/Texts.h"
#include "Vorn/Geometry.h"
#include "Vorn/Matrix3.h"
#include "Vorn/ParseFloat.h"
#include "Vorn/ParseInt.h"
#include "Vorn/PrintFloat.h"
#include "Vorn/PrintInt.h"

#include <algorithm>
#include <limits>
#include <type_traits>

namespace {

using Vorn::UTF16Char;

const std::string DIGITS = " 17";
const UTF16Text WIDE_DIGITS = VORN_UTF16(" 17");

// The spelling of a type in the names of functions.
template <class T>
constexpr const char* typeName = nullptr;
template <>
constexpr const char* typeName<char> = "char";
template <>
constexpr const char* typeName<signed char> = "signed char";
template <>
constexpr const char* typeName<short> = "short";
template <>
constexpr const char* typeName<int> = "int";
template <>
constexpr const char* typeName<long> = "long";
template <>
constexpr const char* typeName<long long> = "long long";
template <>
constexpr const char* typeName<unsigned char> = "unsigned char";
template <>
constexpr const char* typeName<unsigned short> = "unsigned short";
template <>
constexpr const char* typeName<unsigned int> = "unsigned int";
template <>
constexpr const char* typeName<unsigned long> = "unsigned long";
template <>
constexpr const char* typeName<unsigned long long> = "unsigned long long";

template <class T>
void parseEveryWay(Attempt& attempt) {
    const Vorn::String string = over(DIGITS);
    const unsigned char* const bytes = bytesOf(DIGITS);
    const UTF16Char* const units = WIDE_DIGITS.c_str();
    unsigned int count;
    attempt([&] {
        if constexpr (std::is_same_v<T, char> || std::is_signed_v<T>) {
            Vorn::parseInt<T>(bytes, &count, 3);
            Vorn::parseInt<T>(units, &count, 3);
            Vorn::parseInt<T>(string);
            Vorn::parseDec<T>(bytes, &count, 3);
            Vorn::parseDec<T>(units, &count, 3);
            Vorn::parseDec<T>(string);
            Vorn::parseHex<T>(bytes, &count, 3);
            Vorn::parseHex<T>(units, &count, 3);
            Vorn::parseHex<T>(string);
        } else {
            Vorn::parseUInt<T>(bytes, &count, 3);
            Vorn::parseUInt<T>(units, &count, 3);
            Vorn::parseUInt<T>(string);
            Vorn::parseUDec<T>(bytes, &count, 3);
            Vorn::parseUDec<T>(units, &count, 3);
            Vorn::parseUDec<T>(string);
            Vorn::parseUHex<T>(bytes, &count, 3);
            Vorn::parseUHex<T>(units, &count, 3);
            Vorn::parseUHex<T>(string);
        }
    });
}

template <class T>
Operation integerParsers() {
    const bool isSigned = std::is_same_v<T, char> || std::is_signed_v<T>;
    const std::string type = typeName<T>;
    std::vector<std::string> symbols;
    for (const char* const radix : {"Int", "Dec", "Hex"}) {
        const std::string function = type + (isSigned ? " parse" : " parseU") + radix + '<' + type;
        symbols.push_back(function + ", unsigned char>(unsigned char const*, unsigned int*, unsigned int)");
        symbols.push_back(function + ", char16_t>(char16_t const*, unsigned int*, unsigned int)");
        symbols.push_back(function + ">(String const&)");
    }
    std::string name = "ParseInteger_" + type;
    for (char& c : name) c = c == ' ' ? '_' : c;
    return {name, Outcome::ALLOCATES_NOTHING, symbols, &parseEveryWay<T>};
}

} // namespace

std::vector<Operation> numberOperations() {
    return {
        integerParsers<char>(),
        integerParsers<signed char>(),
        integerParsers<short>(),
        integerParsers<int>(),
        integerParsers<long>(),
        integerParsers<long long>(),
        integerParsers<unsigned char>(),
        integerParsers<unsigned short>(),
        integerParsers<unsigned int>(),
        integerParsers<unsigned long>(),
        integerParsers<unsigned long long>(),
        {"ParseFloat",
         Outcome::ALLOCATES_NOTHING,
         {"parseFloat(unsigned char const*, unsigned int*, unsigned int)",
          "parseFloat(char16_t const*, unsigned int*, unsigned int)", "parseFloat(String)",
          "parseDouble(unsigned char const*, unsigned int*, unsigned int)",
          "parseDouble(char16_t const*, unsigned int*, unsigned int)", "parseDouble(String)",
          "parseReal(unsigned char const*, unsigned int*, unsigned int)",
          "parseReal(char16_t const*, unsigned int*, unsigned int)", "parseReal(String)"},
         [](Attempt& attempt) {
             const Vorn::String string = over(DIGITS);
             const unsigned char* const bytes = bytesOf(DIGITS);
             const UTF16Char* const units = WIDE_DIGITS.c_str();
             unsigned int count;
             attempt([&] {
                 Vorn::parseFloat(bytes, &count, 3);
                 Vorn::parseFloat(units, &count, 3);
                 Vorn::parseFloat(string);
                 Vorn::parseDouble(bytes, &count, 3);
                 Vorn::parseDouble(units, &count, 3);
                 Vorn::parseDouble(string);
                 Vorn::parseReal(bytes, &count, 3);
                 Vorn::parseReal(units, &count, 3);
                 Vorn::parseReal(string);
             });
         }},
        {"PrintInteger",
         Outcome::ALLOCATES_NOTHING,
         {"measureDec(int)", "measureDec(unsigned int)", "measureHex(int, HexWithPrefix)",
          "measureHex(unsigned int, HexWithPrefix)", "printDec(int, unsigned char*, unsigned int)",
          "printDec(int, char16_t*, unsigned int)", "printDec(unsigned int, unsigned char*, unsigned int)",
          "printDec(unsigned int, char16_t*, unsigned int)",
          "printHex(int, HexWithPrefix, unsigned char*, unsigned int)",
          "printHex(int, HexWithPrefix, char16_t*, unsigned int)",
          "printHex(unsigned int, HexWithPrefix, unsigned char*, unsigned int)",
          "printHex(unsigned int, HexWithPrefix, char16_t*, unsigned int)"},
         [](Attempt& attempt) {
             unsigned char bytes[16];
             UTF16Char units[16];
             attempt([&] {
                 const Vorn::HexWithPrefix prefix = Vorn::HEX_WITH_PREFIX;
                 Vorn::measureDec(-5);
                 Vorn::measureDec(5u);
                 Vorn::measureHex(-5, prefix);
                 Vorn::measureHex(5u, prefix);
                 Vorn::printDec(-5, bytes, 16);
                 Vorn::printDec(-5, units, 16);
                 Vorn::printDec(5u, bytes, 16);
                 Vorn::printDec(5u, units, 16);
                 Vorn::printHex(-5, prefix, bytes, 16);
                 Vorn::printHex(-5, prefix, units, 16);
                 Vorn::printHex(5u, prefix, bytes, 16);
                 Vorn::printHex(5u, prefix, units, 16);
             });
         }},
        {"PrintFloat_Hex",
         Outcome::ALLOCATES_NOTHING,
         {"measureHex(float)", "measureHex(double)", "printHex(float, unsigned char*, unsigned int)",
          "printHex(float, char16_t*, unsigned int)", "printHex(double, unsigned char*, unsigned int)",
          "printHex(double, char16_t*, unsigned int)"},
         [](Attempt& attempt) {
             unsigned char bytes[24];
             UTF16Char units[24];
             attempt([&] {
                 Vorn::measureHex(0.1f);
                 Vorn::measureHex(0.1);
                 Vorn::printHex(0.1f, bytes, 24);
                 Vorn::printHex(0.1f, units, 24);
                 Vorn::printHex(0.1, bytes, 24);
                 Vorn::printHex(0.1, units, 24);
             });
         }},
        {"PrintFloat_Dec",
         Outcome::ALLOCATES_NOTHING,
         {"measureDec(float, unsigned int, FloatExponent)", "measureDec(double, unsigned int, FloatExponent)",
          "printDec(float, unsigned char*, unsigned int, unsigned int, FloatExponent)",
          "printDec(float, char16_t*, unsigned int, unsigned int, FloatExponent)",
          "printDec(double, unsigned char*, unsigned int, unsigned int, FloatExponent)",
          "printDec(double, char16_t*, unsigned int, unsigned int, FloatExponent)"},
         [](Attempt& attempt) {
             static unsigned char bytes[2000];
             static UTF16Char units[2000];
             attempt([] {
                 const Vorn::FloatExponent exponent = Vorn::FLOAT_EXPONENT_NONE;
                 const double largest = std::numeric_limits<double>::max();
                 Vorn::measureDec(0.1f, 1500, exponent);
                 Vorn::measureDec(largest, 1500, exponent);
                 Vorn::printDec(0.1f, bytes, 2000, 1500, exponent);
                 Vorn::printDec(0.1f, units, 2000, 1500, exponent);
                 Vorn::printDec(largest, bytes, 2000, 1500, exponent);
                 Vorn::printDec(largest, units, 2000, 1500, exponent);
             });
         }},
        {"Matrix3_Inverse",
         Outcome::ALLOCATES_NOTHING,
         {"Matrix3::inversedCopy() const"},
         [](Attempt& attempt) {
             const Vorn::Matrix3 matrix = Vorn::Matrix3::IDENTITY;
             attempt([&] { matrix.inversedCopy(); });
         }},
        {"GeometryBatches",
         Outcome::ALLOCATES_NOTHING,
         {"transform", "normaliseApproximately", "boundsOf"},
         [](Attempt& attempt) {
             Vorn::Vector2 source[20] = {}, target[20] = {};
             std::fill_n(source, 20, Vorn::Vector2::UNIT_X);
             attempt([&] {
                 Vorn::transform(Vorn::Matrix3::IDENTITY, source);
                 Vorn::transform(Vorn::Matrix3::IDENTITY, source, target);
                 Vorn::normaliseApproximately(source);
                 Vorn::normaliseApproximately(source, target);
                 Vorn::boundsOf(source);
             });
         }},
    };
}
