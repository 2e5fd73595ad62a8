// Links modules that read the headers as C++17 and as C++20, and compares what they see: sizes, properties and results.
// Then the one uses objects of the other.
#include "Headers/LanguageLevels/Level.h"

#include "Support/Report.h"
#include "Vorn/String/Interop.h"

#include <gtest/gtest.h>

namespace {

using namespace Vorn;

TEST(LanguageLevels, AreThoseTwo) {
    EXPECT_EQ(levelOfCpp17().standard, 201703L);
    EXPECT_GE(levelOfCpp20().standard, 202002L);
}

TEST(LanguageLevels, SeeTheSameSizesPropertiesAndResults) {
    const auto older = levelOfCpp17().facts(), newer = levelOfCpp20().facts();
    ASSERT_EQ(older.size(), newer.size());
    EXPECT_GT(older.size(), 40u);
    for (std::size_t i = 0; i < older.size(); ++i) {
        ASSERT_EQ(older[i].first, newer[i].first);
        EXPECT_EQ(older[i].second, newer[i].second) << older[i].first;
    }
}

TEST(LanguageLevels, UseObjectsOfOneAnother) {
    const Level levels[] = {levelOfCpp17(), levelOfCpp20()};
    for (const Level& maker : levels) {
        for (const Level& user : levels) {
            SCOPED_TRACE(std::to_string(maker.standard) + " used by " + std::to_string(user.standard));
            const SharedPtr<SharedCounter> counter = maker.make();
            Signal signal;
            signal.add(maker.listenerOf(counter));
            EXPECT_TRUE(signal.contains(user.listenerOf(counter))) << "the same binding";
            user.call(signal, 5);
            EXPECT_EQ(counter->sum, 5);
            EXPECT_TRUE(signal.remove(user.listenerOf(counter)));
            const String joined = user.join(maker.join(String("a"), String("b")), String("c"));
            EXPECT_EQ(view(joined), "abc");
        }
    }
}

TEST(LanguageLevels, ReportTheSameTexts) {
    const Report older = reportOf<1>(levelOfCpp17().raise), newer = reportOf<1>(levelOfCpp20().raise);
    EXPECT_EQ(older.message, "isAlways : never!");
    EXPECT_EQ(older.message, newer.message);
    EXPECT_EQ(older.function, "raise");
    EXPECT_EQ(older.function, newer.function);
    EXPECT_EQ(older.file, "Tests/Headers/LanguageLevels/Level");
    EXPECT_EQ(older.file, newer.file);
    EXPECT_EQ(older.type, newer.type);
    EXPECT_EQ(older.line, newer.line);
}

} // namespace
