// Which texts are valid, where they are not, and why.
#include "Digest/Digest.h"
#include "Digest/Samples.h"

#include "Vorn/String/String.h"
#include "Vorn/Text/CodePoints.h"

using Vorn::TextView;

namespace {

void addVerdict(Digest& digest, TextView view) {
    const Vorn::MadeString made = Vorn::tryMakeString(view);
    digest.addAll(made.errorOffset, made.error ? made.error : "valid", Vorn::isASCII(view));
    digest.addView(Vorn::makeStringReplacing(view));
    digest.add(Vorn::codePointCount(view));
    for (const Vorn::UTF32Char code : Vorn::codePoints(view)) digest.add(code);
}

template <class Unit, class Text>
void addRecord(Digest& digest, const Text& text) {
    digest.addOutcome([&] {
        const Vorn::String string(reinterpret_cast<const Unit*>(text.data()), static_cast<unsigned int>(text.size()));
        digest.addAll(static_cast<int>(string.getCharset()), string.haveEmbeddedNulls());
        digest.addOutcome([&] { return string.getUnicodeLength(); });
        return string;
    });
}

} // namespace

void digestValidation(Digest& digest) {
    for (const std::u32string& codes : sampleCodes()) {
        const std::string bytes = reference::encodedUTF8(codes);
        const std::u16string units = reference::encodedUTF16(codes);
        addVerdict(digest, TextView(bytes));
        addVerdict(digest, TextView(units));
        addRecord<unsigned char>(digest, bytes);
        addRecord<Vorn::UTF16Char>(digest, units);
    }
    Random random(5);
    for (int round = 0; round < 1500; ++round) {
        const std::string bytes = randomBytes(random, round % 10 == 0 ? 80 : 6);
        const std::u16string units = randomUnits(random, round % 10 == 0 ? 80 : 6);
        addVerdict(digest, TextView(bytes));
        addVerdict(digest, TextView(units));
        addRecord<unsigned char>(digest, bytes);
        addRecord<Vorn::UTF16Char>(digest, units);
    }
}
