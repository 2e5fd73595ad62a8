// The end of a process by `abort`, as death tests expect it.
#pragma once

#include <gtest/gtest.h>

#include <csignal>

/// For EXPECT_EXIT: the process was ended by `abort`. Windows has no signals and gives it the exit code 3.
inline auto aborted() {
#if defined(_WIN32)
    return ::testing::ExitedWithCode(3);
#else
    return ::testing::KilledBySignal(SIGABRT);
#endif
}
