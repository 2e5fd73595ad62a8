// Strings in threads that share no string. What they share inside the library are the static records of empty texts.
#include "Vorn/String/String.h"
#include "Vorn/String/UTF8String.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

namespace {

using Vorn::String;
using Vorn::StringData;
using Vorn::UTF16Char;
using Vorn::UTF8String;

constexpr int THREADS = 4;
constexpr int ROUNDS = 2000;

template <class Run>
void inThreads(Run run) {
    std::vector<std::thread> threads;
    for (int i = 0; i < THREADS; ++i) threads.emplace_back(run, i);
    for (std::thread& thread : threads) thread.join();
}

unsigned int countOfEmptyString() { return String::s_emptyString.getData()->getRefCount(); }
unsigned int countOfEmptyResults() { return StringData::s_emptyString.getRefCount(); }

TEST(StringThreads, CountEveryHandleOnTheEmptyString) {
    const unsigned int before = countOfEmptyString();
    std::vector<String> kept(THREADS * ROUNDS);
    inThreads([&](int thread) {
        for (int i = 0; i < ROUNDS; ++i) {
            String& handle = kept[static_cast<std::size_t>(thread * ROUNDS + i)];
            switch (i % 4) {
            case 0: handle = String::getEmptyString(); break;
            case 1: handle = String(std::string()); break;
            case 2: handle = String::s_emptyString; break;
            default: handle += String::getEmptyString(); break; // a null string becomes an empty one
            }
        }
    });
    EXPECT_EQ(countOfEmptyString(), before + THREADS * ROUNDS);
    inThreads([&](int thread) {
        for (int i = 0; i < ROUNDS; ++i) kept[static_cast<std::size_t>(thread * ROUNDS + i)] = String();
    });
    EXPECT_EQ(countOfEmptyString(), before);
}

TEST(StringThreads, CountEveryEmptySubstring) {
    const unsigned int before = countOfEmptyResults();
    std::vector<String> kept(THREADS * ROUNDS);
    inThreads([&](int thread) {
        const std::string narrow = "narrow";
        const std::basic_string<UTF16Char> wide = VORN_UTF16("wide");
        const String text(narrow.c_str());
        const String wideText(wide.c_str());
        for (int i = 0; i < ROUNDS; ++i) {
            String& handle = kept[static_cast<std::size_t>(thread * ROUNDS + i)];
            switch (i % 4) {
            case 0: handle = String(text.getData()->substr<unsigned char>(0, 0)); break;
            case 1: handle = String(text.getData()->substr<UTF16Char>(2, 0)); break;
            case 2: handle = String(wideText.getData()->substr<unsigned char>(-1, 0)); break;
            default: handle = String(wideText.getData()->substr<UTF16Char>(4, 7)); break;
            }
        }
    });
    EXPECT_EQ(countOfEmptyResults(), before + THREADS * ROUNDS);
    inThreads([&](int thread) {
        for (int i = 0; i < ROUNDS; ++i) kept[static_cast<std::size_t>(thread * ROUNDS + i)] = String();
    });
    EXPECT_EQ(countOfEmptyResults(), before);
}

// Each thread reads the static records in every way and edits strings that begin with them.
TEST(StringThreads, ReadAndEditEmptyStrings) {
    const unsigned int before = countOfEmptyString();
    std::vector<int> mistakes(THREADS);
    inThreads([&](int thread) {
        int& wrong = mistakes[static_cast<std::size_t>(thread)];
        const auto expect = [&](bool holds) { wrong += !holds; };
        for (int i = 0; i < ROUNDS / 10; ++i) {
            const String empty = String::getEmptyString();
            StringData* const data = empty.getData();
            expect(empty.isEmpty() && empty.isNotNull() && empty == String(&StringData::s_emptyString));
            expect(*data->getTerminatedBuffer<unsigned char>() == 0 && *data->getTerminatedBuffer<UTF16Char>() == 0);
            expect(data->getUTF8Length() == 0 && data->getUTF16Length() == 0 && data->getUnicodeLength() == 0);
            expect(data->substr<unsigned char>(0, 1) == &StringData::s_emptyString);
            expect(data->getRefCount() != 0 && data->isStaticConstString());
            expect(!(empty < empty) && !empty.startsWith("a") && !empty.contains("a") && *empty.getCString() == 0);

            UTF8String text(empty);
            expect(text.reserve(3) == 3);
            text.append('a' + static_cast<unsigned int>(thread));
            text.append(empty);
            text.insert(String("b"), 0);
            expect(text.getLength() == 2 && text.get(1) == 'a' + thread);
            text.erase(0, 2);
            expect(text.isEmpty());
            String joined(std::string{});
            joined += String("joined");
            expect(joined.equals("joined"));
        }
    });
    EXPECT_EQ(mistakes, std::vector<int>(THREADS));
    EXPECT_EQ(countOfEmptyString(), before);
}

} // namespace
