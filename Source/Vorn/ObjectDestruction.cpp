#include "ObjectDestruction.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <new>

#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#if !defined(_WIN32_WINNT) || _WIN32_WINNT < 0x0602 // the first version with GetCurrentThreadStackLimits
#undef _WIN32_WINNT
#define _WIN32_WINNT 0x0602
#endif
#include <windows.h> // GetCurrentThreadStackLimits
#elif defined(__linux__)
#include <pthread.h> // pthread_getattr_np
#endif

namespace VornPrivate {

namespace {

using Vorn::RefCounter;

void destroyNow(RefCounter::Deleter deleter, void* object, RefCounter* counter) {
    deleter(object);
    if (counter) destroyRefCounter(counter);
}

/// Objects whose destruction is deferred, in the order in which a recursion would destroy them.
class DestructionQueue {
public:
    DestructionQueue() {
        for (Entry& entry : m_pool) recycle(&entry);
    }
    DestructionQueue(const DestructionQueue&) = delete;
    DestructionQueue& operator=(const DestructionQueue&) = delete;
    ~DestructionQueue() {
        while (m_unused) {
            Entry* const entry = m_unused;
            m_unused = entry->next;
            if (!isPooled(entry)) delete entry;
        }
    }

    /// Appends an object to those that the running destructor has released; false if no memory is left.
    bool append(RefCounter::Deleter deleter, void* object, RefCounter* counter) {
        Entry* entry = m_unused;
        if (entry) {
            m_unused = entry->next;
        } else {
            try {
                entry = new Entry;
            } catch (const std::bad_alloc&) {
                return false;
            }
        }
        *entry = {nullptr, deleter, object, counter};
        *m_releasedEnd = entry;
        m_releasedEnd = &entry->next;
        return true;
    }

    /// True if the running destructor has released an object whose destruction is deferred.
    bool hasReleased() const { return m_released; }

    /// Destroys the next object; false if there is none.
    bool destroyNext() {
        // What the last destructor has released comes before its siblings.
        *m_releasedEnd = m_next;
        m_next = m_released;
        m_released = nullptr;
        m_releasedEnd = &m_released;
        if (!m_next) return false;
        const Entry entry = *m_next;
        recycle(m_next);
        m_next = entry.next;
        destroyNow(entry.deleter, entry.object, entry.counter);
        return true;
    }

private:
    struct Entry {
        Entry* next;
        RefCounter::Deleter deleter;
        void* object;
        RefCounter* counter; // null if the control block is not to be freed
    };

    bool isPooled(const Entry* entry) const {
        return std::any_of(std::begin(m_pool), std::end(m_pool), [entry](const Entry& p) { return &p == entry; });
    }

    void recycle(Entry* entry) {
        entry->next = m_unused;
        m_unused = entry;
    }

    Entry m_pool[16]; // enough for narrow structures, so that destroying them allocates nothing
    Entry* m_unused = nullptr;
    Entry* m_next = nullptr;
    Entry* m_released = nullptr;
    Entry** m_releasedEnd = &m_released;
};

/// Addresses of a stack. Stacks grow towards lower addresses on all platforms of this library.
struct StackBounds {
    std::uintptr_t lowest;
    std::uintptr_t end; // first address above the stack

    bool contains(std::uintptr_t address) const { return address >= lowest && address < end; }
};

/// Assumed to be left of a stack whose bounds cannot be found.
constexpr std::uintptr_t ASSUMED_SIZE = 32 * 1024;

constexpr std::uintptr_t LARGEST_RESERVE = 256 * 1024;

/// What a thread knows about its stack. All of it is constant-initialised: access needs no guard.
struct DestructionState {
    std::uintptr_t recursionEnd = UINTPTR_MAX; // compared first; the highest address until the first release
    std::uintptr_t deferralStart = 0;
    StackBounds stack = {0, 0};
    bool isMeasured = false;
    DestructionQueue* queue = nullptr; // of the draining release, null if none runs
};

// Each destruction reads it, so it is found at a fixed distance from the thread pointer instead of by a call. The C
// library keeps space for a few such variables of modules that are loaded later.
#if defined(__GLIBC__)
[[gnu::tls_model("initial-exec")]]
#endif
thread_local constinit DestructionState state;

std::uintptr_t stackPosition() { return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)); }

bool findStackBounds(StackBounds& bounds) {
#if defined(_WIN32)
    ULONG_PTR lowest, end;
    GetCurrentThreadStackLimits(&lowest, &end);
    bounds = {lowest, end};
    return true;
#elif defined(__linux__)
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0) return false;
    void* lowest = nullptr;
    std::size_t size = 0;
    const bool isFound = pthread_attr_getstack(&attributes, &lowest, &size) == 0;
    pthread_attr_destroy(&attributes);
    if (!isFound) return false;
    bounds.lowest = reinterpret_cast<std::uintptr_t>(lowest);
    bounds.end = bounds.lowest + size;
    return true;
#else
    static_cast<void>(bounds);
    return false;
#endif
}

/// Finds the bounds of the thread's stack, at its first release. A quarter of the stack is kept from recursion, and
/// half of that from everything but the program's destructors. If the bounds cannot be found, as when memory has ended,
/// they are assumed until a release reaches them, which tries again.
void measureStack(std::uintptr_t position) {
    state.isMeasured = findStackBounds(state.stack);
    if (!state.isMeasured) {
        if (state.stack.end != 0) return; // assumed before
        state.stack = {position - ASSUMED_SIZE, UINTPTR_MAX};
    }
    const std::uintptr_t size = state.isMeasured ? state.stack.end - state.stack.lowest : ASSUMED_SIZE;
    const std::uintptr_t reserve = std::min(size / 4, LARGEST_RESERVE);
    state.recursionEnd = state.stack.lowest + reserve;
    state.deferralStart = state.stack.lowest + reserve / 2;
}

/// Makes its queue that of the thread and destroys what was deferred when it goes out of scope.
class DrainScope {
public:
    DrainScope() { state.queue = &m_queue; }
    DrainScope(const DrainScope&) = delete;
    DrainScope& operator=(const DrainScope&) = delete;
    ~DrainScope() {
        while (m_queue.destroyNext()) {
        }
        state.queue = nullptr;
    }

private:
    DestructionQueue m_queue;
};

[[gnu::noinline]] void destroyAndDrain(RefCounter::Deleter deleter, void* object, RefCounter* counter) {
    const DrainScope scope;
    destroyNow(deleter, object, counter);
}

[[gnu::noinline]] void destroyWithLittleStack(RefCounter::Deleter deleter, void* object, RefCounter* counter) {
    const std::uintptr_t position = stackPosition();
    if (!state.isMeasured) measureStack(position);
    if (position <= state.recursionEnd && state.stack.contains(position)) { // not the stack of a coroutine
        if (!state.queue) return destroyAndDrain(deleter, object, counter);
        // What is released after a deferred object must not overtake it.
        const bool isDeferred = position <= state.deferralStart || state.queue->hasReleased();
        if (isDeferred && state.queue->append(deleter, object, counter)) return;
    }
    destroyNow(deleter, object, counter);
}

} // namespace

void destroyObject(RefCounter::Deleter deleter, void* object, RefCounter* counter) {
    if (stackPosition() > state.recursionEnd) {
        destroyNow(deleter, object, counter);
    } else {
        destroyWithLittleStack(deleter, object, counter);
    }
}

} // namespace VornPrivate
