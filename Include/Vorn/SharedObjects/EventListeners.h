/// @file
/// EventListeners: the listeners of an event, which Event and ResultEvent share. Support of these headers; not
/// for direct use.
#pragma once

#include "Vorn/SharedObjects/Connection.h"
#include "Vorn/SharedObjects/Delegate.h"
#include "Vorn/SharedObjects/ListenerChain.h"

namespace VornPrivate {

/// How an argument is given to the listeners: as declared, but by constant reference if it cannot be copied.
template <class Arg>
using ListenerArgument =
    std::conditional_t<std::is_reference_v<Arg> || std::is_copy_constructible_v<Arg>, Arg, const Arg&>;

/// True for what `add` takes apart from a listener: a class with a call operator, a function or a pointer to a member.
template <class Callable>
using EnableForCallable = std::enable_if_t<isConvertedCallable<Callable>(), int>;

/// True for what is not found again: a class that is no kind of listener or connection, or a pointer to a member
/// function.
template <class Callable>
using EnableForUnequal =
    std::enable_if_t<std::is_member_function_pointer_v<Callable> ||
                         (std::is_class_v<Callable> && !std::is_base_of_v<Vorn::DelegateBase, Callable> &&
                          !std::is_same_v<Callable, Vorn::Connection>),
                     int>;

/// True for an object, a pointer, a SharedPtr or a WeakPtr.
template <class Target>
using EnableForTarget = std::enable_if_t<!std::is_integral_v<std::remove_reference_t<Target>>, int>;

/// An object that listens, and its control block, or null.
struct ListeningObject {
    const void* address;
    std::size_t size;
    Vorn::RefCounter* life;
};

/// Returns the object of a reference, a pointer, a SharedPtr or a WeakPtr.
template <class Owner>
ListeningObject listeningObject(const Owner& owner) {
    if constexpr (IS_SHARED_PTR<Owner>) {
        return {owner.get(), owner ? sizeof(*owner.get()) : 0, sharedRecord(owner)};
    } else if constexpr (IS_WEAK_PTR<Owner>) {
        // Another object can have the address of one that has been destroyed.
        if (owner.isExpired()) return {nullptr, 0, weakRecord(owner)};
        return {weakObject(owner), sizeof(typename Owner::Element), weakRecord(owner)};
    } else if constexpr (std::is_pointer_v<Owner>) {
        if (owner) return listeningObject(*owner);
        return {nullptr, 0, nullptr};
    } else {
        Vorn::SharedObjectBase* const shared = sharedObjectOf(&owner);
        return {&owner, sizeof(owner), shared ? SharedObjectAccess::getRefCounter(shared) : nullptr};
    }
}

} // namespace VornPrivate

namespace Vorn {

/// The listeners of an event and the operations that change them.
template <class ListenerType>
class EventListeners {
public:
    /// A delegate with the signature of the event.
    using Listener = ListenerType;

    EventListeners() = default;

    /// Takes over the listeners of `other`, which has none afterwards. Calls that are running go on with them.
    EventListeners(EventListeners&& other) noexcept = default;
    EventListeners& operator=(EventListeners&& other) noexcept = default;

    /// Adds `listener` behind the listeners of equal priority; lower priorities are called first. A listener that the
    /// event has already is moved there. Takes effect with the next call: a call that is running does not call a new
    /// listener, and calls a moved one at its old position.
    ///
    /// Throws `Exception<1>`: "delegate.caller && delegate.typeInfo : Invalid delegate!!" for an empty listener. Throws
    /// `std::bad_alloc`; nothing has changed then.
    Connection add(const Listener& listener, int priority = 0) { return addListener(listener, priority, {}); }

    /// Adds a callable that takes the arguments of the event, or the first of them. A class with a call operator, such
    /// as a lambda, and a pointer to a member function are a new listener each time; a function is one listener.
    /// @warning What a lambda captures by reference must outlive it. See `addWhileAlive`.
    template <class Callable, VornPrivate::EnableForCallable<Callable> = 0>
    Connection add(Callable&& callable, int priority = 0) {
        return addListener(Listener(std::forward<Callable>(callable)), priority, {false, IS_NEW<Callable>, nullptr});
    }

    /// Adds a function that is a constant.
    template <auto Function>
    Connection add(int priority = 0) {
        return add(Listener::template bind<Function>(), priority);
    }

    /// Adds a method of an object or pointer, which is not counted; of a SharedPtr, which is kept alive; or of a
    /// WeakPtr, whose listener leaves the event when the object is destroyed.
    ///
    /// Throws `Exception<1>`: "target : null pointer!", "object : null pointer!" or "counter : null pointer!".
    /// @warning An object or pointer that is not counted must outlive its listener.
    template <auto Method, class Target, VornPrivate::EnableForTarget<Target> = 0>
    Connection add(Target&& target, int priority = 0) {
        return add(Listener::template bind<Method>(std::forward<Target>(target)), priority);
    }

    /// The same as `add`, but the listener is removed before its first call. The last of `add` and `once` of a listener
    /// decides.
    Connection once(const Listener& listener, int priority = 0) {
        return addListener(listener, priority, {true, false, nullptr});
    }
    template <class Callable, VornPrivate::EnableForCallable<Callable> = 0>
    Connection once(Callable&& callable, int priority = 0) {
        return addListener(Listener(std::forward<Callable>(callable)), priority, {true, IS_NEW<Callable>, nullptr});
    }
    template <auto Function>
    Connection once(int priority = 0) {
        return once(Listener::template bind<Function>(), priority);
    }
    template <auto Method, class Target, VornPrivate::EnableForTarget<Target> = 0>
    Connection once(Target&& target, int priority = 0) {
        return once(Listener::template bind<Method>(std::forward<Target>(target)), priority);
    }

    /// Adds a callable that leaves the event when `owner` is destroyed. A call keeps `owner` alive. `owner` is a
    /// SharedPtr, a WeakPtr, or an object or pointer of a type that derives from SharedObjectBase. If it is being
    /// destroyed, nothing is added.
    ///
    /// Throws `Exception<1>`: "life : the owner is not shared!".
    template <class Owner, class Callable>
    Connection addWhileAlive(const Owner& owner, Callable&& callable, int priority = 0) {
        RefCounter* const life = VornPrivate::listeningObject(owner).life;
        VORN_ASSERT(life, "the owner is not shared!", "Vorn::Event::addWhileAlive");
        if (life->m_useCount.load(std::memory_order_relaxed) < 1) return Connection();
        return addListener(Listener(std::forward<Callable>(callable)), priority, {false, IS_NEW<Callable>, life});
    }

    /// Removes `listener`. Returns false if the event does not have it. A removed listener is not called any more, also
    /// by a call that is running. Its target is released at once or, if it is being called, at the end of the call of
    /// the event that calls it; of several, the outermost one.
    bool remove(const Listener& listener) { return m_chain.remove(listener.getPOD()); }

    /// Removes the listener of a connection. Returns false if it is not connected to this event.
    bool remove(const Connection& connection) { return connection.getNode() && m_chain.remove(*connection.getNode()); }

    /// Does not compile: two lambdas are two listeners, even if they are written alike.
    template <class Callable, VornPrivate::EnableForUnequal<Callable> = 0>
    bool remove(const Callable&) {
        return refuse<Callable>();
    }

    /// Removes a function that is a constant.
    template <auto Function>
    bool remove() {
        return remove(Listener::template bind<Function>());
    }

    /// Removes a method of an object, a pointer, a SharedPtr or a WeakPtr, whichever of these was added.
    template <auto Method, class Target>
    bool remove(const Target& target) {
        const auto method = Listener::template identify<Method>(target);
        return m_chain.remove(method.object, method.bindings, method.BINDINGS) != 0;
    }

    /// Removes all listeners of an object, a pointer, a SharedPtr or a WeakPtr: the methods of the object, of its bases
    /// and members, and callables that were added with `addWhileAlive`. Returns their number.
    template <class Object>
    unsigned int removeAll(const Object& object) {
        const VornPrivate::ListeningObject listening = VornPrivate::listeningObject(object);
        return m_chain.removeObject(listening.address, listening.size, listening.life);
    }

    /// Removes all listeners, new ones too.
    void clear() { m_chain.clear(); }

    /// Returns true if the event has `listener`, new or not.
    [[nodiscard]] bool contains(const Listener& listener) const { return m_chain.find(listener.getPOD()); }
    template <class Callable, VornPrivate::EnableForUnequal<Callable> = 0>
    [[nodiscard]] bool contains(const Callable&) const { // does not compile, as `remove`
        return refuse<Callable>();
    }
    template <auto Function>
    [[nodiscard]] bool contains() const {
        return contains(Listener::template bind<Function>());
    }
    template <auto Method, class Target>
    [[nodiscard]] bool contains(const Target& target) const {
        const auto method = Listener::template identify<Method>(target);
        return m_chain.find(method.object, method.bindings, method.BINDINGS);
    }

    /// Returns the number of listeners, without those whose weakly bound target has been destroyed.
    [[nodiscard]] unsigned int getDelegateCount() const { return m_chain.countListeners(); }
    /// Returns true if there is no listener.
    [[nodiscard]] bool empty() const { return m_chain.countListeners() == 0; }

    /// Calls `visitor(listener)` or `visitor(listener, priority)` for each listener in order. The visitor may change
    /// the event, with the same effects as in a call.
    template <class Visitor>
    void forEach(Visitor&& visitor) const {
        ListenerCall call(m_chain);
        for (ListenerNode* node = m_chain.getFirst(); node; node = node->getNext()) {
            call.at = node;
            if (!node->chain || node->first > call.number || node->isExpired()) continue;
            const Listener listener = Listener::fromRecord(node->getDelegate());
            if constexpr (std::is_invocable_v<Visitor&, const Listener&, int>) {
                visitor(listener, node->getPriority());
            } else {
                visitor(listener);
            }
        }
    }

    /// Calls do nothing until `enable`. A call that is running goes on. Moving and swapping an event take this along.
    void disable() { m_chain.disable(); }
    void enable() { m_chain.enable(); }                                    ///< Ends `disable`.
    [[nodiscard]] bool isDisabled() const { return m_chain.isDisabled(); } ///< Returns true after `disable`.
    /// Returns true during a call and in `forEach`.
    [[nodiscard]] bool isDispatching() const { return m_chain.isDispatching(); }

    /// Ends the innermost call that is running: it calls no more listeners. Does nothing outside of calls.
    void stop() const { m_chain.stop(); }

protected:
    ~EventListeners() = default;

    void swapListeners(EventListeners& other) noexcept { m_chain.swap(other.m_chain); }

    /// Calls `visit(pod)` for each listener that is due, until it returns false.
    template <bool IS_HELD, class Visit>
    void dispatch(Visit&& visit) const {
        if (m_chain.isSilent()) return;
        ListenerCall call(m_chain);
        for (ListenerNode* node = m_chain.getFirst(); node; node = node->getNext()) {
            call.at = node;
            if (VORN_LIKELY(node->direct <= call.number)) {
                if (!visit(node->getDelegate())) return;
            } else {
                const ListenerTurn turn(*node, call, IS_HELD);
                if (turn && !visit(node->getDelegate())) return;
            }
        }
    }

private:
    template <class Callable>
    static constexpr bool IS_NEW = std::is_class_v<std::decay_t<Callable>>;

    template <class Callable>
    static bool refuse() {
        static_assert(std::is_void_v<Callable>, "a lambda or a pointer to a member function is found again only by "
                                                "the Connection that add returned");
        return false;
    }

    Connection addListener(const Listener& listener, int priority, const ListenerKind& kind) {
        return Connection(m_chain.add(listener.getPOD(), priority, kind));
    }

    mutable ListenerChain m_chain; // a call of a constant event changes what is being called
};

} // namespace Vorn
