#include "Vorn/String/String.h"

#include "Support/AllocationCounter.h"
#include "Support/ExpectedLeak.h"
#include "Support/Report.h"
#include "Support/StringDataProbe.h"
#include "Support/Texts.h"
#include "Vorn/ExceptionString.h"

#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

namespace {

using namespace Vorn;
using VornPrivate::StringDataProbe;

static_assert(sizeof(String) == 2 * sizeof(void*) && std::has_virtual_destructor_v<String>);

// What a static initialiser of another module finds before main.
struct BeforeMain {
    bool emptyIsReady;
    bool emptyIsEmpty;
    std::string cString;
    unsigned int charset;
    String kept;
    String shared;

    BeforeMain()
        : emptyIsReady(String::s_emptyString.isNotNull() && StringData::s_emptyString.getBuffer<UTF16Char>()),
          emptyIsEmpty(String::s_emptyString.isEmpty() && StringData::s_emptyString.isEmpty()),
          cString(String::s_emptyString.getCString()),
          charset(static_cast<unsigned int>(String::getEmptyString().getCharset())), kept("text", 4),
          shared(String::s_emptyString) {}
};
const BeforeMain beforeMain;

// Handles that go with the program, behind the library's own.
String outlivesMain(String::getEmptyString());

TEST(String, WorksBeforeMain) {
    EXPECT_TRUE(beforeMain.emptyIsReady);
    EXPECT_TRUE(beforeMain.emptyIsEmpty);
    EXPECT_EQ(beforeMain.cString, "");
    EXPECT_EQ(beforeMain.charset, 1u);
    EXPECT_STREQ(beforeMain.kept.getCString(), "text");
    EXPECT_EQ(beforeMain.shared.getData(), String::s_emptyString.getData());
    EXPECT_EQ(outlivesMain.getData(), String::s_emptyString.getData());
}

TEST(String, DefaultIsNullAndEmpty) {
    const String string;
    EXPECT_EQ(string.getData(), nullptr);
    EXPECT_TRUE(string.isNull());
    EXPECT_FALSE(string.isNotNull());
    EXPECT_TRUE(string.isEmpty());
    EXPECT_FALSE(string.haveEmbeddedNulls());
    EXPECT_EQ(string.getCharset(), STRING_DATA_ASCII);
    std::string text = "old";
    string.copyTo(text);
    EXPECT_EQ(text, "");
    EXPECT_EQ(String::getNullString().getData(), nullptr);
}

TEST(String, CStringOfANullStringIsAnEmptyText) {
    const char* const text = String().getCString();
    ASSERT_NE(text, nullptr);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(String::getNullString().getCString(), text); // static: it outlives the handle
}

TEST(String, EmptyStringIsNotNull) {
    const String& empty = String::s_emptyString;
    EXPECT_TRUE(empty.isNotNull());
    EXPECT_FALSE(empty.isNull());
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_EQ(empty.getCharset(), STRING_DATA_ASCII);
    EXPECT_NE(empty.getData(), &StringData::s_emptyString); // a record of its own
    EXPECT_STREQ(empty.getCString(), "");
    EXPECT_EQ(empty.getData()->getBufferInfo<unsigned char>().m_nullTerminated, 1u);
    EXPECT_EQ(empty.getData()->getBufferInfo<UTF16Char>().m_nullTerminated, 1u);
    EXPECT_EQ(empty.getData()->getAllocationType<unsigned char>(), STRING_DATA_STATIC);
    EXPECT_EQ(empty.getData()->getAllocationType<UTF16Char>(), STRING_DATA_STATIC);
    EXPECT_EQ(*empty.getData()->getBuffer<unsigned char>(), 0);
    EXPECT_EQ(*empty.getData()->getBuffer<UTF16Char>(), 0);
}

TEST(String, EmptyStringIsCountedByItsHandles) {
    const StringData* const record = String::s_emptyString.getData();
    const unsigned int before = record->getRefCount();
    EXPECT_EQ(before, 3u); // s_emptyString itself, beforeMain.shared, outlivesMain
    {
        const String handle = String::getEmptyString();
        EXPECT_EQ(handle.getData(), record);
        EXPECT_EQ(record->getRefCount(), before + 1);
    }
    EXPECT_EQ(record->getRefCount(), before);
}

TEST(String, HandleOnARecordWithoutBuffersIsNull) {
    const std::size_t live = liveAllocationCount();
    {
        const String string(StringDataProbe::makeNull());
        EXPECT_NE(string.getData(), nullptr);
        EXPECT_TRUE(string.isNull());
        EXPECT_FALSE(string.isNotNull());
        EXPECT_TRUE(string.isEmpty());
        std::string text = "old";
        string.copyTo(text);
        EXPECT_EQ(text, "");
    }
    EXPECT_EQ(liveAllocationCount(), live);
}

TEST(String, CopiesShareTheRecord) {
    const auto buffer = callerBuffer<unsigned char>("abc");
    const String first(buffer.get(), 3, STRING_DATA_EXTERNAL);
    EXPECT_EQ(first.getData()->getRefCount(), 1u);
    {
        String second = String();
        EXPECT_EQ(allocationsDuring([&] {
                      const String copy(first);
                      EXPECT_EQ(copy.getData(), first.getData());
                      EXPECT_EQ(first.getData()->getRefCount(), 2u);
                      second = copy;
                  }),
                  0u);
        EXPECT_EQ(second.getData(), first.getData());
        EXPECT_EQ(first.getData()->getRefCount(), 2u);
    }
    EXPECT_EQ(first.getData()->getRefCount(), 1u);
    const String ofNull{String()};
    EXPECT_TRUE(ofNull.isNull());
}

TEST(String, AcquiresAReferenceToARecord) {
    const std::size_t live = liveAllocationCount();
    {
        const auto buffer = callerBuffer<UTF16Char>("abc");
        auto* const record = new StringData(buffer.get(), 3, STRING_DATA_EXTERNAL);
        const String string(record);
        EXPECT_EQ(string.getData(), record);
        EXPECT_EQ(record->getRefCount(), 1u);
        const auto second = std::make_unique<String>(record);
        EXPECT_EQ(record->getRefCount(), 2u);
    }
    EXPECT_EQ(liveAllocationCount(), live);
    EXPECT_TRUE(String(static_cast<StringData*>(nullptr)).isNull());
}

TEST(String, AssignmentSharesAndReleases) {
    const std::size_t live = liveAllocationCount();
    {
        String first(newBlock<unsigned char>("abc"), 3, STRING_DATA_DYNAMIC);
        const String second(newBlock<unsigned char>("xyz"), 3, STRING_DATA_DYNAMIC);
        String& self = first = second;
        EXPECT_EQ(&self, &first);
        EXPECT_EQ(liveAllocationCount(), live + 2); // the old record and its block are freed
        EXPECT_EQ(first.getData(), second.getData());
        EXPECT_EQ(second.getData()->getRefCount(), 2u);

        first = second; // the same record: nothing happens
        EXPECT_EQ(second.getData()->getRefCount(), 2u);

        first = String();
        EXPECT_TRUE(first.isNull());
        EXPECT_EQ(second.getData()->getRefCount(), 1u);
        first = second;
        EXPECT_EQ(second.getData()->getRefCount(), 2u);
    }
    EXPECT_EQ(liveAllocationCount(), live);
}

TEST(String, SelfAssignmentChangesNothing) {
    String string(newBlock<unsigned char>("abc"), 3, STRING_DATA_DYNAMIC);
    const String& same = string;
    StringData* const record = string.getData();
    string = same;
    EXPECT_EQ(string.getData(), record);
    EXPECT_EQ(record->getRefCount(), 1u);
    EXPECT_STREQ(string.getCString(), "abc");

    String null;
    const String& sameNull = null;
    null = sameNull;
    EXPECT_TRUE(null.isNull());
}

// Every constructor of one encoding, called with the same text.
template <class Pointer>
class StringConstructors : public testing::Test {};

using Pointers = testing::Types<char, unsigned char, UTF16Char>;
TYPED_TEST_SUITE(StringConstructors, Pointers, );

template <class Pointer>
using Stored = std::conditional_t<sizeof(Pointer) == 1, unsigned char, UTF16Char>;

template <class Pointer>
void expectRecord(const String& string, const Pointer* buffer, unsigned int length, StringAllocationType type,
                  bool terminated) {
    ASSERT_NE(string.getData(), nullptr);
    const StringData& record = *string.getData();
    EXPECT_EQ(record.getRefCount(), 1u);
    EXPECT_EQ(reinterpret_cast<const Pointer*>(record.getPrivateBuffer<Stored<Pointer>>()), buffer);
    const StringDataBufferInfo& info = record.getBufferInfo<Stored<Pointer>>();
    EXPECT_EQ(info.m_length, length);
    EXPECT_EQ(info.m_allocationType, type);
    EXPECT_EQ(info.m_nullTerminated, terminated ? 1u : 0u);
    EXPECT_EQ(record.getPrivateBuffer<OtherEncoding<Stored<Pointer>>>(), nullptr);
    EXPECT_EQ(string.isEmpty(), length == 0);
    EXPECT_TRUE(string.isNotNull());
}

TYPED_TEST(StringConstructors, TakeLengthAndTypeAsTheRecordDoes) {
    const auto buffer = callerBuffer<TypeParam>(std::string_view("abc\0", 4));
    const TypeParam* const text = buffer.get();
    expectRecord(String(text, 4, STRING_DATA_STATIC), text, 3, STRING_DATA_STATIC, true);
    expectRecord(String(text, 3, STRING_DATA_EXTERNAL), text, 3, STRING_DATA_EXTERNAL, false);
    expectRecord(String(text, 0, STRING_DATA_EXTERNAL), text, 0, STRING_DATA_EXTERNAL, false);
    expectRecord(String(text, NPOS, STRING_DATA_STATIC), text, 3, STRING_DATA_STATIC, true);
    expectRecord(String(text, 2), text, 2, STRING_DATA_EXTERNAL, false);
    expectRecord(String(text), text, 3, STRING_DATA_EXTERNAL, true);
    EXPECT_EQ(allocationsDuring([&] { const String string(text); }), 1u);

    TypeParam* const block = newBlock<TypeParam>("xyz");
    const std::size_t live = liveAllocationCount();
    { expectRecord(String(block, 3, STRING_DATA_DYNAMIC), block, 3, STRING_DATA_DYNAMIC, false); }
    EXPECT_EQ(liveAllocationCount(), live - 1);
}

TYPED_TEST(StringConstructors, FlagCountsTheTerminatorIn) {
    const auto buffer = callerBuffer<TypeParam>(std::string_view("abc\0", 4));
    const TypeParam* const text = buffer.get();
    expectRecord(String(text, 3, STRING_DATA_STATIC, true), text, 3, STRING_DATA_STATIC, true);
    expectRecord(String(text, 3, STRING_DATA_STATIC, false), text, 3, STRING_DATA_STATIC, false);
    expectRecord(String(text, 4, STRING_DATA_EXTERNAL, false), text, 3, STRING_DATA_EXTERNAL, true);
    expectRecord(String(text, 2, STRING_DATA_EXTERNAL, true), text, 3, STRING_DATA_EXTERNAL, false); // no zero there
    expectRecord(String(text + 3, 0, STRING_DATA_EXTERNAL, true), text + 3, 0, STRING_DATA_EXTERNAL, true);
    expectRecord(String(text, NPOS, STRING_DATA_EXTERNAL, false), text, 3, STRING_DATA_EXTERNAL, true);
    // The addition wraps to a length of 0.
    expectRecord(String(text, NPOS, STRING_DATA_EXTERNAL, true), text, 0, STRING_DATA_EXTERNAL, false);
}

TYPED_TEST(StringConstructors, NullBufferIsRefusedAndNothingLeaks) {
    const TypeParam* const none = nullptr;
    const std::size_t live = liveAllocationCount();
    for (const unsigned int length : {0u, 1u, 7u, NPOS}) {
        expectRaises<4>([&] { String(none, length, STRING_DATA_EXTERNAL); }, "buffer must not be null!!!!",
                        "Vorn::StringData::initialise");
        expectRaises<4>([&] { String(none, length, STRING_DATA_DYNAMIC, true); }, "buffer must not be null!!!!",
                        "Vorn::StringData::initialise");
        expectRaises<4>([&] { String(none, length, STRING_DATA_STATIC, false); }, "buffer must not be null!!!!",
                        "Vorn::StringData::initialise");
    }
    EXPECT_EQ(liveAllocationCount(), live);
}

TYPED_TEST(StringConstructors, BadTextIsRefusedAndTheBufferStaysWithTheCaller) {
    TypeParam bad[] = {'a', 'b', 'c', 0};
    if constexpr (sizeof(TypeParam) == 1)
        bad[2] = static_cast<TypeParam>(0x80);
    else
        bad[2] = 0xDC00;
    TypeParam* const block = newBlock(std::vector<TypeParam>(bad, bad + 4));
    const std::size_t live = liveAllocationCount();
    const char* const message =
        sizeof(TypeParam) == 1 ? "Unmatched trail UTF-8 byte detected!" : "Unmatched second surrogate code!";
    for (const StringAllocationType type : {STRING_DATA_EXTERNAL, STRING_DATA_STATIC, STRING_DATA_DYNAMIC}) {
        expectRaises<7>([&] { String(block, 4, type); }, message, "stringDataBufferScan",
                        "Source/Vorn/StringDataHelper");
        expectRaises<7>([&] { String(block, 3, type, true); }, message, "stringDataBufferScan");
        expectRaises<7>([&] { String(block, NPOS, type); }, message, "stringDataBufferScan");
    }
    EXPECT_EQ(liveAllocationCount(), live);
    EXPECT_TRUE(std::equal(bad, bad + 4, block));
    delete[] block;
}

TEST(StringFromStandardString, EmptySharesTheEmptyRecord) {
    const unsigned int before = String::s_emptyString.getData()->getRefCount();
    EXPECT_EQ(allocationsDuring([&] {
                  const String string{std::string()};
                  EXPECT_EQ(string.getData(), String::s_emptyString.getData());
                  EXPECT_EQ(string.getData()->getRefCount(), before + 1);
              }),
              0u);
    EXPECT_EQ(String::s_emptyString.getData()->getRefCount(), before);
}

TEST(StringFromStandardString, CopiesIntoABlockThatIsNeverFreed) {
    const std::size_t live = liveAllocationCount();
    const unsigned char* block = nullptr;
    {
        std::string source = "a\xC3\xA9z";
        const ExpectedLeak leak;
        const String string(source);
        source = "gone";
        const StringDataBufferInfo& info = string.getData()->getBufferInfo<unsigned char>();
        block = string.getData()->getPrivateBuffer<unsigned char>();
        EXPECT_EQ(info.m_length, 4u);
        EXPECT_EQ(info.m_allocationType, STRING_DATA_EXTERNAL);
        EXPECT_EQ(info.m_nullTerminated, 1u);
        EXPECT_EQ(string.getCharset(), STRING_DATA_UCS2);
        EXPECT_STREQ(string.getCString(), "a\xC3\xA9z");
        EXPECT_EQ(liveArraySize(block), 5u); // text and terminator
        EXPECT_EQ(liveAllocationCount(), live + 2);
    }
    EXPECT_EQ(liveAllocationCount(), live + 1);
    EXPECT_EQ(liveArraySize(block), 5u);
    EXPECT_EQ(std::memcmp(block, "a\xC3\xA9z", 5), 0);
}

TEST(StringFromStandardString, BadTextIsRefused) {
    static const struct {
        const char* name;
        std::string text;
        const char* message;
    } rows[] = {
        {"trail", "a\x80", "Unmatched trail UTF-8 byte detected!"},
        {"zero byte inside", std::string("a\0b", 3),
         "ASCII null detected! This implementation does not support ASCII null, please use the sequence 0xC0 0x80 to "
         "represent null."},
        // The length includes the terminator, so that only one zero is removed.
        {"zero byte at the end", std::string("a\0", 2),
         "ASCII null detected! This implementation does not support ASCII null, please use the sequence 0xC0 0x80 to "
         "represent null."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::size_t live = liveAllocationCount();
        expectRaises<7>([&] { const String string(row.text); }, row.message, "stringDataBufferScan");
        EXPECT_EQ(liveAllocationCount(), live);
    }
}

TEST(String, AnswersAsItsRecord) {
    const UTF16Char units[] = {'a', 0, 0x20AC};
    const String string(units, 3, STRING_DATA_STATIC);
    EXPECT_TRUE(string.haveEmbeddedNulls());
    EXPECT_EQ(string.getCharset(), STRING_DATA_UCS2);
    EXPECT_FALSE(string.isEmpty());
    std::string text = "old";
    string.copyTo(text);
    EXPECT_EQ(text, "a\xC0\x80\xE2\x82\xAC");
    EXPECT_EQ(string.getData()->getPrivateBuffer<unsigned char>(), nullptr);
}

TEST(String, CStringBuildsTheUTF8BufferAndKeepsIt) {
    const UTF16Char units[] = {'a', 0x20AC};
    const String string(units, 2, STRING_DATA_STATIC);
    const char* text = nullptr;
    EXPECT_EQ(allocationsDuring([&] { text = string.getCString(); }), 1u);
    EXPECT_STREQ(text, "a\xE2\x82\xAC");
    EXPECT_EQ(reinterpret_cast<const char*>(string.getData()->getPrivateBuffer<unsigned char>()), text);
    EXPECT_EQ(allocationsDuring([&] { EXPECT_EQ(string.getCString(), text); }), 0u);
}

TEST(String, CStringOfATerminatedTextIsTheTextItself) {
    const char* const text = "abc";
    const String string(text);
    EXPECT_EQ(allocationsDuring([&] { EXPECT_EQ(string.getCString(), text); }), 0u);
}

TEST(ExceptionStringFromString, CopiesUTF8) {
    const String string("a\xC3\xA9z", 4);
    for (const float any : {0.0f, -7.5f}) {
        EXPECT_EQ(allocationsDuring([&] {
                      const ExceptionString text(string, any);
                      EXPECT_TRUE(text.dynamic());
                      EXPECT_FALSE(text.creating());
                      EXPECT_FALSE(text.isNull());
                      EXPECT_EQ(text.refCount(), 1);
                      EXPECT_EQ(text.size(), 4);
                      EXPECT_STREQ(text.getString(), "a\xC3\xA9z");
                  }),
                  1u);
    }
    EXPECT_EQ(lastAllocationSize(), 9u);
}

TEST(ExceptionStringFromString, OutlivesTheString) {
    auto string = std::make_unique<String>(newBlock<unsigned char>("abc"), 3u, STRING_DATA_DYNAMIC);
    const ExceptionString text(*string, 0.0f);
    string.reset();
    EXPECT_STREQ(text.getString(), "abc");
}

TEST(ExceptionStringFromString, ConvertsUTF16StraightIntoTheBlock) {
    const UTF16Char units[] = {'a', 0xE9, 0x20AC};
    const UTF16Char pair[] = {0xD801, 0xDC37};
    const String string(units, 3, STRING_DATA_STATIC);
    const String withPair(pair, 2, STRING_DATA_STATIC);
    EXPECT_EQ(allocationsDuring([&] {
                  const ExceptionString text(string, 0.0f);
                  EXPECT_EQ(text.size(), 6);
                  EXPECT_STREQ(text.getString(), "a\xC3\xA9\xE2\x82\xAC");
              }),
              1u);
    EXPECT_EQ(string.getData()->getPrivateBuffer<unsigned char>(), nullptr);
    EXPECT_STREQ(ExceptionString(withPair, 0.0f).getString(), "\xF0\x90\x90\xB7");
}

TEST(ExceptionStringFromString, NullAndEmptyStringsGiveADynamicEmptyText) {
    const UTF16Char nothing[] = {0};
    const String strings[] = {String(), String::getEmptyString(), String(nothing, 1), String("", 0),
                              String(StringDataProbe::makeNull())};
    for (const String& string : strings) {
        const ExceptionString text(string, 0.0f);
        EXPECT_TRUE(text.dynamic());
        EXPECT_FALSE(text.isNull());
        EXPECT_FALSE(text.creating());
        EXPECT_EQ(text.size(), 0);
        EXPECT_EQ(text.refCount(), 1);
        EXPECT_STREQ(text.getString(), "");
    }
}

// The measure counts U+0000 once where the conversion writes two bytes.
TEST(ExceptionStringFromString, NullCharacterFailsUnlessItIsTheLast) {
    const UTF16Char units[] = {'a', 0, 'b'};
    const std::size_t live = liveAllocationCount();
    {
        const String inside(units, 3, STRING_DATA_STATIC);
        expectRaises<2>([&] { const ExceptionString text(inside, 0.0f); },
                        "j < destLength : destination buffer too short!", "Vorn::stringDataConvertToUTF8FromUCS2");
    }
    EXPECT_EQ(liveAllocationCount(), live);

    const UTF16Char last[] = {'a', 0, 0};
    const ExceptionString text(String(last, 3, STRING_DATA_STATIC), 0.0f);
    EXPECT_EQ(text.size(), 2);
    EXPECT_EQ(std::memcmp(text.getString(), "a\xC0\0", 3), 0);
}

// The last character begins on the last byte that was measured, and is written behind it.
TEST(ExceptionStringFromString, CharacterBehindNullsStaysInTheBlock) {
    const UTF16Char units[] = {0, 0, 0x20AC};
    const ExceptionString text(String(units, 3, STRING_DATA_STATIC), 0.0f);
    EXPECT_EQ(text.size(), 5);
    EXPECT_EQ(std::memcmp(text.getString(), "\xC0\x80\xC0\x80\xE2\0", 6), 0);
    EXPECT_GE(lastAllocationSize(), sizeof(int) + 7); // the count and all that was written
}

} // namespace
