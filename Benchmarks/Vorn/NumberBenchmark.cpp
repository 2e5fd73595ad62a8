// Number text, compared with the standard library, fast_float and fmt. Each measurement processes many numbers of one
// shape; items per second are numbers per second. All results are compared before the measurement.
#include "Support/Measure.h"
#include "Vorn/ParseFloat.h"
#include "Vorn/ParseInt.h"
#include "Vorn/PrintInt.h"
#include "Vorn/Text/TextNumbers.h"

#include <benchmark/benchmark.h>
#include <fast_float/fast_float.h>
#include <fmt/format.h>

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr std::size_t COUNT = 256;

const unsigned char* bytesOf(const std::string& text) { return reinterpret_cast<const unsigned char*>(text.data()); }

unsigned int sizeOf(const std::string& text) { return static_cast<unsigned int>(text.size()); }

// Numbers of exactly `digits` digits.
std::vector<unsigned int> numbersOf(std::size_t digits) {
    std::mt19937_64 random(static_cast<unsigned int>(digits));
    unsigned long long lowest = 1;
    for (std::size_t i = 1; i < digits; ++i) lowest *= 10;
    const unsigned long long highest = digits == 10 ? 4294967295 : lowest * 10 - 1;
    std::vector<unsigned int> numbers;
    for (std::size_t i = 0; i < COUNT; ++i) {
        numbers.push_back(static_cast<unsigned int>(lowest + random() % (highest - lowest + 1)));
    }
    return numbers;
}

// Parsers of integers -------------------------------------------------------------------------------------------------

int parseWithDec(const std::string& text) {
    unsigned int count;
    return Vorn::parseDec<int>(bytesOf(text), &count, sizeOf(text));
}

int parseWithInt(const std::string& text) {
    unsigned int count;
    return Vorn::parseInt<int>(bytesOf(text), &count, sizeOf(text));
}

int parseWithParse(const std::string& text) { return Vorn::parse<int>(text).value_or(0); }

int parseWithFromChars(const std::string& text) {
    int value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

template <int (*parse)(const std::string&)>
void parseIntegers(Run& run) {
    std::vector<std::string> texts;
    for (const unsigned int number : numbersOf(run.size())) {
        texts.push_back(std::to_string(number));
        run.expect(parse(texts.back()), static_cast<int>(number));
    }
    for (auto _ : run.loop()) {
        for (const std::string& text : texts) benchmark::DoNotOptimize(parse(text));
    }
    run.countItems(COUNT);
}

[[maybe_unused]] const bool integerParsers =
    addBenchmarks("Numbers/parse int/parseDec", {1, 3, 6, 9}, parseIntegers<parseWithDec>) &&
    addBenchmarks("Numbers/parse int/parseInt", {1, 3, 6, 9}, parseIntegers<parseWithInt>) &&
    addBenchmarks("Numbers/parse int/parse", {1, 3, 6, 9}, parseIntegers<parseWithParse>) &&
    addBenchmarks("Numbers/parse int/std::from_chars", {1, 3, 6, 9}, parseIntegers<parseWithFromChars>);

// Parsers of floats ---------------------------------------------------------------------------------------------------

float parseWithFloat(const std::string& text) {
    unsigned int count;
    return Vorn::parseFloat(bytesOf(text), &count, sizeOf(text));
}

float parseFloatWithParse(const std::string& text) { return Vorn::parse<float>(text).value_or(0); }

float parseWithFastFloat(const std::string& text) {
    float value = 0;
    fast_float::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

float parseFloatWithFromChars(const std::string& text) {
    float value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

// Texts of a sign, digits, a point and as many or a given number of digits. The size counts the digits of both parts.
template <float (*parse)(const std::string&)>
void parseFloats(Run& run, std::size_t wholeDigits) {
    std::vector<std::string> texts;
    const std::vector<unsigned int> fractions = numbersOf(run.size() - wholeDigits);
    for (const unsigned int whole : numbersOf(wholeDigits)) {
        std::string text = whole % 2 ? "-" : "";
        text += std::to_string(whole);
        text += '.';
        text += std::to_string(fractions[texts.size()]);
        texts.push_back(text);
        run.expectClose(parse(text), std::strtod(text.c_str(), nullptr), 1e-6);
    }
    for (auto _ : run.loop()) {
        for (const std::string& text : texts) benchmark::DoNotOptimize(parse(text));
    }
    run.countItems(COUNT);
}

template <float (*parse)(const std::string&)>
bool addFloatParser(const std::string& parser) {
    addBenchmarks("Numbers/parse float/" + parser, {2, 6, 12},
                  [](Run& run) { parseFloats<parse>(run, run.size() / 2); });
    return addBenchmark("Numbers/parse fraction/" + parser, 10, [](Run& run) { parseFloats<parse>(run, 1); });
}

[[maybe_unused]] const bool floatParsers =
    addFloatParser<parseWithFloat>("parseFloat") && addFloatParser<parseFloatWithParse>("parse") &&
    addFloatParser<parseWithFastFloat>("fast_float") && addFloatParser<parseFloatWithFromChars>("std::from_chars");

// Printers of integers ------------------------------------------------------------------------------------------------

constexpr unsigned int CAPACITY = 16;

unsigned int printWithDec(unsigned int value, char* buffer) {
    return Vorn::printDec(value, reinterpret_cast<unsigned char*>(buffer), CAPACITY);
}

unsigned int printWithWriteText(unsigned int value, char* buffer) { return Vorn::writeText(buffer, CAPACITY, value); }

unsigned int printWithToChars(unsigned int value, char* buffer) {
    return static_cast<unsigned int>(std::to_chars(buffer, buffer + CAPACITY, value).ptr - buffer);
}

// The text is copied to the caller's buffer, as by the other functions.
unsigned int printWithFmt(unsigned int value, char* buffer) {
    const fmt::format_int text(value);
    std::memcpy(buffer, text.data(), text.size());
    return static_cast<unsigned int>(text.size());
}

template <unsigned int (*print)(unsigned int, char*)>
void printIntegers(Run& run) {
    char buffer[CAPACITY];
    const std::vector<unsigned int> numbers = numbersOf(run.size());
    for (const unsigned int number : numbers) {
        run.expect(std::string(buffer, print(number, buffer)), std::to_string(number));
    }
    for (auto _ : run.loop()) {
        for (const unsigned int number : numbers) {
            benchmark::DoNotOptimize(print(number, buffer));
            benchmark::ClobberMemory();
        }
    }
    run.countItems(COUNT);
}

// The text stays in the object, without a copy.
void formatInPlace(Run& run) {
    const std::vector<unsigned int> numbers = numbersOf(run.size());
    for (const unsigned int number : numbers) run.expect(fmt::format_int(number).str(), std::to_string(number));
    for (auto _ : run.loop()) {
        for (const unsigned int number : numbers) {
            const fmt::format_int text(number);
            benchmark::DoNotOptimize(text.data());
            benchmark::ClobberMemory();
        }
    }
    run.countItems(COUNT);
}

[[maybe_unused]] const bool integerPrinters =
    addBenchmarks("Numbers/print unsigned/printDec", {1, 3, 6, 10}, printIntegers<printWithDec>) &&
    addBenchmarks("Numbers/print unsigned/writeText", {1, 3, 6, 10}, printIntegers<printWithWriteText>) &&
    addBenchmarks("Numbers/print unsigned/std::to_chars", {1, 3, 6, 10}, printIntegers<printWithToChars>) &&
    addBenchmarks("Numbers/print unsigned/fmt::format_int", {1, 3, 6, 10}, printIntegers<printWithFmt>) &&
    addBenchmarks("Numbers/print unsigned/fmt::format_int, in place", {1, 3, 6, 10}, formatInPlace);

// Printers of floats: the shortest text that is read back as the same value -------------------------------------------

constexpr unsigned int FLOAT_CAPACITY = 24;

unsigned int printFloatWithWriteText(double value, char* buffer) {
    return Vorn::writeText(buffer, FLOAT_CAPACITY, value);
}

unsigned int printFloatWithToChars(double value, char* buffer) {
    return static_cast<unsigned int>(std::to_chars(buffer, buffer + FLOAT_CAPACITY, value).ptr - buffer);
}

unsigned int printFloatWithFmt(double value, char* buffer) {
    return static_cast<unsigned int>(fmt::format_to(buffer, "{}", value) - buffer);
}

// The size is the number of digits before and behind the point.
template <unsigned int (*print)(double, char*)>
void printFloats(Run& run) {
    char buffer[FLOAT_CAPACITY];
    std::vector<double> numbers;
    for (const unsigned int number : numbersOf(run.size())) numbers.push_back(number / 1000.0);
    for (const double number : numbers) {
        run.expect(std::strtod(std::string(buffer, print(number, buffer)).c_str(), nullptr), number);
    }
    for (auto _ : run.loop()) {
        for (const double number : numbers) {
            benchmark::DoNotOptimize(print(number, buffer));
            benchmark::ClobberMemory();
        }
    }
    run.countItems(COUNT);
}

// An owned text of each number.
template <class Text, Text (*make)(double)>
void makeTexts(Run& run) {
    std::vector<double> numbers;
    for (const unsigned int number : numbersOf(run.size())) numbers.push_back(number / 1000.0);
    run.expect(Vorn::parse<double>(make(numbers[0])).value_or(0), numbers[0]);
    for (auto _ : run.loop()) {
        for (const double number : numbers) benchmark::DoNotOptimize(make(number));
    }
    run.countItems(COUNT);
}

std::string formatWithFmt(double value) { return fmt::format("{}", value); }

[[maybe_unused]] const bool floatPrinters =
    addBenchmarks("Numbers/print double/writeText", {3, 6, 10}, printFloats<printFloatWithWriteText>) &&
    addBenchmarks("Numbers/print double/std::to_chars", {3, 6, 10}, printFloats<printFloatWithToChars>) &&
    addBenchmarks("Numbers/print double/fmt", {3, 6, 10}, printFloats<printFloatWithFmt>) &&
    addBenchmarks("Numbers/text of double/toText", {3, 10}, makeTexts<Vorn::String, Vorn::toText<double>>) &&
    addBenchmarks("Numbers/text of double/fmt", {3, 10}, makeTexts<std::string, formatWithFmt>);

} // namespace
