/// @file
/// StringDataTypes: what describes a text buffer, apart from the pointer to it.
///
/// Scans and conversions take and return these types, so that they can be used before a string exists.
#pragma once

namespace VornPrivate {

/// The length of the longest text, in bytes or units. A length of 0xFFFFFFFF stands for a text that is to be measured.
constexpr unsigned int MAX_TEXT_LENGTH = 0xFFFFFFFE;

} // namespace VornPrivate

namespace Vorn {

class StringData;

/// The ownership of a buffer.
enum StringAllocationType : unsigned int {
    STRING_DATA_NONE = 0,     ///< there is no buffer of this encoding
    STRING_DATA_EXTERNAL = 1, ///< borrowed from the caller, or a part of the buffer of a linked record; not freed
    STRING_DATA_STATIC = 2,   ///< memory that is valid until the program ends; not freed
    STRING_DATA_DYNAMIC = 3   ///< owned by the record: allocated with `new[]`, freed with `delete[]`
};

/// The smallest charset that contains a text.
enum StringDataSubCharset : int {
    STRING_DATA_ASCII = 1,  ///< all characters are below 128, and none is U+0000; an empty text is ASCII
    STRING_DATA_UCS2 = 2,   ///< every character takes one UTF-16 unit
    STRING_DATA_UNICODE = 3 ///< any other text
};

/// The description of the buffer of one encoding.
struct StringDataBufferInfo {
    StringData* m_previous; ///< link towards the record that this one is a substring of
    StringData* m_next;     ///< link towards the substrings of this record
    unsigned int m_length;  ///< length of the text in code units, without a terminator
    unsigned int m_offset;  ///< code units from the start of the allocated block to the start of the text
    StringAllocationType m_allocationType : 31;
    unsigned int m_nullTerminated : 1; ///< 1 if a zero unit follows the text in the same block
};

static_assert(sizeof(void*) != 4 || sizeof(StringDataBufferInfo) == 20, "two links, two numbers, one word of flags");

} // namespace Vorn
