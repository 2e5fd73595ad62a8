#include "PlainUnicode.h"

namespace {

using Vorn::UTF16Char;
using UTF8Text = std::vector<unsigned char>;
using UTF16Text = std::vector<UTF16Char>;

struct Character {
    unsigned int code = 0;
    unsigned int units = 0; // 0 for an invalid character
};

bool isCharacter(unsigned int code) {
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    const bool nonCharacter = (code >= 0xFDD0 && code <= 0xFDEF) || (code & 0xFFFE) == 0xFFFE;
    return code <= 0x10FFFF && !surrogate && !nonCharacter;
}

Character characterAt(const UTF8Text& text, unsigned int i, unsigned int length) {
    const unsigned int lead = text[i];
    if (lead == 0 || (lead >= 0x80 && lead < 0xC0) || lead > 0xF4) return {};
    const unsigned int units = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (length - i < units) return {};
    unsigned int code = units == 1 ? lead : lead & (0x7Fu >> units);
    for (unsigned int k = 1; k < units; ++k) {
        if ((text[i + k] & 0xC0) != 0x80) return {};
        code = code << 6 | (text[i + k] & 0x3Fu);
    }
    const bool overlong = (units == 2 && code < 0x80 && code != 0) || (units == 3 && code < 0x800);
    if (overlong || !isCharacter(code)) return {};
    return {code, units};
}

Character characterAt(const UTF16Text& text, unsigned int i, unsigned int length) {
    const unsigned int first = text[i];
    if (first < 0xD800 || first > 0xDBFF) return isCharacter(first) ? Character{first, 1} : Character{};
    if (length - i < 2 || text[i + 1] < 0xDC00 || text[i + 1] > 0xDFFF) return {};
    const unsigned int code = 0x10000 + ((first - 0xD800) << 10) + (text[i + 1] - 0xDC00u);
    return isCharacter(code) ? Character{code, 2} : Character{};
}

template <class Text>
std::optional<unsigned int> findBad(const Text& text, unsigned int length) {
    for (unsigned int i = 0; i < length;) {
        const Character character = characterAt(text, i, length);
        if (character.units == 0) return i;
        i += character.units;
    }
    return std::nullopt;
}

void append(UTF16Text& text, unsigned int code) {
    if (code > 0xFFFF) {
        text.push_back(static_cast<UTF16Char>(0xD800 + ((code - 0x10000) >> 10)));
        text.push_back(static_cast<UTF16Char>(0xDC00 + (code & 0x3FF)));
    } else {
        text.push_back(static_cast<UTF16Char>(code));
    }
}

void append(UTF8Text& text, unsigned int code) {
    const auto add = [&](unsigned int byte) { text.push_back(static_cast<unsigned char>(byte)); };
    const auto addTrail = [&](unsigned int shift) { add(0x80 | (code >> shift & 0x3F)); };
    if (code != 0 && code < 0x80) {
        add(code);
    } else if (code < 0x800) {
        add(0xC0 | code >> 6);
        addTrail(0);
    } else if (code < 0x10000) {
        add(0xE0 | code >> 12);
        addTrail(6);
        addTrail(0);
    } else {
        add(0xF0 | code >> 18);
        addTrail(12);
        addTrail(6);
        addTrail(0);
    }
}

template <class Target, class Source>
Target convertAll(const Source& text, unsigned int length) {
    Target target;
    for (unsigned int i = 0; i < length;) {
        const Character character = characterAt(text, i, length);
        append(target, character.code);
        i += character.units;
    }
    return target;
}

} // namespace

std::optional<unsigned int> findBadCharacter(const UTF8Text& text, unsigned int length) {
    return findBad(text, length);
}
std::optional<unsigned int> findBadCharacter(const UTF16Text& text, unsigned int length) {
    return findBad(text, length);
}

UTF16Text convert(const UTF8Text& text, unsigned int length) { return convertAll<UTF16Text>(text, length); }
UTF8Text convert(const UTF16Text& text, unsigned int length) { return convertAll<UTF8Text>(text, length); }
