/// @file
/// StringOwnerMap: interning of strings by the address of their buffer.
///
/// Mapping a buffer twice returns the same string record, and a pointer that the map returned stays valid as long as it
/// is mapped. The key is the address and the length of the buffer: the text is not compared, so equal texts in buffers
/// at different addresses are two entries. To intern by content, use a hash table of String (Interop.h).
///
/// Cost: one masked address and usually one comparison; mapping a known buffer allocates nothing. Addresses are not
/// mixed: buffers with equal low address bits, and one buffer mapped with many lengths, are compared with one another
/// at each lookup, so n of them cost n comparisons.
///
/// If memory ends, each operation throws `std::bad_alloc` and leaves all entries, counts and marks unchanged; the same
/// call can be repeated later. Only the destructor cannot throw.
///
/// Threads: nothing is locked, and reference counts are plain integers. A map and its strings must be used by one
/// thread at a time.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/Config.h"
#include "Vorn/Private/Surprise.h"
#include "Vorn/String/String.h"
#include "Vorn/Types.h"

#include <cstdint>

namespace VornPrivate {

template <class CharType>
struct StringOwnerTables;

/// The function texts of reports.
template <class CharType>
struct StringOwnerMapNames;

template <>
struct StringOwnerMapNames<unsigned char> {
    static constexpr char MAP_STRING[] = "Vorn::StringOwnerMap<unsigned char>::mapString";
    static constexpr char MAP_STRING_NON_INLINE[] = "Vorn::StringOwnerMap<unsigned char>::mapStringNonInline";
    static constexpr char ADD_STATIC_STRING[] = "Vorn::StringOwnerMap<unsigned char>::addStaticString";
};

template <>
struct StringOwnerMapNames<Vorn::UTF16Char> {
    static constexpr char MAP_STRING[] = "Vorn::StringOwnerMap<wchar_t>::mapString";
    static constexpr char MAP_STRING_NON_INLINE[] = "Vorn::StringOwnerMap<wchar_t>::mapStringNonInline";
    static constexpr char ADD_STATIC_STRING[] = "Vorn::StringOwnerMap<wchar_t>::addStaticString";
};

/// The failures of a map. They are raised here, so that reports contain the path of this header.
template <class CharType>
struct StringOwnerMapFailures {
    using Names = StringOwnerMapNames<CharType>;

    [[noreturn]] static void invalidBuffer() { VORN_THROW(Vorn::E::PARAMETER, "Invalid buffer!", Names::MAP_STRING); }
    [[noreturn]] static void textTooLong() {
        VORN_THROW(Vorn::E::PARAMETER, "length : text too long!", Names::MAP_STRING_NON_INLINE);
    }
    [[noreturn]] static void invalidString() {
        VORN_THROW(Vorn::E::PARAMETER, "Invalid string!", Names::ADD_STATIC_STRING);
    }
    [[noreturn]] static void markedAsOwned() {
        VORN_THROW(Vorn::E::PARAMETER, "String marked as owned!", Names::ADD_STATIC_STRING);
    }
};

} // namespace VornPrivate

namespace Vorn {

/// Address and length of a buffer.
class VORN_API StringOwnerKey {
public:
    constexpr StringOwnerKey() noexcept : m_pointer(nullptr), m_length(0) {}
    constexpr StringOwnerKey(const void* pointer, unsigned int length) noexcept
        : m_pointer(pointer), m_length(length) {}

    bool operator==(const StringOwnerKey& other) const noexcept {
        return m_pointer == other.m_pointer && m_length == other.m_length;
    }
    bool operator!=(const StringOwnerKey& other) const noexcept { return !(*this == other); }

    /// Returns the hash: the address, truncated to 32 bits.
    operator unsigned int() const noexcept {
        return static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(m_pointer));
    }

    static const StringOwnerKey& getEmptyKey() noexcept { return s_emptyKey; }     ///< null and 0
    static const StringOwnerKey& getDeletedKey() noexcept { return s_deletedKey; } ///< null and 0xFFFFFFFF

    /// The keys that mark empty and deleted buckets.
    static const StringOwnerKey s_emptyKey;
    static const StringOwnerKey s_deletedKey;

private:
    const void* m_pointer;
    unsigned int m_length; // in code units, as the caller passed it
};

static_assert(sizeof(void*) != 4 || sizeof(StringOwnerKey) == 8, "a pointer and a length");

/// An allocator of the copies that a map makes. Derive from it and return memory that stays valid for ever: the map
/// neither frees the memory nor keeps a reference to the allocator.
class VORN_API StringOwnerAllocWrapperBase {
public:
    /// Returns `bytes` bytes, aligned for the units of the map. If it throws, the map is unchanged. If it returns null,
    /// the map throws `std::bad_alloc` and is unchanged.
    virtual void* allocate(unsigned int bytes) = 0;
    virtual ~StringOwnerAllocWrapperBase();

    StringOwnerAllocWrapperBase() = default;
    StringOwnerAllocWrapperBase(const StringOwnerAllocWrapperBase&) = default;
    StringOwnerAllocWrapperBase& operator=(const StringOwnerAllocWrapperBase&) = default;

    void* operator()(unsigned int bytes) { return allocate(bytes); } ///< calls `allocate`
};

/// The entry of one buffer.
struct StringOwnerEntry {
    StringData* m_data = nullptr; ///< the record, of which the map owns one reference; null if its text is malformed
    unsigned int m_mapCount = 0;  ///< calls of `mapStringNonInline` that no `unmapString` has matched yet
};

/// A map from buffers of `unsigned char` or `UTF16Char`, by address and length, to strings.
template <class CharType>
class VORN_API StringOwnerMap {
public:
    /// Builds an empty map and allocates the buckets of two of its three tables. Throws `std::bad_alloc`.
    StringOwnerMap();

    /// Builds an empty map; copies nothing, since each map owns its entries alone.
    VORN_SURPRISE("copies no entry; pass a reference to the map")
    StringOwnerMap(const StringOwnerMap&);

    /// Does nothing: this map keeps its entries.
    VORN_SURPRISE("copies no entry; pass a reference to the map")
    StringOwnerMap& operator=(const StringOwnerMap&);

    /// Destroys the entries. Strings and substrings that still exist stay valid: external text is copied first.
    /// @warning If memory ends while these copies are made, the destructor calls `std::terminate`. Destroy the strings
    ///     and substrings of external buffers before the map: then it allocates nothing.
    ~StringOwnerMap();

    /// Returns the string over a buffer: the same record in each call with the same address and length.
    ///
    /// @param buffer The text; not copied. It must outlive the map unless it is marked by `addStaticString`.
    /// @param length Length in units, without a terminator. 0xFFFFFFFF means that the text ends at its first zero unit.
    /// @param terminated True if a terminator follows the text.
    ///
    /// Only the first call for a buffer reads the text and the flag. Throws `Exception<4>`: "Invalid buffer!" for null.
    /// Throws `Exception<7>` if the text is malformed; later calls with the same buffer and length then return a null
    /// string. Throws `Exception<4>`: "length : text too long!" if a text of unknown length has no terminator in its
    /// first 0xFFFFFFFF units. Throws `std::bad_alloc` if memory ends. After both, the buffer is neither mapped nor
    /// marked as external.
    /// @warning A length of 0xFFFFFFFF with `terminated` results in an empty string. To have a text measured, pass
    ///     false.
    String mapString(const CharType* buffer, unsigned int length, bool terminated) {
        if (!buffer) Failures::invalidBuffer();
        const StringOwnerEntry* const known = findEntry(buffer, length);
        return known ? String(known->m_data) : mapNewString(buffer, length, terminated);
    }

    /// Returns a buffer with the text of `s`. It stays valid until `unmapString` has been called as often as this
    /// operation, or until the map is destroyed.
    ///
    /// External text in a buffer that this map does not own is copied to memory from `alloc`, and stays mapped until
    /// the map is destroyed. Throws `Exception<4>`: "length : text too long!" if the copy and its terminator need more
    /// than 0xFFFFFFFF bytes (in UTF-16: from 0x7FFFFFFF units on), before it allocates or changes anything. Throws
    /// `std::bad_alloc` if memory ends or `alloc` returns null, and what `alloc` throws. All entries are then
    /// unchanged; a block that `alloc` has returned is not used again, and `s` may have received a buffer or a
    /// terminator.
    /// @warning Text in this map's own buffers is returned as it is, terminated or not.
    /// @warning The buffer of a static text without a terminator is only a first copy. The next call that requests the
    ///     terminated text, this operation included, frees it; its entry keeps the freed address. Call `getCString`
    ///     twice on such a string first.
    const CharType* mapStringNonInline(String s, StringOwnerAllocWrapperBase& alloc);

    /// Undoes one `mapStringNonInline`. The last one removes the entry, unless its text is external. An entry that was
    /// made only by `mapString` is removed at once, under the same condition. A buffer that is not mapped is ignored.
    /// Allocates nothing; the table shrinks at a later insertion.
    void unmapString(const CharType* buffer, unsigned int length);

    /// Marks a buffer as static: the caller promises that it stays valid for ever. Later strings over it are static;
    /// existing entries are unchanged. Throws `Exception<4>`: "Invalid string!" for null, and "String marked as owned!"
    /// for a buffer that the map has ever mapped as external. Throws `std::bad_alloc` if memory ends; the buffer is
    /// then not marked.
    void addStaticString(const CharType* buffer);

    /// Returns the number of entries.
    unsigned int size() const;

private:
    using Tables = VornPrivate::StringOwnerTables<CharType>;
    using Failures = VornPrivate::StringOwnerMapFailures<CharType>;

    Tables& tables();
    const Tables& tables() const;
    const StringOwnerEntry* findEntry(const CharType* buffer, unsigned int length) const;
    void setEmptyKey();
    void eraseEntry(const StringOwnerKey& key);
    String mapNewString(const CharType* buffer, unsigned int length, bool terminated);

    // The tables, whose headers no user of this class needs.
    alignas(void*) unsigned char m_tables[sizeof(void*) == 8 ? 272 : 160];
    bool m_emptyKeySet;
    bool m_deletedKeySet;
};

#if !defined(_WIN32) // where g++ exports no inline members of an instantiated class
extern template class StringOwnerMap<unsigned char>;
extern template class StringOwnerMap<UTF16Char>;
#endif

} // namespace Vorn
