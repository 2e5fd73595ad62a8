#include "Vorn/ExceptionString.h"

#include "Vorn/Exception.h"
#include "Vorn/String/String.h"

#include "ReportSize.h"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

namespace Vorn {

namespace {

constexpr std::size_t COUNT_SIZE = sizeof(int);

// Returns the length of a text in UTF-8. Ends the process for a text that is too long in UTF-8, as `reportSize` does.
unsigned int utf8LengthOf(const StringData& data) {
    try {
        return data.getUTF8Length();
    } catch (const Exception<E::PARAMETER>&) {
        std::abort();
    }
}

} // namespace

ExceptionString::ExceptionString(const ExceptionStringJoiner& joiner) : ExceptionString() { doJoin(joiner); }

ExceptionString::ExceptionString(const std::string& text, float) : ExceptionString() {
    const int size = VornPrivate::reportSize(text.size());
    std::memcpy(createString(size), text.data(), text.size());
    doneCreateString(size);
}

ExceptionString::ExceptionString(const String& text, float) : ExceptionString() {
    const StringData* const data = text.getData();
    const unsigned int size = data ? utf8LengthOf(*data) : 0;
    // A text with U+0000 can be written up to two bytes longer than it is measured.
    const unsigned int slack = text.haveEmbeddedNulls() ? 2 : 0;
    char* const block = createString(VornPrivate::reportSize(std::uint64_t(size) + slack));
    if (data) data->copyToUTF8(reinterpret_cast<unsigned char*>(block), size);
    doneCreateString(static_cast<int>(size));
}

ExceptionString& ExceptionString::operator=(const ExceptionString& other) noexcept {
    stringRelease();
    m_sizeAndFlags = other.m_sizeAndFlags;
    m_text = other.m_text;
    stringAddRef();
    return *this;
}

ExceptionString& ExceptionString::operator=(const ExceptionStringJoiner& joiner) {
    if (dynamic()) {
        stringRelease();
        m_sizeAndFlags = 0; // doJoin must not release the same reference again
        m_text = nullptr;
    }
    doJoin(joiner);
    return *this;
}

char* ExceptionString::createString(int size) {
    char* const text = tryCreateString(size);
    if (!text) std::abort(); // a report must not throw a second exception
    std::memset(
        text, 0,
        static_cast<std::size_t>(size)); // bytes that the caller does not write must not expose old heap content
    return text;
}

char* ExceptionString::tryCreateString(std::int64_t size) noexcept {
    stringRelease();
    if (size < 0 || size > std::numeric_limits<int>::max()) return nullptr;
    char* block;
    try {
        block = new char[COUNT_SIZE + static_cast<std::size_t>(size) + 1];
    } catch (...) {
        return nullptr;
    }
    new (block) int(1);
    block[COUNT_SIZE + static_cast<std::size_t>(size)] = '\0';
    m_sizeAndFlags = static_cast<int>(size) | CREATING | DYNAMIC;
    m_text = block;
    return block + COUNT_SIZE;
}

void ExceptionString::doneCreateString(int size) {
    m_text[COUNT_SIZE + static_cast<std::size_t>(size)] = '\0';
    m_sizeAndFlags = size | DYNAMIC;
}

void ExceptionString::setStaticString(const char* text, int size) noexcept {
    stringRelease();
    m_sizeAndFlags = size;
    m_text = const_cast<char*>(text);
}

int& ExceptionString::blockCount() const noexcept { return *reinterpret_cast<int*>(m_text); }

void ExceptionString::freeBlock() noexcept {
    delete[] m_text;
    m_sizeAndFlags = 0;
    m_text = nullptr;
}

void ExceptionString::doJoin(const ExceptionStringJoiner& joiner) {
    std::int64_t sum = 0;
    for (const ExceptionString& part : joiner.getParts()) sum += part.size();
    if (sum < 1) return;

    char* end = tryCreateString(sum);
    if (!end) std::abort(); // as `createString` does
    for (const ExceptionString& part : joiner.getParts()) {
        if (part.size() == 0) continue;
        std::memcpy(end, part.getString(), static_cast<std::size_t>(part.size()));
        end += part.size();
    }
    doneCreateString(static_cast<int>(sum));
}

} // namespace Vorn
