#include "Vorn/String/UTF8String.h"

#include "RecordMemory.h"
#include "StringDataConversion.h"
#include "TextBlock.h"
#include "TextSearch.h"
#include "Vorn/Assert.h"
#include "Vorn/String/Unicode.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

namespace Vorn {

namespace {

using namespace VornPrivate;

constexpr unsigned int NOT_FOUND = 0xFFFFFFFF;

std::string_view bytesOf(const StringData& data, unsigned int offset) {
    const unsigned int length = data.getBufferInfo<unsigned char>().m_length;
    const auto* const text = reinterpret_cast<const char*>(data.getPrivateBuffer<unsigned char>());
    return std::string_view(text + offset, length - offset);
}

// Returns the terminated text of a needle, or null.
const char* needleOf(const String& s) {
    StringData* const data = s.getData();
    return data ? reinterpret_cast<const char*>(data->getTerminatedBuffer<unsigned char>()) : nullptr;
}

// Returns the offset that an index means. A negative index counts from the end; for an index before the start the sum
// does not wrap around and is above the length.
unsigned int offsetOf(int index, unsigned int length) {
    return static_cast<unsigned int>(index) + (index < 0 ? length : 0);
}

bool isIn(const ASCIITable& table, char c) { return table.check(static_cast<signed char>(c)) != 0; }

} // namespace

const unsigned char UTF8String::s_leadFlag[8] = {0x00, 0x00, 0xC0, 0xE0, 0xF0, 0x00, 0x00, 0x00};
const unsigned char UTF8String::s_leadMask[8] = {0x00, 0x7F, 0x1F, 0x0F, 0x07, 0x00, 0x00, 0x00};

UTF8String& UTF8String::operator=(const String& other) {
    if (getData() != other.getData()) freeUncountedRecord();
    String::operator=(other);
    return *this;
}

// Navigation

const unsigned char* UTF8String::getBuffer() const {
    return getData() ? getData()->getBuffer<unsigned char>() : nullptr;
}

unsigned int UTF8String::getLength() const {
    return getBuffer() ? getData()->getBufferInfo<unsigned char>().m_length : 0;
}

// Returns the length in UTF-8 without building the buffer.
unsigned int UTF8String::measure() const { return getData() ? getData()->getUTF8Length() : 0; }

const unsigned char* UTF8String::getTerminatedBuffer(int& index) const {
    unsigned int offset;
    const unsigned int start = startOf(index, offset);
    const bool fitsIndex = offset <= INT_MAX;
    if (start == NOT_FOUND || fitsIndex) index = static_cast<int>(offset);
    if (start == NOT_FOUND || !fitsIndex) VORN_THROW(E::PARAMETER, "Invalid index!");
    return getData()->getPrivateBuffer<unsigned char>() + start;
}

// Sets `offset` to the offset that the index means. Returns the offset of the first character start at or after it, or
// NOT_FOUND if the index is outside the text. Terminates the text.
unsigned int UTF8String::startOf(int index, unsigned int& offset) const {
    offset = static_cast<unsigned int>(index);
    const unsigned char* buffer = getData() ? getData()->getTerminatedBuffer<unsigned char>() : nullptr;
    if (!buffer) return NOT_FOUND;
    const unsigned int length = getData()->getBufferInfo<unsigned char>().m_length;
    offset = offsetOf(index, length);
    if (offset >= length) return NOT_FOUND;

    buffer += offset;
    unsigned int start = offset;
    for (int i = 0; i < 3; ++i, ++buffer, ++start)
        if (!Unicode::validUTF8Trail(*buffer)) return start;
    VORN_INTERNAL_ASSERT(!Unicode::validUTF8Trail(*buffer), "Invalid UTF-8 string!",
                         "Vorn::UTF8String::getTerminatedBuffer");
    return start;
}

unsigned char UTF8String::get(unsigned int index) const {
    unsigned int offset;
    const unsigned int start = startOf(static_cast<int>(index), offset);
    if (start == NOT_FOUND) VORN_THROW(E::PARAMETER, "Invalid index!", "Vorn::UTF8String::getTerminatedBuffer");
    return getData()->getPrivateBuffer<unsigned char>()[start];
}

const unsigned char* UTF8String::skipTrailBytes(const unsigned char* ptr) const {
    for (int i = 0; i < 3; ++i, ++ptr)
        if (!Unicode::validUTF8Trail(*ptr)) return ptr;
    VORN_INTERNAL_ASSERT(!Unicode::validUTF8Trail(*ptr), "Invalid UTF-8 String!");
    return ptr;
}

// The terminator is not a trail byte, so no test reads beyond it.
unsigned int UTF8String::next(unsigned int index) const {
    const unsigned int length = measure();
    if (index >= length) return length;
    const unsigned char* const buffer = getData()->getTerminatedBuffer<unsigned char>();
    const bool isInside = Unicode::validUTF8Trail(buffer[index]);
    if (!Unicode::validUTF8Trail(buffer[++index])) return index;
    if (!Unicode::validUTF8Trail(buffer[++index])) return index;
    ++index;
    if (!isInside && Unicode::validUTF8Trail(buffer[index])) ++index;
    VORN_INTERNAL_ASSERT(!Unicode::validUTF8Trail(buffer[index]), "Invalid UTF-8 string!");
    return index;
}

// As specified, tests four bytes only if the index is the end of the text or inside a character. From the start of the
// next character, it tests three bytes, so that a character of four bytes throws.
unsigned int UTF8String::previous(unsigned int index) const {
    const unsigned int length = measure();
    if (length == 0 || index == 0) return NOT_FOUND;
    const unsigned char* const buffer = getBuffer();
    if (index >= length) {
        index = length - 1;
        if (!Unicode::validUTF8Trail(buffer[index])) return index;
        VORN_INTERNAL_ASSERT(index, "Invalid UTF-8 string!");
    } else if (Unicode::validUTF8Trail(buffer[index])) {
        --index;
        if (!Unicode::validUTF8Trail(buffer[index])) return index;
        VORN_INTERNAL_ASSERT(index, "Invalid UTF-8 string!");
    }
    for (int i = 0; i < 2; ++i) {
        --index;
        if (!Unicode::validUTF8Trail(buffer[index])) return index;
        VORN_INTERNAL_ASSERT(index, "Invalid UTF-8 string!");
    }
    --index;
    VORN_INTERNAL_ASSERT(!Unicode::validUTF8Trail(buffer[index]), "Invalid UTF-8 string");
    return index;
}

// Searches. Each starts at the first character start at or after the index but counts its result from the index, as
// specified: for an index inside a character, the result is too small by the number of trail bytes that are skipped.

// Writes the sequence of a code. Returns its length, or 0 for a code without a sequence.
unsigned int UTF8String::encode(unsigned int c, unsigned char* sequence) {
    const unsigned int count = c >= 0x110000 ? 0 : c == 0 ? 2 : UTF8::countUTF8(c);
    setChar(sequence, count, c);
    return count;
}

unsigned int UTF8String::find(unsigned int c, int index) const {
    unsigned int from;
    const unsigned int start = startOf(index, from);
    if (start == NOT_FOUND) VORN_THROW(E::PARAMETER, "Invalid index!");
    if (c - 1 < 0x7F) {
        const std::string_view text = bytesOf(*getData(), start);
        const void* const hit = std::memchr(text.data(), static_cast<int>(c), text.size());
        if (!hit) return start + static_cast<unsigned int>(text.size());
        return from + static_cast<unsigned int>(static_cast<const char*>(hit) - text.data());
    }
    unsigned char sequence[4];
    const unsigned int count = encode(c, sequence);
    if (count == 0) VORN_THROW(E::UNICODE, "Invalid Unicode Character!");
    return findBytes(std::string_view(reinterpret_cast<const char*>(sequence), count), start, from);
}

unsigned int UTF8String::find(String s, int index) const {
    unsigned int from;
    const unsigned int start = startOf(index, from);
    if (start == NOT_FOUND) VORN_THROW(E::PARAMETER, "Invalid index!");
    const char* const needle = needleOf(s); // can move the text, so the start is an offset
    if (!needle || !*needle) VORN_THROW(E::PARAMETER, "Invalid string!");
    return findBytes(needle, start, from);
}

unsigned int UTF8String::find(const char* s, int index) const {
    unsigned int from;
    const unsigned int start = startOf(index, from);
    if (start == NOT_FOUND) VORN_THROW(E::PARAMETER, "Invalid index!");
    if (!s || !*s) VORN_THROW(E::PARAMETER, "Invalid string!");
    return findBytes(s, start, from);
}

unsigned int UTF8String::find(const ASCIITable& table, int index) const {
    unsigned int from;
    const unsigned int start = startOf(index, from);
    if (start == NOT_FOUND) VORN_THROW(E::PARAMETER, "Invalid index!");
    const std::string_view text = bytesOf(*getData(), start);
    const auto hit = std::find_if(text.begin(), text.end(), [&](char c) { return isIn(table, c); });
    return hit == text.end() ? getLength() : from + static_cast<unsigned int>(hit - text.begin());
}

unsigned int UTF8String::findBytes(std::string_view needle, unsigned int start, unsigned int from) const {
    const std::size_t hit = findText(bytesOf(*getData(), start), needle);
    return hit == std::string_view::npos ? getLength() : from + static_cast<unsigned int>(hit);
}

unsigned int UTF8String::skip(unsigned int c, int index) const {
    unsigned int from;
    const unsigned int offset = startOf(index, from);
    if (offset == NOT_FOUND) VORN_THROW(E::PARAMETER, "Invalid index!");
    const unsigned char* const start = getData()->getPrivateBuffer<unsigned char>() + offset;
    const unsigned char* ptr = start;
    if (!*ptr) return from;

    unsigned char sequence[4];
    switch (encode(c, sequence)) {
    case 1:
        while (*ptr == sequence[0]) ++ptr;
        break;
    case 2:
        while (*ptr == sequence[0]) {
            VORN_INTERNAL_ASSERT(ptr[1], "Invalid UTF-8 String!");
            if (ptr[1] != sequence[1]) break;
            ptr += 2;
        }
        break;
    case 3:
        while (*ptr == sequence[0]) {
            VORN_INTERNAL_ASSERT(ptr[1], "Invalid UTF-8 String!");
            if (ptr[1] != sequence[1]) break;
            VORN_INTERNAL_ASSERT(ptr[2], "Invalid UTF-8 String!");
            if (ptr[2] != sequence[2]) break;
            ptr += 3;
        }
        break;
    case 4:
        while (*ptr == sequence[0]) {
            VORN_INTERNAL_ASSERT(ptr[1], "Invalid UTF-8 String!");
            if (ptr[1] != sequence[1]) break;
            VORN_INTERNAL_ASSERT(ptr[2], "Invalid UTF-8 String!");
            if (ptr[2] != sequence[2]) break;
            VORN_INTERNAL_ASSERT(ptr[3], "Invalid UTF-8 String!");
            if (ptr[3] != sequence[3]) break;
            ptr += 4;
        }
        break;
    default: VORN_THROW(E::UNICODE, "Invalid Unicode Character!");
    }
    return from + static_cast<unsigned int>(ptr - start);
}

unsigned int UTF8String::skip(String s, int index) const {
    unsigned int from;
    const unsigned int start = startOf(index, from);
    if (start == NOT_FOUND) VORN_THROW(E::PARAMETER, "Invalid index!");
    const char* const needle = needleOf(s);
    if (!needle || !*needle) VORN_THROW(E::PARAMETER, "Invalid string!");
    return skipBytes(needle, start, from);
}

unsigned int UTF8String::skip(const char* s, int index) const {
    unsigned int from;
    const unsigned int start = startOf(index, from);
    if (start == NOT_FOUND) VORN_THROW(E::PARAMETER, "Invalid index!");
    if (!s || !*s) VORN_THROW(E::PARAMETER, "Invalid string!");
    return skipBytes(s, start, from);
}

unsigned int UTF8String::skipBytes(std::string_view run, unsigned int start, unsigned int from) const {
    const std::string_view text = bytesOf(*getData(), start);
    std::size_t end = 0;
    while (text.substr(end, run.size()) == run) end += run.size();
    return from + static_cast<unsigned int>(end);
}

unsigned int UTF8String::skip(const ASCIITable& table, int index) const {
    unsigned int from;
    const unsigned int start = startOf(index, from);
    if (start == NOT_FOUND) VORN_THROW(E::PARAMETER, "Invalid index!");
    const std::string_view text = bytesOf(*getData(), start);
    const auto end = std::find_if_not(text.begin(), text.end(), [&](char c) { return isIn(table, c); });
    return from + static_cast<unsigned int>(end - text.begin());
}

unsigned int UTF8String::match(String s, int index) const {
    unsigned int from;
    const unsigned int start = startOf(index, from);
    if (start == NOT_FOUND) VORN_THROW(E::PARAMETER, "Invalid index!");
    const char* const needle = needleOf(s);
    if (!needle || !*needle) VORN_THROW(E::PARAMETER, "Invalid string!");
    return matchBytes(needle, start, from);
}

unsigned int UTF8String::match(const char* s, int index) const {
    unsigned int from;
    const unsigned int start = startOf(index, from);
    if (start == NOT_FOUND) VORN_THROW(E::PARAMETER, "Invalid index!");
    if (!s || !*s) VORN_THROW(E::PARAMETER, "Invalid string!");
    return matchBytes(s, start, from);
}

unsigned int UTF8String::matchBytes(std::string_view needle, unsigned int start, unsigned int from) const {
    const bool matches = bytesOf(*getData(), start).substr(0, needle.size()) == needle;
    return matches ? from : NOT_FOUND;
}

unsigned int UTF8String::match(const ASCIITable& table, int index) const {
    unsigned int from;
    const unsigned int start = startOf(index, from);
    if (start == NOT_FOUND) VORN_THROW(E::PARAMETER, "Invalid index!");
    return table.check(static_cast<signed char>(getData()->getPrivateBuffer<unsigned char>()[start])) ? from
                                                                                                      : NOT_FOUND;
}

// Editing

namespace {

using Block = std::unique_ptr<unsigned char[]>;

// Returns a copy of the text of `n` bytes in a block of at least `length` bytes, with a zero behind the text and one at
// the end. The bytes between the two are not written.
Block copyText(const StringData& data, unsigned int n, unsigned int length) {
    if (const unsigned char* const text = data.getPrivateBuffer<unsigned char>()) {
        const unsigned int capacity = std::max(length, n);
        Block block = allocateText<unsigned char>(capacity);
        std::memcpy(block.get(), text, n);
        block[n] = 0;
        block[capacity] = 0;
        return block;
    }
    if (!data.getPrivateBuffer<UTF16Char>()) return nullptr;
    return Block(stringDataConvertCreateUTF8(data.getPrivateBuffer<UTF16Char>(), data.getBufferInfo<UTF16Char>(),
                                             data.getCharset(), length));
}

// Returns true if an edit at this index of a text of `n` bytes would divide a character. In this case, clears the
// capacity behind the text, because the edit does not write it.
bool dividesCharacter(unsigned char* buffer, unsigned int index, unsigned int n, unsigned int capacity) {
    if (index >= n || !UTF8::validUTF8Trail(buffer[index])) return false;
    clearUnwritten(buffer, std::size_t(n) + 1, capacity);
    return true;
}

// A text that an edit inserts. It is measured, and the memory that it needs is allocated, before the edit changes
// anything.
class Incoming {
public:
    explicit Incoming(const String& s) : m_data(s.getData()), m_length(m_data ? m_data->getUTF8Length() : 0) {}

    // Allocates the memory that copyTo needs. Called after the checks of the edit.
    void allocate() {
        // The last character of such a text can end behind its measured length.
        const unsigned int overrun = m_data ? overrunOfUTF8(*m_data) : 0;
        if (overrun != 0 && !m_data->getPrivateBuffer<unsigned char>())
            m_block = allocateText<unsigned char>(std::uint64_t(m_length) + overrun);
    }

    unsigned int length() const { return m_length; } // in UTF-8

    // Writes the text, which is not empty, to `index` of a buffer that contained `n` bytes and a zero before the edit.
    // Bytes that the conversion does not write stay as the edit left them; behind the old text they are zero.
    void copyTo(unsigned char* buffer, unsigned int index, unsigned int n) const {
        unsigned char* const dest = buffer + index;
        const std::size_t end = std::size_t(index) + m_length;
        const std::size_t oldEnd = std::size_t(n) + 1;
        if (m_block) {
            clearUnwritten(buffer, oldEnd, end); // the conversion can fail
            const std::size_t written = copyToBlock(*m_data, m_block.get(), m_length);
            std::memcpy(dest, m_block.get(), std::min<std::size_t>(written, m_length));
        } else {
            const std::size_t written = copyToBlock(*m_data, dest, m_length);
            clearUnwritten(buffer, std::max(oldEnd, index + written), end);
        }
    }

private:
    const StringData* m_data;
    unsigned int m_length;
    Block m_block; // null if the text can be written to the buffer directly
};

} // namespace

// Reserves as `reserve` does, but returns the index of the byte behind the terminator, from which on the capacity is
// unwritten.
//
// As specified, a null string receives a record with a use count of 0, so that setLength refuses every edit. Its string
// destroys such a record; `+=` leaks it.
unsigned int UTF8String::provideCapacity(unsigned int length) {
    if (!m_data) {
        Block block = allocateText<unsigned char>(length);
        block[0] = 0;
        block[length] = 0;
        m_data = new StringData(block.get(), 1, STRING_DATA_DYNAMIC);
        block.release();
        m_capacity = length;
        return 1;
    }

    const unsigned int n = measure();
    if (m_data->getRefCount() >= 2 || m_data->isStaticConstString()) {
        Block block = copyText(*m_data, n, length);
        RecordMemory record; // if this allocation fails, the string is unchanged
        m_data->decRefCount();
        m_data = nullptr; // the reference is released, even if the scan refuses the text
        m_data = record.own(new (record.get()) StringData(block.get(), std::uint64_t(n) + 1, STRING_DATA_DYNAMIC,
                                                          StringData::CountedLength()));
        block.release();
        m_data->incRefCount();
    } else if (n < length || m_data->getAllocationType<unsigned char>() != STRING_DATA_DYNAMIC ||
               m_data->isEditSeenByParts()) {
        Block block = copyText(*m_data, n, length);
        m_data->rebuild(block.get(), std::uint64_t(n) + 1);
        block.release();
    }
    m_capacity = std::max(n, length);
    return n + 1;
}

unsigned int UTF8String::reserve(unsigned int length) {
    if (length > MAX_TEXT_LENGTH) VORN_THROW(E::PARAMETER, "length : text too long!");
    clearCapacity(provideCapacity(length));
    return m_capacity;
}

// Clears the capacity from index `unwritten` on.
void UTF8String::clearCapacity(unsigned int unwritten) {
    if (unwritten >= m_capacity) return;
    clearUnwritten(const_cast<unsigned char*>(m_data->getPrivateBuffer<unsigned char>()), unwritten, m_capacity);
}

void UTF8String::freeUncountedRecord() noexcept {
    if (m_data && m_data->getRefCount() == 0 && !m_data->isStaticConstString()) {
        delete m_data;
        m_data = nullptr;
    }
}

// Returns the buffer for an edit, which writes the capacity behind the text. If setLength refuses the edit, the
// capacity is cleared here.
unsigned char* UTF8String::getEditableBuffer(unsigned int length) {
    const unsigned int unwritten = provideCapacity(length);
    if (m_data->getRefCount() != 1) clearCapacity(unwritten);
    return const_cast<unsigned char*>(m_data->getTerminatedBuffer<unsigned char>());
}

void UTF8String::setChar(unsigned char* dest, unsigned int count, unsigned int c) {
    if (count < 1 || count > 4) return;
    for (unsigned int i = count - 1; i > 0; --i, c >>= 6) dest[i] = static_cast<unsigned char>(0x80 + (c & 0x3F));
    dest[0] = static_cast<unsigned char>((c & s_leadMask[count]) + s_leadFlag[count]);
}

unsigned int UTF8String::assertValidInsertIndex(int& index) const {
    const unsigned int n = measure();
    const int length = static_cast<int>(n);
    if (index < 0) index = length;
    if (length < 0 || index > length) VORN_THROW(E::PARAMETER, "Invalid index!");
    return n;
}

// Resizes a range of a terminated text of `n` bytes to `newLength` bytes, whose content it does not write. The capacity
// suffices.
void UTF8String::moveTail(unsigned char* buffer, unsigned int n, unsigned int index, unsigned int length,
                          unsigned int newLength) {
    std::memmove(buffer + index + newLength, buffer + index + length, std::size_t(n) - index - length + 1);
    m_data->setLength(n - length + newLength);
}

void UTF8String::append(unsigned int c) {
    const unsigned int count = c == 0 ? 2 : UTF8::countUTF8(c);
    if (count == 0) VORN_THROW(E::UNICODE, "Invalid Unicode character!");
    const unsigned int n = measure();
    if (count > MAX_TEXT_LENGTH - n) VORN_THROW(E::PARAMETER, "length : text too long!");
    unsigned char* const buffer = getEditableBuffer(n + count); // terminated
    m_data->setLength(n + count);
    setChar(buffer + n, count, c);
}

void UTF8String::append(String s) {
    Incoming text(s);
    const unsigned int count = text.length();
    if (count == 0) return;
    const unsigned int n = measure();
    if (count > MAX_TEXT_LENGTH - n) VORN_THROW(E::PARAMETER, "length : text too long!");
    text.allocate();
    unsigned char* const buffer = getEditableBuffer(n + count);
    m_data->setLength(n + count);
    buffer[n + count] = 0;
    text.copyTo(buffer, n, n);
}

void UTF8String::appendDecimal(unsigned int value) {
    const unsigned int n = measure();
    const unsigned int count = measureDec(value);
    if (count > MAX_TEXT_LENGTH - n) VORN_THROW(E::PARAMETER, "length : text too long!");
    unsigned char* const buffer = getEditableBuffer(n + count);
    if (printDec(value, buffer + n, count) > count) clearUnwritten(buffer + n, 1, count); // nothing was printed
    buffer[n + count] = 0;
    m_data->setLength(n + count);
}

void UTF8String::appendHexaDecimal(unsigned int value, HexWithPrefix prefix) {
    const unsigned int n = measure();
    const unsigned int count = measureHex(value, prefix);
    if (count > MAX_TEXT_LENGTH - n) VORN_THROW(E::PARAMETER, "length : text too long!");
    unsigned char* const buffer = getEditableBuffer(n + count);
    printHex(value, prefix, buffer + n, count);
    buffer[n + count] = 0;
    m_data->setLength(n + count);
}

void UTF8String::insert(unsigned int c, int index) {
    const unsigned int count = c == 0 ? 2 : UTF8::countUTF8(c);
    if (count == 0) VORN_THROW(E::UNICODE, "Invalid Unicode character!");
    const unsigned int n = assertValidInsertIndex(index);
    const unsigned int start = static_cast<unsigned int>(index);
    if (count > MAX_TEXT_LENGTH - n) VORN_THROW(E::PARAMETER, "length : text too long!");
    unsigned char* const buffer = getEditableBuffer(n + count);
    if (dividesCharacter(buffer, start, n, m_capacity)) VORN_THROW(E::PARAMETER, "Invalid index!");
    moveTail(buffer, n, start, 0, count);
    setChar(buffer + start, count, c);
}

void UTF8String::insert(String s, int index) {
    Incoming text(s);
    const unsigned int count = text.length();
    if (count == 0) return;
    const unsigned int n = assertValidInsertIndex(index);
    const unsigned int start = static_cast<unsigned int>(index);
    if (count > MAX_TEXT_LENGTH - n) VORN_THROW(E::PARAMETER, "length : text too long!");
    text.allocate();
    unsigned char* const buffer = getEditableBuffer(n + count);
    if (dividesCharacter(buffer, start, n, m_capacity)) VORN_THROW(E::PARAMETER, "Invalid index!");
    moveTail(buffer, n, start, 0, count);
    text.copyTo(buffer, start, n);
}

void UTF8String::replace(unsigned int c, int index, unsigned int length) {
    const unsigned int count = c == 0 ? 2 : UTF8::countUTF8(c);
    if (count == 0) VORN_THROW(E::UNICODE, "Invalid Unicode character!");
    const unsigned int n = assertValidInsertIndex(index);
    const unsigned int start = static_cast<unsigned int>(index);
    length = std::min(length, n - start);
    if (count > MAX_TEXT_LENGTH - (n - length)) VORN_THROW(E::PARAMETER, "length : text too long!");
    unsigned char* const buffer = getEditableBuffer(n - length + count);
    if (dividesCharacter(buffer, start, n, m_capacity)) VORN_THROW(E::PARAMETER, "Invalid index!");
    if (dividesCharacter(buffer, start + length, n, m_capacity)) VORN_THROW(E::PARAMETER, "Invalid length!");
    if (count != length) moveTail(buffer, n, start, length, count);
    setChar(buffer + start, count, c);
}

void UTF8String::replace(String s, int index, unsigned int length) {
    Incoming text(s);
    const unsigned int count = text.length();
    const unsigned int n = assertValidInsertIndex(index);
    const unsigned int start = static_cast<unsigned int>(index);
    length = std::min(length, n - start);
    if (count > MAX_TEXT_LENGTH - (n - length)) VORN_THROW(E::PARAMETER, "length : text too long!");
    text.allocate();
    unsigned char* const buffer = getEditableBuffer(n - length + count);
    if (dividesCharacter(buffer, start, n, m_capacity)) VORN_THROW(E::PARAMETER, "Invalid index!");
    if (dividesCharacter(buffer, start + length, n, m_capacity)) VORN_THROW(E::PARAMETER, "Invalid length!");
    if (count != length) moveTail(buffer, n, start, length, count);
    if (count != 0) text.copyTo(buffer, start, n);
}

void UTF8String::erase(int index, unsigned int length) {
    if (length == 0) return;
    const unsigned int n = measure();
    const unsigned int start = offsetOf(index, n);
    if (start > n) VORN_THROW(E::PARAMETER, "Invalid index!");
    length = std::min(length, n - start);
    unsigned char* const buffer = getEditableBuffer(n - length);
    if (dividesCharacter(buffer, start, n, m_capacity)) VORN_THROW(E::PARAMETER, "Invalid index!");
    if (dividesCharacter(buffer, start + length, n, m_capacity)) VORN_THROW(E::PARAMETER, "Invalid length!");
    moveTail(buffer, n, start, length, 0);
}

} // namespace Vorn
