#include "Documentation/Surprises/Surprise.h"
#include "Support/AllocationCounter.h"
#include "Vorn/Assert.h"
#include "Vorn/Exception.h"
#include "Vorn/String/String.h"

#include <cstring>
#include <stdexcept>
#include <type_traits>

namespace {

using namespace Vorn;

std::string textOf(const ExceptionString& text) {
    return std::string(text.getString(), static_cast<std::size_t>(text.size()));
}

Exception<4> failure() {
    return Exception<4>(ExceptionString("type", 4), ExceptionString("file", 4), ExceptionString("function", 8),
                        ExceptionString("__LINE__", 8), 7, ExceptionString("message", 7));
}

// The formatted message that throwAssert builds of "prefix" and `text`.
std::string formattedMessage(const std::string& text) {
    try {
        throwAssert(ExceptionString("file", 4), ExceptionString("function", 8), ExceptionString("__LINE__", 8), 7,
                    ExceptionString("prefix ", 7), "%s", text.c_str());
    } catch (const Exception<1>& exception) {
        return exception.getMessage();
    }
}

void throwFromCallback(const char*) { throw std::runtime_error("callback"); }
void ignoreReport(const char*) {}
void raise() { VORN_THROW(4, "text"); }

template <class Run>
void withoutMemory(Run&& run) {
    failAllocation(1);
    run();
    failAllocation(0);
}

} // namespace

const Surprises FAILURE_REPORTING_SURPRISES = {
    {"`ExceptionString(text, size)`, `setStaticString`",
     [] {
         char text[] = "abc";
         const ExceptionString constructed(text, 2);
         ExceptionString set;
         set.setStaticString(text, 2);
         text[0] = 'x';
         EXPECT_EQ(constructed.getString(), text);
         EXPECT_STREQ(constructed.getString(), "xbc");
         EXPECT_STREQ(set.getString(), "xbc");
         EXPECT_EQ(constructed.size(), 2);
     },
     [] {
         std::string text = "abc";
         const ExceptionString copy(std::string(text), 0.0f);
         text = "xyz";
         EXPECT_STREQ(copy.getString(), "abc");
     }},
    {"`ExceptionString(text, float)`", [] { EXPECT_EQ(textOf(ExceptionString(std::string("abc"), 2.0f)), "abc"); },
     [] { EXPECT_EQ(textOf(ExceptionString(std::string("abc"), 0.0f)), "abc"); }},
    {"`ExceptionString(String(), float)`",
     [] {
         const ExceptionString text(String(), 0.0f);
         EXPECT_TRUE(text.dynamic() && !text.isNull());
         EXPECT_EQ(text.size(), 0);
     },
     [] { EXPECT_TRUE(String().isNull()); }},
    {"`ExceptionString::size`", [] { EXPECT_EQ(ExceptionString("", 16384).size(), 0); },
     [] { EXPECT_EQ(ExceptionString("", 16383).size(), 16383); }},
    {"`ExceptionString`, lengths with bit 15",
     [] {
         alignas(int) static char block[64] = {1};
         const ExceptionString text(block, 0x8005);
         EXPECT_TRUE(text.dynamic());
         EXPECT_EQ(text.getString(), block + sizeof(int));
         block[0] = 2; // so that the destructor does not free it
     },
     [] { EXPECT_FALSE(ExceptionString("", 16383).dynamic()); }},
    {"`ExceptionString::isNull`",
     [] {
         const ExceptionString null(nullptr, 5);
         EXPECT_TRUE(null.isNull());
         EXPECT_EQ(null.size(), 5);
         ExceptionString created;
         created.createString(0);
         created.doneCreateString(0);
         EXPECT_FALSE(created.isNull());
     },
     [] {
         ExceptionString created;
         created.createString(0);
         created.doneCreateString(0);
         EXPECT_EQ(created.size(), 0);
     }},
    {"`ExceptionString::operator=` on itself",
     [] {
         ExceptionString text(std::string("abc"), 0.0f);
         text = *&text;
         EXPECT_TRUE(text.isNull());
     },
     [] {
         ExceptionString text(std::string("abc"), 0.0f);
         const ExceptionString other = text;
         text = other;
         EXPECT_EQ(textOf(text), "abc");
     }},
    {"`ExceptionString::operator=` of a join of empty parts",
     [] {
         ExceptionString fixed("abc", 3), dynamic(std::string("abc"), 0.0f);
         fixed = ExceptionString() + ExceptionString();
         dynamic = ExceptionString() + ExceptionString();
         EXPECT_EQ(textOf(fixed), "abc");
         EXPECT_TRUE(dynamic.isNull());
     },
     [] {
         ExceptionString fixed("abc", 3);
         fixed = ExceptionString();
         fixed = ExceptionString() + ExceptionString();
         EXPECT_EQ(fixed.size(), 0);
     }},
    {"`ExceptionString(a + b)` of empty parts",
     [] { EXPECT_EQ(ExceptionString(ExceptionString("", 0) + ExceptionString("", 0)).getString(), nullptr); },
     [] { EXPECT_TRUE(ExceptionString(ExceptionString("", 0) + ExceptionString("", 0)).isNull()); }},
    {"`what`, `getLogString` when memory ends",
     [] {
         const Exception<4> exception = failure();
         std::string report, log;
         withoutMemory([&] {
             const char* const text = exception.what();
             failAllocation(0);
             report = text;
         });
         withoutMemory([&] {
             const char* const text = exception.getLogString();
             failAllocation(0);
             log = text;
         });
         EXPECT_EQ(report, "Vorn: out of memory while building the report");
         EXPECT_EQ(log, report);
     },
     [] {
         const Exception<4> exception = failure();
         withoutMemory([&] {
             EXPECT_STREQ(exception.getMessage(), "message");
             EXPECT_STREQ(exception.getFile(), "file");
             EXPECT_STREQ(exception.getFunction(), "function");
             EXPECT_EQ(exception.getLine(), 7u);
         });
     }},
    {"`ExceptionString` of joined or copied text, formatted messages, when memory ends",
     [] {
         const std::string text = "abc";
         EXPECT_DEATH(withoutMemory([&] { const ExceptionString copy(text, 0.0f); }), "");
         const ExceptionStringJoiner joiner(ExceptionString("a", 1), ExceptionString("b", 1));
         EXPECT_DEATH(withoutMemory([&] { const ExceptionString joined(joiner); }), "");
         EXPECT_DEATH(withoutMemory([&] { formattedMessage(text); }), "");
     },
     [] {
         withoutMemory([] {
             const ExceptionString text("abc", 3), copy = text;
             EXPECT_EQ(copy.size(), 3);
         });
     }},
    {"`doneCreateString`",
     [] {
         ExceptionString text;
         std::strcpy(text.createString(5), "abcde");
         text.doneCreateString(2);
         EXPECT_STREQ(text.getString(), "ab");
         EXPECT_EQ(text.getString()[4], 'e') << "the allocated size stays";
         text.doneCreateString(3); // no check
         EXPECT_EQ(text.size(), 3);
     },
     [] {
         ExceptionString text;
         std::strcpy(text.createString(3), "abc");
         text.doneCreateString(3);
         EXPECT_STREQ(text.getString(), "abc");
     }},
    {"`createString` out of memory",
     [] { EXPECT_DEATH(withoutMemory([] { ExceptionString().createString(10); }), ""); }, nullptr},
    {"`AllExceptions::getLineString`", [] { EXPECT_STREQ(failure().getLineString(), "__LINE__"); },
     [] { EXPECT_EQ(failure().getLine(), 7u); }},
    {"`getMessage`, `getFile`, ...",
     [] {
         const AllExceptions none;
         EXPECT_EQ(none.getMessage(), nullptr);
         EXPECT_EQ(none.getFile(), nullptr);
         EXPECT_EQ(none.getFunction(), nullptr);
     },
     [] { EXPECT_STREQ(AllExceptions().what(), ":0: : Exception: :"); }},
    {"`AllExceptions::getLogString`",
     [] {
         const Exception<4> exception = failure();
         EXPECT_GE(allocationsDuring([&] { exception.getLogString(); }), 1u) << "stores the report";
     },
     [] {
         const Exception<4> exception = failure();
         exception.getLogString();
         EXPECT_EQ(allocationsDuring([&] { exception.getLogString(); }), 0u);
     }},
    {"formatted `throwAssert`",
     [] { EXPECT_EQ(formattedMessage(std::string(5000, 'x')), "prefix " + std::string(4095, 'x')); },
     [] { EXPECT_EQ(formattedMessage(std::string(4095, 'x')), "prefix " + std::string(4095, 'x')); }},
    {"a log callback that throws",
     [] {
         AllExceptions::setLogCallback(throwFromCallback);
         EXPECT_THROW(raise(), std::runtime_error);
         AllExceptions::setLogCallback(nullptr);
     },
     [] {
         AllExceptions::setLogCallback(ignoreReport);
         EXPECT_THROW(raise(), Exception<4>);
         AllExceptions::setLogCallback(nullptr);
     }},
    {"`AllExceptions::operator=`",
     [] {
         // The base has nothing to assign: it is the virtual table and no more.
         EXPECT_EQ(sizeof(std::exception), sizeof(void*));
         AllExceptions assigned;
         assigned = failure();
         EXPECT_STREQ(assigned.getMessage(), "message");
         EXPECT_EQ(assigned.getCode(), 4);
     },
     nullptr},
};
