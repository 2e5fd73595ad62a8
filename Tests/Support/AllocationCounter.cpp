#include "Support/AllocationCounter.h"

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>
#include <unordered_map>

// In a program that is linked with --wrap=malloc and --wrap=calloc, every call of the two in it arrives here, those of
// headers of other libraries included.
#ifdef VORN_WRAP_MALLOC
extern "C" void* __real_malloc(std::size_t size);
extern "C" void* __wrap_malloc(std::size_t size);
extern "C" void* __real_calloc(std::size_t count, std::size_t size);
extern "C" void* __wrap_calloc(std::size_t count, std::size_t size);
#else
static void* __real_malloc(std::size_t size) { return std::malloc(size); }
#endif

namespace {

std::atomic<std::size_t> allocations{0};
std::atomic<std::size_t> liveAllocations{0};
std::atomic<std::size_t> lastSize{0};
std::atomic<std::size_t> failingAllocation{0};
std::atomic<bool> failsFromThere{false};
std::atomic<std::size_t> failedAllocations{0};
std::atomic<const void*> lastArray{nullptr};

// The ledger must not count itself.
template <class T>
struct UncountedAllocator {
    using value_type = T;
    UncountedAllocator() = default;
    template <class Other>
    UncountedAllocator(const UncountedAllocator<Other>&) {}
    T* allocate(std::size_t n) { return static_cast<T*>(__real_malloc(n * sizeof(T))); }
    void deallocate(T* block, std::size_t) { std::free(block); }
    bool operator==(const UncountedAllocator&) const { return true; }
};

struct Block {
    std::size_t size;
    bool isArray;
};

using Ledger = std::unordered_map<std::uintptr_t, Block, std::hash<std::uintptr_t>, std::equal_to<std::uintptr_t>,
                                  UncountedAllocator<std::pair<const std::uintptr_t, Block>>>;

// An address that stood in the ledger as it is would keep its block from being a leak.
std::uintptr_t disguised(const void* block) { return ~reinterpret_cast<std::uintptr_t>(block); }

std::mutex ledgerMutex;

// Never destroyed: blocks are released until the very end of the program.
Ledger& ledger() {
    alignas(Ledger) static unsigned char storage[sizeof(Ledger)];
    static Ledger* const blocks = ::new (storage) Ledger;
    return *blocks;
}

bool mustFail() {
    if (failingAllocation == 0) return false;
    const bool isFailure = failsFromThere && failingAllocation == 1 ? true : --failingAllocation == 0;
    failedAllocations += isFailure;
    return isFailure;
}

void* allocate(std::size_t size, bool isArray) {
    if (mustFail()) throw std::bad_alloc();
    void* const block = __real_malloc(size ? size : 1);
    if (!block) throw std::bad_alloc();
#if !defined(VORN_TEST_UNDER_MEMCHECK) // memcheck reports the use of bytes that are never written: leave them so
    std::memset(block, FRESH_BYTE, size);
#endif
    const std::lock_guard<std::mutex> lock(ledgerMutex);
    ledger()[disguised(block)] = Block{size, isArray};
    ++allocations;
    ++liveAllocations;
    lastSize = size;
    return block;
}

void release(void* block, bool isArray) noexcept {
    if (!block) return;
    {
        const std::lock_guard<std::mutex> lock(ledgerMutex);
        const auto entry = ledger().find(disguised(block));
        if (entry == ledger().end() || entry->second.isArray != isArray) {
            std::fputs(entry == ledger().end() ? "delete of an address that new did not give\n"
                                               : "new and delete do not agree about arrays\n",
                       stderr);
            std::abort();
        }
        ledger().erase(entry);
    }
    --liveAllocations;
    if (isArray) lastArray = block;
    std::free(block);
}

} // namespace

#ifdef VORN_WRAP_MALLOC
extern "C" void* __wrap_malloc(std::size_t size) { return mustFail() ? nullptr : __real_malloc(size); }
extern "C" void* __wrap_calloc(std::size_t count, std::size_t size) {
    return mustFail() ? nullptr : __real_calloc(count, size);
}
#endif

std::size_t allocationCount() { return allocations; }
std::size_t liveAllocationCount() { return liveAllocations; }
std::size_t lastAllocationSize() { return lastSize; }
std::size_t failedAllocationCount() { return failedAllocations; }

void failAllocation(std::size_t n) {
    failsFromThere = false;
    failingAllocation = n;
}

void failAllocationsFrom(std::size_t n) {
    failsFromThere = true;
    failingAllocation = n;
}

std::size_t liveArraySize(const void* block) {
    const std::lock_guard<std::mutex> lock(ledgerMutex);
    const auto entry = ledger().find(disguised(block));
    return entry != ledger().end() && entry->second.isArray ? entry->second.size : 0;
}

const void* lastReleasedArray() { return lastArray; }

void* operator new(std::size_t size) { return allocate(size, false); }
void* operator new[](std::size_t size) { return allocate(size, true); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return allocate(size, false);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void operator delete(void* block) noexcept { release(block, false); }
void operator delete[](void* block) noexcept { release(block, true); }
void operator delete(void* block, std::size_t) noexcept { release(block, false); }
void operator delete[](void* block, std::size_t) noexcept { release(block, true); }
