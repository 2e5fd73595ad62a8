/// @file
/// ListenerChain: the listeners of an Event, without their signature. Support of Event.h and Connection.h; not for
/// direct use.
///
/// The chain is that of EventBase. Its first node, the chain itself, has the lowest priority and never holds a
/// listener. A listener that is added is linked at once and has the number of the first call that calls it. A listener
/// that is removed is unlinked at once; while it is being called, it stays linked until that call goes on.
///
/// Threads: a chain belongs to one thread.
#pragma once

#include "Vorn/SharedObjects/EventBase.h"

#include <cstddef>
#include <cstdint>

namespace Vorn {

class ListenerChain;
class RefCounter;

/// A listener in a chain.
class VORN_API ListenerNode : public DelegateNode {
public:
    ListenerNode(ListenerChain& chain, const DelegatePOD& delegate, int priority, RefCounter* life);

    ListenerNode* getNext() const { return static_cast<ListenerNode*>(DelegateNode::getNext()); }

    /// Returns true if the listener does nothing any more, because its target has been destroyed.
    bool isExpired() const;

    /// Computes `direct` after another field has changed.
    void update();

    /// Releases the target and one reference.
    void release();

    void addReference() { ++references; }
    void releaseReference() {
        if (--references == 0) delete this;
    }

    std::uint64_t direct;    ///< calls from this number on call the listener without a ListenerTurn
    std::uint64_t first;     ///< number of the first call that calls the listener
    std::uint64_t order;     ///< number of the last `add` of the listener
    ListenerChain* chain;    ///< null after the removal
    RefCounter* life;        ///< of the object that the listener is tied to, with one weak count; or null
    unsigned int references; ///< one of the chain and one of each connection
    unsigned int calls;      ///< calls that hold the node after its event has been destroyed
    unsigned int blocks;     ///< number of ScopedBlocks
    int movedPriority;       ///< the priority after the calls that are running, if `isMoved`
    bool isMoved;            ///< is to be moved
    bool isOnce;
    bool isBlocked;

private:
    ~ListenerNode() = default; // releaseReference
};

/// A call of an event, from its construction to its destruction. Calls of one event are nested.
class VORN_API ListenerCall {
public:
    explicit ListenerCall(ListenerChain& called);
    ListenerCall(const ListenerCall&) = delete;
    ListenerCall& operator=(const ListenerCall&) = delete;
    ~ListenerCall();

    std::uint64_t number; ///< 0 after `stop`: no listener is called any more
    ListenerNode* at;     ///< the listener being called
    ListenerCall* outer;  ///< the call that this one is nested in, or null
    ListenerChain* chain; ///< null after the event has been destroyed

private:
    void end();
};

/// Whether a call calls a listener that is not called in any case: it is new, blocked, called once or tied to an
/// object. Keeps that object alive.
class VORN_API ListenerTurn {
public:
    /// `isHeld`: a weakly bound target is kept alive too.
    ListenerTurn(ListenerNode& node, const ListenerCall& call, bool isHeld);
    ListenerTurn(const ListenerTurn&) = delete;
    ListenerTurn& operator=(const ListenerTurn&) = delete;
    ~ListenerTurn();

    explicit operator bool() const { return m_isDue; }

private:
    RefCounter* m_held;
    bool m_isDue;
};

/// How a listener is added.
struct ListenerKind {
    bool isOnce;      ///< removed before its first call
    bool isNew;       ///< without a search for an equal listener
    RefCounter* life; ///< of the object that the listener is tied to, or null
};

/// The listeners of an event in order of priority.
class VORN_API ListenerChain : public EventBase {
public:
    ListenerChain() { setPriority(LOWEST_PRIORITY); }
    ListenerChain(ListenerChain&& other) noexcept : ListenerChain() { swap(other); }
    ListenerChain& operator=(ListenerChain&& other) noexcept;
    ~ListenerChain();

    /// Running calls go on with the listeners that they have begun with.
    void swap(ListenerChain& other) noexcept;

    ListenerNode* getFirst() const { return static_cast<ListenerNode*>(getNext()); }

    /// Returns true if a call has nothing to do.
    bool isSilent() const { return m_delegateCount <= 0; }

    /// Returns the new listener, or the equal one that has been moved, with a reference for the caller; null while the
    /// chain is being destroyed.
    ListenerNode* add(const DelegatePOD& delegate, int priority, const ListenerKind& kind);

    bool remove(const DelegatePOD& delegate);
    bool remove(const ListenerNode& node);

    /// Removes the listeners of these bindings of `object`. Returns their number.
    unsigned int remove(const void* object, const std::type_info* const* bindings, int bindingCount);

    /// Removes the listeners whose object is in these `size` bytes, and those of the object of `life`. Returns their
    /// number.
    unsigned int removeObject(const void* object, std::size_t size, const RefCounter* life);

    const ListenerNode* find(const DelegatePOD& delegate) const;
    const ListenerNode* find(const void* object, const std::type_info* const* bindings, int bindingCount) const;

    void clear();
    void stop() const;

    /// Returns the number of listeners that have not expired.
    unsigned int countListeners() const;

private:
    friend ListenerCall;
    friend ListenerTurn;
    friend ListenerNode;

    static constexpr int LOWEST_PRIORITY = -0x7FFFFFFF - 1;

    template <class Retired, class Match>
    unsigned int removeIf(Retired& retired, Match match);
    template <class Match>
    const ListenerNode* findIf(Match match) const;

    bool isBeingCalled(const ListenerNode* node) const;
    void detach(ListenerNode& node);
    void insert(ListenerNode* node);
    void move(ListenerNode* node, DelegateNode* previous, int priority);
    void tidy();
    void adopt();

    ListenerCall* m_calls = nullptr; // the innermost running call
    std::uint64_t m_lastCall = 0;    // number of the last call
    std::uint64_t m_lastAdd = 0;     // number of the last `add`
    bool m_hasExpiring = false;      // listeners may expire
    bool m_isUntidy = false;         // removed listeners are linked, or listeners are to be moved
    bool m_isClosed = false;         // being destroyed
};

inline ListenerCall::ListenerCall(ListenerChain& called)
    : number(++called.m_lastCall), at(nullptr), outer(called.m_calls), chain(&called) {
    called.m_calls = this;
    called.m_dispatchNode = &called;
}

inline ListenerCall::~ListenerCall() {
    if (chain && !outer && !chain->m_isUntidy) {
        chain->m_calls = nullptr;
        chain->m_dispatchNode = nullptr;
    } else {
        end();
    }
}

} // namespace Vorn
