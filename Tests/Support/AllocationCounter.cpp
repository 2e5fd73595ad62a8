#include "Support/AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

std::atomic<std::size_t> allocations{0};
std::atomic<std::size_t> liveAllocations{0};
std::atomic<std::size_t> lastSize{0};
std::atomic<std::size_t> failingAllocation{0};

void* allocate(std::size_t size) {
    if (failingAllocation != 0 && --failingAllocation == 0) throw std::bad_alloc();
    void* const block = std::malloc(size ? size : 1);
    if (!block) throw std::bad_alloc();
    std::memset(block, FRESH_BYTE, size);
    ++allocations;
    ++liveAllocations;
    lastSize = size;
    return block;
}

void release(void* block) noexcept {
    if (!block) return;
    --liveAllocations;
    std::free(block);
}

} // namespace

std::size_t allocationCount() { return allocations; }
std::size_t liveAllocationCount() { return liveAllocations; }
std::size_t lastAllocationSize() { return lastSize; }
void failAllocation(std::size_t n) { failingAllocation = n; }

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t) noexcept { release(block); }
