// UTF8String: a text that is walked, searched and edited in place, in UTF-8.
//
// It is a String, shares its record until the first edit, and shares it again when it is copied. All positions are byte
// offsets, never character counts. An index inside a character stands for the next character, but the offset that a
// search then reports is too small by the bytes in between: search from offsets of character starts.
//
// Cost: a search decodes nothing and takes time in proportion to the lengths of the text and of what it looks for. An
// edit that lengthens the text allocates exactly the room it needs, copies the text and scans it; one that does not
// costs a move of the tail. To build a long text piece by piece, collect it in a std::string first.
//
// A string with no record cannot be edited; start from a buffer or from a String that has one, such as
// String::getEmptyString(). Bytes that an edit writes are not scanned: charset and embedded-null flag stay those of the
// text before the last edit that lengthened it.
//
// A text has at most 0xFFFFFFFE bytes; see StringData. Searches and `erase` work on texts of any length, though an
// index above 0x7FFFFFFF cannot be given to them: count from the end instead. `insert` and `replace` refuse texts of
// 2^31 bytes and more with "Invalid index!".
//
// Threads: a read can store a buffer in the shared record. A string and all that share its record belong to one thread.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/PrintInt.h" // HexWithPrefix
#include "Vorn/String/ASCIITable.h"
#include "Vorn/String/String.h"
#include "Vorn/Types.h"

#include <string_view>
#include <type_traits>

namespace Vorn {

/// An editable text in UTF-8.
class VORN_API UTF8String : public String {
public:
    /// A string with no record. It cannot be edited: see `append`.
    UTF8String() noexcept : m_capacity(0) {}

    /// Shares the record of `other`.
    UTF8String(const UTF8String& other) noexcept : String(other), m_capacity(0) {}
    UTF8String(const String& other) noexcept : String(other), m_capacity(0) {}

    /// Takes a share of `data`; null gives a string with no record.
    UTF8String(StringData* data) noexcept : String(data), m_capacity(0) {}

    /// A string over a text that is not copied; see the constructors of String.
    UTF8String(const char* buffer, unsigned int length = 0xFFFFFFFF, StringAllocationType type = STRING_DATA_EXTERNAL)
        : String(buffer, length, type), m_capacity(0) {}
    UTF8String(const unsigned char* buffer, unsigned int length = 0xFFFFFFFF,
               StringAllocationType type = STRING_DATA_EXTERNAL)
        : String(buffer, length, type), m_capacity(0) {}
    UTF8String(const UTF16Char* buffer, unsigned int length = 0xFFFFFFFF,
               StringAllocationType type = STRING_DATA_EXTERNAL)
        : String(buffer, length, type), m_capacity(0) {}

    /// The same for a text of `length` units with, if `terminated` is set, a terminator behind them.
    UTF8String(const char* buffer, unsigned int length, StringAllocationType type, bool terminated)
        : String(buffer, length, type, terminated), m_capacity(0) {}
    UTF8String(const unsigned char* buffer, unsigned int length, StringAllocationType type, bool terminated)
        : String(buffer, length, type, terminated), m_capacity(0) {}
    UTF8String(const UTF16Char* buffer, unsigned int length, StringAllocationType type, bool terminated)
        : String(buffer, length, type, terminated), m_capacity(0) {}

    ~UTF8String() override { freeUncountedRecord(); }

    /// Shares the record of `other` as String does.
    UTF8String& operator=(const UTF8String& other) { return *this = static_cast<const String&>(other); }
    UTF8String& operator=(const String& other);

    /// Bytes of the text. Builds the UTF-8 buffer if the record lacks it, as `getBuffer` does.
    unsigned int getLength() const;

    /// The text in UTF-8, not always terminated; null if there is none. Raises what building it from UTF-16 raises.
    /// @warning The pointer dies at the next edit, search or step that moves the text; see
    ///     `StringData::getTerminatedBuffer`.
    const unsigned char* getBuffer() const;

    /// The first byte of the first character at or after `index`, in a terminated buffer. A negative index counts from
    /// the end and is made an offset in place; it is not moved to the character. Raises `Exception<4>` with
    /// "Invalid index!" for an index outside the text, which includes its end, and for one whose offset is above
    /// 0x7FFFFFFF and does not fit `index`, which then stays as it was.
    /// @warning The pointer dies as that of `getBuffer`: in a text that was not terminated, at the next such call too.
    const unsigned char* getTerminatedBuffer(int& index) const;

    /// The byte at the first character start at or after `index`; raises as `getTerminatedBuffer` does, but for no
    /// offset inside the text. An index from 0x80000000 on counts from the end, as a negative one does there.
    /// @warning So it does in a text of more than 2^31 bytes, too: there, read `getBuffer()[index]`.
    unsigned char get(unsigned int index) const;
    unsigned char operator[](unsigned int index) const { return get(index); }

    /// Offset of the character behind the one at `index`; the length at the end and behind it. Terminates the text.
    unsigned int next(unsigned int index) const;

    /// Fails on a character of 4 bytes, unless `index` lies inside it or at or behind the end of the text: raises
    /// `Exception<2>` with "!Unicode::validUTF8Trail(buffer[index]) : Invalid UTF-8 string". Otherwise the offset of
    /// the character before `index`; 0xFFFFFFFF for an empty text and an index of 0.
    unsigned int previous(unsigned int index) const;

    /// The first byte of `ptr[0]` to `ptr[3]` that is no trail byte. Raises `Exception<2>` if all four are.
    const unsigned char* skipTrailBytes(const unsigned char* ptr) const;

    // Searches. The index of each must be inside the text, so that every search in an empty text raises `Exception<4>`
    // with "Invalid index!"; a negative one counts from the end. A null or empty needle raises "Invalid string!", a
    // code that has no UTF-8 form `Exception<7>` with "Invalid Unicode Character!". All of them terminate the text, and
    // that of a String needle, which can move both.

    /// Offset of the first occurrence at or after `index`; the length of the text if there is none.
    unsigned int find(unsigned int c, int index = 0) const;
    unsigned int find(String s, int index = 0) const;
    unsigned int find(const char* s, int index = 0) const;
    unsigned int find(const ASCIITable& table, int index = 0) const; ///< of any character of the set

    /// Offset of the first place at or after `index` that does not continue a run of the character, of the whole text
    /// `s`, or of characters of the set.
    unsigned int skip(unsigned int c, int index = 0) const;
    unsigned int skip(String s, int index = 0) const;
    unsigned int skip(const char* s, int index = 0) const;
    unsigned int skip(const ASCIITable& table, int index = 0) const;

    /// The index, made an offset, if the text goes on with `s` or a character of the set there; else 0xFFFFFFFF.
    unsigned int match(String s, int index = 0) const;
    unsigned int match(const char* s, int index = 0) const;
    unsigned int match(const ASCIITable& table, int index = 0) const;

    /// For a literal 0, which could be a null pointer as well.
    template <class Int, std::enable_if_t<std::is_same<Int, int>::value, int> = 0>
    unsigned int find(Int c, int index = 0) const {
        return find(static_cast<unsigned int>(c), index);
    }
    template <class Int, std::enable_if_t<std::is_same<Int, int>::value, int> = 0>
    unsigned int skip(Int c, int index = 0) const {
        return skip(static_cast<unsigned int>(c), index);
    }

    /// Makes room for `length` bytes in a record of its own and returns the larger of that and the length of the text.
    /// The bytes of the capacity behind the text are zero.
    /// The room is gone at the next edit that lengthens the text: only the length counts, not the room. Reserving does
    /// not make edits cheaper; it makes the string private and reads its text anew, so it raises `Exception<7>` on text
    /// that has become malformed: by an edit, behind the library's back, or by its conversion from UTF-16.
    /// Throws `Exception<4>`: "length : text too long!" for a length of 0xFFFFFFFF, and for a text held in UTF-16 that
    /// is too long in UTF-8; nothing has changed then.
    /// If memory ends, throws `std::bad_alloc`, and the text is as before; so it is with every edit.
    /// @warning The string loses its text by such a refusal of the scan: it is null if it shared its record, which the
    ///     others keep; a record of its own is left without a buffer, and every later edit raises `Exception<4>` with
    ///     "buffer must not be null!!!!".
    /// @warning A string with no record gets one that it does not count: it cannot be edited, and once the string was
    ///     copied, the record dies while one of the strings still points at it. Assign a text to the string instead.
    unsigned int reserve(unsigned int length);

    /// Makes a negative index the end of the text, whatever its value, and returns the length. Raises `Exception<4>`
    /// with "Invalid index!" for an index behind the end, and always in a text of 2^31 bytes or more.
    unsigned int assertValidInsertIndex(int& index) const;

    // Edits. All of them make the string private by `reserve`, which may refuse, and then work in place. One that fails
    // for an index, a length or a code leaves the text as it was; one whose String is held in UTF-16 and cannot be
    // converted leaves the new length without the new bytes.
    // A code is written as 0xC0 0x80 for 0 and raises `Exception<7>` with "Invalid Unicode character!" if it has no
    // UTF-8 form; codes from 0x80000080 upward are taken for single bytes. On a string with no record, every edit
    // raises `Exception<2>` with "getRefCount() == 1 : Can't set length on a string with more than one reference!!!".
    // All that lengthen the text throw `Exception<4>`: "length : text too long!" if it would have more than 0xFFFFFFFE
    // bytes; nothing has changed then.
    // @warning Strings that were cut from this one see an edit that does not lengthen it.

    /// Adds a character or a text to the end.
    void append(unsigned int c);
    void append(String s);

    /// Appends zero bytes for the numbers that `measureDec` measures one too small, such as 100000: as many as it
    /// measured. The next edit that lengthens such a text is refused and loses it.
    void appendDecimal(unsigned int value);
    void appendHexaDecimal(unsigned int value, HexWithPrefix prefix);

    /// Puts a character or a text in front of offset `index`; any negative index means the end. An empty text does
    /// nothing, whatever the index. Raises `Exception<4>` with "Invalid index!" for an index behind the end or inside a
    /// character.
    void insert(unsigned int c, int index);
    void insert(String s, int index);

    /// Puts a character or a text in place of `length` bytes, or what remains of them, from `index` on; any negative
    /// index means the end, so that nothing is replaced. An empty text removes the bytes. Raises as `insert` does, and
    /// `Exception<4>` with "Invalid length!" if the bytes end inside a character.
    void replace(unsigned int c, int index, unsigned int length);
    void replace(String s, int index, unsigned int length);

    /// Removes `length` bytes, or what remains of them, from `index` on; here a negative index counts from the end. A
    /// length of 0 does nothing, whatever the index. Raises as `replace` does.
    void erase(int index, unsigned int length);

    /// What the lead byte of a character of n bytes adds to its bits, and which bits it takes.
    static const unsigned char s_leadFlag[8];
    static const unsigned char s_leadMask[8];

private:
    unsigned int measure() const;
    unsigned int startOf(int index, unsigned int& offset) const;
    unsigned int findBytes(std::string_view needle, unsigned int start, unsigned int from) const;
    unsigned int skipBytes(std::string_view run, unsigned int start, unsigned int from) const;
    unsigned int matchBytes(std::string_view needle, unsigned int start, unsigned int from) const;
    static unsigned int encode(unsigned int c, unsigned char* sequence);

    void freeUncountedRecord() noexcept;
    unsigned int provideCapacity(unsigned int length);
    void clearCapacity(unsigned int unwritten);
    unsigned char* getEditableBuffer(unsigned int length);
    void moveTail(unsigned char* buffer, unsigned int n, unsigned int index, unsigned int length,
                  unsigned int newLength);
    static void setChar(unsigned char* dest, unsigned int count, unsigned int c);

    unsigned int m_capacity; // what the last reserve returned; kept and never asked
};

static_assert(sizeof(void*) != 4 || sizeof(UTF8String) == 12, "a String and the capacity");

} // namespace Vorn
