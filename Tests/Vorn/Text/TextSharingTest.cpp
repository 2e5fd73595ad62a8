// Parts of strings that share one block: their records, the order in which they are destroyed, and edits.
#include "Reference/CodeSplits.h"
#include "Support/AllocationCounter.h"
#include "Support/Random.h"
#include "Support/StringDataChains.h"
#include "Support/TextForms.h"
#include "Vorn/Text/TextPieces.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using namespace Vorn;

template <class CharType>
void expectPart(const String& part, const Codes& codes, const void* block) {
    const StringData& data = *part.getData();
    EXPECT_EQ(codesOf(part), codes);
    EXPECT_EQ(data.getCharset(), reference::charsetOf(codes));
    EXPECT_EQ(data.haveEmbeddedNulls(), reference::holds(codes, 0));
    EXPECT_EQ(data.getRefCount(), 1u);
    EXPECT_EQ(data.getPrivateBuffer<OtherEncoding<CharType>>(), nullptr);
    EXPECT_EQ(data.getPrivateBuffer<CharType>() - data.getBufferInfo<CharType>().m_offset, block);
    expectSoundChain<CharType>(data);
}

// The record of each part of each text.
template <class CharType>
void expectParts(const Codes& codes, const String& text) {
    const void* const block = text.getData()->getPrivateBuffer<CharType>();
    const auto size = static_cast<unsigned int>(codes.size());
    for (unsigned int start = 0; start <= size; ++start) {
        for (unsigned int end = start; end <= size; ++end) {
            SCOPED_TRACE(reference::shown(codes) + " from " + std::to_string(start) + " to " + std::to_string(end));
            String part;
            const std::size_t allocations = allocationsDuring([&] { part = substring(text, start, end - start); });
            if (start == end || end - start == size) {
                EXPECT_EQ(allocations, 0u);
                EXPECT_EQ(part.getData(), start == end ? &StringData::s_emptyString : text.getData());
                continue;
            }
            EXPECT_EQ(allocations, 1u);
            expectPart<CharType>(part, reference::slice(codes, start, end), block);
            EXPECT_EQ(part.getData()->template getBufferInfo<CharType>().m_nullTerminated, end == size ? 1u : 0u);
        }
    }
    expectChain<CharType>({text.getData()});
}

TEST(TextSharing, HasARecordForEachPart) {
    const std::vector<Codes> texts{{'a', 'b', 'c'},        {0xE9, 'a', 0xE9},      {'a', 0x1F600, 'b', 0x10FFFD},
                                   {0, 'a', 0, 0, 0x20AC}, {'x', 0xFFFD, 0x10000}, {0x7FF, 0x800, 0x7F, 0x80}};
    for (const Codes& codes : texts) {
        expectParts<unsigned char>(codes, makeString(utf8Of(codes)));
        expectParts<UTF16Char>(codes, makeString(utf16Of(codes)));
    }
}

TEST(TextSharing, PartsOfLiteralsKeepTheirTextWhenTheOwnerEnds) {
    auto buffer = callerBuffer<unsigned char>(std::string_view(" one\xC3\xA9 ", 8));
    String part, first;
    {
        const String text(buffer.get(), 7);
        part = trim(text);
        first = substring(part, 0, 2);
    }
    buffer.reset();
    EXPECT_EQ(codesOf(part), (Codes{'o', 'n', 'e', 0xE9}));
    EXPECT_EQ(codesOf(first), (Codes{'o', 'n'}));
}

TEST(TextSharing, PartsOfStaticTextAreStatic) {
    const String text(" fixed ", 7, STRING_DATA_STATIC);
    const String part = trim(text);
    EXPECT_EQ(part.getData()->getAllocationType<unsigned char>(), STRING_DATA_STATIC);
    EXPECT_EQ(codesOf(part), codesOf("fixed"));
    EXPECT_EQ(std::string(part.getCString()), "fixed");
}

// All texts live and die in a random order; the address sanitizer sees any use of a block that is gone.
TEST(TextSharing, PartsOutliveTheirParentsInEachOrder) {
    Random random(34);
    const Codes codes{' ', 'a', 0xE9, ',', 0x1F600, 0, ',', ' ', 'b', 0x20AC, ' '};
    for (int round = 0; round < repetitions(2000); ++round) {
        std::vector<String> strings{random.below(2) ? makeString(utf8Of(codes)) : makeString(utf16Of(codes))};
        std::vector<Codes> texts{codes};
        for (unsigned int step = 0; step < 40 && !strings.empty(); ++step) {
            const unsigned int at = random.below(static_cast<unsigned int>(strings.size()));
            const String& parent = strings[at];
            switch (random.below(6)) {
            case 0:
                strings.erase(strings.begin() + at);
                texts.erase(texts.begin() + at);
                break;
            case 1:
                if (TextView(parent).isUTF8())
                    parent.getData()->getTerminatedBuffer<unsigned char>();
                else
                    parent.getData()->getTerminatedBuffer<UTF16Char>();
                break;
            case 2: {
                const Codes trimmed = reference::trim(texts[at], {' '}, true, true);
                strings.push_back(trim(parent));
                texts.push_back(trimmed);
                break;
            }
            default: {
                const unsigned int start = random.below(static_cast<unsigned int>(texts[at].size()) + 1);
                const unsigned int count = random.below(6);
                const std::size_t end = std::min<std::size_t>(texts[at].size(), std::size_t(start) + count);
                const Codes part = reference::slice(texts[at], start, end);
                strings.push_back(substring(parent, start, count));
                texts.push_back(part);
            }
            }
            for (std::size_t i = 0; i < strings.size(); ++i) ASSERT_EQ(codesOf(strings[i]), texts[i]) << round;
        }
    }
}

TEST(TextSharing, EditsChangeNoParts) {
    UTF8String text = makeString("one,two,three");
    std::vector<String> parts;
    for (const TextPiece& piece : split(text, ',')) parts.push_back(piece.toString());
    text.replace('X', 0, 1); // would be in place
    text.replace('Y', 1, 1); // is in place: the block is the string's own now
    text.erase(4, 4);
    EXPECT_EQ(codesOf(text), codesOf("XYe,three"));
    EXPECT_EQ(codesOf(parts[0]), codesOf("one"));
    EXPECT_EQ(codesOf(parts[1]), codesOf("two"));
    EXPECT_EQ(codesOf(parts[2]), codesOf("three"));
}

TEST(TextSharing, EditsOfAPartChangeNeitherParentNorParts) {
    String whole = makeString("one,two");
    UTF8String first = substring(whole, 0, 5);
    const String second = substring(whole, 2, 3);
    const String inFirst = trim(first, 'o');
    first.replace('X', 2, 1);
    EXPECT_EQ(codesOf(whole), codesOf("one,two"));
    EXPECT_EQ(codesOf(second), codesOf("e,t"));
    whole = String();
    first.replace('Y', 0, 1);
    EXPECT_EQ(codesOf(first), codesOf("YnX,t"));
    EXPECT_EQ(codesOf(second), codesOf("e,t"));
    EXPECT_EQ(codesOf(inFirst), codesOf("ne,t"));
}

TEST(TextSharing, EditsChangeNoPartsBehindAPartThatIsGone) {
    UTF8String text = makeString("one two");
    String part = substring(text, 0, 5);
    const String inPart(part.getData()->substr<unsigned char>(0, 3));
    part = String();
    text.replace('X', 0, 1);
    EXPECT_EQ(codesOf(inPart), codesOf("one"));
    EXPECT_EQ(codesOf(text), codesOf("Xne two"));
}

TEST(TextSharing, EditsInPlaceWithoutParts) {
    UTF8String text = makeString("one two");
    { const String part = trim(text, 'o'); }
    EXPECT_EQ(allocationsDuring([&] { text.replace('X', 0, 1); }), 0u) << "the part is gone";
    const String substr(text.getData()->substr<unsigned char>(0, 3));
    EXPECT_EQ(allocationsDuring([&] { text.replace('Y', 0, 1); }), 0u);
    EXPECT_EQ(codesOf(substr), codesOf("Yne")) << "a substring sees edits";
}

} // namespace
