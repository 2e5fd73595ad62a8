// What users of std::string and std::string_view expect of searches and comparisons: each expectation is computed with
// the standard library, for ASCII texts in every encoding. Also names that stand beside those of namespace std.
#include "Support/Random.h"
#include "Vorn/Text/CodePoints.h"
#include "Vorn/Text/MakeString.h"
#include "Vorn/Text/TextConversion.h"
#include "Vorn/Text/TextOrder.h"
#include "Vorn/Text/TextSearch.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Vorn::String;
using Vorn::TextView;

unsigned int offset(std::size_t position) {
    return position == std::string_view::npos ? Vorn::NOT_FOUND : static_cast<unsigned int>(position);
}

int signOf(int value) { return value < 0 ? -1 : value > 0 ? 1 : 0; }

// One text in all forms that a program can hold.
class Forms {
public:
    explicit Forms(const std::string& text)
        : m_bytes(text), m_units(text.begin(), text.end()), m_string(Vorn::makeString(m_bytes)),
          m_wide(Vorn::makeString(m_units)) {}

    std::vector<TextView> views() const { return {m_bytes, m_units, m_string, m_wide}; }

private:
    std::string m_bytes;
    std::u16string m_units;
    String m_string;
    String m_wide;
};

std::string randomText(Random& random, unsigned int most) {
    std::string text;
    for (unsigned int left = random.below(most + 1); left-- > 0;) text += static_cast<char>('a' + random.below(3));
    return text;
}

TEST(StdStringUser, FindsAndComparesAsStringViewDoes) {
    Random random(9);
    for (int i = 0; i < repetitions(400); ++i) {
        const std::string a = randomText(random, 30), b = randomText(random, 4);
        const std::string_view s = a;
        const Forms texts(a), needles(b);
        for (const TextView text : texts.views()) {
            for (const TextView needle : needles.views()) {
                SCOPED_TRACE("text: " + a + " needle: " + b);
                EXPECT_EQ(find(text, needle), offset(s.find(b)));
                EXPECT_EQ(findLast(text, needle), offset(s.rfind(b)));
                for (unsigned int at = 0; at <= a.size() + 1; ++at) {
                    EXPECT_EQ(findNext(text, needle, at), offset(s.find(b, at))) << at;
                    EXPECT_EQ(findNextAnyOf(text, needle, at), offset(s.find_first_of(b, at))) << at;
                    EXPECT_EQ(findNextNoneOf(text, needle, at), offset(s.find_first_not_of(b, at))) << at;
                    if (at > 0) {
                        EXPECT_EQ(findPrevious(text, needle, at), offset(s.rfind(b, at - 1))) << at;
                    }
                }
                EXPECT_EQ(findLastAnyOf(text, needle), offset(s.find_last_of(b)));
                EXPECT_EQ(findLastNoneOf(text, needle), offset(s.find_last_not_of(b)));
                EXPECT_EQ(contains(text, needle), s.find(b) != std::string_view::npos);
                EXPECT_EQ(startsWith(text, needle), s.substr(0, b.size()) == b);
                EXPECT_EQ(endsWith(text, needle), s.size() >= b.size() && s.substr(s.size() - b.size()) == b);
                EXPECT_EQ(compare(text, needle), signOf(s.compare(b)));
                EXPECT_EQ(equals(text, needle), s == b);
                EXPECT_EQ(hashOfText(text) == hashOfText(needle), a == b);
            }
            EXPECT_EQ(find(text, 'b'), offset(s.find('b')));
            EXPECT_EQ(findLast(text, 'b'), offset(s.rfind('b')));
            EXPECT_EQ(int(count(text, 'b')), std::count(a.begin(), a.end(), 'b'));
            EXPECT_EQ(Vorn::toUTF8(text), a);
            EXPECT_EQ(codePointCount(text), a.size());
            EXPECT_TRUE(std::equal(a.begin(), a.end(), codePoints(text).begin(), codePoints(text).end()));
        }
    }
}

TEST(StdStringUser, LoopsOverOccurrences) {
    const std::string text = "a,b,,c";
    std::vector<unsigned int> commas;
    for (unsigned int at = Vorn::find(text, ','); at != Vorn::NOT_FOUND; at = Vorn::findNext(text, ',', at + 1))
        commas.push_back(at);
    EXPECT_EQ(commas, (std::vector<unsigned int>{1, 3, 4}));
}

// The names find, count, equals and compare stand beside std::find and std::count in one scope.
namespace BothNamespaces {

using namespace std;
using namespace Vorn;

TEST(StdStringUser, UsesBothNamespacesAtOnce) {
    const std::string a = "abcabc", b = "c";
    const std::vector<int> numbers = {1, 2, 2};
    const std::vector<String> texts = {makeString("x"), makeString("y")};
    EXPECT_EQ(find(a, b), 2u);
    EXPECT_EQ(find(a, "c"), 2u);
    EXPECT_EQ(find("abc", 'c'), 2u);
    EXPECT_EQ(findNext(a, b, 3), 5u);
    EXPECT_EQ(find(a.begin(), a.end(), 'c') - a.begin(), 2);
    EXPECT_EQ(find(a.data(), a.data() + 6, 'c') - a.data(), 2);
    EXPECT_EQ(find(numbers.begin(), numbers.end(), 2) - numbers.begin(), 1);
    EXPECT_EQ(find(texts.begin(), texts.end(), makeString("y")) - texts.begin(), 1);
    EXPECT_EQ(count(a, b), 2u);
    EXPECT_EQ(count(texts.begin(), texts.end(), texts[0]), 1);
    EXPECT_EQ(count(numbers.begin(), numbers.end(), 2), 2);
    EXPECT_EQ(count(codePoints(a).begin(), codePoints(a).end(), UTF32Char('a')), 2);
    EXPECT_TRUE(equals(a, a));
    EXPECT_EQ(compare(a, b), -1);
    EXPECT_TRUE(contains(a, b));
}

} // namespace BothNamespaces

} // namespace
