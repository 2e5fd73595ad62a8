/// @file
/// Assert: the three forms of every check.
///
///     VORN_ASSERT(condition, text)             throws Exception<1> if the condition is false
///     VORN_INTERNAL_ASSERT(condition, text)    throws Exception<2> if the condition is false
///     VORN_THROW(N, text)                      throws Exception<N>
///
/// The checks are active in every build. The message of an assertion is the condition as written, " : " and the text;
/// the message of VORN_THROW is the text. `text` is a string literal.
///
/// The report contains the path of the file without its extension, the line, and the qualified name of the function
/// without parameters and template arguments. For a function in an unnamed namespace the name has no namespaces. A
/// third argument replaces the name: VORN_THROW(4, "null string!", "Game::load"). It is a string literal or a
/// VornPrivate::FixedText with static storage.
///
/// Cost: a check that passes costs the evaluation of its condition. All texts are built at compile time, and a failure
/// calls one function that is not inlined. A function that contains a check cannot be constexpr.
///
/// Threads: a check uses no shared state.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/Exception.h"
#include "Vorn/Private/ReportText.h"

namespace VornPrivate {

/// A view of characters with static storage.
struct TextView {
    template <std::size_t Size>
    constexpr TextView(const char (&literal)[Size]) : text(literal), size(int(Size) - 1) {}
    template <std::size_t Capacity>
    constexpr TextView(const FixedText<Capacity>& fixed) : text(fixed.characters), size(fixed.size) {}

    operator Vorn::ExceptionString() const { return Vorn::ExceptionString(text, size); }

    const char* text;
    int size;
};

/// The data of a check that are known at compile time.
struct ReportSite {
    TextView file;
    TextView function;
    TextView message;
    unsigned int line;
};

/// The line text of every report. The name of the macro is specified, not its value.
inline constexpr TextView LINE_STRING("__LINE__");

/// The name of a code in a report.
template <int N>
constexpr TextView codeName() {
    static_assert(N == 1 || N == 2 || N == 4 || N == 7, "the family has the codes 1, 2, 4 and 7");
    if constexpr (N == Vorn::E::ASSERT) return "::Vorn::E::ASSERT";
    if constexpr (N == Vorn::E::INTERNAL) return "::Vorn::E::INTERNAL";
    if constexpr (N == Vorn::E::PARAMETER) return "::Vorn::E::PARAMETER";
    return "::Vorn::E::UNICODE";
}

[[noreturn]] VORN_COLD inline void raiseAssert(const ReportSite& site) {
    Vorn::throwAssert(site.file, site.function, LINE_STRING, site.line, site.message);
}

[[noreturn]] VORN_COLD inline void raiseInternalAssert(const ReportSite& site) {
    Vorn::throwInternalAssert(site.file, site.function, LINE_STRING, site.line, site.message);
}

template <int N>
[[noreturn]] VORN_COLD void raise(const ReportSite& site) {
    throw Vorn::Exception<N>(codeName<N>(), site.file, site.function, LINE_STRING, site.line, site.message);
}

} // namespace VornPrivate

/// Throws `Exception<1>` if `condition` is false: the condition as written, " : " and the text.
#define VORN_ASSERT(condition, ...)                                                                \
    VORN_PRIVATE_CHECK(condition, raiseAssert, #condition " : " VORN_PRIVATE_FIRST(__VA_ARGS__, ), \
                       VORN_PRIVATE_FUNCTION(__VA_ARGS__))

/// Throws `Exception<2>` if `condition` is false: the condition as written, " : " and the text.
#define VORN_INTERNAL_ASSERT(condition, ...)                                                               \
    VORN_PRIVATE_CHECK(condition, raiseInternalAssert, #condition " : " VORN_PRIVATE_FIRST(__VA_ARGS__, ), \
                       VORN_PRIVATE_FUNCTION(__VA_ARGS__))

/// Throws `Exception<N>` with a text as its message; N is 1, 2, 4 or 7.
#define VORN_THROW(N, ...) \
    VORN_PRIVATE_RAISE(raise<N>, VORN_PRIVATE_FIRST(__VA_ARGS__, ), VORN_PRIVATE_FUNCTION(__VA_ARGS__))

// Support of the three forms. The condition is converted to text before any macro in it is expanded.

#define VORN_PRIVATE_CHECK(condition, raiser, message, function)                    \
    do {                                                                            \
        if (!VORN_LIKELY(condition)) VORN_PRIVATE_RAISE(raiser, message, function); \
    } while (false)

#define VORN_PRIVATE_RAISE(raiser, message, function)                                                   \
    do {                                                                                                \
        static constexpr auto vornFile = ::VornPrivate::sourcePath(__FILE__);                           \
        static constexpr auto vornFunction = function;                                                  \
        static constexpr ::VornPrivate::ReportSite vornSite{vornFile, vornFunction, message, __LINE__}; \
        ::VornPrivate::raiser(vornSite);                                                                \
    } while (false)

#define VORN_PRIVATE_FIRST(first, ...) first
#define VORN_PRIVATE_FUNCTION(...) \
    VORN_PRIVATE_THIRD(__VA_ARGS__, VORN_PRIVATE_NAMED, VORN_PRIVATE_UNNAMED, )(__VA_ARGS__)
#define VORN_PRIVATE_THIRD(first, second, third, ...) third
#define VORN_PRIVATE_UNNAMED(text) ::VornPrivate::qualifiedName(__PRETTY_FUNCTION__)
#define VORN_PRIVATE_NAMED(text, name) ::VornPrivate::TextView(name)
