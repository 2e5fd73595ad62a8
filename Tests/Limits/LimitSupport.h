// What the tests of limits share: records that were not scanned, and the one failure that they expect.
#pragma once

#include "Limits/LongText.h"
#include "Support/Report.h"
#include "Support/StringDataProbe.h"

#include "Vorn/String/UTF8String.h"

#include <memory>
#include <string>

namespace limits {

using namespace Vorn;
using Probe = VornPrivate::StringDataProbe;

inline constexpr const char* RECORD_FILE = "Include/Vorn/String/StringData";
inline constexpr const char* HELPER_FILE = "Source/Vorn/StringDataHelper";
inline constexpr const char* STRING_FILE = "Source/Vorn/String";
inline constexpr const char* EDIT_FILE = "Source/Vorn/UTF8String";

/// A static record over a terminated text, which is taken as valid: a scan of each text would take minutes in all.
template <class CharType>
std::unique_ptr<StringData> recordOver(const CharType* units, std::uint64_t length,
                                       StringDataSubCharset charset = STRING_DATA_ASCII) {
    const auto size = static_cast<unsigned int>(length);
    std::unique_ptr<StringData> record;
    if constexpr (sizeof(CharType) == 1) {
        record.reset(Probe::makeStatic(units, nullptr, size));
        Probe::info<UTF16Char>(*record) = {};
    } else {
        record.reset(Probe::makeStatic(nullptr, units, size));
        Probe::info<unsigned char>(*record) = {};
    }
    Probe::setCharset(*record, charset);
    return record;
}

/// A UTF-8 text of `length` bytes, all of them 'a', and a record over it.
class LongASCII {
public:
    explicit LongASCII(std::uint64_t length)
        : m_memory("a", length + 1), m_record(recordOver(m_memory.begin(), length)) {
        m_memory.begin()[length] = 0;
    }

    unsigned char* bytes() const { return m_memory.begin(); }
    StringData* record() const { return m_record.get(); }
    UTF8String string() const { return UTF8String(m_record.get()); }

private:
    LongMemory m_memory;
    std::unique_ptr<StringData> m_record;
};

/// A UTF-16 text in which a pattern repeats, and a record over it.
class LongWide {
public:
    LongWide(std::u16string_view pattern, std::uint64_t length, StringDataSubCharset charset)
        : m_text(pattern, length), m_record(recordOver(m_text.units(), length, charset)) {}

    UTF16Char* units() const { return m_text.units(); }
    StringData* record() const { return m_record.get(); }
    const StringDataBufferInfo& info() const { return m_record->getBufferInfo<UTF16Char>(); }
    UTF8String string() const { return UTF8String(m_record.get()); }

private:
    LongUTF16 m_text;
    std::unique_ptr<StringData> m_record;
};

/// Expects that `run` finds the result too long before it allocates.
template <class Callable>
void expectTooLong(Callable&& run, const std::string& function, const std::string& file) {
    std::size_t before = 0, after = 0;
    expectRaises<4>(
        [&] {
            before = allocationCount();
            try {
                run();
            } catch (...) {
                after = allocationCount();
                throw;
            }
        },
        "length : text too long!", function, file);
    EXPECT_EQ(after, before) << "allocations before the failure";
}

} // namespace limits
