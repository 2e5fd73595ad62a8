// Events against their models: additions, removals and dispatches in every order, also from inside of dispatches, and
// listeners that throw.
#include "Reference/EventModel.h"
#include "Support/EventGame.h"
#include "Support/ListenerGame.h"
#include "Support/ReclaimedLeak.h"
#include "Support/Stream.h"

#include <array>
#include <cstdint>

namespace {

constexpr unsigned int LISTENERS = 5;

class Play : public Game {
public:
    using Delegate = Vorn::Delegate<void, void>;

    explicit Play(Stream stream) : m_stream(stream) {
        for (unsigned int id = 0; id < LISTENERS; ++id) {
            m_targets[id] = Vorn::makeShared<Listener>(Listener{this, static_cast<int>(id)});
            m_delegates[id].rebind(isWeak(id) ? Delegate::bindWeak<&Listener::call>(m_targets[id])
                                              : Delegate::bindShared<&Listener::call>(m_targets[id]));
        }
    }

    void run() {
        {
            OpenEvent event;
            m_event = &event;
            while (!m_stream.ended()) {
                const unsigned int choice = m_stream.next();
                if (choice < 0x40) {
                    dispatch();
                } else {
                    change(choice);
                }
                compare();
            }
        }
        releaseLost();
    }

    void called(int id) override {
        require(id == m_model.advance(), "another listener is called");
        compare();
        // Changes go on until a byte ends the call.
        while (!m_stream.ended()) {
            const unsigned int choice = m_stream.next();
            if (choice < 0x08) throw Interruption();
            if (choice < 0x50) return;
            change(choice);
            compare();
        }
    }

private:
    static bool isWeak(unsigned int id) { return id % 3 == 2; }

    void change(unsigned int choice) {
        const unsigned int id = choice % LISTENERS;
        if (choice < 0xB0) {
            const int priority = static_cast<int>(m_stream.below(5)) - 2;
            m_model.add(static_cast<int>(id), priority);
            m_leak.start(); // of nodes that the model calls lost
            m_event->add(m_delegates[id], priority);
            m_leak.stop();
        } else if (choice < 0xF0) {
            m_model.remove(static_cast<int>(id));
            m_event->remove(m_delegates[id]);
        } else if (choice < 0xF8) {
            m_model.clear();
            m_event->clear();
        } else if (choice < 0xFC) {
            m_model.isDisabled = true;
            m_event->disable();
        } else {
            m_model.isDisabled = false;
            m_event->enable();
        }
    }

    void dispatch() {
        const bool wasDisabled = m_model.isDisabled;
        bool isInterrupted = false;
        try {
            (*m_event)();
        } catch (const Interruption&) {
            isInterrupted = true;
        }
        if (wasDisabled) return;
        if (!isInterrupted) require(m_model.advance() == -1, "a listener was not called");
        m_model.endDispatch();
    }

    int references(unsigned int id) const {
        return isWeak(id) ? m_targets[id].getWeakCount() - 1 : m_targets[id].getUseCount() - 2;
    }

    void compare() const {
        require(m_event->getDelegateCount() == m_model.count, "another number of listeners");
        require(m_event->isDisabled() == m_model.isDisabled, "another state");
        require(m_event->isDispatching() == (m_model.at >= 0), "another dispatch");
        for (unsigned int id = 0; id < LISTENERS; ++id) {
            require(m_event->contains(m_delegates[id]) == m_model.contains(static_cast<int>(id)), "another listener");
            require(references(id) == m_model.references(static_cast<int>(id)), "another number of references");
        }
        require(m_event->chain() == m_model.chain, "another chain");
        require(m_event->pending() == m_model.pending, "other pending listeners");
    }

    // The nodes that the event has lost, and the references that they hold.
    void releaseLost() {
        require(!ReclaimedLeak::IS_RECORDING_POSSIBLE || m_leak.count() == m_model.lost.size(),
                "another number of lost nodes");
        m_leak.freeBlocks([](void* block) { ::operator delete(block); });
        for (const reference::EventNode& node : m_model.lost) {
            const Vorn::DelegatePOD& pod = m_delegates[static_cast<unsigned int>(node.id)].getPOD();
            pod.contextAddRef(pod.context, Vorn::DELEGATE_RELEASE_REF);
        }
        for (unsigned int id = 0; id < LISTENERS; ++id) require(references(id) == 0, "the event keeps a reference");
    }

    Stream m_stream;
    ReclaimedLeak m_leak;
    std::array<Vorn::SharedPtr<Listener>, LISTENERS> m_targets;
    std::array<Delegate, LISTENERS> m_delegates;
    OpenEvent* m_event = nullptr;
    reference::EventModel m_model;
};

} // namespace

// The first byte chooses the event: one whose nodes can be read, or the one of programs, which has a model of its own.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Stream stream(data, size);
    if (stream.next() % 2 == 0)
        Play(stream).run();
    else
        ListenerGame<Stream>(stream, &require).run();
    return 0;
}
