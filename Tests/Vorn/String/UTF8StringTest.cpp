#include "Vorn/String/UTF8String.h"

#include "Support/AllocationCounter.h"
#include "Support/Random.h"
#include "Support/Report.h"
#include "Support/StringDataProbe.h"
#include "Support/Texts.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace Vorn;

constexpr const char* FILE_TEXT = "Source/Vorn/UTF8String";

const ASCIITable& vowels() {
    static const ASCIITable table(reinterpret_cast<const signed char*>("aeiou"));
    return table;
}

// A text that is not scanned.
struct BrokenText {
    explicit BrokenText(const std::string& bytes)
        : text(bytes), string(new StringData(bytesOf(valid), 2, STRING_DATA_STATIC)) {
        VornPrivate::StringDataProbe::setBuffer<unsigned char>(*string.getData(), bytesOf(text));
        VornPrivate::StringDataProbe::info<unsigned char>(*string.getData()).m_length = lengthOf(text);
    }
    std::string valid = "x";
    std::string text;
    UTF8String string;
};

TEST(UTF8String, Constructors) {
    const std::string text = "text";
    const UTF16Text wide = VORN_UTF16("text");
    const String shared = over(text);
    EXPECT_EQ(UTF8String().getData(), nullptr);
    EXPECT_EQ(UTF8String(static_cast<StringData*>(nullptr)).getData(), nullptr);
    const UTF8String fromString(shared);
    EXPECT_EQ(fromString.getData(), shared.getData());
    EXPECT_EQ(shared.getData()->getRefCount(), 2u);
    const UTF8String copy(fromString);
    const UTF8String fromData(shared.getData());
    EXPECT_EQ(copy.getData(), shared.getData());
    EXPECT_EQ(shared.getData()->getRefCount(), 4u);

    for (const UTF8String& string :
         {UTF8String("text"), UTF8String(bytesOf(text)), UTF8String(wide.c_str()), UTF8String("texts", 4),
          UTF8String(bytesOf(text), 5, STRING_DATA_EXTERNAL), UTF8String(wide.c_str(), 4, STRING_DATA_STATIC),
          UTF8String("text", 4, STRING_DATA_EXTERNAL, true), UTF8String(bytesOf(text), 4, STRING_DATA_STATIC, true),
          UTF8String(wide.c_str(), 4, STRING_DATA_EXTERNAL, true)}) {
        EXPECT_STREQ(string.getCString(), "text");
        EXPECT_EQ(string.getLength(), 4u);
    }
    EXPECT_TRUE(
        UTF8String("text", 4, STRING_DATA_EXTERNAL, true).getData()->getBufferInfo<unsigned char>().m_nullTerminated);
    EXPECT_FALSE(
        UTF8String("text", 4, STRING_DATA_EXTERNAL, false).getData()->getBufferInfo<unsigned char>().m_nullTerminated);
}

TEST(UTF8String, Assignment) {
    const std::string text = "text";
    const String shared = over(text);
    UTF8String string("other");
    EXPECT_EQ(&(string = shared), &string);
    EXPECT_EQ(string.getData(), shared.getData());
    UTF8String another;
    EXPECT_EQ(&(another = string), &another);
    EXPECT_EQ(shared.getData()->getRefCount(), 3u);
    const UTF8String& same = another;
    another = same;
    EXPECT_EQ(shared.getData()->getRefCount(), 3u);
    another = UTF8String();
    EXPECT_EQ(another.getData(), nullptr);
}

TEST(UTF8String, LeadTables) {
    const unsigned char flags[8] = {0, 0, 0xC0, 0xE0, 0xF0, 0, 0, 0};
    const unsigned char masks[8] = {0, 0x7F, 0x1F, 0x0F, 0x07, 0, 0, 0};
    EXPECT_TRUE(std::equal(flags, flags + 8, UTF8String::s_leadFlag));
    EXPECT_TRUE(std::equal(masks, masks + 8, UTF8String::s_leadMask));
}

TEST(UTF8String, ReadsBuildTheUTF8BufferOfTheSharedRecord) {
    const UTF16Text wide = utf16Of({'a', 0x20AC});
    const String shared = over(wide);
    const UTF8String string(shared);
    EXPECT_EQ(string.next(0), 1u);
    EXPECT_EQ(string.getLength(), 4u);
    EXPECT_EQ(shared.getData()->getPrivateBuffer<unsigned char>(), string.getBuffer());
    const String another = over(wide);
    EXPECT_EQ(UTF8String(another).previous(9), 1u);
    EXPECT_NE(another.getData()->getPrivateBuffer<unsigned char>(), nullptr);
}

TEST(UTF8String, WithoutText) {
    const String noBuffer(VornPrivate::StringDataProbe::makeNull());
    for (const UTF8String& string : {UTF8String(), UTF8String(noBuffer)}) {
        EXPECT_EQ(string.getBuffer(), nullptr);
        EXPECT_EQ(string.getLength(), 0u);
        EXPECT_EQ(string.next(0), 0u);
        EXPECT_EQ(string.next(7), 0u);
        EXPECT_EQ(string.previous(0), NPOS);
        EXPECT_EQ(string.previous(7), NPOS);
        const auto fails = [&](auto run, const char* function) {
            expectRaises<4>(run, "Invalid index!", function, FILE_TEXT);
        };
        const char* const none = nullptr;
        fails([&] { string.find('a', 0); }, "Vorn::UTF8String::find");
        fails([&] { string.find(0xD800u, 0); }, "Vorn::UTF8String::find");
        fails([&] { string.find(none, 0); }, "Vorn::UTF8String::find");
        fails([&] { string.find(String(), 0); }, "Vorn::UTF8String::find");
        fails([&] { string.find(vowels(), 0); }, "Vorn::UTF8String::find");
        fails([&] { string.skip(0xD800u, 0); }, "Vorn::UTF8String::skip");
        fails([&] { string.skip(none, 0); }, "Vorn::UTF8String::skip");
        fails([&] { string.skip(String(), 0); }, "Vorn::UTF8String::skip");
        fails([&] { string.skip(vowels(), 0); }, "Vorn::UTF8String::skip");
        fails([&] { string.match(none, 0); }, "Vorn::UTF8String::match");
        fails([&] { string.match(String(), 0); }, "Vorn::UTF8String::match");
        fails([&] { string.match(vowels(), 0); }, "Vorn::UTF8String::match");
        expectRaises<4>([&] { string.get(0); }, "Invalid index!", "Vorn::UTF8String::getTerminatedBuffer", FILE_TEXT);
    }
}

TEST(UTF8String, RefusesIndexesOutsideTheText) {
    const UTF8String texts[] = {UTF8String("abc"), UTF8String(""), UTF8String("b\xC3\xA9")};
    for (const UTF8String& string : texts) {
        const int n = static_cast<int>(string.getLength());
        for (const int index : {n, n + 1, 0x7FFFFFFF, -n - 1, -100, -0x7FFFFFFF - 1}) {
            const auto fails = [](auto run, const char* function) {
                expectRaises<4>(run, "Invalid index!", function, FILE_TEXT);
            };
            fails([&] { string.find('a', index); }, "Vorn::UTF8String::find");
            fails([&] { string.find("", index); }, "Vorn::UTF8String::find");
            fails([&] { string.find(String("a"), index); }, "Vorn::UTF8String::find");
            fails([&] { string.find(vowels(), index); }, "Vorn::UTF8String::find");
            fails([&] { string.skip('a', index); }, "Vorn::UTF8String::skip");
            fails([&] { string.skip("", index); }, "Vorn::UTF8String::skip");
            fails([&] { string.skip(String("a"), index); }, "Vorn::UTF8String::skip");
            fails([&] { string.skip(vowels(), index); }, "Vorn::UTF8String::skip");
            fails([&] { string.match("", index); }, "Vorn::UTF8String::match");
            fails([&] { string.match(String("a"), index); }, "Vorn::UTF8String::match");
            fails([&] { string.match(vowels(), index); }, "Vorn::UTF8String::match");
            const char* const common = "Vorn::UTF8String::getTerminatedBuffer";
            int i = index;
            fails([&] { string.getTerminatedBuffer(i); }, common);
            EXPECT_EQ(i, index < 0 ? index + n : index) << "made an offset all the same";
            fails([&] { string.get(static_cast<unsigned int>(index)); }, common);
            fails([&] { string[static_cast<unsigned int>(index)]; }, common);
        }
    }
}

TEST(UTF8String, RefusesEmptyNeedles) {
    const UTF8String string("abc");
    const char* const none = nullptr;
    const auto fails = [](auto run, const char* function) {
        expectRaises<4>(run, "Invalid string!", function, FILE_TEXT);
    };
    for (const char* needle : {none, ""}) {
        fails([&] { string.find(needle, 0); }, "Vorn::UTF8String::find");
        fails([&] { string.skip(needle, 1); }, "Vorn::UTF8String::skip");
        fails([&] { string.match(needle, -1); }, "Vorn::UTF8String::match");
    }
    for (const String& needle : {String(), String::getEmptyString()}) {
        fails([&] { string.find(needle, 0); }, "Vorn::UTF8String::find");
        fails([&] { string.skip(needle, 1); }, "Vorn::UTF8String::skip");
        fails([&] { string.match(needle, -1); }, "Vorn::UTF8String::match");
    }
}

TEST(UTF8String, SearchesBeginAtTheStartUnlessToldOtherwise) {
    const UTF8String text("baab"); // every search has another result from index 1
    EXPECT_EQ(text.find('b'), 0u);
    EXPECT_EQ(text.find(0x62u), 0u);
    EXPECT_EQ(text.find("b"), 0u);
    EXPECT_EQ(text.find(String("b")), 0u);
    EXPECT_EQ(UTF8String("ebb").find(vowels()), 0u);
    EXPECT_EQ(text.skip('a'), 0u);
    EXPECT_EQ(text.skip(0x61u), 0u);
    EXPECT_EQ(text.skip("a"), 0u);
    EXPECT_EQ(text.skip(String("a")), 0u);
    EXPECT_EQ(text.skip(vowels()), 0u);
    EXPECT_EQ(text.match("ba"), 0u);
    EXPECT_EQ(text.match(String("ba")), 0u);
    EXPECT_EQ(UTF8String("ebb").match(vowels()), 0u);
}

TEST(UTF8String, RefusesCodesWithoutUTF8) {
    const UTF8String string("abc");
    for (const unsigned int c : {0xD800u, 0xDFFFu, 0xFDD0u, 0xFDEFu, 0xFFFEu, 0xFFFFu, 0x1FFFEu, 0x10FFFFu, 0x110000u,
                                 0x80000000u, 0x80000080u, 0xFFFFFFFFu}) {
        expectRaises<7>([&] { string.find(c, 0); }, "Invalid Unicode Character!", "Vorn::UTF8String::find", FILE_TEXT);
        expectRaises<7>([&] { string.skip(c, 0); }, "Invalid Unicode Character!", "Vorn::UTF8String::skip", FILE_TEXT);
    }
}

TEST(UTF8String, KnownAnswers) {
    const UTF8String inside("\xC3\xA9"
                            "a");
    EXPECT_EQ(inside.find('a', 1), 1u) << "too small by the trail byte that was stepped over";
    EXPECT_EQ(inside.find("a", 1), 1u);
    EXPECT_EQ(inside.find(vowels(), 1), 1u);
    EXPECT_EQ(inside.find('a', 0), 2u);
    EXPECT_EQ(inside.next(1), 2u);
    EXPECT_EQ(inside.get(1), 'a');
    EXPECT_EQ(inside[0], 0xC3);
    int index = -2;
    EXPECT_EQ(inside.getTerminatedBuffer(index), inside.getBuffer() + 2);
    EXPECT_EQ(index, 1);
    EXPECT_EQ(UTF8String("a\xC3\xA9").skip('x', 2), 2u) << "on the last trail byte";
    EXPECT_EQ(UTF8String("a\xC3\xA9").skip(0xD800, 2), 2u) << "even for a code that cannot be encoded";

    EXPECT_EQ(UTF8String("abc").match("ab", 0), 0u);
    EXPECT_EQ(UTF8String("xbc").match("ab", 0), NPOS);
    EXPECT_EQ(UTF8String("ababc").skip("ab", 0), 4u);
    EXPECT_EQ(UTF8String("aab").skip('a', 0), 2u);
    EXPECT_EQ(UTF8String("abc").find('z', 0), 3u);
    EXPECT_EQ(UTF8String("aba").find('a', -1), 2u);
    EXPECT_EQ(UTF8String("abb").find('a', -1), 3u);
    EXPECT_EQ(UTF8String("x\xC0\x80").find(0, 0), 1u);
    EXPECT_EQ(UTF8String("\xC0\x80\xC0\x80x").skip(0, 0), 4u);
    EXPECT_EQ(UTF8String("x\xF4\x8F\xBF\xBD").find(0x10FFFD, 0), 1u);

    const UTF8String four("\xF0\x90\x80\x80h");
    expectRaises<2>([&] { four.previous(4); }, "!Unicode::validUTF8Trail(buffer[index]) : Invalid UTF-8 string",
                    "Vorn::UTF8String::previous", FILE_TEXT);
    EXPECT_EQ(four.previous(5), 4u);
    EXPECT_EQ(four.previous(3), 0u);
    EXPECT_EQ(UTF8String("\xF0\x90\x80\x80").previous(4), 0u);
    EXPECT_EQ(four.next(5), 5u);
    EXPECT_EQ(four.next(99), 5u);
}

// The expected result of every operation, from the bytes alone.
struct Reference {
    explicit Reference(const std::string& bytes) : text(bytes), n(static_cast<int>(bytes.size())) {}

    bool isTrail(std::size_t i) const { return i < text.size() && (text[i] & 0xC0) == 0x80; }
    std::size_t startFrom(std::size_t i) const {
        while (isTrail(i)) ++i;
        return i;
    }
    unsigned int offset(int index) const { return static_cast<unsigned int>(index < 0 ? index + n : index); }

    unsigned int find(const std::string& needle, int index) const {
        const std::size_t start = startFrom(offset(index));
        const std::size_t hit = text.find(needle, start);
        return static_cast<unsigned int>(hit == std::string::npos ? text.size() : hit - start + offset(index));
    }
    unsigned int skip(const std::string& run, int index) const {
        const std::size_t start = startFrom(offset(index));
        std::size_t end = start;
        while (text.compare(end, run.size(), run) == 0 && end + run.size() <= text.size()) end += run.size();
        return static_cast<unsigned int>(end - start + offset(index));
    }
    unsigned int match(const std::string& needle, int index) const {
        return text.compare(startFrom(offset(index)), needle.size(), needle) == 0 ? offset(index) : NPOS;
    }
    unsigned int findOf(const std::string& set, int index) const {
        const std::size_t start = startFrom(offset(index));
        const std::size_t hit = text.find_first_of(set, start);
        return static_cast<unsigned int>(hit == std::string::npos ? text.size() : hit - start + offset(index));
    }
    unsigned int skipOf(const std::string& set, int index) const {
        const std::size_t start = startFrom(offset(index));
        std::size_t end = text.find_first_not_of(set, start);
        if (end == std::string::npos) end = text.size();
        return static_cast<unsigned int>(end - start + offset(index));
    }
    unsigned int matchOf(const std::string& set, int index) const {
        const std::size_t start = startFrom(offset(index));
        return start < text.size() && set.find(text[start]) != std::string::npos ? offset(index) : NPOS;
    }
    unsigned int next(unsigned int index) const {
        if (index >= text.size()) return static_cast<unsigned int>(text.size());
        return static_cast<unsigned int>(startFrom(index + 1));
    }
    // NPOS also where a character of four bytes is too long.
    unsigned int previous(unsigned int index) const {
        if (text.empty() || index == 0) return NPOS;
        std::size_t start = std::min<std::size_t>(index, text.size());
        const bool lookedAtOne = index >= text.size() || isTrail(index);
        do --start;
        while (isTrail(start));
        return !lookedAtOne && index - start == 4 ? NPOS : static_cast<unsigned int>(start);
    }

    std::string text;
    int n;
};

TEST(UTF8String, RandomTextsAgainstTheReference) {
    Random random(2707);
    const unsigned int alphabet[] = {'a', 'b', 'e', 0, 0xE9, 0x20AC, 0x1F600};
    const auto randomText = [&](unsigned int longest) {
        const unsigned int letters = random.below(2) ? 2 : 7;
        Codes codes(random.below(longest) + 1);
        for (unsigned int& c : codes) c = alphabet[random.below(letters)];
        return utf8Of(codes);
    };
    for (int round = 0; round < repetitions(20000); ++round) {
        const Reference reference(randomText(9));
        const std::string needle = randomText(2);
        const std::string& text = reference.text;
        // A needle with the record of a text, or a substring of one, is terminated during the search.
        const UTF8String string = random.below(2) ? UTF8String(bytesOf(text), lengthOf(text)) : UTF8String(over(text));
        const String needleString = random.below(2) ? String(bytesOf(needle), lengthOf(needle)) : over(needle);
        const unsigned int c = alphabet[random.below(7)];
        std::string sequence;
        appendUTF8(sequence, c);
        SCOPED_TRACE(testing::PrintToString(text) + " / " + testing::PrintToString(needle));
        for (int index = -reference.n; index < reference.n; ++index) {
            ASSERT_EQ(string.find(c, index), reference.find(sequence, index)) << index << " " << c;
            ASSERT_EQ(string.find(needleString, index), reference.find(needle, index)) << index;
            ASSERT_EQ(string.find(needle.c_str(), index), reference.find(needle, index)) << index;
            ASSERT_EQ(string.find(vowels(), index), reference.findOf("aeiou", index)) << index;
            ASSERT_EQ(string.skip(c, index), reference.skip(sequence, index)) << index << " " << c;
            ASSERT_EQ(string.skip(needleString, index), reference.skip(needle, index)) << index;
            ASSERT_EQ(string.skip(needle.c_str(), index), reference.skip(needle, index)) << index;
            ASSERT_EQ(string.skip(vowels(), index), reference.skipOf("aeiou", index)) << index;
            ASSERT_EQ(string.match(needleString, index), reference.match(needle, index)) << index;
            ASSERT_EQ(string.match(needle.c_str(), index), reference.match(needle, index)) << index;
            ASSERT_EQ(string.match(vowels(), index), reference.matchOf("aeiou", index)) << index;
        }
        for (unsigned int i = 0; i <= text.size() + 2; ++i) {
            ASSERT_EQ(string.next(i), reference.next(i)) << i;
            if (const unsigned int expected = reference.previous(i); expected != NPOS || i == 0)
                ASSERT_EQ(string.previous(i), expected) << i;
            else
                EXPECT_THROW(string.previous(i), Exception<2>) << i;
        }
        ASSERT_EQ(std::string(reinterpret_cast<const char*>(string.getBuffer()), string.getLength()), text);
    }
}

TEST(UTF8String, ANeedleOfTheSameBlockMayMoveTheText) {
    // The needle becomes the owner of the block with a free unit at its start, and termination moves both texts.
    auto* const block = new unsigned char[7]{'x', 'y', 'a', 'b', 'c', 'b', 'd'};
    String owner(block, 6, STRING_DATA_DYNAMIC);
    const UTF8String text(owner.getData()->substr<unsigned char>(2, 4));
    const String needle(owner.getData()->substr<unsigned char>(1, 5));
    owner = String();
    EXPECT_EQ(text.find(String(text.getData()->substr<unsigned char>(1, 1)), 0), 1u);
    EXPECT_EQ(text.find(needle, 0), 4u);
    EXPECT_EQ(textOf(*text.getData()), "abcb");
}

TEST(UTF8String, BrokenTextIsAsserted) {
    const std::string trails = "\x80\x80\x80\x80";
    const BrokenText lone(trails), run("a" + trails + "b");
    const char* const noBang = "!Unicode::validUTF8Trail(buffer[index]) : Invalid UTF-8 string";
    expectRaises<2>([&] { lone.string.find('a', 0); }, "!Unicode::validUTF8Trail(*buffer) : Invalid UTF-8 string!",
                    "Vorn::UTF8String::getTerminatedBuffer", FILE_TEXT);
    expectRaises<2>([&] { lone.string.skipTrailBytes(bytesOf(trails)); },
                    "!Unicode::validUTF8Trail(*ptr) : Invalid UTF-8 String!", "Vorn::UTF8String::skipTrailBytes",
                    FILE_TEXT);
    EXPECT_EQ(lone.string.skipTrailBytes(bytesOf(trails) + 1), bytesOf(trails) + 4);
    EXPECT_EQ(lone.string.skipTrailBytes(bytesOf(trails) + 4), bytesOf(trails) + 4);

    const char* const next = "!Unicode::validUTF8Trail(buffer[index]) : Invalid UTF-8 string!";
    expectRaises<2>([&] { run.string.next(0); }, next, "Vorn::UTF8String::next", FILE_TEXT);
    expectRaises<2>([&] { run.string.next(1); }, next, "Vorn::UTF8String::next", FILE_TEXT);
    EXPECT_EQ(run.string.next(2), 5u);

    const char* const start = "index : Invalid UTF-8 string!";
    const char* const function = "Vorn::UTF8String::previous";
    expectRaises<2>([&] { run.string.previous(5); }, noBang, function, FILE_TEXT);
    EXPECT_EQ(run.string.previous(4), 0u);
    const BrokenText longer("a" + trails + "\x80");
    expectRaises<2>([&] { longer.string.previous(5); }, noBang, function, FILE_TEXT);
    EXPECT_EQ(run.string.previous(3), 0u);
    for (unsigned int index = 1; index <= 2; ++index)
        expectRaises<2>([&] { lone.string.previous(index); }, start, function, FILE_TEXT);
    for (const char* text : {"\x80", "\x80\x80", "\x80\x80\x80"}) {
        const BrokenText broken(text);
        expectRaises<2>([&] { broken.string.previous(99); }, start, function, FILE_TEXT);
    }
    expectRaises<2>([&] { lone.string.previous(99); }, noBang, function, FILE_TEXT);
    for (const char* text : {"\x80"
                             "a",
                             "\x80\x80"
                             "a"}) {
        const BrokenText broken(text);
        expectRaises<2>([&] { broken.string.previous(lengthOf(broken.text) - 1); }, start, function, FILE_TEXT);
    }
    const BrokenText three("\x80\x80\x80"
                           "a");
    expectRaises<2>([&] { three.string.previous(3); }, noBang, function, FILE_TEXT);
}

TEST(UTF8String, SkippingAssertsThatSequencesAreWhole) {
    struct Row {
        const char* name;
        const char* text;
        unsigned int c;
        const char* message; // or null
        unsigned int expected;
    };
    const Row rows[] = {
        {"2 bytes, 1 there", "\xC3", 0xE9, "ptr[1] : Invalid UTF-8 String!", 0},
        {"3 bytes, 1 there", "\xE2", 0x20AC, "ptr[1] : Invalid UTF-8 String!", 0},
        {"3 bytes, 2 there", "\xE2\x82", 0x20AC, "ptr[2] : Invalid UTF-8 String!", 0},
        {"4 bytes, 1 there", "\xF0", 0x1F600, "ptr[1] : Invalid UTF-8 String!", 0},
        {"4 bytes, 2 there", "\xF0\x9F", 0x1F600, "ptr[2] : Invalid UTF-8 String!", 0},
        {"4 bytes, 3 there", "\xF0\x9F\x98", 0x1F600, "ptr[3] : Invalid UTF-8 String!", 0},
        {"behind a whole one", "\xC3\xA9\xC3", 0xE9, "ptr[1] : Invalid UTF-8 String!", 0},
        {"second byte differs", "\xE2\x81", 0x20AC, nullptr, 0},
        {"third byte differs", "\xF0\x9F\x97", 0x1F600, nullptr, 0},
        {"other lead at the end", "\xC3\xA9\xC4", 0xE9, nullptr, 2},
        {"ends behind a whole one", "\xC3\xA9", 0xE9, nullptr, 2},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const BrokenText broken(row.text);
        if (row.message)
            expectRaises<2>([&] { broken.string.skip(row.c, 0); }, row.message, "Vorn::UTF8String::skip", FILE_TEXT);
        else
            EXPECT_EQ(broken.string.skip(row.c, 0), row.expected);
    }
}

} // namespace
