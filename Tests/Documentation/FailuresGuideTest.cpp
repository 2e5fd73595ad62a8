// Compiles and runs the code of Documentation/Failures.md, and checks its tables and sentences.
#include "Vorn/Vorn.h"

#include "Support/GuidePage.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <regex>
#include <string>
#include <vector>

namespace Game {

using namespace Vorn;

class Inventory {
public:
    int take(std::size_t slot) {
        VORN_ASSERT(slot < m_counts.size(), "no such slot!");
        if (m_counts[slot] == 0) VORN_THROW(E::PARAMETER, "the slot is empty!");
        const int left = --m_counts[slot];
        VORN_INTERNAL_ASSERT(left >= 0, "taken more than there was!");
        return left;
    }

private:
    std::vector<int> m_counts = {2, 0};
};

} // namespace Game

namespace {

using namespace Vorn;

const GuidePage& page() {
    static const GuidePage failures(VORN_GUIDES "Failures.md");
    return failures;
}

std::vector<std::string> logged;

void writeToLog(const char* report) { logged.push_back(report); }

struct FailuresGuide : testing::Test {
    ~FailuresGuide() override {
        AllExceptions::setLogCallback(nullptr);
        logged.clear();
    }

    void show(const char* text) { shown = text; }

    bool load(const std::string& bytes) {
        try {
            read(makeString(bytes));
            return true;
        } catch (const Exception<E::UNICODE>&) {
            return false; // a malformed file is no defect
        } catch (const AllExceptions& failure) {
            show(failure.getMessage());
            return false;
        }
    }

    static void read(const String& text) {
        if (TextView(text).isEmpty()) VORN_THROW(E::PARAMETER, "an empty file!");
    }

    std::string shown;
};

TEST_F(FailuresGuide, EachBlockOfCodeIsCompiledHere) {
    expectCodeStandsIn(VORN_GUIDE_TESTS "FailuresGuideTest.cpp", page());
}

// The number of a line changes with its source.
std::string withoutLine(const std::string& report) {
    return std::regex_replace(report, std::regex(":[0-9]+:"), ":LINE:");
}

TEST_F(FailuresGuide, TheReport) {
    try {
        const String name = makeString("caf\xC3"); // the last character is incomplete
    } catch (const Exception<7>& failure) {
        show(failure.what());
    }
    try {
        makeString("caf\xC3");
    } catch (const AllExceptions& failure) {
        EXPECT_EQ(page().row("the source, without its extension")[2], failure.getFile());
        EXPECT_EQ(page().row("the function, without parameters")[2], failure.getFunction());
        EXPECT_EQ(page().row("the kind of failure")[2], failure.getType());
        EXPECT_EQ(page().row("the same as a number")[2], std::to_string(failure.getCode()));
        EXPECT_EQ(page().row("the reason")[2], failure.getMessage());
        EXPECT_NE(shown.find(":" + std::to_string(failure.getLine()) + ":"), std::string::npos);
    }
    const GuidePage::Block& report = page().blocks.at(1);
    EXPECT_EQ(report.language, "text");
    EXPECT_EQ(withoutLine(shown + "\n"), withoutLine(std::regex_replace(report.text, std::regex("\n    "), " ")));
    EXPECT_NE(report.text.find(":" + page().row("the line of the check")[2] + ":"), std::string::npos);
}

TEST_F(FailuresGuide, TheKinds) {
    const auto checkCode = [](const char* name, const std::string& code, int value) {
        EXPECT_EQ(page().row(name)[1], code);
        EXPECT_EQ(std::string(name), "Exception<" + std::to_string(value) + ">");
    };
    checkCode("Exception<1>", "E::ASSERT", E::ASSERT);
    checkCode("Exception<2>", "E::INTERNAL", E::INTERNAL);
    checkCode("Exception<4>", "E::PARAMETER", E::PARAMETER);
    checkCode("Exception<7>", "E::UNICODE", E::UNICODE);
    EXPECT_THROW(Matrix3::ZERO.inversedCopy(), Exception<2>);

    EXPECT_TRUE(load("café"));
    EXPECT_FALSE(load("caf\xC3"));
    EXPECT_EQ(shown, "");
    EXPECT_FALSE(load(""));
    EXPECT_EQ(shown, "an empty file!");

    EXPECT_FALSE(tryMakeString("caf\xC3"));
    EXPECT_EQ(toUTF8(makeStringReplacing("caf\xC3")), "caf\uFFFD");
    EXPECT_FALSE(parse<int>("x"));
    EXPECT_FALSE(inverseAtAnyScale(Matrix3::ZERO));
    static_assert(std::is_base_of_v<std::exception, AllExceptions>);
    static_assert(!std::is_base_of_v<std::bad_alloc, AllExceptions>);
}

template <int N, class Run>
void expectMessage(const char* form, Run run) {
    try {
        run();
        ADD_FAILURE() << "no exception";
    } catch (const Exception<N>& failure) {
        EXPECT_EQ(page().row(form)[2], failure.getMessage());
        EXPECT_STREQ(failure.getFunction(), "Game::Inventory::take");
    }
}

TEST_F(FailuresGuide, OwnChecks) {
    Game::Inventory inventory;
    EXPECT_EQ(inventory.take(0), 1);
    expectMessage<1>("VORN_ASSERT(condition, text)", [&] { inventory.take(2); });
    expectMessage<4>("VORN_THROW(code, text)", [&] { inventory.take(1); });
    const auto loseCount = [](int left) {
        VORN_INTERNAL_ASSERT(left >= 0, "taken more than there was!", "Game::Inventory::take");
    };
    expectMessage<2>("VORN_INTERNAL_ASSERT(condition, text)", [&] { loseCount(-1); });
}

TEST_F(FailuresGuide, Logging) {
    AllExceptions::setLogCallback(&writeToLog);
    EXPECT_FALSE(load(""));
    ASSERT_EQ(logged.size(), 1u) << "also a failure that is caught";
    EXPECT_NE(logged[0].find("an empty file!"), std::string::npos);
    try {
        load("caf\xC3");
        makeString("caf\xC3");
    } catch (const Exception<7>& failure) {
        const Exception<7> copy = failure;
        EXPECT_EQ(logged.size(), 3u) << "a copy is not reported again";
        EXPECT_EQ(logged.back(), copy.what());
    }
    AllExceptions::log("a line of your own");
    EXPECT_EQ(logged.back(), "a line of your own");
    AllExceptions::setLogCallback(nullptr);
    EXPECT_FALSE(load(""));
    EXPECT_EQ(logged.size(), 4u);
}

#if GTEST_HAS_DEATH_TEST
TEST_F(FailuresGuide, AFailureThatNobodyCatchesIsLogged) {
    const auto end = []() noexcept {
        AllExceptions::setLogCallback([](const char* report) { std::fprintf(stderr, "%s\n", report); });
        Game::Inventory().take(7);
    };
    EXPECT_DEATH(end(),
                 "Game::Inventory::take: Exception: ::Vorn::E::ASSERT:slot < m_counts.size\\(\\) : no such slot!");
}
#endif

} // namespace
