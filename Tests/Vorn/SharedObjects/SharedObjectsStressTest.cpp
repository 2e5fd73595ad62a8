// Counts under eight threads. Run it with the thread sanitizer; without it the tests see lost and doubled deaths.
#include "Vorn/SharedObjects/Delegate.h"
#include "Vorn/SharedObjects/WeakPtr.h"

#include "Support/Effort.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

using Vorn::SharedPtr;
using Vorn::WeakPtr;

constexpr int THREADS = 8;
const int ROUNDS = repetitions(4000, 400);

std::atomic<int> living{0};

struct Target {
    Target() { ++living; }
    ~Target() {
        value = 0; // a reader that comes too late is a race
        --living;
    }
    int read() { return value; }
    int value = 42;
};

struct Shared : Vorn::SharedObjectBase, Target {};

// Starts all threads at once.
template <class Body>
void inThreads(Body&& body) {
    std::atomic<int> ready{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < THREADS; ++i) {
        threads.emplace_back([&, i] {
            ++ready;
            while (ready < THREADS) std::this_thread::yield();
            body(i);
        });
    }
    for (std::thread& thread : threads) thread.join();
}

TEST(Stress, UsesOfAPlainRecordMayGoInAnyThread) {
    SharedPtr<Target> shared = Vorn::makeShared<Target>();
    std::vector<SharedPtr<Target>> own(THREADS, shared);
    shared.reset();
    inThreads([&](int thread) {
        SharedPtr<Target>& mine = own[static_cast<std::size_t>(thread)];
        for (int round = 0; round < ROUNDS; ++round) {
            const SharedPtr<Target> copy(mine);
            SharedPtr<Target> another = copy;
            EXPECT_EQ(another->read(), 42);
        }
        mine.reset();
    });
    EXPECT_EQ(living, 0);
}

TEST(Stress, UseAndWeakCountsGoTogether) {
    for (int round = 0; round < ROUNDS / 4; ++round) {
        SharedPtr<Target> shared = Vorn::makeSharedThreadsafe<Target>();
        std::vector<SharedPtr<Target>> uses(THREADS, shared);
        std::vector<WeakPtr<Target>> weaks(THREADS, WeakPtr<Target>(shared));
        shared.reset();
        std::atomic<int> ready{0};
        std::vector<std::thread> threads;
        for (std::size_t i = 0; i < 8; ++i) {
            threads.emplace_back([&, i] {
                ++ready;
                while (ready < THREADS) std::this_thread::yield();
                if (i % 2) weaks[i].reset(); // the last of both counts may go anywhere
                uses[i].reset();
                weaks[i].reset();
            });
        }
        for (std::thread& thread : threads) thread.join();
        EXPECT_EQ(living, 0);
    }
}

TEST(Stress, LockSucceedsWhileAnOwnerLivesAndNeverAfterItFailed) {
    for (int round = 0; round < ROUNDS / 4; ++round) {
        SharedPtr<Target> shared = Vorn::makeSharedThreadsafe<Target>();
        const WeakPtr<Target> weak(shared);
        std::atomic<int> lockers{0}; // threads that have locked while `shared` was an owner
        inThreads([&](int thread) {
            if (thread == 0) {
                while (lockers < THREADS - 1) std::this_thread::yield();
                shared.reset();
                return;
            }
            const WeakPtr<Target> mine(weak);
            EXPECT_TRUE(mine.lock());
            ++lockers;
            bool hasFailed = false;
            for (int i = 0; i < 20; ++i) {
                if (const SharedPtr<Target> held = mine.lock()) {
                    EXPECT_EQ(held->read(), 42);
                    EXPECT_FALSE(hasFailed);
                } else {
                    EXPECT_TRUE(mine.isExpired());
                    hasFailed = true;
                }
            }
        });
        EXPECT_TRUE(weak.isExpired());
        EXPECT_FALSE(weak.lock());
        EXPECT_EQ(living, 0);
    }
}

TEST(Stress, RawPointersShareTheRecord) {
    const SharedPtr<Shared> shared(new Shared, Vorn::REF_COUNTER_THREADSAFE);
    inThreads([&](int) {
        for (int round = 0; round < ROUNDS; ++round) {
            const SharedPtr<Shared> again(shared.get());
            const WeakPtr<Shared> weak(again);
            EXPECT_EQ(weak.lock()->read(), 42);
        }
    });
    EXPECT_EQ(shared.getUseCount(), 1);
    EXPECT_EQ(shared.getWeakCount(), 0);
}

TEST(Stress, DelegatesCountInAnyThread) {
    using Reader = Vorn::Delegate<int, void>;
    for (int round = 0; round < ROUNDS / 8; ++round) {
        SharedPtr<Target> shared = Vorn::makeSharedThreadsafe<Target>();
        const Reader weakly = Reader::bindWeak<&Target::read>(shared);
        std::vector<Reader> strongly(THREADS, Reader::bindShared<&Target::read>(shared));
        inThreads([&](int thread) {
            Reader& mine = strongly[static_cast<std::size_t>(thread)];
            for (int i = 0; i < 4; ++i) {
                const Reader weakCopy(weakly);
                const std::optional<int> result = weakCopy.tryCall();
                EXPECT_TRUE(result == 42 || (!result && i >= 2)) << "the target lives while this thread owns it";
                EXPECT_EQ(mine(), i < 2 ? 42 : 0);
                if (thread == 0) shared.reset();
                if (i == 1) mine = Reader();
            }
        });
        EXPECT_TRUE(weakly.isExpired());
        EXPECT_FALSE(weakly.tryCall());
        EXPECT_EQ(living, 0);
    }
}

TEST(Stress, FreeReleasesKeepTheLockUntilTheRecordGoes) {
    for (int round = 0; round < ROUNDS / 4; ++round) {
        SharedPtr<Target> shared = Vorn::makeSharedThreadsafe<Target>();
        Vorn::RefCounter* const counter = sharedRecord(shared);
        for (int i = 0; i < THREADS; ++i) {
            Vorn::delegateAddUseRef(counter, Vorn::DELEGATE_ADD_REF);
            Vorn::delegateAddWeakRef(counter, Vorn::DELEGATE_ADD_REF);
        }
        shared.reset();
        inThreads([&](int thread) {
            if (thread % 2) {
                Vorn::releaseWeakCount(counter);
                Vorn::releaseUseCount(counter);
            } else {
                Vorn::delegateAddUseRef(counter, Vorn::DELEGATE_RELEASE_REF);
                Vorn::delegateAddWeakRef(counter, Vorn::DELEGATE_RELEASE_REF);
            }
        });
        EXPECT_EQ(living, 0);
    }
}

} // namespace
