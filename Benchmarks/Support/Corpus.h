// Corpus: the texts of the benchmarks, each in both encodings and terminated.
#pragma once

#include <string>
#include <vector>

struct SampleText {
    std::string name; ///< script or file, as in the names of benchmarks
    std::string utf8;
    std::u16string utf16;
};

/// Words of several scripts with 4 to 65536 units of UTF-16, the same in every run.
std::vector<SampleText> generateWords();

/// Texts called "page", with the statistics of web pages: markup, digits, punctuation and blanks between the words of
/// the script. All scripts have 65536 units of UTF-16, some of them also 16 to 1048576.
std::vector<SampleText> generatePages();

/// Reads the text files of a folder, as UTF-16 if they begin with a byte order mark of UTF-16, otherwise as UTF-8.
/// Throws `std::runtime_error` for a file that cannot be read or is not text.
std::vector<SampleText> readTexts(const std::string& folder);
