// Delegate: a small copyable handle to something callable, with a signature.
//
// Delegate<Result, Args...> calls anything that takes Args and gives Result; a callable without arguments is written
// Delegate<Result, void>. It is made by one of the bindings, whose names say how the target is held:
//
//     Delegate<void, int>::bind<&log>()                         a function
//     Delegate<void, int>::bind<&Door::open>(door)              a member function; door is not counted
//     Delegate<void, int>::bindShared<&Door::open>(sharedDoor)  keeps the door alive
//     Delegate<void, int>::bindWeak<&Door::open>(weakDoor)      does nothing once the door is dead
//     Delegate<void, int>::bindCallable([](int) { ... })        any callable
//
// Binding the same function to the same object in the same way twice gives equal delegates, so a listener can be found
// again without being kept. The type by which the object is bound belongs to the way: its base, or a const reference,
// gives another delegate. That is the difference from std::function, which also costs more.
//
// Cost: six words; no allocation, but for callables that do not fit into a pointer or that calls change. A call is one
// indirect call, with a weakly held target also a compare-and-swap and a locked add.
//
// Threads: as a SharedPtr or WeakPtr to the target.
#pragma once

#include "Vorn/SharedObjects/DelegateBinding.h"
#include "Vorn/SharedObjects/SharedPtr.h"
#include "Vorn/SharedObjects/WeakPtr.h"

namespace VornPrivate {

/// What delegates of all signatures have in common. `Self` is the delegate.
template <class Self, class Result, class... Args>
class DelegateOperations {
public:
    /// Calls `Function`, a function known when the program is compiled.
    template <auto Function>
    static Self bind() {
        return Self(bindingRecord<FunctionBinding<Result(Args...), Function>>(reinterpret_cast<void*>(Function),
                                                                              nullptr, nullptr));
    }

    /// Calls `Method` of `object`, or a function `Method` that takes `object` first.
    /// @warning `object` is not counted and must outlive every copy of the delegate; bind a WeakPtr if it may not.
    ///     auto d = Delegate<void, void>::bind<&Door::open>(Door());   // wrong: does not compile
    template <auto Method, class Object>
    static Self bind(Object& object) {
        return Self(bindingRecord<MethodBinding<Result(Args...), Object, Method>>(untyped(&object), nullptr, nullptr));
    }

    template <auto Method, class Object>
    static Self bind(const Object&&) = delete;

    /// As `bind`, and keeps `object` alive. Raises `Exception<1>`, "object : null pointer!".
    template <auto Method, class Object>
    static Self bindShared(const Vorn::SharedPtr<Object>& object) {
        VORN_ASSERT(object, "null pointer!", "Vorn::Delegate::bindShared");
        return Self(bindingRecord<SharedMethodBinding<Result(Args...), Object, Method>>(
            untyped(object.get()), sharedRecord(object), &Vorn::delegateAddUseRef));
    }

    /// As `bind`, and does nothing once `object` is dead. Raises `Exception<1>`, "counter : null pointer!".
    /// @warning While a delegate of a dead object is kept, a new object at the same address gives an equal one.
    template <auto Method, class Object>
    static Self bindWeak(const Vorn::WeakPtr<Object>& object) {
        Vorn::RefCounter* const counter = weakRecord(object);
        VORN_ASSERT(counter, "null pointer!", "Vorn::Delegate::bindWeak");
        return Self(bindingRecord<WeakMethodBinding<Result(Args...), Object, Method>>(
            untyped(weakObject(object)), counter, &Vorn::delegateAddWeakRef));
    }

    template <auto Method, class Object>
    static Self bindWeak(const Vorn::SharedPtr<Object>& object) {
        return bindWeak<Method>(Vorn::WeakPtr<Object>(object));
    }

    /// Calls a copy of `callable`. Copies of the delegate share that copy. A callable of the size of a pointer that can
    /// be called while const is kept in the delegate and called so; any other is allocated (`std::bad_alloc`).
    /// @warning A null pointer to a function is not refused; calling the delegate calls it.
    /// @warning Delegates of allocated callables are equal only if one is a copy of the other; keep a copy to find it
    ///     again. Those of callables in the delegate are equal if type and bits are.
    template <class Callable>
    static Self bindCallable(Callable&& callable) {
        using Kept = std::decay_t<Callable>;
        using Value = ValueBinding<Result(Args...), Kept>;
        if constexpr (Value::FITS) {
            return Self(bindingRecord<Value>(Value::pack(callable), nullptr, nullptr));
        } else {
            const Vorn::SharedPtr<Kept> kept = Vorn::makeShared<Kept>(std::forward<Callable>(callable));
            return Self(bindingRecord<HeldBinding<Result(Args...), Kept>>(kept.get(), sharedRecord(kept),
                                                                          &Vorn::delegateAddUseRef));
        }
    }

    /// Calls the target and says whether there was one: gives false, an empty optional or, for a reference, null if the
    /// delegate is empty or its weakly held target is dead.
    typename TriedCall<Result>::Type tryCall(Args... args) const {
        const Vorn::DelegatePOD& pod = record();
        if (!pod.caller) return {};
        if (pod.contextAddRef == &Vorn::delegateAddWeakRef && pod.context) {
            const TargetHold hold(pod.context);
            if (!hold) return {};
            return callTarget(pod, std::forward<Args>(args)...);
        }
        return callTarget(pod, std::forward<Args>(args)...);
    }

    /// True if the target was held weakly and is dead.
    bool isExpired() const { return VornPrivate::isExpired(record()); }

protected:
    Result callOrNothing(Args... args) const {
        static_assert(std::is_void_v<Result> || std::is_default_constructible_v<Result>,
                      "take tryCall: there is no value to give without a target");
        const Vorn::DelegatePOD& pod = record();
        if (!pod.caller) return emptyResult<Result>();
        return typedCaller<Result, Args...>(pod)(pod.object, pod.context, std::forward<Args>(args)...);
    }

private:
    const Vorn::DelegatePOD& record() const { return static_cast<const Self*>(this)->getPOD(); }

    static typename TriedCall<Result>::Type callTarget(const Vorn::DelegatePOD& pod, Args... args) {
        const auto caller = typedCaller<Result, Args...>(pod);
        if constexpr (std::is_void_v<Result>) {
            caller(pod.object, pod.context, std::forward<Args>(args)...);
            return true;
        } else if constexpr (std::is_reference_v<Result>) {
            return &caller(pod.object, pod.context, std::forward<Args>(args)...);
        } else {
            return caller(pod.object, pod.context, std::forward<Args>(args)...);
        }
    }
};

} // namespace VornPrivate

namespace Vorn {

/// Handle to something that takes Args and gives Result.
template <class Result, class... Args>
class Delegate : public DelegateBase,
                 public VornPrivate::DelegateOperations<Delegate<Result, Args...>, Result, Args...> {
    static_assert(sizeof...(Args) > 0, "a callable without arguments is written Delegate<Result, void>");

public:
    /// An empty delegate.
    Delegate() = default;
    Delegate(const Delegate&) = default;

    /// Takes over the binding and its reference, and gives up the own. Counts as one expects.
    Delegate& operator=(const Delegate& other) {
        replaceRecord(other.getPOD());
        return *this;
    }

    /// The same as the assignment.
    void rebind(const Delegate& other) { replaceRecord(other.getPOD()); }

    /// Calls the target. Without one, or with a dead one, it does nothing and gives a value-initialised result; take
    /// `tryCall` to tell.
    Result call(Args... args) const { return this->callOrNothing(std::forward<Args>(args)...); }
    Result operator()(Args... args) const { return this->callOrNothing(std::forward<Args>(args)...); }

private:
    friend VornPrivate::DelegateOperations<Delegate, Result, Args...>;
    explicit Delegate(const DelegatePOD& pod) : DelegateBase(pod) {}
};

/// Handle to something that takes nothing and gives Result.
template <class Result>
class Delegate<Result, void> : public DelegateBase,
                               public VornPrivate::DelegateOperations<Delegate<Result, void>, Result> {
public:
    Delegate() = default;
    Delegate(const Delegate&) = default;

    /// Takes over the binding and its reference, and gives up the own. Counts as one expects.
    Delegate& operator=(const Delegate& other) {
        replaceRecord(other.getPOD());
        return *this;
    }

    /// The same as the assignment.
    void rebind(const Delegate& other) { replaceRecord(other.getPOD()); }

    /// Calls the target. Without one, or with a dead one, it does nothing and gives a value-initialised result; take
    /// `tryCall` to tell.
    Result call() const { return this->callOrNothing(); }
    Result operator()() const { return this->callOrNothing(); }

private:
    friend VornPrivate::DelegateOperations<Delegate, Result>;
    explicit Delegate(const DelegatePOD& pod) : DelegateBase(pod) {}
};

/// Handle to something that takes nothing and gives nothing, the one that the library itself carries.
template <>
class VORN_API Delegate<void, void> : public DelegateBase,
                                      public VornPrivate::DelegateOperations<Delegate<void, void>, void> {
public:
    /// An empty delegate.
    Delegate() = default;
    Delegate(const Delegate&) = default;

    /// Counts in reverse, unlike the assignment of all other signatures: adds a reference to the outgoing context and
    /// releases one of the incoming. Does nothing for the same delegate.
    /// @warning With counted targets the incoming one is released too often and the outgoing one never; write
    ///     a.rebind(b);   // instead of a = b;
    /// That holds for what assigns in turn, as std::swap or erasing from a std::vector does, and for the listeners of
    /// Event<>, which are delegates of this type.
    Delegate& operator=(const Delegate& other) {
        DelegateBase::operator=(other);
        return *this;
    }

    ~Delegate() override;

    /// Takes over the binding and its reference, and gives up the own. Counts as one expects.
    void rebind(const Delegate& other) { replaceRecord(other.getPOD()); }

    /// Calls the target. Without one, or with a dead one, it does nothing; take `tryCall` to tell.
    void call() const {
        if (m_pod.caller) m_pod.caller(m_pod.object, m_pod.context);
    }
    void operator()() const { call(); }

private:
    friend VornPrivate::DelegateOperations<Delegate, void>;
    explicit Delegate(const DelegatePOD& pod) : DelegateBase(pod) {}
};

} // namespace Vorn
