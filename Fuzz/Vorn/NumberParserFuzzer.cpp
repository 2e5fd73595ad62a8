// Runs all number parsers on one terminated text and compares them with their references. The address sanitizer detects
// reads beyond the terminator.
#include "Vorn/ParseFloat.h"
#include "Vorn/ParseInt.h"

#include "Reference/FloatParser.h"
#include "Reference/IntegerParser.h"
#include "Support/Stream.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

constexpr unsigned int UNTOUCHED = 0xDEADBEEF;

template <class T, class CharType>
using Parser = T (*)(const CharType*, unsigned int*, unsigned int);

/// A text with a zero unit behind it, and the length to pass.
template <class CharType>
struct Text {
    const CharType* units() const { return content.data(); }
    unsigned int size() const { return static_cast<unsigned int>(content.size() - 1); }

    std::vector<CharType> content;
    unsigned int length;
};

template <class T, class CharType>
void compareInteger(const char* what, Parser<T, CharType> parser, const reference::ParsedInteger& expected,
                    const Text<CharType>& text) {
    unsigned int count = UNTOUCHED;
    const T value = parser(text.units(), &count, text.length);
    require(value == static_cast<T>(expected.value) && count == expected.count, what);
}

// The parsers of one family differ in the type of the value alone, so that one reference serves them all.
template <class CharType>
void compareIntegers(const Text<CharType>& text, bool isWide) {
    const reference::IntegerParser<CharType> plain(text.units(), text.size());
    const auto compareSigned = [&](const char* what, const reference::ParsedInteger& expected, auto narrow, auto wide) {
        isWide ? compareInteger<long long, CharType>(what, wide, expected, text)
               : compareInteger<short, CharType>(what, narrow, expected, text);
    };
    const auto compareUnsigned = [&](const char* what, const reference::ParsedInteger& expected, auto narrow,
                                     auto wide) {
        isWide ? compareInteger<unsigned int, CharType>(what, wide, expected, text)
               : compareInteger<unsigned char, CharType>(what, narrow, expected, text);
    };
    compareSigned("parseInt", plain.parseInt(text.length), &Vorn::parseInt<short, CharType>,
                  &Vorn::parseInt<long long, CharType>);
    compareSigned("parseHex", plain.parseHex(text.length), &Vorn::parseHex<short, CharType>,
                  &Vorn::parseHex<long long, CharType>);
    compareSigned("parseDec", plain.parseDec(text.length), &Vorn::parseDec<short, CharType>,
                  &Vorn::parseDec<long long, CharType>);
    compareUnsigned("parseUInt", plain.parseUInt(text.length), &Vorn::parseUInt<unsigned char, CharType>,
                    &Vorn::parseUInt<unsigned int, CharType>);
    compareUnsigned("parseUHex", plain.parseUHex(text.length), &Vorn::parseUHex<unsigned char, CharType>,
                    &Vorn::parseUHex<unsigned int, CharType>);
    compareUnsigned("parseUDec", plain.parseUDec(text.length), &Vorn::parseUDec<unsigned char, CharType>,
                    &Vorn::parseUDec<unsigned int, CharType>);
}

template <class T, class CharType>
void compareFloat(const char* what, Parser<T, CharType> parser, const Text<CharType>& text) {
    const reference::FloatParser<T, CharType> plain(text.units(), text.size());
    const reference::ParsedFloat<T> expected = plain.parse(text.length);
    unsigned int count = UNTOUCHED;
    const T value = parser(text.units(), &count, text.length);
    const bool isSame = std::memcmp(&value, &expected.value, sizeof(T)) == 0;
    require(isSame || (std::isnan(value) && std::isnan(expected.value)), what);
    require(count == expected.count.value_or(UNTOUCHED), what);
}

template <class CharType>
void compareAll(const Text<CharType>& text, unsigned int kind) {
    switch (kind) {
    case 0: compareFloat<float, CharType>("parseFloat", &Vorn::parseFloat, text); break;
    case 1: compareFloat<double, CharType>("parseDouble", &Vorn::parseDouble, text); break;
    default:
        if (text.length != 0) compareIntegers(text, kind == 2);
        break;
    }
}

} // namespace

// The first byte chooses parsers, encoding and length; the rest is the text. Bytes from 0x80 on become units that have
// an ASCII character in their lower byte.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    Stream stream(data, size);
    const unsigned int choice = stream.next();
    const std::vector<unsigned char> bytes = stream.rest(1);
    const unsigned int length = static_cast<unsigned int>(size - 1);
    const unsigned int lengths[] = {length, 0xFFFFFFFF, length + 1, choice / 32};
    const unsigned int passed = lengths[choice % 4];
    if (choice & 4) {
        std::vector<Vorn::UTF16Char> units(bytes.size());
        for (std::size_t i = 0; i < units.size(); ++i)
            units[i] = static_cast<Vorn::UTF16Char>(bytes[i] < 0x80 ? bytes[i] : bytes[i] + 0x80);
        compareAll(Text<Vorn::UTF16Char>{units, passed}, choice / 8 % 4);
    } else {
        compareAll(Text<unsigned char>{bytes, passed}, choice / 8 % 4);
    }
    return 0;
}
