#include "Support/AllocationCounter.h"
#include "Support/Effort.h"
#include "Support/Report.h"
#include "Support/StringDataChains.h"
#include "Support/StringDataProbe.h"
#include "Support/Texts.h"
#include "Vorn/String/String.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>

namespace {

using namespace Vorn;
using VornPrivate::StringDataProbe;

template <class CharType>
class StringDataOwnership : public testing::Test {
protected:
    static const CharType* bufferOf(const String& string) { return string.getData()->getPrivateBuffer<CharType>(); }

    static StringDataBufferInfo& info(const String& string) {
        return StringDataProbe::info<CharType>(*string.getData());
    }

    static void held(const String& string, const Held& expected) { expectHeld<CharType>(*string.getData(), expected); }

    // Releases the handle and expects how many text blocks that took from the heap.
    static void release(String& string, std::size_t allocations) {
        EXPECT_EQ(allocationsDuring([&] { string = String(); }), allocations);
    }

    // Overwrites and frees a borrowed buffer, so that any later read of it is detected.
    static void retire(std::unique_ptr<CharType[]>& buffer, std::size_t size) {
        std::fill_n(buffer.get(), size, CharType('?'));
        buffer.reset();
    }
};

using Encodings = testing::Types<unsigned char, UTF16Char>;
TYPED_TEST_SUITE(StringDataOwnership, Encodings, );

TYPED_TEST(StringDataOwnership, SubstringsAreDirectlyBehindTheirParent) {
    const String root = dynamicString<TypeParam>("abcdefgh");
    const TypeParam* const block = this->bufferOf(root);
    StringData* cutRecord = nullptr;
    EXPECT_EQ(allocationsDuring([&] { cutRecord = root.getData()->template substr<TypeParam>(1, 6); }), 1u);
    EXPECT_EQ(cutRecord->getRefCount(), 0u);
    const String first(cutRecord);
    const String second = substringOf<TypeParam>(root, 3, 2);
    const String ofFirst = substringOf<TypeParam>(first, 2, 3);
    const String fromTheEnd = substringOf<TypeParam>(first, -2, 1);
    expectChain<TypeParam>(
        {root.getData(), second.getData(), first.getData(), fromTheEnd.getData(), ofFirst.getData()});
    this->held(root, {"abcdefgh", 0, STRING_DATA_DYNAMIC, false});
    this->held(first, {"bcdefg", 1, STRING_DATA_EXTERNAL, false});
    this->held(second, {"de", 3, STRING_DATA_EXTERNAL, false});
    this->held(ofFirst, {"def", 3, STRING_DATA_EXTERNAL, false}); // counted from the start of the block
    this->held(fromTheEnd, {"f", 5, STRING_DATA_EXTERNAL, false});
    EXPECT_EQ(this->bufferOf(first), block + 1);
    EXPECT_EQ(this->bufferOf(ofFirst), block + 3);
    EXPECT_EQ(this->bufferOf(fromTheEnd), block + 5);
}

TYPED_TEST(StringDataOwnership, SubstringsOfStaticTextAreInNoChain) {
    const auto memory = callerBuffer<TypeParam>(std::string_view("abcd\0", 5));
    const String root(memory.get(), 5, STRING_DATA_STATIC);
    const String part = substringOf<TypeParam>(root, 1, 2);
    const String end = substringOf<TypeParam>(root, 2, 100);
    expectChain<TypeParam>({root.getData()});
    expectChain<TypeParam>({part.getData()});
    expectChain<TypeParam>({end.getData()});
    this->held(part, {"bc", 0, STRING_DATA_STATIC, false});
    this->held(end, {"cd", 0, STRING_DATA_STATIC, true});
    EXPECT_EQ(this->bufferOf(part), memory.get() + 1);
}

TYPED_TEST(StringDataOwnership, SubstringToTheEndOfATerminatedTextIsTerminated) {
    const String root = dynamicString<TypeParam>(std::string_view("abcdef\0", 7));
    const TypeParam* const block = this->bufferOf(root);
    const String whole = substringOf<TypeParam>(root, 0, NPOS);
    const String end = substringOf<TypeParam>(root, 4, 2);
    const String notToTheEnd = substringOf<TypeParam>(root, 4, 1);
    this->held(whole, {"abcdef", 0, STRING_DATA_EXTERNAL, true});
    this->held(end, {"ef", 4, STRING_DATA_EXTERNAL, true});
    this->held(notToTheEnd, {"e", 4, STRING_DATA_EXTERNAL, false});
    EXPECT_EQ(allocationsDuring([&] {
                  EXPECT_EQ(whole.getData()->template getTerminatedBuffer<TypeParam>(), block);
                  EXPECT_EQ(end.getData()->template getTerminatedBuffer<TypeParam>(), block + 4);
              }),
              0u);
    expectChain<TypeParam>({root.getData(), notToTheEnd.getData(), end.getData(), whole.getData()});
}

TYPED_TEST(StringDataOwnership, RefusedSubstringLeavesTheChainUnchanged) {
    const String root = dynamicString<TypeParam>("abcdefgh");
    const String part = substringOf<TypeParam>(root, 2, 3);
    const std::size_t live = liveAllocationCount();
    for (const int offset : {9, 1000, -9}) {
        expectRaises<4>([&] { substringOf<TypeParam>(root, offset, 1); }, "Invalid Offset!",
                        "Vorn::StringData::substr");
    }
    EXPECT_EQ(liveAllocationCount(), live);
    expectChain<TypeParam>({root.getData(), part.getData()});
}

TYPED_TEST(StringDataOwnership, EmptySubstringIsTheStaticRecordAndLinksNothing) {
    const String root = dynamicString<TypeParam>("abc");
    EXPECT_EQ(root.getData()->template substr<TypeParam>(1, 0), &StringData::s_emptyString);
    expectChain<TypeParam>({root.getData()});
}

TYPED_TEST(StringDataOwnership, DyingOwnerGivesItsBlockToTheNextRecord) {
    String root = dynamicString<TypeParam>("abcdefgh");
    const TypeParam* const block = this->bufferOf(root);
    String last = substringOf<TypeParam>(root, 1, 5);
    String first = substringOf<TypeParam>(root, 3, 2); // short, but becomes the owner
    this->release(root, 0);
    this->held(first, {"de", 3, STRING_DATA_DYNAMIC, false});
    this->held(last, {"bcdef", 1, STRING_DATA_EXTERNAL, false});
    EXPECT_EQ(this->bufferOf(first), block + 3);
    expectChain<TypeParam>({first.getData(), last.getData()});

    this->release(first, 0);
    this->held(last, {"bcdef", 1, STRING_DATA_DYNAMIC, false});
    expectChain<TypeParam>({last.getData()});
    EXPECT_NE(liveArraySize(block), 0u);

    const std::size_t live = liveAllocationCount();
    this->release(last, 0);
    EXPECT_EQ(liveArraySize(block), 0u);
    EXPECT_EQ(lastReleasedArray(), block); // the start of the block, not of the text
    EXPECT_EQ(liveAllocationCount(), live - 2);
}

TYPED_TEST(StringDataOwnership, HeirKeepsWhatItKnowsOfItsTerminator) {
    String root = dynamicString<TypeParam>(std::string_view("abcd\0", 5));
    const String end = substringOf<TypeParam>(root, 2, 2);
    this->release(root, 0);
    this->held(end, {"cd", 2, STRING_DATA_DYNAMIC, true});
}

TYPED_TEST(StringDataOwnership, DyingRecordInTheMiddleJoinsItsNeighbours) {
    for (const bool owned : {true, false}) {
        auto buffer = callerBuffer<TypeParam>("abcdefgh");
        const String root =
            owned ? dynamicString<TypeParam>("abcdefgh") : String(buffer.get(), 8, STRING_DATA_EXTERNAL);
        const String last = substringOf<TypeParam>(root, 1, 5);
        String middle = substringOf<TypeParam>(root, 3, 2);
        this->release(middle, 0);
        expectChain<TypeParam>({root.getData(), last.getData()});
        this->held(root, {"abcdefgh", 0, owned ? STRING_DATA_DYNAMIC : STRING_DATA_EXTERNAL, false});
        this->held(last, {"bcdef", 1, STRING_DATA_EXTERNAL, false});
    }
}

TYPED_TEST(StringDataOwnership, DyingRecordAtTheEndIsForgotten) {
    const String root = dynamicString<TypeParam>("abcdefgh");
    String last = substringOf<TypeParam>(root, 1, 5);
    this->release(last, 0);
    expectChain<TypeParam>({root.getData()});
    this->held(root, {"abcdefgh", 0, STRING_DATA_DYNAMIC, false});
}

TYPED_TEST(StringDataOwnership, SoleSubstringOfABorrowedBufferCopiesItsText) {
    auto buffer = callerBuffer<TypeParam>("abcdefgh");
    String root(buffer.get(), 8, STRING_DATA_EXTERNAL);
    String part = substringOf<TypeParam>(root, 3, 4);
    this->release(root, 1);
    EXPECT_EQ(lastAllocationSize(), 5 * sizeof(TypeParam));
    this->retire(buffer, 8);
    this->held(part, {"defg", 0, STRING_DATA_DYNAMIC, true}); // a zero was written behind the copy
    expectChain<TypeParam>({part.getData()});
    const TypeParam* const block = this->bufferOf(part);
    this->release(part, 0);
    EXPECT_EQ(lastReleasedArray(), block);
}

TYPED_TEST(StringDataOwnership, SubstringsOfABorrowedBufferMoveToOneNewBlock) {
    auto buffer = callerBuffer<TypeParam>("abcdefghij");
    String root(buffer.get(), 10, STRING_DATA_EXTERNAL);
    String third = substringOf<TypeParam>(root, 2, 2);
    String second = substringOf<TypeParam>(root, 5, 4); // reaches furthest
    String first = substringOf<TypeParam>(root, 4, 3);
    String whole = substringOf<TypeParam>(third, 1, 1);
    expectChain<TypeParam>({root.getData(), first.getData(), second.getData(), third.getData(), whole.getData()});
    this->release(root, 1);
    EXPECT_EQ(lastAllocationSize(), 8 * sizeof(TypeParam)); // from 2 to 9, and a zero
    this->retire(buffer, 10);
    this->held(first, {"efg", 2, STRING_DATA_DYNAMIC, false});
    this->held(second, {"fghi", 3, STRING_DATA_EXTERNAL, true});
    this->held(third, {"cd", 0, STRING_DATA_EXTERNAL, false});
    this->held(whole, {"d", 1, STRING_DATA_EXTERNAL, false});
    expectChain<TypeParam>({first.getData(), second.getData(), third.getData(), whole.getData()});
    const TypeParam* const block = this->bufferOf(third);
    EXPECT_EQ(this->bufferOf(first), block + 2);
    EXPECT_EQ(block[7], TypeParam(0));

    this->release(first, 0);
    this->release(third, 0);
    this->release(second, 0);
    this->held(whole, {"d", 1, STRING_DATA_DYNAMIC, false});
    this->release(whole, 0);
    EXPECT_EQ(lastReleasedArray(), block);
}

TYPED_TEST(StringDataOwnership, HeirOfACallersBufferThatReachesFurthestIsTerminated) {
    auto buffer = callerBuffer<TypeParam>("abcdefgh");
    String root(buffer.get(), 8, STRING_DATA_EXTERNAL);
    const String last = substringOf<TypeParam>(root, 1, 3);
    const String first = substringOf<TypeParam>(root, 0, 6);
    this->release(root, 1);
    this->retire(buffer, 8);
    this->held(first, {"abcdef", 0, STRING_DATA_DYNAMIC, true});
    this->held(last, {"bcd", 1, STRING_DATA_EXTERNAL, false});
    expectChain<TypeParam>({first.getData(), last.getData()});
}

// The head has its own copy by then, but its parts stay on the buffer, with the first of them as their head.
TYPED_TEST(StringDataOwnership, SubstringsCopyTheirTextWhenTheRemainingHeadIsDestroyed) {
    auto buffer = callerBuffer<TypeParam>("abcdefgh");
    const String root(buffer.get(), 8, STRING_DATA_EXTERNAL);
    const String last = substringOf<TypeParam>(root, 4, 2);
    String first = substringOf<TypeParam>(root, 1, 2);
    root.getData()->template getTerminatedBuffer<TypeParam>();
    this->release(first, 1);
    this->retire(buffer, 8);
    this->held(last, {"ef", 0, STRING_DATA_DYNAMIC, true});
    this->held(root, {"abcdefgh", 0, STRING_DATA_DYNAMIC, false});
    expectChain<TypeParam>({last.getData()});
    expectChain<TypeParam>({root.getData()});
}

TYPED_TEST(StringDataOwnership, OnlyExternalHeirsOfACallersBufferCopyOut) {
    for (const StringAllocationType type : {STRING_DATA_STATIC, STRING_DATA_NONE}) {
        auto buffer = callerBuffer<TypeParam>("abcdefgh");
        String root(buffer.get(), 8, STRING_DATA_EXTERNAL);
        const String part = substringOf<TypeParam>(root, 1, 2);
        this->info(part).m_allocationType = type;
        this->release(root, 0);
        this->held(part, {"bc", 1, type, false});
        EXPECT_EQ(this->info(part).m_previous, nullptr);
    }
}

TYPED_TEST(StringDataOwnership, DetachedRecordLeavesItsChainWithItsOwnText) {
    const String root = dynamicString<TypeParam>("abcdefgh");
    const String last = substringOf<TypeParam>(root, 4, 3);
    const String middle = substringOf<TypeParam>(root, 2, 3);
    EXPECT_EQ(allocationsDuring([&] { StringDataProbe::detachExternalBuffer<TypeParam>(*middle.getData()); }), 1u);
    EXPECT_EQ(lastAllocationSize(), 4 * sizeof(TypeParam));
    this->held(middle, {"cde", 0, STRING_DATA_DYNAMIC, true});
    this->held(root, {"abcdefgh", 0, STRING_DATA_DYNAMIC, false});
    this->held(last, {"efg", 4, STRING_DATA_EXTERNAL, false});
    expectChain<TypeParam>({root.getData(), last.getData()});
    expectChain<TypeParam>({middle.getData()});

    StringDataProbe::detachExternalBuffer<TypeParam>(*last.getData()); // the end of its chain
    this->held(last, {"efg", 0, STRING_DATA_DYNAMIC, true});
    expectChain<TypeParam>({root.getData()});
    expectChain<TypeParam>({last.getData()});
}

TYPED_TEST(StringDataOwnership, DetachedHeadTakesItsChainAlong) {
    auto buffer = callerBuffer<TypeParam>("abcdefgh");
    const String root(buffer.get(), 5, STRING_DATA_EXTERNAL);
    const String part = substringOf<TypeParam>(root, 2, 2);
    EXPECT_EQ(allocationsDuring([&] { StringDataProbe::detachExternalBuffer<TypeParam>(*root.getData()); }), 1u);
    EXPECT_EQ(lastAllocationSize(), 6 * sizeof(TypeParam));
    this->retire(buffer, 8);
    this->held(root, {"abcde", 0, STRING_DATA_DYNAMIC, true});
    this->held(part, {"cd", 2, STRING_DATA_EXTERNAL, false});
    expectChain<TypeParam>({root.getData(), part.getData()});
}

TYPED_TEST(StringDataOwnership, EachEncodingHasItsOwnChain) {
    using Other = OtherEncoding<TypeParam>;
    auto buffer = callerBuffer<Other>("abcdef");
    String root(buffer.get(), 6, STRING_DATA_EXTERNAL);
    root.getData()->template getBuffer<TypeParam>(); // owned, while the other buffer is borrowed
    const TypeParam* const block = this->bufferOf(root);
    const String otherLast = substringOf<Other>(root, 4, 2);
    const String mine = substringOf<TypeParam>(root, 1, 2);
    const String otherFirst = substringOf<Other>(root, 3, 2);
    expectChain<TypeParam>({root.getData(), mine.getData()});
    expectChain<Other>({root.getData(), otherFirst.getData(), otherLast.getData()});
    EXPECT_EQ(mine.getData()->template getPrivateBuffer<Other>(), nullptr);
    EXPECT_EQ(otherFirst.getData()->template getPrivateBuffer<TypeParam>(), nullptr);

    this->release(root, 1); // the borrowed text is copied, the block has a new owner
    std::fill_n(buffer.get(), 6, Other('?'));
    buffer.reset();
    this->held(mine, {"bc", 1, STRING_DATA_DYNAMIC, false});
    EXPECT_EQ(this->bufferOf(mine), block + 1);
    expectHeld<Other>(*otherFirst.getData(), {"de", 0, STRING_DATA_DYNAMIC, false});
    expectHeld<Other>(*otherLast.getData(), {"ef", 1, STRING_DATA_EXTERNAL, true});
    expectChain<TypeParam>({mine.getData()});
    expectChain<Other>({otherFirst.getData(), otherLast.getData()});
}

// A record with substrings in both encodings is in two chains, each with its own events.
TYPED_TEST(StringDataOwnership, RecordInTwoChainsLeavesOneOfThem) {
    using Other = OtherEncoding<TypeParam>;
    const String root = dynamicString<TypeParam>("abcdefgh");
    String middle = substringOf<TypeParam>(root, 2, 4);
    const String last = substringOf<TypeParam>(middle, 1, 2);
    middle.getData()->template getBuffer<Other>();
    const String other = substringOf<Other>(middle, 1, 2);
    expectChain<TypeParam>({root.getData(), middle.getData(), last.getData()});
    expectChain<Other>({middle.getData(), other.getData()});

    middle.getData()->template getTerminatedBuffer<TypeParam>();
    expectChain<TypeParam>({root.getData(), last.getData()});
    expectChain<Other>({middle.getData(), other.getData()});

    this->release(middle, 0);
    expectHeld<Other>(*other.getData(), {"de", 1, STRING_DATA_DYNAMIC, false});
    expectChain<Other>({other.getData()});
}

// Every order in which a root, two of its substrings and a substring of one can be terminated and destroyed.
TYPED_TEST(StringDataOwnership, EveryOrderOfTerminatingAndDroppingKeepsTheTexts) {
    static const struct {
        const char* name;
        std::string_view units;
        bool owned;
    } roots[] = {
        {"owned", "abcdefgh", true},
        {"owned and terminated", std::string_view("abcdefgh\0", 9), true},
        {"borrowed", "abcdefgh", false},
        {"borrowed and terminated", std::string_view("abcdefgh\0", 9), false},
    };
    static const std::array<std::string, 4> texts = {"abcdefgh", "bcd", "defgh", "fg"};
    const std::size_t live = liveAllocationCount();
    for (const auto& root : roots) {
        // Each string occurs twice in the order: the first time it is terminated, the second time destroyed.
        std::array<int, 8> order = {0, 0, 1, 1, 2, 2, 3, 3};
        unsigned int number = 0;
        do {
            if (number++ % rowStep() != 0) continue;
            SCOPED_TRACE(root.name);
            auto buffer = callerBuffer<TypeParam>(root.units);
            std::array<String, 4> strings;
            strings[0] = root.owned ? dynamicString<TypeParam>(root.units)
                                    : String(buffer.get(), static_cast<unsigned int>(root.units.size()));
            strings[1] = substringOf<TypeParam>(strings[0], 1, 3);
            strings[2] = substringOf<TypeParam>(strings[0], 3, 5);
            strings[3] = substringOf<TypeParam>(strings[2], 2, 2);
            std::array<bool, 4> seen = {};
            for (const int i : order) {
                const auto index = static_cast<std::size_t>(i);
                if (seen[index]) {
                    strings[index] = String();
                } else {
                    const TypeParam* const text = strings[index].getData()->template getTerminatedBuffer<TypeParam>();
                    if (narrow(text) != texts[index]) ADD_FAILURE() << texts[index];
                }
                seen[index] = true;
                for (std::size_t other = 0; other < strings.size(); ++other) {
                    const StringData* const record = strings[other].getData();
                    if (!record) continue;
                    expectSoundChain<TypeParam>(*record);
                    if (narrow(record->getPrivateBuffer<TypeParam>(), record->getBufferInfo<TypeParam>().m_length) !=
                        texts[other])
                        ADD_FAILURE() << texts[other];
                }
                if (testing::Test::HasFailure()) {
                    std::string failed;
                    for (const int step : order) failed += std::to_string(step);
                    FAIL() << "in the order " << failed;
                }
            }
        } while (std::next_permutation(order.begin(), order.end()));
        EXPECT_EQ(number, 2520u);
    }
    EXPECT_EQ(liveAllocationCount(), live);
}

// A part that ends in front of U+0000 is found terminated when it is copied out.
TEST(StringDataOwnershipUTF16, DetachingLooksAtTheUnitBehindEachText) {
    const auto buffer = callerBuffer<UTF16Char>(std::string_view("abc\0de", 6));
    auto root = std::make_unique<String>(buffer.get(), 6u, STRING_DATA_EXTERNAL);
    const String inside = substringOf<UTF16Char>(*root, 0, 2);
    const String beforeNull = substringOf<UTF16Char>(*root, 1, 2);
    const String last = substringOf<UTF16Char>(*root, 1, 5);
    root.reset();
    expectHeld<UTF16Char>(*last.getData(), {std::string("bc\0de", 5), 1, STRING_DATA_DYNAMIC, true});
    expectHeld<UTF16Char>(*beforeNull.getData(), {"bc", 1, STRING_DATA_EXTERNAL, true});
    expectHeld<UTF16Char>(*inside.getData(), {"ab", 0, STRING_DATA_EXTERNAL, false});
}

// The unit behind a substring can be a trimmed unit instead of the terminator: then the flag is not set.
TEST(StringDataOwnershipUTF8, SubstringThatEndsInTwoBytesIsNotMarkedAsTerminated) {
    const unsigned char text[] = {'a', 0xC3, 0xA9, 0};
    const String root(newBlock(std::vector<unsigned char>(text, text + 4)), 4, STRING_DATA_DYNAMIC);
    const String part = substringOf<unsigned char>(root, 1, 2);
    const StringDataBufferInfo& info = part.getData()->getBufferInfo<unsigned char>();
    EXPECT_EQ(info.m_length, 2u);
    EXPECT_EQ(info.m_nullTerminated, 0u);
    EXPECT_STREQ(part.getCString(), "\xC3\xA9");
    expectChain<unsigned char>({root.getData()});
}

TEST(StringDataOwnershipUTF8, RefusedTextOfASubstringLeavesTheChainUnchanged) {
    const String root = dynamicString<unsigned char>("a\xC3\xA9z");
    const String part = substringOf<unsigned char>(root, 0, 1);
    const std::size_t live = liveAllocationCount();
    expectRaises<7>([&] { substringOf<unsigned char>(root, 0, 3); }, "Unmatched lead UTF-8 byte for a 2-byte sequence!",
                    "stringDataBufferScan");
    EXPECT_EQ(liveAllocationCount(), live);
    expectChain<unsigned char>({root.getData(), part.getData()});
}

} // namespace
