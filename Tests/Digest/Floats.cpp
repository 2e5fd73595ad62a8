// Floats read from text and printed.
#include "Digest/Digest.h"
#include "Digest/Samples.h"

#include "Vorn/ParseFloat.h"
#include "Vorn/PrintFloat.h"
#include "Vorn/Text/TextConversion.h"
#include "Vorn/Text/TextNumbers.h"

#include <cmath>

using Vorn::TextView;

namespace {

std::vector<std::string> floatTexts() {
    std::vector<std::string> texts = {
        "", "-", "+", ".", "-.", ".5", "5.", "-0", "1e", "1e+", "1e5 ", "1e05", "0x", "0x1.8p-3 ", "0x.8 ", "0x1p1024 ",
        "0x1.80000000 ", "4294967296", "18446744073709551616", "1e400 ", "1e-400 ", "inf", "nan", "infinity", "1,5",
        // Ties, and values next to them.
        "9007199254740993", "9007199254740992.99999", "16777217", "16777217.0000001", "2.2250738585072011e-308 ",
        "2.2250738585072012e-308 ", "4.9406564584124654e-324 ", "2.4703282292062327e-324 ", "2.4703282292062328e-324 ",
        "1.7976931348623157e308 ", "1.7976931348623159e308 ", "3.4028235e38 ", "3.4028236e38 ",
        "1.00000005960464477539062500", "1.00000005960464477539062501", "0.1000000014901161193847656250"};
    Random random(12);
    const char characters[] = "0123456789.eE+-xpab ";
    for (int i = 0; i < 1200; ++i) {
        std::string text;
        for (unsigned int left = random.below(30); left-- > 0;)
            text += characters[random.below(random.below(4) == 0 ? 20 : 10)];
        texts.push_back(text);
        text = std::to_string(random.bits64());
        text.insert(random.below(static_cast<unsigned int>(text.size())), 1, '.');
        text += "e";
        text += std::to_string(static_cast<int>(random.below(660)) - 330);
        texts.push_back(text);
    }
    return texts;
}

template <class Unit>
void addParsers(Digest& digest, const Unit* text, unsigned int length) {
    unsigned int count = 77;
    digest.addOutcome([&] { return Vorn::parseFloat(text, &count, length); });
    digest.add(count);
    digest.addOutcome([&] { return Vorn::parseDouble(text, &count, length); });
    digest.add(count);
}

template <class T>
void addExact(Digest& digest, TextView text) {
    const Vorn::NumberPrefix<T> prefix = Vorn::parsePrefix<T>(text);
    digest.addAll(static_cast<int>(prefix.error), prefix.value.value_or(T(0.25)), prefix.rest.getLength());
}

template <class T>
void addPrinted(Digest& digest, T value) {
    unsigned char text[512];
    const auto addText = [&](unsigned int size) {
        digest.add(size);
        for (unsigned int i = 0; i < size && i < sizeof text; ++i) digest.add(text[i]);
    };
    for (const unsigned int precision : {0u, 3u, 17u}) {
        for (const Vorn::FloatExponent exponent : {Vorn::FLOAT_EXPONENT_NONE, Vorn::FLOAT_EXPONENT_ALWAYS})
            addText(Vorn::printDec(value, text, sizeof text, precision, exponent));
    }
    digest.addOutcome([&] { addText(Vorn::printHex(value, text, sizeof text)); });
    digest.addAll(Vorn::measureHex(value), Vorn::toText(value));
}

} // namespace

void digestFloats(Digest& digest) {
    for (const std::string& text : floatTexts()) {
        const auto length = static_cast<unsigned int>(text.size());
        std::vector<Vorn::UTF16Char> units;
        for (const char c : text + '\0') units.push_back(static_cast<Vorn::UTF16Char>(c));
        addParsers(digest, reinterpret_cast<const unsigned char*>(text.c_str()), length);
        addParsers(digest, units.data(), length);
        addExact<float>(digest, TextView(text));
        addExact<double>(digest, TextView(text));
        addExact<double>(digest, TextView(units.data(), length));
    }
    for (const double value : sampleDoubles(250)) {
        addPrinted(digest, value);
        digest.addAll(Vorn::toFixedText(value, 0), Vorn::toFixedText(value, 6), Vorn::toHexText(value));
        const Vorn::String text = Vorn::toText(value);
        digest.add(std::isnan(value) || Vorn::parse<double>(text) == value);
    }
    for (const float value : sampleFloats(250)) addPrinted(digest, value);
}
