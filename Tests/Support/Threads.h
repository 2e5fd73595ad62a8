// Threads that begin their work at the same time.
#pragma once

#include <atomic>
#include <thread>
#include <vector>

/// Calls `body(0)` to `body(count - 1)`, each in a thread of its own, and waits for all of them.
/// @warning Nothing else synchronises them: do not link a program of races with Support/AllocationCounter.cpp, whose
///     lock would order all threads.
template <class Body>
void inThreads(int count, Body&& body) {
    std::atomic<int> ready{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([&, i] {
            ready.fetch_add(1, std::memory_order_relaxed);
            while (ready.load(std::memory_order_relaxed) < count) std::this_thread::yield();
            body(i);
        });
    }
    for (std::thread& thread : threads) thread.join();
}
