// What an Event does, as a list: the listeners with the calls that they take part in. Shares no code with the library.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace reference {

/// A listener of an event.
struct Listening {
    int id;
    int priority;
    int since; // number of the first call that calls it
    bool isOnce;
    bool isBlocked;
    int moved; // the priority that it gets when no call runs any more
    int added; // number of its last `add`
};

/// The state of an event, and the calls that are running.
class ListenerModel {
public:
    bool isDisabled = false;

    int depth() const { return static_cast<int>(m_calls.size()); }
    std::size_t count() const { return m_listeners.size(); }
    bool contains(int id) const { return at(id) >= 0; }
    bool isBlocked(int id) const { return contains(id) && m_listeners[static_cast<std::size_t>(at(id))].isBlocked; }

    std::vector<int> ids() const {
        std::vector<int> result;
        for (const Listening& listening : m_listeners) result.push_back(listening.id);
        return result;
    }

    void add(int id, int priority, bool isOnce) {
        const int position = at(id);
        if (position < 0) {
            insert({id, priority, m_last + 1, isOnce, false, priority, ++m_adds});
            return;
        }
        Listening& listening = m_listeners[static_cast<std::size_t>(position)];
        listening.isOnce = isOnce;
        listening.added = ++m_adds;
        if (!m_calls.empty() && listening.since <= m_last) {
            listening.moved = priority;
            return;
        }
        Listening moving = listening;
        erase(static_cast<std::size_t>(position));
        moving.priority = moving.moved = priority;
        insert(moving);
    }

    bool remove(int id) {
        const int position = at(id);
        if (position < 0) return false;
        erase(static_cast<std::size_t>(position));
        return true;
    }

    void block(int id, bool isBlocked) {
        const int position = at(id);
        if (position >= 0) m_listeners[static_cast<std::size_t>(position)].isBlocked = isBlocked;
    }

    void clear() {
        while (!m_listeners.empty()) erase(0);
    }

    void stop() {
        if (!m_calls.empty()) m_calls.back().isStopped = true;
    }

    /// Returns false if the call does nothing.
    bool begin() {
        if (isDisabled || m_listeners.empty()) return false;
        m_calls.push_back({++m_last, 0, false});
        return true;
    }

    /// The listener that the innermost call calls next; -1 at its end.
    int next() {
        Call& call = m_calls.back();
        while (!call.isStopped && call.position < m_listeners.size()) {
            const Listening listening = m_listeners[call.position];
            if (listening.since > call.number || listening.isBlocked) {
                ++call.position;
                continue;
            }
            ++call.position;
            if (listening.isOnce) remove(listening.id);
            return listening.id;
        }
        return -1;
    }

    void end() {
        m_calls.pop_back();
        if (!m_calls.empty()) return;
        for (Listening& listening : m_listeners) listening.priority = listening.moved;
        std::sort(m_listeners.begin(), m_listeners.end(), [](const Listening& a, const Listening& b) {
            return a.priority != b.priority ? a.priority < b.priority : a.added < b.added;
        });
    }

private:
    struct Call {
        int number;
        std::size_t position; // of the next listener
        bool isStopped;
    };

    int at(int id) const {
        for (std::size_t i = 0; i < m_listeners.size(); ++i) {
            if (m_listeners[i].id == id) return static_cast<int>(i);
        }
        return -1;
    }

    void erase(std::size_t position) {
        m_listeners.erase(m_listeners.begin() + static_cast<std::ptrdiff_t>(position));
        for (Call& call : m_calls) call.position -= call.position > position;
    }

    void insert(const Listening& listening) {
        std::size_t position = 0;
        while (position < m_listeners.size() && m_listeners[position].priority <= listening.priority) ++position;
        m_listeners.insert(m_listeners.begin() + static_cast<std::ptrdiff_t>(position), listening);
        for (Call& call : m_calls) call.position += call.position > position;
    }

    std::vector<Listening> m_listeners;
    std::vector<Call> m_calls;
    int m_last = 0, m_adds = 0;
};

} // namespace reference
