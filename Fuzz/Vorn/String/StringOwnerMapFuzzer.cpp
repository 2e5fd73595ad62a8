// Interning against a plain map from address and length to records, in both encodings, and the texts of strings that
// outlive the map and its buffers.
#include "Vorn/String/StringOwnerMap.h"

#include "Support/Stream.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <deque>
#include <map>
#include <memory>
#include <set>
#include <vector>

namespace {

using namespace Vorn;

constexpr unsigned int ALL = 0xFFFFFFFF;
constexpr unsigned int BUFFERS = 4; // the last one holds a text that is not valid
constexpr std::size_t MOST_STRINGS = 6;

template <class CharType>
class Play {
public:
    explicit Play(Stream stream) : m_stream(stream) {}

    void run() {
        for (unsigned int i = 0; i < BUFFERS; ++i) makeBuffer(i);
        m_map = std::make_unique<StringOwnerMap<CharType>>();
        while (!m_stream.ended()) {
            step();
            require(m_map->size() == m_entries.size(), "another number of entries");
            compareTexts();
        }
        m_map.reset();
        // What belonged to the map is overwritten; strings that are still held have copies of their own. Static text
        // stays, as was promised.
        for (auto& buffer : m_buffers) {
            if (!m_static.count(buffer.data())) std::fill(buffer.begin(), buffer.end(), CharType('#'));
        }
        m_memory.blocks.clear();
        compareTexts();
    }

private:
    using Text = std::basic_string<CharType>;
    using Key = std::pair<const CharType*, unsigned int>;

    struct Entry {
        const StringData* data; // null if the text was refused
        StringAllocationType type;
        unsigned int mapCount;
    };

    struct Held {
        String string;
        Text text;
    };

    /// Memory for the copies of a map.
    struct Memory : StringOwnerAllocWrapperBase {
        void* allocate(unsigned int bytes) override {
            blocks.push_back(std::make_unique<unsigned char[]>(bytes));
            return blocks.back().get();
        }
        std::vector<std::unique_ptr<unsigned char[]>> blocks;
    };

    Text randomText(unsigned int length) {
        Text text;
        while (length-- > 0) text.push_back(static_cast<CharType>(m_stream.below(0x7E) + 1));
        return text;
    }

    void makeBuffer(unsigned int i) {
        Text text = randomText(1 + m_stream.below(4));
        if (i == BUFFERS - 1) text.front() = static_cast<CharType>(sizeof(CharType) == 1 ? 0xBF : 0xDC00);
        m_buffers[i].assign(text.c_str(), text.c_str() + text.size() + 1);
    }

    void step() {
        const unsigned int choice = m_stream.next();
        switch (choice % 8) {
        case 0:
        case 1: mapBuffer(choice / 8 % BUFFERS, choice / 32); break;
        case 2:
            if (!m_held.empty()) mapHeld(m_held[choice / 8 % m_held.size()]);
            break;
        case 3: addString(choice / 8); break;
        case 4: unmap(choice / 8); break;
        case 5: addStatic(choice / 8 % BUFFERS); break;
        case 6:
            if (!m_held.empty()) m_held.erase(m_held.begin() + static_cast<std::ptrdiff_t>(choice / 8 % m_held.size()));
            break;
        default: {
            const StringOwnerMap<CharType> copy(*m_map);
            require(copy.size() == 0, "a copy has entries");
            *m_map = copy;
            break;
        }
        }
    }

    void hold(const String& string, const Text& text) {
        if (m_held.size() >= MOST_STRINGS) m_held.pop_front();
        m_held.push_back({string, text});
    }

    void mapBuffer(unsigned int i, unsigned int choice) {
        const CharType* const buffer = m_buffers[i].data();
        const unsigned int size = static_cast<unsigned int>(m_buffers[i].size()) - 1;
        const unsigned int lengths[] = {size, size, size - 1, 0, ALL};
        const unsigned int length = lengths[choice % 5];
        const bool isTerminated = choice % 5 == 1;
        const Text text(buffer, length == ALL ? size : length);
        const auto known = m_entries.find({buffer, length});
        const bool isRefused = i == BUFFERS - 1 && !text.empty();
        m_known.push_back({buffer, length});
        if (known != m_entries.end()) {
            const String string = m_map->mapString(buffer, length, isTerminated);
            require(string.getData() == known->second.data, "another record for the same buffer");
            hold(string, string.isNull() ? Text() : text);
            return;
        }
        const bool isStatic = m_static.count(buffer) != 0;
        if (!isStatic) m_owned.insert(buffer);
        Entry& entry = m_entries[{buffer, length}];
        entry = {nullptr, isStatic ? STRING_DATA_STATIC : STRING_DATA_EXTERNAL, 0};
        try {
            const String string = m_map->mapString(buffer, length, isTerminated);
            require(!isRefused, "a text is accepted that is not valid");
            require(string.getData()->template getAllocationType<CharType>() == entry.type, "another owner");
            require(string.getData()->getRefCount() == 2, "another number of references");
            entry.data = string.getData();
            hold(string, text);
        } catch (const Exception<7>&) {
            require(isRefused, "a valid text is refused");
        }
    }

    // A string that no map knows: of its own block, or a substring of one.
    void addString(unsigned int choice) {
        const Text text = randomText(2 + choice % 8);
        const unsigned int size = static_cast<unsigned int>(text.size());
        CharType* const block = new CharType[size + 1]();
        std::copy(text.begin(), text.end(), block);
        const String string(block, size + choice % 2, STRING_DATA_DYNAMIC);
        hold(string, text);
        if (choice & 8) hold(String(string.getData()->template substr<CharType>(1, size - 1)), text.substr(1));
    }

    void mapHeld(const Held& held) {
        const String string = held.string;
        const Text text = held.text;
        const unsigned int n = static_cast<unsigned int>(text.size());
        if (n != 0) {
            // Such a text is copied, and its first copy may be freed by the next call.
            const StringDataBufferInfo& info = string.getData()->template getBufferInfo<CharType>();
            if (info.m_allocationType == STRING_DATA_STATIC && !info.m_nullTerminated) return;
        }
        const std::size_t copies = m_memory.blocks.size();
        const CharType* const buffer = m_map->mapStringNonInline(string, m_memory);
        require(std::equal(text.begin(), text.end(), buffer), "a mapped text differs");
        m_known.push_back({buffer, n});
        if (m_memory.blocks.size() != copies) {
            require(static_cast<const void*>(m_memory.blocks.back().get()) == buffer && buffer[n] == 0,
                    "a copy is not the result");
            m_owned.insert(buffer);
            require(m_entries.insert({{buffer, n}, {nullptr, STRING_DATA_EXTERNAL, 1}}).second, "a copy is known");
            m_copied.insert(buffer);
            return;
        }
        const auto found = m_entries.find({buffer, n});
        if (found != m_entries.end()) {
            ++found->second.mapCount;
            return;
        }
        const StringData* const data = n != 0 ? string.getData() : String::getEmptyString().getData();
        m_entries.insert({{buffer, n}, {data, data->template getBufferInfo<CharType>().m_allocationType, 1}});
    }

    void unmap(unsigned int choice) {
        if (m_known.empty()) return m_map->unmapString(m_buffers[0].data(), 1);
        const Key key = m_known[choice % m_known.size()];
        m_map->unmapString(key.first, key.second);
        const auto found = m_entries.find(key);
        if (found == m_entries.end()) return;
        Entry& entry = found->second;
        if (entry.mapCount > 1) {
            --entry.mapCount;
        } else if ((entry.data || m_copied.count(key.first)) && entry.type != STRING_DATA_EXTERNAL) {
            m_entries.erase(found);
        }
    }

    void addStatic(unsigned int i) {
        const CharType* const buffer = m_buffers[i].data();
        try {
            m_map->addStaticString(buffer);
            require(!m_owned.count(buffer), "an owned buffer is marked as static");
            m_static.insert(buffer);
        } catch (const Exception<4>& exception) {
            require(m_owned.count(buffer) && std::strcmp(exception.getMessage(), "String marked as owned!") == 0,
                    "another failure");
        }
    }

    void compareTexts() const {
        for (const Held& held : m_held) {
            if (held.string.isNull()) {
                require(held.text.empty(), "a string was lost");
                continue;
            }
            const StringData& data = *held.string.getData();
            require(data.template getBufferInfo<CharType>().m_length == held.text.size() &&
                        std::equal(held.text.begin(), held.text.end(), data.template getPrivateBuffer<CharType>()),
                    "the text of a string differs");
        }
    }

    Stream m_stream;
    std::array<std::vector<CharType>, BUFFERS> m_buffers;
    Memory m_memory;
    std::unique_ptr<StringOwnerMap<CharType>> m_map;
    std::map<Key, Entry> m_entries;
    std::set<const CharType*> m_owned, m_static, m_copied;
    std::vector<Key> m_known; // every key that was mapped once
    std::deque<Held> m_held;
};

} // namespace

// The first byte chooses the encoding.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Stream stream(data, size);
    if (stream.next() % 2 == 0)
        Play<unsigned char>(stream).run();
    else
        Play<UTF16Char>(stream).run();
    return 0;
}
