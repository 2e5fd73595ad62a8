#include "Vorn/SharedObjects/DelegateBase.h"

#include "Support/CountedTarget.h"
#include "Support/Report.h"
#include "Vorn/SharedObjects/Delegate.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>

namespace {

using Journal = std::vector<std::string>;
using Vorn::DELEGATE_ADD_REF;
using Vorn::DELEGATE_RELEASE_REF;
using Vorn::DelegatePOD;

// A delegate made from a record by hand.
struct Handmade : Vorn::Delegate<void, void> {
    Handmade() = default;
    explicit Handmade(const DelegatePOD& pod) {
        m_pod = pod;
        if (pod.contextAddRef) pod.contextAddRef(pod.context, DELEGATE_ADD_REF);
    }
};

class DelegateBase : public testing::Test {
protected:
    DelegateBase() { journal().clear(); }
    std::string a = "a", b = "b";
    JournalContext x{"x"}, y{"y"};
};

TEST_F(DelegateBase, RecordHasFiveWords) {
    EXPECT_EQ(sizeof(DelegatePOD), 5 * sizeof(void*));
    EXPECT_EQ(offsetof(DelegatePOD, object), 0u);
    EXPECT_EQ(offsetof(DelegatePOD, context), sizeof(void*));
    EXPECT_EQ(offsetof(DelegatePOD, caller), 2 * sizeof(void*));
    EXPECT_EQ(offsetof(DelegatePOD, contextAddRef), 3 * sizeof(void*));
    EXPECT_EQ(offsetof(DelegatePOD, typeInfo), 4 * sizeof(void*));
    EXPECT_TRUE(std::is_trivial_v<DelegatePOD>);
    EXPECT_EQ(sizeof(Vorn::Delegate<void, void>), sizeof(Vorn::DelegateBase));
    EXPECT_EQ(sizeof(Vorn::DelegateBase), 6 * sizeof(void*));
    EXPECT_TRUE((std::is_convertible_v<Vorn::Delegate<void, void>*, Vorn::DelegateBase*>));
    EXPECT_TRUE((std::has_virtual_destructor_v<Vorn::Delegate<void, void>>));
    EXPECT_FALSE(std::is_destructible_v<Vorn::DelegateBase>);
    EXPECT_FALSE(std::is_default_constructible_v<Vorn::DelegateBase>);
    EXPECT_FALSE(std::is_copy_constructible_v<Vorn::DelegateBase>);
    EXPECT_FALSE(std::is_copy_assignable_v<Vorn::DelegateBase>);
    EXPECT_EQ(static_cast<int>(DELEGATE_ADD_REF), 1);
    EXPECT_EQ(static_cast<int>(DELEGATE_RELEASE_REF), -1);
}

TEST_F(DelegateBase, EmptyDelegateDoesNothing) {
    {
        const Vorn::Delegate<void, void> empty;
        EXPECT_TRUE(empty.isNull());
        EXPECT_FALSE(empty.isNotNull());
        EXPECT_FALSE(empty);
        empty.call();
        empty();
        const DelegatePOD& pod = empty.getPOD();
        EXPECT_EQ(pod.object, nullptr);
        EXPECT_EQ(pod.context, nullptr);
        EXPECT_EQ(pod.caller, nullptr);
        EXPECT_EQ(pod.contextAddRef, nullptr);
        EXPECT_EQ(pod.typeInfo, nullptr);
    }
    EXPECT_EQ(takeJournal(), Journal());
}

TEST_F(DelegateBase, CallsItsTarget) {
    const Handmade delegate(journalDelegate(a));
    EXPECT_FALSE(delegate.isNull());
    EXPECT_TRUE(delegate.isNotNull());
    EXPECT_TRUE(delegate);
    delegate.call();
    delegate();
    EXPECT_EQ(takeJournal(), (Journal{"call a", "call a"}));
}

TEST_F(DelegateBase, PassesObjectAndContext) {
    static std::pair<void*, void*> seen;
    DelegatePOD pod = journalDelegate(a);
    pod.context = &b;
    pod.caller = [](void* object, void* context) { seen = {object, context}; };
    Handmade(pod).call();
    EXPECT_EQ(seen, (std::pair<void*, void*>(&a, &b)));
}

TEST_F(DelegateBase, NullnessIsThatOfTheCaller) {
    DelegatePOD pod = journalDelegate(a);
    pod.caller = nullptr;
    const Handmade delegate(pod);
    EXPECT_TRUE(delegate.isNull());
    delegate.call();
    EXPECT_EQ(takeJournal(), Journal());
}

TEST_F(DelegateBase, CopiesHoldAReferenceEach) {
    {
        const Handmade delegate(journalDelegate(a, &x));
        EXPECT_EQ(x.references, 1);
        {
            const Vorn::Delegate<void, void> copy(delegate);
            EXPECT_EQ(x.references, 2);
            EXPECT_EQ(copy.getPOD().object, &a);
            EXPECT_EQ(copy.getPOD().context, &x);
        }
        EXPECT_EQ(x.references, 1);
    }
    EXPECT_EQ(takeJournal(), (Journal{"+x", "+x", "-x", "-x"}));
    const Handmade uncounted(journalDelegate(a));
    const Vorn::Delegate<void, void> copy(uncounted);
    EXPECT_EQ(takeJournal(), Journal());
}

TEST_F(DelegateBase, AssignmentCountsInReverse) {
    Handmade target(journalDelegate(a, &x));
    Handmade source(journalDelegate(b, &y));
    x.references = y.references = 10;
    takeJournal();
    Vorn::Delegate<void, void>& result = static_cast<Vorn::Delegate<void, void>&>(target) = source;
    EXPECT_EQ(&result, &target);
    EXPECT_EQ(takeJournal(), (Journal{"+x", "-y"})); // the outgoing one first
    EXPECT_EQ(x.references, 11);
    EXPECT_EQ(y.references, 9);
    EXPECT_EQ(target.getPOD().object, &b);
    EXPECT_EQ(target.getPOD().context, &y);
    EXPECT_EQ(target.getPOD().typeInfo, source.getPOD().typeInfo);
}

TEST_F(DelegateBase, AssigningTheSameDelegateChangesNothing) {
    Handmade target(journalDelegate(a, &x));
    const Handmade source(journalDelegate(a, &y)); // another context does not make another delegate
    takeJournal();
    target = source;
    EXPECT_EQ(target.getPOD().context, &x);
    EXPECT_EQ(takeJournal(), Journal());
}

TEST_F(DelegateBase, AssigningToAndFromEmpty) {
    Handmade empty;
    const Handmade alsoEmpty;
    empty = alsoEmpty;
    EXPECT_EQ(takeJournal(), Journal());
    Handmade target(journalDelegate(a, &x));
    takeJournal();
    target = alsoEmpty;
    EXPECT_TRUE(target.isNull());
    EXPECT_EQ(takeJournal(), Journal{"+x"});
    Handmade source(journalDelegate(b, &y));
    takeJournal();
    empty = source;
    EXPECT_EQ(empty.getPOD().context, &y);
    EXPECT_EQ(takeJournal(), Journal{"-y"});
}

TEST_F(DelegateBase, EmptyWithContextGoesThroughTheCounts) {
    // Without a type nothing is the same, not even a delegate and itself.
    DelegatePOD pod = journalDelegate(a, &x);
    pod.typeInfo = nullptr;
    Handmade delegate(pod);
    takeJournal();
    const Handmade& same = delegate;
    delegate = same;
    EXPECT_EQ(takeJournal(), (Journal{"+x", "-x"}));
}

TEST_F(DelegateBase, RebindCountsAsExpected) {
    Handmade target(journalDelegate(a, &x));
    const Handmade source(journalDelegate(b, &y));
    takeJournal();
    target.rebind(source);
    EXPECT_EQ(takeJournal(), (Journal{"+y", "-x"}));
    target.rebind(target);
    EXPECT_EQ(takeJournal(), (Journal{"+y", "-y"}));
    const Handmade otherContext(journalDelegate(b, &x));
    takeJournal();
    target.rebind(otherContext);
    EXPECT_EQ(target.getPOD().context, &x);
    EXPECT_EQ(takeJournal(), (Journal{"+x", "-y"}));
}

TEST_F(DelegateBase, SameDelegateIsTheSameObjectAndType) {
    const DelegatePOD pod = journalDelegate<1>(a, &x);
    EXPECT_TRUE(Vorn::sameDelegate(pod, journalDelegate<1>(a, &y)));
    EXPECT_FALSE(Vorn::sameDelegate(pod, journalDelegate<2>(a, &x)));
    EXPECT_FALSE(Vorn::sameDelegate(pod, journalDelegate<1>(b, &x)));
    DelegatePOD other = pod;
    other.caller = nullptr;
    other.context = nullptr;
    other.contextAddRef = nullptr;
    EXPECT_TRUE(Vorn::sameDelegate(pod, other));
    other.typeInfo = nullptr;
    EXPECT_FALSE(Vorn::sameDelegate(pod, other));
    EXPECT_FALSE(Vorn::sameDelegate(other, pod));
    EXPECT_FALSE(Vorn::sameDelegate(other, other));
    EXPECT_FALSE(Vorn::sameDelegate(DelegatePOD(), DelegatePOD()));
    EXPECT_TRUE(Handmade(pod) == Handmade(journalDelegate<1>(a)));
    EXPECT_TRUE(Handmade(pod) != Handmade(journalDelegate<2>(a)));
    EXPECT_FALSE(Handmade() == Handmade());
}

TEST_F(DelegateBase, TypesAreComparedByTheirOwnOperator) {
    // A second type_info object of the same name, as another module could hold one.
    struct Twin : std::type_info {
        explicit Twin(const char* name) : std::type_info(name) {}
    };
    const Twin first("twin"), second("twin"), third("other");
    DelegatePOD one = journalDelegate(a), two = one;
    one.typeInfo = &first;
    two.typeInfo = &second;
    EXPECT_TRUE(Vorn::sameDelegate(one, two));
    two.typeInfo = &third;
    EXPECT_FALSE(Vorn::sameDelegate(one, two));
}

class DelegateAddRef : public DelegateBase {};

TEST_F(DelegateAddRef, AddsWithoutACheck) {
    JournalCounter counter(0, 0, nullptr);
    Vorn::delegateAddUseRef(&counter, DELEGATE_ADD_REF);
    EXPECT_EQ(counter.m_useCount, 1);
    Vorn::delegateAddWeakRef(&counter, DELEGATE_ADD_REF);
    EXPECT_EQ(counter.m_weakCount, 1);
}

TEST_F(DelegateAddRef, EveryOtherOperationReleases) {
    for (const int op : {-1, 0, 2, 7}) {
        JournalCounter counter(2, 2, &a);
        Vorn::delegateAddUseRef(&counter, static_cast<Vorn::DelegateContextAddRef>(op));
        EXPECT_EQ(counter.m_useCount, 1);
        Vorn::delegateAddWeakRef(&counter, static_cast<Vorn::DelegateContextAddRef>(op));
        EXPECT_EQ(counter.m_weakCount, 1);
    }
}

TEST_F(DelegateAddRef, UseReleaseFreesTheRecordBeforeTheObject) {
    for (const bool isThreadsafe : {false, true}) {
        JournalCounter* const counter = new JournalCounter(1, 0, &a, isThreadsafe);
        Vorn::delegateAddUseRef(counter, DELEGATE_RELEASE_REF);
        EXPECT_EQ(takeJournal(), (Journal{isThreadsafe ? "deleter locked" : "deleter", "destroy after record a"}));
    }
    JournalCounter kept(1, 1, &a);
    Vorn::delegateAddUseRef(&kept, DELEGATE_RELEASE_REF);
    EXPECT_EQ(takeJournal(), (Journal{"deleter", "destroy a"}));
    EXPECT_EQ(kept.m_ptr, nullptr);
}

TEST_F(DelegateAddRef, WeakReleaseFreesTheRecordWithTheLastOfBothCounts) {
    for (const bool isThreadsafe : {false, true}) {
        const std::size_t live = (journal().reserve(64), liveAllocationCount());
        Vorn::delegateAddWeakRef(new JournalCounter(0, 1, nullptr, isThreadsafe), DELEGATE_RELEASE_REF);
        EXPECT_EQ(liveAllocationCount(), live);
    }
    JournalCounter used(1, 1, &a);
    Vorn::delegateAddWeakRef(&used, DELEGATE_RELEASE_REF);
    EXPECT_EQ(used.m_weakCount, 0);
    used.m_weakCount = -1;
    Vorn::delegateAddWeakRef(&used, DELEGATE_RELEASE_REF);
    EXPECT_EQ(used.m_weakCount, -2);
}

TEST_F(DelegateAddRef, ChecksInItsOwnWords) {
    const char* const file = "Source/Vorn/DelegateBase";
    JournalCounter counter(0, 0, nullptr);
    for (void* context : {static_cast<void*>(nullptr), static_cast<void*>(static_cast<Vorn::RefCounter*>(&counter))}) {
        expectRaises<2>([&] { Vorn::delegateAddUseRef(context, DELEGATE_RELEASE_REF); },
                        "counter && (counter)->m_useCount > 0 : can't release when use count == 0",
                        "Vorn::delegateAddUseRef", file);
    }
    expectRaises<2>([&] { Vorn::delegateAddWeakRef(&counter, DELEGATE_RELEASE_REF); },
                    "counter->m_weakCount : can't release when weak count == 0", "Vorn::delegateAddWeakRef", file);
    EXPECT_NO_THROW(Vorn::delegateAddWeakRef(nullptr, DELEGATE_RELEASE_REF));
}

} // namespace
