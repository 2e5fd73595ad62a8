// StringData: the shared, counted record of one immutable text.
//
// A record holds the same text in a UTF-8 buffer, in a UTF-16 buffer, or in both; it builds the second one when it is
// first asked for and keeps it. Records that were cut from one another share a block of text (see
// Documentation/StringBuffers.md). Users hold records through String, which counts for them.
//
// A record does not copy the buffer that it is built from. The text is validated once, at that door; from then on the
// buffers and the verdict are trusted. UTF-8 has no zero byte inside: U+0000 is 0xC0 0x80.
//
// A text has at most 0xFFFFFFFE bytes or units. An operation whose result would be longer throws `Exception<4>`:
// "length : text too long!" before it allocates or changes anything.
//
// Threads: nothing is locked, and reading can build a buffer or move text under a sibling. A record, all handles on it
// and all records that share its block belong to one thread at a time. The static constant records, such as that of the
// empty results, belong to all threads: reading them changes nothing, and their counts are atomic.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/Config.h"
#include "Vorn/String/StringDataHelper.h"
#include "Vorn/String/StringDataTypes.h"
#include "Vorn/Types.h"

#include <cstdint>
#include <string>

namespace VornPrivate {
struct StringDataProbe; // lets a test build the static records that only the library can build
}

namespace Vorn {

/// The record behind a String. `CharType` is `unsigned char` for UTF-8 and `UTF16Char` for UTF-16.
class VORN_API StringData {
public:
    /// A record with a count of 0 over a UTF-8 text. `length` counts bytes; if the last of them is zero, it is the
    /// terminator and not text. 0xFFFFFFFF stands for a text that ends at its first zero byte. With
    /// `STRING_DATA_DYNAMIC` the record takes over a block of array new; if the constructor raises, the buffer stays
    /// with the caller.
    /// Raises `Exception<4>` with "buffer must not be null!!!!", and `Exception<7>` if the text is not valid. Throws
    /// `Exception<4>`: "length : text too long!" if a text of unknown length has no terminator in its first 0xFFFFFFFF
    /// units; no unit behind these is read.
    StringData(const unsigned char* buffer, unsigned int length, StringAllocationType type);

    /// The same over a UTF-16 text; `length` counts units.
    StringData(const UTF16Char* buffer, unsigned int length, StringAllocationType type);

    StringData(const StringData&) = delete;
    StringData& operator=(const StringData&) = delete;

    /// Frees the blocks that the record owns or hands them on to the next record cut from them.
    /// @warning If the record stands over a caller's buffer and others were cut from it, they copy their text out here;
    ///     running out of memory then ends the process.
    ~StringData();

    /// One handle more.
    void incRefCount() noexcept {
        if (m_staticConstString)
            addToStaticCount(1);
        else
            ++m_refCount;
    }

    /// One handle less; with the last one, the record destroys and frees itself. A static record survives.
    void decRefCount() {
        if (m_staticConstString)
            addToStaticCount(0u - 1);
        else if (m_refCount-- == 1)
            destroy();
    }

    /// Number of handles; of a static constant record, those of all threads.
    unsigned int getRefCount() const noexcept { return __atomic_load_n(&m_refCount, __ATOMIC_RELAXED); }

    /// True if the record has no buffer, which no constructor lets happen.
    bool isNull() const noexcept { return !m_UTF8Buffer && !m_UTF16Buffer; }

    /// True if the record has no buffer or one of length 0.
    bool isEmpty() const noexcept {
        return isNull() || (m_UTF8Buffer && m_utf8Info.m_length == 0) || (m_UTF16Buffer && m_utf16Info.m_length == 0);
    }

    bool haveEmbeddedNulls() const noexcept { return m_embeddedNulls; }       ///< the text contains U+0000
    bool isStaticConstString() const noexcept { return m_staticConstString; } ///< never destroyed
    StringDataSubCharset getCharset() const noexcept { return m_charset; }    ///< the narrowest repertoire of the text

    /// Replaces `dest` by the text in UTF-8, without a terminator; U+0000 stays 0xC0 0x80. A missing UTF-8 buffer is
    /// not kept. Raises what `stringDataConvertToUTF8` raises; a text that is too long in UTF-8 leaves `dest` as it
    /// was. If memory ends, `dest` is as it was, or empty if the text is held in UTF-16 only.
    void copyTo(std::string& dest) const;

    /// Bytes of the text in UTF-8. Without a UTF-8 buffer, computed by `stringDataGetUTF8Length` and not kept; raises
    /// what that raises.
    unsigned int getUTF8Length() const;

    /// Units of the text in UTF-16. Without a UTF-16 buffer, computed by `stringDataGetUTF16Length` and not kept.
    unsigned int getUTF16Length() const;

    /// Copies the text as UTF-8 into `dest`, without a terminator, and returns its length. Nothing is written if
    /// `capacity` is smaller; the result is then 0xFFFFFFFF if the record has a UTF-8 buffer, else the length.
    /// Raises what `stringDataConvertCopyToUTF8` raises.
    /// @warning A text with U+0000 that is held as UTF-16 only is written up to two bytes past `capacity`.
    unsigned int copyToUTF8(unsigned char* dest, unsigned int capacity) const;

    /// The same for UTF-16; `capacity` and result count units.
    unsigned int copyToUTF16(UTF16Char* dest, unsigned int capacity) const;

    /// The buffer of this encoding as it stands, null if there is none. Not always terminated.
    template <class CharType>
    const CharType* getPrivateBuffer() const noexcept {
        return bufferOf<CharType>();
    }

    /// Length, offset, links and type of this encoding's buffer.
    template <class CharType>
    const StringDataBufferInfo& getBufferInfo() const noexcept {
        return infoOf<CharType>();
    }

    template <class CharType>
    StringAllocationType getAllocationType() const noexcept {
        return infoOf<CharType>().m_allocationType;
    }

    /// The record behind this one in the chain of records that share this encoding's block.
    template <class CharType>
    StringData* getNext() const noexcept {
        return infoOf<CharType>().m_next;
    }

    /// The record before this one in the chain.
    template <class CharType>
    StringData* getPrevious() const noexcept {
        return infoOf<CharType>().m_previous;
    }

    /// The buffer of this encoding, built from the other one if it is missing, and then kept. Not always terminated.
    /// Null if the record has no buffer. Raises what the conversion raises.
    template <class CharType>
    const CharType* getBuffer() const;

    /// The buffer of this encoding with a zero unit behind the text. Builds it if it is missing, and moves or copies
    /// the text if there is no such unit yet.
    /// @warning The pointer dies at the next call that can move the buffer: one on a string that shares the block, and
    ///     for a text that was copied because it was static or somebody else's also the next one on this very record.
    ///     From that second call on it stays.
    /// Raises `Exception<1>` for a static constant record without both terminated buffers.
    template <class CharType>
    const CharType* getTerminatedBuffer() const;

    /// True if the text is the ASCII text `needle`. A needle byte above 127 equals nothing.
    /// Raises `Exception<4>` with "Invalid ASCII string!" for a null or empty needle.
    bool equals(const signed char* needle) const;

    /// True if the text starts with the ASCII text `needle`; raises as `equals` does.
    bool startsWith(const signed char* needle) const;

    /// Answers the inverse: true if the text does NOT end with `needle`. A text that is shorter than the needle gives
    /// false. Raises as `equals` does.
    bool endsWith(const signed char* needle) const;

    /// Searches everywhere only in a terminated UTF-8 text; in any other text it looks at offset 0, n, 2n and so on, n
    /// being the length of the needle, and finds no byte above 127. So the answer can change when the text is
    /// terminated.
    /// Raises `Exception<4>` with "Invalid string!" for a null or empty needle.
    bool contains(const signed char* needle) const;

    /// Occurrences of an ASCII character; for 0, of zero units, which UTF-8 does not have.
    /// Raises `Exception<4>` with "Invalid ASCII character!" for a byte above 127.
    unsigned int count(signed char c) const;

    /// Characters in the text, counted anew in each call, in the UTF-16 buffer if there is one.
    /// @warning Raises `Exception<2>` for a text with supplementary characters whose UTF-16 buffer was built from
    ///     UTF-8: that one holds their second surrogates only.
    unsigned int getUnicodeLength() const;

    /// Gives no supplementary character, and none behind one, from a UTF-16 buffer with an index of 0 or more; with a
    /// negative index, a pair there counts as two, and the second of these (-2 at the end of the text) gives the
    /// character. Otherwise the character at an index, -1 being the last; 0xFFFFFFFF if there is none.
    unsigned int getUnicodeCharAt(int index) const;

    /// Loses the end of a UTF-8 cut that does not end on an ASCII character: the cut is trimmed from its end down to
    /// the first lead byte that is met, and that byte stays. So a cut that ends with a character of several bytes
    /// raises `Exception<7>` ("Unmatched lead UTF-8 byte for a 2-byte sequence!" and its relatives), unless it is one
    /// of two bytes at the end of a terminated text. A final U+0000 or character from U+100000 on is dropped whole, but
    /// raises at the end of a terminated text. End cuts on ASCII.
    ///
    /// A new record, with a count of 0, of `length` units from `offset` on: bytes for `unsigned char`, units for
    /// `UTF16Char`. A negative offset counts from the end, -1 is the last unit; `length` is cut to what remains. Every
    /// empty result is the address of `s_emptyString`. In an encoding that the record holds, the new record shares the
    /// text: one allocation, one scan, no copy. A final first surrogate is left out. The unit behind the text is read
    /// if the offset points there. Raises `Exception<4>` with "Invalid Offset!" if no character starts at the offset or
    /// it lies outside the text, in UTF-8 also for U+0000 and characters from U+100000 on; `Exception<2>` with
    /// "c != 0xFDEF : Invalid UTF-16 buffer detected!" for a noncharacter. Throws `Exception<4>`: "length : text too
    /// long!" if a conversion gives 0xFFFFFFFF units, which only a `length` of 0xFFFFFFFF lets it.
    ///
    /// In an encoding that the record lacks, only the cut is converted, into a block of its own; a character that does
    /// not fit into `length` is left out, and an offset behind the end gives the empty result (ASCII text raises).
    /// @warning The conversions are sound only for an offset of 0 or more, or a negative one whose cut ends before the
    ///     end of the text. A cut with a negative offset that reaches the end gives: from UTF-16, `Exception<2>` with
    ///     "j < destLength : destination buffer too short!", or `Exception<7>` ("ASCII null detected! ...") if it takes
    ///     in the whole text; from UTF-8, zero units, as many as the cut has.
    /// @warning From UTF-16, a cut by an offset of 0 or more that meets a surrogate pair raises `Exception<2>`, even if
    ///     the pair does not fit, and one with U+0000 comes out as from `stringDataConvertToUTF8`.
    /// @warning An offset inside a character raises `Exception<4>` with "Invalid offset!" where the source is UCS-2 or
    ///     the offset negative, and gives the empty result elsewhere. If a failure comes after the block is allocated,
    ///     such as a scan that refuses the cut, the block is lost; if memory ends, nothing is.
    template <class CharType>
    StringData* substr(int offset, unsigned int length) const;

    /// For editing in place: sets the length of the UTF-8 text and nothing else, no terminator and no flag.
    /// Raises `Exception<2>` with "getRefCount() == 1 : Can't set length on a string with more than one reference!!!"
    /// and "getAllocationType<CharType>() == STRING_DATA_DYNAMIC : Can't set length of a non-dynamic string!!!". Throws
    /// `Exception<4>`: "length : text too long!" for a length of 0xFFFFFFFF.
    void setLength(unsigned int length) {
        using CharType = unsigned char;
        VORN_INTERNAL_ASSERT(getRefCount() == 1, "Can't set length on a string with more than one reference!!!");
        VORN_INTERNAL_ASSERT(getAllocationType<CharType>() == STRING_DATA_DYNAMIC,
                             "Can't set length of a non-dynamic string!!!");
        if (length > VornPrivate::MAX_TEXT_LENGTH) VORN_THROW(4, "length : text too long!");
        m_utf8Info.m_length = length;
    }

    /// The record of every empty result. Its count starts at 0; it survives every release.
    static StringData s_emptyString;

private:
    friend class String;
    friend class UTF8String;
    template <class CharType>
    friend class StringOwnerMap;
    friend bool operator==(const StringData& a, const StringData& b);
    friend bool operator<(const StringData& a, const StringData& b);
    friend struct VornPrivate::StringDataProbe;

    // A static constant record over two terminated buffers, not scanned.
    constexpr StringData(const unsigned char* utf8, const UTF16Char* utf16, unsigned int length,
                         unsigned int refCount) noexcept
        : m_utf8Info{nullptr, nullptr, length, 0, STRING_DATA_STATIC, 1},
          m_utf16Info{nullptr, nullptr, length, 0, STRING_DATA_STATIC, 1}, m_UTF8Buffer(utf8), m_UTF16Buffer(utf16),
          m_refCount(refCount), m_charset(STRING_DATA_ASCII), m_embeddedNulls(0), m_staticConstString(1) {}

    // A record over a text whose length is known, also where that is 0xFFFFFFFF with the terminator counted in.
    struct CountedLength {};
    StringData(const unsigned char* buffer, std::uint64_t length, StringAllocationType type, CountedLength);
    StringData(const UTF16Char* buffer, std::uint64_t length, StringAllocationType type, CountedLength);

    // Threads that share no string share the static constant records, so their counts are atomic. Relaxed, because such
    // a count decides nothing: the record is constant and is never destroyed.
    void addToStaticCount(unsigned int change) noexcept { __atomic_fetch_add(&m_refCount, change, __ATOMIC_RELAXED); }

    // Destroys and frees the record. Out of line, or compilers that see two handles in one function warn of the second.
    void destroy();

    // Gives up the buffers and stands over a block of array new instead, which stays with the caller if this raises.
    void rebuild(const unsigned char* buffer, std::uint64_t length);
    void destroyBuffers();

    template <class CharType>
    void initialise(const CharType* buffer, std::uint64_t length, StringAllocationType type);

    template <class CharType>
    StringDataBufferInfo& infoOf() const noexcept {
        if constexpr (sizeof(CharType) == 1)
            return m_utf8Info;
        else
            return m_utf16Info;
    }

    template <class CharType>
    const CharType*& bufferOf() const noexcept {
        if constexpr (sizeof(CharType) == 1)
            return m_UTF8Buffer;
        else
            return m_UTF16Buffer;
    }

    // Comparison, called on a record that has this buffer; see StringDataComparison.cpp.
    bool utf8Equal(const StringData& other) const;
    bool utf16Equal(const StringData& other) const;
    bool utf8LessThan(const StringData& other) const;
    bool utf16LessThan(const StringData& other) const;

    // The character at an index; see StringDataQueries.cpp. The first two index directly.
    template <class CharType>
    unsigned int getASCIICharFromBuffer(int index) const;
    unsigned int getUCS2CharFromUTF16Buffer(int index) const;
    template <class CharType>
    unsigned int getUTF32CharFromBuffer(int index) const;

    // Cut out of the other encoding; see StringDataSubstring.cpp.
    template <class CharType>
    StringData* substrConvert(int offset, unsigned int length) const;
    template <class Target>
    StringData* substrConvertASCIITo(int offset, unsigned int length) const;
    StringData* substrConvertUCS2ToUTF8(int offset, unsigned int length) const;
    StringData* substrConvertUTF16ToUTF8(int offset, unsigned int length) const;
    StringData* substrConvertUTF8ToUTF16(int offset, unsigned int length) const;

    // Terminate by type; see StringDataOwnership.cpp.
    template <class CharType>
    const CharType* nullTerminateExternalString() const;
    template <class CharType>
    const CharType* nullTerminateStaticString() const;
    template <class CharType>
    const CharType* nullTerminateDynamicString() const;

    // Copies text out of a block that cannot be kept, together with that of all records behind this one.
    template <class CharType>
    void detachExternalBuffer();

    void destroyDynamicUTF8();
    void destroyDynamicUTF16();
    void destroyExternalUTF8();
    void destroyExternalUTF16();

    template <class CharType>
    void destroyDynamic();
    template <class CharType>
    void destroyExternal();
    template <class CharType>
    void moveToCopy(const CharType* block) const;
    template <class CharType>
    void updateTerminated() const;

    // How the text is stored changes while the text does not, also under readers: hence mutable.
    mutable StringDataBufferInfo m_utf8Info;
    mutable StringDataBufferInfo m_utf16Info;
    mutable const unsigned char* m_UTF8Buffer; // first byte of the text, or null
    mutable const UTF16Char* m_UTF16Buffer;    // first unit of the text, or null
    unsigned int m_refCount;                   // number of handles
    StringDataSubCharset m_charset : 30;       // verdict of the scan of the first buffer
    unsigned int m_embeddedNulls : 1;          // the text contains U+0000
    unsigned int m_staticConstString : 1;      // never destroyed; both buffers are terminated from the start
};

static_assert(sizeof(void*) != 4 || sizeof(StringData) == 56, "two infos, two pointers, a count, a word of flags");

/// True if the two texts are the same, whatever encodings they are held in. Texts of different charset differ.
/// @warning A buffer that was built is compared even where building garbled it. A text with supplementary characters is
///     unequal to itself in UTF-16 once a UTF-16 buffer was built for it: that one holds their second surrogates only.
///     A text with U+0000 or with surrogate pairs can be unequal to itself in UTF-8 once a UTF-8 buffer was built for
///     it; see `stringDataConvertToUTF8`.
inline bool operator==(const StringData& a, const StringData& b) {
    if (a.getCharset() != b.getCharset()) return false;
    if (a.m_UTF8Buffer) return a.utf8Equal(b);
    return a.m_UTF16Buffer ? a.utf16Equal(b) : b.isNull();
}

inline bool operator!=(const StringData& a, const StringData& b) { return !(a == b); }

/// Not the order of code points, and in part no order at all. Two UTF-8 texts compare by bytes, which is code point
/// order; U+0000 sorts first if both texts hold one, and behind U+007F otherwise. Two UTF-16 texts without
/// supplementary characters compare by bytes in memory, the low one first: U+0141 is less than U+0042. With
/// supplementary characters, a surrogate and a unit from 0xE000 up are each less than the other. Across encodings, a
/// surrogate pair counts as 0xFDEF, and when one text ends, a position in bytes is held against a length in units. To
/// sort, keep all texts in UTF-8, and U+0000 out of them.
inline bool operator<(const StringData& a, const StringData& b) {
    if (a.m_UTF8Buffer) return a.utf8LessThan(b);
    return a.m_UTF16Buffer ? a.utf16LessThan(b) : !b.isNull();
}

// Implementation of the templates. Users need not read on.

template <class CharType>
const CharType* StringData::getBuffer() const {
    const CharType*& buffer = bufferOf<CharType>();
    if constexpr (sizeof(CharType) == 1) {
        if (!buffer && m_UTF16Buffer)
            buffer = stringDataConvertToUTF8(m_UTF16Buffer, m_utf16Info, getCharset(), m_utf8Info);
    } else {
        if (!buffer && m_UTF8Buffer)
            buffer = stringDataConvertToUTF16(m_UTF8Buffer, m_utf8Info, getCharset(), m_utf16Info);
    }
    return buffer;
}

template <class CharType>
const CharType* StringData::getTerminatedBuffer() const {
    const CharType* const buffer = getBuffer<CharType>();
    VORN_ASSERT(buffer || !m_staticConstString,
                "invalid static constant string!!! Both UTF-8 and UTF-16 null terminated buffers should already "
                "initialised statically!!");
    if (!buffer || infoOf<CharType>().m_nullTerminated) return buffer;
    VORN_ASSERT(!m_staticConstString,
                "invalid static constant string!!! Both UTF-8 and UTF-16 null terminated buffers should already "
                "initialised statically!!");
    switch (getAllocationType<CharType>()) {
    case STRING_DATA_EXTERNAL: return nullTerminateExternalString<CharType>();
    case STRING_DATA_STATIC: return nullTerminateStaticString<CharType>();
    case STRING_DATA_DYNAMIC: return nullTerminateDynamicString<CharType>();
    default: return nullptr;
    }
}

} // namespace Vorn
