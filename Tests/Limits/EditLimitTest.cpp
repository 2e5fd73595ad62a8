// Edits whose result would be too long, and edits of the longest texts.
#include "Limits/LimitSupport.h"

#include <climits>
#include <functional>

namespace limits {
namespace {

using EditLimit = LimitTest;

constexpr unsigned int CODE = 0x4E00; // of three bytes

// A string over `left` bytes is edited; what is brought in has `incoming` bytes where it is a text.
struct RefusedEdit {
    const char* name;
    std::uint64_t left;
    std::uint64_t incoming;
    std::function<void(UTF8String&, const String&)> run;
    const char* function;
};

TEST_F(EditLimit, TooLong) {
    const char* const append = "Vorn::UTF8String::append";
    const char* const insert = "Vorn::UTF8String::insert";
    const char* const replace = "Vorn::UTF8String::replace";
    const char* const decimal = "Vorn::UTF8String::appendDecimal";
    const char* const hexadecimal = "Vorn::UTF8String::appendHexaDecimal";
    const auto appendText = [](UTF8String& s, const String& text) { s.append(text); };
    const auto insertAtEnd = [](UTF8String& s, const String& text) { s.insert(text, -1); };
    const auto insertAtStart = [](UTF8String& s, const String& text) { s.insert(text, 0); };
    const auto replaceNothing = [](UTF8String& s, const String& text) { s.replace(text, INT_MAX, 9); };
    const auto replaceTwo = [](UTF8String& s, const String& text) { s.replace(text, 5, 2); };
    const RefusedEdit rows[] = {
        {"a byte to the longest", LONGEST, 1, [](UTF8String& s, const String&) { s.append('a'); }, append},
        {"U+0000 at the limit", LONGEST - 1, 1, [](UTF8String& s, const String&) { s.append(0u); }, append},
        {"a character at the limit", LONGEST - 2, 1, [](UTF8String& s, const String&) { s.append(CODE); }, append},
        {"a text to the longest", LONGEST, 1, appendText, append},
        {"the longest to a byte", 1, LONGEST, appendText, append},
        {"sum 2^32 - 1", LARGEST_INT, HALF, appendText, append},
        {"sum 2^32", HALF, HALF, appendText, append},
        {"sum 2^33 - 4", LONGEST, LONGEST, appendText, append},
        {"a digit to the longest", LONGEST, 1, [](UTF8String& s, const String&) { s.appendDecimal(7); }, decimal},
        {"digits at the limit", LONGEST - 9, 1, [](UTF8String& s, const String&) { s.appendDecimal(4294967295u); },
         decimal},
        {"hexadecimal digits", LONGEST - 9, 1,
         [](UTF8String& s, const String&) { s.appendHexaDecimal(0xFFFFFFFF, HEX_WITH_PREFIX); }, hexadecimal},
        {"insert at the end, sum 2^32 - 1", LARGEST_INT, HALF, insertAtEnd, insert},
        {"insert at the end, sum 2^32", LARGEST_INT, HALF + 1, insertAtEnd, insert},
        {"insert at the start, the longest", 1, LONGEST, insertAtStart, insert},
        {"replace nothing, sum 2^32 - 1", LARGEST_INT, HALF, replaceNothing, replace},
        {"replace, sum 2^32 - 1", LARGEST_INT, HALF + 2, replaceTwo, replace},
        {"replace, the longest", 8, LONGEST, replaceTwo, replace},
    };
    for (const RefusedEdit& row : rows) {
        SCOPED_TRACE(row.name);
        const LongASCII left(row.left), incoming(row.incoming);
        const String text = incoming.string();
        UTF8String string = left.string();
        const unsigned int count = left.record()->getRefCount();
        expectTooLong([&] { row.run(string, text); }, row.function, EDIT_FILE);
        EXPECT_EQ(string.getData(), left.record());
        EXPECT_EQ(left.record()->getRefCount(), count);
        EXPECT_EQ(left.record()->getUTF8Length(), row.left);
        EXPECT_EQ(incoming.record()->getRefCount(), 1u);
    }
}

// An index as a signed number cannot denote every place of such a text.
TEST_F(EditLimit, InsertAndReplaceRefuseTextsOf2GiB) {
    const char* const function = "Vorn::UTF8String::assertValidInsertIndex";
    for (const std::uint64_t length : {HALF, LONGEST}) {
        SCOPED_TRACE(std::to_string(length) + " bytes");
        const LongASCII text(length);
        UTF8String string = text.string();
        for (int index : {0, -1, INT_MAX, INT_MIN}) {
            expectRaises<4>([&] { string.insert('a', index); }, "Invalid index!", function, EDIT_FILE);
            expectRaises<4>([&] { string.insert(String("a"), index); }, "Invalid index!", function, EDIT_FILE);
            expectRaises<4>([&] { string.replace('a', index, 1); }, "Invalid index!", function, EDIT_FILE);
            expectRaises<4>([&] { string.replace(String("a"), index, 1); }, "Invalid index!", function, EDIT_FILE);
            expectRaises<4>([&] { string.assertValidInsertIndex(index); }, "Invalid index!", function, EDIT_FILE);
        }
        EXPECT_EQ(string.getData(), text.record());
    }
    const LongASCII text(LARGEST_INT);
    int index = INT_MIN;
    EXPECT_EQ(text.string().assertValidInsertIndex(index), LARGEST_INT);
    EXPECT_EQ(index, INT_MAX);
}

TEST_F(EditLimit, Reserve) {
    for (const std::uint64_t length : {LARGEST_INT, HALF, LONGEST}) {
        SCOPED_TRACE(std::to_string(length) + " bytes");
        UTF8String string("text", 4, STRING_DATA_STATIC);
        EXPECT_EQ(string.reserve(static_cast<unsigned int>(length)), length);
        EXPECT_STREQ(string.getCString(), "text");
        expectTooLong([&] { string.reserve(0xFFFFFFFF); }, "Vorn::UTF8String::reserve", EDIT_FILE);
        EXPECT_STREQ(string.getCString(), "text");
    }
}

// One string goes from 0xFFFFFFFD bytes to the limit and through every edit that a text of that length takes.
TEST_F(EditLimit, EditsOfTheLongest) {
    const LongASCII source(LONGEST - 1);
    UTF8String string = source.string();
    string.append('b');
    ASSERT_EQ(string.getLength(), LONGEST);
    EXPECT_NE(string.getData(), source.record());
    EXPECT_TRUE(string.getData()->getBufferInfo<unsigned char>().m_nullTerminated);
    const unsigned char* const bytes = string.getBuffer();
    EXPECT_EQ(bytes[0], 'a');
    EXPECT_EQ(bytes[LONGEST - 2], 'a');
    EXPECT_EQ(bytes[LONGEST - 1], 'b');
    EXPECT_EQ(bytes[LONGEST], 0);

    const String letter("c");
    expectTooLong([&] { string.append('c'); }, "Vorn::UTF8String::append", EDIT_FILE);
    expectTooLong([&] { string.append(letter); }, "Vorn::UTF8String::append", EDIT_FILE);
    expectTooLong([&] { string.appendDecimal(1); }, "Vorn::UTF8String::appendDecimal", EDIT_FILE);
    EXPECT_EQ(string.getBuffer(), bytes);
    EXPECT_EQ(string.getLength(), LONGEST);
    EXPECT_EQ(bytes[LONGEST - 1], 'b');

    string.erase(-2, 1); // the last 'a'
    ASSERT_EQ(string.getLength(), LONGEST - 1);
    EXPECT_EQ(bytes[LONGEST - 2], 'b');
    EXPECT_EQ(bytes[LONGEST - 1], 0);
    string.erase(INT_MIN, 0x7FFFFFFF); // all but the last of 2^31 bytes
    ASSERT_EQ(string.getLength(), LARGEST_INT - 1);
    EXPECT_EQ(bytes[LARGEST_INT - 2], 'b');
    EXPECT_EQ(bytes[LARGEST_INT - 1], 0);
    EXPECT_EQ(string.getBuffer(), bytes) << "no edit but the first allocates";
    expectRaises<4>([&] { string.erase(INT_MIN, 1); }, "Invalid index!", "Vorn::UTF8String::erase", EDIT_FILE);
    expectRaises<4>([&] { string.erase(INT_MAX, 1); }, "Invalid index!", "Vorn::UTF8String::erase", EDIT_FILE);
    string.erase(1, 0xFFFFFFFF);
    EXPECT_STREQ(string.getCString(), "a");
}

} // namespace
} // namespace limits
