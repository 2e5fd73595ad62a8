// RefCounterWrapper, PtrTypeBase: what shared and weak pointers are built on.
//
// RefCounterWrapper holds a record and knows how to ask and release it. It owns no count by itself: the class that
// derives from it decides when to add and when to release. PtrTypeBase reaches the record inside a shared object.
// Programs take SharedPtr and WeakPtr.
//
// Cost: a release is one locked add, inlined; what only the last release needs is out of line.
//
// Threads: as RefCounter. One handle is not to be used by two threads while one of them changes it.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/Config.h"
#include "Vorn/SharedObjects/RefCounter.h"
#include "Vorn/SharedObjects/SharedObjectBase.h"

namespace Vorn {

/// A handle on a record.
///
/// Where an operation is called checked, it raises `Exception<2>`, "validRefCounter(pRefCounter) : Invalid reference
/// counter!", on a record whose use count and object pointer contradict each other.
/// @warning A check reads the record's object pointer. While another thread may release the last use, a weak pointer is
///     to be asked by `WeakPtr::isExpired` and `WeakPtr::lock` only.
class VORN_API RefCounterWrapper {
public:
    /// Leaves the record unwritten.
    /// @warning The deriving class must set `pRefCounter`.
    RefCounterWrapper() {}

    /// Copies the pointer and counts nothing.
    RefCounterWrapper(const RefCounterWrapper& other) : pRefCounter(other.pRefCounter) {}

    /// Copies the pointer; counts nothing and releases nothing.
    RefCounterWrapper& operator=(const RefCounterWrapper& other) {
        pRefCounter = other.pRefCounter;
        return *this;
    }

    /// Gives up the count that this handle holds and becomes null.
    virtual void reset() = 0;

    /// True if there is no record or no object any more. Checked, unlike `isNotNull`.
    bool isNull() const {
        VORN_INTERNAL_ASSERT(validRefCounter(pRefCounter), "Invalid reference counter!");
        return !pRefCounter || !pRefCounter->m_ptr;
    }

    /// True if there is a record with an object. Not checked: it answers on a corrupt record too.
    bool isNotNull() const { return pRefCounter && pRefCounter->m_ptr; }

    int getUseCount() const;   ///< Strong references; 0 with no record. Checked.
    int getWeakCount() const;  ///< Weak references; 0 with no record. Checked.
    bool isArray() const;      ///< Whether the object is an array; false with no record. Checked.
    bool isThreadsafe() const; ///< Whether releases take the lock; true with no record. Checked.

    /// Never makes anything thread-safe: with a record it does nothing, without one it ends in a memory fault. Checked.
    /// @warning Ask for a thread-safe record when the record is made.
    void makeThreadsafe() const;

protected:
    /// Gives up one use count: destroys the object first and frees the record after it, the other way round than the
    /// free `releaseUseCount`. `pRefCounter` stays as it is. Checked. Near the end of the stack an outer release may do
    /// both later; see SharedPtr.
    /// @warning Faults with no record. A record whose `getDeleter` gives null is not freed.
    void releaseUseCount();
    void releaseUseCountNonInline(); ///< `releaseUseCount`, out of line.

    /// Gives up one weak count and frees the record with the last one if the object is gone; does nothing with no
    /// record. `pRefCounter` stays as it is.
    ///
    /// Raises `Exception<2>`, "(pRefCounter)->m_weakCount : can't release when weak count == 0", and, with the count
    /// already lowered, "!pRefCounter->m_ptr : non-null pointer found when use count is zero!!!!".
    void releaseWeakCount();
    void releaseWeakCountNonInline(); ///< `releaseWeakCount`, out of line.

    RefCounter* pRefCounter; // the record, or null

private:
    static void releaseUseCountNonInlinePart(RefCounter::Deleter deleter, void* object, RefCounter* counter);
    void releaseWeakCountNonInlinePart(VornPrivate::RefCounterGuard& guard);
};

/// Gives pointer types access to the record inside a shared object.
class VORN_API PtrTypeBase {
public:
    PtrTypeBase() {}
    PtrTypeBase(const PtrTypeBase&) {}
    PtrTypeBase& operator=(const PtrTypeBase&) { return *this; }

protected:
    virtual ~PtrTypeBase() {}

    /// The record of `object`, null if it has none.
    /// @warning `object` must not be null; it is not checked.
    static RefCounter* getRefCounter(SharedObjectBase* object);

    /// Lets `object` remember `counter`.
    static void setRefCounter(SharedObjectBase* object, RefCounter* counter) { object->m_refCounter = counter; }

    /// Takes back one `getOrCreateRefCounter`, for a pointer whose construction fails after it. With other uses the use
    /// count goes down by one; otherwise the object is left without a record, alive, and the record is freed.
    /// @warning Weak counts do not keep the record.
    static void undoGetOrCreateRefCounter(SharedObjectBase* object, RefCounter* counter);
};

// What follows is inlined into pointer types; their users may stop reading here.

inline void RefCounterWrapper::releaseUseCount() {
    VORN_INTERNAL_ASSERT(validRefCounter(pRefCounter), "Invalid reference counter!");
    RefCounter::Deleter deleter = nullptr;
    void* object = nullptr;
    RefCounter* unused = nullptr;
    {
        const VornPrivate::RefCounterGuard guard(pRefCounter);
        // Release: what this owner wrote comes before the destruction. Acquire: the last owner sees what all wrote.
        if (pRefCounter->m_useCount.fetch_sub(1, std::memory_order_acq_rel) <= 1) {
            object = pRefCounter->m_ptr;
            pRefCounter->m_ptr = nullptr;
            deleter = pRefCounter->getDeleter();
            // Relaxed: the lock, or the caller of a record that is not thread-safe, orders this with weak releases.
            if (pRefCounter->m_weakCount.load(std::memory_order_relaxed) < 1) unused = pRefCounter;
        }
    }
    if (deleter) releaseUseCountNonInlinePart(deleter, object, unused);
}

inline void RefCounterWrapper::releaseWeakCount() {
    if (!pRefCounter) return;
    VORN_INTERNAL_ASSERT((pRefCounter)->m_weakCount, "can't release when weak count == 0");
    VornPrivate::RefCounterGuard guard(pRefCounter);
    if (pRefCounter->m_weakCount.fetch_sub(1, std::memory_order_acq_rel) <= 1) releaseWeakCountNonInlinePart(guard);
}

} // namespace Vorn
