// Conversion of whole buffers, one character at a time: every unit that is written, and every check in its order, with
// its text. Shares no code with the library.
#pragma once

#include "Reference/TextLength.h"

#include <string>

namespace reference {

inline Outcome converted() { return {}; }

/// The checks and copies of the ASCII loop, for either direction.
template <class Source, class Target>
Outcome convertASCII(const std::vector<Source>& source, unsigned int length, std::vector<Target>& dest,
                     const std::string& function) {
    const char* const null =
        sizeof(Source) == 1
            ? "sourceBuffer[i] : ASCII null detected in UTF-8 buffer! This implementation of UTF-8 does not support "
              "ASCII null!"
            : "sourceBuffer[i] : null detected in a buffer marked as ASCII only! This is not allowed!";
    const char* const nonASCII = sizeof(Source) == 1
                                     ? "sourceBuffer[i] <= 127 : non-ASCII character detected in UTF-8 buffer! This "
                                       "buffer is marked as ASCII only!"
                                     : "sourceBuffer[i] <= 127 : non-ASCII character detected in UTF-16 buffer! This "
                                       "buffer is marked as ASCII only!";
    for (unsigned int i = 0; i < length; ++i) {
        if (source[i] == 0) return raised(2, null, function, HELPER_FILE);
        if (source[i] > 127) return raised(2, nonASCII, function, HELPER_FILE);
        dest[i] = static_cast<Target>(source[i]);
    }
    return converted();
}

/// The inner loop to UTF-16, for a text that was measured. Of four bytes only the second surrogate is written.
inline void fill(int charset, Units& dest, const Bytes& source, unsigned int length) {
    unsigned int j = 0;
    for (unsigned int i = 0; i < length;) {
        const unsigned int kind = kindOfByte(source[i]);
        const unsigned int size = sizeOfKind(kind);
        unsigned int unit = size == 1 ? kind : decoded(source.data() + i, size).value;
        if (size == 4 && charset != 2) unit = secondSurrogateOf(unit);
        dest[j++] = static_cast<Vorn::UTF16Char>(unit);
        i += size;
    }
}

/// The bytes of the character at unit i, which moves behind it. Pairs only count where `pairs` says so.
inline Bytes encoded(const Units& source, unsigned int& i, bool pairs) {
    const unsigned int first = source[i++];
    Bytes bytes;
    if (pairs && isFirstSurrogate(first)) {
        const unsigned int second = source[i++];
        bytes.push_back(static_cast<unsigned char>(0xF0 + (first + 4) / 0x100 % 4));
        bytes.push_back(static_cast<unsigned char>(0x90 + first % 0x100 / 4));
        bytes.push_back(static_cast<unsigned char>(0x80 + first % 4 * 0x10 + second / 0x40 % 0x10));
        bytes.push_back(static_cast<unsigned char>(0x80 + second % 0x40));
    } else {
        appendUTF8(bytes, first);
    }
    return bytes;
}

/// The inner loops to UTF-8. The capacity is tested only at the start of a character.
inline Outcome fill(bool pairs, Bytes& dest, unsigned int destLength, const Units& source, unsigned int length) {
    unsigned int j = 0;
    for (unsigned int i = 0; i < length;) {
        if (j >= destLength) {
            return raised(2, "j < destLength : destination buffer too short!",
                          pairs ? "Vorn::stringDataConvertToUTF8FromUTF16" : "Vorn::stringDataConvertToUTF8FromUCS2",
                          HELPER_FILE);
        }
        for (const unsigned char byte : encoded(source, i, pairs)) dest[j++] = byte;
    }
    return converted();
}

/// The length of the result, or the failure of the measurement.
inline Outcome measured(const Bytes& source, unsigned int length, int charset) {
    return charset == 1 ? Outcome{length, {}} : utf16Length(source, length, charset);
}
inline Outcome measured(const Units& source, unsigned int length, int charset) {
    return charset == 1 ? Outcome{length, {}} : utf8Length(source, length, charset);
}

/// Converts a text that was measured into `dest`.
inline Outcome convertInto(const Bytes& source, unsigned int length, int charset, Units& dest, unsigned int,
                           const std::string& function) {
    if (charset == 1) return convertASCII(source, length, dest, function);
    fill(charset, dest, source, length);
    return converted();
}
inline Outcome convertInto(const Units& source, unsigned int length, int charset, Bytes& dest, unsigned int destLength,
                           const std::string& function) {
    if (charset == 1) return convertASCII(source, length, dest, function);
    return fill(charset != 2, dest, destLength, source, length);
}

/// Replaces a standard string.
inline Outcome toStandardString(const Units& source, unsigned int length, int charset, std::string& dest) {
    dest.clear();
    if (length == 0) return converted();
    const Outcome count = measured(source, length, charset);
    if (!count.failure.empty()) return count;
    if (charset == 1) {
        Bytes bytes;
        for (unsigned int i = 0; i < length; ++i) {
            bytes.resize(i + 1);
            const Outcome outcome = convertASCII(source, i + 1, bytes, "Vorn::stringDataConvertToUTF8");
            if (!outcome.failure.empty()) return outcome;
            dest += static_cast<char>(source[i]);
        }
        return converted();
    }
    for (unsigned int i = 0; i < length;) {
        for (const unsigned char byte : encoded(source, i, charset != 2)) dest += static_cast<char>(byte);
    }
    return converted();
}

} // namespace reference
