// UnicodeBits: range tests without branches, and the bit fields of packed words. Support of UTF8.h, UTF16.h and
// UTF32.h; not for direct use.
//
// A packed UTF-8 word holds one sequence big-endian, its last byte in the lowest eight bits:
//
//     2 bytes   ........ ........ 110aaaaa 10bbbbbb
//     3 bytes   ........ 1110aaaa 10bbbbbb 10cccccc
//     4 bytes   11110aaa 10bbbbbb 10cccccc 10dddddd
//
// A packed surrogate pair holds the first unit in the high half: 110110aa aaaaaaaa 110111bb bbbbbbbb.
#pragma once

#include "Vorn/Private/Sentinels.h"

namespace VornPrivate {

/// All ones if the sign bit of `difference` is set, else 0.
constexpr unsigned int signMask(unsigned int difference) noexcept { return 0u - (difference >> 31); }

/// All ones if `value` is below `limit`. Valid while the two differ by less than 0x80000000; inverted beyond.
constexpr unsigned int belowMask(unsigned int value, unsigned int limit) noexcept { return signMask(value - limit); }

/// All ones if `value` lies in `first` to `last`. Valid for all values.
constexpr unsigned int rangeMask(unsigned int value, unsigned int first, unsigned int last) noexcept {
    return ~signMask((value - first) | (last - value));
}

/// `chosen` where the mask is set, else `other`.
constexpr unsigned int select(unsigned int mask, unsigned int chosen, unsigned int other) noexcept {
    return (chosen & mask) | (other & ~mask);
}

/// All ones for surrogates, and for the noncharacters of every plane.
constexpr unsigned int surrogateMask(unsigned int code) noexcept { return rangeMask(code, 0xD800, 0xDFFF); }
constexpr unsigned int firstSurrogateMask(unsigned int code) noexcept { return rangeMask(code, 0xD800, 0xDBFF); }
constexpr unsigned int secondSurrogateMask(unsigned int code) noexcept { return rangeMask(code, 0xDC00, 0xDFFF); }
constexpr unsigned int nonCharacterMask(unsigned int code) noexcept {
    return rangeMask(code, 0xFDD0, 0xFDEF) | signMask(0xFFFD - (code & 0xFFFF));
}

constexpr bool isPacked3Bytes(unsigned int seq) noexcept { return (seq & 0x00F0C0C0) == 0x00E08080; }
constexpr bool isPacked4Bytes(unsigned int seq) noexcept { return (seq & 0xF8C0C0C0) == 0xF0808080; }

/// The length of the sequence that a byte above 0x7F leads, or 1 if it leads none. It branches, because the readers
/// gain from the prediction.
constexpr unsigned int sequenceLength(unsigned char lead) noexcept {
    if ((lead & 0xE0) == 0xC0) return 2;
    if ((lead & 0xF0) == 0xE0) return 3;
    return lead >= 0xF0 && lead <= 0xF4 ? 4 : 1;
}

constexpr unsigned int packBytes(unsigned int b1, unsigned int b2, unsigned int b3) noexcept {
    return (b1 << 16) | (b2 << 8) | b3;
}
constexpr unsigned int packBytes(unsigned int b1, unsigned int b2, unsigned int b3, unsigned int b4) noexcept {
    return (b1 << 24) | packBytes(b2, b3, b4);
}

constexpr unsigned int packCode2(unsigned int c) noexcept { return 0xC080 | ((c & 0x7C0) << 2) | (c & 0x3F); }
constexpr unsigned int packCode3(unsigned int c) noexcept {
    return 0xE08080 | ((c & 0xF000) << 4) | ((c & 0xFC0) << 2) | (c & 0x3F);
}
constexpr unsigned int packCode4(unsigned int c) noexcept {
    return 0xF0808080 | ((c & 0x1C0000) << 6) | ((c & 0x3F000) << 4) | ((c & 0xFC0) << 2) | (c & 0x3F);
}

constexpr unsigned int unpackCode2(unsigned int seq) noexcept { return ((seq >> 2) & 0x7C0) | (seq & 0x3F); }
constexpr unsigned int unpackCode3(unsigned int seq) noexcept {
    return ((seq >> 4) & 0xF000) | ((seq >> 2) & 0xFC0) | (seq & 0x3F);
}
constexpr unsigned int unpackCode4(unsigned int seq) noexcept {
    return ((seq >> 6) & 0x1C0000) | ((seq >> 4) & 0x3F000) | ((seq >> 2) & 0xFC0) | (seq & 0x3F);
}

constexpr unsigned int packSurrogates(unsigned int code) noexcept {
    return 0xD800DC00 | (((code - 0x10000) & 0xFFC00) << 6) | (code & 0x3FF);
}
constexpr unsigned int unpackSurrogates(unsigned int first, unsigned int second) noexcept {
    return 0x10000 + ((first & 0x3FF) << 10) + (second & 0x3FF);
}

/// Moves the index of a reader, which stays at 0xFFFFFFFF instead of starting again at 0.
constexpr unsigned int advance(unsigned int i, unsigned int units) noexcept {
    return i + units < i ? 0xFFFFFFFF : i + units;
}

/// Adds 0xFF000000 to the code of an overlong form.
constexpr unsigned int markOverlong(unsigned int code, bool overlong) noexcept {
    return code + (0xFF000000 & (0u - static_cast<unsigned int>(overlong)));
}

} // namespace VornPrivate
