// Substrings, equality, search, interning and edits, compared with std::string and ICU's UnicodeString.
#include "Support/Measure.h"

#include <Vorn/Vorn.h>
#include <benchmark/benchmark.h>
#include <sparsehash/dense_hash_map>
#include <unicode/unistr.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

using Vorn::String;
using Vorn::StringData;
using Vorn::UTF8String;

// ASCII words, followed by the letter that the search benchmarks look for.
std::string textOf(const Run& run) {
    std::string text;
    while (text.size() < run.size()) text += "plain words of text ";
    text.resize(run.size() - 1);
    return text + '#';
}

String over(const std::string& text) { return String(text.c_str(), static_cast<unsigned int>(text.size()) + 1); }

icu::UnicodeString icuOf(const std::string& text) { return icu::UnicodeString::fromUTF8(text); }

// The middle half of a text.

std::string middleOf(const std::string& text) { return std::string(text, text.size() / 4, text.size() / 4 * 2); }

void substring(Run& run) {
    const std::string text = textOf(run);
    const String string = over(text);
    const int quarter = static_cast<int>(text.size() / 4);
    const auto middle = [&] {
        return String(string.getData()->substr<unsigned char>(quarter, static_cast<unsigned int>(2 * quarter)));
    };
    run.expect(middle(), middleOf(text));
    for (auto _ : run.loop()) benchmark::DoNotOptimize(middle());
    run.countBytes(text.size() / 2);
}

void substringStdString(Run& run) {
    const std::string text = textOf(run);
    run.expect(text.substr(text.size() / 4, text.size() / 2), middleOf(text));
    for (auto _ : run.loop()) benchmark::DoNotOptimize(text.substr(text.size() / 4, text.size() / 2));
    run.countBytes(text.size() / 2);
}

void substringIcu(Run& run) {
    const icu::UnicodeString text = icuOf(textOf(run));
    run.expect(text.tempSubStringBetween(text.length() / 4, text.length() / 4 * 3), icuOf(middleOf(textOf(run))));
    for (auto _ : run.loop())
        benchmark::DoNotOptimize(text.tempSubStringBetween(text.length() / 4, text.length() / 4 * 3));
    run.countBytes(static_cast<std::size_t>(text.length()) / 2);
}

void substringIcuCopy(Run& run) {
    const icu::UnicodeString text = icuOf(textOf(run));
    run.expect(icu::UnicodeString(text, text.length() / 4, text.length() / 2), icuOf(middleOf(textOf(run))));
    for (auto _ : run.loop()) benchmark::DoNotOptimize(icu::UnicodeString(text, text.length() / 4, text.length() / 2));
    run.countBytes(static_cast<std::size_t>(text.length()) / 2);
}

// Two equal texts in two buffers.

void equality(Run& run) {
    const std::string text = textOf(run), other = text;
    const String a = over(text), b = over(other);
    run.expect(a, b);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(a == b);
    run.countBytes(text.size());
}

void equalityMemcmp(Run& run) {
    const std::string text = textOf(run), other = text;
    run.expect(std::memcmp(text.data(), other.data(), text.size()), 0);
    for (auto _ : run.loop()) {
        const char* a = text.data();
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(std::memcmp(a, other.data(), text.size()));
    }
    run.countBytes(text.size());
}

void equalityIcu(Run& run) {
    const icu::UnicodeString a = icuOf(textOf(run)), b = icuOf(textOf(run));
    run.expect(a, b);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(a == b);
    run.countBytes(static_cast<std::size_t>(a.length()) * 2);
}

// One text in two encodings; the other libraries have no such comparison.
void equalityAcrossEncodings(Run& run) {
    const std::string text = textOf(run);
    const std::basic_string<Vorn::UTF16Char> wide(text.begin(), text.end());
    const String a = over(text), b(wide.c_str(), static_cast<unsigned int>(wide.size()));
    run.expect(a, b);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(a == b);
    run.countBytes(text.size());
}

// The only '#'.

void findByte(Run& run) {
    const std::string text = textOf(run);
    const UTF8String string(over(text));
    run.expect(string.find('#'), text.size() - 1);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(string.find('#'));
    run.countBytes(text.size());
}

void findByteMemchr(Run& run) {
    const std::string text = textOf(run);
    run.expect(std::memchr(text.data(), '#', text.size()), text.data() + text.size() - 1);
    for (auto _ : run.loop()) {
        const char* start = text.data();
        benchmark::DoNotOptimize(start);
        benchmark::DoNotOptimize(std::memchr(start, '#', text.size()));
    }
    run.countBytes(text.size());
}

void findByteStdString(Run& run) {
    const std::string text = textOf(run);
    run.expect(text.find('#'), text.size() - 1);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(text.find('#'));
    run.countBytes(text.size());
}

void findByteIcu(Run& run) {
    const icu::UnicodeString text = icuOf(textOf(run));
    run.expect(text.indexOf(u'#'), text.length() - 1);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(text.indexOf(u'#'));
    run.countBytes(static_cast<std::size_t>(text.length()) * 2);
}

void countByte(Run& run) {
    const std::string text = textOf(run);
    const String string = over(text);
    run.expect(string.count('#'), 1u);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(string.count('#'));
    run.countBytes(text.size());
}

// Lookups of mapped buffers.

constexpr unsigned int KEYS = 1024;
constexpr unsigned int KEY_LENGTH = 31;

void internKnown(Run& run) {
    const std::vector<unsigned char> pool(KEYS * 32, 'x');
    Vorn::StringOwnerMap<unsigned char> map;
    std::vector<String> strings;
    for (unsigned int i = 0; i < KEYS; ++i) strings.push_back(map.mapString(&pool[i * 32], KEY_LENGTH, false));
    for (unsigned int i = 0; i < KEYS; ++i)
        run.expect(map.mapString(&pool[i * 32], KEY_LENGTH, false).getData(), strings[i].getData());
    unsigned int i = 0;
    for (auto _ : run.loop()) {
        benchmark::DoNotOptimize(map.mapString(&pool[i * 32], KEY_LENGTH, false));
        i = (i + 1) % KEYS;
    }
}

struct KeyHash {
    std::size_t operator()(const Vorn::StringOwnerKey& key) const { return static_cast<unsigned int>(key); }
};

// The hash table alone, with a string as result, too.
void internBareTable(Run& run) {
    const std::vector<unsigned char> pool(KEYS * 32, 'x');
    google::dense_hash_map<Vorn::StringOwnerKey, Vorn::StringOwnerEntry, KeyHash> map;
    map.set_empty_key(Vorn::StringOwnerKey());
    std::vector<String> strings;
    for (unsigned int i = 0; i < KEYS; ++i) {
        strings.push_back(String(&pool[i * 32], KEY_LENGTH));
        map[Vorn::StringOwnerKey(&pool[i * 32], KEY_LENGTH)].m_data = strings.back().getData();
    }
    for (unsigned int i = 0; i < KEYS; ++i)
        run.expect(map.find(Vorn::StringOwnerKey(&pool[i * 32], KEY_LENGTH))->second.m_data, strings[i].getData());
    unsigned int i = 0;
    for (auto _ : run.loop()) {
        benchmark::DoNotOptimize(String(map.find(Vorn::StringOwnerKey(&pool[i * 32], KEY_LENGTH))->second.m_data));
        i = (i + 1) % KEYS;
    }
}

void internBareTableNoString(Run& run) {
    const std::vector<unsigned char> pool(KEYS * 32, 'x');
    google::dense_hash_map<Vorn::StringOwnerKey, Vorn::StringOwnerEntry, KeyHash> map;
    map.set_empty_key(Vorn::StringOwnerKey());
    for (unsigned int i = 0; i < KEYS; ++i) map[Vorn::StringOwnerKey(&pool[i * 32], KEY_LENGTH)].m_mapCount = i;
    for (unsigned int i = 0; i < KEYS; ++i)
        run.expect(map.find(Vorn::StringOwnerKey(&pool[i * 32], KEY_LENGTH))->second.m_mapCount, i);
    unsigned int i = 0;
    for (auto _ : run.loop()) {
        benchmark::DoNotOptimize(map.find(Vorn::StringOwnerKey(&pool[i * 32], KEY_LENGTH))->second.m_data);
        i = (i + 1) % KEYS;
    }
}

// An edit near the start that keeps the length, and one that inserts a character and erases it.

std::string withX(std::string text) {
    text[1] = 'x';
    return text;
}

void replaceCharacter(Run& run) {
    const std::string text = textOf(run);
    UTF8String string(over(text));
    string.reserve(0);
    for (auto _ : run.loop()) string.replace('x', 1, 1);
    run.expect(static_cast<const String&>(string), withX(text));
}

void replaceCharacterStdString(Run& run) {
    std::string text = textOf(run);
    for (auto _ : run.loop()) {
        text.replace(1, 1, 1, 'x');
        benchmark::ClobberMemory();
    }
    run.expect(text, withX(textOf(run)));
}

void replaceCharacterIcu(Run& run) {
    icu::UnicodeString text = icuOf(textOf(run));
    for (auto _ : run.loop()) {
        text.replace(1, 1, u'x');
        benchmark::ClobberMemory();
    }
    run.expect(text, icuOf(withX(textOf(run))));
}

void insertAndErase(Run& run) {
    const std::string text = textOf(run);
    UTF8String string(over(text));
    for (auto _ : run.loop()) {
        string.insert('x', 1);
        string.erase(1, 1);
    }
    run.expect(static_cast<const String&>(string), text);
}

void insertAndEraseStdString(Run& run) {
    std::string text = textOf(run);
    for (auto _ : run.loop()) {
        text.insert(1, 1, 'x');
        text.erase(1, 1);
        benchmark::ClobberMemory();
    }
    run.expect(text, textOf(run));
}

void insertAndEraseIcu(Run& run) {
    icu::UnicodeString text = icuOf(textOf(run));
    for (auto _ : run.loop()) {
        text.insert(1, u'x');
        text.remove(1, 1);
        benchmark::ClobberMemory();
    }
    run.expect(text, icuOf(textOf(run)));
}

bool add(const char* name, void (*function)(Run&)) {
    return addBenchmarks("Strings/" + std::string(name), {16, 64, 256, 1024, 4096, 16384, 65536}, function);
}

[[maybe_unused]] const bool registered =
    add("substring/Vorn", substring) && add("substring/std::string", substringStdString) &&
    add("substring/ICU, aliasing", substringIcu) && add("substring/ICU, copying", substringIcuCopy) &&
    add("equality/Vorn", equality) && add("equality/memcmp", equalityMemcmp) && add("equality/ICU", equalityIcu) &&
    add("equality/Vorn, UTF-8 and UTF-16", equalityAcrossEncodings) && add("find byte/Vorn", findByte) &&
    add("find byte/memchr", findByteMemchr) && add("find byte/std::string", findByteStdString) &&
    add("find byte/ICU", findByteIcu) && add("count byte/Vorn", countByte) &&
    add("replace a character/Vorn", replaceCharacter) &&
    add("replace a character/std::string", replaceCharacterStdString) &&
    add("replace a character/ICU", replaceCharacterIcu) && add("insert and erase/Vorn", insertAndErase) &&
    add("insert and erase/std::string", insertAndEraseStdString) && add("insert and erase/ICU", insertAndEraseIcu) &&
    addBenchmark("Strings/intern a known buffer/Vorn", KEYS, internKnown) &&
    addBenchmark("Strings/intern a known buffer/dense_hash_map and a String", KEYS, internBareTable) &&
    addBenchmark("Strings/intern a known buffer/dense_hash_map", KEYS, internBareTableNoString);

} // namespace
