/// @file
/// StringData: the string record, which holds one immutable text and counts the handles that refer to it.
///
/// A record holds the text in a UTF-8 buffer, in a UTF-16 buffer, or in both. It builds the missing buffer at the first
/// request and keeps it. A substring shares the block of text that it was made from; Documentation/StringBuffers.md
/// describes how records own and move blocks. Programs use String, a handle that maintains the reference count.
///
/// A record does not copy the buffer that it is built from. The text is validated once, on construction; later
/// operations trust the buffers and the charset. UTF-8 text contains no zero byte: U+0000 is written 0xC0 0x80.
///
/// A text has at most 0xFFFFFFFE bytes or units. An operation whose result would be longer throws `Exception<4>`:
/// "length : text too long!" before it allocates or changes anything. Units that no operation has written are zero.
///
/// Threads: nothing is locked, and a read can build a buffer or move the text of another record in the chain. A record,
/// its handles and all records that share its block must be used by one thread at a time. The static constant records,
/// such as that of empty results, may be used by all threads: reading does not change them, and their counts are
/// atomic.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/Config.h"
#include "Vorn/Private/Surprise.h"
#include "Vorn/String/StringDataHelper.h"
#include "Vorn/String/StringDataTypes.h"
#include "Vorn/Types.h"

#include <cstdint>
#include <string>

VORN_ALLOW_SURPRISES_BEGIN

namespace VornPrivate {
struct RecordAccess;    // builds records over text that is known to be valid
struct StringDataProbe; // lets a test build the static records that only the library can build
struct TextRecord;      // builds records over parts of texts
} // namespace VornPrivate

namespace Vorn {

/// The string record behind a String. `CharType` is `unsigned char` for UTF-8 and `UTF16Char` for UTF-16.
class VORN_API StringData {
public:
    /// Builds a record over a UTF-8 text, which is validated and not copied. The reference count is 0.
    ///
    /// @param buffer The text. With `STRING_DATA_DYNAMIC` the record takes ownership of this block of `new[]`.
    /// @param length Length in bytes. If the last byte is zero, it is the terminator and not text. 0xFFFFFFFF means
    ///     that the text ends at its first zero byte.
    /// @param type The ownership of the buffer.
    ///
    /// If it throws, the caller still owns the buffer. Throws `Exception<4>`: "buffer must not be null!!!!". Throws
    /// `Exception<7>` if the text is malformed. Throws `Exception<4>`: "length : text too long!" if a text of unknown
    /// length has no terminator in its first 0xFFFFFFFF bytes; it reads no byte behind these.
    /// @warning Most overlong forms of four bytes (0xF0 0x80 to 0xF0 0x8F) are accepted. Conversions throw
    ///     `Exception<2>` for them later, and lengths throw or are wrong. Test foreign text for these bytes first.
    StringData(const unsigned char* buffer, unsigned int length, StringAllocationType type);

    /// Builds a record over a UTF-16 text, as above; `length` counts units.
    StringData(const UTF16Char* buffer, unsigned int length, StringAllocationType type);

    StringData(const StringData&) = delete;
    StringData& operator=(const StringData&) = delete;

    /// Frees the blocks that the record owns, or passes their ownership to the next record in the chain.
    /// @warning If the record borrows a caller's buffer, its substrings copy their text in this destructor. If memory
    ///     ends there, the process ends.
    ~StringData();

    /// Adds one reference.
    void incRefCount() noexcept {
        if (m_staticConstString)
            addToStaticCount(1);
        else
            ++m_refCount;
    }

    /// Releases one reference. Releasing the last one destroys and frees the record, unless it is a static constant
    /// one.
    void decRefCount() {
        if (m_staticConstString)
            addToStaticCount(0u - 1);
        else if (m_refCount-- == 1)
            destroy();
    }

    /// The number of references. For a static constant record: those of all threads, possibly 0.
    unsigned int getRefCount() const noexcept { return __atomic_load_n(&m_refCount, __ATOMIC_RELAXED); }

    /// Returns true if the record has no buffer; no constructor builds such a record.
    bool isNull() const noexcept { return !m_UTF8Buffer && !m_UTF16Buffer; }

    /// Returns true if the record has no buffer, or one of length 0.
    bool isEmpty() const noexcept {
        return isNull() || (m_UTF8Buffer && m_utf8Info.m_length == 0) || (m_UTF16Buffer && m_utf16Info.m_length == 0);
    }

    bool haveEmbeddedNulls() const noexcept { return m_embeddedNulls; }       ///< true if the text contains U+0000
    bool isStaticConstString() const noexcept { return m_staticConstString; } ///< true if it is never destroyed
    StringDataSubCharset getCharset() const noexcept { return m_charset; }    ///< the smallest charset of the text

    /// Replaces `dest` with the text in UTF-8, without a terminator. U+0000 stays 0xC0 0x80. Does not build the
    /// record's UTF-8 buffer. Throws what `stringDataConvertToUTF8` throws; a text that is too long in UTF-8 leaves
    /// `dest` unchanged. If memory ends, `dest` is unchanged, or empty if the text is held in UTF-16 only.
    VORN_SURPRISE("leaves U+0000 as the bytes 0xC0 0x80; use toUTF8(text)")
    void copyTo(std::string& dest) const;

    /// Returns the length of the text in UTF-8, in bytes. Without a UTF-8 buffer, `stringDataGetUTF8Length` computes it
    /// in each call and may throw.
    unsigned int getUTF8Length() const;

    /// Returns the length of the text in UTF-16, in units. Without a UTF-16 buffer, `stringDataGetUTF16Length` computes
    /// it in each call and may throw.
    unsigned int getUTF16Length() const;

    /// Copies the text in UTF-8 to `dest`, without a terminator. `capacity` is the size of `dest` in bytes.
    ///
    /// Returns the length in bytes. If `capacity` is smaller, writes nothing and returns 0xFFFFFFFF if the record has a
    /// UTF-8 buffer, else the length. Throws what `stringDataConvertCopyToUTF8` throws.
    /// @warning A text with U+0000 that is held only in UTF-16 is written up to two bytes past `capacity`. Pass a
    ///     `capacity` that is two less than the size of `dest`.
    VORN_SURPRISE("can write behind `capacity`, and converts some texts wrongly; use toUTF8(text, dest, capacity)")
    unsigned int copyToUTF8(unsigned char* dest, unsigned int capacity) const;

    /// Copies the text in UTF-16 to `dest`, as above; `capacity` and result count units.
    VORN_SURPRISE("converts supplementary characters wrongly; use toUTF16(text, dest, capacity)")
    unsigned int copyToUTF16(UTF16Char* dest, unsigned int capacity) const;

    /// Returns the existing buffer of this encoding, or null. It is not always terminated.
    template <class CharType>
    const CharType* getPrivateBuffer() const noexcept {
        return bufferOf<CharType>();
    }

    /// Returns the length, offset, links and ownership of this encoding's buffer.
    template <class CharType>
    const StringDataBufferInfo& getBufferInfo() const noexcept {
        return infoOf<CharType>();
    }

    /// Returns the ownership of this encoding's buffer.
    template <class CharType>
    StringAllocationType getAllocationType() const noexcept {
        return infoOf<CharType>().m_allocationType;
    }

    /// Returns the next record in the chain of records that share this encoding's block, or null.
    template <class CharType>
    StringData* getNext() const noexcept {
        return infoOf<CharType>().m_next;
    }

    /// Returns the previous record in that chain, or null.
    template <class CharType>
    StringData* getPrevious() const noexcept {
        return infoOf<CharType>().m_previous;
    }

    /// Returns the buffer of this encoding; builds and keeps it if it is missing. It is not always terminated.
    ///
    /// Returns null if the record has no buffer. Throws what the conversion throws (`stringDataConvertToUTF8`,
    /// `stringDataConvertToUTF16`); the record is then unchanged.
    /// @warning A UTF-16 buffer that is built from UTF-8 contains only the second surrogate of each 4-byte character.
    ///     Keep such text in UTF-8.
    template <class CharType>
    const CharType* getBuffer() const;

    /// Returns the buffer of this encoding with a zero unit behind the text. Builds it if it is missing, and moves or
    /// copies the text if no zero unit follows it yet.
    ///
    /// Throws what `getBuffer` throws. Throws `Exception<1>` for a static constant record that lacks a terminated
    /// buffer.
    /// @warning A later call can move the text and invalidate the pointer: any such call on a string that shares the
    ///     block, and for a static or borrowed text also the second call on this record. From the second call on, the
    ///     pointer of such a text stays valid.
    template <class CharType>
    const CharType* getTerminatedBuffer() const;

    /// Returns true if the text equals the terminated ASCII text `needle`. A needle byte above 127 equals no character.
    /// Throws `Exception<4>`: "Invalid ASCII string!" for a null or empty needle.
    VORN_SURPRISE("compares with ASCII only and throws for an empty text; use equals(text, other)")
    bool equals(const signed char* needle) const;

    /// Returns true if the text starts with the terminated ASCII text `needle`. Throws as `equals` does.
    VORN_SURPRISE("compares with ASCII only and throws for an empty needle; use startsWith(text, needle)")
    bool startsWith(const signed char* needle) const;

    /// Returns true if the text does *not* end with the terminated ASCII text `needle`, and false if it is shorter than
    /// the needle. Throws as `equals` does. To test for the end, use the free function `endsWith`.
    VORN_SURPRISE("returns true if the text does NOT end so; use endsWith(text, needle)")
    bool endsWith(const signed char* needle) const;

    /// Returns true if the text contains `needle`, but searches all offsets only in a terminated UTF-8 text. In any
    /// other text it compares at the offsets 0, n, 2n and so on, where n is the length of the needle, and finds no byte
    /// above 127, so the result can change when the text is terminated. Throws `Exception<4>`: "Invalid string!" for a
    /// null or empty needle.
    VORN_SURPRISE("searches all offsets only in a terminated UTF-8 text; use contains(text, needle)")
    bool contains(const signed char* needle) const;

    /// Returns the number of occurrences of an ASCII character. For 0, counts zero units, which UTF-8 text does not
    /// have. Throws `Exception<4>`: "Invalid ASCII character!" for a byte above 127.
    unsigned int count(signed char c) const;

    /// Returns the number of characters. Counts in each call, in the UTF-16 buffer if there is one.
    /// @warning Throws `Exception<2>` for a text with supplementary characters whose UTF-16 buffer was built from
    ///     UTF-8: that buffer contains only their second surrogates. Call it before the UTF-16 buffer is built.
    VORN_SURPRISE("throws for supplementary characters if their UTF-16 was built from UTF-8; use codePointCount(text)")
    unsigned int getUnicodeLength() const;

    /// Returns the character at an index in characters, but cannot return every character from a UTF-16 buffer.
    ///
    /// A negative index counts from the end; -1 is the last character. Returns 0xFFFFFFFF if there is no character. In
    /// a UTF-16 buffer, an index of 0 or more returns neither a supplementary character nor any character behind one;
    /// with a negative index, a surrogate pair counts as two, and the second of these (-2 for a pair at the end)
    /// returns the character. For such text, give the record a UTF-8 buffer only.
    VORN_SURPRISE("finds no character behind a surrogate pair in UTF-16; use codePointAt(text, n)")
    unsigned int getUnicodeCharAt(int index) const;

    /// Returns a new record over a part of the text, but truncates or refuses UTF-8 parts that do not end on an ASCII
    /// character.
    ///
    /// @param offset First unit: bytes for `unsigned char`, units for `UTF16Char`. A negative offset counts from the
    ///     end; -1 is the last unit.
    /// @param length Number of units; limited to what remains.
    ///
    /// The new record has a reference count of 0. Every empty result is the address of `s_emptyString`. In an encoding
    /// that the record holds, the result shares the block: one allocation and one validation, no copy. In an encoding
    /// that the record lacks, only the part is converted, into a block of its own; a character that does not fit into
    /// `length` is left out, and an offset behind the end returns the empty result (but throws for ASCII text). The
    /// unit behind the text is read if the offset points there.
    ///
    /// UTF-8: the end moves back to the nearest lead byte before it, and that byte is kept. A part that ends with a
    /// character of several bytes therefore throws `Exception<7>` ("Unmatched lead UTF-8 byte for a 2-byte sequence!"
    /// and the like), unless it is one of two bytes at the end of a terminated text. A final U+0000 or character from
    /// U+100000 on is left out whole, but throws at the end of a terminated text. End parts on ASCII characters.
    /// UTF-16: a final first surrogate is left out.
    ///
    /// Throws `Exception<4>`: "Invalid Offset!" if no character starts at the offset or it is outside the text, in
    /// UTF-8 also for U+0000 and characters from U+100000 on. Throws `Exception<2>`: "c != 0xFDEF : Invalid UTF-16
    /// buffer detected!" for a noncharacter. Throws `Exception<4>`: "length : text too long!" if a conversion results
    /// in 0xFFFFFFFF units, which requires a `length` of 0xFFFFFFFF.
    /// @warning Conversions are correct only for an offset of 0 or more, or a negative one whose part ends before the
    ///     end of the text. A negative offset whose part reaches the end results in: from UTF-16, `Exception<2>` with
    ///     "j < destLength : destination buffer too short!", or `Exception<7>` ("ASCII null detected! ...") if the part
    ///     is the whole text; from UTF-8, as many zero units as the part has.
    /// @warning From UTF-16 with an offset of 0 or more, a surrogate pair in the part throws `Exception<2>`, even if
    ///     the pair does not fit, and U+0000 is converted as by `stringDataConvertToUTF8`.
    /// @warning An offset inside a character throws `Exception<4>`: "Invalid offset!" if the source is UCS-2 or the
    ///     offset negative, and returns the empty result otherwise.
    /// @warning If validation of a converted part throws, its block is leaked. If memory ends, nothing is leaked.
    template <class CharType>
    VORN_SURPRISE("throws or truncates if a part in UTF-8 does not end with ASCII; use substring(text, offset, length)")
    StringData* substr(int offset, unsigned int length) const;

    /// Sets the length of the UTF-8 text for editing in place. Writes no terminator and updates no flag. Throws
    /// `Exception<2>`: "getRefCount() == 1 : Can't set length on a string with more than one reference!!!" or
    /// "getAllocationType<CharType>() == STRING_DATA_DYNAMIC : Can't set length of a non-dynamic string!!!". Throws
    /// `Exception<4>`: "length : text too long!" for a length of 0xFFFFFFFF.
    void setLength(unsigned int length) {
        using CharType = unsigned char;
        VORN_INTERNAL_ASSERT(getRefCount() == 1, "Can't set length on a string with more than one reference!!!");
        VORN_INTERNAL_ASSERT(getAllocationType<CharType>() == STRING_DATA_DYNAMIC,
                             "Can't set length of a non-dynamic string!!!");
        if (length > VornPrivate::MAX_TEXT_LENGTH) VORN_THROW(E::PARAMETER, "length : text too long!");
        m_utf8Info.m_length = length;
    }

    /// The record of every empty result. Its reference count starts at 0, and it is never destroyed.
    static StringData s_emptyString;

private:
    friend class String;
    friend class UTF8String;
    template <class CharType>
    friend class StringOwnerMap;
    friend bool operator==(const StringData& a, const StringData& b);
    friend bool operator<(const StringData& a, const StringData& b);
    friend struct VornPrivate::RecordAccess;
    friend struct VornPrivate::StringDataProbe;
    friend struct VornPrivate::TextRecord;

    // Builds a static constant record over two terminated buffers, without validation.
    constexpr StringData(const unsigned char* utf8, const UTF16Char* utf16, unsigned int length,
                         unsigned int refCount) noexcept
        : m_utf8Info{nullptr, nullptr, length, 0, STRING_DATA_STATIC, 1},
          m_utf16Info{nullptr, nullptr, length, 0, STRING_DATA_STATIC, 1}, m_UTF8Buffer(utf8), m_UTF16Buffer(utf16),
          m_refCount(refCount), m_charset(STRING_DATA_ASCII), m_embeddedNulls(0), m_staticConstString(1), m_isPart(0) {}

    static constexpr std::uint64_t UNKNOWN_LENGTH = UINT64_MAX;

    // Returns the length that arguments of public constructors mean, with the terminator counted in. As specified,
    // 0xFFFFFFFF units and a terminator wrap around to 0.
    static constexpr std::uint64_t countedLength(unsigned int length, bool terminated) noexcept {
        if (terminated) return length == 0xFFFFFFFF ? 0 : std::uint64_t(length) + 1;
        return length == 0xFFFFFFFF ? UNKNOWN_LENGTH : length;
    }

    // A record over a text whose length is known, also where that is 0xFFFFFFFF with the terminator counted in, or is
    // UNKNOWN_LENGTH.
    struct CountedLength {};
    StringData(const unsigned char* buffer, std::uint64_t length, StringAllocationType type, CountedLength);
    StringData(const UTF16Char* buffer, std::uint64_t length, StringAllocationType type, CountedLength);

    // Inserts a record, whose text starts `start` units behind that of `parent`, in the chain behind `parent`.
    template <class CharType>
    static void insertBehind(const StringData& parent, StringData& part, unsigned int start) noexcept {
        StringDataBufferInfo& info = parent.infoOf<CharType>();
        StringDataBufferInfo& partInfo = part.infoOf<CharType>();
        partInfo.m_previous = const_cast<StringData*>(&parent);
        partInfo.m_next = info.m_next;
        partInfo.m_offset = info.m_offset + start;
        if (info.m_next) info.m_next->infoOf<CharType>().m_previous = &part;
        info.m_next = &part;
    }

    // True if an edit in place would change the text of a part in the chain of the UTF-8 buffer.
    bool isEditSeenByParts() const noexcept;

    // Threads that share no string share the static constant records, so their counts are atomic. Relaxed, because such
    // a count decides nothing: the record is constant and is never destroyed.
    void addToStaticCount(unsigned int change) noexcept { __atomic_fetch_add(&m_refCount, change, __ATOMIC_RELAXED); }

    // Destroys and frees the record. Out of line, or compilers that see two handles in one function warn of the second.
    void destroy();

    // Releases the buffers and takes ownership of a block of `new[]` instead. If it throws, the caller owns the block.
    // If memory ends, the text of this record and of its substrings is unchanged.
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

    // Substrings converted from the other encoding; see StringDataSubstring.cpp.
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

    // Copies the text of this record, and of all records behind it in the chain, out of a block that is invalidated.
    template <class CharType>
    void detachExternalBuffer();

    // Copies the text of the substrings of a borrowed block out of it, and unlinks them from this record. Allocates at
    // most once for each encoding; if that throws, the chain is unchanged. `destroyBuffers` throws only what this does.
    void detachSubstrings();
    template <class CharType>
    void detachSubstrings();

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

    // Mutable, because reading the text can change how it is stored.
    mutable StringDataBufferInfo m_utf8Info;
    mutable StringDataBufferInfo m_utf16Info;
    mutable const unsigned char* m_UTF8Buffer; // first byte of the text, or null
    mutable const UTF16Char* m_UTF16Buffer;    // first unit of the text, or null
    unsigned int m_refCount;                   // number of references
    StringDataSubCharset m_charset : 29;       // the scan result of the first buffer
    unsigned int m_embeddedNulls : 1;          // 1 if the text contains U+0000
    unsigned int m_staticConstString : 1;      // 1 if it is never destroyed; both buffers are terminated from the start
    unsigned int m_isPart : 1;                 // 1 if it shares a block and no edit of another string may change it
};

static_assert(sizeof(void*) != 4 || sizeof(StringData) == 56, "two infos, two pointers, a count, a word of flags");

/// Returns true if the two texts are equal, in all pairs of encodings. Texts of different charsets are not equal.
/// @warning Compares a buffer that was built from the other encoding as it is, also where the conversion is not exact.
///     A text with supplementary characters in UTF-8 is unequal to the same text in UTF-16 once its UTF-16 buffer is
///     built: that buffer contains only the second surrogates. A text with U+0000 or surrogate pairs in UTF-16 can be
///     unequal to the same text in UTF-8 once its UTF-8 buffer is built; see `stringDataConvertToUTF8`.
inline bool operator==(const StringData& a, const StringData& b) {
    if (a.getCharset() != b.getCharset()) return false;
    if (a.m_UTF8Buffer) return a.utf8Equal(b);
    return a.m_UTF16Buffer ? a.utf16Equal(b) : b.isNull();
}

inline bool operator!=(const StringData& a, const StringData& b) { return !(a == b); }

/// Compares for sorting, but not by code point, and in part without a strict order. To sort, keep all texts in UTF-8
/// and free of U+0000.
///
/// - Two UTF-8 texts compare by bytes, which is code point order. U+0000 sorts first if both texts contain it, and
///   behind U+007F otherwise.
/// - Two UTF-16 texts without supplementary characters compare by bytes in memory, the low byte of a unit first: U+0141
///   is less than U+0042.
/// - Two UTF-16 texts with supplementary characters: a surrogate and a unit from 0xE000 on are each less than the
///   other.
/// - Across encodings, a surrogate pair counts as 0xFDEF. When one text ends, an offset in bytes is compared with a
///   length in units.
VORN_SURPRISE("does not order by code point; use compare(a, b), or CodePointLess in containers")
inline bool operator<(const StringData& a, const StringData& b) {
    if (a.m_UTF8Buffer) return a.utf8LessThan(b);
    return a.m_UTF16Buffer ? a.utf16LessThan(b) : !b.isNull();
}

// Implementation of the templates; not needed for using the class.

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

VORN_ALLOW_SURPRISES_END
