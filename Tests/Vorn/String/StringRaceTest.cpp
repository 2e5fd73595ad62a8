// Threads that share nothing visible: each has its own strings, conversions, numbers and reports. What they share
// inside the library, such as the record of the empty string, must not be written without synchronisation.
#include "Support/Effort.h"
#include "Support/Threads.h"
#include "Vorn/Exception.h"
#include "Vorn/ParseFloat.h"
#include "Vorn/ParseInt.h"
#include "Vorn/String/StringOwnerMap.h"
#include "Vorn/String/UTF8String.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using namespace Vorn;

constexpr int THREADS = 4;
const int ROUNDS = repetitions(2000, 100);

template <class Body>
void repeatInThreads(Body&& body) {
    inThreads(THREADS, [&body](int thread) {
        for (int round = 0; round < ROUNDS; ++round) body(thread);
    });
}

TEST(UnrelatedThreads, CopyTheEmptyString) {
    repeatInThreads([](int) {
        const String empty = String::getEmptyString();
        String copy(empty);
        copy = String::getNullString();
        copy = empty;
        EXPECT_TRUE(copy.isEmpty() && copy.isNotNull());
        const String fromStandard{std::string()};
        EXPECT_TRUE(fromStandard == empty);
        UTF8String edited(empty);
        edited.append('x');
        EXPECT_EQ(edited.getLength(), 1u);
    });
}

TEST(UnrelatedThreads, TakeSubstrings) {
    repeatInThreads([](int) {
        const String text("some text \xC3\xA9");
        StringData* const record = text.getData();
        const String none(record->substr<unsigned char>(0, 0));
        const String some(record->substr<unsigned char>(5, 4));
        const String wide(record->substr<UTF16Char>(0, 0));
        EXPECT_TRUE(none.isEmpty() && wide.isEmpty());
        EXPECT_TRUE(some.equals("text"));
    });
}

TEST(UnrelatedThreads, JoinAndConvert) {
    repeatInThreads([](int thread) {
        String text("number ");
        const std::string number = std::to_string(thread);
        text += String(number.c_str());
        text += String(VORN_UTF16("\u00E9\U0001F600"));
        EXPECT_EQ(std::string(text.getCString()), "number " + std::to_string(thread) + "\xC3\xA9\xF0\x9F\x98\x80");
        EXPECT_EQ(text.getUnicodeLength(), 10u);
        UTF8String edited(text);
        edited.insert(String("the "), 0);
        edited.replace('N', 4, 1);
        edited.erase(0, 4);
        EXPECT_EQ(edited.find("umber"), 1u);
    });
}

TEST(UnrelatedThreads, MapTheirOwnStrings) {
    struct Pool : StringOwnerAllocWrapperBase {
        void* allocate(unsigned int bytes) override {
            blocks.push_back(std::make_unique<char[]>(bytes));
            return blocks.back().get();
        }
        std::vector<std::unique_ptr<char[]>> blocks;
    };
    repeatInThreads([](int) {
        static const unsigned char TEXT[] = "interned";
        const auto map = std::make_unique<StringOwnerMap<unsigned char>>();
        Pool pool;
        EXPECT_TRUE(map->mapString(TEXT, 8, true).equals("interned"));
        EXPECT_TRUE(map->mapString(TEXT, 0, false).isEmpty());
        map->mapStringNonInline(String("text"), pool);
    });
}

TEST(UnrelatedThreads, RaiseAndReadNumbers) {
    repeatInThreads([](int thread) {
        const std::string digits = std::to_string(1000 + thread);
        EXPECT_EQ(parseInt<int>(reinterpret_cast<const unsigned char*>(digits.c_str())), 1000 + thread);
        EXPECT_EQ(parseDouble(String((digits + ".5").c_str())), 1000.5 + thread);
        try {
            const String invalid("\xC0");
            ADD_FAILURE() << "not refused";
        } catch (const AllExceptions& exception) {
            const AllExceptions copy(exception);
            EXPECT_STREQ(copy.what(), exception.what());
        }
        const ExceptionString joined = ExceptionString("thread ", 7) + ExceptionString(digits, 0.f);
        EXPECT_EQ(std::string(joined.getString()), "thread " + digits);
    });
}

} // namespace
