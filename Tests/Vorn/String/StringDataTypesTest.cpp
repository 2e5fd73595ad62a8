#include "Vorn/String/StringDataTypes.h"

#include <gtest/gtest.h>

#include <cstddef>
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
