// Texts for tests: lists of code points and their encodings, units with nothing behind them, strings over them.
#pragma once

#include "Reference/SampleTexts.h"
#include "Vorn/String/String.h"
#include "Vorn/Types.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

using Codes = reference::Codes;
using UTF16Text = std::basic_string<Vorn::UTF16Char>;

using reference::appendUTF8;
using reference::NPOS;

/// The encoding that is not `CharType`'s.
template <class CharType>
using OtherEncoding = std::conditional_t<sizeof(CharType) == 1, Vorn::UTF16Char, unsigned char>;

/// UTF-8 by the plain rules of Unicode; U+0000 becomes 0xC0 0x80.
inline std::string utf8Of(const Codes& codes) {
    const reference::Bytes bytes = reference::toUTF8(codes);
    return std::string(bytes.begin(), bytes.end());
}

inline UTF16Text utf16Of(const Codes& codes) {
    const reference::Units units = reference::toUTF16(codes);
    return UTF16Text(units.begin(), units.end());
}

inline const unsigned char* bytesOf(const std::string& text) {
    return reinterpret_cast<const unsigned char*>(text.c_str());
}

inline unsigned int lengthOf(const std::string& text) { return static_cast<unsigned int>(text.size()); }
inline unsigned int lengthOf(const UTF16Text& text) { return static_cast<unsigned int>(text.size()); }

/// ASCII text as units of one encoding, with nothing behind them.
template <class CharType>
std::vector<CharType> unitsOf(std::string_view ascii) {
    std::vector<CharType> units;
    for (const char c : ascii) units.push_back(static_cast<CharType>(static_cast<unsigned char>(c)));
    return units;
}

/// ASCII text as a terminated standard string of one encoding.
template <class CharType>
std::basic_string<CharType> widened(std::string_view ascii) {
    return std::basic_string<CharType>(ascii.begin(), ascii.end());
}

/// Units that are ASCII as a text.
template <class CharType>
std::string narrow(const CharType* units, std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) text.push_back(static_cast<char>(units[i]));
    return text;
}

/// A terminated text of ASCII units.
template <class CharType>
std::string narrow(const CharType* units) {
    std::size_t size = 0;
    while (units[size]) ++size;
    return narrow(units, size);
}

/// Units in a block of array new that ends with the last of them, so that the address sanitizer sees any step beyond.
template <class CharType>
CharType* newBlock(const std::vector<CharType>& units) {
    CharType* const block = new CharType[units.size()];
    std::copy(units.begin(), units.end(), block);
    return block;
}

/// The same for ASCII text; end it with "\0"s to have it terminated.
template <class CharType>
CharType* newBlock(std::string_view ascii) {
    return newBlock(unitsOf<CharType>(ascii));
}

/// A borrowed buffer, as `newBlock` makes it.
template <class CharType>
std::unique_ptr<CharType[]> callerBuffer(std::string_view ascii) {
    return std::unique_ptr<CharType[]>(newBlock<CharType>(ascii));
}

/// One terminated text in both encodings, unit for unit: bytes hold the lower half of a code. Nothing stands behind the
/// terminators, so that the sanitizers see every read beyond.
class TerminatedUnits {
public:
    explicit TerminatedUnits(std::string_view text) {
        for (const char c : text) append(static_cast<unsigned char>(c));
        terminate();
    }

    explicit TerminatedUnits(const Codes& codes) {
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

/// A string over a terminated text, which must outlive it.
inline Vorn::String over(const std::string& text) { return Vorn::String(bytesOf(text), lengthOf(text) + 1); }
inline Vorn::String over(const UTF16Text& text) { return Vorn::String(text.c_str(), lengthOf(text) + 1); }

/// The text of a string record in UTF-8, as the library copies it.
inline std::string textOf(const Vorn::StringData& data) {
    std::string text;
    data.copyTo(text);
    return text;
}

/// The UTF-16 text that a string record holds.
inline UTF16Text unitsOf(const Vorn::StringData& data) {
    return UTF16Text(data.getPrivateBuffer<Vorn::UTF16Char>(), data.getBufferInfo<Vorn::UTF16Char>().m_length);
}
