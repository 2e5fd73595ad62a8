/// @file
/// CodePoints: the characters of a text as a range, their number, and their offsets.
///
///     for (UTF32Char c : codePoints(name)) drawGlyph(c);
///     const unsigned int third = offsetOfCodePoint(name, 3);   // in bytes or units, for slice and for searches
///
/// A code point is the unit in which Unicode numbers characters: a letter with a combining accent, or a flag, is two
/// of them. Units that are malformed count as U+FFFD, one for each longest part of a character; noncharacters are
/// returned as they are.
///
/// Cost: a step decodes one character. Counting, and finding the n-th code point, read the text from its start.
///
/// Threads: as the text that is viewed.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/Private/TextDecoding.h"
#include "Vorn/Text/TextView.h"
#include "Vorn/Types.h"

#include <cstddef>
#include <iterator>
#include <optional>

namespace Vorn {

/// A position in a text that reads one code point. All positions of a text can be compared.
class CodePointIterator {
public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = UTF32Char;
    using difference_type = std::ptrdiff_t;
    using pointer = void;
    using reference = UTF32Char;

    CodePointIterator() noexcept : m_offset(0) {}

    /// A position at an offset in units, at which a character starts, or at the end.
    CodePointIterator(TextView text, unsigned int offset) noexcept : m_text(text), m_offset(offset) {}

    /// The code point here. Expects a position before the end.
    UTF32Char operator*() const noexcept { return VornPrivate::decodeAt(m_text, m_offset).code; }

    /// The offset in units of the text.
    unsigned int offset() const noexcept { return m_offset; }

    /// The number of units of the code point here.
    unsigned int length() const noexcept { return VornPrivate::decodeAt(m_text, m_offset).units; }

    /// True if the units here are malformed, so that U+FFFD stands for them.
    bool isMalformed() const noexcept { return VornPrivate::decodeAt(m_text, m_offset).isMalformed; }

    CodePointIterator& operator++() noexcept {
        m_offset += length();
        return *this;
    }
    CodePointIterator operator++(int) noexcept {
        const CodePointIterator before = *this;
        ++*this;
        return before;
    }
    CodePointIterator& operator--() noexcept {
        m_offset -= VornPrivate::decodeBefore(m_text, m_offset).units;
        return *this;
    }
    CodePointIterator operator--(int) noexcept {
        const CodePointIterator before = *this;
        --*this;
        return before;
    }

    friend bool operator==(const CodePointIterator& a, const CodePointIterator& b) noexcept {
        return a.m_offset == b.m_offset;
    }
    friend bool operator!=(const CodePointIterator& a, const CodePointIterator& b) noexcept { return !(a == b); }

private:
    TextView m_text;
    unsigned int m_offset;
};

/// The code points of a text, a bidirectional range.
class CodePoints {
public:
    using iterator = CodePointIterator;
    using const_iterator = CodePointIterator;
    using value_type = UTF32Char;

    CodePoints() noexcept = default;
    explicit CodePoints(TextView text) noexcept : m_text(text) {}

    CodePointIterator begin() const noexcept { return {m_text, 0}; }
    CodePointIterator end() const noexcept { return {m_text, m_text.getLength()}; }
    std::reverse_iterator<CodePointIterator> rbegin() const { return std::make_reverse_iterator(end()); }
    std::reverse_iterator<CodePointIterator> rend() const { return std::make_reverse_iterator(begin()); }
    bool empty() const noexcept { return m_text.isEmpty(); }

private:
    TextView m_text;
};

/// The code points of a text.
/// @warning The range refers to the text. Keep the text alive; a temporary string is refused:
///     for (UTF32Char c : codePoints(line.substr(2))) drawGlyph(c);   // wrong: the line is destroyed before the loop
/// @{
[[nodiscard]] inline CodePoints codePoints(TextView text) noexcept { return CodePoints(text); }
template <class Text, VornPrivate::IfTemporaryText<Text> = 0>
CodePoints codePoints(Text&& text) = delete;
/// @}

/// The number of code points in a text.
[[nodiscard]] VORN_API unsigned int codePointCount(TextView text) noexcept;

/// The offset in units of code point number `n`, counted from 0. Returns the length of the text for `n` equal to the
/// number of code points, and NOT_FOUND for more.
[[nodiscard]] VORN_API unsigned int offsetOfCodePoint(TextView text, unsigned int n) noexcept;

/// Code point number `n`, counted from 0, or nothing if the text has no more than `n`.
[[nodiscard]] inline std::optional<UTF32Char> codePointAt(TextView text, unsigned int n) noexcept {
    const unsigned int offset = offsetOfCodePoint(text, n);
    if (offset >= text.getLength()) return std::nullopt;
    return VornPrivate::decodeAt(text, offset).code;
}

/// The greatest offset that is not behind `offset` and at which a character starts, or the length of the text for an
/// offset at or behind the end. Reads at most one character.
[[nodiscard]] VORN_API unsigned int boundaryAtOrBefore(TextView text, unsigned int offset) noexcept;

/// The least offset that is not before `offset` and at which a character starts or the text ends; the length of the
/// text for an offset behind the end. Reads at most one character.
[[nodiscard]] VORN_API unsigned int boundaryAtOrBehind(TextView text, unsigned int offset) noexcept;

/// True if a character starts or the text ends at the offset; false behind the end.
[[nodiscard]] inline bool isBoundary(TextView text, unsigned int offset) noexcept {
    return boundaryAtOrBefore(text, offset) == offset;
}

/// True if all characters of the text are ASCII, U+0000 included.
[[nodiscard]] VORN_API bool isASCII(TextView text) noexcept;

} // namespace Vorn
