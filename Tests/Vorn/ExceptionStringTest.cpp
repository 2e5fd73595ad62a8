#include "Vorn/ExceptionString.h"

#include "Support/Aborted.h"
#include "Support/AllocationCounter.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <random>

namespace {

using Vorn::ExceptionString;
using Vorn::ExceptionStringJoiner;

ExceptionString dynamicText(const char* text) { return ExceptionString(std::string(text), 0.0f); }

std::string textOf(const ExceptionString& string) {
    return string.getString() ? std::string(string.getString(), static_cast<std::size_t>(string.size())) : "(null)";
}

TEST(ExceptionString, DefaultIsNull) {
    const ExceptionString string;
    EXPECT_TRUE(string.isNull());
    EXPECT_EQ(string.size(), 0);
    EXPECT_EQ(string.getString(), nullptr);
    EXPECT_FALSE(string.dynamic());
    EXPECT_FALSE(string.creating());
    EXPECT_EQ(string.refCount(), 0);
}

TEST(ExceptionString, StaticKeepsPointerAndLengthUnread) {
    const char* const text = "abc";
    const ExceptionString string(text, 2);
    EXPECT_EQ(string.getString(), text);
    EXPECT_EQ(string.size(), 2);
    EXPECT_FALSE(string.isNull());
    EXPECT_FALSE(string.dynamic());
    EXPECT_EQ(string.refCount(), 0);

    const ExceptionString null(nullptr, 5);
    EXPECT_EQ(null.size(), 5);
    EXPECT_TRUE(null.isNull());
}

TEST(ExceptionString, StaticTextTouchesNoHeap) {
    EXPECT_EQ(allocationsDuring([] {
                  const ExceptionString first("literal", 7);
                  ExceptionString second(first);
                  second = first;
                  second.setStaticString("other", 5);
              }),
              0u);
}

TEST(ExceptionString, DynamicCopyHoldsEveryByteAndATerminator) {
    const std::string source("a\0b", 3);
    ExceptionString string(source, 1.0f);
    EXPECT_TRUE(string.dynamic());
    EXPECT_FALSE(string.creating());
    EXPECT_EQ(string.size(), 3);
    EXPECT_EQ(string.refCount(), 1);
    EXPECT_EQ(std::memcmp(string.getString(), "a\0b\0", 4), 0);

    const ExceptionString empty(std::string(), 0.0f);
    EXPECT_FALSE(empty.isNull());
    EXPECT_TRUE(empty.dynamic());
    EXPECT_STREQ(empty.getString(), "");
}

TEST(ExceptionString, CopiesShareTheBlock) {
    const ExceptionString first = dynamicText("shared");
    {
        const ExceptionString second(first);
        EXPECT_EQ(second.getString(), first.getString());
        EXPECT_EQ(first.refCount(), 2);
        EXPECT_EQ(allocationsDuring([&] { const ExceptionString third(second); }), 0u);
    }
    EXPECT_EQ(first.refCount(), 1);
}

TEST(ExceptionString, CreationHasTwoPhases) {
    ExceptionString string;
    char* const text = string.createString(8);
    EXPECT_TRUE(string.dynamic());
    EXPECT_TRUE(string.creating());
    EXPECT_EQ(string.size(), 8);
    EXPECT_EQ(string.refCount(), 1);
    EXPECT_EQ(string.getString(), text);
    EXPECT_EQ(std::string(text, 9), std::string(9, '\0')) << "no old content of the heap";
    std::memcpy(text, "12345678", 8);
    string.doneCreateString(3);
    EXPECT_FALSE(string.creating());
    EXPECT_TRUE(string.dynamic());
    EXPECT_EQ(string.size(), 3);
    EXPECT_STREQ(string.getString(), "123");
}

TEST(ExceptionString, CreatingAnEmptyTextGivesARealBlock) {
    ExceptionString string;
    string.createString(0);
    string.doneCreateString(0);
    EXPECT_FALSE(string.isNull());
    EXPECT_EQ(string.size(), 0);
    EXPECT_STREQ(string.getString(), "");
    EXPECT_EQ(string.refCount(), 1);
}

TEST(ExceptionString, BlockIsFiveBytesLargerThanTheText) {
    EXPECT_EQ(allocationsDuring([] {
                  ExceptionString string;
                  string.createString(100);
              }),
              1u);
    EXPECT_EQ(lastAllocationSize(), 105u);
}

TEST(ExceptionString, CreatingReleasesTheOldBlock) {
    const ExceptionString first = dynamicText("old");
    ExceptionString second(first);
    std::memcpy(second.createString(3), "new", 3);
    second.doneCreateString(3);
    EXPECT_EQ(first.refCount(), 1);
    EXPECT_STREQ(first.getString(), "old");
    EXPECT_STREQ(second.getString(), "new");
}

TEST(ExceptionString, SetStaticStringReleasesTheOldBlock) {
    const ExceptionString first = dynamicText("old");
    ExceptionString second(first);
    second.setStaticString("fixed", 5);
    EXPECT_EQ(first.refCount(), 1);
    EXPECT_FALSE(second.dynamic());
    EXPECT_EQ(textOf(second), "fixed");
}

TEST(ExceptionString, AssigningACopyKeepsBothValid) {
    ExceptionString first = dynamicText("shared");
    ExceptionString second(first);
    second = first;
    EXPECT_EQ(first.refCount(), 2);
    EXPECT_EQ(second.refCount(), 2);
    EXPECT_EQ(textOf(second), "shared");
}

TEST(ExceptionString, SelfAssignmentOfTheOnlyHolderEndsNull) {
    const std::size_t live = liveAllocationCount();
    ExceptionString string = dynamicText("gone");
    const ExceptionString& same = string;
    string = same;
    EXPECT_TRUE(string.isNull());
    EXPECT_EQ(string.size(), 0);
    EXPECT_FALSE(string.dynamic());
    EXPECT_EQ(liveAllocationCount(), live);
}

TEST(ExceptionString, SelfAssignmentOfAStaticTextKeepsIt) {
    ExceptionString string("fixed", 5);
    const ExceptionString& same = string;
    string = same;
    EXPECT_EQ(textOf(string), "fixed");
}

TEST(ExceptionString, LengthsThatReachTheFlagsAreReportedWithoutThem) {
    ExceptionString string;
    string.createString(16384 + 5);
    string.doneCreateString(16384 + 5);
    EXPECT_EQ(string.size(), 5);
    EXPECT_TRUE(string.creating());
    EXPECT_TRUE(string.dynamic());

    ExceptionString longer(std::string(32768 + 7, 'x'), 0.0f);
    EXPECT_EQ(longer.size(), 7);
    EXPECT_FALSE(longer.creating());
    EXPECT_EQ(std::strlen(longer.getString()), 32768u + 7u);

    ExceptionString longest(std::string(65536 + 9, 'x'), 0.0f);
    EXPECT_EQ(longest.size(), 65536 + 9);
}

TEST(ExceptionString, LengthAndFlagsShareTheFirstWord) {
    const auto word = [](const ExceptionString& string) {
        int bits = 0;
        std::memcpy(&bits, static_cast<const void*>(&string), sizeof bits);
        return bits;
    };
    for (const int size : {0, 1, 255, 16383, 16384, 16389, 32767, 32768, 49151, 49152, 65535, 65536, 70000}) {
        ExceptionString string;
        string.createString(size);
        EXPECT_EQ(word(string), size | 0xC000) << size;
        string.doneCreateString(size);
        EXPECT_EQ(word(string), size | 0x8000) << size;
        EXPECT_EQ(string.size(), size & ~0xC000) << size;
        const ExceptionString copy(string);
        EXPECT_EQ(word(copy), word(string)) << size;
        string.setStaticString("x", 1);
        EXPECT_EQ(word(string), 1);
    }
    EXPECT_TRUE(ExceptionString("x", 16384).creating());
}

TEST(ExceptionString, BlockIsCountTextAndZeroByte) {
    const ExceptionString string = dynamicText("text");
    const ExceptionString copy(string);
    const char* block = nullptr;
    std::memcpy(&block, reinterpret_cast<const char*>(&string) + sizeof(void*), sizeof block);
    EXPECT_EQ(block + 4, string.getString());
    int count = 0;
    std::memcpy(&count, block, sizeof count);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(block[8], '\0');
}

TEST(ExceptionString, TextBeingCreatedIsSharedAsItStands) {
    ExceptionString string;
    std::memcpy(string.createString(4), "abcd", 4);
    const ExceptionString copy(string);
    string.doneCreateString(2);
    EXPECT_FALSE(string.creating());
    EXPECT_TRUE(copy.creating());
    EXPECT_EQ(copy.size(), 4);
    EXPECT_EQ(copy.refCount(), 2);
    EXPECT_EQ(copy.getString(), string.getString());
}

TEST(ExceptionStringJoiner, ReadsPartsUpToTheLengthThatTheyReport) {
    const ExceptionString prefix("abcdef", 2);
    const ExceptionString overlong(std::string(16384 + 3, 'x'), 0.0f);
    const ExceptionString joined = prefix + overlong + prefix;
    EXPECT_EQ(joined.size(), 7);
    EXPECT_STREQ(joined.getString(), "abxxxab");
}

TEST(ExceptionStringJoiner, JoinsPartsInOrderIntoOneBlock) {
    const ExceptionString a("a", 1);
    const ExceptionString b = dynamicText("bb");
    const ExceptionString null;
    const ExceptionString c("ccc", 3);
    const ExceptionString joined = a + b + null + c;
    EXPECT_EQ(textOf(joined), "abbccc");
    EXPECT_TRUE(joined.dynamic());
    EXPECT_EQ(joined.refCount(), 1);
    EXPECT_EQ(b.refCount(), 1);
}

TEST(ExceptionStringJoiner, SharesTheBlocksOfItsParts) {
    const ExceptionString a = dynamicText("a");
    ExceptionStringJoiner joiner = a + a;
    EXPECT_EQ(a.refCount(), 3);
    ExceptionStringJoiner& same = joiner + a;
    EXPECT_EQ(&same, &joiner);
    EXPECT_EQ(a.refCount(), 4);
    EXPECT_EQ(textOf(ExceptionString(joiner)), "aaa");
}

TEST(ExceptionStringJoiner, OneTextIsCopiedIntoANewBlock) {
    const ExceptionString a("abc", 3);
    const ExceptionString joined = a + ExceptionString();
    EXPECT_TRUE(joined.dynamic());
    EXPECT_NE(joined.getString(), a.getString());
    EXPECT_EQ(textOf(joined), "abc");
}

TEST(ExceptionStringJoiner, EmptyPartsLeaveANewTextNullAndAStaticOneAsItWas) {
    const ExceptionString null;
    const ExceptionString empty("", 0);
    const ExceptionString joined = null + empty;
    EXPECT_TRUE(joined.isNull());
    EXPECT_EQ(joined.getString(), nullptr);

    ExceptionString fixed("fixed", 5);
    fixed = null + empty;
    EXPECT_EQ(textOf(fixed), "fixed");

    const ExceptionString shared = dynamicText("shared");
    ExceptionString holder(shared);
    holder = null + empty;
    EXPECT_TRUE(holder.isNull());
    EXPECT_EQ(holder.size(), 0);
    EXPECT_EQ(shared.refCount(), 1);
}

TEST(ExceptionStringJoiner, ATextCanBeExtendedByItself) {
    const ExceptionString other = dynamicText("x");
    ExceptionString string = dynamicText("s");
    const ExceptionString holder(string);
    string = string + other;
    EXPECT_EQ(textOf(string), "sx");
    EXPECT_EQ(textOf(holder), "s");
    EXPECT_EQ(holder.refCount(), 1);
    string = string + string + string;
    EXPECT_EQ(textOf(string), "sxsxsx");
    EXPECT_EQ(string.refCount(), 1);
}

// Handles in random states against plain texts: counts are the numbers of handles that hold a block.
TEST(ExceptionString, RandomHandlesAgreeWithAModel) {
    std::mt19937 random(20261121);
    std::vector<ExceptionString> strings(8);
    struct Model {
        std::string text = "(null)";
        int block = 0; // 0 for none
    };
    std::vector<Model> models(8);
    int nextBlock = 1;
    for (int step = 0; step < 20000; ++step) {
        const std::size_t i = random() % 8;
        const std::size_t j = random() % 8;
        switch (random() % 5) {
        case 0:
            strings[i] = dynamicText("dynamic");
            models[i] = {"dynamic", nextBlock++};
            break;
        case 1:
            strings[i].setStaticString("static", 6);
            models[i] = {"static", 0};
            break;
        case 2:
            if (i == j) break;
            strings[i] = strings[j];
            models[i] = models[j];
            break;
        case 3: {
            const std::string left = models[i].text == "(null)" ? "" : models[i].text;
            const std::string right = models[j].text == "(null)" ? "" : models[j].text;
            if (left.size() + right.size() > 1000) break;
            strings[i] = strings[i] + strings[j];
            models[i] = {left + right, nextBlock++};
            if (left.empty() && right.empty()) models[i] = {"(null)", 0};
            break;
        }
        default: {
            const ExceptionString copy(strings[j]);
            strings[i] = ExceptionString();
            models[i] = {};
        }
        }
        for (std::size_t k = 0; k < 8; ++k) {
            ASSERT_EQ(textOf(strings[k]), models[k].text) << "step " << step;
            int holders = 0;
            for (const Model& model : models) holders += models[k].block && model.block == models[k].block;
            ASSERT_EQ(strings[k].refCount(), holders) << "step " << step;
        }
    }
}

using ExceptionStringDeathTest = ::testing::Test;
TEST(ExceptionStringDeathTest, RunningOutOfMemoryAborts) {
    EXPECT_EXIT(
        {
            failAllocation(1);
            ExceptionString string;
            string.createString(10);
        },
        aborted(), "");
}

TEST(ExceptionStringDeathTest, LengthsThatNoIntHoldsAbort) {
    const ExceptionString half("?", 0x40000000); // never read
    EXPECT_EXIT(ExceptionString(half + half), aborted(), "");
    EXPECT_EXIT(ExceptionString(half + half + half + half + ExceptionString("x", 1)), aborted(), "");
    EXPECT_EXIT(
        {
            ExceptionString string("static", 6);
            string = half + half;
        },
        aborted(), "");
    EXPECT_EXIT(ExceptionString().createString(-1), aborted(), "");
    EXPECT_EXIT(ExceptionString().createString(std::numeric_limits<int>::min()), aborted(), "");
}

} // namespace
