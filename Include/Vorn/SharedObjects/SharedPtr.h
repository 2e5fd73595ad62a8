/// @file
/// SharedPtr: a counted pointer that owns its object together with its copies.
///
///     const auto door = Vorn::makeShared<Door>("oak");
///     const Vorn::SharedPtr<Door> same = door;    // two uses; the last one to be destroyed deletes the door
///
/// One object has one control block. An object whose type derives from SharedObjectBase stores it, so
/// `SharedPtr<T>(this)` shares the object. Alternatives: WeakPtr, which does not keep its object alive; a plain
/// reference for a parameter that is not kept.
///
/// Cost: four words; copying and destroying are one atomic add each. The first pointer to an object allocates its
/// control block of 88 bytes (56 in a 32-bit process). `makeShared` makes one allocation for the object and its control
/// block, whose memory is then freed with the last weak pointer. It makes two for a type that derives from
/// SharedObjectBase or InterfaceBase, since the constructor of such an object may already share it, for a type that has
/// an `operator new` of its own or a larger alignment than `operator new` gives, and for arrays.
///
/// Failures: only the first pointer to an object allocates. If that throws `std::bad_alloc`, the object is destroyed as
/// by its last use, since the pointer was to own it, and nothing is leaked.
///
/// Depth: an object is destroyed inside the release of its last use, so the destructors of nested objects run inside
/// each other. If less than a quarter of the thread's stack is left (of a large stack, less than 256 KiB), a release
/// may only queue the object. Its destructor then begins after the one that released it has ended, but before the
/// outermost release returns. Destructors begin in the same order in both cases. Therefore structures of any depth can
/// be destroyed.
/// @warning Near the end of the stack, a destructor must not access what the destructors of its owners destroy.
/// @warning On the stack of a coroutine, whose bounds the thread does not know, the recursion is not bounded.
///
/// Threads: many threads may copy and destroy pointers to one object. A thread must not change a pointer while another
/// thread uses it. If weak pointers are destroyed or replaced by other threads than the one that releases the last use,
/// request a thread-safe control block when the object is first shared.
#pragma once

#include "Vorn/SharedObjects/SharedRecord.h"

#include <cstddef>
#include <new>
#include <utility>

namespace Vorn {

template <class T>
class SharedPtr;
template <class T>
class WeakPtr;

/// Kind of the control block of an object, chosen when the object is first shared.
enum RefCounterThreading {
    REF_COUNTER_SINGLE_THREAD = 0, ///< a release does not lock
    REF_COUNTER_THREADSAFE = 1     ///< different threads may release the last use and weak counts
};

} // namespace Vorn

namespace VornPrivate {

template <class T, class... Args>
Vorn::SharedPtr<T> makeSharedObject(Vorn::RefCounterThreading threading, Args&&... args);

} // namespace VornPrivate

namespace Vorn {

/// Returns true if an `Element*` can become a `SharedPtr<T>`. Elements of an array keep their type, possibly const.
template <class Element, class T>
constexpr bool isSharedSource() {
    using Target = std::remove_extent_t<T>;
    return std::is_convertible_v<Element*, Target*> &&
           (!std::is_array_v<T> || std::is_same_v<std::remove_cv_t<Element>, std::remove_cv_t<Target>>);
}

/// Returns true if a `SharedPtr<From>` can become a `SharedPtr<To>`.
template <class From, class To>
constexpr bool isSharedConvertible() {
    if constexpr (std::is_array_v<From> != std::is_array_v<To>) {
        return false;
    } else {
        return isSharedSource<std::remove_extent_t<From>, To>();
    }
}

/// A pointer to a shared T, or with `T[]` to a shared array, which is destroyed with `delete[]`.
template <class T>
class SharedPtr final : public RefCounterWrapper, public PtrTypeBase {
public:
    using Element = std::remove_extent_t<T>;

    /// A null pointer.
    SharedPtr() noexcept : SharedPtr(nullptr, static_cast<Element*>(nullptr)) {}
    SharedPtr(std::nullptr_t) noexcept : SharedPtr() {}

    /// Shares `object`; null gives a null pointer. If the object stores a control block, adds a use to it. Otherwise
    /// takes ownership: creates the control block, and the last use destroys the object with `delete`.
    ///
    /// Throws `std::bad_alloc` if the control block cannot be allocated; the object is destroyed then.
    /// Throws `Exception<1>`: "isAlive : the object is being destroyed!" in the destructor of the object.
    /// Throws `Exception<1>`: "counter->m_isThreadsafe || !isThreadsafe : the object's record is not thread-safe!" if a
    /// thread-safe control block is requested and the object has another one.
    /// Throws `Exception<1>`: "whole && whole == sharedObject : an interface's object must be shared or a
    /// DynamicObject!" for an interface to any other object.
    /// @warning The first pointer owns the object. If it is created in the constructor of the object, or from an object
    ///     on the stack, destroying it deletes that object.
    /// @warning If the type does not derive from SharedObjectBase, create one SharedPtr and copy it. A second one from
    ///     the raw pointer deletes the object again.
    template <class U, std::enable_if_t<isSharedSource<U, T>(), int> = 0>
    explicit SharedPtr(U* object, RefCounterThreading threading = REF_COUNTER_SINGLE_THREAD) : SharedPtr() {
        if (!object) return;
        if constexpr (std::is_array_v<T>) {
            pRefCounter = VornPrivate::createRefCounter(VornPrivate::untyped(object), &VornPrivate::deleteArray<U>,
                                                        true, threading == REF_COUNTER_THREADSAFE, nullptr,
                                                        VornPrivate::AfterLastUse::DEAD);
        } else {
            pRefCounter = VornPrivate::getOrCreateRefCounter(object, threading == REF_COUNTER_THREADSAFE);
        }
        m_object = object;
    }

    /// Shares `object`, which the last use destroys with `deleter(object)`; null gives a null pointer and calls
    /// nothing. The deleter takes a `U*`, or a `void*`, and may have a state, which is destroyed after the call. It
    /// must not throw, neither when it is moved. If it keeps the object alive, the object can be shared again.
    ///
    /// Throws `std::bad_alloc` if the control block cannot be allocated; `deleter(object)` has been called then.
    /// Throws `Exception<1>`: "deleter : null deleter!" for a null pointer to a function.
    /// Throws `Exception<1>`: "!sharedObject || !getRefCounter(sharedObject) : the object is shared already!".
    /// @warning A deleter that destroys the object: do not create a SharedPtr in the object's destructor. It is not
    ///     refused there and destroys the object again.
    template <class U, class ObjectDeleter,
              std::enable_if_t<isSharedSource<U, T>() && VornPrivate::isDeleterOf<ObjectDeleter, U>(), int> = 0>
    SharedPtr(U* object, ObjectDeleter deleter, RefCounterThreading threading = REF_COUNTER_SINGLE_THREAD)
        : SharedPtr() {
        if (!object) return;
        if constexpr (VornPrivate::isUntypedDeleter<ObjectDeleter>()) {
            own(object, static_cast<RefCounter::Deleter>(deleter), threading);
        } else {
            hold(object, deleter, threading);
        }
        m_object = object;
    }

    /// Takes over the object of a `std::unique_ptr` with its deleter, as the constructor from an object and a deleter
    /// does; null gives a null pointer. A deleter that is a reference is not copied and must outlive the object.
    ///
    /// Throws `std::bad_alloc` if the control block cannot be allocated, and `Exception<1>` as the constructor with a
    /// deleter does; `owner` keeps the object then.
    template <
        template <class, class> class Unique, class U, class ObjectDeleter,
        std::enable_if_t<isSharedConvertible<U, T>(), int> = 0,
        std::enable_if_t<std::is_pointer_v<decltype(std::declval<Unique<U, ObjectDeleter>&>().release())>, int> = 0>
    SharedPtr(Unique<U, ObjectDeleter>&& owner, RefCounterThreading threading = REF_COUNTER_SINGLE_THREAD)
        : SharedPtr() {
        if (!owner) return;
        using Held =
            std::conditional_t<std::is_reference_v<ObjectDeleter>,
                               VornPrivate::DeleterReference<std::remove_reference_t<ObjectDeleter>>, ObjectDeleter>;
        SharedObjectBase* const sharedObject = unsharedObject(owner.get());
        pRefCounter = new VornPrivate::HoldingRefCounter<std::remove_pointer_t<decltype(owner.release())>, Held>(
            owner.get(), std::forward<ObjectDeleter>(owner.get_deleter()), std::is_array_v<T>,
            threading == REF_COUNTER_THREADSAFE, sharedObject);
        m_object = owner.release();
    }

    /// Shares the ownership of `owner`, and points to `part`: a member of the object, or any object that lives as long.
    ///
    ///     const Vorn::SharedPtr<int> opened(door, &door->opened);    // keeps the door alive
    ///
    /// @warning `isNull`, `isNotNull` and the counts ask about the owner, and `get` and `operator bool` about `part`.
    /// They
    ///     differ where one of `owner` and `part` is null. A null owner keeps nothing alive.
    /// @{
    template <class U>
    SharedPtr(const SharedPtr<U>& owner, Element* part) noexcept : SharedPtr(owner.pRefCounter, part) {
        addUse();
    }
    template <class U>
    SharedPtr(SharedPtr<U>&& owner, Element* part) noexcept : SharedPtr(owner.pRefCounter, part) {
        owner.forget();
    }
    /// @}

    /// Shares the object of `weak`. To get null in place of an exception, call `WeakPtr::lock`. Defined in WeakPtr.h.
    ///
    /// Throws `Exception<1>`: "isAlive : the object has been destroyed!", also if there never was one.
    template <class U, std::enable_if_t<isSharedConvertible<U, T>(), int> = 0>
    explicit SharedPtr(const WeakPtr<U>& weak);

    SharedPtr(const SharedPtr& other) noexcept : SharedPtr(other.pRefCounter, other.m_object) { addUse(); }

    SharedPtr(SharedPtr&& other) noexcept : SharedPtr(other.pRefCounter, other.m_object) { other.forget(); }

    /// Shares the object as one of its bases or interfaces, with the same control block.
    template <class U, std::enable_if_t<isSharedConvertible<U, T>(), int> = 0>
    SharedPtr(const SharedPtr<U>& other) noexcept : SharedPtr(other.pRefCounter, other.m_object) {
        addUse();
    }

    template <class U, std::enable_if_t<isSharedConvertible<U, T>(), int> = 0>
    SharedPtr(SharedPtr<U>&& other) noexcept : SharedPtr(other.pRefCounter, other.m_object) {
        other.forget();
    }

    ~SharedPtr() override {
        if (pRefCounter) releaseUseCount();
    }

    SharedPtr& operator=(const SharedPtr& other) noexcept {
        SharedPtr(other).swap(*this);
        return *this;
    }

    SharedPtr& operator=(SharedPtr&& other) noexcept {
        SharedPtr(std::move(other)).swap(*this);
        return *this;
    }

    /// Releases the use and makes the pointer null.
    void reset() override { SharedPtr().swap(*this); }

    /// Releases the use and shares `object`, as the constructor with the same arguments does. If that throws, the
    /// pointer stays unchanged.
    template <class U, class... Arguments,
              std::enable_if_t<std::is_constructible_v<SharedPtr, U*, Arguments...>, int> = 0>
    void reset(U* object, Arguments... arguments) {
        SharedPtr(object, std::move(arguments)...).swap(*this);
    }

    void swap(SharedPtr& other) noexcept {
        std::swap(pRefCounter, other.pRefCounter);
        std::swap(m_object, other.m_object);
    }
    friend void swap(SharedPtr& a, SharedPtr& b) noexcept { a.swap(b); }

    /// An order of owners: pointers that share a control block are equivalent, also if they point to different parts of
    /// the object. Pointers without a control block come first. See OwnerLess.
    /// @{
    template <class U>
    bool ownerBefore(const SharedPtr<U>& other) const noexcept {
        return VornPrivate::isBefore(pRefCounter, other.pRefCounter);
    }
    template <class U>
    bool ownerBefore(const WeakPtr<U>& other) const noexcept {
        return VornPrivate::isBefore(pRefCounter, other.pRefCounter);
    }
    /// @}

    Element* get() const noexcept { return m_object; } ///< Returns the object or null.
    explicit operator bool() const noexcept { return m_object; }

    /// Returns the object.
    ///
    /// Throws `Exception<1>`: "m_object : null pointer!".
    std::add_lvalue_reference_t<Element> operator*() const {
        VORN_ASSERT(m_object, "null pointer!");
        return *m_object;
    }

    /// Returns the object.
    ///
    /// Throws `Exception<1>`: "m_object : null pointer!".
    Element* operator->() const {
        VORN_ASSERT(m_object, "null pointer!");
        return m_object;
    }

    /// Returns an element of an array.
    ///
    /// Throws `Exception<1>`: "m_object : null pointer!".
    /// @warning The length of the array is not known, so `index` is not checked.
    template <class Array = T, std::enable_if_t<std::is_array_v<Array>, int> = 0>
    std::add_lvalue_reference_t<Element> operator[](std::size_t index) const {
        VORN_ASSERT(m_object, "null pointer!");
        return m_object[index];
    }

private:
    template <class U>
    friend class SharedPtr;
    template <class U>
    friend class WeakPtr;
    template <class U>
    friend RefCounter* sharedRecord(const SharedPtr<U>& pointer);
    template <class U, class... Args>
    friend SharedPtr<U> VornPrivate::makeSharedObject(Vorn::RefCounterThreading threading, Args&&... args);

    // Takes ownership of a use that has been added.
    SharedPtr(RefCounter* counter, Element* object) noexcept : m_object(object) { pRefCounter = counter; }

    void addUse() noexcept {
        if (pRefCounter) VornPrivate::addUse(pRefCounter);
    }

    void forget() noexcept {
        pRefCounter = nullptr;
        m_object = nullptr;
    }

    // Returns the part of an object that stores its control block, and checks that there is none yet.
    template <class U>
    static SharedObjectBase* unsharedObject(U* object) {
        if constexpr (std::is_array_v<T>) {
            return nullptr;
        } else {
            SharedObjectBase* const sharedObject = VornPrivate::sharedObjectOf(object);
            VORN_ASSERT(!sharedObject || !getRefCounter(sharedObject), "the object is shared already!",
                        "Vorn::SharedPtr::SharedPtr");
            return sharedObject;
        }
    }

    template <class U>
    void own(U* object, RefCounter::Deleter deleter, RefCounterThreading threading) {
        VORN_ASSERT(deleter, "null deleter!", "Vorn::SharedPtr::SharedPtr");
        SharedObjectBase* const sharedObject = unsharedObject(object);
        pRefCounter = VornPrivate::createRefCounter(VornPrivate::untyped(object), deleter, std::is_array_v<T>,
                                                    threading == REF_COUNTER_THREADSAFE, sharedObject,
                                                    VornPrivate::AfterLastUse::RENEW);
    }

    template <class U, class ObjectDeleter>
    void hold(U* object, ObjectDeleter& deleter, RefCounterThreading threading) {
        if constexpr (std::is_pointer_v<ObjectDeleter>) {
            VORN_ASSERT(deleter, "null deleter!", "Vorn::SharedPtr::SharedPtr");
        }
        SharedObjectBase* const sharedObject = unsharedObject(object);
        try {
            pRefCounter = new VornPrivate::HoldingRefCounter<U, ObjectDeleter>(
                object, std::move(deleter), std::is_array_v<T>, threading == REF_COUNTER_THREADSAFE, sharedObject);
        } catch (...) {
            deleter(object);
            throw;
        }
    }

    Element* m_object; // the object as an Element, or a part of it
};

template <class T>
SharedPtr(WeakPtr<T>) -> SharedPtr<T>;
template <template <class, class> class Unique, class T, class ObjectDeleter>
SharedPtr(Unique<T, ObjectDeleter>&&, RefCounterThreading = REF_COUNTER_SINGLE_THREAD) -> SharedPtr<T>;

} // namespace Vorn

namespace VornPrivate {

template <class T, class Count>
Vorn::SharedPtr<T[]> makeSharedArray(Vorn::RefCounterThreading threading, Count count) {
    static_assert(std::is_integral_v<Count>, "write the number of elements as the argument: makeShared<T[]>(4)");
    T* const elements = new T[static_cast<std::size_t>(count)]();
    return Vorn::SharedPtr<T[]>(elements, threading);
}

template <class T, class... Args>
Vorn::SharedPtr<T> makeSharedObject(Vorn::RefCounterThreading threading, Args&&... args) {
    if constexpr (std::is_array_v<T>) {
        static_assert(std::extent_v<T> == 0, "write the number of elements as an argument: makeShared<T[]>(4)");
        return makeSharedArray<std::remove_extent_t<T>>(threading, args...);
    } else if constexpr (isMadeAdjacent<T>()) {
        Vorn::RefCounter* counter = nullptr;
        T* const object = AdjacentBlock<std::remove_cv_t<T>>::make(counter, threading == Vorn::REF_COUNTER_THREADSAFE,
                                                                   std::forward<Args>(args)...);
        return Vorn::SharedPtr<T>(counter, object);
    } else {
        return Vorn::SharedPtr<T>(new T(std::forward<Args>(args)...), threading);
    }
}

} // namespace VornPrivate

namespace Vorn {

/// Creates a T and shares it. `makeShared<T[]>(count)` creates an array, whose elements are value-initialised: zero for
/// numbers and pointers.
///
/// Throws what the constructor throws, `std::bad_alloc`, and `std::bad_array_new_length` for a count that no memory has
/// room for; no object is left then.
template <class T, class... Args>
[[nodiscard]] SharedPtr<T> makeShared(Args&&... args) {
    return VornPrivate::makeSharedObject<T>(REF_COUNTER_SINGLE_THREAD, std::forward<Args>(args)...);
}

/// The same with a thread-safe control block.
template <class T, class... Args>
[[nodiscard]] SharedPtr<T> makeSharedThreadsafe(Args&&... args) {
    return VornPrivate::makeSharedObject<T>(REF_COUNTER_THREADSAFE, std::forward<Args>(args)...);
}

/// Shares the same object as a To, by `static_cast`. The form for an rvalue makes `pointer` null.
/// @warning As with `static_cast`, the object must be a To.
/// @{
template <class To, class From>
[[nodiscard]] SharedPtr<To> staticSharedCast(const SharedPtr<From>& pointer) noexcept {
    return SharedPtr<To>(pointer, static_cast<typename SharedPtr<To>::Element*>(pointer.get()));
}
template <class To, class From>
[[nodiscard]] SharedPtr<To> staticSharedCast(SharedPtr<From>&& pointer) noexcept {
    const auto object = static_cast<typename SharedPtr<To>::Element*>(pointer.get());
    return SharedPtr<To>(std::move(pointer), object);
}
/// @}

/// Shares the same object as a To, by `dynamic_cast`; null if it is none. The form for an rvalue makes `pointer` null
/// only if the object is a To. Needs RTTI, unless To is a base.
/// @{
template <class To, class From>
[[nodiscard]] SharedPtr<To> dynamicSharedCast(const SharedPtr<From>& pointer) noexcept {
    static_assert(VornPrivate::IS_DYNAMIC_CAST<typename SharedPtr<From>::Element, To>,
                  "dynamicSharedCast needs RTTI: compile without -fno-rtti, or use staticSharedCast");
    To* const object = VornPrivate::dynamicCast<To>(pointer.get());
    return object ? SharedPtr<To>(pointer, object) : SharedPtr<To>();
}
template <class To, class From>
[[nodiscard]] SharedPtr<To> dynamicSharedCast(SharedPtr<From>&& pointer) noexcept {
    static_assert(VornPrivate::IS_DYNAMIC_CAST<typename SharedPtr<From>::Element, To>,
                  "dynamicSharedCast needs RTTI: compile without -fno-rtti, or use staticSharedCast");
    To* const object = VornPrivate::dynamicCast<To>(pointer.get());
    return object ? SharedPtr<To>(std::move(pointer), object) : SharedPtr<To>();
}
/// @}

/// Shares the same object without its `const` or `volatile`, by `const_cast`. The form for an rvalue makes `pointer`
/// null.
/// @{
template <class To, class From>
[[nodiscard]] SharedPtr<To> constSharedCast(const SharedPtr<From>& pointer) noexcept {
    return SharedPtr<To>(pointer, const_cast<typename SharedPtr<To>::Element*>(pointer.get()));
}
template <class To, class From>
[[nodiscard]] SharedPtr<To> constSharedCast(SharedPtr<From>&& pointer) noexcept {
    const auto object = const_cast<typename SharedPtr<To>::Element*>(pointer.get());
    return SharedPtr<To>(std::move(pointer), object);
}
/// @}

/// Returns the control block of `pointer`, for bindings that count in it themselves; null if there is none.
template <class T>
RefCounter* sharedRecord(const SharedPtr<T>& pointer) {
    return pointer.pRefCounter;
}

} // namespace Vorn

// The comparisons, the hash and the output of pointers.
#include "Vorn/Private/SharedPtrOrder.h"
