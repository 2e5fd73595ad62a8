/// @file
/// SharedPtr: a counted pointer that owns its object together with its copies.
///
///     const auto door = Vorn::makeShared<Door>("oak");
///     const Vorn::SharedPtr<Door> same = door;    // two uses; the last one to be destroyed deletes the door
///
/// One object has one control block. An object whose type derives from SharedObjectBase stores it, so
/// `SharedPtr<T>(this)` shares the object. Alternatives: WeakPtr, which does not keep its object alive; a plain
/// reference for a parameter that is not kept.
///
/// Cost: four words; copying and destroying are one atomic add each. The first pointer to an object allocates its
/// control block of 88 bytes (56 in a 32-bit process).
///
/// Failures: only the first pointer to an object allocates. If that throws `std::bad_alloc`, the object is destroyed as
/// by its last use, since the pointer was to own it, and nothing is leaked.
///
/// Depth: an object is destroyed inside the release of its last use, so the destructors of nested objects run inside
/// each other. If less than a quarter of the thread's stack is left (of a large stack, less than 256 KiB), a release
/// may only queue the object. Its destructor then begins after the one that released it has ended, but before the
/// outermost release returns. Destructors begin in the same order in both cases. Therefore structures of any depth can
/// be destroyed.
/// @warning Near the end of the stack, a destructor must not access what the destructors of its owners destroy.
/// @warning On the stack of a coroutine, whose bounds the thread does not know, the recursion is not bounded.
///
/// Threads: many threads may copy and destroy pointers to one object. A thread must not change a pointer while another
/// thread uses it. If weak pointers are destroyed or replaced by other threads than the one that releases the last use,
/// request a thread-safe control block when the object is first shared.
#pragma once

#include "Vorn/SharedObjects/SharedRecord.h"

#include <cstddef>
#include <cstdint>
#include <typeindex> // std::hash of pointers
#include <utility>

namespace Vorn {

template <class T>
class WeakPtr;

/// Kind of the control block of an object, chosen when the object is first shared.
enum RefCounterThreading {
    REF_COUNTER_SINGLE_THREAD = 0, ///< a release does not lock
    REF_COUNTER_THREADSAFE = 1     ///< different threads may release the last use and weak counts
};

/// Returns true if an `Element*` can become a `SharedPtr<T>`. Elements of an array keep their type, possibly const.
template <class Element, class T>
constexpr bool isSharedSource() {
    using Target = std::remove_extent_t<T>;
    return std::is_convertible_v<Element*, Target*> &&
           (!std::is_array_v<T> || std::is_same_v<std::remove_cv_t<Element>, std::remove_cv_t<Target>>);
}

/// Returns true if a `SharedPtr<From>` can become a `SharedPtr<To>`.
template <class From, class To>
constexpr bool isSharedConvertible() {
    if constexpr (std::is_array_v<From> != std::is_array_v<To>) {
        return false;
    } else {
        return isSharedSource<std::remove_extent_t<From>, To>();
    }
}

/// A pointer to a shared T, or with `T[]` to a shared array, which is destroyed with `delete[]`.
template <class T>
class SharedPtr final : public RefCounterWrapper, public PtrTypeBase {
public:
    using Element = std::remove_extent_t<T>;

    /// A null pointer.
    SharedPtr() noexcept : SharedPtr(nullptr, static_cast<Element*>(nullptr)) {}
    SharedPtr(std::nullptr_t) noexcept : SharedPtr() {}

    /// Shares `object`; null gives a null pointer. If the object stores a control block, adds a use to it. Otherwise
    /// takes ownership: creates the control block, and the last use destroys the object with `delete`.
    ///
    /// Throws `std::bad_alloc` if the control block cannot be allocated; the object is destroyed then.
    /// Throws `Exception<1>`: "isAlive : the object is being destroyed!" in the destructor of the object.
    /// Throws `Exception<1>`: "counter->m_isThreadsafe || !isThreadsafe : the object's record is not thread-safe!" if a
    /// thread-safe control block is requested and the object has another one.
    /// Throws `Exception<1>`: "whole && whole == sharedObject : an interface's object must be shared or a
    /// DynamicObject!" for an interface to any other object.
    /// @warning The first pointer owns the object. If it is created in the constructor of the object, or from an object
    ///     on the stack, destroying it deletes that object.
    /// @warning If the type does not derive from SharedObjectBase, create one SharedPtr and copy it. A second one from
    ///     the raw pointer deletes the object again.
    template <class U, std::enable_if_t<isSharedSource<U, T>(), int> = 0>
    explicit SharedPtr(U* object, RefCounterThreading threading = REF_COUNTER_SINGLE_THREAD) : SharedPtr() {
        if (!object) return;
        if constexpr (std::is_array_v<T>) {
            pRefCounter = VornPrivate::createRefCounter(VornPrivate::untyped(object), &VornPrivate::deleteArray<U>,
                                                        true, threading == REF_COUNTER_THREADSAFE, nullptr,
                                                        VornPrivate::AfterLastUse::DEAD);
        } else {
            pRefCounter = VornPrivate::getOrCreateRefCounter(object, threading == REF_COUNTER_THREADSAFE);
        }
        m_object = object;
    }

    /// Shares `object`, which the last use destroys with `deleter(object)`; null gives a null pointer. The deleter is a
    /// function or a lambda without captures. If it keeps the object alive, the object can be shared again.
    ///
    /// Throws `std::bad_alloc` if the control block cannot be allocated; `deleter(object)` has been called then.
    /// Throws `Exception<1>`: "deleter : null deleter!".
    /// Throws `Exception<1>`: "!sharedObject || !getRefCounter(sharedObject) : the object is shared already!".
    /// @warning A deleter that destroys the object: do not create a SharedPtr in the object's destructor. It is not
    ///     refused there and destroys the object again.
    template <class U, std::enable_if_t<isSharedSource<U, T>(), int> = 0>
    SharedPtr(U* object, RefCounter::Deleter deleter, RefCounterThreading threading = REF_COUNTER_SINGLE_THREAD)
        : SharedPtr() {
        if (!object) return;
        SharedObjectBase* sharedObject = nullptr;
        if constexpr (!std::is_array_v<T>) sharedObject = VornPrivate::sharedObjectOf(object);
        VORN_ASSERT(deleter, "null deleter!");
        VORN_ASSERT(!sharedObject || !getRefCounter(sharedObject), "the object is shared already!");
        pRefCounter = VornPrivate::createRefCounter(VornPrivate::untyped(object), deleter, std::is_array_v<T>,
                                                    threading == REF_COUNTER_THREADSAFE, sharedObject,
                                                    VornPrivate::AfterLastUse::RENEW);
        m_object = object;
    }

    SharedPtr(const SharedPtr& other) noexcept : SharedPtr(other.pRefCounter, other.m_object) { addUse(); }

    SharedPtr(SharedPtr&& other) noexcept : SharedPtr(other.pRefCounter, other.m_object) { other.forget(); }

    /// Shares the object as one of its bases or interfaces, with the same control block.
    template <class U, std::enable_if_t<isSharedConvertible<U, T>(), int> = 0>
    SharedPtr(const SharedPtr<U>& other) noexcept : SharedPtr(other.pRefCounter, other.m_object) {
        addUse();
    }

    template <class U, std::enable_if_t<isSharedConvertible<U, T>(), int> = 0>
    SharedPtr(SharedPtr<U>&& other) noexcept : SharedPtr(other.pRefCounter, other.m_object) {
        other.forget();
    }

    ~SharedPtr() override {
        if (pRefCounter) releaseUseCount();
    }

    SharedPtr& operator=(const SharedPtr& other) noexcept {
        SharedPtr(other).swap(*this);
        return *this;
    }

    SharedPtr& operator=(SharedPtr&& other) noexcept {
        SharedPtr(std::move(other)).swap(*this);
        return *this;
    }

    /// Releases the use and makes the pointer null.
    void reset() override { SharedPtr().swap(*this); }

    void swap(SharedPtr& other) noexcept {
        std::swap(pRefCounter, other.pRefCounter);
        std::swap(m_object, other.m_object);
    }

    Element* get() const noexcept { return m_object; } ///< Returns the object or null.
    explicit operator bool() const noexcept { return m_object; }

    /// Returns the object.
    ///
    /// Throws `Exception<1>`: "m_object : null pointer!".
    std::add_lvalue_reference_t<Element> operator*() const {
        VORN_ASSERT(m_object, "null pointer!");
        return *m_object;
    }

    /// Returns the object.
    ///
    /// Throws `Exception<1>`: "m_object : null pointer!".
    Element* operator->() const {
        VORN_ASSERT(m_object, "null pointer!");
        return m_object;
    }

    /// Returns an element of an array.
    ///
    /// Throws `Exception<1>`: "m_object : null pointer!".
    /// @warning The length of the array is not known, so `index` is not checked.
    template <class Array = T, std::enable_if_t<std::is_array_v<Array>, int> = 0>
    std::add_lvalue_reference_t<Element> operator[](std::size_t index) const {
        VORN_ASSERT(m_object, "null pointer!");
        return m_object[index];
    }

private:
    template <class U>
    friend class SharedPtr;
    template <class U>
    friend class WeakPtr;
    template <class To, class From>
    friend SharedPtr<To> staticSharedCast(const SharedPtr<From>& pointer);
    template <class To, class From>
    friend SharedPtr<To> dynamicSharedCast(const SharedPtr<From>& pointer);
    template <class U>
    friend RefCounter* sharedRecord(const SharedPtr<U>& pointer);

    // Takes ownership of a use that has been added.
    SharedPtr(RefCounter* counter, Element* object) noexcept : m_object(object) { pRefCounter = counter; }

    void addUse() noexcept {
        if (pRefCounter) VornPrivate::addUse(pRefCounter);
    }

    void forget() noexcept {
        pRefCounter = nullptr;
        m_object = nullptr;
    }

    Element* m_object; // the object as an Element; null exactly if there is no control block
};

/// Creates a T and shares it.
///
/// Throws what the constructor throws, and `std::bad_alloc`; no object is left then.
template <class T, class... Args>
SharedPtr<T> makeShared(Args&&... args) {
    return SharedPtr<T>(new T(std::forward<Args>(args)...));
}

/// Creates a T and shares it with a thread-safe control block. Throws as `makeShared`.
template <class T, class... Args>
SharedPtr<T> makeSharedThreadsafe(Args&&... args) {
    return SharedPtr<T>(new T(std::forward<Args>(args)...), REF_COUNTER_THREADSAFE);
}

/// Shares the same object as a To, by `static_cast`.
/// @warning As with `static_cast`, the object must be a To.
template <class To, class From>
SharedPtr<To> staticSharedCast(const SharedPtr<From>& pointer) {
    SharedPtr<To> result(pointer.pRefCounter, static_cast<To*>(pointer.get()));
    result.addUse();
    return result;
}

/// Shares the same object as a To, by `dynamic_cast`; null if it is none.
template <class To, class From>
SharedPtr<To> dynamicSharedCast(const SharedPtr<From>& pointer) {
    To* const object = dynamic_cast<To*>(pointer.get());
    SharedPtr<To> result(object ? pointer.pRefCounter : nullptr, object);
    result.addUse();
    return result;
}

/// Returns the control block of `pointer`, for bindings that count in it themselves; null if there is none.
template <class T>
RefCounter* sharedRecord(const SharedPtr<T>& pointer) {
    return pointer.pRefCounter;
}

// Pointers are compared by address.

template <class T, class U>
bool operator==(const SharedPtr<T>& a, const SharedPtr<U>& b) noexcept {
    return a.get() == b.get();
}

template <class T, class U>
bool operator!=(const SharedPtr<T>& a, const SharedPtr<U>& b) noexcept {
    return a.get() != b.get();
}

template <class T>
bool operator<(const SharedPtr<T>& a, const SharedPtr<T>& b) noexcept {
    return reinterpret_cast<std::uintptr_t>(a.get()) < reinterpret_cast<std::uintptr_t>(b.get());
}

template <class T>
bool operator==(const SharedPtr<T>& pointer, std::nullptr_t) noexcept {
    return !pointer.get();
}

template <class T>
bool operator!=(const SharedPtr<T>& pointer, std::nullptr_t) noexcept {
    return pointer.get();
}

template <class T>
bool operator==(std::nullptr_t, const SharedPtr<T>& pointer) noexcept {
    return !pointer.get();
}

template <class T>
bool operator!=(std::nullptr_t, const SharedPtr<T>& pointer) noexcept {
    return pointer.get();
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
