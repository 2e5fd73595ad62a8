// Owned strings, exact conversions, order, hash and search, compared with the standard library and ICU.
#include "Support/Measure.h"

#include <Vorn/Vorn.h>
#include <benchmark/benchmark.h>
#include <unicode/ustring.h>

#include <cstring>
#include <functional>
#include <new>
#include <string>
#include <string_view>

namespace {

using namespace Vorn;

std::string plainText(std::size_t size) {
    std::string text;
    while (text.size() < size) text += "plain words of text ";
    text.resize(size - 1);
    return text + '#';
}

// Polish and emoji: two and four bytes among plain characters.
std::string mixedText(std::size_t size) {
    std::string text;
    while (text.size() < size) text += "za\xC5\xBC\xC3\xB3\xC5\x82\xC4\x87 \xF0\x9F\x98\x80 ";
    return text;
}

void makeOwned(Run& run) {
    const std::string text = plainText(run.size());
    run.expect(makeString(text) == std::string_view(text), true);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(makeString(text));
    run.countBytes(text.size());
}

// A copy on the heap, and a block of the size of a record.
void makeOwnedStd(Run& run) {
    const std::string text = plainText(run.size());
    run.expect(std::string(text), text);
    for (auto _ : run.loop()) {
        std::string copy(text);
        benchmark::DoNotOptimize(copy.data());
        void* const record = ::operator new(sizeof(StringData));
        benchmark::DoNotOptimize(record);
        ::operator delete(record);
    }
    run.countBytes(text.size());
}

template <std::string (*Text)(std::size_t)>
void convertToUTF16(Run& run) {
    const std::string text = Text(run.size());
    run.expect(toUTF8(toUTF16(text)), text);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(toUTF16(text));
    run.countBytes(text.size());
}

template <std::string (*Text)(std::size_t)>
void convertToUTF16Icu(Run& run) {
    const std::string text = Text(run.size());
    const auto convert = [&] {
        UErrorCode error = U_ZERO_ERROR;
        std::int32_t length = 0;
        const auto size = static_cast<std::int32_t>(text.size());
        u_strFromUTF8(nullptr, 0, &length, text.data(), size, &error);
        std::u16string converted(static_cast<std::size_t>(length), u'\0');
        error = U_ZERO_ERROR;
        u_strFromUTF8(converted.data(), length + 1, &length, text.data(), size, &error);
        return converted;
    };
    run.expect(convert() == toUTF16(text), true);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(convert());
    run.countBytes(text.size());
}

template <std::string (*Text)(std::size_t)>
void convertToUTF8(Run& run) {
    const std::string text = Text(run.size());
    const std::u16string wide = toUTF16(text);
    run.expect(toUTF8(wide), text);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(toUTF8(wide));
    run.countBytes(text.size());
}

template <std::string (*Text)(std::size_t)>
void convertToUTF8Icu(Run& run) {
    const std::string text = Text(run.size());
    const std::u16string wide = toUTF16(text);
    const auto convert = [&] {
        UErrorCode error = U_ZERO_ERROR;
        std::int32_t length = 0;
        const auto size = static_cast<std::int32_t>(wide.size());
        u_strToUTF8(nullptr, 0, &length, wide.data(), size, &error);
        std::string converted(static_cast<std::size_t>(length), '\0');
        error = U_ZERO_ERROR;
        u_strToUTF8(converted.data(), length + 1, &length, wide.data(), size, &error);
        return converted;
    };
    run.expect(convert(), text);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(convert());
    run.countBytes(text.size());
}

void compareTexts(Run& run) {
    const std::string a = plainText(run.size()), b = a;
    run.expect(compare(a, b), 0);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(compare(a, b));
    run.countBytes(a.size());
}

void compareMemcmp(Run& run) {
    const std::string a = plainText(run.size()), b = a;
    run.expect(a.compare(b), 0);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(std::memcmp(a.data(), b.data(), a.size()));
    run.countBytes(a.size());
}

void compareAcross(Run& run) {
    const std::string a = plainText(run.size());
    const std::u16string b = toUTF16(a);
    run.expect(compare(a, b), 0);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(compare(a, b));
    run.countBytes(a.size());
}

void hashText(Run& run) {
    const std::string text = plainText(run.size());
    run.expect(hashOfText(text), hashOfText(makeString(text)));
    for (auto _ : run.loop()) benchmark::DoNotOptimize(hashOfText(text));
    run.countBytes(text.size());
}

void hashStd(Run& run) {
    const std::string text = plainText(run.size());
    const std::hash<std::string_view> hash;
    run.expect(hash(text), hash(std::string(text)));
    for (auto _ : run.loop()) benchmark::DoNotOptimize(hash(text));
    run.countBytes(text.size());
}

void findText(Run& run) {
    const std::string text = plainText(run.size()), needle = "t#";
    run.expect(find(text, text.substr(text.size() - 3)), text.size() - 3);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(find(text, needle));
    run.countBytes(text.size());
}

void findTextStd(Run& run) {
    const std::string text = plainText(run.size()), needle = "t#";
    run.expect(text.find(text.substr(text.size() - 3)), text.size() - 3);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(std::string_view(text).find(needle));
    run.countBytes(text.size());
}

bool add(const char* name, void (*function)(Run&)) {
    return addBenchmarks("Everyday/" + std::string(name), {16, 256, 65536}, function);
}

[[maybe_unused]] const bool registered =
    add("make an owned string/Vorn", makeOwned) && add("make an owned string/std::string and a record", makeOwnedStd) &&
    add("plain text to UTF-16/Vorn", convertToUTF16<plainText>) &&
    add("plain text to UTF-16/ICU", convertToUTF16Icu<plainText>) &&
    add("mixed text to UTF-16/Vorn", convertToUTF16<mixedText>) &&
    add("mixed text to UTF-16/ICU", convertToUTF16Icu<mixedText>) &&
    add("plain text to UTF-8/Vorn", convertToUTF8<plainText>) &&
    add("plain text to UTF-8/ICU", convertToUTF8Icu<plainText>) &&
    add("mixed text to UTF-8/Vorn", convertToUTF8<mixedText>) &&
    add("mixed text to UTF-8/ICU", convertToUTF8Icu<mixedText>) && add("compare equal texts/Vorn", compareTexts) &&
    add("compare equal texts/memcmp", compareMemcmp) &&
    add("compare equal texts/Vorn, UTF-8 and UTF-16", compareAcross) && add("hash/Vorn", hashText) &&
    add("hash/std::hash", hashStd) && add("find/Vorn", findText) && add("find/std::string_view", findTextStd);

} // namespace
