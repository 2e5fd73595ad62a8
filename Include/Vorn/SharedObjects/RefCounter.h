/// @file
/// RefCounter: the control block that all shared and weak pointers to one object have in common.
///
/// It is separate from the object, so a weak pointer may outlive the object. The object is destroyed when the use count
/// reaches 0; the control block is freed when both counts have reached 0. Programs use SharedPtr and WeakPtr. This
/// header is for pointer types and control blocks of your own.
///
/// Cost: 72 bytes (44 in a 32-bit process), including the lock. Adding and releasing are one atomic add each.
///
/// Failures: no operation here allocates. A failed check throws before any change.
///
/// Threads: the counts are always changed atomically. If a control block is not thread-safe, many threads may change
/// its use count at the same time, but the last use and a weak count must not be released at the same time. A
/// thread-safe control block permits that: a release holds its lock from the count to the decision. The flag is set
/// when the control block is created and never changes.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/SharedObjects/RefCounterMutex.h"

#include <atomic>

namespace Vorn {

/// The control block of one object. Concrete control blocks derive from it and are allocated with `new`.
/// @warning A control block is freed with plain `operator delete`, and only the destructor of its lock runs. A concrete
///     control block must not have members that need a destructor.
class VORN_API RefCounter {
public:
    /// Destroys an object of the kind that a control block counts.
    typedef void (*Deleter)(void*);

    RefCounter(const RefCounter&) = delete;
    RefCounter& operator=(const RefCounter&) = delete;

    /// Returns the function that destroys the object, or null if none is to be called. Called once, when the last use
    /// is released.
    /// @warning Runs while the lock of a thread-safe control block is held, so it must not lock `m_mutex`.
    virtual Deleter getDeleter() = 0;

    // The order and the widths of these fields are shared with code that other modules have inlined.
    std::atomic<int> m_useCount;  ///< strong references; not 0 exactly while `m_ptr` is not null
    std::atomic<int> m_weakCount; ///< weak references
    RefCounterMutex m_mutex;      ///< locked during a release of a thread-safe control block, otherwise not used
    void* m_ptr;                  ///< the object; null once the use count has reached 0
    bool m_isArray;               ///< whether the object is an array; only reported, never evaluated
    bool m_isThreadsafe;          ///< whether a release locks `m_mutex`

protected:
    /// Both counts 0, no object, both flags false.
    RefCounter() : m_useCount(0), m_weakCount(0), m_ptr(nullptr), m_isArray(false), m_isThreadsafe(false) {}

    ~RefCounter() = default; // control blocks are freed by the release operations only
};

static_assert(sizeof(std::atomic<int>) == 4, "the counts are 32 bits wide");

/// Returns true if `counter` is null, or if its use count and its object pointer are both zero or both not zero.
VORN_API bool validRefCounter(const RefCounter* counter);

inline bool validRefCounter(const RefCounter* counter) {
    return !counter || (counter->m_useCount.load(std::memory_order_relaxed) != 0) == (counter->m_ptr != nullptr);
}

/// Returns false only for two different control blocks of the same object, since one object has one control block.
VORN_API bool consistentRefCounters(const RefCounter* c, const RefCounter* o);

/// Checks that both control blocks are valid and consistent.
///
/// Throws `Exception<2>`: "validRefCounter(c) : Invalid reference counter!".
/// Throws `Exception<2>`: "validRefCounter(o) : Invalid reference counter!".
/// Throws `Exception<2>`: "consistentRefCounters(c, o) : Multiple reference counter for the same object!".
VORN_API void assertValidAndConsistent(const RefCounter* c, const RefCounter* o);

/// Releases one use. The last use frees the control block first and destroys the object after it, which is the opposite
/// order of `RefCounterWrapper::releaseUseCount`. A control block with weak counts is kept, without its object.
///
/// Near the end of the stack, the object may be destroyed later, by an outer release; see SharedPtr.h.
///
/// Throws `Exception<2>`: "c && (c)->m_useCount > 0 : can't release when use count == 0".
/// @warning The caller's pointer is not changed and must not be used afterwards.
VORN_API void releaseUseCount(RefCounter* c);

/// Releases one weak count, and frees the control block with the last one if its use count is 0. Does nothing if `c` is
/// null.
///
/// Throws `Exception<2>`: "c->m_weakCount : can't release when weak count == 0". A negative count passes.
/// @warning The caller's pointer is not changed and must not be used afterwards.
VORN_API void releaseWeakCount(RefCounter* c);

} // namespace Vorn

namespace VornPrivate {

/// Holds the lock of a thread-safe control block until `release` or the end of its scope. Of any other control block it
/// holds nothing.
class RefCounterGuard {
public:
    explicit RefCounterGuard(Vorn::RefCounter* counter) : m_counter(counter->m_isThreadsafe ? counter : nullptr) {
        if (m_counter) m_counter->m_mutex.lock();
    }

    RefCounterGuard(const RefCounterGuard&) = delete;
    RefCounterGuard& operator=(const RefCounterGuard&) = delete;

    ~RefCounterGuard() { release(); }

    /// Unlocks before the scope ends. Required before the control block is freed, since the lock is a member of it. No
    /// other thread can lock it in between, because no count is left.
    void release() {
        if (!m_counter) return;
        m_counter->m_mutex.unlock();
        m_counter = nullptr;
    }

private:
    Vorn::RefCounter* m_counter; // the control block whose lock is held, or null
};

} // namespace VornPrivate
