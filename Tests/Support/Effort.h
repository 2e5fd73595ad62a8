// How much of a large set of rows, and how many rounds of a random test, run. Optimised builds run everything;
// sanitizers and unoptimised builds run a part. The environment variable VORN_TEST_EFFORT overrides the build's choice
// with `exhaustive`, `full`, `reduced` or `small`. `small` is meant for valgrind and emulators; `exhaustive` runs a
// hundred times the rounds of `full`, and is meant for single tests that --gtest_filter selects.
#pragma once

#include "Support/Sanitizers.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <string>

enum class Effort { SMALL, REDUCED, FULL, EXHAUSTIVE };

/// What a build runs unless the environment says otherwise.
#if VORN_TEST_HAS_SANITIZER || !defined(__OPTIMIZE__)
#define VORN_TEST_BUILD_EFFORT Effort::REDUCED
#else
#define VORN_TEST_BUILD_EFFORT Effort::FULL
#endif

/// The effort of this run. Throws `std::invalid_argument` for an unknown name.
inline Effort effort() {
    static const Effort chosen = [] {
        const char* const variable = std::getenv("VORN_TEST_EFFORT");
        const std::string name(variable ? variable : "");
        if (name.empty()) return VORN_TEST_BUILD_EFFORT;
        if (name == "exhaustive") return Effort::EXHAUSTIVE;
        if (name == "full") return Effort::FULL;
        if (name == "reduced") return Effort::REDUCED;
        if (name == "small") return Effort::SMALL;
        throw std::invalid_argument("VORN_TEST_EFFORT is \"" + name + "\", not exhaustive, full, reduced or small");
    }();
    return chosen;
}

/// The largest result of `rowStep`.
inline constexpr unsigned int LARGEST_ROW_STEP = 13;

/// One row in so many of a large table runs. A prime number, so that no column is left out.
inline unsigned int rowStep() {
    switch (effort()) {
    case Effort::EXHAUSTIVE:
    case Effort::FULL: return 1;
    case Effort::REDUCED: return 7;
    case Effort::SMALL: break;
    }
    return LARGEST_ROW_STEP;
}

/// Rounds of a random test that runs `full` rounds in an optimised build. Never fewer than `least`.
inline int repetitions(int full, int least = 1) {
    switch (effort()) {
    case Effort::EXHAUSTIVE: return 100 * full;
    case Effort::FULL: return full;
    case Effort::REDUCED: return std::max(full / 50, least);
    case Effort::SMALL: break;
    }
    return std::max(full / 1000, least);
}
