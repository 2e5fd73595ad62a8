#include "Vorn/String/StringDataTypes.h"

#include "Vorn/Types.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <type_traits>

namespace {

using Vorn::StringDataBufferInfo;

TEST(StringDataTypes, ValuesAreShared) {
    EXPECT_EQ(static_cast<int>(Vorn::STRING_DATA_NONE), 0);
    EXPECT_EQ(static_cast<int>(Vorn::STRING_DATA_EXTERNAL), 1);
    EXPECT_EQ(static_cast<int>(Vorn::STRING_DATA_STATIC), 2);
    EXPECT_EQ(static_cast<int>(Vorn::STRING_DATA_DYNAMIC), 3);
    EXPECT_EQ(static_cast<int>(Vorn::STRING_DATA_ASCII), 1);
    EXPECT_EQ(static_cast<int>(Vorn::STRING_DATA_UCS2), 2);
    EXPECT_EQ(static_cast<int>(Vorn::STRING_DATA_UNICODE), 3);
}

TEST(Types, LiteralsOfUTF16CharHoldItsUnits) {
    const Vorn::UTF16Char text[] = VORN_UTF16("a\u00E9\U0001F600");
    const unsigned int expected[] = {'a', 0xE9, 0xD83D, 0xDE00, 0};
    EXPECT_TRUE(std::equal(std::begin(text), std::end(text), std::begin(expected), std::end(expected)));
    static_assert(std::is_same_v<decltype(VORN_UTF16('c')), Vorn::UTF16Char> && VORN_UTF16('\u4E00') == 0x4E00);
    static_assert(VORN_UTF16(R"(\)")[0] == '\\' && VORN_UTF16("b"
                                                              "c")[1] == 'c');
}

TEST(StringDataTypes, BufferInfoKeepsItsOrder) {
    static_assert(std::is_standard_layout_v<StringDataBufferInfo> && std::is_trivial_v<StringDataBufferInfo>);
    static_assert(std::is_same_v<decltype(StringDataBufferInfo::m_length), unsigned int>);
    static_assert(std::is_same_v<decltype(StringDataBufferInfo::m_offset), unsigned int>);
    EXPECT_EQ(offsetof(StringDataBufferInfo, m_previous), 0u);
    EXPECT_EQ(offsetof(StringDataBufferInfo, m_next), sizeof(void*));
    EXPECT_EQ(offsetof(StringDataBufferInfo, m_length), 2 * sizeof(void*));
    EXPECT_EQ(offsetof(StringDataBufferInfo, m_offset), 2 * sizeof(void*) + 4);
    EXPECT_GE(sizeof(StringDataBufferInfo), 2 * sizeof(void*) + 12);
}

TEST(StringDataTypes, FlagsOfBufferInfoAreApart) {
    StringDataBufferInfo info{};
    info.m_allocationType = Vorn::STRING_DATA_DYNAMIC;
    EXPECT_EQ(info.m_nullTerminated, 0u);
    info.m_nullTerminated = 1;
    EXPECT_EQ(info.m_allocationType, Vorn::STRING_DATA_DYNAMIC);
    info.m_allocationType = Vorn::STRING_DATA_NONE;
    EXPECT_EQ(info.m_nullTerminated, 1u);
}

} // namespace
