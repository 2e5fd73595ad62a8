// RuntimeType: type information in files that are compiled with -fno-rtti, too. Support of the delegates and shared
// pointers; not for direct use.
#pragma once

#include <type_traits>
#include <typeinfo>

#if !defined(__cpp_rtti)
#include <cxxabi.h>
#endif

namespace VornPrivate {

/// Returns the type information of T, which is the same one with and without RTTI, so that both kinds of files find the
/// listeners of each other. Compilers write it for every type that is thrown, also with -fno-rtti; the first call
/// throws and catches a T there.
template <class T>
const std::type_info* runtimeType() {
#if defined(__cpp_rtti)
    return &typeid(T);
#else
    static_assert(std::is_empty_v<T>, "a T is thrown");
    static const std::type_info* const type = []() -> const std::type_info* {
        try {
            throw T();
        } catch (...) {
            return abi::__cxa_current_exception_type();
        }
    }();
    return type;
#endif
}

/// True if `dynamicCast` compiles: with RTTI, or to a base.
#if defined(__cpp_rtti)
template <class From, class To>
inline constexpr bool IS_DYNAMIC_CAST = true;
#else
template <class From, class To>
inline constexpr bool IS_DYNAMIC_CAST = std::is_convertible_v<From*, To*>;
#endif

/// Returns `object` as a To, by `dynamic_cast`; null if it is none.
template <class To, class From>
To* dynamicCast(From* object) {
#if defined(__cpp_rtti)
    return dynamic_cast<To*>(object);
#else
    if constexpr (IS_DYNAMIC_CAST<From, To>) {
        return object;
    } else {
        return nullptr; // the caller has a static_assert
    }
#endif
}

} // namespace VornPrivate
