// Equality and order of records in all pairs of encodings. They build no buffer.
#include "Kernels/TextKernels.h"
#include "Vorn/Private/Sentinels.h"
#include "Vorn/String/StringData.h"
#include "Vorn/String/Unicode.h"

#include <algorithm>
#include <cstring>

namespace Vorn {

namespace {

using namespace VornPrivate;

template <class CharType>
struct Text {
    const CharType* buffer;
    unsigned int length;
};

using UTF8Text = Text<unsigned char>;
using UTF16Text = Text<UTF16Char>;

template <class CharType>
Text<CharType> textOf(const StringData& data) {
    return {data.getPrivateBuffer<CharType>(), data.getBufferInfo<CharType>().m_length};
}

template <class CharType>
bool haveEqualUnits(const Text<CharType>& a, const Text<CharType>& b) {
    if (a.length != b.length) return false;
    return a.buffer == b.buffer || std::memcmp(a.buffer, b.buffer, a.length * sizeof(CharType)) == 0;
}

// Returns the index of the first unit that differs, or the smaller length. For texts of different encodings, at least
// one of them is ASCII.
template <class A, class B>
unsigned int findDifference(const Text<A>& a, const Text<B>& b) {
    const unsigned int length = std::min(a.length, b.length);
    std::size_t i = 0;
    if constexpr (sizeof(A) < sizeof(B)) i = textKernels().matchUnits(a.buffer, b.buffer, length);
    if constexpr (sizeof(A) > sizeof(B)) i = textKernels().matchUnits(b.buffer, a.buffer, length);
    while (i < length && a.buffer[i] == b.buffer[i]) ++i;
    return static_cast<unsigned int>(i);
}

// Positions in a text of each encoding.
struct Positions {
    unsigned int utf8;
    unsigned int utf16;
};

// Returns positions in front of which the texts are equal and ordinary. Surrogate pairs are equal only if `full` is
// set.
Positions skipEqual(const UTF8Text& utf8, const UTF16Text& utf16, Positions at, bool full) {
    const TextProgress equal = textKernels().match(utf16.buffer + at.utf16, utf16.length - at.utf16,
                                                   utf8.buffer + at.utf8, utf8.length - at.utf8, full);
    return {at.utf8 + static_cast<unsigned int>(equal.dest), at.utf16 + static_cast<unsigned int>(equal.source)};
}

// Compares a text in UTF-8 with a text in UTF-16. Both records have this charset.
bool crossEqual(const UTF8Text& utf8, const UTF16Text& utf16, StringDataSubCharset charset) {
    if (utf8.length == 0 || utf16.length == 0) return utf8.length == utf16.length;
    if (charset == STRING_DATA_ASCII) return utf8.length == utf16.length && findDifference(utf8, utf16) == utf8.length;

    constexpr unsigned int PLAIN_UNITS = 64; // compared one by one where a kernel stops
    unsigned int i = 0;
    unsigned int plainEnd = 0;
    for (unsigned int j = 0; j < utf16.length; ++j) {
        if (j >= plainEnd && i < utf8.length) {
            const Positions equal = skipEqual(utf8, utf16, {i, j}, charset != STRING_DATA_UCS2);
            i = equal.utf8;
            j = equal.utf16;
            if (j == utf16.length) break;
            plainEnd = j + std::min(utf16.length - j, PLAIN_UNITS);
        }
        UTF32Char c = utf16.buffer[j];
        if (charset != STRING_DATA_UCS2) {
            c = Unicode::getUTF32Char(utf16.buffer[j]);
            if (c == FIRST_SURROGATE) {
                ++j;
                c = Unicode::getUTF32Char(utf16.buffer[j - 1], utf16.buffer[j]);
            }
        }
        if (Unicode::getUTF32Char(utf8.buffer, i, utf8.length) != c) return false;
    }
    return i == utf8.length;
}

template <class A, class B>
bool unitsLessThan(const Text<A>& a, const Text<B>& b) {
    const unsigned int i = findDifference(a, b);
    if (i == a.length || i == b.length) return a.length < b.length;
    return a.buffer[i] < b.buffer[i];
}

// Compares the texts character by character. When one ends, the position in the left text is compared with the length
// of the right one, as specified, although they count different units: a text can be less than its own extension or
// not.
template <class A, class B>
bool codesLessThan(const Text<A>& a, const Text<B>& b) {
    unsigned int i = 0;
    unsigned int j = 0;
    if constexpr (sizeof(A) < sizeof(B)) {
        const Positions equal = skipEqual(a, b, {0, 0}, false);
        i = equal.utf8;
        j = equal.utf16;
    } else if constexpr (sizeof(A) > sizeof(B)) {
        const Positions equal = skipEqual(b, a, {0, 0}, false);
        i = equal.utf16;
        j = equal.utf8;
    }
    while (i < a.length && j < b.length) {
        const UTF32Char left = Unicode::getUTF32Char(a.buffer, i, a.length);
        const UTF32Char right = Unicode::getUTF32Char(b.buffer, j, b.length);
        if (left != right) return left < right;
    }
    return i < b.length;
}

// Compares the bytes in memory, so that the low byte of a unit precedes the high one.
bool bytesLessThan(const UTF16Text& a, const UTF16Text& b) {
    const std::size_t length = std::min(a.length, b.length);
    const int order = std::memcmp(a.buffer, b.buffer, length * sizeof(UTF16Char));
    return order != 0 ? order < 0 : a.length < b.length;
}

// Sorts surrogates behind all other units only if they are in the right text, as specified: 0xD800 and 0xE000 are each
// less than the other.
bool surrogatesLessThan(const UTF16Text& a, const UTF16Text& b) {
    const unsigned int i = findDifference(a, b);
    if (i == a.length || i == b.length) return a.length < b.length;
    const UTF16Char left = a.buffer[i];
    const UTF16Char right = b.buffer[i];
    return left < right || (!UTF16::isSurrogate(left) && UTF16::isSurrogate(right));
}

bool utf16TextLessThan(const StringData& a, const StringData& b) {
    const bool haveSurrogates = a.getCharset() == STRING_DATA_UNICODE || b.getCharset() == STRING_DATA_UNICODE;
    const auto less = haveSurrogates ? surrogatesLessThan : bytesLessThan;
    return less(textOf<UTF16Char>(a), textOf<UTF16Char>(b));
}

// Returns the byte at `i`, where two texts first differ, or 0 if U+0000 starts there. Texts never first differ at the
// second byte of U+0000, because no other valid sequence starts with 0xC0.
unsigned int byteOrNull(const UTF8Text& text, unsigned int i) {
    const unsigned int byte = text.buffer[i];
    const bool startsNull = byte == 0xC0 && i + 1 < text.length && text.buffer[i + 1] == 0x80;
    return startsNull ? 0 : byte;
}

} // namespace

bool StringData::utf8Equal(const StringData& other) const {
    if (other.m_UTF8Buffer) return haveEqualUnits(textOf<unsigned char>(*this), textOf<unsigned char>(other));
    if (!other.m_UTF16Buffer) return false;
    if (m_UTF16Buffer) return haveEqualUnits(textOf<UTF16Char>(*this), textOf<UTF16Char>(other));
    return crossEqual(textOf<unsigned char>(*this), textOf<UTF16Char>(other), getCharset());
}

bool StringData::utf16Equal(const StringData& other) const {
    if (other.m_UTF16Buffer) return haveEqualUnits(textOf<UTF16Char>(*this), textOf<UTF16Char>(other));
    if (!other.m_UTF8Buffer) return false;
    return crossEqual(textOf<unsigned char>(other), textOf<UTF16Char>(*this), getCharset());
}

bool StringData::utf8LessThan(const StringData& other) const {
    const UTF8Text text = textOf<unsigned char>(*this);
    if (other.m_UTF8Buffer) {
        const UTF8Text otherText = textOf<unsigned char>(other);
        const unsigned int length = std::min(text.length, otherText.length);
        if (!m_embeddedNulls || !other.m_embeddedNulls) {
            const int order = std::memcmp(text.buffer, otherText.buffer, length);
            return order != 0 ? order < 0 : text.length < otherText.length;
        }
        const unsigned int i = findDifference(text, otherText);
        return i == length ? text.length < otherText.length : byteOrNull(text, i) < byteOrNull(otherText, i);
    }
    if (!other.m_UTF16Buffer) return false;
    if (m_UTF16Buffer) return utf16TextLessThan(*this, other);

    const UTF16Text otherText = textOf<UTF16Char>(other);
    if (m_charset == STRING_DATA_ASCII && other.m_charset != STRING_DATA_UNICODE) return unitsLessThan(text, otherText);
    if (other.m_charset == STRING_DATA_UCS2) {
        auto [i, j] = skipEqual(text, otherText, {0, 0}, false);
        for (; i < text.length && j < otherText.length; ++j) {
            const UTF32Char c = Unicode::getUTF32Char(text.buffer, i, text.length);
            if (c != otherText.buffer[j]) return c < otherText.buffer[j];
        }
        return j < otherText.length;
    }
    return codesLessThan(text, otherText);
}

bool StringData::utf16LessThan(const StringData& other) const {
    if (other.m_UTF16Buffer) return utf16TextLessThan(*this, other);
    if (!other.m_UTF8Buffer) return false;

    const UTF16Text text = textOf<UTF16Char>(*this);
    const UTF8Text otherText = textOf<unsigned char>(other);
    if (other.m_charset == STRING_DATA_ASCII && m_charset != STRING_DATA_UNICODE) return unitsLessThan(text, otherText);
    if (m_charset == STRING_DATA_UCS2) {
        auto [j, i] = skipEqual(otherText, text, {0, 0}, false);
        for (; i < text.length; ++i) {
            if (j >= otherText.length) return false;
            const UTF32Char c = Unicode::getUTF32Char(otherText.buffer, j, otherText.length);
            if (text.buffer[i] != c) return text.buffer[i] < c;
        }
        return j < otherText.length;
    }
    return codesLessThan(text, otherText);
}

} // namespace Vorn
