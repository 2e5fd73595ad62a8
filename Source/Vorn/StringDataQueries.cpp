// Queries of a record's text. They read the buffer that exists and build none.
#include "Kernels/TextKernels.h"
#include "TextSearch.h"
#include "Vorn/Private/Sentinels.h"
#include "Vorn/String/StringData.h"
#include "Vorn/String/Unicode.h"

#include <cstring>
#include <string_view>

namespace Vorn {

namespace {

using namespace VornPrivate;

constexpr unsigned int NO_CHARACTER = 0xFFFFFFFF;

// A needle byte is read as signed and a unit of text is not, so a byte above 127 equals no unit.
template <class CharType>
bool isUnit(signed char needle, CharType unit) {
    return static_cast<int>(needle) == static_cast<int>(unit);
}

// Returns the length of the common prefix of the needle and the text.
template <class CharType>
unsigned int matchingUnits(const signed char* needle, const CharType* buffer, unsigned int length) {
    unsigned int i = 0;
    while (i < length && needle[i] && isUnit(needle[i], buffer[i])) ++i;
    return i;
}

std::size_t needleLength(const signed char* needle) { return std::strlen(reinterpret_cast<const char*>(needle)); }

template <class CharType>
bool differsAtEnd(const signed char* needle, const CharType* buffer, unsigned int length) {
    const std::size_t size = needleLength(needle);
    if (length < size) return false;
    for (std::size_t back = 1; back <= size; ++back)
        if (!isUnit(needle[size - back], buffer[length - back])) return true;
    return false;
}

// Searches a terminated text up to its first zero byte. Only an edit can have written one before the end.
bool containsBytes(const signed char* needle, const unsigned char* buffer, unsigned int length) {
    const char* const text = reinterpret_cast<const char*>(buffer);
    const char* const bytes = reinterpret_cast<const char*>(needle);
#ifdef __GLIBC__ // linear and vectorised; other implementations can be quadratic
    static_cast<void>(length);
    return std::strstr(text, bytes);
#else
    const std::size_t hit = findText({text, length}, bytes);
    return hit != std::string_view::npos && (hit == 0 || !std::memchr(text, 0, hit));
#endif
}

// Compares the needle only at offset 0 and at the multiples of its length.
template <class CharType>
bool containsInSteps(const signed char* needle, const CharType* buffer, unsigned int length) {
    const std::size_t needleSize = needleLength(needle);
    if (needleSize > length) return false;
    const unsigned int size = static_cast<unsigned int>(needleSize);
    for (unsigned int offset = 0; length - offset >= size; offset += size)
        if (matchingUnits(needle, buffer + offset, size) == size) return true;
    return false;
}

// Reads the character before byte `i`, moves `i` to its first byte and returns its code. Returns NO_CHARACTER for
// malformed bytes.
UTF32Char readBack(const unsigned char* buffer, unsigned int& i) {
    UTF32Char c = Unicode::getUTF32Char(buffer[--i]);
    if (c < 0x80) return c ? c : NO_CHARACTER;
    unsigned int trails = 0;
    for (; c == TRAIL_BYTE && trails < 3 && i > 0; ++trails) c = Unicode::getUTF32Char(buffer[--i]);
    if (trails == 0 || c != LEAD_OF_TWO - 1 + trails) return NO_CHARACTER; // not the lead of so many trail bytes
    switch (trails) {
    case 1: c = Unicode::getUTF32Char(buffer[i], buffer[i + 1]); return c - 1 < 0x7F ? NO_CHARACTER : c;
    case 2:
        c = Unicode::getUTF32Char(buffer[i], buffer[i + 1], buffer[i + 2]);
        return c < 0x800 || c == INVALID_CHARACTER ? NO_CHARACTER : c;
    default:
        c = Unicode::getUTF32Char(buffer[i], buffer[i + 1], buffer[i + 2], buffer[i + 3]);
        return c < 0x10000 ? NO_CHARACTER : c;
    }
}

// Returns the character that is `steps` characters before the end.
UTF32Char characterFromEnd(const unsigned char* buffer, unsigned int length, unsigned int steps) {
    unsigned int i = length;
    for (;;) {
        if (i == 0) return NO_CHARACTER;
        const UTF32Char c = readBack(buffer, i);
        if (c == NO_CHARACTER || --steps == 0) return c;
    }
}

// The same for UTF-16. A surrogate pair counts as two steps; the first of them returns NO_CHARACTER.
UTF32Char characterFromEnd(const UTF16Char* buffer, unsigned int length, unsigned int steps) {
    unsigned int i = length;
    for (;;) {
        if (i == 0) return NO_CHARACTER;
        UTF32Char c = Unicode::getUTF32Char(buffer[--i]);
        if (c == SECOND_SURROGATE) {
            if (--steps == 0 || i == 0 || Unicode::getUTF32Char(buffer[--i]) != FIRST_SURROGATE) return NO_CHARACTER;
            c = Unicode::getUTF32Char(buffer[i], buffer[i + 1]);
        }
        if (c == FIRST_SURROGATE || c == INVALID_CHARACTER) return NO_CHARACTER;
        if (--steps == 0) return c;
    }
}

// Returns the unit at an index. A negative index counts from the end.
template <class CharType>
unsigned int unitAt(const CharType* buffer, unsigned int length, int index) {
    const unsigned int i = static_cast<unsigned int>(index) + (index < 0 ? length : 0);
    return i < length ? buffer[i] : NO_CHARACTER;
}

} // namespace

bool StringData::equals(const signed char* needle) const {
    if (!needle || !*needle) VORN_THROW(E::PARAMETER, "Invalid ASCII string!");
    const auto equalsIn = [needle](const auto* buffer, unsigned int length) {
        return matchingUnits(needle, buffer, length) == length && !needle[length];
    };
    if (m_UTF8Buffer) return equalsIn(m_UTF8Buffer, m_utf8Info.m_length);
    return m_UTF16Buffer && equalsIn(m_UTF16Buffer, m_utf16Info.m_length);
}

bool StringData::startsWith(const signed char* needle) const {
    if (!needle || !*needle) VORN_THROW(E::PARAMETER, "Invalid ASCII string!");
    if (m_UTF8Buffer) return !needle[matchingUnits(needle, m_UTF8Buffer, m_utf8Info.m_length)];
    return m_UTF16Buffer && !needle[matchingUnits(needle, m_UTF16Buffer, m_utf16Info.m_length)];
}

bool StringData::endsWith(const signed char* needle) const {
    if (!needle || !*needle) VORN_THROW(E::PARAMETER, "Invalid ASCII string!");
    if (m_UTF8Buffer) return differsAtEnd(needle, m_UTF8Buffer, m_utf8Info.m_length);
    return m_UTF16Buffer && differsAtEnd(needle, m_UTF16Buffer, m_utf16Info.m_length);
}

bool StringData::contains(const signed char* needle) const {
    if (!needle || !*needle) VORN_THROW(E::PARAMETER, "Invalid string!");
    if (m_UTF8Buffer && m_utf8Info.m_nullTerminated) return containsBytes(needle, m_UTF8Buffer, m_utf8Info.m_length);
    if (m_UTF8Buffer) return containsInSteps(needle, m_UTF8Buffer, m_utf8Info.m_length);
    return m_UTF16Buffer && containsInSteps(needle, m_UTF16Buffer, m_utf16Info.m_length);
}

unsigned int StringData::count(signed char c) const {
    const unsigned int code = static_cast<unsigned char>(c);
    if (code > 127) VORN_THROW(E::PARAMETER, "Invalid ASCII character!");
    const TextKernels& kernels = textKernels();
    std::size_t count = 0;
    if (m_UTF8Buffer)
        count = kernels.count8(m_UTF8Buffer, m_utf8Info.m_length, static_cast<unsigned char>(code));
    else if (m_UTF16Buffer)
        count = kernels.count16(m_UTF16Buffer, m_utf16Info.m_length, static_cast<UTF16Char>(code));
    return static_cast<unsigned int>(count);
}

unsigned int StringData::getUnicodeLength() const {
    if (m_utf16Info.m_length != 0) return stringDataGetUnicodeLength(m_UTF16Buffer, m_utf16Info, getCharset());
    return stringDataGetUnicodeLength(m_UTF8Buffer, m_utf8Info, getCharset());
}

unsigned int StringData::getUnicodeCharAt(int index) const {
    if (m_UTF16Buffer) {
        switch (m_charset) {
        case STRING_DATA_ASCII: return getASCIICharFromBuffer<UTF16Char>(index);
        case STRING_DATA_UCS2: return getUCS2CharFromUTF16Buffer(index);
        default: return getUTF32CharFromBuffer<UTF16Char>(index);
        }
    }
    if (!m_UTF8Buffer) return NO_CHARACTER;
    return m_charset == STRING_DATA_ASCII ? getASCIICharFromBuffer<unsigned char>(index)
                                          : getUTF32CharFromBuffer<unsigned char>(index);
}

template <class CharType>
unsigned int StringData::getASCIICharFromBuffer(int index) const {
    VORN_INTERNAL_ASSERT(m_charset == STRING_DATA_ASCII, "string is not ASCII!");
    VORN_INTERNAL_ASSERT(getPrivateBuffer<CharType>(), "buffer is null!");
    return unitAt(getPrivateBuffer<CharType>(), infoOf<CharType>().m_length, index);
}

unsigned int StringData::getUCS2CharFromUTF16Buffer(int index) const {
    VORN_INTERNAL_ASSERT(m_charset == STRING_DATA_UCS2, "string is not UCS-2!");
    VORN_INTERNAL_ASSERT(m_UTF16Buffer, "UTF-16 buffer is null!");
    return unitAt(m_UTF16Buffer, m_utf16Info.m_length, index);
}

template <class CharType>
unsigned int StringData::getUTF32CharFromBuffer(int index) const {
    VORN_INTERNAL_ASSERT(getPrivateBuffer<CharType>(), "UTF-8 buffer is null!"); // for UTF-16 too
    const CharType* const buffer = getPrivateBuffer<CharType>();
    const unsigned int length = infoOf<CharType>().m_length;
    if (index < 0) {
        const unsigned int steps = 0u - static_cast<unsigned int>(index);
        return steps > length ? NO_CHARACTER : characterFromEnd(buffer, length, steps);
    }

    if (static_cast<unsigned int>(index) >= length) return NO_CHARACTER;
    UTF32Char c;
    unsigned int i = 0;
    do {
        c = Unicode::getUTF32Char(buffer, i, length);
        if (c == END_OF_BUFFER || c == INVALID_CHARACTER) return NO_CHARACTER;
    } while (index-- != 0);
    return c;
}

template VORN_API unsigned int StringData::getASCIICharFromBuffer<unsigned char>(int index) const;
template VORN_API unsigned int StringData::getASCIICharFromBuffer<UTF16Char>(int index) const;
template VORN_API unsigned int StringData::getUTF32CharFromBuffer<unsigned char>(int index) const;
template VORN_API unsigned int StringData::getUTF32CharFromBuffer<UTF16Char>(int index) const;

} // namespace Vorn
