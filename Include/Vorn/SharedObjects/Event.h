/// @file
/// Event: a list of listeners that are called in order of priority and may change the list while it is being called.
///
///     Event<int> scored;
///     scored.add<&Board::show>(board);
///     scored.add([&](int points) { ... }, -1);   // lower priorities are called first
///     scored(3);
///
/// `Event<Args...>` calls functions, methods and callables that take Args or the first of them; `Event<>` has no
/// arguments. `add` returns a Connection, by which a listener is removed or blocked. Listeners may do anything while
/// they are called: add, remove, call the event again, destroy it. Documentation/Events.md lists the results.
/// Alternatives: ResultEvent for listeners with results; a Delegate for one listener.
///
/// Cost: one allocation per listener, none for one that is added again, and one more for a callable that is larger than
/// a pointer or that calls change. Adding, removing and searching walk the list. A
/// call is one indirect call per listener.
///
/// Failures: only `add` and its other forms allocate. If that throws, nothing has changed.
///
/// Threads: an event and its connections belong to one thread.
#pragma once

#include "Vorn/SharedObjects/EventListeners.h"

namespace Vorn {

/// A list of listeners that take Args. An argument that cannot be copied is given by constant reference.
template <class... Args>
class Event : public EventListeners<Delegate<void, VornPrivate::ListenerArgument<Args>...>> {
    static_assert((!std::is_void_v<Args> && ...), "an event without arguments is written Event<>");
    static_assert((!std::is_rvalue_reference_v<Args> && ...), "each listener is given the arguments anew");
    static_assert((!std::is_function_v<Args> && ...), "write Event<Args...> and not Event<void(Args...)>");

public:
    /// An event without listeners.
    Event() {} // not defaulted, which would make it an aggregate in C++17

    /// Takes over the listeners and connections of `other`, which has none afterwards. Calls that are running go on.
    Event(Event&&) noexcept = default;

    /// Releases the listeners, and takes over those of `other`. Calls of this event that are running end.
    Event& operator=(Event&&) noexcept = default;

    void swap(Event& other) noexcept { this->swapListeners(other); }
    friend void swap(Event& a, Event& b) noexcept { a.swap(b); }

    /// Calls the listeners in order. Does nothing if the event is disabled.
    ///
    /// Throws what a listener throws. The listeners behind it are not called then, and the event is usable.
    void operator()(Args... args) const {
        this->template dispatch<false>([&](const DelegatePOD& pod) {
            VornPrivate::typedCaller<void, VornPrivate::ListenerArgument<Args>...>(pod)(pod.object, pod.context,
                                                                                        args...);
            return true;
        });
    }
};

} // namespace Vorn
