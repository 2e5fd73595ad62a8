#include "Vorn/String/String.h"

#include "Reference/TextScan.h"
#include "Support/AllocationCounter.h"
#include "Support/Outcome.h"
#include "Support/Random.h"
#include "Support/Texts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace {

using namespace Vorn;

// Substrings of substrings with random life times, of all kinds of blocks, against plain copies of their texts.

template <class CharType>
struct Model {
    using Text = std::basic_string<CharType>;

    struct Entry {
        std::unique_ptr<CharType[]> callersBlock; // freed after the record that uses it
        String string;
        Text text;
    };

    explicit Model(unsigned int seed) : random(seed) {}

    Text randomText() {
        Codes codes(1 + random() % 12);
        const unsigned int alphabet[] = {'a', 'b', 'c', 'd', 'e', 0xE9, 0x20AC, 0x1F600};
        for (unsigned int& c : codes) c = alphabet[random() % 8];
        if constexpr (sizeof(CharType) == 1) {
            const std::string text = utf8Of(codes);
            return Text(text.begin(), text.end());
        } else {
            return utf16Of(codes);
        }
    }

    // The unit behind the text is inside the block, because a substring at the end reads it.
    void addRoot() {
        const Text text = randomText();
        auto block = std::make_unique<CharType[]>(text.size() + 2);
        std::copy(text.begin(), text.end(), block.get());
        const unsigned int length = static_cast<unsigned int>(text.size()) + random() % 2;
        if (random() % 2) {
            entries.push_back({nullptr, String(block.get(), length, STRING_DATA_DYNAMIC), text});
            block.release();
        } else {
            const String string(block.get(), length, STRING_DATA_EXTERNAL);
            entries.push_back({std::move(block), string, text});
        }
    }

    Entry& pick() { return entries[random.below(static_cast<unsigned int>(entries.size()))]; }

    // What a substring of an entry gives: a text, or a failure.
    struct Expected {
        Text text;
        std::string failure;
    };

    // Follows the rules unit by unit. `behind` is the unit behind the text.
    static Expected expectedSubstring(const Entry& parent, CharType behind, int offset, unsigned int length) {
        const Expected invalidOffset{
            {}, failureText(4, "Invalid Offset!", "Vorn::StringData::substr", "Source/Vorn/StringDataSubstring")};
        const int size = static_cast<int>(parent.text.size());
        const int start = offset < 0 ? offset + size : offset;
        if (start < 0 || start > size) return invalidOffset;

        const Text units = parent.text + behind;
        const auto isInside = [&](int i) {
            const unsigned int unit = units[static_cast<std::size_t>(i)];
            return sizeof(CharType) == 1 ? reference::isTrailByte(unit) : reference::isSecondSurrogate(unit);
        };
        if (isInside(start)) return invalidOffset;

        int end = length < static_cast<unsigned int>(size - start) ? start + static_cast<int>(length) : size;
        const bool keepsTerminator = end == size && isTerminated(parent.string);
        if constexpr (sizeof(CharType) == 1) {
            while (end > start && isInside(end - 1)) --end;
        } else {
            if (end > start && reference::isFirstSurrogate(units[static_cast<std::size_t>(end - 1)])) --end;
        }
        if (end == start) return {};
        if (keepsTerminator) ++end; // or the first trail byte, if the last character has one
        std::vector<CharType> taken(units.begin() + start, units.begin() + end);
        if (taken.back() == 0) taken.pop_back();
        const reference::ScanResult scanned = reference::scan(taken, static_cast<unsigned int>(taken.size()));
        return {Text(taken.begin(), taken.end()), scanned.outcome.failure};
    }

    static bool isTerminated(const String& string) {
        return string.getData()->template getBufferInfo<CharType>().m_nullTerminated;
    }

    void addSubstring() {
        Entry& parent = pick();
        const StringData& data = *parent.string.getData();
        const int size = static_cast<int>(parent.text.size());
        const int offset = static_cast<int>(random.below(static_cast<unsigned int>(2 * size + 3))) - size - 1;
        const unsigned int length = random() % 4 == 0 ? NPOS : random() % static_cast<unsigned int>(size + 2);
        const CharType behind = data.getPrivateBuffer<CharType>()[size];
        const Expected expected = expectedSubstring(parent, behind, offset, length);
        String string;
        const std::string failure = failureOf([&] { string = String(data.substr<CharType>(offset, length)); });
        ASSERT_EQ(failure, expected.failure)
            << "offset " << offset << ", length " << length << " of " << testing::PrintToString(parent.text);
        if (failure.empty()) entries.push_back({nullptr, string, expected.text}); // `check` compares the text
        (failure.empty() ? taken : refused) += 1;
    }

    void drop() {
        const std::size_t index = random.below(static_cast<unsigned int>(entries.size()));
        Entry dying = std::move(entries[index]);
        entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(index));
    }

    void check() {
        for (const Entry& entry : entries) {
            const StringData& data = *entry.string.getData();
            const StringDataBufferInfo& info = data.getBufferInfo<CharType>();
            const Text text(data.getPrivateBuffer<CharType>(), info.m_length);
            ASSERT_TRUE(text == entry.text);
            ASSERT_TRUE(!info.m_nullTerminated || data.getPrivateBuffer<CharType>()[info.m_length] == 0);
            ASSERT_TRUE(!info.m_previous || info.m_previous->template getNext<CharType>() == &data);
            ASSERT_TRUE(!info.m_previous || info.m_allocationType == STRING_DATA_EXTERNAL);
            ASSERT_TRUE(!info.m_next || info.m_next->template getPrevious<CharType>() == &data);
        }
    }

    void step() {
        switch (random() % 8) {
        case 0:
            if (entries.size() < 24) addRoot();
            break;
        case 1:
        case 2:
        case 3:
            if (!entries.empty() && entries.size() < 24) addSubstring();
            break;
        case 4:
            if (!entries.empty()) {
                Entry& entry = pick();
                // It leaves the chain if it is not terminated, so the others are not notified when the block is freed.
                if (entry.callersBlock) keptBlocks.push_back(std::move(entry.callersBlock));
                const CharType* const text = entry.string.getData()->template getTerminatedBuffer<CharType>();
                ASSERT_TRUE(Text(text) == entry.text);
            }
            break;
        case 5:
            if (!entries.empty()) {
                const Entry& entry = pick();
                // The record of a borrowed block is destroyed with its only handle, and the block is freed.
                const bool standsOnCallersBlock = std::any_of(entries.begin(), entries.end(), [&](const Entry& other) {
                    return other.callersBlock && other.string.getData() == entry.string.getData();
                });
                if (!standsOnCallersBlock && entries.size() < 24) {
                    const String string = entry.string;
                    const Text text = entry.text;
                    entries.push_back({nullptr, string, text});
                }
            }
            break;
        default:
            if (!entries.empty()) drop();
            break;
        }
    }

    Random random;
    std::vector<std::unique_ptr<CharType[]>> keptBlocks;
    std::vector<Entry> entries;
    int taken = 0;
    int refused = 0;
};

const int STEPS = repetitions(400000);

template <class CharType>
void runModel(unsigned int seed) {
    const std::size_t live = liveAllocationCount();
    {
        Model<CharType> model(seed);
        for (int i = 0; i < STEPS && !testing::Test::HasFatalFailure(); ++i) {
            model.step();
            model.check();
        }
        EXPECT_GT(model.taken, 0);
        EXPECT_GT(model.refused, 0);
    }
    EXPECT_EQ(liveAllocationCount(), live);
}

TEST(SubstringModel, UTF8) { runModel<unsigned char>(2204); }
TEST(SubstringModel, UTF16) { runModel<UTF16Char>(2205); }

} // namespace
