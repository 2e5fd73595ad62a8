// Counts what the program takes from the heap by `new`, in every module of it, and fails allocations on request. A
// delete of an address that new did not give, or in the form for arrays where new was not, ends the program.
// Support/AllocationCounter.cpp replaces the global operators; link it into the test program that wants the count.
#pragma once

#include <cstddef>

/// Every byte of a block fresh from `new`, so that a test can tell what was never written.
inline constexpr unsigned char FRESH_BYTE = 0xA5;

/// Allocations by `new` since the program began.
std::size_t allocationCount();

/// Blocks that came from `new` and have not been given back.
std::size_t liveAllocationCount();

/// Bytes that the latest allocation asked for.
std::size_t lastAllocationSize();

/// Lets the n-th allocation from now on (1 for the next one) throw `std::bad_alloc`; 0 for none. In a program with
/// WRAP_MALLOC (see Tests/CMakeLists.txt), calls of `malloc` and `calloc` count too, and the n-th returns null.
void failAllocation(std::size_t n);

/// The same for the n-th allocation and all that follow it, until `failAllocation` is called.
void failAllocationsFrom(std::size_t n);

/// Allocations that failed on request since the program began.
std::size_t failedAllocationCount();

/// Bytes of the live block that array new gave at this very address; 0 if there is none.
std::size_t liveArraySize(const void* block);

/// The address that array delete released last.
const void* lastReleasedArray();

/// Allocations by `new` while `run` runs.
template <class Callable>
std::size_t allocationsDuring(Callable&& run) {
    const std::size_t before = allocationCount();
    run();
    return allocationCount() - before;
}
