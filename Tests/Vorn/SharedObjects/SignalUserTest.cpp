// What users of public signal libraries expect of an event, a connection and a delegate.
#include "Support/AllocationCounter.h"
#include "Support/Report.h"
#include "Vorn/SharedObjects/Event.h"
#include "Vorn/SharedObjects/ResultEvent.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

namespace {

using namespace Vorn;

int sum = 0;
void addFree(int value) { sum += value; }
void addNothing() { sum += 100; }
void addNoexceptFree(int value) noexcept { sum += value; }

struct Base {
    virtual ~Base() = default;
    void addTwice(int value) { total += 2 * value; }
    int getTotal() const { return total; }
    int total = 0;
};

struct Listening : DynamicObject, Base {
    void add(int value) { total += value; }
    void addConst(int value) const { sum += value; }
    void addNone() { ++total; }
    virtual void addVirtual(int value) { total += value; }
    void addNoexcept(int value) noexcept { total += value; }
};

struct Derived : Listening {
    void addVirtual(int value) override { total += 10 * value; }
};

void addTo(Listening& listening, int value) { listening.add(value); }

class SignalUser : public testing::Test {
protected:
    SignalUser() { sum = 0; }
    Event<int> event;
    Listening object;
};

TEST_F(SignalUser, ConnectsFunctions) {
    EXPECT_TRUE(event.empty());
    event.add<&addFree>();
    event.add(&addFree); // the same listener
    event.add(addFree);
    EXPECT_EQ(event.getDelegateCount(), 1u);
    event.add<&addNothing>(); // takes no arguments
    event(1);
    EXPECT_EQ(sum, 101);
    EXPECT_TRUE(event.contains<&addFree>());
    EXPECT_TRUE(event.remove<&addFree>());
    EXPECT_FALSE(event.remove(&addFree));
    EXPECT_TRUE(event.remove(addNothing));
    EXPECT_TRUE(event.empty());
    expectRaises<1>([&] { event.add(static_cast<void (*)(int)>(nullptr)); },
                    "!isNullCallable<Kept>(callable) : null pointer!", "Vorn::Delegate::bindCallable",
                    "Include/Vorn/SharedObjects/Delegate");
    EXPECT_TRUE(event.empty());
}

TEST_F(SignalUser, AFunctionIsOneListenerWithAndWithoutItsNoexcept) {
    void (*const plain)(int) = &addNoexceptFree;
    event.add<&addNoexceptFree>();
    event.add(&addNoexceptFree);
    event.add(plain);
    EXPECT_EQ(event.getDelegateCount(), 1u);
    event(1);
    EXPECT_EQ(sum, 1);
    EXPECT_TRUE(event.remove(plain));
    event.add(plain);
    EXPECT_TRUE(event.remove<&addNoexceptFree>());
}

TEST_F(SignalUser, ConnectsMethodsOfObjectsAndPointers) {
    Derived derived;
    event.add<&Listening::add>(object);
    event.add<&Listening::add>(&object); // the same listener
    event.add<&Base::addTwice>(object);
    event.add<&Listening::addConst>(object);
    event.add<&Listening::addNone>(object);
    event.add<&Listening::addNoexcept>(object);
    event.add<&Listening::addVirtual>(derived);
    event.add<&addTo>(derived);
    EXPECT_EQ(event.getDelegateCount(), 7u);
    event(3);
    EXPECT_EQ(object.total, 3 + 6 + 1 + 3);
    EXPECT_EQ(derived.total, 33);
    EXPECT_EQ(sum, 3);
    EXPECT_TRUE(event.remove<&Listening::addConst>(static_cast<const Listening&>(object)));
    EXPECT_TRUE(event.contains<&Base::addTwice>(static_cast<Base&>(object)));
    EXPECT_TRUE(event.remove<&Base::addTwice>(static_cast<const Base*>(&object)));
    EXPECT_EQ(event.removeAll(object), 3u);
    EXPECT_EQ(event.removeAll(&derived), 2u);
    EXPECT_TRUE(event.empty());
    Listening* const none = nullptr;
    expectRaises<1>([&] { event.add<&Listening::add>(none); }, "target : null pointer!", "Vorn::Delegate::bind",
                    "Include/Vorn/SharedObjects/Delegate");
}

TEST_F(SignalUser, RemovesAMethodHoweverItsObjectIsHeld) {
    const auto shared = makeShared<Listening>();
    const auto addAll = [&] {
        event.add<&Listening::add>(shared);
        event.add<&Listening::add>(*shared);
        event.add<&Listening::add>(WeakPtr<Listening>(shared));
        event.add<&Listening::addNone>(*shared);
    };
    addAll();
    EXPECT_TRUE(event.remove<&Listening::add>(*shared));
    EXPECT_EQ(event.getDelegateCount(), 1u);
    addAll();
    EXPECT_TRUE(event.remove<&Listening::add>(WeakPtr<Listening>(shared)));
    EXPECT_FALSE(event.remove<&Listening::add>(shared));
    addAll();
    EXPECT_EQ(event.removeAll(WeakPtr<Listening>(shared)), 4u);
    EXPECT_EQ(shared.getUseCount(), 1);
    EXPECT_EQ(shared.getWeakCount(), 0);
}

TEST_F(SignalUser, RemovesNothingOfAnObjectAtTheAddressOfAnother) {
    struct Plain {
        void add(int value) { total += value; }
        int total = 0;
    };
    Plain plain;
    WeakPtr<Plain> gone;
    {
        const SharedPtr<Plain> first(&plain, [](Plain*) {}); // its memory is used again
        gone = first;
    }
    event.add<&Plain::add>(plain);
    EXPECT_EQ(event.removeAll(gone), 0u);
    EXPECT_FALSE(event.remove<&Plain::add>(gone));
    EXPECT_EQ(event.removeAll(plain), 1u);
}

TEST_F(SignalUser, ConnectsCallablesOfAnySize) {
    std::array<int, 50> large{};
    large[49] = 7;
    int calls = 0;
    event.add([large] { sum += large[49]; });
    event.add([&](auto... values) { sum += int(sizeof...(values)); });
    event.add([&calls, n = 0](int) mutable { calls = ++n; });
    event.add([p = std::make_unique<int>(5)] { sum += *p; });
    event(0);
    event(0);
    EXPECT_EQ(sum, 2 * (7 + 1 + 5));
    EXPECT_EQ(calls, 2);
    for (int i = 0; i < 3; ++i) event.add([] { ++sum; }); // three listeners
    EXPECT_EQ(event.getDelegateCount(), 7u);
    sum = 0;
    event(0);
    EXPECT_EQ(sum, 13 + 3);
}

TEST_F(SignalUser, ListenersAreValues) {
    using Listener = Event<int>::Listener;
    Listener listener = [](int value) { sum += value; };
    Listener copy = listener;
    EXPECT_EQ(copy, listener);
    EXPECT_EQ(std::hash<Listener>()(copy), std::hash<Listener>()(listener));
    Listener moved = std::move(copy);
    EXPECT_TRUE(copy.isNull());
    EXPECT_EQ(copy, Listener());
    copy = nullptr;
    moved.reset();
    EXPECT_TRUE(moved.isNull());
    event.add(listener);
    event.add(listener);
    event(2);
    EXPECT_EQ(sum, 2);
    EXPECT_TRUE(event.remove(listener));
    EXPECT_EQ(Listener::bind<&addFree>(), Listener::bindCallable(&addFree));
    std::vector<Event<>::Listener> several;
    const auto target = makeShared<Listening>();
    for (int i = 0; i < 9; ++i) several.push_back(Event<>::Listener::bind<&Listening::addNone>(target));
    several.erase(several.begin(), several.begin() + 5);
    std::swap(several[0], several[1]);
    EXPECT_EQ(target.getUseCount(), 5);
    several.clear();
    EXPECT_EQ(target.getUseCount(), 1);
    std::unordered_set<Listener> set{listener, Listener(), listener, &addFree};
    EXPECT_EQ(set.size(), 3u);
    EXPECT_THROW(event.add(Listener()), Exception<1>);
}

TEST_F(SignalUser, ConnectionsFollowTheirListener) {
    Connection none;
    EXPECT_FALSE(none);
    EXPECT_FALSE(none.disconnect());
    none.block();
    Connection first = event.add(&addFree);
    const Connection same = first;
    EXPECT_TRUE(first.isConnected() && same == first && first != none);
    EXPECT_EQ(event.add(&addFree, 5), first); // moved
    first.block();
    EXPECT_TRUE(same.isBlocked());
    event(1);
    EXPECT_EQ(sum, 0);
    { const ScopedBlock block(same); }
    event(1);
    EXPECT_EQ(sum, 0) << "blocked before the scope";
    first.unblock();
    {
        const ScopedBlock block(same);
        event(1);
        EXPECT_EQ(sum, 0);
    }
    event(1);
    EXPECT_EQ(sum, 1);
    Event<int> other = std::move(event);
    EXPECT_TRUE(same.isConnected());
    EXPECT_FALSE(event.remove(same));
    EXPECT_TRUE(other.remove(same));
    EXPECT_FALSE(same.isConnected());
    EXPECT_FALSE(first.disconnect());
}

TEST_F(SignalUser, ScopedBlocksAreCounted) {
    Connection connection = event.add(&addFree);
    auto first = std::make_unique<ScopedBlock>(connection);
    ScopedBlock second(connection), none;
    first.reset();
    event(1);
    EXPECT_TRUE(connection.isBlocked());
    connection.unblock(); // ends no ScopedBlock
    event(1);
    connection.block();
    none = std::move(second);
    EXPECT_EQ(sum, 0);
    none = ScopedBlock();
    event(1);
    EXPECT_EQ(sum, 0) << "the switch";
    connection.unblock();
    EXPECT_FALSE(connection.isBlocked());
    event(1);
    EXPECT_EQ(sum, 1);
    const ScopedBlock moved = ScopedBlock(connection);
    std::vector<ScopedBlock> several;
    for (int i = 0; i < 9; ++i) several.emplace_back(connection);
    several.clear();
    EXPECT_TRUE(connection.isBlocked());
    connection.disconnect();
    event.add(&addFree); // another listener
    event(1);
    EXPECT_EQ(sum, 2);
}

TEST_F(SignalUser, ConnectionsOutliveTheEvent) {
    const std::size_t live = liveAllocationCount();
    {
        Connection connection;
        ScopedConnection scoped;
        {
            Event<int> inner;
            connection = inner.add([] {});
            scoped = inner.add([] {});
        }
        EXPECT_FALSE(connection.isConnected());
        EXPECT_FALSE(scoped.isConnected());
        EXPECT_FALSE(connection.disconnect());
        connection.block();
    }
    EXPECT_EQ(liveAllocationCount(), live);
}

TEST_F(SignalUser, ScopedConnectionsDisconnect) {
    {
        ScopedConnection scoped = event.add(&addFree);
        ScopedConnection moved = std::move(scoped);
        EXPECT_FALSE(scoped);
        EXPECT_TRUE(moved);
        event(1);
        moved = ScopedConnection(event.add([] { sum += 10; })); // removes addFree
        event(1);
        EXPECT_EQ(sum, 11);
    }
    EXPECT_TRUE(event.empty());
    Connection kept;
    {
        ScopedConnection scoped = event.add(&addFree);
        kept = scoped.release();
    }
    EXPECT_TRUE(kept);
}

TEST_F(SignalUser, OnceIsCalledOnce) {
    event.once(
        [this] {
            ++sum;
            EXPECT_TRUE(event.empty());
            event(0); // not again
        },
        9);
    const Connection method = event.once<&Listening::addNone>(object, -1);
    event.once<&addNothing>();
    event.once(Event<int>::Listener(&addFree));
    event(1);
    EXPECT_EQ(sum, 1 + 100 + 1);
    EXPECT_EQ(object.total, 1);
    EXPECT_FALSE(method);
    event(1);
    EXPECT_EQ(sum, 102);
}

TEST_F(SignalUser, ListenersLiveAsLongAsTheirObjects) {
    auto owner = makeShared<Listening>();
    WeakPtr<Listening> weak = owner;
    event.addWhileAlive(owner, [p = owner.get()](int value) { p->add(value); });
    event.addWhileAlive(*owner, [] { ++sum; });
    const Connection connection = event.addWhileAlive(weak, [] { ++sum; });
    event.addWhileAlive(owner.get(), &addFree);
    event.add<&Listening::add>(weak);
    EXPECT_EQ(owner.getUseCount(), 1);
    event(3);
    EXPECT_EQ(owner->total, 6);
    EXPECT_EQ(sum, 5);
    EXPECT_EQ(event.getDelegateCount(), 5u);
    owner.reset();
    EXPECT_EQ(event.getDelegateCount(), 0u);
    EXPECT_TRUE(event.empty());
    EXPECT_FALSE(connection);
    event(3);
    EXPECT_EQ(sum, 5);
    EXPECT_FALSE(event.addWhileAlive(weak, [] {}));
    Listening unshared;
    expectRaises<1>([&] { event.addWhileAlive(unshared, [] {}); }, "life : the owner is not shared!",
                    "Vorn::Event::addWhileAlive", "Include/Vorn/SharedObjects/EventListeners");
    owner = makeShared<Listening>();
    event.addWhileAlive(owner, [] {});
    event.addWhileAlive(owner, [] {});
    EXPECT_EQ(event.removeAll(owner), 2u);
}

TEST_F(SignalUser, CallKeepsTheOwnerAlive) {
    auto owner = makeShared<Listening>();
    event.addWhileAlive(owner, [&, p = owner.get()] {
        owner.reset();
        sum = ++p->total; // still here
    });
    event(1);
    EXPECT_EQ(sum, 1);
    EXPECT_TRUE(event.empty());
}

TEST_F(SignalUser, ListenersWithResults) {
    ResultEvent<int, int> asked;
    EXPECT_TRUE(asked.collect(1).empty());
    auto weak = makeShared<Listening>();
    asked.add([](int value) { return value; });
    asked.add([] { return 20; }, 1);
    asked.add<&Base::getTotal>(object, 2);
    asked.add<&Base::getTotal>(WeakPtr<Listening>(weak), -1);
    EXPECT_EQ(asked.collect(5), (std::vector<int>{0, 5, 20, 0}));
    weak.reset();
    EXPECT_EQ(asked.collect(5), (std::vector<int>{5, 20, 0}));
    EXPECT_EQ(asked.callUntil([](int result) { return result > 10; }, 5), std::optional<int>(20));
    EXPECT_EQ(asked.callUntil([](int result) { return result > 30; }, 5), std::nullopt);
    int total = 0;
    asked.callEach([&](int result) { total += result; }, 6);
    EXPECT_EQ(total, 26);
    asked(1);
    ResultEvent<std::unique_ptr<int>> made;
    made.add([] { return std::make_unique<int>(4); });
    EXPECT_EQ(*made.collect().at(0), 4);
}

TEST_F(SignalUser, AnEndedCallKeepsTheListenersBehindIt) {
    ResultEvent<int, int> asked;
    asked.add([](int value) { return value; });
    int calls = 0;
    const Connection once = asked.once([&calls](int value) { return ++calls + value; }, 1);
    EXPECT_EQ(asked.callUntil([](int result) { return result == 3; }, 3), std::optional<int>(3));
    asked.callEach([](int) { return false; }, 3);
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(once.isConnected());
    EXPECT_EQ(asked.getDelegateCount(), 2u);
    EXPECT_EQ(asked.collect(3), (std::vector<int>{3, 4}));
    EXPECT_EQ(asked.collect(3), (std::vector<int>{3}));
}

TEST_F(SignalUser, MembersOfAnArgument) {
    const auto total = [](auto argument) {
        ResultEvent<int, decltype(argument)> asked;
        asked.add(&Listening::total);
        return asked.collect(argument);
    };
    Vorn::Event<std::reference_wrapper<Listening>, int> called;
    called.add(&Listening::add);
    called(object, 4);
    EXPECT_EQ(total(&object), std::vector<int>{4});
    EXPECT_EQ(total(std::ref(object)), std::vector<int>{4});
    EXPECT_EQ(total(std::cref(object)), std::vector<int>{4});
    EXPECT_EQ(total(std::make_shared<Listening>()), std::vector<int>{0});
}

TEST_F(SignalUser, ListenersStopACall) {
    event.add([this](int value) {
        ++sum;
        if (value == 1) event.stop();
    });
    event.add([] { sum += 10; });
    event(1);
    EXPECT_EQ(sum, 1);
    event(2);
    EXPECT_EQ(sum, 12);
    event.stop(); // outside of calls
    event(2);
    EXPECT_EQ(sum, 23);
}

TEST_F(SignalUser, ArgumentsOfAnyKind) {
    Event<std::unique_ptr<int>> moveOnly;
    moveOnly.add([](const std::unique_ptr<int>& number) { sum += *number; });
    moveOnly.add([](auto& number) { sum += *number; });
    moveOnly(std::make_unique<int>(4));
    EXPECT_EQ(sum, 8);
    Event<std::string&, const std::string&> texts;
    texts.add([](std::string& out, std::string in) { out += in; });
    texts.add([](std::string& out) { out += "!"; });
    std::string out;
    texts(out, "a");
    EXPECT_EQ(out, "a!");
    Event<Listening&, int> members;
    members.add(&Listening::add); // the object is the first argument
    members(object, 4);
    EXPECT_EQ(object.total, 4);
}

TEST_F(SignalUser, EventsMoveAndSwap) {
    std::vector<Event<int>> events(1);
    const Connection connection = events[0].add(&addFree);
    events.resize(100);
    events[0](1);
    EXPECT_EQ(sum, 1);
    swap(events[0], events[50]);
    events[0](1);
    EXPECT_EQ(sum, 1);
    events[50](1);
    EXPECT_EQ(sum, 2);
    events[50].disable();
    events[0] = std::move(events[50]);
    EXPECT_TRUE(events[0].isDisabled());
    EXPECT_FALSE(events[50].isDisabled());
    EXPECT_TRUE(connection);
    Event<int>& same = events[0];
    events[0] = std::move(same);
    EXPECT_EQ(events[0].getDelegateCount(), 1u);
    events[0] = Event<int>();
    EXPECT_FALSE(connection);
    EXPECT_FALSE(std::is_copy_constructible_v<Event<int>>);
}

TEST_F(SignalUser, ConstantEventsAreCalled) {
    event.add(&addFree);
    const Event<int>& constant = event;
    constant(3);
    EXPECT_EQ(sum, 3);
    int visited = 0;
    constant.forEach([&](const Event<int>::Listener& listener, int priority) {
        EXPECT_EQ(listener, Event<int>::Listener(&addFree));
        visited += 1 + priority;
    });
    EXPECT_EQ(visited, 1);
}

TEST_F(SignalUser, DelegatesReturnReferencesAndTakeMembers) {
    Delegate<int&> reference = [this]() -> int& { return object.total; };
    reference() = 5;
    EXPECT_EQ(object.total, 5);
    reference.reset();
    expectRaises<1>([&] { reference(); }, "result : no target to call!", "Vorn::Delegate::call",
                    "Include/Vorn/SharedObjects/Delegate");
    const Delegate<int, const Base&> field = &Base::total;
    const Delegate<int, Base*> method = &Base::getTotal;
    const Delegate<int, const std::shared_ptr<Base>&> smart = &Base::getTotal;
    EXPECT_EQ(field(object) + method(&object) + smart(std::make_shared<Base>()), 10);
    const auto total = Delegate<int&>::bind<&Base::total>(object);
    total() = 6;
    EXPECT_EQ(object.total, 6);
    EXPECT_EQ(Delegate<int>::bind<&Base::getTotal>(object),
              Delegate<int>::bind<&Base::getTotal>(static_cast<Base&>(object)));
    const Delegate<int> fromVoid = Delegate<int, void>([] { return 3; });
    EXPECT_EQ(fromVoid(), 3);
}

} // namespace
