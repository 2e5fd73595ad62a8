#include "Vorn/Text/TextStreams.h"

#include "Vorn/String/UTF8String.h"
#include "Vorn/Text/MakeString.h"
#include "Vorn/Text/TextConversion.h"

#include <gtest/gtest.h>
#include <iomanip>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace Vorn;

template <class Text>
std::string written(const Text& text, int width = 0, bool isLeft = false) {
    std::ostringstream stream;
    stream << std::setw(width) << std::setfill('.');
    if (isLeft) stream << std::left;
    stream << text << '|' << stream.width();
    return stream.str();
}

TEST(TextStreams, WritesViewsAndNames) {
    EXPECT_EQ(written(TextView("abc")), "abc|0");
    EXPECT_EQ(written(TextView(u"\u00E9\U0001F600")), "\xC3\xA9\xF0\x9F\x98\x80|0");
    EXPECT_EQ(written(TextView()), "|0");
    EXPECT_EQ(written(TextView("\xFF")), "\xEF\xBF\xBD|0");
    EXPECT_EQ(written(TextView("a\xC0\x80")), std::string("a\0|0", 4));
    EXPECT_EQ(written(Name("name")), "name|0");
    EXPECT_EQ(written(Name()), "|0");
}

TEST(TextStreams, PadsToCodePoints) {
    EXPECT_EQ(written(TextView("\xC3\xA9"), 4), "...\xC3\xA9|0");
    EXPECT_EQ(written(TextView(u"\U0001F600"), 4, true), "\xF0\x9F\x98\x80...|0");
    EXPECT_EQ(written(Name("\xC3\xA9"), 1), "\xC3\xA9|0");
    EXPECT_EQ(written(Name(), 2), "..|0");
    EXPECT_EQ(written(TextView("abc"), 2), "abc|0");
}

std::vector<std::string> words(const std::string& text, int width = 0) {
    std::istringstream stream(text);
    std::vector<std::string> result;
    String word("unchanged");
    while (stream >> std::setw(width) >> word) {
        EXPECT_EQ(stream.width(), 0);
        result.push_back(toUTF8(word));
    }
    if (!stream.eof()) result.push_back("malformed");
    return result;
}

using Words = std::vector<std::string>;

TEST(TextStreams, ReadsWords) {
    EXPECT_EQ(words(" one\ttwo\n\xC3\xA9 "), (Words{"one", "two", "\xC3\xA9"}));
    EXPECT_EQ(words(""), Words{});
    EXPECT_EQ(words("  \n"), Words{});
    EXPECT_EQ(words("a \xFF b"), (Words{"a", "malformed"}));
    EXPECT_EQ(words("\xC3\xA9\xC3\xA9\xC3\xA9", 2), (Words{"\xC3\xA9\xC3\xA9", "\xC3\xA9"}));
    EXPECT_EQ(words("abcd", 3), (Words{"abc", "d"}));
}

TEST(TextStreams, LeavesTheStringUnchangedOnFailure) {
    String word("old");
    UTF8String edited("old");
    std::istringstream malformed("\xED\xA0\x80 next");
    EXPECT_FALSE(malformed >> word);
    EXPECT_EQ(toUTF8(word), "old");
    malformed.clear();
    EXPECT_TRUE(malformed >> edited);
    EXPECT_EQ(toUTF8(edited), "next");
    EXPECT_TRUE(malformed.eof());
    EXPECT_FALSE(malformed >> edited);
    EXPECT_EQ(toUTF8(edited), "next");
}

TEST(TextStreams, ReadsLines) {
    std::istringstream stream(std::string("one two\n\nth\0ree\r\n\xFF\nlast", 23));
    String line;
    std::vector<std::string> lines;
    while (getLine(stream, line)) lines.push_back(toUTF8(line));
    EXPECT_EQ(lines, (Words{"one two", "", std::string("th\0ree\r", 7)}));
    EXPECT_FALSE(stream.eof()) << "the malformed line ends the loop";
    stream.clear();
    UTF8String last;
    EXPECT_TRUE(getLine(stream, last, ';'));
    EXPECT_EQ(toUTF8(last), "last");
    EXPECT_FALSE(getLine(stream, last));
    EXPECT_EQ(toUTF8(last), "last");
}

TEST(TextStreams, ReadsAsStandardStringsDo) {
    const std::string text = "a bc  def\n\n ghij k\t";
    for (int width = 0; width < 5; ++width) {
        std::istringstream ours(text), standard(text);
        for (int i = 0; i < 15; ++i) {
            String word("-");
            std::string expected = "-";
            const bool isRead = static_cast<bool>(ours >> std::setw(width) >> word);
            ASSERT_EQ(isRead, static_cast<bool>(standard >> std::setw(width) >> expected));
            if (!isRead) break;
            ASSERT_EQ(toUTF8(word), expected);
            ASSERT_EQ(ours.rdstate(), standard.rdstate());
        }
    }
}

// Throws at the end of its text.
class FailingBuffer : public std::stringbuf {
public:
    using std::stringbuf::stringbuf;

protected:
    int_type underflow() override {
        const int_type c = std::stringbuf::underflow();
        if (c == traits_type::eof()) throw std::runtime_error("the device has failed");
        return c;
    }
};

struct Failure {
    const char* name;
    const char* text;
    std::ios_base::iostate thrown; // the states that the stream throws for
    bool isLine;
};
constexpr Failure FAILURES[] = {
    {"a word", "abc", std::ios_base::goodbit, false},
    {"a word, thrown again", "abc", std::ios_base::badbit, false},
    {"a word, with exceptions of another state", "abc", std::ios_base::failbit, false},
    {"a line", "abc", std::ios_base::goodbit, true},
    {"a line, thrown again", "abc", std::ios_base::badbit, true},
    {"a line, with exceptions of another state", "abc", std::ios_base::eofbit, true},
};

template <class Text>
std::string failureOf(const Failure& failure, Text& text) {
    FailingBuffer buffer(failure.text);
    std::istream stream(&buffer);
    stream.exceptions(failure.thrown);
    std::string outcome = "state ";
    try {
        if constexpr (std::is_same_v<Text, String>) {
            failure.isLine ? getLine(stream, text) : stream >> text;
        } else {
            failure.isLine ? std::getline(stream, text) : stream >> text;
        }
    } catch (const std::exception& e) {
        outcome = std::string(e.what()) + ", state ";
    }
    return outcome + (stream.bad() ? "bad" : "not bad") + (stream.eof() ? ", eof" : "");
}

TEST(TextStreams, ReportFailuresOfBuffersAsStandardStringsDo) {
    for (const Failure& failure : FAILURES) {
        String text("old");
        std::string standard;
        EXPECT_EQ(failureOf(failure, text), failureOf(failure, standard)) << failure.name;
        EXPECT_EQ(toUTF8(text), "old") << failure.name;
    }
}

} // namespace
