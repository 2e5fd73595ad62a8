#include "Vorn/String/String.h"

#include "Support/AllocationCounter.h"
#include "Support/ExpectedLeak.h"
#include "Support/Random.h"
#include "Support/Report.h"
#include "Support/StringDataProbe.h"
#include "Support/Texts.h"

#include <gtest/gtest.h>

// Substrings of the other encoding.

namespace {

using namespace Vorn;

using Byte = unsigned char;

// Replaces the text of a static record, without a scan.
template <class CharType>
void setText(StringData& data, const CharType* buffer, unsigned int length) {
    VornPrivate::StringDataProbe::setBuffer<CharType>(data, buffer);
    VornPrivate::StringDataProbe::info<CharType>(data).m_length = length;
    VornPrivate::StringDataProbe::info<CharType>(data).m_allocationType = STRING_DATA_STATIC;
}

void expectOwnBlock(const StringData& substring, bool utf8) {
    const StringDataBufferInfo& info = utf8 ? substring.getBufferInfo<Byte>() : substring.getBufferInfo<UTF16Char>();
    EXPECT_EQ(info.m_allocationType, STRING_DATA_DYNAMIC);
    EXPECT_EQ(info.m_previous, nullptr);
    EXPECT_EQ(info.m_next, nullptr);
    EXPECT_EQ(info.m_offset, 0u);
    EXPECT_TRUE(info.m_nullTerminated);
    EXPECT_EQ(substring.getRefCount(), 1u);
}

TEST(ConvertedSubstring, OfASCIIWidensAndNarrows) {
    const std::string text = "hello world";
    const UTF16Text units = VORN_UTF16("hello world");
    const String narrow = over(text);
    const String wide = over(units);
    for (int offset = -11; offset <= 11; ++offset) {
        for (const unsigned int length : {0u, 1u, 4u, 11u, NPOS}) {
            const unsigned int start = static_cast<unsigned int>(offset < 0 ? offset + 11 : offset);
            const String toWide(narrow.getData()->substr<UTF16Char>(offset, length));
            const String toNarrow(wide.getData()->substr<Byte>(offset, length));
            if (text.substr(start, length).empty()) {
                EXPECT_EQ(toWide.getData(), &StringData::s_emptyString);
                EXPECT_EQ(toNarrow.getData(), &StringData::s_emptyString);
                continue;
            }
            EXPECT_EQ(unitsOf(*toWide.getData()), units.substr(start, length));
            EXPECT_EQ(textOf(*toNarrow.getData()), text.substr(start, length));
            expectOwnBlock(*toWide.getData(), false);
            expectOwnBlock(*toNarrow.getData(), true);
        }
    }
    EXPECT_EQ(narrow.getData()->getPrivateBuffer<UTF16Char>(), nullptr);
    EXPECT_EQ(narrow.getData()->getNext<Byte>(), nullptr);
    EXPECT_EQ(wide.getData()->getPrivateBuffer<Byte>(), nullptr);
}

// The expected substring of the other encoding, from the characters of the text and their lengths in the target.
struct Outcome {
    enum Kind { EMPTY, TEXT, INVALID_OFFSET, NOT_A_PAIR, BEYOND_TEXT, TOO_SHORT, SCAN_FAILS } kind;
    Codes text = {};
};

unsigned int bytesIn(unsigned int c) { return c < 0x80 ? 1 : c < 0x800 ? 2 : c < 0x10000 ? 3 : 4; }
unsigned int unitsIn(unsigned int c) { return c < 0x10000 ? 1 : 2; }

enum class From { UCS2, UTF16, UTF8 };

Outcome referenceCut(const Codes& codes, From from, int offset, unsigned int length) {
    const auto measure = [&](unsigned int c) { return from == From::UTF8 ? unitsIn(c) : bytesIn(c); };
    if (codes.empty()) return {offset == 0 ? Outcome::EMPTY : Outcome::INVALID_OFFSET};
    if (offset >= 0) {
        std::size_t first = 0;
        long long sum = 0;
        while (sum != offset && first < codes.size()) sum += measure(codes[first++]);
        if (sum > offset && from == From::UCS2) return {Outcome::INVALID_OFFSET};
        Codes text;
        unsigned int count = 0;
        for (; first < codes.size() && count != length; ++first) {
            if (from == From::UTF16 && codes[first] >= 0x10000)
                return {first + 1 == codes.size() ? Outcome::BEYOND_TEXT : Outcome::NOT_A_PAIR};
            const unsigned long long grown = count + static_cast<unsigned long long>(measure(codes[first]));
            if (grown > length) break;
            count = static_cast<unsigned int>(grown);
            text.push_back(codes[first]);
        }
        return count == 0 ? Outcome{Outcome::EMPTY} : Outcome{Outcome::TEXT, text};
    }

    const long long wanted = -static_cast<long long>(offset);
    const long long behind = wanted - std::min<long long>(length, wanted); // units behind the substring, at least
    std::size_t end = codes.size();
    long long running = 0;
    while (running < behind) {
        if (end == 0) return {Outcome::INVALID_OFFSET};
        running += measure(codes[--end]);
    }
    const long long count = wanted - running;
    std::size_t start = end;
    while (running != wanted) {
        if (running > wanted || start == 0) return {Outcome::INVALID_OFFSET};
        running += measure(codes[--start]);
    }
    if (count == 0) return {Outcome::EMPTY};
    if (behind != 0) return {Outcome::TEXT, Codes(codes.begin() + long(start), codes.begin() + long(end))};
    if (from == From::UTF8) return {Outcome::TEXT, Codes(static_cast<std::size_t>(count), 0)};
    return {start == 0 ? Outcome::SCAN_FAILS : Outcome::TOO_SHORT};
}

void expectCut(const String& source, const Codes& codes, From from, int offset, unsigned int length) {
    SCOPED_TRACE(testing::Message() << "offset " << offset << ", length " << length);
    const char* const function = from == From::UCS2    ? "Vorn::StringData::substrConvertUCS2ToUTF8"
                                 : from == From::UTF16 ? "Vorn::StringData::substrConvertUTF16ToUTF8"
                                                       : "Vorn::StringData::substrConvertUTF8ToUTF16";
    const auto substring = [&] {
        const ExpectedLeak leak;
        return from == From::UTF8 ? source.getData()->substr<UTF16Char>(offset, length)
                                  : source.getData()->substr<Byte>(offset, length);
    };
    const Outcome outcome = referenceCut(codes, from, offset, length);
    switch (outcome.kind) {
    case Outcome::EMPTY: EXPECT_EQ(substring(), &StringData::s_emptyString); break;
    case Outcome::TEXT: {
        const String result(substring());
        if (from == From::UTF8)
            EXPECT_EQ(unitsOf(*result.getData()), utf16Of(outcome.text));
        else
            EXPECT_EQ(textOf(*result.getData()), utf8Of(outcome.text));
        expectOwnBlock(*result.getData(), from != From::UTF8);
        break;
    }
    case Outcome::INVALID_OFFSET: expectRaises<4>(substring, "Invalid offset!", function); break;
    case Outcome::NOT_A_PAIR: expectRaises<2>(substring, "byteCount == -2 : Invalid UTF-16 buffer!", function); break;
    case Outcome::BEYOND_TEXT:
        expectRaises<2>(substring, "++utf16End < bufferLength : Invalid UTF-16 buffer!", function);
        break;
    case Outcome::TOO_SHORT:
        expectRaises<2>(substring, "j < destLength : destination buffer too short!",
                        from == From::UCS2 ? "Vorn::stringDataConvertToUTF8FromUCS2"
                                           : "Vorn::stringDataConvertToUTF8FromUTF16");
        break;
    case Outcome::SCAN_FAILS:
        expectRaises<7>(substring,
                        "ASCII null detected! This implementation does not support ASCII null, please use the "
                        "sequence 0xC0 0x80 to represent null.",
                        "stringDataBufferScan");
        break;
    }
}

// All substrings of one text. `wide` is the source in UTF-16 where there is a choice.
void expectAllCuts(const Codes& codes, From from) {
    const std::string text = utf8Of(codes);
    const UTF16Text units = utf16Of(codes);
    const String source = from == From::UTF8 ? over(text) : over(units);
    const int total = static_cast<int>(from == From::UTF8 ? lengthOf(units) : lengthOf(text));
    for (int offset = -total - 2; offset <= total + 2; ++offset) {
        for (int length = 0; length <= total + 1; ++length)
            expectCut(source, codes, from, offset, static_cast<unsigned int>(length));
        expectCut(source, codes, from, offset, NPOS);
    }
    EXPECT_EQ(source.getData()->getNext<Byte>(), nullptr);
    EXPECT_EQ(source.getData()->getNext<UTF16Char>(), nullptr);
    EXPECT_EQ(source.getData()->getPrivateBuffer<Byte>() != nullptr, from == From::UTF8);
    EXPECT_EQ(source.getData()->getPrivateBuffer<UTF16Char>() != nullptr, from != From::UTF8);
}

TEST(ConvertedSubstring, FromUCS2) {
    expectAllCuts({0xE9}, From::UCS2);
    expectAllCuts({0x61, 0xE9, 0x62, 0x20AC, 0x7F, 0x7FF, 0x800, 0xFFFD}, From::UCS2);
    expectAllCuts({0x20AC, 0x20AC, 0x61, 0x62}, From::UCS2);
}

TEST(ConvertedSubstring, FromUTF16WithPairs) {
    expectAllCuts({0x10000}, From::UTF16);
    expectAllCuts({0x61, 0xE9, 0x10000, 0x62, 0x20AC, 0x1F600, 0x7F, 0x3FFFD}, From::UTF16);
    expectAllCuts({0x1F600, 0x1F601, 0x61, 0x7FF, 0x62}, From::UTF16);
}

TEST(ConvertedSubstring, FromUTF8) {
    expectAllCuts({0xE9}, From::UTF8);
    expectAllCuts({0}, From::UTF8);
    expectAllCuts({0x61, 0, 0xE9, 0x20AC, 0x7F, 0x7FF, 0x800, 0xFFFD, 0}, From::UTF8);
    expectAllCuts({0x61, 0xE9, 0x10000, 0x62, 0, 0x20AC, 0x1F600, 0x10FFFD}, From::UTF8);
    expectAllCuts({0x1F600, 0x1F601, 0x61}, From::UTF8);
}

TEST(ConvertedSubstring, OfRandomTexts) {
    Random random(20406);
    const unsigned int ucs2[] = {0x61, 0x7A, 0x80, 0x7FF, 0x800, 0xFFFD};
    const unsigned int full[] = {0x61, 0x7A, 0x80, 0x7FF, 0x800, 0xFFFD, 0x10000, 0x1F600, 0x3FFFD};
    for (int round = 0; round < repetitions(400); ++round) {
        Codes narrow(random() % 6), wide(random() % 5);
        for (unsigned int& c : narrow) c = ucs2[random() % 6];
        for (unsigned int& c : wide) c = full[random() % 9];
        narrow.push_back(0xE9); // keeps the text out of ASCII
        wide.insert(wide.begin() + long(random.below(static_cast<unsigned int>(wide.size()) + 1)), 0x10000);
        expectAllCuts(narrow, From::UCS2);
        expectAllCuts(narrow, From::UTF8);
        expectAllCuts(wide, From::UTF16);
        expectAllCuts(wide, From::UTF8);
    }
}

TEST(ConvertedSubstring, AllocatesARecordAndABlock) {
    const UTF16Text units = utf16Of({0x61, 0xE9, 0x62, 0x20AC});
    const String source = over(units);
    String substring;
    EXPECT_EQ(allocationsDuring([&] { substring = String(source.getData()->substr<Byte>(1, 3)); }), 2u);
    EXPECT_EQ(textOf(*substring.getData()), "\xC3\xA9"
                                            "b");
}

TEST(ConvertedSubstring, LeavesOutASupplementaryCharacterThatIsHalved) {
    const std::string text = "a\xF0\x90\x80\x80";
    const String source = over(text);
    const String substring(source.getData()->substr<UTF16Char>(0, 2));
    EXPECT_EQ(unitsOf(*substring.getData()), VORN_UTF16("a"));
    EXPECT_EQ(source.getData()->substr<UTF16Char>(1, 1), &StringData::s_emptyString);
}

TEST(ConvertedSubstring, LeaksTheBlockOfASubstringThatFails) {
    const UTF16Text units = utf16Of({0x61, 0xE9, 0x62});
    const String source = over(units);
    const std::size_t live = liveAllocationCount();
    {
        const ExpectedLeak leak;
        try {
            source.getData()->substr<Byte>(-1, NPOS);
            ADD_FAILURE();
        } catch (const Exception<2>&) {
        }
    }
    EXPECT_EQ(liveAllocationCount(), live + 1);
}

TEST(ConvertedSubstring, CountsU0000AsOneByteAndWritesTwo) {
    // A character behind it finds the block full.
    const UTF16Text units = utf16Of({0, 0x61});
    const String source = over(units);
    {
        const ExpectedLeak leak;
        expectRaises<2>([&] { source.getData()->substr<Byte>(0, 2); }, "j < destLength : destination buffer too short!",
                        "Vorn::stringDataConvertToUTF8FromUCS2");
        // At the end of the substring, the terminator replaces its second byte.
        expectRaises<7>([&] { source.getData()->substr<Byte>(0, 1); },
                        "Unmatched lead UTF-8 byte for a 2-byte sequence!", "stringDataBufferScan");
    }
    // The last character begins in the last byte and ends behind the block that it was measured for.
    for (const Codes& codes : {Codes{0, 0, 0xFFFD}, Codes{0, 0xE9}, Codes{0x62, 0, 0, 0xE9, 0}}) {
        const UTF16Text text = utf16Of(codes);
        const String long_ = over(text);
        const ExpectedLeak leak;
        EXPECT_THROW(long_.getData()->substr<Byte>(0, NPOS), AllExceptions);
    }
}

TEST(ConvertedSubstring, DropsOverlongCharactersBeyondTheCapacity) {
    // Measured as one unit each, read as a pair: the substring ends in the middle of one.
    const std::string text = "\xF0\x80\x80\x80\xF0\x80\x80\x80\xF0\x80\x80\x80";
    const String source = over(text);
    const ExpectedLeak leak;
    expectRaises<7>([&] { source.getData()->substr<UTF16Char>(0, NPOS); }, "Unmatched first surrogate character!",
                    "stringDataBufferScan");
    const String pair(source.getData()->substr<UTF16Char>(0, 2));
    EXPECT_EQ(unitsOf(*pair.getData()), (UTF16Text{0xDBC0, 0xDC00}));
    expectRaises<2>([&] { source.getData()->substr<UTF16Char>(-2, 1); }, "c >= 0x1000 : overlong 4byte sequence!",
                    "Vorn::StringData::substrConvertUTF8ToUTF16");
}

TEST(ConvertedSubstring, AssertsThatUTF16IsValid) {
    struct Row {
        const char* name;
        UTF16Text units;
        int offset;
        unsigned int length;
        const char* message;
    };
    const UTF16Char first = 0xD800, second = 0xDC00, none = 0xFFFE;
    const Row ucs2[] = {
        {"skipped", {none, 'a', 'b'}, 1, 1, "byteCount > 0 : Invalid UTF-16 buffer!"},
        {"taken", {'a', first, 'b'}, 1, 1, "byteCount > 0 : Invalid UTF-16 buffer!"},
        {"behind the substring", {'a', 'b', second}, -2, 1, "byteCount > 0 : Invalid UTF-16 buffer!"},
        {"in a substring from the end", {'a', none, 'b'}, -2, 1, "byteCount > 0 : Invalid UTF-16 buffer!"},
    };
    const Row full[] = {
        {"skipped", {none, 'a', 'b'}, 1, 1, "byteCount > 0 : Invalid UTF-16 buffer!"},
        {"skipped second", {second, 'a', 'b'}, 1, 1, "byteCount > 0 : Invalid UTF-16 buffer!"},
        {"skipped first", {first, 'a', 'b'}, 4, 1, "byteCount == -2 : Invalid UTF-16 buffer!"},
        {"taken", {'a', none, 'b'}, 1, 1, "byteCount > 0 : Invalid UTF-16 buffer!"},
        {"taken second", {'a', second, 'b'}, 1, 1, "byteCount > 0 : Invalid UTF-16 buffer!"},
        {"taken first", {'a', first, 'b', 'c'}, 1, 4, "byteCount == -2 : Invalid UTF-16 buffer!"},
        {"taken first at the end", {'a', first, second}, 1, 4, "++utf16End < bufferLength : Invalid UTF-16 buffer!"},
        {"behind the substring", {'a', 'b', second}, -2, 1, "byteCount == -1 : Invalid UTF-16 buffer!"},
        {"lone first behind the substring", {'a', 'b', first}, -2, 1, "byteCount > 0 : Invalid UTF-16 buffer!"},
        {"in a substring from the end", {'a', none, 'b'}, -2, 1, "byteCount > 0 : Invalid UTF-16 buffer!"},
    };
    const UTF16Char valid[] = {'x', 0};
    const auto check = [&](const Row& row, StringDataSubCharset charset, const char* function) {
        SCOPED_TRACE(row.name);
        StringData data(valid, 2, STRING_DATA_STATIC);
        setText<UTF16Char>(data, row.units.c_str(), lengthOf(row.units));
        VornPrivate::StringDataProbe::setCharset(data, charset);
        expectRaises<2>([&] { data.substr<Byte>(row.offset, row.length); }, row.message, function);
    };
    for (const Row& row : ucs2) check(row, STRING_DATA_UCS2, "Vorn::StringData::substrConvertUCS2ToUTF8");
    for (const Row& row : full) check(row, STRING_DATA_UNICODE, "Vorn::StringData::substrConvertUTF16ToUTF8");

    // A second surrogate one unit behind where it belongs passes the measure, as that is where it is looked for.
    const UTF16Text late = {first, 'a', second};
    StringData data(valid, 2, STRING_DATA_STATIC);
    setText<UTF16Char>(data, late.c_str(), 3);
    VornPrivate::StringDataProbe::setCharset(data, STRING_DATA_UNICODE);
    const ExpectedLeak leak;
    EXPECT_THROW(data.substr<Byte>(0, 4), AllExceptions);
}

TEST(ConvertedSubstring, AssertsThatUTF8IsValid) {
    struct Row {
        const char* name;
        std::string text;
        int offset;
        unsigned int length;
        const char* message;
    };
    const Row rows[] = {
        {"skipped",
         "\xFF"
         "ab",
         1, 1, "c != 0xFDEF : Invalid UTF-8 buffer!"},
        {"taken", "a\xEF\xBF\xBF", 1, 1, "c != 0xFDEF : Invalid UTF-8 buffer!"},
        {"zero byte behind the substring", std::string("ab\0", 3), -2, 1, "c : null byte found in UTF-8!"},
        {"lead at the end", "ab\xC3", -2, 1, "c == 0xFDD0 && i < bufferLength : Invalid UTF-8 buffer!"},
        {"nothing before a trail byte", "\x80", -2, 1, "c == 0xFDD0 && i < bufferLength : Invalid UTF-8 buffer!"},
        {"nothing before two", "\x80\x80", -2, 1, "c == 0xFDD0 && i < bufferLength : Invalid UTF-8 buffer!"},
        {"nothing before three", "\x80\x80\x80", -2, 1, "c == 0xFDD0 && i < bufferLength : Invalid UTF-8 buffer!"},
        {"ASCII before a trail byte", "aa\x80", -2, 1, "c == 0xFDD0 && i < bufferLength : Invalid UTF-8 buffer!"},
        {"wrong lead before two", "aa\xF0\x80\x80", -2, 1, "c == 0xFDD0 && i < bufferLength : Invalid UTF-8 buffer!"},
        {"overlong two", "ab\xC1\xBF", -2, 1, "!c || c >= 0x80 : overlong 2byte sequence!"},
        {"overlong three", "ab\xE0\x9F\xBF", -2, 1, "c >= 0x800 : overlong 3byte sequence!"},
        {"a fourth trail byte", "ab\x80\x80\x80\x80", -2, 1, "c == 0xFDD4 : Invalid UTF-8 buffer!"},
        {"overlong four", "ab\xF0\x80\xBF\xBF", -3, 1, "c >= 0x1000 : overlong 4byte sequence!"},
    };
    const unsigned char valid[] = "x";
    const auto substring = [&](const std::string& text, int offset, unsigned int length) {
        StringData data(valid, 2, STRING_DATA_STATIC);
        setText<Byte>(data, bytesOf(text), lengthOf(text));
        VornPrivate::StringDataProbe::setCharset(data, STRING_DATA_UNICODE);
        return String(data.substr<UTF16Char>(offset, length));
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        expectRaises<2>([&] { substring(row.text, row.offset, row.length); }, row.message,
                        "Vorn::StringData::substrConvertUTF8ToUTF16");
    }
    // Inside the substring a zero byte passes; from 0x1000 on, so does an overlong form of four bytes.
    EXPECT_EQ(unitsOf(*substring(std::string("a\0b", 3), -2, 1).getData()), UTF16Text(1, 0));
    EXPECT_EQ(unitsOf(*substring("ab\xF0\x81\x80\x80", -3, 1).getData()), VORN_UTF16("b"));
}

} // namespace
