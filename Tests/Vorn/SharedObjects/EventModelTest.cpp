// Events against a plain model of vectors, with random changes outside and inside of dispatches.
#include "Support/CountedTarget.h"
#include "Support/Report.h"
#include "Vorn/SharedObjects/Event.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <stdexcept>

namespace {

using Vorn::SharedPtr;

constexpr int LISTENERS = 7;

struct ModelNode {
    int id = -1; // whose reference it holds; -1 for none
    bool isValid = false;
    int priority = 0;

    bool operator==(const ModelNode& other) const {
        return id == other.id && isValid == other.isValid && priority == other.priority;
    }
    bool holds(int listener) const { return isValid && id == listener; }
};

// What an event does, told with vectors. Its first node is chain[0].
struct Model {
    std::vector<ModelNode> chain{ModelNode()}, pending, lost;
    int at = -1; // the dispatch's node; -1 when idle
    bool isTailLost = false;
    bool isDisabled = false;
    unsigned int count = 0;
    bool hasSpare = false;
    ModelNode spare;
    unsigned int nodesMade = 0;

    void erase(std::size_t index) {
        const ModelNode node = chain[index];
        chain.erase(chain.begin() + static_cast<std::ptrdiff_t>(index));
        if (at > static_cast<int>(index)) --at;
        if (!hasSpare) {
            hasSpare = true;
            spare = node;
        }
    }

    void insert(std::size_t index, const ModelNode& node) {
        chain.insert(chain.begin() + static_cast<std::ptrdiff_t>(index), node);
        if (at >= static_cast<int>(index)) ++at;
    }

    void take() {
        if (!hasSpare) ++nodesMade;
        hasSpare = false;
    }

    bool removeFrom(std::size_t index, std::size_t end, int id) {
        while (index < std::min(end, chain.size())) {
            if (chain[index].holds(id)) {
                erase(index);
                return true;
            }
            if (chain[index].isValid) {
                ++index;
            } else {
                erase(index);
                if (end != std::size_t(-1)) --end;
            }
        }
        return false;
    }

    bool removeFromList(int id) {
        if (at == 0) return removePending(id);
        if (at < 0) return removeFrom(1, std::size_t(-1), id) || removePending(id);
        if (removeFrom(1, static_cast<std::size_t>(at), id)) return true;
        const std::size_t dispatched = static_cast<std::size_t>(at);
        if (chain[dispatched].holds(id)) {
            chain[dispatched].isValid = false;
            return true;
        }
        return removeFrom(dispatched + 1, std::size_t(-1), id) || removePending(id);
    }

    bool removePending(int id) {
        for (std::size_t i = 0; i < pending.size(); ++i) {
            if (!pending[i].holds(id)) continue;
            if (i + 1 == pending.size()) isTailLost = true;
            if (i > 0) lost.push_back(pending[i]);
            pending.erase(pending.begin() + static_cast<std::ptrdiff_t>(i));
            return true;
        }
        return false;
    }

    void refillFirst() {
        chain[0].isValid = false;
        while (chain.size() > 1) {
            const ModelNode node = chain[1];
            erase(1);
            if (!node.isValid && at != 1) continue;
            chain[0] = node;
            return;
        }
    }

    void remove(int id) {
        hasSpare = false;
        if (count == 0) return;
        if (!chain[0].holds(id)) {
            if (!removeFromList(id)) return;
        } else if (at == 0 || at == 1) {
            chain[0].isValid = false;
        } else {
            refillFirst();
        }
        --count;
    }

    void wait(const ModelNode& node) {
        take();
        (isTailLost ? lost : pending).push_back(node);
    }

    void add(int id, int priority) {
        remove(id);
        const ModelNode node{id, true, priority};
        ++count;
        if (chain[0].priority > priority) {
            if (at == 0) return wait(node);
            if (!hasSpare && chain.size() > 1 && at != 1 && !chain[1].isValid) {
                chain[1] = chain[0];
            } else {
                take();
                insert(1, chain[0]);
            }
            chain[0] = node;
            return;
        }
        std::size_t index = 1;
        while (index < chain.size() && static_cast<int>(index) != at && chain[index].priority <= priority) ++index;
        if (index < chain.size() && static_cast<int>(index) == at) return wait(node);
        take();
        insert(index, node);
    }

    bool contains(int id) const {
        if (count == 0) return false;
        for (const auto* list : {&chain, &pending}) {
            for (const ModelNode& node : *list) {
                if (node.holds(id)) return true;
            }
        }
        return false;
    }

    void clear() {
        if (at >= 0) {
            for (ModelNode& node : chain) node.isValid = false;
            return;
        }
        chain.resize(1);
        count = 0;
    }

    // The next listener that a dispatch calls; -1 at its end.
    int advance() {
        while (++at < static_cast<int>(chain.size())) {
            if (chain[static_cast<std::size_t>(at)].isValid) return chain[static_cast<std::size_t>(at)].id;
        }
        return -1;
    }

    void endDispatch() {
        at = -1;
        if (pending.empty()) return;
        for (const ModelNode& node : pending) {
            std::size_t index = 1;
            while (index < chain.size() && chain[index].priority <= node.priority) ++index;
            insert(index, node);
        }
        pending.clear();
        isTailLost = false;
    }

    int references(int id) const {
        int result = 0;
        for (const auto* list : {&chain, &pending, &lost}) {
            for (const ModelNode& node : *list) result += node.id == id;
        }
        return result;
    }
};

struct Game;

struct Listener {
    Game* game;
    int id;
    void call();
};

// The event's own records, and the dispatch as a program of this test writes it.
class OpenEvent : public Vorn::EventBase {
public:
    void add(const Vorn::Delegate<void, void>& delegate, int priority) { addDelegate(delegate.getPOD(), priority); }
    void remove(const Vorn::Delegate<void, void>& delegate) { delete removeDelegate(delegate.getPOD()); }
    bool contains(const Vorn::Delegate<void, void>& delegate) const { return containsDelegate(delegate.getPOD()); }

    void operator()() {
        if (isDisabled()) return;
        m_dispatchNode = this;
        try {
            while (m_dispatchNode) {
                const Vorn::DelegatePOD pod = m_dispatchNode->getDelegate();
                if (m_dispatchNode->isValid()) pod.caller(pod.object, pod.context);
                m_dispatchNode = m_dispatchNode->getNext();
            }
        } catch (...) {
            m_dispatchNode = nullptr;
            insertPendingDelegates();
            throw;
        }
        m_dispatchNode = nullptr;
        insertPendingDelegates();
    }

    std::vector<ModelNode> chain() const { return nodes(this); }
    std::vector<ModelNode> pending() const { return nodes(m_pendingFirst); }

private:
    static std::vector<ModelNode> nodes(const Vorn::DelegateNode* node) {
        std::vector<ModelNode> result;
        for (; node; node = node->getNext()) {
            const auto* const listener = static_cast<const Listener*>(node->getDelegate().object);
            result.push_back({listener ? listener->id : -1, node->isValid(), node->getPriority()});
        }
        return result;
    }
};

struct Game {
    virtual ~Game() = default;
    virtual void called(int id) = 0;
};

void Listener::call() { game->called(id); }

struct Interruption : std::runtime_error {
    Interruption() : std::runtime_error("interruption") {}
};

// Plays random moves on an event and on the model and compares after each.
template <class TestedEvent>
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
            TestedEvent event;
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
        for (const ModelNode& node : m_model.lost) {
            ++lostReferences[index(node.id)];
            ++lostNodes;
        }
        m_model = Model();
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
        if constexpr (std::is_same_v<TestedEvent, OpenEvent>) {
            EXPECT_EQ(m_event->chain(), m_model.chain);
            EXPECT_EQ(m_event->pending(), m_model.pending);
        }
        m_lostEver = m_lostEver || !m_model.lost.empty();
    }

    std::mt19937 m_random;
    std::array<SharedPtr<Listener>, LISTENERS> m_targets;
    std::vector<Delegate> m_delegates;
    TestedEvent* m_event = nullptr;
    Model m_model;
    bool m_lostEver = false, m_interrupted = false, m_reused = false;
};

#if VORN_TEST_HAS_ASAN || !defined(__OPTIMIZE__)
constexpr unsigned int GAMES = 1500;
#else
constexpr unsigned int GAMES = 8000;
#endif

template <class TestedEvent>
void playAll() {
    const LeakScope leaks;
    bool hasUsedEverything = false;
    for (unsigned int seed = 0; seed < GAMES && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Play<TestedEvent> play(seed);
        play.run(40);
        hasUsedEverything = hasUsedEverything || play.usesEverything();
    }
    EXPECT_TRUE(hasUsedEverything);
}

TEST(EventModel, EventBaseAgreesNodeByNode) { playAll<OpenEvent>(); }
TEST(EventModel, EventAgreesCallByCall) { playAll<Vorn::Event<>>(); }

} // namespace
