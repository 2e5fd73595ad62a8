// Threads that store and look up the same names at once.
#include "Support/Effort.h"
#include "Support/Threads.h"
#include "Vorn/String/Interop.h"
#include "Vorn/Text/Name.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace Vorn;

constexpr int THREADS = 4;
const int NAMES = repetitions(4000, 500);

TEST(SharedNames, AreTheSameInAllThreads) {
    std::vector<std::vector<Name>> names(THREADS);
    inThreads(THREADS, [&names](int thread) {
        for (int i = 0; i < NAMES; ++i) {
            const int number = (i * 7 + thread * 100) % NAMES;
            std::string text = "shared ";
            text += std::to_string(number);
            const std::optional<Name> known = Name::lookUp(text);
            const Name name(text);
            EXPECT_TRUE(!known || *known == name);
            EXPECT_EQ(name.getText(), text);
            const String copy = name.getString(); // counts references in all threads
            EXPECT_FALSE(copy.isEmpty());
            names[static_cast<std::size_t>(thread)].push_back(name);
        }
    });
    for (int thread = 0; thread < THREADS; ++thread) {
        for (int i = 0; i < NAMES; ++i) {
            std::string text = "shared ";
            text += std::to_string((i * 7 + thread * 100) % NAMES);
            ASSERT_EQ(names[static_cast<std::size_t>(thread)][static_cast<std::size_t>(i)], Name(text));
        }
    }
}

} // namespace
