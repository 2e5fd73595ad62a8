// Excludes allocations from leak detection.
#pragma once

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VORN_TEST_LEAKS_ARE_REPORTED
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define VORN_TEST_LEAKS_ARE_REPORTED
#endif

#if defined(VORN_TEST_LEAKS_ARE_REPORTED)
#include <sanitizer/lsan_interface.h>
#endif

/// During its lifetime the leak sanitizer ignores new blocks. Limit it to the call that leaks.
class ExpectedLeak {
public:
#if defined(VORN_TEST_LEAKS_ARE_REPORTED)
    ExpectedLeak() { __lsan_disable(); }
    ~ExpectedLeak() { __lsan_enable(); }
#else
    ExpectedLeak() {}
    ~ExpectedLeak() {}
#endif
    ExpectedLeak(const ExpectedLeak&) = delete;
    ExpectedLeak& operator=(const ExpectedLeak&) = delete;
};
