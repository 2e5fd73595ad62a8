/// @file
/// Connection, ScopedConnection, ScopedBlock: handles to one listener of an Event.
///
///     Connection connection = scored.add([&](int points) { ... });
///     connection.disconnect();
///
/// A connection is returned by each operation that adds a listener. It may be copied, dropped and kept for longer than
/// the event. It follows its listener if the event is moved.
///
/// Cost: one pointer. `disconnect` walks the list of the event.
///
/// Failures: no operation allocates or throws.
///
/// Threads: those of the event.
#pragma once

#include "Vorn/Config.h"

#include <utility>

namespace Vorn {

class ListenerNode;

/// A handle to one listener. It does not keep the listener in the event.
class VORN_API Connection {
public:
    /// A connection to nothing.
    Connection() noexcept : m_node(nullptr) {}

    /// Takes ownership of a reference to `node`; null gives a connection to nothing. For events.
    explicit Connection(ListenerNode* node) noexcept : m_node(node) {}

    Connection(const Connection& other) noexcept;
    Connection(Connection&& other) noexcept : m_node(std::exchange(other.m_node, nullptr)) {}
    ~Connection() {
        if (m_node) release();
    }

    Connection& operator=(Connection other) noexcept {
        swap(other);
        return *this;
    }

    void swap(Connection& other) noexcept { std::swap(m_node, other.m_node); }

    /// Returns true until the listener has been removed, its weakly bound target has been destroyed, or the event has
    /// been destroyed.
    [[nodiscard]] bool isConnected() const noexcept;
    explicit operator bool() const noexcept { return isConnected(); } ///< The same as `isConnected`.

    /// Removes the listener from its event. The connection is one to nothing afterwards. Returns false if it was not
    /// connected.
    bool disconnect();

    /// Calls do not call the listener any more until `unblock`. Does nothing if it is not connected.
    void block() { setBlocked(true); }
    void unblock() { setBlocked(false); } ///< Ends every `block`, but no ScopedBlock.
    bool isBlocked() const noexcept;      ///< Returns true after `block`, and during a ScopedBlock.

    /// Returns true for connections to the same listener, and for two connections to nothing.
    friend bool operator==(const Connection& a, const Connection& b) noexcept { return a.m_node == b.m_node; }
    friend bool operator!=(const Connection& a, const Connection& b) noexcept { return a.m_node != b.m_node; }

    /// For events.
    const ListenerNode* getNode() const noexcept { return m_node; }

private:
    friend class ScopedBlock;

    void release() noexcept;
    void setBlocked(bool isBlocked);
    void addBlocks(int count) noexcept;

    ListenerNode* m_node; // counted, or null
};

/// Removes its listener when it is destroyed.
/// @warning A function or method that is added twice is one listener: the first of two scoped connections to it removes
///     it.
class [[nodiscard]] ScopedConnection {
public:
    ScopedConnection() = default;
    [[nodiscard]] ScopedConnection(Connection connection) noexcept : m_connection(std::move(connection)) {}
    ScopedConnection(ScopedConnection&& other) noexcept = default;
    ~ScopedConnection() { m_connection.disconnect(); }

    /// Removes the listener that was held.
    ScopedConnection& operator=(ScopedConnection&& other) noexcept {
        ScopedConnection taken(std::move(other));
        taken.swap(*this);
        return *this;
    }

    void swap(ScopedConnection& other) noexcept { m_connection.swap(other.m_connection); }

    [[nodiscard]] bool isConnected() const noexcept { return m_connection.isConnected(); }
    explicit operator bool() const noexcept { return m_connection.isConnected(); }
    bool disconnect() { return m_connection.disconnect(); }
    Connection& get() noexcept { return m_connection; } ///< Returns the connection, which stays scoped.

    /// Returns the connection and leaves its listener in the event.
    Connection release() noexcept { return std::move(m_connection); }

private:
    Connection m_connection;
};

/// Blocks a listener until it is destroyed. The listener is called again after the last of its blocks and, if
/// `Connection::block` was called, `unblock`.
class [[nodiscard]] ScopedBlock {
public:
    ScopedBlock() = default; ///< Blocks nothing.
    [[nodiscard]] explicit ScopedBlock(Connection connection) noexcept : m_connection(std::move(connection)) {
        m_connection.addBlocks(1);
    }
    ScopedBlock(ScopedBlock&& other) noexcept = default;
    ~ScopedBlock() { m_connection.addBlocks(-1); }

    /// Ends the block that was held.
    ScopedBlock& operator=(ScopedBlock&& other) noexcept {
        ScopedBlock taken(std::move(other));
        taken.swap(*this);
        return *this;
    }

    void swap(ScopedBlock& other) noexcept { m_connection.swap(other.m_connection); }

private:
    Connection m_connection;
};

} // namespace Vorn
