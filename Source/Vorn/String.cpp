#include "Vorn/String/String.h"

#include "RecordMemory.h"
#include "StringDataConversion.h"
#include "TextBlock.h"

#include <cstring>
#include <memory>

namespace Vorn {

namespace {

const unsigned char* asBytes(const char* text) { return reinterpret_cast<const unsigned char*>(text); }

} // namespace

constinit StringData String::s_emptyRecord(VornPrivate::EMPTY_TEXT<unsigned char>, VornPrivate::EMPTY_TEXT<UTF16Char>,
                                           0, 1);
constinit const String String::s_emptyString(s_emptyRecord);

String::String(const unsigned char* buffer, unsigned int length, StringAllocationType type)
    : String(new StringData(buffer, length, type)) {}

String::String(const char* buffer, unsigned int length, StringAllocationType type)
    : String(asBytes(buffer), length, type) {}

String::String(const UTF16Char* buffer, unsigned int length, StringAllocationType type)
    : String(new StringData(buffer, length, type)) {}

String::String(const unsigned char* buffer, unsigned int length, StringAllocationType type, bool nullTerminated)
    : String(new StringData(buffer, StringData::countedLength(length, nullTerminated), type,
                            StringData::CountedLength())) {}

String::String(const char* buffer, unsigned int length, StringAllocationType type, bool nullTerminated)
    : String(asBytes(buffer), length, type, nullTerminated) {}

String::String(const UTF16Char* buffer, unsigned int length, StringAllocationType type, bool nullTerminated)
    : String(new StringData(buffer, StringData::countedLength(length, nullTerminated), type,
                            StringData::CountedLength())) {}

String::String(const std::string& text) : m_data(nullptr) {
    if (text.empty()) {
        m_data = s_emptyString.m_data;
    } else {
        if (text.size() > VornPrivate::MAX_TEXT_LENGTH) VORN_THROW(E::PARAMETER, "length : text too long!");
        std::unique_ptr<unsigned char[]> block(new unsigned char[text.size() + 1]);
        std::memcpy(block.get(), text.c_str(), text.size() + 1);
        const std::uint64_t length = std::uint64_t(text.size()) + 1;
        m_data = new StringData(block.get(), length, STRING_DATA_EXTERNAL, StringData::CountedLength());
        block.release(); // not owned by the record and never freed: the text is specified to outlive every record
    }
    acquireReference();
}

String& String::operator=(const String& other) {
    if (m_data != other.m_data) {
        StringData* const old = m_data;
        m_data = other.m_data;
        acquireReference();
        if (old) old->decRefCount();
    }
    return *this;
}

namespace {

constexpr char ADD[] = "Vorn::String::operator +=";

} // namespace

// Neither text is empty, and this one has a buffer of this encoding.
template <class CharType>
void String::append(const StringData& other) {
    const unsigned int length = m_data->getBufferInfo<CharType>().m_length;
    VORN_INTERNAL_ASSERT(length, "expected non-zero length!", ADD);
    const unsigned int otherLength = sizeof(CharType) == 1 ? other.getUTF8Length() : other.getUTF16Length();
    VORN_INTERNAL_ASSERT(otherLength, "expected non-zero length!", ADD);

    if (otherLength > VornPrivate::MAX_TEXT_LENGTH - length) VORN_THROW(E::PARAMETER, "length : text too long!", ADD);
    const unsigned int joinedLength = length + otherLength;
    const unsigned int overrun = sizeof(CharType) == 1 ? overrunOfUTF8(other) : 0;
    std::unique_ptr<CharType[]> block = VornPrivate::allocateText<CharType>(std::uint64_t(joinedLength) + overrun);
    // As specified, copies as many bytes as the text has units: half of a UTF-16 text. Zero bytes replace the other
    // half.
    std::memcpy(block.get(), m_data->getPrivateBuffer<CharType>(), length);
    if constexpr (sizeof(CharType) != 1) std::memset(reinterpret_cast<unsigned char*>(block.get()) + length, 0, length);
    const std::size_t written = copyToBlock(other, block.get() + length, otherLength + 1);
    VornPrivate::clearUnwritten(block.get() + length, written, otherLength);
    block[joinedLength] = 0;

    // The memory for the new record is allocated first: if that fails, this string is unchanged. The old record is
    // released before the new one is constructed: if the scan refuses the joined text, the block is leaked, and a
    // string whose old record has other owners keeps pointing at it without owning a reference. Both are documented.
    RecordMemory record;
    const bool wasLast = m_data->getRefCount() == 1 && !m_data->isStaticConstString();
    if (wasLast) m_data->detachSubstrings(); // the destructor of the record must not run out of memory
    m_data->decRefCount();
    if (wasLast) m_data = nullptr;
    m_data = record.own(new (record.get()) StringData(block.release(), std::uint64_t(joinedLength) + 1,
                                                      STRING_DATA_DYNAMIC, StringData::CountedLength()));
    acquireReference();
}

String& String::operator+=(const String& other) {
    if (!other.m_data) return *this;
    if (other.m_data->isEmpty()) {
        if (!m_data) *this = s_emptyString;
    } else if (isEmpty()) {
        *this = other;
    } else if (m_data->getPrivateBuffer<unsigned char>()) {
        append<unsigned char>(*other.m_data);
    } else {
        append<UTF16Char>(*other.m_data);
    }
    return *this;
}

void String::copyTo(std::string& dest) const {
    if (m_data) {
        m_data->copyTo(dest);
    } else {
        dest.clear();
    }
}

const char* String::getCString() const {
    return m_data ? reinterpret_cast<const char*>(m_data->getTerminatedBuffer<unsigned char>()) : "";
}

} // namespace Vorn
