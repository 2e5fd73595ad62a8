/// @file
/// The release sequences that the free functions and delegates have in common. Private.
#pragma once

#include "ObjectDestruction.h"
#include "Vorn/SharedObjects/RefCounter.h"

namespace VornPrivate {

/// Releases a use that the caller has checked. Frees the control block before it destroys the object, which is the
/// opposite order of `RefCounterWrapper::releaseUseCount`: do not merge the two.
inline void releaseCheckedUseCount(Vorn::RefCounter* counter) {
    Vorn::RefCounter::Deleter deleter = nullptr;
    void* object = nullptr;
    {
        RefCounterGuard guard(counter);
        // Release: what this owner wrote comes before the destruction. Acquire: the last owner sees what all wrote.
        if (counter->m_useCount.fetch_sub(1, std::memory_order_acq_rel) <= 1) {
            object = counter->m_ptr;
            counter->m_ptr = nullptr;
            deleter = counter->getDeleter();
            if (counter->m_weakCount.load(std::memory_order_relaxed) < 1) {
                guard.release(); // the lock is a member of the control block
                destroyRefCounter(counter);
            }
        }
    }
    if (deleter) destroyObject(deleter, object, nullptr);
}

/// Releases a weak count that the caller has checked.
inline void releaseCheckedWeakCount(Vorn::RefCounter* counter) {
    RefCounterGuard guard(counter);
    if (counter->m_weakCount.fetch_sub(1, std::memory_order_acq_rel) <= 1 &&
        counter->m_useCount.load(std::memory_order_relaxed) < 1) {
        guard.release(); // the lock is a member of the control block
        destroyRefCounter(counter);
    }
}

} // namespace VornPrivate
