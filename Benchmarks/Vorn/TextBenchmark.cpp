#include "Vorn/TextBenchmark.h"

#include "Support/Measure.h"
#include "Vorn/TextOperations.h"

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

icu::UnicodeString icuOf(const SampleText& text) {
    return icu::UnicodeString(text.utf16.data(), static_cast<std::int32_t>(text.utf16.size()));
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
    }
}

void registerCopyBenchmarks(const std::vector<SampleText>& texts) {
    for (const SampleText& text : texts) {
        const auto addCopy = [&text](const char* variant, auto value) {
            add("copy", variant, text, [value](Run& run) { copyValue(run, value); });
        };
        addCopy("Vorn::String", String(text.utf8.c_str(), lengthOf(text)));
        addCopy("icu::UnicodeString", icuOf(text));
        addCopy("std::string", text.utf8);
        addCopy("std::shared_ptr", std::make_shared<const std::string>(text.utf8));
    }
}
