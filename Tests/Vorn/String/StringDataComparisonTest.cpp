#include "Vorn/String/String.h"

#include "Support/Random.h"
#include "Support/StringDataProbe.h"
#include "Support/Texts.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace Vorn;

using Byte = unsigned char;

// What a record holds, read from its fields.
struct Held {
    explicit Held(const StringData& data) : charset(data.getCharset()), nulls(data.haveEmbeddedNulls()) {
        const Byte* const bytes = data.getPrivateBuffer<Byte>();
        const UTF16Char* const units = data.getPrivateBuffer<UTF16Char>();
        hasUTF8 = bytes;
        hasUTF16 = units;
        if (bytes) utf8.assign(bytes, bytes + data.getBufferInfo<Byte>().m_length);
        if (units) utf16.assign(units, units + data.getBufferInfo<UTF16Char>().m_length);
    }

    int charset;
    bool nulls;
    bool hasUTF8;
    bool hasUTF16;
    std::vector<unsigned int> utf8;
    std::vector<unsigned int> utf16;
};

// A character and the position behind it.
struct Step {
    unsigned int code;
    std::size_t end;
};

std::vector<Step> stepsOf8(const std::vector<unsigned int>& bytes) {
    std::vector<Step> steps;
    for (std::size_t i = 0; i < bytes.size();) {
        const std::size_t size = bytes[i] < 0x80 ? 1 : bytes[i] < 0xE0 ? 2 : bytes[i] < 0xF0 ? 3 : 4;
        const unsigned int masks[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
        unsigned int code = bytes[i] & masks[size];
        for (std::size_t k = 1; k < size; ++k) code = code * 64 + (bytes[i + k] & 0x3F);
        i += size;
        steps.push_back({code, i});
    }
    return steps;
}

// With `combine`, a pair gives its code, otherwise 0xFDEF.
std::vector<Step> stepsOf16(const std::vector<unsigned int>& units, bool combine) {
    std::vector<Step> steps;
    for (std::size_t i = 0; i < units.size();) {
        if (units[i] >= 0xD800 && units[i] < 0xDC00) {
            const unsigned int code = 0x10000 + (units[i] - 0xD800) * 1024 + (units[i + 1] - 0xDC00);
            i += 2;
            steps.push_back({combine ? code : 0xFDEF, i});
        } else {
            const bool second = units[i] >= 0xDC00 && units[i] < 0xE000;
            ++i;
            steps.push_back({second ? 0xFDEF : units[i - 1], i});
        }
    }
    return steps;
}

bool referenceEqual(const Held& a, const Held& b) {
    if (a.charset != b.charset) return false;
    if (a.hasUTF8 && b.hasUTF8) return a.utf8 == b.utf8;
    if (a.hasUTF16 && b.hasUTF16) return a.utf16 == b.utf16;
    const auto same = [](const Held& narrow, const Held& wide) {
        const std::vector<Step> left = stepsOf8(narrow.utf8), right = stepsOf16(wide.utf16, true);
        return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                          [](const Step& x, const Step& y) { return x.code == y.code; });
    };
    return a.hasUTF8 ? same(a, b) : same(b, a);
}

std::vector<unsigned int> withNullsAsZeros(std::vector<unsigned int> bytes) {
    for (std::size_t i = 0; i + 1 < bytes.size(); ++i)
        if (bytes[i] == 0xC0 && bytes[i + 1] == 0x80) bytes[i] = bytes[i + 1] = 0;
    return bytes;
}

std::vector<unsigned int> inMemory(const std::vector<unsigned int>& units) {
    std::vector<unsigned int> bytes;
    for (const unsigned int unit : units) {
        bytes.push_back(unit & 0xFF);
        bytes.push_back(unit >> 8);
    }
    return bytes;
}

bool isSurrogate(unsigned int unit) { return unit >= 0xD800 && unit <= 0xDFFF; }

bool referenceLess16(const Held& a, const Held& b) {
    if (a.charset != 3 && b.charset != 3) return inMemory(a.utf16) < inMemory(b.utf16);
    const auto [x, y] = std::mismatch(a.utf16.begin(), a.utf16.end(), b.utf16.begin(), b.utf16.end());
    if (x == a.utf16.end() || y == b.utf16.end()) return a.utf16.size() < b.utf16.size();
    if (isSurrogate(*x)) return *x < *y;
    return isSurrogate(*y) ? true : *x < *y;
}

// The lesser of two decoded texts; `ended` returns the result for the positions at which one of them ends.
template <class Ended>
bool lessInSteps(const std::vector<Step>& a, const std::vector<Step>& b, Ended ended) {
    std::size_t i = 0;
    for (; i < a.size() && i < b.size(); ++i)
        if (a[i].code != b[i].code) return a[i].code < b[i].code;
    return ended(i == 0 ? 0 : a[i - 1].end, i == 0 ? 0 : b[i - 1].end);
}

bool referenceLess(const Held& a, const Held& b) {
    if (a.hasUTF8 && b.hasUTF8) {
        if (a.nulls && b.nulls) return withNullsAsZeros(a.utf8) < withNullsAsZeros(b.utf8);
        return a.utf8 < b.utf8;
    }
    if (a.hasUTF16 && b.hasUTF16) return referenceLess16(a, b);
    if (a.hasUTF8) {
        const std::size_t units = b.utf16.size();
        if (a.charset == 1 && b.charset != 3) return a.utf8 < b.utf16;
        const auto left = stepsOf8(a.utf8), right = stepsOf16(b.utf16, false);
        if (b.charset == 2) return lessInSteps(left, right, [&](std::size_t, std::size_t j) { return j < units; });
        return lessInSteps(left, right, [&](std::size_t i, std::size_t) { return i < units; });
    }
    const std::size_t bytes = b.utf8.size();
    if (b.charset == 1 && a.charset != 3) return a.utf16 < b.utf8;
    const auto left = stepsOf16(a.utf16, false), right = stepsOf8(b.utf8);
    if (a.charset == 2) {
        return lessInSteps(left, right, [&](std::size_t i, std::size_t j) { return i == a.utf16.size() && j < bytes; });
    }
    return lessInSteps(left, right, [&](std::size_t i, std::size_t) { return i < bytes; });
}

// One text in every way a record can hold it.
struct Forms {
    explicit Forms(const Codes& codes) : utf8(utf8Of(codes)), utf16(utf16Of(codes)) {
        strings.push_back(over(utf8));
        strings.push_back(over(utf16));
        strings.push_back(String(bytesOf(utf8), lengthOf(utf8)));
        strings.push_back(over(utf8)); // and UTF-16 built from it, unless that is refused
        try {
            strings.back().getData()->getTerminatedBuffer<UTF16Char>();
        } catch (const Exception<2>&) {
        }
        strings.push_back(over(utf16)); // and UTF-8
        if (std::count(codes.begin(), codes.end(), 0u) == 0) strings.back().getCString();
    }
    Forms(const Forms&) = delete;

    std::string utf8;
    UTF16Text utf16;
    std::vector<String> strings;
};

void expectComparesAsReference(const Forms& left, const Forms& right) {
    for (const String& a : left.strings) {
        for (const String& b : right.strings) {
            const Held x(*a.getData()), y(*b.getData());
            const bool equal = referenceEqual(x, y), less = referenceLess(x, y), greater = referenceLess(y, x);
            const bool sameText = left.utf8 == right.utf8;
            SCOPED_TRACE(testing::Message()
                         << testing::PrintToString(x.utf8) << testing::PrintToString(x.utf16) << " against "
                         << testing::PrintToString(y.utf8) << testing::PrintToString(y.utf16));
            EXPECT_EQ(*a.getData() == *b.getData(), equal);
            EXPECT_EQ(*a.getData() != *b.getData(), !equal);
            EXPECT_EQ(*a.getData() < *b.getData(), less);
            EXPECT_EQ(a == b, equal);
            EXPECT_EQ(a != b, !equal);
            EXPECT_EQ(a < b, less);
            EXPECT_EQ(a > b, greater);
            EXPECT_EQ(a <= b, !greater);
            EXPECT_EQ(a >= b, !less);
            EXPECT_TRUE(sameText || !equal);
            EXPECT_TRUE(!sameText || equal || x.charset == 3);
        }
    }
}

TEST(StringComparison, OfAllPairsOfEncodings) {
    const Codes texts[] = {{},
                           {'a'},
                           {'a', 'b'},
                           {'b'},
                           {'a', 'c'},
                           {0},
                           {0, 0},
                           {'a', 0},
                           {'a', 1},
                           {'a', 0, 'b'},
                           {0x7F},
                           {0x80},
                           {0xE9},
                           {'a', 0xE9},
                           {0x42},
                           {0x141},
                           {0x7FF},
                           {0x800},
                           {0xE000},
                           {0xFDCF},
                           {0xFDF0},
                           {0xFFFD},
                           {0x10000},
                           {0x10001},
                           {'a', 0x10000},
                           {'a', 0x10000, 'b'},
                           {0x10000, 0}, // a text and its extension by U+0000
                           {'a', 0x10000, 0},
                           {0x1F600, 0xE9},
                           {0xE000, 0x10000},
                           {0xFDF0, 0x10000}};
    std::vector<std::unique_ptr<Forms>> forms;
    for (const Codes& codes : texts) forms.push_back(std::make_unique<Forms>(codes));
    for (const auto& left : forms)
        for (const auto& right : forms) expectComparesAsReference(*left, *right);
}

TEST(StringComparison, OfRandomTexts) {
    Random random(2303);
    const unsigned int alphabet[] = {'a', 'b', 1, 0, 0xE9, 0x141, 0x20AC, 0xE000, 0x10000, 0x1F600};
    const unsigned int sizes[] = {2, 3, 4, 8, 10}; // of the alphabet's start that is used
    for (int round = 0; round < repetitions(6000); ++round) {
        const unsigned int size = sizes[random.below(5)];
        Codes left(random.below(6));
        for (unsigned int& c : left) c = alphabet[random.below(size)];
        Codes right = left;
        if (random.below(4) != 0) right.resize(random.below(7), 'a');
        if (!right.empty() && random.below(3) != 0)
            right[random.below(static_cast<unsigned int>(right.size()))] = alphabet[random.below(size)];
        expectComparesAsReference(Forms(left), Forms(right));
        if (HasFailure()) break;
    }
}

TEST(StringComparison, OfLongTextsThatDifferInOneUnit) {
    const std::string text(300, 'x');
    const UTF16Text wide(300, 'x');
    for (const unsigned int place : {0u, 1u, 7u, 8u, 63u, 64u, 255u, 299u}) {
        std::string other = text;
        UTF16Text otherWide = wide;
        other[place] = 'y';
        otherWide[place] = 'y';
        EXPECT_TRUE(over(text) != over(other) && over(text) < over(other) && !(over(other) < over(text)));
        EXPECT_TRUE(over(wide) != over(otherWide) && over(wide) < over(otherWide) && !(over(otherWide) < over(wide)));
        EXPECT_TRUE(over(text) != over(otherWide) && over(text) < over(otherWide) && !(over(otherWide) < over(text)));
    }
}

TEST(StringComparison, NullStringsComeFirst) {
    const String null, empty = String::getEmptyString();
    const std::string letter = "a";
    const String text = over(letter);
    EXPECT_TRUE(null == null && null == String() && !(null < null) && null <= null && null >= null);
    EXPECT_FALSE(null == empty);
    EXPECT_TRUE(null != empty && null < empty && !(empty < null) && empty > null && null <= empty && !(null >= empty));
    EXPECT_TRUE(null < text && empty < text && text > null);
    EXPECT_TRUE(text == text && !(text < text) && text <= text);
}

TEST(StringComparison, RecordsWithoutABufferEqualOnlyEachOther) {
    using VornPrivate::StringDataProbe;
    const String null(StringDataProbe::makeNull()), other(StringDataProbe::makeNull());
    const std::string letter = "a";
    const UTF16Text wideLetter = VORN_UTF16("a");
    EXPECT_TRUE(*null.getData() == *other.getData());
    EXPECT_FALSE(*null.getData() < *other.getData());
    for (const String& text : {over(letter), over(wideLetter)}) {
        EXPECT_FALSE(*null.getData() == *text.getData());
        EXPECT_FALSE(*text.getData() == *null.getData());
        EXPECT_TRUE(*null.getData() < *text.getData());
        EXPECT_FALSE(*text.getData() < *null.getData());
    }
}

TEST(StringComparison, EmptyTextsOfBothEncodingsAreEqual) {
    const std::string text;
    const UTF16Text wide;
    EXPECT_EQ(over(text), over(wide));
    EXPECT_EQ(over(wide), String::getEmptyString());
    EXPECT_FALSE(over(text) < over(wide) || over(wide) < over(text));
}

TEST(StringComparison, DifferentCharsetsAreUnequalWithNoLookAtTheText) {
    const std::string text = "same";
    const String a = over(text);
    const String b = over(text);
    ASSERT_EQ(a, b);
    VornPrivate::StringDataProbe::setCharset(*b.getData(), STRING_DATA_UCS2);
    EXPECT_NE(a, b);
}

TEST(StringComparison, OfOneBufferNeedsTheSameLength) {
    const std::string text = "abcd";
    const String whole = over(text);
    const String same = over(text);
    const String part(bytesOf(text), 2);
    EXPECT_EQ(whole, same);
    EXPECT_NE(whole, part);
    EXPECT_LT(part, whole);
}

TEST(StringComparison, KnownDepartures) {
    const UTF16Text polish = utf16Of({0x141}), latin = utf16Of({0x42});
    EXPECT_LT(over(polish), over(latin)) << "low byte first";
    const std::string polish8 = utf8Of({0x141}), latin8 = utf8Of({0x42});
    EXPECT_LT(over(latin8), over(polish8));

    const UTF16Text pair = utf16Of({0x10000}), high = utf16Of({0xE000});
    EXPECT_TRUE(over(pair) < over(high) && over(high) < over(pair)) << "a surrogate against a unit from 0xE000 up";

    const std::string pair8 = utf8Of({0x10000});
    EXPECT_TRUE(over(pair) == over(pair8) && over(pair) < over(pair8)) << "a pair is read as 0xFDEF";

    const String both = over(pair8);
    both.getData()->getTerminatedBuffer<UTF16Char>();
    EXPECT_NE(both, over(pair)) << "the first surrogate is missing";

    const std::string null = utf8Of({0}), nulls = utf8Of({0, 0}), del = utf8Of({0x7F}), nullAndDel = utf8Of({0, 0x7F});
    EXPECT_LT(over(del), over(null)) << "0xC0 0x80 is compared as those bytes";
    EXPECT_LT(over(nulls), over(nullAndDel)) << "U+0000 sorts below everything if both have one";

    // Bytes against units when one text ends.
    const std::string e = utf8Of({0xE9});
    const UTF16Text a = utf16Of({'a'}), wideE = utf16Of({0xE9, 0x10000, 0x10000});
    EXPECT_LT(over(e), over(wideE));
    const UTF16Text shorter = utf16Of({0xE9, 0x10000});
    const std::string longer = utf8Of({0xE9});
    EXPECT_LT(over(longer), over(shorter)) << "2 bytes of 3 units";
    const std::string wideLonger = utf8Of({0x20AC});
    const UTF16Text extension = utf16Of({0x20AC, 0x10000});
    EXPECT_FALSE(over(wideLonger) < over(extension)) << "3 bytes of 3 units, although it is extended";
}

} // namespace
