/// @file
/// Destroys counted objects in a recursion that never overflows the stack. Private.
///
/// The destructor of an object may release the last reference to the next object, whose destructor runs inside it, and
/// so on. The recursion keeps the specified order of calls, and it is used while the thread has stack left. Near the
/// end of the stack a release only notes the object, and the first release that ran with little stack left destroys
/// what was noted, in a loop:
///
///     highest address of the stack
///        ...                      each object is destroyed inside the release of its last reference
///     recursionEnd                the first release below this address becomes the draining release
///        ...                      as above, so that small structures are still destroyed at once
///     deferralStart               a release below this address appends the object to the queue and returns, and so do
///        ...                      the later releases of the destructors that are running, wherever they run
///     lowest address of the stack
///
/// Destructors begin in the order of the recursion: an object, then what it releases, in the order of release, then its
/// siblings. A deferred destructor begins after the destructor that released the object has ended. A queue that gets no
/// memory defers nothing: the object is destroyed at once, in the recursion.
#pragma once

#include "Vorn/SharedObjects/RefCounter.h"

#include <new>

namespace VornPrivate {

/// Frees the storage of a control block. Only the destructor of its lock runs.
inline void destroyRefCounter(Vorn::RefCounter* counter) {
    counter->m_mutex.~RefCounterMutex();
    ::operator delete(counter);
}

/// Calls `deleter(object)`, then frees `counter` unless it is null. With little stack left, both are done by an outer
/// call of the same thread, after this one has returned. An exception that `deleter` throws then ends the program.
void destroyObject(Vorn::RefCounter::Deleter deleter, void* object, Vorn::RefCounter* counter);

} // namespace VornPrivate
