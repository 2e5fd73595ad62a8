#include "Vorn/SharedObjects/Connection.h"

#include "Vorn/SharedObjects/ListenerChain.h"

namespace Vorn {

Connection::Connection(const Connection& other) noexcept : m_node(other.m_node) {
    if (m_node) m_node->addReference();
}

void Connection::release() noexcept { m_node->releaseReference(); }

bool Connection::isConnected() const noexcept { return m_node && m_node->chain && !m_node->isExpired(); }

bool Connection::disconnect() {
    const Connection held(std::move(*this)); // the removal may destroy this connection
    if (!held.m_node || !held.m_node->chain) return false;
    return held.m_node->chain->remove(*held.m_node);
}

bool Connection::isBlocked() const noexcept { return m_node && (m_node->isBlocked || m_node->blocks); }

void Connection::setBlocked(bool isBlocked) {
    if (!m_node) return;
    m_node->isBlocked = isBlocked;
    m_node->update();
}

void Connection::addBlocks(int count) noexcept {
    if (!m_node) return;
    m_node->blocks += static_cast<unsigned int>(count);
    m_node->update();
}

} // namespace Vorn
