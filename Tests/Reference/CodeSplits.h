// Texts divided, trimmed and replaced as lists of code points, one step after the other. Shares no code with the
// library.
#pragma once

#include "Reference/SampleTexts.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace reference {

using Pieces = std::vector<Codes>;

inline Codes slice(const Codes& codes, std::size_t start, std::size_t end) {
    return Codes(codes.begin() + static_cast<std::ptrdiff_t>(start), codes.begin() + static_cast<std::ptrdiff_t>(end));
}

inline bool standsAt(const Codes& text, std::size_t at, const Codes& needle) {
    return text.size() - at >= needle.size() && slice(text, at, at + needle.size()) == needle;
}

/// The end of a separator at an index, or the index if there is none: one code of `set`, or the text `needle`.
struct Separator {
    Codes set;
    Codes needle;

    std::size_t endAt(const Codes& text, std::size_t at) const {
        if (at < text.size() && holds(set, text[at])) return at + 1;
        return !needle.empty() && standsAt(text, at, needle) ? at + needle.size() : at;
    }
};

/// The pieces between separators, at most `maximum`; the last of them is the rest.
inline Pieces split(const Codes& text, const Separator& separator, std::size_t maximum, bool skipsEmpty) {
    Pieces pieces;
    if (maximum == 0) return pieces;
    std::size_t start = 0;
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t end = separator.endAt(text, at);
        if (end == at) {
            if (pieces.size() + 1 == maximum) break; // the rest begins here
            ++at;
        } else if (skipsEmpty && at == start) {
            start = at = end;
        } else if (pieces.size() + 1 == maximum) {
            break;
        } else {
            pieces.push_back(slice(text, start, at));
            start = at = end;
        }
    }
    if (!skipsEmpty || start < text.size()) pieces.push_back(slice(text, start, text.size()));
    return pieces;
}

inline Pieces lines(const Codes& text) {
    Pieces pieces;
    Codes line;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\n' && text[i] != '\r') {
            line.push_back(text[i]);
            continue;
        }
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
        pieces.push_back(line);
        line.clear();
    }
    if (!line.empty()) pieces.push_back(line);
    return pieces;
}

inline Codes trim(Codes text, const Codes& set, bool atStart, bool atEnd) {
    while (atStart && !text.empty() && holds(set, text.front())) text.erase(text.begin());
    while (atEnd && !text.empty() && holds(set, text.back())) text.pop_back();
    return text;
}

inline Codes replace(const Codes& text, const Codes& from, const Codes& to, std::size_t most) {
    Codes result;
    for (std::size_t i = 0; i < text.size();) {
        if (most != 0 && standsAt(text, i, from)) {
            result.insert(result.end(), to.begin(), to.end());
            i += from.size();
            --most;
        } else {
            result.push_back(text[i++]);
        }
    }
    return result;
}

} // namespace reference
