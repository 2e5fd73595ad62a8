/// @file
/// UTF8: converts and classifies single characters as UTF-8, packed big-endian into a word of 32 bits ("seq": 0xC3A9
/// for U+00E9).
///
/// For whole buffers use the functions of StringDataHelper.h.
///
/// A code is valid from 0 to 0x10FFFF, except surrogates and noncharacters (0xFDD0 to 0xFDEF, and 0xFFFE and 0xFFFF in
/// the low 16 bits). A result that is no character is a sentinel; see UTF32.h.
///
/// Cost: the operations are small and inline and access no memory. Only those that check their arguments branch, and
/// `getUTF8`, which selects by the number of bytes.
///
/// Threads: the operations use their arguments only.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/Config.h"
#include "Vorn/Private/Surprise.h"
#include "Vorn/Private/UnicodeBits.h"
#include "Vorn/Types.h"

VORN_ALLOW_SURPRISES_BEGIN // the operations call each other

namespace Vorn {

/// Operations on single characters in UTF-8.
class VORN_API UTF8 {
public:
    /// Returns 1 for a byte that begins a character, 0x00 to 0x7F and 0xC2 to 0xF3, else 0; also 0 for 0xF4, which DOES
    /// begin characters.
    VORN_SURPRISE("returns 0 for 0xF4, which begins characters; use codePoints(text)")
    static constexpr unsigned int validUTF8Lead(unsigned char c) noexcept {
        return (VornPrivate::rangeMask(c, 0x00, 0x7F) | VornPrivate::rangeMask(c, 0xC2, 0xF3)) & 1;
    }

    /// Returns 1 for a trail byte, 0x80 to 0xBF, else 0.
    static constexpr unsigned int validUTF8Trail(unsigned char c) noexcept {
        return VornPrivate::rangeMask(c, 0x80, 0xBF) & 1;
    }

    /// The number of bytes of a code in UTF-8: 1 to 4, or 0 for an invalid code.
    /// @warning Codes from 0x80000080 upward give 1. Compare with 0x10FFFF before.
    static constexpr unsigned int countUTF8(unsigned int c) noexcept {
        const unsigned int one = VornPrivate::belowMask(c, 0x80);
        const unsigned int two = VornPrivate::belowMask(c, 0x800);
        const unsigned int three = VornPrivate::belowMask(c, 0x10000);
        const unsigned int invalid =
            VornPrivate::surrogateMask(c) | VornPrivate::nonCharacterMask(c) | VornPrivate::signMask(0x10FFFF - c);
        return VornPrivate::select(one, 1, (4 - (two & 1) - (three & 1)) & ~invalid);
    }

    /// The number of bytes of a unit in UTF-8: 1 to 3, -1 for a first surrogate, -2 for a second surrogate, 0 for a
    /// noncharacter.
    static constexpr int countUTF8(UTF16Char c) noexcept {
        const unsigned int first = VornPrivate::firstSurrogateMask(c);
        const unsigned int second = VornPrivate::secondSurrogateMask(c);
        const unsigned int none = first | second | VornPrivate::nonCharacterMask(c);
        const unsigned int count = 3 - (VornPrivate::belowMask(c, 0x800) & 1) - (VornPrivate::belowMask(c, 0x80) & 1);
        return static_cast<int>((count & ~none) | first | (second & ~1u));
    }

    /// The packed sequence of a code, or 0xFDEF for an invalid code. The code 0 gives 0, NOT 0xC080.
    /// @warning Codes from 0x80000080 upward are returned unchanged. Compare with 0x10FFFF before.
    static constexpr unsigned int getUTF8(unsigned int c) noexcept {
        switch (countUTF8(c)) {
        case 1: return c;
        case 2: return VornPrivate::packCode2(c);
        case 3: return VornPrivate::packCode3(c);
        case 4: return VornPrivate::packCode4(c);
        default: return VornPrivate::INVALID_CHARACTER;
        }
    }

    /// The packed sequence of a unit; 0xFDD1 for a first surrogate, 0xFDD2 for a second surrogate, 0xFDEF for a
    /// noncharacter.
    static constexpr unsigned int getUTF8(UTF16Char c) noexcept {
        switch (countUTF8(c)) {
        case 1: return c;
        case 2: return VornPrivate::packCode2(c);
        case 3: return VornPrivate::packCode3(c);
        case -1: return VornPrivate::FIRST_SURROGATE;
        case -2: return VornPrivate::SECOND_SURROGATE;
        default: return VornPrivate::INVALID_CHARACTER;
        }
    }

    /// The packed sequence of a unit, or 0xFDEF for a surrogate or noncharacter.
    static constexpr unsigned int getUTF8ForUCS2(UTF16Char c) noexcept {
        using namespace VornPrivate;
        const unsigned int seq = select(belowMask(c, 0x80), c, select(belowMask(c, 0x800), packCode2(c), packCode3(c)));
        return select(surrogateMask(c) | nonCharacterMask(c), INVALID_CHARACTER, seq);
    }

    /// The packed sequence of a surrogate pair, WRONG for a `first` from 0xD8C0 upward (planes 4 to 16).
    ///
    /// Throws `Exception<2>`: "(first & 0xFC00) == 0xD800 : invalid first surrogate!" or "(second & 0xFC00) == 0xDC00 :
    /// invalid second surrogate!".
    /// @warning Two bits of `first` are lost or misplaced: 0xDA00 0xDC00 gives the word of 0xD800 0xDC00, and 0xDBC0
    ///     0xDC00 gives the malformed 0xF0C08080. Noncharacters are not refused. For any pair write
    ///     `getUTF8(UTF32::getUTF32Char(first, second))`.
    VORN_SURPRISE("is wrong for pairs from 0xD8C0 on; use UTF8::getUTF8(UTF32::getUTF32Char(first, second))")
    static unsigned int getUTF8(UTF16Char first, UTF16Char second) {
        VORN_INTERNAL_ASSERT((first & 0xFC00) == 0xD800, "invalid first surrogate!");
        VORN_INTERNAL_ASSERT((second & 0xFC00) == 0xDC00, "invalid second surrogate!");
        return packSurrogatePair(first, second);
    }

    /// The packed sequence of a packed surrogate pair, WRONG from 0xD8C0DC00 upward; see `getUTF8(first, second)`.
    /// Throws `Exception<2>`: "(pair & 0xFC00FC00) == 0xD800DC00 : invalid surrogate pair!".
    VORN_SURPRISE("is wrong for pairs from 0xD8C0 on; use UTF8::getUTF8(UTF32::getUTF32Char(first, second))")
    static unsigned int getUTF8ForUTF16(unsigned int pair) {
        VORN_INTERNAL_ASSERT((pair & 0xFC00FC00) == 0xD800DC00, "invalid surrogate pair!");
        return packSurrogatePair(pair >> 16, pair & 0xFFFF);
    }

    /// Returns 1 if a packed 3-byte sequence is a surrogate or a noncharacter, else 0; also 0 for overlong forms.
    /// Throws `Exception<2>`: "(seq & 0x00F0C0C0) == 0x00E08080 : Invalid 3-byte UTF-8 sequence!".
    /// @warning To detect an overlong form, compare the decoded value with 0x800.
    VORN_SURPRISE("returns 0 for most overlong forms; use tryMakeString(text)")
    static unsigned int invalid3ByteUnicode(unsigned int seq) {
        VORN_INTERNAL_ASSERT((seq & 0x00F0C0C0) == 0x00E08080, "Invalid 3-byte UTF-8 sequence!");
        return (VornPrivate::rangeMask(seq, 0xEDA080, 0xEDBFBF) | VornPrivate::rangeMask(seq, 0xEFB790, 0xEFB7AF) |
                VornPrivate::rangeMask(seq, 0xEFBFBE, 0xEFBFBF)) &
               1;
    }

    /// Returns 1 if a packed 4-byte sequence is a noncharacter or above 0x10FFFD, else 0; also 0 for most overlong
    /// forms.
    ///
    /// The overlong forms of surrogates and of 0xFDD0 to 0xFDEF give 1.
    /// Throws `Exception<2>`: "(seq & 0xF8C0C0C0) == 0xF0808080 : Invalid 4-byte UTF-8 sequence!".
    /// @warning To detect an overlong form, compare the decoded value with 0x10000.
    VORN_SURPRISE("returns 0 for most overlong forms; use tryMakeString(text)")
    static unsigned int invalid4ByteUnicode(unsigned int seq) {
        VORN_INTERNAL_ASSERT((seq & 0xF8C0C0C0) == 0xF0808080, "Invalid 4-byte UTF-8 sequence!");
        return (VornPrivate::rangeMask(seq & 0xFFFFF, 0xFBFBE, 0xFBFBF) | VornPrivate::signMask(0xF48FBFBE - seq) |
                VornPrivate::rangeMask(seq, 0xF08DA080, 0xF08DBFBF) |
                VornPrivate::rangeMask(seq, 0xF08FB790, 0xF08FB7AF)) &
               1;
    }

    /// `invalid3ByteUnicode` of three bytes. Throws as that does.
    VORN_SURPRISE("returns 0 for most overlong forms; use tryMakeString(text)")
    static unsigned int invalidUnicode(unsigned char b1, unsigned char b2, unsigned char b3) {
        return invalid3ByteUnicode(VornPrivate::packBytes(b1, b2, b3));
    }

    /// `invalid4ByteUnicode` of four bytes. Throws as that does.
    VORN_SURPRISE("returns 0 for most overlong forms; use tryMakeString(text)")
    static unsigned int invalidUnicode(unsigned char b1, unsigned char b2, unsigned char b3, unsigned char b4) {
        return invalid4ByteUnicode(VornPrivate::packBytes(b1, b2, b3, b4));
    }

private:
    // Bits 8 and 9 of `first` are not used, and its bits 6 and 7 are added to the wrong place: results are specified
    // so.
    static constexpr unsigned int packSurrogatePair(unsigned int first, unsigned int second) noexcept {
        return 0xF0908080 + ((first & 0xFC) << 14) + ((first & 3) << 12) + ((second & 0x3C0) << 2) + (second & 0x3F);
    }
};

} // namespace Vorn

VORN_ALLOW_SURPRISES_END
