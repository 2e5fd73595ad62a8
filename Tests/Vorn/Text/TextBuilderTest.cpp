// Texts that are put together or changed, in every form and encoding, compared with lists of code points.
#include "Vorn/Text/TextBuilder.h"

#include "Reference/CodeSplits.h"
#include "Support/AllocationCounter.h"
#include "Support/Random.h"
#include "Support/TextForms.h"
#include "Vorn/Text/TextChange.h"
#include "Vorn/Text/TextPieces.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using namespace Vorn;

const std::vector<Codes> TEXTS{{},
                               {'a'},
                               {0},
                               {'b', 0xE9},
                               {0x1F600},
                               {0x20AC, 0, 'c'},
                               codesOf("plain text of ASCII"),
                               {0x7FF, 0x800},
                               {0x10FFFD, 0xFFFD},
                               {'A', 'z', 'Z', 'a', '@', '[', '`', '{', 0xC0, 0x141}};

void expectString(const String& string, const Codes& codes, bool isUTF8) {
    ASSERT_TRUE(string.isNotNull());
    EXPECT_EQ(codesOf(string), codes);
    const StringData& data = *string.getData();
    EXPECT_EQ(data.getCharset(), reference::charsetOf(codes));
    EXPECT_EQ(data.haveEmbeddedNulls(), reference::holds(codes, 0));
    if (codes.empty()) return;
    const String made = isUTF8 ? makeString(utf8Of(codes)) : makeString(utf16Of(codes));
    const TextView expected(made), actual(string);
    ASSERT_EQ(actual.isUTF8(), isUTF8);
    ASSERT_EQ(actual.getLength(), expected.getLength());
    if (isUTF8) {
        EXPECT_EQ(data.getTerminatedBuffer<unsigned char>()[actual.getLength()], 0);
        EXPECT_EQ(data.getPrivateBuffer<UTF16Char>(), nullptr);
    } else {
        EXPECT_EQ(data.getTerminatedBuffer<UTF16Char>()[actual.getLength()], 0);
        EXPECT_EQ(data.getPrivateBuffer<unsigned char>(), nullptr);
    }
}

Codes joined(Codes a, const Codes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

bool isUTF8(TextView text) { return text.isUTF8(); }

// An empty text does not decide about the encoding.
bool isJoinedInUTF8(TextView a, TextView b) {
    if (a.isEmpty()) return isUTF8(b);
    return b.isEmpty() ? isUTF8(a) : isUTF8(a) || isUTF8(b);
}

TEST(Concat, JoinsEachPairOfForms) {
    for (const Codes& a : TEXTS) {
        for (const Codes& b : TEXTS) {
            forEachForm(a, [&](const auto& left, const char* leftName) {
                forEachForm(b, [&](const auto& right, const char* rightName) {
                    SCOPED_TRACE(std::string(leftName) + " and " + rightName);
                    const Codes expected = joined(a, b);
                    const bool inUTF8 = isJoinedInUTF8(left, right);
                    expectString(concat(left, right), expected, inUTF8);
                    TextBuilder builder;
                    builder.append(left).append(right);
                    expectString(builder.build(), expected, inUTF8);
                    expectString(builder.take(), expected, inUTF8);
                    EXPECT_TRUE(builder.isEmpty());
                    builder.append(right, left);
                    expectString(builder.take(), joined(b, a), inUTF8);
                    if constexpr (std::is_base_of_v<String, std::decay_t<decltype(left)>> ||
                                  std::is_base_of_v<String, std::decay_t<decltype(right)>>)
                        expectString(left + right, expected, inUTF8);
                });
            });
        }
    }
}

TEST(Concat, WritesCharactersAndNumbers) {
    EXPECT_EQ(codesOf(concat("x = ", 42, ' ', -7ll, ' ', 1.5f, ' ', 0.1, ' ', true, ' ', U'\u00E9', u'\u20AC', '\0')),
              codesOf(std::string("x = 42 -7 1.5 0.1 true \xC3\xA9\xE2\x82\xAC\0", 29)));
    EXPECT_EQ(codesOf(concat(std::numeric_limits<long long>::min())), codesOf("-9223372036854775808"));
    EXPECT_EQ(codesOf(concat(std::numeric_limits<unsigned long long>::max())), codesOf("18446744073709551615"));
    EXPECT_EQ(codesOf(concat(-2.2250738585072014e-308)), codesOf("-2.2250738585072014e-308"));
    const String wide = makeString(u"\u00E9");
    expectString(concat(1, wide, 2, 'x', U'\U0001F600'), {'1', 0xE9, '2', 'x', 0x1F600}, false);
    expectString(concat(1, wide, 2, "x"), {'1', 0xE9, '2', 'x'}, true);
    expectString(concat(""), {}, true);
    expectString(concat(String()), {}, true);
}

TEST(Concat, RefusesWhatNoStringHas) {
    const String s = makeString("a");
    EXPECT_THROW(concat(s, "\xFF"), Exception<7>);
    EXPECT_THROW(concat(s, u"\uFFFE"), Exception<7>);
    EXPECT_THROW(concat(s, static_cast<char32_t>(0xD800)), Exception<7>);
    EXPECT_THROW(concat(s, '\xC3'), Exception<4>);
    EXPECT_THROW(s + "\xC3", Exception<7>);
    EXPECT_THROW(replaceAll("a\xFF", "a", "b"), Exception<7>);
    EXPECT_THROW(replaceAll("a", "a", "\xFF"), Exception<7>);
    EXPECT_THROW(replaceAll("a", "", "b"), Exception<4>);
    EXPECT_THROW(toUpperASCII("\xFF"), Exception<7>);
    EXPECT_THROW(padStart("a", 3, static_cast<char32_t>(0x110000)), Exception<7>);
}

TEST(Concat, AllocatesOneBlockAndOneRecord) {
    const String a = makeString("a name of some length"), b = makeString(u"another in UTF-16");
    EXPECT_EQ(allocationsDuring([&] { concat(a, ", ", 42, b, 1.5f, U'\u20AC'); }), 2u);
    EXPECT_EQ(allocationsDuring([&] { a + b; }), 2u);
}

TEST(TextBuilder, KeepsItsTextIfAnItemIsRefused) {
    TextBuilder builder;
    builder.append(u"\u00E9a");
    EXPECT_THROW(builder.append("b", 1, "\xFF"), Exception<7>);
    EXPECT_EQ(codesOf(builder.build()), (Codes{0xE9, 'a'}));
    builder.append('c');
    EXPECT_EQ(codesOf(builder.take()), (Codes{0xE9, 'a', 'c'}));
}

TEST(TextBuilder, KeepsItsEncodingIfAnItemIsRefused) {
    TextBuilder builder;
    builder.append(u"\u00E9\u00E8");
    EXPECT_EQ(builder.getLength(), 2u);
    EXPECT_THROW(builder.append("b", "\xFF"), Exception<7>);
    EXPECT_EQ(builder.getLength(), 2u) << "in units of UTF-16";
    EXPECT_EQ(TextView(builder.build()).getEncoding(), TextEncoding::UTF16);
    builder.append("b");
    EXPECT_EQ(builder.getLength(), 5u) << "in bytes";
    EXPECT_EQ(codesOf(builder.take()), (Codes{0xE9, 0xE8, 'b'}));
}

TEST(TextBuilder, KeepsItsTextIfAnItemBehindPlainOnesIsRefused) {
    TextBuilder builder;
    builder.reserve(1000);
    builder.append("ab");
    EXPECT_THROW(builder.append("c", 1, "\xFF"), Exception<7>);
    EXPECT_THROW(builder.append("c", 1, '\x80'), Exception<4>);
    EXPECT_EQ(codesOf(builder.append('d').take()), (Codes{'a', 'b', 'd'}));
}

// Short plain texts are appended without calls if there is room; one character of another kind stands at each place.
TEST(TextBuilder, AppendsTextsOfEachLength) {
    std::vector<unsigned int> lengths = {63, 64, 65, 255, 256, 257, 600};
    for (unsigned int length = 1; length < 34; ++length) lengths.push_back(length);
    for (const unsigned int length : lengths) {
        const unsigned int step = length < 34 ? 1 : 9;
        for (unsigned int at = 0; at < length; at += step) {
            for (const unsigned int code : {unsigned('x'), 0u, 1u, 0x7Fu, 0xE9u, 0x1F600u}) {
                Codes codes(length, 'a');
                codes[at] = code;
                Codes expected = {'<'};
                expected.insert(expected.end(), codes.begin(), codes.end());
                expected.insert(expected.end(), {'>', '-', '4', '2'});
                forEachForm(codes, [&](const auto& form, const char* name) {
                    TextBuilder builder;
                    builder.reserve(2000);
                    const String built = builder.append('<', form, '>', -42).take();
                    ASSERT_EQ(codesOf(built), expected) << name << ", U+" << code << " at " << at << " of " << length;
                    ASSERT_EQ(codesOf(concat(u'<', form, U'>', -42)), expected) << name << ", concat, " << code;
                    ASSERT_EQ(tryMakeString(built).error, nullptr) << name << ", U+" << code;
                });
            }
        }
    }
}

TEST(TextBuilder, GrowsInLinearTimeAndIsReusable) {
    TextBuilder builder;
    Codes codes;
    const std::size_t allocations = allocationsDuring([&] {
        for (unsigned int i = 0; i < 100000; ++i) builder.appendCodePoint('a' + i % 26);
    });
    EXPECT_LE(allocations, 30u);
    for (unsigned int i = 0; i < 100000; ++i) codes.push_back('a' + i % 26);
    EXPECT_EQ(codesOf(builder.build()), codes);
    builder.clear();
    EXPECT_TRUE(builder.isEmpty());
    EXPECT_EQ(allocationsDuring([&] { builder.append("reused"); }), 0u);
    EXPECT_EQ(codesOf(builder.take()), codesOf("reused"));
    EXPECT_EQ(allocationsDuring([&] { builder.append("again"); }), 0u) << "the short text was copied";
    TextBuilder moved = std::move(builder);
    EXPECT_EQ(codesOf(moved.take()), codesOf("again"));
    moved = TextBuilder();
    expectString(moved.take(), {}, true);
}

TEST(TextBuilder, ForgetsTheEncodingOfRemovedTexts) {
    TextBuilder builder;
    for (const bool isTaken : {false, true}) {
        builder.reserve(64);
        builder.append(u"wide");
        EXPECT_FALSE(TextView(builder.build()).isUTF8());
        if (isTaken)
            builder.take();
        else
            builder.clear();
        EXPECT_TRUE(TextView(builder.append(42, 'x').build()).isUTF8()) << "taken: " << isTaken;
        EXPECT_EQ(codesOf(builder.take()), codesOf("42x"));
    }
}

TEST(TextBuilder, RefusesTextsThatAreTooLong) {
    TextBuilder builder;
    EXPECT_THROW(builder.reserve(0xFFFFFFFF), Exception<4>);
    const String s = makeString("abc");
    EXPECT_THROW(padEnd(s, 0xFFFFFFFF), Exception<4>);
    EXPECT_THROW(repeat(s, 0x60000000), Exception<4>);
    EXPECT_THROW(repeat(s, 0xFFFFFFFF), Exception<4>);
    EXPECT_THROW(padStart(s, 0x80000000, U'\U0001F600'), Exception<4>);
    EXPECT_EQ(codesOf(repeat("", 0xFFFFFFFF)), Codes());
}

TEST(Join, PutsSeparatorsBetweenItems) {
    const std::vector<String> strings{makeString("a"), makeString("b"), makeString(u"\u20AC")};
    const std::vector<std::string> texts{"a", "", "c"};
    EXPECT_EQ(codesOf(join(strings, ", ")), codesOf(u"a, b, \u20AC"));
    EXPECT_EQ(codesOf(join(texts, ';')), codesOf("a;;c"));
    EXPECT_EQ(codesOf(join(std::vector<int>{1, 2, 3}, "+")), codesOf("1+2+3"));
    EXPECT_EQ(codesOf(join({"a", "b"}, U'\u2013')), codesOf(u"a\u2013b"));
    EXPECT_EQ(codesOf(join(split("a,b,c", ','), ", ")), codesOf("a, b, c"));
    expectString(join(std::vector<std::string>(), ","), {}, true);
    expectString(join({u"a", u"b"}, u","), codesOf("a,b"), false);
}

TEST(TextChange, ReplacesAsTheModel) {
    Random random(35);
    constexpr unsigned int LETTERS[] = {'a', 'a', 'b', 0, 0xE9, 0x1F600};
    const auto randomCodes = [&](unsigned int size) {
        Codes codes;
        while (codes.size() < size) codes.push_back(LETTERS[random.below(6)]);
        return codes;
    };
    for (int i = 0; i < repetitions(2000); ++i) {
        const Codes text = randomCodes(random.below(12));
        const Codes from = randomCodes(1 + random.below(2));
        const Codes to = randomCodes(random.below(4));
        const String fromText = makeString(utf8Of(from)), toText = makeString(utf16Of(to));
        forEachForm(text, [&](const auto& form, const char* name) {
            SCOPED_TRACE(std::string(name) + ": " + reference::shown(text) + "; from " + reference::shown(from) +
                         "; to " + reference::shown(to));
            const bool inUTF8 = TextView(form).isUTF8();
            expectString(replaceAll(form, fromText, toText), reference::replace(text, from, to, text.size()), inUTF8);
            expectString(replaceFirst(form, fromText, toText), reference::replace(text, from, to, 1), inUTF8);
        });
    }
}

TEST(TextChange, ReplacesEachRange) {
    for (const Codes& codes : TEXTS) {
        forEachForm(codes, [&](const auto& form, const char* name) {
            const bool inUTF8 = TextView(form).isUTF8();
            const unsigned int length = TextView(form).getLength();
            for (unsigned int start = 0; start <= codes.size(); ++start) {
                for (unsigned int end = start; end <= codes.size(); ++end) {
                    SCOPED_TRACE(std::string(name) + ": " + reference::shown(codes) + "; from " +
                                 std::to_string(start) + " to " + std::to_string(end));
                    const unsigned int offset = offsetOfCodePoint(form, start);
                    const unsigned int units = offsetOfCodePoint(form, end) - offset;
                    const Codes before(codes.begin(), codes.begin() + start), behind(codes.begin() + end, codes.end());
                    for (const Codes& to : {Codes{}, Codes{'-'}, Codes{0x1F600, 0, 0xE9}}) {
                        const Codes expected = joined(joined(before, to), behind);
                        expectString(replaceRange(form, offset, units, makeString(utf8Of(to))), expected, inUTF8);
                        expectString(replaceRange(form, offset, units, utf16Of(to)), expected, inUTF8);
                        if (start == end) expectString(insert(form, offset, utf16Of(to)), expected, inUTF8);
                    }
                    expectString(erase(form, offset, units), joined(before, behind), inUTF8);
                    if (end == codes.size()) expectString(erase(form, offset), before, inUTF8);
                }
            }
            EXPECT_THROW(insert(form, length + 1, "a"), Exception<4>);
            EXPECT_THROW(insert(form, 0, "\xFF"), Exception<7>);
            for (unsigned int at = 0; at < length; ++at) {
                if (isBoundary(form, at)) continue;
                EXPECT_THROW(insert(form, at, ""), Exception<4>) << at;
                EXPECT_THROW(erase(form, 0, at), Exception<4>) << at;
            }
        });
    }
    EXPECT_THROW(insert("a\xFF", 1, "b"), Exception<7>);
}

TEST(TextChange, RepeatsPadsAndChangesCase) {
    for (const Codes& codes : TEXTS) {
        forEachForm(codes, [&](const auto& form, const char* name) {
            SCOPED_TRACE(std::string(name) + ": " + reference::shown(codes));
            const bool inUTF8 = TextView(form).isUTF8();
            Codes repeated;
            for (unsigned int count = 0; count < 5; ++count) {
                expectString(repeat(form, count), repeated, inUTF8);
                repeated = joined(repeated, codes);
            }
            for (const unsigned int fill : {0x20u, 0u, 0xE9u, 0x1F600u}) {
                for (const unsigned int width : {0u, 1u, 5u, 30u}) {
                    const std::size_t size = codes.size() < width ? width - codes.size() : 0;
                    expectString(padStart(form, width, fill), joined(Codes(size, fill), codes), inUTF8);
                    expectString(padEnd(form, width, fill), joined(codes, Codes(size, fill)), inUTF8);
                }
            }
            Codes upper = codes, lower = codes;
            for (unsigned int& c : upper) c = c >= 'a' && c <= 'z' ? c - 32 : c;
            for (unsigned int& c : lower) c = c >= 'A' && c <= 'Z' ? c + 32 : c;
            expectString(toUpperASCII(form), upper, inUTF8);
            expectString(toLowerASCII(form), lower, inUTF8);
        });
    }
}

TEST(TextChange, ReturnsAnUnchangedStringAsItIs) {
    const String s = makeString("a long text that needs a block");
    EXPECT_EQ(allocationsDuring([&] {
                  EXPECT_EQ(replaceAll(s, "q", "y").getData(), s.getData());
                  EXPECT_EQ(replaceFirst(s, "q", "y").getData(), s.getData());
                  EXPECT_EQ(repeat(s, 1).getData(), s.getData());
                  EXPECT_EQ(insert(s, 2, "").getData(), s.getData());
                  EXPECT_EQ(erase(s, 2, 0).getData(), s.getData());
                  EXPECT_EQ(padStart(s, 3).getData(), s.getData());
                  EXPECT_EQ(toLowerASCII(s).getData(), s.getData());
              }),
              0u);
}

// What is not an operation of this library must stay as it is, and what has no text must not compile.
template <class A, class B, class = void>
struct CanAdd : std::false_type {};
template <class A, class B>
struct CanAdd<A, B, std::void_t<decltype(std::declval<A>() + std::declval<B>())>> : std::true_type {};

TEST(Addition, JoinsOnlyWithStrings) {
    static_assert(std::is_same_v<decltype(std::string() + std::string()), std::string>);
    static_assert(std::is_same_v<decltype("a" + std::string()), std::string>);
    static_assert(std::is_same_v<decltype(String() + "a"), String>);
    static_assert(std::is_same_v<decltype(u"a" + String()), String>);
    static_assert(std::is_same_v<decltype(UTF8String() + String()), String>);
    static_assert(std::is_same_v<decltype(TextView() + String()), String>);
    static_assert(!CanAdd<String, int>::value && !CanAdd<String, char>::value);
    static_assert(!CanAdd<String, std::nullptr_t>::value && !CanAdd<TextView, TextView>::value);
    static_assert(!CanAdd<const char*, const char*>::value && !CanAdd<TextView, std::string>::value);
    UTF8String s = makeString("a");
    s = s + "b" + std::string("c") + u"d";
    EXPECT_EQ(codesOf(s), codesOf("abcd"));
}

} // namespace
