#include "Vorn/Text/TextChange.h"

#include "TextScan.h"
#include "TextStore.h"
#include "Vorn/Assert.h"
#include "Vorn/Private/TextDecoding.h"
#include "Vorn/Text/CodePoints.h"
#include "Vorn/Text/MakeString.h"

#include <cstring>

namespace Vorn {

namespace {

using namespace VornPrivate;

String unchanged(TextView text, const String* string) {
    return string && string->getData() ? *string : makeString(text);
}

// An empty store in the encoding of a text.
struct ChangedText : OwnedTextStore {
    explicit ChangedText(TextView text) { encoding = text.getEncoding(); }
};

} // namespace

String TextChange::replace(TextView text, const String* string, TextView from, TextView to, bool onlyFirst) {
    if (from.isEmpty()) VORN_THROW(E::PARAMETER, "from : must not be empty!");
    const TextSplitter pieces(text, string ? *string : String(), from, onlyFirst ? 2 : NOT_FOUND, false);
    TextSplitter::Cursor cursor;
    pieces.next(cursor);
    if (cursor.isDone || cursor.nextStart == NOT_FOUND) return unchanged(text, string);

    const bool isValid = requireValid(to).isSame;
    ChangedText result(text);
    reserve(result, text.getLength());
    const auto add = [&](TextView added, bool isKnown) {
        if (!tryAppendText(result, added, isKnown)) append(result, added, isKnown);
    };
    for (; !cursor.isDone; pieces.next(cursor)) {
        add(text.slice(cursor.start, cursor.end - cursor.start), string);
        if (cursor.nextStart != NOT_FOUND) add(to, isValid);
    }
    return take(result);
}

String TextChange::replaceRange(TextView text, const String* string, unsigned int offset, unsigned int length,
                                TextView to) {
    const TextPart part = TextPart::slice(text, offset, length);
    if (part.length == 0 && to.isEmpty()) return unchanged(text, string);
    ChangedText result(text);
    reserve(result, text.getLength() - part.length + measure(to, text.getEncoding()));
    append(result, text.slice(0, part.start), string);
    append(result, to, false);
    append(result, text.slice(part.start + part.length), string);
    return take(result);
}

String TextChange::repeat(TextView text, const String* string, unsigned int count) {
    if (count == 1) return unchanged(text, string);
    ChangedText result(text);
    const std::uint64_t length = string ? text.getLength() : measure(text, text.getEncoding());
    if (length != 0 && count > MAX_TEXT_LENGTH / length) VORN_THROW(E::PARAMETER, "length : text too long!");
    reserve(result, length * count);
    if (count == 0 || length == 0) return take(result);
    append(result, text, string);
    const std::size_t size = static_cast<std::size_t>(length) * (text.isUTF8() ? 1 : sizeof(UTF16Char));
    auto* const bytes = static_cast<unsigned char*>(result.block);
    for (std::size_t done = size; done < size * count;) { // doubles the text
        const std::size_t added = done < size * count - done ? done : size * count - done;
        std::memcpy(bytes + done, bytes, added);
        done += added;
    }
    result.length = static_cast<unsigned int>(length * count);
    return take(result);
}

String TextChange::pad(TextView text, const String* string, unsigned int width, char32_t fill, bool atStart) {
    if (!isCharacter(fill)) VORN_THROW(E::UNICODE, "Invalid Unicode character!");
    const unsigned int count = codePointCount(text);
    if (count >= width) return unchanged(text, string);
    ChangedText result(text);
    unsigned char bytes[4];
    const TextView filling(bytes, static_cast<std::size_t>(encodeForString(bytes, fill) - bytes));
    const std::uint64_t length = string ? text.getLength() : measure(text, text.getEncoding());
    const std::uint64_t unit = measure(filling, text.getEncoding());
    reserve(result, length + unit * (width - count));
    if (!atStart) append(result, text, string);
    for (unsigned int i = count; i < width; ++i) append(result, filling, true);
    if (atStart) append(result, text, string);
    return take(result);
}

namespace {

// Letters of one case, from `first` on.
template <class CharType>
bool hasLetters(const CharType* units, unsigned int length, unsigned int first) {
    bool isFound = false;
    for (unsigned int i = 0; i < length; ++i) isFound |= units[i] - first < 26;
    return isFound;
}

template <class CharType>
void flipCase(CharType* units, unsigned int length, unsigned int first) {
    for (unsigned int i = 0; i < length; ++i)
        units[i] = static_cast<CharType>(units[i] ^ (units[i] - first < 26 ? 0x20 : 0));
}

} // namespace

String TextChange::changeCase(TextView text, const String* string, bool toUpper) {
    const unsigned int first = toUpper ? 'a' : 'A';
    const unsigned int length = text.getLength();
    const bool isChanged =
        text.isUTF8() ? hasLetters(text.getUTF8(), length, first) : hasLetters(text.getUTF16(), length, first);
    if (!isChanged) return unchanged(text, string);
    ChangedText result(text);
    reserve(result, length);
    append(result, text, string);
    if (text.isUTF8())
        flipCase(static_cast<unsigned char*>(result.block), result.length, first);
    else
        flipCase(static_cast<UTF16Char*>(result.block), result.length, first);
    return take(result);
}

} // namespace Vorn
