// Expectations on failures: which exception, and each text of its report.
#pragma once

#include "Vorn/Exception.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

/// What a failure reported. Null texts read as "(null)".
struct Report {
    int code = 0;
    std::string type;
    std::string file;
    std::string function;
    std::string lineString;
    unsigned int line = 0;
    std::string message;
};

inline std::string reportText(const char* text) { return text ? std::string(text) : std::string("(null)"); }

/// Runs `run` and gives the report of the `Exception<N>` that it raises; a test failure if it raises anything else.
template <int N, class Callable>
Report reportOf(Callable&& run) {
    try {
        run();
    } catch (const Vorn::Exception<N>& exception) {
        return Report{exception.getCode(),
                      reportText(exception.getType()),
                      reportText(exception.getFile()),
                      reportText(exception.getFunction()),
                      reportText(exception.getLineString()),
                      exception.getLine(),
                      reportText(exception.getMessage())};
    } catch (const std::exception& exception) {
        ADD_FAILURE() << "another exception than Exception<" << N << ">: " << exception.what();
        return {};
    }
    ADD_FAILURE() << "no exception where Exception<" << N << "> was expected";
    return {};
}

/// Whether a file text is the path of a library source from the repository's root, without its ending.
inline bool isLibrarySource(const std::string& file) {
    return (file.starts_with("Source/Vorn/") || file.starts_with("Include/Vorn/")) &&
           file.find('.') == std::string::npos;
}

/// Expects that `run` raises `Exception<N>` with this message, function text and file text, and returns the report.
/// Without a function text, the report must name any function; without a file text, any source of the library.
template <int N, class Callable>
Report expectRaises(Callable&& run, const std::string& message, const std::optional<std::string>& function = {},
                    const std::optional<std::string>& file = {}) {
    const Report report = reportOf<N>(run);
    EXPECT_EQ(report.message, message);
    EXPECT_EQ(report.code, N);
    EXPECT_EQ(report.lineString, "__LINE__");
    if (function)
        EXPECT_EQ(report.function, *function);
    else
        EXPECT_TRUE(!report.function.empty() && report.function != "(null)") << report.function;
    if (file)
        EXPECT_EQ(report.file, *file);
    else
        EXPECT_PRED1(isLibrarySource, report.file);
    return report;
}
