#include "Vorn/Text/FormatFmt.h"
#include "Vorn/Text/FormatStd.h"

#include "Vorn/Text/MakeString.h"

#include <gtest/gtest.h>
#include <string>

namespace {

using namespace Vorn;

struct Row {
    const char* format;
    const char* text;
    const char* expected;
};

// Each kind of text, with a format that is known at run time.
void expectFormats(const Row& row) {
    const String string = makeString(row.text);
    const UTF8String edited(string);
    const Name name(row.text);
    EXPECT_EQ(fmt::format(fmt::runtime(row.format), string), row.expected) << row.format << " of " << row.text;
    EXPECT_EQ(fmt::format(fmt::runtime(row.format), edited), row.expected) << row.format << " of " << row.text;
    EXPECT_EQ(fmt::format(fmt::runtime(row.format), name), row.expected) << row.format << " of " << row.text;
    EXPECT_EQ(fmt::format(fmt::runtime(row.format), TextView(row.text)), row.expected)
        << row.format << " of " << row.text;
}

TEST(Format, OfTexts) {
    const Row rows[] = {{"{}", "abc", "abc"},
                        {"{}", "", ""},
                        {"[{:5}]", "abc", "[abc  ]"},
                        {"[{:<5}]", "abc", "[abc  ]"},
                        {"[{:>5}]", "abc", "[  abc]"},
                        {"[{:^6}]", "abc", "[ abc  ]"},
                        {"[{:*^5}]", "\xC3\xA9", "[**\xC3\xA9**]"},
                        {"[{:\xE2\x82\xAC>3}]", "a",
                         "[\xE2\x82\xAC\xE2\x82\xAC"
                         "a]"},
                        {"[{:2}]", "abc", "[abc]"},
                        {"[{:.2}]", "\xC3\xA9\xF0\x9F\x98\x80x", "[\xC3\xA9\xF0\x9F\x98\x80]"},
                        {"[{:3.1s}]", "abc", "[a  ]"},
                        {"[{:.0}]", "abc", "[]"},
                        {"[{:.9}]", "abc", "[abc]"},
                        {"[{:}]", "abc", "[abc]"},
                        {"[{:s}]", "abc", "[abc]"},
                        {"[{:>>4}]", "abc", "[>abc]"}};
    for (const Row& row : rows) {
        expectFormats(row);
    }
    EXPECT_EQ(fmt::format("{:4}|{:>4}", String(), TextView(u"\U0001F600")), "    |   \xF0\x9F\x98\x80");
    EXPECT_EQ(fmt::format("{}", TextView("a\xFF"
                                         "b")),
              "a\xEF\xBF\xBD"
              "b");
    EXPECT_EQ(fmt::format("{}", String("a\xC0\x80"
                                       "b")),
              std::string("a\0b", 3));
    const std::string large(2000, 'x');
    EXPECT_EQ(fmt::format("{}", TextView(large)), large);
}

TEST(Format, OfTextsWithArguments) {
    const Name name("abc");
    EXPECT_EQ(fmt::format("[{:{}}]", name, 5), "[abc  ]");
    EXPECT_EQ(fmt::format("[{:>{}.{}}]", name, 5, 2u), "[   ab]");
    EXPECT_EQ(fmt::format("[{1:>{0}}]", 5ll, name), "[  abc]");
    EXPECT_THROW(static_cast<void>(fmt::format("{:{}}", name, -1)), fmt::format_error);
    EXPECT_THROW(static_cast<void>(fmt::format("{:{}}", name, "x")), fmt::format_error);
}

TEST(Format, RefusesWrongFormats) {
    for (const char* const format : {"{:d}", "{:05}", "{:.}", "{:+}", "{:#}", "{:ss}", "{:<5x}", "{:{<5}",
                                     "{:999999999999}", "{:{x}}", "{:.{0}"}) {
        EXPECT_THROW(static_cast<void>(fmt::format(fmt::runtime(format), Name("abc"))), fmt::format_error) << format;
        EXPECT_THROW(static_cast<void>(fmt::format(fmt::runtime(format), std::string("abc"))), fmt::format_error)
            << format;
    }
}

TEST(Format, AgreesWithStandardStrings) {
    for (const char* const text : {"", "a", "abc", "\xC3\xA9t\xC3\xA9"}) {
        for (const char* const format :
             {"{}", "{:1}", "{:4}", "{:<4}", "{:>4}", "{:^4}", "{:-^4}", "{:.1}", "{:4.2}", "{:>4.2s}", "{:^5.0}"}) {
            EXPECT_EQ(fmt::format(fmt::runtime(format), makeString(text)),
                      fmt::format(fmt::runtime(format), std::string(text)))
                << format << " of " << text;
        }
    }
}

TEST(Format, OfGeometry) {
    EXPECT_EQ(fmt::format("{}", Vector2(1.5f, -2)), "(1.5, -2)");
    EXPECT_EQ(fmt::format("{}", XYPair<float, float>(0.1f, 1e20f)), "(0.1, 1e+20)");
    EXPECT_EQ(fmt::format("{}", ComplexAngle(1, 0)), "(1, 0)");
    EXPECT_EQ(fmt::format("{}", Rect<float, float>(1, 2, 3, 4)), "(1, 2, 3, 4)");
    EXPECT_EQ(fmt::format("{}", FloatRect(1, 2, 3, 4)), "(1, 2, 3, 4)");
    EXPECT_EQ(fmt::format("{}", Matrix3::IDENTITY), "((1, 0, 0), (0, 1, 0), (0, 0, 1))");
    EXPECT_EQ(fmt::format("{:.2f}", Vector2(1.5f, -2)), "(1.50, -2.00)");
    EXPECT_EQ(fmt::format("{:5.1f}", FloatRect(1, 2, 3, 4)), "(  1.0,   2.0,   3.0,   4.0)");
    EXPECT_EQ(fmt::format("{:+}", Matrix3::IDENTITY), "((+1, +0, +0), (+0, +1, +0), (+0, +0, +1))");
    EXPECT_EQ(fmt::format("{:{}.{}f}", Vector2(1, 2), 6, 2), "(  1.00,   2.00)");
    EXPECT_THROW(static_cast<void>(fmt::format(fmt::runtime("{:d}"), Vector2(1, 2))), fmt::format_error);
}

} // namespace
