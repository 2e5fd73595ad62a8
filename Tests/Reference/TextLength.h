// Lengths of whole buffers for a given scan result, one character at a time: every check in its order, with its text.
// Shares no code with the library.
#pragma once

#include "Reference/SampleTexts.h"
#include "Support/Outcome.h"

namespace reference {

inline const std::string HELPER_FILE("Source/Vorn/StringDataHelper");
inline const std::string NULL_IN_UTF8("ASCII null detected in UTF-8 buffer!! This implementation of UTF-8 does not "
                                      "support ASCII null!");

/// The checks that every operation of the library makes on a sequence of 2, 3 or 4 bytes, and its code; 0xFDEF for one
/// that is refused.
inline Outcome decoded(const unsigned char* bytes, unsigned int size) {
    unsigned int seq = 0;
    for (unsigned int i = 0; i < size; ++i) seq = seq * 0x100 + bytes[i];
    if (!hasPattern(seq, size)) {
        if (size == 2) {
            return raised(2, "(trail & 0xC0) == 0x80 : Invalid trail byte in 2-byte UTF-8 sequence",
                          "Vorn::UTF32::getUTF32Char", "Include/Vorn/String/UTF32");
        }
        if (size == 3) {
            return raised(2, "(seq & 0x00F0C0C0) == 0x00E08080 : Invalid 3-byte UTF-8 sequence!",
                          "Vorn::UTF8::invalid3ByteUnicode", "Include/Vorn/String/UTF8");
        }
        return raised(2, "(seq & 0xF8C0C0C0) == 0xF0808080 : Invalid 4-byte UTF-8 sequence!",
                      "Vorn::UTF8::invalid4ByteUnicode", "Include/Vorn/String/UTF8");
    }
    if (size == 3 && isInvalid3Bytes(seq)) return {0xFDEF, {}};
    if (size == 4 && isInvalid4Bytes(seq)) return {0xFDEF, {}};
    return {codeOfSequence(seq, size), {}};
}

/// The length of the sequence that a byte of this kind begins.
inline unsigned int sizeOfKind(unsigned int kind) {
    return kind == 0xFDD2 ? 2 : kind == 0xFDD3 ? 3 : kind == 0xFDD4 ? 4 : 1;
}

/// The checks of an ASCII text of either encoding.
template <class Unit>
Outcome asciiLength(const std::vector<Unit>& text, unsigned int length, const std::string& function) {
    const char* const null =
        sizeof(Unit) == 1
            ? "buffer[i] : ASCII null detected in UTF-8 buffer!! This implementation of UTF-8 does not support ASCII "
              "null!"
            : "buffer[i] : null detected in UTF-16 buffer that is marked as ASCII only!! This not allowed!";
    const char* const nonASCII = sizeof(Unit) == 1
                                     ? "buffer[i] <= 127 : non-ASCII detected in UTF-8 buffer marked for ASCII only!!"
                                     : "buffer[i] <= 127 : non-ASCII detected in UTF-16 buffer marked for ASCII only!!";
    for (unsigned int i = 0; i < length; ++i) {
        if (text[i] == 0) return raised(2, null, function, HELPER_FILE);
        if (text[i] > 127) return raised(2, nonASCII, function, HELPER_FILE);
    }
    return {length, {}};
}

/// Units that a UTF-8 text takes in UTF-16.
inline Outcome utf16Length(const Bytes& text, unsigned int length, int charset) {
    const std::string function("Vorn::stringDataGetUTF16Length");
    const auto fails = [&](const std::string& message) { return raised(2, message, function, HELPER_FILE); };
    if (length == 0) return {0, {}};
    if (charset == 1) return asciiLength(text, length, function);
    unsigned int count = 0;
    for (unsigned int i = 0; i < length;) {
        const unsigned int kind = kindOfByte(text[i]);
        if (kind == 0) return fails("c : " + NULL_IN_UTF8);
        if (kind == 0xFDEF) return fails("c != 0xFDEF : Invalid Unicode character detected in UTF-8 buffer!!");
        if (charset == 2 && kind == 0xFDD4) {
            return fails("c != 0xFDD4 : 4-byte UTF-8 character detected in a buffer marked for 2-byte or below only!!");
        }
        if (kind == 0xFDD0) return fails("c != 0xFDD0 : unmatched trail UTF-8 byte detected!!");
        const unsigned int size = sizeOfKind(kind);
        if (size > 1) {
            const std::string number(std::to_string(size));
            if (i + size > length) return fails("i < length : unmatched " + number + "-byte UTF-8 lead byte!!");
            const Outcome code = decoded(text.data() + i, size);
            if (!code.failure.empty()) return code;
            if (code.value == 0xFDEF) {
                return fails("c != 0xFDEF : Invalid Unicode character detected in UTF-8 buffer!!");
            }
            const std::string overlong(" : Overlong " + number + "-byte UTF-8 character detected!!");
            if (size == 2 && charset == 2 && within(code.value, 1, 127)) return fails("!c || c > 127" + overlong);
            if (size == 2 && charset != 2 && code.value == 0) return fails("c || c > 127" + overlong);
            if (size == 3 && code.value <= 0x07FF) return fails("c > 0x07FF" + overlong);
            if (size == 4 && code.value <= 0xFFFF) return fails("c > 0xFFFF" + overlong);
        }
        count += size == 4 ? 2 : 1;
        i += size;
    }
    return {count, {}};
}

/// Bytes that a UTF-16 text takes in UTF-8. Can read the unit after the text.
inline Outcome utf8Length(const Units& text, unsigned int length, int charset) {
    const std::string function("Vorn::stringDataGetUTF8Length");
    const auto fails = [&](const std::string& message) { return raised(2, message, function, HELPER_FILE); };
    if (length == 0) return {0, {}};
    if (charset == 1) return asciiLength(text, length, function);
    unsigned int count = 0;
    for (unsigned int i = 0; i < length; ++i) {
        const unsigned int unit = text[i];
        if (charset == 2) {
            if (isSurrogate(unit) || isNonCharacter(unit)) return fails("count >= 1 : Invalid code!");
            count += sizeInUTF8(unit);
            continue;
        }
        const unsigned int kind = kindOfUnit(unit);
        if (kind == 0xFDEF) return fails("c != 0xFDEF : Invalid Unicode character detected in UTF-16 buffer!!");
        if (kind == 0xFDD2) return fails("c != 0xFDD2 : unmatched second UTF-16 surrogate detected!!");
        if (kind == 0xFDD1) {
            ++i;
            if (!isSecondSurrogate(text[i])) {
                return fails("Unicode::getUTF32Char(buffer[i]) == 0xFDD2 : unmatched first UTF-16 surrogate "
                             "detected!!");
            }
            count += 4;
        } else if (within(unit, 1, 126)) {
            count += 1;
        } else {
            count += unit <= 0x7FF ? 2 : 3;
        }
    }
    return {count, {}};
}

/// Characters in a UTF-8 text.
inline Outcome unicodeLength(const Bytes& text, unsigned int length, int charset) {
    const std::string function("Vorn::stringDataGetUnicodeLength");
    const auto fails = [&](const std::string& message) { return raised(2, message, function, HELPER_FILE); };
    if (length == 0) return {0, {}};
    if (charset == 1) return asciiLength(text, length, function);
    unsigned int count = 0;
    for (unsigned int i = 0; i < length;) {
        const unsigned int kind = kindOfByte(text[i]);
        const unsigned int size = sizeOfKind(kind);
        Outcome code{kind, {}};
        if (i + size > length)
            code.value = 0xFDEF;
        else if (size > 1)
            code = decoded(text.data() + i, size);
        if (!code.failure.empty()) return code;
        if (code.value == 0xFDEF) {
            return fails("c != 0xFDEF : Invalid Unicode character detected in UTF-8 buffer!!");
        }
        if (charset == 2 && code.value > 0xFFFD) {
            return fails("c <= 0xFFFD : non-UCS-2 character detected in a UTF-8 buffer that is marked for UCS-2 "
                         "only!!");
        }
        ++count;
        i += size;
    }
    return {count, {}};
}

/// Characters in a UTF-16 text.
inline Outcome unicodeLength(const Units& text, unsigned int length, int charset) {
    const std::string function("Vorn::stringDataGetUnicodeLength");
    const auto fails = [&](const std::string& message) { return raised(2, message, function, HELPER_FILE); };
    if (length == 0) return {0, {}};
    if (charset == 1) return asciiLength(text, length, function);
    unsigned int count = 0;
    for (unsigned int i = 0; i < length; ++i) {
        ++count;
        if (charset == 2) {
            if (text[i] == 0xFDEF) {
                return fails("Unicode::getUCS2Char(static_cast<UTF32Char>(buffer[i])) != 0xFDEF : Invalid UCS-2 "
                             "character detected in a buffer marked as UCS-2 only!");
            }
            continue;
        }
        const unsigned int kind = kindOfUnit(text[i]);
        if (kind == 0xFDEF) return fails("c != 0xFDEF : Invalid Unicode character detected in UTF-16 buffer!!");
        if (kind == 0xFDD2) return fails("c != 0xFDD2 : unmatched second UTF-16 surrogate detected!!");
        if (kind != 0xFDD1) continue;
        ++i;
        if (i >= length) return fails("i < length : unmatched first UTF-16 surrogate detected!!");
        if (!isSecondSurrogate(text[i])) {
            return fails("Unicode::getUTF32Char(buffer[i]) == 0xFDD2 : unmatched first UTF-16 surrogate detected!!");
        }
    }
    return {count, {}};
}

} // namespace reference
