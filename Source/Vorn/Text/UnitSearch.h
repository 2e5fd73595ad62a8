/// @file
/// UnitSearch: the search for units in a text, forwards or backwards, in linear time. Private.
///
/// The search works on sequences: classes with `operator[]` that read units of a text in either direction, or with
/// their case folded. It compares at each position until too many comparisons fail, and then continues with the
/// two-way search that TextSearch.cpp (of the parent folder) describes.
#pragma once

#include "Vorn/Types.h"

#include <cstddef>

namespace VornPrivate {

inline constexpr std::size_t NO_UNIT = static_cast<std::size_t>(-1);

template <class CharType>
struct ForwardUnits {
    const CharType* first;
    std::size_t size;
    unsigned int operator[](std::size_t i) const { return first[i]; }
    ForwardUnits from(std::size_t i) const { return {first + i, size - i}; }
};

/// The units in reversed order.
template <class CharType>
struct BackwardUnits {
    const CharType* end;
    std::size_t size;
    unsigned int operator[](std::size_t i) const { return end[-static_cast<std::ptrdiff_t>(i) - 1]; }
    BackwardUnits from(std::size_t i) const { return {end - i, size - i}; }
};

constexpr unsigned int foldASCII(unsigned int unit) noexcept { return unit - 'A' < 26 ? unit + ('a' - 'A') : unit; }

/// The units with A to Z as a to z.
template <class CharType>
struct FoldedUnits {
    const CharType* first;
    std::size_t size;
    unsigned int operator[](std::size_t i) const { return foldASCII(first[i]); }
    FoldedUnits from(std::size_t i) const { return {first + i, size - i}; }
};

/// Returns the index of the first unit from `i` on that equals `unit`, or the size.
template <class Units>
std::size_t findUnit(const Units& text, unsigned int unit, std::size_t i, std::size_t end) {
    while (i < end && text[i] != unit) ++i;
    return i;
}
template <class CharType>
std::size_t findUnit(const ForwardUnits<CharType>& text, unsigned int unit, std::size_t i, std::size_t end) {
    constexpr std::size_t BLOCK = 32 / sizeof(CharType);
    for (; end - i >= BLOCK; i += BLOCK) {
        CharType found = 0;
        for (std::size_t k = 0; k < BLOCK; ++k)
            found = static_cast<CharType>(found | -(text.first[i + k] == static_cast<CharType>(unit)));
        if (found) break;
    }
    while (i < end && text.first[i] != static_cast<CharType>(unit)) ++i;
    return i;
}

struct CriticalSuffix {
    std::size_t start;
    std::size_t period;
};

/// Returns the greatest suffix of the needle in the order of units, or in the reversed order, and its period.
template <class Units>
CriticalSuffix findMaximalSuffix(const Units& needle, bool isReversed) {
    std::size_t start = 0, candidate = 1, matched = 0, period = 1;
    while (candidate + matched < needle.size) {
        const unsigned int a = needle[candidate + matched], b = needle[start + matched];
        if (a == b) {
            if (++matched == period) {
                candidate += period;
                matched = 0;
            }
        } else if ((a < b) != isReversed) { // the candidate is smaller: all compared units are one period
            candidate += matched + 1;
            matched = 0;
            period = candidate - start;
        } else { // the candidate is greater and becomes the suffix
            start = candidate++;
            matched = 0;
            period = 1;
        }
    }
    return {start, period};
}

/// The two-way search. The needle has at least one unit. No shift is longer than the needle.
template <class Units>
std::size_t findUnitsTwoWay(const Units& text, const Units& needle) {
    const CriticalSuffix forward = findMaximalSuffix(needle, false), reversed = findMaximalSuffix(needle, true);
    const CriticalSuffix critical = forward.start > reversed.start ? forward : reversed;
    const std::size_t left = critical.start, size = needle.size;
    bool isPeriodic = true; // the left part repeats after one period
    for (std::size_t i = 0; i < left && isPeriodic; ++i) isPeriodic = needle[i] == needle[i + critical.period];
    const std::size_t period = isPeriodic ? critical.period : (left > size - left ? left : size - left) + 1;

    std::size_t known = 0; // length of the prefix that is known to match
    for (std::size_t at = 0; size <= text.size - at;) {
        std::size_t i = left > known ? left : known;
        while (i < size && needle[i] == text[at + i]) ++i;
        if (i < size) {
            at += i - left + 1;
            known = 0;
            continue;
        }
        i = left;
        while (i > known && needle[i - 1] == text[at + i - 1]) --i;
        if (i <= known) return at;
        at += period;
        known = isPeriodic ? size - period : 0;
    }
    return NO_UNIT;
}

/// Returns the index of the first occurrence of the needle, or NO_UNIT. The empty needle is found at 0.
template <class Units>
std::size_t findUnits(const Units& text, const Units& needle) {
    constexpr std::size_t COMPARISON_COST = 8, COST_OF_A_UNIT = 2, COST_OF_A_NEEDLE_UNIT = 8, FREE_COST = 1024;
    if (needle.size == 0) return 0;
    if (needle.size > text.size) return NO_UNIT;
    const std::size_t places = text.size - needle.size + 1;
    const std::size_t freeCost = FREE_COST + COST_OF_A_NEEDLE_UNIT * needle.size;
    std::size_t cost = 0;
    for (std::size_t at = 0; (at = findUnit(text, needle[0], at, places)) < places; ++at) {
        std::size_t matched = 1;
        while (matched < needle.size && text[at + matched] == needle[matched]) ++matched;
        if (matched == needle.size) return at;
        cost += COMPARISON_COST + matched;
        if (cost > COST_OF_A_UNIT * at + freeCost) {
            const std::size_t found = findUnitsTwoWay(text.from(at), needle);
            return found == NO_UNIT ? NO_UNIT : at + found;
        }
    }
    return NO_UNIT;
}

} // namespace VornPrivate
