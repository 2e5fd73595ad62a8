// RefCounter: the record that all shared and weak pointers to one object have in common.
//
// It lives apart from the object that it counts, so a weak pointer can outlive the object: the use count decides when
// the object dies, both counts together decide when the record dies. Programs take SharedPtr and WeakPtr; this header
// is for those who write a pointer or a record type of their own.
//
// Cost: one record of 72 bytes (44 in a 32-bit process), whose lock is a part of it; adding and releasing are one
// locked add each.
//
// Threads: the counts are always changed atomically. A record that is not thread-safe may have its use count changed by
// many threads at once, but not its last use and a weak count be released at the same time. A thread-safe record may:
// it holds its lock from the count to the decision. The flag is set when the record is made and never changes.
#pragma once

#include "Vorn/Config.h"

#include <boost/thread/mutex.hpp>

#include <atomic>

namespace Vorn {

/// The counts of one object. Concrete records derive from it; they are made by `new` and go back by plain `operator
/// delete`, without any destructor but the lock's.
/// @warning No destructor of a concrete record runs, so it must hold nothing that needs one.
class VORN_API RefCounter {
public:
    /// Destroys an object of the kind that a record counts.
    typedef void (*Deleter)(void*);

    RefCounter(const RefCounter&) = delete;
    RefCounter& operator=(const RefCounter&) = delete;

    /// The function that destroys the object; null if none is to be called. It is asked once, when the last use goes.
    /// @warning Runs while the lock of a thread-safe record is held: it must not take `m_mutex`.
    virtual Deleter getDeleter() = 0;

    // The order and the widths of these fields are shared with code that other modules have inlined.
    std::atomic<int> m_useCount;  // strong references; above 0 exactly while m_ptr is set
    std::atomic<int> m_weakCount; // weak references
    boost::mutex m_mutex;         // held around a release of a thread-safe record, not touched otherwise
    void* m_ptr;                  // the object; null once the use count has reached 0
    bool m_isArray;               // the object is an array; only told, never acted on
    bool m_isThreadsafe;          // releases take m_mutex

protected:
    /// No counts, no object, both flags false.
    RefCounter() : m_useCount(0), m_weakCount(0), m_ptr(nullptr), m_isArray(false), m_isThreadsafe(false) {}

    ~RefCounter() = default; // records go by the release operations only
};

static_assert(sizeof(std::atomic<int>) == 4, "the counts are 32 bits wide");

/// True if `counter` is null, or its use count and its object pointer are both zero or both not.
VORN_API inline bool validRefCounter(const RefCounter* counter) {
    return !counter || (counter->m_useCount.load(std::memory_order_relaxed) != 0) == (counter->m_ptr != nullptr);
}

/// False only for two different records of the same object: one object has one record.
VORN_API bool consistentRefCounters(const RefCounter* c, const RefCounter* o);

/// Raises `Exception<2>`, "validRefCounter(c) : Invalid reference counter!", the same with `o`, or
/// "consistentRefCounters(c, o) : Multiple reference counter for the same object!".
VORN_API void assertValidAndConsistent(const RefCounter* c, const RefCounter* o);

/// Gives up one use count: frees the record first and destroys the object after it, the other way round than
/// `RefCounterWrapper::releaseUseCount`. A record that weak counts hold stays, without its object.
/// Near the end of the stack the object may be destroyed later, by an outer release; see SharedPtr.
///
/// Raises `Exception<2>`, "c && (c)->m_useCount > 0 : can't release when use count == 0", before any change.
/// @warning The caller's pointer stays as it is; it must not be used again.
VORN_API void releaseUseCount(RefCounter* c);

/// Gives up one weak count; frees the record with the last one if there is no use count either. Does nothing on null.
///
/// Raises `Exception<2>`, "c->m_weakCount : can't release when weak count == 0"; a negative count passes.
/// @warning The caller's pointer stays as it is; it must not be used again.
VORN_API void releaseWeakCount(RefCounter* c);

} // namespace Vorn

namespace VornPrivate {

/// Holds the lock of a thread-safe record, and nothing of any other, until it is released or goes out of scope.
class RefCounterGuard {
public:
    explicit RefCounterGuard(Vorn::RefCounter* counter) : m_counter(counter->m_isThreadsafe ? counter : nullptr) {
        if (m_counter) m_counter->m_mutex.lock();
    }

    RefCounterGuard(const RefCounterGuard&) = delete;
    RefCounterGuard& operator=(const RefCounterGuard&) = delete;

    ~RefCounterGuard() { release(); }

    /// Unlocks before the scope ends. Whoever frees the record takes this step first: the lock lives in it. Nobody else
    /// can take the lock in between, because no count is left.
    void release() {
        if (!m_counter) return;
        m_counter->m_mutex.unlock();
        m_counter = nullptr;
    }

private:
    Vorn::RefCounter* m_counter; // the record whose lock is held, or null
};

} // namespace VornPrivate
