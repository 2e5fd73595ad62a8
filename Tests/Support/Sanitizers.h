// Which sanitizers this program is built with, of both compilers.
#pragma once

#if defined(__SANITIZE_ADDRESS__)
#define VORN_TEST_HAS_ASAN 1
#elif defined(__has_feature)
#define VORN_TEST_HAS_ASAN __has_feature(address_sanitizer)
#else
#define VORN_TEST_HAS_ASAN 0
#endif

#if defined(__SANITIZE_THREAD__)
#define VORN_TEST_HAS_TSAN 1
#elif defined(__has_feature)
#define VORN_TEST_HAS_TSAN __has_feature(thread_sanitizer)
#else
#define VORN_TEST_HAS_TSAN 0
#endif

#if defined(__has_feature)
#define VORN_TEST_HAS_MSAN __has_feature(memory_sanitizer)
#else
#define VORN_TEST_HAS_MSAN 0
#endif

#define VORN_TEST_HAS_SANITIZER (VORN_TEST_HAS_ASAN || VORN_TEST_HAS_TSAN || VORN_TEST_HAS_MSAN)
