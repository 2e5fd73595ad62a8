/// @file
/// The bindings of delegates. Support of Delegate.h; not for direct use.
///
/// Each binding is a type, which identifies it, with a function `call` that recovers the target from the two pointers
/// of a DelegatePOD.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/SharedObjects/DelegateBase.h"
#include "Vorn/SharedObjects/SharedRecord.h"

#include <cstring>
#include <optional>
#include <type_traits>
#include <utility>

namespace VornPrivate {

/// Calls a function or a callable, and ignores its result if Result is void.
template <class Result, class Function, class... Args>
Result invokeAs(Function&& function, Args&&... args) {
    if constexpr (std::is_void_v<Result>) {
        static_cast<void>(std::forward<Function>(function)(std::forward<Args>(args)...));
    } else {
        return std::forward<Function>(function)(std::forward<Args>(args)...);
    }
}

template <class T>
struct TypeIdentity {
    using Type = T;
};

template <class Class, class Member>
TypeIdentity<Class> classOfMember(Member Class::*);

/// Calls a member function of `object`, or a function that takes `object` first.
template <class Result, auto Method, class Object, class... Args>
Result invokeOn(Object& object, Args&&... args) {
    if constexpr (!std::is_member_function_pointer_v<decltype(Method)>) {
        return invokeAs<Result>(Method, object, std::forward<Args>(args)...);
    } else {
        // Converted here and not in the call, where g++ reports a violation of the aliasing rules.
        using Class = typename decltype(classOfMember(Method))::Type;
        std::conditional_t<std::is_const_v<Object>, const Class, Class>& base = object;
        if constexpr (std::is_void_v<Result>) {
            static_cast<void>((base.*Method)(std::forward<Args>(args)...));
        } else {
            return (base.*Method)(std::forward<Args>(args)...);
        }
    }
}

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
    return {object, context, eraseCaller(&Binding::call), contextAddRef, &typeid(Binding)};
}

template <class Signature, auto Function>
struct FunctionBinding;

/// A function that is a constant. `object` is its address, so that most comparisons end early.
template <class Result, class... Args, auto Function>
struct FunctionBinding<Result(Args...), Function> {
    static Result call(void*, void*, Args... args) { return invokeAs<Result>(Function, std::forward<Args>(args)...); }
};

template <class Signature, class Object, auto Method>
struct MethodBinding;

/// A member function of an object that is not counted.
template <class Result, class... Args, class Object, auto Method>
struct MethodBinding<Result(Args...), Object, Method> {
    static Result call(void* object, void*, Args... args) {
        return invokeOn<Result, Method>(*static_cast<Object*>(object), std::forward<Args>(args)...);
    }
};

template <class Signature, class Object, auto Method>
struct SharedMethodBinding;

/// A member function of an object that the delegate keeps alive. `context` is its control block.
template <class Result, class... Args, class Object, auto Method>
struct SharedMethodBinding<Result(Args...), Object, Method> {
    static Result call(void* object, void*, Args... args) {
        return invokeOn<Result, Method>(*static_cast<Object*>(object), std::forward<Args>(args)...);
    }
};

template <class Signature, class Object, auto Method>
struct WeakMethodBinding;

/// A member function of an object that the delegate does not keep alive. `context` is its control block, and `object`
/// is read only while a use is held.
template <class Result, class... Args, class Object, auto Method>
struct WeakMethodBinding<Result(Args...), Object, Method> {
    static Result call(void* object, void* context, Args... args) {
        const TargetHold hold(context);
        if constexpr (std::is_void_v<Result> || std::is_default_constructible_v<Result>) {
            if (!hold) return emptyResult<Result>();
        } else {
            // Only tryCall calls this, and it holds a use.
            VORN_INTERNAL_ASSERT(hold, "the target is dead!", "Vorn::Delegate::tryCall");
        }
        return invokeOn<Result, Method>(*static_cast<Object*>(object), std::forward<Args>(args)...);
    }
};

template <class Signature, class Callable>
struct ValueBinding;

/// A callable of at most the size of a pointer: `object` holds its bytes.
template <class Result, class... Args, class Callable>
struct ValueBinding<Result(Args...), Callable> {
    /// A callable that a call changes must not be called as a copy.
    static constexpr bool FITS = sizeof(Callable) <= sizeof(void*) && std::is_trivially_copyable_v<Callable> &&
                                 std::is_invocable_v<const Callable&, Args...>;

    static void* pack(const Callable& callable) {
        void* object = nullptr;
        if constexpr (!std::is_empty_v<Callable>) std::memcpy(&object, &callable, sizeof(Callable));
        return object;
    }

    static Result call(void* object, void*, Args... args) {
        union Storage {
            Storage() {}
            Callable callable; // need not have a default constructor
        } storage;
        std::memcpy(static_cast<void*>(&storage.callable), &object, sizeof(Callable));
        const Callable& callable = storage.callable;
        return invokeAs<Result>(callable, std::forward<Args>(args)...);
    }
};

template <class Signature, class Callable>
struct HeldBinding;

/// A callable of any kind, which all copies of the delegate share. `context` is its control block.
template <class Result, class... Args, class Callable>
struct HeldBinding<Result(Args...), Callable> {
    static Result call(void* object, void*, Args... args) {
        return invokeAs<Result>(*static_cast<Callable*>(object), std::forward<Args>(args)...);
    }
};

} // namespace VornPrivate
