#include "Vorn/SharedObjects/Delegate.h"

#include "Support/AllocationCounter.h"
#include "Support/Report.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using Vorn::Delegate;
using Vorn::SharedPtr;
using Vorn::WeakPtr;
using Adder = Delegate<int, int>;

int triple(int value) { return 3 * value; }
int quadruple(int value) { return 4 * value; }

struct Shop {
    int price = 10;
    int buy(int count) { return price * count; }
    int ask(int count) const { return -price * count; }
    int& reference() { return price; }
    void set(int value) { price = value; }
    int plain() noexcept { return price; }
};

int buyTwice(Shop& shop, int count) { return 2 * shop.buy(count); }

struct NoDefault {
    explicit NoDefault(int initial) : value(initial) {}
    int value;
};

struct Maker {
    NoDefault make(int value) { return NoDefault(value); }
};

TEST(Delegate, CallsFunctions) {
    const Adder delegate = Adder::bind<&triple>();
    EXPECT_EQ(delegate(2), 6);
    EXPECT_EQ(delegate.call(3), 9);
    EXPECT_TRUE(delegate == Adder::bind<&triple>());
    EXPECT_TRUE(delegate != Adder::bind<&quadruple>());
    EXPECT_EQ(delegate.getPOD().contextAddRef, nullptr);
    EXPECT_TRUE((Delegate<void, int>::bind<&triple>().isNotNull())); // the result is dropped
    EXPECT_EQ((Delegate<long, short>::bind<&triple>()(short(2))), 6L);
}

TEST(Delegate, CallsMethodsOfObjects) {
    Shop shop, other{20};
    const Adder delegate = Adder::bind<&Shop::buy>(shop);
    EXPECT_EQ(delegate(2), 20);
    EXPECT_EQ(Adder::bind<&Shop::ask>(shop)(2), -20);
    EXPECT_EQ(Adder::bind<&Shop::ask>(static_cast<const Shop&>(shop))(2), -20);
    EXPECT_EQ(Adder::bind<&buyTwice>(shop)(2), 40);
    EXPECT_TRUE(delegate == Adder::bind<&Shop::buy>(shop));
    EXPECT_FALSE(delegate == Adder::bind<&Shop::buy>(other));
    EXPECT_FALSE(delegate == Adder::bind<&Shop::ask>(shop));
    EXPECT_EQ(delegate.getPOD().object, &shop);
    EXPECT_EQ(sizeof(Adder), sizeof(Vorn::DelegateBase));
}

TEST(Delegate, SharedBindingKeepsTheObject) {
    Adder delegate;
    WeakPtr<Shop> weak;
    {
        const SharedPtr<Shop> shop = Vorn::makeShared<Shop>();
        weak = shop;
        delegate = Adder::bindShared<&Shop::buy>(shop);
        EXPECT_EQ(shop.getUseCount(), 2);
        EXPECT_TRUE(delegate == Adder::bindShared<&Shop::buy>(shop));
        EXPECT_FALSE(delegate == Adder::bind<&Shop::buy>(*shop)); // another way of holding is another binding
        EXPECT_EQ(shop.getUseCount(), 2);
    }
    EXPECT_FALSE(weak.isExpired());
    EXPECT_FALSE(delegate.isExpired());
    EXPECT_EQ(delegate(2), 20);
    delegate = Adder();
    EXPECT_TRUE(weak.isExpired());
    expectRaises<1>([] { Adder::bindShared<&Shop::buy>(SharedPtr<Shop>()); }, "object : null pointer!",
                    "Vorn::Delegate::bindShared", "Include/Vorn/SharedObjects/Delegate");
}

TEST(Delegate, WeakBindingDoesNothingOnceTheObjectIsDead) {
    for (const bool isThreadsafe : {false, true}) {
        SharedPtr<Shop> shop = isThreadsafe ? Vorn::makeSharedThreadsafe<Shop>() : Vorn::makeShared<Shop>();
        const Adder delegate = Adder::bindWeak<&Shop::buy>(shop);
        const Delegate<void, void> simple = Delegate<void, void>::bindWeak<&Shop::plain>(WeakPtr<Shop>(shop));
        EXPECT_EQ(shop.getUseCount(), 1);
        EXPECT_EQ(shop.getWeakCount(), 2);
        EXPECT_TRUE(delegate == Adder::bindWeak<&Shop::buy>(shop));
        EXPECT_FALSE(delegate == Adder::bindShared<&Shop::buy>(shop));
        EXPECT_EQ(delegate(2), 20);
        EXPECT_EQ(delegate.tryCall(2), std::optional<int>(20));
        EXPECT_TRUE(simple.tryCall());
        EXPECT_FALSE(delegate.isExpired());
        EXPECT_EQ(shop.getUseCount(), 1);
        shop.reset();
        EXPECT_TRUE(delegate.isExpired());
        EXPECT_EQ(delegate(2), 0);
        EXPECT_EQ(delegate.tryCall(2), std::nullopt);
        simple.call();
        EXPECT_FALSE(simple.tryCall());
        EXPECT_TRUE(delegate.isNotNull());
        const Adder copy(delegate);
        EXPECT_TRUE(copy.isExpired());
    }
    expectRaises<1>([] { Adder::bindWeak<&Shop::buy>(WeakPtr<Shop>()); }, "counter : null pointer!",
                    "Vorn::Delegate::bindWeak", "Include/Vorn/SharedObjects/Delegate");
}

TEST(Delegate, WeakCallKeepsTheObjectWhileItRuns) {
    struct Suicidal {
        SharedPtr<Suicidal>* owner;
        int value;
        int die() {
            owner->reset();
            return value; // still here
        }
    };
    SharedPtr<Suicidal> owner = Vorn::makeShared<Suicidal>(Suicidal{&owner, 5});
    const auto delegate = Delegate<int, void>::bindWeak<&Suicidal::die>(owner);
    EXPECT_EQ(delegate(), 5);
    EXPECT_TRUE(delegate.isExpired());
}

TEST(Delegate, WeakBindingMovesToBases) {
    struct First {
        virtual ~First() = default;
        int first = 1;
    };
    struct Second {
        int second = 2;
        int get() { return second; }
    };
    struct Both : First, Second {};
    const SharedPtr<Both> both = Vorn::makeShared<Both>();
    const SharedPtr<Second> second(both);
    EXPECT_EQ((Delegate<int, void>::bindWeak<&Second::get>(second)()), 2);
    EXPECT_EQ((Delegate<int, void>::bindShared<&Both::get>(both)()), 2);
}

TEST(Delegate, CallablesThatFitAreKeptInTheRecord) {
    int sum = 0;
    const std::size_t before = allocationCount();
    auto add = [&sum](int value) { sum += value; };
    auto free = [](int value) { return 5 * value; };
    const auto small = Delegate<void, int>::bindCallable(add);
    const Adder empty = Adder::bindCallable(free);
    const Adder function = Adder::bindCallable(&triple);
    EXPECT_EQ(allocationCount(), before);
    small(3);
    small(4);
    EXPECT_EQ(sum, 7);
    EXPECT_EQ(empty(2), 10);
    EXPECT_EQ(function(2), 6);
    EXPECT_TRUE((small == Delegate<void, int>::bindCallable(add)));
    EXPECT_TRUE(empty == Adder::bindCallable(free));
    EXPECT_TRUE(function == Adder::bindCallable(&triple));
    EXPECT_FALSE(function == Adder::bindCallable(&quadruple));
    EXPECT_FALSE(function == empty);
    EXPECT_EQ(Adder::bindCallable(triple)(2), 6);
}

TEST(Delegate, OtherCallablesAreHeldOnce) {
    const std::size_t live = liveAllocationCount();
    {
        auto counter = std::make_shared<int>(0);
        const Adder delegate = Adder::bindCallable([counter](int value) { return *counter += value; });
        EXPECT_EQ(counter.use_count(), 2);
        const Adder copy(delegate);
        EXPECT_EQ(counter.use_count(), 2);
        EXPECT_TRUE(copy == delegate);
        EXPECT_EQ(delegate(2) + copy(3), 2 + 5);
    }
    EXPECT_EQ(liveAllocationCount(), live);
    // A callable that calls change keeps its changes, though it would fit.
    const auto counting = Delegate<int, void>::bindCallable([n = 0]() mutable { return ++n; });
    EXPECT_EQ(counting(), 1);
    EXPECT_EQ((Delegate<int, void>(counting)()), 2);
    EXPECT_FALSE(counting == (Delegate<int, void>::bindCallable([n = 0]() mutable { return ++n; })));
}

TEST(Delegate, EmptyGivesNothing) {
    const Adder empty;
    EXPECT_TRUE(empty.isNull());
    EXPECT_EQ(empty(1), 0);
    EXPECT_EQ(empty.tryCall(1), std::nullopt);
    EXPECT_FALSE(empty.isExpired());
    EXPECT_FALSE((Delegate<void, int>().tryCall(1)));
    EXPECT_FALSE((Delegate<void, void>().tryCall()));
    Delegate<void, int>()(1);
}

TEST(Delegate, ResultsOfAnyKind) {
    SharedPtr<Shop> shop = Vorn::makeShared<Shop>();
    using Referring = Delegate<int&, void>;
    const Referring reference = Referring::bindWeak<&Shop::reference>(shop);
    EXPECT_EQ(reference.tryCall(), &shop->price);
    EXPECT_EQ(Referring().tryCall(), nullptr);
    SharedPtr<Maker> maker = Vorn::makeShared<Maker>();
    const auto making = Delegate<NoDefault, int>::bindWeak<&Maker::make>(maker);
    EXPECT_EQ(making.tryCall(4)->value, 4);
    shop.reset();
    maker.reset();
    EXPECT_EQ(reference.tryCall(), nullptr);
    EXPECT_FALSE(making.tryCall(4).has_value());
    const Vorn::DelegatePOD& pod = making.getPOD();
    expectRaises<2>([&] { VornPrivate::typedCaller<NoDefault, int>(pod)(pod.object, pod.context, 4); },
                    "hold : the target is dead!", "Vorn::Delegate::tryCall",
                    "Include/Vorn/SharedObjects/DelegateBinding");
}

TEST(Delegate, ArgumentsOfAnyKind) {
    using Moving = Delegate<int, std::unique_ptr<int>, std::string&, const std::string&>;
    const auto target = [](std::unique_ptr<int> number, std::string& out, const std::string& in) {
        out = in;
        return *number;
    };
    const Moving delegate = Moving::bindCallable(target);
    std::string out;
    EXPECT_EQ(delegate(std::make_unique<int>(3), out, "in"), 3);
    EXPECT_EQ(out, "in");
    EXPECT_EQ(delegate.tryCall(std::make_unique<int>(4), out, "again"), std::optional<int>(4));
    EXPECT_EQ(out, "again");
}

TEST(Delegate, AssignmentCountsAsExpected) {
    const SharedPtr<Shop> first = Vorn::makeShared<Shop>(), second = Vorn::makeShared<Shop>(Shop{20});
    {
        Adder delegate = Adder::bindShared<&Shop::buy>(first);
        delegate = Adder::bindShared<&Shop::buy>(second);
        EXPECT_EQ(first.getUseCount(), 1);
        EXPECT_EQ(second.getUseCount(), 2);
        delegate = *&delegate;
        EXPECT_EQ(second.getUseCount(), 2);
        delegate.rebind(Adder());
        EXPECT_EQ(second.getUseCount(), 1);
        Delegate<int, void> plain = Delegate<int, void>::bindShared<&Shop::plain>(first);
        plain = Delegate<int, void>::bindShared<&Shop::plain>(second);
        EXPECT_EQ(first.getUseCount(), 1);
        EXPECT_EQ(plain(), 20);
        plain.rebind(Delegate<int, void>::bindShared<&Shop::plain>(first));
        EXPECT_EQ(plain.call(), 10);
    }
    EXPECT_EQ(first.getUseCount(), 1);
    EXPECT_EQ(second.getUseCount(), 1);
}

TEST(Delegate, SimpleSignatureIsAssignedByRebind) {
    const SharedPtr<Shop> first = Vorn::makeShared<Shop>(), second = Vorn::makeShared<Shop>();
    {
        Delegate<void, void> delegate = Delegate<void, void>::bindShared<&Shop::plain>(first);
        delegate.rebind(Delegate<void, void>::bindShared<&Shop::plain>(second));
        EXPECT_EQ(first.getUseCount(), 1);
        EXPECT_EQ(second.getUseCount(), 2);
        // The assignment itself counts in reverse.
        const Delegate<void, void> source = Delegate<void, void>::bindShared<&Shop::plain>(first);
        EXPECT_EQ(first.getUseCount(), 2);
        delegate = source;
        EXPECT_EQ(first.getUseCount(), 1);
        EXPECT_EQ(second.getUseCount(), 3);
        Vorn::delegateAddUseRef(sharedRecord(first), Vorn::DELEGATE_ADD_REF); // put right what it did
        Vorn::delegateAddUseRef(sharedRecord(second), Vorn::DELEGATE_RELEASE_REF);
        Vorn::delegateAddUseRef(sharedRecord(first), Vorn::DELEGATE_ADD_REF);
        Vorn::delegateAddUseRef(sharedRecord(second), Vorn::DELEGATE_RELEASE_REF);
    }
    EXPECT_EQ(first.getUseCount(), 1);
    EXPECT_EQ(second.getUseCount(), 1);
}

TEST(Delegate, BindingsCostNoAllocation) {
    const SharedPtr<Shop> shop = Vorn::makeShared<Shop>();
    EXPECT_EQ(allocationsDuring([&] {
                  Adder delegate = Adder::bindShared<&Shop::buy>(shop);
                  delegate = Adder::bindWeak<&Shop::buy>(shop);
                  delegate = Adder::bind<&Shop::buy>(*shop);
                  delegate = Adder::bind<&triple>();
                  delegate(1);
              }),
              0u);
}

} // namespace
