#include "Vorn/Assert.h"
#include "Vorn/SharedObjects/EventBase.h"

namespace Vorn {

DelegateNode::DelegateNode(const DelegatePOD& delegate, int priority)
    : m_delegate(delegate), m_priority(priority), p_next(nullptr) {
    if (m_delegate.contextAddRef) m_delegate.contextAddRef(m_delegate.context, DELEGATE_ADD_REF);
}

DelegateNode::~DelegateNode() {
    if (m_delegate.contextAddRef) m_delegate.contextAddRef(m_delegate.context, DELEGATE_RELEASE_REF);
    delete p_next;
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
    // The release may run a destructor that comes back to this node, or that `delegate` lies in: from here on the node
    // holds nothing that could be released twice, and nothing is read that may be gone.
    const DelegatePOD incoming = delegate;
    const DelegatePOD outgoing = m_delegate;
    m_delegate = DelegatePOD();
    if (outgoing.contextAddRef) outgoing.contextAddRef(outgoing.context, DELEGATE_RELEASE_REF);
    m_delegate = incoming;
    if (m_delegate.contextAddRef) m_delegate.contextAddRef(m_delegate.context, DELEGATE_ADD_REF);
}

} // namespace Vorn
