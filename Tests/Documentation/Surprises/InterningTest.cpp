#include "Documentation/Surprises/Surprise.h"
#include "Vorn/String/Interop.h"
#include "Vorn/String/StringOwnerMap.h"
#include "Vorn/Text/Name.h"

#include <memory>

// g++ 12 with sanitizers takes the deleted key of a table, which is compared only after an erasure, for one that is
// compared always.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

namespace {

using namespace Vorn;

using Map = StringOwnerMap<unsigned char>;

struct Pool : StringOwnerAllocWrapperBase {
    void* allocate(unsigned int bytes) override {
        blocks.push_back(std::make_unique<unsigned char[]>(bytes));
        return blocks.back().get();
    }
    std::vector<std::unique_ptr<unsigned char[]>> blocks;
};

const unsigned char TEXT[] = "textual";

} // namespace

const Surprises INTERNING_SURPRISES = {
    {"`StringOwnerMap::mapStringNonInline` of static text that is not terminated",
     [] {
         Map map;
         Pool pool;
         const String string(TEXT, 4, STRING_DATA_STATIC);
         const unsigned char* const buffer = map.mapStringNonInline(string, pool);
         EXPECT_NE(string.getData()->getTerminatedBuffer<unsigned char>(), buffer) << "freed";
         EXPECT_EQ(map.size(), 1u);
         EXPECT_EQ(map.mapString(buffer, 4, true).getData(), string.getData()) << "still mapped";
     },
     [] {
         const Name name(String(TEXT, 4, STRING_DATA_STATIC));
         EXPECT_STREQ(name.c_str(), "text");
         EXPECT_EQ(Name("text").c_str(), name.c_str());
     }},
    {"Copy and assignment of a `StringOwnerMap`",
     [] {
         Map map;
         map.mapString(TEXT, 4, false);
         const Map copy(map);
         EXPECT_EQ(copy.size(), 0u);
         map = copy;
         EXPECT_EQ(map.size(), 1u);
     },
     [] {
         const Name name("copied");
         EXPECT_EQ(Name::lookUp("copied"), name);
     }},
    {"`StringOwnerMap::mapString` after its text was refused",
     [] {
         const unsigned char bad[] = {0x80, 0};
         Map map;
         EXPECT_THROW(map.mapString(bad, 1, false), Exception<7>);
         EXPECT_NO_THROW(map.mapString(bad, 1, false));
     },
     [] {
         const unsigned char bad[] = {0x80, 0};
         const TextView text(bad, 1);
         EXPECT_THROW(Name{text}, Exception<7>);
         EXPECT_THROW(Name{text}, Exception<7>);
     }},
    {"`StringOwnerMap::mapStringNonInline` of the map's own buffer",
     [] {
         Map map;
         Pool pool;
         EXPECT_EQ(map.mapStringNonInline(map.mapString(TEXT, 4, false), pool), TEXT);
         EXPECT_NE(TEXT[4], 0);
     },
     [] { EXPECT_STREQ(Name(TextView(TEXT, 4)).c_str(), "text"); }},
    {"`StringOwnerMap::unmapString` of external text",
     [] {
         Map map;
         map.mapString(TEXT, 4, false);
         map.unmapString(TEXT, 4);
         EXPECT_EQ(map.size(), 1u);
     },
     nullptr},
};
