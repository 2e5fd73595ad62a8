// Threads with small stacks.
#pragma once

#if defined(__linux__) || defined(_WIN32)
#define VORN_TEST_HAS_SMALL_STACKS

#include "Support/Sanitizers.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>

#if defined(_WIN32)
#include "Support/Windows.h"
#else
#include <pthread.h>
#endif

/// Bytes of a stack that a thread may have; sanitizers need more of it, and the thread sanitizer keeps its own data
/// there. On AArch64, whose pages can have 64 KiB, this is the smallest stack that there is.
#if VORN_TEST_HAS_SANITIZER
constexpr std::size_t SMALL_STACK = 1024 * 1024;
#elif defined(__aarch64__)
constexpr std::size_t SMALL_STACK = 128 * 1024;
#else
constexpr std::size_t SMALL_STACK = 64 * 1024;
#endif

/// Runs `body` in a thread with a stack of this size, or of the least size that the system allows.
inline void runWithStack(std::size_t size, std::function<void()> body) {
#if defined(_WIN32)
    const auto run = [](void* argument) -> DWORD {
        (*static_cast<std::function<void()>*>(argument))();
        return 0;
    };
    const HANDLE thread = CreateThread(nullptr, size, run, &body, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    ASSERT_NE(thread, nullptr);
    ASSERT_EQ(WaitForSingleObject(thread, WAITS_FOREVER), WAIT_OBJECT_0);
    CloseHandle(thread);
#else
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, size), 0);
    pthread_t thread;
    ASSERT_EQ(pthread_create(
                  &thread, &attributes,
                  [](void* argument) -> void* {
                      (*static_cast<std::function<void()>*>(argument))();
                      return nullptr;
                  },
                  &body),
              0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
#endif
}

/// Runs `body` when no more than `left` bytes are left of the stack, which begins at `lowest`.
[[gnu::noinline]] inline void runNearTheEnd(std::uintptr_t lowest, std::size_t left,
                                            const std::function<void()>& body) {
    volatile char used[512];
    used[0] = 1;
    if (reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)) - lowest > left) {
        runNearTheEnd(lowest, left, body);
    } else {
        body();
    }
    used[1] = used[0];
}

/// Runs `body` when a fifth of the stack of this thread is left.
inline void runNearTheEndOfTheStack(const std::function<void()>& body) {
#if defined(_WIN32)
    ULONG_PTR lowest, end;
    GetCurrentThreadStackLimits(&lowest, &end);
    runNearTheEnd(lowest, (end - lowest) / 5, body);
#else
    pthread_attr_t attributes;
    void* lowest = nullptr;
    std::size_t size = 0;
    ASSERT_EQ(pthread_getattr_np(pthread_self(), &attributes), 0);
    ASSERT_EQ(pthread_attr_getstack(&attributes, &lowest, &size), 0);
    pthread_attr_destroy(&attributes);
    runNearTheEnd(reinterpret_cast<std::uintptr_t>(lowest), size / 5, body);
#endif
}

#endif
