// UTF16: single characters as UTF-16: one unit, or a surrogate pair packed into a word of 32 bits ("pair": 0xD83DDE00,
// the first unit in the high half).
//
// Results that are no character are the noncharacters that UTF32.h lists.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/Config.h"
#include "Vorn/String/UTF32.h"
#include "Vorn/String/UTF8.h"
#include "Vorn/String/UnicodeBits.h"
#include "Vorn/Types.h"

namespace Vorn {

/// Single characters as UTF-16.
class VORN_API UTF16 {
public:
    /// 1 for 0xD800 to 0xDFFF, else 0.
    static constexpr unsigned int isSurrogate(UTF16Char c) noexcept { return VornPrivate::surrogateMask(c) & 1; }

    /// 1 for 0xD800 to 0xDBFF, else 0.
    static constexpr unsigned int isFirstSurrogate(UTF16Char c) noexcept {
        return VornPrivate::firstSurrogateMask(c) & 1;
    }

    /// 1 for 0xDC00 to 0xDFFF, else 0.
    static constexpr unsigned int isSecondSurrogate(UTF16Char c) noexcept {
        return VornPrivate::secondSurrogateMask(c) & 1;
    }

    /// 1 for 0xFDD0 to 0xFDEF, 0xFFFE and 0xFFFF, else 0.
    static constexpr unsigned int isUCS2NonCharacter(UTF16Char c) noexcept {
        return VornPrivate::nonCharacterMask(c) & 1;
    }

    /// Sets the lowest bit of every even valid code: 0x40 gives 0x41. Surrogates and 0xFDD0 to 0xFDEF come back
    /// unchanged, and everything from 0xFFFE upward gives 0xFFFF. To narrow a code, compare it with 0xFFFD and cast.
    static constexpr UTF16Char getUCS2Char(unsigned int c) noexcept {
        const unsigned int above = 0u - static_cast<unsigned int>(c > 0xFFFD);
        const unsigned int value = VornPrivate::select(above, 0xFFFF, c);
        const unsigned int bad = VornPrivate::surrogateMask(c) | VornPrivate::rangeMask(c, 0xFDD0, 0xFDEF) | above;
        return static_cast<UTF16Char>(value + ((0xFDEF - value) & 1 & ~bad));
    }

    /// `UTF32::getUTF32Char` of the byte, with its sentinels.
    static constexpr UTF16Char getUCS2Char(unsigned char c) noexcept {
        return static_cast<UTF16Char>(UTF32::getUTF32Char(c));
    }

    /// `UTF32::getUTF32Char` of the two bytes; raises what that raises.
    static UTF16Char getUCS2Char(unsigned char lead, unsigned char trail) {
        return static_cast<UTF16Char>(UTF32::getUTF32Char(lead, trail));
    }

    /// `UTF32::getUTF32Char` of the three bytes; raises what that raises.
    static UTF16Char getUCS2Char(unsigned char b1, unsigned char b2, unsigned char b3) {
        return static_cast<UTF16Char>(UTF32::getUTF32Char(b1, b2, b3));
    }

    /// The packed pair of a code from 0x10000. Raises `Exception<2>` with, in this order,
    /// "c > 0xFFFF : invalid code for surrogate pair!", "c <= 0x10FFFD : invalid Unicode!" or
    /// "0xFFFE != (c & 0xFFFE) : invalid Unicode!".
    static unsigned int getSurrogatePair(unsigned int c) {
        VORN_INTERNAL_ASSERT(c > 0xFFFF, "invalid code for surrogate pair!");
        VORN_INTERNAL_ASSERT(c <= 0x10FFFD, "invalid Unicode!");
        VORN_INTERNAL_ASSERT(0xFFFE != (c & 0xFFFE), "invalid Unicode!");
        return VornPrivate::packSurrogates(c);
    }

    /// Sets the lowest bit of every even valid code below 0xFFFE, as `getUCS2Char` does, and packs everything from
    /// there on without a check: 0xFFFE gives 0xDBFFDFFE and 0x110000 gives 0xD800DC00. For a pair take
    /// `getSurrogatePair`.
    static constexpr unsigned int getUTF16(unsigned int c) noexcept {
        const unsigned int unit = getUCS2Char(c);
        return VornPrivate::select(VornPrivate::belowMask(unit, 0xFFFF), unit, VornPrivate::packSurrogates(c));
    }

    /// The packed pair of a 4-byte sequence, or 0xFDEF if it is not valid.
    /// @warning An overlong form wraps: 0xF0 0x80 0x80 0x80 gives 0xDBC0DC00.
    /// Raises what `UTF8::invalid4ByteUnicode` raises.
    static unsigned int getUTF16(unsigned char b1, unsigned char b2, unsigned char b3, unsigned char b4) {
        const unsigned int seq = VornPrivate::packBytes(b1, b2, b3, b4);
        return VornPrivate::select(0u - UTF8::invalid4ByteUnicode(seq), VornPrivate::INVALID_CHARACTER,
                                   VornPrivate::packSurrogates(VornPrivate::unpackCode4(seq)));
    }

    /// Not what the name promises: 0xFF000000 is added to ASCII (0x41 gives 0xFF000041), and the first unit of a pair
    /// comes out 0xC0 too low (0xF0908080 gives 0xD740DC00). A 3-byte word gives what `UTF32::getUTF32CharForUTF8`
    /// gives, a 2-byte word its code, any other word itself; to these two kinds 0xFF000000 is added below 0xC280. For
    /// bytes take `getUTF16` on four bytes or on a buffer.
    /// Raises `Exception<2>` with "p || seq < 0x80 : Invalid sequence!" for a word such as 0x10C080.
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

    /// Reads the character at byte `i` as one unit or a packed pair and moves `i` behind it, also on failure. Returns
    /// 0xFFFF without moving at the end, 0xFDEF for a 2-byte or 3-byte sequence that runs out of buffer.
    /// @warning A truncated 4-byte sequence is read past `length`. Text that a String has accepted has none.
    /// Raises `Exception<2>` for a lead with a bad trail byte, as the operations on two, three and four bytes do.
    static unsigned int getUTF16(const unsigned char* buffer, unsigned int& i, unsigned int length) {
        if (i >= length) return 0xFFFF;
        const unsigned char lead = buffer[i];
        if (lead < 0x80) return buffer[i++];
        const unsigned int bytes = VornPrivate::sequenceLength(lead);
        i += bytes;
        if (i > length && bytes != 4) return VornPrivate::INVALID_CHARACTER;
        switch (bytes) {
        case 2: return getUCS2Char(lead, buffer[i - 1]);
        case 3: return getUCS2Char(lead, buffer[i - 2], buffer[i - 1]);
        case 4: return getUTF16(lead, buffer[i - 3], buffer[i - 2], buffer[i - 1]);
        default: return UTF32::getUTF32Char(lead);
        }
    }
};

} // namespace Vorn
