// Two searches. The first finds the needle's first byte with memchr and compares the bytes behind it, which is fastest
// on ordinary text, where few positions resemble the needle. It counts the compared bytes. If their number is out of
// proportion to the searched bytes, as for "aa...ab" in "aa...aa", the second search continues at that position.
//
// The second is the two-way search of Crochemore and Perrin, "Two-way string-matching", Journal of the ACM 38 (1991).
// It divides the needle at a critical position: a shift after which the right part matches the compared bytes again is
// at least as long as the comparison. The right part is compared forwards. The left part is compared backwards, and
// only if the right part matches. Each byte of the text is compared at most twice, and no table is needed:
//
//     needle      |  left  |  right       |
//                 |        | ----->       |    mismatch after k bytes of the right part: shift by k + 1
//                 |  <---- |              |    mismatch in the left part: shift by the period of the needle
#include "TextSearch.h"

#include "Text/UnitSearch.h"

#include <cstring>

namespace VornPrivate {

namespace {

constexpr std::size_t NOT_FOUND = std::string_view::npos;

// Returns the length of the common prefix of two texts of at least `length` bytes. Most differ in the first few bytes.
std::size_t matchingBytes(const char* a, const char* b, std::size_t length) {
    constexpr std::size_t FEW = 8, BLOCK = 256;
    std::size_t i = 0;
    while (i < length && i < FEW && a[i] == b[i]) ++i;
    if (i < FEW) return i;
    while (length - i >= BLOCK && std::memcmp(a + i, b + i, BLOCK) == 0) i += BLOCK;
    while (i < length && a[i] == b[i]) ++i;
    return i;
}

} // namespace

std::size_t findTextTwoWay(std::string_view text, std::string_view needle) noexcept {
    const auto unitsIn = [](std::string_view view) {
        return ForwardUnits<unsigned char>{reinterpret_cast<const unsigned char*>(view.data()), view.size()};
    };
    return findUnitsTwoWay(unitsIn(text), unitsIn(needle)); // NO_UNIT is NOT_FOUND
}

std::size_t findText(std::string_view text, std::string_view needle) noexcept {
    // A comparison costs a call of memchr and the bytes that match. From a cost of 2 for each searched byte the two-way
    // search is faster, but it first reads the needle several times.
    constexpr std::size_t COMPARISON_COST = 8, COST_OF_A_BYTE = 2, COST_OF_A_NEEDLE_BYTE = 8, FREE_COST = 1024;

    if (needle.empty()) return 0;
    if (needle.size() > text.size()) return NOT_FOUND;
    // Many characters of a text have the same first byte in UTF-8, but few have the same second byte.
    const std::size_t anchor = needle.size() > 1 && static_cast<unsigned char>(needle[0]) >= 0xC0 ? 1 : 0;
    const std::size_t last = needle.size() - 1;
    const char* const start = text.data();
    const char* place = start;
    std::size_t places = text.size() - last; // number of positions from `place` on at which the needle fits
    const std::size_t freeCost = FREE_COST + COST_OF_A_NEEDLE_BYTE * needle.size();
    std::size_t cost = 0;
    for (;;) {
        const void* const hit = std::memchr(place + anchor, needle[anchor], places);
        if (!hit) return NOT_FOUND;
        const char* const candidate = static_cast<const char*>(hit) - anchor;
        if (candidate[last] == needle[last]) {
            const std::size_t matched = matchingBytes(candidate, needle.data(), last);
            if (matched == last) return static_cast<std::size_t>(candidate - start);
            cost += matched;
        }
        cost += COMPARISON_COST;
        places -= static_cast<std::size_t>(candidate + 1 - place);
        place = candidate + 1;
        const std::size_t at = static_cast<std::size_t>(place - start);
        if (cost > COST_OF_A_BYTE * at + freeCost) {
            const std::size_t found = findTextTwoWay(text.substr(at), needle);
            return found == NOT_FOUND ? NOT_FOUND : at + found;
        }
    }
}

} // namespace VornPrivate
