/// @file
/// DelegateNode, EventBase: a list of delegates in order of priority that may change while it is being called.
///
/// The chain is singly linked and begins with the event itself, which is a node. During a dispatch, the event stores
/// the node that is being called. A delegate whose position is before that node is inserted immediately; any other
/// becomes pending, in a list of its own. The node being called is marked invalid instead of being unlinked. Programs
/// use Event, which adds a signature and the dispatch.
///
/// Cost: one allocation per delegate; a delegate that is added again, and is not in the first node, reuses its node.
/// Adding, removing and searching walk the chain.
///
/// Failures: only adding allocates.
///
/// Threads: an event belongs to one thread.
#pragma once

#include "Vorn/Private/Surprise.h"
#include "Vorn/SharedObjects/DelegateBase.h"

#include <memory>

namespace Vorn {

/// A delegate in a chain, with one reference to its context.
class VORN_API DelegateNode {
public:
    /// An invalid node of priority 0.
    DelegateNode() : m_delegate(), m_priority(0), p_next(nullptr) {}

    /// A node that holds `delegate`.
    DelegateNode(const DelegatePOD& delegate, int priority);

    DelegateNode(const DelegateNode&) = delete;
    DelegateNode& operator=(const DelegateNode&) = delete;

    /// Destroys the node and the whole chain behind it, in a loop: first releases the references, of invalid nodes too,
    /// from this node to the last one, then frees the nodes behind this one, from the last one on.
    ~DelegateNode();

    /// Links `node` behind this one. If this node has no successor, `node` keeps its own, which appends a whole chain.
    /// A null `node` ends the chain here and frees nothing.
    ///
    /// Throws `Exception<2>`: "!node->p_next : unlink one of the nodes before inserting!" if both have a successor.
    void insertAfter(DelegateNode* node);

    /// Ends the chain behind this node and returns the rest of it, or null. Does *not* take this node out of its chain.
    DelegateNode* unlink() {
        DelegateNode* const next = p_next;
        p_next = nullptr;
        return next;
    }

    DelegateNode* getNext() const { return p_next; }              ///< Returns the next node or null.
    bool isValid() const { return m_delegate.typeInfo; }          ///< Returns true if a dispatch calls the node.
    void invalidate() { m_delegate.typeInfo = nullptr; }          ///< Keeps the reference until reuse or destruction.
    int getPriority() const { return m_priority; }                ///< Lower values run first.
    void setPriority(int priority) { m_priority = priority; }     ///< Does not move the node.
    const DelegatePOD& getDelegate() const { return m_delegate; } ///< Returns the delegate, which this node owns.

    /// Releases the old context and adds a reference to the new one, in this order. Does nothing if `delegate` is the
    /// same one: the node keeps its context then.
    void setDelegate(const DelegatePOD& delegate);

    /// Empties the node, which is invalid then, and releases its context. A delegate that a destructor stores in the
    /// node meanwhile is kept.
    void releaseDelegate();

private:
    DelegatePOD m_delegate; // valid while its typeInfo is set; always with one reference to its context
    int m_priority;
    DelegateNode* p_next; // owned
};

static_assert(sizeof(void*) != 4 || sizeof(DelegateNode) == 28, "a record and two words");

/// A chain of delegates and the state of its dispatch.
///
/// A dispatch sets `m_dispatchNode` to the event and then to each node along `getNext`, and calls the valid nodes. At
/// the end it sets `m_dispatchNode` to null and calls `insertPendingDelegates`.
class VORN_API EventBase : public DelegateNode {
public:
    /// Removes the delegates, *except* the one in the first node, which is still called although the count is 0.
    /// Delegates that destructors of the targets add meanwhile are called and not counted either.
    ///
    /// During a dispatch, invalidates all nodes instead: nothing more is called, but the count is not changed, and
    /// pending delegates are still inserted at the end.
    void clear();

    /// Returns the number of delegates, including pending ones.
    unsigned int getDelegateCount() const {
        return static_cast<unsigned int>(m_delegateCount < 0 ? ~m_delegateCount : m_delegateCount);
    }

    bool isDisabled() const { return m_delegateCount < 0; } ///< Returns true after `disable`.
    bool isDispatching() const { return m_dispatchNode; }   ///< Returns true during a dispatch.

    /// Marks the event as disabled. Delegates can be added and removed as before.
    void disable() {
        if (!isDisabled()) m_delegateCount = ~m_delegateCount;
    }

    /// Removes the mark of `disable`.
    void enable() {
        if (isDisabled()) m_delegateCount = ~m_delegateCount;
    }

protected:
    EventBase() : m_dispatchNode(nullptr), m_pendingFirst(nullptr), m_pendingLast(nullptr), m_delegateCount(0) {}

    /// Destroys the nodes. Destructors of targets may change the event meanwhile: a delegate that is being destroyed is
    /// not found, and delegates that they add are destroyed too.
    ~EventBase();

    /// Adds `delegate` behind the delegates of equal priority. A delegate that the event holds already is moved to the
    /// new priority.
    ///
    /// During a dispatch, the delegate is inserted immediately if its position is before the node being called;
    /// otherwise it is pending until the dispatch has ended. One exception: while the first node is being called, a
    /// position behind it is filled immediately.
    ///
    /// Throws `Exception<1>`: "delegate.caller && delegate.typeInfo : Invalid delegate!!".
    /// Throws `std::bad_alloc`. A new delegate has not been added then; one that was to be moved has been *removed*.
    void addDelegate(const DelegatePOD& delegate, int priority);

    /// Removes `delegate` if the event holds it. Returns a spare node, which the caller owns, or null.
    ///
    /// Throws `Exception<2>`: "m_delegateCount != 0 : Invalid delegate count!!!" if the count was wrong.
    /// Throws `Exception<2>`: "m_delegateCount != -1 : Invalid delegate count!!!" if the count was wrong.
    /// @warning While the first node is being called, only this node and the pending list are searched. A delegate
    ///     behind it is not found.
    /// @warning Removing a pending delegate that is not the first one leaks its node and reference. After the last
    ///     pending delegate has been removed, later pending delegates are leaked, counted and never called; if it was
    ///     the only one, this applies to all later dispatches.
    VORN_SURPRISE("does not say whether it removed anything; use tryRemoveDelegate(...)")
    DelegateNode* removeDelegate(const DelegatePOD& delegate);

    /// The same as `removeDelegate`, but returns true if the delegate was found. `spare` receives the spare node.
    bool tryRemoveDelegate(const DelegatePOD& delegate, std::unique_ptr<DelegateNode>& spare);

    /// Returns true if a valid node or a pending one holds `delegate`. Returns false if the count of delegates is 0.
    bool containsDelegate(const DelegatePOD& delegate) const;

    /// Inserts the pending delegates into the chain, after a dispatch. The priority of the first node is *not*
    /// compared: a delegate of a lower priority is inserted directly behind it.
    void insertPendingDelegates();

    DelegateNode* m_dispatchNode; ///< the node being called, possibly the event itself; null when idle
    DelegateNode* m_pendingFirst; ///< first pending node; owned
    DelegateNode* m_pendingLast;  ///< last pending node; dangling and unused while m_pendingFirst is null
    int m_delegateCount;          ///< of the chain and the pending list; its bitwise complement if disabled

private:
    void insertFirstDelegate(DelegateNode* spare, const DelegatePOD& delegate, int priority);
    void dispatchInsertDelegate(DelegateNode* spare, const DelegatePOD& delegate, int priority);
    DelegateNode* removeFirstDelegate(const DelegateNode* stop);
    bool searchChain(const DelegatePOD& delegate, DelegateNode*& spare);
    bool removePending(const DelegatePOD& delegate);
};

} // namespace Vorn
