/// @file
/// The bindings of delegates. Support of Delegate.h; not for direct use.
///
/// Each binding is a type, which identifies it, with a function `call` that recovers the target from the two pointers
/// of a DelegatePOD.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/Private/RuntimeType.h"
#include "Vorn/SharedObjects/DelegateBase.h"
#include "Vorn/SharedObjects/SharedRecord.h"

#include <cstring>
#include <optional>
#include <type_traits>
#include <utility>

namespace VornPrivate {

template <class T>
struct TypeIdentity {
    using Type = T;
};

template <class Class, class Member>
TypeIdentity<Class> classOfMember(Member Class::*);

/// True for pointers and smart pointers.
template <class Object, class = void>
inline constexpr bool HAS_DEREFERENCE = false;
template <class Object>
inline constexpr bool HAS_DEREFERENCE<Object, std::void_t<decltype(*std::declval<Object>())>> = true;

/// Returns what a pointer to a member is applied to: the object itself, or what a pointer or a `std::reference_wrapper`
/// refers to.
template <class Class, class Object>
decltype(auto) memberOwner(Object&& object) {
    if constexpr (!std::is_base_of_v<Class, std::decay_t<Object>> && HAS_DEREFERENCE<Object>) {
        return *std::forward<Object>(object);
    } else if constexpr (!std::is_base_of_v<Class, std::decay_t<Object>>) {
        return object.get();
    } else if constexpr (std::is_const_v<std::remove_reference_t<Object>>) {
        return static_cast<const Class&>(object);
    } else if constexpr (std::is_lvalue_reference_v<Object>) {
        return static_cast<Class&>(object); // in the call itself, g++ reports a violation of the aliasing rules
    } else {
        return static_cast<Class&&>(object);
    }
}

template <class Method, class Object, class... Args>
decltype(auto) invokeMember(Method method, Object&& object, Args&&... args) {
    using Class = typename decltype(classOfMember(method))::Type;
    if constexpr (std::is_member_function_pointer_v<Method>) {
        return (memberOwner<Class>(std::forward<Object>(object)).*method)(std::forward<Args>(args)...);
    } else {
        return (memberOwner<Class>(std::forward<Object>(object)).*method);
    }
}

/// Calls a function, a callable, or a member of the first argument; `std::invoke` without the header <functional>.
template <class Function, class... Args>
decltype(auto) invokeAny(Function&& function, Args&&... args) {
    if constexpr (std::is_member_pointer_v<std::decay_t<Function>>) {
        return invokeMember(function, std::forward<Args>(args)...);
    } else {
        return std::forward<Function>(function)(std::forward<Args>(args)...);
    }
}

/// A list of types.
template <class... Types>
struct TypeList {};

/// The list Taken and the types that follow it, without the last one.
template <class Taken, class... Left>
struct WithoutLast;
template <class... Taken, class Last>
struct WithoutLast<TypeList<Taken...>, Last> {
    using Type = TypeList<Taken...>;
};
template <class... Taken, class Next, class... Left>
struct WithoutLast<TypeList<Taken...>, Next, Left...> : WithoutLast<TypeList<Taken..., Next>, Left...> {};

/// The longest list of first Args that Function can be called with, if its result converts to Result. `value` is true
/// if there is one.
template <class Result, class Function, class List>
struct Accepted;
template <class Result, class Function>
struct Accepted<Result, Function, TypeList<>> : std::is_invocable_r<Result, Function> {
    using Type = TypeList<>;
};
template <class Result, class Function, class First, class... Args>
struct Accepted<Result, Function, TypeList<First, Args...>> {
    using TakesAll = std::is_invocable_r<Result, Function, First, Args...>;
    using Shorter = Accepted<Result, Function, typename WithoutLast<TypeList<>, First, Args...>::Type>;
    static constexpr bool value = std::disjunction_v<TakesAll, Shorter>;
    using Type = typename std::conditional_t<TakesAll::value, TypeIdentity<TypeList<First, Args...>>, Shorter>::Type;
};

template <class Result, class Used>
struct FirstArguments;

/// Calls a function with the first arguments, of types Used, and ignores the others.
template <class Result, class... Used>
struct FirstArguments<Result, TypeList<Used...>> {
    template <class Function, class... Rest>
    static Result call(Function&& function, Used&&... used, Rest&&...) {
        if constexpr (std::is_void_v<Result>) {
            static_cast<void>(invokeAny(std::forward<Function>(function), std::forward<Used>(used)...));
        } else {
            return invokeAny(std::forward<Function>(function), std::forward<Used>(used)...);
        }
    }
};

template <class Signature>
struct Invocation;

/// Calls a function or a callable with as many of the first arguments as it takes, and ignores its result if Result is
/// void.
template <class Result, class... Args>
struct Invocation<Result(Args...)> {
    template <class Function>
    static Result call(Function&& function, Args&&... args) {
        using Used = typename Accepted<Result, Function, TypeList<Args...>>::Type;
        return FirstArguments<Result, Used>::call(std::forward<Function>(function), std::forward<Args>(args)...);
    }
};

/// A method and its object as one callable.
template <auto Method, class Object>
struct MethodOf {
    template <class... Args>
    std::invoke_result_t<decltype(Method), Object&, Args...> operator()(Args&&... args) const {
        return invokeAny(Method, object, std::forward<Args>(args)...);
    }

    Object& object;
};

/// Returns the result of a call without a target.
template <class Result>
Result emptyResult() {
    if constexpr (!std::is_void_v<Result>) return Result();
}

/// The result of `tryCall`: a bool if Result is void, a pointer if it is a reference, otherwise an optional.
template <class Result>
struct TriedCall {
    using Type = std::optional<Result>;
};
template <>
struct TriedCall<void> {
    using Type = bool;
};
template <class Result>
struct TriedCall<Result&> {
    using Type = Result*;
};

/// Keeps a weakly bound target alive during one call, unless it has been destroyed.
class TargetHold {
public:
    explicit TargetHold(void* context) : m_counter(static_cast<Vorn::RefCounter*>(context)) {
        if (!tryAddUse(m_counter)) m_counter = nullptr;
    }
    TargetHold(const TargetHold&) = delete;
    TargetHold& operator=(const TargetHold&) = delete;
    ~TargetHold() {
        if (m_counter) Vorn::releaseUseCount(m_counter);
    }

    explicit operator bool() const { return m_counter; }

private:
    Vorn::RefCounter* m_counter; // null if the target has been destroyed
};

/// Casts a function to the type in which DelegatePOD stores it.
template <class Function>
Vorn::DelegateCaller eraseCaller(Function* function) {
    return reinterpret_cast<Vorn::DelegateCaller>(reinterpret_cast<void (*)()>(function));
}

/// Returns the function of `pod` in its own type.
template <class Result, class... Args>
auto typedCaller(const Vorn::DelegatePOD& pod) {
    return reinterpret_cast<Result (*)(void*, void*, Args...)>(reinterpret_cast<void (*)()>(pod.caller));
}

/// Returns true if the target is bound weakly and has been destroyed.
inline bool isExpired(const Vorn::DelegatePOD& pod) {
    return pod.contextAddRef == &Vorn::delegateAddWeakRef && pod.context &&
           static_cast<const Vorn::RefCounter*>(pod.context)->m_useCount.load(std::memory_order_relaxed) < 1;
}

template <class Binding>
Vorn::DelegatePOD bindingRecord(void* object, void* context, Vorn::DelegateContextFunction contextAddRef) {
    return {object, context, eraseCaller(&Binding::call), contextAddRef, runtimeType<typename Binding::Identity>()};
}

/// Returns true if `object` is not an address but holds the bytes of a callable.
inline bool isValueBinding(const Vorn::DelegatePOD& pod) { return pod.context && !pod.contextAddRef; }

template <class Signature, class Callable>
struct ValueBinding;

template <class Signature, auto Function>
struct FunctionBinding;

/// A pointer to a function without the `noexcept` in its type; any other type as it is.
template <class Callable>
struct WithoutNoexcept : TypeIdentity<Callable> {};
template <class Result, class... Args>
struct WithoutNoexcept<Result (*)(Args...) noexcept> : TypeIdentity<Result (*)(Args...)> {};
template <class Result, class... Args>
struct WithoutNoexcept<Result (*)(Args..., ...) noexcept> : TypeIdentity<Result (*)(Args..., ...)> {};

/// A function that is a constant. `object` is its address, as in the binding of a pointer to it, which is the same one.
template <class Result, class... Args, auto Function>
struct FunctionBinding<Result(Args...), Function> {
    using Identity = ValueBinding<Result(Args...), typename WithoutNoexcept<std::decay_t<decltype(Function)>>::Type>;
    static Result call(void*, void*, Args... args) {
        return Invocation<Result(Args...)>::call(Function, std::forward<Args>(args)...);
    }
};

template <class Signature, class Object, auto Method>
struct MethodBinding;

/// A member function of an object that is not counted.
template <class Result, class... Args, class Object, auto Method>
struct MethodBinding<Result(Args...), Object, Method> {
    using Identity = MethodBinding;
    static Result call(void* object, void*, Args... args) {
        return Invocation<Result(Args...)>::call(MethodOf<Method, Object>{*static_cast<Object*>(object)},
                                                 std::forward<Args>(args)...);
    }
};

template <class Signature, class Object, auto Method>
struct SharedMethodBinding;

/// A member function of an object that the delegate keeps alive. `context` is its control block.
template <class Result, class... Args, class Object, auto Method>
struct SharedMethodBinding<Result(Args...), Object, Method> {
    using Identity = SharedMethodBinding;
    static Result call(void* object, void* context, Args... args) {
        return MethodBinding<Result(Args...), Object, Method>::call(object, context, std::forward<Args>(args)...);
    }
};

template <class Signature, class Object, auto Method>
struct WeakMethodBinding;

/// A member function of an object that the delegate does not keep alive. `context` is its control block, and `object`
/// is read only while a use is held.
template <class Result, class... Args, class Object, auto Method>
struct WeakMethodBinding<Result(Args...), Object, Method> {
    using Identity = WeakMethodBinding;
    static Result call(void* object, void* context, Args... args) {
        const TargetHold hold(context);
        if constexpr (std::is_void_v<Result> || std::is_default_constructible_v<Result>) {
            if (!hold) return emptyResult<Result>();
        } else {
            // Only called while a use is held.
            VORN_INTERNAL_ASSERT(hold, "the target is dead!", "Vorn::Delegate::tryCall");
        }
        return MethodBinding<Result(Args...), Object, Method>::call(object, context, std::forward<Args>(args)...);
    }
};

/// A callable of at most the size of a pointer: `object` holds its bytes.
template <class Result, class... Args, class Callable>
struct ValueBinding<Result(Args...), Callable> {
    using Identity = ValueBinding<Result(Args...), typename WithoutNoexcept<Callable>::Type>;

    /// A callable that a call changes must not be called as a copy.
    static constexpr bool FITS = sizeof(Callable) <= sizeof(void*) && std::is_trivially_copyable_v<Callable> &&
                                 Accepted<Result, const Callable&, TypeList<Args...>>::value;

    static Vorn::DelegatePOD bind(const Callable& callable) {
        void* object = nullptr;
        if constexpr (!std::is_empty_v<Callable>) std::memcpy(&object, &callable, sizeof(Callable));
        static char mark; // any address: isValueBinding
        return bindingRecord<ValueBinding>(object, &mark, nullptr);
    }

    static Result call(void* object, void*, Args... args) {
        union Storage {
            Storage() {}
            Callable callable; // need not have a default constructor
        } storage;
        std::memcpy(static_cast<void*>(&storage.callable), &object, sizeof(Callable));
        const Callable& callable = storage.callable;
        return Invocation<Result(Args...)>::call(callable, std::forward<Args>(args)...);
    }
};

template <class Signature, class Callable>
struct HeldBinding;

/// A callable of any kind, which all copies of the delegate share. `context` is its control block.
template <class Result, class... Args, class Callable>
struct HeldBinding<Result(Args...), Callable> {
    using Identity = HeldBinding;
    static Result call(void* object, void*, Args... args) {
        return Invocation<Result(Args...)>::call(*static_cast<Callable*>(object), std::forward<Args>(args)...);
    }
};

} // namespace VornPrivate
