// Parts of texts: trimming, prefixes and substrings. Each decodes only the characters that decide.
#include "Vorn/Private/TextPart.h"

#include "TextRecord.h"
#include "Vorn/Assert.h"
#include "Vorn/Private/TextDecoding.h"
#include "Vorn/Text/CodePoints.h"

namespace Vorn {

namespace {

using namespace VornPrivate;

bool isIn(const CharacterSet& set, const DecodedCharacter& character) {
    return !character.isMalformed && set.contains(character.code);
}

} // namespace

TextPart TextPart::trim(TextView text, const CharacterSet& set, bool atStart, bool atEnd) noexcept {
    unsigned int start = 0;
    unsigned int end = text.getLength();
    while (atStart && start < end) {
        const DecodedCharacter character = decodeAt(text, start);
        if (!isIn(set, character)) break;
        start += character.units;
    }
    while (atEnd && start < end) {
        const DecodedCharacter character = decodeBefore(text, end);
        if (!isIn(set, character)) break;
        end -= character.units;
    }
    return {start, end - start};
}

TextPart TextPart::substring(TextView text, unsigned int start, unsigned int count) {
    const unsigned int begin = offsetOfCodePoint(text, start);
    if (begin == NOT_FOUND) VORN_THROW(E::PARAMETER, "Invalid offset!");
    const TextView rest = text.slice(begin);
    const unsigned int length = count < rest.getLength() ? offsetOfCodePoint(rest, count) : rest.getLength();
    return {begin, length < rest.getLength() ? length : rest.getLength()};
}

TextPart TextPart::slice(TextView text, unsigned int offset, unsigned int length) {
    if (!isBoundary(text, offset)) VORN_THROW(E::PARAMETER, "Invalid offset!");
    const unsigned int remaining = text.getLength() - offset;
    if (length > remaining) length = remaining;
    if (!isBoundary(text, offset + length)) VORN_THROW(E::PARAMETER, "Invalid offset!");
    return {offset, length};
}

unsigned int TextPart::startOfLast(TextView text, unsigned int count) noexcept {
    unsigned int start = text.getLength();
    for (; count > 0 && start > 0; --count) start -= decodeBefore(text, start).units;
    return start;
}

TextPart TextPart::removePrefix(TextView text, TextView prefix) noexcept {
    unsigned int offset = 0;
    for (unsigned int i = 0; i < prefix.getLength();) {
        const DecodedCharacter wanted = decodeAt(prefix, i);
        if (wanted.isMalformed || offset == text.getLength()) return {0, text.getLength()};
        const DecodedCharacter character = decodeAt(text, offset);
        if (character.isMalformed || character.code != wanted.code) return {0, text.getLength()};
        i += wanted.units;
        offset += character.units;
    }
    return {offset, text.getLength() - offset};
}

TextPart TextPart::removeSuffix(TextView text, TextView suffix) noexcept {
    unsigned int end = text.getLength();
    for (unsigned int i = suffix.getLength(); i > 0;) {
        const DecodedCharacter wanted = decodeBefore(suffix, i);
        if (wanted.isMalformed || end == 0) return {0, text.getLength()};
        const DecodedCharacter character = decodeBefore(text, end);
        if (character.isMalformed || character.code != wanted.code) return {0, text.getLength()};
        i -= wanted.units;
        end -= character.units;
    }
    return {0, end};
}

String TextPart::share(StringData* parent, TextView text, TextPart part) {
    if (!parent || part.length == 0) return String(&StringData::s_emptyString);
    if (text.isUTF8()) {
        if (part.length == parent->getBufferInfo<unsigned char>().m_length) return String(parent);
        return String(TextRecord::share<unsigned char>(*parent, part.start, part.length));
    }
    if (part.length == parent->getBufferInfo<UTF16Char>().m_length) return String(parent);
    return String(TextRecord::share<UTF16Char>(*parent, part.start, part.length));
}

} // namespace Vorn
