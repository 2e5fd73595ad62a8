// String records: construction, destruction and copies of their text. The route of a text through the files:
//
//     constructor        String.cpp                  creates the string record of a buffer
//     record             StringData.cpp              refers to the buffer; stores length, type and charset
//     scan               StringDataHelper.cpp        validates the text; OrdinaryText.h skips ordinary text with the
//                                                    kernels of this processor in Kernels
//     other encoding     StringData.h, getBuffer     requests the conversion when the encoding is first used
//     conversion         StringDataHelper.cpp        measures and converts; kernels convert ordinary text
//     terminator         StringDataOwnership.cpp     copies or moves the text so that a zero unit follows it
//     substring          StringDataSubstring.cpp     refers to the same block, or converts only the substring
//     query, order       StringDataQueries.cpp,      read the buffer that exists; TextSearch.cpp finds substrings
//                        StringDataComparison.cpp
//     edit               UTF8String.cpp              changes the UTF-8 buffer, or builds the record again
//     number             ParseInt.cpp,               read digits up to the first other unit; ParseDigits.h has the
//     loops
//                        ParseFloat.cpp
#include "Vorn/String/StringData.h"

#include "OrdinaryText.h"
#include "PlainText.h"
#include "StringDataConversion.h"
#include "StringDataScan.h"
#include "TextBlock.h"

#include <cstring>

namespace Vorn {

constinit StringData StringData::s_emptyString(VornPrivate::EMPTY_TEXT<unsigned char>,
                                               VornPrivate::EMPTY_TEXT<UTF16Char>, 0, 0);

// Part of each constructor, not a function that the library exports.
template <class CharType>
[[gnu::always_inline]] inline void StringData::initialise(const CharType* buffer, std::uint64_t length,
                                                          StringAllocationType type) {
    if (!buffer) VORN_THROW(E::PARAMETER, "buffer must not be null!!!!");

    bool terminated = length == UNKNOWN_LENGTH;
    if (!terminated && length != 0 && buffer[length - 1] == 0) {
        --length;
        terminated = true;
    }
    if (length <= VornPrivate::SHORT_UNITS && VornPrivate::isShortPlain(buffer, static_cast<unsigned int>(length))) {
        m_charset = STRING_DATA_ASCII;
        m_embeddedNulls = 0;
    } else if (StringDataSubCharset shortCharset;
               length <= VornPrivate::SHORT_UNITS &&
               VornPrivate::findCharset(buffer, static_cast<unsigned int>(length), shortCharset)) {
        m_charset = shortCharset;
        m_embeddedNulls = 0;
    } else {
        unsigned int units = static_cast<unsigned int>(length); // 0xFFFFFFFF for an unknown length
        const unsigned int scanResult = stringDataScanBuffer(buffer, units);
        length = units;
        switch (const auto charset = static_cast<StringDataSubCharset>(scanResult & 3)) {
        case STRING_DATA_ASCII:
        case STRING_DATA_UCS2:
        case STRING_DATA_UNICODE: m_charset = charset; break;
        default: VORN_THROW(E::INTERNAL, "Invalid charset!!!");
        }
        m_embeddedNulls = (scanResult & VornPrivate::SCAN_HAS_NULL) != 0;
    }

    StringDataBufferInfo& info = infoOf<CharType>();
    info.m_length = static_cast<unsigned int>(length);
    info.m_allocationType = type;
    info.m_nullTerminated = terminated;
    bufferOf<CharType>() = buffer;
}

StringData::StringData(const unsigned char* buffer, unsigned int length, StringAllocationType type)
    : StringData(buffer, countedLength(length, false), type, CountedLength()) {}

StringData::StringData(const UTF16Char* buffer, unsigned int length, StringAllocationType type)
    : StringData(buffer, countedLength(length, false), type, CountedLength()) {}

StringData::StringData(const unsigned char* buffer, std::uint64_t length, StringAllocationType type, CountedLength)
    : m_utf8Info(), m_utf16Info(), m_UTF8Buffer(nullptr), m_UTF16Buffer(nullptr), m_refCount(0),
      m_charset(STRING_DATA_ASCII), m_embeddedNulls(0), m_staticConstString(0), m_isPart(0) {
    initialise(buffer, length, type);
}

StringData::StringData(const UTF16Char* buffer, std::uint64_t length, StringAllocationType type, CountedLength)
    : m_utf8Info(), m_utf16Info(), m_UTF8Buffer(nullptr), m_UTF16Buffer(nullptr), m_refCount(0),
      m_charset(STRING_DATA_ASCII), m_embeddedNulls(0), m_staticConstString(0), m_isPart(0) {
    initialise(buffer, length, type);
}

StringData::~StringData() { destroyBuffers(); }

void StringData::destroyBuffers() {
    switch (m_utf8Info.m_allocationType) {
    case STRING_DATA_EXTERNAL:
        if (m_utf8Info.m_previous || m_utf8Info.m_next) destroyExternalUTF8();
        break;
    case STRING_DATA_DYNAMIC: destroyDynamicUTF8(); break;
    default: break;
    }
    switch (m_utf16Info.m_allocationType) {
    case STRING_DATA_EXTERNAL:
        if (m_utf16Info.m_previous || m_utf16Info.m_next) destroyExternalUTF16();
        break;
    case STRING_DATA_DYNAMIC: destroyDynamicUTF16(); break;
    default: break;
    }
}

void StringData::destroy() { delete this; }

void StringData::rebuild(const unsigned char* buffer, std::uint64_t length) {
    detachSubstrings(); // the only step that allocates, before any buffer is freed
    destroyBuffers();
    m_UTF8Buffer = nullptr;
    m_UTF16Buffer = nullptr;
    m_utf8Info = {};
    m_utf16Info = {};
    m_isPart = 0;
    initialise(buffer, length, STRING_DATA_DYNAMIC);
}

void StringData::copyTo(std::string& dest) const {
    if (m_UTF8Buffer) {
        dest.assign(reinterpret_cast<const char*>(m_UTF8Buffer), m_utf8Info.m_length);
    } else if (m_UTF16Buffer) {
        stringDataConvertToUTF8(dest, m_UTF16Buffer, m_utf16Info, getCharset());
    } else {
        dest.clear();
    }
}

unsigned int StringData::getUTF8Length() const {
    if (m_UTF8Buffer) return m_utf8Info.m_length;
    return m_UTF16Buffer ? stringDataGetUTF8Length(m_UTF16Buffer, m_utf16Info, getCharset()) : 0;
}

unsigned int StringData::getUTF16Length() const {
    if (m_UTF16Buffer) return m_utf16Info.m_length;
    return m_UTF8Buffer ? stringDataGetUTF16Length(m_UTF8Buffer, m_utf8Info, getCharset()) : 0;
}

namespace {

template <class CharType>
unsigned int copyIfItFits(CharType* dest, unsigned int capacity, const CharType* buffer, unsigned int length) {
    if (length == 0) return 0;
    if (capacity < length) return 0xFFFFFFFF;
    std::memmove(dest, buffer, length * sizeof(CharType)); // `dest` can be in the block of the text
    return length;
}

} // namespace

unsigned int StringData::copyToUTF8(unsigned char* dest, unsigned int capacity) const {
    if (m_UTF8Buffer) return copyIfItFits(dest, capacity, m_UTF8Buffer, m_utf8Info.m_length);
    if (!m_UTF16Buffer) return 0;
    return stringDataConvertCopyToUTF8(m_UTF16Buffer, m_utf16Info, getCharset(), dest, capacity);
}

unsigned int StringData::copyToUTF16(UTF16Char* dest, unsigned int capacity) const {
    if (m_UTF16Buffer) return copyIfItFits(dest, capacity, m_UTF16Buffer, m_utf16Info.m_length);
    if (!m_UTF8Buffer) return 0;
    return stringDataConvertCopyToUTF16(m_UTF8Buffer, m_utf8Info, getCharset(), dest, capacity);
}

} // namespace Vorn
