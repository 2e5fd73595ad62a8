// Floats of every kind for random tests, comparison by bits, and tests of uninitialised construction.
#pragma once

#include "Support/Effort.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <iomanip>
#include <limits>
#include <new>
#include <random>
#include <sstream>
#include <string>
#include <type_traits>

inline constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
inline constexpr float INFINITE = std::numeric_limits<float>::infinity();
inline constexpr float DENORMAL = std::numeric_limits<float>::denorm_min();
inline constexpr float LARGEST = std::numeric_limits<float>::max();

/// The floats of a record.
template <class Record>
std::array<float, sizeof(Record) / sizeof(float)> floatsOf(const Record& record) {
    return std::bit_cast<std::array<float, sizeof(Record) / sizeof(float)>>(record);
}

/// Whether two floats have the same bits. A NaN is a NaN: compilers may differ in which operand's they pass on.
inline bool sameBits(float a, float b) {
    return (a != a && b != b) || std::bit_cast<unsigned int>(a) == std::bit_cast<unsigned int>(b);
}

/// Compares records of floats bit by bit.
template <class Actual, class Expected>
testing::AssertionResult same(const Actual& actual, const Expected& expected) {
    const auto a = floatsOf(actual);
    const auto e = floatsOf(expected);
    static_assert(a.size() == e.size(), "records of the same size");
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (sameBits(a[i], e[i])) continue;
        return testing::AssertionFailure() << "float " << i << " is " << std::setprecision(9) << a[i] << " (bits "
                                           << std::hex << std::bit_cast<unsigned int>(a[i]) << "), expected " << e[i]
                                           << " (bits " << std::bit_cast<unsigned int>(e[i]) << ")";
    }
    return testing::AssertionSuccess();
}

/// Prints the floats of a record with their bits.
template <class Record>
std::string describe(const Record& record) {
    std::ostringstream text;
    for (const float value : floatsOf(record)) {
        text << std::setprecision(9) << value << " [" << std::hex << std::bit_cast<unsigned int>(value) << std::dec
             << "] ";
    }
    return text.str();
}

/// Ordinary, huge, tiny, denormal, infinite, NaN and signed zero values, often equal to one of the latest.
class RandomFloats {
public:
    explicit RandomFloats(unsigned int seed) : m_engine(seed) {}

    unsigned int below(unsigned int end) { return static_cast<unsigned int>(m_engine() % end); }

    float next() {
        const float value = make();
        m_latest[m_count++ % m_latest.size()] = value;
        return value;
    }

    template <class Record>
    Record record() {
        std::array<float, sizeof(Record) / sizeof(float)> values;
        for (float& value : values) value = next();
        return std::bit_cast<Record>(values);
    }

private:
    float make() {
        static constexpr float SPECIAL[] = {0.0f,    -0.0f,    1.0f,         -1.0f,          0.5f,
                                            2.0f,    INFINITE, -INFINITE,    DENORMAL,       -DENORMAL,
                                            LARGEST, -LARGEST, NOT_A_NUMBER, 1.17549435e-38f};
        switch (below(16)) {
        case 0: return std::bit_cast<float>(static_cast<unsigned int>(m_engine()));
        case 1: return SPECIAL[below(std::size(SPECIAL))];
        case 2: return m_latest[below(static_cast<unsigned int>(m_latest.size()))];
        case 3: return scaled(-149, 23); // denormal
        case 4: return scaled(-126, 26); // tiny
        case 5: return scaled(64, 63);   // huge
        case 6: return scaled(-8, 16);
        case 7:
        case 8: return static_cast<float>(static_cast<int>(below(41)) - 20);
        case 9: return static_cast<float>(static_cast<int>(below(4001)) - 2000) / 4.0f;
        default: return static_cast<float>(static_cast<int>(below(2000001)) - 1000000) / 1013.0f;
        }
    }

    // A random significand of either sign with an exponent from `lowest` on.
    float scaled(int lowest, unsigned int count) {
        const float significand = 1.0f + static_cast<float>(below(1u << 23)) / static_cast<float>(1u << 23);
        const float sign = below(2) == 0 ? 1.0f : -1.0f;
        return sign * std::ldexp(significand, lowest + static_cast<int>(below(count)));
    }

    std::mt19937 m_engine;
    std::array<float, 6> m_latest{};
    std::size_t m_count = 0;
};

/// Expects that neither `Record` nor `Record()` writes a byte of the storage that a new object gets.
template <class Record>
void expectUnwrittenByDefault() {
    alignas(Record) unsigned char storage[sizeof(Record)];
    const auto unwritten = [&] {
        asm volatile("" ::"r"(storage) : "memory"); // the compiler must not see that these reads are undefined
        for (const unsigned char byte : storage) {
            if (byte != 0xA5) return false;
        }
        return true;
    };
    const auto fill = [&] {
        std::memset(storage, 0xA5, sizeof storage);
        asm volatile("" ::"r"(storage) : "memory");
    };
    fill();
    new (storage) Record;
    EXPECT_TRUE(unwritten());
    fill();
    new (storage) Record();
    EXPECT_TRUE(unwritten());
}
