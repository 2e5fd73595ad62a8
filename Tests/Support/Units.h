// Texts in the units of a buffer.
#pragma once

#include "Vorn/Types.h"

#include <string>
#include <string_view>
#include <vector>

/// A terminated text in bytes and in 16-bit units. Nothing stands behind the terminators, so that the sanitizers see
/// every read beyond. Bytes get the lower half of a code.
class Units {
public:
    explicit Units(std::string_view text) {
        for (const char c : text) append(static_cast<unsigned char>(c));
        terminate();
    }

    explicit Units(const std::vector<unsigned int>& codes) {
        for (const unsigned int code : codes) append(code);
        terminate();
    }

    unsigned int size() const { return static_cast<unsigned int>(m_bytes.size() - 1); }

    const unsigned char* bytes() const { return m_bytes.data(); }
    const Vorn::UTF16Char* units() const { return m_units.data(); }

    /// `bytes` or `units`.
    template <class CharType>
    const CharType* as() const {
        if constexpr (sizeof(CharType) == 1) {
            return bytes();
        } else {
            return units();
        }
    }

private:
    void append(unsigned int code) {
        m_bytes.push_back(static_cast<unsigned char>(code));
        m_units.push_back(static_cast<Vorn::UTF16Char>(code));
    }

    void terminate() {
        append(0);
        m_bytes.shrink_to_fit();
        m_units.shrink_to_fit();
    }

    std::vector<unsigned char> m_bytes;
    std::vector<Vorn::UTF16Char> m_units;
};

/// The first `size` units as a text, for units that are ASCII.
template <class CharType>
std::string narrow(const CharType* units, std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) text.push_back(static_cast<char>(units[i]));
    return text;
}
