// Every kernel of every instruction set that this machine supports, against plain references: all lengths up to four
// vectors at both edges of guarded pages, malformed input at every position, and random texts.
#include "Vorn/Kernels/TextKernels.h"

#include "Reference/OrdinaryText.h"
#include "Reference/SampleTexts.h"
#include "Reference/TextConversion.h"
#include "Support/Effort.h"
#include "Support/GuardedBuffer.h"
#include "Support/Random.h"
#include "Support/Sanitizers.h"
#include "Vorn/String/String.h"

#include <algorithm>
#include <cctype>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using reference::Bytes;
using reference::Codes;
using reference::OrdinaryCharacter;
using reference::Units;
using reference::within;
using Vorn::UTF16Char;
using VornPrivate::Pairs;
using VornPrivate::TextKernels;
using VornPrivate::TextProgress;
using VornPrivate::UTF16Run;
using VornPrivate::UTF8Run;

// Kernels decide about blocks of 64 bytes, in front of which a character can be incomplete.
constexpr std::size_t BLOCK_BYTES = 64;
constexpr std::size_t LONGEST_TEXT = 4 * BLOCK_BYTES + 2;

constexpr GuardedEdge EDGES[] = {GuardedEdge::END, GuardedEdge::START};

class TextKernelsTest : public testing::TestWithParam<const TextKernels*> {
protected:
    void SetUp() override {
        if (!kernels().isSupported()) GTEST_SKIP() << "this processor does not support " << kernels().name;
    }
    static const TextKernels& kernels() { return *GetParam(); }
    static bool isPortable() { return std::string(kernels().name) == "portable"; }
};

std::vector<const TextKernels*> kernelsOfThisBuild() {
    std::vector<const TextKernels*> all;
    for (const TextKernels* const* at = VornPrivate::allTextKernels; *at; ++at) all.push_back(*at);
    return all;
}

INSTANTIATE_TEST_SUITE_P(All, TextKernelsTest, testing::ValuesIn(kernelsOfThisBuild()), [](const auto& parameter) {
    std::string name;
    for (const char c : std::string(parameter.param->name))
        if (std::isalnum(static_cast<unsigned char>(c))) name += c;
    return name;
});

// The first units of a text.
template <class Unit>
std::vector<Unit> firstOf(const std::vector<Unit>& text, std::size_t length) {
    return {text.begin(), text.begin() + static_cast<std::ptrdiff_t>(std::min(length, text.size()))};
}

// The characters in front of `end`, or nothing if it is inside a character.
struct Prefix {
    bool isAtBoundary = false;
    std::size_t characters = 0;
    std::size_t aboveUCS2 = 0;
    std::size_t extraBytes = 0; // of UTF-16
    bool beyondASCII = false;
};

Prefix prefixOf(const std::vector<OrdinaryCharacter>& characters, std::size_t end, unsigned int firstOfTwo = 0x80) {
    Prefix prefix;
    prefix.isAtBoundary = end == 0;
    for (const OrdinaryCharacter& character : characters) {
        if (character.end > end) break;
        prefix.isAtBoundary = character.end == end;
        ++prefix.characters;
        prefix.aboveUCS2 += character.code > 0xFFFF;
        prefix.extraBytes += character.code > 0xFFFF ? 2 : (character.code >= firstOfTwo) + (character.code >= 0x800);
        prefix.beyondASCII |= character.code > 0x7F;
    }
    return prefix;
}

std::vector<OrdinaryCharacter> upTo(std::vector<OrdinaryCharacter> characters, bool full) {
    const auto end = std::find_if(characters.begin(), characters.end(),
                                  [=](const OrdinaryCharacter& character) { return !full && character.code > 0xFFFF; });
    characters.erase(end, characters.end());
    return characters;
}

// Where a kernel can stop although the text is ordinary: the end of a noncharacter's bytes, or the lead of U+FDC0 to
// U+FDFF.
bool isSuspect(const Bytes& text) {
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i - 1] == 0xBF && (text[i] & 0xFE) == 0xBE) return true;
        if (text[i - 1] == 0xEF && text[i] == 0xB7) return true;
    }
    return false;
}
bool isSuspect(const Units&) { return false; }

// A kernel stops neither behind the first character that is not ordinary nor more than a block before it.
template <class Unit>
std::string wrongLength(const std::vector<Unit>& text, const std::vector<OrdinaryCharacter>& characters,
                        std::size_t length, bool isExact) {
    const std::size_t end = characters.empty() ? 0 : characters.back().end;
    const std::size_t block = BLOCK_BYTES / sizeof(Unit) + 4;
    const std::size_t least = isExact                             ? end
                              : isSuspect(text)                   ? 0
                              : end == text.size() || end < block ? (end == text.size() ? end : 0)
                                                                  : end - block;
    if (length >= least && length <= end && prefixOf(characters, length).isAtBoundary) return "";
    return "length " + std::to_string(length) + ", expected " + std::to_string(least) + " to " + std::to_string(end);
}

std::string wrongFlag(const char* name, bool flag, bool isSet, bool isSetInWholeText) {
    // The flag can already be set for a character that continues behind the decided block.
    if (isSet ? flag : !flag || isSetInWholeText) return "";
    std::string message = name;
    message += flag ? " is set" : " is not set";
    return message;
}

std::string wrongCount(const char* name, std::size_t count, std::size_t expected) {
    if (count == expected) return "";
    std::string message = name;
    message += ' ' + std::to_string(count) + ", expected " + std::to_string(expected);
    return message;
}

std::string wrongScan(const TextKernels& kernels, const Bytes& text, GuardedEdge edge) {
    const bool isExact = std::string(kernels.name) == "portable";
    const GuardedBuffer<unsigned char> buffer(text, edge);
    const auto all = reference::ordinaryCharacters(text);
    const UTF8Run scanned = kernels.scanUTF8(buffer.data(), text.size());
    std::string wrong = wrongLength(text, all, scanned.length, isExact);
    const Prefix prefix = prefixOf(all, scanned.length);
    wrong += wrongFlag("beyondASCII", scanned.beyondASCII, prefix.beyondASCII, false);
    wrong += wrongFlag("fourBytes", scanned.fourBytes != 0, prefix.aboveUCS2 != 0, false);
    for (const bool full : {true, false}) {
        const auto characters = upTo(all, full);
        const UTF8Run measured = kernels.measureUTF8(buffer.data(), text.size(), full);
        const Prefix counted = prefixOf(characters, measured.length);
        wrong += wrongLength(text, characters, measured.length, isExact);
        wrong += wrongCount("characters", measured.characters, counted.characters);
        wrong += wrongCount("fourBytes", measured.fourBytes, counted.aboveUCS2);
    }
    return wrong;
}

std::string wrongScan(const TextKernels& kernels, const Units& text, GuardedEdge edge) {
    const bool isExact = std::string(kernels.name) == "portable";
    const GuardedBuffer<UTF16Char> buffer(text, edge);
    const auto all = reference::ordinaryCharacters(text);
    const UTF16Run scanned = kernels.scanUTF16(buffer.data(), text.size());
    std::string wrong = wrongLength(text, all, scanned.length, isExact);
    const Prefix prefix = prefixOf(all, scanned.length);
    wrong += wrongFlag("beyondASCII", scanned.beyondASCII, prefix.beyondASCII, !all.empty());
    wrong += wrongFlag("pairs", scanned.pairs != 0, prefix.aboveUCS2 != 0, false);
    for (const bool full : {true, false}) {
        const auto characters = upTo(all, full);
        for (const unsigned int firstOfTwo : {0x7Fu, 0x80u}) {
            const UTF16Run measured = kernels.measureUTF16(buffer.data(), text.size(), firstOfTwo, full);
            const Prefix counted = prefixOf(characters, measured.length, firstOfTwo);
            wrong += wrongLength(text, characters, measured.length, isExact);
            wrong += wrongCount("extraBytes", measured.extraBytes, counted.extraBytes);
            wrong += wrongCount("pairs", measured.pairs, counted.aboveUCS2);
        }
    }
    return wrong;
}

template <class Unit>
testing::AssertionResult scans(const TextKernels& kernels, const std::vector<Unit>& text,
                               GuardedEdge edge = GuardedEdge::END) {
    const std::string wrong = wrongScan(kernels, text, edge);
    if (wrong.empty()) return testing::AssertionSuccess();
    return testing::AssertionFailure() << wrong << " of " << reference::shown(text);
}

// Texts of each script that are cut at every length, also inside a character.
template <class Function>
void forEachLength(Function function) {
    std::mt19937 random(1);
    std::size_t row = 0;
    for (const reference::Script& script : reference::scripts()) {
        const Codes codes = reference::randomText(random, script, LONGEST_TEXT);
        const Bytes bytes = reference::toUTF8(codes);
        const Units units = reference::toUTF16(codes);
        for (std::size_t length = 0; length <= LONGEST_TEXT; ++length) {
            if (row++ % rowStep() != 0) continue;
            for (const GuardedEdge edge : EDGES) {
                function(firstOf(bytes, length), edge);
                function(firstOf(units, length), edge);
            }
        }
    }
}

TEST_P(TextKernelsTest, ScansTextOfAllLengths) {
    forEachLength([&](const auto& text, GuardedEdge edge) { ASSERT_TRUE(scans(kernels(), text, edge)); });
}

TEST_P(TextKernelsTest, ScansAtAllOffsets) {
    std::mt19937 random(2);
    for (const reference::Script& script : reference::scripts()) {
        const Bytes text = reference::toUTF8(reference::randomText(random, script, 300));
        const auto all = reference::ordinaryCharacters(text);
        for (std::size_t offset = 0; offset < all.size(); offset += rowStep()) {
            const std::size_t start = all[offset].end;
            ASSERT_TRUE(scans(kernels(), Bytes(text.begin() + static_cast<std::ptrdiff_t>(start), text.end())));
        }
    }
}

TEST_P(TextKernelsTest, StopsAtDamageAtEveryPosition) {
    for (const Codes& codes : reference::randomTexts({23, 90})) {
        for (const Bytes& text : reference::damaged(reference::toUTF8(codes), reference::badBytes))
            ASSERT_TRUE(scans(kernels(), text));
        for (const Units& text : reference::damaged(reference::toUTF16(codes), reference::badUnits))
            ASSERT_TRUE(scans(kernels(), text));
    }
}

// Any three bytes at the limits of their kinds, across the end of a block and before different bytes.
TEST_P(TextKernelsTest, ScansAllNeighboursAcrossTheEndOfABlock) {
    std::size_t row = 0;
    for (const unsigned int lead : {0x20u, 0xC3u, 0xE4u, 0xEFu, 0xF0u, 0xF4u}) {
        for (const unsigned char a : reference::selectedBytes) {
            for (const unsigned char b : reference::selectedBytes) {
                for (const unsigned char c : reference::selectedBytes) {
                    if (row++ % (5 * rowStep()) != 0) continue;
                    Bytes text(150, 0x20);
                    const std::size_t at = 59 + row % 9;
                    text[at] = static_cast<unsigned char>(lead);
                    text[at + 1] = a;
                    text[at + 2] = b;
                    text[at + 3] = c;
                    ASSERT_TRUE(scans(kernels(), text));
                }
            }
        }
    }
}

TEST_P(TextKernelsTest, ScansEveryUnitAndEveryCode) {
    const unsigned int step = rowStep();
    for (unsigned int unit = 0; unit < 0x10000; unit += step) {
        Units text(40, 0x4E00);
        text[unit % 40] = static_cast<UTF16Char>(unit);
        ASSERT_TRUE(scans(kernels(), text));
    }
    for (unsigned int code = 1; code < 0x110000; code += code < 0x10000 ? step : 61 * step) {
        Codes codes(50, 0x416);
        codes[code % 50] = code;
        ASSERT_TRUE(scans(kernels(), reference::toUTF8(codes)));
    }
    for (unsigned int second = 0xDBFE; second < 0xE002; ++second) {
        for (const unsigned int first : {0xD800u, 0xD83Fu, 0xD87Fu, 0xDBFFu, 0xDC00u, 0x20u}) {
            Units text(70, 0x20);
            text[25 + second % 10] = static_cast<UTF16Char>(first);
            text[26 + second % 10] = static_cast<UTF16Char>(second);
            ASSERT_TRUE(scans(kernels(), text));
        }
    }
}

// Random texts, of which some have one wrong unit.
TEST_P(TextKernelsTest, ScansRandomTexts) {
    std::mt19937 random(3);
    for (int round = repetitions(100000); round > 0; --round) {
        const reference::Script& script = reference::scripts()[random() % reference::scripts().size()];
        const Codes codes = reference::randomText(random, script, static_cast<unsigned int>(random() % 120));
        Bytes bytes = reference::toUTF8(codes);
        Units units = reference::toUTF16(codes);
        if (random() % 2 && !bytes.empty()) bytes[random() % bytes.size()] = static_cast<unsigned char>(random());
        if (random() % 2 && !units.empty()) units[random() % units.size()] = static_cast<UTF16Char>(random());
        ASSERT_TRUE(scans(kernels(), bytes));
        ASSERT_TRUE(scans(kernels(), units));
    }
}

// Sums of 16 bits do not overflow.
TEST_P(TextKernelsTest, CountsInLongText) {
    const std::size_t length = 1100000;
    const Units text(length, 0x4E00);
    const UTF16Run run = kernels().measureUTF16(text.data(), length, 0x80, true);
    EXPECT_EQ(run.length, length);
    EXPECT_EQ(run.extraBytes, 2 * length);
    const Bytes bytes(length, 0x61);
    EXPECT_EQ(kernels().measureUTF8(bytes.data(), length, true).characters, length);
    EXPECT_EQ(kernels().count8(bytes.data(), length, 0x61), length);
    EXPECT_EQ(kernels().count16(text.data(), length, 0x4E00), length);
}

// A unit that no conversion writes.
template <class Unit>
constexpr Unit UNTOUCHED = static_cast<Unit>(sizeof(Unit) == 1 ? 0xFE : 0xFFFE);

// Converts into guarded memory of `room` units. `expected` are all units of the converted text.
template <class Dest, class Source, class Convert>
testing::AssertionResult converts(const std::vector<Source>& text, const std::vector<Dest>& expected, std::size_t room,
                                  GuardedEdge edge, Convert convert) {
    const GuardedBuffer<Source> source(text, edge);
    const GuardedBuffer<Dest> dest(std::vector<Dest>(room, UNTOUCHED<Dest>), edge);
    const TextProgress progress = convert(source.data(), dest.data());
    const std::vector<Dest> result = dest.units();
    std::string wrong;
    if (progress.source > text.size() || progress.dest > room || progress.dest > expected.size())
        wrong = "reaches too far";
    else if (!std::equal(result.begin(), result.begin() + static_cast<std::ptrdiff_t>(progress.dest), expected.begin()))
        wrong = "converts wrongly";
    else if (expected.size() < room && std::any_of(result.begin() + static_cast<std::ptrdiff_t>(expected.size()),
                                                   result.end(), [](Dest unit) { return unit != UNTOUCHED<Dest>; }))
        wrong = "writes behind the text";
    if (wrong.empty()) return testing::AssertionSuccess();
    return testing::AssertionFailure() << wrong << " at " << progress.source << ", " << progress.dest << ": "
                                       << reference::shown(result) << " of " << reference::shown(text);
}

// The units that the first `source` bytes become, if these are whole characters.
bool isConsistent(const Codes& codes, const TextProgress& progress, bool exact) {
    std::size_t source = 0;
    std::size_t dest = 0;
    for (const unsigned int code : codes) {
        if (source >= progress.source) break;
        source += code == 0 ? 2 : reference::sizeInUTF8(code);
        dest += exact && code > 0xFFFF ? 2 : 1;
    }
    return source == progress.source && dest == progress.dest;
}

testing::AssertionResult convertsToUTF16(const TextKernels& kernels, const Codes& codes, std::size_t room, bool exact,
                                         GuardedEdge edge) {
    Units expected;
    for (const unsigned int code : codes) {
        if (exact && code > 0xFFFF) expected.push_back(static_cast<UTF16Char>(reference::firstSurrogateOf(code)));
        expected.push_back(static_cast<UTF16Char>(code > 0xFFFF ? reference::secondSurrogateOf(code) : code));
    }
    const Bytes text = reference::toUTF8(codes);
    TextProgress progress{};
    testing::AssertionResult result = converts(text, expected, room, edge, [&](const auto* source, auto* dest) {
        return progress = kernels.toUTF16(source, text.size(), dest, room, exact);
    });
    if (result && !isConsistent(codes, progress, exact))
        return testing::AssertionFailure()
               << "stops at " << progress.source << ", " << progress.dest << " in " << reference::shown(text);
    return result;
}

testing::AssertionResult convertsToUTF8(const TextKernels& kernels, const Units& text, Pairs pairs, std::size_t extra,
                                        GuardedEdge edge) {
    Units terminated = text;
    terminated.push_back(0);
    Bytes expected;
    std::vector<TextProgress> steps{{0, 0}};
    for (unsigned int i = 0; i < text.size();) {
        Bytes bytes;
        if (pairs == Pairs::EXACT && reference::isFirstSurrogate(text[i])) {
            reference::appendUTF8(bytes, reference::codeOfPair(text[i], terminated[i + 1]));
            i += 2;
        } else {
            bytes = reference::encoded(terminated, i, pairs == Pairs::STORED);
        }
        expected.insert(expected.end(), bytes.begin(), bytes.end());
        steps.push_back({i, expected.size()});
    }
    const std::size_t room = expected.size() / 2 * extra;
    TextProgress progress{};
    testing::AssertionResult result = converts(text, expected, room, edge, [&](const auto* source, auto* dest) {
        return progress = kernels.toUTF8(source, text.size(), dest, room, pairs);
    });
    const bool isStep = std::any_of(steps.begin(), steps.end(), [&](const TextProgress& step) {
        return step.source == progress.source && step.dest == progress.dest;
    });
    if (result && !isStep)
        return testing::AssertionFailure()
               << "stops at " << progress.source << ", " << progress.dest << " in " << reference::shown(text);
    return result;
}

TEST_P(TextKernelsTest, ConvertsTextOfAllLengths) {
    std::mt19937 random(4);
    std::size_t row = 0;
    for (const reference::Script& script : reference::scripts()) {
        for (unsigned int length = 0; length <= LONGEST_TEXT; ++length) {
            if (row++ % rowStep() != 0) continue;
            const Codes codes = reference::randomText(random, script, length);
            for (const GuardedEdge edge : EDGES) {
                const std::size_t units = reference::toUTF16(codes).size();
                for (const std::size_t room : {std::size_t(length), units, units + 40, units / 2})
                    for (const bool exact : {true, false})
                        ASSERT_TRUE(convertsToUTF16(kernels(), codes, room, exact, edge)) << script.name;
                for (const Pairs pairs : {Pairs::APART, Pairs::STORED, Pairs::EXACT}) {
                    for (const std::size_t extra : {1u, 2u, 3u})
                        ASSERT_TRUE(convertsToUTF8(kernels(), reference::toUTF16(codes), pairs, extra, edge));
                }
            }
        }
    }
}

TEST_P(TextKernelsTest, ConvertsRandomTexts) {
    std::mt19937 random(7);
    for (int round = repetitions(100000); round > 0; --round) {
        const reference::Script& script = reference::scripts()[random() % reference::scripts().size()];
        const Codes codes = reference::randomText(random, script, static_cast<unsigned int>(random() % 120));
        const std::size_t units = reference::toUTF16(codes).size();
        const std::size_t room = random() % (units + 40);
        ASSERT_TRUE(convertsToUTF16(kernels(), codes, room, random() % 2 != 0, GuardedEdge::END)) << script.name;
        ASSERT_TRUE(convertsToUTF8(kernels(), reference::toUTF16(codes), Pairs::EXACT, 2, GuardedEdge::END));
    }
}

// The unpaired surrogates of UCS-2 text, and firsts in front of any unit, convert as by the plain rules.
TEST_P(TextKernelsTest, ConvertsRandomUnits) {
    Random random(5);
    for (int round = repetitions(100000); round > 0; --round) {
        Units text(random.below(120));
        const unsigned int kinds = 1 + random.below(5);
        for (UTF16Char& unit : text) {
            const unsigned int bits = random();
            const unsigned int kind = random.below(kinds);
            unit = static_cast<UTF16Char>(kind == 0   ? bits % 0x80
                                          : kind == 1 ? bits % 0x900
                                          : kind == 2 ? bits
                                          : kind == 3 ? 0xD800 + bits % 0x400
                                                      : 0xDC00 + bits % 0x400);
        }
        ASSERT_TRUE(convertsToUTF8(kernels(), text, random.below(2) ? Pairs::STORED : Pairs::APART, 1 + random.below(3),
                                   GuardedEdge::END));
    }
}

// Measured text has overlong forms of two bytes, too.
TEST_P(TextKernelsTest, ConvertsOverlongFormsOfTwoBytes) {
    for (unsigned int code = 0; code < 0x80; ++code) {
        Bytes text(100, 0x20);
        text[code % 60] = static_cast<unsigned char>(0xC0 + code / 0x40);
        text[code % 60 + 1] = static_cast<unsigned char>(0x80 + code % 0x40);
        Units dest(99);
        const TextProgress progress = kernels().toUTF16(text.data(), text.size(), dest.data(), dest.size(), false);
        if (progress.dest <= code % 60) continue;
        EXPECT_EQ(dest[code % 60], code);
    }
}

TEST_P(TextKernelsTest, ConvertsAndSkipsASCII) {
    for (std::size_t length = 0; length <= LONGEST_TEXT; ++length) {
        for (const unsigned int odd : {0x00u, 0x01u, 0x7Fu, 0x80u, 0xFFu, 0x161u, 0xFF61u}) {
            for (std::size_t at = length; at <= length; at -= 1 + length / 8) {
                Bytes bytes(length, 0x61);
                Units units(length, 0x7A);
                if (at < length) {
                    bytes[at] = static_cast<unsigned char>(odd);
                    units[at] = static_cast<UTF16Char>(odd);
                }
                const auto check = [&](const auto& text, auto dest, auto copy, auto skip) {
                    using Unit = typename std::decay_t<decltype(text)>::value_type;
                    using Dest = typename decltype(dest)::value_type;
                    const bool isOdd = at < length && (text[at] == 0 || text[at] > 0x7F);
                    const std::size_t end = isOdd ? at : length;
                    const std::size_t least = isOdd && !isPortable() ? end - std::min<std::size_t>(end, BLOCK_BYTES)
                                              : isPortable()         ? end
                                                                     : end - std::min<std::size_t>(end, BLOCK_BYTES);
                    const GuardedBuffer<Unit> source(text);
                    const GuardedBuffer<Dest> target(dest);
                    const std::size_t copied = copy(source.data(), length, target.data());
                    ASSERT_LE(copied, end);
                    ASSERT_GE(copied, least);
                    const auto result = target.units();
                    for (std::size_t i = 0; i < copied; ++i) ASSERT_EQ(result[i], text[i]);
                    for (std::size_t i = end; i < length; ++i) ASSERT_EQ(result[i], 0);
                    const std::size_t skipped = skip(source.data(), length);
                    ASSERT_LE(skipped, end);
                    ASSERT_GE(skipped, least);
                };
                check(bytes, Units(length), kernels().widenASCII, kernels().skipASCII8);
                check(units, Bytes(length), kernels().narrowASCII, kernels().skipASCII16);
            }
        }
    }
}

TEST_P(TextKernelsTest, MatchesRandomTextsUpToTheDifference) {
    std::mt19937 random(6);
    for (int round = repetitions(100000); round > 0; --round) {
        const reference::Script& script = reference::scripts()[random() % reference::scripts().size()];
        const Codes codes = reference::randomText(random, script, static_cast<unsigned int>(random() % 100));
        Bytes bytes = reference::toUTF8(codes);
        Units units = reference::toUTF16(codes);
        if (random() % 2 && !bytes.empty()) bytes[random() % bytes.size()] ^= static_cast<unsigned char>(random());
        if (random() % 4 == 0 && !units.empty()) units[random() % units.size()] = static_cast<UTF16Char>(random());
        if (random() % 4 == 0 && !bytes.empty()) bytes.resize(random() % bytes.size());
        const GuardedBuffer<unsigned char> text(bytes);
        const GuardedBuffer<UTF16Char> wide(units);
        for (const bool full : {true, false}) {
            const auto left = upTo(reference::ordinaryCharacters(bytes), full);
            const auto right = upTo(reference::ordinaryCharacters(units), full);
            const TextProgress progress = kernels().match(wide.data(), units.size(), text.data(), bytes.size(), full);
            std::size_t equal = 0;
            bool isBoundary = progress.source == 0 && progress.dest == 0;
            while (equal < left.size() && equal < right.size() && left[equal].code == right[equal].code) {
                isBoundary |= right[equal].end == progress.source && left[equal].end == progress.dest;
                ++equal;
            }
            ASSERT_TRUE(isBoundary) << progress.source << ' ' << progress.dest << ": " << reference::shown(bytes)
                                    << "and " << reference::shown(units);
        }
    }
}

TEST_P(TextKernelsTest, SkipsCopiesMatchesAndCountsUnitsOfRandomTexts) {
    Random random(8);
    for (int round = repetitions(100000); round > 0; --round) {
        const std::size_t length = random.below(150);
        const unsigned int range = random.below(2) ? 2 + random.below(6) : 0x80;
        Bytes bytes;
        while (bytes.size() < length) bytes.push_back(static_cast<unsigned char>(1 + random.below(range - 1)));
        Units units(bytes.begin(), bytes.end());
        if (random.below(2) && length != 0)
            bytes[random.below(static_cast<unsigned int>(length))] = static_cast<unsigned char>(random());
        if (random.below(2) && length != 0)
            units[random.below(static_cast<unsigned int>(length))] = static_cast<UTF16Char>(random());
        const GuardedBuffer<unsigned char> text(bytes);
        const GuardedBuffer<UTF16Char> wide(units);
        const auto plainEnd = [](const auto& all) {
            const auto end = std::find_if(all.begin(), all.end(), [](unsigned int u) { return u == 0 || u > 0x7F; });
            return static_cast<std::size_t>(end - all.begin());
        };
        std::size_t equal = 0;
        while (equal < length && bytes[equal] == units[equal]) ++equal;
        ASSERT_LE(kernels().matchUnits(text.data(), wide.data(), length), equal) << reference::shown(bytes);
        ASSERT_LE(kernels().skipASCII8(text.data(), length), plainEnd(bytes)) << reference::shown(bytes);
        ASSERT_LE(kernels().skipASCII16(wide.data(), length), plainEnd(units)) << reference::shown(units);
        const GuardedBuffer<UTF16Char> widened(length);
        const std::size_t wider = kernels().widenASCII(text.data(), length, widened.data());
        ASSERT_LE(wider, plainEnd(bytes)) << reference::shown(bytes);
        ASSERT_TRUE(std::equal(bytes.data(), bytes.data() + wider, widened.data())) << reference::shown(bytes);
        const GuardedBuffer<unsigned char> narrowed(length);
        const std::size_t narrower = kernels().narrowASCII(wide.data(), length, narrowed.data());
        ASSERT_LE(narrower, plainEnd(units)) << reference::shown(units);
        ASSERT_TRUE(std::equal(units.data(), units.data() + narrower, narrowed.data())) << reference::shown(units);
        const unsigned int unit = random.below(range);
        ASSERT_EQ(kernels().count8(text.data(), length, static_cast<unsigned char>(unit)),
                  static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), unit)))
            << reference::shown(bytes);
        ASSERT_EQ(kernels().count16(wide.data(), length, static_cast<UTF16Char>(unit)),
                  static_cast<std::size_t>(std::count(units.begin(), units.end(), unit)))
            << reference::shown(units);
    }
}

TEST_P(TextKernelsTest, MatchesAndCountsUnits) {
    for (std::size_t length = 0; length <= LONGEST_TEXT; ++length) {
        Bytes bytes;
        Units units;
        for (std::size_t i = 0; i < length; ++i) {
            bytes.push_back(static_cast<unsigned char>(i * 7));
            units.push_back(static_cast<UTF16Char>(bytes.back()));
        }
        for (std::size_t at = 0; at <= length; at += 1 + length / 8) {
            if (at < length) units[at] ^= 0x100;
            const GuardedBuffer<unsigned char> text(bytes);
            const GuardedBuffer<UTF16Char> wide(units);
            const std::size_t equal = kernels().matchUnits(text.data(), wide.data(), length);
            ASSERT_LE(equal, at);
            ASSERT_GE(equal + BLOCK_BYTES, at);
            ASSERT_EQ(kernels().count8(text.data(), length, 0x07),
                      static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), 0x07)));
            ASSERT_EQ(kernels().count16(wide.data(), length, 0x07),
                      static_cast<std::size_t>(std::count(units.begin(), units.end(), 0x07)));
            if (at < length) units[at] ^= 0x100;
        }
    }
}

#if !VORN_TEST_HAS_SANITIZER && !defined(VORN_TEST_UNDER_MEMCHECK)
TEST_P(TextKernelsTest, FindsZeroUnits) {
    for (std::size_t length = 0; length <= LONGEST_TEXT; ++length) {
        for (std::size_t at = 0; at <= length; ++at) {
            Units units(length, 0x100);
            if (at < length) units[at] = 0;
            for (const GuardedEdge edge : EDGES) {
                const GuardedBuffer<UTF16Char> text(units, edge);
                ASSERT_EQ(kernels().findZero(text.data(), length), at);
            }
        }
    }
}

TEST_P(TextKernelsTest, SkipsTerminatedASCII) {
    for (std::size_t length = 0; length <= LONGEST_TEXT; ++length) {
        for (std::size_t at = 0; at <= length; at += 1 + length / 50) {
            for (const unsigned int odd : {0x00u, 0x80u, 0xFFu}) {
                Bytes bytes(length, static_cast<unsigned char>(0x01 + 0x7E * (length % 2)));
                if (at < length) bytes[at] = static_cast<unsigned char>(odd);
                for (const GuardedEdge edge : EDGES) {
                    const GuardedBuffer<unsigned char> text(bytes, edge);
                    if (length != 0) {
                        ASSERT_EQ(kernels().skipTerminatedASCII(text.data(), length), at);
                    }
                }
            }
        }
    }
}
#endif

TEST_P(TextKernelsTest, LocatesBytes) {
    Random random(9);
    for (int round = repetitions(2000, 20); round > 0; --round) {
        Bytes bytes(64 * random.below(6));
        for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random.below(4));
        const GuardedBuffer<unsigned char> text(bytes);
        std::vector<std::uint64_t> masks(bytes.size() / 64);
        kernels().locate8(text.data(), masks.size(), 2, masks.data());
        for (std::size_t i = 0; i < bytes.size(); ++i)
            ASSERT_EQ(masks[i / 64] >> (i % 64) & 1, bytes[i] == 2 ? 1u : 0u) << i;
    }
}

// Kernels are chosen before the first use, also by a static initialiser that runs before those of the library.
const Vorn::StringDataSubCharset charsetBeforeMain =
    Vorn::String("a text of Cyrillic letters: \xD0\x9F\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82")
        .getData()
        ->getCharset();

TEST(TextKernels, AreChosenBeforeMain) {
    EXPECT_EQ(charsetBeforeMain, Vorn::STRING_DATA_UCS2);
    EXPECT_TRUE(VornPrivate::textKernels().isSupported());
    EXPECT_STREQ(VornPrivate::allTextKernels[0]->name, "portable");
    EXPECT_TRUE(VornPrivate::allTextKernels[0]->isSupported());
}

} // namespace
