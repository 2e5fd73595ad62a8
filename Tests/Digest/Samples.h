// The fixed input of the digest.
#pragma once

#include "Support/RandomTexts.h"
#include "Vorn/Text/MakeString.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

/// Valid texts of all charsets and of lengths around those of vectors.
inline std::vector<std::u32string> sampleCodes() {
    Random random(1);
    std::vector<std::u32string> samples = {U"", U"a", U"\u00E9", U"\u20AC", U"\U0001F600", std::u32string(1, U'\0')};
    for (const unsigned int length : {7u, 8u, 15u, 16u, 17u, 31u, 32u, 33u, 63u, 64u, 65u, 127u, 128u, 129u, 300u}) {
        for (const char32_t code : {U'a', U'\u00E9', U'\u20AC', U'\U0001F600'}) {
            samples.emplace_back(length, U'b');
            samples.back()[random.below(length)] = code;
            samples.emplace_back(length, code);
        }
    }
    for (int i = 0; i < 60; ++i) samples.push_back(randomCodes(random, 40));
    return samples;
}

/// The samples as strings, by turns in UTF-8 and UTF-16.
inline std::vector<Vorn::String> sampleStrings() {
    std::vector<Vorn::String> strings;
    for (const std::u32string& codes : sampleCodes()) {
        if (strings.size() % 2 == 0)
            strings.push_back(Vorn::makeString(Vorn::TextView(reference::encodedUTF8(codes))));
        else
            strings.push_back(Vorn::makeString(Vorn::TextView(reference::encodedUTF16(codes))));
    }
    return strings;
}

/// Doubles of every size: zeros, subnormal and extreme ones, infinities and NaN, ties, integers, decimal fractions and
/// random bits.
inline std::vector<double> sampleDoubles(unsigned int randomCount) {
    std::vector<double> samples = {0.0,
                                   -0.0,
                                   1.0,
                                   -1.0,
                                   0.1,
                                   0.3,
                                   1.0 / 3,
                                   2.5,
                                   1e15,
                                   1e16,
                                   1e21,
                                   1e22,
                                   1e23,
                                   1e-5,
                                   1e-7,
                                   123456789.0,
                                   4294967295.0,
                                   4294967296.0,
                                   9007199254740991.0,
                                   9007199254740993.0,
                                   0x1p-1074,
                                   0x1p-1073,
                                   0x1.FFFFFFFFFFFFFp-1023,
                                   0x1p-1022,
                                   0x1.FFFFFFFFFFFFFp1023,
                                   2.2250738585072011e-308,
                                   5e-324,
                                   1.7976931348623157e308,
                                   8.41e21,
                                   9.5e-10,
                                   0.5,
                                   1.5,
                                   0x1p1017,
                                   0x1p1018,
                                   0x1p-149,
                                   0x1.FFFFFEp127};
    for (const std::uint64_t bits : {0x7FF0000000000000u, 0xFFF0000000000000u, 0x7FF8000000000000u}) {
        double value;
        std::memcpy(&value, &bits, sizeof value);
        samples.push_back(value);
    }
    Random random(2);
    for (unsigned int i = 0; i < randomCount; ++i) {
        const std::uint64_t bits = random.bits64();
        double value;
        std::memcpy(&value, &bits, sizeof value);
        samples.push_back(value);
        samples.push_back(static_cast<double>(random.below(100000)) / 1000);
        samples.push_back(static_cast<double>(static_cast<std::int64_t>(bits)));
    }
    return samples;
}

inline std::vector<float> sampleFloats(unsigned int randomCount) {
    std::vector<float> samples = {0.0f,
                                  -0.0f,
                                  1.0f,
                                  -1.0f,
                                  0.1f,
                                  0.3f,
                                  16777216.0f,
                                  16777217.0f,
                                  0x1p-149f,
                                  0x1p-126f,
                                  0x1.FFFFFCp-127f,
                                  0x1.FFFFFEp127f,
                                  3.4028235e38f,
                                  1e10f,
                                  1e-10f,
                                  0.000345f,
                                  8388609.5f};
    Random random(3);
    for (const unsigned int special : {0x7F800000u, 0xFF800000u, 0x7FC00000u}) {
        float value;
        std::memcpy(&value, &special, sizeof value);
        samples.push_back(value);
    }
    for (unsigned int i = 0; i < randomCount; ++i) {
        const unsigned int bits = random();
        float value;
        std::memcpy(&value, &bits, sizeof value);
        samples.push_back(value);
        samples.push_back(static_cast<float>(random.below(20001)) / 100.0f - 100.0f);
    }
    return samples;
}
