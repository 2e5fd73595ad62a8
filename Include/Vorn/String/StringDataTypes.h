// StringDataTypes: what is known of a text buffer, apart from the pointer to it.
//
// Scans and conversions speak in these types, so that buffers can be scanned and converted before any string exists.
#pragma once

namespace Vorn {

class StringData;

/// How one buffer is held.
enum StringAllocationType : unsigned int {
    STRING_DATA_NONE = 0, ///< no buffer of this encoding
    STRING_DATA_EXTERNAL =
        1,                  ///< somebody else's memory, or inside a buffer that this record is chained to; never freed
    STRING_DATA_STATIC = 2, ///< memory that lives for ever and that nothing tracks; never freed
    STRING_DATA_DYNAMIC = 3 ///< the record owns the block: it comes from array new and goes back by array delete
};

/// The narrowest repertoire that holds a text.
enum StringDataSubCharset : int {
    STRING_DATA_ASCII = 1,  ///< every character below 128 and none U+0000; an empty text is ASCII
    STRING_DATA_UCS2 = 2,   ///< every character fits one UTF-16 unit
    STRING_DATA_UNICODE = 3 ///< anything else
};

/// What is known of one encoding's buffer.
struct StringDataBufferInfo {
    StringData* m_previous; ///< chain link towards the record that the buffer was cut from
    StringData* m_next;     ///< chain link towards the records cut from this one
    unsigned int m_length;  ///< code units of the text, a terminator not counted
    unsigned int m_offset;  ///< code units between the start of the allocated block and the start of the text
    StringAllocationType m_allocationType : 31;
    unsigned int m_nullTerminated : 1; ///< a zero unit stands directly behind the text, inside the block
};

static_assert(sizeof(void*) != 4 || sizeof(StringDataBufferInfo) == 20, "two links, two numbers, one word of flags");

} // namespace Vorn
