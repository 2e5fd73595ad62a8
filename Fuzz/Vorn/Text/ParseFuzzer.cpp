// Runs parse and parsePrefix on one text and compares them with plain models: integers are summed digit by digit, and
// floats are read by the C library from the characters that the grammar allows.
#include "Vorn/Text/TextNumbers.h"

#include "Support/Stream.h"

#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using Vorn::NumberError;

/// What a number at the start of a text is.
template <class T>
struct Expected {
    NumberError error = NumberError::MALFORMED;
    T value{};
    std::size_t size = 0;
};

int digitOf(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'z') return c - 'a' + 10;
    if (c >= 'A' && c <= 'Z') return c - 'A' + 10;
    return 36;
}

template <class T>
Expected<T> integerOf(const std::string& text, unsigned int base) {
    Expected<T> expected;
    std::size_t i = 0;
    bool isNegative = false;
    if (std::is_signed_v<T> && (text[0] == '-' || (base == Vorn::BASE_OF_PRINT_HEX && text[0] == 'x'))) {
        isNegative = true;
        i = 1;
    }
    const std::string rest = text.substr(i);
    if (base < 2) {
        const bool hasPrintedSign = isNegative && text[0] == 'x'; // which stands before digits without a prefix
        const bool isHex = !hasPrintedSign && rest.size() > 2 && rest[0] == '0' && std::tolower(rest[1]) == 'x' &&
                           digitOf(rest[2]) < 16;
        const bool isBinary = base == Vorn::BASE_BY_PREFIX && rest.size() > 2 && rest[0] == '0' &&
                              std::tolower(rest[1]) == 'b' && digitOf(rest[2]) < 2;
        if (isHex || isBinary) i += 2;
        base = isHex ? 16 : isBinary ? 2 : base == Vorn::BASE_BY_PREFIX ? 10 : 16;
    }
    const std::size_t first = i;
    const unsigned long long most = static_cast<unsigned long long>(std::numeric_limits<T>::max()) + isNegative;
    unsigned long long bits = 0;
    bool isTooLarge = false;
    for (; i < text.size() && digitOf(text[i]) < int(base); ++i) {
        const unsigned int digit = static_cast<unsigned int>(digitOf(text[i]));
        isTooLarge = isTooLarge || digit > most || bits > (most - digit) / base;
        bits = bits * base + digit;
    }
    if (i == first) return expected;
    expected.size = i;
    expected.error = isTooLarge ? NumberError::OUT_OF_RANGE : NumberError::NONE;
    expected.value = static_cast<T>(isNegative ? 0 - bits : bits);
    return expected;
}

/// The size of the longest text of the form digits[.digits][e[sign]digits]; 0 without a digit.
std::size_t sizeOfNumber(const std::string& text, std::size_t i, int base, char exponent) {
    std::size_t digits = 0;
    const auto skipDigits = [&](int digitBase) {
        std::size_t count = 0;
        for (; i < text.size() && digitOf(text[i]) < digitBase; ++i) ++count;
        return count;
    };
    digits += skipDigits(base);
    if (i < text.size() && text[i] == '.') {
        ++i;
        digits += skipDigits(base);
        if (digits == 0) return 0;
    }
    if (digits == 0) return 0;
    const std::size_t end = i;
    if (i < text.size() && std::tolower(text[i]) == exponent) {
        ++i;
        if (i < text.size() && (text[i] == '-' || text[i] == '+')) ++i;
        if (skipDigits(10) != 0) return i;
    }
    return end;
}

template <class T>
Expected<T> floatOf(const std::string& text) {
    Expected<T> expected;
    const std::size_t sign = text[0] == '-';
    std::string lower = text.substr(sign);
    for (char& c : lower) c = static_cast<char>(std::tolower(c));
    bool isWord = true;
    if (lower.rfind("infinity", 0) == 0)
        expected.size = sign + 8;
    else if (lower.rfind("inf", 0) == 0 || lower.rfind("nan", 0) == 0)
        expected.size = sign + 3;
    else
        isWord = false;
    bool isZero = false;
    if (!isWord) {
        std::size_t start = sign;
        const bool isPrefixed = lower.rfind("0x", 0) == 0 && sizeOfNumber(text, sign + 2, 16, 'p') != 0;
        if (isPrefixed) start += 2;
        expected.size = sizeOfNumber(text, start, isPrefixed ? 16 : 10, isPrefixed ? 'p' : 'e');
        if (expected.size == 0) return expected;
        isZero = true;
        for (std::size_t i = start; i < expected.size && std::tolower(text[i]) != (isPrefixed ? 'p' : 'e'); ++i)
            isZero &= text[i] == '0' || text[i] == '.';
    }
    const std::string number = text.substr(0, expected.size);
    expected.value = sizeof(T) == 4 ? T(std::strtof(number.c_str(), nullptr)) : T(std::strtod(number.c_str(), nullptr));
    const bool isOut = !isWord && (std::isinf(expected.value) || (expected.value == 0 && !isZero));
    expected.error = isOut ? NumberError::OUT_OF_RANGE : NumberError::NONE;
    return expected;
}

template <class T>
bool isSame(T a, T b) {
    if (a != a) return b != b && std::signbit(double(a)) == std::signbit(double(b));
    return std::memcmp(&a, &b, sizeof(T)) == 0;
}

template <class T>
void compare(Vorn::TextView text, unsigned int base, const Expected<T>& expected) {
    const Vorn::NumberPrefix<T> prefix = Vorn::parsePrefix<T>(text, base);
    require(prefix.error == expected.error, "the error");
    require(text.getLength() - prefix.rest.getLength() == expected.size, "the size");
    require(prefix.value.has_value() == (expected.error == NumberError::NONE), "whether there is a value");
    if (prefix.value) require(isSame(*prefix.value, expected.value), "the value");
    T value{};
    const NumberError error = Vorn::parseInto(value, text, base);
    const bool isWhole = expected.size == text.getLength();
    require(error == (isWhole ? expected.error : NumberError::MALFORMED), "the error of the whole");
    if (error == NumberError::NONE) require(isSame(value, expected.value), "the value of the whole");
}

template <class T>
Expected<T> expectedOf(const std::string& text, unsigned int base) {
    if constexpr (std::is_floating_point_v<T>)
        return floatOf<T>(text);
    else
        return integerOf<T>(text, base);
}

// Bytes from 0x80 on become units that have an ASCII character in their lower byte, which end every number.
template <class T>
void compareBoth(const std::string& text, unsigned int base) {
    const Expected<T> expected = expectedOf<T>(text, base);
    // Blocks of the exact size show a read behind the text.
    const std::vector<char> bytes(text.begin(), text.end());
    compare<T>(Vorn::TextView(bytes.data(), bytes.size()), base, expected);
    std::vector<Vorn::UTF16Char> units;
    for (const char c : text) {
        const unsigned int byte = static_cast<unsigned char>(c);
        units.push_back(static_cast<Vorn::UTF16Char>(byte < 0x80 ? byte : byte + 0x80));
    }
    compare<T>(Vorn::TextView(units.data(), units.size()), base, expected);
}

} // namespace

// The first byte chooses the type, the second the base; the rest is the text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Stream stream(data, size);
    const unsigned int type = stream.below(7);
    const unsigned int base = stream.below(37);
    const std::vector<unsigned char> rest = stream.rest();
    std::string text(rest.begin(), rest.end());
    switch (type) {
    case 0: compareBoth<signed char>(text, base); break;
    case 1: compareBoth<int>(text, base); break;
    case 2: compareBoth<unsigned int>(text, base); break;
    case 3: compareBoth<long long>(text, base); break;
    case 4: compareBoth<unsigned long long>(text, base); break;
    case 5: compareBoth<float>(text, 10); break;
    default: compareBoth<double>(text, 10); break;
    }
    return 0;
}
