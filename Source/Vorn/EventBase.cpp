// Giving up a reference may destroy a target, and a target's destructor may come back to the event that is being
// changed. So nodes that a walk sweeps out are destroyed after the walk, a refill of the first node keeps the chain
// whole while references go, and what a reused node still holds goes before a place for it is looked for. The calls are
// made in the order of the walks all the same.
#include "Vorn/SharedObjects/EventBase.h"

#include "Vorn/Assert.h"

#include <utility>

namespace Vorn {

namespace {

// Nodes that a walk has taken out of the chain, destroyed in this order.
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

// Takes the node behind `prev` out of the chain and gives it.
DelegateNode* takeNext(DelegateNode* prev) {
    DelegateNode* const node = prev->unlink();
    prev->insertAfter(node->unlink());
    return node;
}

// The first node that was taken out becomes the spare, with its delegate and reference; the others go.
void retireNode(DelegateNode* node, DelegateNode*& spare, RetiredNodes& retired) {
    if (spare) {
        retired.append(node);
    } else {
        spare = node;
    }
}

// Looks at the node behind `prev`: takes it out if it is the one that is looked for, and gives null; sweeps it out if
// it is invalid. Otherwise gives the node, and in the second case `prev`, to go on from.
DelegateNode* removeNodeStep(DelegateNode* prev, DelegateNode*& spare, RetiredNodes& retired,
                             const DelegatePOD& delegate) {
    DelegateNode* const node = prev->getNext();
    const bool isFound = sameDelegate(node->getDelegate(), delegate);
    if (!isFound && node->isValid()) return node;
    retireNode(takeNext(prev), spare, retired);
    return isFound ? nullptr : prev;
}

bool removeFromChain(DelegateNode* start, DelegateNode*& spare, RetiredNodes& retired, const DelegatePOD& delegate) {
    DelegateNode* prev = start;
    while (prev && prev->getNext()) prev = removeNodeStep(prev, spare, retired, delegate);
    return !prev;
}

DelegateNode* fillNode(DelegateNode* spare, const DelegatePOD& delegate, int priority) {
    DelegateNode* const node = spare ? spare : new DelegateNode;
    node->setDelegate(delegate);
    node->setPriority(priority);
    return node;
}

} // namespace

// Takes every node out before it destroys it: a target's destructor may want to take itself off. What it adds instead
// goes with the base.
EventBase::~EventBase() {
    delete std::exchange(m_pendingFirst, nullptr);
    releaseDelegate();
    delete unlink();
}

void EventBase::addDelegate(const DelegatePOD& delegate, int priority) {
    VORN_ASSERT(delegate.caller && delegate.typeInfo, "Invalid delegate!!");
    const DelegatePOD added = delegate; // it may lie in what the removal destroys
    DelegateNode* const spare = removeDelegate(added);
    if (spare && !spare->isValid()) spare->releaseDelegate();

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
    // An invalid first node moves down like any other and leaves its priority in the chain.
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
    } // otherwise the last pending node has been removed and freed: the new one hangs behind nothing and is lost
    m_pendingLast = node;
}

void EventBase::insertPendingDelegates() {
    DelegateNode* node = m_pendingFirst;
    if (!node) return; // m_pendingLast stays as it stands
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
    const DelegatePOD removed = delegate; // it may lie in what the search destroys
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

// Takes the delegate out of the first node and refills it from the chain, up to the node in front of `stop`, which
// takes the first place even if it is invalid, so that the sweep never passes the dispatch. Null for no stop. Each
// reference goes while the chain is whole, and whatever its target's destructor changes is looked at anew.
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
    m_dispatchNode->invalidate(); // it stays linked: the dispatch goes on from it
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
        takeNext(prev); // neither freed nor returned: the node and its reference are lost
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
