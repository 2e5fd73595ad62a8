// SharedPtr: counted pointer to an object that lives as long as somebody holds it.
//
// One object has one record, whether its type derives from SharedObjectBase or not. A type that does remembers the
// record, so SharedPtr<T>(this) shares it. Take makeShared to make an object and its first pointer, WeakPtr for a
// pointer that does not keep its object, a plain reference for a parameter that keeps nothing.
//
// Cost: four words; copying and destroying are one locked add each. Making the first pointer allocates the record, of
// 88 bytes (56 in a 32-bit process), besides the object.
//
// Depth: an object is destroyed inside the release of its last reference, so the destructors of nested objects run
// inside each other. If less than a quarter of the thread's stack (at most 256 KiB) is left, a release may only note the
// object: its destructor then begins after the one that released it has ended, still before the outermost release
// returns. The order in which destructors begin stays the same. So structures of any depth can be destroyed, but there a
// destructor must not use what the destructors around it are about to destroy. On the stack of a coroutine, which the
// thread does not know, the recursion is not bounded.
//
// Threads: pointers to one object may be copied and destroyed in many threads; one pointer may not be changed while
// another thread uses it. Where weak pointers are destroyed or replaced in other threads than the last use, ask for a
// thread-safe record when the object is first shared.
#pragma once

#include "Vorn/SharedObjects/SharedRecord.h"

#include <cstddef>
#include <cstdint>
#include <typeindex> // std::hash of pointers
#include <utility>

namespace Vorn {

template <class T>
class WeakPtr;

/// How a record is made; see SharedPtr.
enum RefCounterThreading {
    REF_COUNTER_SINGLE_THREAD = 0, ///< releases take no lock
    REF_COUNTER_THREADSAFE = 1     ///< last uses and weak counts may be released by different threads
};

/// True if a raw pointer to Element may be taken as a T. An array is taken only as what it is, possibly const.
template <class Element, class T>
constexpr bool isSharedSource() {
    using Target = std::remove_extent_t<T>;
    return std::is_convertible_v<Element*, Target*> &&
           (!std::is_array_v<T> || std::is_same_v<std::remove_cv_t<Element>, std::remove_cv_t<Target>>);
}

/// True if a pointer to a shared From may become one to a shared To.
template <class From, class To>
constexpr bool isSharedConvertible() {
    if constexpr (std::is_array_v<From> != std::is_array_v<To>) {
        return false;
    } else {
        return isSharedSource<std::remove_extent_t<From>, To>();
    }
}

/// Pointer to a shared T, or with T[] to an array of T that goes by `delete[]`.
template <class T>
class SharedPtr final : public RefCounterWrapper, public PtrTypeBase {
public:
    using Element = std::remove_extent_t<T>;

    SharedPtr() noexcept : SharedPtr(nullptr, static_cast<Element*>(nullptr)) {}
    SharedPtr(std::nullptr_t) noexcept : SharedPtr() {}

    /// Shares `object`; null gives a null pointer. An object that remembers its record joins it; any other object is
    /// taken over and goes by `delete` with the last use, also if no record can be made for it (`std::bad_alloc`).
    ///
    /// Raises `Exception<1>`: "isAlive : the object is being destroyed!" in the object's own destructor, and
    /// "counter->m_isThreadsafe || !isThreadsafe : the object's record is not thread-safe!" where that was asked for.
    /// An interface's object that has no record yet must be a DynamicObject.
    /// @warning The first pointer to an object owns it. Made in the object's own constructor, or of an object on the
    ///     stack, it deletes the object when it goes, or when no record can be made.
    /// @warning Of types that do not derive from SharedObjectBase make one SharedPtr and copy that: a second one made
    ///     from the raw pointer deletes the object again.
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

    /// Shares `object`, which goes by `deleter(object)` with the last use. The deleter is a function or a lambda
    /// without captures. An object that the deleter keeps alive may be shared anew.
    /// @warning So may one that it destroys, in its own destructor: a pointer made there destroys it again.
    ///
    /// Raises `Exception<1>`: "deleter : null deleter!", and "!sharedObject || !getRefCounter(sharedObject) : the
    /// object is shared already!".
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

    /// Shares the object as one of its bases or interfaces, in the same record.
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

    /// Gives up the object and becomes null.
    void reset() override { SharedPtr().swap(*this); }

    void swap(SharedPtr& other) noexcept {
        std::swap(pRefCounter, other.pRefCounter);
        std::swap(m_object, other.m_object);
    }

    Element* get() const noexcept { return m_object; } ///< the object or null
    explicit operator bool() const noexcept { return m_object; }

    /// The object. Raises `Exception<1>`, "m_object : null pointer!".
    std::add_lvalue_reference_t<Element> operator*() const {
        VORN_ASSERT(m_object, "null pointer!");
        return *m_object;
    }

    /// The object. Raises `Exception<1>`, "m_object : null pointer!".
    Element* operator->() const {
        VORN_ASSERT(m_object, "null pointer!");
        return m_object;
    }

    /// An element of an array. Raises `Exception<1>`, "m_object : null pointer!".
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

    // Takes over a use count that has been added.
    SharedPtr(RefCounter* counter, Element* object) noexcept : m_object(object) { pRefCounter = counter; }

    void addUse() noexcept {
        if (pRefCounter) VornPrivate::addUse(pRefCounter);
    }

    void forget() noexcept {
        pRefCounter = nullptr;
        m_object = nullptr;
    }

    Element* m_object; // the object as an Element; null exactly if there is no record
};

/// Makes a T and shares it.
template <class T, class... Args>
SharedPtr<T> makeShared(Args&&... args) {
    return SharedPtr<T>(new T(std::forward<Args>(args)...));
}

/// Makes a T and shares it, with a thread-safe record.
template <class T, class... Args>
SharedPtr<T> makeSharedThreadsafe(Args&&... args) {
    return SharedPtr<T>(new T(std::forward<Args>(args)...), REF_COUNTER_THREADSAFE);
}

/// The same object as a To, by `static_cast`.
template <class To, class From>
SharedPtr<To> staticSharedCast(const SharedPtr<From>& pointer) {
    SharedPtr<To> result(pointer.pRefCounter, static_cast<To*>(pointer.get()));
    result.addUse();
    return result;
}

/// The same object as a To, by `dynamic_cast`; null if it is none.
template <class To, class From>
SharedPtr<To> dynamicSharedCast(const SharedPtr<From>& pointer) {
    To* const object = dynamic_cast<To*>(pointer.get());
    SharedPtr<To> result(object ? pointer.pRefCounter : nullptr, object);
    result.addUse();
    return result;
}

/// The record that `pointer` holds, for bindings that count in it themselves; null if there is none.
template <class T>
RefCounter* sharedRecord(const SharedPtr<T>& pointer) {
    return pointer.pRefCounter;
}

// Pointers compare as the addresses that they hold.

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

/// Hashes as the address.
template <class T>
struct hash<Vorn::SharedPtr<T>> {
    size_t operator()(const Vorn::SharedPtr<T>& pointer) const noexcept {
        return hash<typename Vorn::SharedPtr<T>::Element*>()(pointer.get());
    }
};

} // namespace std
