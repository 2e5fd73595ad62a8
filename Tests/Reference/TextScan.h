// The scan that validates texts, one character at a time: every check in its order, with its text. Shares no code with
// the library.
#pragma once

#include "Reference/SampleTexts.h"
#include "Support/Outcome.h"

namespace reference {

/// The result or the failure of a scan, and the value of `length` after it.
struct ScanResult {
    Outcome outcome;
    unsigned int length = 0;

    friend bool operator==(const ScanResult& left, const ScanResult& right) {
        return left.outcome == right.outcome && left.length == right.length;
    }
    friend std::ostream& operator<<(std::ostream& stream, const ScanResult& result) {
        return stream << result.outcome << ", length " << result.length;
    }
};

inline Outcome refused(const std::string& message) {
    return raised(7, message, "stringDataBufferScan", "Source/Vorn/StringDataHelper");
}

inline Outcome scanResult(bool null, bool twoByteClass, bool fullClass) {
    return {(null ? 4u : 0u) + (fullClass ? 3u : twoByteClass ? 2u : 1u), {}};
}

inline ScanResult scan(const Bytes& bytes, unsigned int length) {
    const bool terminated = length == NPOS;
    bool null = false;
    bool twoByteClass = false;
    bool fullClass = false;
    // A byte beyond the end is no trail byte, and neither is a terminator.
    const auto isTrail = [&](unsigned int at) { return (terminated || at < length) && isTrailByte(bytes[at]); };
    unsigned int i = 0;
    while (terminated || i < length) {
        const unsigned int byte = bytes[i];
        if (terminated && byte == 0) {
            length = i;
            break;
        }
        const unsigned int kind = kindOfByte(byte);
        if (kind == 0xFDD0) return {refused("Unmatched trail UTF-8 byte detected!"), length};
        if (kind == 0) {
            return {refused("ASCII null detected! This implementation does not support ASCII null, please use the "
                            "sequence 0xC0 0x80 to represent null."),
                    length};
        }
        if (kind == 0xFDEF) return {refused("Invalid character!"), length};
        if (kind == 0xFDD2) {
            if (!isTrail(i + 1)) return {refused("Unmatched lead UTF-8 byte for a 2-byte sequence!"), length};
            const unsigned int code = codeOfSequence(byte * 0x100 + bytes[i + 1], 2);
            if (within(code, 1, 0x7F)) return {refused("Invalid overlong 2-byte sequence!"), length};
            if (code == 0) null = true;
            twoByteClass = true;
            i += 2;
        } else if (kind == 0xFDD3) {
            if (!isTrail(i + 1) || !isTrail(i + 2)) {
                return {refused("Unmatched lead UTF-8 byte for a 3-byte sequence!"), length};
            }
            const unsigned int code = codeOfSequence(byte * 0x10000 + bytes[i + 1] * 0x100u + bytes[i + 2], 3);
            if (isSurrogate(code) || isNonCharacter(code)) return {refused("Invalid character!"), length};
            if (code < 0x800) return {refused("Invalid overlong 3-byte sequence!"), length};
            twoByteClass = true;
            i += 3;
        } else if (kind == 0xFDD4) {
            if (!isTrail(i + 1) || !isTrail(i + 2) || !isTrail(i + 3)) {
                return {refused("Unmatched first surrogate character!"), length};
            }
            const unsigned int code =
                codeOfSequence(byte * 0x1000000 + bytes[i + 1] * 0x10000u + bytes[i + 2] * 0x100u + bytes[i + 3], 4);
            // Overlong forms are accepted, except those of surrogates and noncharacters.
            if (isSurrogate(code) || isNonCharacter(code) || code > 0x10FFFD) {
                return {refused("Invalid character with code ending in FFFE or FFFF!"), length};
            }
            fullClass = true;
            i += 4;
        } else {
            ++i;
        }
    }
    return {scanResult(null, twoByteClass, fullClass), length};
}

inline ScanResult scan(const Units& units, unsigned int length) {
    const bool terminated = length == NPOS;
    bool null = false;
    bool twoByteClass = false;
    bool fullClass = false;
    unsigned int i = 0;
    while (terminated || i < length) {
        const unsigned int unit = units[i];
        if (terminated && unit == 0) {
            length = i;
            break;
        }
        if (isFirstSurrogate(unit)) {
            const unsigned int next = i + 1;
            if (!terminated && next >= length) return {refused("Unmatched first surrogate character!"), length};
            if (terminated && units[next] == 0) return {refused("Unmatched first surrogate character!"), next};
            if (!isSecondSurrogate(units[next])) return {refused("Unmatched first surrogate character!"), length};
            if (isNonCharacter(codeOfPair(unit, units[next]))) {
                return {refused("Invalid character with code ending in FFFE or FFFF!"), length};
            }
            fullClass = true;
            i += 2;
            continue;
        }
        if (isSecondSurrogate(unit)) return {refused("Unmatched second surrogate code!"), length};
        if (isNonCharacter(unit)) return {refused("Invalid character!"), length};
        if (unit == 0) null = true;
        if (unit == 0 || unit > 0x7F) twoByteClass = true;
        ++i;
    }
    return {scanResult(null, twoByteClass, fullClass), length};
}

} // namespace reference
