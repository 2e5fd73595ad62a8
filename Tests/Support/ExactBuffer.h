// Code units in a heap block that ends with the last of them, so that the address sanitizer sees any step beyond.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

template <class Unit>
class ExactBuffer {
public:
    /// Copies the units. `shift` units precede them, to try another alignment.
    explicit ExactBuffer(const std::vector<Unit>& units, std::size_t shift = 0)
        : m_block(new Unit[shift + units.size()]), m_shift(shift) {
        std::fill_n(m_block.get(), shift, Unit(0x3F));
        std::copy(units.begin(), units.end(), m_block.get() + shift);
    }

    Unit* data() const { return m_block.get() + m_shift; }

private:
    std::unique_ptr<Unit[]> m_block;
    std::size_t m_shift;
};
