#include "Vorn/String/String.h"

#include <cstring>
#include <memory>

namespace Vorn {

namespace {

constexpr unsigned char EMPTY_UTF8[] = {0};
constexpr UTF16Char EMPTY_UTF16[] = {0};

const unsigned char* asBytes(const char* text) { return reinterpret_cast<const unsigned char*>(text); }

} // namespace

constinit StringData String::s_emptyRecord(EMPTY_UTF8, EMPTY_UTF16, 0, 1);
constinit const String String::s_emptyString(s_emptyRecord);

String::String(const unsigned char* buffer, unsigned int length, StringAllocationType type)
    : String(new StringData(buffer, length, type)) {}

String::String(const char* buffer, unsigned int length, StringAllocationType type)
    : String(asBytes(buffer), length, type) {}

String::String(const UTF16Char* buffer, unsigned int length, StringAllocationType type)
    : String(new StringData(buffer, length, type)) {}

String::String(const unsigned char* buffer, unsigned int length, StringAllocationType type, bool nullTerminated)
    : String(buffer, length + nullTerminated, type) {}

String::String(const char* buffer, unsigned int length, StringAllocationType type, bool nullTerminated)
    : String(asBytes(buffer), length + nullTerminated, type) {}

String::String(const UTF16Char* buffer, unsigned int length, StringAllocationType type, bool nullTerminated)
    : String(buffer, length + nullTerminated, type) {}

String::String(const std::string& text) : m_data(nullptr) {
    if (text.empty()) {
        m_data = s_emptyString.m_data;
    } else {
        const unsigned int length = static_cast<unsigned int>(text.size()) + 1;
        std::unique_ptr<unsigned char[]> block(new unsigned char[text.size() + 1]);
        std::memcpy(block.get(), text.c_str(), text.size() + 1);
        m_data = new StringData(block.get(), length, STRING_DATA_EXTERNAL);
        block.release(); // the record does not own it, and callers rely on the text outliving every record
    }
    addShare();
}

String& String::operator=(const String& other) {
    if (m_data != other.m_data) {
        StringData* const old = m_data;
        m_data = other.m_data;
        addShare();
        if (old) old->decRefCount();
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
