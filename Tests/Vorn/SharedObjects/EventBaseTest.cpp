#include "Vorn/SharedObjects/EventBase.h"

#include "Support/CountedTarget.h"
#include "Support/Report.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <type_traits>

namespace {

using Journal = std::vector<std::string>;
using Vorn::DelegateNode;
using Vorn::DelegatePOD;

struct TestEvent : Vorn::EventBase {
    using EventBase::addDelegate;
    using EventBase::containsDelegate;
    using EventBase::insertPendingDelegates;
    using EventBase::m_delegateCount;
    using EventBase::m_dispatchNode;
    using EventBase::m_pendingFirst;
    using EventBase::m_pendingLast;
    using EventBase::removeDelegate;

    void remove(const DelegatePOD& delegate) { delete removeDelegate(delegate); }
    void dispatchAt(DelegateNode* node) { m_dispatchNode = node; }
    DelegateNode* node(int index) {
        DelegateNode* result = this;
        while (index-- > 0) result = result->getNext();
        return result;
    }
    void endDispatch() {
        m_dispatchNode = nullptr;
        insertPendingDelegates();
    }
};

std::string text(const DelegateNode* node) {
    std::string result;
    for (; node; node = node->getNext()) {
        if (!result.empty()) result += ' ';
        const auto* const object = static_cast<const std::string*>(node->getDelegate().object);
        result += (node->isValid() ? *object : "-") + ":" + std::to_string(node->getPriority());
    }
    return result;
}

class EventNodes : public testing::Test {
protected:
    EventNodes() { journal().clear(); }
    std::string a = "a", b = "b", c = "c", d = "d";
    JournalContext x{"x"}, y{"y"}, z{"z"}, w{"w"};
};

class DelegateNodeTest : public EventNodes {};

TEST_F(DelegateNodeTest, HasItsSize) {
    EXPECT_EQ(sizeof(DelegateNode), sizeof(DelegatePOD) + (sizeof(void*) == 4 ? 8 : 16));
    EXPECT_FALSE(std::is_polymorphic_v<DelegateNode>);
    EXPECT_FALSE(std::is_polymorphic_v<Vorn::EventBase>);
    EXPECT_FALSE(std::is_copy_constructible_v<DelegateNode>);
    EXPECT_TRUE((std::is_convertible_v<Vorn::EventBase*, DelegateNode*>));
    EXPECT_FALSE(std::is_destructible_v<Vorn::EventBase>);
    EXPECT_FALSE(std::is_default_constructible_v<Vorn::EventBase>);
}

TEST_F(DelegateNodeTest, StartsInvalid) {
    const DelegateNode node;
    EXPECT_FALSE(node.isValid());
    EXPECT_EQ(node.getPriority(), 0);
    EXPECT_EQ(node.getNext(), nullptr);
    EXPECT_EQ(node.getDelegate().object, nullptr);
    EXPECT_EQ(node.getDelegate().context, nullptr);
    EXPECT_EQ(node.getDelegate().caller, nullptr);
    EXPECT_EQ(node.getDelegate().contextAddRef, nullptr);
}

TEST_F(DelegateNodeTest, HoldsAReferenceUntilItGoes) {
    {
        DelegateNode node(journalDelegate(a, &x), -3);
        EXPECT_TRUE(node.isValid());
        EXPECT_EQ(node.getPriority(), -3);
        EXPECT_EQ(node.getNext(), nullptr);
        EXPECT_EQ(node.getDelegate().object, &a);
        EXPECT_EQ(x.references, 1);
        node.invalidate(); // keeps everything but the type
        EXPECT_FALSE(node.isValid());
        EXPECT_EQ(node.getDelegate().context, &x);
        EXPECT_NE(node.getDelegate().caller, nullptr);
        EXPECT_EQ(x.references, 1);
        node.setPriority(INT_MAX);
        EXPECT_EQ(node.getPriority(), INT_MAX);
    }
    EXPECT_EQ(takeJournal(), (Journal{"+x", "-x"}));
}

TEST_F(DelegateNodeTest, DestroysTheChainBehindIt) {
    const std::size_t live = liveAllocationCount();
    {
        DelegateNode first(journalDelegate(a, &x), 1);
        DelegateNode* const second = new DelegateNode(journalDelegate(b, &y), 2);
        first.insertAfter(second);
        second->insertAfter(new DelegateNode(journalDelegate(c, &z), 3));
        takeJournal();
    }
    EXPECT_EQ(takeJournal(), (Journal{"-x", "-y", "-z"}));
    EXPECT_EQ(liveAllocationCount(), live + 0);
}

TEST_F(DelegateNodeTest, ReleasesAllReferencesBeforeItFreesANode) {
    static std::vector<std::size_t> liveAtRelease;
    liveAtRelease.clear();
    liveAtRelease.reserve(3);
    const auto count = [](void*, Vorn::DelegateContextAddRef op) {
        if (op == Vorn::DELEGATE_RELEASE_REF) liveAtRelease.push_back(liveAllocationCount());
    };
    DelegatePOD counted = journalDelegate(a, &x);
    counted.contextAddRef = count;
    const std::size_t live = liveAllocationCount();
    {
        DelegateNode first(counted, 1);
        first.insertAfter(new DelegateNode(counted, 2));
        first.getNext()->insertAfter(new DelegateNode(counted, 3));
    }
    EXPECT_EQ(liveAtRelease, std::vector<std::size_t>(3, live + 2));
    EXPECT_EQ(liveAllocationCount(), live);
}

TEST_F(DelegateNodeTest, InsertAfterLinksAndAppends) {
    DelegateNode first(journalDelegate(a), 1), second(journalDelegate(b), 2), third(journalDelegate(c), 3);
    first.insertAfter(&third);
    first.insertAfter(&second);
    EXPECT_EQ(text(&first), "a:1 b:2 c:3");
    expectRaises<2>([&] { first.insertAfter(&second); }, "!node->p_next : unlink one of the nodes before inserting!",
                    "Vorn::DelegateNode::insertAfter", "Source/Vorn/DelegateNode");
    EXPECT_EQ(text(&first), "a:1 b:2 c:3");
    EXPECT_EQ(first.unlink(), &second);
    EXPECT_EQ(text(&first), "a:1");
    EXPECT_EQ(first.unlink(), nullptr);
    first.insertAfter(&second); // a whole chain behind an end
    EXPECT_EQ(text(&first), "a:1 b:2 c:3");
    first.insertAfter(nullptr); // ends the chain, frees nothing
    EXPECT_EQ(text(&first), "a:1");
    EXPECT_EQ(text(&second), "b:2 c:3");
    first.insertAfter(nullptr);
    EXPECT_EQ(text(&first), "a:1");
    second.unlink();
}

TEST_F(DelegateNodeTest, SetDelegateReleasesAlsoWhatAReleasePutsIn) {
    static DelegateNode* changing;
    static DelegatePOD inserted;
    DelegateNode node;
    changing = &node;
    inserted = journalDelegate(b, &y);
    DelegatePOD outgoing = journalDelegate(a, &x);
    outgoing.contextAddRef = [](void*, Vorn::DelegateContextAddRef op) {
        if (op == Vorn::DELEGATE_RELEASE_REF) changing->setDelegate(inserted);
    };
    node.setDelegate(outgoing);
    node.setDelegate(journalDelegate(c, &z));
    EXPECT_EQ(takeJournal(), (Journal{"+y", "-y", "+z"}));
    EXPECT_EQ(text(&node), "c:0");
    node.setDelegate(outgoing);
    node.releaseDelegate();
    EXPECT_EQ(text(&node), "b:0") << "what is put in stays";
}

TEST_F(DelegateNodeTest, SetDelegateReleasesTheOldAndAddsTheNew) {
    DelegateNode node(journalDelegate(a, &x), 1);
    takeJournal();
    node.setDelegate(journalDelegate(b, &y));
    EXPECT_EQ(takeJournal(), (Journal{"-x", "+y"}));
    node.setDelegate(journalDelegate(b, &z)); // the same delegate: the old context stays
    EXPECT_EQ(node.getDelegate().context, &y);
    EXPECT_EQ(takeJournal(), Journal());
    node.invalidate();
    node.setDelegate(journalDelegate(b, &y)); // an invalid node is the same as nothing
    EXPECT_TRUE(node.isValid());
    EXPECT_EQ(takeJournal(), (Journal{"-y", "+y"}));
    node.setDelegate(DelegatePOD());
    EXPECT_EQ(takeJournal(), Journal{"-y"});
    node.setDelegate(journalDelegate(a));
    EXPECT_EQ(takeJournal(), Journal());
}

class EventBaseTest : public EventNodes {
protected:
    TestEvent event;
};

TEST_F(EventBaseTest, StartsIdleAndEmpty) {
    EXPECT_EQ(event.getDelegateCount(), 0u);
    EXPECT_FALSE(event.isDisabled());
    EXPECT_FALSE(event.isDispatching());
    EXPECT_EQ(text(&event), "-:0");
    EXPECT_EQ(event.m_pendingFirst, nullptr);
    EXPECT_EQ(event.m_pendingLast, nullptr);
    EXPECT_EQ(event.removeDelegate(journalDelegate(a)), nullptr);
    EXPECT_FALSE(event.containsDelegate(journalDelegate(a)));
}

TEST_F(EventBaseTest, SortsByPriorityBehindTheInvalidFirstNode) {
    event.addDelegate(journalDelegate(a), 5);
    event.addDelegate(journalDelegate(b), 1);
    event.addDelegate(journalDelegate(c), 3);
    EXPECT_EQ(text(&event), "-:0 b:1 c:3 a:5");
    EXPECT_EQ(event.getDelegateCount(), 3u);
    event.addDelegate(journalDelegate(d), 3); // behind what is there
    EXPECT_EQ(text(&event), "-:0 b:1 c:3 d:3 a:5");
}

TEST_F(EventBaseTest, LowerPriorityThanTheFirstNodeTakesIt) {
    event.addDelegate(journalDelegate(a, &x), -1);
    EXPECT_EQ(text(&event), "a:-1 -:0");
    event.addDelegate(journalDelegate(b, &y), -2);
    EXPECT_EQ(text(&event), "b:-2 a:-1"); // the search for b swept the invalid node out, and a moved into it
    EXPECT_EQ(takeJournal(), (Journal{"+x", "+x", "-x", "+y"}));
    event.addDelegate(journalDelegate(c), -1);
    EXPECT_EQ(text(&event), "b:-2 a:-1 c:-1");
    event.addDelegate(journalDelegate(d), -2); // not lower than the first node
    EXPECT_EQ(text(&event), "b:-2 d:-2 a:-1 c:-1");
}

TEST_F(EventBaseTest, InvalidSecondNodeTakesTheFirstDelegate) {
    event.addDelegate(journalDelegate(a, &x), -1);
    event.addDelegate(journalDelegate(b, &y), 0);
    event.addDelegate(journalDelegate(c, &z), 1);
    event.dispatchAt(event.node(2));
    event.node(1)->invalidate();
    event.m_delegateCount = 0; // nothing is searched, so nothing is swept
    const DelegateNode* const second = event.node(1);
    takeJournal();
    event.addDelegate(journalDelegate(d, &w), -2);
    EXPECT_EQ(text(&event), "d:-2 a:-1 c:1");
    EXPECT_EQ(event.getNext(), second);
    EXPECT_EQ(takeJournal(), (Journal{"-y", "+x", "-x", "+w"}));
    // The node that is being dispatched is not taken.
    event.dispatchAt(event.node(1));
    event.node(1)->invalidate();
    event.m_delegateCount = 0;
    event.addDelegate(journalDelegate(b), -3);
    EXPECT_EQ(text(&event), "b:-3 d:-2 -:-1 c:1");
    event.m_dispatchNode = nullptr;
}

TEST_F(EventBaseTest, RefusesIncompleteDelegates) {
    for (const bool hasCaller : {false, true}) {
        DelegatePOD delegate = journalDelegate(a);
        if (!hasCaller) delegate.caller = nullptr;
        if (hasCaller) delegate.typeInfo = nullptr;
        expectRaises<1>([&] { event.addDelegate(delegate, 0); },
                        "delegate.caller && delegate.typeInfo : Invalid delegate!!", "Vorn::EventBase::addDelegate",
                        "Source/Vorn/EventBase");
    }
    EXPECT_EQ(event.getDelegateCount(), 0u);
}

TEST_F(EventBaseTest, AddingAgainMovesWithoutAllocationOrCounting) {
    event.addDelegate(journalDelegate(a, &x), 1);
    event.addDelegate(journalDelegate(b, &y), 2);
    takeJournal();
    EXPECT_EQ(allocationsDuring([&] { event.addDelegate(journalDelegate(a, &x), 3); }), 0u);
    EXPECT_EQ(text(&event), "-:0 b:2 a:3");
    EXPECT_EQ(event.getDelegateCount(), 2u);
    EXPECT_EQ(takeJournal(), Journal());
}

TEST_F(EventBaseTest, AddingTheFirstNodesDelegateAgainCounts) {
    event.addDelegate(journalDelegate(a, &x), -1);
    event.addDelegate(journalDelegate(b, &y), -1);
    EXPECT_EQ(text(&event), "a:-1 b:-1");
    takeJournal();
    event.addDelegate(journalDelegate(a, &x), 5);
    EXPECT_EQ(text(&event), "b:-1 a:5");
    EXPECT_EQ(takeJournal(), (Journal{"-x", "+y", "-y", "+x"})); // b moves up, its node takes a
    EXPECT_EQ(x.references, 1);
    EXPECT_EQ(y.references, 1);
}

TEST_F(EventBaseTest, MovedUpSpareGoesBackDownWithoutCounting) {
    event.addDelegate(journalDelegate(a, &x), -2);
    event.addDelegate(journalDelegate(b, &y), -1);
    takeJournal();
    event.addDelegate(journalDelegate(a, &x), -3); // the spare still holds b, the first node's delegate
    EXPECT_EQ(text(&event), "a:-3 b:-1");
    EXPECT_EQ(takeJournal(), (Journal{"-x", "+y", "-y", "+x"}));
}

TEST_F(EventBaseTest, RemovingGivesTheSpareWithItsReference) {
    event.addDelegate(journalDelegate(a, &x), 1);
    const DelegateNode* const node = event.getNext();
    takeJournal();
    DelegateNode* const spare = event.removeDelegate(journalDelegate(a));
    EXPECT_EQ(spare, node);
    EXPECT_EQ(spare->getNext(), nullptr);
    EXPECT_TRUE(spare->isValid());
    EXPECT_EQ(takeJournal(), Journal());
    delete spare;
    EXPECT_EQ(takeJournal(), Journal{"-x"});
    EXPECT_EQ(event.getDelegateCount(), 0u);
    EXPECT_EQ(text(&event), "-:0");
}

TEST_F(EventBaseTest, RemovingTheFirstNodeRefillsIt) {
    event.addDelegate(journalDelegate(a, &x), -1);
    event.addDelegate(journalDelegate(b, &y), 4);
    EXPECT_EQ(text(&event), "a:-1 b:4");
    takeJournal();
    DelegateNode* const spare = event.removeDelegate(journalDelegate(a));
    EXPECT_TRUE(spare->isValid()); // the node whose delegate moved up, with its reference
    EXPECT_EQ(text(&event), "b:4");
    EXPECT_EQ(takeJournal(), (Journal{"-x", "+y"}));
    delete spare;
    EXPECT_EQ(takeJournal(), Journal{"-y"});
    EXPECT_EQ(event.removeDelegate(journalDelegate(b)), nullptr); // nothing is left to refill it
    EXPECT_EQ(text(&event), "-:4");
    EXPECT_EQ(event.getDelegate().context, &y); // the reference waits for a later delegate
    EXPECT_EQ(takeJournal(), Journal());
    EXPECT_EQ(event.getDelegateCount(), 0u);
}

TEST_F(EventBaseTest, RemovalSweepsInvalidNodesInOrder) {
    for (const auto& [object, context] : {std::pair(&a, &x), std::pair(&b, &y), std::pair(&c, &z), std::pair(&d, &w)}) {
        event.addDelegate(journalDelegate(*object, context), 1);
    }
    event.node(1)->invalidate();
    event.node(2)->invalidate();
    takeJournal();
    DelegateNode* const spare = event.removeDelegate(journalDelegate(c));
    EXPECT_EQ(spare->getDelegate().context, &x); // the first that was swept out
    EXPECT_EQ(takeJournal(), (Journal{"-y", "-z"}));
    EXPECT_EQ(text(&event), "-:0 d:1");
    EXPECT_EQ(event.getDelegateCount(), 3u); // invalid nodes are not counted down by the sweep
    delete spare;
    event.node(1)->invalidate();
    DelegateNode* const swept = event.removeDelegate(journalDelegate(a)); // not found, and a spare all the same
    EXPECT_NE(swept, nullptr);
    EXPECT_EQ(event.getDelegateCount(), 3u);
    delete swept;
}

TEST_F(EventBaseTest, RefillSweepsInvalidNodesInOrder) {
    event.addDelegate(journalDelegate(a, &x), -5);
    event.addDelegate(journalDelegate(b, &y), -4);
    event.addDelegate(journalDelegate(c, &z), -3);
    event.addDelegate(journalDelegate(d, &w), -2);
    delete event.removeDelegate(DelegatePOD()); // sweeps the node that came from the empty event
    EXPECT_EQ(text(&event), "a:-5 b:-4 c:-3 d:-2");
    event.node(1)->invalidate();
    event.node(2)->invalidate();
    takeJournal();
    DelegateNode* const spare = event.removeDelegate(journalDelegate(a));
    EXPECT_EQ(spare->getDelegate().context, &y);
    EXPECT_EQ(takeJournal(), (Journal{"-z", "-x", "+w", "-w"}));
    EXPECT_EQ(text(&event), "d:-2");
    delete spare;
}

TEST_F(EventBaseTest, ContainsSearchesNodesThatTheCountKnows) {
    event.addDelegate(journalDelegate(a), -1);
    event.addDelegate(journalDelegate(b), 1);
    EXPECT_TRUE(event.containsDelegate(journalDelegate(a)));
    EXPECT_TRUE(event.containsDelegate(journalDelegate(b)));
    EXPECT_FALSE(event.containsDelegate(journalDelegate(c)));
    EXPECT_FALSE((event.containsDelegate(journalDelegate<1>(a))));
    event.invalidate();
    EXPECT_FALSE(event.containsDelegate(journalDelegate(a)));
    event.m_delegateCount = 0;
    EXPECT_FALSE(event.containsDelegate(journalDelegate(b)));
}

TEST_F(EventBaseTest, DisablingChangesOnlyTheFormOfTheCount) {
    for (std::string* object : {&a, &b, &c}) event.addDelegate(journalDelegate(*object), 0);
    event.enable();
    EXPECT_EQ(event.m_delegateCount, 3);
    event.disable();
    EXPECT_TRUE(event.isDisabled());
    EXPECT_EQ(event.m_delegateCount, -4);
    EXPECT_EQ(event.getDelegateCount(), 3u);
    event.disable();
    EXPECT_EQ(event.m_delegateCount, -4);
    event.addDelegate(journalDelegate(d), 0);
    EXPECT_EQ(event.m_delegateCount, -5);
    EXPECT_EQ(event.getDelegateCount(), 4u);
    event.remove(journalDelegate(d));
    EXPECT_EQ(event.m_delegateCount, -4);
    event.clear();
    EXPECT_EQ(event.m_delegateCount, -1);
    EXPECT_EQ(event.getDelegateCount(), 0u);
    EXPECT_EQ(event.removeDelegate(journalDelegate(a)), nullptr);
    event.enable();
    EXPECT_EQ(event.m_delegateCount, 0);
    EXPECT_FALSE(event.isDisabled());
}

TEST_F(EventBaseTest, RefusesToCountBelowZero) {
    // A context that changes the count behind the event's back while a node goes.
    static TestEvent* disturbed;
    for (const int count : {0, -1}) {
        TestEvent other;
        disturbed = &other;
        static int wrongCount;
        wrongCount = count;
        DelegatePOD delegate = journalDelegate(a, &x);
        delegate.contextAddRef = [](void*, Vorn::DelegateContextAddRef op) {
            if (op == Vorn::DELEGATE_RELEASE_REF) disturbed->m_delegateCount = wrongCount;
        };
        other.addDelegate(journalDelegate(b), 0);
        other.addDelegate(delegate, 1);
        other.dispatchAt(other.node(1));
        other.addDelegate(delegate, 1); // goes to the pending list, from where removal deletes it
        ASSERT_NE(other.m_pendingFirst, nullptr);
        expectRaises<2>([&] { other.removeDelegate(delegate); },
                        "m_delegateCount != " + std::to_string(count) + " : Invalid delegate count!!!",
                        "Vorn::EventBase::removeDelegate", "Source/Vorn/EventBase");
        other.m_dispatchNode = nullptr;
    }
}

TEST_F(EventBaseTest, ClearIdleLeavesTheFirstNode) {
    event.addDelegate(journalDelegate(a, &x), -1);
    event.addDelegate(journalDelegate(b, &y), 1);
    event.addDelegate(journalDelegate(c, &z), 2);
    takeJournal();
    event.clear();
    EXPECT_EQ(takeJournal(), (Journal{"-y", "-z"}));
    EXPECT_EQ(text(&event), "a:-1");
    EXPECT_EQ(event.getDelegateCount(), 0u);
    EXPECT_FALSE(event.containsDelegate(journalDelegate(a)));
    event.addDelegate(journalDelegate(b), 0);
    EXPECT_EQ(text(&event), "a:-1 b:0");
    EXPECT_EQ(event.getDelegateCount(), 1u);
}

TEST_F(EventBaseTest, ClearIdleCountsNobodyWhoComesWhileReferencesGo) {
    static TestEvent* cleared;
    static DelegatePOD late;
    cleared = &event;
    late = journalDelegate(b);
    DelegatePOD early = journalDelegate(a, &x);
    early.contextAddRef = [](void*, Vorn::DelegateContextAddRef op) {
        if (op == Vorn::DELEGATE_ADD_REF) return;
        EXPECT_EQ(cleared->getDelegateCount(), 1u);
        cleared->addDelegate(late, 5);
        EXPECT_EQ(cleared->getDelegateCount(), 2u);
    };
    event.addDelegate(early, 1);
    event.clear();
    EXPECT_EQ(event.m_delegateCount, 0);
    EXPECT_EQ(text(&event), "-:0 b:5");
}

TEST_F(EventBaseTest, ClearDuringADispatchInvalidatesTheChain) {
    event.addDelegate(journalDelegate(a, &x), -1);
    event.addDelegate(journalDelegate(b, &y), 1);
    event.dispatchAt(&event);
    event.addDelegate(journalDelegate(c, &z), -2);
    takeJournal();
    event.clear();
    EXPECT_EQ(takeJournal(), Journal());
    EXPECT_EQ(text(&event), "-:-1 -:1");
    EXPECT_EQ(text(event.m_pendingFirst), "c:-2");
    EXPECT_EQ(event.getDelegateCount(), 3u);
    EXPECT_FALSE(event.containsDelegate(journalDelegate(b)));
    EXPECT_TRUE(event.containsDelegate(journalDelegate(c)));
    event.endDispatch();
    EXPECT_EQ(text(&event), "-:-1 c:-2 -:1");
}

TEST_F(EventBaseTest, AddingBehindTheDispatchIsLinkedAtOnce) {
    for (std::string* object : {&a, &b, &c}) event.addDelegate(journalDelegate(*object), 2);
    event.dispatchAt(event.node(2));
    event.addDelegate(journalDelegate(d), 1);
    EXPECT_EQ(text(&event), "-:0 d:1 a:2 b:2 c:2");
    EXPECT_EQ(event.m_pendingFirst, nullptr);
}

TEST_F(EventBaseTest, AddingAtOrBeyondTheDispatchWaits) {
    event.addDelegate(journalDelegate(a), 1);
    event.addDelegate(journalDelegate(b), 5);
    event.dispatchAt(event.node(2));
    event.addDelegate(journalDelegate(c), 5);
    event.addDelegate(journalDelegate(d), 3); // directly ahead of the dispatch is at it
    EXPECT_EQ(text(&event), "-:0 a:1 b:5");
    EXPECT_EQ(text(event.m_pendingFirst), "c:5 d:3"); // in order of arrival
    EXPECT_EQ(text(event.m_pendingLast), "d:3");
    EXPECT_TRUE(event.containsDelegate(journalDelegate(c)));
    EXPECT_TRUE(event.containsDelegate(journalDelegate(d)));
    EXPECT_EQ(event.getDelegateCount(), 4u);
    event.endDispatch();
    EXPECT_EQ(text(&event), "-:0 a:1 d:3 b:5 c:5");
    EXPECT_EQ(event.m_pendingFirst, nullptr);
    EXPECT_EQ(event.m_pendingLast, nullptr);
}

TEST_F(EventBaseTest, AddingAtTheFirstNodeIsLinkedOrWaits) {
    event.addDelegate(journalDelegate(a), -1);
    event.dispatchAt(&event);
    event.addDelegate(journalDelegate(b), 7); // into the chain, and called by this dispatch
    EXPECT_EQ(text(&event), "a:-1 -:0 b:7");
    event.addDelegate(journalDelegate(c), -2); // would take the first place
    EXPECT_EQ(text(event.m_pendingFirst), "c:-2");
    event.endDispatch();
    EXPECT_EQ(text(&event), "a:-1 c:-2 -:0 b:7"); // the first node is not compared
}

TEST_F(EventBaseTest, AddingBeforeTheFirstNodeWhileFurtherOn) {
    event.addDelegate(journalDelegate(a), -1);
    event.addDelegate(journalDelegate(b), 3);
    event.dispatchAt(event.node(1));
    event.addDelegate(journalDelegate(c), -2);
    EXPECT_EQ(text(&event), "c:-2 a:-1 b:3"); // at once, as the dispatch has passed the place
    EXPECT_EQ(event.m_dispatchNode, event.node(2));
    event.endDispatch();
}

TEST_F(EventBaseTest, PendingDelegatesGoBehindEqualPriorities) {
    event.addDelegate(journalDelegate(a), 1);
    event.addDelegate(journalDelegate(b), 1);
    event.dispatchAt(event.node(1));
    event.addDelegate(journalDelegate(c), 1);
    event.addDelegate(journalDelegate(d), INT_MAX);
    event.endDispatch();
    EXPECT_EQ(text(&event), "-:0 a:1 b:1 c:1 d:" + std::to_string(INT_MAX));
}

TEST_F(EventBaseTest, RemovingTheDispatchedNodeKeepsItLinked) {
    event.addDelegate(journalDelegate(a, &x), 1);
    event.addDelegate(journalDelegate(b, &y), 2);
    event.dispatchAt(event.node(1));
    takeJournal();
    EXPECT_EQ(event.removeDelegate(journalDelegate(a)), nullptr);
    EXPECT_EQ(text(&event), "-:0 -:1 b:2");
    EXPECT_EQ(event.getDelegateCount(), 1u);
    EXPECT_EQ(takeJournal(), Journal()); // it keeps its reference
    event.endDispatch();
    DelegateNode* const spare = event.removeDelegate(journalDelegate(b));
    EXPECT_EQ(spare->getDelegate().context, &x);
    delete spare;
    EXPECT_EQ(takeJournal(), (Journal{"-y", "-x"}));
}

TEST_F(EventBaseTest, RemovingAroundTheDispatch) {
    for (std::string* object : {&a, &b, &c, &d}) event.addDelegate(journalDelegate(*object), 1);
    event.dispatchAt(event.node(2));
    event.remove(journalDelegate(a));
    EXPECT_EQ(text(&event), "-:0 b:1 c:1 d:1");
    event.remove(journalDelegate(d));
    EXPECT_EQ(text(&event), "-:0 b:1 c:1");
    event.addDelegate(journalDelegate(a), 1);
    event.remove(journalDelegate(a)); // from the pending list, behind a search of the whole chain
    EXPECT_EQ(event.m_pendingFirst, nullptr);
    EXPECT_EQ(event.getDelegateCount(), 2u);
    event.endDispatch();
}

TEST_F(EventBaseTest, NothingBehindTheFirstNodeIsFoundWhileItIsDispatched) {
    event.addDelegate(journalDelegate(a), -1);
    event.addDelegate(journalDelegate(b), 1);
    event.dispatchAt(&event);
    EXPECT_EQ(event.removeDelegate(journalDelegate(b)), nullptr);
    EXPECT_EQ(text(&event), "a:-1 b:1");
    EXPECT_EQ(event.getDelegateCount(), 2u);
    event.addDelegate(journalDelegate(b), 2); // so adding it again makes a second one
    EXPECT_EQ(text(&event), "a:-1 b:1 b:2");
    EXPECT_EQ(event.getDelegateCount(), 3u);
    EXPECT_EQ(event.removeDelegate(journalDelegate(a)), nullptr); // its own node is only invalidated
    EXPECT_EQ(text(&event), "-:-1 b:1 b:2");
    EXPECT_EQ(event.getDelegateCount(), 2u);
    event.endDispatch();
}

TEST_F(EventBaseTest, RemovingTheFirstNodeWhileFurtherOn) {
    event.addDelegate(journalDelegate(a, &x), -5);
    event.addDelegate(journalDelegate(b, &y), -4);
    event.addDelegate(journalDelegate(c, &z), -3);
    event.addDelegate(journalDelegate(d, &w), -2);
    event.dispatchAt(event.node(1)); // directly behind the first: no refill
    EXPECT_EQ(event.removeDelegate(journalDelegate(a)), nullptr);
    EXPECT_EQ(text(&event), "-:-5 b:-4 c:-3 d:-2");
    event.dispatchAt(event.node(3));
    event.setDelegate(journalDelegate(a, &x));
    event.node(1)->invalidate();
    event.node(2)->invalidate();
    takeJournal();
    DelegateNode* const spare = event.removeDelegate(journalDelegate(a));
    // The last node before the dispatch takes the first place though it is invalid.
    EXPECT_EQ(text(&event), "-:-3 d:-2");
    EXPECT_EQ(event.getDelegate().context, &z);
    EXPECT_EQ(spare->getDelegate().context, &y);
    EXPECT_EQ(takeJournal(), (Journal{"-x", "+z", "-z"}));
    EXPECT_EQ(event.m_dispatchNode, event.node(1));
    delete spare;
    event.endDispatch();
}

TEST_F(EventBaseTest, RefillWhileFurtherOnTakesTheFirstValidNode) {
    event.addDelegate(journalDelegate(a, &x), -5);
    event.addDelegate(journalDelegate(b, &y), -4);
    event.addDelegate(journalDelegate(c, &z), -3);
    event.dispatchAt(event.node(2));
    event.remove(journalDelegate(a));
    EXPECT_EQ(text(&event), "b:-4 c:-3");
    EXPECT_EQ(event.m_dispatchNode, event.node(1));
    event.endDispatch();
}

TEST_F(EventBaseTest, DispatchNodeOutsideTheChainEndsTheWalk) {
    DelegateNode outside;
    event.addDelegate(journalDelegate(a), 1);
    event.dispatchAt(&outside);
    EXPECT_EQ(event.removeDelegate(journalDelegate(b)), nullptr);
    event.remove(journalDelegate(a));
    EXPECT_EQ(text(&event), "-:0");
    event.m_dispatchNode = nullptr;
}

TEST_F(EventBaseTest, RemovingTheFirstPendingNodeLeavesTheRest) {
    event.addDelegate(journalDelegate(a), 1);
    event.dispatchAt(event.node(1));
    event.addDelegate(journalDelegate(b, &y), 1);
    event.addDelegate(journalDelegate(c, &z), 1);
    takeJournal();
    EXPECT_EQ(event.removeDelegate(journalDelegate(b)), nullptr);
    EXPECT_EQ(takeJournal(), Journal{"-y"});
    EXPECT_EQ(text(event.m_pendingFirst), "c:1");
    event.addDelegate(journalDelegate(d), 1);
    event.endDispatch();
    EXPECT_EQ(text(&event), "-:0 a:1 c:1 d:1");
}

TEST_F(EventBaseTest, RemovingALaterPendingNodeLosesIt) {
    const ExpectedLeak leaks;
    event.addDelegate(journalDelegate(a), 1);
    event.dispatchAt(event.node(1));
    for (const auto& [object, context] : {std::pair(&b, &y), std::pair(&c, &z), std::pair(&d, &w)}) {
        event.addDelegate(journalDelegate(*object, context), 1);
    }
    DelegateNode* const middle = event.m_pendingFirst->getNext();
    takeJournal();
    EXPECT_EQ(event.removeDelegate(journalDelegate(c)), nullptr);
    EXPECT_EQ(text(event.m_pendingFirst), "b:1 d:1"); // its neighbours are linked
    EXPECT_EQ(event.getDelegateCount(), 3u);
    EXPECT_EQ(takeJournal(), Journal()); // its reference is lost
    EXPECT_EQ(z.references, 1);
    EXPECT_EQ(middle->getNext(), nullptr);
    event.endDispatch();
    EXPECT_EQ(text(&event), "-:0 a:1 b:1 d:1");
    delete middle;
}

TEST_F(EventBaseTest, AfterTheLastPendingNodeNewOnesAreLost) {
    const ExpectedLeak leaks;
    event.addDelegate(journalDelegate(a), 1);
    event.dispatchAt(event.node(1));
    event.addDelegate(journalDelegate(b), 1);
    event.addDelegate(journalDelegate(c), 1);
    DelegateNode* const last = event.m_pendingLast;
    EXPECT_EQ(event.removeDelegate(journalDelegate(c)), nullptr);
    EXPECT_EQ(event.m_pendingLast, last); // stale
    event.addDelegate(journalDelegate(d, &w), 1);
    EXPECT_EQ(w.references, 1);
    EXPECT_FALSE(event.containsDelegate(journalDelegate(d)));
    EXPECT_EQ(event.getDelegateCount(), 3u); // counted all the same
    EXPECT_EQ(text(event.m_pendingFirst), "b:1");
    event.endDispatch(); // a pending node is left, so the list starts anew
    EXPECT_EQ(text(&event), "-:0 a:1 b:1");
    EXPECT_EQ(event.m_pendingLast, nullptr);
    delete last; // with d behind it
    EXPECT_EQ(w.references, 0);
}

TEST_F(EventBaseTest, AfterTheOnlyPendingNodeNewOnesAreLostForGood) {
    const ExpectedLeak leaks;
    event.addDelegate(journalDelegate(a), 1);
    std::vector<DelegateNode*> lost;
    for (int round = 0; round < 2; ++round) {
        event.dispatchAt(event.node(1));
        if (round == 0) {
            event.addDelegate(journalDelegate(b, &y), 1);
            EXPECT_EQ(event.removeDelegate(journalDelegate(b)), nullptr);
            EXPECT_EQ(y.references, 0);
            EXPECT_EQ(event.m_pendingFirst, nullptr);
            EXPECT_NE(event.m_pendingLast, nullptr);
        }
        for (std::string* object : {&c, &d}) {
            event.addDelegate(journalDelegate(*object, &z), 1);
            EXPECT_FALSE(event.containsDelegate(journalDelegate(*object)));
            lost.push_back(event.m_pendingLast);
        }
        event.endDispatch();
        EXPECT_EQ(text(&event), "-:0 a:1");
        EXPECT_NE(event.m_pendingLast, nullptr); // stays as it stands
        EXPECT_EQ(event.getDelegateCount(), 3u + 2u * static_cast<unsigned int>(round));
    }
    EXPECT_EQ(z.references, 4);
    for (DelegateNode* node : lost) {
        EXPECT_EQ(node->getNext(), nullptr);
        delete node;
    }
}

TEST_F(EventBaseTest, DestructionReleasesPendingThenTheChain) {
    {
        TestEvent other;
        other.addDelegate(journalDelegate(a, &x), -1);
        other.addDelegate(journalDelegate(b, &y), 1);
        other.dispatchAt(&other);
        other.addDelegate(journalDelegate(c, &z), -2);
        other.addDelegate(journalDelegate(d, &w), -2);
        takeJournal();
    }
    EXPECT_EQ(takeJournal(), (Journal{"-z", "-w", "-x", "-y"}));
}

TEST_F(EventBaseTest, DestructionFindsNoDelegateThatIsBeingDestroyed) {
    static TestEvent* dying;
    static DelegatePOD removed;
    for (const int priority : {-2, -1, 1}) { // waiting, in the first node, and behind it
        TestEvent other;
        dying = &other;
        removed = journalDelegate(c, &z);
        removed.contextAddRef = [](void* context, Vorn::DelegateContextAddRef op) {
            JournalContext::addRef(context, op);
            if (op == Vorn::DELEGATE_RELEASE_REF) dying->remove(removed);
        };
        other.addDelegate(journalDelegate(a, &x), priority == -1 ? 0 : -1);
        if (priority == -2) other.dispatchAt(&other);
        other.addDelegate(removed, priority);
        ASSERT_EQ(other.m_pendingFirst != nullptr, priority == -2);
    }
    EXPECT_EQ(z.references, 0);
    EXPECT_EQ(x.references, 0);
}

TEST_F(EventBaseTest, FailedAllocationLeavesTheEventSound) {
    event.addDelegate(journalDelegate(a, &x), -1);
    event.addDelegate(journalDelegate(b, &y), 1);
    delete event.removeDelegate(DelegatePOD());
    for (const int priority : {-2, 0, 5}) {
        failAllocation(1);
        EXPECT_THROW(event.addDelegate(journalDelegate(c, &z), priority), std::bad_alloc);
        failAllocation(0);
        EXPECT_EQ(text(&event), "a:-1 b:1") << priority;
        EXPECT_EQ(event.getDelegateCount(), 2u);
        EXPECT_EQ(z.references, 0);
    }
}

} // namespace
