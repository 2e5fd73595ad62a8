/// @file
/// RefCounterMutex: the lock of a control block.
///
/// It holds a `boost::mutex`, but keeps Boost's headers, which take longer to compile than the rest of this library,
/// out of the programs that use shared pointers. Works with `std::lock_guard` and `std::unique_lock`.
///
/// Cost: the size of a `boost::mutex` (40 bytes on 64-bit Linux). Each operation is one call.
#pragma once

#include "Vorn/Config.h"

#if !defined(_WIN32)
#include <pthread.h>
#endif

namespace Vorn {

/// A lock that is not recursive.
class VORN_API RefCounterMutex {
public:
    RefCounterMutex(); ///< Throws `boost::thread_resource_error` if the system refuses a lock.
    ~RefCounterMutex();

    RefCounterMutex(const RefCounterMutex&) = delete;
    RefCounterMutex& operator=(const RefCounterMutex&) = delete;

    void lock();     ///< Waits until no thread holds the lock, and acquires it.
    bool try_lock(); ///< Acquires the lock if no thread holds it; returns true if so.
    void unlock();   ///< Releases the lock, which this thread must hold.

private:
#if defined(_WIN32)
    struct Storage {
        long m_activeCount;
        void* m_event;
    };
#else
    using Storage = pthread_mutex_t;
#endif
    alignas(Storage) unsigned char m_storage[sizeof(Storage)]; // a boost::mutex
};

} // namespace Vorn
