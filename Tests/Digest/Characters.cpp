// Operations on single characters.
#include "Digest/Digest.h"
#include "Digest/Samples.h"

#include "Vorn/String/UTF16.h"
#include "Vorn/String/UTF32.h"
#include "Vorn/String/UTF8.h"

using Vorn::UTF16;
using Vorn::UTF16Char;
using Vorn::UTF32;
using Vorn::UTF8;

void digestCharacters(Digest& digest) {
    for (unsigned int c = 0; c < 0x110400; c += c < 0x3000 ? 1 : 251) {
        digest.addAll(UTF8::countUTF8(c), UTF8::getUTF8(c), UTF16::getUCS2Char(c), UTF16::getUTF16(c));
        digest.addOutcome([&] { return UTF16::getSurrogatePair(c); });
        digest.addOutcome([&] { return UTF8::getUTF8ForUTF16(UTF16::getUTF16(c)); });
    }
    for (unsigned int i = 0; i < 0x10000; i += i < 0x900 || i >= 0xD700 ? 1 : 61) {
        const auto unit = static_cast<UTF16Char>(i);
        digest.addAll(UTF8::countUTF8(unit), UTF8::getUTF8(unit), UTF8::getUTF8ForUCS2(unit), UTF16::isSurrogate(unit),
                      UTF16::isUCS2NonCharacter(unit), UTF32::getUTF32CharForUCS2(unit), UTF32::getUTF32Char(unit));
        digest.addOutcome([&] { return UTF8::getUTF8(unit, static_cast<UTF16Char>(0xDC00 + i % 0x500)); });
        digest.addOutcome([&] { return UTF32::getUTF32Char(unit, static_cast<UTF16Char>(0xDFFF - i % 0x500)); });
    }
    Random random(4);
    const auto byte = [&] {
        const unsigned char notable[] = {0x41, 0x7F, 0x80, 0x8F, 0x9F, 0xA0, 0xBF,
                                         0xC0, 0xC2, 0xDF, 0xE0, 0xED, 0xEF, 0xF0};
        return random.below(3) == 0 ? static_cast<unsigned char>(random()) : notable[random.below(14)];
    };
    for (unsigned int round = 0; round < 20000; ++round) {
        const unsigned char b[] = {byte(), byte(), byte(), byte()};
        const unsigned int word = random() >> (8 * random.below(4));
        digest.addAll(UTF8::validUTF8Lead(b[0]), UTF8::validUTF8Trail(b[0]), UTF32::getUTF32Char(b[0]));
        digest.addOutcome([&] { return UTF32::getUTF32Char(b[0], b[1]); });
        digest.addOutcome([&] { return UTF32::getUTF32Char(b[0], b[1], b[2]); });
        digest.addOutcome([&] { return UTF32::getUTF32Char(b[0], b[1], b[2], b[3]); });
        digest.addOutcome([&] { return UTF16::getUTF16(b[0], b[1], b[2], b[3]); });
        digest.addOutcome([&] { return UTF16::getUTF16ForUTF8(word); });
        digest.addOutcome([&] { return UTF32::getUTF32CharForUTF8(word); });
        digest.addOutcome([&] { return UTF32::getUTF32CharForUTF16(word); });
        unsigned int i = round % 2;
        digest.addOutcome([&] { return UTF32::getUTF32Char(b, i, 4u); });
        digest.add(i);
    }
}
