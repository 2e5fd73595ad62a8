#include "Vorn/SharedObjects/Event.h"

#include "Support/CountedTarget.h"
#include "Support/Report.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <type_traits>

namespace {

using Vorn::Event;
using Vorn::SharedPtr;
using Calls = std::vector<std::string>;

struct Voice {
    explicit Voice(std::string voiceName) : name(std::move(voiceName)) {}
    void say(int value) { calls().push_back(name + std::to_string(value)); }
    void whisper() { calls().push_back(name); }
    static Calls& calls() {
        static Calls made;
        return made;
    }
    std::string name;
};

Calls takeCalls() {
    Calls result;
    result.swap(Voice::calls());
    return result;
}

using IntEvent = Event<int>;
using Listener = IntEvent::Listener;

Listener said(Voice& voice) { return Listener::bind<&Voice::say>(voice); }

class EventTest : public testing::Test {
protected:
    EventTest() { takeCalls(); }
    Voice a{"a"}, b{"b"}, c{"c"};
    IntEvent event;
};

TEST_F(EventTest, CallsInOrderOfPriority) {
    event.add(said(a), 2);
    event.add(said(b), -1);
    event.add(said(c));
    EXPECT_EQ(event.getDelegateCount(), 3u);
    event(7);
    EXPECT_EQ(takeCalls(), (Calls{"b7", "c7", "a7"}));
    event.add(said(b), 2);
    event(8);
    EXPECT_EQ(takeCalls(), (Calls{"c8", "a8", "b8"}));
    EXPECT_EQ(event.getDelegateCount(), 3u);
}

TEST_F(EventTest, RemovesAndContains) {
    event.add(said(a));
    EXPECT_TRUE(event.contains(said(a)));
    EXPECT_FALSE(event.contains(said(b)));
    EXPECT_FALSE(event.remove(said(b)));
    EXPECT_TRUE(event.remove(said(a)));
    EXPECT_FALSE(event.remove(said(a)));
    event(1);
    EXPECT_EQ(takeCalls(), Calls());
    expectRaises<1>([&] { event.add(Listener()); }, "delegate.caller && delegate.typeInfo : Invalid delegate!!",
                    "Vorn::Event::add", "Source/Vorn/ListenerChain");
}

TEST_F(EventTest, WithoutArguments) {
    Event<> simple;
    simple.add(Event<>::Listener::bind<&Voice::whisper>(a));
    simple();
    EXPECT_EQ(takeCalls(), Calls{"a"});
    EXPECT_TRUE((std::is_same_v<Event<>::Listener, Vorn::Delegate<void>>));
    EXPECT_FALSE(std::is_copy_constructible_v<Event<>>);
}

TEST_F(EventTest, EveryListenerGetsTheArguments) {
    Event<std::string, std::string&> joining;
    const auto join = [](std::string text, std::string& result) { result += std::move(text); };
    const auto joinTwice = [](std::string text, std::string& result) { result += text + std::move(text); };
    joining.add(decltype(joining)::Listener::bindCallable(join));
    joining.add(decltype(joining)::Listener::bindCallable(joinTwice));
    std::string result;
    joining("long enough to have a block of its own, ", result);
    EXPECT_EQ(result.size(), 3u * 40u);
}

TEST_F(EventTest, DisabledEventCallsNobody) {
    event.add(said(a));
    event.disable();
    EXPECT_TRUE(event.isDisabled());
    event(1);
    EXPECT_EQ(takeCalls(), Calls());
    event.add(said(b));
    event.enable();
    event(2);
    EXPECT_EQ(takeCalls(), (Calls{"a2", "b2"}));
}

TEST_F(EventTest, DisablingInsideACallHoldsFromTheNextCall) {
    event.add(said(a));
    event.add(Listener::bindCallable([this](int) { event.disable(); }));
    event.add(said(b));
    event(1);
    EXPECT_EQ(takeCalls(), (Calls{"a1", "b1"}));
    event(2);
    EXPECT_EQ(takeCalls(), Calls());
    EXPECT_EQ(event.getDelegateCount(), 3u);
}

TEST_F(EventTest, CallsMayBeNested) {
    event.add(said(a));
    event.add([this](int value) {
        EXPECT_TRUE(event.isDispatching());
        if (value < 3) event(value + 1);
        EXPECT_TRUE(event.isDispatching());
    });
    event.add(said(b));
    event(1);
    EXPECT_EQ(takeCalls(), (Calls{"a1", "a2", "a3", "b3", "b2", "b1"}));
    EXPECT_FALSE(event.isDispatching());
}

TEST_F(EventTest, ThrowingListenerLeavesItIdleAndUsable) {
    event.add(said(a));
    const Listener throwing = Listener::bindCallable([this](int) {
        event.add(said(c), 9); // waits
        throw std::runtime_error("stop");
    });
    event.add(throwing, 1);
    event.add(said(b), 2);
    EXPECT_THROW(event(1), std::runtime_error);
    EXPECT_EQ(takeCalls(), Calls{"a1"});
    EXPECT_FALSE(event.isDispatching());
    EXPECT_TRUE(event.remove(throwing));
    event(2);
    EXPECT_EQ(takeCalls(), (Calls{"a2", "b2", "c2"}));
}

TEST_F(EventTest, ListenersMayRemoveThemselvesAndEachOther) {
    const Listener once = Listener::bindCallable([this](int value) {
        a.say(value);
        event.remove(said(b));
        event.remove(said(c));
        event.add(said(c), 5);
    });
    Listener self;
    self = Listener::bindCallable([this, &self](int) { EXPECT_TRUE(event.remove(self)); });
    event.add(once, 0);
    event.add(self, 1);
    event.add(said(b), 2);
    event.add(said(c), 3);
    event(1);
    EXPECT_EQ(takeCalls(), Calls{"a1"}); // c waits for the next call
    EXPECT_EQ(event.getDelegateCount(), 2u);
    event(2);
    EXPECT_EQ(takeCalls(), (Calls{"a2"})); // and has been moved again
}

TEST_F(EventTest, DeadListenersAreSkipped) {
    SharedPtr<Voice> voice = Vorn::makeShared<Voice>("v");
    event.add(Listener::bindWeak<&Voice::say>(voice));
    event.add(said(a));
    event(1);
    voice.reset();
    event(2);
    EXPECT_EQ(takeCalls(), (Calls{"v1", "a1", "a2"}));
    EXPECT_EQ(event.getDelegateCount(), 1u);
}

TEST_F(EventTest, NewListenerAtTheAddressOfADeadOneIsCalled) {
    alignas(Voice) static unsigned char place[sizeof(Voice)];
    const auto make = [](const char* name) {
        return SharedPtr<Voice>(new (place) Voice(name), [](void* object) { static_cast<Voice*>(object)->~Voice(); });
    };
    for (const int priority : {-1, 0, 1}) {
        IntEvent other;
        SharedPtr<Voice> first = make("first");
        other.add(Listener::bindWeak<&Voice::say>(first), priority);
        const Vorn::WeakPtr<Voice> observer(first);
        first.reset();
        SharedPtr<Voice> second = make("second");
        other.add(Listener::bindWeak<&Voice::say>(second), 0);
        EXPECT_EQ(other.getDelegateCount(), 1u);
        EXPECT_EQ(observer.getWeakCount(), 1); // the old control block is released
        EXPECT_EQ(second.getWeakCount(), 1);
        other(1);
        EXPECT_EQ(takeCalls(), Calls{"second1"});
    }
}

TEST_F(EventTest, NewListenerAtTheAddressOfADeadPendingOne) {
    alignas(Voice) static unsigned char place[sizeof(Voice)];
    const auto make = [](const char* name) {
        return SharedPtr<Voice>(new (place) Voice(name), [](void* object) { static_cast<Voice*>(object)->~Voice(); });
    };
    SharedPtr<Voice> second;
    event.add(said(a), 0);
    event.add(Listener::bindCallable([&](int) {
                  if (second) return;
                  SharedPtr<Voice> first = make("first");
                  event.add(said(b), 9);
                  event.add(Listener::bindWeak<&Voice::say>(first), 1);
                  EXPECT_TRUE(event.remove(said(b))); // so the dead one is the first to wait
                  first.reset();
                  second = make("second");
                  event.add(said(c), 9); // the dead one is not the last to wait
                  event.add(Listener::bindWeak<&Voice::say>(second), 1);
              }),
              0);
    event(1);
    takeCalls();
    event(2);
    EXPECT_EQ(takeCalls(), (Calls{"a2", "second2", "c2"}));
}

TEST_F(EventTest, AddingAgainAllocatesNothing) {
    std::vector<SharedPtr<Voice>> voices;
    for (int i = 0; i < 20; ++i) {
        voices.push_back(Vorn::makeShared<Voice>("v"));
        event.add(Listener::bindShared<&Voice::say>(voices.back()), i % 5);
    }
    EXPECT_EQ(allocationsDuring([&] {
                  for (int i = 0; i < 20; ++i) {
                      event.add(Listener::bindShared<&Voice::say>(voices[static_cast<std::size_t>(i)]), i % 3);
                  }
              }),
              0u);
    for (const SharedPtr<Voice>& voice : voices) EXPECT_EQ(voice.getUseCount(), 2);
}

// A target whose destructor takes its other listeners off the event that is just letting it go.
struct Leaving {
    explicit Leaving(IntEvent& listened) : event(&listened) {}
    ~Leaving() {
        event->remove(Listener::bind<&Leaving::raw>(*this));
        event->remove(Listener::bind<&Leaving::more>(*this));
        Voice::calls().push_back("gone");
    }
    void raw(int) { Voice::calls().push_back("raw"); }
    void more(int) { Voice::calls().push_back("more"); }
    void held(int) { Voice::calls().push_back("held"); }
    IntEvent* event;
};

TEST_F(EventTest, DestructorsMayComeBackWhileTheEventChanges) {
    for (int arrangement = 0; arrangement < 27; ++arrangement) {
        for (int trigger = 0; trigger < 5; ++trigger) {
            SCOPED_TRACE(std::to_string(arrangement) + " " + std::to_string(trigger));
            IntEvent other;
            SharedPtr<Leaving> leaving = Vorn::makeShared<Leaving>(other);
            Leaving& target = *leaving;
            const int priorities[] = {arrangement % 3 - 1, arrangement / 3 % 3 - 1, arrangement / 9 - 1};
            other.add(said(a), -1);
            other.add(Listener::bind<&Leaving::raw>(target), priorities[0]);
            {
                Listener held = Listener::bindShared<&Leaving::held>(leaving);
                leaving.reset();
                other.add(held, priorities[1]);
                other.add(Listener::bind<&Leaving::more>(target), priorities[2]);
                other.add(said(b), 1);
                const Listener ending = Listener::bindCallable([&](int) { other.clear(); });
                if (trigger < 3) {
                    other.add(ending, -2);
                    other(0);
                } else if (trigger == 3) {
                    held = Listener(); // the event's node holds the last use
                }
            }
            takeCalls();
            if (trigger == 0) other.remove(said(c));
            if (trigger == 1) other.add(said(c), -9);
            if (trigger == 2) other.add(said(b), 0);
            if (trigger == 3) other.clear();
            if (trigger == 4)
                other.remove(Listener::bindShared<&Leaving::held>(SharedPtr<Leaving>(&target, [](void*) {})));
            takeCalls();
            other(3); // must not call a destroyed target
        }
    }
}

TEST_F(EventTest, DestructorsMayCallTheEventDuringItsDestruction) {
    for (int arrangement = 0; arrangement < 9; ++arrangement) {
        auto other = std::make_unique<IntEvent>();
        SharedPtr<Leaving> leaving = Vorn::makeShared<Leaving>(*other);
        other->add(Listener::bind<&Leaving::raw>(*leaving), arrangement % 3 - 1);
        other->add(Listener::bindShared<&Leaving::held>(leaving), arrangement / 3 - 1);
        other->add(Listener::bind<&Leaving::more>(*leaving), 0);
        leaving.reset();
        other.reset();
        EXPECT_EQ(takeCalls(), Calls{"gone"});
    }
}

TEST_F(EventTest, ConnectionMayLieInWhatItsRemovalDestroys) {
    struct Owner {
        void held(int) {}
        Vorn::Connection connection;
    };
    for (const bool isInCall : {false, true}) {
        IntEvent other;
        SharedPtr<Owner> owner = Vorn::makeShared<Owner>();
        const Vorn::WeakPtr<Owner> observer = owner;
        other.add(said(a));
        owner->connection = other.add<&Owner::held>(owner);
        Owner& target = *owner;
        owner.reset();
        other.add([&] {
            EXPECT_TRUE(target.connection.disconnect());
            EXPECT_TRUE(observer.isExpired());
        });
        if (isInCall) {
            other(1);
        } else {
            EXPECT_TRUE(target.connection.disconnect());
        }
        EXPECT_TRUE(observer.isExpired());
        EXPECT_EQ(other.getDelegateCount(), 2u);
        takeCalls();
    }
}

// A target whose destructor adds a listener in front of all others.
struct Successor {
    explicit Successor(IntEvent& listened, SharedPtr<Voice> heir) : event(&listened), voice(std::move(heir)) {}
    ~Successor() { event->add(Listener::bindShared<&Voice::say>(voice), -9); }
    void held(int) {}
    IntEvent* event;
    SharedPtr<Voice> voice;
};

TEST_F(EventTest, DestructorsMayAddWhileTheirListenersGo) {
    const SharedPtr<Voice> heir = Vorn::makeShared<Voice>("heir");
    for (const int priority : {-1, 0}) {
        for (const bool isRemoved : {false, true}) {
            auto other = std::make_unique<IntEvent>();
            SharedPtr<Successor> target = Vorn::makeShared<Successor>(*other, heir);
            const auto held = Listener::bindShared<&Successor::held>(SharedPtr<Successor>(target.get(), [](void*) {}));
            other->add(Listener::bindShared<&Successor::held>(target), priority);
            other->add(said(a), 1);
            target.reset();
            if (isRemoved) {
                EXPECT_TRUE(other->remove(held));
                EXPECT_EQ(other->getDelegateCount(), 2u);
                (*other)(1);
                EXPECT_EQ(takeCalls(), (Calls{"heir1", "a1"}));
            }
            other.reset();
            EXPECT_EQ(heir.getUseCount(), 1);
        }
    }
}

TEST_F(EventTest, ClearRemovesAll) {
    event.add(said(a), -1);
    event.add(said(b), 0);
    event.clear();
    EXPECT_TRUE(event.empty());
    EXPECT_FALSE(event.contains(said(a)));
    event(1);
    EXPECT_EQ(takeCalls(), Calls());
}

TEST_F(EventTest, ClearInsideACallRemovesNewListenersToo) {
    event.add(said(a));
    event.add([this] {
        event.add(said(c));
        event.clear();
        EXPECT_EQ(event.getDelegateCount(), 0u);
    });
    event.add(said(b));
    event(1);
    EXPECT_EQ(takeCalls(), Calls{"a1"});
    event(2);
    EXPECT_EQ(takeCalls(), Calls());
}

} // namespace
