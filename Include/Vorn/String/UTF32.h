/// @file
/// UTF32: single characters as code points, and readers that decode one character of a buffer.
///
/// A result that is no character is one of these noncharacters, the sentinels:
///
///     0xFDD0   a UTF-8 trail byte
///     0xFDD1   a first surrogate; a second one must follow
///     0xFDD2   of a byte: it leads a 2-byte sequence; of a unit: a second surrogate
///     0xFDD3   a byte that leads a 3-byte sequence
///     0xFDD4   a byte that leads a 4-byte sequence
///     0xFDEF   invalid: a noncharacter, an unusable surrogate, a byte above 0xF4, a sequence that exceeds the buffer
///     0xFFFF   the index of a reader is at or past the end
///
/// For whole buffers use the functions of StringDataHelper.h.
///
/// Cost: the operations are small and inline.
///
/// Threads: the operations use their arguments only.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/Config.h"
#include "Vorn/Private/Surprise.h"
#include "Vorn/Private/UnicodeBits.h"
#include "Vorn/String/UTF8.h"
#include "Vorn/Types.h"

VORN_ALLOW_SURPRISES_BEGIN // the operations call each other

namespace Vorn {

/// Operations on single characters as code points.
class VORN_API UTF32 {
public:
    /// Returns the unit, or 0xFDEF for a surrogate or noncharacter.
    static constexpr unsigned int getUTF32CharForUCS2(UTF16Char c) noexcept {
        return VornPrivate::select(VornPrivate::surrogateMask(c) | VornPrivate::nonCharacterMask(c),
                                   VornPrivate::INVALID_CHARACTER, c);
    }

    /// Returns the unit; 0xFDD1 for a first surrogate, 0xFDD2 for a second surrogate, 0xFDEF for a noncharacter.
    static constexpr unsigned int getUTF32Char(UTF16Char c) noexcept {
        const unsigned int first = VornPrivate::firstSurrogateMask(c);
        const unsigned int second = VornPrivate::secondSurrogateMask(c);
        const unsigned int nonCharacter = VornPrivate::nonCharacterMask(c);
        return (c & ~(first | second | nonCharacter)) | (VornPrivate::FIRST_SURROGATE & first) |
               (VornPrivate::SECOND_SURROGATE & second) | (VornPrivate::INVALID_CHARACTER & nonCharacter);
    }

    /// The code of a surrogate pair, or 0xFDEF for a noncharacter.
    /// Throws `Exception<2>`: "(first & 0xFC00) == 0xD800 : invalid first surrogate!" or "(second & 0xFC00) == 0xDC00 :
    /// invalid second surrogate!".
    static unsigned int getUTF32Char(UTF16Char first, UTF16Char second) {
        VORN_INTERNAL_ASSERT((first & 0xFC00) == 0xD800, "invalid first surrogate!");
        VORN_INTERNAL_ASSERT((second & 0xFC00) == 0xDC00, "invalid second surrogate!");
        return codeOfPair(first, second);
    }

    /// The code of a packed surrogate pair, or 0xFDEF for a noncharacter.
    /// Throws `Exception<2>`: "(pair & 0xFC00FC00) == 0xD800DC00 : invalid surrogate pair!".
    static unsigned int getUTF32CharForUTF16(unsigned int pair) {
        VORN_INTERNAL_ASSERT((pair & 0xFC00FC00) == 0xD800DC00, "invalid surrogate pair!");
        return codeOfPair(pair >> 16, pair & 0xFFFF);
    }

    /// Classifies a byte: the byte itself below 0x80, 0xFDD0 for a trail byte, 0xFDD2 to 0xFDD4 for the lead of 2 to 4
    /// bytes, 0xFDEF from 0xF5 upward. 0xC0 and 0xC1 count as leads.
    static constexpr unsigned int getUTF32Char(unsigned char c) noexcept {
        using namespace VornPrivate;
        return INVALID_CHARACTER + ((c - INVALID_CHARACTER) & rangeMask(c, 0x00, 0x7F)) +
               ((TRAIL_BYTE - INVALID_CHARACTER) & rangeMask(c, 0x80, 0xBF)) +
               ((LEAD_OF_TWO - INVALID_CHARACTER) & rangeMask(c, 0xC0, 0xDF)) +
               ((LEAD_OF_THREE - INVALID_CHARACTER) & rangeMask(c, 0xE0, 0xEF)) +
               ((LEAD_OF_FOUR - INVALID_CHARACTER) & rangeMask(c, 0xF0, 0xF4));
    }

    /// The code of a 2-byte sequence; an overlong form gives its value, so that 0xC0 0x80 gives 0.
    /// Throws `Exception<2>`: "(lead & 0xE0) == 0xC0 : Invalid lead byte in 2-byte UTF-8 sequence" or "(trail & 0xC0)
    /// == 0x80 : Invalid trail byte in 2-byte UTF-8 sequence".
    /// @warning To refuse overlong forms, compare the result with 0x80.
    static unsigned int getUTF32Char(unsigned char lead, unsigned char trail) {
        VORN_INTERNAL_ASSERT((lead & 0xE0) == 0xC0, "Invalid lead byte in 2-byte UTF-8 sequence");
        VORN_INTERNAL_ASSERT((trail & 0xC0) == 0x80, "Invalid trail byte in 2-byte UTF-8 sequence");
        return ((lead & 0x1Fu) << 6) | (trail & 0x3Fu);
    }

    /// The code of a 3-byte sequence, or 0xFDEF for a surrogate or noncharacter; an overlong form gives its value.
    /// Throws as `UTF8::invalid3ByteUnicode` does.
    /// @warning To refuse overlong forms, compare the result with 0x800.
    static unsigned int getUTF32Char(unsigned char b1, unsigned char b2, unsigned char b3) {
        const unsigned int seq = VornPrivate::packBytes(b1, b2, b3);
        return codeUnless(UTF8::invalid3ByteUnicode(seq), VornPrivate::unpackCode3(seq));
    }

    /// The code of a 4-byte sequence, or 0xFDEF if it is invalid; most overlong forms give their value.
    /// Throws as `UTF8::invalid4ByteUnicode` does.
    /// @warning To refuse overlong forms, compare the result with 0x10000.
    static unsigned int getUTF32Char(unsigned char b1, unsigned char b2, unsigned char b3, unsigned char b4) {
        const unsigned int seq = VornPrivate::packBytes(b1, b2, b3, b4);
        return codeUnless(UTF8::invalid4ByteUnicode(seq), VornPrivate::unpackCode4(seq));
    }

    /// The code of a packed sequence, or 0xFDEF if it is invalid; 0xFF000000 is ADDED to the code of an overlong form.
    /// Throws `Exception<2>`: "seq < 0x00000080 : invalid UTF-8 sequence!" for a word that is no sequence.
    /// @warning The overlong 3-byte forms of 0x100 to 0x7FF give their code unmarked. To refuse them, compare the
    ///     result with 0x800.
    static unsigned int getUTF32CharForUTF8(unsigned int seq);

    /// Reads the character at byte `i` and moves `i` behind it. Returns 0xFFFF at the end and does not move `i`.
    ///
    /// Returns 0xFDD0 for a trail byte without a lead, and 0xFDEF for a sequence that exceeds `length`; `i` is then
    /// greater than `length`. Compare with `i < length`, not with `i != length`.
    /// Throws `Exception<2>` for an invalid trail byte, as the operations on two, three and four bytes do; `i` has
    /// moved.
    static unsigned int getUTF32Char(const unsigned char* buffer, unsigned int& i, unsigned int length) {
        if (i >= length) return VornPrivate::END_OF_BUFFER;
        const unsigned char lead = buffer[i];
        if (lead < 0x80) return buffer[i++];
        const unsigned int bytes = VornPrivate::sequenceLength(lead);
        if (length - i < bytes) {
            i = VornPrivate::advance(i, bytes);
            return VornPrivate::INVALID_CHARACTER;
        }
        i += bytes;
        switch (bytes) {
        case 2: return getUTF32Char(lead, buffer[i - 1]);
        case 3: return getUTF32Char(lead, buffer[i - 2], buffer[i - 1]);
        case 4: return getUTF32Char(lead, buffer[i - 3], buffer[i - 2], buffer[i - 1]);
        default: return getUTF32Char(lead);
        }
    }

    /// Reads the character at unit `i` and moves `i` behind it, but returns 0xFDEF for EVERY surrogate pair.
    ///
    /// Returns 0xFFFF at the end and does not move `i`. A first surrogate moves `i` by two units; if it is the last
    /// unit, `i` is then greater than `length`. Throws `Exception<2>` if no second surrogate follows the first one, as
    /// `getUTF32Char(first, second)` does; `i` has moved by one unit.
    /// @warning To read a pair, call `getUTF32Char(first, second)`.
    VORN_SURPRISE("returns 0xFDEF for every surrogate pair; use codePoints(text)")
    static unsigned int getUTF32Char(const UTF16Char* buffer, unsigned int& i, unsigned int length) {
        if (i >= length) return VornPrivate::END_OF_BUFFER;
        const unsigned int c = getUTF32Char(buffer[i]);
        ++i;
        if (c == VornPrivate::FIRST_SURROGATE) {
            if (i < length) static_cast<void>(getUTF32Char(buffer[i - 1], buffer[i]));
            i = VornPrivate::advance(i, 1);
            return VornPrivate::INVALID_CHARACTER;
        }
        return c == VornPrivate::SECOND_SURROGATE ? VornPrivate::INVALID_CHARACTER : c;
    }

private:
    static constexpr unsigned int codeUnless(unsigned int invalid, unsigned int code) noexcept {
        return VornPrivate::select(0u - invalid, VornPrivate::INVALID_CHARACTER, code);
    }

    static constexpr unsigned int codeOfPair(unsigned int first, unsigned int second) noexcept {
        const unsigned int code = VornPrivate::unpackSurrogates(first, second);
        return VornPrivate::select(VornPrivate::signMask(0xFFFD - (code & 0xFFFF)), VornPrivate::INVALID_CHARACTER,
                                   code);
    }
};

} // namespace Vorn

VORN_ALLOW_SURPRISES_END
