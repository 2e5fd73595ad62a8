// Texts as lists of code points, and their encodings by the plain rules of Unicode.
#pragma once

#include "Vorn/Types.h"

#include <string>
#include <vector>

using Codes = std::vector<unsigned int>;
using UTF16Text = std::basic_string<Vorn::UTF16Char>;

/// U+0000 becomes 0xC0 0x80.
inline void appendUTF8(std::string& text, unsigned int c) {
    const auto put = [&](unsigned int byte) { text.push_back(static_cast<char>(byte)); };
    if (c != 0 && c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xC0 | c >> 6);
        put(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        put(0xE0 | c >> 12);
        put(0x80 | (c >> 6 & 0x3F));
        put(0x80 | (c & 0x3F));
    } else {
        put(0xF0 | c >> 18);
        put(0x80 | (c >> 12 & 0x3F));
        put(0x80 | (c >> 6 & 0x3F));
        put(0x80 | (c & 0x3F));
    }
}

inline std::string utf8Of(const Codes& codes) {
    std::string text;
    for (const unsigned int c : codes) appendUTF8(text, c);
    return text;
}

inline UTF16Text utf16Of(const Codes& codes) {
    UTF16Text text;
    for (const unsigned int c : codes) {
        if (c >= 0x10000) {
            text.push_back(static_cast<Vorn::UTF16Char>(0xD800 + ((c - 0x10000) >> 10)));
            text.push_back(static_cast<Vorn::UTF16Char>(0xDC00 + (c & 0x3FF)));
        } else {
            text.push_back(static_cast<Vorn::UTF16Char>(c));
        }
    }
    return text;
}

inline const unsigned char* bytesOf(const std::string& text) {
    return reinterpret_cast<const unsigned char*>(text.c_str());
}

inline unsigned int lengthOf(const std::string& text) { return static_cast<unsigned int>(text.size()); }
inline unsigned int lengthOf(const UTF16Text& text) { return static_cast<unsigned int>(text.size()); }
