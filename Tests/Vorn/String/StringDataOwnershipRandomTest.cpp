// Random creation, substrings, conversion, termination and destruction of strings, beside a model that only keeps the
// characters of each.
#include "Support/AllocationCounter.h"
#include "Support/Random.h"
#include "Support/StringDataChains.h"
#include "Support/Texts.h"
#include "Vorn/Exception.h"
#include "Vorn/String/String.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <list>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace {

using namespace Vorn;

constexpr std::size_t MostStrings = 40;

Codes codesOf(const std::u32string& text) { return Codes(text.begin(), text.end()); }

std::vector<unsigned char> encode(const std::u32string& text, unsigned char) {
    const std::string units = utf8Of(codesOf(text));
    return {units.begin(), units.end()};
}

std::vector<UTF16Char> encode(const std::u32string& text, UTF16Char) {
    const UTF16Text units = utf16Of(codesOf(text));
    return {units.begin(), units.end()};
}

bool hasSupplementary(const std::u32string& text) {
    return std::any_of(text.begin(), text.end(), [](char32_t c) { return c >= 0x10000; });
}

class World {
public:
    explicit World(unsigned int seed) : m_random(seed) {}

    ~World() {
        while (!m_strings.empty()) drop(m_strings.begin());
        EXPECT_TRUE(m_buffers.empty());
    }

    void step() {
        const unsigned int action = m_random.below(100);
        if (m_strings.empty() || (action < 12 && m_strings.size() < MostStrings)) return create();
        const auto string = anyString();
        if (action < 50 && m_strings.size() < MostStrings) {
            if (m_random.below(2))
                takeSubstring<unsigned char>(*string);
            else
                takeSubstring<UTF16Char>(*string);
        } else if (action < 60) {
            terminate<unsigned char>(*string);
        } else if (action < 70) {
            terminate<UTF16Char>(*string);
        } else if (action < 75) {
            askCString(*string);
        } else if (action < 80) {
            build(*string);
        } else {
            drop(string);
        }
    }

    void check() const {
        for (const Known& known : m_strings) {
            ASSERT_EQ(known.string.getData()->getRefCount(), 1u);
            checkEncoding<unsigned char>(known);
            checkEncoding<UTF16Char>(known);
            if (testing::Test::HasFailure()) return;
        }
    }

private:
    struct Known {
        String string;
        std::u32string text;
        bool convertsToUTF16; // 4-byte characters do not survive that way
    };
    using Strings = std::list<Known>;

    // Borrowed memory. It is freed when no chain of records uses it any more.
    struct Buffer {
        std::unique_ptr<unsigned char[]> utf8;
        std::unique_ptr<UTF16Char[]> utf16;
        std::size_t size;

        template <class CharType>
        CharType* units() const {
            if constexpr (sizeof(CharType) == 1)
                return utf8.get();
            else
                return utf16.get();
        }
    };

    Strings::iterator anyString() {
        return std::next(m_strings.begin(), m_random.below(static_cast<unsigned int>(m_strings.size())));
    }

    std::u32string anyText() {
        const unsigned int widest = m_random.below(4);
        const unsigned int size = m_random.below(30);
        std::u32string text;
        for (unsigned int i = 0; i < size; ++i) {
            switch (m_random.below(widest + 2)) {
            case 2: text.push_back(0x80 + m_random.below(0x780)); break;
            case 3: text.push_back(0x800 + m_random.below(0xD000)); break;    // below the surrogates
            case 4: text.push_back(0x10000 + m_random.below(0x1F000)); break; // what the converters know how to write
            default: text.push_back(0x20 + m_random.below(0x5F)); break;
            }
        }
        // The last 2 codes of each plane are no characters.
        for (char32_t& c : text)
            if ((c & 0xFFFE) == 0xFFFE) c = 'z';
        return text;
    }

    void create() {
        if (m_random.below(2))
            create<unsigned char>();
        else
            create<UTF16Char>();
    }

    template <class CharType>
    void create() {
        const std::u32string text = anyText();
        std::vector<CharType> units = encode(text, CharType());
        const bool terminated = m_random.below(2);
        if (terminated) units.push_back(0);
        const auto length = static_cast<unsigned int>(units.size());
        units.push_back(CharType('?')); // so that a block is never empty, and what follows a text is no zero
        CharType* const block = newBlock(units);
        const unsigned int kind = m_random.below(5);
        const StringAllocationType type = kind < 2    ? STRING_DATA_DYNAMIC
                                          : kind == 2 ? STRING_DATA_STATIC
                                                      : STRING_DATA_EXTERNAL;
        if (type == STRING_DATA_STATIC) {
            m_static.emplace_back();
            own(m_static.back(), block, units.size());
        } else if (type == STRING_DATA_EXTERNAL) {
            m_buffers.emplace_back();
            own(m_buffers.back(), block, units.size());
        }
        const bool measured = terminated && m_random.below(2);
        const String string(block, measured ? NPOS : length, type);
        m_strings.push_back({string, text, sizeof(CharType) == 2 || !hasSupplementary(text)});
    }

    static void own(Buffer& buffer, unsigned char* block, std::size_t size) {
        buffer.utf8.reset(block);
        buffer.size = size;
    }

    static void own(Buffer& buffer, UTF16Char* block, std::size_t size) {
        buffer.utf16.reset(block);
        buffer.size = size;
    }

    // Makes an allocation fail now and then. True if `run` was done.
    template <class Callable>
    bool mayRunOutOfMemory(Callable&& run) {
        const std::size_t live = liveAllocationCount();
        const bool failing = m_random.below(8) == 0;
        if (failing) failAllocation(1);
        try {
            run();
            failAllocation(0);
            return true;
        } catch (const std::bad_alloc&) {
            failAllocation(0);
            EXPECT_TRUE(failing);
            EXPECT_EQ(liveAllocationCount(), live);
            return false;
        }
    }

    template <class CharType>
    bool mayAskFor(const Known& known) const {
        return known.string.getData()->getPrivateBuffer<CharType>() || sizeof(CharType) == 1 || known.convertsToUTF16;
    }

    template <class CharType>
    void terminate(const Known& known) {
        if (!mayAskFor<CharType>(known)) return;
        const StringData& record = *known.string.getData();
        const CharType* result = nullptr;
        if (mayRunOutOfMemory([&] { result = record.getTerminatedBuffer<CharType>(); })) {
            const std::vector<CharType> units = encode(known.text, CharType());
            EXPECT_EQ(result, record.getPrivateBuffer<CharType>());
            EXPECT_TRUE(std::equal(units.begin(), units.end(), result));
            EXPECT_EQ(result[units.size()], CharType(0));
        }
        freeBuffersWithoutRecords();
    }

    void askCString(const Known& known) {
        const char* const result = known.string.getCString();
        const std::vector<unsigned char> units = encode(known.text, static_cast<unsigned char>(0));
        EXPECT_EQ(std::string(result), std::string(units.begin(), units.end()));
        freeBuffersWithoutRecords();
    }

    void build(const Known& known) {
        mayRunOutOfMemory([&] { known.string.getData()->getBuffer<unsigned char>(); });
        if (mayAskFor<UTF16Char>(known)) mayRunOutOfMemory([&] { known.string.getData()->getBuffer<UTF16Char>(); });
    }

    template <class CharType>
    void takeSubstring(const Known& known) {
        const StringData& record = *known.string.getData();
        if (!record.getPrivateBuffer<CharType>() || known.text.empty()) return;
        const auto from = m_random.below(static_cast<unsigned int>(known.text.size()));
        const auto size = 1 + m_random.below(static_cast<unsigned int>(known.text.size()) - from);
        const std::u32string text = known.text.substr(from, size);
        const auto offset = static_cast<int>(encode(known.text.substr(0, from), CharType()).size());
        auto length = static_cast<unsigned int>(encode(text, CharType()).size());
        const bool reachesEnd = from + size == known.text.size();
        const bool terminated = record.getBufferInfo<CharType>().m_nullTerminated;
        if (reachesEnd && m_random.below(2)) length = NPOS;
        const int fromEnd = offset - static_cast<int>(record.getBufferInfo<CharType>().m_length);

        // A UTF-8 substring keeps the lead byte of its last character, and includes one more unit at the end of a
        // terminated text.
        const bool valid =
            sizeof(CharType) == 2 || text.back() < 0x80 || (reachesEnd && terminated && text.back() < 0x800);
        StringData* part = nullptr;
        bool refused = false;
        const std::size_t live = liveAllocationCount();
        const bool done = mayRunOutOfMemory([&] {
            try {
                part = record.substr<CharType>(m_random.below(2) ? offset : fromEnd, length);
            } catch (const Exception<7>&) {
                refused = true;
            }
        });
        if (!done) return;
        EXPECT_EQ(refused, !valid);
        EXPECT_EQ(liveAllocationCount(), live + (valid ? 1 : 0)); // the record alone
        if (!part) return;
        EXPECT_EQ(part->getRefCount(), 0u);
        if (record.getAllocationType<CharType>() == STRING_DATA_STATIC) {
            EXPECT_EQ(part->getAllocationType<CharType>(), STRING_DATA_STATIC);
        } else {
            EXPECT_EQ(record.getNext<CharType>(), part);
            EXPECT_EQ(part->getBufferInfo<CharType>().m_offset,
                      record.getBufferInfo<CharType>().m_offset + static_cast<unsigned int>(offset));
        }
        m_strings.push_back({String(part), text, sizeof(CharType) == 2 || !hasSupplementary(text)});
    }

    // A borrowed buffer can be freed after the head of its chain is destroyed.
    void drop(Strings::iterator string) {
        const StringData& record = *string->string.getData();
        const auto utf8 = bufferUnderHead<unsigned char>(record);
        const auto utf16 = bufferUnderHead<UTF16Char>(record);
        m_strings.erase(string);
        if (utf8 != m_buffers.end()) retire(utf8);
        if (utf16 != m_buffers.end()) retire(utf16);
        freeBuffersWithoutRecords();
    }

    template <class CharType>
    std::list<Buffer>::iterator bufferUnderHead(const StringData& record) {
        const CharType* const text = record.getPrivateBuffer<CharType>();
        if (!text || record.getAllocationType<CharType>() != STRING_DATA_EXTERNAL || record.getPrevious<CharType>())
            return m_buffers.end();
        return std::find_if(m_buffers.begin(), m_buffers.end(),
                            [&](const Buffer& buffer) { return standsOn(buffer, text); });
    }

    template <class CharType>
    static bool standsOn(const Buffer& buffer, const CharType* text) {
        const CharType* const units = buffer.units<CharType>();
        return units && text && std::less_equal<>()(units, text) && std::less<>()(text, units + buffer.size);
    }

    void retire(std::list<Buffer>::iterator buffer) {
        if (buffer->utf8) std::fill_n(buffer->utf8.get(), buffer->size, static_cast<unsigned char>('!'));
        if (buffer->utf16) std::fill_n(buffer->utf16.get(), buffer->size, static_cast<UTF16Char>('!'));
        m_buffers.erase(buffer);
    }

    // Those whose last record has copied its text out.
    void freeBuffersWithoutRecords() {
        for (auto buffer = m_buffers.begin(); buffer != m_buffers.end();) {
            const auto current = buffer++;
            if (std::none_of(m_strings.begin(), m_strings.end(), [&](const Known& known) {
                    const StringData& record = *known.string.getData();
                    return standsOn(*current, record.getPrivateBuffer<unsigned char>()) ||
                           standsOn(*current, record.getPrivateBuffer<UTF16Char>());
                }))
                retire(current);
        }
    }

    template <class CharType>
    static void checkEncoding(const Known& known) {
        const StringData& record = *known.string.getData();
        const CharType* const text = record.getPrivateBuffer<CharType>();
        if (text) {
            const std::vector<CharType> units = encode(known.text, CharType());
            ASSERT_EQ(record.getBufferInfo<CharType>().m_length, units.size());
            ASSERT_TRUE(std::equal(units.begin(), units.end(), text));
        } else {
            ASSERT_EQ(record.getAllocationType<CharType>(), STRING_DATA_NONE);
        }
        expectSoundChain<CharType>(record);
    }

    Random m_random;
    std::list<Buffer> m_static; // lives for ever, as far as strings can tell
    std::list<Buffer> m_buffers;
    Strings m_strings;
};

class StringDataOwnershipRandom : public testing::TestWithParam<unsigned int> {};

TEST_P(StringDataOwnershipRandom, TextsAndChainsStaySound) {
    const std::size_t live = liveAllocationCount();
    {
        World world(GetParam());
        for (int i = 0; i < repetitions(5000) && !HasFailure(); ++i) {
            SCOPED_TRACE(i);
            world.step();
            world.check();
        }
    }
    EXPECT_EQ(liveAllocationCount(), live);
}

INSTANTIATE_TEST_SUITE_P(Seeds, StringDataOwnershipRandom, testing::Range(1u, 7u));

} // namespace
