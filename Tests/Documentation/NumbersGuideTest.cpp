// Compiles and runs the code of Documentation/Numbers.md, and checks its tables and sentences.
#include "Vorn/Vorn.h"

#include "Support/AllocationCounter.h"
#include "Support/GuidePage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace Vorn;

const GuidePage& page() {
    static const GuidePage numbers(VORN_GUIDES "Numbers.md");
    return numbers;
}

TEST(NumbersGuide, EachBlockOfCodeIsCompiledHere) {
    expectCodeStandsIn(VORN_GUIDE_TESTS "NumbersGuideTest.cpp", page());
}

TEST(NumbersGuide, Reading) {
    const std::optional<int> width = parse<int>("1280");
    const std::optional<float> scale = parse<float>(u"2.5e-3");
    const int lives = parse<int>("three").value_or(3);
    EXPECT_EQ(width, 1280);
    EXPECT_EQ(scale, 2.5e-3f);
    EXPECT_EQ(lives, 3);
    EXPECT_EQ(parse<int>(trim(" 42\n")), 42);
    EXPECT_EQ(parse<unsigned char>("65"), 65);
}

template <class T>
std::string shownOf(const std::string& text) {
    const std::optional<T> value = parse<T>(text);
    return value ? toUTF8(toText(*value)) : "empty";
}

TEST(NumbersGuide, TheTableOfTexts) {
    int count = 0;
    for (const std::vector<std::string>& row : page().rows) {
        if (row.size() != 3 || row[0] == "Text" || row[0] == "Older" || row[0].find('(') != std::string::npos) continue;
        ++count;
        EXPECT_EQ(shownOf<int>(row[0]), row[1]) << row[0];
        EXPECT_EQ(shownOf<float>(row[0]), row[2]) << row[0];
    }
    EXPECT_EQ(count, 12);
}

TEST(NumbersGuide, Reasons) {
    struct Row {
        const char* text;
        std::uint8_t expected;
        const char* shown;
    };
    for (const Row& row : {Row{"255", 255, ""}, Row{"many", 7, "not a number"}, Row{"256", 7, "0 to 255, please"}}) {
        const char* const text = row.text;
        std::string shown;
        const auto show = [&](const char* message) { shown = message; };
        std::uint8_t level = 7;
        switch (parseInto(level, text)) {
        case NumberError::NONE: break;
        case NumberError::MALFORMED: show("not a number"); break;
        case NumberError::OUT_OF_RANGE: show("0 to 255, please"); break;
        }
        EXPECT_EQ(level, row.expected) << text;
        EXPECT_EQ(shown, row.shown) << text;
    }
}

TEST(NumbersGuide, PrefixesAndLists) {
    float set = 0.0f;
    const auto setSize = [&](float value) { set = value; };
    const NumberPrefix<float> size = parsePrefix<float>("1.5em");
    if (size.value && size.rest == "em") setSize(*size.value);
    EXPECT_EQ(set, 1.5f);

    std::vector<double> values;
    for (const TextView field : split("1; 2.5; -3", ';')) {
        if (const auto value = parse<double>(trim(field))) values.push_back(*value);
    }
    EXPECT_EQ(values, (std::vector<double>{1.0, 2.5, -3.0}));
}

TEST(NumbersGuide, Bases) {
    const auto colour = parse<std::uint32_t>("ff8000", 16);
    const auto mask = parse<int>("-0x1F", BASE_BY_PREFIX); // also "0b101", and decimal digits
    const String binary = toText(10, 2);                   // "1010"
    EXPECT_EQ(colour, 0xFF8000u);
    EXPECT_EQ(mask, -31);
    EXPECT_EQ(toUTF8(binary), "1010");
    EXPECT_EQ(parse<int>("0b101", BASE_BY_PREFIX), 5);
    EXPECT_EQ(parse<int>("12", BASE_BY_PREFIX), 12);
}

TEST(NumbersGuide, Printing) {
    const String shortest = toText(0.1f);     // "0.1"
    const String price = toFixedText(2.5, 2); // "2.50"
    const String exact = toHexText(-3.0);     // "-0x1.8p+1"
    const String label = concat("level ", 7); // "level 7"
    EXPECT_EQ(toUTF8(shortest), "0.1");
    EXPECT_EQ(toUTF8(price), "2.50");
    EXPECT_EQ(toUTF8(exact), "-0x1.8p+1");
    EXPECT_EQ(toUTF8(label), "level 7");

    const std::map<std::string, String> values = {
        {"1.0f / 3", toText(1.0f / 3)},
        {"1.0 / 3", toText(1.0 / 3)},
        {"1e20", toText(1e20)},
        {"1234.0", toText(1234.0)},
        {"100000.0", toText(100000.0)},
        {"-0.0", toText(-0.0)},
        {"1 / 0.0", toText(std::numeric_limits<double>::infinity())},
        {"true", toText(true)},
    };
    for (const auto& [value, text] : values) EXPECT_EQ(page().row(value)[1], toUTF8(text)) << value;
}

TEST(NumbersGuide, Buffers) {
    EXPECT_EQ(allocationsDuring([] { EXPECT_TRUE(parse<double>("-2.5e300") && parse<int>("42")); }), 0u);
    char buffer[24];
    const unsigned int used = writeText(buffer, sizeof buffer, -1.5);
    std::string line = "speed ";
    appendText(line, 12.25f);
    EXPECT_EQ(std::string(buffer, used), "-1.5");
    EXPECT_EQ(line, "speed 12.25");
    for (const double value : {std::numeric_limits<double>::lowest(), -2.2250738585072014e-308, -0.1234567890123456}) {
        EXPECT_LE(writeText(buffer, sizeof buffer, value), 24u);
    }
    EXPECT_LE(writeText(buffer, sizeof buffer, std::numeric_limits<long long>::min()), 24u);
    std::fill(buffer, buffer + 2, '#');
    EXPECT_EQ(writeText(buffer, 1, 12), 2u);
    EXPECT_EQ(buffer[0], '#');
}

TEST(NumbersGuide, OlderOperations) {
    VORN_ALLOW_SURPRISES_BEGIN
    EXPECT_EQ(page().row("parseInt<int>(\"42 apples\")")[1], std::to_string(parseInt<int>("42 apples")));
    EXPECT_EQ(page().row("parseInt<int>(\"apples\")")[1], std::to_string(parseInt<int>("apples")));
    EXPECT_EQ(page().row("parseInt<int>(\"4294967297\")")[1], std::to_string(parseInt<int>("4294967297")));
    EXPECT_EQ(page().row("parseDouble(\"4294967296\")")[1], toUTF8(toText(parseDouble("4294967296", nullptr))));
    char buffer[16];
    EXPECT_EQ(page().row("printHex(-255)")[1], std::string(buffer, printHex(-255, HEX_WITHOUT_PREFIX, buffer, 16)));
    VORN_ALLOW_SURPRISES_END
    EXPECT_EQ(toUTF8(toText(-255, 16)), "-ff");
}

} // namespace
