// RefCounterRelease: the release sequences that free functions and delegates share. Private.
#pragma once

#include "ObjectDestruction.h"
#include "Vorn/SharedObjects/RefCounter.h"

namespace VornPrivate {

/// Gives up a use count that the caller has checked. The record goes before the object, unlike in
/// `RefCounterWrapper::releaseUseCount`; the two are not to be merged.
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
                guard.release(); // the lock must not outlive the record
                destroyRefCounter(counter);
            }
        }
    }
    if (deleter) destroyObject(deleter, object, nullptr);
}

/// Gives up a weak count that the caller has checked.
inline void releaseCheckedWeakCount(Vorn::RefCounter* counter) {
    RefCounterGuard guard(counter);
    if (counter->m_weakCount.fetch_sub(1, std::memory_order_acq_rel) <= 1 &&
        counter->m_useCount.load(std::memory_order_relaxed) < 1) {
        guard.release(); // the lock must not outlive the record
        destroyRefCounter(counter);
    }
}

} // namespace VornPrivate
