/// @file
/// Releasing a reference may destroy a target, and the destructor of a target may call any operation of the event that
/// is being changed. These invariants keep that safe:
///
/// 1. No reference that may be the last one is released while a walk holds a pointer into the chain. Nodes that a walk
///    takes out are destroyed after the walk, in the order in which it took them out.
/// 2. A node whose reference is released is either in no list, or empty: `releaseDelegate` empties it first. So a
///    destructor finds no delegate that is being released, and no reference is released twice.
/// 3. The first node, which is the event, cannot be taken out. Its reference is released while the chain is complete,
///    and afterwards the chain is read again from its start.
/// 4. A node that is to be reused is emptied before the position for it is searched.
/// 5. A delegate that is passed in is copied before the first release: it may be a member of what the release destroys.
/// 6. The destructor takes each list out of the event before it destroys the list. What is added meanwhile is destroyed
///    with the base.
///
/// The counting functions are called in the order of the walks.
///
/// A *spare* is the first node that a removal takes out of the chain. It keeps its delegate and reference, and its
/// owner reuses or deletes it. A *retired* node is any later one, which is destroyed after the walk.
#include "Vorn/SharedObjects/EventBase.h"

#include "Vorn/Assert.h"

#include <utility>

namespace Vorn {

namespace {

/// The retired nodes of a walk. Destroys them in the order of the walk when it goes out of scope.
class RetiredNodes {
public:
    RetiredNodes() = default;
    RetiredNodes(const RetiredNodes&) = delete;
    RetiredNodes& operator=(const RetiredNodes&) = delete;
    ~RetiredNodes() { delete m_first; }

    void append(DelegateNode* node) {
        if (m_last) {
            m_last->insertAfter(node);
        } else {
            m_first = node;
        }
        m_last = node;
    }

private:
    DelegateNode* m_first = nullptr;
    DelegateNode* m_last = nullptr;
};

/// Takes the node behind `prev` out of the chain and returns it.
DelegateNode* takeNext(DelegateNode* prev) {
    DelegateNode* const node = prev->unlink();
    prev->insertAfter(node->unlink());
    return node;
}

/// Makes `node`, which is in no list, the spare if there is none; otherwise retires it.
void retireNode(DelegateNode* node, DelegateNode*& spare, RetiredNodes& retired) {
    if (spare) {
        retired.append(node);
    } else {
        spare = node;
    }
}

/// Takes the node behind `prev` out of the chain if it holds `delegate` or is invalid. Returns null if it holds
/// `delegate`; otherwise the node from which the walk continues.
DelegateNode* removeNodeStep(DelegateNode* prev, DelegateNode*& spare, RetiredNodes& retired,
                             const DelegatePOD& delegate) {
    DelegateNode* const node = prev->getNext();
    const bool isFound = sameDelegate(node->getDelegate(), delegate);
    if (!isFound && node->isValid()) return node;
    retireNode(takeNext(prev), spare, retired);
    return isFound ? nullptr : prev;
}

/// Removes `delegate` and the invalid nodes in front of it from the chain behind `start`; true if it was found.
bool removeFromChain(DelegateNode* start, DelegateNode*& spare, RetiredNodes& retired, const DelegatePOD& delegate) {
    DelegateNode* prev = start;
    while (prev && prev->getNext()) prev = removeNodeStep(prev, spare, retired, delegate);
    return !prev;
}

/// Stores `delegate` in the spare, or in a new node if there is none.
DelegateNode* fillNode(DelegateNode* spare, const DelegatePOD& delegate, int priority) {
    DelegateNode* const node = spare ? spare : new DelegateNode;
    node->setDelegate(delegate);
    node->setPriority(priority);
    return node;
}

} // namespace

// Invariant 6.
EventBase::~EventBase() {
    delete std::exchange(m_pendingFirst, nullptr);
    releaseDelegate();
    delete unlink();
}

void EventBase::addDelegate(const DelegatePOD& delegate, int priority) {
    VORN_ASSERT(delegate.caller && delegate.typeInfo, "Invalid delegate!!");
    const DelegatePOD added = delegate; // invariant 5
    DelegateNode* const spare = removeDelegate(added);
    if (spare && !spare->isValid()) spare->releaseDelegate(); // invariant 4

    if (getPriority() > priority) {
        if (m_dispatchNode == this) {
            dispatchInsertDelegate(spare, added, priority);
        } else {
            insertFirstDelegate(spare, added, priority);
        }
    } else {
        DelegateNode* prev = this;
        DelegateNode* node = getNext();
        while (node && node != m_dispatchNode && node->getPriority() <= priority) {
            prev = node;
            node = node->getNext();
        }
        if (node && node == m_dispatchNode) {
            dispatchInsertDelegate(spare, added, priority);
        } else {
            prev->insertAfter(fillNode(spare, added, priority));
        }
    }
    m_delegateCount += isDisabled() ? -1 : 1;
}

void EventBase::insertFirstDelegate(DelegateNode* spare, const DelegatePOD& delegate, int priority) {
    // The first node is moved behind itself, also if it is invalid, and keeps its priority there.
    DelegateNode* chosen = spare;
    if (!chosen) {
        const DelegateNode* const second = getNext();
        if (second && second != m_dispatchNode && !second->isValid()) {
            chosen = takeNext(this);
            chosen->releaseDelegate();
        } else {
            chosen = new DelegateNode;
        }
    }
    chosen->setDelegate(getDelegate());
    chosen->setPriority(getPriority());
    insertAfter(chosen);
    setDelegate(delegate);
    setPriority(priority);
}

void EventBase::dispatchInsertDelegate(DelegateNode* spare, const DelegatePOD& delegate, int priority) {
    DelegateNode* const node = fillNode(spare, delegate, priority);
    if (!m_pendingLast) {
        m_pendingFirst = node;
    } else if (m_pendingFirst) {
        m_pendingLast->insertAfter(node);
    } // otherwise the last pending node has been removed and freed: the new one is linked to nothing and leaked
    m_pendingLast = node;
}

void EventBase::insertPendingDelegates() {
    DelegateNode* node = m_pendingFirst;
    if (!node) return; // m_pendingLast is not changed
    while (node) {
        DelegateNode* const next = node->unlink();
        DelegateNode* prev = this;
        while (prev->getNext() && prev->getNext()->getPriority() <= node->getPriority()) prev = prev->getNext();
        prev->insertAfter(node);
        node = next;
    }
    m_pendingFirst = nullptr;
    m_pendingLast = nullptr;
}

DelegateNode* EventBase::removeDelegate(const DelegatePOD& delegate) {
    std::unique_ptr<DelegateNode> spare;
    tryRemoveDelegate(delegate, spare);
    return spare.release();
}

bool EventBase::tryRemoveDelegate(const DelegatePOD& delegate, std::unique_ptr<DelegateNode>& spare) {
    static constexpr char FUNCTION[] = "Vorn::EventBase::removeDelegate";
    if (getDelegateCount() == 0) return false;
    const DelegatePOD removed = delegate; // invariant 5
    if (sameDelegate(getDelegate(), removed)) {
        if (!m_dispatchNode) {
            spare.reset(removeFirstDelegate(nullptr));
        } else if (m_dispatchNode != this && m_dispatchNode != getNext()) {
            spare.reset(removeFirstDelegate(m_dispatchNode));
        } else {
            invalidate();
        }
    } else {
        DelegateNode* taken = nullptr;
        const bool isFound = searchChain(removed, taken);
        spare.reset(taken);
        if (!isFound && !removePending(removed)) return false;
    }
    VORN_INTERNAL_ASSERT(m_delegateCount != 0, "Invalid delegate count!!!", FUNCTION);
    VORN_INTERNAL_ASSERT(m_delegateCount != -1, "Invalid delegate count!!!", FUNCTION);
    m_delegateCount += isDisabled() ? 1 : -1;
    return true;
}

// Removes the delegate of the first node and moves the next valid one into it. With a `stop`, the node in front of it
// is moved even if it is invalid, so that the walk never passes the dispatch. Each pass releases at most one reference
// and then reads the chain again (invariant 3).
DelegateNode* EventBase::removeFirstDelegate(const DelegateNode* stop) {
    DelegateNode* spare = nullptr;
    invalidate();
    while (!isValid() && getNext() && getNext() != stop) {
        const DelegateNode* const next = getNext();
        const bool isSuccessor = next->isValid() || (stop && next->getNext() == stop);
        if (isSuccessor && getDelegate().contextAddRef) {
            releaseDelegate();
            continue;
        }
        RetiredNodes retired;
        DelegateNode* const node = takeNext(this);
        if (isSuccessor) {
            setDelegate(node->getDelegate());
            setPriority(node->getPriority());
        }
        retireNode(node, spare, retired);
        if (isSuccessor) break;
    }
    return spare;
}

// Removes `delegate` from the chain behind the first node; true if it was found.
bool EventBase::searchChain(const DelegatePOD& delegate, DelegateNode*& spare) {
    RetiredNodes retired;
    if (!m_dispatchNode) return removeFromChain(this, spare, retired, delegate);
    if (m_dispatchNode == this) return false;

    DelegateNode* prev = this;
    while (prev->getNext() != m_dispatchNode) {
        if (!prev->getNext()) return false;
        prev = removeNodeStep(prev, spare, retired, delegate);
        if (!prev) return true;
    }
    if (!sameDelegate(m_dispatchNode->getDelegate(), delegate)) {
        return removeFromChain(m_dispatchNode, spare, retired, delegate);
    }
    m_dispatchNode->invalidate(); // it stays linked: the dispatch continues from it
    return true;
}

bool EventBase::removePending(const DelegatePOD& delegate) {
    if (!m_pendingFirst) return false;
    if (sameDelegate(m_pendingFirst->getDelegate(), delegate)) {
        DelegateNode* const node = m_pendingFirst;
        m_pendingFirst = node->unlink();
        delete node;
        return true;
    }
    for (DelegateNode* prev = m_pendingFirst; prev->getNext(); prev = prev->getNext()) {
        if (!sameDelegate(prev->getNext()->getDelegate(), delegate)) continue;
        takeNext(prev); // neither freed nor returned: the node and its reference are leaked
        return true;
    }
    return false;
}

bool EventBase::containsDelegate(const DelegatePOD& delegate) const {
    if (getDelegateCount() == 0) return false;
    for (const DelegateNode* node = this; node; node = node->getNext()) {
        if (sameDelegate(node->getDelegate(), delegate)) return true;
    }
    for (const DelegateNode* node = m_pendingFirst; node; node = node->getNext()) {
        if (sameDelegate(node->getDelegate(), delegate)) return true;
    }
    return false;
}

void EventBase::clear() {
    if (isDispatching()) {
        for (DelegateNode* node = this; node; node = node->getNext()) node->invalidate();
        return;
    }
    DelegateNode* node = unlink();
    while (node) {
        DelegateNode* const next = node->unlink();
        delete node;
        node = next;
    }
    m_delegateCount = isDisabled() ? -1 : 0;
}

} // namespace Vorn
