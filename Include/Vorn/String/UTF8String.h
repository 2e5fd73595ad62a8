/// @file
/// UTF8String: a text in UTF-8 that can be navigated, searched and edited in place.
///
/// It is a String. It shares its string record until the first edit, and shares it again when it is copied. All
/// positions are offsets in bytes. An index inside a character stands for the next character; the result of a search
/// from there is too small by the skipped bytes. Search from offsets of character starts.
///
/// Cost: a search decodes nothing and takes time in proportion to the lengths of the text and of the needle. An edit
/// that lengthens the text allocates exactly the size it needs, copies the text and validates it; any other edit moves
/// the tail. To build a long text piece by piece, collect it in a `std::string` first.
///
/// A string with no record cannot be edited; start from a buffer, or from a String that has a record, such as
/// `String::getEmptyString()`. Bytes that an edit writes are not validated: the charset and the flag of U+0000 are
/// those of the text before the last edit that lengthened it.
///
/// A text has at most 0xFFFFFFFE bytes; see StringData. Searches and `erase` accept texts of any length, but an index
/// above 0x7FFFFFFF does not fit their parameter: count from the end instead. `insert` and `replace` throw "Invalid
/// index!" for texts of 2^31 bytes and more.
///
/// Threads: a read can store a buffer in the shared record. A string and all strings that share its record must be used
/// by one thread at a time.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/PrintInt.h" // HexWithPrefix
#include "Vorn/Private/StringArguments.h"
#include "Vorn/Private/Surprise.h"
#include "Vorn/String/ASCIITable.h"
#include "Vorn/String/String.h"
#include "Vorn/Types.h"

#include <cstddef>
#include <string_view>
#include <type_traits>

VORN_ALLOW_SURPRISES_BEGIN

namespace Vorn {

/// A text in UTF-8 that can be edited in place.
class VORN_API UTF8String : public String {
public:
    /// Builds a null string, which has no record and cannot be edited; see `append`.
    UTF8String() noexcept : m_capacity(0) {}

    /// Builds a string that shares the record of `other`.
    UTF8String(const UTF8String& other) noexcept : String(other), m_capacity(0) {}
    UTF8String(const String& other) noexcept : String(other), m_capacity(0) {}

    /// Builds a string that refers to `data` and acquires a reference; null results in a null string.
    UTF8String(StringData* data) noexcept : String(data), m_capacity(0) {}

    /// Builds a string over a text, which is not copied; see the constructors of String.
    UTF8String(const char* buffer, unsigned int length = 0xFFFFFFFF, StringAllocationType type = STRING_DATA_EXTERNAL)
        : String(buffer, length, type), m_capacity(0) {}
    UTF8String(const unsigned char* buffer, unsigned int length = 0xFFFFFFFF,
               StringAllocationType type = STRING_DATA_EXTERNAL)
        : String(buffer, length, type), m_capacity(0) {}
    UTF8String(const UTF16Char* buffer, unsigned int length = 0xFFFFFFFF,
               StringAllocationType type = STRING_DATA_EXTERNAL)
        : String(buffer, length, type), m_capacity(0) {}

    /// Builds a string over a text of `length` units. `terminated` states that a terminator follows them; see the
    /// constructors of String.
    UTF8String(const char* buffer, unsigned int length, StringAllocationType type, bool terminated)
        : String(buffer, length, type, terminated), m_capacity(0) {}
    UTF8String(const unsigned char* buffer, unsigned int length, StringAllocationType type, bool terminated)
        : String(buffer, length, type, terminated), m_capacity(0) {}
    UTF8String(const UTF16Char* buffer, unsigned int length, StringAllocationType type, bool terminated)
        : String(buffer, length, type, terminated), m_capacity(0) {}

    ~UTF8String() override { freeUncountedRecord(); }

    /// Acquires a reference to the record of `other`, then releases the old one.
    UTF8String& operator=(const UTF8String& other) { return *this = static_cast<const String&>(other); }
    UTF8String& operator=(const String& other);

    /// Refers to the text of a literal, as the constructor does.
    template <class Unit, std::size_t Size, VornPrivate::IfStringUnit<Unit> = 0>
    UTF8String& operator=(const Unit (&literal)[Size]) {
        return *this = String(literal);
    }

    /// Refers to a text that something else owns, as the constructor does.
    /// @{
    template <class Unit, std::size_t Size, VornPrivate::IfStringUnit<Unit> = 0>
    VORN_SURPRISE("copies nothing: the text must outlive the string; use makeString(text)")
    UTF8String& operator=(Unit (&buffer)[Size]) {
        return *this = String(buffer);
    }
    template <class Pointer, VornPrivate::IfStringPointer<Pointer> = 0>
    VORN_SURPRISE("copies nothing: the text must outlive the string; use makeString(text)")
    UTF8String& operator=(Pointer text) {
        return *this = String(text);
    }
    /// @}

    /// Returns the length in bytes. Builds the UTF-8 buffer if it is missing, as `getBuffer` does.
    unsigned int getLength() const;

    /// Returns the text in UTF-8, not always terminated; null if there is none. Throws what its conversion from UTF-16
    /// throws.
    /// @warning An edit, a search or a step can move the text and invalidate the pointer; see
    ///     `StringData::getTerminatedBuffer`.
    const unsigned char* getBuffer() const;

    /// Returns a pointer to the first character that starts at or after `index`, in a terminated buffer.
    ///
    /// A negative `index` counts from the end and is replaced with its offset; it is not moved to the character. Throws
    /// `Exception<4>`: "Invalid index!" for an index outside the text, which includes its end, and for one whose offset
    /// is above 0x7FFFFFFF; `index` is then unchanged.
    /// @warning The pointer is invalidated as that of `getBuffer`. In a text that was not terminated, the next such
    ///     call invalidates it too.
    const unsigned char* getTerminatedBuffer(int& index) const;

    /// Returns the first byte of the first character that starts at or after `index`. An index of 0x80000000 or more
    /// counts from the end, as a negative one. Throws `Exception<4>`: "Invalid index!" for an index outside the text.
    /// @warning In a text of more than 2^31 bytes, read `getBuffer()[index]` instead.
    unsigned char get(unsigned int index) const;
    unsigned char operator[](unsigned int index) const { return get(index); }

    /// Returns the offset of the character behind the one at `index`; the length of the text if there is none.
    /// Terminates the text.
    unsigned int next(unsigned int index) const;

    /// Returns the offset of the character before `index`, but fails on a character of 4 bytes unless `index` is inside
    /// it or at or behind the end of the text. Returns 0xFFFFFFFF for an empty text and for an index of 0. Throws
    /// `Exception<2>`: "!Unicode::validUTF8Trail(buffer[index]) : Invalid UTF-8 string". To visit all characters, go
    /// forward with `next`.
    VORN_SURPRISE("fails behind a character of four bytes; use codePoints(text) and its iterators")
    unsigned int previous(unsigned int index) const;

    /// Returns a pointer to the first of the bytes `ptr[0]` to `ptr[3]` that is no trail byte. Throws `Exception<2>`:
    /// "!Unicode::validUTF8Trail(*ptr) : Invalid UTF-8 String!" if all four are.
    const unsigned char* skipTrailBytes(const unsigned char* ptr) const;

    // Searches. A negative index counts from the end. All throw `Exception<4>`: "Invalid index!" for an index outside
    // the text, so for every index in an empty text, and "Invalid string!" for a null or empty needle. They throw
    // `Exception<7>`: "Invalid Unicode Character!" for a code that has no UTF-8 form. All terminate the text, and that
    // of a String needle, which can move both.

    /// Returns the offset of the first occurrence at or after `index`; the length of the text if there is none.
    /// @{
    unsigned int find(unsigned int c, int index = 0) const;
    unsigned int find(String s, int index = 0) const;
    unsigned int find(const char* s, int index = 0) const;
    unsigned int find(const ASCIITable& table, int index = 0) const; ///< of any character of the set
    /// @}

    /// Returns the offset at or after `index` where a run of the character, of the whole text `s`, or of characters of
    /// the set ends; `index` as an offset if there is no such run.
    /// @{
    unsigned int skip(unsigned int c, int index = 0) const;
    VORN_SURPRISE("skips repetitions of the whole text; to skip characters of a set use skip(ASCIITable)")
    unsigned int skip(String s, int index = 0) const;
    VORN_SURPRISE("skips repetitions of the whole text; to skip characters of a set use skip(ASCIITable)")
    unsigned int skip(const char* s, int index = 0) const;
    unsigned int skip(const ASCIITable& table, int index = 0) const;
    /// @}

    /// Returns `index` as an offset, not the end of the match, if the text continues there with `s` or with a character
    /// of the set; 0xFFFFFFFF otherwise.
    /// @{
    VORN_SURPRISE("returns the index itself, not the end of the match; add the length of the match")
    unsigned int match(String s, int index = 0) const;
    VORN_SURPRISE("returns the index itself, not the end of the match; add the length of the match")
    unsigned int match(const char* s, int index = 0) const;
    VORN_SURPRISE("returns the index itself, not the end of the match; add the length of the match")
    unsigned int match(const ASCIITable& table, int index = 0) const;
    /// @}

    /// Selects the character form for a literal 0, which could also be a null pointer.
    template <class Int, std::enable_if_t<std::is_same<Int, int>::value, int> = 0>
    unsigned int find(Int c, int index = 0) const {
        return find(static_cast<unsigned int>(c), index);
    }
    template <class Int, std::enable_if_t<std::is_same<Int, int>::value, int> = 0>
    unsigned int skip(Int c, int index = 0) const {
        return skip(static_cast<unsigned int>(c), index);
    }

    /// Makes the string private with a capacity of at least `length` bytes, but does not make later edits cheaper: the
    /// next edit that lengthens the text ignores the capacity and allocates again.
    ///
    /// Returns the capacity: the larger of `length` and the length of the text. The bytes of the capacity behind the
    /// text are zero. The text is validated again. Throws `Exception<4>`: "length : text too long!" for a length of
    /// 0xFFFFFFFF, and for a text held in UTF-16 that is too long in UTF-8; nothing has changed then. Throws
    /// `Exception<7>` if the text has become malformed: by an edit, by a change of a borrowed buffer, or by its
    /// conversion from UTF-16. If memory ends, throws `std::bad_alloc`, and the text is unchanged, as in every edit.
    /// @warning If validation throws, the string loses its text. It is null if it shared its record, which the other
    ///     strings keep. Otherwise its record has no buffer, and every later edit throws `Exception<4>`: "buffer must
    ///     not be null!!!!"; assign another text.
    /// @warning A null string receives a record that it does not count: the string still cannot be edited, and if it is
    ///     copied, the record is destroyed while one of the strings still points at it. Assign a text first.
    VORN_SURPRISE("does not make later edits cheaper; collect long texts in a TextBuilder")
    unsigned int reserve(unsigned int length);

    /// Returns the length, and replaces a negative `index`, whatever its value, with the end of the text. Throws
    /// `Exception<4>`: "Invalid index!" for an index behind the end, and always in a text of 2^31 bytes or more.
    unsigned int assertValidInsertIndex(int& index) const;

    // Edits. Each first makes the string private as `reserve` does, which may throw, and then works in place.
    //
    // An edit that throws for an index, a length or a code leaves the text unchanged. If a String argument is held in
    // UTF-16 and cannot be converted, the text has its new length without the new bytes. Where its conversion writes
    // fewer bytes than it measures (U+007F beside supplementary characters), the rest keeps the bytes that stood there,
    // or is zero behind the old text. All throw `Exception<4>`: "length : text too long!" if the text would have more
    // than 0xFFFFFFFE bytes, and change nothing. For a string with no record they throw `Exception<2>`: "getRefCount()
    // == 1 : Can't set length on a string with more than one reference!!!".
    //
    // The code 0 is written as 0xC0 0x80. A code that has no UTF-8 form throws `Exception<7>`: "Invalid Unicode
    // character!", but codes from 0x80000080 on are written as single bytes: test codes first.
    // @warning Substrings of this string see an edit that does not lengthen it. The parts that the operations of
    //     Text/TextPieces.h return do not: the first edit of a string with parts copies its text.

    /// Appends a character or a text.
    /// @warning A `char` is converted to a code. One above 0x7F is negative where `char` is signed, and is written as a
    ///     byte; the compiler cannot tell it from a valid one. Append characters beyond ASCII as codes, such as
    ///     `append(0xE9)`.
    /// @{
    void append(unsigned int c);
    void append(String s);
    /// @}

    /// Not for standard texts, of which the copy would never be freed.
    template <class Text, VornPrivate::IfStandardText<Text> = 0>
    void append(const Text&) {
        static_assert(VornPrivate::NEVER<Text>, "a standard text would be leaked: write append(makeString(text))");
    }

    /// Appends a number, but appends zero bytes for the numbers that `measureDec` measures one too small, such as
    /// 100000: as many as measured. The next edit that lengthens such a text throws and loses it. For such numbers,
    /// append a String of printed text.
    /// @{
    VORN_SURPRISE("appends zero bytes for some numbers, such as 100000; use append(toText(value))")
    void appendDecimal(unsigned int value);
    void appendHexaDecimal(unsigned int value, HexWithPrefix prefix);
    /// @}

    /// Inserts a character or a text before offset `index`. Any negative index means the end. An empty text changes
    /// nothing, whatever the index. The text comes first, then the index. Throws `Exception<4>`: "Invalid index!" for
    /// an index behind the end or inside a character.
    /// @{
    void insert(unsigned int c, int index);
    void insert(String s, int index);
    /// @}

    /// Replaces `length` bytes, or the bytes that remain, from `index` on with a character or a text. Any negative
    /// index means the end, so that nothing is replaced. An empty text removes the bytes. Throws as `insert` does, and
    /// `Exception<4>`: "Invalid length!" if the bytes end inside a character.
    /// @{
    void replace(unsigned int c, int index, unsigned int length);
    void replace(String s, int index, unsigned int length);
    /// @}

    /// Removes `length` bytes, or the bytes that remain, from `index` on. Here a negative index counts from the end. A
    /// length of 0 changes nothing, whatever the index. Throws as `replace` does.
    void erase(int index, unsigned int length);

    /// The flag bits of the lead byte of a character of n bytes, and the mask of its payload bits.
    /// @{
    static const unsigned char s_leadFlag[8];
    static const unsigned char s_leadMask[8];
    /// @}

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

    unsigned int m_capacity; // the result of the last `reserve`; never read
};

static_assert(sizeof(void*) != 4 || sizeof(UTF8String) == 12, "a String and the capacity");

} // namespace Vorn

VORN_ALLOW_SURPRISES_END
