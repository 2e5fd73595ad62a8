// SharedRecord: the records that SharedPtr makes. Support of the pointer templates; not for direct use.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/SharedObjects/RefCounterWrapper.h"

#include <type_traits>

namespace VornPrivate {

/// Reaches the record inside a shared object.
struct SharedObjectAccess : Vorn::PtrTypeBase {
    using Vorn::PtrTypeBase::getRefCounter;
    using Vorn::PtrTypeBase::setRefCounter;
    using Vorn::PtrTypeBase::undoGetOrCreateRefCounter;
};

/// The record of an object that is being destroyed: its use count is 0 for good.
class DeadRecord final : public Vorn::RefCounter {
public:
    Deleter getDeleter() override { return nullptr; }

    /// One object for all, which is never destroyed: objects die after main as well.
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

/// What becomes of a shared object's memory of its record when the last use goes.
enum class AfterLastUse {
    DEAD,  // the object is destroyed: a pointer made of it meanwhile is refused
    RENEW, // the deleter decides: an object that it keeps may be shared anew
};

/// The record of any object.
class ObjectRefCounter final : public Vorn::RefCounter {
public:
    /// Starts with one use. `sharedObject` is the part of the object that remembers this record, null if there is none.
    ObjectRefCounter(void* object, Deleter deleter, bool isArray, bool isThreadsafe,
                     Vorn::SharedObjectBase* sharedObject, AfterLastUse afterLastUse)
        : m_afterLastUse(afterLastUse), m_deleter(deleter), m_sharedObject(sharedObject) {
        m_useCount.store(1, std::memory_order_relaxed); // nobody else has seen the record yet
        m_ptr = object;
        m_isArray = isArray;
        m_isThreadsafe = isThreadsafe;
        if (m_sharedObject) SharedObjectAccess::setRefCounter(m_sharedObject, this);
    }

    /// The object forgets this record in time: it may outlive it from now on.
    Deleter getDeleter() override {
        if (m_sharedObject) {
            SharedObjectAccess::setRefCounter(m_sharedObject,
                                              m_afterLastUse == AfterLastUse::DEAD ? DeadRecord::get() : nullptr);
        }
        return m_deleter;
    }

private:
    AfterLastUse m_afterLastUse;            // first: it fits behind the flags of the base
    Deleter m_deleter;                      // never null: a record without one would not be freed
    Vorn::SharedObjectBase* m_sharedObject; // null for other types and for arrays
};

/// Adds one use for a holder that has one already.
inline void addUse(Vorn::RefCounter* counter) {
    counter->m_useCount.fetch_add(1, std::memory_order_relaxed); // the holder keeps the record: nothing to publish
}

/// Adds one weak count for a holder of any count.
inline void addWeak(Vorn::RefCounter* counter) {
    counter->m_weakCount.fetch_add(1, std::memory_order_relaxed); // the holder keeps the record: nothing to publish
}

/// Adds one use unless there is none any more: a dead object is never revived.
inline bool tryAddUse(Vorn::RefCounter* counter) {
    int count = counter->m_useCount.load(std::memory_order_relaxed);
    while (count > 0) {
        // Acquire: pairs with the releases of other uses, whose writes to the object are to be seen.
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

/// The part of an object that remembers its record; null if its type has none.
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

/// Makes a record for an object that has none; an object that cannot get one is destroyed, as by its last use.
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

/// Adds a use to the record that `sharedObject` remembers; null if it has none yet.
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

/// The record of `object` with one use added, made first if there is none.
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
