// makeString, conversions, order, hash and code points of any two texts, against a plain decoder.
#include "Vorn/Exception.h"
#include "Vorn/Text/CodePoints.h"
#include "Vorn/Text/MakeString.h"
#include "Vorn/Text/TextConversion.h"
#include "Vorn/Text/TextOrder.h"
#include "Vorn/Text/TextSearch.h"

#include "Reference/DecodedText.h"
#include "Support/Stream.h"

#include <memory>
#include <string>
#include <vector>

namespace {

using namespace Vorn;
using Characters = std::vector<reference::DecodedCharacter>;

bool canHold(unsigned int code) { return (code & 0xFFFE) != 0xFFFE && (code < 0xFDD0 || code > 0xFDEF); }

int signOf(int value) { return value < 0 ? -1 : value > 0 ? 1 : 0; }

std::u32string codesOf(const Characters& characters) {
    std::u32string codes;
    for (const reference::DecodedCharacter& character : characters) codes.push_back(character.code);
    return codes;
}

// A text in a block of exactly its size, with its characters.
template <class Unit>
struct Input {
    explicit Input(const std::basic_string<Unit>& text)
        : units(new Unit[text.size()]), length(text.size()), characters(reference::decodedCharacters(text)) {
        text.copy(units.get(), length);
    }
    TextView view() const { return TextView(units.get(), length); }

    std::unique_ptr<Unit[]> units;
    std::size_t length;
    Characters characters;
};

void checkText(TextView text, const Characters& characters) {
    unsigned int errorOffset = NOT_FOUND;
    std::u32string replaced;
    for (const reference::DecodedCharacter& character : characters) {
        const bool isGood = !character.isMalformed && canHold(character.code);
        if (!isGood && errorOffset == NOT_FOUND) errorOffset = character.offset;
        replaced.push_back(isGood ? character.code : 0xFFFD);
    }
    const std::u32string codes = codesOf(characters);
    requireText(toUTF8(text), reference::encodedUTF8(codes), "toUTF8");
    require(toUTF16(text) == reference::encodedUTF16(codes), "toUTF16");
    require(toUTF32(text) == codes, "toUTF32");
    require(toUTF32(makeStringReplacing(text)) == replaced, "makeStringReplacing");

    const MadeString made = tryMakeString(text);
    require(made.errorOffset == errorOffset, "tryMakeString");
    bool hasThrown = false;
    try {
        const String s = makeString(text);
        require(toUTF32(s) == codes && toUTF32(made.text) == codes, "makeString");
        require(toUTF32(inUTF8(s)) == codes && toUTF32(inUTF16(s)) == codes, "inUTF8 and inUTF16");
        require(hashOfText(s) == hashOfText(inUTF16(s)) && equals(s, inUTF16(s)), "hashOfText");
    } catch (const Exception<7>&) {
        hasThrown = true;
    }
    require(hasThrown == (errorOffset != NOT_FOUND), "makeString throws for malformed text");

    require(codePointCount(text) == characters.size(), "codePointCount");
    std::size_t left = codes.size();
    for (auto at = codePoints(text).rbegin(); at != codePoints(text).rend(); ++at)
        require(left != 0 && *at == codes[--left], "code points backwards");
}

void checkPair(TextView a, const Characters& inA, TextView b, const Characters& inB) {
    const std::u32string codesA = codesOf(inA), codesB = codesOf(inB);
    const int order = signOf(codesA.compare(codesB));
    require(compare(a, b) == order && equals(a, b) == (order == 0), "compare");
    require(order != 0 || hashOfText(a) == hashOfText(b), "equal texts have equal hashes");

    // The first match, of characters that are not malformed.
    unsigned int expected = NOT_FOUND;
    for (std::size_t i = 0; i + inB.size() <= inA.size() && expected == NOT_FOUND; ++i) {
        bool isMatch = true;
        for (std::size_t k = 0; k < inB.size() && isMatch; ++k)
            isMatch = inA[i + k].code == inB[k].code && !inA[i + k].isMalformed && !inB[k].isMalformed;
        if (isMatch) expected = i < inA.size() ? inA[i].offset : a.getLength();
    }
    require(find(a, b) == expected, "find");
}

} // namespace

// The first byte divides the input into two texts; every text is taken as UTF-8 and as UTF-16.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Stream stream(data, size);
    const unsigned int split = stream.next();
    std::string bytes[2];
    std::u16string units[2];
    for (unsigned int i = 0; !stream.ended(); ++i) bytes[i >= split].push_back(static_cast<char>(stream.next()));
    for (unsigned int i = 0; i < 2; ++i) {
        Stream text(reinterpret_cast<const std::uint8_t*>(bytes[i].data()), bytes[i].size());
        while (!text.ended()) units[i].push_back(static_cast<char16_t>(text.unit()));
    }
    const Input<char> first(bytes[0]), second(bytes[1]);
    const Input<char16_t> wideFirst(units[0]), wideSecond(units[1]);
    checkText(first.view(), first.characters);
    checkText(wideFirst.view(), wideFirst.characters);
    checkPair(first.view(), first.characters, second.view(), second.characters);
    checkPair(first.view(), first.characters, wideSecond.view(), wideSecond.characters);
    checkPair(wideFirst.view(), wideFirst.characters, second.view(), second.characters);
    checkPair(wideFirst.view(), wideFirst.characters, wideSecond.view(), wideSecond.characters);
    return 0;
}
