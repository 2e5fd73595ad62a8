// Text between guard pages, unterminated: no operation reads beyond it, and the units behind a text change no result.
// A result that is read one unit further as documented, such as a substring at the end, is asked of terminated text.
#include "Support/ExpectedLeak.h"
#include "Support/GuardedBuffer.h"
#include "Support/Random.h"
#include "Support/Texts.h"
#include "Vorn/Exception.h"
#include "Vorn/String/ASCIITable.h"
#include "Vorn/String/Interop.h"
#include "Vorn/String/String.h"
#include "Vorn/String/UTF8String.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using Vorn::String;
using Vorn::StringData;
using Vorn::UTF16Char;
using Vorn::UTF8String;

using Byte = unsigned char;

constexpr int MOST_CHARACTERS = 40;

// Text in one encoding between guard pages, and the same text in ordinary memory in front of other units.
template <class CharType>
class Twins {
public:
    template <class Text>
    Twins(const Text& text, GuardedEdge edge, CharType behind)
        : m_guarded(text, edge), m_length(static_cast<unsigned int>(text.size())),
          m_ordinary(text.begin(), text.end()) {
        m_ordinary.insert(m_ordinary.end(), 8, behind);
    }
    String guarded() const { return String(m_guarded.data(), m_length); }
    String ordinary() const { return String(m_ordinary.data(), m_length); }

private:
    GuardedBuffer<CharType> m_guarded;
    unsigned int m_length;
    std::vector<CharType> m_ordinary;
};

// Writes what calls return or raise.
class Results {
public:
    template <class Call>
    void add(const char* name, Call call) {
        m_text << name << ' ';
        try {
            m_text << call();
        } catch (const Vorn::AllExceptions& exception) {
            m_text << exception.getMessage();
        }
        m_text << '\n';
    }
    std::string text() const { return m_text.str(); }

private:
    std::ostringstream m_text;
};

std::string printed(StringData* data) {
    const String string(data);
    std::ostringstream stream;
    stream << string;
    return stream.str();
}

std::string resultsOf(const String& a, const String& b, const signed char* needle) {
    const StringData& data = *a.getData();
    Results results;
    results.add("charset", [&] { return data.getCharset(); });
    results.add("nulls", [&] { return data.haveEmbeddedNulls(); });
    results.add("UTF-8 length", [&] { return data.getUTF8Length(); });
    results.add("UTF-16 length", [&] { return data.getUTF16Length(); });
    results.add("characters", [&] { return data.getUnicodeLength(); });
    for (int i = -MOST_CHARACTERS; i < MOST_CHARACTERS; ++i)
        results.add("character", [&] { return data.getUnicodeCharAt(i); });
    results.add("equals", [&] { return data.equals(needle); });
    results.add("starts", [&] { return data.startsWith(needle); });
    results.add("ends", [&] { return data.endsWith(needle); });
    results.add("contains", [&] { return data.contains(needle); });
    results.add("count", [&] { return data.count('a'); });
    results.add("equal", [&] { return a == b; });
    results.add("less", [&] { return a < b; });
    results.add("greater", [&] { return b < a; });
    results.add("hash", [&] { return hashOf(a); });
    results.add("printed", [&] { return printed(a.getData()); });
    results.add("copied", [&] { return textOf(data); });
    results.add("UTF-8", [&] {
        const GuardedBuffer<Byte> dest(data.getUTF8Length() + (data.haveEmbeddedNulls() ? 2 : std::size_t(0)));
        data.copyToUTF8(dest.data(), data.getUTF8Length());
        return testing::PrintToString(dest.units());
    });
    results.add("UTF-16", [&] {
        const GuardedBuffer<UTF16Char> dest(data.getUTF16Length());
        data.copyToUTF16(dest.data(), data.getUTF16Length());
        return testing::PrintToString(dest.units());
    });
    return results.text();
}

// Operations that create buffers or records, some of malformed text.
template <class Make>
std::string madeFrom(Make make, const String& b, int length) {
    const ExpectedLeak leak; // a refused substring leaks its block
    const String a = make();
    Results results;
    for (const unsigned int part : {0u, 1u, 2u, 5u, 0xFFFFFFFFu}) {
        for (int offset = -length; offset < length; ++offset) {
            results.add("UTF-8 substring", [&] { return printed(a.getData()->substr<Byte>(offset, part)); });
            results.add("UTF-16 substring", [&] { return printed(a.getData()->substr<UTF16Char>(offset, part)); });
        }
    }
    results.add("+=", [&] {
        String joined = make(); // a refused text would take a reference from another handle
        return textOf(*(joined += b).getData());
    });
    UTF8String edited("start", 6);
    results.add("append", [&] {
        edited.append(a);
        return textOf(*edited.getData());
    });
    results.add("insert", [&] {
        edited.insert(a, 2);
        return textOf(*edited.getData());
    });
    results.add("replace", [&] {
        edited.replace(a, 1, 2);
        return textOf(*edited.getData());
    });
    UTF8String own(a);
    results.add("append to", [&] {
        own.append(0x20ACu);
        return textOf(*own.getData());
    });
    results.add("UTF-16 buffer", [&] {
        a.getData()->getTerminatedBuffer<UTF16Char>();
        return testing::PrintToString(unitsOf(*a.getData()));
    });
    results.add("UTF-8 buffer", [&] { return a.getCString(); });
    return results.text();
}

template <class A, class B>
void expectSame(const std::basic_string<A>& a, const std::basic_string<B>& b, GuardedEdge edge) {
    using UnitA = std::conditional_t<sizeof(A) == 1, Byte, UTF16Char>;
    using UnitB = std::conditional_t<sizeof(B) == 1, Byte, UTF16Char>;
    SCOPED_TRACE(testing::PrintToString(a) + (edge == GuardedEdge::END ? ", guarded at the end" : ", at the start"));
    std::vector<signed char> ascii;
    for (const A unit : a.substr(a.size() / 2, 3)) ascii.push_back(static_cast<signed char>(unit));
    if (ascii.empty() || ascii[0] == 0) ascii.assign(1, 'a');
    ascii.push_back(0);
    const GuardedBuffer<signed char> needle(ascii);
    const Twins<UnitA> first(a, edge, static_cast<UnitA>(sizeof(UnitA) == 1 ? 0x80 : 0xDC00));
    const Twins<UnitB> second(b, edge, static_cast<UnitB>('a'));
    EXPECT_EQ(resultsOf(first.guarded(), second.guarded(), needle.data()),
              resultsOf(first.ordinary(), second.ordinary(), needle.data()));
    const int length = static_cast<int>(a.size());
    EXPECT_EQ(madeFrom([&] { return first.guarded(); }, second.guarded(), length),
              madeFrom([&] { return first.ordinary(); }, second.ordinary(), length));
}

Codes randomCodes(Random& random, unsigned int alphabetSize, unsigned int mostCharacters) {
    static const unsigned int ALPHABET[] = {'a',    'b',    'z', 0x7F,    0xE9,    0x7FF,
                                            0x20AC, 0xFFFD, 0,   0x10000, 0x1F600, 0x10FFFD};
    Codes codes(1 + random.below(mostCharacters));
    for (unsigned int& c : codes) c = ALPHABET[random.below(alphabetSize)];
    return codes;
}

TEST(GuardedText, GivesTheResultsOfOrdinaryMemory) {
    Random random(10202);
    for (const unsigned int alphabetSize : {3u, 8u, 9u, 12u}) {
        for (int round = 0; round < std::max(repetitions(200), 4); ++round) {
            const unsigned int mostCharacters = round % 8 == 0 ? MOST_CHARACTERS : 6;
            const Codes a = randomCodes(random, alphabetSize, mostCharacters);
            const Codes b = random.below(3) != 0 ? randomCodes(random, alphabetSize, mostCharacters) : a;
            const GuardedEdge edge = round % 2 == 0 ? GuardedEdge::END : GuardedEdge::START;
            expectSame(utf8Of(a), utf8Of(b), edge);
            expectSame(utf8Of(a), utf16Of(b), edge);
            expectSame(utf16Of(a), utf8Of(b), edge);
            expectSame(utf16Of(a), utf16Of(b), edge);
        }
    }
}

// Searches and walks of terminated text, with needles that are guarded too.
TEST(GuardedText, IsSearchedAsOrdinaryMemory) {
    Random random(10203);
    for (int round = 0; round < std::max(repetitions(1000), 10); ++round) {
        std::string text = utf8Of(randomCodes(random, round % 2 == 0 ? 2 : 12, 30));
        std::string part = utf8Of(randomCodes(random, round % 2 == 0 ? 2 : 12, 3));
        const auto length = static_cast<int>(text.size());
        text.push_back('\0');
        part.push_back('\0');
        const GuardedEdge edge = round % 4 < 2 ? GuardedEdge::END : GuardedEdge::START;
        const GuardedBuffer<Byte> guarded(text, edge);
        const GuardedBuffer<Byte> guardedPart(part, edge);
        const auto resultsIn = [&](const Byte* start, const Byte* needle) {
            const UTF8String string(start, lengthOf(text));
            const String needleString(needle, lengthOf(part));
            const char* const needleText = reinterpret_cast<const char*>(needle);
            Results results;
            for (int i = -length; i < length; ++i) {
                for (const unsigned int c : {unsigned('a'), 0x20ACu, 0x1F600u, 0u}) {
                    results.add("find", [&] { return string.find(c, i); });
                    results.add("skip", [&] { return string.skip(c, i); });
                }
                results.add("find text", [&] { return string.find(needleText, i); });
                results.add("find string", [&] { return string.find(needleString, i); });
                results.add("find table", [&] { return string.find(Vorn::ASCIITable::getSpaceTable(), i); });
                results.add("skip text", [&] { return string.skip(needleText, i); });
                results.add("skip table", [&] { return string.skip(Vorn::ASCIITable::getSpaceTable(), i); });
                results.add("match", [&] { return string.match(needleText, i); });
                results.add("next", [&] { return string.next(static_cast<unsigned int>(i)); });
                results.add("previous", [&] { return string.previous(static_cast<unsigned int>(i)); });
                results.add("get", [&] { return unsigned(string.get(static_cast<unsigned int>(i))); });
            }
            return results.text();
        };
        const std::string behind = text + "aaaa";
        const std::string partBehind = part + "aaaa";
        EXPECT_EQ(resultsIn(guarded.data(), guardedPart.data()), resultsIn(bytesOf(behind), bytesOf(partBehind)))
            << testing::PrintToString(text) << ", " << testing::PrintToString(part);
    }
}

// Edits write into the block of the string alone, and read the text that they bring in to its end.
TEST(GuardedText, IsEditedInAndOut) {
    for (const GuardedEdge edge : {GuardedEdge::END, GuardedEdge::START}) {
        for (const Codes& codes : {Codes{'a'}, Codes{0xE9, 'b'}, Codes(33, 0x20AC), Codes{0x1F600}}) {
            const std::string text = utf8Of(codes);
            const UTF16Text units = utf16Of(codes);
            const GuardedBuffer<Byte> bytes(text, edge);
            const GuardedBuffer<UTF16Char> wide(units, edge);
            const String sources[] = {String(bytes.data(), lengthOf(text)), String(wide.data(), lengthOf(units))};
            for (const String& source : sources) {
                UTF8String string(source);
                string.append('x');
                string.append(source);
                string.insert(source, 0);
                EXPECT_EQ(textOf(*string.getData()), text + text + "x" + text);
                string.replace(source, 0, lengthOf(text));
                string.replace(String("y"), 0, lengthOf(text));
                EXPECT_EQ(textOf(*string.getData()), "y" + text + "x" + text);
                string.erase(1, lengthOf(text));
                EXPECT_EQ(textOf(*string.getData()), "yx" + text);
            }
        }
    }
}

} // namespace
