// Frees what a call is documented to leak, so that millions of runs fit into memory and every other leak is reported.
#pragma once

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
#define VORN_FUZZ_RECORDS_ALLOCATIONS 1
#elif defined(__has_feature)
#define VORN_FUZZ_RECORDS_ALLOCATIONS __has_feature(address_sanitizer)
#else
#define VORN_FUZZ_RECORDS_ALLOCATIONS 0
#endif

#if VORN_FUZZ_RECORDS_ALLOCATIONS
#include "Support/Stream.h"

#if __has_include(<sanitizer/allocator_interface.h>)
#include <sanitizer/allocator_interface.h>
#else // g++ has the function in its runtime, but not this header
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*mallocHook)(const volatile void*, std::size_t),
                                                         void (*freeHook)(const volatile void*));
#endif

/// Records the blocks that are allocated between `start` and `stop`, and frees those that are left. Only one may exist
/// at a time.
class ReclaimedLeak {
public:
    static constexpr bool IS_RECORDING_POSSIBLE = true;

    ReclaimedLeak() {
        static const int hooks = __sanitizer_install_malloc_and_free_hooks(&allocated, &freed);
        require(hooks > 0, "the sanitizer refuses hooks for allocations");
        s_count = 0;
    }
    ReclaimedLeak(const ReclaimedLeak&) = delete;
    ReclaimedLeak& operator=(const ReclaimedLeak&) = delete;
    ~ReclaimedLeak() {
        stop();
        s_count = 0;
    }

    void start() { s_isRecording = true; }
    void stop() { s_isRecording = false; }

    /// Recorded blocks that are still allocated.
    std::size_t count() const { return s_count; }

    /// Passes each of these blocks to `release`. Nothing may use them any more.
    template <class Release>
    void freeBlocks(Release&& release) {
        stop();
        while (s_count > 0) release(s_blocks[s_count - 1]); // `freed` removes it
    }

private:
    static constexpr std::size_t CAPACITY = 256;

    static void allocated(const volatile void* block, std::size_t) {
        if (!s_isRecording) return;
        require(s_count < CAPACITY, "more blocks than one run can record");
        s_blocks[s_count++] = const_cast<void*>(block);
    }

    static void freed(const volatile void* block) {
        for (std::size_t i = s_count; i-- > 0;) {
            if (s_blocks[i] != block) continue;
            s_blocks[i] = s_blocks[--s_count];
            return;
        }
    }

    static inline bool s_isRecording = false;
    static inline std::size_t s_count = 0;
    static inline void* s_blocks[CAPACITY] = {};
};

#else

/// Without the address sanitizer the blocks leak. The replay of a small corpus can afford that.
class ReclaimedLeak {
public:
    static constexpr bool IS_RECORDING_POSSIBLE = false;

    ReclaimedLeak() {}
    ReclaimedLeak(const ReclaimedLeak&) = delete;
    ReclaimedLeak& operator=(const ReclaimedLeak&) = delete;
    ~ReclaimedLeak() {}

    void start() {}
    void stop() {}
    std::size_t count() const { return 0; }
    template <class Release>
    void freeBlocks(Release&&) {}
};

#endif
