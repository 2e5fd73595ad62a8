// WeakPtr: pointer to a shared object that does not keep it alive.
//
// It keeps only the record, so it can tell whether the object still lives: lock() gives a SharedPtr or null. Take it
// for caches, for listeners and to break circles of SharedPtr.
//
// Cost: three words; copying and destroying are one locked add each, lock() is one compare-and-swap.
//
// Threads: lock() and isExpired() may run while other threads release uses, and lock() never revives a dead object. The
// record must be thread-safe if weak pointers go while another thread may release the last use.
#pragma once

#include "Vorn/SharedObjects/SharedPtr.h"

namespace Vorn {

/// Weak pointer to a shared T.
template <class T>
class WeakPtr final : public RefCounterWrapper {
public:
    using Element = std::remove_extent_t<T>;

    WeakPtr() noexcept : WeakPtr(nullptr, nullptr) {}
    WeakPtr(std::nullptr_t) noexcept : WeakPtr() {}

    template <class U, std::enable_if_t<isSharedConvertible<U, T>(), int> = 0>
    WeakPtr(const SharedPtr<U>& other) noexcept : WeakPtr(other.pRefCounter, other.m_object) {
        addWeak();
    }

    WeakPtr(const WeakPtr& other) noexcept : WeakPtr(other.pRefCounter, other.m_object) { addWeak(); }

    WeakPtr(WeakPtr&& other) noexcept : WeakPtr(other.pRefCounter, other.m_object) { other.forget(); }

    /// Points at the object as one of its bases or interfaces. The object is locked meanwhile: finding a virtual base
    /// reads it.
    template <class U, std::enable_if_t<isSharedConvertible<U, T>(), int> = 0>
    WeakPtr(const WeakPtr<U>& other) : WeakPtr(other.pRefCounter, nullptr) {
        m_object = other.lock().get();
        addWeak();
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

    /// Gives up the record and becomes null.
    void reset() override { WeakPtr().swap(*this); }

    void swap(WeakPtr& other) noexcept {
        std::swap(pRefCounter, other.pRefCounter);
        std::swap(m_object, other.m_object);
    }

    /// A SharedPtr to the object; null if it is dead.
    SharedPtr<T> lock() const {
        if (!pRefCounter || !VornPrivate::tryAddUse(pRefCounter)) return SharedPtr<T>();
        return SharedPtr<T>(pRefCounter, m_object);
    }

    /// True if there is no living object. In a program with threads only true is certain to stay.
    bool isExpired() const noexcept {
        return !pRefCounter || pRefCounter->m_useCount.load(std::memory_order_relaxed) < 1;
    }

    /// True for pointers to the same object, dead or alive.
    friend bool operator==(const WeakPtr& a, const WeakPtr& b) noexcept { return a.pRefCounter == b.pRefCounter; }
    friend bool operator!=(const WeakPtr& a, const WeakPtr& b) noexcept { return !(a == b); }

private:
    template <class U>
    friend class WeakPtr;
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

    Element* m_object; // dangles once the object is dead; used only under a use count
};

/// The record that `pointer` holds, for bindings that count in it themselves; null if there is none.
template <class T>
RefCounter* weakRecord(const WeakPtr<T>& pointer) {
    return pointer.pRefCounter;
}

/// The address of the object, for bindings that lock the record themselves.
/// @warning Dangles once the object is dead.
template <class T>
typename WeakPtr<T>::Element* weakObject(const WeakPtr<T>& pointer) {
    return pointer.m_object;
}

} // namespace Vorn

namespace std {

/// Hashes as the record, so the hash stays when the object dies.
template <class T>
struct hash<Vorn::WeakPtr<T>> {
    size_t operator()(const Vorn::WeakPtr<T>& pointer) const noexcept {
        return hash<Vorn::RefCounter*>()(pointer.pRefCounter);
    }
};

} // namespace std
