/// @file
/// The control blocks that SharedPtr creates. Support of the pointer templates; not for direct use.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/Private/RuntimeType.h"
#include "Vorn/SharedObjects/RefCounterWrapper.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>
#include <utility>

namespace VornPrivate {

/// Accesses the control block of a shared object.
struct SharedObjectAccess : Vorn::PtrTypeBase {
    using Vorn::PtrTypeBase::getRefCounter;
    using Vorn::PtrTypeBase::setRefCounter;
    using Vorn::PtrTypeBase::undoGetOrCreateRefCounter;
};

/// The control block of an object that is being destroyed: its use count stays 0.
class DeadRecord final : public Vorn::RefCounter {
public:
    Deleter getDeleter() override { return nullptr; }

    /// Returns the one such control block, which is never destroyed: objects are destroyed after `main` as well.
    static Vorn::RefCounter* get() {
        alignas(DeadRecord) static unsigned char storage[sizeof(DeadRecord)];
        static DeadRecord* const record = ::new (static_cast<void*>(storage)) DeadRecord;
        return record;
    }
};

/// What a shared object stores as its control block after its last use.
enum class AfterLastUse {
    DEAD,  ///< DeadRecord: the object is being destroyed, and creating a pointer to it throws
    RENEW, ///< null: the deleter may keep the object, which can be shared again
};

/// The control block of any object.
class ObjectRefCounter final : public Vorn::RefCounter {
public:
    /// Starts with one use. `sharedObject` is the part of the object that stores its control block, or null.
    ObjectRefCounter(void* object, Deleter deleter, bool isArray, bool isThreadsafe,
                     Vorn::SharedObjectBase* sharedObject, AfterLastUse afterLastUse)
        : m_afterLastUse(afterLastUse), m_deleter(deleter), m_sharedObject(sharedObject) {
        m_useCount.store(1, std::memory_order_relaxed); // no other thread has the control block yet
        m_ptr = object;
        m_isArray = isArray;
        m_isThreadsafe = isThreadsafe;
        if (m_sharedObject) SharedObjectAccess::setRefCounter(m_sharedObject, this);
    }

    /// Also removes this control block from the object, which may outlive it from now on.
    Deleter getDeleter() override {
        if (m_sharedObject) {
            SharedObjectAccess::setRefCounter(m_sharedObject,
                                              m_afterLastUse == AfterLastUse::DEAD ? DeadRecord::get() : nullptr);
        }
        return m_deleter;
    }

private:
    AfterLastUse m_afterLastUse;            // first: it fits behind the flags of the base
    Deleter m_deleter;                      // never null: a control block without one would not be freed
    Vorn::SharedObjectBase* m_sharedObject; // null for other types and for arrays
};

/// Adds one use. The caller must hold one.
inline void addUse(Vorn::RefCounter* counter) {
    counter->m_useCount.fetch_add(1, std::memory_order_relaxed); // the caller holds a count: nothing to publish
}

/// Adds one weak count. The caller must hold a count of either kind.
inline void addWeak(Vorn::RefCounter* counter) {
    counter->m_weakCount.fetch_add(1, std::memory_order_relaxed); // the caller holds a count: nothing to publish
}

/// Adds one use and returns true, unless the use count is 0: a destroyed object is never shared again.
inline bool tryAddUse(Vorn::RefCounter* counter) {
    int count = counter->m_useCount.load(std::memory_order_relaxed);
    while (count > 0) {
        // Acquire: pairs with the releases of other uses, so that their writes to the object are visible.
        if (counter->m_useCount.compare_exchange_weak(count, count + 1, std::memory_order_acq_rel,
                                                      std::memory_order_relaxed)) {
            return true;
        }
    }
    return false;
}

/// Adds a weak count in getDeleter, which keeps the block of memory until the deleter calls `releaseBlock`. Free
/// releases free a control block without weak counts before they call the deleter.
inline void keepBlock(Vorn::RefCounter* counter) {
    if (counter->m_weakCount.load(std::memory_order_relaxed) == 0) {
        // The last use has gone, too, so no thread is left that could change the count.
        counter->m_weakCount.store(1, std::memory_order_relaxed);
    } else {
        addWeak(counter);
    }
}

/// Releases the weak count that `keepBlock` has added.
inline void releaseBlock(Vorn::RefCounter* counter) {
    // Acquire: pairs with the releases of other weak counts. A thread-safe block may still be locked by one of them.
    if (counter->m_isThreadsafe || counter->m_weakCount.load(std::memory_order_acquire) != 1) {
        Vorn::releaseWeakCount(counter);
        return;
    }
    counter->m_mutex.~RefCounterMutex();
    ::operator delete(counter);
}

/// The control block in front of an object in the same block of memory, which it keeps until the object is destroyed.
class AdjacentRefCounter final : public Vorn::RefCounter {
public:
    AdjacentRefCounter(void* object, Deleter deleter, bool isThreadsafe) : m_deleter(deleter) {
        m_useCount.store(1, std::memory_order_relaxed); // no other thread has the control block yet
        m_ptr = object;
        m_isThreadsafe = isThreadsafe;
    }

    Deleter getDeleter() override {
        keepBlock(this);
        return m_deleter;
    }

private:
    Deleter m_deleter; // destroys the object and releases the weak count
};

/// The control block of an object with a deleter of any type, which it holds. `m_ptr` is the control block itself.
template <class Object, class ObjectDeleter>
class HoldingRefCounter final : public Vorn::RefCounter {
    static_assert(alignof(ObjectDeleter) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__,
                  "a control block is freed without its alignment: give the deleter an ordinary one");

public:
    template <class Source>
    HoldingRefCounter(Object* object, Source&& deleter, bool isArray, bool isThreadsafe,
                      Vorn::SharedObjectBase* sharedObject)
        : m_object(object), m_sharedObject(sharedObject), m_deleter(std::forward<Source>(deleter)) {
        m_useCount.store(1, std::memory_order_relaxed); // no other thread has the control block yet
        m_ptr = this;
        m_isArray = isArray;
        m_isThreadsafe = isThreadsafe;
        if (m_sharedObject) SharedObjectAccess::setRefCounter(m_sharedObject, this);
    }

    /// Keeps the block until the deleter has run.
    Deleter getDeleter() override {
        if (m_sharedObject) SharedObjectAccess::setRefCounter(m_sharedObject, nullptr);
        keepBlock(this);
        return &destroy;
    }

private:
    static void destroy(void* record) {
        HoldingRefCounter* const self = static_cast<HoldingRefCounter*>(record);
        self->m_deleter(self->m_object);
        self->m_deleter.~ObjectDeleter(); // the destructor of a control block does not run
        releaseBlock(self);
    }

    Object* m_object;
    Vorn::SharedObjectBase* m_sharedObject; // null for other types and for arrays
    ObjectDeleter m_deleter;
};

/// Calls a deleter that it does not own.
template <class ObjectDeleter>
class DeleterReference {
public:
    explicit DeleterReference(ObjectDeleter& deleter) : m_deleter(&deleter) {}

    template <class Object>
    void operator()(Object* object) const {
        (*m_deleter)(object);
    }

private:
    ObjectDeleter* m_deleter;
};

/// True for classes with one `operator()`, which is no template.
template <class Callable, class = void>
inline constexpr bool HAS_PLAIN_CALL = false;
template <class Callable>
inline constexpr bool HAS_PLAIN_CALL<Callable, std::void_t<decltype(&Callable::operator())>> = true;

/// Returns true if the deleter can be stored as a function that takes `void*`. A generic lambda is not asked for its
/// conversion, which would compile its body for `void*`.
template <class ObjectDeleter>
constexpr bool isUntypedDeleter() {
    if constexpr (std::is_class_v<ObjectDeleter> && !HAS_PLAIN_CALL<ObjectDeleter>) {
        return false;
    } else {
        return std::is_convertible_v<ObjectDeleter, Vorn::RefCounter::Deleter>;
    }
}

/// Returns true if the deleter can destroy an object given as `Object*`.
template <class ObjectDeleter, class Object>
constexpr bool isDeleterOf() {
    if constexpr (isUntypedDeleter<ObjectDeleter>()) {
        return true;
    } else {
        return std::is_invocable_v<ObjectDeleter&, Object*>;
    }
}

/// True for classes with an `operator new` of their own.
template <class T, class = void>
inline constexpr bool HAS_OWN_NEW = false;
template <class T>
inline constexpr bool HAS_OWN_NEW<T, std::void_t<decltype(T::operator new(std::size_t()))>> = true;

/// Returns true if an object can share a block of memory with its control block. A shared object cannot: its
/// constructor may make the first pointer to it, which deletes the object with `delete`.
template <class T>
constexpr bool isMadeAdjacent() {
    return !std::is_base_of_v<Vorn::SharedObjectBase, T> && !std::is_base_of_v<Vorn::InterfaceBase, T> &&
           !HAS_OWN_NEW<T> && alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__;
}

/// A block of memory for a control block and the T behind it.
template <class T>
class AdjacentBlock {
public:
    /// Constructs both. Throws `std::bad_alloc` and what the constructor throws; nothing is left then.
    template <class... Args>
    static T* make(Vorn::RefCounter*& counter, bool isThreadsafe, Args&&... args) {
        AdjacentBlock block;
        void* const place = static_cast<char*>(block.m_memory) + OFFSET;
        block.m_counter = ::new (block.m_memory) AdjacentRefCounter(place, &destroy, isThreadsafe);
        T* const object = ::new (place) T(std::forward<Args>(args)...);
        counter = block.m_counter;
        block.m_memory = nullptr;
        return object;
    }

private:
    static constexpr std::size_t OFFSET = (sizeof(AdjacentRefCounter) + alignof(T) - 1) / alignof(T) * alignof(T);

    AdjacentBlock() : m_memory(::operator new(OFFSET + sizeof(T))), m_counter(nullptr) {}
    AdjacentBlock(const AdjacentBlock&) = delete;
    AdjacentBlock& operator=(const AdjacentBlock&) = delete;
    ~AdjacentBlock() {
        if (!m_memory) return;
        if (m_counter) m_counter->~AdjacentRefCounter();
        ::operator delete(m_memory);
    }

    static void destroy(void* object) {
        void* const memory = static_cast<char*>(object) - OFFSET;
        static_cast<T*>(object)->~T();
        releaseBlock(static_cast<AdjacentRefCounter*>(memory));
    }

    void* m_memory; // null once the object owns it
    AdjacentRefCounter* m_counter;
};

/// An order of addresses, also of different objects.
inline bool isBefore(const volatile void* a, const volatile void* b) {
    return reinterpret_cast<std::uintptr_t>(a) < reinterpret_cast<std::uintptr_t>(b);
}

template <class T>
void deleteObject(void* object) {
    delete static_cast<T*>(object);
}

template <class T>
void deleteArray(void* object) {
    delete[] static_cast<T*>(object);
}

template <class T>
void* untyped(T* object) {
    return const_cast<std::remove_cv_t<T>*>(object);
}

/// Returns the part of an object that stores its control block; null if its type has none.
template <class T>
Vorn::SharedObjectBase* sharedObjectOf(T* object) {
    using Object = std::remove_cv_t<T>;
    if constexpr (std::is_convertible_v<Object*, Vorn::SharedObjectBase*>) {
        return const_cast<Object*>(object);
    } else if constexpr (std::is_convertible_v<Object*, Vorn::InterfaceBase*>) {
        return const_cast<Object*>(object)->getSharedObject();
    } else {
        return nullptr;
    }
}

/// Creates a control block for an object that has none. If its allocation throws, destroys the object as its last use
/// does.
inline Vorn::RefCounter* createRefCounter(void* object, Vorn::RefCounter::Deleter deleter, bool isArray,
                                          bool isThreadsafe, Vorn::SharedObjectBase* sharedObject,
                                          AfterLastUse afterLastUse) {
    try {
        return new ObjectRefCounter(object, deleter, isArray, isThreadsafe, sharedObject, afterLastUse);
    } catch (...) {
        if (sharedObject && afterLastUse == AfterLastUse::DEAD)
            SharedObjectAccess::setRefCounter(sharedObject, DeadRecord::get());
        deleter(object);
        throw;
    }
}

/// Adds a use to the control block of `sharedObject` and returns it; null if there is none yet.
inline Vorn::RefCounter* getRefCounterWithUse(Vorn::SharedObjectBase* sharedObject, bool isThreadsafe) {
    Vorn::RefCounter* const counter = sharedObject ? SharedObjectAccess::getRefCounter(sharedObject) : nullptr;
    if (!counter) return nullptr;
    const bool isAlive = tryAddUse(counter);
    VORN_ASSERT(isAlive, "the object is being destroyed!", "Vorn::SharedPtr::SharedPtr");
    try {
        VORN_ASSERT(counter->m_isThreadsafe || !isThreadsafe, "the object's record is not thread-safe!",
                    "Vorn::SharedPtr::SharedPtr");
    } catch (...) {
        SharedObjectAccess::undoGetOrCreateRefCounter(sharedObject, counter);
        throw;
    }
    return counter;
}

/// Returns the control block of `object` with one use added. Creates it if there is none.
template <class T>
Vorn::RefCounter* getOrCreateRefCounter(T* object, bool isThreadsafe) {
    using Object = std::remove_cv_t<T>;
    static_assert(sizeof(T) > 0, "the type must be complete where its first pointer is made");
    static_assert(
        std::is_convertible_v<Object*, Vorn::SharedObjectBase*> ||
            (!std::is_base_of_v<Vorn::SharedObjectBase, Object> &&
             (!std::is_base_of_v<Vorn::InterfaceBase, Object> || std::is_convertible_v<Object*, Vorn::InterfaceBase*>)),
        "the shared base is private or there are several: the object's record cannot be found");
    Vorn::SharedObjectBase* const sharedObject = sharedObjectOf(object);
    if (Vorn::RefCounter* const counter = getRefCounterWithUse(sharedObject, isThreadsafe)) return counter;
    if constexpr (std::is_convertible_v<Object*, Vorn::InterfaceBase*> &&
                  !std::is_convertible_v<Object*, Vorn::SharedObjectBase*>) {
        // The type of the object behind an interface is known only through a virtual destructor.
        static_assert(IS_DYNAMIC_CAST<Object, Vorn::DynamicObject>,
                      "a pointer to an interface needs RTTI: share the object itself and convert its SharedPtr");
        Vorn::DynamicObject* const whole = dynamicCast<Vorn::DynamicObject>(const_cast<Object*>(object));
        VORN_ASSERT(whole && whole == sharedObject, "an interface's object must be shared or a DynamicObject!",
                    "Vorn::SharedPtr::SharedPtr");
        return createRefCounter(whole, &deleteObject<Vorn::DynamicObject>, false, isThreadsafe, sharedObject,
                                AfterLastUse::DEAD);
    } else {
        return createRefCounter(untyped(object), &deleteObject<T>, false, isThreadsafe, sharedObject,
                                AfterLastUse::DEAD);
    }
}

} // namespace VornPrivate
