// Every allocation of an operation is made to fail once, and everything must be as sound as before.
#include "Support/AllocationCounter.h"
#include "Support/SmallStack.h"
#include "Vorn/Exception.h"
#include "Vorn/SharedObjects/Event.h"
#include "Vorn/SharedObjects/TreeNode.h"

#include <gtest/gtest.h>

#include <array>

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
    failEachAllocation([] { Vorn::makeShared<Plain>(); }, expectNoneLives, 2);
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
    failEachAllocation([] { Vorn::Delegate<int, int>::bindCallable(Plain())(1); }, expectNoneLives, 2);
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

#if defined(__linux__)
// Near the end of a stack, objects wait for their destruction in a queue, which may need memory.
TEST(AllocationFailure, DestroyingADeepStructure) {
    struct Link : Plain {
        SharedPtr<Plain> leaves[40];
        SharedPtr<Link> next;
    };
    constexpr int LEVELS = 2000;
    const std::size_t live = liveAllocationCount();
    for (const std::size_t failing : {0, 1, 2, 100, 5000}) {
        SharedPtr<Link> outer;
        for (int level = 0; level < LEVELS; ++level) {
            SharedPtr<Link> link = Vorn::makeShared<Link>();
            for (SharedPtr<Plain>& leaf : link->leaves) leaf = Vorn::makeShared<Plain>();
            link->next = std::move(outer);
            outer = std::move(link);
        }
        ASSERT_EQ(Plain::living, LEVELS * 41);
        const std::size_t allocations = allocationCount();
        runWithStack(SMALL_STACK, [&outer, failing] {
            failAllocation(failing);
            outer.reset();
            failAllocation(0);
        });
        EXPECT_GT(allocationCount(), allocations) << "the structure is too small to need memory";
        expectNoneLives();
    }
    EXPECT_EQ(liveAllocationCount(), live);
}
#endif

} // namespace
