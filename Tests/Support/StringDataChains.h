// Expectations on records that use the same block of text.
#pragma once

#include "Support/AllocationCounter.h"
#include "Support/Texts.h"
#include "Vorn/String/String.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// Expects that what one encoding of `record` says of itself and of its neighbours holds together. Blocks that are not
/// static come from array new, so that their size can be looked up.
template <class CharType>
void expectSoundChain(const Vorn::StringData& record) {
    const Vorn::StringDataBufferInfo& info = record.getBufferInfo<CharType>();
    const CharType* const buffer = record.getPrivateBuffer<CharType>();
    if (!buffer) {
        EXPECT_EQ(info.m_previous, nullptr);
        EXPECT_EQ(info.m_next, nullptr);
        return;
    }
    if (info.m_allocationType == Vorn::STRING_DATA_STATIC) {
        EXPECT_EQ(info.m_previous, nullptr);
        EXPECT_EQ(info.m_next, nullptr);
        return;
    }
    const CharType* const block = buffer - info.m_offset;
    if (info.m_previous) {
        ASSERT_EQ(info.m_previous->getNext<CharType>(), &record);
        EXPECT_EQ(info.m_previous->getPrivateBuffer<CharType>() - info.m_previous->getBufferInfo<CharType>().m_offset,
                  block);
        EXPECT_EQ(info.m_allocationType, Vorn::STRING_DATA_EXTERNAL); // only heads own
    }
    if (info.m_next) {
        ASSERT_EQ(info.m_next->getPrevious<CharType>(), &record);
    }
    const std::size_t blockSize = liveArraySize(block) / sizeof(CharType);
    ASSERT_GE(blockSize, std::size_t(info.m_offset) + info.m_length + info.m_nullTerminated);
    if (info.m_nullTerminated) {
        EXPECT_EQ(buffer[info.m_length], CharType(0));
    }
}

/// What one encoding of a record is expected to hold. The text is ASCII.
struct Held {
    std::string text;
    unsigned int offset;
    Vorn::StringAllocationType type;
    bool terminated;
};

template <class CharType>
void expectHeld(const Vorn::StringData& record, const Held& held) {
    const Vorn::StringDataBufferInfo& info = record.getBufferInfo<CharType>();
    ASSERT_NE(record.getPrivateBuffer<CharType>(), nullptr);
    EXPECT_EQ(narrow(record.getPrivateBuffer<CharType>(), info.m_length), held.text);
    EXPECT_EQ(info.m_offset, held.offset);
    EXPECT_EQ(info.m_allocationType, held.type);
    EXPECT_EQ(info.m_nullTerminated, held.terminated ? 1u : 0u);
}

/// Expects that exactly these records are chained, in this order.
template <class CharType>
void expectChain(const std::vector<const Vorn::StringData*>& records) {
    for (std::size_t i = 0; i < records.size(); ++i) {
        SCOPED_TRACE("record " + std::to_string(i) + " of the chain");
        EXPECT_EQ(records[i]->getPrevious<CharType>(), i ? records[i - 1] : nullptr);
        EXPECT_EQ(records[i]->getNext<CharType>(), i + 1 < records.size() ? records[i + 1] : nullptr);
        expectSoundChain<CharType>(*records[i]);
    }
}

/// A string that owns a block with this text and nothing behind it; end the text with a zero to have it terminated.
template <class CharType>
Vorn::String dynamicString(std::string_view ascii) {
    return Vorn::String(newBlock<CharType>(ascii), static_cast<unsigned int>(ascii.size()), Vorn::STRING_DATA_DYNAMIC);
}

/// A substring of `parent`, which uses the same block.
template <class CharType>
Vorn::String substringOf(const Vorn::String& parent, int offset, unsigned int length) {
    return Vorn::String(parent.getData()->substr<CharType>(offset, length));
}
