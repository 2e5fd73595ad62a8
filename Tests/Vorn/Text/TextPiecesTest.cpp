// Parts of random texts in every form, compared with lists of code points.
#include "Vorn/Text/TextPieces.h"

#include "Reference/CodeSplits.h"
#include "Support/AllocationCounter.h"
#include "Support/Random.h"
#include "Support/TextForms.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using namespace Vorn;
using reference::Pieces;

constexpr unsigned int ALPHABET[] = {'a',  'b',    ',',    ' ',    '\n',    '\r',    0,
                                     0xE9, 0x2028, 0x3000, 0xFFFD, 0x1F600, 0x10FFFD};

Codes randomCodes(Random& random, unsigned int maximum) {
    Codes codes;
    const unsigned int size = random.below(maximum + 1);
    // Few letters in each text, so that separators are frequent.
    unsigned int letters[3];
    for (unsigned int& letter : letters) letter = ALPHABET[random.below(std::size(ALPHABET))];
    for (unsigned int i = 0; i < size; ++i) codes.push_back(letters[random.below(3)]);
    return codes;
}

std::u32string codeText(const Codes& codes) { return std::u32string(codes.begin(), codes.end()); }

template <class Range>
Pieces piecesOf(const Range& range) {
    Pieces pieces;
    for (const auto& piece : range) pieces.push_back(codesOf(piece));
    return pieces;
}

// The pieces as strings of their own record.
Pieces stringsOf(const TextPieces<TextPiece>& range) {
    Pieces pieces;
    for (const String& piece : std::vector<String>(range.begin(), range.end())) pieces.push_back(codesOf(piece));
    return pieces;
}
Pieces stringsOf(const TextPieces<TextView>& range) { return piecesOf(range); }

template <class Range>
void expectPieces(const Range& range, const Pieces& expected, const std::string& input) {
    EXPECT_EQ(piecesOf(range), expected) << input;
    EXPECT_EQ(stringsOf(range), expected) << input;
}

std::string row(const char* form, const Codes& text, const Codes& separator) {
    std::string shown = form;
    shown += ": " + reference::shown(text);
    shown += "; separator: " + reference::shown(separator);
    return shown;
}

TEST(TextPieces, DividesAsTheModel) {
    Random random(31);
    for (int i = 0; i < repetitions(3000); ++i) {
        const Codes text = randomCodes(random, 12);
        Codes separator = randomCodes(random, 2);
        if (separator.empty()) separator.push_back(',');
        const String inUTF8 = makeString(codeText(separator));
        const UTF16Text inUTF16 = utf16Of(separator);
        const CharacterSet set = anyOf(inUTF8);
        const unsigned int maximum = random.below(4) ? NOT_FOUND : random.below(5);
        forEachForm(text, [&](const auto& form, const char* name) {
            const std::string input = row(name, text, separator);
            const reference::Separator bySet{separator, {}}, byText{{}, separator};
            expectPieces(split(form, set, maximum), reference::split(text, bySet, maximum, false), input);
            expectPieces(split(form, inUTF8, maximum), reference::split(text, byText, maximum, false), input);
            expectPieces(split(form, inUTF16, maximum), reference::split(text, byText, maximum, false), input);
            expectPieces(splitNonEmpty(form, set, maximum), reference::split(text, bySet, maximum, true), input);
            expectPieces(splitNonEmpty(form, inUTF8, maximum), reference::split(text, byText, maximum, true), input);
            expectPieces(split(form, static_cast<char32_t>(separator[0]), maximum),
                         reference::split(text, {{separator[0]}, {}}, maximum, false), input);
            expectPieces(lines(form), reference::lines(text), input);
        });
    }
}

TEST(TextPieces, DividesLongTextsAsTheModel) {
    constexpr unsigned int ENDS[] = {',', ',', '\r', '\n'};
    Random random(36);
    for (int i = 0; i < repetitions(300, 30); ++i) {
        Codes text;
        const unsigned int rarity = 1 + random.below(100);
        for (unsigned int left = random.below(900); left > 0; --left)
            text.push_back(random.below(rarity) ? 'a' + random.below(20) : ENDS[random.below(4)]);
        forEachForm(text, [&](const auto& form, const char* name) {
            const std::string input = row(name, text, {','});
            expectPieces(split(form, ','), reference::split(text, {{','}, {}}, NOT_FOUND, false), input);
            expectPieces(split(form, ',', 9), reference::split(text, {{','}, {}}, 9, false), input);
            expectPieces(lines(form), reference::lines(text), input);
        });
    }
}

// A line end at each place of the blocks that are searched.
TEST(TextPieces, FindsLineEndsAtEachOffset) {
    for (unsigned int offset = 0; offset < 600; ++offset) {
        for (const char* const end : {"\n", "\r", "\r\n", "\n\r", "\r\r\n\n"}) {
            std::string text(offset, 'x');
            text += end;
            for (const unsigned int more : {0u, 1u, 70u, 300u}) {
                const std::string whole = text + std::string(more, 'y');
                const Codes codes(whole.begin(), whole.end());
                ASSERT_EQ(piecesOf(lines(whole)), reference::lines(codes)) << reference::shown(codes);
            }
        }
    }
}

TEST(TextPieces, DividesOnceAsTheModel) {
    Random random(32);
    for (int i = 0; i < repetitions(2000); ++i) {
        const Codes text = randomCodes(random, 10);
        Codes separator = randomCodes(random, 2);
        if (separator.empty()) separator.push_back('a');
        const String separatorText = makeString(codeText(separator));
        const Pieces atStart = reference::split(text, {{}, separator}, 2, false);
        std::size_t last = text.size() + 1;
        for (std::size_t at = 0; at + separator.size() <= text.size(); ++at)
            if (reference::standsAt(text, at, separator)) last = at;
        std::size_t lastOfSet = text.size() + 1;
        for (std::size_t at = 0; at < text.size(); ++at)
            if (reference::holds(separator, text[at])) lastOfSet = at;
        forEachForm(text, [&](const auto& form, const char* name) {
            SCOPED_TRACE(row(name, text, separator));
            const auto first = splitOnce(form, separatorText);
            ASSERT_EQ(first.has_value(), atStart.size() == 2);
            if (first) {
                EXPECT_EQ(codesOf(first->first), atStart[0]);
                EXPECT_EQ(codesOf(first->second), atStart[1]);
            }
            const auto expectLast = [&](const auto& pair, std::size_t at, std::size_t size) {
                ASSERT_EQ(pair.has_value(), at <= text.size());
                if (!pair) return;
                EXPECT_EQ(codesOf(pair->first), reference::slice(text, 0, at));
                EXPECT_EQ(codesOf(pair->second), reference::slice(text, at + size, text.size()));
            };
            expectLast(splitOnceAtEnd(form, separatorText), last, separator.size());
            expectLast(splitOnceAtEnd(form, anyOf(separatorText)), lastOfSet, 1);
        });
    }
}

TEST(TextPieces, TakesPartsAsTheModel) {
    Codes whiteSpace;
    for (unsigned int c = 0; c <= 0x10FFFF; ++c)
        if (isWhiteSpace(c)) whiteSpace.push_back(c);
    Random random(33);
    for (int i = 0; i < repetitions(2000); ++i) {
        const Codes text = randomCodes(random, 10);
        const Codes set = randomCodes(random, 2);
        const String setText = makeString(codeText(set));
        const unsigned int start = random.below(static_cast<unsigned int>(text.size()) + 1);
        const unsigned int count = random.below(12);
        const std::size_t end = std::min<std::size_t>(text.size(), std::size_t(start) + count);
        const Codes part = reference::slice(text, start, end);
        const String partText = makeString(codeText(part));
        const bool isPrefix = reference::standsAt(text, 0, part);
        const bool isSuffix = part.size() <= text.size() && reference::standsAt(text, text.size() - part.size(), part);
        forEachForm(text, [&](const auto& form, const char* name) {
            SCOPED_TRACE(row(name, text, set));
            EXPECT_EQ(codesOf(trim(form)), reference::trim(text, whiteSpace, true, true));
            EXPECT_EQ(codesOf(trimStart(form)), reference::trim(text, whiteSpace, true, false));
            EXPECT_EQ(codesOf(trimEnd(form)), reference::trim(text, whiteSpace, false, true));
            EXPECT_EQ(codesOf(trim(form, anyOf(setText))), reference::trim(text, set, true, true));
            EXPECT_EQ(codesOf(substring(form, start, count)), part);
            EXPECT_EQ(codesOf(substring(form, start)), reference::slice(text, start, text.size()));
            EXPECT_THROW(substring(form, static_cast<unsigned int>(text.size()) + 1), Exception<4>);
            EXPECT_EQ(codesOf(last(form, count)),
                      reference::slice(text, text.size() - std::min<std::size_t>(count, text.size()), text.size()));
            EXPECT_EQ(codesOf(dropLast(form, count)),
                      reference::slice(text, 0, text.size() - std::min<std::size_t>(count, text.size())));
            const unsigned int length = TextView(form).getLength();
            const unsigned int offset = offsetOfCodePoint(form, start);
            const unsigned int units = offsetOfCodePoint(form, static_cast<unsigned int>(end)) - offset;
            EXPECT_EQ(codesOf(slice(form, offset, units)), part);
            EXPECT_EQ(codesOf(slice(form, offset)), reference::slice(text, start, text.size()));
            EXPECT_THROW(slice(form, length + 1), Exception<4>);
            for (unsigned int at = 0; at < length; ++at) {
                if (isBoundary(form, at)) continue;
                EXPECT_THROW(slice(form, at), Exception<4>) << at;
                EXPECT_THROW(slice(form, 0, at), Exception<4>) << at;
            }
            EXPECT_EQ(codesOf(removePrefix(form, partText)),
                      isPrefix ? reference::slice(text, part.size(), text.size()) : text);
            EXPECT_EQ(codesOf(removeSuffix(form, partText)),
                      isSuffix ? reference::slice(text, 0, text.size() - part.size()) : text);
        });
    }
}

TEST(CharacterSet, HasTheWhiteSpaceOfUnicode) {
    const Codes expected{9,      10,     11,     12,     13,     0x20,   0x85,   0xA0,   0x1680,
                         0x2000, 0x2001, 0x2002, 0x2003, 0x2004, 0x2005, 0x2006, 0x2007, 0x2008,
                         0x2009, 0x200A, 0x2028, 0x2029, 0x202F, 0x205F, 0x3000};
    const CharacterSet set = WHITE_SPACE;
    Codes found, foundInSet;
    for (unsigned int c = 0; c <= 0x110000; ++c) {
        if (isWhiteSpace(c)) found.push_back(c);
        if (set.contains(c)) foundInSet.push_back(c);
    }
    EXPECT_EQ(found, expected);
    EXPECT_EQ(foundInSet, expected);
}

TEST(CharacterSet, RefusesWhatNoTextHas) {
    EXPECT_THROW(CharacterSet('\xC3'), Exception<4>);
    for (const char32_t c : {0xD800u, 0xDFFFu, 0xFDD0u, 0xFFFEu, 0x1FFFFu, 0x110000u}) {
        EXPECT_THROW(CharacterSet{c}, Exception<7>) << static_cast<unsigned int>(c);
    }
    EXPECT_THROW(CharacterSet(u'\xD800'), Exception<7>);
    EXPECT_TRUE(CharacterSet(U'\U0010FFFD').contains(0x10FFFD));
    EXPECT_TRUE(CharacterSet().isEmpty());
    EXPECT_TRUE(anyOf("\xFF\xC3").isEmpty()) << "malformed units belong to no set";
}

TEST(TextPieces, FindsNoMalformedSeparator) {
    EXPECT_EQ(piecesOf(split("a\xC3\xA9z", "\xC3")), (Pieces{{'a', 0xE9, 'z'}}));
    EXPECT_EQ(piecesOf(split("a\xFFz", anyOf("\xFF"))), (Pieces{{'a', 0xFFFD, 'z'}}));
    const char16_t half[] = {0xDE00, 0};
    EXPECT_EQ(piecesOf(split(u"a\U0001F600z", half)), (Pieces{{'a', 0x1F600, 'z'}}));
    EXPECT_EQ(codesOf(removePrefix("\xFFz", u"\uFFFD")), (Codes{0xFFFD, 'z'}));
    EXPECT_EQ(codesOf(removeSuffix("\xC3\xA9", "\xA9")), (Codes{0xE9}));
    EXPECT_EQ(codesOf(trim("\xFF a\xFF", U'\uFFFD')), (Codes{0xFFFD, ' ', 'a', 0xFFFD}));
    EXPECT_THROW(split("a", ""), Exception<4>);
    EXPECT_THROW(splitOnce("a", ""), Exception<4>);
}

TEST(TextPieces, AllocatesNothingToIterate) {
    const String text = makeString("one,two;three,,four");
    const std::string views(1000, ',');
    unsigned int length = 0;
    EXPECT_EQ(allocationsDuring([&] {
                  for (TextView piece : split(text, ',')) length += piece.getLength();
                  for (TextView piece : split(text, anyOf(",;"))) length += piece.getLength();
                  for (TextView piece : split(views, ", ")) length += piece.getLength();
                  for (TextView piece : splitNonEmpty(text)) length += trim(piece).getLength();
                  for (TextView piece : lines(text)) length += piece.getLength();
              }),
              0u);
    EXPECT_EQ(length, 16u + 15 + 1000 + 19 + 19);
    EXPECT_EQ(allocationsDuring([&] { splitOnce(text, ','); }), 2u);
    EXPECT_EQ(allocationsDuring([&] { trim(text); }), 0u) << "the whole text is the same record";
    EXPECT_EQ(trim(text).getData(), text.getData());
}

TEST(TextPieces, KeepsTemporaryStringsAlive) {
    Pieces pieces;
    for (const TextPiece& piece : split(makeString("a,b"), ',')) pieces.push_back(codesOf(piece));
    EXPECT_EQ(pieces, (Pieces{{'a'}, {'b'}}));
    EXPECT_EQ(codesOf(trim(makeString(" a "))), Codes{'a'});
}

TEST(TextPieces, IteratesOverATextThatMovesMeanwhile) {
    // A text without a terminator, which getCString moves to another block.
    const String whole = makeString("xone,two,three");
    String text = substring(whole, 1, 9);
    Pieces pieces;
    for (const TextPiece& piece : split(text, ',')) {
        text.getCString();
        text.getCString();
        pieces.push_back(codesOf(piece.toString()));
    }
    EXPECT_EQ(pieces, (Pieces{{'o', 'n', 'e'}, {'t', 'w', 'o'}, {'t'}}));
}

} // namespace
