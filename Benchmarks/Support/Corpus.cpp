#include "Support/Corpus.h"

#include <unicode/unistr.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>

namespace {

// A range of characters of a script.
struct Script {
    const char* name;
    unsigned int first;
    unsigned int last;
    bool hasAllLengths; // of pages
};

constexpr Script SCRIPTS[] = {
    {"ascii", 'a', 'z', true},           {"latin", 0xE0, 0xFF, false},  {"cyrillic", 0x430, 0x44F, true},
    {"devanagari", 0x905, 0x939, false}, {"han", 0x4E00, 0x9FA5, true}, {"emoji", 0x1F600, 0x1F64F, true},
};

SampleText makeText(const std::string& name, const icu::UnicodeString& text) {
    SampleText sample;
    sample.name = name;
    text.toUTF8String(sample.utf8);
    sample.utf16.assign(text.getBuffer(), static_cast<std::size_t>(text.length()));
    return sample;
}

icu::UnicodeString generate(const Script& script, int length) {
    std::mt19937 random(42);
    const auto below = [&](unsigned int limit) { return static_cast<unsigned int>(random()) % limit; };
    icu::UnicodeString text;
    while (text.length() < length) {
        const bool wordEnds = below(6) == 0;
        // Latin text is ASCII with some accents, as in most languages with this script.
        const bool plain = script.first == 0xE0 && below(8) != 0;
        const unsigned int code = wordEnds ? ' '
                                  : plain  ? 'a' + below(26)
                                           : script.first + below(script.last - script.first + 1);
        text.append(static_cast<UChar32>(text.length() + 1 == length && code > 0xFFFF ? ' ' : code));
    }
    return text;
}

// Words of the script, with markup, numbers and punctuation between them: about a third is ASCII.
icu::UnicodeString generatePage(const Script& script, int length) {
    static constexpr const char* BETWEEN[] = {"</p>\n<p class=\"text\">",
                                              "<a href=\"/wiki/page?id=1204\">",
                                              "</a>, ",
                                              " <b>",
                                              "</b> ",
                                              " (1987-2024) ",
                                              ". ",
                                              ", ",
                                              ", ",
                                              " 42 "};
    std::mt19937 random(43);
    const auto below = [&](unsigned int limit) { return static_cast<unsigned int>(random()) % limit; };
    icu::UnicodeString text;
    while (text.length() < length) {
        for (unsigned int left = 2 + below(9); left != 0; --left) {
            const bool plain = script.first == 0xE0 && below(8) != 0;
            const unsigned int code = plain ? 'a' + below(26) : script.first + below(script.last - script.first + 1);
            text.append(static_cast<UChar32>(code));
        }
        text.append(below(5) == 0 ? icu::UnicodeString(BETWEEN[below(std::size(BETWEEN))]) : icu::UnicodeString(" "));
    }
    // No pair is divided at the end.
    text.truncate(U16_IS_TRAIL(text.charAt(length)) ? length - 1 : length);
    while (text.length() < length) text.append(u' ');
    return text;
}

} // namespace

std::vector<SampleText> generateWords() {
    std::vector<SampleText> texts;
    for (const Script& script : SCRIPTS)
        for (const int length : {4, 8, 16, 64, 1024, 65536})
            texts.push_back(makeText(script.name, generate(script, length)));
    return texts;
}

std::vector<SampleText> generatePages() {
    std::vector<SampleText> texts;
    for (const Script& script : SCRIPTS) {
        for (const int length : {16, 64, 256, 1024, 4096, 16384, 65536, 1048576})
            if (length == 65536 || script.hasAllLengths)
                texts.push_back(makeText(std::string(script.name) + " page", generatePage(script, length)));
    }
    return texts;
}

std::vector<SampleText> readTexts(const std::string& folder) {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.is_regular_file()) paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());

    std::vector<SampleText> texts;
    for (const auto& path : paths) {
        std::ifstream file(path, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        if (!file) throw std::runtime_error("cannot read " + path.string());
        icu::UnicodeString text;
        if (bytes.compare(0, 2, "\xFF\xFE") == 0) {
            for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
                const auto low = static_cast<unsigned char>(bytes[i]);
                const auto high = static_cast<unsigned char>(bytes[i + 1]);
                text.append(static_cast<char16_t>(high << 8 | low));
            }
        } else {
            text = icu::UnicodeString::fromUTF8(bytes);
        }
        if (text.indexOf(static_cast<UChar32>(0xFFFD)) >= 0)
            throw std::runtime_error(path.string() + " is neither UTF-8 nor little-endian UTF-16 with a mark");
        texts.push_back(makeText(path.stem().string(), text));
    }
    return texts;
}
