/// @file
/// Event: a list of listeners that are called in order of priority and may change the list while it is being called.
///
///     Event<int> scored;
///     scored.add(Event<int>::Listener::bind<&Board::show>(board), -1);   // lower priorities run first
///     scored(3);
///
/// `Event<Args...>` calls delegates that take Args; `Event<>` calls delegates without arguments. Listeners may add and
/// remove each other and themselves during a call, within the limits that `add` and `remove` state. Alternatives: a
/// Delegate for one listener; a std::vector of delegates if nothing changes during a call.
///
/// Cost: one allocation per listener, none for one that is added again and is not the first. Adding, removing and
/// searching walk the list. A call is one indirect call per listener.
///
/// Failures: only `add` allocates. If that throws, all other listeners are as before, also during a call.
///
/// Threads: an event belongs to one thread.
#pragma once

#include "Vorn/SharedObjects/Delegate.h"
#include "Vorn/SharedObjects/EventBase.h"

#include <memory>

namespace VornPrivate {

template <class... Args>
struct ListenerOf {
    using Type = Vorn::Delegate<void, Args...>;
};
template <>
struct ListenerOf<> {
    using Type = Vorn::Delegate<void, void>;
};

} // namespace VornPrivate

namespace Vorn {

/// A list of listeners that take Args.
template <class... Args>
class Event : private EventBase {
    static_assert((!std::is_void_v<Args> && ...), "an event without arguments is written Event<>");
    static_assert((!std::is_rvalue_reference_v<Args> && ...), "each listener is given the arguments anew");

public:
    using Listener = typename VornPrivate::ListenerOf<Args...>::Type;

    /// An event without listeners.
    Event() = default;

    /// Adds `listener` behind the listeners of equal priority; lower priorities run first. A listener that the event
    /// holds already is moved to the new priority.
    ///
    /// While the event is being called, the listener is inserted immediately if its position is before the listener
    /// being called, and is not called by this call. At any other position it is pending until the call has ended. One
    /// exception: while the first listener is being called, a position behind it is filled immediately and called.
    ///
    /// Throws `Exception<1>`: "delegate.caller && delegate.typeInfo : Invalid delegate!!" for an empty listener. Throws
    /// `std::bad_alloc`. A new listener has not been added then; one that was to be moved has been *removed*.
    /// @warning A weakly bound listener stays in the list and in the count after its target has been destroyed; it does
    ///     nothing then. Remove it while its target exists, or keep a copy of the delegate to remove it later.
    /// @warning If `listener` is a member of its own target, and only this event keeps that target alive, pass a copy.
    void add(const Listener& listener, int priority = 0) {
        const DelegatePOD& pod = listener.getPOD();
        if (pod.contextAddRef == &delegateAddWeakRef) dropPredecessor(pod);
        addDelegate(pod, priority);
    }

    /// Removes `listener`. Returns false if it was not found.
    /// @warning The event may keep the target alive for longer: that of the listener being called until a later `add`
    ///     or `remove` reaches its position, and that of the first listener until another listener becomes the first,
    ///     at most until the event is destroyed.
    /// @warning While the first listener is being called, listeners behind it are not found. Remove them before or
    ///     after the call.
    /// @warning Do not remove pending listeners. Removing one that is not the first pending listener leaks its
    ///     reference. After the last pending listener has been removed, later pending listeners are leaked, counted and
    ///     never called; if it was the only one, this applies to all later calls too.
    bool remove(const Listener& listener) {
        std::unique_ptr<DelegateNode> spare;
        return tryRemoveDelegate(listener.getPOD(), spare);
    }

    /// Returns true if the event holds `listener`, also if it is pending.
    bool contains(const Listener& listener) const { return containsDelegate(listener.getPOD()); }

    /// Calls the listeners in order. Does nothing if the event is disabled; disabling it during a call affects the next
    /// call only.
    ///
    /// Throws what a listener throws. The listeners behind it are not called, and the event is idle and usable. Throws
    /// `Exception<1>`: "!isDispatching() : the event is being called already!" if a listener calls the event.
    /// @warning A listener must not destroy the event that calls it. Where one can release the owner of the event, hold
    ///     a pointer to the owner during the call: `const auto held = owner; held->scored(3);`.
    void operator()(Args... args) {
        if (isDisabled()) return;
        VORN_ASSERT(!isDispatching(), "the event is being called already!");
        const Dispatch dispatch(*this);
        for (DelegateNode* node = this; node; node = node->getNext()) {
            if (!node->isValid()) continue; // without a call, nothing can read m_dispatchNode
            m_dispatchNode = node;
            const DelegatePOD& pod = node->getDelegate();
            VornPrivate::typedCaller<void, Args...>(pod)(pod.object, pod.context, args...);
        }
    }

    using EventBase::clear;
    using EventBase::disable;
    using EventBase::enable;
    using EventBase::getDelegateCount;
    using EventBase::isDisabled;
    using EventBase::isDispatching;

private:
    // Makes the event idle at the end of the dispatch, also if a listener throws.
    class Dispatch {
    public:
        explicit Dispatch(Event& event) : m_event(event) {}
        Dispatch(const Dispatch&) = delete;
        Dispatch& operator=(const Dispatch&) = delete;
        ~Dispatch() {
            m_event.m_dispatchNode = nullptr;
            if (m_event.m_pendingFirst) m_event.insertPendingDelegates();
        }

    private:
        Event& m_event;
    };

    // A weak listener whose target has been destroyed is the same delegate as one to a new object at the same address.
    // Adding that would keep the old node with the old control block, so the old listener is removed first.
    void dropPredecessor(const DelegatePOD& pod) {
        if (holdsInAnotherContext(this, pod) || holdsInAnotherContext(m_pendingFirst, pod)) delete removeDelegate(pod);
    }

    static bool holdsInAnotherContext(const DelegateNode* node, const DelegatePOD& pod) {
        for (; node; node = node->getNext()) {
            if (node->getDelegate().context != pod.context && sameDelegate(node->getDelegate(), pod)) return true;
        }
        return false;
    }
};

} // namespace Vorn
