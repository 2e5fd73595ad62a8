// Random texts for tests: code points around every boundary, and units that are often malformed.
#pragma once

#include "Reference/DecodedText.h"
#include "Support/Random.h"

#include <cstdio>
#include <string>

/// The first and last code points of every range that encodings and validation know, and some between.
inline constexpr char32_t BOUNDARY_CODES[] = {0x00,    0x01,    0x41,    0x61,    0x7A,    0x7F,     0x80,
                                              0xE9,    0x7FF,   0x800,   0x20AC,  0xFFF,   0x1000,   0xCFFF,
                                              0xD000,  0xD7FF,  0xE000,  0xFDCF,  0xFDF0,  0xFFFD,   0x10000,
                                              0x1F600, 0x1FFFD, 0x3FFFD, 0x40000, 0xFFFFD, 0x100000, 0x10FFFD};

/// The code points of BOUNDARY_CODES, runs of ASCII, and random ones; no surrogates and no noncharacters.
inline std::u32string randomCodes(Random& random, unsigned int most) {
    std::u32string codes;
    for (unsigned int left = random.below(most + 1); left-- > 0;) {
        switch (random.below(4)) {
        case 0: codes.push_back(BOUNDARY_CODES[random.below(std::size(BOUNDARY_CODES))]); break;
        case 1: codes.append(random.below(20), U'a'); break;
        case 2: codes.push_back('a' + random.below(3)); break;
        default: {
            const unsigned int code = random.below(0x110000);
            if ((code & 0xFFFFF800) != 0xD800 && (code & 0xFFFE) != 0xFFFE && (code < 0xFDD0 || code > 0xFDEF))
                codes.push_back(code);
        }
        }
    }
    return codes;
}

/// UTF-8 in which some characters are truncated, some bytes stand alone, and U+0000 has both spellings.
inline std::string randomBytes(Random& random, unsigned int most) {
    const unsigned char bytes[] = {0x00, 0x41, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xC1, 0xC2,
                                   0xDF, 0xE0, 0xE1, 0xED, 0xEF, 0xF0, 0xF1, 0xF4, 0xF5, 0xF8, 0xFF};
    std::string text;
    for (unsigned int left = random.below(most + 1); left-- > 0;) {
        const unsigned int kind = random.below(8);
        if (kind == 0) {
            text.push_back(static_cast<char>(bytes[random.below(std::size(bytes))]));
        } else if (kind == 1) {
            const std::string whole = reference::encodedUTF8(std::u32string(1, BOUNDARY_CODES[random.below(28)]));
            text += whole.substr(0, 1 + random.below(static_cast<unsigned int>(whole.size())));
        } else if (kind == 2) {
            text += "\xC0\x80";
        } else {
            text += reference::encodedUTF8(randomCodes(random, 2));
        }
    }
    return text;
}

/// UTF-16 in which some surrogates stand alone.
inline std::u16string randomUnits(Random& random, unsigned int most) {
    const char16_t units[] = {0x0000, 0x0041, 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xD83D, 0xDE00, 0xE000};
    std::u16string text;
    for (unsigned int left = random.below(most + 1); left-- > 0;) {
        if (random.below(4) == 0)
            text.push_back(units[random.below(std::size(units))]);
        else
            text += reference::encodedUTF16(randomCodes(random, 2));
    }
    return text;
}

/// The units in hexadecimal.
template <class Text>
std::string inHex(const Text& text) {
    std::string hex;
    for (const auto unit : text) {
        char digits[16];
        const unsigned int value =
            sizeof(unit) == 1 ? static_cast<unsigned char>(unit) : static_cast<unsigned int>(unit);
        std::snprintf(digits, sizeof(digits), "%02X ", value);
        hex += digits;
    }
    return hex;
}
