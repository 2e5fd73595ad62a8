/// @file
/// String: an immutable Unicode text, shared by reference counting.
///
/// A String is a handle of two words that refers to a string record (StringData). Copying it costs one increment. The
/// record holds the text in UTF-8, in UTF-16 or in both.
///
/// A String does not copy the buffer that it is built from. With `STRING_DATA_EXTERNAL` the buffer must outlive the
/// string, its copies and its substrings. A null string refers to no record and differs from an empty string. To edit a
/// text, use UTF8String. Interop.h connects strings with standard containers, streams and text types.
///
/// Threads: ordinary reference counts are plain integers, and reading can move text. All strings that share a record or
/// a block of text must be used by one thread at a time. Empty strings on the record of `s_emptyString` may be used by
/// all threads.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/Private/StringArguments.h"
#include "Vorn/Private/Surprise.h"
#include "Vorn/String/StringData.h"
#include "Vorn/Types.h"

#include <cstddef>
#include <string>

VORN_ALLOW_SURPRISES_BEGIN

namespace Vorn {

/// An immutable text, shared by reference counting.
class VORN_API String {
public:
    /// Builds a null string.
    String() noexcept : m_data(nullptr) {}

    /// Builds a string that shares the record of `other`.
    String(const String& other) noexcept : m_data(other.m_data) { acquireReference(); }

    /// Builds a string that refers to `data` and acquires a reference; null results in a null string. Operations that
    /// build a record return it with a reference count of 0.
    String(StringData* data) noexcept : m_data(data) { acquireReference(); }

    /// Builds a string over a UTF-8 text, which is validated and not copied.
    ///
    /// @param buffer The text. With `STRING_DATA_DYNAMIC` the string takes ownership of this block of `new[]`.
    /// @param length Length in bytes. If the last byte is zero, it is the terminator and not text. 0xFFFFFFFF means
    ///     that the text ends at its first zero byte.
    /// @param type The ownership of the buffer.
    ///
    /// If it throws, the caller still owns the buffer. Throws `Exception<4>`: "buffer must not be null!!!!". Throws
    /// `Exception<7>` if the text is malformed. Throws `Exception<4>`: "length : text too long!" if a text of unknown
    /// length has no terminator in its first 0xFFFFFFFF units; it reads no unit behind these.
    String(const unsigned char* buffer, unsigned int length = 0xFFFFFFFF,
           StringAllocationType type = STRING_DATA_EXTERNAL);
    String(const char* buffer, unsigned int length = 0xFFFFFFFF, StringAllocationType type = STRING_DATA_EXTERNAL);

    /// Builds a string over a UTF-16 text, as above; `length` counts units.
    String(const UTF16Char* buffer, unsigned int length = 0xFFFFFFFF, StringAllocationType type = STRING_DATA_EXTERNAL);

    /// Builds a string over a text of `length` units, as above. `nullTerminated` states that a terminator follows them.
    /// @warning A length of 0xFFFFFFFF with `nullTerminated` set results in an empty string. To have a text measured,
    ///     use the form without the flag.
    String(const unsigned char* buffer, unsigned int length, StringAllocationType type, bool nullTerminated);
    String(const char* buffer, unsigned int length, StringAllocationType type, bool nullTerminated);
    String(const UTF16Char* buffer, unsigned int length, StringAllocationType type, bool nullTerminated);

    /// Copies a UTF-8 text, but leaks the copy: it is never freed. An empty text shares the record of `s_emptyString`.
    /// For temporary text, pass a block of `new[]` with `STRING_DATA_DYNAMIC` to another constructor. Throws
    /// `Exception<7>` if the text is malformed or contains a zero byte. Throws `Exception<4>`: "length : text too
    /// long!" for more than 0xFFFFFFFE bytes, before it allocates.
    VORN_SURPRISE("never frees its copy; use makeString(text)")
    String(const std::string& text);

    /// Releases the reference.
    /// @warning If this is the last reference to a record that borrows a caller's buffer, its substrings copy their
    ///     text. If memory ends there, the process ends. Destroy the substrings of borrowed text first.
    virtual ~String() {
        if (m_data) m_data->decRefCount();
    }

    /// Acquires a reference to the record of `other`, then releases the old one.
    /// @warning Releasing the last reference to a record that borrows a caller's buffer can end the process, as in the
    ///     destructor. Destroy the substrings of borrowed text first.
    String& operator=(const String& other);

    /// Refers to the text of a literal, as the constructor does.
    template <class Unit, std::size_t Size, VornPrivate::IfStringUnit<Unit> = 0>
    String& operator=(const Unit (&literal)[Size]) {
        return *this = String(literal);
    }

    /// Refers to a text that something else owns, as the constructor does.
    /// @{
    template <class Unit, std::size_t Size, VornPrivate::IfStringUnit<Unit> = 0>
    VORN_SURPRISE("copies nothing: the text must outlive the string; use makeString(text)")
    String& operator=(Unit (&buffer)[Size]) {
        return *this = String(buffer);
    }
    template <class Pointer, VornPrivate::IfStringPointer<Pointer> = 0>
    VORN_SURPRISE("copies nothing: the text must outlive the string; use makeString(text)")
    String& operator=(Pointer text) {
        return *this = String(text);
    }
    /// @}

    /// Appends `other`, but keeps only the first half of a left text that is held in UTF-16 alone; zero units take the
    /// place of the second half. Call `getCString` on the left side first to give it a UTF-8 buffer, if its conversion
    /// is exact (`stringDataConvertToUTF8`).
    ///
    /// The result is a new record: in UTF-8 if this string has a UTF-8 buffer, else in UTF-16. Other handles keep the
    /// old text. Costs two allocations, one copy and one validation of the whole text. A null `other` changes nothing.
    /// An empty `other` makes a null string empty and otherwise changes nothing. A string without text shares the
    /// record of `other`.
    ///
    /// If memory ends, throws `std::bad_alloc` and changes nothing. Throws `Exception<4>`: "length : text too long!" if
    /// the joined text would have more than 0xFFFFFFFE bytes or units, and changes nothing. Throws what converting
    /// `other` throws. Throws `Exception<7>` if the joined text is malformed.
    /// @warning A conversion of `other` that is not exact changes the joined text or makes it malformed: U+0000 held in
    ///     UTF-16 truncates `other` in UTF-8 without an error; supplementary characters held in UTF-8 are malformed in
    ///     UTF-16; U+007F beside supplementary characters in UTF-16 is malformed in UTF-8.
    /// @warning The old record is released before the joined text is validated. If validation throws, the joined text
    ///     is leaked. The string is then null if it owned the last reference. Otherwise it keeps pointing at the old
    ///     record without owning a reference, so the record is destroyed too early: call `getData()->incRefCount()` at
    ///     once, while another handle owns the record.
    VORN_SURPRISE("keeps only half of a text that is held in UTF-16; use a + b, or concat(a, b)")
    String& operator+=(const String& other);

    /// Not for standard texts, of which the copy would never be freed.
    template <class Text, VornPrivate::IfStandardText<Text> = 0>
    String& operator+=(const Text&) {
        static_assert(VornPrivate::NEVER<Text>, "a standard text would be leaked: write s = s + text, or s += "
                                                "makeString(text)");
        return *this;
    }

    StringData* getData() const noexcept { return m_data; } ///< the string record; null for a null string

    bool isNull() const noexcept { return !m_data || m_data->isNull(); } ///< true if there is no text
    bool isNotNull() const noexcept { return !isNull(); }                ///< true if there is a text, also an empty one
    bool isEmpty() const noexcept { return !m_data || m_data->isEmpty(); } ///< true if null or of length 0

    /// Returns true if the text contains U+0000; false for a null string.
    bool haveEmbeddedNulls() const noexcept { return m_data && m_data->haveEmbeddedNulls(); }

    /// Returns the smallest charset that contains the text; `STRING_DATA_ASCII` for a null string.
    StringDataSubCharset getCharset() const noexcept { return m_data ? m_data->getCharset() : STRING_DATA_ASCII; }

    /// Replaces `dest` with the text in UTF-8, see `StringData::copyTo`. A null string clears it.
    VORN_SURPRISE("leaves U+0000 as the bytes 0xC0 0x80; use toUTF8(text)")
    void copyTo(std::string& dest) const;

    /// Returns the text in UTF-8, terminated; an empty text for a null string. May build the UTF-8 buffer. Throws what
    /// `StringData::getTerminatedBuffer` throws.
    /// @warning A later call on this string, or on one that shares its block, can move the text and invalidate the
    ///     pointer; see `StringData::getTerminatedBuffer`.
    const char* getCString() const;

    /// Returns the number of characters, with the limits of `StringData::getUnicodeLength`; 0 for a null string.
    VORN_SURPRISE("throws for supplementary characters if their UTF-16 was built from UTF-8; use codePointCount(text)")
    unsigned int getUnicodeLength() const { return m_data ? m_data->getUnicodeLength() : 0; }

    /// Returns the character at an index, with the limits of `StringData::getUnicodeCharAt`; 0xFFFFFFFF if there is
    /// none.
    VORN_SURPRISE("finds no character behind a surrogate pair in UTF-16; use codePointAt(text, n)")
    unsigned int getUnicodeCharAt(int index) const { return m_data ? m_data->getUnicodeCharAt(index) : 0xFFFFFFFF; }

    // Comparison with an ASCII needle. A null string returns false and ignores the needle. All others throw
    // `Exception<4>` for a null or empty needle; see StringData.

    /// Returns true if the text equals `needle`.
    VORN_SURPRISE("compares with ASCII only and throws for an empty text; use equals(text, other)")
    bool equals(const signed char* needle) const { return m_data && m_data->equals(needle); }
    VORN_SURPRISE("compares with ASCII only and throws for an empty text; use equals(text, other)")
    bool equals(const char* needle) const { return equals(asSigned(needle)); }

    /// Returns true if the text starts with `needle`.
    VORN_SURPRISE("compares with ASCII only and throws for an empty needle; use startsWith(text, needle)")
    bool startsWith(const signed char* needle) const { return m_data && m_data->startsWith(needle); }
    VORN_SURPRISE("compares with ASCII only and throws for an empty needle; use startsWith(text, needle)")
    bool startsWith(const char* needle) const { return startsWith(asSigned(needle)); }

    /// Returns true if the text does *not* end with `needle`, and false if it is shorter than the needle. To test for
    /// the end, use the free function `endsWith`.
    VORN_SURPRISE("returns true if the text does NOT end so; use endsWith(text, needle)")
    bool endsWith(const signed char* needle) const { return m_data && m_data->endsWith(needle); }
    VORN_SURPRISE("returns true if the text does NOT end so; use endsWith(text, needle)")
    bool endsWith(const char* needle) const { return endsWith(asSigned(needle)); }

    /// Returns true if the text contains `needle`, but searches all offsets only in a terminated UTF-8 text; see
    /// `StringData::contains`. To search any text, use the free function `contains`.
    VORN_SURPRISE("searches all offsets only in a terminated UTF-8 text; use contains(text, needle)")
    bool contains(const signed char* needle) const { return m_data && m_data->contains(needle); }
    VORN_SURPRISE("searches all offsets only in a terminated UTF-8 text; use contains(text, needle)")
    bool contains(const char* needle) const { return contains(asSigned(needle)); }

    /// Returns the number of occurrences of an ASCII character; 0 for a null string. Throws `Exception<4>`: "Invalid
    /// ASCII character!" for a byte above 127.
    unsigned int count(signed char c) const { return m_data ? m_data->count(c) : 0; }
    unsigned int count(char c) const { return count(static_cast<signed char>(c)); }

    /// Returns an empty string, which shares the record of `s_emptyString`.
    static String getEmptyString() { return s_emptyString; }

    /// Returns a null string.
    static String getNullString() noexcept { return String(); }

    /// The empty string, which is not null. Initialised at compile time.
    static const String s_emptyString;

private:
    friend class UTF8String;

    // Builds the handle of a static record, whose initial count includes it.
    constexpr explicit String(StringData& counted) noexcept : m_data(&counted) {}

    static const signed char* asSigned(const char* text) { return reinterpret_cast<const signed char*>(text); }

    template <class CharType>
    void append(const StringData& other);

    void acquireReference() const noexcept {
        if (m_data) m_data->incRefCount();
    }

    static StringData s_emptyRecord;

    StringData* m_data; // null for a null string; otherwise this handle owns one of its references
};

static_assert(sizeof(void*) != 4 || sizeof(String) == 8, "two words");

/// Returns true if both strings are null or have the same text, in all pairs of encodings; see `operator==` of
/// StringData for its limit. A null string is not equal to an empty one.
inline bool operator==(const String& a, const String& b) {
    if (a.getData() == b.getData()) return true;
    return a.getData() && b.getData() && *a.getData() == *b.getData();
}

inline bool operator!=(const String& a, const String& b) { return !(a == b); }

/// Compares for sorting, but not by code point, and without a strict order for some texts in UTF-16; see `operator<` of
/// StringData. A null string is less than every other string.
VORN_SURPRISE("does not order by code point; use compare(a, b), or CodePointLess in containers")
inline bool operator<(const String& a, const String& b) {
    if (a.getData() == b.getData() || !b.getData()) return false;
    return !a.getData() || *a.getData() < *b.getData();
}

VORN_SURPRISE("does not order by code point; use compare(a, b), or CodePointLess in containers")
inline bool operator>(const String& a, const String& b) { return b < a; }
VORN_SURPRISE("does not order by code point; use compare(a, b), or CodePointLess in containers")
inline bool operator<=(const String& a, const String& b) { return !(a > b); }
VORN_SURPRISE("does not order by code point; use compare(a, b), or CodePointLess in containers")
inline bool operator>=(const String& a, const String& b) { return !(a < b); }

} // namespace Vorn

VORN_ALLOW_SURPRISES_END
