// What a map is left as when memory ends: at each allocation of each operation, by new and by malloc, with tables that
// are about to be allocated, to grow or to get smaller.
#include "Vorn/String/StringOwnerMap.h"

#include "Support/AllocationCounter.h"
#include "Support/Report.h"
#include "Support/StringDataProbe.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using namespace Vorn;
using VornPrivate::StringDataProbe;

constexpr const char* FILE_TEXT = "Include/Vorn/String/StringOwnerMap";

// Entries that a map has before the operation: none, some, and as many as fill tables of 32, 64 and 128 buckets.
constexpr unsigned int ENTRY_COUNTS[] = {0, 1, 15, 16, 17, 31, 32, 33, 63, 64};

struct Pool : StringOwnerAllocWrapperBase {
    void* allocate(unsigned int bytes) override {
        blocks.push_back(std::make_unique<std::uint64_t[]>(bytes / 8 + 1));
        return blocks.back().get();
    }
    std::vector<std::unique_ptr<std::uint64_t[]>> blocks;
};

// Gives nothing, and remembers how much was asked for.
struct NullPool : StringOwnerAllocWrapperBase {
    void* allocate(unsigned int bytes) override {
        lastBytes = bytes;
        return nullptr;
    }
    unsigned int lastBytes = 0;
};

// True if the operation that `prepare` returns runs out of memory at its n-th allocation, false if it succeeds.
template <class Prepare>
bool failsAt(unsigned int n, Prepare&& prepare) {
    const auto run = prepare();
    bool failed = false;
    failAllocation(n);
    try {
        run();
    } catch (const std::bad_alloc&) {
        failed = true;
    }
    failAllocation(0);
    return failed;
}

// Repeats `run` on the same objects with its first allocation failing, then its second, and so on until it succeeds.
// After each failure `check` looks at what is left. Returns the number of failures.
template <class Run, class Check>
unsigned int failEachAllocation(Run&& run, Check&& check) {
    unsigned int n = 1;
    for (; failsAt(n, [&] { return [&] { run(); }; }); ++n) {
        SCOPED_TRACE("allocation " + std::to_string(n));
        check();
        if (testing::Test::HasFailure()) break;
    }
    return n - 1;
}

template <class CharType>
class StringOwnerMapFailureTest : public testing::Test {
protected:
    using Map = StringOwnerMap<CharType>;
    using Text = std::basic_string<CharType>;

    static constexpr bool NARROW = sizeof(CharType) == 1;
    static constexpr const char* PREFIX =
        NARROW ? "Vorn::StringOwnerMap<unsigned char>::" : "Vorn::StringOwnerMap<wchar_t>::";

    static Text textOf(const char* ascii) { return Text(ascii, ascii + std::char_traits<char>::length(ascii)); }
    static Text textOf(const String& string) {
        return Text(string.getData()->getPrivateBuffer<CharType>(),
                    string.getData()->getBufferInfo<CharType>().m_length);
    }
    static StringAllocationType typeOf(const String& string) {
        return string.getData()->template getAllocationType<CharType>();
    }

    // A map with `count` entries over buffers of its own, and the records that it must keep.
    struct FilledMap {
        explicit FilledMap(unsigned int count, bool isStatic = false) : texts(count, textOf("filling")) {
            for (const Text& text : texts) {
                if (isStatic) map.addStaticString(text.c_str());
                records.push_back(map.mapString(text.c_str(), 7, true).getData());
            }
        }

        void expectUnchanged() {
            EXPECT_EQ(map.size(), texts.size());
            for (std::size_t i = 0; i < texts.size(); ++i)
                EXPECT_EQ(map.mapString(texts[i].c_str(), 7, true).getData(), records[i]) << "entry " << i;
        }

        std::vector<Text> texts;
        std::vector<StringData*> records;
        Map map;
    };
};

using Encodings = testing::Types<unsigned char, UTF16Char>;
TYPED_TEST_SUITE(StringOwnerMapFailureTest, Encodings, );

TYPED_TEST(StringOwnerMapFailureTest, ConstructorsThrow) {
    using OwnerMap = typename TestFixture::Map;
    static std::unique_ptr<OwnerMap> map, copy; // static, so that no compiler drops maps that nothing uses
    EXPECT_EQ(failEachAllocation([] { map = std::make_unique<OwnerMap>(); }, [] {}), 3u);
    EXPECT_EQ(failEachAllocation([] { copy = std::make_unique<OwnerMap>(*map); }, [] {}), 3u);
    map.reset();
    copy.reset();
}

TYPED_TEST(StringOwnerMapFailureTest, MapStringLeavesTheBufferUnmappedAndUnmarked) {
    const auto text = this->textOf("text");
    for (const unsigned int count : ENTRY_COUNTS) {
        SCOPED_TRACE(std::to_string(count) + " entries");
        auto filled = std::make_unique<typename TestFixture::FilledMap>(count);
        String string;
        const unsigned int failures = failEachAllocation([&] { string = filled->map.mapString(text.c_str(), 4, true); },
                                                         [&] { filled->expectUnchanged(); });
        EXPECT_GE(failures, 1u);
        ASSERT_TRUE(string.getData());
        EXPECT_EQ(this->textOf(string), text);
        EXPECT_EQ(filled->map.size(), count + 1);
        EXPECT_EQ(filled->map.mapString(text.c_str(), 4, true).getData(), string.getData());

        string = String(); // before its map

        // Each failure in a map of its own: the buffer can still be marked as static.
        for (unsigned int n = 1; failsAt(n,
                                         [&] {
                                             filled = std::make_unique<typename TestFixture::FilledMap>(count);
                                             return [&] { filled->map.mapString(text.c_str(), 4, true); };
                                         });
             ++n) {
            SCOPED_TRACE("allocation " + std::to_string(n));
            EXPECT_NO_THROW(filled->map.addStaticString(text.c_str()));
            EXPECT_EQ(this->typeOf(filled->map.mapString(text.c_str(), 4, true)), STRING_DATA_STATIC);
        }
    }
}

TYPED_TEST(StringOwnerMapFailureTest, MapStringOfStaticText) {
    const auto text = this->textOf("text");
    for (const unsigned int count : ENTRY_COUNTS) {
        SCOPED_TRACE(std::to_string(count) + " entries");
        typename TestFixture::FilledMap filled(count);
        filled.map.addStaticString(text.c_str());
        String string;
        failEachAllocation([&] { string = filled.map.mapString(text.c_str(), 4, true); },
                           [&] { filled.expectUnchanged(); });
        EXPECT_EQ(this->typeOf(string), STRING_DATA_STATIC);
        string = String();
    }
}

TYPED_TEST(StringOwnerMapFailureTest, RefusedTextStaysRefused) {
    const TypeParam bad[] = {static_cast<TypeParam>(this->NARROW ? 0x80 : 0xDC00), 0};
    typename TestFixture::FilledMap filled(16);
    bool refused = false;
    failEachAllocation(
        [&] {
            try {
                filled.map.mapString(bad, 1, false);
            } catch (const Exception<7>&) {
                refused = true;
            }
        },
        [&] { filled.expectUnchanged(); });
    EXPECT_TRUE(refused);
    EXPECT_EQ(filled.map.size(), 17u);
    EXPECT_TRUE(filled.map.mapString(bad, 1, false).isNull());
    expectRaises<4>([&] { filled.map.addStaticString(bad); }, "String marked as owned!",
                    std::string(this->PREFIX) + "addStaticString", FILE_TEXT);
}

TYPED_TEST(StringOwnerMapFailureTest, AddStaticStringLeavesTheBufferUnmarked) {
    const auto text = this->textOf("text");
    for (const unsigned int count : ENTRY_COUNTS) {
        SCOPED_TRACE(std::to_string(count) + " marks");
        typename TestFixture::FilledMap filled(count, true);
        const unsigned int failures =
            failEachAllocation([&] { filled.map.addStaticString(text.c_str()); }, [&] { filled.expectUnchanged(); });
        EXPECT_EQ(this->typeOf(filled.map.mapString(text.c_str(), 4, true)), STRING_DATA_STATIC);
        if (failures == 0) continue;
        typename TestFixture::FilledMap other(count, true);
        failAllocation(1);
        EXPECT_THROW(other.map.addStaticString(text.c_str()), std::bad_alloc);
        failAllocation(0);
        EXPECT_EQ(this->typeOf(other.map.mapString(text.c_str(), 4, true)), STRING_DATA_EXTERNAL);
    }
}

TYPED_TEST(StringOwnerMapFailureTest, MapStringNonInlineKeepsEntriesAndCounts) {
    using Units = typename TestFixture::Text;
    using Other = std::conditional_t<sizeof(TypeParam) == 1, UTF16Char, unsigned char>;
    static const TypeParam STATIC_TEXT[] = {'t', 'e', 'x', 't', '!'};
    static const Other OTHER_TEXT[] = {'t', 'e', 'x', 't', 0};
    const auto text = this->textOf("text");
    struct Source {
        const char* name;
        String (*make)(const Units& text);
    };
    const Source sources[] = {
        {"external, copied", [](const Units& units) { return String(units.c_str(), 5); }},
        {"static, terminated first", [](const Units&) { return String(STATIC_TEXT, 4, STRING_DATA_STATIC); }},
        {"the other encoding, converted", [](const Units&) { return String(OTHER_TEXT, 5); }},
        {"empty", [](const Units&) { return String(); }},
    };
    for (const Source& source : sources) {
        for (const unsigned int count : ENTRY_COUNTS) {
            SCOPED_TRACE(std::string(source.name) + ", " + std::to_string(count) + " entries");
            const String string = source.make(text);
            typename TestFixture::FilledMap filled(count);
            Pool pool;
            const unsigned int uses = string.getData() ? string.getData()->getRefCount() : 0;
            const TypeParam* buffer = nullptr;
            failEachAllocation([&] { buffer = filled.map.mapStringNonInline(string, pool); },
                               [&] {
                                   filled.expectUnchanged();
                                   EXPECT_EQ(string.getData() ? string.getData()->getRefCount() : 0, uses);
                                   for (const auto& block : pool.blocks)
                                       EXPECT_NO_THROW(
                                           typename TestFixture::Map(filled.map)
                                               .addStaticString(reinterpret_cast<const TypeParam*>(block.get())));
                               });
            EXPECT_EQ(filled.map.size(), count + 1);
            EXPECT_EQ(Units(buffer), string.getData() ? text : Units());
        }
    }
}

TYPED_TEST(StringOwnerMapFailureTest, BlocksOfAFailedCallAreNotOwned) {
    const auto text = this->textOf("text");
    const String string(text.c_str(), 4);
    std::unique_ptr<typename TestFixture::FilledMap> filled;
    Pool pool;
    std::size_t blocks = 0;
    for (unsigned int n = 1; failsAt(n,
                                     [&] {
                                         filled = std::make_unique<typename TestFixture::FilledMap>(16);
                                         pool.blocks.clear();
                                         return [&] { filled->map.mapStringNonInline(string, pool); };
                                     });
         ++n) {
        SCOPED_TRACE("allocation " + std::to_string(n));
        for (const auto& block : pool.blocks) {
            EXPECT_NO_THROW(filled->map.addStaticString(reinterpret_cast<const TypeParam*>(block.get())));
            ++blocks;
        }
    }
    EXPECT_GE(blocks, 2u) << "of failures after the allocator of the test";
}

TYPED_TEST(StringOwnerMapFailureTest, AnAllocatorWithoutMemoryChangesNothing) {
    const auto text = this->textOf("text");
    typename TestFixture::FilledMap filled(3);
    NullPool pool;
    const String string(text.c_str(), 4);
    EXPECT_THROW(filled.map.mapStringNonInline(string, pool), std::bad_alloc);
    EXPECT_EQ(pool.lastBytes, 5 * sizeof(TypeParam));
    EXPECT_EQ(string.getData()->getRefCount(), 1u);
    filled.expectUnchanged();
}

TYPED_TEST(StringOwnerMapFailureTest, UnmappingAllocatesNothingAndATableThatCannotShrinkStays) {
    constexpr unsigned int COUNT = 200, KEPT = 5;
    const auto text = this->textOf("text");
    typename TestFixture::FilledMap filled(COUNT, true);
    failAllocation(1);
    for (unsigned int i = KEPT; i < COUNT; ++i) filled.map.unmapString(filled.texts[i].c_str(), 7);
    failAllocation(0);
    filled.texts.resize(KEPT);
    filled.expectUnchanged();

    String string;
    const unsigned int failures = failEachAllocation([&] { string = filled.map.mapString(text.c_str(), 4, true); },
                                                     [&] { filled.expectUnchanged(); });
    EXPECT_GE(failures, 2u) << "the smaller table and the record";
    EXPECT_EQ(this->textOf(string), text);
    EXPECT_EQ(filled.map.size(), KEPT + 1);
    string = String();
}

// Lengths that the records only claim: nothing reads the text before the length is refused.
TYPED_TEST(StringOwnerMapFailureTest, LengthsWithoutACopyAreRefusedFirst) {
    struct Row {
        unsigned int length;
        unsigned int bytes; // that are asked for, or 0 for a length that is refused
    };
    const Row narrow[] = {{0x7FFFFFFF, 0x80000000}, {0xFFFFFFFD, 0xFFFFFFFE}, {0xFFFFFFFE, 0xFFFFFFFF}};
    const Row wide[] = {{0x7FFFFFFE, 0xFFFFFFFE}, {0x7FFFFFFF, 0}, {0x80000000, 0}, {0xFFFFFFFE, 0}};
    const auto text = this->textOf("text");
    const auto run = [&](const Row& row) {
        SCOPED_TRACE(row.length);
        const String string(text.c_str(), 4);
        StringDataProbe::info<TypeParam>(*string.getData()).m_length = row.length;
        typename TestFixture::Map map;
        NullPool pool;
        if (row.bytes) {
            EXPECT_THROW(map.mapStringNonInline(string, pool), std::bad_alloc);
        } else {
            expectRaises<4>([&] { map.mapStringNonInline(string, pool); }, "length : text too long!",
                            std::string(this->PREFIX) + "mapStringNonInline", FILE_TEXT);
            failAllocation(1);
            EXPECT_THROW(map.mapStringNonInline(string, pool), Exception<4>) << "allocates before it refuses";
            failAllocation(0);
        }
        EXPECT_EQ(pool.lastBytes, row.bytes);
        EXPECT_EQ(map.size(), 0u);
        StringDataProbe::info<TypeParam>(*string.getData()).m_length = 4;
    };
    if (this->NARROW)
        for (const Row& row : narrow) run(row);
    else
        for (const Row& row : wide) run(row);
}

TYPED_TEST(StringOwnerMapFailureTest, AnUnknownLengthWithATerminatorIsEmpty) {
    const auto text = this->textOf("text");
    typename TestFixture::Map map;
    const String string = map.mapString(text.c_str(), 0xFFFFFFFF, true);
    EXPECT_TRUE(string.isNotNull() && string.isEmpty()) << "the length with the terminator wraps to 0";
    EXPECT_EQ(map.mapString(text.c_str(), 0xFFFFFFFF, false).getData(), string.getData()) << "known: not read again";

    typename TestFixture::Map other;
    EXPECT_EQ(this->textOf(other.mapString(text.c_str(), 0xFFFFFFFF, false)), text);
}

} // namespace
