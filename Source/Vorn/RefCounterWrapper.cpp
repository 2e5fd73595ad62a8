#include "Vorn/SharedObjects/RefCounterWrapper.h"

#include "RefCounterRelease.h"

namespace Vorn {

int RefCounterWrapper::getUseCount() const {
    VORN_INTERNAL_ASSERT(validRefCounter(pRefCounter), "Invalid reference counter!");
    return pRefCounter ? pRefCounter->m_useCount.load(std::memory_order_relaxed) : 0;
}

int RefCounterWrapper::getWeakCount() const {
    VORN_INTERNAL_ASSERT(validRefCounter(pRefCounter), "Invalid reference counter!");
    return pRefCounter ? pRefCounter->m_weakCount.load(std::memory_order_relaxed) : 0;
}

bool RefCounterWrapper::isArray() const {
    VORN_INTERNAL_ASSERT(validRefCounter(pRefCounter), "Invalid reference counter!");
    return pRefCounter && pRefCounter->m_isArray;
}

bool RefCounterWrapper::isThreadsafe() const {
    VORN_INTERNAL_ASSERT(validRefCounter(pRefCounter), "Invalid reference counter!");
    return !pRefCounter || pRefCounter->m_isThreadsafe;
}

void RefCounterWrapper::makeThreadsafe() const {
    VORN_INTERNAL_ASSERT(validRefCounter(pRefCounter), "Invalid reference counter!");
    if (pRefCounter) return;
    // Both are volatile, so that the compiler keeps the store, which is a memory fault.
    RefCounter* volatile missing = pRefCounter;
    volatile bool& flag = missing->m_isThreadsafe;
    flag = true;
}

void RefCounterWrapper::releaseUseCountNonInline() { releaseUseCount(); }

void RefCounterWrapper::releaseWeakCountNonInline() { releaseWeakCount(); }

void RefCounterWrapper::releaseUseCountNonInlinePart(RefCounter::Deleter deleter, void* object, RefCounter* counter) {
    VornPrivate::destroyObject(deleter, object, counter);
}

void RefCounterWrapper::releaseWeakCountNonInlinePart(VornPrivate::RefCounterGuard& guard) {
    if (pRefCounter->m_useCount.load(std::memory_order_relaxed) >= 1) return;
    VORN_INTERNAL_ASSERT(!pRefCounter->m_ptr, "non-null pointer found when use count is zero!!!!");
    guard.release(); // the lock is a member of the control block
    VornPrivate::destroyRefCounter(pRefCounter);
}

RefCounter* PtrTypeBase::getRefCounter(SharedObjectBase* object) { return object->m_refCounter; }

void PtrTypeBase::undoGetOrCreateRefCounter(SharedObjectBase* object, RefCounter* counter) {
    if (counter->m_useCount.load(std::memory_order_relaxed) > 1) {
        counter->m_useCount.fetch_sub(1, std::memory_order_acq_rel);
        return;
    }
    object->m_refCounter = nullptr;
    VornPrivate::destroyRefCounter(counter);
}

DynamicObject::~DynamicObject() = default;

} // namespace Vorn
