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

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>
#include <sparsehash/dense_hash_map>
#include <sparsehash/dense_hash_set>

namespace VornPrivate {

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

/// Allocates the buckets of the tables with `malloc`, and throws `std::bad_alloc` if that fails. The tables' own
/// default returns the null pointer instead, and they then write to it. They allocate a new array of buckets before
/// they free the old one, so that a failure leaves them as they were.
template <class T>
class StringOwnerBucketAllocator {
public:
    using value_type = T;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using pointer = T*;
    using const_pointer = const T*;
    using reference = T&;
    using const_reference = const T&;

    template <class Other>
    struct rebind {
        using other = StringOwnerBucketAllocator<Other>;
    };

    StringOwnerBucketAllocator() = default;
    template <class Other>
    StringOwnerBucketAllocator(const StringOwnerBucketAllocator<Other>&) noexcept {}

    pointer allocate(size_type n, const_pointer = nullptr) {
        void* const buckets = n <= max_size() ? std::malloc(n * sizeof(T)) : nullptr;
        if (!buckets) throw std::bad_alloc();
        return static_cast<pointer>(buckets);
    }
    void deallocate(pointer buckets, size_type) noexcept { std::free(buckets); }
    size_type max_size() const noexcept { return static_cast<size_type>(-1) / sizeof(T); }
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
    StringOwnerMap() : m_emptyKeySet(false), m_deletedKeySet(false) {
        m_ownedBuffers.set_empty_key(nullptr);
        m_staticBuffers.set_empty_key(nullptr);
    }

    /// Builds an empty map; copies nothing, since each map owns its entries alone.
    VORN_SURPRISE("copies no entry; pass a reference to the map")
    StringOwnerMap(const StringOwnerMap&) : StringOwnerMap() {}

    /// Does nothing: this map keeps its entries.
    VORN_SURPRISE("copies no entry; pass a reference to the map")
    StringOwnerMap& operator=(const StringOwnerMap&) { return *this; }

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
        if (!buffer) VORN_THROW(E::PARAMETER, "Invalid buffer!", Names::MAP_STRING);
        if (m_emptyKeySet) {
            const auto known = m_strings.find(StringOwnerKey(buffer, length));
            if (known != m_strings.end()) return String(known->second.m_data);
        }
        return mapNewString(buffer, length, terminated);
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
    unsigned int size() const { return static_cast<unsigned int>(m_strings.size()); }

private:
    using Names = VornPrivate::StringOwnerMapNames<CharType>;

    struct Hash {
        std::size_t operator()(const StringOwnerKey& key) const { return static_cast<unsigned int>(key); }
    };

    template <class T>
    using Allocator = VornPrivate::StringOwnerBucketAllocator<T>;
    using Strings = google::dense_hash_map<StringOwnerKey, StringOwnerEntry, Hash, std::equal_to<StringOwnerKey>,
                                           Allocator<std::pair<const StringOwnerKey, StringOwnerEntry>>>;
    using Buffers = google::dense_hash_set<const CharType*, typename google::dense_hash_set<const CharType*>::hasher,
                                           std::equal_to<const CharType*>, Allocator<const CharType*>>;

    // Allocates the buckets of the table at its first use. A table whose allocation failed accepts no second empty key,
    // so a new one is set up and swapped in.
    void setEmptyKey() {
        if (m_emptyKeySet) return;
        Strings strings;
        strings.set_empty_key(StringOwnerKey::s_emptyKey);
        m_strings.swap(strings);
        m_emptyKeySet = true;
    }

    // Makes the next insertion of a buffer allocate nothing. The set never erases, so its size counts all used buckets.
    static void reserveOne(Buffers& buffers) { buffers.resize(buffers.size() + 1); }

    void eraseEntry(const StringOwnerKey& key) {
        if (!m_deletedKeySet) {
            m_strings.set_deleted_key(StringOwnerKey::s_deletedKey);
            m_deletedKeySet = true;
        }
        m_strings.erase(key);
    }

    String mapNewString(const CharType* buffer, unsigned int length, bool terminated);

    Strings m_strings;
    Buffers m_ownedBuffers;  // external buffers, owned by this map or by its caller
    Buffers m_staticBuffers; // marked by addStaticString
    bool m_emptyKeySet;
    bool m_deletedKeySet;
};

// Implementation of the template; not needed for using the class.

template <class CharType>
StringOwnerMap<CharType>::~StringOwnerMap() {
    if (!m_emptyKeySet) return;
    for (const auto& entry : m_strings) {
        StringData* const data = entry.second.m_data;
        if (!data) continue;
        // Another handle still owns the record, and the owner of its buffer may be destroyed after this map.
        if (data->template getAllocationType<CharType>() == STRING_DATA_EXTERNAL && data->getRefCount() > 1)
            data->template detachExternalBuffer<CharType>();
        data->decRefCount();
    }
}

template <class CharType>
String StringOwnerMap<CharType>::mapNewString(const CharType* buffer, unsigned int length, bool terminated) {
    setEmptyKey();
    const bool isStatic = m_staticBuffers.find(buffer) != m_staticBuffers.end();
    const StringOwnerKey key(buffer, length);
    const auto entry = m_strings.insert({key, {}}).first;
    StringData* data = nullptr;
    try {
        if (!isStatic) reserveOne(m_ownedBuffers);
        data = new StringData(buffer, StringData::countedLength(length, terminated),
                              isStatic ? STRING_DATA_STATIC : STRING_DATA_EXTERNAL, StringData::CountedLength());
    } catch (const Exception<E::UNICODE>&) { // the text is malformed: the entry stays without a record
        if (!isStatic) m_ownedBuffers.insert(buffer);
        throw;
    } catch (...) {
        eraseEntry(key);
        throw;
    }
    if (!isStatic) m_ownedBuffers.insert(buffer);
    data->incRefCount();
    entry->second.m_data = data;
    return String(data);
}

template <class CharType>
const CharType* StringOwnerMap<CharType>::mapStringNonInline(String s, StringOwnerAllocWrapperBase& alloc) {
    unsigned int n = 0;
    if (s.getData()) n = sizeof(CharType) == 1 ? s.getData()->getUTF8Length() : s.getData()->getUTF16Length();
    if (n == 0) s = String::getEmptyString();

    const CharType* buffer = s.getData()->template getBuffer<CharType>();
    const StringDataBufferInfo& info = s.getData()->template getBufferInfo<CharType>();
    const bool isExternal = info.m_allocationType == STRING_DATA_EXTERNAL;
    const bool isForeign = isExternal && m_ownedBuffers.find(buffer - info.m_offset) == m_ownedBuffers.end();
    if (isForeign) {
        const std::uint64_t bytes = (std::uint64_t(n) + 1) * sizeof(CharType);
        if (bytes > 0xFFFFFFFF) VORN_THROW(E::PARAMETER, "length : text too long!", Names::MAP_STRING_NON_INLINE);
        CharType* const copy = static_cast<CharType*>(alloc(static_cast<unsigned int>(bytes)));
        if (!copy) throw std::bad_alloc();
        std::memcpy(copy, buffer, std::size_t(n) * sizeof(CharType));
        copy[n] = 0;
        s = String(new StringData(copy, std::uint64_t(n) + 1, STRING_DATA_EXTERNAL, StringData::CountedLength()));
        reserveOne(m_ownedBuffers);
        buffer = copy;
    } else if (!isExternal && !info.m_nullTerminated) {
        buffer = s.getData()->template getTerminatedBuffer<CharType>();
    }

    setEmptyKey();
    const StringOwnerKey key(buffer, n);
    auto entry = m_strings.find(key); // one that a refused text has left stays without a record
    if (entry == m_strings.end()) {
        entry = m_strings.insert({key, {s.getData(), 0}}).first;
        s.getData()->incRefCount();
    }
    ++entry->second.m_mapCount;
    if (isForeign) m_ownedBuffers.insert(buffer);
    return buffer;
}

template <class CharType>
void StringOwnerMap<CharType>::unmapString(const CharType* buffer, unsigned int length) {
    if (!buffer || !m_emptyKeySet) return;
    const StringOwnerKey key(buffer, length);
    const auto found = m_strings.find(key);
    if (found == m_strings.end()) return;
    StringOwnerEntry& entry = found->second;
    if (entry.m_mapCount > 1) {
        --entry.m_mapCount;
        return;
    }
    StringData* const data = entry.m_data;
    if (!data || data->template getAllocationType<CharType>() == STRING_DATA_EXTERNAL) return;
    eraseEntry(key);
    data->decRefCount();
}

template <class CharType>
void StringOwnerMap<CharType>::addStaticString(const CharType* buffer) {
    if (!buffer) VORN_THROW(E::PARAMETER, "Invalid string!", Names::ADD_STATIC_STRING);
    if (m_ownedBuffers.find(buffer) != m_ownedBuffers.end())
        VORN_THROW(E::PARAMETER, "String marked as owned!", Names::ADD_STATIC_STRING);
    m_staticBuffers.insert(buffer);
}

#if !defined(_WIN32) // where g++ exports no inline members of an instantiated class
extern template class StringOwnerMap<unsigned char>;
extern template class StringOwnerMap<UTF16Char>;
#endif

} // namespace Vorn
