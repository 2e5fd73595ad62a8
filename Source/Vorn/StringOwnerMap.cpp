#include "Vorn/String/StringOwnerMap.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>
#include <sparsehash/dense_hash_map>
#include <sparsehash/dense_hash_set>
#include <utility>

namespace VornPrivate {

namespace {

// Allocates the buckets of the tables with `malloc`, and throws `std::bad_alloc` if that fails. The tables' own
// default returns the null pointer instead, and they then write to it. They allocate a new array of buckets before
// they free the old one, so that a failure leaves them as they were.
template <class T>
class BucketAllocator {
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
        using other = BucketAllocator<Other>;
    };

    BucketAllocator() = default;
    template <class Other>
    BucketAllocator(const BucketAllocator<Other>&) noexcept {}

    pointer allocate(size_type n, const_pointer = nullptr) {
        void* const buckets = n <= max_size() ? std::malloc(n * sizeof(T)) : nullptr;
        if (!buckets) throw std::bad_alloc();
        return static_cast<pointer>(buckets);
    }
    void deallocate(pointer buckets, size_type) noexcept { std::free(buckets); }
    size_type max_size() const noexcept { return static_cast<size_type>(-1) / sizeof(T); }
};

struct KeyHash {
    std::size_t operator()(const Vorn::StringOwnerKey& key) const { return static_cast<unsigned int>(key); }
};

} // namespace

template <class CharType>
struct StringOwnerTables {
    using Strings =
        google::dense_hash_map<Vorn::StringOwnerKey, Vorn::StringOwnerEntry, KeyHash,
                               std::equal_to<Vorn::StringOwnerKey>,
                               BucketAllocator<std::pair<const Vorn::StringOwnerKey, Vorn::StringOwnerEntry>>>;
    using Buffers = google::dense_hash_set<const CharType*, typename google::dense_hash_set<const CharType*>::hasher,
                                           std::equal_to<const CharType*>, BucketAllocator<const CharType*>>;

    StringOwnerTables() {
        ownedBuffers.set_empty_key(nullptr);
        staticBuffers.set_empty_key(nullptr);
    }

    // Makes the next insertion of a buffer allocate nothing. The set never erases, so its size counts all used buckets.
    static void reserveOne(Buffers& buffers) { buffers.resize(buffers.size() + 1); }

    Strings strings;
    Buffers ownedBuffers;  // external buffers, owned by the map or by its caller
    Buffers staticBuffers; // marked by addStaticString
};

} // namespace VornPrivate

namespace Vorn {

constinit const StringOwnerKey StringOwnerKey::s_emptyKey;
constinit const StringOwnerKey StringOwnerKey::s_deletedKey(nullptr, 0xFFFFFFFF);

StringOwnerAllocWrapperBase::~StringOwnerAllocWrapperBase() = default;

template <class CharType>
StringOwnerMap<CharType>::StringOwnerMap() : m_emptyKeySet(false), m_deletedKeySet(false) {
    static_assert(sizeof(Tables) == sizeof(m_tables) && alignof(Tables) == alignof(void*), "the storage of the tables");
    new (m_tables) Tables;
}

template <class CharType>
StringOwnerMap<CharType>::StringOwnerMap(const StringOwnerMap&) : StringOwnerMap() {}

template <class CharType>
StringOwnerMap<CharType>& StringOwnerMap<CharType>::operator=(const StringOwnerMap&) {
    return *this;
}

template <class CharType>
typename StringOwnerMap<CharType>::Tables& StringOwnerMap<CharType>::tables() {
    return *std::launder(reinterpret_cast<Tables*>(m_tables));
}

template <class CharType>
const typename StringOwnerMap<CharType>::Tables& StringOwnerMap<CharType>::tables() const {
    return *std::launder(reinterpret_cast<const Tables*>(m_tables));
}

// Allocates the buckets of the table at its first use. A table whose allocation failed accepts no second empty key, so
// a new one is set up and swapped in.
template <class CharType>
void StringOwnerMap<CharType>::setEmptyKey() {
    if (m_emptyKeySet) return;
    typename Tables::Strings strings;
    strings.set_empty_key(StringOwnerKey::s_emptyKey);
    tables().strings.swap(strings);
    m_emptyKeySet = true;
}

template <class CharType>
void StringOwnerMap<CharType>::eraseEntry(const StringOwnerKey& key) {
    if (!m_deletedKeySet) {
        tables().strings.set_deleted_key(StringOwnerKey::s_deletedKey);
        m_deletedKeySet = true;
    }
    tables().strings.erase(key);
}

template <class CharType>
unsigned int StringOwnerMap<CharType>::size() const {
    return static_cast<unsigned int>(tables().strings.size());
}

template <class CharType>
const StringOwnerEntry* StringOwnerMap<CharType>::findEntry(const CharType* buffer, unsigned int length) const {
    if (!m_emptyKeySet) return nullptr;
    const auto known = tables().strings.find(StringOwnerKey(buffer, length));
    return known == tables().strings.end() ? nullptr : &known->second;
}

template <class CharType>
StringOwnerMap<CharType>::~StringOwnerMap() {
    if (m_emptyKeySet) {
        for (const auto& entry : tables().strings) {
            StringData* const data = entry.second.m_data;
            if (!data) continue;
            // Another handle still owns the record, and the owner of its buffer may be destroyed after this map.
            if (data->template getAllocationType<CharType>() == STRING_DATA_EXTERNAL && data->getRefCount() > 1)
                data->template detachExternalBuffer<CharType>();
            data->decRefCount();
        }
    }
    tables().~Tables();
}

template <class CharType>
String StringOwnerMap<CharType>::mapNewString(const CharType* buffer, unsigned int length, bool terminated) {
    setEmptyKey();
    const bool isStatic = tables().staticBuffers.find(buffer) != tables().staticBuffers.end();
    const StringOwnerKey key(buffer, length);
    const auto entry = tables().strings.insert({key, {}}).first;
    StringData* data = nullptr;
    try {
        if (!isStatic) Tables::reserveOne(tables().ownedBuffers);
        data = new StringData(buffer, StringData::countedLength(length, terminated),
                              isStatic ? STRING_DATA_STATIC : STRING_DATA_EXTERNAL, StringData::CountedLength());
    } catch (const Exception<E::UNICODE>&) { // the text is malformed: the entry stays without a record
        if (!isStatic) tables().ownedBuffers.insert(buffer);
        throw;
    } catch (...) {
        eraseEntry(key);
        throw;
    }
    if (!isStatic) tables().ownedBuffers.insert(buffer);
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
    const bool isForeign =
        isExternal && tables().ownedBuffers.find(buffer - info.m_offset) == tables().ownedBuffers.end();
    if (isForeign) {
        const std::uint64_t bytes = (std::uint64_t(n) + 1) * sizeof(CharType);
        if (bytes > 0xFFFFFFFF) Failures::textTooLong();
        CharType* const copy = static_cast<CharType*>(alloc(static_cast<unsigned int>(bytes)));
        if (!copy) throw std::bad_alloc();
        std::memcpy(copy, buffer, std::size_t(n) * sizeof(CharType));
        copy[n] = 0;
        s = String(new StringData(copy, std::uint64_t(n) + 1, STRING_DATA_EXTERNAL, StringData::CountedLength()));
        Tables::reserveOne(tables().ownedBuffers);
        buffer = copy;
    } else if (!isExternal && !info.m_nullTerminated) {
        buffer = s.getData()->template getTerminatedBuffer<CharType>();
    }

    setEmptyKey();
    const StringOwnerKey key(buffer, n);
    auto entry = tables().strings.find(key); // one that a refused text has left stays without a record
    if (entry == tables().strings.end()) {
        entry = tables().strings.insert({key, {s.getData(), 0}}).first;
        s.getData()->incRefCount();
    }
    ++entry->second.m_mapCount;
    if (isForeign) tables().ownedBuffers.insert(buffer);
    return buffer;
}

template <class CharType>
void StringOwnerMap<CharType>::unmapString(const CharType* buffer, unsigned int length) {
    if (!buffer || !m_emptyKeySet) return;
    const StringOwnerKey key(buffer, length);
    const auto found = tables().strings.find(key);
    if (found == tables().strings.end()) return;
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
    if (!buffer) Failures::invalidString();
    if (tables().ownedBuffers.find(buffer) != tables().ownedBuffers.end()) Failures::markedAsOwned();
    tables().staticBuffers.insert(buffer);
}

template class StringOwnerMap<unsigned char>;
template class StringOwnerMap<UTF16Char>;

} // namespace Vorn
