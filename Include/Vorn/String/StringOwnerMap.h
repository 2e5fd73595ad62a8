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
// Threads: nothing is locked, and counts are plain integers. A map and its strings belong to one thread at a time.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/Config.h"
#include "Vorn/String/String.h"
#include "Vorn/Types.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <sparsehash/dense_hash_map>
#include <sparsehash/dense_hash_set>

namespace VornPrivate {

/// The names that a map's failures report.
template <class CharType>
struct StringOwnerMapNames;

template <>
struct StringOwnerMapNames<unsigned char> {
    static constexpr char MAP_STRING[] = "Vorn::StringOwnerMap<unsigned char>::mapString";
    static constexpr char ADD_STATIC_STRING[] = "Vorn::StringOwnerMap<unsigned char>::addStaticString";
};

template <>
struct StringOwnerMapNames<Vorn::UTF16Char> {
    static constexpr char MAP_STRING[] = "Vorn::StringOwnerMap<wchar_t>::mapString";
    static constexpr char ADD_STATIC_STRING[] = "Vorn::StringOwnerMap<wchar_t>::addStaticString";
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
    StringOwnerMap() : m_emptyKeySet(false), m_deletedKeySet(false) {
        m_ownedBuffers.set_empty_key(nullptr);
        m_staticBuffers.set_empty_key(nullptr);
    }

    /// Copies nothing: gives an empty map. Each map owns its records alone.
    StringOwnerMap(const StringOwnerMap&) : StringOwnerMap() {}

    /// Does nothing: the left side keeps its own content.
    StringOwnerMap& operator=(const StringOwnerMap&) { return *this; }

    /// Strings that somebody still holds survive the map: external text is copied out first.
    /// @warning Running out of memory for that ends the process.
    ~StringOwnerMap();

    /// The string over `buffer`, the same record for the same address and length. `length` does not count a terminator;
    /// `terminated` says that there is one. The buffer must outlive the map unless it is marked by `addStaticString`.
    /// A length of 0xFFFFFFFF stands for a text that ends at its first zero unit, but makes it empty with `terminated`.
    /// Only the first call reads the text and the flag. Raises `Exception<4>` with "Invalid buffer!" for null, and
    /// `Exception<7>` for text that is not valid; after that the same buffer maps to a null string.
    String mapString(const CharType* buffer, unsigned int length, bool terminated) {
        if (!buffer) VORN_THROW(4, "Invalid buffer!", Names::MAP_STRING);
        setEmptyKey();
        const StringOwnerKey key(buffer, length);
        const auto known = m_strings.find(key);
        return known != m_strings.end() ? String(known->second.m_data) : mapNewString(key, buffer, length + terminated);
    }

    /// A buffer with the text of `s` that stays valid until `unmapString` has been called as often as this, or the map
    /// dies. Text that belongs to neither `s` nor this map is copied into memory from `alloc`, and stays mapped until
    /// the map dies.
    /// @warning Text of this map's own buffers comes back as it stands, terminated or not.
    /// @warning The buffer of a static text that was not terminated is a first copy: it dies early, at the next call
    ///     that asks for the terminated text, this one included. Its entry stays under the address that has gone.
    const CharType* mapStringNonInline(String s, StringOwnerAllocWrapperBase& alloc);

    /// Takes back one `mapStringNonInline`; with the last one the entry goes, unless its text is external. An entry
    /// that only `mapString` made goes at once, under the same condition. A buffer that is not mapped is passed over in
    /// silence.
    void unmapString(const CharType* buffer, unsigned int length);

    /// Promises that `buffer` lives for ever: strings over it are static from now on. Entries that exist stay as they
    /// are. Raises `Exception<4>` with "Invalid string!" for null and "String marked as owned!" for a buffer that the
    /// map has ever taken as external.
    void addStaticString(const CharType* buffer);

    /// Number of entries.
    unsigned int size() const { return static_cast<unsigned int>(m_strings.size()); }

private:
    using Names = VornPrivate::StringOwnerMapNames<CharType>;

    struct Hash {
        std::size_t operator()(const StringOwnerKey& key) const { return static_cast<unsigned int>(key); }
    };

    using Strings = google::dense_hash_map<StringOwnerKey, StringOwnerEntry, Hash>;
    using Buffers = google::dense_hash_set<const CharType*>;

    // The table takes memory for its buckets only now.
    void setEmptyKey() {
        if (m_emptyKeySet) return;
        m_strings.set_empty_key(StringOwnerKey::s_emptyKey);
        m_emptyKeySet = true;
    }

    String mapNewString(const StringOwnerKey& key, const CharType* buffer, unsigned int length);

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
String StringOwnerMap<CharType>::mapNewString(const StringOwnerKey& key, const CharType* buffer, unsigned int length) {
    StringOwnerEntry& entry = m_strings[key]; // stays without a record if the text is refused
    StringAllocationType type = STRING_DATA_STATIC;
    if (m_staticBuffers.find(buffer) == m_staticBuffers.end()) {
        type = STRING_DATA_EXTERNAL;
        m_ownedBuffers.insert(buffer);
    }
    StringData* const data = new StringData(buffer, length, type);
    data->incRefCount();
    entry.m_data = data;
    return String(data);
}

template <class CharType>
const CharType* StringOwnerMap<CharType>::mapStringNonInline(String s, StringOwnerAllocWrapperBase& alloc) {
    unsigned int n = 0;
    if (s.getData()) n = sizeof(CharType) == 1 ? s.getData()->getUTF8Length() : s.getData()->getUTF16Length();
    if (n == 0) s = String::getEmptyString();
    setEmptyKey();

    const CharType* buffer = s.getData()->template getBuffer<CharType>();
    const StringDataBufferInfo& info = s.getData()->template getBufferInfo<CharType>();
    if (info.m_allocationType == STRING_DATA_EXTERNAL) {
        if (m_ownedBuffers.find(buffer - info.m_offset) == m_ownedBuffers.end()) {
            const std::size_t bytes = n * sizeof(CharType);
            CharType* const copy = static_cast<CharType*>(alloc(static_cast<unsigned int>(bytes + sizeof(CharType))));
            std::memcpy(copy, buffer, bytes);
            copy[n] = 0;
            s = String(new StringData(copy, n + 1, STRING_DATA_EXTERNAL));
            m_ownedBuffers.insert(copy);
            buffer = copy;
        }
    } else if (!info.m_nullTerminated) {
        buffer = s.getData()->template getTerminatedBuffer<CharType>();
    }

    const StringOwnerKey key(buffer, n);
    auto entry = m_strings.find(key); // one that a refused text has left stays without a record
    if (entry == m_strings.end()) {
        entry = m_strings.insert({key, {s.getData(), 0}}).first;
        s.getData()->incRefCount();
    }
    ++entry->second.m_mapCount;
    return buffer;
}

template <class CharType>
void StringOwnerMap<CharType>::unmapString(const CharType* buffer, unsigned int length) {
    if (!buffer || !m_emptyKeySet) return;
    const auto found = m_strings.find(StringOwnerKey(buffer, length));
    if (found == m_strings.end()) return;
    StringOwnerEntry& entry = found->second;
    if (entry.m_mapCount > 1) {
        --entry.m_mapCount;
        return;
    }
    StringData* const data = entry.m_data;
    if (!data || data->template getAllocationType<CharType>() == STRING_DATA_EXTERNAL) return;
    if (!m_deletedKeySet) {
        m_strings.set_deleted_key(StringOwnerKey::s_deletedKey);
        m_deletedKeySet = true;
    }
    m_strings.erase(found);
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
