// Searches in texts of both encodings.
#include "Digest/Digest.h"
#include "Digest/Samples.h"

#include "Vorn/String/UTF8String.h"
#include "Vorn/Text/CodePoints.h"
#include "Vorn/Text/TextConversion.h"
#include "Vorn/Text/TextSearch.h"

using Vorn::String;
using Vorn::TextView;

namespace {

void addSearches(Digest& digest, TextView text, TextView needle) {
    const unsigned int from = Vorn::boundaryAtOrBefore(text, text.getLength() / 2);
    digest.addAll(Vorn::find(text, needle), Vorn::findLast(text, needle), Vorn::count(text, needle),
                  Vorn::contains(text, needle), Vorn::startsWith(text, needle), Vorn::endsWith(text, needle),
                  Vorn::findNext(text, needle, from), Vorn::findPrevious(text, needle, from),
                  Vorn::findIgnoringASCIICase(text, needle), Vorn::startsWithIgnoringASCIICase(text, needle),
                  Vorn::endsWithIgnoringASCIICase(text, needle));
    digest.addAll(Vorn::findAnyOf(text, needle), Vorn::findNoneOf(text, needle), Vorn::findLastAnyOf(text, needle),
                  Vorn::findLastNoneOf(text, needle));
}

} // namespace

void digestSearches(Digest& digest) {
    const std::vector<String> strings = sampleStrings();
    const String needles[] = {Vorn::makeString("a"),  Vorn::makeString(u"b"),     Vorn::makeString("ab"),
                              Vorn::makeString("BA"), Vorn::makeString("\u20AC"), Vorn::makeString(u"\U0001F600")};
    for (std::size_t i = 0; i < strings.size(); ++i) {
        for (const String& needle : needles) addSearches(digest, strings[i], needle);
        const String& other = strings[(i + 11) % strings.size()];
        if (!other.isEmpty()) addSearches(digest, strings[i], other);
        for (const unsigned int code : {0x61u, 0xE9u, 0x20ACu, 0x1F600u})
            digest.addAll(Vorn::find(strings[i], code), Vorn::findLast(strings[i], code),
                          Vorn::count(strings[i], code));
    }
    // Texts that nearly match, for the kernels of long texts.
    Random random(7);
    for (int round = 0; round < 300; ++round) {
        std::string text(random.below(700), 'x'), needle(1 + random.below(40), 'x');
        needle[random.below(static_cast<unsigned int>(needle.size()))] = 'y';
        for (char& c : text) c = random.below(30) == 0 ? 'y' : 'x';
        if (!text.empty() && random.below(2)) text.insert(random.below(static_cast<unsigned int>(text.size())), needle);
        addSearches(digest, TextView(text), TextView(needle));
    }

    const Vorn::ASCIITable letters(reinterpret_cast<const signed char*>("abcxyz"));
    for (const String& string : strings) {
        const std::string bytes = Vorn::toUTF8(string);
        const Vorn::UTF8String text(Vorn::makeString(TextView(bytes)));
        for (const int index : {0, 1, 5, -1, -4}) {
            digest.addOutcome([&] { return text.find('b', index); });
            digest.addOutcome([&] { return text.find(0x20ACu, index); });
            digest.addOutcome([&] { return text.find("ab", index); });
            digest.addOutcome([&] { return text.find(letters, index); });
            digest.addOutcome([&] { return text.skip('b', index); });
            digest.addOutcome([&] { return text.skip("a", index); });
            digest.addOutcome([&] { return text.skip(letters, index); });
            digest.addOutcome([&] { return text.match("b", index); });
            digest.addOutcome([&] { return text.match(letters, index); });
        }
    }
}
