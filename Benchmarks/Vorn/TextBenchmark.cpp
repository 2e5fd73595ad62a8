#include "Vorn/TextBenchmark.h"

#include "Support/Measure.h"

#include <Vorn/Vorn.h>
#include <benchmark/benchmark.h>
#include <simdjson.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

namespace {

using Vorn::String;
using Vorn::StringData;
using Vorn::UTF16Char;

unsigned int lengthOf(const SampleText& text) { return static_cast<unsigned int>(text.utf8.size()); }
unsigned int wideLengthOf(const SampleText& text) { return static_cast<unsigned int>(text.utf16.size()); }

icu::UnicodeString icuOf(const SampleText& text) {
    return icu::UnicodeString(text.utf16.data(), static_cast<std::int32_t>(text.utf16.size()));
}

// Validation: a string over a borrowed buffer.

// The string stands over the text and has found its end and its charset.
void expectScanned(Run& run, const String& string, const SampleText& text) {
    const StringData& data = *string.getData();
    const bool isUTF8 = data.getPrivateBuffer<unsigned char>() != nullptr;
    const std::size_t length =
        isUTF8 ? data.getBufferInfo<unsigned char>().m_length : data.getBufferInfo<UTF16Char>().m_length;
    run.expect(length, isUTF8 ? text.utf8.size() : text.utf16.size());
    const bool hasPairs = std::any_of(text.utf16.begin(), text.utf16.end(),
                                      [](char16_t unit) { return unit >= 0xD800 && unit < 0xE000; });
    const bool isASCII = text.utf8.size() == text.utf16.size();
    run.expect(data.getCharset(), hasPairs  ? Vorn::STRING_DATA_UNICODE
                                  : isASCII ? Vorn::STRING_DATA_ASCII
                                            : Vorn::STRING_DATA_UCS2);
}

void scanUTF8(Run& run, const SampleText& text) {
    expectScanned(run, String(text.utf8.c_str(), lengthOf(text)), text);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(String(text.utf8.c_str(), lengthOf(text)));
    run.countBytes(text.utf8.size());
}

void scanUTF8Terminated(Run& run, const SampleText& text) {
    expectScanned(run, String(text.utf8.c_str()), text);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(String(text.utf8.c_str()));
    run.countBytes(text.utf8.size());
}

void scanUTF16(Run& run, const SampleText& text) {
    expectScanned(run, String(text.utf16.c_str(), wideLengthOf(text)), text);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(String(text.utf16.c_str(), wideLengthOf(text)));
    run.countBytes(text.utf16.size() * 2);
}

void scanUTF16Terminated(Run& run, const SampleText& text) {
    expectScanned(run, String(text.utf16.c_str()), text);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(String(text.utf16.c_str()));
    run.countBytes(text.utf16.size() * 2);
}

// ICU converts while it validates: its strings store only UTF-16.
void scanUTF8Icu(Run& run, const SampleText& text) {
    run.expect(icu::UnicodeString::fromUTF8(text.utf8), icuOf(text));
    for (auto _ : run.loop()) benchmark::DoNotOptimize(icu::UnicodeString::fromUTF8(text.utf8));
    run.countBytes(text.utf8.size());
}

// The measuring pass of ICU validates and writes nothing.
void scanUTF8IcuMeasure(Run& run, const SampleText& text) {
    std::int32_t measured = 0;
    for (auto _ : run.loop()) {
        std::int32_t length = 0;
        UErrorCode error = U_ZERO_ERROR;
        u_strFromUTF8(nullptr, 0, &length, text.utf8.data(), static_cast<std::int32_t>(text.utf8.size()), &error);
        benchmark::DoNotOptimize(length);
        measured = length;
    }
    run.expect(static_cast<std::size_t>(measured), text.utf16.size());
    run.countBytes(text.utf8.size());
}

// Validates only: neither the charset nor U+0000 nor noncharacters matter.
void scanUTF8Simdjson(Run& run, const SampleText& text) {
    run.expect(simdjson::validate_utf8(text.utf8), true);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(simdjson::validate_utf8(text.utf8.data(), text.utf8.size()));
    run.countBytes(text.utf8.size());
}

// The part of a string over a borrowed buffer that the heap takes.
void allocateRecord(Run& run, const SampleText& text) {
    run.expect(lengthOf(text), text.utf8.size());
    for (auto _ : run.loop()) {
        void* record = ::operator new(sizeof(StringData));
        benchmark::DoNotOptimize(record);
        ::operator delete(record);
    }
}

// Copies without validation.
void scanUTF8StdString(Run& run, const SampleText& text) {
    run.expect(std::string(text.utf8.data(), text.utf8.size()), text.utf8);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(std::string(text.utf8.data(), text.utf8.size()));
    run.countBytes(text.utf8.size());
}

// Conversion of a validated text into new memory.

void toUTF16(Run& run, const SampleText& text) {
    const String string(text.utf8.c_str(), lengthOf(text));
    const StringData& data = *string.getData();
    Vorn::StringDataBufferInfo info{};
    const auto convert = [&] {
        return std::unique_ptr<UTF16Char[]>(Vorn::stringDataConvertToUTF16(
            data.getPrivateBuffer<unsigned char>(), data.getBufferInfo<unsigned char>(), data.getCharset(), info));
    };
    // Of a character above 0xFFFF, the library is specified to write only the second unit.
    std::u16string expected;
    std::copy_if(text.utf16.begin(), text.utf16.end(), std::back_inserter(expected),
                 [](char16_t unit) { return unit < 0xD800 || unit > 0xDBFF; });
    run.expect(std::u16string_view(convert().get(), expected.size()), expected);
    run.expect(info.m_length, wideLengthOf(text));
    for (auto _ : run.loop()) benchmark::DoNotOptimize(convert().get());
    run.countBytes(text.utf8.size());
}

void toUTF16Icu(Run& run, const SampleText& text) {
    std::int32_t length = 0;
    const auto convert = [&] {
        UErrorCode error = U_ZERO_ERROR;
        const auto size = static_cast<std::int32_t>(text.utf8.size());
        u_strFromUTF8(nullptr, 0, &length, text.utf8.data(), size, &error);
        std::unique_ptr<char16_t[]> converted(new char16_t[static_cast<std::size_t>(length) + 1]);
        error = U_ZERO_ERROR;
        u_strFromUTF8(converted.get(), length + 1, &length, text.utf8.data(), size, &error);
        return converted;
    };
    run.expect(std::u16string(convert().get()), text.utf16);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(convert().get());
    run.countBytes(text.utf8.size());
}

void toUTF8(Run& run, const SampleText& text) {
    const String string(text.utf16.c_str(), wideLengthOf(text));
    const StringData& data = *string.getData();
    Vorn::StringDataBufferInfo info{};
    const auto convert = [&] {
        return std::unique_ptr<unsigned char[]>(Vorn::stringDataConvertToUTF8(
            data.getPrivateBuffer<UTF16Char>(), data.getBufferInfo<UTF16Char>(), data.getCharset(), info));
    };
    const auto converted = convert();
    run.expect(std::string_view(reinterpret_cast<const char*>(converted.get()), info.m_length), text.utf8);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(convert().get());
    run.countBytes(text.utf16.size() * 2);
}

void toUTF8Icu(Run& run, const SampleText& text) {
    std::int32_t length = 0;
    const auto convert = [&] {
        UErrorCode error = U_ZERO_ERROR;
        const auto size = static_cast<std::int32_t>(text.utf16.size());
        u_strToUTF8(nullptr, 0, &length, text.utf16.data(), size, &error);
        std::unique_ptr<char[]> converted(new char[static_cast<std::size_t>(length) + 1]);
        error = U_ZERO_ERROR;
        u_strToUTF8(converted.get(), length + 1, &length, text.utf16.data(), size, &error);
        return converted;
    };
    run.expect(std::string(convert().get()), text.utf8);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(convert().get());
    run.countBytes(text.utf16.size() * 2);
}

// One text in two encodings. The bytes of the one in UTF-8 count.
void equalAcrossEncodings(Run& run, const SampleText& text) {
    const String utf8(text.utf8.c_str(), lengthOf(text)), utf16(text.utf16.c_str(), wideLengthOf(text));
    run.expect(utf8, utf16);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(utf8 == utf16);
    run.countBytes(text.utf8.size());
}

// Copies and destroys a value.

template <class Value>
void copyValue(Run& run, const Value& value) {
    run.expect(Value(value), value);
    for (auto _ : run.loop()) {
        Value copy(value);
        benchmark::DoNotOptimize(copy);
    }
}

// The script belongs to the operation, so that the variants of one operation share their input.
template <class Function>
void add(const std::string& operation, const char* variant, const SampleText& text, Function function) {
    addBenchmark("Texts/" + operation + ", " + text.name + "/" + variant, text.utf16.size(), function);
}

} // namespace

void registerTextBenchmarks(const std::vector<SampleText>& texts) {
    const struct {
        const char* operation;
        const char* variant;
        void (*function)(Run&, const SampleText&);
    } rivals[] = {
        {"scan UTF-8", "Vorn", scanUTF8},
        {"scan UTF-8", "Vorn, terminated", scanUTF8Terminated},
        {"scan UTF-8", "ICU converts", scanUTF8Icu},
        {"scan UTF-8", "ICU measures", scanUTF8IcuMeasure},
        {"scan UTF-8", "simdjson validates", scanUTF8Simdjson},
        {"scan UTF-8", "new and delete of a record", allocateRecord},
        {"scan UTF-8", "std::string copies", scanUTF8StdString},
        {"scan UTF-16", "Vorn", scanUTF16},
        {"scan UTF-16", "Vorn, terminated", scanUTF16Terminated},
        {"convert to UTF-16", "Vorn", toUTF16},
        {"convert to UTF-16", "ICU", toUTF16Icu},
        {"convert to UTF-8", "Vorn", toUTF8},
        {"convert to UTF-8", "ICU", toUTF8Icu},
        {"equal in UTF-8 and UTF-16", "Vorn", equalAcrossEncodings},
    };
    for (const SampleText& text : texts) {
        for (const auto& rival : rivals) {
            add(rival.operation, rival.variant, text,
                [function = rival.function, &text](Run& run) { function(run, text); });
        }
        const auto addCopy = [&text](const char* variant, auto value) {
            add("copy", variant, text, [value](Run& run) { copyValue(run, value); });
        };
        addCopy("Vorn::String", String(text.utf8.c_str(), lengthOf(text)));
        addCopy("icu::UnicodeString", icuOf(text));
        addCopy("std::string", text.utf8);
        addCopy("std::shared_ptr", std::make_shared<const std::string>(text.utf8));
    }
}
