/// @file
/// RefCounterWrapper, PtrTypeBase: the bases of shared and weak pointers.
///
/// RefCounterWrapper holds a pointer to a control block and can query and release it. It owns no count: the class that
/// derives from it decides when to add and when to release. PtrTypeBase accesses the control block of a shared object.
/// Programs use SharedPtr and WeakPtr.
///
/// Cost: a release is one atomic add, inlined. What only the last release needs is out of line.
///
/// Failures: no operation here allocates.
///
/// Threads: as RefCounter. Two threads must not use one pointer at the same time while one of them changes it.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/Config.h"
#include "Vorn/Private/Surprise.h"
#include "Vorn/SharedObjects/RefCounter.h"
#include "Vorn/SharedObjects/SharedObjectBase.h"

namespace Vorn {

/// A pointer to a control block.
///
/// An operation that is described as checked throws `Exception<2>`: "validRefCounter(pRefCounter) : Invalid reference
/// counter!" if the use count and the object pointer of the control block contradict each other.
/// @warning A check reads the object pointer of the control block. While another thread may release the last use, query
///     a weak pointer only with `WeakPtr::isExpired` and `WeakPtr::lock`.
class VORN_API RefCounterWrapper {
public:
    /// Leaves the pointer uninitialised.
    /// @warning The deriving class must set `pRefCounter`.
    RefCounterWrapper() {}

    /// Copies the pointer; changes no count.
    RefCounterWrapper(const RefCounterWrapper& other) : pRefCounter(other.pRefCounter) {}

    /// Copies the pointer; changes no count and releases nothing.
    RefCounterWrapper& operator=(const RefCounterWrapper& other) {
        pRefCounter = other.pRefCounter;
        return *this;
    }

    /// Releases the count that this pointer holds and makes the pointer null.
    virtual void reset() = 0;

    /// Returns true if there is no control block, or if its object has been destroyed. Checked, unlike `isNotNull`.
    bool isNull() const {
        VORN_INTERNAL_ASSERT(validRefCounter(pRefCounter), "Invalid reference counter!");
        return !pRefCounter || !pRefCounter->m_ptr;
    }

    /// Returns true if there is a control block with an object. Not checked: it also returns a result for an invalid
    /// control block.
    bool isNotNull() const { return pRefCounter && pRefCounter->m_ptr; }

    int getUseCount() const;   ///< Returns the number of uses; 0 without a control block. Checked.
    int getWeakCount() const;  ///< Returns the number of weak references; 0 without a control block. Checked.
    bool isArray() const;      ///< Returns true if the object is an array; false without a control block. Checked.
    bool isThreadsafe() const; ///< Returns true if releases lock, and also without a control block. Checked.

    /// Does *not* make the control block thread-safe: does nothing if there is one, and is a memory fault if there is
    /// none. Checked.
    /// @warning Request a thread-safe control block when the object is first shared: `makeSharedThreadsafe`, or
    ///     `REF_COUNTER_THREADSAFE`.
    VORN_SURPRISE("does nothing; use makeSharedThreadsafe(...)")
    void makeThreadsafe() const;

protected:
    ~RefCounterWrapper() = default;

    /// Releases one use. The last use destroys the object first and frees the control block after it, which is the
    /// opposite order of the free function `releaseUseCount`. `pRefCounter` is not changed. Checked.
    ///
    /// Near the end of the stack, both may be done later, by an outer release; see SharedPtr.h.
    /// @warning A memory fault without a control block. A control block whose `getDeleter` returns null is leaked.
    void releaseUseCount();
    void releaseUseCountNonInline(); ///< The same as `releaseUseCount`, out of line.

    /// Releases one weak count, and frees the control block with the last one if the object has been destroyed. Does
    /// nothing without a control block. `pRefCounter` is not changed.
    ///
    /// Throws `Exception<2>`: "(pRefCounter)->m_weakCount : can't release when weak count == 0".
    /// Throws `Exception<2>`: "!pRefCounter->m_ptr : non-null pointer found when use count is zero!!!!", after the
    /// count has been lowered.
    void releaseWeakCount();
    void releaseWeakCountNonInline(); ///< The same as `releaseWeakCount`, out of line.

    RefCounter* pRefCounter; ///< the control block, or null

private:
    static void releaseUseCountNonInlinePart(RefCounter::Deleter deleter, void* object, RefCounter* counter);
    void releaseWeakCountNonInlinePart(VornPrivate::RefCounterGuard& guard);
};

/// Gives pointer types access to the control block of a shared object.
class VORN_API PtrTypeBase {
public:
    PtrTypeBase() {}
    PtrTypeBase(const PtrTypeBase&) {}
    PtrTypeBase& operator=(const PtrTypeBase&) { return *this; }

protected:
    virtual ~PtrTypeBase() {}

    /// Returns the control block of `object`, or null if it has none.
    /// @warning `object` must not be null; this is not checked.
    static RefCounter* getRefCounter(SharedObjectBase* object);

    /// Stores `counter` as the control block of `object`.
    static void setRefCounter(SharedObjectBase* object, RefCounter* counter) { object->m_refCounter = counter; }

    /// Undoes one `getOrCreateRefCounter`, for a pointer whose construction fails after it. If there are other uses,
    /// the use count is lowered by one. Otherwise the object is left alive without a control block, which is freed.
    /// @warning The control block is freed even if weak counts are left.
    static void undoGetOrCreateRefCounter(SharedObjectBase* object, RefCounter* counter);
};

// The rest of this header is inlined into pointer types. Users need not read on.

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
            // Relaxed: the lock orders this with weak releases, or the caller if the control block is not thread-safe.
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
