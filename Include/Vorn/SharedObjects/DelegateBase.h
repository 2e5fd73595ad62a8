// DelegatePOD, DelegateBase: a callable with its type erased.
//
// A delegate is a plain record of five words: two opaque pointers, a function that calls them, a function that counts
// the second one, and the type of the binding. DelegateBase owns one reference to what its record points at. Programs
// take Delegate, which adds a signature and makes the bindings.
//
// Cost: no allocation; a call is one indirect call.
//
// Threads: none of its own. The counts of a target are atomic as those of any RefCounter.
#pragma once

#include "Vorn/Config.h"

#include <typeinfo>

namespace Vorn {

/// What a counting function is to do. Both functions of this library take every value but the first for a release.
enum DelegateContextAddRef : int {
    DELEGATE_ADD_REF = 1,     ///< add one reference
    DELEGATE_RELEASE_REF = -1 ///< release one reference
};

/// Calls a target. Delegates with arguments or a result keep a function of their own type in it, cast to this one.
typedef void (*DelegateCaller)(void* object, void* context);

/// Adds or releases one reference to a context.
typedef void (*DelegateContextFunction)(void* context, DelegateContextAddRef op);

/// The record of a delegate. It owns nothing: whoever stores one calls `contextAddRef`.
struct DelegatePOD {
    void* object;                          // first argument of caller; part of the identity
    void* context;                         // second argument of caller; what contextAddRef counts; a RefCounter or null
    DelegateCaller caller;                 // null in an empty delegate
    DelegateContextFunction contextAddRef; // null if the context is not counted
    const std::type_info* typeInfo;        // type of the binding, part of the identity; null in an empty delegate
};

static_assert(sizeof(void*) != 4 || sizeof(DelegatePOD) == 20, "five words");

/// True if both records have the same `object` and the same type of binding. `context`, `caller` and `contextAddRef`
/// play no part.
/// @warning Empty delegates are never the same, not even one and itself.
inline bool sameDelegate(const DelegatePOD& a, const DelegatePOD& b) {
    if (a.object != b.object || !a.typeInfo || !b.typeInfo) return false;
    return a.typeInfo == b.typeInfo || *a.typeInfo == *b.typeInfo; // one type may have several objects across modules
}

/// Owner of a delegate's record, of any signature.
class VORN_API DelegateBase {
public:
    const DelegatePOD& getPOD() const { return m_pod; } ///< the record; it stays owned by this delegate
    bool isNull() const { return !m_pod.caller; }       ///< true if there is nothing to call
    bool isNotNull() const { return m_pod.caller; }     ///< true if there is something to call
    operator bool() const { return m_pod.caller; }      ///< the same as `isNotNull`

protected:
    DelegateBase() : m_pod() {}

    /// Copies the record and adds one reference.
    DelegateBase(const DelegateBase& other) : DelegateBase(other.m_pod) {}
    explicit DelegateBase(const DelegatePOD& pod);

    /// Counts in reverse: adds a reference to the outgoing context and releases one of the incoming. Does nothing for
    /// the same delegate.
    /// @warning The incoming target loses a reference that this delegate will release again, the outgoing one is never
    ///     let go. With counted targets take `replaceRecord`.
    DelegateBase& operator=(const DelegateBase& other);

    /// Releases the reference.
    virtual ~DelegateBase();

    /// Takes over `pod`, adds a reference to its context and releases the one that was held.
    void replaceRecord(const DelegatePOD& pod);

    DelegatePOD m_pod; // holds one reference to its context
};

/// True for the same binding of the same object; see `sameDelegate`. An empty delegate is not equal to itself.
inline bool operator==(const DelegateBase& a, const DelegateBase& b) { return sameDelegate(a.getPOD(), b.getPOD()); }
inline bool operator!=(const DelegateBase& a, const DelegateBase& b) { return !(a == b); }

/// Counting function of a context that is a `RefCounter` and keeps its object alive. Adding checks nothing; releasing
/// does as the free `releaseUseCount`.
///
/// Raises `Exception<2>`, "counter && (counter)->m_useCount > 0 : can't release when use count == 0".
VORN_API void delegateAddUseRef(void* context, DelegateContextAddRef op);

/// Counting function of a context that is a `RefCounter` and keeps only the record alive. Adding checks nothing;
/// releasing does as the free `releaseWeakCount`, and nothing on null.
///
/// Raises `Exception<2>`, "counter->m_weakCount : can't release when weak count == 0".
VORN_API void delegateAddWeakRef(void* context, DelegateContextAddRef op);

} // namespace Vorn
