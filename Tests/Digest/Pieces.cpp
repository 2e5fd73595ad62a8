// Parts of texts, and texts that are put together or changed.
#include "Digest/Digest.h"
#include "Digest/Samples.h"

#include "Vorn/Text/TextBuilder.h"
#include "Vorn/Text/TextChange.h"
#include "Vorn/Text/TextPieces.h"

using Vorn::String;

void digestPieces(Digest& digest) {
    const std::vector<String> samples = sampleStrings();
    Random random(8);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const String& sample = samples[i];
        const String& other = samples[(i + 3) % samples.size()];
        const String text =
            Vorn::concat(" \t", sample, ", ", other, "\r\n", static_cast<int>(i), U'\u2028', 0.5f, "b ");
        digest.add(text);
        digest.addAll(Vorn::trim(text), Vorn::trimStart(text), Vorn::trimEnd(text), Vorn::substring(text, 2, 9),
                      Vorn::last(text, 4), Vorn::dropLast(text, 4), Vorn::removePrefix(text, " "),
                      Vorn::removeSuffix(text, "b "));
        for (const Vorn::TextPiece& piece : Vorn::split(text, "b")) digest.addView(piece);
        for (const Vorn::TextPiece& piece : Vorn::splitNonEmpty(text)) digest.addView(piece);
        for (const Vorn::TextPiece& line : Vorn::lines(text)) digest.addView(line);
        digest.addAll(Vorn::replaceAll(text, "b", "\u20AC"), Vorn::replaceFirst(text, "bb", u"x"),
                      Vorn::insert(text, 1, sample), Vorn::erase(text, 0, 2), Vorn::repeat(text, 3),
                      Vorn::padStart(sample, 20, U'\u00E9'), Vorn::padEnd(sample, 20), Vorn::toUpperASCII(text),
                      Vorn::toLowerASCII(text));
        Vorn::TextBuilder builder;
        for (unsigned int count = random.below(6); count-- > 0;)
            builder.append(samples[(i * 7 + count) % samples.size()], '|', random.below(1000), u'\u20AC');
        digest.add(builder.take());
    }
    digest.add(Vorn::join(samples, ", "));
}
