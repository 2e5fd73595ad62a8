#include "Vorn/Text/Name.h"

#include "Vorn/Assert.h"
#include "Vorn/Private/TextDecoding.h"
#include "Vorn/Text/MakeString.h"
#include "Vorn/TextBlock.h"

#include <boost/thread/mutex.hpp>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <string>

namespace Vorn {

namespace {

using VornPrivate::NameRecord;

/// True for UTF-8 without the byte 0xC0, so that each U+0000 is a zero byte.
bool isCanonical(TextView text) { return text.isUTF8() && !std::memchr(text.getUTF8(), 0xC0, text.getLength()); }

/// A text in UTF-8 with U+0000 as a zero byte, so that one text has one spelling.
class CanonicalText {
public:
    explicit CanonicalText(TextView text) { // which is not empty
        if (isCanonical(text)) {
            m_view = std::string_view(reinterpret_cast<const char*>(text.getUTF8()), text.getLength());
            return;
        }
        unsigned char* dest = m_small;
        const std::uint64_t most = std::uint64_t(text.getLength()) * (text.isUTF8() ? 1 : 3);
        if (most > sizeof m_small) {
            m_large = VornPrivate::allocateText<unsigned char>(most);
            dest = m_large.get();
        }
        const unsigned char* const begin = dest;
        for (unsigned int i = 0; i < text.getLength();) {
            const VornPrivate::DecodedCharacter character = VornPrivate::decodeAt(text, i);
            m_isMalformed = character.isMalformed;
            if (m_isMalformed) return; // U+FFFD can take more bytes than the units
            dest = VornPrivate::encodeTo(dest, character.code);
            i += character.units;
        }
        m_view = std::string_view(reinterpret_cast<const char*>(begin), static_cast<std::size_t>(dest - begin));
    }
    CanonicalText(const CanonicalText&) = delete;
    CanonicalText& operator=(const CanonicalText&) = delete;

    /// True if the text was converted and is malformed. A text that was not converted equals no stored one then.
    bool isMalformed() const { return m_isMalformed; }
    std::string_view view() const { return m_view; }

private:
    std::string_view m_view;
    bool m_isMalformed = false;
    std::unique_ptr<unsigned char[]> m_large;
    unsigned char m_small[192];
};

/// A table with linear probing, at most half full. Records are only added, so that readers need no lock. A table that
/// is too small is replaced and kept, as a reader can still be in it.
struct Table {
    explicit Table(std::size_t size, Table* replaced)
        : mask(size - 1), slots(new std::atomic<const NameRecord*>[size]()), previous(replaced) {}

    const NameRecord* find(std::string_view text, std::uint64_t hash) const {
        for (std::size_t i = static_cast<std::size_t>(hash);; ++i) {
            const NameRecord* const record = slots[i & mask].load(std::memory_order_acquire);
            if (!record || (record->hash == hash && record->text == text)) return record;
        }
    }

    void insert(const NameRecord* record) {
        std::size_t i = static_cast<std::size_t>(record->hash);
        while (slots[i & mask].load(std::memory_order_relaxed)) ++i;
        slots[i & mask].store(record, std::memory_order_release);
    }

    const std::size_t mask;
    const std::unique_ptr<std::atomic<const NameRecord*>[]> slots;
    Table* const previous;
};

constinit std::atomic<Table*> s_table{nullptr};
std::size_t s_count = 0; // guarded by the lock

boost::mutex& lockOfTable() {
    static boost::mutex& lock = *new boost::mutex; // never destroyed: names can be made by destructors of statics
    return lock;
}

const NameRecord* findRecord(std::string_view text, std::uint64_t hash) {
    const Table* const table = s_table.load(std::memory_order_acquire);
    return table ? table->find(text, hash) : nullptr;
}

/// The record with the very bytes of a text in UTF-8.
const NameRecord* findSpelled(TextView text) {
    if (!text.isUTF8()) return nullptr;
    const std::string_view bytes(reinterpret_cast<const char*>(text.getUTF8()), text.getLength());
    return findRecord(bytes, Name::hashOf(bytes));
}

/// A table with room for one more record. The lock is held.
Table& roomyTable() {
    Table* const table = s_table.load(std::memory_order_relaxed);
    if (table && 2 * (s_count + 1) <= table->mask) return *table;
    const std::size_t size = table ? 2 * (table->mask + 1) : 512;
    Table* const larger = new Table(size, table);
    for (std::size_t i = 0; table && i <= table->mask; ++i) {
        if (const NameRecord* const record = table->slots[i].load(std::memory_order_relaxed)) larger->insert(record);
    }
    s_table.store(larger, std::memory_order_release);
    return *larger;
}

/// A record that is never destroyed.
const NameRecord* makeRecord(TextView text, std::string_view plain, std::uint64_t hash) {
    std::unique_ptr<char[]> bytes(new char[plain.size() + 1]);
    std::copy(plain.begin(), plain.end(), bytes.get());
    bytes[plain.size()] = '\0';
    struct Freed {
        void operator()(void* memory) const { ::operator delete(memory); }
    };
    std::unique_ptr<void, Freed> memory(::operator new(sizeof(NameRecord)));
    const String string = makeStaticString(text); // the last step that can throw
    return new (memory.release()) NameRecord{hash, string, std::string_view(bytes.release(), plain.size())};
}

} // namespace

bool Name::find(TextView text, const VornPrivate::NameRecord*& record) {
    if (text.isEmpty()) return true;
    record = findSpelled(text);
    if (record || isCanonical(text)) return record;
    const CanonicalText canonical(text);
    if (!canonical.isMalformed()) record = findRecord(canonical.view(), hashOf(canonical.view()));
    return record;
}

const VornPrivate::NameRecord* Name::intern(TextView text) {
    if (text.isEmpty()) return nullptr;
    if (const NameRecord* const known = findSpelled(text)) return known;
    const CanonicalText canonical(text);
    const std::uint64_t hash = hashOf(canonical.view());
    if (!canonical.isMalformed()) {
        if (const NameRecord* const known = findRecord(canonical.view(), hash)) return known;
    }
    const std::lock_guard<boost::mutex> guard(lockOfTable());
    if (!canonical.isMalformed()) {
        if (const NameRecord* const known = findRecord(canonical.view(), hash)) return known;
    }
    Table& table = roomyTable();
    const NameRecord* const record = makeRecord(text, canonical.view(), hash); // throws for malformed text
    table.insert(record);
    ++s_count;
    return record;
}

} // namespace Vorn
