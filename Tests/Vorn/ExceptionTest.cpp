#include "Vorn/Exception.h"

#include "Support/Aborted.h"
#include "Support/AllocationCounter.h"
#include "Support/Random.h"
#include "Support/Report.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
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

// Collects the reports that the log callback receives during its lifetime.
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

// Gives access to the protected members of the base, as a derived class of another module has.
struct Derived : AllExceptions {
    template <class... Arguments>
    explicit Derived(int code, const Arguments&... arguments) : AllExceptions(code, arguments...) {}

    VORN_PRINTF(3, 4) void print(const ExceptionString& prefix, const char* format, ...) {
        std::va_list arguments;
        va_start(arguments, format);
        printMessage(prefix, format, arguments);
        va_end(arguments);
    }

    const ExceptionString& message() const { return m_message; }
    const ExceptionString& report() const { return m_logString; }

    static void expectLayout() {
        const Derived exception(1, literal("T"), literal("P"), literal("F"), literal("L"), 2u);
        const void* const members[] = {&exception.m_type,    &exception.m_file,      &exception.m_function,
                                       &exception.m_message, &exception.m_logString, &exception.m_lineString,
                                       &exception.m_line};
        const auto* const start = reinterpret_cast<const char*>(static_cast<const std::exception*>(&exception));
        for (std::size_t i = 0; i < std::size(members); ++i)
            EXPECT_EQ(static_cast<const char*>(members[i]) - start,
                      static_cast<std::ptrdiff_t>(sizeof(std::exception) + i * sizeof(ExceptionString)))
                << i;
        EXPECT_EQ(reinterpret_cast<const char*>(&exception.m_code) - reinterpret_cast<const char*>(&exception.m_line),
                  4);
    }
};

TEST(AllExceptions, MembersLieInTheOrderThatOtherModulesRelyOn) {
    Derived::expectLayout();
    static_assert(sizeof(AllExceptions) == sizeof(std::exception) + 6 * sizeof(ExceptionString) + 8);
}

TEST(AllExceptions, EachConstructorTakesItsTextsAndLeavesTheOthersNull) {
    const Derived bare(9, literal("T"), literal("P"), literal("F"), literal("L"), 3u);
    EXPECT_EQ(bare.getMessage(), nullptr);
    EXPECT_EQ(bare.getCode(), 9);
    EXPECT_STREQ(bare.getLineString(), "L");
    EXPECT_STREQ(bare.what(), "P:3: F: Exception: T:");
    const Derived given(9, literal("T"), literal("P"), literal("F"), literal("L"), 3u, literal("M"));
    EXPECT_STREQ(given.getMessage(), "M");
    EXPECT_STREQ(given.what(), "P:3: F: Exception: T:M");
    const Derived reported(9, literal("T"), literal("P"), literal("F"), literal("L"), 3u, literal("M"), literal("R"));
    EXPECT_STREQ(reported.getMessage(), "M");
    EXPECT_STREQ(reported.getLineString(), "L");
    EXPECT_STREQ(reported.what(), "R");
    EXPECT_EQ(reported.getLine(), 3u);
    // Only the pointer shows whether the report has been built.
    const Derived empty(9, literal("T"), literal("P"), literal("F"), literal("L"), 3u, literal("M"), literal(""));
    EXPECT_STREQ(empty.what(), "");
}

TEST(AllExceptions, PartsOfTheReportAreTruncatedAtTheirGivenLengths) {
    const Derived exception(1, ExceptionString("Type", 1), ExceptionString("Path", 2), ExceptionString("Function", 3),
                            literal("L"), 3u, ExceptionString("Message", 4));
    EXPECT_STREQ(exception.what(), "Pa:3: Fun: Exception: T:Mess");
}

// The report is built part by part, and each step uses the previous length without the bits of the flags.
TEST(AllExceptions, AReportThatReachesTheFlagsIsTruncated) {
    const std::string path(10000, 'p');
    const std::string function(10000, 'f');
    const Derived exception(1, literal("T"), ExceptionString(path, 0.0f), ExceptionString(function, 0.0f), literal("L"),
                            3u, literal("M"));
    const std::string begin = (path + ":3: " + function).substr(0, 10000 + 4 + 10000 - 16384);
    EXPECT_EQ(std::string(exception.what()), begin + ": Exception: T:M");
}

// The line equals a join of one text after the other, also where lengths reach the flags.
TEST(AllExceptions, ReportsAreThoseOfTextsJoinedStepByStep) {
    const int sizes[] = {0, 1, 16000, 16380, 16383, 40000, 65536, 70001};
    const std::string texts(70001, 'x');
    Random random(11);
    for (int round = 0; round < 300; ++round) {
        const auto next = [&](char first) {
            std::string text = texts.substr(0, static_cast<std::size_t>(sizes[random() % std::size(sizes)]));
            if (!text.empty()) text.front() = first;
            return random() % 4 == 0 ? ExceptionString() : ExceptionString(text, 0.0f);
        };
        const ExceptionString file = next('P'), function = next('F'), type = next('T'), message = next('M');
        const Derived exception(1, type, file, function, literal("L"), 4294967295u, message);
        ExceptionString expected = file + literal(":");
        for (const ExceptionString& part :
             {literal("4294967295"), literal(": "), function, literal(": Exception: "), type, literal(":"), message}) {
            expected = expected + part;
        }
        SCOPED_TRACE(::testing::Message()
                     << file.size() << ' ' << function.size() << ' ' << type.size() << ' ' << message.size());
        ASSERT_STREQ(exception.what(), expected.getString());
        ASSERT_EQ(exception.report().size(), expected.size());
        ASSERT_EQ(exception.report().creating(), expected.creating());
    }
}

TEST(AllExceptions, AReportTakesOneBlock) {
    const Exception<4> exception = make<4>(7);
    EXPECT_EQ(allocationsDuring([&] { exception.what(); }), 1u);
    EXPECT_EQ(lastAllocationSize(), std::strlen(exception.what()) + 5);
    EXPECT_EQ(allocationsDuring([&] { exception.what(); }), 0u);
}

constexpr char NO_REPORT[] = "Vorn: out of memory while building the report";

TEST(AllExceptions, ReportsOutOfMemoryAreAFixedText) {
    const std::size_t live = liveAllocationCount();
    {
        const Exception<4> exception = make<4>(7);
        for (int attempt = 0; attempt < 2; ++attempt) {
            failAllocation(1);
            const char* const report = exception.what();
            failAllocation(0);
            EXPECT_STREQ(report, NO_REPORT);
            EXPECT_STREQ(exception.getMessage(), "what went wrong");
        }
        const Exception<4> copy(exception);
        EXPECT_STREQ(copy.what(), "File:7: Name::function: Exception: ::Type:what went wrong");
        EXPECT_STREQ(exception.what(), copy.what());
    }
    EXPECT_EQ(liveAllocationCount(), live);
}

TEST(AllExceptions, ReportsThatNoIntMeasuresAreAFixedText) {
    const ExceptionString huge("?", 0x40000000); // never read
    const Derived exception(1, huge, huge, ExceptionString(), literal("L"), 3u, literal("M"));
    EXPECT_STREQ(exception.what(), NO_REPORT);
    const Derived wrapped(1, huge, huge, huge, literal("L"), 3u, huge);
    EXPECT_STREQ(wrapped.what(), NO_REPORT);
}

TEST(AllExceptions, RunningOutOfMemoryLeavesTheFailureInPlace) {
    const std::string longName(2000, 'n');
    const struct {
        const char* name;
        std::string function;
        std::string received;
    } rows[] = {
        {"a report that fits", "f", "File:4: f: Exception: ::Vorn::E::ASSERT:message"},
        {"a truncated report", longName, ("File:4: " + longName).substr(0, 1023)},
    };
    static char received[2048]; // the callback must not need memory
    for (const auto& row : rows) {
        const ExceptionString function(row.function.data(), static_cast<int>(row.function.size()));
        AllExceptions::setLogCallback([](const char* line) { std::snprintf(received, sizeof received, "%s", line); });
        failAllocation(1);
        try {
            Vorn::throwAssert(literal("File"), function, literal("__LINE__"), 4, literal("message"));
        } catch (const Exception<1>& exception) {
            failAllocation(0);
            AllExceptions::setLogCallback(nullptr);
            EXPECT_STREQ(received, row.received.c_str()) << row.name;
            EXPECT_EQ(exception.what(), "File:4: " + row.function + ": Exception: ::Vorn::E::ASSERT:message")
                << row.name;
            continue;
        }
        ADD_FAILURE() << row.name;
    }
}

using ExceptionDeathTest = ::testing::Test;
TEST(ExceptionDeathTest, FormattingOutOfMemoryAborts) {
    EXPECT_EXIT(
        {
            failAllocation(1);
            Vorn::throwAssert(literal("File"), literal("f"), literal("__LINE__"), 4, literal("prefix"), "%d", 1);
        },
        aborted(), "");
}

TEST(AllExceptions, PrintedMessageIsADynamicTextOfItsOwn) {
    Derived exception(1, literal("T"), literal("P"), literal("F"), literal("L"), 3u, literal("old"));
    errno = EINVAL;
    exception.print(ExceptionString("prefix", 3), "%d%%", 50);
    EXPECT_EQ(errno, 0);
    EXPECT_STREQ(exception.getMessage(), "pre50%");
    EXPECT_EQ(exception.message().size(), 6);
    EXPECT_TRUE(exception.message().dynamic());
    EXPECT_FALSE(exception.message().creating());
    const Derived copy(exception);
    EXPECT_EQ(copy.getMessage(), exception.getMessage());
    exception.print(ExceptionString(), "%s", "again");
    EXPECT_STREQ(exception.getMessage(), "again");
    EXPECT_STREQ(copy.getMessage(), "pre50%");
    exception.print(literal("a"), "%c%c", 0, 'b');
    EXPECT_EQ(std::string(exception.getMessage(), 4), std::string("a\0b", 4));
}

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

TEST(AllExceptions, ACopyOfAnUnreportedFailureBuildsItsOwnReport) {
    const Exception<7> first = make<7>();
    const Exception<7> second(first);
    EXPECT_NE(first.what(), second.what());
    EXPECT_STREQ(first.what(), second.what());
}

TEST(AllExceptions, AssignmentTakesEveryText) {
    Exception<4> target(literal("t"), literal("p"), literal("f"), literal("l"), 1, literal("m"));
    EXPECT_STREQ(target.what(), "p:1: f: Exception: t:m");
    target = make<4>(5);
    EXPECT_STREQ(target.getType(), "::Type");
    EXPECT_STREQ(target.getFile(), "File");
    EXPECT_STREQ(target.getFunction(), "Name::function");
    EXPECT_STREQ(target.getLineString(), "__LINE__");
    EXPECT_STREQ(target.getMessage(), "what went wrong");
    EXPECT_EQ(target.getLine(), 5u);
    EXPECT_STREQ(target.what(), "File:5: Name::function: Exception: ::Type:what went wrong");
}

TEST(AllExceptions, CallbackGetsTheCachedReportItself) {
    static const char* received = nullptr;
    AllExceptions::setLogCallback([](const char* line) { received = line; });
    const Exception<4> exception = make<4>();
    AllExceptions::setLogCallback(nullptr);
    EXPECT_EQ(received, exception.what());
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

TEST(Exception, AnEmptyFormattedTextAddsNothing) {
    for (const std::string& prefix : {std::string(), std::string("prefix")}) {
        Derived exception(1, literal("T"), literal("P"), literal("F"), literal("L"), 3u);
        exception.print(ExceptionString(prefix, 0.0f), "%s", "");
        EXPECT_EQ(static_cast<std::size_t>(exception.message().size()), prefix.size());
        EXPECT_EQ(std::string(exception.getMessage()), prefix);
    }
}

TEST(Exception, FormattedTextIsTruncatedAt4095BytesAndThePrefixIsNot) {
    const struct {
        std::size_t formatted;
        std::size_t kept;
    } rows[] = {{4094, 4094}, {4095, 4095}, {4096, 4095}, {4097, 4095}, {10000, 4095}};
    for (const auto& row : rows) {
        const std::string text(row.formatted, 'x');
        const std::string prefix(3000, 'p');
        Derived exception(1, literal("T"), literal("P"), literal("F"), literal("L"), 3u);
        exception.print(ExceptionString(prefix, 0.0f), "%s", text.c_str());
        EXPECT_EQ(std::string(exception.getMessage()), prefix + std::string(row.kept, 'x')) << row.formatted;
        EXPECT_EQ(static_cast<std::size_t>(exception.message().size()), prefix.size() + row.kept) << row.formatted;
    }
}

TEST(Exception, TextThatCannotBeFormattedCountsAsAFullBuffer) {
#if defined(_WIN32)
    GTEST_SKIP() << "the C library of MinGW-w64 formats every text";
#endif
    const wchar_t unformattable[] = {static_cast<wchar_t>(0x7FFFFFFF), 0};
    const Exception<1> exception(literal("::Type"), literal("File"), literal("f"), literal("__LINE__"), 1,
                                 literal("prefix"), "ab%ls", unformattable);
    EXPECT_EQ(std::string(exception.getMessage()), "prefixab");
    // Bytes that the formatter does not write are zero, and all of them are part of the message.
    EXPECT_EQ(std::string(exception.getMessage() + 8, 4093), std::string(4093, '\0'));
    const std::string start("File:1: f: Exception: ::Type:prefixab");
    EXPECT_EQ(std::string(exception.what(), start.size() + 1), start + '\0');
}

TEST(Raising, NamesTypeAndPassesEveryText) {
    const auto raise = [](auto function, auto... message) {
        return [=] { function(literal("File"), literal("f"), literal("__LINE__"), 9u, message...); };
    };
    using Plain = void (*)(const ExceptionString&, const ExceptionString&, const ExceptionString&, unsigned int,
                           const ExceptionString&);
    using Formatted = void (*)(const ExceptionString&, const ExceptionString&, const ExceptionString&, unsigned int,
                               const ExceptionString&, const char*, ...);
    const struct {
        Report report;
        int code;
        const char* type;
        const char* message;
    } rows[] = {
        {reportOf<1>(raise(static_cast<Plain>(&Vorn::throwAssert), literal("m"))), 1, "::Vorn::E::ASSERT", "m"},
        {reportOf<2>(raise(static_cast<Plain>(&Vorn::throwInternalAssert), literal("m"))), 2, "::Vorn::E::INTERNAL",
         "m"},
        {reportOf<1>(raise(static_cast<Formatted>(&Vorn::throwAssert), literal("n = "), "%d", 3)), 1,
         "::Vorn::E::ASSERT", "n = 3"},
        {reportOf<2>(raise(static_cast<Formatted>(&Vorn::throwInternalAssert), literal("n = "), "%d", 3)), 2,
         "::Vorn::E::INTERNAL", "n = 3"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.report.code, row.code);
        EXPECT_EQ(row.report.type, row.type);
        EXPECT_EQ(row.report.file, "File");
        EXPECT_EQ(row.report.function, "f");
        EXPECT_EQ(row.report.lineString, "__LINE__");
        EXPECT_EQ(row.report.line, 9u);
        EXPECT_EQ(row.report.message, row.message);
    }
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
