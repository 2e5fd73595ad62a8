// Edits of UTF8String at random positions, also refused ones.
#include "Digest/Digest.h"
#include "Digest/Samples.h"

#include "Vorn/String/UTF8String.h"

void digestEdits(Digest& digest) {
    Random random(9);
    const unsigned int codes[] = {0x41, 0x7F, 0xE9, 0x7FF, 0x800, 0x20AC, 0xFFFD, 0x10000, 0x1F600, 0x10FFFD, 0x110000};
    const std::vector<std::u32string> samples = sampleCodes();
    const auto sample = [&] {
        std::u32string text = samples[random.below(static_cast<unsigned int>(samples.size()))];
        text.resize(text.size() % 20);
        return Vorn::makeString(Vorn::TextView(reference::encodedUTF8(text)));
    };
    for (int game = 0; game < 150; ++game) {
        Vorn::UTF8String text(Vorn::makeString("start"));
        for (int move = 0; move < 12; ++move) {
            const int index = static_cast<int>(random.below(30)) - 3;
            const unsigned int code = codes[random.below(11)], length = random.below(12);
            digest.addOutcome([&] {
                switch (random.below(8)) {
                case 0: return text.append(code);
                case 1: return text.append(sample());
                case 2: return text.insert(code, index);
                case 3: return text.insert(sample(), index);
                case 4: return text.replace(code, index, length);
                case 5: return text.replace(sample(), index, length);
                case 6: return text.erase(index, length);
                default: return text.appendHexaDecimal(random(), Vorn::HEX_WITH_PREFIX);
                }
            });
            digest.addAll(text, text.getLength());
            digest.addOutcome([&] { return text.next(static_cast<unsigned int>(index)); });
        }
    }
}
