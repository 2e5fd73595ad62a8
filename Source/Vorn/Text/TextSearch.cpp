#include "Vorn/Text/TextSearch.h"

#include "Vorn/Kernels/TextKernels.h"
#include "Vorn/Text/CodePoints.h"
#include "Vorn/Text/ExactConversion.h"
#include "Vorn/Text/NeedleInText.h"
#include "Vorn/Text/TextOrder.h"
#include "Vorn/Text/UnitSearch.h"
#include "Vorn/TextSearch.h"

#include <cstdint>
#include <cstring>

namespace Vorn {

namespace {

using namespace VornPrivate;

// Units of a code point as a needle.
class Encoded {
public:
    explicit Encoded(CodePoint c) {
        if (c.isValid()) m_length = static_cast<unsigned int>(encodeTo(m_units, c.value()) - m_units);
    }

    // Empty for a code that is no character.
    Vorn::TextView view() const { return Vorn::TextView(m_units, m_length); }

private:
    unsigned char m_units[4] = {};
    unsigned int m_length = 0;
};

std::size_t findForward(ForwardUnits<unsigned char> text, ForwardUnits<unsigned char> needle) {
    const auto viewOf = [](const ForwardUnits<unsigned char>& units) {
        return std::string_view(reinterpret_cast<const char*>(units.first), units.size);
    };
    return findText(viewOf(text), viewOf(needle)); // NO_UNIT is its npos
}
std::size_t findForward(ForwardUnits<UTF16Char> text, ForwardUnits<UTF16Char> needle) {
    return findUnits(text, needle);
}

template <class CharType>
unsigned int findFrom(TextView text, TextView needle, unsigned int from) {
    const NeedleInText<CharType> pair(text, needle);
    if (pair.isNowhere()) return NOT_FOUND;
    const unsigned int start = pair.toSearched(from);
    const std::size_t found = findForward(ForwardUnits<CharType>{pair.text() + start, pair.textLength() - start},
                                          ForwardUnits<CharType>{pair.needle(), pair.needleLength()});
    return found == NO_UNIT ? NOT_FOUND : pair.toOriginal(start + static_cast<unsigned int>(found));
}

template <class CharType>
unsigned int findBefore(TextView text, TextView needle, unsigned int before) {
    const NeedleInText<CharType> pair(text, needle);
    if (pair.isNowhere()) return NOT_FOUND;
    // The last occurrence that starts before `before` ends at most at this offset.
    const std::uint64_t end = std::uint64_t(pair.toSearched(before)) - 1 + pair.needleLength();
    const auto size = static_cast<std::size_t>(end < pair.textLength() ? end : pair.textLength());
    const std::size_t found =
        findUnits(BackwardUnits<CharType>{pair.text() + size, size},
                  BackwardUnits<CharType>{pair.needle() + pair.needleLength(), pair.needleLength()});
    if (found == NO_UNIT) return NOT_FOUND;
    return pair.toOriginal(static_cast<unsigned int>(size - found - pair.needleLength()));
}

std::size_t countUnits(const unsigned char* text, unsigned int length, unsigned char unit) {
    return textKernels().count8(text, length, unit);
}
std::size_t countUnits(const UTF16Char* text, unsigned int length, UTF16Char unit) {
    return textKernels().count16(text, length, unit);
}

template <class CharType>
unsigned int countIn(TextView text, TextView needle) {
    const NeedleInText<CharType> pair(text, needle);
    if (pair.isNowhere()) return 0;
    if (pair.needleLength() == 1)
        return static_cast<unsigned int>(countUnits(pair.text(), pair.textLength(), *pair.needle()));
    unsigned int count = 0;
    const ForwardUnits<CharType> units{pair.needle(), pair.needleLength()};
    for (ForwardUnits<CharType> rest{pair.text(), pair.textLength()};; ++count) {
        const std::size_t found = findForward(rest, units);
        if (found == NO_UNIT) return count;
        rest = rest.from(found + units.size);
    }
}

} // namespace

unsigned int findNext(TextView text, TextView needle, unsigned int from) {
    if (from > text.getLength()) return NOT_FOUND;
    if (needle.isEmpty()) return boundaryAtOrBehind(text, from);
    // Most needles are short ASCII in the encoding of the text.
    const unsigned char* const bytes = needle.getUTF8();
    if (text.getUTF8() && bytes && needle.getLength() <= SHORT_UNITS && isShortPlain(bytes, needle.getLength())) {
        const std::size_t found =
            findForward(ForwardUnits<unsigned char>{text.getUTF8() + from, text.getLength() - from},
                        ForwardUnits<unsigned char>{bytes, needle.getLength()});
        return found == NO_UNIT ? NOT_FOUND : from + static_cast<unsigned int>(found);
    }
    return text.isUTF8() ? findFrom<unsigned char>(text, needle, from) : findFrom<UTF16Char>(text, needle, from);
}

unsigned int find(TextView text, TextView needle) { return findNext(text, needle, 0); }

unsigned int findPrevious(TextView text, TextView needle, unsigned int before) {
    if (before == 0) return NOT_FOUND;
    if (needle.isEmpty()) return boundaryAtOrBefore(text, before - 1);
    return text.isUTF8() ? findBefore<unsigned char>(text, needle, before)
                         : findBefore<UTF16Char>(text, needle, before);
}

unsigned int findLast(TextView text, TextView needle) { return findPrevious(text, needle, NOT_FOUND); }

unsigned int count(TextView text, TextView needle) {
    if (needle.isEmpty()) return codePointCount(text) + 1;
    return text.isUTF8() ? countIn<unsigned char>(text, needle) : countIn<UTF16Char>(text, needle);
}

unsigned int findNext(TextView text, CodePoint c, unsigned int from) {
    return c.isValid() ? findNext(text, Encoded(c).view(), from) : NOT_FOUND;
}
unsigned int find(TextView text, CodePoint c) { return findNext(text, c, 0); }
unsigned int findPrevious(TextView text, CodePoint c, unsigned int before) {
    return c.isValid() ? findPrevious(text, Encoded(c).view(), before) : NOT_FOUND;
}
unsigned int findLast(TextView text, CodePoint c) { return findPrevious(text, c, NOT_FOUND); }
unsigned int count(TextView text, CodePoint c) { return c.isValid() ? count(text, Encoded(c).view()) : 0; }

namespace {

UTF32Char exact(UTF32Char code) { return code; }

// True if a text begins with a needle, by decoded characters.
template <class Fold>
bool beginsWith(TextView text, TextView needle, Fold fold) {
    unsigned int i = 0;
    for (unsigned int k = 0; k < needle.getLength();) {
        if (i == text.getLength()) return false;
        const DecodedCharacter expected = decodeAt(needle, k), actual = decodeAt(text, i);
        if (expected.isMalformed || actual.isMalformed || fold(expected.code) != fold(actual.code)) return false;
        k += expected.units;
        i += actual.units;
    }
    return true;
}

template <class Fold>
bool finishesWith(TextView text, TextView needle, Fold fold) {
    unsigned int i = text.getLength();
    for (unsigned int k = needle.getLength(); k != 0;) {
        if (i == 0) return false;
        const DecodedCharacter expected = decodeBefore(needle, k), actual = decodeBefore(text, i);
        if (expected.isMalformed || actual.isMalformed || fold(expected.code) != fold(actual.code)) return false;
        k -= expected.units;
        i -= actual.units;
    }
    return true;
}

} // namespace

bool startsWith(TextView text, TextView needle) noexcept { return beginsWith(text, needle, exact); }
bool endsWith(TextView text, TextView needle) noexcept { return finishesWith(text, needle, exact); }

bool startsWith(TextView text, CodePoint c) noexcept {
    return c.isValid() && beginsWith(text, Encoded(c).view(), exact);
}
bool endsWith(TextView text, CodePoint c) noexcept {
    return c.isValid() && finishesWith(text, Encoded(c).view(), exact);
}

namespace {

// The characters of a text: a bit for each one of ASCII, and the text for all others. It allocates nothing.
class CharactersIn {
public:
    explicit CharactersIn(TextView set) : m_others(set) {
        for (unsigned int i = 0; i < set.getLength();) {
            const DecodedCharacter character = decodeAt(set, i);
            if (character.code < 128)
                m_bits[character.code / 64] |= std::uint64_t(1) << character.code % 64;
            else
                m_hasOthers |= !character.isMalformed;
            i += character.units;
        }
    }

    bool contains(const DecodedCharacter& character) const {
        if (character.code < 128) return m_bits[character.code / 64] >> character.code % 64 & 1;
        if (!m_hasOthers || character.isMalformed) return false;
        for (unsigned int i = 0; i < m_others.getLength();) {
            const DecodedCharacter other = decodeAt(m_others, i);
            if (other.code == character.code && !other.isMalformed) return true;
            i += other.units;
        }
        return false;
    }

private:
    std::uint64_t m_bits[2] = {0, 0};
    bool m_hasOthers = false;
    TextView m_others;
};

unsigned int findInSet(TextView text, TextView characters, unsigned int from, bool isIn) {
    if (from > text.getLength()) return NOT_FOUND;
    const CharactersIn set(characters);
    for (unsigned int i = boundaryAtOrBehind(text, from); i < text.getLength();) {
        const DecodedCharacter character = decodeAt(text, i);
        if (set.contains(character) == isIn) return i;
        i += character.units;
    }
    return NOT_FOUND;
}

unsigned int findLastInSet(TextView text, TextView characters, bool isIn) {
    const CharactersIn set(characters);
    for (unsigned int i = text.getLength(); i != 0;) {
        const DecodedCharacter character = decodeBefore(text, i);
        i -= character.units;
        if (set.contains(character) == isIn) return i;
    }
    return NOT_FOUND;
}

} // namespace

unsigned int findNextAnyOf(TextView text, TextView set, unsigned int from) noexcept {
    return findInSet(text, set, from, true);
}
unsigned int findNextNoneOf(TextView text, TextView set, unsigned int from) noexcept {
    return findInSet(text, set, from, false);
}
unsigned int findAnyOf(TextView text, TextView set) noexcept { return findInSet(text, set, 0, true); }
unsigned int findNoneOf(TextView text, TextView set) noexcept { return findInSet(text, set, 0, false); }
unsigned int findLastAnyOf(TextView text, TextView set) noexcept { return findLastInSet(text, set, true); }
unsigned int findLastNoneOf(TextView text, TextView set) noexcept { return findLastInSet(text, set, false); }

int compareIgnoringASCIICase(TextView a, TextView b) noexcept {
    unsigned int i = 0, k = 0;
    while (i < a.getLength() && k < b.getLength()) {
        const DecodedCharacter inA = decodeAt(a, i), inB = decodeAt(b, k);
        const UTF32Char codeA = foldASCII(inA.code), codeB = foldASCII(inB.code);
        if (codeA != codeB) return codeA < codeB ? -1 : 1;
        i += inA.units;
        k += inB.units;
    }
    return i < a.getLength() ? 1 : k < b.getLength() ? -1 : 0;
}

bool equalsIgnoringASCIICase(TextView a, TextView b) noexcept { return compareIgnoringASCIICase(a, b) == 0; }

namespace {

template <class CharType>
unsigned int findFolded(TextView text, TextView needle, unsigned int from) {
    const NeedleInText<CharType> pair(text, needle);
    if (pair.isNowhere()) return NOT_FOUND;
    const unsigned int start = pair.toSearched(from);
    const std::size_t found = findUnits(FoldedUnits<CharType>{pair.text() + start, pair.textLength() - start},
                                        FoldedUnits<CharType>{pair.needle(), pair.needleLength()});
    return found == NO_UNIT ? NOT_FOUND : pair.toOriginal(start + static_cast<unsigned int>(found));
}

} // namespace

unsigned int findNextIgnoringASCIICase(TextView text, TextView needle, unsigned int from) {
    if (from > text.getLength()) return NOT_FOUND;
    if (needle.isEmpty()) return boundaryAtOrBehind(text, from);
    return text.isUTF8() ? findFolded<unsigned char>(text, needle, from) : findFolded<UTF16Char>(text, needle, from);
}

unsigned int findIgnoringASCIICase(TextView text, TextView needle) {
    return findNextIgnoringASCIICase(text, needle, 0);
}

bool startsWithIgnoringASCIICase(TextView text, TextView needle) noexcept {
    return beginsWith(text, needle, foldASCII);
}
bool endsWithIgnoringASCIICase(TextView text, TextView needle) noexcept {
    return finishesWith(text, needle, foldASCII);
}

} // namespace Vorn
