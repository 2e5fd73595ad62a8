#include "Vorn/Text/NeedleInText.h"

#include "Vorn/Text/ExactConversion.h"
#include "Vorn/TextBlock.h"
#include "Vorn/TextSearch.h"

#include <cstring>

namespace VornPrivate {

namespace {

using Vorn::UTF16Char;

struct NeedleScan {
    bool isMalformed = false;
    bool hasNull = false;
};

template <class Source>
NeedleScan scanNeedle(const Source* needle, unsigned int length) {
    NeedleScan scan;
    OrdinaryText<ExactSteps<Source>, false> ordinary(needle, length);
    typename ExactSteps<Source>::Result run;
    for (unsigned int i = 0; (i = ordinary.skip(i, run)) < length;) {
        const DecodedCharacter character = decodeNext(needle + i, needle + length);
        scan.isMalformed |= character.isMalformed;
        scan.hasNull |= character.code == 0;
        i += character.units;
    }
    return scan;
}

template <class CharType>
const CharType* unitsInView(Vorn::TextView text) {
    if constexpr (sizeof(CharType) == 1)
        return text.getUTF8();
    else
        return text.getUTF16();
}

bool containsTwoByteNull(const unsigned char* text, unsigned int length) {
    return findText({reinterpret_cast<const char*>(text), length}, "\xC0\x80") != std::string_view::npos;
}

} // namespace

template <class CharType>
NeedleInText<CharType>::NeedleInText(Vorn::TextView text, Vorn::TextView needle)
    : m_text(unitsInView<CharType>(text)), m_original(nullptr), m_textLength(text.getLength()),
      m_originalLength(text.getLength()) {
    const NeedleScan scan = needle.isUTF8() ? scanNeedle(needle.getUTF8(), needle.getLength())
                                            : scanNeedle(needle.getUTF16(), needle.getLength());
    m_isNowhere = scan.isMalformed;
    if (m_isNowhere) return;
    const bool isSameEncoding = needle.isUTF8() == (sizeof(CharType) == 1);
    bool isNullInTwoBytes = false;
    if constexpr (sizeof(CharType) == 1) {
        if (scan.hasNull && m_textLength != 0) {
            isNullInTwoBytes = containsTwoByteNull(m_text, m_textLength);
            if (isNullInTwoBytes && std::memchr(m_text, 0, m_textLength)) {
                copyTextWithZeros();
                isNullInTwoBytes = false;
            }
        }
    }
    if (isSameEncoding && (sizeof(CharType) != 1 || !scan.hasNull)) {
        m_needle = unitsInView<CharType>(needle);
        m_needleLength = needle.getLength();
    } else {
        convertNeedle(needle, isNullInTwoBytes);
    }
}

template <class CharType>
CharType* NeedleInText<CharType>::provide(std::size_t length) {
    if (length <= SMALL) return m_shortNeedle;
    m_longNeedle = allocateText<CharType>(length);
    return m_longNeedle.get();
}

template <class CharType>
void NeedleInText<CharType>::convertNeedle(Vorn::TextView needle, bool isNullInTwoBytes) {
    const auto convert = [&](const auto* units, unsigned int length) {
        const std::uint64_t size = isNullInTwoBytes ? convertedLength<CharType, true>(units, length)
                                                    : convertedLength<CharType, false>(units, length);
        m_isNowhere = size > m_textLength;
        if (m_isNowhere) return;
        m_needleLength = static_cast<std::size_t>(size);
        CharType* const dest = provide(m_needleLength);
        if (isNullInTwoBytes)
            convertExactly<true>(units, length, dest);
        else
            convertExactly<false>(units, length, dest);
        m_needle = dest;
    };
    if (needle.isUTF8())
        convert(needle.getUTF8(), needle.getLength());
    else
        convert(needle.getUTF16(), needle.getLength());
}

// Malformed bytes are copied as they are.
template <class CharType>
void NeedleInText<CharType>::copyTextWithZeros() {
    m_copiedText = allocateText<CharType>(m_textLength);
    CharType* dest = m_copiedText.get();
    for (unsigned int i = 0; i < m_textLength; ++i) {
        const bool isNull = m_text[i] == 0xC0 && i + 1 < m_textLength && m_text[i + 1] == 0x80;
        *dest++ = isNull ? CharType(0) : m_text[i];
        i += isNull;
    }
    m_original = m_text;
    m_text = m_copiedText.get();
    m_textLength = static_cast<unsigned int>(dest - m_text);
}

template <class CharType>
unsigned int NeedleInText<CharType>::toSearched(unsigned int original) const noexcept {
    if (!m_original || original > m_originalLength) return original;
    unsigned int searched = 0;
    for (unsigned int i = 0; i < original; ++searched) {
        const bool isNull = m_original[i] == 0xC0 && i + 1 < m_originalLength && m_original[i + 1] == 0x80;
        i += isNull ? 2 : 1;
    }
    return searched;
}

template <class CharType>
unsigned int NeedleInText<CharType>::toOriginal(unsigned int searched) const noexcept {
    if (!m_original || searched > m_textLength) return searched;
    unsigned int original = 0;
    for (unsigned int i = 0; i < searched; ++i) {
        const bool isNull =
            m_original[original] == 0xC0 && original + 1 < m_originalLength && m_original[original + 1] == 0x80;
        original += isNull ? 2 : 1;
    }
    return original;
}

template class NeedleInText<unsigned char>;
template class NeedleInText<UTF16Char>;

} // namespace VornPrivate
