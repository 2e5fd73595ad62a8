// Measure: names and answers of benchmarks. Every benchmark is called "Area/operation/variant/size" and compares its
// answer with the expected one; a wrong answer is never fast.
#pragma once

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

/// One run of a benchmark.
class Run {
public:
    Run(benchmark::State& state, std::size_t size) : m_state(state), m_size(size) {}

    /// The last part of the benchmark's name.
    std::size_t size() const { return m_size; }

    /// The loop: `for (auto _ : run.loop())`. It does not run after a wrong answer.
    benchmark::State& loop() { return m_state; }
    std::int64_t iterations() const { return static_cast<std::int64_t>(m_state.iterations()); }

    /// Fails the benchmark unless the answer equals the expected one. NaN equals nothing.
    template <class Answer, class Expected>
    void expect(const Answer& answer, const Expected& expected) {
        check(answer == expected);
    }

    /// Fails the benchmark unless the answer is within `tolerance`, a part of the expected value plus `offset`. NaN
    /// fails.
    void expectClose(double answer, double expected, double tolerance, double offset = 0) {
        check(std::fabs(answer - expected) <= tolerance * (offset + std::fabs(expected)));
    }

    /// Adds a word about the input to the result.
    void describe(const char* input) { m_state.SetLabel(input); }

    /// The time of one iteration, in benchmarks that measure it themselves.
    void setSeconds(double seconds) { m_state.SetIterationTime(seconds); }

    void countBytes(std::size_t bytes) { m_state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * iterations()); }
    void countItems(std::size_t items) { m_state.SetItemsProcessed(static_cast<std::int64_t>(items) * iterations()); }

    /// Fails a benchmark that compared nothing.
    void requireAnswer() {
        if (!m_hasAnswer) fail("no answer was checked");
    }

    /// Whether any benchmark of this module failed.
    static bool hasFailed() { return s_hasFailed; }

private:
    void check(bool isRight) {
        m_hasAnswer = true;
        if (!isRight) fail("wrong answer");
    }

    void fail(const char* what) {
        s_hasFailed = true;
        m_state.SkipWithError(what);
    }

    static inline bool s_hasFailed = false;

    benchmark::State& m_state;
    std::size_t m_size;
    bool m_hasAnswer = false;
};

/// Adds the benchmark `name` ("Area/operation/variant") of this size. `function` takes a Run. With `measuresItself` it
/// sets the time of each iteration, and the library appends "/manual_time" to the name.
template <class Function>
bool addBenchmark(const std::string& name, std::size_t size, Function function, bool measuresItself = false) {
    const std::string fullName = name + "/" + std::to_string(size);
    auto* const added = benchmark::RegisterBenchmark(fullName.c_str(), [=](benchmark::State& state) {
        Run run(state, size);
        function(run);
        run.requireAnswer();
    });
    if (measuresItself) added->UseManualTime();
    return true;
}

/// Adds one for each size.
template <class Function>
bool addBenchmarks(const std::string& name, std::initializer_list<std::size_t> sizes, Function function) {
    for (const std::size_t size : sizes) addBenchmark(name, size, function);
    return true;
}
