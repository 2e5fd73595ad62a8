// EventBase against a plain model of vectors, with random changes outside and inside of dispatches.
#include "Reference/EventModel.h"
#include "Support/CountedTarget.h"
#include "Support/Effort.h"
#include "Support/EventGame.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace {

using Vorn::SharedPtr;

constexpr int LISTENERS = 7;

// Plays random moves on an event and on the model and compares after each.
class Play : public Game {
public:
    using Delegate = Vorn::Delegate<void, void>;

    explicit Play(unsigned int seed) : m_random(seed) {
        for (int id = 0; id < LISTENERS; ++id) {
            m_targets[index(id)] = Vorn::makeShared<Listener>(Listener{this, id});
            m_delegates.push_back(id % 3 == 2 ? Delegate::bindWeak<&Listener::call>(m_targets[index(id)])
                                              : Delegate::bindShared<&Listener::call>(m_targets[index(id)]));
        }
    }

    void run(int moves) {
        const std::size_t live = liveAllocationCount();
        {
            OpenEvent event;
            m_event = &event;
            while (moves-- > 0 && !testing::Test::HasFailure()) {
                if (draw(6) == 0) {
                    dispatch();
                } else {
                    move();
                }
                compare();
            }
        }
        std::array<int, LISTENERS> lostReferences{};
        std::size_t lostNodes = 0;
        for (const reference::EventNode& node : m_model.lost) {
            ++lostReferences[index(node.id)];
            ++lostNodes;
        }
        m_model = reference::EventModel();
        EXPECT_EQ(liveAllocationCount(), live + lostNodes);
        for (int id = 0; id < LISTENERS; ++id) { // give back what was lost with them
            const Vorn::DelegatePOD& pod = m_delegates[index(id)].getPOD();
            while (lostReferences[index(id)]-- > 0) pod.contextAddRef(pod.context, Vorn::DELEGATE_RELEASE_REF);
        }
        for (int id = 0; id < LISTENERS; ++id) {
            EXPECT_EQ(m_targets[index(id)].getUseCount(), id % 3 == 2 ? 1 : 2);
            EXPECT_EQ(m_targets[index(id)].getWeakCount(), id % 3 == 2 ? 1 : 0);
        }
    }

    void called(int id) override {
        EXPECT_EQ(id, m_model.advance());
        compare();
        for (int moves = draw(4); moves > 0 && !testing::Test::HasFailure(); --moves) {
            move();
            compare();
        }
        if (draw(12) == 0) throw Interruption();
    }

    bool usesEverything() const { return m_lostEver && m_interrupted && m_reused; }

private:
    static std::size_t index(int id) { return static_cast<std::size_t>(id); }
    int draw(int end) { return static_cast<int>(m_random() % static_cast<unsigned int>(end)); }

    void move() {
        const int kind = draw(40);
        const int id = draw(LISTENERS);
        if (kind < 20) {
            const int priority = draw(7) - 3;
            const unsigned int before = m_model.nodesMade;
            m_model.add(id, priority);
            EXPECT_EQ(allocationsDuring([&] { m_event->add(m_delegates[index(id)], priority); }),
                      m_model.nodesMade - before);
            if (m_model.nodesMade == before) m_reused = true;
        } else if (kind < 36) {
            m_model.remove(id);
            m_event->remove(m_delegates[index(id)]);
        } else if (kind == 36) {
            m_model.clear();
            m_event->clear();
        } else if (kind == 37) {
            m_model.isDisabled = true;
            m_event->disable();
        } else {
            m_model.isDisabled = false;
            m_event->enable();
        }
    }

    void dispatch() {
        const bool wasDisabled = m_model.isDisabled;
        bool isInterrupted = false;
        try {
            (*m_event)();
        } catch (const Interruption&) {
            isInterrupted = m_interrupted = true;
        }
        if (!isInterrupted && !wasDisabled) {
            EXPECT_EQ(m_model.advance(), -1);
        }
        if (!wasDisabled) m_model.endDispatch();
    }

    void compare() {
        EXPECT_EQ(m_event->getDelegateCount(), m_model.count);
        EXPECT_EQ(m_event->isDisabled(), m_model.isDisabled);
        EXPECT_EQ(m_event->isDispatching(), m_model.at >= 0);
        for (int id = 0; id < LISTENERS; ++id) {
            EXPECT_EQ(m_event->contains(m_delegates[index(id)]), m_model.contains(id)) << id;
            const SharedPtr<Listener>& target = m_targets[index(id)];
            EXPECT_EQ(id % 3 == 2 ? target.getWeakCount() - 1 : target.getUseCount() - 2, m_model.references(id)) << id;
        }
        EXPECT_EQ(m_event->chain(), m_model.chain);
        EXPECT_EQ(m_event->pending(), m_model.pending);
        m_lostEver = m_lostEver || !m_model.lost.empty();
    }

    std::mt19937 m_random;
    std::array<SharedPtr<Listener>, LISTENERS> m_targets;
    std::vector<Delegate> m_delegates;
    OpenEvent* m_event = nullptr;
    reference::EventModel m_model;
    bool m_lostEver = false, m_interrupted = false, m_reused = false;
};

void playAll() {
    const ExpectedLeak leaks;
    const auto games = static_cast<unsigned int>(repetitions(8000, 500));
    bool hasUsedEverything = false;
    for (unsigned int seed = 0; seed < games && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Play play(seed);
        play.run(40);
        hasUsedEverything = hasUsedEverything || play.usesEverything();
    }
    EXPECT_TRUE(hasUsedEverything);
}

TEST(EventBaseModel, AgreesNodeByNode) { playAll(); }

} // namespace
