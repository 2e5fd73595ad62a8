// What users of std::shared_ptr, std::weak_ptr and std::enable_shared_from_this expect of SharedPtr and WeakPtr, in the
// order of the members of those.
#include "Support/AllocationCounter.h"
#include "Support/Report.h"
#include "Vorn/SharedObjects/WeakPtr.h"

#include <gtest/gtest.h>

#include <functional>
#include <iomanip>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <thread>
#include <unordered_map>
#include <vector>

namespace {

using Vorn::makeShared;
using Vorn::makeSharedThreadsafe;
using Vorn::OwnerLess;
using Vorn::SharedPtr;
using Vorn::WeakPtr;

struct Part {
    int size = 5;
};
struct Plain {
    explicit Plain(int initial = 0) : value(initial) { ++living; }
    Plain(const Plain&) = delete;
    virtual ~Plain() { --living; }
    int value;
    Part part;
    static inline int living = 0;
};
struct Derived : Plain {
    using Plain::Plain;
};
struct Shared : Vorn::SharedObjectBase, Plain {
    using Plain::Plain;
    SharedPtr<Shared> self() { return SharedPtr<Shared>(this); }
    WeakPtr<const Shared> weakSelf() const { return WeakPtr<const Shared>(this); }
};
struct Openable : Vorn::InterfaceBase {
    virtual int open() = 0;
};
struct Door : Shared, Openable {
    using Shared::Shared;
    int open() override { return value; }
    Vorn::SharedObjectBase* getSharedObject() override { return this; }
};

// Types that are incomplete where pointers to them are members, copied, compared and destroyed.
struct Incomplete;
struct House {
    SharedPtr<Incomplete> door;
    WeakPtr<Incomplete> watched;
    bool operator==(const House& other) const { return door == other.door; }
};
House copyOf(const House& house) { return house; }
bool isOpen(const SharedPtr<Incomplete>& door, Incomplete* raw) { return door && door != nullptr && door == raw; }
WeakPtr<Incomplete> watch(const SharedPtr<Incomplete>& door) { return door; }
SharedPtr<Incomplete> makeIncomplete();

class SharedPtrUserTest : public testing::Test {
protected:
    SharedPtrUserTest() : m_live(liveAllocationCount()) { Plain::living = 0; }
    ~SharedPtrUserTest() override {
        EXPECT_EQ(Plain::living, 0);
        EXPECT_EQ(liveAllocationCount(), m_live);
    }

private:
    std::size_t m_live;
};

// Construction with deleters.

TEST_F(SharedPtrUserTest, DeletersTakeTheTypeOfTheObject) {
    int calls = 0;
    {
        const SharedPtr<Plain> pointer(new Derived(3), [&calls](Derived* object) {
            calls += object->value;
            delete object;
        });
        EXPECT_EQ(pointer->value, 3);
        EXPECT_EQ(pointer.getUseCount(), 1);
        EXPECT_FALSE(pointer.isArray());
        EXPECT_FALSE(pointer.isThreadsafe());
        const SharedPtr<Plain> copy(pointer);
        EXPECT_EQ(calls, 0);
    }
    EXPECT_EQ(calls, 3);
    const auto generic = [&calls](auto* object) {
        calls = object->value;
        delete object;
    };
    SharedPtr<Plain>(new Plain(4), generic).reset();
    EXPECT_EQ(calls, 4);
    SharedPtr<Plain>(new Plain(5), [](auto* object) { delete object; }).reset(); // must not be compiled for void*
    SharedPtr<Plain>(new Plain(6), std::default_delete<Plain>()).reset();
    SharedPtr<void> untyped(new Plain(7), std::default_delete<Plain>());
    untyped.reset();
    EXPECT_EQ(Plain::living, 0);
    SharedPtr<Plain> null(static_cast<Plain*>(nullptr), generic);
    EXPECT_TRUE(null.isNull());
    std::function<void(Plain*)> function = generic;
    SharedPtr<Plain>(new Plain(8), function).reset();
    EXPECT_EQ(calls, 8);
}

int typedCalls = 0;
void deleteTyped(Plain* object) {
    ++typedCalls;
    delete object;
}

TEST_F(SharedPtrUserTest, FunctionsAreDeleters) {
    typedCalls = 0;
    SharedPtr<Plain>(new Plain, &deleteTyped).reset();
    SharedPtr<Plain>(new Plain, deleteTyped).reset();
    SharedPtr<Plain>(new Derived, &deleteTyped, Vorn::REF_COUNTER_THREADSAFE).reset();
    EXPECT_EQ(typedCalls, 3);
    void (*none)(Plain*) = nullptr;
    Plain onStack;
    expectRaises<1>([&] { SharedPtr<Plain>(&onStack, none); }, "deleter : null deleter!", "Vorn::SharedPtr::SharedPtr",
                    "Include/Vorn/SharedObjects/SharedPtr");
}

struct CountingDeleter {
    explicit CountingDeleter(std::shared_ptr<int> counter) : calls(std::move(counter)) {}
    void operator()(Plain* object) const {
        ++*calls;
        delete object;
    }
    std::shared_ptr<int> calls;
};

TEST_F(SharedPtrUserTest, StateOfDeletersIsDestroyedAfterTheCall) {
    const auto calls = std::make_shared<int>(0);
    for (const bool isThreadsafe : {false, true}) {
        const auto threading = isThreadsafe ? Vorn::REF_COUNTER_THREADSAFE : Vorn::REF_COUNTER_SINGLE_THREAD;
        SharedPtr<Plain> pointer(new Plain, CountingDeleter(calls), threading);
        EXPECT_EQ(pointer.isThreadsafe(), isThreadsafe);
        EXPECT_EQ(calls.use_count(), 2);
        const WeakPtr<Plain> weak(pointer);
        EXPECT_EQ(pointer.getWeakCount(), 1);
        pointer.reset();
        EXPECT_TRUE(weak.isExpired());
        EXPECT_EQ(weak.getWeakCount(), 1);
        EXPECT_EQ(calls.use_count(), 1); // although the control block lives on
    }
    EXPECT_EQ(*calls, 2);
    SharedPtr<Plain>(new Plain, [only = std::make_unique<int>(1)](Plain* object) { delete object; }).reset();
}

TEST_F(SharedPtrUserTest, DeletersMayKeepTheObject) {
    Shared onStack(1);
    int calls = 0;
    for (int i = 0; i < 2; ++i) {
        const SharedPtr<Shared> pointer(&onStack, [&calls](Shared*) { ++calls; });
        EXPECT_EQ(pointer->self().get(), &onStack);
        EXPECT_EQ(pointer.getUseCount(), 1);
        expectRaises<1>([&] { SharedPtr<Shared>(&onStack, [&calls](Shared*) { ++calls; }); },
                        "!sharedObject || !getRefCounter(sharedObject) : the object is shared already!",
                        "Vorn::SharedPtr::SharedPtr");
    }
    EXPECT_EQ(calls, 2);
}

TEST_F(SharedPtrUserTest, ObjectIsDeletedWhenMemoryEnds) {
    const auto calls = std::make_shared<int>(0);
    Plain* const object = new Plain;
    failAllocation(1);
    EXPECT_THROW(SharedPtr<Plain>(object, CountingDeleter(calls)), std::bad_alloc);
    failAllocation(0);
    EXPECT_EQ(*calls, 1);
    EXPECT_EQ(calls.use_count(), 1);
}

// std::unique_ptr.

TEST_F(SharedPtrUserTest, TakesOverUniquePointers) {
    std::unique_ptr<Derived> owner = std::make_unique<Derived>(2);
    Derived* const raw = owner.get();
    SharedPtr<Plain> pointer = std::move(owner);
    EXPECT_EQ(owner, nullptr);
    EXPECT_EQ(pointer.get(), raw);
    pointer = std::make_unique<Plain>(3);
    EXPECT_EQ(pointer->value, 3);
    EXPECT_EQ(Plain::living, 1);
    pointer = std::unique_ptr<Plain>();
    EXPECT_TRUE(pointer.isNull());
    SharedPtr<Plain[]> array(std::make_unique<Plain[]>(3));
    EXPECT_TRUE(array.isArray());
    EXPECT_EQ(Plain::living, 3);
    const SharedPtr deduced(std::make_unique<Plain>(4));
    static_assert(std::is_same_v<decltype(deduced), const SharedPtr<Plain>>);
    EXPECT_TRUE(SharedPtr<Plain>(std::make_unique<Plain>(1), Vorn::REF_COUNTER_THREADSAFE).isThreadsafe());
    EXPECT_EQ(SharedPtr<Shared>(std::make_unique<Shared>(6))->self()->value, 6);
    static_assert(!std::is_constructible_v<SharedPtr<Derived>, std::unique_ptr<Plain>>);
    static_assert(!std::is_constructible_v<SharedPtr<Plain>, const std::unique_ptr<Plain>&>);
    static_assert(!std::is_constructible_v<SharedPtr<Plain>, std::unique_ptr<Plain[]>>);
    static_assert(!std::is_constructible_v<SharedPtr<Plain>, std::pair<Plain, int>>);
}

TEST_F(SharedPtrUserTest, TakesOverTheDeletersOfUniquePointers) {
    const auto calls = std::make_shared<int>(0);
    SharedPtr<Plain>(std::unique_ptr<Plain, CountingDeleter>(new Plain, CountingDeleter(calls))).reset();
    EXPECT_EQ(*calls, 1);
    EXPECT_EQ(calls.use_count(), 1);
    CountingDeleter deleter(calls);
    SharedPtr<Plain>(std::unique_ptr<Plain, CountingDeleter&>(new Plain, deleter)).reset();
    SharedPtr<Plain>(std::unique_ptr<Plain, const CountingDeleter&>(new Plain, deleter)).reset();
    EXPECT_EQ(*calls, 3);
    SharedPtr<Plain>(std::unique_ptr<Plain, void (*)(Plain*)>(new Plain, &deleteTyped)).reset();
}

TEST_F(SharedPtrUserTest, UniquePointersKeepTheirObjectWhenMemoryEnds) {
    std::unique_ptr<Plain> owner = std::make_unique<Plain>(2);
    failAllocation(1);
    EXPECT_THROW(SharedPtr<Plain>(std::move(owner)), std::bad_alloc);
    failAllocation(0);
    ASSERT_TRUE(owner);
    EXPECT_EQ(owner->value, 2);
}

// Aliasing.

TEST_F(SharedPtrUserTest, AliasesKeepTheOwnerAlive) {
    SharedPtr<Plain> owner = makeShared<Plain>(1);
    SharedPtr<Part> part(owner, &owner->part);
    EXPECT_EQ(owner.getUseCount(), 2);
    owner.reset();
    EXPECT_EQ(Plain::living, 1);
    EXPECT_EQ(part->size, 5);
    const WeakPtr<Part> weak(part);
    EXPECT_EQ(weak.lock().get(), part.get());
    const SharedPtr<int> size(std::move(part), &part->size);
    EXPECT_EQ(part.get(), nullptr);
    EXPECT_EQ(*size, 5);
    EXPECT_EQ(size.getUseCount(), 1);
}

TEST_F(SharedPtrUserTest, AliasesMayHaveNoPartOrNoOwner) {
    const SharedPtr<Plain> owner = makeShared<Plain>(1);
    const SharedPtr<Part> noPart(owner, nullptr);
    EXPECT_FALSE(noPart);
    EXPECT_EQ(noPart.getUseCount(), 2);
    EXPECT_TRUE(noPart.isNotNull());
    static Part constant;
    const SharedPtr<Part> noOwner(SharedPtr<Plain>(), &constant);
    EXPECT_TRUE(noOwner);
    EXPECT_EQ(noOwner->size, 5);
    EXPECT_EQ(noOwner.getUseCount(), 0);
    EXPECT_TRUE(noOwner.isNull());
    EXPECT_EQ(SharedPtr<Part>(noOwner).get(), &constant);
}

// Construction from WeakPtr.

TEST_F(SharedPtrUserTest, WeakPointersBecomeSharedOrThrow) {
    SharedPtr<Derived> owner = makeShared<Derived>(1);
    WeakPtr<Derived> weak(owner);
    EXPECT_EQ(SharedPtr<Derived>(weak), owner);
    EXPECT_EQ(SharedPtr<const Plain>(weak), owner);
    EXPECT_EQ(owner.getUseCount(), 1);
    const SharedPtr deduced(weak);
    static_assert(std::is_same_v<decltype(deduced), const SharedPtr<Derived>>);
    const auto expectThrows = [](const WeakPtr<Derived>& pointer) {
        expectRaises<1>([&] { SharedPtr<Plain>{pointer}; }, "isAlive : the object has been destroyed!",
                        "Vorn::SharedPtr::SharedPtr", "Include/Vorn/SharedObjects/WeakPtr");
    };
    expectThrows(WeakPtr<Derived>());
    static_assert(!std::is_convertible_v<WeakPtr<Plain>, SharedPtr<Plain>>);
    static_assert(!std::is_constructible_v<SharedPtr<Derived>, WeakPtr<Plain>>);
}

TEST_F(SharedPtrUserTest, ExpiredPointersThrow) {
    SharedPtr<Plain> owner = makeShared<Plain>(1);
    const WeakPtr weak(owner);
    static_assert(std::is_same_v<decltype(weak), const WeakPtr<Plain>>);
    owner.reset();
    EXPECT_EQ(Plain::living, 0);
    expectRaises<1>([&] { SharedPtr<Plain>{weak}; }, "isAlive : the object has been destroyed!",
                    "Vorn::SharedPtr::SharedPtr", "Include/Vorn/SharedObjects/WeakPtr");
    EXPECT_TRUE(weak.lock() == nullptr);
}

// enable_shared_from_this.

TEST_F(SharedPtrUserTest, ObjectsGiveOutPointersToThemselves) {
    const SharedPtr<Shared> owner = makeShared<Shared>(1);
    EXPECT_EQ(owner->self(), owner);
    EXPECT_EQ(owner.getUseCount(), 1);
    const WeakPtr<const Shared> weak = owner->weakSelf();
    EXPECT_EQ(owner.getWeakCount(), 1);
    EXPECT_EQ(weak.lock(), owner);
    const SharedPtr<Door> door = makeShared<Door>(2);
    const WeakPtr<Openable> openable(static_cast<Openable*>(door.get()));
    EXPECT_EQ(openable.lock()->open(), 2);
    EXPECT_EQ(WeakPtr<Plain>(door.get()).lock(), door);
}

TEST_F(SharedPtrUserTest, ObjectsWithoutOwnersHaveNoWeakPointers) {
    const Shared onStack(1);
    EXPECT_TRUE(onStack.weakSelf().isExpired());
    EXPECT_TRUE(WeakPtr<Shared>(static_cast<Shared*>(nullptr)).isExpired());
    struct Leaving : Vorn::SharedObjectBase {
        ~Leaving() { EXPECT_TRUE(WeakPtr<Leaving>(this).isNull()); }
    };
    makeShared<Leaving>().reset();
    makeShared<Leaving>().reset();
}

TEST_F(SharedPtrUserTest, ConstructorsMayShareTheirObject) {
    struct Registered : Vorn::SharedObjectBase, Plain {
        explicit Registered(std::vector<SharedPtr<Registered>>& list) { list.push_back(SharedPtr<Registered>(this)); }
    };
    std::vector<SharedPtr<Registered>> list;
    const SharedPtr<Registered> made = makeShared<Registered>(list);
    EXPECT_EQ(list.front(), made);
    EXPECT_EQ(made.getUseCount(), 2);
}

// reset, swap and assignment.

TEST_F(SharedPtrUserTest, ResetTakesAnotherObject) {
    SharedPtr<Plain> pointer = makeShared<Plain>(1);
    pointer.reset(new Derived(2));
    EXPECT_EQ(pointer->value, 2);
    EXPECT_EQ(Plain::living, 1);
    int deleted = 0;
    pointer.reset(new Plain(3), [&deleted](Plain* object) {
        deleted = object->value;
        delete object;
    });
    pointer.reset(new Plain(4), Vorn::REF_COUNTER_THREADSAFE);
    EXPECT_EQ(deleted, 3);
    EXPECT_TRUE(pointer.isThreadsafe());
    Plain* const refused = new Plain(5);
    failAllocation(1);
    EXPECT_THROW(pointer.reset(refused), std::bad_alloc);
    failAllocation(0);
    EXPECT_EQ(pointer->value, 4); // unchanged
    pointer.reset();
    EXPECT_EQ(pointer, nullptr);
    SharedPtr<Plain[]> array;
    array.reset(new Plain[2]);
    EXPECT_EQ(Plain::living, 2);
    SharedPtr<void> untyped = makeShared<Plain>(1);
    untyped.reset(new Derived(2));
    pointer = makeShared<Derived>(6);
    pointer = nullptr;
    EXPECT_EQ(pointer.get(), nullptr);
}

TEST_F(SharedPtrUserTest, AssignmentAndSwapMoveOwners) {
    SharedPtr<Plain> first = makeShared<Plain>(1), second = makeShared<Plain>(2);
    swap(first, second);
    std::swap(first, second);
    swap(first, second);
    EXPECT_EQ(first->value, 2);
    EXPECT_EQ(first.getUseCount(), 1);
    SharedPtr<Derived> derived = makeShared<Derived>(3);
    first = derived;
    EXPECT_EQ(derived.getUseCount(), 2);
    second = std::move(derived);
    EXPECT_EQ(derived, nullptr);
    EXPECT_EQ(first.getUseCount(), 2);
    first = first.get() ? first : second;
    EXPECT_EQ(first.getUseCount(), 2);
    SharedPtr<const Plain> constant = std::move(first);
    EXPECT_EQ(constant->value, 3);
    WeakPtr<Plain> weak(second), none;
    swap(weak, none);
    EXPECT_TRUE(weak.isExpired());
    EXPECT_EQ(none.lock(), second);
    WeakPtr<const Plain> moved(std::move(none));
    EXPECT_EQ(second.getWeakCount(), 1);
    EXPECT_TRUE(none.isExpired());
    weak = second;
    EXPECT_EQ(weak.lock(), second);
}

TEST_F(SharedPtrUserTest, AnObjectMayDropItsOwner) {
    struct Link : Plain {
        SharedPtr<Link> next;
    };
    SharedPtr<Link> first = makeShared<Link>();
    first->next = makeShared<Link>();
    first->next->value = 2;
    first = first->next; // destroys what owns the pointer that is assigned
    EXPECT_EQ(first->value, 2);
    EXPECT_EQ(Plain::living, 1);
    first->next = first;
    EXPECT_EQ(first.getUseCount(), 2);
    first->next.reset();
}

// makeShared.

template <class T>
std::size_t allocationsOfMaking() {
    SharedPtr<T> pointer;
    return allocationsDuring([&] { pointer = makeShared<T>(); });
}

struct OwnNew : Plain {
    static void* operator new(std::size_t size) {
        ++made;
        return ::operator new(size);
    }
    static void operator delete(void* object) { ::operator delete(object); }
    static inline int made = 0;
};
struct alignas(64) Wide : Plain {
    char bytes[64] = {};
};
struct alignas(__STDCPP_DEFAULT_NEW_ALIGNMENT__) Aligned : Plain {};

TEST_F(SharedPtrUserTest, MakeSharedTakesOneBlockWhereItCan) {
    EXPECT_EQ(allocationsOfMaking<Plain>(), 1u);
    EXPECT_EQ(allocationsOfMaking<const int>(), 1u);
    EXPECT_EQ(allocationsOfMaking<Aligned>(), 1u);
    EXPECT_EQ(allocationsOfMaking<Shared>(), 2u);
    EXPECT_EQ(allocationsOfMaking<Door>(), 2u);
    EXPECT_EQ(allocationsOfMaking<OwnNew>(), 2u);
    EXPECT_EQ(OwnNew::made, 1);
    const auto address = [](const auto& pointer) { return reinterpret_cast<std::uintptr_t>(pointer.get()); };
    EXPECT_EQ(address(makeShared<Aligned>()) % alignof(Aligned), 0u);
    // The support of these tests does not count such blocks, so none is made.
    static_assert(!VornPrivate::isMadeAdjacent<Wide>());
}

TEST_F(SharedPtrUserTest, OneBlockLivesAsLongAsItsWeakPointers) {
    for (const bool isThreadsafe : {false, true}) {
        SharedPtr<Plain> pointer = isThreadsafe ? makeSharedThreadsafe<Plain>(1) : makeShared<Plain>(1);
        const std::size_t live = liveAllocationCount();
        WeakPtr<Plain> weak(pointer);
        pointer.reset();
        EXPECT_EQ(Plain::living, 0);
        EXPECT_EQ(weak.getWeakCount(), 1);
        EXPECT_EQ(liveAllocationCount(), live);
        weak.reset();
        EXPECT_EQ(liveAllocationCount(), live - 1);
        // The free release frees a control block before it destroys the object.
        pointer = isThreadsafe ? makeSharedThreadsafe<Plain>(2) : makeShared<Plain>(2);
        VornPrivate::addUse(sharedRecord(pointer));
        Vorn::RefCounter* const counter = sharedRecord(pointer);
        pointer.reset();
        EXPECT_EQ(Plain::living, 1);
        Vorn::releaseUseCount(counter);
        EXPECT_EQ(Plain::living, 0);
        EXPECT_EQ(liveAllocationCount(), live - 1);
    }
}

TEST_F(SharedPtrUserTest, ConstructorsThatThrowLeaveNothing) {
    struct Throwing : Plain {
        explicit Throwing(int) { throw 1; }
    };
    EXPECT_THROW(makeShared<Throwing>(1), int);
    EXPECT_THROW(makeSharedThreadsafe<Throwing>(1), int);
    failAllocation(1);
    EXPECT_THROW(makeShared<Plain>(), std::bad_alloc);
    failAllocation(0);
}

TEST_F(SharedPtrUserTest, MakesArrays) {
    const SharedPtr<Plain[]> objects = makeShared<Plain[]>(3);
    EXPECT_EQ(Plain::living, 3);
    EXPECT_TRUE(objects.isArray());
    const SharedPtr<int[]> numbers = makeSharedThreadsafe<int[]>(100);
    EXPECT_TRUE(numbers.isThreadsafe());
    for (std::size_t i = 0; i < 100; ++i) EXPECT_EQ(numbers[i], 0);
    EXPECT_TRUE(makeShared<int[]>(0));
    EXPECT_THROW(makeShared<int[]>(std::size_t(-1) / 2), std::bad_alloc);
}

// Casts.

TEST_F(SharedPtrUserTest, CastsCopyAndMove) {
    SharedPtr<Plain> base = makeShared<Derived>(1);
    EXPECT_EQ(Vorn::staticSharedCast<Derived>(base)->value, 1);
    EXPECT_EQ(Vorn::dynamicSharedCast<Derived>(base), base);
    EXPECT_EQ(Vorn::dynamicSharedCast<Shared>(base), nullptr);
    EXPECT_EQ(base.getUseCount(), 1);
    SharedPtr<Derived> derived = Vorn::staticSharedCast<Derived>(std::move(base));
    EXPECT_EQ(base, nullptr);
    EXPECT_EQ(derived.getUseCount(), 1);
    base = std::move(derived);
    EXPECT_EQ(Vorn::dynamicSharedCast<Shared>(std::move(base)), nullptr);
    ASSERT_NE(base, nullptr); // kept: it is no Shared
    derived = Vorn::dynamicSharedCast<Derived>(std::move(base));
    EXPECT_EQ(base, nullptr);
    SharedPtr<const Derived> constant(derived);
    EXPECT_EQ(Vorn::constSharedCast<Derived>(constant), derived);
    EXPECT_EQ(derived.getUseCount(), 2);
    SharedPtr<Derived> changed = Vorn::constSharedCast<Derived>(std::move(constant));
    EXPECT_EQ(constant, nullptr);
    EXPECT_EQ(changed.getUseCount(), 2);
    const SharedPtr<void> untyped(changed);
    EXPECT_EQ(Vorn::staticSharedCast<Derived>(untyped), changed);
    EXPECT_EQ(Vorn::constSharedCast<int[]>(SharedPtr<const int[]>(makeShared<int[]>(2)))[1], 0);
}

// Comparisons, order, hash, output.

TEST_F(SharedPtrUserTest, ComparesAsTheAddress) {
    const SharedPtr<int[]> array = makeShared<int[]>(2);
    const SharedPtr<int> low(array, array.get()), high(array, array.get() + 1), alsoLow(low);
    const SharedPtr<const int> constant(low);
    EXPECT_TRUE(low < high && low <= high && high > low && high >= low && low != high);
    EXPECT_TRUE(low == alsoLow && low <= alsoLow && low >= alsoLow);
    EXPECT_FALSE(low < alsoLow || low > alsoLow || high < low || high <= low || low > high || low >= high);
    EXPECT_TRUE(low == constant && constant == low && constant < high && high > constant);
    EXPECT_TRUE(SharedPtr<int>() < low);
    EXPECT_TRUE(low == array.get() && array.get() == low && low != array.get() + 1 && array.get() + 1 != low);
    const int* const raw = array.get();
    EXPECT_TRUE(low == raw && raw == low && array == raw && raw == array);
    EXPECT_TRUE(nullptr == SharedPtr<int>() && SharedPtr<int>() == nullptr && nullptr != low && low != nullptr);
    for (const auto& pointer : {low, SharedPtr<int>()}) {
        const SharedPtr<int> null;
        EXPECT_EQ(pointer < nullptr, pointer < null);
        EXPECT_EQ(pointer > nullptr, pointer > null);
        EXPECT_EQ(pointer <= nullptr, pointer <= null);
        EXPECT_EQ(pointer >= nullptr, pointer >= null);
        EXPECT_EQ(nullptr < pointer, null < pointer);
        EXPECT_EQ(nullptr > pointer, null > pointer);
        EXPECT_EQ(nullptr <= pointer, null <= pointer);
        EXPECT_EQ(nullptr >= pointer, null >= pointer);
    }
    const SharedPtr<Derived> derived = makeShared<Derived>(1);
    const SharedPtr<Plain> base(derived);
    Plain* const rawBase = derived.get();
    EXPECT_TRUE(base == derived && base == rawBase && derived == rawBase && !(base < derived));
    std::set<SharedPtr<int>> ordered{high, low, alsoLow};
    EXPECT_EQ(*ordered.begin(), low);
    EXPECT_EQ(ordered.size(), 2u);
    std::unordered_map<SharedPtr<int>, int> hashed{{low, 1}, {high, 2}};
    EXPECT_EQ(hashed.at(alsoLow), 1);
}

TEST_F(SharedPtrUserTest, OrdersByOwner) {
    SharedPtr<Plain> owner = makeShared<Plain>(1);
    const SharedPtr<Part> part(owner, &owner->part);
    const SharedPtr<Plain> other = makeShared<Plain>(2);
    const WeakPtr<Plain> weak(owner);
    EXPECT_FALSE(owner.ownerBefore(part) || part.ownerBefore(owner));
    EXPECT_FALSE(owner.ownerBefore(weak) || weak.ownerBefore(part));
    EXPECT_NE(owner.ownerBefore(other), other.ownerBefore(owner));
    EXPECT_EQ(weak.ownerBefore(WeakPtr<Plain>(other)), owner.ownerBefore(other));
    EXPECT_TRUE(SharedPtr<Plain>().ownerBefore(owner));
    std::map<WeakPtr<Plain>, int, OwnerLess> map{{weak, 1}, {WeakPtr<Plain>(other), 2}};
    EXPECT_EQ(map.find(owner)->second, 1);
    EXPECT_EQ(map.find(part)->second, 1);
    const WeakPtr<Part> weakPart(part);
    const_cast<SharedPtr<Part>&>(part).reset();
    owner.reset();
    EXPECT_EQ(map.find(weakPart)->second, 1); // after the object has been destroyed
    EXPECT_EQ(std::hash<WeakPtr<Plain>>()(weak), std::hash<WeakPtr<Plain>>()(map.find(weak)->first));
}

TEST_F(SharedPtrUserTest, WritesTheAddress) {
    const SharedPtr<char> text = makeShared<char>('a');
    std::ostringstream stream, expected;
    stream << std::setw(30) << text << SharedPtr<const volatile int>() << SharedPtr<Plain[]>();
    expected << std::setw(30) << static_cast<const void*>(text.get()) << static_cast<const void*>(nullptr)
             << static_cast<const void*>(nullptr);
    EXPECT_EQ(stream.str(), expected.str()); // and not the character
}

TEST_F(SharedPtrUserTest, AccessesTheObject) {
    const SharedPtr<Plain> pointer = makeShared<Plain>(1);
    pointer->value = 2; // a const pointer to an object that is not
    EXPECT_EQ((*pointer).value, 2);
    if (!pointer) ADD_FAILURE();
    static_assert(!std::is_convertible_v<SharedPtr<Plain>, bool>);
    static_assert(!std::is_convertible_v<Plain*, SharedPtr<Plain>>);
    static_assert(std::is_same_v<SharedPtr<int[]>::Element, int>);
    static_assert(std::is_nothrow_move_constructible_v<SharedPtr<Plain>>);
    static_assert(std::is_nothrow_move_assignable_v<SharedPtr<Plain>>);
    static_assert(std::is_nothrow_copy_constructible_v<SharedPtr<Plain>>);
    static_assert(std::is_nothrow_default_constructible_v<WeakPtr<Plain>>);
    std::vector<SharedPtr<Plain>> list(3, pointer);
    EXPECT_EQ(pointer.getUseCount(), 4);
    const auto capture = [pointer] { return pointer->value; };
    EXPECT_EQ(capture(), 2);
    const SharedPtr<int (*)()> function = makeShared<int (*)()>([] { return 3; });
    EXPECT_EQ((*function)(), 3);
}

TEST_F(SharedPtrUserTest, IncompleteTypesAreMembers) {
    House house;
    EXPECT_FALSE(isOpen(house.door, nullptr));
    house.door = makeIncomplete();
    house.watched = watch(house.door);
    EXPECT_TRUE(isOpen(house.door, house.door.get()));
    EXPECT_TRUE(copyOf(house) == house);
    EXPECT_EQ(house.watched.lock(), house.door);
}

TEST_F(SharedPtrUserTest, ThreadsShareOneBlock) {
    for (int round = 0; round < 50; ++round) {
        SharedPtr<Plain> pointer = makeSharedThreadsafe<Plain>(round);
        WeakPtr<Plain> weak(pointer);
        std::thread other([copy = std::move(pointer)]() mutable { copy.reset(); });
        while (const SharedPtr<Plain> locked = weak.lock()) EXPECT_EQ(locked->value, round);
        weak.reset();
        other.join();
    }
}

struct Incomplete : Plain {};
SharedPtr<Incomplete> makeIncomplete() { return makeShared<Incomplete>(); }

} // namespace
