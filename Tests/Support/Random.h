// Random numbers that are the same on every platform.
#pragma once

#include <random>

class Random {
public:
    explicit Random(unsigned int seed) : m_engine(seed) {}

    unsigned int operator()() { return static_cast<unsigned int>(m_engine()); }
    unsigned int below(unsigned int limit) { return (*this)() % limit; }
    unsigned long long bits64() {
        const unsigned long long high = (*this)();
        return (high << 32) | (*this)();
    }

private:
    std::mt19937 m_engine;
};

/// `full` repetitions in optimised builds, fewer where checks make each one slow.
constexpr int repetitions(int full) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || !defined(__OPTIMIZE__)
    return full / 50;
#else
    return full;
#endif
}
