// Integers read from text and printed.
#include "Digest/Digest.h"
#include "Digest/Samples.h"

#include "Vorn/ParseInt.h"
#include "Vorn/PrintInt.h"
#include "Vorn/Text/TextNumbers.h"

using Vorn::TextView;

namespace {

std::vector<std::string> numberTexts() {
    std::vector<std::string> texts = {"",
                                      "-",
                                      "+",
                                      "0",
                                      "-0",
                                      "+1",
                                      "007",
                                      "0x",
                                      "0x1F",
                                      "0X1F",
                                      "-0x1f",
                                      "xFF",
                                      "1F",
                                      " 42",
                                      "- 5",
                                      " -5",
                                      "42 ",
                                      "4 2",
                                      "2147483647",
                                      "2147483648",
                                      "-2147483648",
                                      "-2147483649",
                                      "4294967295",
                                      "4294967296",
                                      "9223372036854775807",
                                      "-9223372036854775808",
                                      "18446744073709551615",
                                      "18446744073709551616",
                                      "123456789ABCDEF01",
                                      "/",
                                      ":",
                                      "12ab",
                                      "99999999999999999999999",
                                      "true",
                                      "1e5"};
    Random random(10);
    const char characters[] = "0123456789abcdefABCDEFx+- \t";
    for (int i = 0; i < 1500; ++i) {
        std::string text;
        for (unsigned int left = random.below(22); left-- > 0;)
            text += characters[random.below(random.below(3) == 0 ? 27 : 10)];
        texts.push_back(text);
    }
    return texts;
}

template <class T, class Unit>
void addSigned(Digest& digest, const Unit* text, unsigned int length) {
    unsigned int count = 77;
    const auto addParsed = [&](auto parse) {
        digest.addOutcome([&] { return parse(text, &count, length); });
        digest.add(count);
    };
    addParsed(Vorn::parseInt<T, Unit>);
    addParsed(Vorn::parseHex<T, Unit>);
    addParsed(Vorn::parseDec<T, Unit>);
}

template <class T, class Unit>
void addUnsigned(Digest& digest, const Unit* text, unsigned int length) {
    unsigned int count = 77;
    const auto addParsed = [&](auto parse) {
        digest.addOutcome([&] { return parse(text, &count, length); });
        digest.add(count);
    };
    addParsed(Vorn::parseUInt<T, Unit>);
    addParsed(Vorn::parseUHex<T, Unit>);
    addParsed(Vorn::parseUDec<T, Unit>);
}

template <class Unit>
void addParsers(Digest& digest, const Unit* text, unsigned int length) {
    addSigned<signed char>(digest, text, length);
    addSigned<short>(digest, text, length);
    addSigned<int>(digest, text, length);
    addSigned<long long>(digest, text, length);
    addUnsigned<unsigned char>(digest, text, length);
    addUnsigned<unsigned int>(digest, text, length);
    addUnsigned<unsigned long long>(digest, text, length);
}

template <class T>
void addExact(Digest& digest, TextView text) {
    for (const unsigned int base : {Vorn::BASE_BY_PREFIX, Vorn::BASE_OF_PRINT_HEX, 2u, 10u, 16u, 36u}) {
        const Vorn::NumberPrefix<T> prefix = Vorn::parsePrefix<T>(text, base);
        digest.addAll(static_cast<int>(prefix.error), prefix.value.value_or(0), prefix.rest.getLength(),
                      Vorn::parse<T>(text, base).has_value());
    }
}

template <class T>
void addPrinted(Digest& digest, T value) {
    unsigned char text[16];
    const unsigned int size = Vorn::printDec(value, text, sizeof text);
    for (unsigned int i = 0; i < size; ++i) digest.add(text[i]);
    for (const Vorn::HexWithPrefix prefix : {Vorn::HEX_WITHOUT_PREFIX, Vorn::HEX_WITH_PREFIX}) {
        const unsigned int digits = Vorn::printHex(value, prefix, text, sizeof text);
        for (unsigned int i = 0; i < digits; ++i) digest.add(text[i]);
        digest.add(Vorn::measureHex(value, prefix));
    }
    digest.add(Vorn::measureDec(value));
}

} // namespace

void digestIntegers(Digest& digest) {
    for (const std::string& text : numberTexts()) {
        // Parsers read the unit behind the length.
        const auto length = static_cast<unsigned int>(text.size());
        std::vector<Vorn::UTF16Char> units;
        for (const char c : text + '\0') units.push_back(static_cast<Vorn::UTF16Char>(c));
        addParsers(digest, reinterpret_cast<const unsigned char*>(text.c_str()), length);
        addParsers(digest, units.data(), length);
        addExact<signed char>(digest, TextView(text));
        addExact<int>(digest, TextView(text));
        addExact<unsigned int>(digest, TextView(units.data(), length));
        addExact<long long>(digest, TextView(text));
        addExact<unsigned long long>(digest, TextView(text));
    }
    Random random(11);
    for (int round = 0; round < 4000; ++round) {
        const unsigned long long bits = random.bits64() >> random.below(64);
        const auto value = static_cast<unsigned int>(bits);
        addPrinted(digest, value);
        addPrinted(digest, static_cast<int>(0 - value));
        digest.addAll(Vorn::toText(bits), Vorn::toText(static_cast<long long>(0 - bits)),
                      Vorn::toText(static_cast<short>(bits & 0x7FFF)), Vorn::toText(bits, 16), Vorn::toText(bits, 2),
                      Vorn::toText(static_cast<long long>(bits), 36));
    }
    for (unsigned int power = 1; power < 1000000000; power *= 10) {
        for (const unsigned int value : {power - 1, power, power + 1, 10 * power + 3}) addPrinted(digest, value);
    }
}
