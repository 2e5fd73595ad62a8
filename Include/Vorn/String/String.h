// String: the library's text value.
//
// A handle of two words on a shared, immutable, counted record (StringData). Copying costs an increment, and a copy
// never sees a change. The record may hold its text as UTF-8, as UTF-16 or as both.
//
// A String does not copy the buffer that it is built from: with STRING_DATA_EXTERNAL the buffer must live as long as
// the string and everything cut from it by pointer. A null string, which has no record, differs from an empty one. For
// text that is edited piece by piece take UTF8String.
//
// Threads: counts are plain integers, and reading can move text. All strings that share a record or a block of text
// belong to one thread at a time. Empty strings on the record of `s_emptyString` may be used in any thread.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/String/StringData.h"
#include "Vorn/Types.h"

#include <string>

namespace Vorn {

/// Handle on a shared, immutable text.
class VORN_API String {
public:
    /// A null string.
    String() noexcept : m_data(nullptr) {}

    /// Shares the record of `other`.
    String(const String& other) noexcept : m_data(other.m_data) { addShare(); }

    /// Takes a share of `data`; null gives a null string. Operations that make a record return it with a count of 0,
    /// and this constructor makes it 1.
    String(StringData* data) noexcept : m_data(data) { addShare(); }

    /// A string over a UTF-8 text, which is not copied. `length` counts bytes: if the last of them is zero, it is the
    /// terminator and not text; 0xFFFFFFFF stands for a text that ends at its first zero byte. With
    /// `STRING_DATA_DYNAMIC` the string takes over a block of array new.
    /// Raises `Exception<4>` with "buffer must not be null!!!!", and `Exception<7>` if the text is not valid; the
    /// buffer then stays with the caller. Throws `Exception<4>`: "length : text too long!" if a text of unknown length
    /// has no terminator in its first 0xFFFFFFFF units; no unit behind these is read.
    String(const unsigned char* buffer, unsigned int length = 0xFFFFFFFF,
           StringAllocationType type = STRING_DATA_EXTERNAL);
    String(const char* buffer, unsigned int length = 0xFFFFFFFF, StringAllocationType type = STRING_DATA_EXTERNAL);

    /// The same over a UTF-16 text; `length` counts units.
    String(const UTF16Char* buffer, unsigned int length = 0xFFFFFFFF, StringAllocationType type = STRING_DATA_EXTERNAL);

    /// The same for a text of `length` units with, if `nullTerminated` is set, a terminator behind them.
    /// @warning With a length of 0xFFFFFFFF and the flag set, the string is empty. With 0xFFFFFFFE and the flag set,
    ///     the text ends at its first zero unit, as with 0xFFFFFFFF alone.
    String(const unsigned char* buffer, unsigned int length, StringAllocationType type, bool nullTerminated);
    String(const char* buffer, unsigned int length, StringAllocationType type, bool nullTerminated);
    String(const UTF16Char* buffer, unsigned int length, StringAllocationType type, bool nullTerminated);

    /// Copies the UTF-8 text into a block that is never freed; an empty text shares the record of `s_emptyString`. For
    /// text that comes and goes, hand a block of array new to another constructor with `STRING_DATA_DYNAMIC`.
    /// Raises `Exception<7>` if the text is not valid, also for a zero byte inside it. Throws `Exception<4>`:
    /// "length : text too long!" for a text of more than 0xFFFFFFFE bytes, before it allocates.
    String(const std::string& text);

    virtual ~String() {
        if (m_data) m_data->decRefCount();
    }

    /// Takes a share of the record of `other` and then gives up its own.
    String& operator=(const String& other);

    /// Copies only the first half of the left text if that is held in UTF-16 alone: zero bytes take the place of the
    /// second half. For UTF-16 texts call `getCString` on the left side first, which gives it UTF-8 unless that garbles
    /// it; see `stringDataConvertToUTF8`.
    ///
    /// Appends `other` in a new record, in UTF-8 if this string has a UTF-8 buffer, else in UTF-16; other handles on
    /// the old record still see the old text. Costs two allocations, a copy and a scan of the whole. If either side is
    /// null or empty, nothing is copied: a null `other` changes nothing, an empty one makes a null string empty, and a
    /// string without text shares the record of `other`. Raises `Exception<7>` if the scan refuses the joined text, and
    /// what converting `other` raises. Throws `Exception<4>`: "length : text too long!" if the joined text would have
    /// more than 0xFFFFFFFE bytes or units; nothing has changed then.
    /// @warning What converting `other` garbles comes garbled into the joined text: U+0000 in UTF-16 costs the end of
    ///     `other` in UTF-8, unseen; supplementary characters in UTF-8 are refused by a text in UTF-16, and U+007F next
    ///     to supplementary characters in UTF-16 by a text in UTF-8.
    /// If memory ends, throws `std::bad_alloc` and changes nothing.
    /// @warning The old record is released before the new text is scanned. After a refusal this string is null if it
    ///     held the last share; otherwise it still points at the old record but has given up its share: the record dies
    ///     too early unless somebody takes another one. The joined text is lost in either case.
    String& operator+=(const String& other);

    StringData* getData() const noexcept { return m_data; } ///< the record, null for a null string

    bool isNull() const noexcept { return !m_data || m_data->isNull(); }   ///< no text at all
    bool isNotNull() const noexcept { return !isNull(); }                  ///< a text, perhaps an empty one
    bool isEmpty() const noexcept { return !m_data || m_data->isEmpty(); } ///< null, or a text of no characters

    /// True if the text contains U+0000; false for a null string.
    bool haveEmbeddedNulls() const noexcept { return m_data && m_data->haveEmbeddedNulls(); }

    /// The narrowest repertoire that holds the text; `STRING_DATA_ASCII` for a null string.
    StringDataSubCharset getCharset() const noexcept { return m_data ? m_data->getCharset() : STRING_DATA_ASCII; }

    /// Replaces `dest` by the text in UTF-8, see `StringData::copyTo`; a null string clears it.
    void copyTo(std::string& dest) const;

    /// The text in UTF-8, terminated; a pointer to an empty text for a null string. May build the UTF-8 buffer.
    /// @warning The pointer dies at the next call on this string or on a relative of it that can move the buffer; see
    ///     `StringData::getTerminatedBuffer`.
    const char* getCString() const;

    /// Characters in the text, see `StringData::getUnicodeLength`; 0 for a null string.
    unsigned int getUnicodeLength() const { return m_data ? m_data->getUnicodeLength() : 0; }

    /// The character at an index, with the limits of `StringData::getUnicodeCharAt`; 0xFFFFFFFF if there is none.
    unsigned int getUnicodeCharAt(int index) const { return m_data ? m_data->getUnicodeCharAt(index) : 0xFFFFFFFF; }

    // Questions with an ASCII needle. A null string answers false without looking at the needle; any other one raises
    // `Exception<4>` for a null or empty needle.

    /// True if the text is `needle`.
    bool equals(const signed char* needle) const { return m_data && m_data->equals(needle); }
    bool equals(const char* needle) const { return equals(asSigned(needle)); }

    /// True if the text starts with `needle`.
    bool startsWith(const signed char* needle) const { return m_data && m_data->startsWith(needle); }
    bool startsWith(const char* needle) const { return startsWith(asSigned(needle)); }

    /// Answers the inverse: true if the text does NOT end with `needle`, false also if it is shorter than the needle.
    bool endsWith(const signed char* needle) const { return m_data && m_data->endsWith(needle); }
    bool endsWith(const char* needle) const { return endsWith(asSigned(needle)); }

    /// Searches everywhere only in a terminated UTF-8 text, otherwise at multiples of the needle's length; see
    /// `StringData::contains`. Call `getCString` twice first to have the text terminated.
    bool contains(const signed char* needle) const { return m_data && m_data->contains(needle); }
    bool contains(const char* needle) const { return contains(asSigned(needle)); }

    /// Occurrences of an ASCII character; 0 for a null string. Raises `Exception<4>` for a byte above 127.
    unsigned int count(signed char c) const { return m_data ? m_data->count(c) : 0; }
    unsigned int count(char c) const { return count(static_cast<signed char>(c)); }

    /// A string on the record of `s_emptyString`.
    static String getEmptyString() { return s_emptyString; }

    /// A null string.
    static String getNullString() noexcept { return String(); }

    /// The empty string: not null, and of no characters. Ready at load.
    static const String s_emptyString;

private:
    friend class UTF8String;

    // The one handle on a static record, which counts it already.
    constexpr explicit String(StringData& counted) noexcept : m_data(&counted) {}

    static const signed char* asSigned(const char* text) { return reinterpret_cast<const signed char*>(text); }

    template <class CharType>
    void append(const StringData& other);

    void addShare() const noexcept {
        if (m_data) m_data->incRefCount();
    }

    static StringData s_emptyRecord;

    StringData* m_data; // null for a null string; otherwise this handle is counted in it
};

static_assert(sizeof(void*) != 4 || sizeof(String) == 8, "two words");

/// True if both handles are null or hold the same text, in whatever encodings; see `operator==` of StringData for its
/// one limit. A null string is not equal to an empty one.
inline bool operator==(const String& a, const String& b) {
    if (a.getData() == b.getData()) return true;
    return a.getData() && b.getData() && *a.getData() == *b.getData();
}

inline bool operator!=(const String& a, const String& b) { return !(a == b); }

/// Not the order of code points, and no order at all for some texts in UTF-16; see `operator<` of StringData. A null
/// string is less than every other one.
inline bool operator<(const String& a, const String& b) {
    if (a.getData() == b.getData() || !b.getData()) return false;
    return !a.getData() || *a.getData() < *b.getData();
}

inline bool operator>(const String& a, const String& b) { return b < a; }
inline bool operator<=(const String& a, const String& b) { return !(a > b); }
inline bool operator>=(const String& a, const String& b) { return !(a < b); }

} // namespace Vorn
