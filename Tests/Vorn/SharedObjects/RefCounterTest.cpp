#include "Vorn/SharedObjects/RefCounter.h"

#include "Support/CountedTarget.h"
#include "Support/Report.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <mutex>
#include <thread>
#include <type_traits>

namespace {

using Journal = std::vector<std::string>;
using Vorn::RefCounter;

std::string object = "object";
std::string otherObject = "other";

JournalCounter* makeCounter(int useCount, int weakCount, void* ptr = &object, bool isThreadsafe = false,
                            bool hasDeleter = true) {
    journal().clear();
    return new JournalCounter(useCount, weakCount, ptr, isThreadsafe, hasDeleter);
}

TEST(RefCounter, FieldsStandInTheSharedOrder) {
    const JournalCounter counter(0, 0, nullptr);
    const auto offset = [&](const void* field) {
        return static_cast<std::size_t>(static_cast<const char*>(field) - reinterpret_cast<const char*>(&counter));
    };
    EXPECT_EQ(offset(&counter.m_useCount), sizeof(void*));
    EXPECT_EQ(offset(&counter.m_weakCount), sizeof(void*) + 4);
    EXPECT_EQ(offset(&counter.m_mutex), sizeof(void*) + 8);
    EXPECT_EQ(offset(&counter.m_ptr), sizeof(void*) + 8 + sizeof(Vorn::RefCounterMutex));
    EXPECT_EQ(offset(&counter.m_isArray), offset(&counter.m_ptr) + sizeof(void*));
    EXPECT_EQ(offset(&counter.m_isThreadsafe), offset(&counter.m_isArray) + 1);
    EXPECT_FALSE(std::has_virtual_destructor_v<RefCounter>);
    EXPECT_EQ(sizeof(RefCounter), sizeof(Vorn::RefCounterMutex) + (sizeof(void*) == 4 ? 20u : 32u));
}

TEST(RefCounterMutex, IsHeldByOneThreadAtATime) {
    Vorn::RefCounterMutex mutex;
    std::lock_guard<Vorn::RefCounterMutex> guard(mutex);
    bool isAcquired = true;
    std::thread([&] { isAcquired = mutex.try_lock(); }).join();
    EXPECT_FALSE(isAcquired);
    mutex.unlock();
    std::thread([&] {
        isAcquired = mutex.try_lock();
        mutex.unlock();
    }).join();
    EXPECT_TRUE(isAcquired);
    mutex.lock();
}

TEST(RefCounter, StartsWithNothing) {
    struct Plain : RefCounter {
        Deleter getDeleter() override { return nullptr; }
    };
    const Plain counter;
    EXPECT_EQ(counter.m_useCount, 0);
    EXPECT_EQ(counter.m_weakCount, 0);
    EXPECT_EQ(counter.m_ptr, nullptr);
    EXPECT_FALSE(counter.m_isArray);
    EXPECT_FALSE(counter.m_isThreadsafe);
}

TEST(ValidRefCounter, UseCountAndObjectAreBothThereOrBothNot) {
    const struct {
        int useCount;
        void* ptr;
        bool isValid;
    } rows[] = {
        {0, nullptr, true},  {1, &object, true},  {2, &object, true},  {-1, &object, true}, // the sign plays no part
        {0, &object, false}, {1, nullptr, false}, {2, nullptr, false}, {-1, nullptr, false},
    };
    EXPECT_TRUE(Vorn::validRefCounter(nullptr));
    for (const auto& row : rows) {
        const JournalCounter counter(row.useCount, 1, row.ptr);
        EXPECT_EQ(Vorn::validRefCounter(&counter), row.isValid) << row.useCount << ' ' << row.ptr;
    }
}

TEST(ConsistentRefCounters, OneObjectHasOneRecord) {
    const JournalCounter first(1, 0, &object), second(1, 0, &object), other(1, 0, &otherObject);
    const JournalCounter dead(0, 1, nullptr), alsoDead(0, 1, nullptr);
    EXPECT_TRUE(Vorn::consistentRefCounters(nullptr, &first));
    EXPECT_TRUE(Vorn::consistentRefCounters(&first, nullptr));
    EXPECT_TRUE(Vorn::consistentRefCounters(nullptr, nullptr));
    EXPECT_TRUE(Vorn::consistentRefCounters(&first, &first));
    EXPECT_TRUE(Vorn::consistentRefCounters(&dead, &first));
    EXPECT_TRUE(Vorn::consistentRefCounters(&first, &dead));
    EXPECT_TRUE(Vorn::consistentRefCounters(&dead, &alsoDead));
    EXPECT_TRUE(Vorn::consistentRefCounters(&first, &other));
    EXPECT_FALSE(Vorn::consistentRefCounters(&first, &second));
    EXPECT_FALSE(Vorn::consistentRefCounters(&second, &first));
}

TEST(AssertValidAndConsistent, StopsAtTheFirstFailure) {
    const JournalCounter first(1, 0, &object), second(1, 0, &object), corrupt(0, 0, &object), empty(2, 0, nullptr);
    const auto expect = [](const RefCounter* c, const RefCounter* o, const char* message) {
        expectRaises<2>([&] { Vorn::assertValidAndConsistent(c, o); }, message, "Vorn::assertValidAndConsistent",
                        "Source/Vorn/RefCounter");
    };
    EXPECT_NO_THROW(Vorn::assertValidAndConsistent(nullptr, nullptr));
    EXPECT_NO_THROW(Vorn::assertValidAndConsistent(&first, nullptr));
    EXPECT_NO_THROW(Vorn::assertValidAndConsistent(&first, &first));
    expect(&corrupt, &empty, "validRefCounter(c) : Invalid reference counter!");
    expect(&first, &corrupt, "validRefCounter(o) : Invalid reference counter!");
    expect(nullptr, &empty, "validRefCounter(o) : Invalid reference counter!");
    expect(&first, &second, "consistentRefCounters(c, o) : Multiple reference counter for the same object!");
}

TEST(ReleaseUseCount, RefusesNullAndCountsBelowOne) {
    const auto expect = [](RefCounter* counter) {
        expectRaises<2>([&] { Vorn::releaseUseCount(counter); },
                        "c && (c)->m_useCount > 0 : can't release when use count == 0", "Vorn::releaseUseCount",
                        "Source/Vorn/RefCounter");
    };
    expect(nullptr);
    for (const int useCount : {0, -1}) {
        JournalCounter counter(useCount, 1, useCount ? &object : nullptr);
        expect(&counter);
        EXPECT_EQ(counter.m_useCount, useCount);
    }
}

TEST(ReleaseUseCount, LeavesTheObjectToOtherUses) {
    JournalCounter counter(2, 0, &object);
    takeJournal();
    Vorn::releaseUseCount(&counter);
    EXPECT_EQ(counter.m_useCount, 1);
    EXPECT_EQ(counter.m_ptr, &object);
    EXPECT_EQ(takeJournal(), Journal());
}

TEST(ReleaseUseCount, FreesTheRecordBeforeTheObject) {
    for (const bool isThreadsafe : {false, true}) {
        Vorn::releaseUseCount(makeCounter(1, 0, &object, isThreadsafe));
        EXPECT_EQ(takeJournal(), (Journal{isThreadsafe ? "deleter locked" : "deleter", "destroy after record object"}));
    }
}

TEST(ReleaseUseCount, WeakCountsKeepTheRecord) {
    for (const bool isThreadsafe : {false, true}) {
        JournalCounter* const counter = makeCounter(1, 1, &object, isThreadsafe);
        Vorn::releaseUseCount(counter);
        EXPECT_EQ(takeJournal(), (Journal{isThreadsafe ? "deleter locked" : "deleter", "destroy object"}));
        EXPECT_EQ(counter->m_useCount, 0);
        EXPECT_EQ(counter->m_weakCount, 1);
        EXPECT_EQ(counter->m_ptr, nullptr);
        EXPECT_TRUE(counter->m_mutex.try_lock());
        counter->m_mutex.unlock();
        Vorn::releaseWeakCount(counter);
    }
}

TEST(ReleaseUseCount, NegativeWeakCountsDoNotKeepTheRecord) {
    Vorn::releaseUseCount(makeCounter(1, -1));
    EXPECT_EQ(takeJournal(), (Journal{"deleter", "destroy after record object"}));
}

TEST(ReleaseUseCount, CallsNoNullDeleterAndFreesTheRecordAllTheSame) {
    const std::size_t live = (journal().reserve(64), liveAllocationCount());
    Vorn::releaseUseCount(makeCounter(1, 0, &object, false, false));
    EXPECT_EQ(liveAllocationCount(), live);
    JournalCounter* const counter = makeCounter(1, 1, &object, false, false);
    Vorn::releaseUseCount(counter);
    EXPECT_EQ(counter->m_ptr, nullptr);
    EXPECT_EQ(takeJournal(), Journal{"deleter"});
    Vorn::releaseWeakCount(counter);
}

TEST(ReleaseUseCount, DeleterMayReleaseTheSameRecord) {
    // The deleter runs after the lock is free again: a weak count that the object holds on itself goes with it.
    static RefCounter* counter;
    struct SelfHolding final : RefCounter {
        Deleter getDeleter() override {
            return [](void*) { Vorn::releaseWeakCount(counter); };
        }
    };
    const std::size_t live = liveAllocationCount();
    SelfHolding* const made = new SelfHolding;
    made->m_useCount = 1;
    made->m_weakCount = 1;
    made->m_ptr = &object;
    made->m_isThreadsafe = true;
    counter = made;
    Vorn::releaseUseCount(counter);
    EXPECT_EQ(liveAllocationCount(), live);
}

TEST(ReleaseWeakCount, DoesNothingOnNull) { EXPECT_NO_THROW(Vorn::releaseWeakCount(nullptr)); }

TEST(ReleaseWeakCount, RefusesZeroOnly) {
    JournalCounter counter(1, 0, &object);
    expectRaises<2>([&] { Vorn::releaseWeakCount(&counter); }, "c->m_weakCount : can't release when weak count == 0",
                    "Vorn::releaseWeakCount", "Source/Vorn/RefCounter");
    EXPECT_EQ(counter.m_weakCount, 0);
    counter.m_weakCount = -1; // the test is for zero, not for the sign
    Vorn::releaseWeakCount(&counter);
    EXPECT_EQ(counter.m_weakCount, -2);
}

TEST(ReleaseWeakCount, FreesTheRecordWithTheLastOfBothCounts) {
    const struct {
        int useCount, weakCount;
        bool isFreed;
    } rows[] = {{0, 1, true}, {0, 2, false}, {1, 1, false}, {0, -1, true}, {-1, 1, true}, {1, -1, false}};
    for (const bool isThreadsafe : {false, true}) {
        for (const auto& row : rows) {
            JournalCounter* const counter =
                makeCounter(row.useCount, row.weakCount, row.useCount ? &object : nullptr, isThreadsafe);
            const std::size_t live = liveAllocationCount();
            Vorn::releaseWeakCount(counter);
            EXPECT_EQ(liveAllocationCount(), live - row.isFreed) << row.useCount << ' ' << row.weakCount;
            EXPECT_EQ(takeJournal(), Journal()); // nobody asks for the deleter
            if (row.isFreed) continue;
            EXPECT_EQ(counter->m_weakCount, row.weakCount - 1);
            delete counter;
        }
    }
}

} // namespace
