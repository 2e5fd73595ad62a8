// StringOwnerMap: ties raw character buffers to the strings that stand for them.
//
// A buffer that is seen twice yields one record, and a raw pointer that the map has handed out stays valid for as long
// as it is mapped. It interns by identity, not by content: the key is the address and the length, the text is never
// read for a lookup, and two equal texts at different addresses are two entries. To intern by content, use a hash table
// of String (see Interop.h).
//
// Cost: one masked address and usually one comparison; mapping a known buffer allocates nothing. Addresses are not
// mixed, so buffers of one pool share their low bits.
//
// Cost: buffers with equal low address bits, and one buffer mapped with many lengths, are compared with one another at
// each lookup: n of them cost n comparisons a lookup.
//
// Out of memory: each operation throws `std::bad_alloc` and leaves all entries, counts and marks as they were, so that
// the same call can be repeated later. Only the destructor cannot throw; see there.
//
// Threads: nothing is locked, and counts are plain integers. A map and its strings belong to one thread at a time.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/Config.h"
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

/// The names that a map's failures report.
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
/// default returns the null pointer instead, which they write through. They allocate a new array of buckets before they
/// free the old one, so that a failure leaves them as they were.
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

    /// The hash: the address itself, cut to 32 bits.
    operator unsigned int() const noexcept {
        return static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(m_pointer));
    }

    static const StringOwnerKey& getEmptyKey() noexcept { return s_emptyKey; }     ///< null and 0
    static const StringOwnerKey& getDeletedKey() noexcept { return s_deletedKey; } ///< null and 0xFFFFFFFF

    /// The two keys that a table keeps for itself.
    static const StringOwnerKey s_emptyKey;
    static const StringOwnerKey s_deletedKey;

private:
    const void* m_pointer;
    unsigned int m_length; // in code units, as the caller passed it
};

static_assert(sizeof(void*) != 4 || sizeof(StringOwnerKey) == 8, "a pointer and a length");

/// Where the copies that a map makes live. Derive from it and give out memory that may be kept for ever: the map
/// neither frees it nor remembers the allocator.
class VORN_API StringOwnerAllocWrapperBase {
public:
    /// Returns `bytes` bytes, aligned for the units of the map. If it throws, or returns null, which the map takes for
    /// `std::bad_alloc`, the map stays as it was.
    virtual void* allocate(unsigned int bytes) = 0;
    virtual ~StringOwnerAllocWrapperBase();

    StringOwnerAllocWrapperBase() = default;
    StringOwnerAllocWrapperBase(const StringOwnerAllocWrapperBase&) = default;
    StringOwnerAllocWrapperBase& operator=(const StringOwnerAllocWrapperBase&) = default;

    void* operator()(unsigned int bytes) { return allocate(bytes); } ///< `allocate`
};

/// What a map knows of one buffer.
struct StringOwnerEntry {
    StringData* m_data = nullptr; ///< the record, of which the map holds one use; null if its text was refused
    unsigned int m_mapCount = 0;  ///< calls of `mapStringNonInline` that no `unmapString` has matched yet
};

/// Strings by the address and length of their buffers, of `unsigned char` or `UTF16Char`.
template <class CharType>
class VORN_API StringOwnerMap {
public:
    /// Allocates the buckets of two of the three tables. Throws `std::bad_alloc`.
    StringOwnerMap() : m_emptyKeySet(false), m_deletedKeySet(false) {
        m_ownedBuffers.set_empty_key(nullptr);
        m_staticBuffers.set_empty_key(nullptr);
    }

    /// Copies nothing: gives an empty map. Each map owns its records alone.
    StringOwnerMap(const StringOwnerMap&) : StringOwnerMap() {}

    /// Does nothing: the left side keeps its own content.
    StringOwnerMap& operator=(const StringOwnerMap&) { return *this; }

    /// Strings and substrings that still exist survive the map: external text is copied first.
    /// @warning Running out of memory for these copies calls `std::terminate`, because a string over a buffer without
    /// an
    ///     owner would be left otherwise. Destroy the strings and substrings of external buffers before the map: then
    ///     it allocates nothing.
    ~StringOwnerMap();

    /// Returns the string over `buffer`, the same record for the same address and length. `length` is in code units and
    /// does not count a terminator; `terminated` states that there is one. The buffer must outlive the map unless it is
    /// marked by `addStaticString`. A length of 0xFFFFFFFF stands for a text that ends at its first zero unit. Only the
    /// first call reads the text and the flag.
    /// Throws `Exception<4>`: "Invalid buffer!" for null; "length : text too long!" for a length of 0xFFFFFFFF with
    /// `terminated` in the first call, which changes nothing. Throws `Exception<7>` for text that is not valid; after
    /// that the same buffer and length map to a null string. `std::bad_alloc` leaves the map as it was: the buffer is
    /// neither mapped nor marked as owned.
    String mapString(const CharType* buffer, unsigned int length, bool terminated) {
        if (!buffer) VORN_THROW(4, "Invalid buffer!", Names::MAP_STRING);
        if (m_emptyKeySet) {
            const auto known = m_strings.find(StringOwnerKey(buffer, length));
            if (known != m_strings.end()) return String(known->second.m_data);
        }
        return mapNewString(buffer, length, terminated);
    }

    /// Returns a buffer with the text of `s` that stays valid until `unmapString` has been called as often as this, or
    /// the map is destroyed. External text of a buffer that is not known to this map is copied into memory from
    /// `alloc`, and stays mapped until the map is destroyed.
    /// Throws `Exception<4>`: "length : text too long!" if the copy and its terminator take more than 0xFFFFFFFF bytes,
    /// which is so from 0x7FFFFFFF units of `UTF16Char` on; nothing is allocated or changed. What `alloc` throws passes
    /// through, and `std::bad_alloc` is thrown if it returns null. Whatever is thrown, all entries stay as they were; a
    /// block that `alloc` has returned before is not used again, and the text of `s` may have been built in this
    /// encoding or terminated.
    /// @warning Text of this map's own buffers is returned as it stands, terminated or not.
    /// @warning The buffer of a static text that was not terminated is a first copy: it is freed at the next call that
    ///     asks for the terminated text, this one included. Its entry keeps the freed address.
    const CharType* mapStringNonInline(String s, StringOwnerAllocWrapperBase& alloc);

    /// Undoes one `mapStringNonInline`; the last one removes the entry, unless its text is external. An entry that only
    /// `mapString` made is removed at once, under the same condition. Ignores a buffer that is not mapped. The table
    /// allocates nothing here: it gets smaller at a later insertion, if at all.
    void unmapString(const CharType* buffer, unsigned int length);

    /// Promises that `buffer` lives for ever: strings over it are static from now on. Entries that exist stay as they
    /// are. Throws `Exception<4>`: "Invalid string!" for null; "String marked as owned!" for a buffer that the map has
    /// ever taken as external. `std::bad_alloc` leaves the buffer unmarked.
    void addStaticString(const CharType* buffer);

    /// Number of entries.
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

    // The table allocates its buckets only now. A table whose allocation failed takes no second empty key, so that a
    // new one is set up and swapped in.
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
    Buffers m_ownedBuffers;  // external to their records, and kept by this map or its caller
    Buffers m_staticBuffers; // marked by addStaticString
    bool m_emptyKeySet;
    bool m_deletedKeySet;
};

// Implementation of the template. Users need not read on.

template <class CharType>
StringOwnerMap<CharType>::~StringOwnerMap() {
    if (!m_emptyKeySet) return;
    for (const auto& entry : m_strings) {
        StringData* const data = entry.second.m_data;
        if (!data) continue;
        // Somebody outside still holds the record, and its buffer is about to lose its owner.
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
        data = new StringData(buffer, length + terminated, isStatic ? STRING_DATA_STATIC : STRING_DATA_EXTERNAL);
    } catch (const std::bad_alloc&) {
        eraseEntry(key);
        throw;
    } catch (...) { // the text was refused: the entry stays without a record
        if (!isStatic) m_ownedBuffers.insert(buffer);
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
        if (bytes > 0xFFFFFFFF) VORN_THROW(4, "length : text too long!", Names::MAP_STRING_NON_INLINE);
        CharType* const copy = static_cast<CharType*>(alloc(static_cast<unsigned int>(bytes)));
        if (!copy) throw std::bad_alloc();
        std::memcpy(copy, buffer, std::size_t(n) * sizeof(CharType));
        copy[n] = 0;
        s = String(new StringData(copy, n + 1, STRING_DATA_EXTERNAL));
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
    if (!buffer) VORN_THROW(4, "Invalid string!", Names::ADD_STATIC_STRING);
    if (m_ownedBuffers.find(buffer) != m_ownedBuffers.end())
        VORN_THROW(4, "String marked as owned!", Names::ADD_STATIC_STRING);
    m_staticBuffers.insert(buffer);
}

extern template class StringOwnerMap<unsigned char>;
extern template class StringOwnerMap<UTF16Char>;

} // namespace Vorn
