/// @file
/// The control blocks that SharedPtr creates. Support of the pointer templates; not for direct use.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/SharedObjects/RefCounterWrapper.h"

#include <type_traits>

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
        union Storage {
            Storage() : record() {}
            ~Storage() {}
            DeadRecord record;
        };
        static Storage storage;
        return &storage.record;
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
        Vorn::DynamicObject* const whole = dynamic_cast<Vorn::DynamicObject*>(const_cast<Object*>(object));
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
