// Dividing texts. A separator is searched in the encoding of the text, so that its length there is known; only U+0000,
// which views of UTF-8 hold in two forms, has more than one.
#include "TextRecord.h"
#include "Vorn/Assert.h"
#include "Vorn/Kernels/TextKernels.h"
#include "Vorn/Private/TextDecoding.h"
#include "Vorn/Private/TextPart.h"
#include "Vorn/Text/TextSearch.h"
#include "Vorn/Text/UnitSearch.h"
#include "Vorn/TextSearch.h"

#include <bit>
#include <cstring>
#include <string_view>

namespace Vorn {

namespace {

using namespace VornPrivate;

constexpr TextPart NOTHING = {NOT_FOUND, 0};

std::string_view bytesOf(TextView text, unsigned int from) {
    return {reinterpret_cast<const char*>(text.getUTF8()) + from, text.getLength() - from};
}

// Appends characters in the form of strings. Returns false for malformed units.
template <class Units>
bool appendCharacters(TextView text, Units& units) {
    using CharType = std::conditional_t<sizeof(typename Units::value_type) == 1, unsigned char, UTF16Char>;
    for (unsigned int i = 0; i < text.getLength();) {
        const DecodedCharacter character = decodeAt(text, i);
        if (character.isMalformed) return false;
        CharType encoded[4];
        const CharType* const end = encodeForString(encoded, character.code);
        for (const CharType* unit = encoded; unit != end; ++unit)
            units.push_back(static_cast<typename Units::value_type>(*unit));
        i += character.units;
    }
    return true;
}

// The first of the units, of which most texts have many that are equal to nothing in the set.
TextPart findSet(TextView text, unsigned int from, const CharacterSet& set) {
    const unsigned int length = text.getLength();
    const unsigned char* const bytes = text.getUTF8();
    const bool skipsLong = bytes && !set.hasLongCharacters();
    for (unsigned int i = from; i < length;) {
        if (bytes && bytes[i] < 0x80) {
            if (set.contains(bytes[i])) return {i, 1};
            ++i;
        } else if (skipsLong) {
            ++i;
        } else {
            const DecodedCharacter character = decodeAt(text, i);
            if (!character.isMalformed && set.contains(character.code)) return {i, character.units};
            i += character.units;
        }
    }
    return NOTHING;
}

TextPart findLastSet(TextView text, const CharacterSet& set) {
    for (unsigned int end = text.getLength(); end > 0;) {
        const DecodedCharacter character = decodeBefore(text, end);
        end -= character.units;
        if (!character.isMalformed && set.contains(character.code)) return {end, character.units};
    }
    return NOTHING;
}

// Returns the part at an offset that has the characters of a valid separator in UTF-8.
TextPart matchAt(TextView text, unsigned int start, TextView separator) {
    const TextView rest = text.slice(start);
    const unsigned int left = TextPart::removePrefix(rest, separator).length;
    return left == rest.getLength() ? NOTHING : TextPart{start, rest.getLength() - left};
}

// The part that a search for a separator has found, in the encoding of the text.
TextPart partAt(TextView text, unsigned int start, TextView separator, bool hasOneLength) {
    if (start == NOT_FOUND) return NOTHING;
    return hasOneLength ? TextPart{start, separator.getLength()} : matchAt(text, start, separator);
}

constexpr unsigned int WORD = 64;

// As `std::popcount`, which is a call on processors that need not have an instruction for it.
unsigned int countBits(std::uint64_t bits) {
    constexpr std::uint64_t PAIRS = 0x5555555555555555, FOURS = 0x3333333333333333, BYTES = 0x0F0F0F0F0F0F0F0F;
    bits -= (bits >> 1) & PAIRS;
    bits = (bits & FOURS) + ((bits >> 2) & FOURS);
    return static_cast<unsigned int>(((bits + (bits >> 4)) & BYTES) * 0x0101010101010101 >> 56);
}

unsigned int findUnit(TextView text, unsigned int from, char16_t unit) {
    const std::size_t length = text.getLength();
    const std::size_t found =
        VornPrivate::findUnit(ForwardUnits<UTF16Char>{text.getUTF16(), length}, unit, from, length);
    return found == length ? NOT_FOUND : static_cast<unsigned int>(found);
}

} // namespace

void TextSplitter::setSet(const CharacterSet& set) {
    if (set.isEmpty()) return;
    const UTF32Char single = set.getSingle();
    if (single == NOT_FOUND || single == 0) {
        m_set = set;
        m_kind = Kind::SET;
        return;
    }
    const char32_t character[] = {static_cast<char32_t>(single)};
    unsigned char bytes[4];
    const unsigned char* const end = encodeTo(bytes, character[0]);
    setText(TextView(bytes, static_cast<std::size_t>(end - bytes)));
}

void TextSplitter::setText(TextView text) {
    if (text.isEmpty()) VORN_THROW(E::PARAMETER, "separator : must not be empty!");
    const bool isValid = m_text.isUTF8() ? appendCharacters(text, m_bytes) : appendCharacters(text, m_units);
    if (isValid) m_kind = m_bytes.size() == 1 ? Kind::BYTE : Kind::TEXT;
}

// U+0000 takes one or two bytes in a view.
bool TextSplitter::hasOneLength() const { return !m_owner.isNull() || m_bytes.find('\xC0') == std::string::npos; }

// Returns the first separator from an offset on.
TextPart TextSplitter::find(TextView text, unsigned int from) const {
    const unsigned int length = text.getLength();
    if (from == length) return NOTHING;
    switch (m_kind) {
    case Kind::BYTE: {
        const unsigned char* const bytes = text.getUTF8();
        const void* const hit = std::memchr(bytes + from, static_cast<unsigned char>(m_bytes[0]), length - from);
        if (!hit) return NOTHING;
        return {static_cast<unsigned int>(static_cast<const unsigned char*>(hit) - bytes), 1};
    }
    case Kind::TEXT:
        if (!text.isUTF8()) {
            const unsigned int found =
                m_units.size() == 1 ? findUnit(text, from, m_units[0]) : Vorn::findNext(text, m_units, from);
            return partAt(text, found, m_units, true);
        }
        if (!hasOneLength()) return partAt(text, Vorn::findNext(text, m_bytes, from), m_bytes, false);
        {
            const std::size_t found = findText(bytesOf(text, from), m_bytes);
            if (found == std::string_view::npos) return NOTHING;
            return partAt(text, from + static_cast<unsigned int>(found), m_bytes, true);
        }
    case Kind::SET: return findSet(text, from, m_set);
    default: return NOTHING;
    }
}

// Finds the separators of one byte, or line ends, in the next block that has any, and returns NOT_FOUND. Pieces are
// short, and a search for each would cost more than the bytes. Returns the offset to search from if there is no whole
// block.
unsigned int TextSplitter::findBlock(TextView text, Cursor& cursor) const {
    const unsigned char* const bytes = text.getUTF8();
    const unsigned int length = text.getLength();
    const TextKernels& kernels = textKernels();
    unsigned int start = cursor.start;
    while (length - start >= WORD) {
        const unsigned int size = length - start < BLOCK ? (length - start) / WORD * WORD : BLOCK;
        unsigned int count = 0;
        std::uint64_t masks[BLOCK / WORD], returns[BLOCK / WORD];
        if (m_kind == Kind::LINES) {
            kernels.locate8(bytes + start, size / WORD, '\n', masks);
            kernels.locate8(bytes + start, size / WORD, '\r', returns);
        } else {
            kernels.locate8(bytes + start, size / WORD, static_cast<unsigned char>(m_bytes[0]), masks);
        }
        for (unsigned int k = 0; k < size; k += WORD) {
            std::uint64_t found = masks[k / WORD];
            if (m_kind == Kind::LINES && returns[k / WORD] != 0) { // a CR before an LF is no end of its own
                const unsigned int next = start + k + WORD;
                const std::uint64_t isFeedNext = next < length && bytes[next] == '\n';
                found |= returns[k / WORD] & ~(found >> 1 | isFeedNext << 63);
            }
            if (found == 0) continue;
            const unsigned int end = count + countBits(found);
            const auto add = [&](unsigned int i) {
                constexpr std::uint64_t LAST = std::uint64_t(1) << 63;
                cursor.separators[i] =
                    static_cast<unsigned char>(k + static_cast<unsigned int>(std::countr_zero(found | LAST)));
                found &= found - 1;
            };
            for (unsigned int i = 0; i < SPARE; ++i) add(count + i); // without branches; some are overwritten
            for (unsigned int i = count + SPARE; i < end; ++i) add(i);
            count = end;
        }
        if (count != 0) {
            cursor.block = start;
            cursor.found = count;
            cursor.used = 0;
            return NOT_FOUND;
        }
        start += size;
    }
    return start;
}

TextPart TextSplitter::findLast() const {
    const TextView text = getText();
    if (text.isEmpty()) return NOTHING;
    if (m_kind == Kind::SET) return findLastSet(text, m_set);
    if (m_kind == Kind::NOTHING) return NOTHING;
    const TextView separator = text.isUTF8() ? TextView(m_bytes) : TextView(m_units);
    return partAt(text, Vorn::findLast(text, separator), separator, !text.isUTF8() || hasOneLength());
}

// Returns the offset of the first LF or CR from the start of the cursor's piece on, or the length. The LF is searched
// for once and the CR only before it, so that a text with one kind of line end takes linear time, too.
unsigned int TextSplitter::findLineEnd(TextView text, Cursor& cursor) const {
    const unsigned int length = text.getLength();
    if (!text.isUTF8()) {
        const UTF16Char* const units = text.getUTF16();
        unsigned int i = cursor.start;
        while (i < length && units[i] != '\n' && units[i] != '\r') ++i;
        return i;
    }
    const unsigned char* const bytes = text.getUTF8();
    const auto findByte = [bytes](char byte, unsigned int from, unsigned int end) {
        const void* const hit = std::memchr(bytes + from, byte, end - from);
        return hit ? static_cast<unsigned int>(static_cast<const unsigned char*>(hit) - bytes) : end;
    };
    if (cursor.lineFeed < cursor.start || cursor.isFirst) cursor.lineFeed = findByte('\n', cursor.start, length);
    return findByte('\r', cursor.start, cursor.lineFeed);
}

void TextSplitter::findNext(Cursor& cursor) const {
    const TextView text = getText();
    const unsigned int length = text.getLength();
    cursor.isDone = true;
    if (cursor.nextStart == NOT_FOUND || cursor.count == m_maximum) return;
    cursor.start = cursor.nextStart;

    unsigned int from = cursor.start;
    if (text.isUTF8() && (m_kind == Kind::LINES || (m_kind == Kind::BYTE && !m_skipsEmpty && m_maximum == NOT_FOUND)))
        from = findBlock(text, cursor);
    if (from == NOT_FOUND) {
        useFound(cursor);
    } else if (m_kind == Kind::LINES) {
        if (cursor.start == length) return;
        cursor.end = findLineEnd(text, cursor);
        cursor.nextStart = cursor.end;
        if (cursor.end < length) {
            const TextView end = text.slice(cursor.end, 2);
            const bool isCRLF =
                end.getLength() == 2 && (text.isUTF8() ? end.getUTF8()[0] == '\r' && end.getUTF8()[1] == '\n'
                                                       : end.getUTF16()[0] == '\r' && end.getUTF16()[1] == '\n');
            cursor.nextStart += isCRLF ? 2 : 1;
        }
    } else {
        TextPart separator = find(text, from);
        if (m_skipsEmpty) {
            while (separator.start == cursor.start) {
                cursor.start += separator.length;
                separator = find(text, cursor.start);
            }
            if (cursor.start == length) return;
        }
        ++cursor.count;
        if (separator.start == NOT_FOUND || cursor.count == m_maximum) {
            cursor.end = length;
            cursor.nextStart = NOT_FOUND;
        } else {
            cursor.end = separator.start;
            cursor.nextStart = separator.start + separator.length;
        }
    }
    cursor.isFirst = false;
    cursor.isDone = false;
}

} // namespace Vorn
