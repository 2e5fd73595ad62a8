// The outcome of a call as a value: what it returned, or every text of the failure that it raised. Outcomes are
// compared and printed, so that a table or a reference can contain both results and failures.
#pragma once

#include "Vorn/Exception.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

/// The outcome of one call. `failure` is empty if it returned.
struct Outcome {
    unsigned int value = 0;
    std::string failure;

    friend bool operator==(const Outcome& left, const Outcome& right) {
        return left.value == right.value && left.failure == right.failure;
    }
    friend bool operator!=(const Outcome& left, const Outcome& right) { return !(left == right); }
    friend std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
        if (!outcome.failure.empty()) return stream << "raised " << outcome.failure;
        return stream << "returned 0x" << std::hex << outcome.value << std::dec;
    }
};

/// The texts of a failure in one line.
inline std::string failureText(int code, const std::string& message, const std::string& function,
                               const std::string& file) {
    return "Exception<" + std::to_string(code) + "> \"" + message + "\" of " + function + " in " + file;
}

/// The outcome of a call that throws this.
inline Outcome raised(int code, const std::string& message, const std::string& function, const std::string& file) {
    return {0, failureText(code, message, function, file)};
}

/// The texts of the failure that `run` throws, or an empty text.
template <class Callable>
std::string failureOf(Callable&& run) {
    try {
        run();
    } catch (const Vorn::AllExceptions& exception) {
        return failureText(exception.getCode(), exception.getMessage(), exception.getFunction(), exception.getFile());
    }
    return {};
}

/// Runs `run` and returns its outcome.
template <class Callable>
Outcome outcomeOf(Callable&& run) {
    Outcome outcome;
    outcome.failure = failureOf([&] { outcome.value = static_cast<unsigned int>(run()); });
    return outcome;
}

/// Compares two functions over values; stops at the first difference, so that one fault does not print a million lines.
template <class Values, class Actual, class Expected>
void expectSameOver(const Values& values, Actual&& actual, Expected&& expected) {
    for (const auto value : values) {
        const auto is = actual(value);
        const auto should = expected(value);
        if (is == should) continue;
        ADD_FAILURE() << "for 0x" << std::hex << +value << ": " << is << " instead of " << should;
        return;
    }
}
