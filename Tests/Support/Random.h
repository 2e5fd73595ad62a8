// Random numbers that are the same on every platform.
#pragma once

#include "Support/Effort.h" // repetitions

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
