// Runs all number parsers on one terminated text and compares them with their references. The address sanitizer detects
// reads beyond the terminator.
#include "Vorn/ParseFloat.h"
#include "Vorn/ParseInt.h"

#include "Reference/FloatParser.h"
#include "Reference/IntegerParser.h"
#include "Support/Texts.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

constexpr unsigned int UNTOUCHED = 0xDEADBEEF;

void require(bool condition, const char* what) {
    if (condition) return;
    std::fprintf(stderr, "NumberParserFuzzer: %s differs from its reference\n", what);
    std::abort();
}

template <class T, class CharType>
using Parser = T (*)(const CharType*, unsigned int*, unsigned int);

template <class T, class CharType>
void compareInteger(const char* what, Parser<T, CharType> parser, const reference::ParsedInteger& expected,
                    const CharType* text, unsigned int length) {
    unsigned int count = UNTOUCHED;
    const T value = parser(text, &count, length);
    require(value == static_cast<T>(expected.value) && count == expected.count, what);
}

template <class T, class U, class CharType>
void compareIntegers(const TerminatedUnits& text, unsigned int length) {
    const CharType* const units = text.as<CharType>();
    const reference::IntegerParser<CharType> plain(units, text.size());
    compareInteger<T>("parseInt", &Vorn::parseInt<T, CharType>, plain.parseInt(length), units, length);
    compareInteger<T>("parseHex", &Vorn::parseHex<T, CharType>, plain.parseHex(length), units, length);
    compareInteger<T>("parseDec", &Vorn::parseDec<T, CharType>, plain.parseDec(length), units, length);
    compareInteger<U>("parseUInt", &Vorn::parseUInt<U, CharType>, plain.parseUInt(length), units, length);
    compareInteger<U>("parseUHex", &Vorn::parseUHex<U, CharType>, plain.parseUHex(length), units, length);
    compareInteger<U>("parseUDec", &Vorn::parseUDec<U, CharType>, plain.parseUDec(length), units, length);
}

template <class T, class CharType>
void compareFloat(const char* what, Parser<T, CharType> parser, const TerminatedUnits& text, unsigned int length) {
    const reference::FloatParser<T, CharType> plain(text.as<CharType>(), text.size());
    const reference::ParsedFloat<T> expected = plain.parse(length);
    unsigned int count = UNTOUCHED;
    const T value = parser(text.as<CharType>(), &count, length);
    const bool isSame = std::memcmp(&value, &expected.value, sizeof(T)) == 0;
    require(isSame || (std::isnan(value) && std::isnan(expected.value)), what);
    require(count == expected.count.value_or(UNTOUCHED), what);
}

template <class CharType>
void compareAll(const TerminatedUnits& text, unsigned int length) {
    if (length != 0) {
        compareIntegers<signed char, unsigned char, CharType>(text, length);
        compareIntegers<short, unsigned short, CharType>(text, length);
        compareIntegers<int, unsigned int, CharType>(text, length);
        compareIntegers<long long, unsigned long long, CharType>(text, length);
    }
    compareFloat<float, CharType>("parseFloat", &Vorn::parseFloat, text, length);
    compareFloat<double, CharType>("parseDouble", &Vorn::parseDouble, text, length);
}

} // namespace

// The first byte chooses the length that is told; the rest is the text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const TerminatedUnits text(std::vector<unsigned int>(data + 1, data + size));
    const unsigned int lengths[] = {text.size(), 0xFFFFFFFF, text.size() + 1, data[0] / 4u};
    const unsigned int length = lengths[data[0] % 4];
    compareAll<unsigned char>(text, length);
    compareAll<Vorn::UTF16Char>(text, length);
    return 0;
}
