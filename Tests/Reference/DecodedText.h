// The characters of any UTF-8 or UTF-16, also malformed, by table 3-7 of the Unicode Standard: a malformed sequence is
// one U+FFFD for each longest start of a row.
#pragma once

#include "Reference/SampleTexts.h"

#include <string>
#include <vector>

namespace reference {

struct DecodedCharacter {
    unsigned int code;
    unsigned int offset;
    unsigned int units;
    bool isMalformed;
};

struct ByteRow {
    unsigned int size;
    unsigned int ranges[4][2];
};

inline constexpr ByteRow BYTE_ROWS[] = {
    {1, {{0x00, 0x7F}}},
    {2, {{0xC0, 0xC0}, {0x80, 0x80}}}, // U+0000 as strings write it
    {2, {{0xC2, 0xDF}, {0x80, 0xBF}}},
    {3, {{0xE0, 0xE0}, {0xA0, 0xBF}, {0x80, 0xBF}}},
    {3, {{0xE1, 0xEC}, {0x80, 0xBF}, {0x80, 0xBF}}},
    {3, {{0xED, 0xED}, {0x80, 0x9F}, {0x80, 0xBF}}},
    {3, {{0xEE, 0xEF}, {0x80, 0xBF}, {0x80, 0xBF}}},
    {4, {{0xF0, 0xF0}, {0x90, 0xBF}, {0x80, 0xBF}, {0x80, 0xBF}}},
    {4, {{0xF1, 0xF3}, {0x80, 0xBF}, {0x80, 0xBF}, {0x80, 0xBF}}},
    {4, {{0xF4, 0xF4}, {0x80, 0x8F}, {0x80, 0xBF}, {0x80, 0xBF}}},
};

inline std::vector<DecodedCharacter> decodedCharacters(const std::string& text) {
    const unsigned int payloads[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    std::vector<DecodedCharacter> characters;
    for (unsigned int at = 0; at < text.size();) {
        DecodedCharacter character = {0xFFFD, at, 1, true};
        for (const ByteRow& row : BYTE_ROWS) {
            unsigned int matched = 0, code = 0;
            while (matched < row.size && at + matched < text.size()) {
                const unsigned int byte = static_cast<unsigned char>(text[at + matched]);
                if (byte < row.ranges[matched][0] || byte > row.ranges[matched][1]) break;
                code = matched == 0 ? byte & payloads[row.size] : code * 64 + byte % 64;
                ++matched;
            }
            if (matched == row.size)
                character = {code, at, matched, false};
            else if (matched > character.units)
                character.units = matched;
        }
        at += character.units;
        characters.push_back(character);
    }
    return characters;
}

inline std::vector<DecodedCharacter> decodedCharacters(const std::u16string& text) {
    std::vector<DecodedCharacter> characters;
    for (unsigned int at = 0; at < text.size();) {
        const unsigned int first = text[at];
        const unsigned int second = at + 1 < text.size() ? text[at + 1] : 0u;
        DecodedCharacter character = {first, at, 1, false};
        if (first >= 0xD800 && first <= 0xDBFF && second >= 0xDC00 && second <= 0xDFFF)
            character = {0x10000 + (first - 0xD800) * 0x400 + (second - 0xDC00), at, 2, false};
        else if (first >= 0xD800 && first <= 0xDFFF)
            character = {0xFFFD, at, 1, true};
        at += character.units;
        characters.push_back(character);
    }
    return characters;
}

/// The code points alone.
template <class Text>
std::u32string decoded(const Text& text) {
    std::u32string codes;
    for (const DecodedCharacter& character : decodedCharacters(text)) codes.push_back(character.code);
    return codes;
}

/// UTF-8 with U+0000 as the byte 0, and UTF-16.
inline std::string encodedUTF8(const std::u32string& codes) {
    std::string text;
    for (const char32_t code : codes) {
        if (code == 0)
            text.push_back('\0');
        else
            appendUTF8(text, code);
    }
    return text;
}

inline std::u16string encodedUTF16(const std::u32string& codes) {
    std::u16string text;
    for (const char32_t code : codes) {
        if (code > 0xFFFF) text.push_back(static_cast<char16_t>(firstSurrogateOf(code)));
        text.push_back(static_cast<char16_t>(code > 0xFFFF ? secondSurrogateOf(code) : code));
    }
    return text;
}

} // namespace reference
