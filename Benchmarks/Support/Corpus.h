// Corpus: the texts that benchmarks run on, each in both encodings and terminated.
#pragma once

#include <string>
#include <vector>

struct SampleText {
    std::string name; ///< script and length, as benchmark names show it
    std::string utf8;
    std::u16string utf16;
};

/// Texts of several scripts and lengths (8, 64, 1024 and 65536 units of UTF-16), the same in every run.
std::vector<SampleText> generateTexts();

/// The text files of a folder, in UTF-16 if they start with a byte order mark of it, else in UTF-8. Throws
/// `std::runtime_error` for a file that cannot be read or is no text.
std::vector<SampleText> readTexts(const std::string& folder);
