// Event: a list of listeners, called in order of priority, that may change while it is being called.
//
// Event<Args...> calls delegates that take Args; Event<> calls delegates without arguments. Listeners may add and
// remove each other and themselves from inside a call. Take a Delegate for one listener, a std::vector of them where
// nothing changes during a call.
//
//     Event<int> scored;
//     scored.add(Event<int>::Listener::bind<&Board::show>(board), -1);   // lower priorities run first
//     scored(3);
//
// Cost: one allocation per listener, none for one that is added again from behind the first; adding and removing walk
// the list; a call costs one indirect call per listener.
//
// Threads: an event belongs to one thread.
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

/// Calls its listeners with Args.
template <class... Args>
class Event : private EventBase {
    static_assert((!std::is_rvalue_reference_v<Args> && ...), "each listener is given the arguments anew");

public:
    using Listener = typename VornPrivate::ListenerOf<Args...>::Type;

    Event() = default;

    /// Adds `listener` behind those of equal priority; lower priorities run first. A listener that the event holds
    /// moves to the new priority.
    ///
    /// While the event is being called: a place that the call has passed is taken at once, any other when the call has
    /// ended, but a place behind the first node while that is being called is taken at once, and called.
    ///
    /// Raises `Exception<1>`, "delegate.caller && delegate.typeInfo : Invalid delegate!!", for an empty listener, and
    /// `std::bad_alloc`; a listener that was to be moved is removed then.
    /// @warning A counted listener that lies in a target which only this event keeps must be copied first.
    void add(const Listener& listener, int priority = 0) {
        const DelegatePOD& pod = listener.getPOD();
        if (pod.contextAddRef == &delegateAddWeakRef) dropPredecessor(pod);
        addDelegate(pod, priority);
    }

    /// Removes `listener`; false if it was not found.
    /// @warning The event may hold on to its target longer: to that of the listener being called until a later change
    ///     passes its place, to that of the first listener until another one takes that place, and in any case no
    ///     longer than the event lives.
    /// @warning While the first node is being called, listeners in the chain behind it are not found. A listener that
    ///     waits to be added is found, but keeps its reference for ever unless it is the first to wait; and once the
    ///     last to wait has been removed, listeners that come to wait are lost: counted and never called. If it was
    ///     the only one, that holds for all later calls too.
    bool remove(const Listener& listener) {
        std::unique_ptr<DelegateNode> spare;
        return tryRemoveDelegate(listener.getPOD(), spare);
    }

    /// Whether the event holds `listener`, also one that waits to be added.
    bool contains(const Listener& listener) const { return containsDelegate(listener.getPOD()); }

    /// Calls the listeners in order. A disabled event calls nobody; one that a listener disables calls nobody from the
    /// next call on. A listener that throws ends the call; the event is idle and usable then.
    ///
    /// Raises `Exception<1>`, "!isDispatching() : the event is being called already!", from inside a call.
    /// @warning The event must outlive the call.
    void operator()(Args... args) {
        if (isDisabled()) return;
        VORN_ASSERT(!isDispatching(), "the event is being called already!");
        const Dispatch dispatch(*this);
        for (DelegateNode* node = this; node; node = node->getNext()) {
            if (!node->isValid()) continue; // nobody is called who could ask where the dispatch is
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
    // Leaves the event idle, however the dispatch ends.
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

    // A dead listener whose address a new object has got is the same delegate: it would keep its node and its dead
    // record. It goes first.
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
