// Access to private members of records: builds records that only the library can build, and corrupts them.
#pragma once

#include "Vorn/String/StringData.h"

namespace VornPrivate {

struct StringDataProbe {
    /// A static constant record, with a count of 0, over two texts that count as terminated. Either may be null.
    static Vorn::StringData* makeStatic(const unsigned char* utf8, const Vorn::UTF16Char* utf16, unsigned int length) {
        return new Vorn::StringData(utf8, utf16, length, 0);
    }

    /// A record without any buffer, with a count of 0, that is destroyed as an ordinary one.
    static Vorn::StringData* makeNull() {
        Vorn::StringData* const record = makeStatic(nullptr, nullptr, 0);
        record->m_staticConstString = 0;
        info<unsigned char>(*record) = {};
        info<Vorn::UTF16Char>(*record) = {};
        return record;
    }

    static void setStaticConst(Vorn::StringData& record, bool isStaticConst) {
        record.m_staticConstString = isStaticConst;
    }

    static void setCharset(Vorn::StringData& record, Vorn::StringDataSubCharset charset) { record.m_charset = charset; }

    template <class CharType>
    static Vorn::StringDataBufferInfo& info(const Vorn::StringData& record) {
        return record.infoOf<CharType>();
    }

    template <class CharType>
    static void setBuffer(const Vorn::StringData& record, const CharType* buffer) {
        record.bufferOf<CharType>() = buffer;
    }

    template <class CharType>
    static unsigned int getASCIIChar(const Vorn::StringData& record, int index) {
        return record.getASCIICharFromBuffer<CharType>(index);
    }
    static unsigned int getUCS2Char(const Vorn::StringData& record, int index) {
        return record.getUCS2CharFromUTF16Buffer(index);
    }
    template <class CharType>
    static unsigned int getUTF32Char(const Vorn::StringData& record, int index) {
        return record.getUTF32CharFromBuffer<CharType>(index);
    }

    template <class CharType>
    static void detachExternalBuffer(Vorn::StringData& record) {
        record.detachExternalBuffer<CharType>();
    }
};

} // namespace VornPrivate
