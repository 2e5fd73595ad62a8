/// @file
/// Delegate: a small copyable handle to a callable, with a signature.
///
/// `Delegate<Result, Args...>` calls anything that takes Args and returns Result. Without arguments, write
/// `Delegate<Result, void>`. A delegate is created by a binding, whose name says how the target is held:
///
///     Delegate<void, int>::bind<&log>()                         a function
///     Delegate<void, int>::bind<&Door::open>(door)              a member function; the door is not counted
///     Delegate<void, int>::bindShared<&Door::open>(sharedDoor)  keeps the door alive
///     Delegate<void, int>::bindWeak<&Door::open>(weakDoor)      does nothing after the door has been destroyed
///     Delegate<void, int>::bindCallable([](int) { ... })        any callable
///
/// Two bindings of the same function and object by the same operation are equal, so a listener can be found again
/// without keeping it. The static type of the object must be the same, too: binding through a base or a const reference
/// gives a different delegate. Alternative: std::function, which cannot be compared and costs more.
///
/// Cost: six words. Only `bindCallable` allocates, for callables that are larger than a pointer or that calls change. A
/// call is one indirect call; with a weakly bound target it is also a compare-and-swap and an atomic add.
///
/// Failures: a binding that throws creates no delegate. Copying, assigning and destroying a delegate allocate nothing.
///
/// Threads: as a SharedPtr or WeakPtr to the target.
#pragma once

#include "Vorn/SharedObjects/DelegateBinding.h"
#include "Vorn/SharedObjects/SharedPtr.h"
#include "Vorn/SharedObjects/WeakPtr.h"

namespace Vorn {

/// The bindings and calls of delegates of all signatures. `Self` is the delegate.
template <class Self, class Result, class... Args>
class DelegateOperations {
public:
    /// Binds `Function`, which is a constant.
    template <auto Function>
    static Self bind() {
        static_assert(!std::is_member_pointer_v<decltype(Function)>,
                      "a member function needs its object: bind<&Door::open>(door)");
        static_assert(isCallable<decltype(Function)>(),
                      "the function cannot be called with the delegate's Args, or does not return its Result");
        return Self(VornPrivate::bindingRecord<VornPrivate::FunctionBinding<Result(Args...), Function>>(
            reinterpret_cast<void*>(Function), nullptr, nullptr));
    }

    /// Binds `Method` of `object`, or a function `Method` that takes `object` first.
    /// @warning `object` is not counted and must outlive every copy of the delegate. If it may not, use `bindWeak`.
    ///     auto d = Delegate<void, void>::bind<&Door::open>(Door());   // wrong: does not compile
    template <auto Method, class Object>
    static Self bind(Object& object) {
        checkMethod<Method, Object>();
        return Self(VornPrivate::bindingRecord<VornPrivate::MethodBinding<Result(Args...), Object, Method>>(
            VornPrivate::untyped(&object), nullptr, nullptr));
    }

    /// Deleted: the object would be destroyed at the end of the statement.
    template <auto Method, class Object>
    static Self bind(const Object&&) = delete;

    /// Binds `Method` of `object`, or a function `Method` that takes the object first, and keeps `object` alive.
    ///
    /// Throws `Exception<1>`: "object : null pointer!".
    template <auto Method, class Object>
    static Self bindShared(const SharedPtr<Object>& object) {
        checkMethod<Method, Object>();
        VORN_ASSERT(object, "null pointer!", "Vorn::Delegate::bindShared");
        return Self(VornPrivate::bindingRecord<VornPrivate::SharedMethodBinding<Result(Args...), Object, Method>>(
            VornPrivate::untyped(object.get()), sharedRecord(object), &delegateAddUseRef));
    }

    /// Binds `Method` of `object`, or a function `Method` that takes the object first, and does not keep `object`
    /// alive. Calls do nothing after it has been destroyed.
    ///
    /// Throws `Exception<1>`: "counter : null pointer!".
    /// @warning While a delegate to a destroyed object is kept, a new object at the same address gives an equal one.
    template <auto Method, class Object>
    static Self bindWeak(const WeakPtr<Object>& object) {
        checkMethod<Method, Object>();
        RefCounter* const counter = weakRecord(object);
        VORN_ASSERT(counter, "null pointer!", "Vorn::Delegate::bindWeak");
        return Self(VornPrivate::bindingRecord<VornPrivate::WeakMethodBinding<Result(Args...), Object, Method>>(
            VornPrivate::untyped(weakObject(object)), counter, &delegateAddWeakRef));
    }

    template <auto Method, class Object>
    static Self bindWeak(const SharedPtr<Object>& object) {
        return bindWeak<Method>(WeakPtr<Object>(object));
    }

    /// Binds a copy of `callable`, which all copies of the delegate share. A callable that is not larger than a pointer
    /// and can be called while const is stored in the delegate and called so. Any other is allocated.
    ///
    /// Throws `std::bad_alloc`, and what copying `callable` throws; nothing is left allocated then.
    /// @warning A null function pointer is not refused; calling the delegate calls it.
    /// @warning Delegates of allocated callables are equal only if one is a copy of the other; keep a copy to find it
    ///     again. Delegates that store the callable are equal if its type and bytes are.
    template <class Callable>
    static Self bindCallable(Callable&& callable) {
        using Kept = std::decay_t<Callable>;
        static_assert(isCallable<Kept&>(),
                      "the callable cannot be called with the delegate's Args, or does not return its Result");
        using Value = VornPrivate::ValueBinding<Result(Args...), Kept>;
        if constexpr (Value::FITS) {
            return Self(VornPrivate::bindingRecord<Value>(Value::pack(callable), nullptr, nullptr));
        } else {
            const SharedPtr<Kept> kept = makeShared<Kept>(std::forward<Callable>(callable));
            return Self(VornPrivate::bindingRecord<VornPrivate::HeldBinding<Result(Args...), Kept>>(
                kept.get(), sharedRecord(kept), &delegateAddUseRef));
        }
    }

    /// Calls the target. If the delegate is empty or its weakly bound target has been destroyed, does nothing and
    /// returns a value-initialised result; use `tryCall` to distinguish that.
    Result call(Args... args) const {
        static_assert(std::is_void_v<Result> || std::is_default_constructible_v<Result>,
                      "take tryCall: there is no value to give without a target");
        const DelegatePOD& pod = record();
        if (!pod.caller) return VornPrivate::emptyResult<Result>();
        return VornPrivate::typedCaller<Result, Args...>(pod)(pod.object, pod.context, std::forward<Args>(args)...);
    }
    Result operator()(Args... args) const { return call(std::forward<Args>(args)...); } ///< The same as `call`.

    /// Calls the target if there is one. Returns true, or the result as an optional, or as a pointer if it is a
    /// reference. If the delegate is empty or its weakly bound target has been destroyed, returns false, an empty
    /// optional or null.
    typename VornPrivate::TriedCall<Result>::Type tryCall(Args... args) const {
        const DelegatePOD& pod = record();
        if (!pod.caller) return {};
        if (pod.contextAddRef == &delegateAddWeakRef && pod.context) {
            const VornPrivate::TargetHold hold(pod.context);
            if (!hold) return {};
            return callTarget(pod, std::forward<Args>(args)...);
        }
        return callTarget(pod, std::forward<Args>(args)...);
    }

    /// Returns true if the target is bound weakly and has been destroyed.
    bool isExpired() const { return VornPrivate::isExpired(record()); }

private:
    const DelegatePOD& record() const { return static_cast<const Self*>(this)->getPOD(); }

    template <class Callable, class... Leading>
    static constexpr bool isCallable() {
        return std::is_invocable_r_v<Result, Callable, Leading..., Args...>;
    }

    template <auto Method, class Object>
    static constexpr void checkMethod() {
        static_assert(!std::is_pointer_v<Object>,
                      "bind the object itself and not a pointer to it: bind<&Door::open>(*door)");
        static_assert(std::is_pointer_v<Object> || isCallable<decltype(Method), Object&>(),
                      "the method cannot be called on this object with the delegate's Args, or does not return its "
                      "Result");
    }

    static typename VornPrivate::TriedCall<Result>::Type callTarget(const DelegatePOD& pod, Args... args) {
        const auto caller = VornPrivate::typedCaller<Result, Args...>(pod);
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

/// `void` stands for no arguments.
template <class Self, class Result>
class DelegateOperations<Self, Result, void> : public DelegateOperations<Self, Result> {};

/// A handle to a callable that takes Args and returns Result.
template <class Result, class... Args>
class Delegate : public DelegateBase, public DelegateOperations<Delegate<Result, Args...>, Result, Args...> {
    static_assert(sizeof...(Args) > 0, "a callable without arguments is written Delegate<Result, void>");

public:
    /// An empty delegate.
    Delegate() = default;
    Delegate(const Delegate&) = default;

    /// Copies the binding with a reference to its target, and releases the previous target.
    Delegate& operator=(const Delegate& other) {
        replaceRecord(other.getPOD());
        return *this;
    }

    /// The same as the assignment.
    void rebind(const Delegate& other) { replaceRecord(other.getPOD()); }

private:
    friend DelegateOperations<Delegate, Result, Args...>;
    friend DelegateOperations<Delegate, Result>; // base of the one above if Args is void
    explicit Delegate(const DelegatePOD& pod) : DelegateBase(pod) {}
};

/// A handle to a callable that takes no arguments and returns nothing. Its assignment counts in *reverse*.
template <>
class VORN_API Delegate<void, void> : public DelegateBase, public DelegateOperations<Delegate<void, void>, void> {
public:
    /// An empty delegate.
    Delegate() = default;
    Delegate(const Delegate&) = default;

    /// Copies the binding, but counts in *reverse*, unlike the assignment of all other signatures: adds a reference to
    /// the outgoing context and releases one of the incoming context. Does nothing if `other` is the same delegate.
    /// @warning With counted targets, the incoming one is released twice and the outgoing one is leaked. Write
    ///     a.rebind(b);   // instead of a = b;
    /// This also affects code that assigns internally, such as std::swap and `std::vector::erase`, and listeners of
    /// Event<>, which have this type.
    Delegate& operator=(const Delegate& other) {
        DelegateBase::operator=(other);
        return *this;
    }

    ~Delegate() override;

    /// Copies the binding with a reference to its target, and releases the previous target.
    void rebind(const Delegate& other) { replaceRecord(other.getPOD()); }

    /// Calls the target. Does nothing if the delegate is empty or its weakly bound target has been destroyed; use
    /// `tryCall` to distinguish that.
    void call() const {
        if (m_pod.caller) m_pod.caller(m_pod.object, m_pod.context);
    }
    void operator()() const { call(); } ///< The same as `call`.

private:
    friend DelegateOperations<Delegate, void>;
    explicit Delegate(const DelegatePOD& pod) : DelegateBase(pod) {}
};

} // namespace Vorn
