#include "Vorn/TextBenchmark.h"

#include <Vorn/Vorn.h>
#include <benchmark/benchmark.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include <memory>
#include <stdexcept>

namespace {

using Vorn::String;
using Vorn::StringData;
using Vorn::UTF16Char;

unsigned int lengthOf(const SampleText& text) { return static_cast<unsigned int>(text.utf8.size()); }
unsigned int wideLengthOf(const SampleText& text) { return static_cast<unsigned int>(text.utf16.size()); }

void countBytes(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * static_cast<std::int64_t>(state.iterations()));
}

void expect(bool correct, const char* what) {
    if (!correct) throw std::runtime_error(std::string("wrong answer of ") + what);
}

// Validation: a string over a borrowed buffer.

void doorUTF8(benchmark::State& state, const SampleText& text) {
    for (auto _ : state) benchmark::DoNotOptimize(String(text.utf8.c_str(), lengthOf(text)));
    countBytes(state, text.utf8.size());
}

void doorUTF8Terminated(benchmark::State& state, const SampleText& text) {
    for (auto _ : state) benchmark::DoNotOptimize(String(text.utf8.c_str()));
    countBytes(state, text.utf8.size());
}

void doorUTF16(benchmark::State& state, const SampleText& text) {
    for (auto _ : state) benchmark::DoNotOptimize(String(text.utf16.c_str(), wideLengthOf(text)));
    countBytes(state, text.utf16.size() * 2);
}

void doorUTF16Terminated(benchmark::State& state, const SampleText& text) {
    for (auto _ : state) benchmark::DoNotOptimize(String(text.utf16.c_str()));
    countBytes(state, text.utf16.size() * 2);
}

// ICU converts while it validates: its strings store only UTF-16.
void doorUTF8Icu(benchmark::State& state, const SampleText& text) {
    for (auto _ : state) benchmark::DoNotOptimize(icu::UnicodeString::fromUTF8(text.utf8));
    countBytes(state, text.utf8.size());
}

// The measuring pass of ICU validates and writes nothing.
void doorUTF8IcuMeasure(benchmark::State& state, const SampleText& text) {
    for (auto _ : state) {
        std::int32_t length = 0;
        UErrorCode error = U_ZERO_ERROR;
        u_strFromUTF8(nullptr, 0, &length, text.utf8.data(), static_cast<std::int32_t>(text.utf8.size()), &error);
        benchmark::DoNotOptimize(length);
    }
    countBytes(state, text.utf8.size());
}

// Copies without validation.
void doorUTF8StdString(benchmark::State& state, const SampleText& text) {
    for (auto _ : state) benchmark::DoNotOptimize(std::string(text.utf8.data(), text.utf8.size()));
    countBytes(state, text.utf8.size());
}

// Conversion of a validated text into new memory.

void toUTF16(benchmark::State& state, const SampleText& text) {
    const String string(text.utf8.c_str(), lengthOf(text));
    const StringData& data = *string.getData();
    for (auto _ : state) {
        Vorn::StringDataBufferInfo info{};
        const std::unique_ptr<UTF16Char[]> converted(Vorn::stringDataConvertToUTF16(
            data.getPrivateBuffer<unsigned char>(), data.getBufferInfo<unsigned char>(), data.getCharset(), info));
        benchmark::DoNotOptimize(converted.get());
    }
    countBytes(state, text.utf8.size());
}

void toUTF16Icu(benchmark::State& state, const SampleText& text) {
    for (auto _ : state) {
        std::int32_t length = 0;
        UErrorCode error = U_ZERO_ERROR;
        const auto size = static_cast<std::int32_t>(text.utf8.size());
        u_strFromUTF8(nullptr, 0, &length, text.utf8.data(), size, &error);
        const std::unique_ptr<char16_t[]> converted(new char16_t[static_cast<std::size_t>(length) + 1]);
        error = U_ZERO_ERROR;
        u_strFromUTF8(converted.get(), length + 1, &length, text.utf8.data(), size, &error);
        benchmark::DoNotOptimize(converted.get());
    }
    countBytes(state, text.utf8.size());
}

void toUTF8(benchmark::State& state, const SampleText& text) {
    const String string(text.utf16.c_str(), wideLengthOf(text));
    const StringData& data = *string.getData();
    for (auto _ : state) {
        Vorn::StringDataBufferInfo info{};
        const std::unique_ptr<unsigned char[]> converted(Vorn::stringDataConvertToUTF8(
            data.getPrivateBuffer<UTF16Char>(), data.getBufferInfo<UTF16Char>(), data.getCharset(), info));
        benchmark::DoNotOptimize(converted.get());
    }
    countBytes(state, text.utf16.size() * 2);
}

void toUTF8Icu(benchmark::State& state, const SampleText& text) {
    for (auto _ : state) {
        std::int32_t length = 0;
        UErrorCode error = U_ZERO_ERROR;
        const auto size = static_cast<std::int32_t>(text.utf16.size());
        u_strToUTF8(nullptr, 0, &length, text.utf16.data(), size, &error);
        const std::unique_ptr<char[]> converted(new char[static_cast<std::size_t>(length) + 1]);
        error = U_ZERO_ERROR;
        u_strToUTF8(converted.get(), length + 1, &length, text.utf16.data(), size, &error);
        benchmark::DoNotOptimize(converted.get());
    }
    countBytes(state, text.utf16.size() * 2);
}

// Copies and destroys a value.

template <class Value>
void copyValue(benchmark::State& state, const Value& value) {
    for (auto _ : state) {
        Value copy(value);
        benchmark::DoNotOptimize(copy);
    }
}

// Compares the results of the library with those of ICU before the measurement. The conversion of characters above
// 0xFFFF to UTF-16 is not compared: the library is specified to write only their second unit.
void checkAnswers(const SampleText& text) {
    const String wide(text.utf16.c_str(), wideLengthOf(text));
    expect(wide.getCString() == text.utf8, "conversion to UTF-8");
    const String narrow(text.utf8.c_str(), lengthOf(text));
    if (narrow.getCharset() != Vorn::STRING_DATA_UNICODE)
        expect(narrow.getData()->getTerminatedBuffer<UTF16Char>() == text.utf16, "conversion to UTF-16");
}

} // namespace

void registerTextBenchmarks(const std::vector<SampleText>& texts) {
    using Function = void (*)(benchmark::State&, const SampleText&);
    const struct {
        const char* name;
        Function function;
    } rivals[] = {
        {"Door/UTF-8/Vorn/", doorUTF8},
        {"Door/UTF-8/Vorn terminated/", doorUTF8Terminated},
        {"Door/UTF-8/ICU converts/", doorUTF8Icu},
        {"Door/UTF-8/ICU measures/", doorUTF8IcuMeasure},
        {"Door/UTF-8/std::string copies/", doorUTF8StdString},
        {"Door/UTF-16/Vorn/", doorUTF16},
        {"Door/UTF-16/Vorn terminated/", doorUTF16Terminated},
        {"Convert/to UTF-16/Vorn/", toUTF16},
        {"Convert/to UTF-16/ICU/", toUTF16Icu},
        {"Convert/to UTF-8/Vorn/", toUTF8},
        {"Convert/to UTF-8/ICU/", toUTF8Icu},
    };
    for (const SampleText& text : texts) {
        checkAnswers(text);
        for (const auto& rival : rivals)
            benchmark::RegisterBenchmark((rival.name + text.name).c_str(), rival.function, text);
        benchmark::RegisterBenchmark(("Copy/Vorn::String/" + text.name).c_str(), copyValue<String>,
                                     String(text.utf8.c_str(), lengthOf(text)));
        benchmark::RegisterBenchmark(
            ("Copy/icu::UnicodeString/" + text.name).c_str(), copyValue<icu::UnicodeString>,
            icu::UnicodeString(text.utf16.data(), static_cast<std::int32_t>(text.utf16.size())));
        benchmark::RegisterBenchmark(("Copy/std::string/" + text.name).c_str(), copyValue<std::string>, text.utf8);
        benchmark::RegisterBenchmark(("Copy/std::shared_ptr/" + text.name).c_str(),
                                     copyValue<std::shared_ptr<const std::string>>,
                                     std::make_shared<const std::string>(text.utf8));
    }
}
