/// @file
/// RecordAccess: builds string records over text that is known to be valid, without a second validation. Private.
#pragma once

#include "Vorn/String/StringData.h"
#include "Vorn/TextBlock.h"

#include <memory>

namespace VornPrivate {

/// What the scan of a valid text finds.
struct TextProperties {
    bool hasNull = false;
    bool isBeyondASCII = false;      ///< characters from U+0080 on
    bool hasSupplementaries = false; ///< characters from U+10000 on

    Vorn::StringDataSubCharset charset() const noexcept {
        if (hasSupplementaries) return Vorn::STRING_DATA_UNICODE;
        return hasNull || isBeyondASCII ? Vorn::STRING_DATA_UCS2 : Vorn::STRING_DATA_ASCII;
    }
};

struct RecordAccess {
    /// A record that owns a block of `length` units and a terminator. The reference count is 0.
    template <class CharType>
    static Vorn::StringData* make(std::unique_ptr<CharType[]> block, unsigned int length,
                                  const TextProperties& properties) {
        auto* const record = new Vorn::StringData(nullptr, nullptr, 0, 0);
        record->m_utf8Info = {};
        record->m_utf16Info = {};
        record->m_staticConstString = 0;
        setBuffer<CharType>(*record, block.release(), length, Vorn::STRING_DATA_DYNAMIC);
        setProperties(*record, properties);
        return record;
    }

    /// A static constant record over two terminated texts that are never freed. The reference count is 0.
    static Vorn::StringData* makeStatic(std::unique_ptr<unsigned char[]> bytes, unsigned int byteCount,
                                        std::unique_ptr<Vorn::UTF16Char[]> units, unsigned int unitCount,
                                        const TextProperties& properties) {
        auto* const record = new Vorn::StringData(nullptr, nullptr, 0, 0);
        setBuffer<unsigned char>(*record, bytes.release(), byteCount, Vorn::STRING_DATA_STATIC);
        setBuffer<Vorn::UTF16Char>(*record, units.release(), unitCount, Vorn::STRING_DATA_STATIC);
        setProperties(*record, properties);
        return record;
    }

private:
    template <class CharType>
    static void setBuffer(Vorn::StringData& record, const CharType* buffer, unsigned int length,
                          Vorn::StringAllocationType type) {
        Vorn::StringDataBufferInfo& info = record.infoOf<CharType>();
        info.m_length = length;
        info.m_allocationType = type;
        info.m_nullTerminated = 1;
        record.bufferOf<CharType>() = buffer;
    }

    static void setProperties(Vorn::StringData& record, const TextProperties& properties) {
        record.m_charset = properties.charset();
        record.m_embeddedNulls = properties.hasNull;
    }
};

} // namespace VornPrivate
