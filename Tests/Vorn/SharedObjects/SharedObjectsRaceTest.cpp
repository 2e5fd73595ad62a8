// What threads may do at the same time with pointers, delegates, events and trees. The thread sanitizer sees the races;
// without it the tests see lost and doubled destructions.
#include "Support/Effort.h"
#include "Support/Sanitizers.h"
#include "Support/Threads.h"
#include "Vorn/SharedObjects/Event.h"
#include "Vorn/SharedObjects/TreeNode.h"

#include <gtest/gtest.h>

namespace {

using Vorn::SharedPtr;
using Vorn::WeakPtr;

constexpr int THREADS = 4;
const int ROUNDS = repetitions(2000, 100);
const int RACES = repetitions(200, 100); // each starts all threads

// Written by its destructor without synchronisation: a thread that still reads it, or reads it too late, is a race.
struct Target {
    ~Target() { value = 0; }
    int read() { return value; }
    void add(int amount) { sum.fetch_add(amount, std::memory_order_relaxed); }
    int value = 42;
    std::atomic<int> sum{0};
};

struct Remembering : Vorn::SharedObjectBase, Target {};

struct Node : Vorn::TreeNode<Node> {
    explicit Node(int itsValue) : value(itsValue) {}
    int value;
};

// Threads that share nothing.

TEST(UnrelatedThreads, UseTheirOwnPointers) {
    inThreads(THREADS, [](int) {
        for (int round = 0; round < ROUNDS; ++round) {
            const SharedPtr<Remembering> shared = Vorn::makeShared<Remembering>();
            const WeakPtr<Remembering> weak(shared);
            SharedPtr<Remembering> again(shared.get());
            EXPECT_EQ(again.getUseCount(), 2);
            again = weak.lock();
            EXPECT_EQ(again->read(), 42);
        }
    });
}

TEST(UnrelatedThreads, UseTheirOwnEvents) {
    inThreads(THREADS, [](int) {
        using Event = Vorn::Event<int>;
        for (int round = 0; round < ROUNDS / 4; ++round) {
            Event event;
            Target plain;
            const SharedPtr<Target> shared = Vorn::makeShared<Target>(), watched = Vorn::makeShared<Target>();
            event.add(Event::Listener::bind<&Target::add>(plain), 1);
            event.add(Event::Listener::bindShared<&Target::add>(shared), -1);
            event.add(Event::Listener::bindWeak<&Target::add>(watched), 0);
            event.add(Event::Listener::bindCallable([&](int amount) {
                          event.remove(Event::Listener::bind<&Target::add>(plain));
                          event.add(Event::Listener::bind<&Target::add>(plain), amount);
                      }),
                      2);
            event(3);
            event(4);
            EXPECT_EQ(plain.sum, 3); // the second call moves it behind all others, for the next one
            EXPECT_EQ(shared->sum + watched->sum, 14);
        }
    });
}

TEST(UnrelatedThreads, UseTheirOwnTrees) {
    inThreads(THREADS, [](int) {
        for (int round = 0; round < ROUNDS / 20; ++round) {
            const SharedPtr<Node> root = Vorn::makeShared<Node>(0);
            for (int i = 1; i <= 5; ++i) root->append(Vorn::makeShared<Node>(i));
            root->getChild(1).append(root->removeAt(3));
            int sum = 0;
            for (const Node& node : root->depthFirst()) sum += node.value;
            EXPECT_EQ(sum, 15);
        }
    });
}

// Deep enough for the queue that each thread has of its own.
TEST(UnrelatedThreads, DestroyDeepStructures) {
    struct Link {
        SharedPtr<Link> next;
    };
    inThreads(THREADS, [](int) {
        SharedPtr<Link> outer;
        // The thread sanitizer notes fewer calls than the stack of a thread holds, so that it sees no deferral here.
        for (int level = 0; level < (VORN_TEST_HAS_TSAN ? 5000 : 200000); ++level) {
            SharedPtr<Link> link = Vorn::makeShared<Link>();
            link->next = std::move(outer);
            outer = std::move(link);
        }
        outer.reset();
    });
}

// Threads that share an object.

TEST(SharedThreads, ReleaseTheLastUseAnywhere) {
    for (int round = 0; round < RACES; ++round) {
        SharedPtr<Target> shared = Vorn::makeShared<Target>();
        std::vector<SharedPtr<Target>> uses(THREADS, shared);
        shared.reset();
        inThreads(THREADS, [&](int thread) {
            SharedPtr<Target>& mine = uses[static_cast<std::size_t>(thread)];
            EXPECT_EQ(mine->read(), 42);
            mine.reset();
        });
    }
}

TEST(SharedThreads, PromoteAgainstTheLastRelease) {
    int promoted = 0, missed = 0;
    for (int round = 0; round < RACES; ++round) {
        SharedPtr<Target> shared = Vorn::makeSharedThreadsafe<Target>();
        std::vector<WeakPtr<Target>> weaks(THREADS, WeakPtr<Target>(shared));
        std::atomic<int> locked{0};
        inThreads(THREADS, [&](int thread) {
            WeakPtr<Target>& mine = weaks[static_cast<std::size_t>(thread)];
            if (thread == 0) {
                shared.reset();
            } else if (const SharedPtr<Target> held = mine.lock()) {
                EXPECT_EQ(held->read(), 42);
                locked.fetch_add(1, std::memory_order_relaxed);
            }
            mine.reset(); // the last of both counts may be released anywhere
        });
        promoted += locked;
        missed += THREADS - 1 - locked;
    }
    RecordProperty("promoted", promoted);
    RecordProperty("missed", missed);
    EXPECT_EQ(promoted + missed, RACES * (THREADS - 1));
}

TEST(SharedThreads, CountInOneControlBlock) {
    const SharedPtr<Remembering> shared(new Remembering, Vorn::REF_COUNTER_THREADSAFE);
    inThreads(THREADS, [&](int) {
        for (int round = 0; round < ROUNDS; ++round) {
            const SharedPtr<Remembering> again(shared.get());
            WeakPtr<Remembering> weak(again);
            const WeakPtr<Remembering> copy(weak);
            weak = copy;
            EXPECT_EQ(weak.lock()->read(), 42);
        }
    });
    EXPECT_EQ(shared.getUseCount(), 1);
    EXPECT_EQ(shared.getWeakCount(), 0);
}

TEST(SharedThreads, CallDelegatesAgainstTheLastRelease) {
    using Reader = Vorn::Delegate<int, void>;
    for (int round = 0; round < RACES; ++round) {
        SharedPtr<Target> shared = Vorn::makeSharedThreadsafe<Target>();
        const Reader weakly = Reader::bindWeak<&Target::read>(shared);
        std::vector<Reader> strongly(2, Reader::bindShared<&Target::read>(shared));
        inThreads(THREADS, [&](int thread) {
            if (thread < 2) {
                Reader& mine = strongly[static_cast<std::size_t>(thread)];
                EXPECT_EQ(mine(), 42);
                if (thread == 0) shared.reset();
                mine.rebind(Reader());
            } else {
                const Reader copy(weakly);
                const std::optional<int> result = copy.tryCall();
                EXPECT_EQ(result.value_or(42), 42);
                const int called = copy();
                EXPECT_TRUE(called == 42 || called == 0) << called;
            }
        });
        EXPECT_TRUE(weakly.isExpired());
    }
}

// Each thread has an event; all of them listen with, and one of them releases, the same object.
TEST(SharedThreads, CallTheirEventsWithASharedListener) {
    using Event = Vorn::Event<int>;
    for (int round = 0; round < RACES / 2; ++round) {
        SharedPtr<Target> shared = Vorn::makeSharedThreadsafe<Target>();
        const WeakPtr<Target> weak(shared);
        inThreads(THREADS, [&](int thread) {
            Event event;
            if (const SharedPtr<Target> held = weak.lock()) {
                event.add(Event::Listener::bindShared<&Target::add>(held), 1);
                event.add(Event::Listener::bindWeak<&Target::add>(held), -1);
            }
            if (thread == 0) shared.reset();
            event(1);
            event.clear();
        });
        EXPECT_TRUE(weak.isExpired());
    }
}

} // namespace
