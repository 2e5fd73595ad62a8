// TextFile: a file's text, as units of the encoding that the file is in.
#pragma once

#include <Vorn/Vorn.h>

#include <filesystem>
#include <vector>

/// A text as it came from a file. One of the two vectors holds its units, without the byte order mark and with a zero
/// unit behind them.
struct TextFile {
    bool isUTF16 = false;
    std::size_t fileSize = 0;
    std::vector<unsigned char> utf8;
    std::vector<Vorn::UTF16Char> utf16;

    /// Units of the text.
    unsigned int length() const { return static_cast<unsigned int>((isUTF16 ? utf16.size() : utf8.size()) - 1); }
};

/// Reads a file: UTF-16 if it starts with a byte order mark of it, of either order, else UTF-8. Throws
/// `std::runtime_error` with a message for people if the file cannot be read.
TextFile readTextFile(const std::filesystem::path& path);
