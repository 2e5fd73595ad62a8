#include "Vorn/Text/TextConversion.h"

#include "Vorn/Text/CodePoints.h"
#include "Vorn/Text/ExactConversion.h"
#include "Vorn/Text/MakeString.h"
#include "Vorn/Text/RecordAccess.h"
#include "Vorn/Text/TextScan.h"

#include <algorithm>
#include <memory>

namespace Vorn {

namespace {

using namespace VornPrivate;

template <class Target>
std::uint64_t lengthIn(TextView text) {
    return withUnits(
        text, [](const auto* units, unsigned int length) { return convertedLength<Target, false>(units, length); });
}

template <class Target, class Text>
Text convertTo(TextView text) {
    const std::uint64_t length = lengthIn<Target>(text);
    Text converted;
    if (length > converted.max_size()) VORN_THROW(E::PARAMETER, "length : text too long!", "Vorn::toUTF8");
    converted.resize(static_cast<std::size_t>(length));
    auto* const dest = reinterpret_cast<Target*>(converted.data());
    withUnits(text, [&](const auto* units, unsigned int count) { return convertExactly<false>(units, count, dest); });
    return converted;
}

constexpr unsigned int unitsIn(const unsigned char*, UTF32Char code) { return unitsOf<unsigned char, false>(code); }
constexpr unsigned int unitsIn(const UTF16Char*, UTF32Char code) { return unitsOf<UTF16Char, false>(code); }
constexpr unsigned int unitsIn(const char32_t*, UTF32Char) { return 1; }

// The number of units, up to `count`, that end with a character, or 0 where none ends near.
unsigned int charactersUpTo(const unsigned char* source, const unsigned char* end, unsigned int count) {
    unsigned int trails = 0;
    while (trails < 3 && trails < count && source + count - trails != end && isTrailByte(source[count - trails]))
        ++trails;
    const bool isBoundary = source + count - trails == end || !isTrailByte(source[count - trails]);
    return isBoundary ? count - trails : 0;
}
unsigned int charactersUpTo(const UTF16Char* source, const UTF16Char* end, unsigned int count) {
    const bool isInPair =
        count != 0 && source + count != end && isHighSurrogate(source[count - 1]) && isLowSurrogate(source[count]);
    return isInPair ? count - 1 : count;
}

// No unit becomes more than three units of any encoding.
template <class Source, class Target>
ConvertedText convertInto(const Source* source, unsigned int length, Target* dest, std::size_t capacity) {
    if (length <= capacity / 3) {
        Target* const end = convertExactly<false>(source, length, dest);
        return {static_cast<std::size_t>(end - dest), length};
    }
    const Source* const begin = source;
    const Source* const end = source + length;
    Target* const destBegin = dest;
    Target* const destEnd = dest + capacity;
    while (source != end) {
        // Whole characters that have room at three units each.
        auto count = static_cast<unsigned int>(
            std::min(static_cast<std::size_t>(end - source), static_cast<std::size_t>(destEnd - dest) / 3));
        count = charactersUpTo(source, end, count);
        if (count >= SHORT_TEXT) {
            dest = convertExactly<false>(source, count, dest);
            source += count;
            continue;
        }
        const DecodedCharacter character = decodeNext(source, end);
        if (static_cast<std::size_t>(destEnd - dest) < unitsIn(dest, character.code)) break;
        dest = encodeTo(dest, character.code);
        source += character.units;
    }
    return {static_cast<std::size_t>(dest - destBegin), static_cast<unsigned int>(source - begin)};
}

template <class Target>
ConvertedText convertInto(TextView text, Target* dest, std::size_t capacity) {
    return withUnits(
        text, [&](const auto* units, unsigned int length) { return convertInto(units, length, dest, capacity); });
}

template <class Target>
String inEncoding(TextView text) {
    if (text.isUTF8() == (sizeof(Target) == 1)) return makeString(text);
    const TextScan scan = requireValid(text);
    if (text.isEmpty()) return String(&StringData::s_emptyString);
    const std::uint64_t length = withUnits(
        text, [](const auto* units, unsigned int count) { return convertedLength<Target, true>(units, count); });
    if (length > MAX_TEXT_LENGTH) VORN_THROW(E::PARAMETER, "length : text too long!", "Vorn::inUTF8");
    std::unique_ptr<Target[]> block = allocateText<Target>(length);
    Target* const end = withUnits(
        text, [&](const auto* units, unsigned int count) { return convertExactly<true>(units, count, block.get()); });
    *end = 0;
    return String(RecordAccess::make(std::move(block), static_cast<unsigned int>(length), scan.properties));
}

} // namespace

std::string toUTF8(TextView text) { return convertTo<unsigned char, std::string>(text); }
std::u16string toUTF16(TextView text) { return convertTo<UTF16Char, std::u16string>(text); }

std::u32string toUTF32(TextView text) {
    std::u32string codes(codePointCount(text), U'\0');
    withUnits(text, [&](const auto* units, unsigned int length) {
        return convertExactly<false>(units, length, codes.data());
    });
    return codes;
}

std::uint64_t lengthInUTF8(TextView text) noexcept { return lengthIn<unsigned char>(text); }
std::uint64_t lengthInUTF16(TextView text) noexcept { return lengthIn<UTF16Char>(text); }

ConvertedText toUTF8(TextView text, char* dest, std::size_t capacity) noexcept {
    return convertInto(text, reinterpret_cast<unsigned char*>(dest), capacity);
}
ConvertedText toUTF16(TextView text, char16_t* dest, std::size_t capacity) noexcept {
    return convertInto(text, reinterpret_cast<UTF16Char*>(dest), capacity);
}
ConvertedText toUTF32(TextView text, char32_t* dest, std::size_t capacity) noexcept {
    return convertInto(text, dest, capacity);
}

String inUTF8(TextView text) { return inEncoding<unsigned char>(text); }
String inUTF16(TextView text) { return inEncoding<UTF16Char>(text); }

} // namespace Vorn
