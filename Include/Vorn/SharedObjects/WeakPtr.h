/// @file
/// WeakPtr: a pointer to a shared object that does not keep it alive.
///
///     const Vorn::WeakPtr<Door> watched = door;
///     if (const auto locked = watched.lock()) locked->open();
///
/// It keeps only the control block, so it can report whether the object has been destroyed. `lock` returns a SharedPtr,
/// or null after that. Use it for caches and listeners, and to break cycles of SharedPtr.
///
/// Cost: three words; copying and destroying are one atomic add each, `lock` is one compare-and-swap.
///
/// Failures: no operation allocates or throws.
///
/// Threads: `lock` and `isExpired` may run while other threads release uses; `lock` never returns an object that is
/// being destroyed. If weak pointers are destroyed while another thread may release the last use, the control block
/// must be thread-safe.
#pragma once

#include "Vorn/SharedObjects/SharedPtr.h"

namespace Vorn {

/// A weak pointer to a shared T, or with `T[]` to a shared array.
template <class T>
class WeakPtr final : public RefCounterWrapper {
public:
    using Element = std::remove_extent_t<T>;

    /// A null pointer.
    WeakPtr() noexcept : WeakPtr(nullptr, nullptr) {}
    WeakPtr(std::nullptr_t) noexcept : WeakPtr() {}

    /// Refers to the object of `other`.
    template <class U, std::enable_if_t<isSharedConvertible<U, T>(), int> = 0>
    WeakPtr(const SharedPtr<U>& other) noexcept : WeakPtr(other.pRefCounter, other.m_object) {
        addWeak();
    }

    /// Refers to a shared object by its raw pointer, such as `this`. The type derives from SharedObjectBase or
    /// InterfaceBase. Null, an object that is not shared yet and one that is being destroyed give a null pointer.
    /// @warning In the constructor of the object, the result is null: nothing owns the object yet.
    template <class U, std::enable_if_t<isSharedSource<U, T>(), int> = 0>
    explicit WeakPtr(U* object) : WeakPtr() {
        static_assert(std::is_convertible_v<const volatile U*, const volatile SharedObjectBase*> ||
                          std::is_convertible_v<const volatile U*, const volatile InterfaceBase*>,
                      "only a SharedObjectBase or InterfaceBase knows its owners: make the WeakPtr of a SharedPtr");
        SharedObjectBase* const sharedObject = object ? VornPrivate::sharedObjectOf(object) : nullptr;
        RefCounter* const counter =
            sharedObject ? VornPrivate::SharedObjectAccess::getRefCounter(sharedObject) : nullptr;
        if (!counter || counter->m_useCount.load(std::memory_order_relaxed) < 1) return;
        pRefCounter = counter;
        m_object = object;
        addWeak();
    }

    WeakPtr(const WeakPtr& other) noexcept : WeakPtr(other.pRefCounter, other.m_object) { addWeak(); }

    WeakPtr(WeakPtr&& other) noexcept : WeakPtr(other.pRefCounter, other.m_object) { other.forget(); }

    /// Refers to the object as one of its bases or interfaces. Locks the object meanwhile, because the conversion to a
    /// virtual base reads it.
    template <class U, std::enable_if_t<isSharedConvertible<U, T>(), int> = 0>
    WeakPtr(const WeakPtr<U>& other) : WeakPtr(other.pRefCounter, nullptr) {
        m_object = other.lock().get();
        addWeak();
    }

    /// The same, and makes `other` null.
    template <class U, std::enable_if_t<isSharedConvertible<U, T>(), int> = 0>
    WeakPtr(WeakPtr<U>&& other) : WeakPtr(other.pRefCounter, nullptr) {
        m_object = other.lock().get();
        other.forget();
    }

    ~WeakPtr() { releaseWeakCount(); }

    WeakPtr& operator=(const WeakPtr& other) noexcept {
        WeakPtr(other).swap(*this);
        return *this;
    }

    WeakPtr& operator=(WeakPtr&& other) noexcept {
        WeakPtr(std::move(other)).swap(*this);
        return *this;
    }

    /// Releases the weak count and makes the pointer null.
    void reset() override { WeakPtr().swap(*this); }

    void swap(WeakPtr& other) noexcept {
        std::swap(pRefCounter, other.pRefCounter);
        std::swap(m_object, other.m_object);
    }
    friend void swap(WeakPtr& a, WeakPtr& b) noexcept { a.swap(b); }

    /// The order of owners; see `SharedPtr::ownerBefore`. It does not change when the object is destroyed.
    /// @{
    template <class U>
    bool ownerBefore(const WeakPtr<U>& other) const noexcept {
        return VornPrivate::isBefore(pRefCounter, other.pRefCounter);
    }
    template <class U>
    bool ownerBefore(const SharedPtr<U>& other) const noexcept {
        return VornPrivate::isBefore(pRefCounter, other.pRefCounter);
    }
    /// @}

    /// Returns a SharedPtr to the object; null if the object has been destroyed.
    [[nodiscard]] SharedPtr<T> lock() const {
        if (!pRefCounter || !VornPrivate::tryAddUse(pRefCounter)) return SharedPtr<T>();
        return SharedPtr<T>(pRefCounter, m_object);
    }

    /// Returns true if there is no object, or if it has been destroyed. If other threads share the object, a result of
    /// false may be outdated at once; use `lock`.
    bool isExpired() const noexcept {
        return !pRefCounter || pRefCounter->m_useCount.load(std::memory_order_relaxed) < 1;
    }

    /// Returns true for pointers to the same object, also after it has been destroyed.
    friend bool operator==(const WeakPtr& a, const WeakPtr& b) noexcept { return a.pRefCounter == b.pRefCounter; }
    friend bool operator!=(const WeakPtr& a, const WeakPtr& b) noexcept { return !(a == b); }

private:
    template <class U>
    friend class WeakPtr;
    template <class U>
    friend class SharedPtr;
    friend struct std::hash<WeakPtr>;
    template <class U>
    friend RefCounter* weakRecord(const WeakPtr<U>& pointer);
    template <class U>
    friend typename WeakPtr<U>::Element* weakObject(const WeakPtr<U>& pointer);

    WeakPtr(RefCounter* counter, Element* object) noexcept : m_object(object) { pRefCounter = counter; }

    void addWeak() noexcept {
        if (pRefCounter) VornPrivate::addWeak(pRefCounter);
    }

    void forget() noexcept {
        pRefCounter = nullptr;
        m_object = nullptr;
    }

    Element* m_object; // dangles after the object has been destroyed; used only while a use is held
};

template <class T>
WeakPtr(SharedPtr<T>) -> WeakPtr<T>;

template <class T>
template <class U, std::enable_if_t<isSharedConvertible<U, T>(), int>>
SharedPtr<T>::SharedPtr(const WeakPtr<U>& weak) : SharedPtr() {
    SharedPtr<U> locked = weak.lock();
    const bool isAlive = locked.pRefCounter;
    VORN_ASSERT(isAlive, "the object has been destroyed!", "Vorn::SharedPtr::SharedPtr");
    SharedPtr(std::move(locked)).swap(*this);
}

/// Returns the control block of `pointer`, for bindings that count in it themselves; null if there is none.
template <class T>
RefCounter* weakRecord(const WeakPtr<T>& pointer) {
    return pointer.pRefCounter;
}

/// Returns the address of the object, for bindings that lock the control block themselves.
/// @warning Dangles after the object has been destroyed.
template <class T>
typename WeakPtr<T>::Element* weakObject(const WeakPtr<T>& pointer) {
    return pointer.m_object;
}

} // namespace Vorn

namespace std {

/// The hash of the address of the control block, which stays the same after the object has been destroyed.
template <class T>
struct hash<Vorn::WeakPtr<T>> {
    size_t operator()(const Vorn::WeakPtr<T>& pointer) const noexcept {
        return hash<Vorn::RefCounter*>()(pointer.pRefCounter);
    }
};

} // namespace std
