// Expectations on printing functions and the memory around their buffers.
#pragma once

#include "Support/Texts.h"

#include <gtest/gtest.h>

#include <string>

/// The outcome of printing into a buffer of `capacity` units. The units around it must not change.
template <class CharType>
class Printed {
public:
    template <class Callable>
    Printed(unsigned int capacity, Callable&& run) {
        for (CharType& unit : m_units) unit = UNTOUCHED;
        m_result = run(m_units + GUARD, capacity);
        for (unsigned int i = 0; i < GUARD; ++i) EXPECT_EQ(m_units[i], UNTOUCHED);
        for (unsigned int i = GUARD + capacity; i < SIZE; ++i) EXPECT_EQ(m_units[i], UNTOUCHED);
    }

    unsigned int result() const { return m_result; }
    const CharType* units() const { return m_units + GUARD; }
    std::string text() const { return narrow(units(), m_result); }

    bool isUntouched() const {
        for (const CharType unit : m_units) {
            if (unit != UNTOUCHED) return false;
        }
        return true;
    }

    static constexpr CharType UNTOUCHED = static_cast<CharType>(0xEEEE);

private:
    static constexpr unsigned int GUARD = 12;
    static constexpr unsigned int SIZE = 72;
    CharType m_units[SIZE];
    unsigned int m_result;
};

/// Expects `text` in buffers of its size and larger ones, and no change of smaller ones.
template <class CharType, class Callable>
void expectPrinted(const std::basic_string<CharType>& text, Callable&& run) {
    const unsigned int size = static_cast<unsigned int>(text.size());
    for (const unsigned int capacity : {size, size + 1, size + 20}) {
        const Printed<CharType> printed(capacity, run);
        EXPECT_EQ(printed.result(), size);
        EXPECT_TRUE(std::basic_string<CharType>(printed.units(), size) == text) << printed.text();
        EXPECT_EQ(printed.units()[size], Printed<CharType>::UNTOUCHED) << "no terminator is written";
    }
    for (unsigned int capacity = 0; capacity < size; ++capacity) {
        const Printed<CharType> printed(capacity, run);
        EXPECT_EQ(printed.result(), size);
        EXPECT_TRUE(printed.isUntouched()) << printed.text() << " in " << capacity;
    }
}
