// Divides, trims and joins a text in all forms, and compares with lists of code points. A text of any bytes is divided
// too: the pieces and separators must be the whole text again. The address sanitizer detects reads beyond the text.
#include "Vorn/Text/CodePoints.h"
#include "Vorn/Text/MakeString.h"
#include "Vorn/Text/TextBuilder.h"
#include "Vorn/Text/TextChange.h"
#include "Vorn/Text/TextPieces.h"

#include "Reference/CodeSplits.h"
#include "Support/Stream.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace Vorn;
using reference::Codes;
using reference::Pieces;

constexpr unsigned int ALPHABET[] = {'a', ',', ' ', '\n', '\r', 0, 0xE9, 0x3000, 0x1F600, 0x10FFFD};

Codes nextCodes(Stream& stream, unsigned int size) {
    Codes codes;
    for (; size != 0; --size) codes.push_back(ALPHABET[stream.below(sizeof ALPHABET / sizeof *ALPHABET)]);
    return codes;
}

Codes codesOf(TextView text) {
    Codes codes;
    for (const unsigned int code : codePoints(text)) codes.push_back(code);
    return codes;
}

String makeIn(const Codes& codes, bool inUTF16) {
    const std::u32string text(codes.begin(), codes.end());
    const String made = makeString(text);
    if (!inUTF16) return made;
    const reference::Units units = reference::toUTF16(codes);
    return makeString(TextView(units.data(), units.size()));
}

template <class Range>
Pieces piecesOf(const Range& range) {
    Pieces pieces;
    for (const auto& piece : range) pieces.push_back(codesOf(piece));
    return pieces;
}

void compare(Stream& stream) {
    const unsigned int options = stream.next();
    const Codes separator = nextCodes(stream, 1 + options % 3);
    const Codes codes = nextCodes(stream, stream.below(32));
    const unsigned int maximum = options & 4 ? NOT_FOUND : stream.below(6);
    String text = makeIn(codes, options & 8);
    const String separatorText = makeIn(separator, options & 16);
    const reference::Separator bySet{separator, {}}, byText{{}, separator};
    require(piecesOf(split(text, separatorText, maximum)) == reference::split(codes, byText, maximum, false), "split");
    require(piecesOf(split(text, anyOf(separatorText), maximum)) == reference::split(codes, bySet, maximum, false),
            "split at a set");
    require(piecesOf(splitNonEmpty(text, separatorText, maximum)) == reference::split(codes, byText, maximum, true),
            "splitNonEmpty");
    require(piecesOf(splitNonEmpty(text, anyOf(separatorText), maximum)) ==
                reference::split(codes, bySet, maximum, true),
            "splitNonEmpty at a set");
    require(piecesOf(lines(text)) == reference::lines(codes), "lines");
    require(codesOf(trim(text, anyOf(separatorText))) == reference::trim(codes, separator, true, true), "trim");
    require(codesOf(join(split(text, separatorText), separatorText)) == codes, "join");
    require(codesOf(replaceAll(text, separatorText, "x")) == reference::replace(codes, separator, {'x'}, codes.size()),
            "replaceAll");

    // Strings over the pieces outlive the text.
    const Pieces expected = reference::split(codes, byText, NOT_FOUND, false);
    std::vector<String> strings;
    for (const TextPiece& piece : split(text, separatorText)) strings.push_back(piece);
    text = String();
    std::vector<std::size_t> numbers;
    for (std::size_t i = 0; i < strings.size(); ++i) numbers.push_back(i);
    while (!strings.empty()) {
        const auto at = static_cast<std::ptrdiff_t>(stream.below(static_cast<unsigned int>(strings.size())));
        for (std::size_t i = 0; i < strings.size(); ++i)
            require(codesOf(strings[i]) == expected[numbers[i]], "pieces that outlive others");
        strings.erase(strings.begin() + at);
        numbers.erase(numbers.begin() + at);
    }
}

void divideAnything(Stream& stream) {
    const std::string separator(1 + stream.below(2), static_cast<char>(stream.next()));
    const std::vector<unsigned char> bytes = stream.rest();
    const TextView text(bytes.data(), bytes.size());
    const unsigned char* end = bytes.data();
    for (TextView piece : split(text, separator)) {
        if (!piece.isEmpty()) require(piece.getUTF8() >= end, "pieces in order");
        if (!piece.isEmpty()) end = piece.getUTF8() + piece.getLength();
        static_cast<void>(trim(piece));
        static_cast<void>(splitOnceAtEnd(piece, WHITE_SPACE));
    }
    require(end <= bytes.data() + bytes.size(), "pieces in the text");
    for (TextView line : lines(text)) require(line.getLength() <= text.getLength(), "lines in the text");
    static_cast<void>(removeSuffix(text, separator));
    static_cast<void>(removePrefix(text, separator));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Stream stream(data, size);
    if (stream.next() % 4 == 0)
        divideAnything(stream);
    else
        compare(stream);
    return 0;
}
