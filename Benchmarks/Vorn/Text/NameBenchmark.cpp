// Names and formats, compared with standard strings. Items per second are texts per second.
#include "Support/Measure.h"
#include "Vorn/Text/FormatFmt.h"
#include "Vorn/Text/MakeString.h"
#include "Vorn/Text/Name.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <random>
#include <string>
#include <unordered_set>
#include <vector>

namespace {

constexpr std::size_t COUNT = 256;

// Different texts of one length.
std::vector<std::string> textsOf(std::size_t length) {
    std::mt19937 random(static_cast<unsigned int>(length));
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < COUNT; ++i) {
        std::string text(length, 'a');
        for (char& c : text) c = static_cast<char>('a' + random() % 26);
        texts.push_back(text);
    }
    return texts;
}

void lookUpNames(Run& run) {
    const std::vector<std::string> texts = textsOf(run.size());
    for (const std::string& text : texts) {
        const Vorn::Name name(text);
        run.expect(Vorn::Name::lookUp(text) == name, true);
    }
    for (auto _ : run.loop()) {
        for (const std::string& text : texts) benchmark::DoNotOptimize(Vorn::Name::lookUp(text));
    }
    run.countItems(COUNT);
}

void lookUpStrings(Run& run) {
    const std::vector<std::string> texts = textsOf(run.size());
    const std::unordered_set<std::string> set(texts.begin(), texts.end());
    run.expect(set.size(), COUNT);
    for (auto _ : run.loop()) {
        for (const std::string& text : texts) benchmark::DoNotOptimize(set.find(text));
    }
    run.countItems(COUNT);
}

std::string formatted(const Vorn::String& text, int number) { return fmt::format("{:>20} {}", text, number); }
std::string formatted(const std::string& text, int number) { return fmt::format("{:>20} {}", text, number); }

template <class Text>
void formatTexts(Run& run) {
    const std::vector<std::string> texts = textsOf(run.size());
    std::vector<Text> values;
    for (const std::string& text : texts) {
        if constexpr (std::is_same_v<Text, std::string>)
            values.push_back(text);
        else
            values.push_back(Vorn::makeString(text));
        run.expect(formatted(values.back(), 7), formatted(text, 7));
    }
    for (auto _ : run.loop()) {
        for (const Text& value : values) benchmark::DoNotOptimize(formatted(value, 7));
    }
    run.countItems(COUNT);
}

[[maybe_unused]] const bool names =
    addBenchmarks("Names/look up/Name", {4, 16, 64}, lookUpNames) &&
    addBenchmarks("Names/look up/std::unordered_set", {4, 16, 64}, lookUpStrings) &&
    addBenchmarks("Names/format with fmt/String", {4, 16, 64}, formatTexts<Vorn::String>) &&
    addBenchmarks("Names/format with fmt/std::string", {4, 16, 64}, formatTexts<std::string>);

} // namespace
