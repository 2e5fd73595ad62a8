#include "Vorn/Assert.h"
#include "Vorn/SharedObjects/EventBase.h"

namespace Vorn {

DelegateNode::DelegateNode(const DelegatePOD& delegate, int priority)
    : m_delegate(delegate), m_priority(priority), p_next(nullptr) {
    if (m_delegate.contextAddRef) m_delegate.contextAddRef(m_delegate.context, DELEGATE_ADD_REF);
}

DelegateNode::~DelegateNode() {
    // All references go before the first node is freed, as in a recursion down the chain.
    for (DelegateNode* node = this; node; node = node->p_next) {
        if (node->m_delegate.contextAddRef)
            node->m_delegate.contextAddRef(node->m_delegate.context, DELEGATE_RELEASE_REF);
    }
    // The links are reversed, since the recursion frees the last node first.
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
    const DelegatePOD incoming = delegate; // it may lie in what a release destroys
    do {
        releaseDelegate();
    } while (m_delegate.contextAddRef); // a destructor has put another one in
    m_delegate = incoming;
    if (m_delegate.contextAddRef) m_delegate.contextAddRef(m_delegate.context, DELEGATE_ADD_REF);
}

void DelegateNode::releaseDelegate() {
    // A destructor may come back to this node, which then holds nothing that could be released twice.
    const DelegatePOD outgoing = m_delegate;
    m_delegate = DelegatePOD();
    if (outgoing.contextAddRef) outgoing.contextAddRef(outgoing.context, DELEGATE_RELEASE_REF);
}

} // namespace Vorn
