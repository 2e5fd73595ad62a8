/// @file
/// Delegate: a small copyable handle to a callable, with a signature.
///
/// `Delegate<Result, Args...>` calls anything that takes Args, or the first of them, and returns Result. Without
/// arguments, write `Delegate<Result>`. A function or a callable converts to a delegate; a binding creates one for a
/// method, and its name says how the object is held:
///
///     Delegate<void, int> shown = [](int value) { ... };
///     Delegate<void, int>::bind<&log>()                         a function
///     Delegate<void, int>::bind<&Door::open>(door)              a method of an object or pointer that is not counted
///     Delegate<void, int>::bindShared<&Door::open>(sharedDoor)  keeps the door alive
///     Delegate<void, int>::bindWeak<&Door::open>(weakDoor)      does nothing after the door has been destroyed
///     Delegate<void, int>::bindCallable([](int) { ... })        any callable
///
/// Two bindings of the same function, or of the same method and object by the same operation, are equal, so a listener
/// can be found again without keeping it. Alternative: std::function, which cannot be compared and costs more.
///
/// Cost: six words. Only callables that are larger than a pointer, or that calls change, are allocated. A call is one
/// indirect call; with a weakly bound target it is also a compare-and-swap and an atomic add.
///
/// Failures: a binding that throws creates no delegate. Copying, assigning and destroying a delegate allocate nothing.
///
/// Threads: as a SharedPtr or WeakPtr to the target.
#pragma once

#include "Vorn/Private/Surprise.h"
#include "Vorn/SharedObjects/DelegateBinding.h"
#include "Vorn/SharedObjects/SharedPtr.h"
#include "Vorn/SharedObjects/WeakPtr.h"

#include <cstddef>

namespace VornPrivate {

template <class T>
inline constexpr bool IS_SHARED_PTR = false;
template <class T>
inline constexpr bool IS_SHARED_PTR<Vorn::SharedPtr<T>> = true;
template <class T>
inline constexpr bool IS_WEAK_PTR = false;
template <class T>
inline constexpr bool IS_WEAK_PTR<Vorn::WeakPtr<T>> = true;

/// Result; void if a function can have no such result, so that an assertion is the only error.
template <class Result>
using ResultOrVoid = std::conditional_t<std::is_function_v<Result>, void, Result>;

/// Returns true for a null pointer to a function or to a member.
template <class Callable>
bool isNullCallable(const Callable& callable) {
    if constexpr (std::is_pointer_v<Callable> || std::is_member_pointer_v<Callable>) {
        return callable == nullptr;
    } else {
        return false;
    }
}

/// The bindings of a method of an object: its own, that of a SharedPtr and that of a WeakPtr.
struct MethodIdentity {
    static constexpr int BINDINGS = 3;

    const void* object;
    const std::type_info* bindings[BINDINGS];
};

/// True for what a constructor of a delegate binds: a class with a call operator, a function or a pointer to a member.
template <class Callable>
constexpr bool isConvertedCallable() {
    using Kept = std::decay_t<Callable>;
    if constexpr (std::is_pointer_v<Kept>) return std::is_function_v<std::remove_pointer_t<Kept>>;
    if constexpr (std::is_class_v<Kept>)
        return !std::is_base_of_v<Vorn::DelegateBase, Kept> && !std::is_same_v<Kept, Vorn::DelegatePOD>;
    return std::is_member_pointer_v<Kept>;
}

} // namespace VornPrivate

namespace Vorn {

/// The bindings and calls of delegates of all signatures. `Self` is the delegate.
template <class Self, class Result, class... Args>
class DelegateOperations {
public:
    /// Binds `Function`, which is a constant.
    template <auto Function>
    [[nodiscard]] static Self bind() {
        static_assert(!std::is_member_pointer_v<decltype(Function)>,
                      "a member function needs its object: bind<&Door::open>(door)");
        static_assert(isCallable<decltype(Function)>(),
                      "the function cannot be called with the delegate's Args, or does not return its Result");
        if constexpr (isCallable<decltype(Function)>()) {
            return Self(VornPrivate::bindingRecord<VornPrivate::FunctionBinding<Result(Args...), Function>>(
                reinterpret_cast<void*>(Function), nullptr, nullptr));
        } else {
            return Self();
        }
    }

    /// Binds `Method` of `target`, or a function `Method` that takes the object first. `target` is the object, a
    /// pointer to it, a SharedPtr (the same as `bindShared`) or a WeakPtr (the same as `bindWeak`).
    ///
    /// Throws `Exception<1>`: "target : null pointer!".
    /// @warning An object or a pointer is not counted and must outlive every copy of the delegate. If it may not, pass
    /// a
    ///     WeakPtr.
    ///     auto d = Delegate<void, void>::bind<&Door::open>(Door());   // wrong: does not compile
    template <auto Method, class Target>
    [[nodiscard]] static Self bind(Target&& target) {
        using Plain = std::remove_cv_t<std::remove_reference_t<Target>>;
        if constexpr (VornPrivate::IS_SHARED_PTR<Plain>) {
            return bindShared<Method>(target);
        } else if constexpr (VornPrivate::IS_WEAK_PTR<Plain>) {
            return bindWeak<Method>(target);
        } else if constexpr (std::is_pointer_v<Plain>) {
            VORN_ASSERT(target, "null pointer!", "Vorn::Delegate::bind");
            return bindObject<Method>(*target);
        } else {
            static_assert(std::is_lvalue_reference_v<Target>,
                          "the object would be destroyed at the end of the statement: bind a variable");
            return bindObject<Method>(target);
        }
    }

    /// Binds `Method` of `object`, or a function `Method` that takes the object first, and keeps `object` alive.
    ///
    /// Throws `Exception<1>`: "object : null pointer!".
    template <auto Method, class Object>
    [[nodiscard]] static Self bindShared(const SharedPtr<Object>& object) {
        checkMethod<Method, Object>();
        VORN_ASSERT(object, "null pointer!", "Vorn::Delegate::bindShared");
        if constexpr (isMethod<Method, Object>()) {
            using Bound = BoundObject<Method, Object>;
            Bound* const bound = object.get();
            return Self(VornPrivate::bindingRecord<VornPrivate::SharedMethodBinding<Result(Args...), Bound, Method>>(
                VornPrivate::untyped(bound), sharedRecord(object), &delegateAddUseRef));
        } else {
            return Self();
        }
    }

    /// Binds `Method` of `object`, or a function `Method` that takes the object first, and does not keep `object`
    /// alive. Calls do nothing after it has been destroyed.
    ///
    /// Throws `Exception<1>`: "counter : null pointer!".
    /// @warning While a delegate to a destroyed object is kept, a new object at the same address gives an equal one.
    template <auto Method, class Object>
    [[nodiscard]] static Self bindWeak(const WeakPtr<Object>& object) {
        checkMethod<Method, Object>();
        RefCounter* const counter = weakRecord(object);
        VORN_ASSERT(counter, "null pointer!", "Vorn::Delegate::bindWeak");
        if constexpr (isMethod<Method, Object>()) {
            using Bound = BoundObject<Method, Object>;
            return Self(VornPrivate::bindingRecord<VornPrivate::WeakMethodBinding<Result(Args...), Bound, Method>>(
                VornPrivate::untyped(weakAddress<Bound>(object)), counter, &delegateAddWeakRef));
        } else {
            return Self();
        }
    }

    template <auto Method, class Object>
    [[nodiscard]] static Self bindWeak(const SharedPtr<Object>& object) {
        return bindWeak<Method>(WeakPtr<Object>(object));
    }

    /// Returns what the bindings of `Method` of `target` have in common, whichever operation binds them.
    template <auto Method, class Target>
    static VornPrivate::MethodIdentity identify(const Target& target) {
        using Plain = std::remove_cv_t<Target>;
        if constexpr (VornPrivate::IS_SHARED_PTR<Plain>) {
            return identifyObject<Method>(target.get());
        } else if constexpr (VornPrivate::IS_WEAK_PTR<Plain>) {
            return identifyObject<Method>(target.lock().get());
        } else if constexpr (std::is_pointer_v<Plain>) {
            return identifyObject<Method>(target);
        } else {
            return identifyObject<Method>(&target);
        }
    }

    /// Returns a delegate with a copy of `record`, which is that of a delegate of the same signature.
    static Self fromRecord(const DelegatePOD& record) { return Self(record); }

    /// Binds a copy of `callable`, which all copies of the delegate share. A callable that is not larger than a pointer
    /// and can be called while const is stored in the delegate and called so. Any other is allocated.
    ///
    /// Throws `std::bad_alloc`, and what copying `callable` throws; nothing is left allocated then.
    /// Throws `Exception<1>`: "!isNullCallable(callable) : null pointer!" for a null pointer to a function or member.
    /// @warning Delegates of allocated callables are equal only if one is a copy of the other; keep a copy to find it
    ///     again. Delegates that store the callable are equal if its type and bytes are.
    template <class Callable>
    [[nodiscard]] static Self bindCallable(Callable&& callable) {
        using Kept = std::decay_t<Callable>;
        static_assert(isCallable<Kept&>(),
                      "the callable cannot be called with the delegate's Args, or does not return its Result");
        if constexpr (isCallable<Kept&>()) {
            using Value = VornPrivate::ValueBinding<Result(Args...), Kept>;
            using VornPrivate::isNullCallable;
            VORN_ASSERT(!isNullCallable<Kept>(callable), "null pointer!", "Vorn::Delegate::bindCallable");
            if constexpr (Value::FITS) {
                return Self(Value::bind(callable));
            } else {
                const SharedPtr<Kept> kept = makeShared<Kept>(std::forward<Callable>(callable));
                return Self(VornPrivate::bindingRecord<VornPrivate::HeldBinding<Result(Args...), Kept>>(
                    kept.get(), sharedRecord(kept), &delegateAddUseRef));
            }
        } else {
            return Self();
        }
    }

    /// Calls the target. If the delegate is empty or its weakly bound target has been destroyed, does nothing and
    /// returns a value-initialised result; use `tryCall` to distinguish that.
    ///
    /// Throws `Exception<1>`: "result : no target to call!" then if Result is a reference or has no default.
    Result call(Args... args) const {
        if constexpr (std::is_void_v<Result> || std::is_default_constructible_v<Result>) {
            const DelegatePOD& pod = record();
            if (!pod.caller) return VornPrivate::emptyResult<Result>();
            return VornPrivate::typedCaller<Result, Args...>(pod)(pod.object, pod.context, std::forward<Args>(args)...);
        } else {
            auto result = tryCall(std::forward<Args>(args)...);
            VORN_ASSERT(result, "no target to call!", "Vorn::Delegate::call");
            return static_cast<Result&&>(*result);
        }
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

    template <class Callable>
    static constexpr bool isCallable() {
        return VornPrivate::Accepted<Result, Callable, VornPrivate::TypeList<Args...>>::value;
    }

    template <auto Method, class Object>
    static constexpr bool isMethod() {
        return isCallable<const VornPrivate::MethodOf<Method, Object>&>();
    }

    template <auto Method, class Object>
    static constexpr void checkMethod() {
        static_assert(isMethod<Method, Object>(),
                      "the method cannot be called on this object with the delegate's Args, or does not return its "
                      "Result");
    }

    // The type as which an object is bound: for a member function its class, const if the function is. So one method of
    // one object is one binding, whatever the static type of the object is.
    template <auto Method, class Object>
    static auto boundObject() {
        if constexpr (std::is_member_function_pointer_v<decltype(Method)>) {
            using Class = typename decltype(VornPrivate::classOfMember(Method))::Type;
            return VornPrivate::TypeIdentity<std::conditional_t<isMethod<Method, const Class>(), const Class, Class>>();
        } else {
            return VornPrivate::TypeIdentity<Object>();
        }
    }
    template <auto Method, class Object>
    using BoundObject = typename decltype(boundObject<Method, Object>())::Type;

    template <auto Method, class Object>
    static Self bindObject(Object& object) {
        checkMethod<Method, Object>();
        if constexpr (isMethod<Method, Object>()) {
            using Bound = BoundObject<Method, Object>;
            Bound& bound = object;
            return Self(VornPrivate::bindingRecord<VornPrivate::MethodBinding<Result(Args...), Bound, Method>>(
                VornPrivate::untyped(&bound), nullptr, nullptr));
        } else {
            return Self();
        }
    }

    template <auto Method, class Object>
    static VornPrivate::MethodIdentity identifyObject(Object* object) {
        using Plain = std::remove_const_t<Object>;
        checkMethod<Method, Plain>();
        if constexpr (isMethod<Method, Plain>()) {
            using Bound = BoundObject<Method, Plain>;
            Bound* const bound = const_cast<Plain*>(object);
            return {bound,
                    {VornPrivate::runtimeType<VornPrivate::MethodBinding<Result(Args...), Bound, Method>>(),
                     VornPrivate::runtimeType<VornPrivate::SharedMethodBinding<Result(Args...), Bound, Method>>(),
                     VornPrivate::runtimeType<VornPrivate::WeakMethodBinding<Result(Args...), Bound, Method>>()}};
        } else {
            return {};
        }
    }

    // The conversion to a virtual base reads the object, so it must be locked.
    template <class Bound, class Object>
    static Bound* weakAddress(const WeakPtr<Object>& object) {
        if constexpr (std::is_same_v<Bound, Object> || std::is_same_v<Bound, const Object>) {
            return weakObject(object);
        } else {
            return object.lock().get();
        }
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
class Delegate : public DelegateBase,
                 public DelegateOperations<Delegate<Result, Args...>, VornPrivate::ResultOrVoid<Result>, Args...> {
    static_assert(!std::is_function_v<Result>, "write Delegate<Result, Args...> and not Delegate<Result(Args...)>");

public:
    /// An empty delegate.
    Delegate() = default;
    Delegate(std::nullptr_t) {}
    Delegate(const Delegate&) = default;
    Delegate(Delegate&& other) noexcept : DelegateBase() { swap(other); }

    /// Binds a function or a callable; see `bindCallable`.
    template <class Callable, std::enable_if_t<VornPrivate::isConvertedCallable<Callable>(), int> = 0>
    Delegate(Callable&& callable) : Delegate(Delegate::bindCallable(std::forward<Callable>(callable))) {}

    /// Copies the binding of a delegate of the same signature that is written with `void`.
    template <class Void, std::enable_if_t<std::is_void_v<Void> && sizeof...(Args) == 0, int> = 0>
    Delegate(const Delegate<Result, Void>& other) : DelegateBase(other.getPOD()) {}

    /// Copies the binding with a reference to its target, and releases the previous target.
    Delegate& operator=(const Delegate& other) {
        replaceRecord(other.getPOD());
        return *this;
    }

    /// Takes over the binding of `other`, which is empty afterwards, and releases the previous target.
    Delegate& operator=(Delegate&& other) noexcept {
        Delegate(std::move(other)).swap(*this);
        return *this;
    }

    /// The same as the assignment.
    void rebind(const Delegate& other) { replaceRecord(other.getPOD()); }

    /// Releases the target. The delegate is empty afterwards.
    void reset() { Delegate().swap(*this); }

    void swap(Delegate& other) noexcept { std::swap(m_pod, other.m_pod); }
    friend void swap(Delegate& a, Delegate& b) noexcept { a.swap(b); }

    /// Returns true for the same binding of the same object, and for two empty delegates.
    friend bool operator==(const Delegate& a, const Delegate& b) {
        return sameDelegate(a.m_pod, b.m_pod) || (a.isNull() && b.isNull());
    }
    friend bool operator!=(const Delegate& a, const Delegate& b) { return !(a == b); }

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
    /// This also affects code that assigns internally, such as std::swap and `std::vector::erase`. `Delegate<void>` has
    /// none of this.
    VORN_SURPRISE("counts references in reverse; use Delegate<void>, or a.rebind(b)")
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

namespace std {

/// The hash of the object and of the binding.
template <class Result, class... Args>
struct hash<Vorn::Delegate<Result, Args...>> {
    size_t operator()(const Vorn::Delegate<Result, Args...>& delegate) const noexcept {
        const Vorn::DelegatePOD& pod = delegate.getPOD();
        return hash<void*>()(pod.object) ^ (pod.typeInfo ? pod.typeInfo->hash_code() : 0);
    }
};

} // namespace std
