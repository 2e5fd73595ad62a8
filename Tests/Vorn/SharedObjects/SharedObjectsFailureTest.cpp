// Every allocation of an operation is made to fail once, and everything must be as sound as before.
#include "Support/AllocationCounter.h"
#include "Support/SmallStack.h"
#include "Vorn/Exception.h"
#include "Vorn/SharedObjects/Event.h"
#include "Vorn/SharedObjects/TreeNode.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>

namespace {

using Vorn::SharedPtr;
using Vorn::WeakPtr;

// Runs `attempt` with the n-th allocation failing, for all n, until it gets through; `check` sees the state after each
// failure. Nothing may be left behind that `attempt` made.
template <class Attempt, class Check>
void failEachAllocation(Attempt&& attempt, Check&& check, std::size_t expectedFailures) {
    std::size_t failures = 0;
    for (std::size_t n = 1;; ++n) {
        const std::size_t live = liveAllocationCount();
        bool isDone = false;
        failAllocation(n);
        try {
            attempt();
            isDone = true;
        } catch (const std::bad_alloc&) {
            ++failures;
        }
        failAllocation(0);
        EXPECT_EQ(liveAllocationCount(), live) << "failure " << n;
        if (isDone) break;
        check();
    }
    EXPECT_EQ(failures, expectedFailures);
}

struct Plain {
    Plain() { ++living; }
    Plain(const Plain&) { ++living; }
    ~Plain() { --living; }
    int operator()(int value) { return value + state++; }
    void hear(int) { ++state; }
    void hearSimple() { ++state; }
    int state = 0;
    static inline int living = 0;
};
struct Shared : Vorn::SharedObjectBase, Plain {};

struct Node : Vorn::TreeNode<Node> {};

void expectNoneLives() { EXPECT_EQ(Plain::living, 0); }

TEST(AllocationFailure, MakingSharedPointers) {
    failEachAllocation([] { Vorn::makeShared<Plain>(); }, expectNoneLives, 1);
    failEachAllocation([] { Vorn::makeSharedThreadsafe<Shared>(); }, expectNoneLives, 2);
    failEachAllocation(
        [] {
            // A statement of its own: g++ 12 destroys the elements twice if the rest of the expression throws.
            Plain* const elements = new Plain[3];
            SharedPtr<Plain[]>{elements};
        },
        expectNoneLives, 2);
}

TEST(AllocationFailure, TakingAnObjectDestroysIt) {
    static int deleted;
    deleted = 0;
    Plain* const plain = new Plain;
    failAllocation(1);
    EXPECT_THROW(SharedPtr<Plain>(plain,
                                  [](void* object) {
                                      ++deleted;
                                      delete static_cast<Plain*>(object);
                                  }),
                 std::bad_alloc);
    failAllocation(0);
    EXPECT_EQ(deleted, 1);
    Shared* const shared = new Shared;
    failAllocation(1);
    EXPECT_THROW(SharedPtr<Shared>{shared}, std::bad_alloc);
    failAllocation(0);
    expectNoneLives();
}

TEST(AllocationFailure, AnObjectThatGoesWithoutARecordCannotBeShared) {
    struct SelfSharing : Vorn::SharedObjectBase, Plain {
        ~SelfSharing() { EXPECT_THROW(SharedPtr<SelfSharing>{this}, Vorn::Exception<1>); }
    };
    SelfSharing* const object = new SelfSharing;
    failAllocation(1);
    EXPECT_THROW(SharedPtr<SelfSharing>{object}, std::bad_alloc);
    failAllocation(0);
    expectNoneLives();
}

TEST(AllocationFailure, AnObjectThatItsDeleterKeepsMayBeSharedAnew) {
    Shared object;
    const auto keep = [](void*) {};
    failAllocation(1);
    EXPECT_THROW(SharedPtr<Shared>(&object, keep), std::bad_alloc);
    failAllocation(0);
    EXPECT_EQ(SharedPtr<Shared>(&object, keep).getUseCount(), 1);
}

TEST(AllocationFailure, SharingAgainAllocatesNothing) {
    const SharedPtr<Shared> shared = Vorn::makeShared<Shared>();
    failEachAllocation(
        [&] {
            SharedPtr<Shared> again(shared.get());
            WeakPtr<Shared> weak(again);
            again = weak.lock();
        },
        [] {}, 0);
    EXPECT_EQ(shared.getUseCount(), 1);
    EXPECT_EQ(shared.getWeakCount(), 0);
}

TEST(AllocationFailure, BindingACallable) {
    failEachAllocation([] { Vorn::Delegate<int, int>::bindCallable(Plain())(1); }, expectNoneLives, 1);
}

using IntEvent = Vorn::Event<int>;
using Listener = IntEvent::Listener;

TEST(AllocationFailure, AddingToAnEvent) {
    const SharedPtr<Plain> first = Vorn::makeShared<Plain>(), second = Vorn::makeShared<Plain>();
    for (const int priority : {-1, 0, 1}) {
        failEachAllocation(
            [&] {
                IntEvent event;
                event.add(Listener::bindShared<&Plain::hear>(first), 0);
                try {
                    event.add(Listener::bindShared<&Plain::hear>(second), priority);
                } catch (const std::bad_alloc&) {
                    EXPECT_EQ(event.getDelegateCount(), 1u);
                    EXPECT_FALSE(event.contains(Listener::bindShared<&Plain::hear>(second)));
                    EXPECT_EQ(second.getUseCount(), 1);
                    first->state = 0;
                    event(1);
                    EXPECT_EQ(first->state, 1);
                    throw;
                }
                event(1);
            },
            [&] {
                EXPECT_EQ(first.getUseCount(), 1);
                EXPECT_EQ(second.getUseCount(), 1);
            },
            2);
    }
    EXPECT_EQ(first.getUseCount(), 1);
    EXPECT_EQ(second.getUseCount(), 1);
}

TEST(AllocationFailure, AddingInsideACall) {
    const SharedPtr<Plain> first = Vorn::makeShared<Plain>(), second = Vorn::makeShared<Plain>();
    IntEvent event;
    event.add(Listener::bindShared<&Plain::hear>(first), 0);
    const auto addSecond = [&event, &second](int) {
        if (second.getWeakCount() == 0) event.add(Listener::bindWeak<&Plain::hear>(second), 0);
    };
    event.add(Listener::bindCallable(addSecond), 0);
    failAllocation(1);
    EXPECT_THROW(event(1), std::bad_alloc);
    failAllocation(0);
    EXPECT_FALSE(event.isDispatching());
    EXPECT_EQ(event.getDelegateCount(), 2u);
    EXPECT_EQ(second.getWeakCount(), 0);
    event(1);
    EXPECT_EQ(event.getDelegateCount(), 3u);
    EXPECT_EQ(second.getWeakCount(), 1);
    event(1);
    EXPECT_EQ(second->state, 1);
}

// Each listener of three adds a new one, or moves one of the three, at each priority, while no memory is left.
TEST(AllocationFailure, ChangingAnEventInsideEachOfItsCalls) {
    constexpr int LISTENERS = 3; // of priorities -1, 0 and 1
    int failures = 0;
    for (int runner = 0; runner < LISTENERS; ++runner) {
        for (int changed = 0; changed <= LISTENERS; ++changed) {
            for (int priority = -2; priority <= 2; ++priority) {
                SCOPED_TRACE(testing::Message() << "listener " << runner << " adds "
                                                << (changed < LISTENERS ? "listener " : "a new listener ") << changed
                                                << " with priority " << priority);
                SharedPtr<Plain> targets[LISTENERS + 1];
                for (SharedPtr<Plain>& target : targets) target = Vorn::makeShared<Plain>();
                const auto listener = [&targets](int i) { return Listener::bindShared<&Plain::hear>(targets[i]); };
                const std::size_t live = liveAllocationCount();
                {
                    IntEvent event;
                    for (int i = 0; i < LISTENERS; ++i) event.add(listener(i), i - 1);
                    bool isRefused = false, hasRun = false;
                    const auto change = [&](int) {
                        if (hasRun) return;
                        hasRun = true;
                        const Listener added = listener(changed);
                        failAllocation(1);
                        try {
                            event.add(added, priority);
                        } catch (const std::bad_alloc&) {
                            isRefused = true;
                        }
                        failAllocation(0);
                    };
                    // Runs within the place of the runner: behind it, with its priority.
                    event.add(Listener::bindCallable([&change](int) { change(0); }), runner - 1);
                    event(1);
                    EXPECT_TRUE(hasRun);
                    EXPECT_FALSE(event.isDispatching());
                    EXPECT_EQ(event.contains(listener(changed)), !isRefused);
                    const unsigned int before = LISTENERS + 1, isNew = changed == LISTENERS;
                    EXPECT_EQ(event.getDelegateCount(), isRefused ? before - 1 + isNew : before + isNew);
                    for (const SharedPtr<Plain>& target : targets) target->state = 0;
                    event(1);
                    for (int i = 0; i <= LISTENERS; ++i) {
                        const bool isHeld = isRefused ? i < LISTENERS && i != changed : i < LISTENERS || i == changed;
                        EXPECT_EQ(targets[i]->state, isHeld) << i;
                    }
                    failures += isRefused;
                }
                EXPECT_EQ(liveAllocationCount(), live);
                for (const SharedPtr<Plain>& target : targets) EXPECT_EQ(target.getUseCount(), 1);
            }
        }
    }
    EXPECT_EQ(failures, 15); // all new listeners; moving one allocates nothing
    expectNoneLives();
}

TEST(AllocationFailure, ChangingTheFirstListenerInsideItsOwnCall) {
    for (const int priority : {-2, -1, 0, 1}) {
        const SharedPtr<Plain> first = Vorn::makeShared<Plain>(), second = Vorn::makeShared<Plain>();
        static IntEvent* called;
        static int added;
        IntEvent event;
        called = &event;
        added = priority;
        struct Mover {
            void hear(int) {
                const SharedPtr<Mover> keep = self.lock();
                const Listener own = Listener::bindShared<&Mover::hear>(keep);
                if (state++ > 0) return;
                failAllocation(1);
                EXPECT_NO_THROW(called->add(own, added));
                failAllocation(0);
            }
            WeakPtr<Mover> self;
            int state = 0;
        };
        const SharedPtr<Mover> mover = Vorn::makeShared<Mover>();
        mover->self = mover;
        event.add(Listener::bindShared<&Mover::hear>(mover), -1);
        event.add(Listener::bindShared<&Plain::hear>(second), 1);
        event(1);
        EXPECT_EQ(event.getDelegateCount(), 2u);
        EXPECT_TRUE(event.contains(Listener::bindShared<&Mover::hear>(mover)));
        event(1);
        EXPECT_EQ(mover->state, 2);
        EXPECT_EQ(second->state, 2);
    }
}

// What the headers describe as free of allocations, so that it works when memory ends.
TEST(AllocationFailure, TheRestAllocatesNothing) {
    const SharedPtr<Plain> target = Vorn::makeShared<Plain>(), other = Vorn::makeShared<Plain>();
    const SharedPtr<Node> root = Vorn::makeShared<Node>();
    for (int i = 0; i < 4; ++i) root->append(Vorn::makeShared<Node>());
    IntEvent event;
    event.add(Listener::bindShared<&Plain::hear>(target), 0);
    event.add(Listener::bindShared<&Plain::hear>(other), 1);
    const struct {
        const char* name;
        std::function<void()> run;
    } rows[] = {
        {"copy, convert and compare pointers",
         [&] {
             SharedPtr<const Plain> copy(target);
             const WeakPtr<Plain> weak(target);
             WeakPtr<const Plain> converted(weak);
             EXPECT_TRUE(converted.lock() == copy);
         }},
        {"cast pointers", [&] { EXPECT_TRUE(Vorn::staticSharedCast<const Plain>(target) == target); }},
        {"bind a method",
         [&] {
             Listener bound = Listener::bind<&Plain::hear>(*target);
             const Listener shared = Listener::bindShared<&Plain::hear>(target);
             const Listener weak = Listener::bindWeak<&Plain::hear>(target);
             bound = shared;
             bound.rebind(weak);
             bound(1);
         }},
        {"bind a small callable",
         [&] { Listener::bindCallable([plain = target.get()](int value) { plain->hear(value); })(1); }},
        {"move a child", [&] { root->move(0, 3); }},
        {"insert a child that is one already", [&] { root->insert(3, root->getChildren()[0]); }},
        {"remove a child and put it back", [&] { root->append(root->removeAt(1)); }},
        {"walk a tree",
         [&] {
             for (Node& node : root->depthFirst()) EXPECT_LE(node.getChildCount(), 4u);
         }},
        {"call an event", [&] { event(1); }},
        {"search an event", [&] { EXPECT_TRUE(event.contains(Listener::bindShared<&Plain::hear>(other))); }},
        {"move a listener behind the first node", [&] { event.add(Listener::bindShared<&Plain::hear>(other), 2); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::size_t live = liveAllocationCount();
        EXPECT_EQ(allocationsDuring(row.run), 0u);
        EXPECT_EQ(liveAllocationCount(), live);
    }
    EXPECT_EQ(allocationsDuring([&] { event.remove(Listener::bindShared<&Plain::hear>(other)); }), 0u);
    EXPECT_EQ(allocationsDuring([&] { event.clear(); }), 0u);
}

TEST(AllocationFailure, GrowingATree) {
    const SharedPtr<Node> root = Vorn::makeShared<Node>(), old = Vorn::makeShared<Node>(),
                          child = Vorn::makeShared<Node>();
    old->append(child);
    const unsigned int growths[] = {1, 2, 3, 3, 4, 4, 4, 4, 5}; // of a list with one more child than the index
    for (unsigned int count = 0; count < 9; ++count) {
        failEachAllocation(
            [&] {
                const SharedPtr<Node> parent = Vorn::makeShared<Node>();
                for (unsigned int i = 0; i < count; ++i) parent->append(Vorn::makeShared<Node>());
                parent->append(child);
                old->append(child);
            },
            [&] {
                EXPECT_EQ(child->getParent(), old.get());
                EXPECT_EQ(child.getUseCount(), 2);
                EXPECT_EQ(old->getChildCount(), 1u);
            },
            2 + 2 * count + growths[count]);
    }
}

#if defined(VORN_TEST_HAS_SMALL_STACKS)
// Near the end of a stack, objects wait for their destruction in a queue, which may need memory.
TEST(AllocationFailure, DestroyingADeepStructure) {
    struct Link : Plain {
        SharedPtr<Plain> leaves[40];
        SharedPtr<Link> next;
    };
    constexpr int LEVELS = 600;
    const std::size_t live = liveAllocationCount();
    for (const unsigned int failing : {0u, 1u, 2u, 100u, 1000u}) {
        SharedPtr<Link> outer;
        for (int level = 0; level < LEVELS; ++level) {
            SharedPtr<Link> link = Vorn::makeShared<Link>();
            for (SharedPtr<Plain>& leaf : link->leaves) leaf = Vorn::makeShared<Plain>();
            link->next = std::move(outer);
            outer = std::move(link);
        }
        ASSERT_EQ(Plain::living, LEVELS * 41);
        const std::size_t allocations = allocationCount();
        const auto destroy = [&outer, failing] {
            failAllocation(failing);
            outer.reset();
            failAllocation(0);
        };
        runWithStack(SMALL_STACK, [&destroy] { runNearTheEndOfTheStack(destroy); });
        EXPECT_GT(allocationCount(), allocations) << "the structure is too small to need memory";
        expectNoneLives();
    }
    EXPECT_EQ(liveAllocationCount(), live);
}
#endif

} // namespace
