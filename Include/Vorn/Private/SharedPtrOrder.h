// SharedPtrOrder: comparisons, hash and output of shared pointers. Support of SharedPtr.h; not for direct use.
#pragma once

#include "Vorn/SharedObjects/SharedPtr.h"

#include <cstddef>
#include <iosfwd>
#include <type_traits>
#include <typeindex> // std::hash of pointers

namespace VornPrivate {

/// The type as which two pointers are compared; no type if they cannot be compared.
template <class T, class U>
using CommonPointer = std::common_type_t<typename Vorn::SharedPtr<T>::Element*, U*>;

template <class T, class U>
using CommonElement = CommonPointer<T, typename Vorn::SharedPtr<U>::Element>;

} // namespace VornPrivate

namespace Vorn {

// Pointers are compared by the address in them, also with raw pointers. An order is that of the addresses; null comes
// first.

template <class T, class U, class = VornPrivate::CommonElement<T, U>>
bool operator==(const SharedPtr<T>& a, const SharedPtr<U>& b) noexcept {
    return a.get() == b.get();
}
template <class T, class U, class = VornPrivate::CommonElement<T, U>>
bool operator!=(const SharedPtr<T>& a, const SharedPtr<U>& b) noexcept {
    return !(a == b);
}
template <class T, class U, class Common = VornPrivate::CommonElement<T, U>>
bool operator<(const SharedPtr<T>& a, const SharedPtr<U>& b) noexcept {
    return VornPrivate::isBefore(static_cast<Common>(a.get()), static_cast<Common>(b.get()));
}
template <class T, class U, class = VornPrivate::CommonElement<T, U>>
bool operator>(const SharedPtr<T>& a, const SharedPtr<U>& b) noexcept {
    return b < a;
}
template <class T, class U, class = VornPrivate::CommonElement<T, U>>
bool operator<=(const SharedPtr<T>& a, const SharedPtr<U>& b) noexcept {
    return !(b < a);
}
template <class T, class U, class = VornPrivate::CommonElement<T, U>>
bool operator>=(const SharedPtr<T>& a, const SharedPtr<U>& b) noexcept {
    return !(a < b);
}

template <class T, class U, class = VornPrivate::CommonPointer<T, U>>
bool operator==(const SharedPtr<T>& a, U* b) noexcept {
    return a.get() == b;
}
template <class T, class U, class = VornPrivate::CommonPointer<T, U>>
bool operator==(U* a, const SharedPtr<T>& b) noexcept {
    return a == b.get();
}
template <class T, class U, class = VornPrivate::CommonPointer<T, U>>
bool operator!=(const SharedPtr<T>& a, U* b) noexcept {
    return a.get() != b;
}
template <class T, class U, class = VornPrivate::CommonPointer<T, U>>
bool operator!=(U* a, const SharedPtr<T>& b) noexcept {
    return a != b.get();
}

template <class T>
bool operator==(const SharedPtr<T>& pointer, std::nullptr_t) noexcept {
    return !pointer.get();
}
template <class T>
bool operator==(std::nullptr_t, const SharedPtr<T>& pointer) noexcept {
    return !pointer.get();
}
template <class T>
bool operator!=(const SharedPtr<T>& pointer, std::nullptr_t) noexcept {
    return pointer.get();
}
template <class T>
bool operator!=(std::nullptr_t, const SharedPtr<T>& pointer) noexcept {
    return pointer.get();
}
template <class T>
bool operator<(const SharedPtr<T>&, std::nullptr_t) noexcept {
    return false;
}
template <class T>
bool operator<(std::nullptr_t, const SharedPtr<T>& pointer) noexcept {
    return pointer.get();
}
template <class T>
bool operator>(const SharedPtr<T>& pointer, std::nullptr_t) noexcept {
    return pointer.get();
}
template <class T>
bool operator>(std::nullptr_t, const SharedPtr<T>&) noexcept {
    return false;
}
template <class T>
bool operator<=(const SharedPtr<T>& pointer, std::nullptr_t) noexcept {
    return !pointer.get();
}
template <class T>
bool operator<=(std::nullptr_t, const SharedPtr<T>&) noexcept {
    return true;
}
template <class T>
bool operator>=(const SharedPtr<T>&, std::nullptr_t) noexcept {
    return true;
}
template <class T>
bool operator>=(std::nullptr_t, const SharedPtr<T>& pointer) noexcept {
    return !pointer.get();
}

/// Orders SharedPtr and WeakPtr by owner, for sets and maps: `std::map<WeakPtr<Door>, int, OwnerLess>`. An entry stays
/// where it is after its object has been destroyed, and is found by pointers of either kind.
struct OwnerLess {
    using is_transparent = void;

    template <class A, class B>
    bool operator()(const A& a, const B& b) const noexcept {
        return a.ownerBefore(b);
    }
};

/// Writes the address of the object; include `<ostream>`.
template <class Char, class Traits, class T>
std::basic_ostream<Char, Traits>& operator<<(std::basic_ostream<Char, Traits>& stream, const SharedPtr<T>& pointer) {
    return stream << static_cast<const void*>(
               const_cast<const std::remove_volatile_t<typename SharedPtr<T>::Element>*>(pointer.get()));
}

} // namespace Vorn

namespace std {

/// The hash of the address.
template <class T>
struct hash<Vorn::SharedPtr<T>> {
    size_t operator()(const Vorn::SharedPtr<T>& pointer) const noexcept {
        return hash<typename Vorn::SharedPtr<T>::Element*>()(pointer.get());
    }
};

} // namespace std
