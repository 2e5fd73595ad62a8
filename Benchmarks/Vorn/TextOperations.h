// TextOperations: the library's part of the benchmarks of text. It is compiled twice: for the library, and for the copy
// of it whose kernels are chosen.
#pragma once

#include "Support/Corpus.h"
#include "Support/Measure.h"

#include <Vorn/Vorn.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

namespace {

using Vorn::String;
using Vorn::StringData;
using Vorn::UTF16Char;

inline unsigned int lengthOf(const SampleText& text) { return static_cast<unsigned int>(text.utf8.size()); }
inline unsigned int wideLengthOf(const SampleText& text) { return static_cast<unsigned int>(text.utf16.size()); }

// Validation: a string over a borrowed buffer.

// The string stands over the text and has found its end and its charset.
inline void expectScanned(Run& run, const String& string, const SampleText& text) {
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
    run.describe(hasPairs ? "Unicode" : isASCII ? "ASCII" : "UCS-2");
}

inline void scanUTF8(Run& run, const SampleText& text) {
    expectScanned(run, String(text.utf8.c_str(), lengthOf(text)), text);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(String(text.utf8.c_str(), lengthOf(text)));
    run.countBytes(text.utf8.size());
}

inline void scanUTF8Terminated(Run& run, const SampleText& text) {
    expectScanned(run, String(text.utf8.c_str()), text);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(String(text.utf8.c_str()));
    run.countBytes(text.utf8.size());
}

inline void scanUTF16(Run& run, const SampleText& text) {
    expectScanned(run, String(text.utf16.c_str(), wideLengthOf(text)), text);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(String(text.utf16.c_str(), wideLengthOf(text)));
    run.countBytes(text.utf16.size() * 2);
}

inline void scanUTF16Terminated(Run& run, const SampleText& text) {
    expectScanned(run, String(text.utf16.c_str()), text);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(String(text.utf16.c_str()));
    run.countBytes(text.utf16.size() * 2);
}

// Conversion of a validated text into new memory.

inline void toUTF16(Run& run, const SampleText& text) {
    const String string(text.utf8.c_str(), lengthOf(text));
    const StringData& data = *string.getData();
    Vorn::StringDataBufferInfo info{};
    const auto convert = [&] {
        return std::unique_ptr<UTF16Char[]>(Vorn::stringDataConvertToUTF16(
            data.getPrivateBuffer<unsigned char>(), data.getBufferInfo<unsigned char>(), data.getCharset(), info));
    };
    // Of a character above 0xFFFF, the library writes only the second unit.
    std::u16string expected;
    std::copy_if(text.utf16.begin(), text.utf16.end(), std::back_inserter(expected),
                 [](char16_t unit) { return unit < 0xD800 || unit > 0xDBFF; });
    run.expect(std::u16string_view(convert().get(), expected.size()), expected);
    run.expect(info.m_length, wideLengthOf(text));
    for (auto _ : run.loop()) benchmark::DoNotOptimize(convert().get());
    run.countBytes(text.utf8.size());
}

inline void toUTF8(Run& run, const SampleText& text) {
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

// One text in two encodings. The bytes of the one in UTF-8 count.
inline void equalAcrossEncodings(Run& run, const SampleText& text) {
    const String utf8(text.utf8.c_str(), lengthOf(text)), utf16(text.utf16.c_str(), wideLengthOf(text));
    run.expect(utf8, utf16);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(utf8 == utf16);
    run.countBytes(text.utf8.size());
}

} // namespace
