// PlainText: finds the end of plain ASCII, eight bytes at a time.
#pragma once

#include <cstdint>
#include <cstring>

namespace VornPrivate {

/// What a block of eight bytes is tested with. Subtracting `ones` borrows into the top bits of a zero unit, and `tops`
/// are the bits that no unit of 0x01 to 0x7F has.
template <class CharType>
struct PlainBlock;

template <>
struct PlainBlock<unsigned char> {
    static constexpr std::uint64_t ones = 0x0101010101010101;
    static constexpr std::uint64_t tops = 0x8080808080808080;
};

template <>
struct PlainBlock<Vorn::UTF16Char> {
    static constexpr std::uint64_t ones = 0x0001000100010001;
    static constexpr std::uint64_t tops = 0xFF80FF80FF80FF80;
};

/// Index from `i` on of the first unit that is not 0x01 to 0x7F, or `end`.
template <class CharType>
inline unsigned int findPlainEnd(const CharType* buffer, unsigned int i, unsigned int end) {
    constexpr unsigned int UNITS = sizeof(std::uint64_t) / sizeof(CharType);
    constexpr unsigned int WORDS = 4;
    using Block = PlainBlock<CharType>;
    while (end - i >= WORDS * UNITS) {
        std::uint64_t words[WORDS];
        std::memcpy(words, buffer + i, sizeof(words));
        std::uint64_t odd = 0;
        for (const std::uint64_t word : words) odd |= (word - Block::ones) | word;
        if (odd & Block::tops) break;
        i += WORDS * UNITS;
    }
    while (end - i >= UNITS) {
        std::uint64_t word;
        std::memcpy(&word, buffer + i, sizeof(word));
        if (((word - Block::ones) | word) & Block::tops) break;
        i += UNITS;
    }
    while (i < end && buffer[i] - 1u < 0x7F) ++i;
    return i;
}

/// The same for a text that ends at a zero unit. Nothing behind the first unit that is not plain is read.
template <class CharType>
inline unsigned int findPlainEnd(const CharType* buffer, unsigned int i) {
    while (buffer[i] - 1u < 0x7F) ++i;
    return i;
}

} // namespace VornPrivate
