// UTF32: single characters as code points, and readers that take one character from a buffer.
//
// A result that is no character is a noncharacter, compared as a bare number:
//
//     0xFDD0   a UTF-8 trail byte
//     0xFDD1   a first surrogate; a second one must follow
//     0xFDD2   of a byte: it leads a 2-byte sequence; of a unit: a second surrogate
//     0xFDD3   a byte that leads a 3-byte sequence
//     0xFDD4   a byte that leads a 4-byte sequence
//     0xFDEF   invalid: a noncharacter, an unusable surrogate, a byte above 0xF4, a sequence that ran out of buffer
//     0xFFFF   a reader's index stands at or past the end
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/Config.h"
#include "Vorn/String/UTF8.h"
#include "Vorn/String/UnicodeBits.h"
#include "Vorn/Types.h"

namespace Vorn {

/// Single characters as code points.
class VORN_API UTF32 {
public:
    /// The unit itself, or 0xFDEF for a surrogate or noncharacter.
    static constexpr unsigned int getUTF32CharForUCS2(UTF16Char c) noexcept {
        return VornPrivate::select(VornPrivate::surrogateMask(c) | VornPrivate::nonCharacterMask(c),
                                   VornPrivate::INVALID_CHARACTER, c);
    }

    /// The unit itself; 0xFDD1 for a first surrogate, 0xFDD2 for a second one, 0xFDEF for a noncharacter.
    static constexpr unsigned int getUTF32Char(UTF16Char c) noexcept {
        const unsigned int first = VornPrivate::firstSurrogateMask(c);
        const unsigned int second = VornPrivate::secondSurrogateMask(c);
        const unsigned int nonCharacter = VornPrivate::nonCharacterMask(c);
        return (c & ~(first | second | nonCharacter)) | (0xFDD1 & first) | (0xFDD2 & second) |
               (VornPrivate::INVALID_CHARACTER & nonCharacter);
    }

    /// The code of a surrogate pair, or 0xFDEF for a noncharacter.
    /// Raises `Exception<2>` with "(first & 0xFC00) == 0xD800 : invalid first surrogate!" or
    /// "(second & 0xFC00) == 0xDC00 : invalid second surrogate!".
    static unsigned int getUTF32Char(UTF16Char first, UTF16Char second) {
        VORN_INTERNAL_ASSERT((first & 0xFC00) == 0xD800, "invalid first surrogate!");
        VORN_INTERNAL_ASSERT((second & 0xFC00) == 0xDC00, "invalid second surrogate!");
        return codeOfPair(first, second);
    }

    /// The code of a packed surrogate pair, or 0xFDEF for a noncharacter.
    /// Raises `Exception<2>` with "(pair & 0xFC00FC00) == 0xD800DC00 : invalid surrogate pair!".
    static unsigned int getUTF32CharForUTF16(unsigned int pair) {
        VORN_INTERNAL_ASSERT((pair & 0xFC00FC00) == 0xD800DC00, "invalid surrogate pair!");
        return codeOfPair(pair >> 16, pair & 0xFFFF);
    }

    /// The byte itself below 0x80; otherwise 0xFDD0 for a trail byte, 0xFDD2 to 0xFDD4 for the lead of 2 to 4 bytes
    /// (0xC0 and 0xC1 count as leads), 0xFDEF from 0xF5 upward.
    static constexpr unsigned int getUTF32Char(unsigned char c) noexcept {
        return 0xFDEF + ((c - 0xFDEFu) & VornPrivate::rangeMask(c, 0x00, 0x7F)) +
               ((0xFDD0u - 0xFDEFu) & VornPrivate::rangeMask(c, 0x80, 0xBF)) +
               ((0xFDD2u - 0xFDEFu) & VornPrivate::rangeMask(c, 0xC0, 0xDF)) +
               ((0xFDD3u - 0xFDEFu) & VornPrivate::rangeMask(c, 0xE0, 0xEF)) +
               ((0xFDD4u - 0xFDEFu) & VornPrivate::rangeMask(c, 0xF0, 0xF4));
    }

    /// The code of a 2-byte sequence. Overlong forms give their value: 0xC0 0x80 gives 0.
    /// Raises `Exception<2>` with "(lead & 0xE0) == 0xC0 : Invalid lead byte in 2-byte UTF-8 sequence" or
    /// "(trail & 0xC0) == 0x80 : Invalid trail byte in 2-byte UTF-8 sequence".
    static unsigned int getUTF32Char(unsigned char lead, unsigned char trail) {
        VORN_INTERNAL_ASSERT((lead & 0xE0) == 0xC0, "Invalid lead byte in 2-byte UTF-8 sequence");
        VORN_INTERNAL_ASSERT((trail & 0xC0) == 0x80, "Invalid trail byte in 2-byte UTF-8 sequence");
        return ((lead & 0x1Fu) << 6) | (trail & 0x3Fu);
    }

    /// The code of a 3-byte sequence, or 0xFDEF for a surrogate or noncharacter. Overlong forms give their value.
    /// Raises what `UTF8::invalid3ByteUnicode` raises.
    static unsigned int getUTF32Char(unsigned char b1, unsigned char b2, unsigned char b3) {
        const unsigned int seq = VornPrivate::packBytes(b1, b2, b3);
        return codeUnless(UTF8::invalid3ByteUnicode(seq), VornPrivate::unpackCode3(seq));
    }

    /// The code of a 4-byte sequence, or 0xFDEF if it is not valid. Most overlong forms give their value.
    /// Raises what `UTF8::invalid4ByteUnicode` raises.
    static unsigned int getUTF32Char(unsigned char b1, unsigned char b2, unsigned char b3, unsigned char b4) {
        const unsigned int seq = VornPrivate::packBytes(b1, b2, b3, b4);
        return codeUnless(UTF8::invalid4ByteUnicode(seq), VornPrivate::unpackCode4(seq));
    }

    /// The code of a packed sequence, 0xFDEF for an invalid one, and the code plus 0xFF000000 for an overlong 2-byte or
    /// 4-byte form.
    /// @warning A 3-byte word is marked below 0xE08480 only: the overlong forms of 0x100 to 0x7FF give their plain
    /// code. Raises `Exception<2>` with "seq < 0x00000080 : invalid UTF-8 sequence!" for a word of no pattern.
    static unsigned int getUTF32CharForUTF8(unsigned int seq);

    /// Reads the character at byte `i` and moves `i` behind it, also on failure and then perhaps beyond `length`.
    /// Returns 0xFFFF without moving at the end, 0xFDEF for a sequence that runs out of buffer, 0xFDD0 for a lone trail
    /// byte. Raises `Exception<2>` for a lead with a bad trail byte, as the operations on two, three and four bytes do.
    static unsigned int getUTF32Char(const unsigned char* buffer, unsigned int& i, unsigned int length) {
        if (i >= length) return 0xFFFF;
        const unsigned char lead = buffer[i];
        if (lead < 0x80) return buffer[i++];
        const unsigned int bytes = VornPrivate::sequenceLength(lead);
        i += bytes;
        if (i > length) return VornPrivate::INVALID_CHARACTER;
        switch (bytes) {
        case 2: return getUTF32Char(lead, buffer[i - 1]);
        case 3: return getUTF32Char(lead, buffer[i - 2], buffer[i - 1]);
        case 4: return getUTF32Char(lead, buffer[i - 3], buffer[i - 2], buffer[i - 1]);
        default: return getUTF32Char(lead);
        }
    }

    /// Returns 0xFDEF for every surrogate pair, well formed or not, and moves past both units: read pairs with
    /// `getUTF32Char(first, second)`. Other units give their code; 0xFFFF at the end, without moving.
    /// Raises `Exception<2>` for a first surrogate with a bad second one behind it, as `getUTF32Char(first, second)`
    /// does. A first surrogate at the end leaves `i` beyond `length`.
    static unsigned int getUTF32Char(const UTF16Char* buffer, unsigned int& i, unsigned int length) {
        if (i >= length) return 0xFFFF;
        const unsigned int c = getUTF32Char(buffer[i]);
        ++i;
        if (c == 0xFDD1) {
            if (i < length) static_cast<void>(getUTF32Char(buffer[i - 1], buffer[i]));
            ++i;
            return VornPrivate::INVALID_CHARACTER;
        }
        return c == 0xFDD2 ? VornPrivate::INVALID_CHARACTER : c;
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
