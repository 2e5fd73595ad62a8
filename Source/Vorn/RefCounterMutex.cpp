#include "Vorn/SharedObjects/RefCounterMutex.h"

#include <boost/thread/mutex.hpp>

#include <new>

namespace Vorn {

namespace {

static_assert(sizeof(RefCounterMutex) == sizeof(boost::mutex), "the storage of a boost::mutex");
static_assert(alignof(RefCounterMutex) == alignof(boost::mutex), "the storage of a boost::mutex");

boost::mutex& mutexIn(unsigned char* storage) { return *std::launder(reinterpret_cast<boost::mutex*>(storage)); }

} // namespace

RefCounterMutex::RefCounterMutex() { new (m_storage) boost::mutex; }

RefCounterMutex::~RefCounterMutex() { mutexIn(m_storage).~mutex(); }

void RefCounterMutex::lock() { mutexIn(m_storage).lock(); }

bool RefCounterMutex::try_lock() { return mutexIn(m_storage).try_lock(); }

void RefCounterMutex::unlock() { mutexIn(m_storage).unlock(); }

} // namespace Vorn
