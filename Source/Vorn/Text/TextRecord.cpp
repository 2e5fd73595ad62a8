#include "TextRecord.h"

#include "Vorn/PlainText.h"

#include <algorithm>

namespace VornPrivate {

using Vorn::StringData;
using Vorn::UTF16Char;

// The loops over what follows the plain text are simple, so that compilers turn them into vectors.

TextProperties propertiesOf(const unsigned char* text, unsigned int length) noexcept {
    unsigned char most = 0;
    bool hasNull = false;
    for (unsigned int i = findPlainEnd(text, 0, length); i < length; ++i) {
        most = std::max(most, text[i]);
        hasNull |= text[i] == 0xC0; // the first byte of U+0000, and of nothing else
    }
    return {hasNull, most >= 0x80, most >= 0xF0};
}

TextProperties propertiesOf(const UTF16Char* text, unsigned int length) noexcept {
    const unsigned int start = findPlainEnd(text, 0, length);
    bool hasNull = false;
    bool hasPair = false;
    for (unsigned int i = start; i < length; ++i) {
        hasNull |= text[i] == 0;
        hasPair |= (text[i] & 0xF800) == 0xD800;
    }
    return {hasNull, start != length, hasPair};
}

template <class CharType>
StringData* TextRecord::share(const StringData& parent, unsigned int start, unsigned int length) {
    if (length == 0) return &StringData::s_emptyString;
    const Vorn::StringDataBufferInfo& parentInfo = parent.infoOf<CharType>();
    const CharType* const text = parent.bufferOf<CharType>() + start;
    const TextProperties properties = propertiesOf(text, length);

    auto* const part = new StringData(nullptr, nullptr, 0, 0);
    const bool isStatic = parentInfo.m_allocationType == Vorn::STRING_DATA_STATIC;
    part->m_utf8Info = {};
    part->m_utf16Info = {};
    part->m_staticConstString = 0;
    part->m_charset = properties.charset();
    part->m_embeddedNulls = properties.hasNull;
    part->bufferOf<CharType>() = text;
    Vorn::StringDataBufferInfo& info = part->infoOf<CharType>();
    info.m_length = length;
    info.m_allocationType = isStatic ? Vorn::STRING_DATA_STATIC : Vorn::STRING_DATA_EXTERNAL;
    info.m_nullTerminated = parentInfo.m_nullTerminated && start + length == parentInfo.m_length;
    if (!isStatic) {
        part->m_isPart = 1;
        StringData::insertBehind<CharType>(parent, *part, start);
    }
    return part;
}

template StringData* TextRecord::share<unsigned char>(const StringData&, unsigned int, unsigned int);
template StringData* TextRecord::share<UTF16Char>(const StringData&, unsigned int, unsigned int);

} // namespace VornPrivate
