#include "Faults/Operation.h"
#include "Support/Texts.h"
#include "Vorn/Exception.h"
#include "Vorn/ExceptionString.h"

#include <cstring>

namespace {

using Vorn::AllExceptions;
using Vorn::Exception;
using Vorn::ExceptionString;
using Vorn::ExceptionStringJoiner;

const ExceptionString TEXT("text", 4);
constexpr char REPORT[] = "text:7: text: Exception: text:text";
constexpr char NO_REPORT[] = "Vorn: out of memory while building the report";

// The protected face of the base.
struct Base : AllExceptions {
    Base() : AllExceptions(1, TEXT, TEXT, TEXT, TEXT, 7u, TEXT) {}
    Base(int code) : AllExceptions(code, TEXT, TEXT, TEXT, TEXT, 7u) {}
    Base(const ExceptionString& report) : AllExceptions(1, TEXT, TEXT, TEXT, TEXT, 7u, TEXT, report) {}
    using AllExceptions::report;

    VORN_PRINTF(2, 3) void print(const char* format, ...) {
        std::va_list arguments;
        va_start(arguments, format);
        printMessage(TEXT, format, arguments);
        va_end(arguments);
    }
};

// Keeps what the log callback received, without memory of its own.
class Log {
public:
    Log() {
        s_line[0] = '\0';
        AllExceptions::setLogCallback([](const char* line) { std::strncpy(s_line, line, sizeof s_line - 1); });
    }
    ~Log() { AllExceptions::setLogCallback(nullptr); }

    static const char* line() { return s_line; }

private:
    static inline char s_line[1024];
};

template <int N>
Exception<N> plain() {
    return Exception<N>(TEXT, TEXT, TEXT, TEXT, 7, TEXT);
}

// Runs a function that raises `Exception<N>`, and nothing else.
template <int N, class Raise>
void expectRaised(Raise&& raise) {
    try {
        raise();
    } catch (const Exception<N>&) {
    }
}

template <int N>
void copyAndDestroy(Attempt& attempt) {
    attempt([] {
        const Exception<N> exception = plain<N>();
        const Exception<N> copy(exception);
    });
}

// The failure stays the one that was to be raised, and the callback receives all of it.
template <int N>
void buildWithCallback(Attempt& attempt) {
    const Log log;
    attempt([] { plain<N>(); }, [] { EXPECT_STREQ(Log::line(), REPORT); });
}

template <int N>
std::string symbolOf(const char* form) {
    const std::string number = std::to_string(N); // as a temporary, g++ 12 warns of its copy in a 32-bit process
    return "Exception<" + number + ">::" + form;
}

constexpr char PLAIN[] = "Exception(ExceptionString const&, ExceptionString const&, ExceptionString const&, "
                         "ExceptionString const&, unsigned int, ExceptionString const&)";
constexpr char FORMATTED[] = "(ExceptionString const&, ExceptionString const&, ExceptionString const&, "
                             "ExceptionString const&, unsigned int, ExceptionString const&, char const*, ...)";

template <int N>
void addFamilyMember(std::vector<Operation>& rows) {
    const std::string number = std::to_string(N);
    rows.push_back({"Exception" + number + "_Copy",
                    Outcome::ALLOCATES_NOTHING,
                    {"Exception<" + number + ">::Exception(Exception<" + number + "> const&)",
                     "Exception<" + number + ">::~Exception()"},
                    &copyAndDestroy<N>});
    rows.push_back(
        {"Exception" + number + "_WithCallback", Outcome::SURVIVES, {symbolOf<N>(PLAIN)}, &buildWithCallback<N>});
}

} // namespace

std::vector<Operation> failureOperations() {
    std::vector<Operation> rows = {
        {"ExceptionString_Static",
         Outcome::ALLOCATES_NOTHING,
         {"ExceptionString::operator=(ExceptionString const&)", "ExceptionString::setStaticString(char const*, int)"},
         [](Attempt& attempt) {
             attempt([] {
                 ExceptionString text("static", 6);
                 text = TEXT;
                 text.setStaticString("other", 5);
             });
         }},
        {"ExceptionString_Share",
         Outcome::ALLOCATES_NOTHING,
         {"ExceptionString::blockCount() const", "ExceptionString::freeBlock()",
          "ExceptionString::doneCreateString(int)"},
         [](Attempt& attempt) {
             ExceptionString text;
             text.createString(10);
             attempt([&] {
                 text.doneCreateString(5);
                 ExceptionString copy(text);
                 text = ExceptionString();
                 EXPECT_EQ(copy.refCount(), 1);
             });
         }},
        {"ExceptionString_Create",
         Outcome::ABORTS,
         {"ExceptionString::createString(int)", "ExceptionString::tryCreateString(long)"},
         [](Attempt& attempt) { attempt([] { ExceptionString().createString(10); }); }},
        {"ExceptionString_OfStdString",
         Outcome::ABORTS,
         {"ExceptionString::ExceptionString(std::string const&, float)"},
         [](Attempt& attempt) {
             const std::string text = "text";
             attempt([&] { ExceptionString(text, 0.0f); });
         }},
        {"ExceptionString_OfString",
         Outcome::ABORTS,
         {"ExceptionString::ExceptionString(String const&, float)"},
         [](Attempt& attempt) {
             const UTF16Text text = VORN_UTF16("text");
             const Vorn::String string = over(text);
             attempt([&] { ExceptionString(string, 0.0f); });
         }},
        {"ExceptionString_OfJoiner",
         Outcome::ABORTS,
         {"ExceptionString::ExceptionString(ExceptionStringJoiner const&)",
          "ExceptionString::doJoin(ExceptionStringJoiner const&)"},
         [](Attempt& attempt) {
             const ExceptionStringJoiner joiner = TEXT + TEXT;
             attempt([&] { ExceptionString{joiner}; });
         }},
        {"ExceptionString_AssignJoiner",
         Outcome::ABORTS,
         {"ExceptionString::operator=(ExceptionStringJoiner const&)"},
         [](Attempt& attempt) {
             const ExceptionStringJoiner joiner = TEXT + TEXT;
             ExceptionString text;
             attempt([&] { text = joiner; });
         }},
        {"ExceptionStringJoiner_Join",
         Outcome::THROWS,
         {},
         [](Attempt& attempt) {
             const ExceptionString part(std::string("part"), 0.0f);
             attempt([&] { part + part + part; }, [&] { EXPECT_EQ(part.refCount(), 1); });
             EXPECT_EQ(part.refCount(), 1);
         }},
        {"AllExceptions_Build",
         Outcome::ALLOCATES_NOTHING,
         {"AllExceptions::AllExceptions(int, ExceptionString const&, ExceptionString const&, ExceptionString const&, "
          "ExceptionString const&, unsigned int)",
          "AllExceptions::AllExceptions(int, ExceptionString const&, ExceptionString const&, ExceptionString const&, "
          "ExceptionString const&, unsigned int, ExceptionString const&)",
          "AllExceptions::AllExceptions(int, ExceptionString const&, ExceptionString const&, ExceptionString const&, "
          "ExceptionString const&, unsigned int, ExceptionString const&, ExceptionString const&)",
          "AllExceptions::operator=(AllExceptions const&)", "AllExceptions::~AllExceptions()",
          "AllExceptions::log(char const*)", "AllExceptions::setLogCallback(void (*)(char const*))"},
         [](Attempt& attempt) {
             attempt([] {
                 Base first;
                 const Base second(3), third(TEXT);
                 first = second;
                 first = third;
                 const Log log;
                 AllExceptions::log("line");
             });
         }},
        {"AllExceptions_What",
         Outcome::SURVIVES,
         {"AllExceptions::what() const", "AllExceptions::getLogString() const",
          "AllExceptions::tryBuildReport() const"},
         [](Attempt& attempt) {
             const Base exception;
             const char* report = nullptr;
             attempt([&] { report = exception.what(); }, [&] { EXPECT_STREQ(report, NO_REPORT); });
             EXPECT_STREQ(exception.what(), REPORT);
         }},
        {"AllExceptions_Report",
         Outcome::SURVIVES,
         {"AllExceptions::report() const"},
         [](Attempt& attempt) {
             const Base exception;
             const Log log;
             attempt([&] { exception.report(); }, [] { EXPECT_STREQ(Log::line(), REPORT); });
         }},
        {"AllExceptions_PrintMessage",
         Outcome::ABORTS,
         {"AllExceptions::printMessage(ExceptionString const&, char const*, va_list)"},
         [](Attempt& attempt) {
             Base exception;
             attempt([&] { exception.print("%d", 5); });
         }},
        {"Exception1_Formatted",
         Outcome::ABORTS,
         {symbolOf<1>("Exception<1, 0>") + FORMATTED},
         [](Attempt& attempt) { attempt([] { Exception<1>(TEXT, TEXT, TEXT, TEXT, 7, TEXT, "%d", 5); }); }},
        {"Exception2_Formatted",
         Outcome::ABORTS,
         {symbolOf<2>("Exception<2, 0>") + FORMATTED},
         [](Attempt& attempt) { attempt([] { Exception<2>(TEXT, TEXT, TEXT, TEXT, 7, TEXT, "%d", 5); }); }},
        {"ThrowAssert_Plain",
         Outcome::ALLOCATES_NOTHING,
         {"throwAssert(ExceptionString const&, ExceptionString const&, ExceptionString const&, unsigned int, "
          "ExceptionString const&)"},
         [](Attempt& attempt) {
             attempt([] { expectRaised<1>([] { Vorn::throwAssert(TEXT, TEXT, TEXT, 7, TEXT); }); });
         }},
        {"ThrowAssert_WithCallback",
         Outcome::SURVIVES,
         {},
         [](Attempt& attempt) {
             const Log log;
             attempt([] { expectRaised<1>([] { Vorn::throwAssert(TEXT, TEXT, TEXT, 7, TEXT); }); },
                     [] { EXPECT_STREQ(Log::line(), "text:7: text: Exception: ::Vorn::E::ASSERT:text"); });
         }},
        {"ThrowAssert_Formatted",
         Outcome::ABORTS,
         {"throwAssert(ExceptionString const&, ExceptionString const&, ExceptionString const&, unsigned int, "
          "ExceptionString const&, char const*, ...)"},
         [](Attempt& attempt) {
             attempt([] { expectRaised<1>([] { Vorn::throwAssert(TEXT, TEXT, TEXT, 7, TEXT, "%d", 5); }); });
         }},
        {"ThrowInternalAssert_Plain",
         Outcome::ALLOCATES_NOTHING,
         {"throwInternalAssert(ExceptionString const&, ExceptionString const&, ExceptionString const&, unsigned int, "
          "ExceptionString const&)"},
         [](Attempt& attempt) {
             attempt([] { expectRaised<2>([] { Vorn::throwInternalAssert(TEXT, TEXT, TEXT, 7, TEXT); }); });
         }},
        {"ThrowInternalAssert_Formatted",
         Outcome::ABORTS,
         {"throwInternalAssert(ExceptionString const&, ExceptionString const&, ExceptionString const&, unsigned int, "
          "ExceptionString const&, char const*, ...)"},
         [](Attempt& attempt) {
             attempt([] { expectRaised<2>([] { Vorn::throwInternalAssert(TEXT, TEXT, TEXT, 7, TEXT, "%d", 5); }); });
         }},
    };
    addFamilyMember<1>(rows);
    addFamilyMember<2>(rows);
    addFamilyMember<4>(rows);
    addFamilyMember<7>(rows);
    return rows;
}
