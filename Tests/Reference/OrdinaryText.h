// Ordinary text, one character at a time: valid characters other than U+0000 in their shortest form. Shares no code
// with the library.
#pragma once

#include "Reference/CodePoints.h"
#include "Reference/SampleTexts.h"

#include <cstddef>
#include <vector>

namespace reference {

/// Where a character ends, and what it is.
struct OrdinaryCharacter {
    std::size_t end;
    unsigned int code;
};

/// The characters up to the first one that is not ordinary.
inline std::vector<OrdinaryCharacter> ordinaryCharacters(const Bytes& text) {
    std::vector<OrdinaryCharacter> characters;
    for (std::size_t i = 0; i < text.size();) {
        const unsigned int lead = text[i];
        const unsigned int size = lead < 0x80                ? 1
                                  : within(lead, 0xC0, 0xDF) ? 2
                                  : within(lead, 0xE0, 0xEF) ? 3
                                  : within(lead, 0xF0, 0xF7) ? 4
                                                             : 0;
        if (size == 0 || text.size() - i < size) break;
        unsigned int seq = 0;
        for (unsigned int k = 0; k < size; ++k) seq = seq * 0x100 + text[i + k];
        if (size > 1 && !hasPattern(seq, size)) break;
        const unsigned int code = size == 1 ? lead : codeOfSequence(seq, size);
        if (code == 0 || !isCharacter(code) || sizeInUTF8(code) != size) break;
        i += size;
        characters.push_back({i, code});
    }
    return characters;
}

inline std::vector<OrdinaryCharacter> ordinaryCharacters(const Units& text) {
    std::vector<OrdinaryCharacter> characters;
    for (std::size_t i = 0; i < text.size();) {
        unsigned int code = text[i];
        std::size_t size = 1;
        if (isFirstSurrogate(code) && i + 1 < text.size() && isSecondSurrogate(text[i + 1])) {
            code = codeOfPair(code, text[i + 1]);
            size = 2;
        }
        if (code == 0 || !isCharacter(code)) break;
        i += size;
        characters.push_back({i, code});
    }
    return characters;
}

} // namespace reference
