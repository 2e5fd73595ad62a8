#include "Vorn/Text/TextView.h"

#include "Vorn/String/UTF8String.h"

#include <gtest/gtest.h>
#include <string>
#include <type_traits>

namespace {

using namespace Vorn;

// The units of a view, one element each, behind the name of its encoding.
std::string shown(TextView view) {
    std::string text = view.isUTF8() ? "UTF8" : "UTF16";
    for (unsigned int i = 0; i < view.getLength(); ++i) {
        text += ' ';
        text += std::to_string(view.isUTF8() ? view.getUTF8()[i] : static_cast<unsigned int>(view.getUTF16()[i]));
    }
    return text;
}

TEST(TextView, ViewsEachKindOfText) {
    const unsigned char bytes[] = {0xC3, 0xA9, 0};
    EXPECT_EQ(shown("ab"), "UTF8 97 98");
    EXPECT_EQ(shown(bytes), "UTF8 195 169");
    EXPECT_EQ(shown(u8"é"), "UTF8 195 169");
    EXPECT_EQ(shown(u"é"), "UTF16 233");
    EXPECT_EQ(shown(std::string("a\0b", 3)), "UTF8 97 0 98");
    EXPECT_EQ(shown(std::string_view("ab")), "UTF8 97 98");
    EXPECT_EQ(shown(std::u16string(2, u'a')), "UTF16 97 97");
    EXPECT_EQ(shown(std::u16string_view(u"ab")), "UTF16 97 98");
    EXPECT_EQ(shown(TextView("abc", 2)), "UTF8 97 98");
    EXPECT_EQ(shown(String("ab")), "UTF8 97 98");
    EXPECT_EQ(shown(UTF8String("ab")), "UTF8 97 98");
    EXPECT_EQ(shown(String(reinterpret_cast<const UTF16Char*>(u"ab"))), "UTF16 97 98");
}

TEST(TextView, TakesNullForAnEmptyText) {
    EXPECT_EQ(shown(TextView()), "UTF8");
    EXPECT_EQ(shown(String()), "UTF8");
    EXPECT_EQ(shown(String::getEmptyString()), "UTF8");
    EXPECT_EQ(shown(static_cast<const char*>(nullptr)), "UTF8");
    EXPECT_EQ(shown(static_cast<const char16_t*>(nullptr)), "UTF16");
    EXPECT_EQ(shown(std::string_view()), "UTF8");
    EXPECT_FALSE((std::is_constructible_v<TextView, std::nullptr_t>));
    EXPECT_FALSE((std::is_constructible_v<TextView, const int*>));
}

TEST(TextView, ViewsTheBufferThatIsExact) {
    const String fromBytes("\xF0\x9F\x98\x80");
    fromBytes.getData()->getBuffer<UTF16Char>(); // drops the first surrogate
    EXPECT_EQ(shown(fromBytes), "UTF8 240 159 152 128");

    const UTF16Char units[] = {0xDBC0, 0xDC00, 0};
    const String fromUnits(units);
    fromUnits.getData()->getBuffer<unsigned char>(); // malformed bytes
    EXPECT_EQ(shown(fromUnits), "UTF16 56256 56320");
}

TEST(TextView, EqualsTextOfEachKind) {
    const TextView view("a\xC3\xA9");
    const std::string standard("a\xC3\xA9");
    EXPECT_TRUE(view == TextView(u"a\u00E9"));
    EXPECT_TRUE(view == u"a\u00E9");
    EXPECT_TRUE(standard == view);
    EXPECT_TRUE(String(standard.c_str()) == view);
    EXPECT_FALSE(view == "a");
    EXPECT_TRUE(view != "a");
    EXPECT_FALSE("a\xC3\xA9" != view);
}

// The units of an edited record are those before the edit.
TEST(TextView, ViewsTheBytesAfterAnEdit) {
    UTF8String edited("\xC0\x80\xC0\x80\xC3\xA9z");
    edited.reserve(7);
    edited.getData()->getBuffer<UTF16Char>();
    ASSERT_EQ(shown(edited), "UTF8 192 128 192 128 195 169 122");
    edited.erase(0, 2); // as many bytes as a conversion of both U+0000 would lack
    EXPECT_EQ(shown(edited), "UTF8 192 128 195 169 122");
    EXPECT_TRUE(edited == String("\xC0\x80\xC3\xA9z"));
}

TEST(TextView, SlicesByUnits) {
    const TextView text("abcdef");
    EXPECT_EQ(shown(text.slice(2)), shown("cdef"));
    EXPECT_EQ(shown(text.slice(2, 3)), shown("cde"));
    EXPECT_EQ(shown(text.slice(2, 0xFFFFFFFE)), shown("cdef"));
    EXPECT_EQ(shown(text.slice(6)), shown(""));
    EXPECT_EQ(shown(TextView(u"abc").slice(1, 1)), shown(u"b"));
    EXPECT_EQ(shown(TextView(u"abc").slice(3)), shown(u""));
    EXPECT_THROW(text.slice(7), Exception<4>);
}

TEST(TextView, RefusesTextsThatAreTooLong) {
    if constexpr (sizeof(std::size_t) > 4) {
        const std::size_t length = std::size_t(0xFFFFFFFE) + 1;
        EXPECT_THROW(TextView("", length), Exception<4>);
        EXPECT_EQ(TextView("", length - 1).getLength(), 0xFFFFFFFE);
    }
}

} // namespace
