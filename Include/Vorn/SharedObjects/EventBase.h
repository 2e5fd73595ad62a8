// DelegateNode, EventBase: a list of delegates in order of priority that may change while it is being called.
//
// The chain is singly linked and begins with the event itself, which is a node. While a dispatch runs, the event knows
// the node that it has reached: what comes behind it is linked at once, what belongs at or ahead of it waits in a
// pending list, and the node itself is marked invalid instead of being unlinked. Programs take Event, which adds a
// signature and the dispatch.
//
// Cost: one allocation per delegate; one that is added again from behind the first node reuses its node. Adding,
// removing and searching walk the chain.
//
// Threads: an event belongs to one thread.
#pragma once

#include "Vorn/SharedObjects/DelegateBase.h"

#include <memory>

namespace Vorn {

/// One delegate in a chain, held with one reference to its context.
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

    /// Links `node` behind this one. A null `node` cuts the chain here and frees nothing. Behind the end of a chain
    /// `node` keeps what follows it.
    ///
    /// Raises `Exception<2>`, "!node->p_next : unlink one of the nodes before inserting!", if both have a successor.
    void insertAfter(DelegateNode* node);

    /// Cuts the chain behind this node, and not the node out of its chain. Gives what followed; null if nothing did.
    DelegateNode* unlink() {
        DelegateNode* const next = p_next;
        p_next = nullptr;
        return next;
    }

    DelegateNode* getNext() const { return p_next; }              ///< the node that follows, or null
    bool isValid() const { return m_delegate.typeInfo; }          ///< whether a dispatch calls the node
    void invalidate() { m_delegate.typeInfo = nullptr; }          ///< keeps the reference until reuse or destruction
    int getPriority() const { return m_priority; }                ///< lower values run first
    void setPriority(int priority) { m_priority = priority; }     ///< does not move the node
    const DelegatePOD& getDelegate() const { return m_delegate; } ///< the record, owned by this node

    /// Releases the old context and adds to the new one, in this order. The same delegate changes nothing: the node
    /// keeps the context that it has.
    void setDelegate(const DelegatePOD& delegate);

    /// Empties the node, which is invalid then, and releases its context. What a destructor that this runs puts into
    /// the node stays.
    void releaseDelegate();

private:
    DelegatePOD m_delegate; // valid while its typeInfo is set; holds one reference to its context in any case
    int m_priority;
    DelegateNode* p_next; // owned
};

static_assert(sizeof(void*) != 4 || sizeof(DelegateNode) == 28, "a record and two words");

/// A chain of delegates and the state of its dispatch.
///
/// A dispatch sets `m_dispatchNode` to the event and then to each node along `getNext`, calls the valid ones, sets it
/// to null and calls `insertPendingDelegates`.
class VORN_API EventBase : public DelegateNode {
public:
    /// Removes all delegates, with two surprises. Idle: the delegate in the first node stays, valid and called, though
    /// the count says 0; and so does what the destructors of the targets add. While dispatching: nothing more is
    /// called, but the count stays, and pending delegates still enter.
    void clear();

    /// The number of delegates, pending ones included.
    unsigned int getDelegateCount() const {
        return static_cast<unsigned int>(m_delegateCount < 0 ? ~m_delegateCount : m_delegateCount);
    }

    bool isDisabled() const { return m_delegateCount < 0; } ///< see `disable`
    bool isDispatching() const { return m_dispatchNode; }   ///< true while a dispatch runs

    /// Marks the event disabled. Delegates can be added and removed as before.
    void disable() {
        if (!isDisabled()) m_delegateCount = ~m_delegateCount;
    }

    /// Takes the mark away.
    void enable() {
        if (isDisabled()) m_delegateCount = ~m_delegateCount;
    }

protected:
    EventBase() : m_dispatchNode(nullptr), m_pendingFirst(nullptr), m_pendingLast(nullptr), m_delegateCount(0) {}

    /// Destroys the nodes. Destructors of targets may come back meanwhile: a delegate that is being destroyed is not
    /// found, and what they add is destroyed too.
    ~EventBase();

    /// Adds `delegate` behind those of equal priority. A delegate that the event holds moves to the new priority.
    ///
    /// While dispatching, a place behind the dispatch is taken at once, any other when the dispatch has ended; but
    /// while the dispatch is at the first node, a place in the chain behind it is taken at once.
    ///
    /// Raises `Exception<1>`, "delegate.caller && delegate.typeInfo : Invalid delegate!!", and `std::bad_alloc`; a
    /// delegate that was to be moved is removed then.
    void addDelegate(const DelegatePOD& delegate, int priority);

    /// Removes `delegate` if the event holds it, and gives a spare node, or null, that the caller owns.
    ///
    /// Raises `Exception<2>`, "m_delegateCount != 0 : Invalid delegate count!!!" or the same with -1, if the count was
    /// wrong.
    /// @warning While the dispatch is at the first node, only this node and the pending list are searched: a delegate
    ///     further on stays.
    /// @warning Removing pending delegates: one that is not the first is lost with its reference, and after the last
    ///     has gone, delegates added to the pending list are lost too: they are counted and never called. If it was the
    ///     only one, that holds for all later dispatches.
    DelegateNode* removeDelegate(const DelegatePOD& delegate);

    /// `removeDelegate` that tells whether the delegate was found. `spare` becomes the spare node.
    bool tryRemoveDelegate(const DelegatePOD& delegate, std::unique_ptr<DelegateNode>& spare);

    /// True if the event counts a delegate and a valid node, or a pending one, holds this one.
    bool containsDelegate(const DelegatePOD& delegate) const;

    /// Moves the pending delegates into the chain, after a dispatch. The first node is not compared: a delegate of a
    /// lower priority than the first node's comes directly behind it.
    void insertPendingDelegates();

    DelegateNode* m_dispatchNode; // where the dispatch is, possibly the event itself; null when idle
    DelegateNode* m_pendingFirst; // owned
    DelegateNode* m_pendingLast;  // dangles, and is not followed, where it is set although m_pendingFirst is null
    int m_delegateCount;          // chain and pending list; its bitwise complement in a disabled event

private:
    void insertFirstDelegate(DelegateNode* spare, const DelegatePOD& delegate, int priority);
    void dispatchInsertDelegate(DelegateNode* spare, const DelegatePOD& delegate, int priority);
    DelegateNode* removeFirstDelegate(const DelegateNode* stop);
    bool searchChain(const DelegatePOD& delegate, DelegateNode*& spare);
    bool removePending(const DelegatePOD& delegate);
};

} // namespace Vorn
