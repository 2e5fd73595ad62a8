// The input of a fuzz target as a stream of decisions, and the check that ends a run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

/// The bytes of one input. Behind its end every decision is 0.
class Stream {
public:
    Stream(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}

    bool ended() const { return m_size == 0; }

    /// The next byte.
    unsigned int next() {
        if (ended()) return 0;
        --m_size;
        return *m_data++;
    }

    /// A number below `end`, which is at most 256.
    unsigned int below(unsigned int end) { return next() % end; }

    /// A code unit that often belongs to a surrogate pair.
    unsigned int unit() {
        const unsigned int high = next();
        const unsigned int low = next();
        return high < 0x80 ? low : high < 0xA0 ? 0xD800 + low * 4 : high < 0xC0 ? 0xDC00 + low * 4 : high << 8 | low;
    }

    /// All bytes that are left, with `extra` zero units behind them. The block has exactly this size, so that the
    /// sanitizers report a read beyond it.
    std::vector<unsigned char> rest(std::size_t extra = 0) {
        std::vector<unsigned char> bytes(m_size + extra);
        for (std::size_t i = 0; !ended(); ++i) bytes[i] = static_cast<unsigned char>(next());
        return bytes;
    }

private:
    const std::uint8_t* m_data;
    std::size_t m_size;
};

/// Ends the program if `condition` is false; libFuzzer then stores the input.
inline void require(bool condition, const char* what) {
    if (condition) return;
    std::fprintf(stderr, "fuzz target: %s\n", what);
    std::abort();
}

/// Ends the program, with both texts, if they differ.
inline void requireText(const std::string& actual, const std::string& expected, const char* what) {
    if (actual == expected) return;
    std::fprintf(stderr, "actual:   %s\nexpected: %s\n", actual.c_str(), expected.c_str());
    require(false, what);
}
