// Positions and questions in long texts.
#include "Limits/LimitSupport.h"

#include "Support/Outcome.h"

#include "Vorn/String/Interop.h"

#include <climits>

namespace limits {
namespace {

using SearchLimit = LimitTest;

constexpr unsigned int NOT_FOUND = 0xFFFFFFFF;

// What an index denotes, in plain 64-bit numbers: an offset, or nothing.
struct Position {
    std::int64_t offset;
    bool isInside;
};

Position positionOf(int index, std::uint64_t length) {
    const std::int64_t offset = index < 0 ? std::int64_t(length) + index : index;
    return {offset, offset >= 0 && offset < std::int64_t(length)};
}

TEST_F(SearchLimit, EverySearchAtEveryIndex) {
    for (const std::uint64_t length : {LARGEST_INT, HALF, HALF + 1, LONGEST}) {
        const LongASCII text(length);
        const UTF8String string = text.string();
        const ASCIITable table(reinterpret_cast<const signed char*>("b"));
        for (const int index : {0, 1, INT_MAX - 1, INT_MAX, -1, -2, INT_MIN + 1, INT_MIN}) {
            SCOPED_TRACE(std::to_string(length) + " bytes, index " + std::to_string(index));
            const Position position = positionOf(index, length);
            if (!position.isInside) {
                const auto refuses = [&](auto&& run, const char* function) {
                    expectRaises<4>(run, "Invalid index!", function, EDIT_FILE);
                };
                refuses([&] { string.find('a', index); }, "Vorn::UTF8String::find");
                refuses([&] { string.skip('a', index); }, "Vorn::UTF8String::skip");
                refuses([&] { string.match("a", index); }, "Vorn::UTF8String::match");
                int moved = index;
                refuses([&] { string.getTerminatedBuffer(moved); }, "Vorn::UTF8String::getTerminatedBuffer");
                EXPECT_EQ(moved, position.offset) << "the index as far as it was resolved";
                continue;
            }
            const auto offset = static_cast<unsigned int>(position.offset);
            EXPECT_EQ(string.find('a', index), offset);
            EXPECT_EQ(string.find("aa", index), offset == length - 1 ? length : offset);
            EXPECT_EQ(string.match("a", index), offset);
            EXPECT_EQ(string.match("b", index), NOT_FOUND);
            EXPECT_EQ(string.match(table, index), NOT_FOUND);
            EXPECT_EQ(string.skip('b', index), offset);
            EXPECT_EQ(string.skip("b", index), offset);
            EXPECT_EQ(string.get(static_cast<unsigned int>(index)), 'a');

            int moved = index;
            if (position.offset <= INT_MAX) {
                EXPECT_EQ(string.getTerminatedBuffer(moved), text.bytes() + position.offset);
                EXPECT_EQ(moved, position.offset);
            } else {
                expectRaises<4>([&] { string.getTerminatedBuffer(moved); }, "Invalid index!",
                                "Vorn::UTF8String::getTerminatedBuffer", EDIT_FILE);
                EXPECT_EQ(moved, index) << "an offset that does not fit";
            }
        }
    }
}

TEST_F(SearchLimit, SearchesThatCrossTheWholeText) {
    for (const std::uint64_t length : {LARGEST_INT, HALF, LONGEST}) {
        SCOPED_TRACE(std::to_string(length) + " bytes");
        const LongASCII text(length);
        const UTF8String string = text.string();
        EXPECT_EQ(string.find('b'), length) << "a miss";
        text.bytes()[length - 2] = 'b';
        text.bytes()[length - 1] = 'c';
        EXPECT_EQ(string.find('b'), length - 2);
        EXPECT_EQ(string.find("bc"), length - 2);
        EXPECT_EQ(string.find('c', -1), length - 1);
        EXPECT_EQ(string.find('b', -1), length);
        EXPECT_EQ(string.find(String("c"), -2), length - 1);
        EXPECT_EQ(string.match("bc", -2), length - 2);
        EXPECT_EQ(string.skip('b', -2), length - 1);
        EXPECT_EQ(string.skip("bc", -2), length);
        const ASCIITable table(reinterpret_cast<const signed char*>("c"));
        EXPECT_EQ(string.find(table, -2), length - 1);
        EXPECT_EQ(string.skip(table, -1), length);
        EXPECT_EQ(string.match(table, -1), length - 1);
    }
}

TEST_F(SearchLimit, SkippingTheWholeText) {
    const LongASCII text(LONGEST);
    text.bytes()[LONGEST - 1] = 'c';
    EXPECT_EQ(text.string().skip('a'), LONGEST - 1);
}

TEST_F(SearchLimit, Steps) {
    const LongASCII text(LONGEST);
    const UTF8String string = text.string();
    for (const std::uint64_t index : {LARGEST_INT, HALF, LONGEST - 1}) {
        SCOPED_TRACE("index " + std::to_string(index));
        const auto i = static_cast<unsigned int>(index);
        EXPECT_EQ(string.next(i), i + 1);
        EXPECT_EQ(string.previous(i), i - 1);
    }
    EXPECT_EQ(string.next(0xFFFFFFFE), LONGEST);
    EXPECT_EQ(string.next(0xFFFFFFFF), LONGEST);
    EXPECT_EQ(string.previous(0xFFFFFFFE), LONGEST - 1);
    EXPECT_EQ(string.previous(0xFFFFFFFF), LONGEST - 1);
    EXPECT_EQ(string.getLength(), LONGEST);
    EXPECT_EQ(view(string).size(), LONGEST);
}

template <class CharType>
void checkQueries(CharType* units, const StringData& record, std::uint64_t length) {
    units[length - 1] = 'z';
    EXPECT_EQ(record.count('a'), length - 1);
    EXPECT_EQ(record.count('z'), 1u);
    EXPECT_EQ(record.getUnicodeLength(), length);
    for (const int index : {0, INT_MAX, -1, -2, INT_MIN}) {
        SCOPED_TRACE("index " + std::to_string(index));
        const Position position = positionOf(index, length);
        const unsigned int inside = position.offset == std::int64_t(length) - 1 ? 'z' : 'a';
        EXPECT_EQ(record.getUnicodeCharAt(index), position.isInside ? inside : NOT_FOUND);
    }
    const auto* const needle = reinterpret_cast<const signed char*>("az");
    EXPECT_FALSE(record.endsWith(needle)) << "true if the text does not end with the needle";
    EXPECT_FALSE(record.equals(needle));
    EXPECT_FALSE(record.startsWith(needle));
    units[length - 1] = 'a';
}

TEST_F(SearchLimit, QueriesInUTF8) {
    for (const std::uint64_t length : {HALF, LONGEST}) {
        SCOPED_TRACE(std::to_string(length) + " bytes");
        const LongASCII text(length);
        checkQueries(text.bytes(), *text.record(), length);
    }
}

TEST_F(SearchLimit, QueriesInUTF16) {
    const LongWide text(u"a", LONGEST, STRING_DATA_ASCII);
    checkQueries(text.units(), *text.record(), LONGEST);
}

// A needle of 2^32 + 1 bytes, whose length as 32 bits is 1.
TEST_F(SearchLimit, NeedlesThatAreLongerThanAnyText) {
    const LongText<char> needle("a", LONGEST + 3);
    const auto* const bytes = reinterpret_cast<const signed char*>(needle.units());
    const String text("b", 1, STRING_DATA_STATIC); // not terminated
    EXPECT_FALSE(text.endsWith(bytes)) << "shorter than the needle";
    EXPECT_FALSE(String("a", 1, STRING_DATA_STATIC).contains(bytes));
    EXPECT_FALSE(String("a", 1, STRING_DATA_STATIC).equals(bytes));
    const UTF8String string("aaa");
    EXPECT_EQ(string.find(needle.units()), 3u);
    EXPECT_EQ(string.match(needle.units()), NOT_FOUND);
    EXPECT_EQ(string.skip(needle.units()), 0u);
}

TEST_F(SearchLimit, Comparison) {
    const LongASCII a(LONGEST), b(LONGEST), shorter(LONGEST - 1);
    EXPECT_TRUE(*a.record() == *b.record());
    EXPECT_FALSE(*a.record() == *shorter.record());
    EXPECT_TRUE(*shorter.record() < *a.record());
    EXPECT_FALSE(*a.record() < *shorter.record());
    b.bytes()[LONGEST - 1] = 'b';
    EXPECT_FALSE(*a.record() == *b.record());
    EXPECT_TRUE(*a.record() < *b.record());
    EXPECT_TRUE(isText(a.string(), std::string_view(reinterpret_cast<char*>(a.bytes()), LONGEST)));
    EXPECT_FALSE(isText(a.string(), std::string_view(reinterpret_cast<char*>(a.bytes()), LONGEST + 1)));
}

TEST_F(SearchLimit, ComparisonAcrossEncodings) {
    const LongASCII bytes(HALF);
    const LongWide units(u"a", HALF, STRING_DATA_ASCII);
    EXPECT_TRUE(*bytes.record() == *units.record());
    units.units()[HALF - 1] = 'b';
    EXPECT_TRUE(*bytes.record() < *units.record());
}

} // namespace
} // namespace limits
