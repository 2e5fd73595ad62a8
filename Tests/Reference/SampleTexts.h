// Texts as lists of code points, with their encodings and scan results, computed from the code points alone.
#pragma once

#include "Reference/CodePoints.h"
#include "Support/Effort.h"

#include "Vorn/String/StringDataTypes.h"
#include "Vorn/Types.h"

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace reference {

using Bytes = std::vector<unsigned char>;
using Units = std::vector<Vorn::UTF16Char>;
using Codes = std::vector<unsigned int>;

/// As a length: up to the terminator, or up to the end. As a result: not found.
inline constexpr unsigned int NPOS = 0xFFFFFFFF;

/// U+0000 becomes 0xC0 0x80.
template <class Text>
void appendUTF8(Text& text, unsigned int code) {
    const unsigned int size = code == 0 ? 2 : sizeInUTF8(code);
    const unsigned int word = sequence(code, size);
    for (unsigned int left = size; left-- > 0;)
        text.push_back(static_cast<typename Text::value_type>(word >> (8 * left)));
}

inline Bytes toUTF8(const Codes& codes) {
    Bytes bytes;
    for (const unsigned int code : codes) appendUTF8(bytes, code);
    return bytes;
}

inline Units toUTF16(const Codes& codes) {
    Units units;
    for (const unsigned int code : codes) {
        if (code > 0xFFFF) {
            units.push_back(static_cast<Vorn::UTF16Char>(firstSurrogateOf(code)));
            units.push_back(static_cast<Vorn::UTF16Char>(secondSurrogateOf(code)));
        } else {
            units.push_back(static_cast<Vorn::UTF16Char>(code));
        }
    }
    return units;
}

inline bool holds(const Codes& codes, unsigned int code) {
    return std::find(codes.begin(), codes.end(), code) != codes.end();
}

inline Vorn::StringDataSubCharset charsetOf(const Codes& codes) {
    const unsigned int largest = codes.empty() ? 0 : *std::max_element(codes.begin(), codes.end());
    if (largest > 0xFFFF) return Vorn::STRING_DATA_UNICODE;
    return largest > 0x7F || holds(codes, 0) ? Vorn::STRING_DATA_UCS2 : Vorn::STRING_DATA_ASCII;
}

/// A source of random characters.
struct Script {
    const char* name;
    std::vector<Interval> ranges;
};

inline const std::vector<Script>& scripts() {
    static const std::vector<Script> all{
        {"ASCII", {{1, 0x7F}}},
        {"French", {{0x20, 0x7E}, {0x20, 0x7E}, {0x20, 0x7E}, {0xC0, 0xFF}}},
        {"Russian", {{0x410, 0x44F}, {0x20, 0x20}}},
        {"Hebrew and Arabic", {{0x5D0, 0x5EA}, {0x620, 0x64A}, {0x20, 0x20}}},
        {"Devanagari", {{0x904, 0x939}, {0x20, 0x20}}},
        {"Chinese", {{0x4E00, 0x9FFF}, {0x3001, 0x3002}}},
        {"Korean", {{0xAC00, 0xD7A3}}},
        {"UCS-2 with nulls", {{0, 0}, {0x20, 0x7E}, {0x400, 0x4FF}, {0xE000, 0xFDCF}}},
        {"emoji", {{0x1F300, 0x1F64F}}},
        {"emoji in English", {{0x20, 0x7E}, {0x20, 0x7E}, {0x20, 0x7E}, {0x20, 0x7E}, {0x1F300, 0x1F64F}}},
        {"every plane", {{0x10000, 0x1FFFD}, {0x20000, 0x8FFFD}, {0xF0000, 0xFFFFD}, {0x100000, 0x10FFFD}}},
        {"ends of all sizes",
         {{1, 1},
          {0x7F, 0x80},
          {0x7FF, 0x800},
          {0xD7FF, 0xD7FF},
          {0xE000, 0xE000},
          {0xFDCF, 0xFDCF},
          {0xFDF0, 0xFDF0},
          {0xFFFD, 0xFFFD},
          {0x10000, 0x10000},
          {0x3FFFD, 0x3FFFD},
          {0x40000, 0x40000},
          {0x10FFFD, 0x10FFFD}}},
        {"everything with nulls",
         {{0, 0}, {1, 0x7F}, {0x80, 0x7FF}, {0x800, 0xD7FF}, {0xE000, 0xFDCF}, {0x10000, 0x10FFFD}}},
    };
    return all;
}

inline Codes randomText(std::mt19937& random, const Script& script, unsigned int length) {
    Codes codes;
    while (codes.size() < length) {
        const Interval& range = script.ranges[random() % script.ranges.size()];
        const unsigned int first = *range.begin();
        const auto count =
            static_cast<unsigned int>(std::uniform_int_distribution<unsigned int>(0, range.last() - first)(random));
        if (isCharacter(first + count)) codes.push_back(first + count);
    }
    return codes;
}

/// A text of every script for each of several lengths.
inline std::vector<Codes> randomTexts(std::initializer_list<unsigned int> lengths) {
    std::mt19937 random(20);
    std::vector<Codes> texts;
    for (const Script& script : scripts()) {
        for (const unsigned int length : lengths) texts.push_back(randomText(random, script, length));
    }
    return texts;
}

/// The parts of invalid texts: values that make a text invalid at any position.
inline constexpr unsigned char badBytes[] = {0x00, 0x41, 0x7F, 0x80, 0xBF, 0xC0, 0xC1, 0xC2,
                                             0xDF, 0xE0, 0xED, 0xEF, 0xF0, 0xF4, 0xF5, 0xFF};
inline constexpr Vorn::UTF16Char badUnits[] = {0x0000, 0x0041, 0x007F, 0x0080, 0xD800, 0xD8C0, 0xDBFF, 0xDC00,
                                               0xDFFD, 0xDFFE, 0xDFFF, 0xFDD0, 0xFDEF, 0xFFFD, 0xFFFE, 0xFFFF};

/// The texts that differ from `text` by one replaced unit, and all its beginnings; with reduced effort, a part of them
/// that touches every place.
template <class Unit, std::size_t Count>
std::vector<std::vector<Unit>> damaged(const std::vector<Unit>& text, const Unit (&values)[Count]) {
    static_assert(Count >= LARGEST_ROW_STEP, "or a place stays untouched");
    std::vector<std::vector<Unit>> texts;
    std::size_t row = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (row++ % rowStep() == 0) texts.emplace_back(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at));
        for (const Unit value : values) {
            if (row++ % rowStep() != 0) continue;
            texts.push_back(text);
            texts.back()[at] = value;
        }
    }
    return texts;
}

/// The units in hexadecimal, for the messages of failing tests.
template <class Unit>
std::string shown(const std::vector<Unit>& units) {
    static const char digits[] = "0123456789ABCDEF";
    std::string text;
    for (const Unit unit : units) {
        for (int shift = static_cast<int>(sizeof(Unit)) * 8 - 4; shift >= 0; shift -= 4) {
            text += digits[(static_cast<unsigned int>(unit) >> shift) % 16];
        }
        text += ' ';
    }
    return text;
}

} // namespace reference
