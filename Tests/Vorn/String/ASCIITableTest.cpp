#include "Vorn/String/ASCIITable.h"

#include "Support/Report.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

using Vorn::ASCIITable;

const signed char* listOf(const char* text) { return reinterpret_cast<const signed char*>(text); }

void expectMembers(const ASCIITable& table, const std::string& members) {
    for (int c = -128; c < 128; ++c) {
        const int expected = c > 0 && members.find(static_cast<char>(c)) != std::string::npos ? -1 : 0;
        EXPECT_EQ(table.check(static_cast<signed char>(c)), expected) << c;
        EXPECT_EQ(table(static_cast<signed char>(c)), expected) << c;
        EXPECT_EQ(table[static_cast<signed char>(c)], expected) << c;
    }
}

TEST(ASCIITable, HoldsItsList) {
    expectMembers(ASCIITable(listOf("a")), "a");
    expectMembers(ASCIITable(listOf("zz\x01\x7F")), "z\x01\x7F");
    std::string all;
    for (int c = 1; c < 128; ++c) all.push_back(static_cast<char>(c));
    expectMembers(ASCIITable(listOf(all.c_str())), all);
}

TEST(ASCIITable, TakesOneEntryPerByte) { EXPECT_EQ(sizeof(ASCIITable), 1024u); }

TEST(ASCIITable, SpaceTable) {
    expectMembers(ASCIITable::getSpaceTable(), "\n\r \t");
    EXPECT_EQ(&ASCIITable::getSpaceTable(), &ASCIITable::s_spaceTable);
}

const int spaceAtLoad = ASCIITable::getSpaceTable().check(' ');
TEST(ASCIITable, SpaceTableIsReadyAtLoad) { EXPECT_EQ(spaceAtLoad, -1); }

TEST(ASCIITable, CopiesAndAssigns) {
    ASCIITable table(listOf("ab"));
    const ASCIITable copy(table);
    EXPECT_EQ(&(table = ASCIITable::getSpaceTable()), &table);
    expectMembers(copy, "ab");
    expectMembers(table, "\n\r \t");
}

TEST(ASCIITable, RefusesBadLists) {
    const char* const function = "Vorn::ASCIITable::ASCIITable";
    const char* const file = "Source/Vorn/ASCIITable";
    expectRaises<1>([] { ASCIITable table(nullptr); }, "list : Null list!", function, file);
    expectRaises<1>([] { ASCIITable table(listOf("")); }, "list[0] : Empty list!", function, file);
    for (const char* list : {"\x80", "ab\xFF", "\xC3\xA9"})
        expectRaises<1>([&] { ASCIITable table(listOf(list)); }, "c <= 127 : ASCII only!", function, file);
}

} // namespace
