#include "Vorn/Assert.h"

#include "Support/AllocationCounter.h"
#include "Support/Report.h"

#include <gtest/gtest.h>

#include <string_view>

namespace Sample {

#define SAMPLE_LIMIT 3
constexpr unsigned int ASSERT_LINE = 17;

void check(int value) {
#line 17
    VORN_ASSERT(value < SAMPLE_LIMIT, "too large!");
}

template <class T>
struct Box {
    Box() = default;
    explicit Box(int) { VORN_THROW(2, "constructor"); }
    static void member(T*) { VORN_INTERNAL_ASSERT(sizeof(T) == 0, "member"); }
    template <class U>
    const U* both(const T&, U (*)(int)) const {
        VORN_THROW(4, "both");
    }
    Box& operator/=(int) { VORN_THROW(4, "divide"); }
    int operator[](int) const { VORN_THROW(4, "index"); }
    int operator()(int) { VORN_THROW(4, "call"); }
    bool operator<(const Box&) const { VORN_THROW(4, "less"); }
    explicit operator bool() const { VORN_THROW(4, "convert"); }
    int (&array())[3] { VORN_THROW(4, "array"); }
    int (Box::*pointer(int))() const { VORN_THROW(4, "pointer"); }
    decltype(auto) deduced() { VORN_THROW(4, "deduced"); }
    template <class U>
    auto trailing(U value) -> decltype(value + 1) {
        VORN_THROW(4, "trailing");
    }
};

void inLambda() {
    [](int) { VORN_THROW(7, "lambda"); }(1);
}

void named() { VORN_THROW(4, "named", "Other::name"); }
void namedCheck(const char* text) { VORN_ASSERT(text, "named", "Other::name<int,char>"); }

namespace {
template <class T>
std::vector<T> hidden(T) {
    VORN_THROW(7, "hidden");
}
} // namespace

} // namespace Sample

namespace {

TEST(Assertions, MessageIsTheConditionAsWrittenAndTheText) {
    const Report report = reportOf<1>([] { Sample::check(3); });
    EXPECT_EQ(report.message, "value < SAMPLE_LIMIT : too large!");
    EXPECT_EQ(report.type, "::Vorn::E::ASSERT");
    EXPECT_EQ(report.function, "Sample::check");
    EXPECT_EQ(report.file, "Tests/Vorn/AssertTest");
    EXPECT_EQ(report.lineString, "__LINE__");
    EXPECT_EQ(report.line, Sample::ASSERT_LINE);
}

TEST(Assertions, EachFormRaisesItsOwnException) {
    const auto internal = reportOf<2>([] { VORN_INTERNAL_ASSERT(0, "invalid string!"); });
    EXPECT_EQ(internal.message, "0 : invalid string!");
    EXPECT_EQ(internal.type, "::Vorn::E::INTERNAL");
    const auto parameter = reportOf<4>([] { VORN_THROW(4, "Invalid ASCII string!"); });
    EXPECT_EQ(parameter.message, "Invalid ASCII string!");
    EXPECT_EQ(parameter.type, "::Vorn::E::PARAMETER");
    EXPECT_EQ(reportOf<7>([] { VORN_THROW(Vorn::E::UNICODE, "bad text"); }).type, "::Vorn::E::UNICODE");
    EXPECT_EQ(reportOf<1>([] { VORN_THROW(1, "direct"); }).type, "::Vorn::E::ASSERT");
}

TEST(Assertions, FunctionTextIsQualifiedAndBare) {
    using Box = Sample::Box<std::string>;
    Box box;
    const struct {
        Report report;
        const char* function;
    } rows[] = {
        {reportOf<2>([] { Box(1); }), "Sample::Box::Box"},
        {reportOf<2>([] { Box::member(nullptr); }), "Sample::Box::member"},
        {reportOf<4>([&] { box.both<int>("", nullptr); }), "Sample::Box::both"},
        {reportOf<4>([&] { box /= 1; }), "Sample::Box::operator /="},
        {reportOf<4>([&] { static_cast<void>(box[1]); }), "Sample::Box::operator []"},
        {reportOf<4>([&] { box(1); }), "Sample::Box::operator ()"},
        {reportOf<4>([&] { static_cast<void>(box < box); }), "Sample::Box::operator <"},
        {reportOf<4>([&] { static_cast<void>(static_cast<bool>(box)); }), "Sample::Box::operator bool"},
        {reportOf<4>([&] { box.array(); }), "Sample::Box::array"},
        {reportOf<4>([&] { box.pointer(1); }), "Sample::Box::pointer"},
        {reportOf<4>([&] { box.deduced(); }), "Sample::Box::deduced"},
        {reportOf<4>([&] { box.trailing(1); }), "Sample::Box::trailing"},
        {reportOf<7>([] { Sample::inLambda(); }), "Sample::inLambda"},
        {reportOf<7>([] { Sample::hidden('c'); }), "hidden"},
        {reportOf<4>([] { Sample::named(); }), "Other::name"},
        {reportOf<1>([] { Sample::namedCheck(nullptr); }), "Other::name<int,char>"},
    };
    for (const auto& row : rows) EXPECT_EQ(row.report.function, row.function);
}

// The descriptions of functions by both compilers, with either compiler.
TEST(QualifiedName, ReadsTheDescriptionsOfBothCompilers) {
#define EXPECT_NAME(description, name) EXPECT_STREQ(VornPrivate::qualifiedName(description).characters, name)
    EXPECT_NAME("int main()", "main");
    EXPECT_NAME("static void Vorn::A::f(int, char)", "Vorn::A::f");
    EXPECT_NAME("const CharType* Vorn::S::get() const [with CharType = unsigned char]", "Vorn::S::get");
    EXPECT_NAME("const CharType *Vorn::S::get() const [CharType = unsigned char]", "Vorn::S::get");
    EXPECT_NAME("std::map<int, std::vector<int> > Vorn::f(const std::map<int, int>&)", "Vorn::f");
    EXPECT_NAME("unsigned int Vorn::{anonymous}::scan(const T*) [with T = char]", "scan");
    EXPECT_NAME("unsigned int Vorn::(anonymous namespace)::scan(const T *) [T = char]", "scan");
    EXPECT_NAME("void Vorn::{anonymous}::Reader<T>::next(T) [with T = char]", "Reader::next");
    EXPECT_NAME("Vorn::M<T>& Vorn::M<T>::operator=(const Vorn::M<T>&) [with T = int]", "Vorn::M::operator =");
    EXPECT_NAME("T &Vorn::M<int>::operator<<(int)", "Vorn::M::operator <<");
    EXPECT_NAME("auto Vorn::M::operator()(int) const", "Vorn::M::operator ()");
    EXPECT_NAME("Vorn::M::operator bool() const", "Vorn::M::operator bool");
    EXPECT_NAME("Vorn::f()::<lambda(int)>", "Vorn::f");
    EXPECT_NAME("auto Vorn::f()::(anonymous class)::operator()(int) const", "Vorn::f");
    EXPECT_NAME("void Vorn::myoperator(int)", "Vorn::myoperator");
    // Beside "operator", every character of an identifier makes it a part of a longer name.
    for (const char edge : {'a', 'm', 'z', 'A', 'M', 'Z', '0', '5', '9', '_'}) {
        char behind[] = "void Vorn::operatorX(int)";
        behind[19] = edge;
        EXPECT_EQ(VornPrivate::qualifiedName(behind).characters, std::string("Vorn::operator") + edge);
        char before[] = "void Vorn::Xoperator(int)";
        before[11] = edge;
        EXPECT_EQ(VornPrivate::qualifiedName(before).characters, "Vorn::" + (edge + std::string("operator")));
    }
    EXPECT_NAME("int& Vorn::M::operator[](int)", "Vorn::M::operator []");
    EXPECT_NAME("int Vorn::M::operator/(int)", "Vorn::M::operator /");
    EXPECT_NAME("void (* Vorn::R::getDeleter())(void*)", "Vorn::R::getDeleter");
    EXPECT_NAME("void (*Vorn::R::getDeleter(int))(void *)", "Vorn::R::getDeleter");
    EXPECT_NAME("int (& Vorn::R::getArray())[3]", "Vorn::R::getArray");
    EXPECT_NAME("int (&Vorn::R::getArray())[3]", "Vorn::R::getArray");
    EXPECT_NAME("int (Vorn::R::* Vorn::f(char))(int) const", "Vorn::f");
    EXPECT_NAME("decltype(auto) Vorn::f(int)", "Vorn::f");
    EXPECT_NAME("decltype ((a + b)) Vorn::f(T, T) [with T = int]", "Vorn::f");
    EXPECT_NAME("static const decltype(a(b)) &Vorn::R<T>::f(T) [T = int]", "Vorn::R::f");
    EXPECT_NAME("auto Vorn::f(T) -> decltype(a + 1) [T = int]", "Vorn::f");
#undef EXPECT_NAME
}

TEST(SourcePath, OfAPublicHeaderIsTheSameWhereverItIsInstalled) {
#define EXPECT_PATH(folder, path, text) \
    EXPECT_STREQ(VornPrivate::sourcePath(folder path, folder "Vorn/Private/ReportText.h").characters, text)
    EXPECT_PATH("Include/", "Vorn/String/StringData.h", "Include/Vorn/String/StringData");
    EXPECT_PATH("/usr/include/", "Vorn/String/StringData.h", "Include/Vorn/String/StringData");
    EXPECT_PATH("/home/Vorn/prefix.d/include/", "Vorn/Assert.h", "Include/Vorn/Assert");
    EXPECT_PATH("", "Vorn/Assert.h", "Include/Vorn/Assert");
#undef EXPECT_PATH
    EXPECT_STREQ(
        VornPrivate::sourcePath("C:\\include\\Vorn\\String\\UTF8.h", "C:\\include\\Vorn\\Private\\ReportText.h")
            .characters,
        "Include/Vorn/String/UTF8");
}

TEST(SourcePath, OfAnyOtherFileLosesItsEndingOnly) {
#define EXPECT_PATH(path, text) \
    EXPECT_STREQ(VornPrivate::sourcePath(path, "Include/Vorn/Private/ReportText.h").characters, text)
    EXPECT_PATH("Source/Vorn/ParseInt.cpp", "Source/Vorn/ParseInt");
    EXPECT_PATH("Source/Vorn/TextRuns.h", "Source/Vorn/TextRuns");
    EXPECT_PATH("Include/VornGame/Door.h", "Include/VornGame/Door");
    EXPECT_PATH("Vorn/Door.h", "Vorn/Door");
    EXPECT_PATH("Game/Door.cpp", "Game/Door");
    EXPECT_PATH("Game.d/Door", "Game.d/Door");
    EXPECT_PATH("", "");
#undef EXPECT_PATH
}

TEST(Assertions, PassingCheckTouchesNoHeap) {
    EXPECT_EQ(allocationsDuring([] {
                  for (int i = 0; i < SAMPLE_LIMIT; ++i) Sample::check(i);
              }),
              0u);
}

TEST(Assertions, EvaluateTheirConditionOnce) {
    int evaluations = 0;
    VORN_ASSERT(++evaluations, "once");
    VORN_INTERNAL_ASSERT(++evaluations, "once");
    EXPECT_EQ(evaluations, 2);
    reportOf<1>([&] { VORN_ASSERT(++evaluations == 0, "once"); });
    reportOf<2>([&] { VORN_INTERNAL_ASSERT(++evaluations == 0, "once"); });
    EXPECT_EQ(evaluations, 4);
}

TEST(Assertions, AreStatements) {
    if (true)
        VORN_ASSERT(true, "in a branch");
    else
        VORN_THROW(4, "not taken");
}

} // namespace
