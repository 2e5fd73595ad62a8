// Events against a plain model, with random changes outside and inside of calls.
#include "Support/Effort.h"
#include "Support/ListenerGame.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

class RandomSource {
public:
    RandomSource(unsigned int seed, int choices) : m_random(seed), m_choices(choices) {}
    bool ended() const { return m_choices <= 0 || testing::Test::HasFailure(); }
    unsigned int below(unsigned int end) {
        --m_choices;
        return static_cast<unsigned int>(m_random()) % end;
    }

private:
    std::mt19937 m_random;
    int m_choices;
};

TEST(EventModel, EventAgreesCallByCall) {
    const auto games = static_cast<unsigned int>(repetitions(8000, 500));
    for (unsigned int seed = 0; seed < games && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSource source(seed, 300);
        ListenerGame<RandomSource> game(source,
                                        [](bool condition, const char* text) { EXPECT_TRUE(condition) << text; });
        game.run();
    }
}

} // namespace
