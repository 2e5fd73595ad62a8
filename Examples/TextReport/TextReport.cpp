// TextReport: reports how the library processes text files.
//
//     TextReport [--no-speed] [FILE or FOLDER]...
//
// Each file is one row: its encoding, its length in bytes, in characters and in units of the other encoding, its
// charset, whether the conversion to the other encoding is correct, and the speed of validation. Without arguments the
// program reads the sample texts beside this source. For a file that is not valid text the row contains the report of
// the library and the position of the first invalid unit, without a byte order mark. For a file that cannot be read the
// program prints a message and returns 1.
#include "PlainUnicode.h"
#include "TextFile.h"

#include <Vorn/Vorn.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

namespace {

using Vorn::String;
using Vorn::StringData;
using Vorn::UTF16Char;

const char* nameOf(Vorn::StringDataSubCharset charset) {
    switch (charset) {
    case Vorn::STRING_DATA_ASCII: return "ASCII";
    case Vorn::STRING_DATA_UCS2: return "UCS-2";
    default: return "Unicode";
    }
}

// Validates the text as a borrowed buffer: the string refers to `units`, which outlives it.
template <class CharType>
String makeString(const std::vector<CharType>& units) {
    return String(units.data(), static_cast<unsigned int>(units.size()), Vorn::STRING_DATA_EXTERNAL);
}

// The speed of validation in megabytes per second.
template <class CharType>
double measureSpeed(const std::vector<CharType>& units) {
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    double bytes = 0;
    std::chrono::duration<double> elapsed{};
    do {
        for (int i = 0; i < 8; ++i) {
            makeString(units);
            bytes += static_cast<double>(units.size() * sizeof(CharType));
        }
        elapsed = Clock::now() - start;
    } while (elapsed.count() < 0.02);
    return bytes / elapsed.count() / 1e6;
}

// Compares the conversion of the library to the other encoding with the expected text.
template <class Other, class CharType>
std::string compareConversion(const StringData& data, const std::vector<CharType>& units, unsigned int length) {
    const std::vector<Other> expected = convert(units, length);
    try {
        const Other* const converted = data.getTerminatedBuffer<Other>();
        const unsigned int convertedLength = data.getBufferInfo<Other>().m_length;
        const std::size_t common = std::min<std::size_t>(expected.size(), convertedLength);
        const auto difference =
            std::mismatch(expected.begin(), expected.begin() + static_cast<std::ptrdiff_t>(common), converted);
        const auto position = static_cast<std::size_t>(difference.first - expected.begin());
        if (position < common || expected.size() != convertedLength)
            return "differs from unit " + std::to_string(position);
        return "yes";
    } catch (const Vorn::AllExceptions& exception) {
        return std::string("refused: ") + exception.getMessage();
    }
}

struct Row {
    std::string file;
    const char* encoding = "";
    std::size_t bytes = 0;
    bool valid = false;
    std::string report; // for a text that is not valid
    unsigned int characters = 0;
    const char* charset = "";
    bool nulls = false;
    std::string otherLength;
    std::string converts;
    std::optional<double> speed;
};

template <class Other, class CharType>
void describe(Row& row, const std::vector<CharType>& units, unsigned int length, bool withSpeed) {
    try {
        const String text = makeString(units);
        const StringData& data = *text.getData();
        row.valid = true;
        row.charset = nameOf(text.getCharset());
        row.nulls = text.haveEmbeddedNulls();
        row.characters = Vorn::stringDataGetUnicodeLength(data.getPrivateBuffer<CharType>(),
                                                          data.getBufferInfo<CharType>(), text.getCharset());
        try {
            row.otherLength = std::to_string(sizeof(Other) == 1 ? data.getUTF8Length() : data.getUTF16Length());
        } catch (const Vorn::AllExceptions&) {
            row.otherLength = "-";
        }
        row.converts = compareConversion<Other>(data, units, length);
        if (withSpeed) row.speed = measureSpeed(units);
    } catch (const Vorn::Exception<Vorn::E::UNICODE>& exception) {
        row.report = exception.what();
        const std::optional<unsigned int> bad = findBadCharacter(units, length);
        row.report += bad ? "\n    first bad character at unit " + std::to_string(*bad)
                          : "\n    where it is bad, this program cannot tell";
    }
}

Row makeRow(const std::filesystem::path& path, bool withSpeed) {
    const TextFile text = readTextFile(path);
    Row row;
    row.file = path.filename().string();
    row.encoding = text.isUTF16 ? "UTF-16" : "UTF-8";
    row.bytes = text.fileSize;
    if (text.isUTF16) {
        describe<unsigned char>(row, text.utf16, text.length(), withSpeed);
    } else {
        describe<UTF16Char>(row, text.utf8, text.length(), withSpeed);
    }
    return row;
}

void print(const std::vector<Row>& rows) {
    std::size_t width = 4;
    for (const Row& row : rows) width = std::max(width, row.file.size());
    const int fileWidth = static_cast<int>(width);
    std::printf("%-*s  %-8s  %9s  %10s  %-7s  %-5s  %9s  %8s  %s\n", fileWidth, "file", "encoding", "bytes",
                "characters", "charset", "nulls", "other", "MB/s", "converts");
    for (const Row& row : rows) {
        std::printf("%-*s  %-8s  %9zu  ", fileWidth, row.file.c_str(), row.encoding, row.bytes);
        if (!row.valid) {
            std::printf("not valid\n    %s\n", row.report.c_str());
            continue;
        }
        std::printf("%10u  %-7s  %-5s  %9s  ", row.characters, row.charset, row.nulls ? "yes" : "no",
                    row.otherLength.c_str());
        if (row.speed) {
            std::printf("%8.0f", *row.speed);
        } else {
            std::printf("%8s", "-");
        }
        std::printf("  %s\n", row.converts.c_str());
    }
    std::fflush(stdout);
}

// The files of an argument: the file itself, or all files of a folder and its subfolders, sorted by name.
std::vector<std::filesystem::path> filesOf(const std::filesystem::path& path) {
    if (!std::filesystem::is_directory(path)) return {path};
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path))
        if (entry.is_regular_file()) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

int main(int argumentCount, char** arguments) {
    bool withSpeed = true;
    std::vector<std::filesystem::path> paths;
    for (int i = 1; i < argumentCount; ++i) {
        if (std::strcmp(arguments[i], "--no-speed") == 0) {
            withSpeed = false;
        } else {
            paths.emplace_back(arguments[i]);
        }
    }
    if (paths.empty()) paths.emplace_back(TEXT_REPORT_SAMPLES);

    std::vector<Row> rows;
    std::vector<std::string> failures;
    for (const auto& path : paths) {
        try {
            for (const auto& file : filesOf(path)) {
                try {
                    rows.push_back(makeRow(file, withSpeed));
                } catch (const std::exception& exception) {
                    failures.emplace_back(exception.what());
                }
            }
        } catch (const std::filesystem::filesystem_error& error) {
            failures.emplace_back(error.what());
        }
    }
    if (!rows.empty()) print(rows);
    for (const std::string& failure : failures) std::cerr << "TextReport: cannot read " << failure << '\n';
    return failures.empty() ? 0 : 1;
}
