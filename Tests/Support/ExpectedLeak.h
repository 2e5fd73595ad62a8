// Excludes allocations from leak detection.
#pragma once

#include "Support/Sanitizers.h"

#if VORN_TEST_HAS_ASAN
#include <sanitizer/lsan_interface.h>
#endif

/// During its lifetime the leak sanitizer ignores new blocks. Limit it to the call that leaks.
class ExpectedLeak {
public:
#if VORN_TEST_HAS_ASAN
    ExpectedLeak() { __lsan_disable(); }
    ~ExpectedLeak() { __lsan_enable(); }
#else
    ExpectedLeak() {}
    ~ExpectedLeak() {}
#endif
    ExpectedLeak(const ExpectedLeak&) = delete;
    ExpectedLeak& operator=(const ExpectedLeak&) = delete;
};
