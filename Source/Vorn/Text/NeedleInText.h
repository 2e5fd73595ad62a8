/// @file
/// NeedleInText: a text and a needle in one encoding, in which the needle can be searched by units. Private.
#pragma once

#include "Vorn/Text/TextView.h"

#include <cstddef>
#include <memory>
#include <type_traits>

namespace VornPrivate {

/// A text and a needle as units of the encoding of the text, with one spelling of U+0000.
///
/// In UTF-8, a needle with U+0000 is spelled as the text spells it. If a text contains both spellings, it is copied
/// with U+0000 as zero bytes, and offsets are converted. Needles are converted into a small buffer or onto the heap.
template <class CharType>
class NeedleInText {
public:
    NeedleInText(Vorn::TextView text, Vorn::TextView needle);

    NeedleInText(const NeedleInText&) = delete;
    NeedleInText& operator=(const NeedleInText&) = delete;

    /// True if the needle is found nowhere, because it is malformed or too long. It then has no units.
    bool isNowhere() const noexcept { return m_isNowhere; }

    const CharType* text() const noexcept { return m_text; }
    unsigned int textLength() const noexcept { return m_textLength; }
    const CharType* needle() const noexcept { return m_needle; }
    std::size_t needleLength() const noexcept { return m_needleLength; }

    /// Converts an offset in the original text to one in `text`, and back. An offset inside a spelling of U+0000
    /// becomes that of the next character.
    unsigned int toSearched(unsigned int original) const noexcept;
    unsigned int toOriginal(unsigned int searched) const noexcept;

private:
    void convertNeedle(Vorn::TextView needle, bool isNullInTwoBytes);
    void copyTextWithZeros();
    CharType* provide(std::size_t length);

    static constexpr std::size_t SMALL = 256 / sizeof(CharType);

    const CharType* m_text;
    const CharType* m_original; // null if `m_text` is the original text
    unsigned int m_textLength;
    unsigned int m_originalLength;
    const CharType* m_needle = nullptr;
    std::size_t m_needleLength = 0;
    bool m_isNowhere = false;
    std::unique_ptr<CharType[]> m_longNeedle;
    std::unique_ptr<CharType[]> m_copiedText;
    CharType m_shortNeedle[SMALL];
};

} // namespace VornPrivate
