#include "Vorn/String/StringOwnerMap.h"

#include "Support/AllocationCounter.h"
#include "Support/Random.h"
#include "Support/Report.h"
#include "Support/StringDataProbe.h"
#include "Support/Texts.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <type_traits>

namespace {

using namespace Vorn;

constexpr const char* FILE_TEXT = "Include/Vorn/String/StringOwnerMap";

// Owns the blocks that it returns, and records the requested sizes.
struct Pool : StringOwnerAllocWrapperBase {
    void* allocate(unsigned int bytes) override {
        blocks.push_back(std::make_unique<std::uint64_t[]>(bytes / 8 + 1));
        lastBytes = bytes;
        return blocks.back().get();
    }
    std::vector<std::unique_ptr<std::uint64_t[]>> blocks;
    unsigned int lastBytes = 0;
};

struct EmptyPool : StringOwnerAllocWrapperBase {
    void* allocate(unsigned int) override { throw std::bad_alloc(); }
};

TEST(StringOwnerKey, ComparesAddressAndLength) {
    const char text[] = "ab";
    const StringOwnerKey key(text, 2);
    EXPECT_TRUE(key == StringOwnerKey(text, 2) && !(key != StringOwnerKey(text, 2)));
    EXPECT_TRUE(key != StringOwnerKey(text, 1) && key != StringOwnerKey(text + 1, 2));
    EXPECT_EQ(static_cast<unsigned int>(key), static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(&text[0])));
    StringOwnerKey assigned;
    EXPECT_TRUE(assigned == StringOwnerKey(nullptr, 0) && assigned == StringOwnerKey::getEmptyKey());
    assigned = key;
    EXPECT_TRUE(assigned == key);
    EXPECT_TRUE(StringOwnerKey::getDeletedKey() == StringOwnerKey(nullptr, 0xFFFFFFFF));
    EXPECT_EQ(&StringOwnerKey::getEmptyKey(), &StringOwnerKey::s_emptyKey);
    EXPECT_EQ(&StringOwnerKey::getDeletedKey(), &StringOwnerKey::s_deletedKey);
}

template <class CharType>
class StringOwnerMapTest : public testing::Test {
protected:
    using Map = StringOwnerMap<CharType>;
    using Text = std::basic_string<CharType>;

    static constexpr bool NARROW = sizeof(CharType) == 1;
    static constexpr const char* MAP =
        NARROW ? "Vorn::StringOwnerMap<unsigned char>::mapString" : "Vorn::StringOwnerMap<wchar_t>::mapString";
    static constexpr const char* ADD = NARROW ? "Vorn::StringOwnerMap<unsigned char>::addStaticString"
                                              : "Vorn::StringOwnerMap<wchar_t>::addStaticString";

    static Text textOf(const char* ascii) { return Text(ascii, ascii + std::char_traits<char>::length(ascii)); }
    static Text textOf(const String& string) {
        return Text(string.getData()->getPrivateBuffer<CharType>(),
                    string.getData()->getBufferInfo<CharType>().m_length);
    }
    static String dynamicString(const char* ascii, bool terminated = true) {
        const Text text = textOf(ascii);
        const unsigned int length = static_cast<unsigned int>(text.size());
        CharType* const block = new CharType[length + 1];
        std::copy(text.begin(), text.end(), block);
        block[length] = 0;
        return String(block, length + terminated, STRING_DATA_DYNAMIC);
    }
    static StringAllocationType typeOf(const String& string) {
        return string.getData()->template getAllocationType<CharType>();
    }
};

using Encodings = testing::Types<unsigned char, UTF16Char>;
TYPED_TEST_SUITE(StringOwnerMapTest, Encodings, );

TYPED_TEST(StringOwnerMapTest, OneBufferGivesOneRecord) {
    const auto text = this->textOf("hello!"), same = text;
    typename TestFixture::Map map;
    EXPECT_EQ(map.size(), 0u);
    const String first = map.mapString(text.c_str(), 5, false);
    EXPECT_EQ(first.getData()->getRefCount(), 2u);
    String second;
    EXPECT_EQ(allocationsDuring([&] { second = map.mapString(text.c_str(), 5, false); }), 0u);
    EXPECT_EQ(second.getData(), first.getData());
    EXPECT_EQ(map.size(), 1u);
    EXPECT_EQ(this->textOf(first), this->textOf("hello"));
    EXPECT_EQ(this->typeOf(first), STRING_DATA_EXTERNAL);
    EXPECT_FALSE(first.getData()->template getBufferInfo<TypeParam>().m_nullTerminated);

    EXPECT_NE(map.mapString(text.c_str(), 6, true).getData(), first.getData()) << "the length belongs to the key";
    EXPECT_NE(map.mapString(same.c_str(), 5, false).getData(), first.getData()) << "the text does not";
    EXPECT_EQ(map.size(), 3u);
    const String terminated = map.mapString(text.c_str(), 6, false);
    EXPECT_TRUE(terminated.getData()->template getBufferInfo<TypeParam>().m_nullTerminated);
    EXPECT_EQ(map.mapString(text.c_str(), 5, true).getData(), first.getData()) << "only the first call sees the flag";
}

TYPED_TEST(StringOwnerMapTest, RefusesNull) {
    typename TestFixture::Map map;
    const TypeParam* const null = nullptr;
    expectRaises<4>([&] { map.mapString(null, 0, false); }, "Invalid buffer!", this->MAP, FILE_TEXT);
    expectRaises<4>([&] { map.addStaticString(null); }, "Invalid string!", this->ADD, FILE_TEXT);
    map.unmapString(null, 0);
    EXPECT_EQ(map.size(), 0u);
}

TYPED_TEST(StringOwnerMapTest, BadTextLeavesAnEntryWithoutARecord) {
    const TypeParam bad[] = {static_cast<TypeParam>(sizeof(TypeParam) == 1 ? 0x80 : 0xDC00), 0};
    typename TestFixture::Map map;
    expectRaises<7>([&] { map.mapString(bad, 1, false); },
                    sizeof(TypeParam) == 1 ? "Unmatched trail UTF-8 byte detected!"
                                           : "Unmatched second surrogate code!",
                    "stringDataBufferScan");
    EXPECT_EQ(map.size(), 1u);
    EXPECT_TRUE(map.mapString(bad, 1, false).isNull());
    map.unmapString(bad, 1);
    EXPECT_EQ(map.size(), 1u);
}

TYPED_TEST(StringOwnerMapTest, AnEntryWithoutARecordStaysSo) {
    TypeParam text[] = {static_cast<TypeParam>(sizeof(TypeParam) == 1 ? 0x80 : 0xDC00), 0};
    typename TestFixture::Map map;
    Pool pool;
    EXPECT_THROW(map.mapString(text, 1, false), Exception<7>);
    text[0] = 'a';
    const String string(text, 1);
    EXPECT_EQ(map.mapStringNonInline(string, pool), text) << "the map knows the buffer";
    EXPECT_EQ(string.getData()->getRefCount(), 1u) << "and takes no use of the record";
    EXPECT_TRUE(map.mapString(text, 1, false).isNull());
    EXPECT_EQ(map.size(), 1u);
}

TYPED_TEST(StringOwnerMapTest, StaticStrings) {
    static const TypeParam text[] = {'s', 't', 'a', 't', 'i', 'c', 0};
    const auto other = this->textOf("other");
    String string;
    {
        typename TestFixture::Map map;
        map.addStaticString(text);
        map.addStaticString(text);
        string = map.mapString(text, 6, true);
        EXPECT_EQ(this->typeOf(string), STRING_DATA_STATIC);
        EXPECT_EQ(this->typeOf(map.mapString(text + 1, 5, true)), STRING_DATA_EXTERNAL);

        map.mapString(other.c_str(), 5, false);
        expectRaises<4>([&] { map.addStaticString(other.c_str()); }, "String marked as owned!", this->ADD, FILE_TEXT);
        EXPECT_EQ(map.size(), 3u);
        map.unmapString(text, 6);
        EXPECT_EQ(map.size(), 2u) << "a static entry is removed immediately";
        EXPECT_EQ(string.getData()->getRefCount(), 1u);
    }
    EXPECT_EQ(string.getData()->template getPrivateBuffer<TypeParam>(), text);
}

TYPED_TEST(StringOwnerMapTest, UnmappingWhatIsNotMappedIsSilent) {
    const auto text = this->textOf("text");
    typename TestFixture::Map map;
    map.unmapString(text.c_str(), 4);
    map.mapString(text.c_str(), 4, true);
    map.unmapString(text.c_str(), 3);
    map.unmapString(text.c_str() + 1, 4);
    EXPECT_EQ(map.size(), 1u);
    map.unmapString(text.c_str(), 4);
    EXPECT_EQ(map.size(), 1u) << "external entries remain until the map is destroyed";
}

TYPED_TEST(StringOwnerMapTest, HandsOutBuffersThatOutliveTheString) {
    typename TestFixture::Map map;
    Pool pool;
    String string = this->dynamicString("dynamic");
    StringData* const record = string.getData();
    const TypeParam* const buffer = map.mapStringNonInline(string, pool);
    EXPECT_EQ(buffer, record->template getPrivateBuffer<TypeParam>());
    EXPECT_EQ(map.mapStringNonInline(string, pool), buffer);
    EXPECT_EQ(record->getRefCount(), 2u);
    EXPECT_TRUE(pool.blocks.empty());
    string = String();
    EXPECT_EQ(std::basic_string<TypeParam>(buffer), this->textOf("dynamic"));
    EXPECT_EQ(map.mapString(buffer, 7, true).getData(), record);
    map.unmapString(buffer, 7);
    EXPECT_EQ(map.size(), 1u);
    EXPECT_EQ(record->getRefCount(), 1u);
    const std::size_t live = liveAllocationCount();
    map.unmapString(buffer, 7);
    EXPECT_EQ(map.size(), 0u);
    EXPECT_EQ(liveAllocationCount(), live - 2) << "record and block";
}

TYPED_TEST(StringOwnerMapTest, TerminatesWhatItHandsOut) {
    typename TestFixture::Map map;
    Pool pool;
    const String dynamic = this->dynamicString("open", false);
    EXPECT_EQ(std::basic_string<TypeParam>(map.mapStringNonInline(dynamic, pool)), this->textOf("open"));

    static const TypeParam text[] = {'o', 'p', 'e', 'n', '!'};
    const String fixed(text, 4, STRING_DATA_STATIC);
    const TypeParam* const buffer = map.mapStringNonInline(fixed, pool);
    EXPECT_NE(buffer, text);
    EXPECT_EQ(std::basic_string<TypeParam>(buffer), this->textOf("open"));
    EXPECT_TRUE(pool.blocks.empty());
}

TYPED_TEST(StringOwnerMapTest, CopiesExternalTextIntoTheCallersMemory) {
    const auto text = this->textOf("external");
    Pool pool;
    String survivor;
    {
        typename TestFixture::Map map;
        const String string(text.c_str(), 8);
        const TypeParam* const buffer = map.mapStringNonInline(string, pool);
        ASSERT_EQ(pool.blocks.size(), 1u);
        EXPECT_EQ(pool.lastBytes, 9 * sizeof(TypeParam));
        EXPECT_EQ(static_cast<const void*>(buffer), pool.blocks[0].get());
        EXPECT_EQ(std::basic_string<TypeParam>(buffer), text);
        EXPECT_EQ(string.getData()->getRefCount(), 1u) << "the copy has a record of its own";
        survivor = map.mapString(buffer, 8, true);
        EXPECT_EQ(this->typeOf(survivor), STRING_DATA_EXTERNAL);
        EXPECT_TRUE(survivor.getData()->template getBufferInfo<TypeParam>().m_nullTerminated);

        EXPECT_NE(map.mapStringNonInline(string, pool), buffer) << "copied anew";
        EXPECT_EQ(map.mapStringNonInline(survivor, pool), buffer) << "its own buffer comes back";
        EXPECT_EQ(pool.blocks.size(), 2u);
        expectRaises<4>([&] { map.addStaticString(buffer); }, "String marked as owned!", this->ADD, FILE_TEXT);

        // A substring of an owned buffer is found by the start of the block, and returned unchanged.
        const String substring(survivor.getData()->template substr<TypeParam>(2, 3));
        EXPECT_EQ(map.mapStringNonInline(substring, pool), buffer + 2);
        EXPECT_EQ(pool.blocks.size(), 2u);
        for (int i = 0; i < 4; ++i) map.unmapString(buffer, 8);
        EXPECT_EQ(map.size(), 3u);
    }
    EXPECT_EQ(this->typeOf(survivor), STRING_DATA_DYNAMIC);
    EXPECT_EQ(this->textOf(survivor), text);
}

TYPED_TEST(StringOwnerMapTest, ConvertsTextOfTheOtherEncoding) {
    using Other = std::conditional_t<sizeof(TypeParam) == 1, UTF16Char, unsigned char>;
    const std::basic_string<Other> text{'w', 'i', 'd', 'e'};
    const String string(text.c_str(), 4);
    typename TestFixture::Map map;
    Pool pool;
    const TypeParam* const buffer = map.mapStringNonInline(string, pool);
    EXPECT_EQ(std::basic_string<TypeParam>(buffer), this->textOf("wide"));
    EXPECT_EQ(string.getData()->template getPrivateBuffer<TypeParam>(), buffer);
    EXPECT_EQ(map.mapString(buffer, 4, true).getData(), string.getData());
    EXPECT_TRUE(pool.blocks.empty());
}

TYPED_TEST(StringOwnerMapTest, EmptyStringsShareTheEmptyBuffer) {
    const auto text = this->textOf("x");
    typename TestFixture::Map map;
    Pool pool;
    const TypeParam* const empty = String::s_emptyString.getData()->template getPrivateBuffer<TypeParam>();
    EXPECT_EQ(map.mapStringNonInline(String(), pool), empty);
    EXPECT_EQ(map.mapStringNonInline(String(text.c_str(), 0), pool), empty);
    EXPECT_EQ(map.size(), 1u);
    map.unmapString(empty, 0);
    EXPECT_EQ(map.size(), 1u);
    map.unmapString(empty, 0);
    EXPECT_EQ(map.size(), 0u);
}

TYPED_TEST(StringOwnerMapTest, AnAllocatorThatFailsChangesNothing) {
    const auto text = this->textOf("text");
    typename TestFixture::Map map;
    EmptyPool pool;
    EXPECT_THROW(map.mapStringNonInline(String(text.c_str(), 4), pool), std::bad_alloc);
    EXPECT_EQ(map.size(), 0u);
}

TYPED_TEST(StringOwnerMapTest, CopiesAndAssignsNothing) {
    const auto text = this->textOf("text");
    typename TestFixture::Map map, other;
    map.mapString(text.c_str(), 4, true);
    const typename TestFixture::Map copy(map);
    EXPECT_EQ(copy.size(), 0u);
    EXPECT_EQ(&(other = map), &other);
    EXPECT_EQ(other.size(), 0u);
    map = copy;
    EXPECT_EQ(map.size(), 1u);
}

TYPED_TEST(StringOwnerMapTest, StringsAndTheirSubstringsOutliveTheMap) {
    auto text = std::make_unique<std::basic_string<TypeParam>>(this->textOf("0123456789"));
    String substring, deeper, held;
    {
        typename TestFixture::Map map;
        held = map.mapString(text->c_str(), 10, true);
        substring = String(map.mapString(text->c_str(), 8, false).getData()->template substr<TypeParam>(2, 4));
        deeper = String(held.getData()->template substr<TypeParam>(4, 6));
    }
    text.reset();
    EXPECT_EQ(this->textOf(held), this->textOf("0123456789"));
    EXPECT_EQ(this->textOf(substring), this->textOf("2345"));
    EXPECT_EQ(this->textOf(deeper), this->textOf("456789"));
    EXPECT_EQ(this->typeOf(held), STRING_DATA_DYNAMIC);
    EXPECT_EQ(this->typeOf(deeper), STRING_DATA_EXTERNAL) << "in the chain of the string that was copied out";
}

TYPED_TEST(StringOwnerMapTest, RandomCallsAgainstAModel) {
    Random random(2909);
    std::vector<std::basic_string<TypeParam>> texts;
    for (int i = 0; i < 40; ++i) texts.push_back(std::basic_string<TypeParam>(5, static_cast<TypeParam>('a' + i % 26)));
    const std::size_t live = liveAllocationCount();
    {
        using Key = std::pair<const TypeParam*, unsigned int>;
        struct Known {
            StringData* data;
            unsigned int count;
            bool external;
        };
        std::map<Key, Known> model;
        std::vector<String> dynamic;
        for (int i = 0; i < 20; ++i) dynamic.push_back(this->dynamicString("dynamic"));
        typename TestFixture::Map map;
        Pool pool;
        std::map<const TypeParam*, bool> staticBuffers;
        for (int step = 0; step < repetitions(50000); ++step) {
            const auto& text = texts[random.below(40)];
            const Key key(text.c_str(), random.below(3) + 3);
            switch (random.below(4)) {
            case 0: {
                const String string = map.mapString(key.first, key.second, false);
                const auto known = model.find(key);
                if (known != model.end())
                    ASSERT_EQ(string.getData(), known->second.data);
                else
                    model[key] = {string.getData(), 0, !staticBuffers.count(key.first)};
                break;
            }
            case 1: {
                const String& string = dynamic[random.below(20)];
                const TypeParam* const buffer = map.mapStringNonInline(string, pool);
                const auto known = model.insert({Key(buffer, 7), Known{string.getData(), 0, false}}).first;
                ASSERT_EQ(known->second.data, string.getData());
                ++known->second.count;
                break;
            }
            case 2: {
                Key unmapped = key;
                if (!model.empty() && random.below(2)) {
                    auto place = model.begin();
                    std::advance(place, random.below(static_cast<unsigned int>(model.size())));
                    unmapped = place->first;
                }
                map.unmapString(unmapped.first, unmapped.second);
                const auto known = model.find(unmapped);
                if (known == model.end()) break;
                if (known->second.count > 1)
                    --known->second.count;
                else if (!known->second.external)
                    model.erase(known);
                break;
            }
            default: {
                const bool owned = std::any_of(model.begin(), model.end(), [&](const auto& entry) {
                    return entry.first.first == key.first && entry.second.external;
                });
                if (owned) {
                    EXPECT_THROW(map.addStaticString(key.first), Exception<4>);
                } else if (random.below(50) == 0) {
                    map.addStaticString(key.first);
                    staticBuffers[key.first] = true;
                }
                break;
            }
            }
            ASSERT_EQ(map.size(), model.size());
        }
        for (const auto& entry : model)
            EXPECT_EQ(map.mapString(entry.first.first, entry.first.second, false).getData(), entry.second.data);
    }
    EXPECT_EQ(liveAllocationCount(), live);
}

} // namespace
