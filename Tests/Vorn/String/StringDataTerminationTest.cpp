#include "Support/AllocationCounter.h"
#include "Support/Report.h"
#include "Support/StringDataChains.h"
#include "Support/StringDataProbe.h"
#include "Support/Texts.h"
#include "Vorn/String/String.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>

namespace {

using namespace Vorn;
using VornPrivate::StringDataProbe;

template <class CharType>
class StringDataTermination : public testing::Test {
protected:
    static const CharType* terminate(const String& string) { return string.getData()->getTerminatedBuffer<CharType>(); }

    static const CharType* bufferOf(const String& string) { return string.getData()->getPrivateBuffer<CharType>(); }

    static StringDataBufferInfo& info(const String& string) {
        return StringDataProbe::info<CharType>(*string.getData());
    }

    // Terminates and expects how many blocks that took from the heap, and how many more are alive afterwards.
    static const CharType* terminateCounted(const String& string, std::size_t allocations, std::size_t moreAlive) {
        const std::size_t live = liveAllocationCount();
        const CharType* result = nullptr;
        EXPECT_EQ(allocationsDuring([&] { result = terminate(string); }), allocations);
        EXPECT_EQ(liveAllocationCount(), live + moreAlive);
        EXPECT_EQ(result, bufferOf(string));
        return result;
    }

    static void held(const String& string, const Held& expected) { expectHeld<CharType>(*string.getData(), expected); }

    // Two copies: the first call does not note that its block is terminated, the second copies once more.
    static void expectDoubleCopy(const String& string, const std::string& text) {
        const CharType* const original = bufferOf(string);
        const CharType* const first = terminateCounted(string, 1, 1);
        EXPECT_NE(first, original);
        EXPECT_EQ(narrow(first), text);
        EXPECT_EQ(liveArraySize(first), (text.size() + 1) * sizeof(CharType));
        held(string, {text, 0, STRING_DATA_DYNAMIC, false});
        expectChain<CharType>({string.getData()});

        const CharType* const second = terminateCounted(string, 1, 0); // the first block is freed
        EXPECT_NE(second, first);
        EXPECT_EQ(liveArraySize(first), 0u);
        EXPECT_EQ(narrow(second), text);
        EXPECT_EQ(liveArraySize(second), (text.size() + 1) * sizeof(CharType));
        held(string, {text, 0, STRING_DATA_DYNAMIC, true});

        EXPECT_EQ(terminateCounted(string, 0, 0), second); // from here on it stays
    }
};

using Encodings = testing::Types<unsigned char, UTF16Char>;
TYPED_TEST_SUITE(StringDataTermination, Encodings, );

TYPED_TEST(StringDataTermination, TerminatedTextIsHandedOutAsItStands) {
    for (const StringAllocationType type : {STRING_DATA_EXTERNAL, STRING_DATA_STATIC, STRING_DATA_DYNAMIC}) {
        TypeParam* const block = newBlock<TypeParam>(std::string_view("abc\0", 4));
        {
            const String string(block, 4, type);
            EXPECT_EQ(this->terminateCounted(string, 0, 0), block);
            this->held(string, {"abc", 0, type, true});
        }
        if (type != STRING_DATA_DYNAMIC) delete[] block;
    }
}

TYPED_TEST(StringDataTermination, StaticTextIsCopiedTwice) {
    const auto memory = callerBuffer<TypeParam>("abcx");
    {
        const String string(memory.get(), 3, STRING_DATA_STATIC);
        this->expectDoubleCopy(string, "abc");
    }
    EXPECT_EQ(narrow(memory.get(), 4), "abcx");
}

TYPED_TEST(StringDataTermination, CallersTextIsCopiedTwice) {
    const auto buffer = callerBuffer<TypeParam>("abcx");
    {
        const String string(buffer.get(), 3, STRING_DATA_EXTERNAL);
        this->expectDoubleCopy(string, "abc");
    }
    EXPECT_EQ(narrow(buffer.get(), 4), "abcx");
}

TYPED_TEST(StringDataTermination, TextOfNoLengthIsTerminatedTooByCopying) {
    for (const StringAllocationType type : {STRING_DATA_EXTERNAL, STRING_DATA_STATIC}) {
        const auto buffer = callerBuffer<TypeParam>("x");
        const String string(buffer.get(), 0, type);
        this->expectDoubleCopy(string, "");
    }
}

TYPED_TEST(StringDataTermination, SubstringOfStaticTextIsCopiedTwice) {
    const auto memory = callerBuffer<TypeParam>("abcdef");
    const String parent(memory.get(), 6, STRING_DATA_STATIC);
    const String part = substringOf<TypeParam>(parent, 2, 3);
    this->expectDoubleCopy(part, "cde");
    EXPECT_EQ(narrow(memory.get(), 6), "abcdef");
}

TYPED_TEST(StringDataTermination, OwnedTextAtTheStartOfItsBlockIsCopiedOnce) {
    const String string = dynamicString<TypeParam>("abc");
    const TypeParam* const old = this->bufferOf(string);
    const TypeParam* const copy = this->terminateCounted(string, 1, 0); // the old block is freed
    EXPECT_EQ(lastAllocationSize(), 4 * sizeof(TypeParam));
    EXPECT_EQ(liveArraySize(old), 0u);
    EXPECT_EQ(narrow(copy), "abc");
    this->held(string, {"abc", 0, STRING_DATA_DYNAMIC, true});
    EXPECT_EQ(this->terminateCounted(string, 0, 0), copy);
}

TYPED_TEST(StringDataTermination, RecordInTheMiddleLeavesItsChain) {
    const String root = dynamicString<TypeParam>("abcdefgh");
    const String last = substringOf<TypeParam>(root, 4, 3);
    const String middle = substringOf<TypeParam>(root, 2, 3);
    expectChain<TypeParam>({root.getData(), middle.getData(), last.getData()});

    this->expectDoubleCopy(middle, "cde");
    expectChain<TypeParam>({root.getData(), last.getData()});
    expectChain<TypeParam>({middle.getData()});
    this->held(root, {"abcdefgh", 0, STRING_DATA_DYNAMIC, false});
    this->held(last, {"efg", 4, STRING_DATA_EXTERNAL, false});
}

TYPED_TEST(StringDataTermination, RecordAtTheEndLeavesItsChain) {
    const String root = dynamicString<TypeParam>("abcdefgh");
    const String part = substringOf<TypeParam>(root, 2, 3);
    this->expectDoubleCopy(part, "cde");
    expectChain<TypeParam>({root.getData()});
}

TYPED_TEST(StringDataTermination, HeadOnACallersBufferLeavesItsChainBehindOnTheBuffer) {
    const auto buffer = callerBuffer<TypeParam>("abcdefgh");
    const String root(buffer.get(), 8, STRING_DATA_EXTERNAL);
    const String last = substringOf<TypeParam>(root, 4, 3);
    const String first = substringOf<TypeParam>(root, 2, 3);
    this->expectDoubleCopy(root, "abcdefgh");
    expectChain<TypeParam>({first.getData(), last.getData()});
    this->held(first, {"cde", 2, STRING_DATA_EXTERNAL, false});
    EXPECT_EQ(this->bufferOf(first), buffer.get() + 2);
}

TYPED_TEST(StringDataTermination, InheritedTextSlidesDownByOne) {
    String owner = dynamicString<TypeParam>("abcdefgh");
    const TypeParam* const block = this->bufferOf(owner);
    const String part = substringOf<TypeParam>(owner, 3, 3);
    owner = String();
    this->held(part, {"def", 3, STRING_DATA_DYNAMIC, false});

    EXPECT_EQ(this->terminateCounted(part, 0, 0), block + 2);
    this->held(part, {"def", 2, STRING_DATA_DYNAMIC, true});
    EXPECT_EQ(narrow(block, 8), std::string("abdef\0gh", 8)); // nothing else has moved
    EXPECT_EQ(this->terminateCounted(part, 0, 0), block + 2);
    expectChain<TypeParam>({part.getData()});
}

TYPED_TEST(StringDataTermination, SlideTakesPlaceUpToTheStartOfTheBlock) {
    String owner = dynamicString<TypeParam>("abc");
    const TypeParam* const block = this->bufferOf(owner);
    const String part = substringOf<TypeParam>(owner, 1, 2);
    owner = String();
    EXPECT_EQ(this->terminateCounted(part, 0, 0), block);
    this->held(part, {"bc", 0, STRING_DATA_DYNAMIC, true});
    EXPECT_EQ(narrow(block), "bc");
}

TYPED_TEST(StringDataTermination, SlideTakesTheWholeChainAlong) {
    String root = dynamicString<TypeParam>("abcdefghij");
    const TypeParam* const block = this->bufferOf(root);
    const String before = substringOf<TypeParam>(root, 2, 2); // begins before the owner
    const String inside = substringOf<TypeParam>(root, 4, 2);
    const String atEnd = substringOf<TypeParam>(root, 5, 2); // ends where the owner ends
    const String owner = substringOf<TypeParam>(root, 3, 4);
    root = String();
    expectChain<TypeParam>({owner.getData(), atEnd.getData(), inside.getData(), before.getData()});

    EXPECT_EQ(this->terminateCounted(owner, 0, 0), block + 2);
    this->held(owner, {"defg", 2, STRING_DATA_DYNAMIC, true});
    this->held(atEnd, {"fg", 4, STRING_DATA_EXTERNAL, true});
    this->held(inside, {"ef", 3, STRING_DATA_EXTERNAL, false});
    this->held(before, {"cd", 1, STRING_DATA_EXTERNAL, false});
    EXPECT_EQ(this->bufferOf(atEnd), block + 4);
    EXPECT_EQ(this->bufferOf(inside), block + 3);
    EXPECT_EQ(this->bufferOf(before), block + 1);
    EXPECT_EQ(narrow(block, 10), std::string("acdefg\0hij", 10));
    expectChain<TypeParam>({owner.getData(), atEnd.getData(), inside.getData(), before.getData()});
    EXPECT_EQ(this->terminateCounted(atEnd, 0, 0), block + 4);
}

// A record in front of the whole text of the owner is in its chain, too, and the free unit must be before it.
TYPED_TEST(StringDataTermination, SlideLeavesNoUnitBetweenDistantTextsBehind) {
    String root = dynamicString<TypeParam>("abcdefghij");
    const TypeParam* const block = this->bufferOf(root);
    const String before = substringOf<TypeParam>(root, 1, 2);
    const String owner = substringOf<TypeParam>(root, 6, 2);
    root = String();
    this->terminateCounted(owner, 0, 0);
    this->held(owner, {"gh", 5, STRING_DATA_DYNAMIC, true});
    this->held(before, {"bc", 0, STRING_DATA_EXTERNAL, false});
    EXPECT_EQ(narrow(block, 10), std::string("bcdefgh\0ij", 10));
}

TYPED_TEST(StringDataTermination, OwnerThatCannotSlideCopiesAndGivesItsBlockAway) {
    static const struct {
        const char* name;
        int firstOffset; // of the record directly behind the owner
        unsigned int firstLength;
        int secondOffset;
        unsigned int secondLength;
    } rows[] = {
        {"first record at the start of the block", 0, 2, 4, 2}, {"second record at the start of the block", 4, 2, 0, 2},
        {"first record reaches further", 4, 4, 4, 2},           {"second record reaches further", 4, 2, 4, 4},
        {"second record is further behind", 4, 2, 8, 2},        {"record reaches one unit further", 6, 2, 4, 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string text = "abcdefghij";
        String root = dynamicString<TypeParam>(text);
        const TypeParam* const block = this->bufferOf(root);
        String second = substringOf<TypeParam>(root, row.secondOffset, row.secondLength);
        String first = substringOf<TypeParam>(root, row.firstOffset, row.firstLength);
        String owner = substringOf<TypeParam>(root, 3, 4); // ends at 7
        root = String();
        const std::string firstText = text.substr(static_cast<std::size_t>(row.firstOffset), row.firstLength);
        const std::string secondText = text.substr(static_cast<std::size_t>(row.secondOffset), row.secondLength);
        const auto firstOffset = static_cast<unsigned int>(row.firstOffset);
        const auto secondOffset = static_cast<unsigned int>(row.secondOffset);

        const TypeParam* const copy = this->terminateCounted(owner, 1, 1);
        EXPECT_EQ(lastAllocationSize(), 5 * sizeof(TypeParam));
        EXPECT_EQ(narrow(copy), "defg");
        this->held(owner, {"defg", 0, STRING_DATA_DYNAMIC, true});
        expectChain<TypeParam>({owner.getData()});
        this->held(first, {firstText, firstOffset, STRING_DATA_DYNAMIC, false});
        this->held(second, {secondText, secondOffset, STRING_DATA_EXTERNAL, false});
        expectChain<TypeParam>({first.getData(), second.getData()});
        EXPECT_EQ(narrow(block, 10), text); // nothing has moved

        owner = String();
        first = String();
        this->held(second, {secondText, secondOffset, STRING_DATA_DYNAMIC, false});
        EXPECT_NE(liveArraySize(block), 0u);
        second = String();
        EXPECT_EQ(liveArraySize(block), 0u);
    }
}

TYPED_TEST(StringDataTermination, OwnerAtTheStartOfItsBlockGivesItAway) {
    const String root = dynamicString<TypeParam>("abcdefgh");
    const TypeParam* const block = this->bufferOf(root);
    const String last = substringOf<TypeParam>(root, 5, 2);
    const String first = substringOf<TypeParam>(root, 2, 3);
    const TypeParam* const copy = this->terminateCounted(root, 1, 1);
    EXPECT_EQ(narrow(copy), "abcdefgh");
    this->held(root, {"abcdefgh", 0, STRING_DATA_DYNAMIC, true});
    expectChain<TypeParam>({root.getData()});
    expectChain<TypeParam>({first.getData(), last.getData()});
    this->held(first, {"cde", 2, STRING_DATA_DYNAMIC, false});
    this->held(last, {"fg", 5, STRING_DATA_EXTERNAL, false});
    EXPECT_EQ(this->bufferOf(first), block + 2);
}

// A copy of a static or borrowed text is copied again by the next call; the first copy can have a substring.
TYPED_TEST(StringDataTermination, SecondCopyLeavesTheFirstToItsSubstrings) {
    const auto buffer = callerBuffer<TypeParam>("abcdef");
    const String string(buffer.get(), 6, STRING_DATA_EXTERNAL);
    const TypeParam* const first = this->terminate(string);
    const String part = substringOf<TypeParam>(string, 1, 2);
    this->held(part, {"bc", 1, STRING_DATA_EXTERNAL, false});
    const TypeParam* const second = this->terminateCounted(string, 1, 1);
    EXPECT_NE(second, first);
    EXPECT_EQ(this->bufferOf(part), first + 1);
    this->held(part, {"bc", 1, STRING_DATA_DYNAMIC, false});
    expectChain<TypeParam>({part.getData()});
}

TYPED_TEST(StringDataTermination, MissingEncodingIsBuiltTerminatedAndKept) {
    using Other = OtherEncoding<TypeParam>;
    for (const bool terminating : {false, true}) {
        const auto buffer = callerBuffer<Other>("abc");
        const String string(buffer.get(), 3, STRING_DATA_EXTERNAL);
        const StringData& record = *string.getData();
        const TypeParam* built = nullptr;
        EXPECT_EQ(allocationsDuring([&] {
                      built = terminating ? record.getTerminatedBuffer<TypeParam>() : record.getBuffer<TypeParam>();
                  }),
                  1u);
        EXPECT_EQ(lastAllocationSize(), 4 * sizeof(TypeParam));
        EXPECT_EQ(narrow(built), "abc");
        this->held(string, {"abc", 0, STRING_DATA_DYNAMIC, true});
        expectChain<TypeParam>({&record});
        EXPECT_EQ(record.getBuffer<TypeParam>(), built);
        EXPECT_EQ(this->terminateCounted(string, 0, 0), built);
        // The buffer that was there has not changed.
        EXPECT_EQ(record.getPrivateBuffer<Other>(), buffer.get());
        expectHeld<Other>(record, {"abc", 0, STRING_DATA_EXTERNAL, false});
    }
}

TYPED_TEST(StringDataTermination, BufferAtHandIsNotTerminatedByAskingForIt) {
    for (const StringAllocationType type : {STRING_DATA_EXTERNAL, STRING_DATA_STATIC}) {
        const auto buffer = callerBuffer<TypeParam>("abc");
        const String string(buffer.get(), 3, type);
        EXPECT_EQ(
            allocationsDuring([&] { EXPECT_EQ(string.getData()->template getBuffer<TypeParam>(), buffer.get()); }), 0u);
        this->held(string, {"abc", 0, type, false});
    }
}

TYPED_TEST(StringDataTermination, RecordWithoutBuffersGivesNone) {
    const String string(StringDataProbe::makeNull());
    EXPECT_EQ(string.getData()->template getBuffer<TypeParam>(), nullptr);
    EXPECT_EQ(this->terminate(string), nullptr);
}

TYPED_TEST(StringDataTermination, BufferOfNoTypeIsNotTerminated) {
    const auto buffer = callerBuffer<TypeParam>("abc");
    const String string(buffer.get(), 3, STRING_DATA_NONE);
    EXPECT_EQ(this->terminate(string), nullptr);
    this->held(string, {"abc", 0, STRING_DATA_NONE, false});
}

// --- Static constant records

constexpr const char* StaticConstFile = "Include/Vorn/String/StringData";
constexpr const char* StaticConstFunction = "Vorn::StringData::getTerminatedBuffer";

TYPED_TEST(StringDataTermination, StaticConstantRecordWithoutBuffersIsRefused) {
    StringData* const record = StringDataProbe::makeStatic(nullptr, nullptr, 0);
    expectRaises<1>([&] { record->getTerminatedBuffer<TypeParam>(); },
                    "buffer || !m_staticConstString : invalid static constant string!!! Both UTF-8 and UTF-16 null "
                    "terminated buffers should already initialised statically!!",
                    StaticConstFunction, StaticConstFile);
    EXPECT_EQ(record->getBuffer<TypeParam>(), nullptr);
    delete record;
}

TYPED_TEST(StringDataTermination, UnterminatedStaticConstantRecordIsRefused) {
    const unsigned char utf8[] = {'a', 0};
    const UTF16Char utf16[] = {'a', 0};
    StringData* const record = StringDataProbe::makeStatic(utf8, utf16, 1);
    StringDataProbe::info<TypeParam>(*record).m_nullTerminated = 0;
    EXPECT_EQ(allocationsDuring([&] { record->getBuffer<TypeParam>(); }), 0u);
    expectRaises<1>([&] { record->getTerminatedBuffer<TypeParam>(); },
                    "!m_staticConstString : invalid static constant string!!! Both UTF-8 and UTF-16 null terminated "
                    "buffers should already initialised statically!!",
                    StaticConstFunction, StaticConstFile);
    expectHeld<TypeParam>(*record, {"a", 0, STRING_DATA_STATIC, false});
    EXPECT_NO_THROW(record->getTerminatedBuffer<OtherEncoding<TypeParam>>());
    delete record;
}

// What is checked comes after what is built: one buffer is enough.
TYPED_TEST(StringDataTermination, StaticConstantRecordWithOneBufferBuildsTheOther) {
    const unsigned char utf8[] = {'a', 0};
    const UTF16Char utf16[] = {'a', 0};
    StringData* const record = sizeof(TypeParam) == 1 ? StringDataProbe::makeStatic(nullptr, utf16, 1)
                                                      : StringDataProbe::makeStatic(utf8, nullptr, 1);
    EXPECT_EQ(narrow(record->getTerminatedBuffer<TypeParam>()), "a");
    expectHeld<TypeParam>(*record, {"a", 0, STRING_DATA_DYNAMIC, true});
    delete record;
}

// --- Broken chains. Each test mends what it broke, so that the records can go.

TYPED_TEST(StringDataTermination, LinkedStaticStringsAreReported) {
    const auto memory = callerBuffer<TypeParam>("abc");
    const String string(memory.get(), 3, STRING_DATA_STATIC);
    const String other(memory.get(), 3, STRING_DATA_STATIC);
    constexpr const char* Function = "Vorn::StringData::nullTerminateStaticString";

    this->info(string).m_next = other.getData();
    expectRaises<2>([&] { this->terminate(string); }, "!getNext<CharType>() : Static strings should not link!",
                    Function);
    this->info(string).m_previous = other.getData(); // is looked at first
    expectRaises<2>([&] { this->terminate(string); }, "!getPrevious<CharType>() : Static strings should not link!",
                    Function);
    this->held(string, {"abc", 0, STRING_DATA_STATIC, false});
}

TYPED_TEST(StringDataTermination, BrokenLinksOfAnExternalRecordAreReported) {
    constexpr const char* Function = "Vorn::StringData::nullTerminateExternalString";
    const String root = dynamicString<TypeParam>("abcdefgh");
    const String last = substringOf<TypeParam>(root, 4, 3);
    const String middle = substringOf<TypeParam>(root, 2, 3);
    const std::size_t live = liveAllocationCount();

    this->info(root).m_next = last.getData();
    {
        expectRaises<2>([&] { this->terminate(middle); },
                        "previous->getNext<CharType>() == this : Invalid string list link!", Function);
        EXPECT_EQ(this->info(root).m_next, last.getData());
        EXPECT_EQ(this->info(middle).m_previous, root.getData());
        EXPECT_EQ(this->info(middle).m_next, last.getData());
        EXPECT_EQ(this->info(last).m_previous, middle.getData());
    }
    this->info(root).m_next = middle.getData();

    // Here the record has left its previous one when the walk stops, and nothing is mended.
    const auto expectHalfWay = [&](const char* message) {
        expectRaises<2>([&] { this->terminate(middle); }, message, Function);
        EXPECT_EQ(this->info(root).m_next, last.getData());
        EXPECT_EQ(this->info(middle).m_previous, nullptr);
        EXPECT_EQ(this->info(middle).m_next, last.getData());
        this->info(root).m_next = middle.getData();
        this->info(middle).m_previous = root.getData();
    };
    this->info(last).m_previous = root.getData();
    this->info(last).m_allocationType = STRING_DATA_DYNAMIC; // the link is looked at first
    expectHalfWay("next->getPrevious<CharType>() == this : Invalid string list link!");
    this->info(last).m_previous = middle.getData();
    expectHalfWay("next->getAllocationType<CharType>() == STRING_DATA_EXTERNAL : Invalid string list link!");
    this->info(last).m_allocationType = STRING_DATA_EXTERNAL;

    EXPECT_EQ(liveAllocationCount(), live);
    this->held(middle, {"cde", 2, STRING_DATA_EXTERNAL, false});
    this->expectDoubleCopy(middle, "cde");
}

TYPED_TEST(StringDataTermination, BrokenLinksOfAnOwnerAreReported) {
    constexpr const char* Function = "Vorn::StringData::nullTerminateDynamicString";
    constexpr const char* BadLink = "next->getPrevious<CharType>() == previous : Invalid string list link!";
    constexpr const char* BadType =
        "next->getAllocationType<CharType>() == STRING_DATA_EXTERNAL : Invalid string list link!";
    String root = dynamicString<TypeParam>("abcdefgh");
    const String last = substringOf<TypeParam>(root, 4, 2);
    const String middle = substringOf<TypeParam>(root, 3, 2);
    const String owner = substringOf<TypeParam>(root, 2, 4);
    root = String();

    this->info(owner).m_previous = last.getData();
    expectRaises<2>([&] { this->terminate(owner); }, "!previous : Dynamic strings should be owned!", Function);
    this->info(owner).m_previous = nullptr;

    for (const String* broken : {&middle, &last}) {
        StringDataBufferInfo& info = this->info(*broken);
        StringData* const previous = info.m_previous;
        info.m_previous = nullptr;
        info.m_allocationType = STRING_DATA_STATIC; // the link is looked at first
        expectRaises<2>([&] { this->terminate(owner); }, BadLink, Function);
        info.m_previous = previous;
        expectRaises<2>([&] { this->terminate(owner); }, BadType, Function);
        info.m_allocationType = STRING_DATA_EXTERNAL;
    }
    this->held(owner, {"cdef", 2, STRING_DATA_DYNAMIC, false});
    this->held(middle, {"de", 3, STRING_DATA_EXTERNAL, false});
    this->held(last, {"ef", 4, STRING_DATA_EXTERNAL, false});
    expectChain<TypeParam>({owner.getData(), middle.getData(), last.getData()});
}

// The chain is only walked as far as it takes to know that the text cannot slide.
TYPED_TEST(StringDataTermination, LinksBehindTheEndOfTheWalkAreNotLookedAt) {
    String root = dynamicString<TypeParam>("abcdefgh");
    const String last = substringOf<TypeParam>(root, 4, 2);
    const String atStart = substringOf<TypeParam>(root, 0, 2);
    const String owner = substringOf<TypeParam>(root, 2, 4);
    const String atStartOwner = substringOf<TypeParam>(root, 0, 4);
    this->info(last).m_previous = nullptr;
    root = String();

    EXPECT_EQ(narrow(this->terminate(atStartOwner)), "abcd"); // at the start of its block: no walk at all
    EXPECT_EQ(narrow(this->terminate(owner)), "cdef");
    this->info(last).m_previous = atStart.getData();
    expectChain<TypeParam>({atStart.getData(), last.getData()});
    this->held(atStart, {"ab", 0, STRING_DATA_DYNAMIC, false});
}

// --- Running out of memory

TYPED_TEST(StringDataTermination, RunningOutOfMemoryChangesNothing) {
    const auto memory = callerBuffer<TypeParam>("abcdefgh");
    const String ofStatic(memory.get(), 8, STRING_DATA_STATIC);
    const String head(memory.get(), 8, STRING_DATA_EXTERNAL);
    const String tail = substringOf<TypeParam>(head, 1, 2);
    const String owner = dynamicString<TypeParam>("abcdefgh");
    const String last = substringOf<TypeParam>(owner, 4, 2);
    const String middle = substringOf<TypeParam>(owner, 3, 2);
    const String otherOnly(newBlock<OtherEncoding<TypeParam>>("abc"), 3, STRING_DATA_DYNAMIC);

    const auto expectUnchanged = [&] {
        this->held(ofStatic, {"abcdefgh", 0, STRING_DATA_STATIC, false});
        this->held(head, {"abcdefgh", 0, STRING_DATA_EXTERNAL, false});
        this->held(tail, {"bc", 1, STRING_DATA_EXTERNAL, false});
        this->held(owner, {"abcdefgh", 0, STRING_DATA_DYNAMIC, false});
        this->held(middle, {"de", 3, STRING_DATA_EXTERNAL, false});
        this->held(last, {"ef", 4, STRING_DATA_EXTERNAL, false});
        expectChain<TypeParam>({ofStatic.getData()});
        expectChain<TypeParam>({head.getData(), tail.getData()});
        expectChain<TypeParam>({owner.getData(), middle.getData(), last.getData()});
        EXPECT_EQ(this->bufferOf(otherOnly), nullptr);
        EXPECT_EQ(otherOnly.getData()->template getBufferInfo<TypeParam>().m_allocationType, STRING_DATA_NONE);
        EXPECT_EQ(otherOnly.getData()->template getBufferInfo<TypeParam>().m_length, 0u);
        EXPECT_EQ(otherOnly.getData()->template getBufferInfo<TypeParam>().m_nullTerminated, 0u);
    };
    for (const String* string : {&ofStatic, &head, &tail, &owner, &middle, &last, &otherOnly}) {
        const std::size_t live = liveAllocationCount();
        failAllocation(1);
        EXPECT_THROW(this->terminate(*string), std::bad_alloc);
        failAllocation(0);
        EXPECT_EQ(liveAllocationCount(), live);
        expectUnchanged();
    }
    for (const String* string : {&head, &owner}) {
        const std::size_t live = liveAllocationCount();
        failAllocation(1);
        EXPECT_THROW(string->getData()->template substr<TypeParam>(1, 2), std::bad_alloc);
        failAllocation(0);
        EXPECT_EQ(liveAllocationCount(), live);
        expectUnchanged();
    }
    EXPECT_EQ(narrow(this->terminate(middle)), "de");
    expectChain<TypeParam>({owner.getData(), last.getData()});
    EXPECT_EQ(narrow(this->terminate(owner)), "abcdefgh");
    expectChain<TypeParam>({last.getData()});
}

// A text that is followed by U+0000 becomes terminated when the texts move.
TEST(StringDataTerminationUTF16, SlideLooksAtTheUnitBehindEachText) {
    String root(newBlock<UTF16Char>(std::string_view("abc\0de", 6)), 6, STRING_DATA_DYNAMIC);
    const String beforeNull = substringOf<UTF16Char>(root, 2, 1);
    const String owner = substringOf<UTF16Char>(root, 1, 4);
    root = String();
    expectHeld<UTF16Char>(*beforeNull.getData(), {"c", 2, STRING_DATA_EXTERNAL, false});
    EXPECT_EQ(allocationsDuring([&] { owner.getData()->getTerminatedBuffer<UTF16Char>(); }), 0u);
    expectHeld<UTF16Char>(*owner.getData(), {std::string("bc\0d", 4), 0, STRING_DATA_DYNAMIC, true});
    expectHeld<UTF16Char>(*beforeNull.getData(), {"c", 1, STRING_DATA_EXTERNAL, true});
}

} // namespace
