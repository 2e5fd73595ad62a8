/// @file
/// DelegatePOD, DelegateBase: a callable with its type erased.
///
/// The data of a delegate are five words: two opaque pointers, a function that calls the target with them, a function
/// that counts references to the second one, and the type of the binding. DelegateBase owns one reference to the second
/// pointer, the context. Programs use Delegate, which adds a signature and creates the bindings.
///
/// Cost: no allocation; a call is one indirect call.
///
/// Failures: no operation here allocates.
///
/// Threads: two threads must not use one delegate at the same time while one of them changes it. The counts of a target
/// are atomic, as those of any RefCounter.
#pragma once

#include "Vorn/Config.h"

#include <typeinfo>

namespace Vorn {

/// What a counting function does. Both functions of this library treat every value except the first as a release.
enum DelegateContextAddRef : int {
    DELEGATE_ADD_REF = 1,     ///< add one reference
    DELEGATE_RELEASE_REF = -1 ///< release one reference
};

/// Calls a target. Delegates with arguments or a result store a function of another type, cast to this one.
typedef void (*DelegateCaller)(void* object, void* context);

/// Adds or releases one reference to a context.
typedef void (*DelegateContextFunction)(void* context, DelegateContextAddRef op);

/// The data of a delegate. It owns nothing: code that stores one calls `contextAddRef`.
struct DelegatePOD {
    void* object;                          ///< first argument of `caller`; part of the identity
    void* context;                         ///< second argument of `caller`, and what `contextAddRef` counts
    DelegateCaller caller;                 ///< null in an empty delegate
    DelegateContextFunction contextAddRef; ///< null if the context is not counted
    const std::type_info* typeInfo;        ///< type of the binding; part of the identity; null in an empty delegate
};

static_assert(sizeof(void*) != 4 || sizeof(DelegatePOD) == 20, "five words");

/// Returns true if both have the same `object` and the same type of binding. Ignores `context`, `caller` and
/// `contextAddRef`.
/// @warning Returns false for empty delegates, also if both are the same one.
inline bool sameDelegate(const DelegatePOD& a, const DelegatePOD& b) {
    if (a.object != b.object || !a.typeInfo || !b.typeInfo) return false;
    return a.typeInfo == b.typeInfo || *a.typeInfo == *b.typeInfo; // one type may have several objects across modules
}

/// The data of a delegate of any signature, with one reference to its context.
class VORN_API DelegateBase {
public:
    const DelegatePOD& getPOD() const { return m_pod; } ///< Returns the data, which this delegate owns.
    bool isNull() const { return !m_pod.caller; }       ///< Returns true if there is nothing to call.
    bool isNotNull() const { return m_pod.caller; }     ///< Returns true if there is something to call.
    operator bool() const { return m_pod.caller; }      ///< The same as `isNotNull`.

protected:
    DelegateBase() : m_pod() {}

    /// Copies the data and adds one reference.
    DelegateBase(const DelegateBase& other) : DelegateBase(other.m_pod) {}
    explicit DelegateBase(const DelegatePOD& pod);

    /// Copies the data, but counts in *reverse*: adds a reference to the outgoing context and releases one of the
    /// incoming context. Does nothing if `other` is the same delegate.
    /// @warning With counted targets, the incoming one is released twice and the outgoing one is leaked. Call
    ///     `replaceRecord` instead.
    DelegateBase& operator=(const DelegateBase& other);

    /// Releases the reference.
    virtual ~DelegateBase();

    /// Copies `pod`, adds a reference to its context and releases the reference that was held.
    void replaceRecord(const DelegatePOD& pod);

    DelegatePOD m_pod; ///< holds one reference to its context
};

/// Returns true for the same binding of the same object; see `sameDelegate`. An empty delegate is *not* equal to
/// itself.
inline bool operator==(const DelegateBase& a, const DelegateBase& b) { return sameDelegate(a.getPOD(), b.getPOD()); }
inline bool operator!=(const DelegateBase& a, const DelegateBase& b) { return !(a == b); }

/// Adds or releases one use of a `RefCounter`, for a delegate that keeps its target alive. Adding checks nothing; a
/// release is that of the free function `releaseUseCount`.
///
/// Throws `Exception<2>`: "counter && (counter)->m_useCount > 0 : can't release when use count == 0".
VORN_API void delegateAddUseRef(void* context, DelegateContextAddRef op);

/// Adds or releases one weak count of a `RefCounter`, for a delegate that does not keep its target alive. Adding checks
/// nothing; a release is that of the free function `releaseWeakCount`, and does nothing if `context` is null.
///
/// Throws `Exception<2>`: "counter->m_weakCount : can't release when weak count == 0".
VORN_API void delegateAddWeakRef(void* context, DelegateContextAddRef op);

} // namespace Vorn
