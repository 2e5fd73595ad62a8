#include "Support/AllocationCounter.h"
#include "Support/Report.h"
#include "Vorn/SharedObjects/WeakPtr.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <type_traits>
#include <unordered_set>

namespace {

using Vorn::SharedPtr;
using Vorn::WeakPtr;

int living = 0; // of the types below

template <class Base = std::false_type>
struct Counted : Base {
    explicit Counted(int initial = 0) : value(initial) { ++living; }
    Counted(const Counted& other) : Base(other), value(other.value) { ++living; }
    ~Counted() { --living; }
    int value;
};

struct Plain : Counted<> {
    using Counted::Counted;
};
struct Shared : Vorn::SharedObjectBase, Counted<> {
    using Counted::Counted;
};
struct Dynamic : Vorn::DynamicObject, Counted<> {
    using Counted::Counted;
};
struct Openable : Vorn::InterfaceBase {
    virtual int open() = 0;
};
struct Closable {
    virtual ~Closable() = default;
    int closed = 0;
};
struct Door : Dynamic, Closable, Openable {
    using Dynamic::Dynamic;
    int open() override { return 10 + value; }
    Vorn::SharedObjectBase* getSharedObject() override { return this; }
};
struct Derived : Plain, Closable {
    using Plain::Plain;
};

class SharedPtrTest : public testing::Test {
protected:
    SharedPtrTest() : m_live(liveAllocationCount()) { living = 0; }
    ~SharedPtrTest() override {
        EXPECT_EQ(living, 0);
        EXPECT_EQ(liveAllocationCount(), m_live);
    }

private:
    std::size_t m_live;
};

TEST_F(SharedPtrTest, NullHoldsNothing) {
    SharedPtr<Plain> null, alsoNull(nullptr), fromRaw(static_cast<Plain*>(nullptr));
    for (const SharedPtr<Plain>* pointer : {&null, &alsoNull, &fromRaw}) {
        EXPECT_EQ(pointer->get(), nullptr);
        EXPECT_FALSE(*pointer);
        EXPECT_TRUE(pointer->isNull());
        EXPECT_FALSE(pointer->isNotNull());
        EXPECT_TRUE(*pointer == nullptr);
        EXPECT_FALSE(nullptr != *pointer);
        EXPECT_EQ(pointer->getUseCount(), 0);
    }
    null.reset();
    const SharedPtr<Plain> copy(null);
    EXPECT_TRUE(copy.isNull());
    expectRaises<1>([&] { (void)*null; }, "m_object : null pointer!", "Vorn::SharedPtr::operator *",
                    "Include/Vorn/SharedObjects/SharedPtr");
    expectRaises<1>([&] { (void)null->value; }, "m_object : null pointer!", "Vorn::SharedPtr::operator ->");
    EXPECT_EQ(allocationsDuring([] { SharedPtr<Plain>(static_cast<Plain*>(nullptr)); }), 0u);
}

template <class T>
class AnyObject : public SharedPtrTest {};
using AnyTypes = testing::Types<Plain, Shared, Dynamic, Door>;
TYPED_TEST_SUITE(AnyObject, AnyTypes);

TYPED_TEST(AnyObject, ExistsAsLongAsAPointerOwnsIt) {
    SharedPtr<TypeParam> first = Vorn::makeShared<TypeParam>(7);
    EXPECT_EQ(first->value, 7);
    EXPECT_EQ((*first).value, 7);
    EXPECT_TRUE(first);
    EXPECT_EQ(first.getUseCount(), 1);
    EXPECT_EQ(first.getWeakCount(), 0);
    EXPECT_FALSE(first.isArray());
    EXPECT_FALSE(first.isThreadsafe());
    {
        const SharedPtr<TypeParam> second(first);
        EXPECT_EQ(second.get(), first.get());
        EXPECT_EQ(first.getUseCount(), 2);
    }
    EXPECT_EQ(first.getUseCount(), 1);
    SharedPtr<TypeParam> moved(std::move(first));
    EXPECT_TRUE(first.isNull());
    EXPECT_EQ(first.get(), nullptr);
    EXPECT_EQ(moved.getUseCount(), 1);
    SharedPtr<TypeParam> other = Vorn::makeShared<TypeParam>(8);
    EXPECT_EQ(living, 2);
    other = moved;
    EXPECT_EQ(living, 1);
    other = *&other;
    EXPECT_EQ(other.getUseCount(), 2);
    moved = std::move(other);
    EXPECT_EQ(moved.getUseCount(), 1);
    moved.reset();
    EXPECT_EQ(living, 0);
    EXPECT_TRUE(moved.isNull());
}

TYPED_TEST(AnyObject, TakesOneAllocationForTheRecord) {
    SharedPtr<TypeParam> pointer;
    const bool isOneBlock = std::is_same_v<TypeParam, Plain>; // for the object and the record
    EXPECT_EQ(allocationsDuring([&] { pointer = Vorn::makeShared<TypeParam>(1); }), isOneBlock ? 1u : 2u);
    pointer.reset();
    TypeParam* const object = new TypeParam(1);
    EXPECT_EQ(allocationsDuring([&] { pointer = SharedPtr<TypeParam>(object); }), 1u);
    EXPECT_EQ(allocationsDuring([&] { SharedPtr<TypeParam>(pointer).reset(); }), 0u);
    EXPECT_EQ(allocationsDuring([&] { WeakPtr<TypeParam>(pointer).lock(); }), 0u);
}

TYPED_TEST(AnyObject, RecordsAreThreadsafeOnRequest) {
    const SharedPtr<TypeParam> made = Vorn::makeSharedThreadsafe<TypeParam>(1);
    EXPECT_TRUE(made.isThreadsafe());
    const SharedPtr<TypeParam> taken(new TypeParam(2), Vorn::REF_COUNTER_THREADSAFE);
    EXPECT_TRUE(taken.isThreadsafe());
    const SharedPtr<TypeParam> copy(taken);
    EXPECT_EQ(taken.getUseCount(), 2);
}

TYPED_TEST(AnyObject, WeakPointersTellWhetherItLives) {
    WeakPtr<TypeParam> weak;
    EXPECT_TRUE(weak.isExpired());
    EXPECT_TRUE(weak.lock().isNull());
    for (const bool isThreadsafe : {false, true}) {
        SharedPtr<TypeParam> strong =
            isThreadsafe ? Vorn::makeSharedThreadsafe<TypeParam>(3) : Vorn::makeShared<TypeParam>(3);
        weak = strong;
        const WeakPtr<TypeParam> copy(weak);
        EXPECT_EQ(strong.getWeakCount(), 2);
        EXPECT_EQ(strong.getUseCount(), 1);
        EXPECT_FALSE(weak.isExpired());
        EXPECT_EQ(weak.lock()->value, 3);
        EXPECT_EQ(weak.lock(), strong);
        EXPECT_TRUE(weak == copy);
        strong.reset();
        EXPECT_EQ(living, 0);
        EXPECT_TRUE(weak.isExpired());
        EXPECT_TRUE(weak.isNull());
        EXPECT_TRUE(weak.lock().isNull());
        EXPECT_EQ(weak.getWeakCount(), 2); // the record lives on
        EXPECT_TRUE(weak == copy);
        WeakPtr<TypeParam> moved(std::move(weak));
        EXPECT_EQ(moved.getWeakCount(), 2);
        EXPECT_TRUE(weak == WeakPtr<TypeParam>());
        weak = std::move(moved);
        EXPECT_TRUE(moved == WeakPtr<TypeParam>(nullptr));
        weak.reset();
        EXPECT_EQ(copy.getWeakCount(), 1);
    }
}

TYPED_TEST(AnyObject, CustomDeletersTakeThePlaceOfDelete) {
    static int calls;
    calls = 0;
    {
        const SharedPtr<TypeParam> pointer(new TypeParam(1), [](void* object) {
            ++calls;
            delete static_cast<TypeParam*>(object);
        });
        EXPECT_EQ(pointer->value, 1);
    }
    EXPECT_EQ(calls, 1);
    TypeParam onStack(2);
    const SharedPtr<TypeParam> null(static_cast<TypeParam*>(nullptr), [](void*) { ++calls; });
    EXPECT_TRUE(null.isNull());
    expectRaises<1>([&] { SharedPtr<TypeParam>(&onStack, nullptr); }, "deleter : null deleter!",
                    "Vorn::SharedPtr::SharedPtr", "Include/Vorn/SharedObjects/SharedPtr");
    for (int i = 0; i < 2; ++i) { // the deleter keeps it, so it may be shared anew
        const SharedPtr<TypeParam> again(
            &onStack, [](void*) { ++calls; }, Vorn::REF_COUNTER_THREADSAFE);
        EXPECT_EQ(again.getUseCount(), 1);
        EXPECT_TRUE(again.isThreadsafe());
    }
    EXPECT_EQ(calls, 3);
}

template <class T>
class SharedObject : public SharedPtrTest {};
using SharedTypes = testing::Types<Shared, Dynamic, Door>;
TYPED_TEST_SUITE(SharedObject, SharedTypes);

TYPED_TEST(SharedObject, RawPointerFindsTheSameRecord) {
    const SharedPtr<TypeParam> first = Vorn::makeShared<TypeParam>(1);
    TypeParam* const raw = first.get();
    const SharedPtr<TypeParam> second(raw);
    EXPECT_EQ(first.getUseCount(), 2);
    EXPECT_EQ(sharedRecord(first), sharedRecord(second));
    const SharedPtr<const TypeParam> constant(static_cast<const TypeParam*>(raw));
    EXPECT_EQ(sharedRecord(constant), sharedRecord(first));
    EXPECT_EQ(first.getUseCount(), 3);
    const SharedPtr<TypeParam> copy(new TypeParam(*raw)); // a copied object has a record of its own
    EXPECT_NE(sharedRecord(copy), sharedRecord(first));
    EXPECT_EQ(copy.getUseCount(), 1);
}

TYPED_TEST(SharedObject, RefusesThreadsafetyThatItsRecordHasNot) {
    const SharedPtr<TypeParam> first = Vorn::makeShared<TypeParam>(1);
    expectRaises<1>([&] { SharedPtr<TypeParam>(first.get(), Vorn::REF_COUNTER_THREADSAFE); },
                    "counter->m_isThreadsafe || !isThreadsafe : the object's record is not thread-safe!",
                    "Vorn::SharedPtr::SharedPtr", "Include/Vorn/SharedObjects/SharedRecord");
    EXPECT_EQ(first.getUseCount(), 1); // the use was taken back
    const SharedPtr<TypeParam> safe = Vorn::makeSharedThreadsafe<TypeParam>(1);
    EXPECT_EQ(SharedPtr<TypeParam>(safe.get()).getUseCount(), 2);
}

TYPED_TEST(SharedObject, RefusesADeleterForASharedObject) {
    const SharedPtr<TypeParam> first = Vorn::makeShared<TypeParam>(1);
    expectRaises<1>([&] { SharedPtr<TypeParam>(first.get(), [](void*) {}); },
                    "!sharedObject || !getRefCounter(sharedObject) : the object is shared already!",
                    "Vorn::SharedPtr::SharedPtr", "Include/Vorn/SharedObjects/SharedPtr");
    EXPECT_EQ(first.getUseCount(), 1);
}

struct SelfSharing : Vorn::SharedObjectBase {
    ~SelfSharing() {
        expectRaises<1>([this] { SharedPtr<SelfSharing> self(this); }, "isAlive : the object is being destroyed!",
                        "Vorn::SharedPtr::SharedPtr", "Include/Vorn/SharedObjects/SharedRecord");
        ++destroyed;
    }
    static inline int destroyed = 0;
};

TEST_F(SharedPtrTest, ObjectBeingDestroyedIsNotRevived) {
    SelfSharing::destroyed = 0;
    for (const bool isWeaklyHeld : {false, true}) {
        for (const bool isFreeRelease : {false, true}) { // the two release sequences free the record at different times
            SharedPtr<SelfSharing> pointer = Vorn::makeShared<SelfSharing>();
            const WeakPtr<SelfSharing> weak = isWeaklyHeld ? WeakPtr<SelfSharing>(pointer) : WeakPtr<SelfSharing>();
            if (isFreeRelease) {
                VornPrivate::addUse(sharedRecord(pointer));
                Vorn::RefCounter* const counter = sharedRecord(pointer);
                pointer.reset();
                Vorn::releaseUseCount(counter);
            } else {
                pointer.reset();
            }
            EXPECT_TRUE(weak.lock().isNull());
        }
    }
    EXPECT_EQ(SelfSharing::destroyed, 4);
}

TEST_F(SharedPtrTest, ConvertsToBasesInTheSameRecord) {
    const SharedPtr<Derived> derived = Vorn::makeShared<Derived>(5);
    const SharedPtr<Plain> base(derived);
    SharedPtr<Closable> second; // lies behind the first base
    second = derived;
    EXPECT_NE(static_cast<void*>(base.get()), static_cast<void*>(second.get())); // two bases, two addresses
    EXPECT_EQ(second.get(), derived.get());
    EXPECT_EQ(derived.getUseCount(), 3);
    EXPECT_TRUE(base == derived);
    EXPECT_FALSE(base != derived);
    const SharedPtr<const Plain> constant(base);
    EXPECT_EQ(constant.getUseCount(), 4);
    SharedPtr<Closable> moved(SharedPtr<Derived>{derived});
    EXPECT_EQ(derived.getUseCount(), 5);
    const SharedPtr<void> untyped(derived);
    EXPECT_EQ(untyped.getUseCount(), 6);
    EXPECT_FALSE((std::is_convertible_v<SharedPtr<Plain>, SharedPtr<Derived>>));
    EXPECT_FALSE((std::is_convertible_v<SharedPtr<const Plain>, SharedPtr<Plain>>));
    EXPECT_FALSE((std::is_convertible_v<Plain*, SharedPtr<Plain>>));
    EXPECT_TRUE(std::is_nothrow_move_constructible_v<SharedPtr<Plain>>);
}

TEST_F(SharedPtrTest, LastBaseDestroysTheWholeObject) {
    SharedPtr<Plain> base(new Derived(1)); // remembers what it was made of
    EXPECT_EQ(living, 1);
    base.reset();
    EXPECT_EQ(living, 0);
    SharedPtr<Closable> second(Vorn::makeShared<Derived>(1));
    second.reset();
}

TEST_F(SharedPtrTest, CastsShareTheRecord) {
    const SharedPtr<Closable> closable(Vorn::makeShared<Derived>(5));
    const SharedPtr<Derived> derived = Vorn::staticSharedCast<Derived>(closable);
    EXPECT_EQ(derived->value, 5);
    EXPECT_EQ(closable.getUseCount(), 2);
    EXPECT_EQ(Vorn::dynamicSharedCast<Derived>(closable), derived);
    EXPECT_EQ(closable.getUseCount(), 2);
    EXPECT_TRUE(Vorn::dynamicSharedCast<Door>(closable).isNull());
    EXPECT_TRUE(Vorn::dynamicSharedCast<Door>(SharedPtr<Closable>()).isNull());
    EXPECT_TRUE(Vorn::staticSharedCast<Derived>(SharedPtr<Closable>()).isNull());
    EXPECT_EQ(closable.getUseCount(), 2);
}

TEST_F(SharedPtrTest, InterfacesCountInTheRecordOfTheirObject) {
    const SharedPtr<Door> door = Vorn::makeShared<Door>(1);
    const SharedPtr<Openable> converted(door);
    Openable* const raw = door.get();
    const SharedPtr<Openable> found(raw);
    EXPECT_EQ(found->open(), 11);
    EXPECT_EQ(door.getUseCount(), 3);
    EXPECT_EQ(sharedRecord(found), sharedRecord(door));
    SharedPtr<Openable> made(static_cast<Openable*>(new Door(2))); // the first pointer of a DynamicObject
    EXPECT_EQ(living, 2);
    EXPECT_EQ(Vorn::dynamicSharedCast<Door>(made)->value, 2);
    EXPECT_FALSE(made.isArray());
    EXPECT_FALSE(made.isThreadsafe());
    made.reset();
    EXPECT_EQ(living, 1);
}

TEST_F(SharedPtrTest, InterfaceWithoutVirtualDestructorNeedsARecord) {
    struct Window : Shared, Openable {
        int open() override { return 0; }
        Vorn::SharedObjectBase* getSharedObject() override { return this; }
    };
    Window window;
    Openable* const raw = &window;
    expectRaises<1>([&] { SharedPtr<Openable>{raw}; },
                    "whole && whole == sharedObject : an interface's object must be shared or a DynamicObject!",
                    "Vorn::SharedPtr::SharedPtr", "Include/Vorn/SharedObjects/SharedRecord");
    const SharedPtr<Window> known = Vorn::makeShared<Window>();
    const SharedPtr<Openable> found(static_cast<Openable*>(known.get()));
    EXPECT_EQ(known.getUseCount(), 2);
}

TEST_F(SharedPtrTest, ArraysAreDestroyedWithArrayDelete) {
    {
        SharedPtr<Plain[]> array(new Plain[3]);
        EXPECT_EQ(living, 3);
        EXPECT_TRUE(array.isArray());
        array[2].value = 9;
        EXPECT_EQ(array.get()[2].value, 9);
        const SharedPtr<const Plain[]> constant(array);
        EXPECT_EQ(constant[2].value, 9);
        EXPECT_EQ(array.getUseCount(), 2);
        const WeakPtr<Plain[]> weak(array);
        EXPECT_EQ(weak.lock()[2].value, 9);
    }
    EXPECT_EQ(living, 0);
    SharedPtr<Shared[]> shared(new Shared[2], Vorn::REF_COUNTER_THREADSAFE); // elements remember nothing
    EXPECT_TRUE(shared.isThreadsafe());
    const SharedPtr<Plain[]> custom(new Plain[2], [](void* object) { delete[] static_cast<Plain*>(object); });
    EXPECT_TRUE(custom.isArray());
    expectRaises<1>([] { SharedPtr<int[]>()[0]; }, "m_object : null pointer!", "Vorn::SharedPtr::operator []");
    EXPECT_FALSE((std::is_convertible_v<SharedPtr<Derived[]>, SharedPtr<Plain[]>>));
    EXPECT_FALSE((std::is_convertible_v<SharedPtr<Plain[]>, SharedPtr<Plain>>));
    EXPECT_FALSE((std::is_constructible_v<SharedPtr<Plain[]>, Derived*>));
}

TEST_F(SharedPtrTest, ComparesAndHashesAsTheAddress) {
    Plain* const raw = new Plain[2];
    const SharedPtr<Plain[]> array(raw);
    const auto element = [&](int i) { return SharedPtr<Plain>(raw + i, [](void*) {}); };
    EXPECT_TRUE(element(0) == element(0));
    EXPECT_TRUE(element(0) != element(1));
    EXPECT_TRUE(element(0) < element(1));
    EXPECT_FALSE(element(1) < element(0));
    EXPECT_FALSE(element(0) < element(0));
    EXPECT_EQ(std::hash<SharedPtr<Plain>>()(element(1)), std::hash<Plain*>()(raw + 1));
    std::unordered_set<SharedPtr<Plain>> set{element(0), element(1), element(0)};
    EXPECT_EQ(set.size(), 2u);
    SharedPtr<Plain> strong = Vorn::makeShared<Plain>(1);
    const WeakPtr<Plain> weak(strong);
    const std::size_t hash = std::hash<WeakPtr<Plain>>()(weak);
    strong.reset();
    EXPECT_EQ(std::hash<WeakPtr<Plain>>()(weak), hash);
}

TEST_F(SharedPtrTest, SwapCountsNothing) {
    SharedPtr<Plain> first = Vorn::makeShared<Plain>(1), second;
    first.swap(second);
    EXPECT_TRUE(first.isNull());
    EXPECT_EQ(second->value, 1);
    EXPECT_EQ(second.getUseCount(), 1);
    WeakPtr<Plain> weak(second), none;
    weak.swap(none);
    EXPECT_TRUE(weak.isExpired());
    EXPECT_EQ(none.lock(), second);
}

TEST_F(SharedPtrTest, WeakPointersConvertToBases) {
    struct Virtual : virtual Closable {};
    SharedPtr<Virtual> strong = Vorn::makeShared<Virtual>();
    const WeakPtr<Virtual> weak(strong);
    const WeakPtr<Closable> base(weak);
    EXPECT_EQ(base.lock(), strong);
    strong.reset();
    const WeakPtr<Closable> dead(weak); // finding a virtual base of a dead object must not read it
    EXPECT_TRUE(dead.isExpired());
    EXPECT_EQ(dead.getWeakCount(), 3);
}

TEST_F(SharedPtrTest, ObjectMayHoldWeakPointersToItself) {
    struct Introspective {
        WeakPtr<Introspective> self;
    };
    for (const bool isThreadsafe : {false, true}) {
        SharedPtr<Introspective> pointer =
            isThreadsafe ? Vorn::makeSharedThreadsafe<Introspective>() : Vorn::makeShared<Introspective>();
        pointer->self = pointer;
    }
}

TEST_F(SharedPtrTest, DeadRecordHasNoDeleter) {
    Vorn::RefCounter* const record = VornPrivate::DeadRecord::get();
    EXPECT_EQ(record->getDeleter(), nullptr);
    EXPECT_EQ(record->m_useCount, 0);
    EXPECT_TRUE(Vorn::validRefCounter(record));
    EXPECT_EQ(record, VornPrivate::DeadRecord::get());
}

} // namespace
