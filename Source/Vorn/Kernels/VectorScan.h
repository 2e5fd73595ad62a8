/// @file
/// VectorScan: validation, counting and ASCII over the vectors of any instruction set. Private.
///
/// All is in an unnamed namespace, so that each file keeps its own copies. Text is processed in blocks of 64 bytes. The
/// last block of a text is copied and filled up with blanks, which count as nothing.
#pragma once

#include "TextKernels.h"

#include <cstdint>
#include <cstring>

namespace VornPrivate {
namespace {

constexpr std::size_t BLOCK = 64;
constexpr std::size_t UNITS_IN_BLOCK = BLOCK / 2;

template <class V>
struct Block {
    static constexpr std::size_t VECTORS = BLOCK / V::SIZE;
    typename V::Bytes v[VECTORS];

    void load(const void* text) {
        for (std::size_t k = 0; k < VECTORS; ++k) v[k] = V::load(static_cast<const unsigned char*>(text) + k * V::SIZE);
    }
    /// The last `count` units of a text, filled up with blanks.
    template <class Unit>
    void loadLast(const Unit* text, std::size_t count) {
        if constexpr (VECTORS == 1) {
            v[0] = V::loadLast(text, count * sizeof(Unit), sizeof(Unit) == 1 ? V::splat8(0x20) : V::splat16(0x20));
        } else {
            Unit units[BLOCK / sizeof(Unit)];
            for (Unit& unit : units) unit = 0x20;
            std::memcpy(units, text, count * sizeof(Unit));
            load(units);
        }
    }
    template <class Function>
    typename V::Bytes bitOrOf(Function function) const {
        typename V::Bytes result = function(v[0]);
        for (std::size_t k = 1; k < VECTORS; ++k) result = V::bitOr(result, function(v[k]));
        return result;
    }
    /// One mask of all vectors.
    template <class Function>
    std::uint64_t maskOf(Function function) const {
        constexpr unsigned int BITS = static_cast<unsigned int>(V::SIZE) / (V::UNIT_BITS == 1 && VECTORS > 1 ? 2 : 1);
        std::uint64_t mask = function(v[0]);
        for (std::size_t k = 1; k < VECTORS; ++k) mask |= function(v[k]) << (BITS * k);
        return mask;
    }
    bool isPlain() const {
        if constexpr (VECTORS == 1)
            return V::greaterSigned8(V::splat8(1), v[0]) == 0;
        else
            return V::isZero(bitOrOf([](typename V::Bytes bytes) { return V::plain(bytes); }));
    }
};

inline std::size_t onesIn(std::uint64_t mask) { return static_cast<std::size_t>(__builtin_popcountll(mask)); }

inline std::size_t smaller(std::size_t a, std::size_t b) { return a < b ? a : b; }

// UTF-8. The errors in each pair of neighbouring bytes follow from three lookups, as John Keiser and Daniel Lemire
// describe in "Validating UTF-8 in less than one instruction per byte", Software: Practice and Experience 51 (2021):
//
//     byte before    high nibble, low nibble    which errors does it allow?
//     byte           high nibble                which errors does it allow?        all three: error
//
// The third and fourth byte of a character are the trail bytes two behind 0xE0 and more, and three behind 0xF0 and
// more. Noncharacters and zero bytes are found besides.

constexpr unsigned char TOO_SHORT = 1, TOO_LONG = 2, OVERLONG_3 = 4, TOO_LARGE = 8, SURROGATE = 16, OVERLONG_2 = 32,
                        TOO_LARGE_1000 = 64, OVERLONG_4 = 64, TWO_TRAILS = 128;
constexpr unsigned char ANY_LOW = TOO_SHORT | TOO_LONG | TWO_TRAILS;

alignas(16) constexpr unsigned char FIRST_HIGH[16] = {TOO_LONG,
                                                      TOO_LONG,
                                                      TOO_LONG,
                                                      TOO_LONG,
                                                      TOO_LONG,
                                                      TOO_LONG,
                                                      TOO_LONG,
                                                      TOO_LONG,
                                                      TWO_TRAILS,
                                                      TWO_TRAILS,
                                                      TWO_TRAILS,
                                                      TWO_TRAILS,
                                                      TOO_SHORT | OVERLONG_2,
                                                      TOO_SHORT,
                                                      TOO_SHORT | OVERLONG_3 | SURROGATE,
                                                      TOO_SHORT | TOO_LARGE | TOO_LARGE_1000 | OVERLONG_4};
alignas(16) constexpr unsigned char FIRST_LOW[16] = {ANY_LOW | OVERLONG_3 | OVERLONG_2 | OVERLONG_4,
                                                     ANY_LOW | OVERLONG_2,
                                                     ANY_LOW,
                                                     ANY_LOW,
                                                     ANY_LOW | TOO_LARGE,
                                                     ANY_LOW | TOO_LARGE | TOO_LARGE_1000,
                                                     ANY_LOW | TOO_LARGE | TOO_LARGE_1000,
                                                     ANY_LOW | TOO_LARGE | TOO_LARGE_1000,
                                                     ANY_LOW | TOO_LARGE | TOO_LARGE_1000,
                                                     ANY_LOW | TOO_LARGE | TOO_LARGE_1000,
                                                     ANY_LOW | TOO_LARGE | TOO_LARGE_1000,
                                                     ANY_LOW | TOO_LARGE | TOO_LARGE_1000,
                                                     ANY_LOW | TOO_LARGE | TOO_LARGE_1000,
                                                     ANY_LOW | TOO_LARGE | TOO_LARGE_1000 | SURROGATE,
                                                     ANY_LOW | TOO_LARGE | TOO_LARGE_1000,
                                                     ANY_LOW | TOO_LARGE | TOO_LARGE_1000};
constexpr unsigned char SECOND_TRAIL = TOO_LONG | OVERLONG_2 | TWO_TRAILS;
alignas(16) constexpr unsigned char SECOND_HIGH[16] = {TOO_SHORT,
                                                       TOO_SHORT,
                                                       TOO_SHORT,
                                                       TOO_SHORT,
                                                       TOO_SHORT,
                                                       TOO_SHORT,
                                                       TOO_SHORT,
                                                       TOO_SHORT,
                                                       SECOND_TRAIL | OVERLONG_3 | TOO_LARGE_1000 | OVERLONG_4,
                                                       SECOND_TRAIL | OVERLONG_3 | TOO_LARGE,
                                                       SECOND_TRAIL | SURROGATE | TOO_LARGE,
                                                       SECOND_TRAIL | SURROGATE | TOO_LARGE,
                                                       TOO_SHORT,
                                                       TOO_SHORT,
                                                       TOO_SHORT,
                                                       TOO_SHORT};

/// What the checks of one vector need.
template <class V>
struct UTF8Tables {
    typename V::Bytes firstHigh = V::tableOf(FIRST_HIGH);
    typename V::Bytes firstLow = V::tableOf(FIRST_LOW);
    typename V::Bytes secondHigh = V::tableOf(SECOND_HIGH);

    /// Returns zero if all bytes of `v`, which follows `last`, are valid. Otherwise sets bytes of the result. With
    /// `Suspects` also where a noncharacter can end: 0xBF 0xBE and 0xBF 0xBF end those of all planes, and few other
    /// characters; 0xEF 0xB7 starts U+FDC0 to U+FDFF.
    template <bool Suspects>
    typename V::Bytes errorsOf(typename V::Bytes v, typename V::Bytes last) const {
        const auto before1 = V::template previous<1>(v, last);
        const auto before2 = V::template previous<2>(v, last);
        const auto before3 = V::template previous<3>(v, last);
        const auto pairs = V::bitAnd(V::bitAnd(V::lookUp(firstHigh, V::highNibbles(before1)),
                                               V::lookUp(firstLow, V::bitAnd(before1, V::splat8(0x0F)))),
                                     V::lookUp(secondHigh, V::highNibbles(v)));
        const auto mustBeTrail = V::bitAnd(V::bitOr(V::subtractSaturated8(before2, V::splat8(0xE0 - 0x80)),
                                                    V::subtractSaturated8(before3, V::splat8(0xF0 - 0x80))),
                                           V::splat8(0x80));
        const auto errors = V::bitXor(mustBeTrail, pairs);
        if constexpr (Suspects) {
            const auto end =
                V::bitOr(V::bitXor(V::bitOr(v, V::splat8(1)), V::splat8(0xBF)), V::bitXor(before1, V::splat8(0xBF)));
            const auto start = V::bitOr(V::bitXor(before2, V::splat8(0xEF)), V::bitXor(before1, V::splat8(0xB7)));
            // Bytes of 0 are wrong, too.
            return V::bitOr(errors, V::subtractSaturated8(V::splat8(1), V::min8(V::min8(end, start), v)));
        } else {
            return V::bitOr(errors, V::subtractSaturated8(V::splat8(1), v));
        }
    }
};

/// The number of bytes in front of `end` that start a character without ending it.
inline std::size_t incompleteBytes(const unsigned char* text, std::size_t end) {
    if (end >= 1 && text[end - 1] >= 0xC0) return 1;
    if (end >= 2 && text[end - 2] >= 0xE0) return 2;
    if (end >= 3 && text[end - 3] >= 0xF0) return 3;
    return 0;
}

/// Returns the length of the blocks of ASCII at the start. Out of line, so that the constants of the other loop fit the
/// registers.
template <class V>
[[gnu::noinline]] std::size_t skipPlainBlocks(const unsigned char* text, std::size_t length) noexcept {
    std::size_t i = 0;
    for (; length - i >= BLOCK; i += BLOCK) {
        Block<V> block;
        block.load(text + i);
        if (!block.isPlain()) break;
    }
    return i;
}

template <class V, bool Counts>
UTF8Run runOfUTF8(const unsigned char* text, std::size_t length, bool full) noexcept {
    using Bytes = typename V::Bytes;
    const UTF8Tables<V> tables;
    Bytes last = V::zero();
    Bytes largest = V::zero();
    Bytes largestBefore = V::zero(); // in front of the last block that is not plain
    bool wasPlain = true;
    bool couldHaveNoncharacters = false; // in the last block
    std::size_t characters = 0;
    std::size_t fourBytes = 0;

    std::size_t i = 0;
    // Decides about a block in which `size` bytes are text.
    const auto decide = [&](const Block<V>& block, std::size_t size) __attribute__((always_inline)) {
        if (block.isPlain()) {
            if (!wasPlain && incompleteBytes(text, i)) return false;
            wasPlain = true;
            last = V::zero();
            if constexpr (Counts) characters += size;
            return true;
        }
        Bytes most = block.v[0];
        for (const Bytes v : block.v) most = V::max8(most, v);
        // No noncharacter starts with a smaller byte than 0xEF.
        const bool canHaveNoncharacters = !V::isZero(V::subtractSaturated8(most, V::splat8(0xEE)));
        Bytes errors = V::zero();
        Bytes previous = last;
        if (canHaveNoncharacters || couldHaveNoncharacters) {
            for (const Bytes v : block.v) {
                errors = V::bitOr(errors, tables.template errorsOf<true>(v, previous));
                previous = v;
            }
        } else {
            for (const Bytes v : block.v) {
                errors = V::bitOr(errors, tables.template errorsOf<false>(v, previous));
                previous = v;
            }
        }
        if (!V::isZero(errors)) return false;
        couldHaveNoncharacters = canHaveNoncharacters;
        if constexpr (Counts) {
            if (!V::isZero(V::subtractSaturated8(most, V::splat8(0xEF)))) {
                if (!full) return false;
                fourBytes += onesIn(block.maskOf([](Bytes v) { return V::equal8(V::max8(v, V::splat8(0xF0)), v); }));
            }
            // Trail bytes are less than -64.
            characters +=
                onesIn(block.maskOf([](Bytes v) { return V::greaterSigned8(v, V::splat8(0xBF)); })) - (BLOCK - size);
        } else {
            largestBefore = largest;
            largest = V::max8(largest, most);
        }
        last = previous;
        wasPlain = false;
        return true;
    };

    if (length >= BLOCK) i = skipPlainBlocks<V>(text, length);
    if constexpr (Counts) characters = i;
    Block<V> block;
    for (; length - i >= BLOCK; i += BLOCK) {
        block.load(text + i);
        if (!decide(block, BLOCK)) break;
    }
    if (length - i < BLOCK && length != i) {
        const std::size_t size = length - i;
        block.loadLast(text + i, size);
        if (decide(block, size)) i = length;
    }
    // A character that was counted with its first byte, and continues in the block that is not decided.
    const std::size_t incomplete = incompleteBytes(text, i);
    i -= incomplete;
    if constexpr (Counts) {
        characters -= incomplete != 0;
        fourBytes -= incomplete != 0 && text[i] >= 0xF0;
        return {i, characters, fourBytes, characters != i};
    } else {
        if (incomplete) { // of the last block, only what is in front of that character counts
            block.loadLast(text + i + incomplete - BLOCK, BLOCK - incomplete);
            largest = largestBefore;
            for (const Bytes v : block.v) largest = V::max8(largest, v);
        }
        fourBytes = !V::isZero(V::subtractSaturated8(largest, V::splat8(0xEF)));
        return {i, characters, fourBytes, !V::isZero(V::subtractSaturated8(largest, V::splat8(0x7F)))};
    }
}

template <class V>
UTF8Run scanUTF8(const unsigned char* text, std::size_t length) noexcept {
    return runOfUTF8<V, false>(text, length, true);
}

template <class V>
UTF8Run measureUTF8(const unsigned char* text, std::size_t length, bool full) noexcept {
    return runOfUTF8<V, true>(text, length, full);
}

// UTF-16. A unit is not ordinary if it is in one of three ranges, one of which wraps around: 0xFFFE, 0xFFFF and 0.

template <class V>
typename V::Bytes isInRange16(typename V::Bytes units, unsigned int first, unsigned int size) {
    return V::subtractSaturated16(V::splat16(size), V::sub16(units, V::splat16(first)));
}

/// Returns zero for units that are neither U+0000 nor noncharacters.
template <class V>
typename V::Bytes refusedUnits(typename V::Bytes units) {
    return V::bitOr(isInRange16<V>(units, 0xFFFE, 3), isInRange16<V>(units, 0xFDD0, 0x20));
}

template <class V>
typename V::Bytes surrogates(typename V::Bytes units) {
    return isInRange16<V>(units, 0xD800, 0x800);
}

/// Whether a block of units with surrogates is made of characters.
template <class V>
struct PairCheck {
    using Bytes = typename V::Bytes;
    bool isOpen = false; ///< true if the last block ended with a first surrogate
    bool isLast = false; ///< true if that is the first surrogate of a noncharacter
    std::size_t pairs = 0;

    bool check(const Block<V>& block) {
        const auto maskOf = [&](unsigned int bits, unsigned int value) {
            return block.maskOf(
                [=](Bytes units) { return V::equalUnits(V::bitAnd(units, V::splat16(bits)), V::splat16(value)); });
        };
        constexpr unsigned int STEP = V::UNIT_BITS;
        constexpr unsigned int TOP = 32 * STEP - 1;
        constexpr std::uint64_t CARRY = STEP == 2 ? 3 : 1;
        const std::uint64_t first = maskOf(0xFC00, 0xD800);
        const std::uint64_t second = maskOf(0xFC00, 0xDC00);
        const std::uint64_t lastFirst = maskOf(0xFC3F, 0xD83F);
        const std::uint64_t lastSecond = maskOf(0xFFFE, 0xDFFE);
        constexpr std::uint64_t ALL = STEP == 2 ? ~std::uint64_t(0) : 0xFFFFFFFF;
        const std::uint64_t expected = (first << STEP & ALL) | (isOpen ? CARRY : 0);
        const std::uint64_t noncharacters = ((lastFirst << STEP & ALL) | (isLast ? CARRY : 0)) & lastSecond;
        if (second != expected || noncharacters) return false;
        pairs += onesIn(first) / STEP;
        isOpen = first >> TOP & 1;
        isLast = lastFirst >> TOP & 1;
        return true;
    }
};

template <class V, bool Counts>
UTF16Run runOfUTF16(const UTF16Char* text, std::size_t length, unsigned int firstOfTwo, bool full) noexcept {
    using Bytes = typename V::Bytes;
    const Bytes two = V::splat16(firstOfTwo);
    const Bytes three = V::splat16(0x800);
    Bytes any = V::zero();
    Bytes sums = V::zero(); // of each unit of the vectors
    PairCheck<V> pairs;
    std::size_t extraBytes = 0;

    const auto decide = [&](const Block<V>& block) __attribute__((always_inline)) {
        if (!V::isZero(block.bitOrOf([](Bytes units) { return refusedUnits<V>(units); }))) return false;
        if (!V::isZero(block.bitOrOf([](Bytes units) { return surrogates<V>(units); }))) {
            if (!full || !pairs.check(block)) return false;
        } else if (pairs.isOpen) {
            return false;
        }
        for (const Bytes v : block.v) {
            any = V::bitOr(any, v);
            if constexpr (Counts) sums = V::countAtLeast16(V::countAtLeast16(sums, v, two), v, three);
        }
        return true;
    };
    const auto addSums = [&] {
        std::uint16_t units[V::SIZE / 2];
        V::store(units, sums);
        for (const std::uint16_t unit : units) extraBytes += unit;
        sums = V::zero();
    };

    constexpr std::size_t BLOCKS_OF_SUMS = 4096; // each adds at most 8 to a sum of 16 bits
    std::size_t i = 0;
    bool isDecided = true;
    Block<V> block;
    while (isDecided && length - i >= UNITS_IN_BLOCK) {
        const std::size_t end = i + smaller(length - i, BLOCKS_OF_SUMS * UNITS_IN_BLOCK);
        for (; end - i >= UNITS_IN_BLOCK; i += UNITS_IN_BLOCK) {
            block.load(text + i);
            if (!(isDecided = decide(block))) break;
        }
        if constexpr (Counts) addSums();
    }
    if (isDecided && i != length) {
        block.loadLast(text + i, length - i);
        if (decide(block)) i = length;
        if constexpr (Counts) addSums();
    }
    if (pairs.isOpen) { // at the end of the text, or in front of a block that is not decided
        --i;
        --pairs.pairs;
        extraBytes -= 2;
    }
    // A surrogate has been counted as three bytes; a pair has four.
    if constexpr (Counts) extraBytes -= 2 * pairs.pairs;
    const bool beyondASCII = !V::isZero(V::bitAnd(any, V::splat16(0xFF80)));
    return {i, extraBytes, pairs.pairs, beyondASCII};
}

template <class V>
UTF16Run scanUTF16(const UTF16Char* text, std::size_t length) noexcept {
    UTF16Run run = runOfUTF16<V, false>(text, length, 0x80, true);
    run.extraBytes = 0;
    return run;
}

template <class V>
UTF16Run measureUTF16(const UTF16Char* text, std::size_t length, unsigned int firstOfTwo, bool full) noexcept {
    return runOfUTF16<V, true>(text, length, firstOfTwo, full);
}

// ASCII.

/// Returns zero for units of 0x01 to 0x7F.
template <class V>
typename V::Bytes notPlain16(typename V::Bytes units) {
    return V::subtractSaturated16(V::sub16(units, V::splat16(1)), V::splat16(0x7E));
}

template <class V>
std::size_t skipASCII8(const unsigned char* text, std::size_t length) noexcept {
    std::size_t i = 0;
    for (; length - i >= BLOCK; i += BLOCK) {
        Block<V> block;
        block.load(text + i);
        if (!block.isPlain()) return i;
    }
    for (; length - i >= V::SIZE && V::isZero(V::plain(V::load(text + i))); i += V::SIZE) {
    }
    return i;
}

template <class V>
std::size_t skipASCII16(const UTF16Char* text, std::size_t length) noexcept {
    std::size_t i = 0;
    for (; length - i >= UNITS_IN_BLOCK; i += UNITS_IN_BLOCK) {
        Block<V> block;
        block.load(text + i);
        if (!V::isZero(block.bitOrOf([](typename V::Bytes units) { return notPlain16<V>(units); }))) return i;
    }
    return i;
}

/// Reads aligned vectors, which lie in one page each.
template <class V>
std::size_t skipTerminatedASCII(const unsigned char* text, std::size_t length) noexcept {
    const std::size_t skipped = reinterpret_cast<std::uintptr_t>(text) % V::SIZE;
    const auto oddIn = [](const unsigned char* at) { return V::greaterSigned8(V::splat8(1), V::load(at)); };
    std::uint64_t odd = oddIn(text - skipped) >> skipped;
    if (odd) return smaller(length, static_cast<std::size_t>(__builtin_ctzll(odd)));
    for (std::size_t i = V::SIZE - skipped; i < length; i += V::SIZE) {
        odd = oddIn(text + i);
        if (odd) return smaller(length, i + static_cast<std::size_t>(__builtin_ctzll(odd)));
    }
    return length;
}

template <class V>
std::size_t widenASCII(const unsigned char* source, std::size_t length, UTF16Char* dest) noexcept {
    std::size_t i = 0;
    for (; length - i >= V::SIZE; i += V::SIZE) {
        const auto v = V::load(source + i);
        if (!V::isZero(V::plain(v))) return i;
        V::widen(v, dest + i);
    }
    return i;
}

template <class V>
std::size_t narrowASCII(const UTF16Char* source, std::size_t length, unsigned char* dest) noexcept {
    std::size_t i = 0;
    for (; length - i >= V::SIZE; i += V::SIZE) {
        const auto low = V::load(source + i);
        const auto high = V::load(source + i + V::SIZE / 2);
        if (!V::isZero(V::bitOr(notPlain16<V>(low), notPlain16<V>(high)))) return i;
        V::store(dest + i, V::narrow(low, high));
    }
    return i;
}

template <class V>
std::size_t matchUnits(const unsigned char* text, const UTF16Char* wide, std::size_t length) noexcept {
    std::size_t i = 0;
    UTF16Char widened[V::SIZE];
    for (; length - i >= V::SIZE; i += V::SIZE) {
        V::widen(V::load(text + i), widened);
        const auto low = V::bitXor(V::load(widened), V::load(wide + i));
        const auto high = V::bitXor(V::load(widened + V::SIZE / 2), V::load(wide + i + V::SIZE / 2));
        if (!V::isZero(V::bitOr(low, high))) return i;
    }
    return i;
}

template <class V>
std::size_t count8(const unsigned char* text, std::size_t length, unsigned char unit) noexcept {
    const auto needle = V::splat8(unit);
    std::size_t found = 0;
    std::size_t i = 0;
    for (; length - i >= BLOCK; i += BLOCK) {
        Block<V> block;
        block.load(text + i);
        found += onesIn(block.maskOf([=](typename V::Bytes v) { return V::equal8(v, needle); }));
    }
    for (; i < length; ++i) found += text[i] == unit;
    return found;
}

template <class V>
std::size_t count16(const UTF16Char* text, std::size_t length, UTF16Char unit) noexcept {
    const auto needle = V::splat16(unit);
    std::size_t found = 0;
    std::size_t i = 0;
    for (; length - i >= UNITS_IN_BLOCK; i += UNITS_IN_BLOCK) {
        Block<V> block;
        block.load(text + i);
        found += onesIn(block.maskOf([=](typename V::Bytes v) { return V::equalUnits(v, needle); })) / V::UNIT_BITS;
    }
    for (; i < length; ++i) found += text[i] == unit;
    return found;
}

template <class V>
void locate8(const unsigned char* text, std::size_t blocks, unsigned char byte, std::uint64_t* masks) noexcept {
    const auto needle = V::splat8(byte);
    for (std::size_t k = 0; k < blocks; ++k) {
        Block<V> block;
        block.load(text + k * BLOCK);
        masks[k] = block.maskOf([=](typename V::Bytes v) { return V::equal8(v, needle); });
    }
}

/// Reads aligned vectors, which lie in one page each.
template <class V>
std::size_t findZero(const UTF16Char* text, std::size_t length) noexcept {
    const auto address = reinterpret_cast<std::uintptr_t>(text);
    if (address % 2 || length == 0) { // no unit of an aligned vector
        std::size_t i = 0;
        while (i < length && text[i] != 0) ++i;
        return i;
    }
    const std::size_t skipped = address % V::SIZE / 2;
    const UTF16Char* const start = text - skipped;
    std::uint64_t zeros = V::equalUnits(V::load(start), V::zero()) >> (skipped * V::UNIT_BITS);
    if (zeros) return smaller(length, static_cast<std::size_t>(__builtin_ctzll(zeros)) / V::UNIT_BITS);
    for (std::size_t i = V::SIZE / 2 - skipped; i < length; i += V::SIZE / 2) {
        zeros = V::equalUnits(V::load(text + i), V::zero());
        if (zeros) return smaller(length, i + static_cast<std::size_t>(__builtin_ctzll(zeros)) / V::UNIT_BITS);
    }
    return length;
}

} // namespace
} // namespace VornPrivate
