/// @file
/// TextRecord: builds string records over parts of the text of other records, without a second validation. Private.
#pragma once

#include "RecordAccess.h"
#include "Vorn/String/StringData.h"
#include "Vorn/Types.h"

namespace VornPrivate {

/// The properties of a valid text, in the form that strings hold it.
/// @{
TextProperties propertiesOf(const unsigned char* text, unsigned int length) noexcept;
TextProperties propertiesOf(const Vorn::UTF16Char* text, unsigned int length) noexcept;
/// @}

struct TextRecord {
    /// A record over `length` units of a record's buffer from `start` on, which are whole characters. It shares the
    /// block and has the use count 0; a part of 0 units is the record of empty results. One allocation.
    template <class CharType>
    static Vorn::StringData* share(const Vorn::StringData& parent, unsigned int start, unsigned int length);
};

} // namespace VornPrivate
