// Runs the benchmarks. Arguments are those of Google Benchmark and --corpus DIR, which adds the texts of a folder to
// the generated ones. The program ends with 1 if an answer was wrong.
#include "Support/Corpus.h"
#include "Support/Measure.h"
#include "Vorn/TextBenchmark.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <exception>
#include <utility>
#include <vector>

int main(int argumentCount, char** arguments) {
    const char* corpus = nullptr;
    std::vector<char*> remaining;
    for (int i = 0; i < argumentCount; ++i) {
        if (std::strcmp(arguments[i], "--corpus") == 0 && i + 1 < argumentCount) {
            corpus = arguments[++i];
        } else {
            remaining.push_back(arguments[i]);
        }
    }
    std::vector<SampleText> words, pages;
    try {
        words = generateWords();
        pages = generatePages();
        if (corpus) {
            for (SampleText& text : readTexts(corpus)) pages.push_back(std::move(text));
        }
        registerTextBenchmarks(words);
        registerCopyBenchmarks(words);
        registerTextBenchmarks(pages);
        registerKernelBenchmarks(pages);
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "VornBenchmarks: %s\n", exception.what());
        return 1;
    }

    int remainingCount = static_cast<int>(remaining.size());
    remaining.push_back(nullptr);
    benchmark::Initialize(&remainingCount, remaining.data());
    if (benchmark::ReportUnrecognizedArguments(remainingCount, remaining.data())) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return Run::hasFailed() || haveKernelBenchmarksFailed() ? 1 : 0;
}
