#include "Vorn/Text/MakeString.h"

#include "Vorn/StringDataScan.h"
#include "Vorn/Text/ExactConversion.h"
#include "Vorn/Text/RecordAccess.h"
#include "Vorn/Text/TextScan.h"

#include <cstring>

namespace Vorn {

namespace {

using namespace VornPrivate;

const char* reasonOf(UTF32Char code) {
    if (code > LAST_CODE_POINT) return "a code above U+10FFFF";
    return isSurrogateCode(code) ? "a surrogate" : "a noncharacter";
}

const char* reasonAt(const unsigned char* at, const unsigned char* end) {
    const DecodedCharacter character = decodeNext(at, end);
    if (!character.isMalformed) return reasonOf(character.code);
    const unsigned int lead = *at;
    if (lead < 0xC0) return "a trail byte without a lead byte";
    if (lead < 0xC2) return "an overlong form";
    if (lead > 0xF7) return "a byte that is in no character";
    if (lead > 0xF4) return reasonOf(LAST_CODE_POINT + 1);
    if (end - at < 2 || !isTrailByte(at[1])) return "an incomplete character";
    const unsigned int second = at[1];
    if ((lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90)) return "an overlong form";
    if (lead == 0xED && second >= 0xA0) return reasonOf(0xD800);
    if (lead == 0xF4 && second >= 0x90) return reasonOf(LAST_CODE_POINT + 1);
    return "an incomplete character";
}

const char* reasonAt(const UTF16Char* at, const UTF16Char* end) {
    const DecodedCharacter character = decodeNext(at, end);
    if (!character.isMalformed) return reasonOf(character.code);
    return isHighSurrogate(*at) ? "a first surrogate without a second one" : "a second surrogate without a first one";
}

// Out of line, so that a call costs nothing until it throws.
[[noreturn]] VORN_COLD void throwMalformed(const char* what, unsigned int offset, const char* reason) {
    static constexpr auto file = sourcePath(__FILE__);
    std::string message = "Malformed ";
    message += what;
    message += " at offset ";
    message += std::to_string(offset);
    message += ": ";
    message += reason;
    message += "!";
    throw Exception<E::UNICODE>(codeName<E::UNICODE>(), VornPrivate::TextView(file),
                                VornPrivate::TextView("Vorn::makeString"), LINE_STRING, __LINE__,
                                ExceptionString(message, 0.0f));
}

// Finds the length and the properties of the string of a text.
TextScan scanFrom(const unsigned char* text, unsigned int length, bool isReplacing) {
    TextScan scan;
    OrdinaryText<UTF8Steps<true, false>, false> ordinary(text, length);
    RunCounts run;
    std::int64_t extra = 0; // units of the string beyond those of the text
    for (unsigned int i = 0; (i = ordinary.skip(i, run)) < length;) {
        const DecodedCharacter character = decodeNext(text + i, text + length);
        if (!character.isMalformed && character.code == 0) {
            scan.properties.hasNull = true;
            scan.isSame &= character.units == 2;
            extra += 2 - static_cast<int>(character.units);
        } else { // malformed, or a noncharacter
            if (!isReplacing) {
                scan.errorOffset = i;
                return scan;
            }
            scan.properties.isBeyondASCII = true;
            scan.isSame = false;
            extra += 3 - static_cast<int>(character.units);
        }
        i += character.units;
    }
    scan.properties.isBeyondASCII |= run.beyondASCII;
    scan.properties.hasSupplementaries = run.fourBytes != 0;
    scan.length = static_cast<std::uint64_t>(std::int64_t(length) + extra);
    return scan;
}

TextScan scanFrom(const UTF16Char* text, unsigned int length, bool isReplacing) {
    TextScan scan;
    OrdinaryText<UTF16Steps<true, false, 0x80>, false> ordinary(text, length);
    WideCounts run;
    unsigned int removed = 0;
    for (unsigned int i = 0; (i = ordinary.skip(i, run)) < length;) {
        const DecodedCharacter character = decodeNext(text + i, text + length);
        if (character.code == 0) {
            scan.properties.hasNull = true;
        } else {
            if (!isReplacing) {
                scan.errorOffset = i;
                return scan;
            }
            scan.properties.isBeyondASCII = true;
            scan.isSame = false;
            removed += character.units - 1;
        }
        i += character.units;
    }
    scan.properties.isBeyondASCII |= run.beyondASCII;
    scan.properties.hasSupplementaries = run.pairs != 0;
    scan.length = length - removed;
    return scan;
}

// Writes the text with replacements, and returns its end.
template <class CharType>
CharType* copyReplacing(const CharType* at, unsigned int length, CharType* dest) {
    const CharType* const end = at + length;
    while (at != end) {
        const DecodedCharacter character = decodeNext(at, end);
        dest = encodeForString(dest, isCharacter(character.code) ? character.code : REPLACEMENT_CHARACTER);
        at += character.units;
    }
    return dest;
}

template <class CharType>
String build(const CharType* text, unsigned int length, const TextScan& scan) {
    if (scan.length > MAX_TEXT_LENGTH) VORN_THROW(E::PARAMETER, "length : text too long!", "Vorn::makeString");
    std::unique_ptr<CharType[]> block = allocateText<CharType>(scan.length);
    CharType* end;
    if (scan.isSame) {
        std::memcpy(block.get(), text, std::size_t(length) * sizeof(CharType));
        end = block.get() + length;
    } else {
        end = copyReplacing(text, length, block.get());
    }
    *end = 0;
    return String(RecordAccess::make(std::move(block), static_cast<unsigned int>(scan.length), scan.properties));
}

// Finds the length and the properties of the string of code points; the offset is an index.
TextScan scanFrom(std::u32string_view codes, bool isReplacing) {
    TextScan scan;
    for (std::size_t i = 0; i < codes.size(); ++i) {
        UTF32Char code = codes[i];
        if (!isCharacter(code)) {
            if (!isReplacing) {
                scan.errorOffset = i < NOT_FOUND ? static_cast<unsigned int>(i) : NOT_FOUND - 1;
                scan.error = reasonOf(code);
                return scan;
            }
            code = REPLACEMENT_CHARACTER;
        }
        scan.length += unitsOf<unsigned char, true>(code);
        scan.properties.hasNull |= code == 0;
        scan.properties.isBeyondASCII |= code >= 0x80;
        scan.properties.hasSupplementaries |= code >= 0x10000;
    }
    return scan;
}

String build(std::u32string_view codes, const TextScan& scan) {
    if (codes.empty()) return String(&StringData::s_emptyString);
    if (scan.length > MAX_TEXT_LENGTH) VORN_THROW(E::PARAMETER, "length : text too long!", "Vorn::makeString");
    std::unique_ptr<unsigned char[]> block = allocateText<unsigned char>(scan.length);
    unsigned char* end = block.get();
    for (const char32_t code : codes) end = encodeForString(end, isCharacter(code) ? code : REPLACEMENT_CHARACTER);
    *end = 0;
    return String(RecordAccess::make(std::move(block), static_cast<unsigned int>(scan.length), scan.properties));
}

} // namespace

} // namespace Vorn

namespace VornPrivate {

TextScan scanText(Vorn::TextView text, bool isReplacing) {
    return withUnits(text, [&](const auto* units, unsigned int length) {
        TextScan scan = Vorn::scanFrom(units, length, isReplacing);
        if (scan.errorOffset != Vorn::NOT_FOUND) scan.error = Vorn::reasonAt(units + scan.errorOffset, units + length);
        return scan;
    });
}

TextScan requireValid(Vorn::TextView text) {
    const TextScan scan = scanText(text, false);
    if (scan.error) Vorn::throwMalformed(text.isUTF8() ? "UTF-8" : "UTF-16", scan.errorOffset, scan.error);
    return scan;
}

} // namespace VornPrivate

namespace Vorn {

namespace {

String build(TextView text, const TextScan& scan) {
    if (text.isEmpty()) return String(&StringData::s_emptyString);
    return withUnits(text, [&](const auto* units, unsigned int length) { return build(units, length, scan); });
}

} // namespace

String makeString(TextView text) {
    // Most texts are short and ASCII.
    const unsigned char* const bytes = text.getUTF8();
    const unsigned int length = text.getLength();
    if (bytes && isPlainText(bytes, length)) {
        std::unique_ptr<unsigned char[]> block = allocateText<unsigned char>(length);
        std::memcpy(block.get(), bytes, length);
        block[length] = 0;
        return String(RecordAccess::make(std::move(block), length, TextProperties()));
    }
    return build(text, requireValid(text));
}

String makeStringReplacing(TextView text) { return build(text, scanText(text, true)); }

MadeString tryMakeString(TextView text) {
    const TextScan scan = scanText(text, false);
    if (scan.error) return {String(), scan.errorOffset, scan.error};
    return {build(text, scan), NOT_FOUND, nullptr};
}

String makeString(std::u32string_view codes) {
    const TextScan scan = scanFrom(codes, false);
    if (scan.error) throwMalformed("code points", scan.errorOffset, scan.error);
    return build(codes, scan);
}

String makeStringReplacing(std::u32string_view codes) { return build(codes, scanFrom(codes, true)); }

MadeString tryMakeString(std::u32string_view codes) {
    const TextScan scan = scanFrom(codes, false);
    if (scan.error) return {String(), scan.errorOffset, scan.error};
    return {build(codes, scan), NOT_FOUND, nullptr};
}

namespace {

// A terminated copy of a valid text for a String, in either encoding.
template <class Target>
std::unique_ptr<Target[]> copyIn(TextView text, std::uint64_t length) {
    std::unique_ptr<Target[]> block = allocateText<Target>(length);
    Target* const end = withUnits(
        text, [&](const auto* units, unsigned int count) { return convertExactly<true>(units, count, block.get()); });
    *end = 0;
    return block;
}

} // namespace

String makeStaticString(TextView text) {
    const TextScan scan = requireValid(text);
    if (text.isEmpty()) return String(&StringData::s_emptyString);
    const auto lengthIn = [&](auto unit) {
        return withUnits(text, [&](const auto* units, unsigned int length) {
            return convertedLength<decltype(unit), true>(units, length);
        });
    };
    const std::uint64_t bytes = lengthIn(static_cast<unsigned char>(0)), units = lengthIn(UTF16Char());
    if (bytes > MAX_TEXT_LENGTH) VORN_THROW(E::PARAMETER, "length : text too long!");
    return String(RecordAccess::makeStatic(copyIn<unsigned char>(text, bytes), static_cast<unsigned int>(bytes),
                                           copyIn<UTF16Char>(text, units), static_cast<unsigned int>(units),
                                           scan.properties));
}

} // namespace Vorn
