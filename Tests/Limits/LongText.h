// Texts of billions of units that take little memory: one small file is mapped again and again.
#pragma once

#include "Vorn/Types.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace limits {

/// The lengths at which 32-bit numbers change their sign or wrap around.
constexpr std::uint64_t LARGEST_INT = 0x7FFFFFFF;
constexpr std::uint64_t HALF = 0x80000000;
constexpr std::uint64_t LONGEST = 0xFFFFFFFE; ///< the longest text
constexpr std::uint64_t TOO_LONG = 0xFFFFFFFF;

/// Why this process cannot run these tests; empty if it can.
std::string reasonToSkip();

/// Allocations by `new` since the program began.
std::size_t allocationCount();

/// `bytes` bytes in which a pattern of 1 to 4 or 6 bytes repeats, ending directly before a page that cannot be read. A
/// write copies its page.
class LongMemory {
public:
    enum Writes {
        PRIVATE, ///< a write is seen at its place only
        ALIASED  ///< a write is seen in each repetition of the file, so that gigabytes can be written into a few pages
    };

    LongMemory(std::string_view pattern, std::uint64_t bytes, Writes writes = PRIVATE);
    ~LongMemory();
    LongMemory(const LongMemory&) = delete;
    LongMemory& operator=(const LongMemory&) = delete;

    unsigned char* begin() const { return m_begin; }

private:
    unsigned char* m_mapping;
    std::size_t m_mappedBytes;
    unsigned char* m_begin;
};

/// A text in which a pattern repeats, with a zero unit behind it and nothing readable behind that.
template <class CharType>
class LongText {
public:
    LongText(std::basic_string_view<CharType> pattern, std::uint64_t length, bool terminated = true)
        : m_memory(bytesOf(pattern), (length + terminated) * sizeof(CharType)), m_length(length) {
        if (terminated) units()[length] = 0;
    }

    CharType* units() const { return reinterpret_cast<CharType*>(m_memory.begin()); }
    unsigned int length() const { return static_cast<unsigned int>(m_length); }

private:
    static std::string_view bytesOf(std::basic_string_view<CharType> pattern) {
        return {reinterpret_cast<const char*>(pattern.data()), pattern.size() * sizeof(CharType)};
    }

    LongMemory m_memory;
    std::uint64_t m_length;
};

using LongUTF16 = LongText<Vorn::UTF16Char>;

/// Skips the test, by name, where the process or the machine is too small for it.
class LimitTest : public testing::Test {
protected:
    void SetUp() override {
        const std::string reason = reasonToSkip();
        if (!reason.empty()) GTEST_SKIP() << reason;
    }
};

} // namespace limits
