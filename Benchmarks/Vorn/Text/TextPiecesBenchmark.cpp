// Dividing, joining and replacing, compared with the standard library.
#include "Support/Measure.h"

#include <Vorn/Text/MakeString.h>
#include <Vorn/Text/TextBuilder.h>
#include <Vorn/Text/TextChange.h>
#include <Vorn/Text/TextPieces.h>
#include <benchmark/benchmark.h>

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace Vorn;

constexpr std::size_t MEGABYTE = 1 << 20;

// Fields of 1 to 30 letters.
std::string textOf(const Run& run, char separator) {
    std::string text;
    for (unsigned int i = 0; text.size() < run.size(); ++i) {
        text.append(1 + i * 7 % 30, static_cast<char>('a' + i % 26));
        text.push_back(separator);
    }
    text.resize(run.size() - 1);
    return text + 'z';
}

std::size_t countOf(const std::string& text, char separator) {
    std::size_t count = 1;
    for (const char c : text) count += c == separator;
    return count;
}

void splitString(Run& run) {
    const std::string text = textOf(run, ',');
    const String string = makeString(text);
    std::size_t count = 0;
    for (auto _ : run.loop()) {
        count = 0;
        for (TextView piece : split(string, ',')) {
            benchmark::DoNotOptimize(piece);
            ++count;
        }
    }
    run.expect(count, countOf(text, ','));
    run.countBytes(text.size());
}

void splitToStrings(Run& run) {
    const std::string text = textOf(run, ',');
    const String string = makeString(text);
    std::size_t count = 0;
    for (auto _ : run.loop()) {
        count = 0;
        for (const TextPiece& piece : split(string, ',')) {
            benchmark::DoNotOptimize(piece.toString());
            ++count;
        }
    }
    run.expect(count, countOf(text, ','));
    run.countBytes(text.size());
}

void splitGetline(Run& run) {
    const std::string text = textOf(run, ',');
    std::size_t count = 0;
    std::istringstream stream(text);
    for (auto _ : run.loop()) {
        stream.clear();
        stream.seekg(0);
        count = 0;
        for (std::string field; std::getline(stream, field, ',');) {
            benchmark::DoNotOptimize(field);
            ++count;
        }
    }
    run.expect(count, countOf(text, ','));
    run.countBytes(text.size());
}

void splitFind(Run& run) {
    const std::string text = textOf(run, ',');
    std::size_t count = 0;
    for (auto _ : run.loop()) {
        count = 0;
        const std::string_view view = text;
        for (std::size_t start = 0, end = 0; end != view.npos; start = end + 1) {
            end = view.find(',', start);
            benchmark::DoNotOptimize(view.substr(start, end - start));
            ++count;
        }
    }
    run.expect(count, countOf(text, ','));
    run.countBytes(text.size());
}

void linesOfString(Run& run) {
    const std::string text = textOf(run, '\n');
    const String string = makeString(text);
    std::size_t count = 0;
    for (auto _ : run.loop()) {
        count = 0;
        for (TextView line : lines(string)) {
            benchmark::DoNotOptimize(line);
            ++count;
        }
    }
    run.expect(count, countOf(text, '\n'));
    run.countBytes(text.size());
}

void concatStrings(Run& run) {
    const std::string text(run.size(), 'x');
    const String string = makeString(text);
    run.expect(TextView(concat(string, ", ", 42)).getLength(), run.size() + 4);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(concat(string, ", ", 42));
    run.countBytes(run.size() + 4);
}

void concatStdString(Run& run) {
    const std::string text(run.size(), 'x');
    run.expect((text + ", " + std::to_string(42)).size(), run.size() + 4);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(text + ", " + std::to_string(42));
    run.countBytes(run.size() + 4);
}

void build(Run& run) {
    for (auto _ : run.loop()) {
        TextBuilder builder;
        for (std::size_t i = 0; i < run.size(); ++i) builder.append("field ", ';');
        benchmark::DoNotOptimize(builder.take());
    }
    TextBuilder builder;
    for (std::size_t i = 0; i < run.size(); ++i) builder.append("field ", ';');
    run.expect(TextView(builder.take()).getLength(), 7 * run.size());
    run.countBytes(7 * run.size());
}

void buildStdString(Run& run) {
    const auto made = [&] {
        std::string text;
        for (std::size_t i = 0; i < run.size(); ++i) {
            text.append("field ");
            text.push_back(';');
        }
        return text;
    };
    for (auto _ : run.loop()) benchmark::DoNotOptimize(made());
    run.expect(made().size(), 7 * run.size());
    run.countBytes(7 * run.size());
}

std::string replacedStdString(std::string text) {
    for (std::size_t at = 0; (at = text.find(", ", at)) != std::string::npos; ++at) text.replace(at, 2, 1, ';');
    return text;
}

std::string replaceableOf(const Run& run) {
    std::string text;
    while (text.size() < run.size()) text += "some words, ";
    return text;
}

void replace(Run& run) {
    const std::string text = replaceableOf(run);
    const String string = makeString(text);
    run.expect(TextView(replaceAll(string, ", ", ";")).getLength(), replacedStdString(text).size());
    for (auto _ : run.loop()) benchmark::DoNotOptimize(replaceAll(string, ", ", ";"));
    run.countBytes(text.size());
}

void replaceStdString(Run& run) {
    const std::string text = replaceableOf(run);
    run.expect(replacedStdString(text).size(), text.size() - text.size() / 12);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(replacedStdString(text));
    run.countBytes(text.size());
}

[[maybe_unused]] const bool registered =
    addBenchmark("Pieces/split/Vorn", MEGABYTE, splitString) &&
    addBenchmark("Pieces/split/Vorn, into strings", MEGABYTE, splitToStrings) &&
    addBenchmark("Pieces/split/std::getline", MEGABYTE, splitGetline) &&
    addBenchmark("Pieces/split/std::string_view::find", MEGABYTE, splitFind) &&
    addBenchmark("Pieces/lines/Vorn", MEGABYTE, linesOfString) &&
    addBenchmarks("Pieces/concat/Vorn", {16, 256}, concatStrings) &&
    addBenchmarks("Pieces/concat/std::string", {16, 256}, concatStdString) &&
    addBenchmarks("Pieces/build/Vorn", {16, 4096}, build) &&
    addBenchmarks("Pieces/build/std::string", {16, 4096}, buildStdString) &&
    addBenchmarks("Pieces/replace all/Vorn", {256, 16384}, replace) &&
    addBenchmarks("Pieces/replace all/std::string", {256, 16384}, replaceStdString);

} // namespace
