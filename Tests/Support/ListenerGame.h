// Plays moves on an Event<> and on its model, and compares after each: changes outside and inside of calls, nested
// calls, moves of the event and its destruction while it is being called, and listeners that throw.
#pragma once

#include "Reference/ListenerModel.h"
#include "Vorn/SharedObjects/Event.h"

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

/// `Source` gives the choices: `bool ended()` and `unsigned int below(unsigned int end)`. `check(condition, text)`
/// reports a difference.
template <class Source>
class ListenerGame {
public:
    static constexpr unsigned int LISTENERS = 6;

    ListenerGame(Source& source, void (*check)(bool condition, const char* text)) : m_source(source), m_check(check) {
        for (unsigned int id = 0; id < LISTENERS; ++id) renew(id);
    }

    void run() {
        while (!m_source.ended()) {
            act();
            compare();
        }
        m_event.reset();
        for (unsigned int id = 0; id < LISTENERS; ++id) require(references(id) == 0, "the event keeps a reference");
        for (const Vorn::Connection& connection : m_connections) require(!connection.isConnected(), "still connected");
    }

private:
    struct Target {
        void hear() { game->heard(id); }
        ListenerGame* game;
        unsigned int id;
    };
    struct Interruption {};

    static bool isWeak(unsigned int id) { return id % 3 == 2; }
    void require(bool condition, const char* text) const { m_check(condition, text); }

    void renew(unsigned int id) {
        m_targets[id] = Vorn::makeShared<Target>(Target{this, id});
        m_listeners[id] = isWeak(id) ? Listener::bindWeak<&Target::hear>(m_targets[id])
                                     : Listener::bindShared<&Target::hear>(m_targets[id]);
    }

    int references(unsigned int id) const {
        return isWeak(id) ? m_targets[id].getWeakCount() - 1 : m_targets[id].getUseCount() - 2;
    }

    void act() {
        const unsigned int id = m_source.below(LISTENERS);
        const int priority = static_cast<int>(m_source.below(5)) - 2;
        switch (m_source.below(20)) {
        case 0:
        case 1:
        case 2:
        case 3: add(id, priority, false); break;
        case 4: add(id, priority, true); break;
        case 5:
            require(m_event->remove(m_listeners[id]) == m_model.remove(number(id)), "another result of remove");
            break;
        case 6:
            require(m_connections[id].disconnect() == m_model.remove(number(id)), "another result of disconnect");
            break;
        case 7:
            require((m_event->removeAll(m_targets[id]) != 0) == m_model.remove(number(id)),
                    "another result of removeAll");
            break;
        case 8:
            m_connections[id].block();
            m_model.block(number(id), m_model.contains(number(id)));
            break;
        case 9:
            m_connections[id].unblock();
            m_model.block(number(id), false);
            break;
        case 10:
            if (priority == 2) {
                m_event->clear();
                m_model.clear();
            }
            break;
        case 11:
            m_event->disable();
            m_model.isDisabled = true;
            break;
        case 12:
        case 13:
            m_event->enable();
            m_model.isDisabled = false;
            break;
        case 14:
            m_event->stop();
            m_model.stop();
            break;
        case 15: // the listeners move to another event
            if (priority != 0) break;
            {
                auto moved = std::make_unique<Vorn::Event<>>(std::move(*m_event));
                m_event.swap(moved);
            }
            break;
        case 16:
            if (isWeak(id) && !isBeingCalled(id)) { // a weak target is destroyed
                m_model.remove(number(id));
                m_targets[id].reset();
                renew(id);
            }
            break;
        case 17:
            if (priority == 1 && m_model.depth() > 0) destroy();
            break;
        default:
            if (m_model.depth() < 4) call();
        }
    }

    void add(unsigned int id, int priority, bool isOnce) {
        m_connections[id] = isOnce ? m_event->once(m_listeners[id], priority) : m_event->add(m_listeners[id], priority);
        m_model.add(number(id), priority, isOnce);
    }

    // The calls that are running return without calling anything.
    void destroy() {
        m_event = std::make_unique<Vorn::Event<>>();
        m_model = reference::ListenerModel();
        m_isUnwinding = true;
    }

    void call() {
        const Vorn::Event<>& event = *m_event;
        const bool isCalled = m_model.begin();
        bool isThrown = false;
        try {
            ++m_depth;
            event();
        } catch (const Interruption&) {
            isThrown = true;
        }
        --m_depth;
        if (m_isUnwinding) {
            m_isUnwinding = m_depth > 0;
        } else if (isCalled) {
            if (!isThrown) require(m_model.next() == -1, "a listener was not called");
            m_model.end();
        }
    }

    void heard(unsigned int id) {
        require(!m_isUnwinding && m_model.depth() > 0 && m_model.next() == number(id), "another listener is called");
        m_called.push_back(id);
        compare();
        for (unsigned int actions = m_source.below(4); actions > 0 && !m_source.ended() && !m_isUnwinding; --actions) {
            act();
            compare();
        }
        m_called.pop_back();
        if (m_source.below(12) == 0) throw Interruption();
    }

    bool isBeingCalled(unsigned int id) const { return std::count(m_called.begin(), m_called.end(), id) != 0; }
    static int number(unsigned int id) { return static_cast<int>(id); }

    void compare() {
        require(m_event->getDelegateCount() == m_model.count(), "another number of listeners");
        require(m_event->empty() == (m_model.count() == 0), "another emptiness");
        require(m_event->isDisabled() == m_model.isDisabled, "another state");
        require(m_event->isDispatching() == (m_model.depth() > 0), "another dispatch");
        for (unsigned int id = 0; id < LISTENERS; ++id) {
            const bool isIn = m_model.contains(number(id));
            require(m_event->contains(m_listeners[id]) == isIn, "another listener");
            require(m_connections[id].isConnected() == isIn, "another connection");
            if (isIn) require(m_connections[id].isBlocked() == m_model.isBlocked(number(id)), "another block");
            // A call releases what was removed while it was being called at its end.
            require(m_depth > 0 ? references(id) >= isIn : references(id) == isIn, "another number of references");
        }
        if (m_model.depth() > 0) return;
        std::vector<int> ids;
        m_event->forEach([&](const Listener& listener) {
            for (unsigned int id = 0; id < LISTENERS; ++id) {
                if (listener == m_listeners[id]) ids.push_back(number(id));
            }
        });
        require(ids == m_model.ids(), "another order");
    }

    using Listener = Vorn::Event<>::Listener;

    Source& m_source;
    void (*m_check)(bool, const char*);
    std::array<Vorn::SharedPtr<Target>, LISTENERS> m_targets;
    std::array<Listener, LISTENERS> m_listeners;
    std::array<Vorn::Connection, LISTENERS> m_connections;
    std::unique_ptr<Vorn::Event<>> m_event = std::make_unique<Vorn::Event<>>();
    reference::ListenerModel m_model;
    std::vector<unsigned int> m_called; // the listeners being called
    int m_depth = 0;                    // of the calls on the stack
    bool m_isUnwinding = false;         // their event has been destroyed
};
