#include "Vorn/SharedObjects/DelegateBase.h"

#include "RefCounterRelease.h"
#include "Vorn/Assert.h"
#include "Vorn/SharedObjects/Delegate.h"

namespace Vorn {

DelegateBase::DelegateBase(const DelegatePOD& pod) : m_pod(pod) {
    if (m_pod.contextAddRef) m_pod.contextAddRef(m_pod.context, DELEGATE_ADD_REF);
}

DelegateBase::~DelegateBase() {
    if (m_pod.contextAddRef) m_pod.contextAddRef(m_pod.context, DELEGATE_RELEASE_REF);
}

DelegateBase& DelegateBase::operator=(const DelegateBase& other) {
    if (sameDelegate(m_pod, other.m_pod)) return *this;
    // Specified in reverse: a reference is added to the outgoing context and released from the incoming one.
    if (m_pod.contextAddRef) m_pod.contextAddRef(m_pod.context, DELEGATE_ADD_REF);
    m_pod = other.m_pod;
    if (m_pod.contextAddRef) m_pod.contextAddRef(m_pod.context, DELEGATE_RELEASE_REF);
    return *this;
}

void DelegateBase::replaceRecord(const DelegatePOD& pod) {
    const DelegatePOD incoming = pod; // `pod` may be a member of what the release destroys
    const DelegatePOD outgoing = m_pod;
    if (incoming.contextAddRef) incoming.contextAddRef(incoming.context, DELEGATE_ADD_REF);
    m_pod = incoming;
    if (outgoing.contextAddRef) outgoing.contextAddRef(outgoing.context, DELEGATE_RELEASE_REF);
}

Delegate<void, void>::~Delegate() = default;

void delegateAddUseRef(void* context, DelegateContextAddRef op) {
    RefCounter* const counter = static_cast<RefCounter*>(context);
    if (op == DELEGATE_ADD_REF) {
        counter->m_useCount.fetch_add(1, std::memory_order_relaxed); // the caller holds a reference: nothing to publish
        return;
    }
    VORN_INTERNAL_ASSERT(counter && (counter)->m_useCount > 0, "can't release when use count == 0");
    VornPrivate::releaseCheckedUseCount(counter);
}

void delegateAddWeakRef(void* context, DelegateContextAddRef op) {
    RefCounter* const counter = static_cast<RefCounter*>(context);
    if (op == DELEGATE_ADD_REF) {
        counter->m_weakCount.fetch_add(1, std::memory_order_relaxed); // as for a use
        return;
    }
    if (!counter) return;
    VORN_INTERNAL_ASSERT(counter->m_weakCount, "can't release when weak count == 0");
    VornPrivate::releaseCheckedWeakCount(counter);
}

} // namespace Vorn
