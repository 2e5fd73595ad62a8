// Listeners that report their calls to a game, and an event whose nodes a test can read.
#pragma once

#include "Reference/EventModel.h"
#include "Vorn/SharedObjects/Event.h"

#include <stdexcept>
#include <vector>

struct Game;

struct Listener {
    Game* game;
    int id;
    void call();
};

// The event's own records, and the dispatch as a program of this test writes it.
class OpenEvent : public Vorn::EventBase {
public:
    void add(const Vorn::Delegate<void, void>& delegate, int priority) { addDelegate(delegate.getPOD(), priority); }
    void remove(const Vorn::Delegate<void, void>& delegate) { delete removeDelegate(delegate.getPOD()); }
    bool contains(const Vorn::Delegate<void, void>& delegate) const { return containsDelegate(delegate.getPOD()); }

    void operator()() {
        if (isDisabled()) return;
        m_dispatchNode = this;
        try {
            while (m_dispatchNode) {
                const Vorn::DelegatePOD pod = m_dispatchNode->getDelegate();
                if (m_dispatchNode->isValid()) pod.caller(pod.object, pod.context);
                m_dispatchNode = m_dispatchNode->getNext();
            }
        } catch (...) {
            m_dispatchNode = nullptr;
            insertPendingDelegates();
            throw;
        }
        m_dispatchNode = nullptr;
        insertPendingDelegates();
    }

    std::vector<reference::EventNode> chain() const { return nodes(this); }
    std::vector<reference::EventNode> pending() const { return nodes(m_pendingFirst); }

private:
    static std::vector<reference::EventNode> nodes(const Vorn::DelegateNode* node) {
        std::vector<reference::EventNode> result;
        for (; node; node = node->getNext()) {
            const auto* const listener = static_cast<const Listener*>(node->getDelegate().object);
            result.push_back({listener ? listener->id : -1, node->isValid(), node->getPriority()});
        }
        return result;
    }
};

struct Game {
    virtual ~Game() = default;
    virtual void called(int id) = 0;
};

inline void Listener::call() { game->called(id); }

struct Interruption : std::runtime_error {
    Interruption() : std::runtime_error("interruption") {}
};
