#include "Faults/Operation.h"
#include "Support/Texts.h"
#include "Vorn/String/StringOwnerMap.h"

#include <memory>

namespace {

using Vorn::String;
using Vorn::StringOwnerMap;
using Vorn::UTF16Char;

// Memory for a map's copies that outlives it.
struct Arena : Vorn::StringOwnerAllocWrapperBase {
    void* allocate(unsigned int bytes) override {
        blocks.push_back(std::make_unique<unsigned char[]>(bytes));
        return blocks.back().get();
    }
    std::vector<std::unique_ptr<unsigned char[]>> blocks;
};

template <class CharType>
struct MapFaults {
    static inline const CharType s_text[] = {'a', 'b', 'c', 0, 'd', 'e', 'f', 0};

    // A map that knows one text.
    struct Known {
        Known() { map.mapString(s_text, 3, true); }
        void expectUnchanged() const { EXPECT_EQ(map.size(), 1u); }
        StringOwnerMap<CharType> map;
    };

    static void build(Attempt& attempt) {
        attempt([] { std::make_unique<StringOwnerMap<CharType>>(); });
    }

    static void copy(Attempt& attempt) {
        Known known, other;
        attempt(
            [&] {
                const StringOwnerMap<CharType> copied(known.map);
                other.map = known.map;
            },
            [&] { known.expectUnchanged(); });
    }

    // A string over a buffer that loses its owner must get a copy.
    static void destroyBeforeStrings(Attempt& attempt) {
        auto map = std::make_unique<StringOwnerMap<CharType>>();
        const String string = map->mapString(s_text, 3, true);
        attempt([&] { map = nullptr; });
    }

    static void mapString(Attempt& attempt) {
        Known known;
        attempt([&] { known.map.mapString(s_text + 4, 3, true); }, [&] { known.expectUnchanged(); });
        EXPECT_EQ(known.map.mapString(s_text + 4, 3, true).getData()->getRefCount(), 2u);
    }

    static void mapManyStrings(Attempt& attempt) {
        static const std::vector<CharType> text(100, 'x');
        StringOwnerMap<CharType> map;
        unsigned int count = 0;
        const auto mapNext = [&] {
            map.mapString(text.data() + count, 1, false);
            ++count;
        };
        attempt(
            [&] {
                while (count < 100) mapNext();
            },
            [&] {
                EXPECT_EQ(map.size(), count);
                while (count < 100) mapNext();
            });
        EXPECT_EQ(map.size(), 100u);
    }

    static void mapStringNonInline(Attempt& attempt) {
        const String string(s_text + 4, 3);
        Known known;
        Arena arena;
        attempt([&] { known.map.mapStringNonInline(string, arena); },
                [&] {
                    known.expectUnchanged();
                    EXPECT_EQ(string.getData()->getRefCount(), 1u);
                });
    }

    static void addStaticString(Attempt& attempt) {
        static const std::vector<CharType> text(100, 'x');
        StringOwnerMap<CharType> map;
        unsigned int count = 0;
        attempt(
            [&] {
                for (; count < 100; ++count) map.addStaticString(text.data() + count);
            },
            [&] {
                for (; count < 100; ++count) map.addStaticString(text.data() + count);
            });
        EXPECT_EQ(map.mapString(text.data() + 99, 1, false).getData()->template getAllocationType<CharType>(),
                  Vorn::STRING_DATA_STATIC);
    }

    static void unmapString(Attempt& attempt) {
        StringOwnerMap<CharType> map;
        map.addStaticString(s_text);
        map.mapString(s_text, 3, true);
        attempt([&] {
            map.unmapString(s_text, 3);
            static_cast<void>(map.size());
        });
        EXPECT_EQ(map.size(), 0u);
    }

    static void add(std::vector<Operation>& rows, const std::string& suffix, const std::string& unit) {
        const std::string map = "StringOwnerMap<" + unit + ">::";
        const std::string buffer = '(' + unit + " const*";
        const Outcome throws = Outcome::THROWS;
        rows.push_back(
            {"StringOwnerMap_Build" + suffix, throws, {map + "StringOwnerMap()", map + "~StringOwnerMap()"}, &build});
        rows.push_back({"StringOwnerMap_Copy" + suffix,
                        throws,
                        {map + "StringOwnerMap(StringOwnerMap<" + unit + "> const&)",
                         map + "operator=(StringOwnerMap<" + unit + "> const&)"},
                        &copy});
        rows.push_back({"StringOwnerMap_DestroyBeforeStrings" + suffix,
                        Outcome::ABORTS,
                        {"void StringData::detachExternalBuffer<" + unit + '>'},
                        &destroyBeforeStrings});
        rows.push_back({"StringOwnerMap_MapString" + suffix,
                        throws,
                        {map + "mapString" + buffer + ", unsigned int, bool)", map + "mapNewString",
                         map + "findEntry" + buffer + ", unsigned int) const", map + "eraseEntry"},
                        &mapString});
        rows.push_back({"StringOwnerMap_MapManyStrings" + suffix,
                        throws,
                        {map + "setEmptyKey", map + "tables()", map + "tables() const"},
                        &mapManyStrings});
        rows.push_back({"StringOwnerMap_MapStringNonInline" + suffix,
                        throws,
                        {map + "mapStringNonInline(String, StringOwnerAllocWrapperBase&)"},
                        &mapStringNonInline});
        rows.push_back({"StringOwnerMap_AddStaticString" + suffix,
                        throws,
                        {map + "addStaticString" + buffer + ")"},
                        &addStaticString});
        rows.push_back({"StringOwnerMap_UnmapString" + suffix,
                        Outcome::ALLOCATES_NOTHING,
                        {map + "unmapString" + buffer + ", unsigned int)", map + "size() const"},
                        &unmapString});
    }
};

} // namespace

std::vector<Operation> mapOperations() {
    std::vector<Operation> rows = {
        {"StringOwnerAllocWrapperBase_Destroy",
         Outcome::ALLOCATES_NOTHING,
         {"StringOwnerAllocWrapperBase::~StringOwnerAllocWrapperBase()"},
         [](Attempt& attempt) { attempt([] { Arena arena; }); }},
    };
    MapFaults<unsigned char>::add(rows, "UTF8", "unsigned char");
    MapFaults<UTF16Char>::add(rows, "UTF16", "char16_t");
    return rows;
}
