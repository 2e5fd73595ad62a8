#include "Vorn/Text/CodePoints.h"

#include "Vorn/OrdinaryText.h"
#include "Vorn/PlainText.h"

namespace Vorn {

namespace {

using namespace VornPrivate;

unsigned int countCodePoints(const unsigned char* text, unsigned int length) {
    OrdinaryText<UTF8Steps<true, true>, false> ordinary(text, length);
    RunCounts run;
    unsigned int others = 0; // characters that runs do not skip
    for (unsigned int i = 0; (i = ordinary.skip(i, run)) < length; ++others)
        i += decodeNext(text + i, text + length).units;
    return run.characters + others;
}

unsigned int countCodePoints(const UTF16Char* text, unsigned int length) {
    OrdinaryText<UTF16Steps<true, true, 0x80>, false> ordinary(text, length);
    WideCounts run;
    unsigned int pairs = 0; // that runs do not skip
    for (unsigned int i = 0; (i = ordinary.skip(i, run)) < length;) {
        const unsigned int units = decodeNext(text + i, text + length).units;
        pairs += units == 2;
        i += units;
    }
    return length - run.pairs - pairs;
}

template <class CharType>
unsigned int offsetOf(const CharType* text, unsigned int length, unsigned int n) {
    unsigned int i = 0;
    while (n != 0 && i < length) {
        const unsigned int end = findPlainEnd(text, i, n < length - i ? i + n : length);
        n -= end - i;
        i = end;
        // Other scripts have few plain characters between theirs.
        for (unsigned int k = 0; k < 16 && n != 0 && i < length; ++k, --n)
            i += decodeNext(text + i, text + length).units;
    }
    return n == 0 ? i : NOT_FOUND;
}

// True if the unit at `offset`, which is in the text, continues a character that starts before it.
bool continuesCharacter(const UTF16Char* text, unsigned int, unsigned int offset) {
    return isLowSurrogate(text[offset]) && offset > 0 && isHighSurrogate(text[offset - 1]);
}

bool continuesCharacter(const unsigned char* text, unsigned int length, unsigned int offset) {
    if (!isTrailByte(text[offset])) return false;
    for (unsigned int before = 1; before <= 3 && before <= offset; ++before) {
        const unsigned char* const lead = text + offset - before;
        if (!isTrailByte(*lead)) return decodeNext(lead, text + length).units > before;
    }
    return false;
}

bool continuesCharacter(TextView text, unsigned int offset) {
    if (offset >= text.getLength()) return false;
    if (text.isUTF8()) return continuesCharacter(text.getUTF8(), text.getLength(), offset);
    return continuesCharacter(text.getUTF16(), text.getLength(), offset);
}

template <class CharType>
bool isASCII(const CharType* text, unsigned int length) {
    for (unsigned int i = 0; (i = findPlainEnd(text, i, length)) < length;) {
        const DecodedCharacter character = decodeNext(text + i, text + length);
        if (character.code >= 0x80) return false;
        i += character.units;
    }
    return true;
}

} // namespace

unsigned int codePointCount(TextView text) noexcept {
    if (text.isUTF8()) return countCodePoints(text.getUTF8(), text.getLength());
    return countCodePoints(text.getUTF16(), text.getLength());
}

unsigned int offsetOfCodePoint(TextView text, unsigned int n) noexcept {
    if (text.isUTF8()) return offsetOf(text.getUTF8(), text.getLength(), n);
    return offsetOf(text.getUTF16(), text.getLength(), n);
}

unsigned int boundaryAtOrBefore(TextView text, unsigned int offset) noexcept {
    if (offset > text.getLength()) return text.getLength();
    while (continuesCharacter(text, offset)) --offset;
    return offset;
}

unsigned int boundaryAtOrBehind(TextView text, unsigned int offset) noexcept {
    if (offset > text.getLength()) return text.getLength();
    while (continuesCharacter(text, offset)) ++offset;
    return offset;
}

bool isASCII(TextView text) noexcept {
    if (text.isUTF8()) return isASCII(text.getUTF8(), text.getLength());
    return isASCII(text.getUTF16(), text.getLength());
}

} // namespace Vorn
