// The integer parsers, written as simply as possible.
#pragma once

#include <vector>

namespace reference {

/// The value in 64 bits, to be truncated to a type, and the count.
struct ParsedInteger {
    unsigned long long value;
    unsigned int count;
};

/// Reads a text that ends in a terminator. Reading beyond it throws.
template <class CharType>
class IntegerParser {
public:
    IntegerParser(const CharType* text, unsigned int size) : m_text(text, text + size + 1) {}

    ParsedInteger parseUInt(unsigned int length) const { return autoRadix(0, length); }
    ParsedInteger parseUHex(unsigned int length) const { return fixedRadix(0, length, 16); }
    ParsedInteger parseUDec(unsigned int length) const { return fixedRadix(0, length, 10); }
    ParsedInteger parseHex(unsigned int length) const { return signedFixedRadix(length, 16); }
    ParsedInteger parseDec(unsigned int length) const { return signedFixedRadix(length, 10); }

    ParsedInteger parseInt(unsigned int length) const {
        if (unit(0) != '-' && unit(0) != '+') return autoRadix(0, length);
        ParsedInteger result = autoRadix(1, length - 1);
        if (result.count != 0) result.count += 1;
        if (unit(0) == '-') result.value = 0 - result.value;
        return result;
    }

private:
    unsigned int unit(unsigned int index) const { return m_text.at(index); }

    static int digit(unsigned int c, int radix) {
        if (c >= '0' && c <= '9') return static_cast<int>(c) - '0';
        if (radix == 16 && c >= 'A' && c <= 'F') return static_cast<int>(c) - 'A' + 10;
        if (radix == 16 && c >= 'a' && c <= 'f') return static_cast<int>(c) - 'a' + 10;
        return -1;
    }

    // Index of the first unit from `origin` on that is no white space, as seen from `origin`.
    unsigned int skipSpace(unsigned int origin) const {
        unsigned int i = 0;
        while (unit(origin + i) == 32 || (unit(origin + i) >= 9 && unit(origin + i) <= 13)) ++i;
        return i;
    }

    ParsedInteger autoRadix(unsigned int origin, unsigned int length) const {
        unsigned int i = skipSpace(origin);
        int radix = 10;
        if (i + 2 < length && unit(origin + i) == '0' && unit(origin + i + 1) == 'x') {
            radix = 16;
            i += 2;
        }
        if (digit(unit(origin + i), radix) < 0) return {0, 0};
        ParsedInteger result{0, 0};
        while (true) {
            result.value = result.value * static_cast<unsigned int>(radix) +
                           static_cast<unsigned int>(digit(unit(origin + i), radix));
            ++i;
            if (i == length) break;
            if (digit(unit(origin + i), radix) < 0) break;
        }
        result.count = i;
        return result;
    }

    ParsedInteger fixedRadix(unsigned int origin, unsigned int length, int radix) const {
        const unsigned int start = skipSpace(origin);
        unsigned int i = start;
        if (radix == 16 && i + 1 < length && unit(origin + i) == '0' && unit(origin + i + 1) == 'x') i += 2;
        unsigned long long value = 0;
        if (digit(unit(origin + i), radix) >= 0) {
            while (true) {
                value = value * static_cast<unsigned int>(radix) +
                        static_cast<unsigned int>(digit(unit(origin + i), radix));
                ++i;
                if (i == length) break;
                if (digit(unit(origin + i), radix) < 0) break;
            }
        }
        return {value, i == start ? 0 : i};
    }

    ParsedInteger signedFixedRadix(unsigned int length, int radix) const {
        if (unit(0) != '-' && unit(0) != '+') return fixedRadix(0, length, radix);
        ParsedInteger result = fixedRadix(1, length, radix);
        result.count += 1;
        if (unit(0) == '-') result.value = 0 - result.value;
        return result;
    }

    std::vector<CharType> m_text;
};

} // namespace reference
