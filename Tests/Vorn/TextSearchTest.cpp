#include "Vorn/TextSearch.h"

#include "Support/Random.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

namespace {

using VornPrivate::findText;
using VornPrivate::findTextTwoWay;

struct Search {
    const char* name;
    std::size_t (*find)(std::string_view text, std::string_view needle) noexcept;
};
constexpr Search SEARCHES[] = {{"findText", findText}, {"findTextTwoWay", findTextTwoWay}};

// The definition, one place after the other.
std::size_t findPlainly(std::string_view text, std::string_view needle) {
    for (std::size_t at = 0; at + needle.size() <= text.size(); ++at) {
        std::size_t i = 0;
        while (i < needle.size() && text[at + i] == needle[i]) ++i;
        if (i == needle.size()) return at;
    }
    return std::string_view::npos;
}

std::string shown(std::string_view text) {
    std::string result(text.substr(0, 100));
    if (text.size() > 100) result.append("... of ").append(std::to_string(text.size())).append(" bytes");
    return result;
}

// Both searches on blocks of exactly these bytes, so that address sanitizers see each read outside.
testing::AssertionResult finds(std::string_view text, std::string_view needle, std::size_t expected) {
    const std::unique_ptr<char[]> textBlock(new char[text.size()]), needleBlock(new char[needle.size()]);
    text.copy(textBlock.get(), text.size());
    needle.copy(needleBlock.get(), needle.size());
    for (const Search& search : SEARCHES) {
        if (needle.empty() && search.find == findTextTwoWay) continue;
        const std::size_t hit = search.find({textBlock.get(), text.size()}, {needleBlock.get(), needle.size()});
        if (hit != expected)
            return testing::AssertionFailure() << search.name << " of \"" << shown(needle) << "\" in \"" << shown(text)
                                               << "\" gives " << hit << " instead of " << expected;
    }
    return testing::AssertionSuccess();
}

std::string repeated(std::string_view text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i) result += text;
    return result;
}

TEST(TextSearch, Rows) {
    constexpr std::size_t NONE = std::string_view::npos;
    struct Row {
        const char* name;
        std::string text, needle;
        std::size_t expected;
    };
    const Row rows[] = {
        {"empty needle", "abc", "", 0},
        {"both empty", "", "", 0},
        {"empty text", "", "a", NONE},
        {"the whole text", "abc", "abc", 0},
        {"longer than the text", "abc", "abcd", NONE},
        {"one byte at the end", "abc", "c", 2},
        {"the first of two", "xabxab", "ab", 1},
        {"behind a false start", "aab", "ab", 1},
        {"behind a long false start", "abababac", "abac", 4},
        {"across a zero byte", std::string("a\0b", 3), std::string("\0b", 2), 1},
        {"bytes above 127", "\xC3\xA9\xC3\xA8", "\xC3\xA8", 2},
        {"bytes on both sides of 127", "\x7F\x80\x7F\xFF", "\x7F\xFF", 2},
        // Needles from the literature on critical positions: with a period, without, and with the greatest suffix of
        // either order.
        {"periodic needle", repeated("ab", 300) + "abcab", "ababcab", 598},
        {"needle of one byte repeated", repeated("a", 999) + "b" + repeated("a", 99), repeated("a", 50) + "b", 949},
        {"Fibonacci word", "abaababaabaababaababaabaababaabaab", "abaabaababaab", 5},
        {"period longer than half", repeated("abcabd", 200) + "abcabc", "abcabdabcabc", 1194},
        {"a match behind many beginnings", repeated("aaab", 500) + "aaaa", "aaaa", 2000},
        {"no match behind many beginnings", repeated("aaab", 500), "aaaa", NONE},
        {"the two-way search starts in front of a match", repeated("a", 2000) + "ba", "aba", 1999},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(findPlainly(row.text, row.needle), row.expected) << row.name << ": the row itself";
        EXPECT_TRUE(finds(row.text, row.needle, row.expected)) << row.name;
    }
}

// All texts of up to 12 bytes and needles of up to 6 over two letters: each small shape of a period.
TEST(TextSearch, AllShortTextsOverTwoLetters) {
    const auto word = [](unsigned int length, unsigned int bits) {
        std::string result(length, 'a');
        for (unsigned int i = 0; i < length; ++i)
            if (bits >> i & 1) result[i] = 'b';
        return result;
    };
    for (unsigned int needleLength = 1; needleLength <= 6; ++needleLength) {
        for (unsigned int needleBits = 0; needleBits < 1u << needleLength; ++needleBits) {
            const std::string needle = word(needleLength, needleBits);
            for (unsigned int bits = 0; bits < 1u << 12; ++bits) {
                const std::string text = word(12, bits);
                for (const Search& search : SEARCHES)
                    ASSERT_EQ(search.find(text, needle), findPlainly(text, needle))
                        << search.name << " of " << needle << " in " << text;
            }
        }
    }
}

TEST(TextSearch, RandomTextsOfFewLetters) {
    Random random(707);
    for (int i = 0; i < repetitions(20000, 1000); ++i) {
        const unsigned int letters = 1 + random.below(3);
        const auto word = [&](std::size_t length) {
            std::string result;
            while (result.size() < length) {
                if (result.empty() || random.below(4) == 0) {
                    result += static_cast<char>('a' + random.below(letters));
                } else { // repeats a part of itself
                    const std::size_t start = random.below(static_cast<unsigned int>(result.size()));
                    result += result.substr(start, 1 + random.below(20));
                }
            }
            return result.substr(0, length);
        };
        std::string text = word(random.below(2000));
        std::string needle = word(1 + random.below(200));
        if (random.below(2) && text.size() > 10) {
            needle = text.substr(random.below(static_cast<unsigned int>(text.size() - 1)), 1 + random.below(300));
            if (random.below(2)) needle.back() = 'z';
        }
        ASSERT_TRUE(finds(text, needle, findPlainly(text, needle))) << "text " << i << ": " << text << "\n" << needle;
    }
}

} // namespace
