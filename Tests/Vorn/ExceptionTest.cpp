#include "Vorn/Exception.h"

#include "Support/AllocationCounter.h"
#include "Support/Report.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using Vorn::AllExceptions;
using Vorn::Exception;
using Vorn::ExceptionString;

template <int Size>
ExceptionString literal(const char (&text)[Size]) {
    return ExceptionString(text, Size - 1);
}

template <int N>
Exception<N> make(unsigned int line = 42) {
    return Exception<N>(literal("::Type"), literal("File"), literal("Name::function"), literal("__LINE__"), line,
                        literal("what went wrong"));
}

// Collects what the log callback receives, for as long as it lives.
class LogCapture {
public:
    LogCapture() {
        lines().clear();
        AllExceptions::setLogCallback([](const char* line) { lines().push_back(line); });
    }
    ~LogCapture() { AllExceptions::setLogCallback(nullptr); }

    static std::vector<std::string>& lines() {
        static std::vector<std::string> collected;
        return collected;
    }
};

TEST(AllExceptions, DefaultReportsTheBareFrame) {
    const AllExceptions exception;
    EXPECT_STREQ(exception.what(), ":0: : Exception: :");
    EXPECT_EQ(exception.getType(), nullptr);
    EXPECT_EQ(exception.getMessage(), nullptr);
    EXPECT_EQ(exception.getFile(), nullptr);
    EXPECT_EQ(exception.getFunction(), nullptr);
    EXPECT_EQ(exception.getLineString(), nullptr);
    EXPECT_EQ(exception.getLine(), 0u);
    EXPECT_EQ(exception.getCode(), 0);
}

TEST(AllExceptions, ReportIsBuiltOnceAndKept) {
    const Exception<4> exception = make<4>(1650);
    const char* const report = exception.what();
    EXPECT_STREQ(report, "File:1650: Name::function: Exception: ::Type:what went wrong");
    EXPECT_EQ(exception.what(), report);
    EXPECT_EQ(exception.getLogString(), report);
}

TEST(AllExceptions, LineIsPlainDecimal) {
    const struct {
        unsigned int line;
        const char* report;
    } rows[] = {
        {0, "File:0: "}, {7, "File:7: "}, {42, "File:42: "}, {1650, "File:1650: "}, {4294967295u, "File:4294967295: "}};
    for (const auto& row : rows) {
        EXPECT_EQ(std::string(make<1>(row.line).what()).find(row.report), 0u) << row.line;
    }
}

TEST(AllExceptions, CopiesShareTextsAndReport) {
    const std::string run("made at run time");
    const Exception<2> first(literal("::Type"), literal("File"), literal("f"), literal("__LINE__"), 1,
                             ExceptionString(run, 0.0f));
    const char* const report = first.what();
    const Exception<2> second(first);
    EXPECT_EQ(second.what(), report);
    EXPECT_EQ(second.getMessage(), first.getMessage());
    AllExceptions third;
    third = second;
    EXPECT_EQ(third.what(), report);
    EXPECT_EQ(third.getLine(), 1u);
    EXPECT_EQ(third.getCode(), 2);
}

TEST(AllExceptions, BuildingAndCopyingTouchesNoHeapWithoutACallback) {
    EXPECT_EQ(allocationsDuring([] {
                  const Exception<7> exception = make<7>();
                  const Exception<7> copy(exception);
              }),
              0u);
}

TEST(AllExceptions, LogWithoutCallbackDoesNothing) {
    AllExceptions::setLogCallback(nullptr);
    AllExceptions::log("nobody listens");
    const LogCapture capture;
    AllExceptions::log("somebody listens");
    EXPECT_EQ(LogCapture::lines(), std::vector<std::string>{"somebody listens"});
}

TEST(AllExceptions, EachFailureIsLoggedOnceAtConstruction) {
    const LogCapture capture;
    const Exception<7> exception = make<7>();
    ASSERT_EQ(LogCapture::lines().size(), 1u);
    EXPECT_EQ(LogCapture::lines()[0], exception.what());

    const Exception<7> copy(exception);
    AllExceptions assigned;
    assigned = copy;
    EXPECT_EQ(LogCapture::lines().size(), 1u);

    const Exception<1> formatted(literal("::Type"), literal("File"), literal("f"), literal("__LINE__"), 3,
                                 literal("got "), "%d", 5);
    ASSERT_EQ(LogCapture::lines().size(), 2u);
    EXPECT_EQ(LogCapture::lines()[1], "File:3: f: Exception: ::Type:got 5");

    EXPECT_THROW(Vorn::throwAssert(literal("File"), literal("f"), literal("__LINE__"), 4, literal("message")),
                 Exception<1>);
    EXPECT_EQ(LogCapture::lines().size(), 3u);
    EXPECT_THROW(Vorn::throwInternalAssert(literal("File"), literal("f"), literal("__LINE__"), 4, literal("is "), "%s",
                                           "formatted"),
                 Exception<2>);
    ASSERT_EQ(LogCapture::lines().size(), 4u);
    EXPECT_EQ(LogCapture::lines()[3], "File:4: f: Exception: ::Vorn::E::INTERNAL:is formatted");
}

TEST(AllExceptions, ExceptionFromTheCallbackTakesThePlaceOfTheFailure) {
    AllExceptions::setLogCallback([](const char*) { throw std::runtime_error("from the callback"); });
    EXPECT_THROW(make<1>(), std::runtime_error);
    EXPECT_THROW(Vorn::throwAssert(literal("File"), literal("f"), literal("__LINE__"), 4, literal("prefix"), "%d", 1),
                 std::runtime_error);
    AllExceptions::setLogCallback(nullptr);
}

template <int N>
void expectFamilyMember() {
    EXPECT_EQ(make<N>().getCode(), N);
    EXPECT_THROW(throw make<N>(), Exception<N>);
    EXPECT_THROW(throw make<N>(), AllExceptions);
    EXPECT_THROW(throw make<N>(), std::exception);
    static_assert(std::is_base_of_v<std::exception, AllExceptions>);
    static_assert(std::is_base_of_v<AllExceptions, Exception<N>>);
    static_assert(sizeof(Exception<N>) == sizeof(AllExceptions));
}

TEST(Exception, EveryMemberIsCaughtAsItselfAndAsItsBases) {
    expectFamilyMember<Vorn::E::ASSERT>();
    expectFamilyMember<Vorn::E::INTERNAL>();
    expectFamilyMember<Vorn::E::PARAMETER>();
    expectFamilyMember<Vorn::E::UNICODE>();
}

template <int N>
constexpr bool canFormat = std::is_constructible_v<Exception<N>, ExceptionString, ExceptionString, ExceptionString,
                                                   ExceptionString, unsigned, ExceptionString, const char*, int>;

TEST(Exception, OnlyTheAssertionsFormat) {
    EXPECT_TRUE(canFormat<1>);
    EXPECT_TRUE(canFormat<2>);
    EXPECT_FALSE(canFormat<4>);
    EXPECT_FALSE(canFormat<7>);
}

TEST(Exception, FormattedMessageFollowsThePrefix) {
    const Exception<2> exception(literal("::Type"), literal("File"), literal("f"), literal("__LINE__"), 3,
                                 literal("prefix: "), "%s %d", "text", 17);
    EXPECT_STREQ(exception.getMessage(), "prefix: text 17");
    const Exception<2> bare(literal("::Type"), literal("File"), literal("f"), literal("__LINE__"), 3, ExceptionString(),
                            "%s", "");
    EXPECT_STREQ(bare.getMessage(), "");
}

TEST(Exception, FormattedTextIsCutAt4095BytesAndThePrefixIsNot) {
    const struct {
        std::size_t formatted;
        std::size_t kept;
    } rows[] = {{4094, 4094}, {4095, 4095}, {4096, 4095}, {4097, 4095}, {10000, 4095}};
    for (const auto& row : rows) {
        const std::string text(row.formatted, 'x');
        const std::string prefix(3000, 'p');
        const Exception<1> exception(literal("::Type"), literal("File"), literal("f"), literal("__LINE__"), 3,
                                     ExceptionString(prefix, 0.0f), "%s", text.c_str());
        EXPECT_EQ(std::string(exception.getMessage()), prefix + std::string(row.kept, 'x')) << row.formatted;
    }
}

TEST(Exception, TextThatCannotBeFormattedCountsAsAFullBuffer) {
    const wchar_t unformattable[] = {static_cast<wchar_t>(0x7FFFFFFF), 0};
    try {
        Vorn::throwAssert(literal("File"), literal("f"), literal("__LINE__"), 1, literal("prefix"), "ab%ls",
                          unformattable);
    } catch (const Exception<1>& exception) {
        EXPECT_EQ(std::string(exception.getMessage()).substr(0, 8), "prefixab");
        EXPECT_NE(std::string(exception.what()).find("prefixab"), std::string::npos);
    }
}

TEST(Raising, NamesTypeAndPassesEveryText) {
    const auto raise = [](auto function, auto... message) {
        return [=] { function(literal("File"), literal("f"), literal("__LINE__"), 9u, message...); };
    };
    using Plain = void (*)(const ExceptionString&, const ExceptionString&, const ExceptionString&, unsigned int,
                           const ExceptionString&);
    const Report assertion = reportOf<1>(raise(static_cast<Plain>(&Vorn::throwAssert), literal("m")));
    EXPECT_EQ(assertion.type, "::Vorn::E::ASSERT");
    EXPECT_EQ(assertion.code, 1);
    EXPECT_EQ(assertion.file, "File");
    EXPECT_EQ(assertion.function, "f");
    EXPECT_EQ(assertion.lineString, "__LINE__");
    EXPECT_EQ(assertion.line, 9u);
    EXPECT_EQ(assertion.message, "m");

    const Report internal = reportOf<2>(raise(static_cast<Plain>(&Vorn::throwInternalAssert), literal("m")));
    EXPECT_EQ(internal.type, "::Vorn::E::INTERNAL");
    EXPECT_EQ(internal.code, 2);

    const Report formatted = reportOf<1>(
        [] { Vorn::throwAssert(literal("File"), literal("f"), literal("__LINE__"), 9, literal("n = "), "%d", 3); });
    EXPECT_EQ(formatted.type, "::Vorn::E::ASSERT");
    EXPECT_EQ(formatted.message, "n = 3");
}

TEST(Raising, AssertionIsNotCaughtAsAnInternalFailure) {
    EXPECT_THROW(
        {
            try {
                Vorn::throwAssert(literal("File"), literal("f"), literal("__LINE__"), 9, literal("m"));
            } catch (const Exception<2>&) {
            }
        },
        Exception<1>);
}

} // namespace
