// Number text, compared with the standard library, fast_float and fmt. Each measurement processes many numbers of one
// shape; items per second are numbers per second. All results are compared before the measurement.
#include "Vorn/ParseFloat.h"
#include "Vorn/ParseInt.h"
#include "Vorn/PrintInt.h"

#include <benchmark/benchmark.h>
#include <fast_float/fast_float.h>
#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr std::size_t COUNT = 256;

const unsigned char* bytesOf(const std::string& text) { return reinterpret_cast<const unsigned char*>(text.data()); }

unsigned int sizeOf(const std::string& text) { return static_cast<unsigned int>(text.size()); }

// Numbers of exactly `digits` digits.
std::vector<unsigned int> numbersOf(int digits) {
    std::mt19937_64 random(static_cast<unsigned int>(digits));
    unsigned long long lowest = 1;
    for (int i = 1; i < digits; ++i) lowest *= 10;
    const unsigned long long highest = digits == 10 ? 4294967295 : lowest * 10 - 1;
    std::vector<unsigned int> numbers;
    for (std::size_t i = 0; i < COUNT; ++i) {
        numbers.push_back(static_cast<unsigned int>(lowest + random() % (highest - lowest + 1)));
    }
    return numbers;
}

void stop(benchmark::State& state) { state.SkipWithError("a wrong answer"); }

// Parsers of integers -------------------------------------------------------------------------------------------------

int parseWithDec(const std::string& text) {
    unsigned int count;
    return Vorn::parseDec<int>(bytesOf(text), &count, sizeOf(text));
}

int parseWithInt(const std::string& text) {
    unsigned int count;
    return Vorn::parseInt<int>(bytesOf(text), &count, sizeOf(text));
}

int parseWithFromChars(const std::string& text) {
    int value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

template <int (*parse)(const std::string&)>
void parseIntegers(benchmark::State& state) {
    std::vector<std::string> texts;
    for (const unsigned int number : numbersOf(static_cast<int>(state.range(0)))) {
        texts.push_back(std::to_string(number));
        if (parse(texts.back()) != static_cast<int>(number)) return stop(state);
    }
    for (auto _ : state) {
        for (const std::string& text : texts) benchmark::DoNotOptimize(parse(text));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(COUNT));
}

BENCHMARK(parseIntegers<parseWithDec>)->Name("parse int/parseDec")->Arg(1)->Arg(3)->Arg(6)->Arg(9);
BENCHMARK(parseIntegers<parseWithInt>)->Name("parse int/parseInt")->Arg(1)->Arg(3)->Arg(6)->Arg(9);
BENCHMARK(parseIntegers<parseWithFromChars>)->Name("parse int/std::from_chars")->Arg(1)->Arg(3)->Arg(6)->Arg(9);

// Parsers of floats ---------------------------------------------------------------------------------------------------

float parseWithFloat(const std::string& text) {
    unsigned int count;
    return Vorn::parseFloat(bytesOf(text), &count, sizeOf(text));
}

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

// Texts of a sign, `range(0)` digits, a point and `range(1)` digits.
template <float (*parse)(const std::string&)>
void parseFloats(benchmark::State& state) {
    std::vector<std::string> texts;
    const std::vector<unsigned int> fractions = numbersOf(static_cast<int>(state.range(1)));
    for (const unsigned int whole : numbersOf(static_cast<int>(state.range(0)))) {
        std::string text = whole % 2 ? "-" : "";
        text += std::to_string(whole);
        text += '.';
        text += std::to_string(fractions[texts.size()]);
        texts.push_back(text);
        const float nearest = parseWithFastFloat(texts.back());
        if (std::abs(parse(texts.back()) - nearest) > std::abs(nearest) * 1e-6f) return stop(state);
    }
    for (auto _ : state) {
        for (const std::string& text : texts) benchmark::DoNotOptimize(parse(text));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(COUNT));
}

#define VORN_FLOAT_SHAPES ->Args({1, 1})->Args({3, 3})->Args({6, 6})->Args({1, 9})
BENCHMARK(parseFloats<parseWithFloat>)->Name("parse float/parseFloat") VORN_FLOAT_SHAPES;
BENCHMARK(parseFloats<parseWithFastFloat>)->Name("parse float/fast_float") VORN_FLOAT_SHAPES;
BENCHMARK(parseFloats<parseFloatWithFromChars>)->Name("parse float/std::from_chars") VORN_FLOAT_SHAPES;

// Printers of integers ------------------------------------------------------------------------------------------------

constexpr unsigned int CAPACITY = 16;

unsigned int printWithDec(unsigned int value, char* buffer) {
    return Vorn::printDec(value, reinterpret_cast<unsigned char*>(buffer), CAPACITY);
}

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
void printIntegers(benchmark::State& state) {
    char buffer[CAPACITY];
    const std::vector<unsigned int> numbers = numbersOf(static_cast<int>(state.range(0)));
    for (const unsigned int number : numbers) {
        if (std::string(buffer, print(number, buffer)) != std::to_string(number)) return stop(state);
    }
    for (auto _ : state) {
        for (const unsigned int number : numbers) {
            benchmark::DoNotOptimize(print(number, buffer));
            benchmark::ClobberMemory();
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(COUNT));
}

// The text stays in the object, without a copy.
void formatInPlace(benchmark::State& state) {
    const std::vector<unsigned int> numbers = numbersOf(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        for (const unsigned int number : numbers) {
            const fmt::format_int text(number);
            benchmark::DoNotOptimize(text.data());
            benchmark::ClobberMemory();
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(COUNT));
}

BENCHMARK(printIntegers<printWithDec>)->Name("print unsigned/printDec")->Arg(1)->Arg(3)->Arg(6)->Arg(10);
BENCHMARK(printIntegers<printWithToChars>)->Name("print unsigned/std::to_chars")->Arg(1)->Arg(3)->Arg(6)->Arg(10);
BENCHMARK(printIntegers<printWithFmt>)->Name("print unsigned/fmt::format_int")->Arg(1)->Arg(3)->Arg(6)->Arg(10);
BENCHMARK(formatInPlace)->Name("print unsigned/fmt::format_int, in place")->Arg(1)->Arg(3)->Arg(6)->Arg(10);

} // namespace
