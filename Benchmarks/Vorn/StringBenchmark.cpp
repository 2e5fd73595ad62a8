// Substrings, equality, search, interning and edits, compared with std::string and ICU's UnicodeString.
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
std::string textOf(benchmark::State& state) {
    std::string text;
    while (text.size() < static_cast<std::size_t>(state.range(0))) text += "plain words of text ";
    text.resize(static_cast<std::size_t>(state.range(0)) - 1);
    return text + '#';
}

String over(const std::string& text) { return String(text.c_str(), static_cast<unsigned int>(text.size()) + 1); }

icu::UnicodeString icuOf(const std::string& text) { return icu::UnicodeString::fromUTF8(text); }

void countBytes(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * static_cast<std::int64_t>(state.iterations()));
}

// A wrong answer is never fast.
bool isWrong(benchmark::State& state, bool correct) {
    if (!correct) state.SkipWithError("wrong answer");
    return !correct;
}

// The middle half of a text.

void substring(benchmark::State& state) {
    const std::string text = textOf(state);
    const String string = over(text);
    const int quarter = static_cast<int>(text.size() / 4);
    const auto cut = [&] {
        return String(string.getData()->substr<unsigned char>(quarter, static_cast<unsigned int>(2 * quarter)));
    };
    if (isWrong(state, cut() == text.substr(text.size() / 4, text.size() / 4 * 2))) return;
    for (auto _ : state) benchmark::DoNotOptimize(cut());
    countBytes(state, text.size() / 2);
}

void substringStdString(benchmark::State& state) {
    const std::string text = textOf(state);
    for (auto _ : state) benchmark::DoNotOptimize(text.substr(text.size() / 4, text.size() / 2));
    countBytes(state, text.size() / 2);
}

void substringIcu(benchmark::State& state) {
    const icu::UnicodeString text = icuOf(textOf(state));
    for (auto _ : state) benchmark::DoNotOptimize(text.tempSubStringBetween(text.length() / 4, text.length() / 4 * 3));
    countBytes(state, static_cast<std::size_t>(text.length()) / 2);
}

void substringIcuCopy(benchmark::State& state) {
    const icu::UnicodeString text = icuOf(textOf(state));
    for (auto _ : state) benchmark::DoNotOptimize(icu::UnicodeString(text, text.length() / 4, text.length() / 2));
    countBytes(state, static_cast<std::size_t>(text.length()) / 2);
}

// Two equal texts in two buffers.

void equality(benchmark::State& state) {
    const std::string text = textOf(state), other = text;
    const String a = over(text), b = over(other);
    if (isWrong(state, a == b)) return;
    for (auto _ : state) benchmark::DoNotOptimize(a == b);
    countBytes(state, text.size());
}

void equalityMemcmp(benchmark::State& state) {
    const std::string text = textOf(state), other = text;
    for (auto _ : state) {
        const char* a = text.data();
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(std::memcmp(a, other.data(), text.size()));
    }
    countBytes(state, text.size());
}

void equalityIcu(benchmark::State& state) {
    const icu::UnicodeString a = icuOf(textOf(state)), b = icuOf(textOf(state));
    for (auto _ : state) benchmark::DoNotOptimize(a == b);
    countBytes(state, static_cast<std::size_t>(a.length()) * 2);
}

// One text in two encodings; the other libraries have no such comparison.
void equalityAcrossEncodings(benchmark::State& state) {
    const std::string text = textOf(state);
    const std::basic_string<Vorn::UTF16Char> wide(text.begin(), text.end());
    const String a = over(text), b(wide.c_str(), static_cast<unsigned int>(wide.size()));
    if (isWrong(state, a == b)) return;
    for (auto _ : state) benchmark::DoNotOptimize(a == b);
    countBytes(state, text.size());
}

// The only '#'.

void findByte(benchmark::State& state) {
    const std::string text = textOf(state);
    const UTF8String string(over(text));
    if (isWrong(state, string.find('#') == text.size() - 1)) return;
    for (auto _ : state) benchmark::DoNotOptimize(string.find('#'));
    countBytes(state, text.size());
}

void findByteMemchr(benchmark::State& state) {
    const std::string text = textOf(state);
    for (auto _ : state) {
        const char* start = text.data();
        benchmark::DoNotOptimize(start);
        benchmark::DoNotOptimize(std::memchr(start, '#', text.size()));
    }
    countBytes(state, text.size());
}

void findByteStdString(benchmark::State& state) {
    const std::string text = textOf(state);
    for (auto _ : state) benchmark::DoNotOptimize(text.find('#'));
    countBytes(state, text.size());
}

void findByteIcu(benchmark::State& state) {
    const icu::UnicodeString text = icuOf(textOf(state));
    for (auto _ : state) benchmark::DoNotOptimize(text.indexOf(u'#'));
    countBytes(state, static_cast<std::size_t>(text.length()) * 2);
}

void countByte(benchmark::State& state) {
    const std::string text = textOf(state);
    const String string = over(text);
    if (isWrong(state, string.count('#') == 1)) return;
    for (auto _ : state) benchmark::DoNotOptimize(string.count('#'));
    countBytes(state, text.size());
}

// Lookups of mapped buffers.

constexpr unsigned int KEYS = 1024;

void internKnown(benchmark::State& state) {
    const std::vector<unsigned char> pool(KEYS * 32, 'x');
    Vorn::StringOwnerMap<unsigned char> map;
    std::vector<String> strings;
    for (unsigned int i = 0; i < KEYS; ++i) strings.push_back(map.mapString(&pool[i * 32], 31, false));
    unsigned int i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.mapString(&pool[i * 32], 31, false));
        i = (i + 1) % KEYS;
    }
}

struct KeyHash {
    std::size_t operator()(const Vorn::StringOwnerKey& key) const { return static_cast<unsigned int>(key); }
};

// The hash table alone, with a string as result, too.
void internBareTable(benchmark::State& state) {
    const std::vector<unsigned char> pool(KEYS * 32, 'x');
    google::dense_hash_map<Vorn::StringOwnerKey, Vorn::StringOwnerEntry, KeyHash> map;
    map.set_empty_key(Vorn::StringOwnerKey());
    std::vector<String> strings;
    for (unsigned int i = 0; i < KEYS; ++i) {
        strings.push_back(String(&pool[i * 32], 31));
        map[Vorn::StringOwnerKey(&pool[i * 32], 31)].m_data = strings.back().getData();
    }
    unsigned int i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(String(map.find(Vorn::StringOwnerKey(&pool[i * 32], 31))->second.m_data));
        i = (i + 1) % KEYS;
    }
}

void internBareTableNoString(benchmark::State& state) {
    const std::vector<unsigned char> pool(KEYS * 32, 'x');
    google::dense_hash_map<Vorn::StringOwnerKey, Vorn::StringOwnerEntry, KeyHash> map;
    map.set_empty_key(Vorn::StringOwnerKey());
    for (unsigned int i = 0; i < KEYS; ++i) map[Vorn::StringOwnerKey(&pool[i * 32], 31)].m_mapCount = i;
    unsigned int i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.find(Vorn::StringOwnerKey(&pool[i * 32], 31))->second.m_data);
        i = (i + 1) % KEYS;
    }
}

// An edit near the start that keeps the length, and one that inserts a character and erases it.

void replaceCharacter(benchmark::State& state) {
    const std::string text = textOf(state);
    UTF8String string(over(text));
    string.reserve(0);
    for (auto _ : state) string.replace('x', 1, 1);
    if (isWrong(state, string.get(1) == 'x')) return;
}

void replaceCharacterStdString(benchmark::State& state) {
    std::string text = textOf(state);
    for (auto _ : state) {
        text.replace(1, 1, 1, 'x');
        benchmark::ClobberMemory();
    }
}

void replaceCharacterIcu(benchmark::State& state) {
    icu::UnicodeString text = icuOf(textOf(state));
    for (auto _ : state) {
        text.replace(1, 1, u'x');
        benchmark::ClobberMemory();
    }
}

void insertAndErase(benchmark::State& state) {
    const std::string text = textOf(state);
    UTF8String string(over(text));
    for (auto _ : state) {
        string.insert('x', 1);
        string.erase(1, 1);
    }
    if (isWrong(state, static_cast<const String&>(string) == text)) return;
}

void insertAndEraseStdString(benchmark::State& state) {
    std::string text = textOf(state);
    for (auto _ : state) {
        text.insert(1, 1, 'x');
        text.erase(1, 1);
        benchmark::ClobberMemory();
    }
}

void insertAndEraseIcu(benchmark::State& state) {
    icu::UnicodeString text = icuOf(textOf(state));
    for (auto _ : state) {
        text.insert(1, u'x');
        text.remove(1, 1);
        benchmark::ClobberMemory();
    }
}

#define VORN_STRING_LENGTHS ->Arg(16)->Arg(256)->Arg(65536)
BENCHMARK(substring)->Name("substring/Vorn") VORN_STRING_LENGTHS;
BENCHMARK(substringStdString)->Name("substring/std::string") VORN_STRING_LENGTHS;
BENCHMARK(substringIcu)->Name("substring/ICU, aliasing") VORN_STRING_LENGTHS;
BENCHMARK(substringIcuCopy)->Name("substring/ICU, copying") VORN_STRING_LENGTHS;
BENCHMARK(equality)->Name("equality/Vorn") VORN_STRING_LENGTHS;
BENCHMARK(equalityMemcmp)->Name("equality/memcmp") VORN_STRING_LENGTHS;
BENCHMARK(equalityIcu)->Name("equality/ICU") VORN_STRING_LENGTHS;
BENCHMARK(equalityAcrossEncodings)->Name("equality/Vorn, UTF-8 and UTF-16") VORN_STRING_LENGTHS;
BENCHMARK(findByte)->Name("find byte/Vorn") VORN_STRING_LENGTHS;
BENCHMARK(findByteMemchr)->Name("find byte/memchr") VORN_STRING_LENGTHS;
BENCHMARK(findByteStdString)->Name("find byte/std::string") VORN_STRING_LENGTHS;
BENCHMARK(findByteIcu)->Name("find byte/ICU") VORN_STRING_LENGTHS;
BENCHMARK(countByte)->Name("count byte/Vorn") VORN_STRING_LENGTHS;
BENCHMARK(internKnown)->Name("intern a known buffer/Vorn");
BENCHMARK(internBareTable)->Name("intern a known buffer/dense_hash_map and a String");
BENCHMARK(internBareTableNoString)->Name("intern a known buffer/dense_hash_map");
BENCHMARK(replaceCharacter)->Name("replace a character/Vorn") VORN_STRING_LENGTHS;
BENCHMARK(replaceCharacterStdString)->Name("replace a character/std::string") VORN_STRING_LENGTHS;
BENCHMARK(replaceCharacterIcu)->Name("replace a character/ICU") VORN_STRING_LENGTHS;
BENCHMARK(insertAndErase)->Name("insert and erase/Vorn") VORN_STRING_LENGTHS;
BENCHMARK(insertAndEraseStdString)->Name("insert and erase/std::string") VORN_STRING_LENGTHS;
BENCHMARK(insertAndEraseIcu)->Name("insert and erase/ICU") VORN_STRING_LENGTHS;

} // namespace
