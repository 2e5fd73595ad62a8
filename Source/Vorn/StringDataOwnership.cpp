// Ownership of blocks of text, and termination of texts.
//
// A record and its substrings use one block, which has no reference count. They form a chain, and only its head can own
// the block:
//
//     block     |  T  h  e     r  o  a  d     o  f     o  n  e  0  |
//               ^           ^              ^
//     head      buffer      |              |       DYNAMIC: frees the block, or EXTERNAL: a borrowed block
//       | ^
//     second                buffer         |       EXTERNAL, m_offset 4
//       | ^
//     third                                buffer  EXTERNAL, m_offset 9
//
// The block starts at buffer - m_offset in every record, so ownership can pass to any of them. Texts can overlap, and
// the text of a new owner can be shorter than the texts behind it. Each encoding of a record has its own chain.
// Documentation/StringBuffers.md shows each transition.
#include "Vorn/String/StringData.h"

#include "TextBlock.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace Vorn {

namespace {

// Returns a block with the units `first` to `last` of `start` and a terminator.
template <class CharType>
std::unique_ptr<CharType[]> copyTerminated(const CharType* start, unsigned int first, unsigned int last) {
    const std::size_t length = last - first;
    std::unique_ptr<CharType[]> block = VornPrivate::allocateText<CharType>(length);
    std::memcpy(block.get(), start + first, length * sizeof(CharType));
    block[length] = 0;
    return block;
}

unsigned int endOf(const StringDataBufferInfo& info) { return info.m_offset + info.m_length; }

} // namespace

// Moves the text to `block`, a terminated copy of it. As specified, the terminated flag is not set: the next request
// copies the text again, as a dynamic text, and sets the flag.
template <class CharType>
void StringData::moveToCopy(const CharType* block) const {
    StringDataBufferInfo& info = infoOf<CharType>();
    info.m_allocationType = STRING_DATA_DYNAMIC;
    info.m_offset = 0;
    bufferOf<CharType>() = block;
}

// Sets the terminated flag if a zero unit follows the text in its block.
template <class CharType>
void StringData::updateTerminated() const {
    StringDataBufferInfo& info = infoOf<CharType>();
    info.m_nullTerminated = bufferOf<CharType>()[info.m_length] == 0;
}

template <class CharType>
const CharType* StringData::nullTerminateStaticString() const {
    VORN_INTERNAL_ASSERT(!getPrevious<CharType>(), "Static strings should not link!");
    VORN_INTERNAL_ASSERT(!getNext<CharType>(), "Static strings should not link!");
    moveToCopy<CharType>(copyTerminated(bufferOf<CharType>(), 0, infoOf<CharType>().m_length).release());
    return bufferOf<CharType>();
}

template <class CharType>
const CharType* StringData::nullTerminateExternalString() const {
    StringDataBufferInfo& info = infoOf<CharType>();
    auto block = copyTerminated(bufferOf<CharType>(), 0, info.m_length); // before any link changes, because it can fail
    StringData* const previous = info.m_previous;
    StringData* const next = info.m_next;
    if (previous) {
        VORN_INTERNAL_ASSERT(previous->getNext<CharType>() == this, "Invalid string list link!");
        previous->infoOf<CharType>().m_next = next;
        info.m_previous = nullptr;
    }
    if (next) {
        VORN_INTERNAL_ASSERT(next->getPrevious<CharType>() == this, "Invalid string list link!");
        VORN_INTERNAL_ASSERT(next->getAllocationType<CharType>() == STRING_DATA_EXTERNAL, "Invalid string list link!");
        next->infoOf<CharType>().m_previous = previous;
        info.m_next = nullptr;
    }
    moveToCopy<CharType>(block.release());
    return bufferOf<CharType>();
}

// Frees one unit behind the text by moving all texts of the chain one unit towards the start of the block, where a unit
// is free:
//
//     before    |  x  x  L  o  w  .  t  e  x  t  e  n  d  |      this text extends from low 2 to end 10
//     after     |  x  L  o  w  .  t  e  x  t  e  n  d  0  |
//
// If a text starts the block or ends behind this one, this text is copied to a block of its own instead, and the chain
// keeps the old block.
template <class CharType>
const CharType* StringData::nullTerminateDynamicString() const {
    StringDataBufferInfo& info = infoOf<CharType>();
    const CharType*& buffer = bufferOf<CharType>();
    const StringData* previous = info.m_previous;
    VORN_INTERNAL_ASSERT(!previous, "Dynamic strings should be owned!");

    const unsigned int end = endOf(info);
    unsigned int low = info.m_offset;
    bool canSlide = low != 0;
    previous = this;
    for (StringData* next = info.m_next; next && canSlide; next = next->getNext<CharType>()) {
        VORN_INTERNAL_ASSERT(next->getPrevious<CharType>() == previous, "Invalid string list link!");
        VORN_INTERNAL_ASSERT(next->getAllocationType<CharType>() == STRING_DATA_EXTERNAL, "Invalid string list link!");
        const StringDataBufferInfo& nextInfo = next->infoOf<CharType>();
        canSlide = nextInfo.m_offset != 0 && endOf(nextInfo) <= end;
        low = std::min(low, nextInfo.m_offset);
        previous = next;
    }

    if (canSlide) {
        CharType* const block = const_cast<CharType*>(buffer - info.m_offset);
        std::memmove(block + low - 1, block + low, (end - low) * sizeof(CharType));
        block[end - 1] = 0;
        --info.m_offset;
        --buffer;
        info.m_nullTerminated = 1;
        for (StringData* next = info.m_next; next; next = next->getNext<CharType>()) {
            --next->infoOf<CharType>().m_offset;
            --next->bufferOf<CharType>();
            next->updateTerminated<CharType>();
        }
        return buffer;
    }

    CharType* const copy = copyTerminated(buffer, 0, info.m_length).release();
    if (StringData* const next = info.m_next) {
        next->infoOf<CharType>().m_allocationType = STRING_DATA_DYNAMIC;
        next->infoOf<CharType>().m_previous = nullptr;
        info.m_next = nullptr;
    } else {
        delete[] buffer; // no other record uses the block; the text could not move because it starts the block
    }
    info.m_offset = 0;
    info.m_nullTerminated = 1;
    return buffer = copy;
}

template <class CharType>
void StringData::destroyDynamic() {
    StringDataBufferInfo& info = infoOf<CharType>();
    if (StringData* const next = info.m_next) {
        next->infoOf<CharType>().m_previous = nullptr;
        next->infoOf<CharType>().m_allocationType = STRING_DATA_DYNAMIC;
    } else {
        delete[](bufferOf<CharType>() - info.m_offset);
    }
}

template <class CharType>
void StringData::destroyExternal() {
    StringDataBufferInfo& info = infoOf<CharType>();
    StringData* const next = info.m_next;
    if (info.m_previous) {
        info.m_previous->infoOf<CharType>().m_next = next;
        if (next) next->infoOf<CharType>().m_previous = info.m_previous;
    } else {
        detachSubstrings<CharType>();
    }
}

template <class CharType>
void StringData::detachSubstrings() {
    StringDataBufferInfo& info = infoOf<CharType>();
    StringData* const next = info.m_next;
    if (info.m_allocationType != STRING_DATA_EXTERNAL || info.m_previous || !next) return;
    StringDataBufferInfo& nextInfo = next->infoOf<CharType>();
    nextInfo.m_previous = nullptr;
    // The borrowed block is valid only as long as its head exists.
    if (nextInfo.m_allocationType == STRING_DATA_EXTERNAL) {
        try {
            next->detachExternalBuffer<CharType>();
        } catch (...) {
            nextInfo.m_previous = this;
            throw;
        }
    }
    info.m_next = nullptr;
}

void StringData::detachSubstrings() {
    detachSubstrings<unsigned char>();
    detachSubstrings<UTF16Char>();
}

// Parts are inserted directly behind their parents, so the first of them is met soon.
bool StringData::isEditSeenByParts() const noexcept {
    const StringData* next = m_utf8Info.m_next;
    if (m_isPart && next) return true;
    while (next && !next->m_isPart) next = next->m_utf8Info.m_next;
    return next;
}

void StringData::destroyDynamicUTF8() { destroyDynamic<unsigned char>(); }
void StringData::destroyDynamicUTF16() { destroyDynamic<UTF16Char>(); }
void StringData::destroyExternalUTF8() { destroyExternal<unsigned char>(); }
void StringData::destroyExternalUTF16() { destroyExternal<UTF16Char>(); }

template <class CharType>
void StringData::detachExternalBuffer() {
    StringDataBufferInfo& info = infoOf<CharType>();
    const CharType* const oldBlock = bufferOf<CharType>() - info.m_offset;
    unsigned int low = info.m_offset;
    unsigned int high = endOf(info);
    if (!info.m_previous) {
        for (StringData* next = info.m_next; next; next = next->getNext<CharType>()) {
            low = std::min(low, next->infoOf<CharType>().m_offset);
            high = std::max(high, endOf(next->infoOf<CharType>()));
        }
    }

    const CharType* const block = copyTerminated(oldBlock, low, high).release();
    if (info.m_previous) {
        info.m_previous->infoOf<CharType>().m_next = info.m_next;
        if (info.m_next) info.m_next->infoOf<CharType>().m_previous = info.m_previous;
        info.m_previous = nullptr;
        info.m_next = nullptr;
    }
    info.m_allocationType = STRING_DATA_DYNAMIC;
    for (StringData* record = this; record; record = record->getNext<CharType>()) {
        StringDataBufferInfo& moved = record->infoOf<CharType>();
        moved.m_offset -= low;
        record->bufferOf<CharType>() = block + moved.m_offset;
        record->updateTerminated<CharType>();
    }
}

template VORN_API const unsigned char* StringData::nullTerminateExternalString<unsigned char>() const;
template VORN_API const unsigned char* StringData::nullTerminateStaticString<unsigned char>() const;
template VORN_API const unsigned char* StringData::nullTerminateDynamicString<unsigned char>() const;
template VORN_API void StringData::detachExternalBuffer<unsigned char>();
template VORN_API const UTF16Char* StringData::nullTerminateExternalString<UTF16Char>() const;
template VORN_API const UTF16Char* StringData::nullTerminateStaticString<UTF16Char>() const;
template VORN_API const UTF16Char* StringData::nullTerminateDynamicString<UTF16Char>() const;
template VORN_API void StringData::detachExternalBuffer<UTF16Char>();

} // namespace Vorn
