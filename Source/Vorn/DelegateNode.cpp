#include "Vorn/Assert.h"
#include "Vorn/SharedObjects/EventBase.h"

namespace Vorn {

DelegateNode::DelegateNode(const DelegatePOD& delegate, int priority)
    : m_delegate(delegate), m_priority(priority), p_next(nullptr) {
    if (m_delegate.contextAddRef) m_delegate.contextAddRef(m_delegate.context, DELEGATE_ADD_REF);
}

DelegateNode::~DelegateNode() {
    // A loop in the order of a recursion down the chain, which would overflow the stack: all references are released
    // before the first node is freed.
    for (DelegateNode* node = this; node; node = node->p_next) {
        if (node->m_delegate.contextAddRef)
            node->m_delegate.contextAddRef(node->m_delegate.context, DELEGATE_RELEASE_REF);
    }
    // Reverses the links: the recursion would free the last node first.
    DelegateNode* freed = nullptr;
    while (p_next) {
        DelegateNode* const node = p_next;
        p_next = node->p_next;
        node->p_next = freed;
        freed = node;
    }
    while (freed) {
        DelegateNode* const node = freed;
        freed = node->unlink();
        node->m_delegate.contextAddRef = nullptr;
        delete node;
    }
}

void DelegateNode::insertAfter(DelegateNode* node) {
    if (node && p_next) {
        VORN_INTERNAL_ASSERT(!node->p_next, "unlink one of the nodes before inserting!");
        node->p_next = p_next;
    }
    p_next = node;
}

void DelegateNode::setDelegate(const DelegatePOD& delegate) {
    if (sameDelegate(m_delegate, delegate)) return;
    const DelegatePOD incoming = delegate; // `delegate` may be a member of what a release destroys
    do {
        releaseDelegate();
    } while (m_delegate.contextAddRef); // a destructor has stored another one
    m_delegate = incoming;
    if (m_delegate.contextAddRef) m_delegate.contextAddRef(m_delegate.context, DELEGATE_ADD_REF);
}

void DelegateNode::releaseDelegate() {
    // A destructor may use this node. It is empty by then, so nothing is released twice.
    const DelegatePOD outgoing = m_delegate;
    m_delegate = DelegatePOD();
    if (outgoing.contextAddRef) outgoing.contextAddRef(outgoing.context, DELEGATE_RELEASE_REF);
}

} // namespace Vorn
