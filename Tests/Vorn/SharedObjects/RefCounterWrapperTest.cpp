#include "Vorn/SharedObjects/RefCounterWrapper.h"

#include "Support/CountedTarget.h"
#include "Support/Report.h"
#include "Support/Sanitizers.h"

#include <gtest/gtest.h>

#include <new>
#include <type_traits>

namespace {

using Journal = std::vector<std::string>;
using Vorn::RefCounter;
using Vorn::RefCounterWrapper;

const char* const WRAPPER = "Vorn::RefCounterWrapper::";
const char* const HEADER = "Include/Vorn/SharedObjects/RefCounterWrapper";
const char* const SOURCE = "Source/Vorn/RefCounterWrapper";
const char* const INVALID = "validRefCounter(pRefCounter) : Invalid reference counter!";

struct Handle : RefCounterWrapper {
    explicit Handle(RefCounter* counter) { pRefCounter = counter; }
    void reset() override { pRefCounter = nullptr; }
    RefCounter* counter() const { return pRefCounter; }
    using RefCounterWrapper::releaseUseCount;
    using RefCounterWrapper::releaseUseCountNonInline;
    using RefCounterWrapper::releaseWeakCount;
    using RefCounterWrapper::releaseWeakCountNonInline;
};

std::string object = "object";

TEST(RefCounterWrapper, AnswersWithoutARecord) {
    const Handle handle(nullptr);
    EXPECT_TRUE(handle.isNull());
    EXPECT_FALSE(handle.isNotNull());
    EXPECT_EQ(handle.getUseCount(), 0);
    EXPECT_EQ(handle.getWeakCount(), 0);
    EXPECT_FALSE(handle.isArray());
    EXPECT_TRUE(handle.isThreadsafe());
    Handle releasing(nullptr);
    EXPECT_NO_THROW(releasing.releaseWeakCount());
    EXPECT_NO_THROW(releasing.releaseWeakCountNonInline());
}

TEST(RefCounterWrapper, AnswersFromTheRecord) {
    JournalCounter counter(2, 3, &object);
    const Handle handle(&counter);
    EXPECT_FALSE(handle.isNull());
    EXPECT_TRUE(handle.isNotNull());
    EXPECT_EQ(handle.getUseCount(), 2);
    EXPECT_EQ(handle.getWeakCount(), 3);
    for (const bool isSet : {true, false}) {
        counter.m_isArray = isSet;
        counter.m_isThreadsafe = !isSet;
        EXPECT_EQ(handle.isArray(), isSet);
        EXPECT_EQ(handle.isThreadsafe(), !isSet);
    }
    JournalCounter dead(0, 1, nullptr);
    EXPECT_TRUE(Handle(&dead).isNull());
    EXPECT_FALSE(Handle(&dead).isNotNull());
    EXPECT_EQ(Handle(&dead).getUseCount(), 0);
    EXPECT_EQ(Handle(&dead).getWeakCount(), 1);
}

TEST(RefCounterWrapper, AllButIsNotNullCheckTheRecord) {
    JournalCounter corrupt(0, 0, &object);
    Handle handle(&corrupt);
    EXPECT_TRUE(handle.isNotNull());
    const auto expect = [&](auto operation, const char* name, const char* file) {
        expectRaises<2>(operation, INVALID, std::string(WRAPPER) + name, file);
    };
    expect([&] { handle.isNull(); }, "isNull", HEADER);
    expect([&] { handle.getUseCount(); }, "getUseCount", SOURCE);
    expect([&] { handle.getWeakCount(); }, "getWeakCount", SOURCE);
    expect([&] { handle.isArray(); }, "isArray", SOURCE);
    expect([&] { handle.isThreadsafe(); }, "isThreadsafe", SOURCE);
    expect([&] { handle.makeThreadsafe(); }, "makeThreadsafe", SOURCE);
    expect([&] { handle.releaseUseCount(); }, "releaseUseCount", HEADER);
    expect([&] { handle.releaseUseCountNonInline(); }, "releaseUseCount", HEADER);
    EXPECT_EQ(corrupt.m_useCount, 0);
}

TEST(RefCounterWrapper, CopyingMovesThePointerAndCountsNothing) {
    JournalCounter counter(1, 1, &object), other(1, 0, &object);
    const Handle first(&counter);
    Handle second(first);
    EXPECT_EQ(second.counter(), &counter);
    EXPECT_EQ(second.getUseCount(), 1);
    Handle third(&other);
    RefCounterWrapper& result = third = second;
    EXPECT_EQ(&result, &third);
    EXPECT_EQ(third.counter(), &counter);
    EXPECT_EQ(counter.m_useCount, 1);
    EXPECT_EQ(other.m_useCount, 1);
}

TEST(RefCounterWrapper, IsPolymorphicWithoutVirtualDestructor) {
    EXPECT_TRUE(std::is_abstract_v<RefCounterWrapper>);
    EXPECT_FALSE(std::has_virtual_destructor_v<RefCounterWrapper>);
    EXPECT_EQ(sizeof(RefCounterWrapper), 2 * sizeof(void*));
}

TEST(RefCounterWrapper, DefaultConstructorLeavesTheRecordUnwritten) {
    struct Bare : RefCounterWrapper {
        void reset() override {}
        RefCounter* counter() const { return pRefCounter; }
    };
#if !defined(__OPTIMIZE__) // an optimiser may drop what was there before
    alignas(Bare) unsigned char storage[sizeof(Bare)];
    std::fill(std::begin(storage), std::end(storage), static_cast<unsigned char>(0x5A));
    const Bare* const bare = new (storage) Bare;
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(bare->counter()) & 0xFF, 0x5Au);
#endif
    EXPECT_FALSE(std::is_trivially_default_constructible_v<Bare>);
}

TEST(MakeThreadsafe, LeavesTheRecordAsItWasMade) {
    for (const bool isThreadsafe : {false, true}) {
        JournalCounter counter(1, 0, &object, isThreadsafe);
        const Handle handle(&counter);
        handle.makeThreadsafe();
        EXPECT_EQ(handle.isThreadsafe(), isThreadsafe);
    }
}

#if !VORN_TEST_HAS_TSAN // a thread sanitizer's program may not fork
using RefCounterWrapperDeathTest = testing::Test;

TEST(RefCounterWrapperDeathTest, FaultsWithoutARecord) {
    EXPECT_DEATH(Handle(nullptr).makeThreadsafe(), "");
    EXPECT_DEATH(Handle(nullptr).releaseUseCountNonInline(), "");
}
#endif

TEST(WrapperReleaseUseCount, LeavesTheObjectToOtherUses) {
    JournalCounter counter(2, 0, &object);
    Handle handle(&counter);
    takeJournal();
    handle.releaseUseCount();
    EXPECT_EQ(counter.m_useCount, 1);
    EXPECT_EQ(counter.m_ptr, &object);
    EXPECT_EQ(handle.counter(), &counter);
    EXPECT_EQ(takeJournal(), Journal());
}

TEST(WrapperReleaseUseCount, DestroysTheObjectBeforeTheRecord) {
    for (const bool isThreadsafe : {false, true}) {
        for (const bool isInline : {false, true}) {
            JournalCounter* const counter = new JournalCounter(1, 0, &object, isThreadsafe);
            Handle handle(counter);
            takeJournal();
            const std::size_t live = (journal().reserve(64), liveAllocationCount());
            isInline ? handle.releaseUseCount() : handle.releaseUseCountNonInline();
            EXPECT_EQ(liveAllocationCount(), live - 1);
            EXPECT_EQ(takeJournal(), (Journal{isThreadsafe ? "deleter locked" : "deleter", "destroy object"}));
            EXPECT_EQ(handle.counter(), counter); // the handle is not reset
        }
    }
}

TEST(WrapperReleaseUseCount, WeakCountsKeepTheRecord) {
    JournalCounter counter(1, 1, &object, true);
    Handle handle(&counter);
    takeJournal();
    handle.releaseUseCount();
    EXPECT_EQ(takeJournal(), (Journal{"deleter locked", "destroy object"}));
    EXPECT_EQ(counter.m_useCount, 0);
    EXPECT_EQ(counter.m_ptr, nullptr);
    EXPECT_TRUE(counter.m_mutex.try_lock());
    counter.m_mutex.unlock();
}

TEST(WrapperReleaseUseCount, KeepsARecordWithoutDeleterForGood) {
    JournalCounter* const counter = new JournalCounter(1, 0, &object, false, false);
    takeJournal();
    const std::size_t live = (journal().reserve(64), liveAllocationCount());
    Handle(counter).releaseUseCount();
    EXPECT_EQ(liveAllocationCount(), live);
    EXPECT_EQ(counter->m_useCount, 0);
    EXPECT_EQ(counter->m_ptr, nullptr);
    delete counter;
}

TEST(WrapperReleaseUseCount, NegativeCountGoesFurtherDown) {
    // Only validity is checked, not the sign: unlike the free function this one releases below zero.
    JournalCounter counter(-1, 1, &object);
    takeJournal();
    Handle(&counter).releaseUseCount();
    EXPECT_EQ(counter.m_useCount, -2);
    EXPECT_EQ(takeJournal(), (Journal{"deleter", "destroy object"}));
}

TEST(WrapperReleaseWeakCount, RefusesZeroOnly) {
    JournalCounter counter(1, 0, &object);
    Handle handle(&counter);
    for (int i = 0; i < 2; ++i) {
        expectRaises<2>([&] { i ? handle.releaseWeakCount() : handle.releaseWeakCountNonInline(); },
                        "(pRefCounter)->m_weakCount : can't release when weak count == 0",
                        "Vorn::RefCounterWrapper::releaseWeakCount", HEADER);
    }
    counter.m_weakCount = -1;
    handle.releaseWeakCount();
    EXPECT_EQ(counter.m_weakCount, -2);
}

TEST(WrapperReleaseWeakCount, FreesTheRecordWithTheLastOfBothCounts) {
    const struct {
        int useCount, weakCount;
        bool isFreed;
    } rows[] = {{0, 1, true}, {0, 2, false}, {1, 1, false}, {0, -1, true}};
    for (const bool isThreadsafe : {false, true}) {
        for (const auto& row : rows) {
            JournalCounter* const counter =
                new JournalCounter(row.useCount, row.weakCount, row.useCount ? &object : nullptr, isThreadsafe);
            Handle handle(counter);
            const std::size_t live = liveAllocationCount();
            handle.releaseWeakCount();
            EXPECT_EQ(liveAllocationCount(), live - row.isFreed) << row.useCount << ' ' << row.weakCount;
            EXPECT_EQ(handle.counter(), counter);
            if (!row.isFreed) delete counter;
        }
    }
}

TEST(WrapperReleaseWeakCount, RefusesAnObjectWithoutUses) {
    JournalCounter counter(0, 1, &object, true);
    Handle handle(&counter);
    expectRaises<2>([&] { handle.releaseWeakCount(); },
                    "!pRefCounter->m_ptr : non-null pointer found when use count is zero!!!!",
                    "Vorn::RefCounterWrapper::releaseWeakCountNonInlinePart", SOURCE);
    EXPECT_EQ(counter.m_weakCount, 0);
    EXPECT_TRUE(counter.m_mutex.try_lock()); // the lock is free again
    counter.m_mutex.unlock();
}

struct Shared : Vorn::SharedObjectBase {
    using SharedObjectBase::m_refCounter;
};

struct Access : Vorn::PtrTypeBase {
    using PtrTypeBase::getRefCounter;
    using PtrTypeBase::undoGetOrCreateRefCounter;
};

TEST(PtrTypeBase, FindsTheRecordOfAnObject) {
    Shared shared;
    EXPECT_EQ(Access::getRefCounter(&shared), nullptr);
    JournalCounter counter(1, 0, &shared);
    shared.m_refCounter = &counter;
    EXPECT_EQ(Access::getRefCounter(&shared), &counter);
    Access first, second(first);
    EXPECT_EQ(&(second = first), &second);
    EXPECT_EQ(sizeof(Vorn::PtrTypeBase), sizeof(void*));
    EXPECT_FALSE(std::is_destructible_v<Vorn::PtrTypeBase>);
    EXPECT_TRUE(std::has_virtual_destructor_v<Vorn::PtrTypeBase> || !std::is_destructible_v<Vorn::PtrTypeBase>);
}

TEST(UndoGetOrCreateRefCounter, TakesOneUseBack) {
    Shared shared;
    JournalCounter counter(2, 0, &shared);
    shared.m_refCounter = &counter;
    Access::undoGetOrCreateRefCounter(&shared, &counter);
    EXPECT_EQ(counter.m_useCount, 1);
    EXPECT_EQ(shared.m_refCounter, &counter);
}

TEST(UndoGetOrCreateRefCounter, FreesTheRecordOfTheOnlyUse) {
    for (const int useCount : {1, 0}) {
        for (const int weakCount : {0, 1}) { // weak references do not keep it
            Shared shared;
            shared.m_refCounter = new JournalCounter(useCount, weakCount, &shared);
            takeJournal();
            const std::size_t live = liveAllocationCount();
            Access::undoGetOrCreateRefCounter(&shared, shared.m_refCounter);
            EXPECT_EQ(liveAllocationCount(), live - 1);
            EXPECT_EQ(shared.m_refCounter, nullptr);
            EXPECT_EQ(takeJournal(), Journal()); // the object is not destroyed
        }
    }
}

TEST(SharedObjectBase, KeepsItsRecordToItself) {
    JournalCounter counter(1, 0, &object);
    Shared shared;
    EXPECT_EQ(shared.m_refCounter, nullptr);
    shared.m_refCounter = &counter;
    const Shared copy(shared);
    EXPECT_EQ(copy.m_refCounter, nullptr);
    EXPECT_EQ(shared.m_refCounter, &counter);
    EXPECT_EQ(sizeof(Vorn::SharedObjectBase), sizeof(void*));
    EXPECT_FALSE(std::is_polymorphic_v<Vorn::SharedObjectBase>);
    EXPECT_FALSE(std::is_copy_assignable_v<Vorn::SharedObjectBase>);
    EXPECT_FALSE(std::is_destructible_v<Vorn::SharedObjectBase>);
    EXPECT_FALSE(std::is_default_constructible_v<Vorn::SharedObjectBase>);
}

TEST(DynamicObject, HasItsTableAheadOfTheRecord) {
    struct Dynamic : Vorn::DynamicObject {
        using DynamicObject::m_refCounter;
    };
    JournalCounter counter(1, 0, &object);
    Dynamic dynamic;
    dynamic.m_refCounter = &counter;
    EXPECT_EQ(reinterpret_cast<char*>(&dynamic.m_refCounter) - reinterpret_cast<char*>(&dynamic),
              static_cast<std::ptrdiff_t>(sizeof(void*)));
    const Dynamic copy(dynamic);
    EXPECT_EQ(copy.m_refCounter, nullptr);
    EXPECT_TRUE(std::has_virtual_destructor_v<Vorn::DynamicObject>);
    EXPECT_TRUE(std::is_copy_constructible_v<Vorn::DynamicObject>);
    EXPECT_EQ(sizeof(Vorn::DynamicObject), 2 * sizeof(void*));
}

TEST(InterfaceBase, IsARootWithoutFields) {
    struct Implementation : Vorn::DynamicObject, Vorn::InterfaceBase {
        Vorn::SharedObjectBase* getSharedObject() override { return this; }
        Implementation& operator=(const Implementation&) = delete;
    };
    Implementation implementation;
    EXPECT_EQ(implementation.getSharedObject(), &implementation);
    EXPECT_EQ(sizeof(Vorn::InterfaceBase), sizeof(void*));
    EXPECT_FALSE(std::is_destructible_v<Vorn::InterfaceBase>);
    struct Plain : Vorn::InterfaceBase {
        Vorn::SharedObjectBase* getSharedObject() override { return nullptr; }
    };
    Plain first, second(first);
    EXPECT_EQ(&(second = first), &second);
}

} // namespace
