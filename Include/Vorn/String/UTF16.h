/// @file
/// UTF16: converts and classifies single characters as UTF-16: one unit, or a surrogate pair packed into a word of 32
/// bits ("pair": 0xD83DDE00, the first unit in the high half).
///
/// A result that is no character is a sentinel; see UTF32.h. For whole buffers use the functions of StringDataHelper.h.
///
/// Cost: the operations are small and inline.
///
/// Threads: the operations use their arguments only.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/Config.h"
#include "Vorn/Private/Surprise.h"
#include "Vorn/Private/UnicodeBits.h"
#include "Vorn/String/UTF32.h"
#include "Vorn/String/UTF8.h"
#include "Vorn/Types.h"

VORN_ALLOW_SURPRISES_BEGIN // the operations call each other

namespace Vorn {

/// Operations on single characters in UTF-16.
class VORN_API UTF16 {
public:
    /// Returns 1 for a surrogate, 0xD800 to 0xDFFF, else 0.
    static constexpr unsigned int isSurrogate(UTF16Char c) noexcept { return VornPrivate::surrogateMask(c) & 1; }

    /// Returns 1 for a first surrogate, 0xD800 to 0xDBFF, else 0.
    static constexpr unsigned int isFirstSurrogate(UTF16Char c) noexcept {
        return VornPrivate::firstSurrogateMask(c) & 1;
    }

    /// Returns 1 for a second surrogate, 0xDC00 to 0xDFFF, else 0.
    static constexpr unsigned int isSecondSurrogate(UTF16Char c) noexcept {
        return VornPrivate::secondSurrogateMask(c) & 1;
    }

    /// Returns 1 for a noncharacter, 0xFDD0 to 0xFDEF, 0xFFFE and 0xFFFF, else 0.
    static constexpr unsigned int isUCS2NonCharacter(UTF16Char c) noexcept {
        return VornPrivate::nonCharacterMask(c) & 1;
    }

    /// Narrows a code to a unit, but SETS THE LOWEST BIT of every even valid code: 0x40 gives 0x41.
    /// @warning Surrogates and 0xFDD0 to 0xFDEF are returned unchanged, and every code from 0xFFFE upward gives 0xFFFF.
    ///     To narrow a code, compare it with 0xFFFD and cast it.
    VORN_SURPRISE("sets the lowest bit of even codes; cast codes up to 0xFFFD, and for texts use toUTF16(text)")
    static constexpr UTF16Char getUCS2Char(unsigned int c) noexcept {
        const unsigned int above = 0u - static_cast<unsigned int>(c > 0xFFFD);
        const unsigned int value = VornPrivate::select(above, 0xFFFF, c);
        const unsigned int bad = VornPrivate::surrogateMask(c) | VornPrivate::rangeMask(c, 0xFDD0, 0xFDEF) | above;
        return static_cast<UTF16Char>(value + ((0xFDEF - value) & 1 & ~bad));
    }

    /// The unit of a byte below 0x80, or a sentinel, as `UTF32::getUTF32Char(c)`.
    static constexpr UTF16Char getUCS2Char(unsigned char c) noexcept {
        return static_cast<UTF16Char>(UTF32::getUTF32Char(c));
    }

    /// The unit of a 2-byte sequence, as `UTF32::getUTF32Char(lead, trail)`. Throws as that does.
    static UTF16Char getUCS2Char(unsigned char lead, unsigned char trail) {
        return static_cast<UTF16Char>(UTF32::getUTF32Char(lead, trail));
    }

    /// The unit of a 3-byte sequence, as `UTF32::getUTF32Char(b1, b2, b3)`. Throws as that does.
    static UTF16Char getUCS2Char(unsigned char b1, unsigned char b2, unsigned char b3) {
        return static_cast<UTF16Char>(UTF32::getUTF32Char(b1, b2, b3));
    }

    /// The packed surrogate pair of a code from 0x10000.
    /// Throws `Exception<2>`, the first that applies: "c > 0xFFFF : invalid code for surrogate pair!", "c <= 0x10FFFD :
    /// invalid Unicode!" or "0xFFFE != (c & 0xFFFE) : invalid Unicode!".
    static unsigned int getSurrogatePair(unsigned int c) {
        VORN_INTERNAL_ASSERT(c > 0xFFFF, "invalid code for surrogate pair!");
        VORN_INTERNAL_ASSERT(c <= 0x10FFFD, "invalid Unicode!");
        VORN_INTERNAL_ASSERT(0xFFFE != (c & 0xFFFE), "invalid Unicode!");
        return VornPrivate::packSurrogates(c);
    }

    /// The unit or packed pair of a code, but SETS THE LOWEST BIT of every even valid code below 0xFFFE.
    /// @warning Every code from 0xFFFE upward is packed without a check: 0xFFFE gives 0xDBFFDFFE and 0x110000 gives
    ///     0xD800DC00. For a pair write `getSurrogatePair(c)`; a code below 0x10000 is its own unit.
    VORN_SURPRISE("sets the lowest bit of even codes; use UTF16::getSurrogatePair(code), and cast codes up to 0xFFFD")
    static constexpr unsigned int getUTF16(unsigned int c) noexcept {
        const unsigned int unit = getUCS2Char(c);
        return VornPrivate::select(VornPrivate::belowMask(unit, 0xFFFF), unit, VornPrivate::packSurrogates(c));
    }

    /// The packed pair of a 4-byte sequence, or 0xFDEF if it is invalid. Throws as `UTF8::invalid4ByteUnicode` does.
    /// @warning An overlong form gives a wrong pair: 0xF0 0x80 0x80 0x80 gives 0xDBC0DC00.
    static unsigned int getUTF16(unsigned char b1, unsigned char b2, unsigned char b3, unsigned char b4) {
        const unsigned int seq = VornPrivate::packBytes(b1, b2, b3, b4);
        return VornPrivate::select(0u - UTF8::invalid4ByteUnicode(seq), VornPrivate::INVALID_CHARACTER,
                                   VornPrivate::packSurrogates(VornPrivate::unpackCode4(seq)));
    }

    /// Converts a packed sequence, WRONG for ASCII and for 4-byte sequences.
    ///
    /// - 4 bytes: 0xFDEF if `UTF8::invalid4ByteUnicode` is 1, the code plus 0xFF000000 for an overlong form, otherwise
    ///   the pair with a first unit that is 0xC0 too low: 0xF0908080 gives 0xD740DC00.
    /// - 3 bytes: the result of `UTF32::getUTF32CharForUTF8`.
    /// - 2 bytes: the code; 0xFF000000 is added to words below 0xC280.
    /// - Any other word: the word itself; 0xFF000000 is added to words below 0xC280. ASCII is one: 0x41 gives
    ///   0xFF000041.
    ///
    /// Throws `Exception<2>`: "p || seq < 0x80 : Invalid sequence!" for a word such as 0x10C080.
    /// @warning To convert bytes, call `getUTF16` with four bytes or with a buffer.
    VORN_SURPRISE("is wrong for ASCII and for sequences of 4 bytes; use toUTF16(text)")
    static unsigned int getUTF16ForUTF8(unsigned int seq) {
        if (VornPrivate::isPacked4Bytes(seq)) {
            const unsigned int code = VornPrivate::markOverlong(VornPrivate::unpackCode4(seq), true);
            const unsigned int pair = 0xD700DC00 + (seq & 0x3000000) + ((seq & 0x3F0000) << 2) + ((seq & 0x3000) << 4) +
                                      ((seq & 0x0F00) >> 2) + (seq & 0x3F);
            if (UTF8::invalid4ByteUnicode(seq)) return VornPrivate::INVALID_CHARACTER;
            return seq < 0xF0908080 ? code : pair;
        }
        if (VornPrivate::isPacked3Bytes(seq)) return UTF32::getUTF32CharForUTF8(seq);

        const unsigned int code = (seq & 0xE0C0) == 0xC080 ? VornPrivate::unpackCode2(seq) : seq;
        const unsigned int p = VornPrivate::markOverlong(code, seq < 0xC280);
        VORN_INTERNAL_ASSERT(p || seq < 0x80, "Invalid sequence!");
        return p;
    }

    /// Reads the character at byte `i` as a unit or a packed pair and moves `i` behind it. Can read BEYOND `length`.
    ///
    /// Returns 0xFFFF at the end and does not move `i`; 0xFDEF for a 2-byte or 3-byte sequence that exceeds `length`,
    /// and then `i` is greater than `length`. Throws `Exception<2>` for an invalid trail byte, as the operations on
    /// two, three and four bytes do; `i` has moved.
    /// @warning A truncated 4-byte sequence is read beyond `length`. Call this only for validated text, such as that of
    ///     a String; for other text use the readers of UTF32.
    VORN_SURPRISE("can read behind `length`; use codePoints(text)")
    static unsigned int getUTF16(const unsigned char* buffer, unsigned int& i, unsigned int length) {
        if (i >= length) return VornPrivate::END_OF_BUFFER;
        const unsigned char lead = buffer[i];
        if (lead < 0x80) return buffer[i++];
        const unsigned char* const sequence = buffer + i;
        const unsigned int bytes = VornPrivate::sequenceLength(lead);
        if (length - i < bytes) {
            i = VornPrivate::advance(i, bytes);
            if (bytes != 4) return VornPrivate::INVALID_CHARACTER;
        } else {
            i += bytes;
        }
        switch (bytes) {
        case 2: return getUCS2Char(lead, sequence[1]);
        case 3: return getUCS2Char(lead, sequence[1], sequence[2]);
        case 4: return getUTF16(lead, sequence[1], sequence[2], sequence[3]);
        default: return UTF32::getUTF32Char(lead);
        }
    }
};

} // namespace Vorn

VORN_ALLOW_SURPRISES_END
