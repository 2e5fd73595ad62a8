// TextFile: the text of a file, as units of its encoding.
#pragma once

#include <Vorn/Vorn.h>

#include <filesystem>
#include <vector>

/// The text of a file. One of the two vectors contains its units, without the byte order mark and with a terminator.
struct TextFile {
    bool isUTF16 = false;
    std::size_t fileSize = 0;
    std::vector<unsigned char> utf8;
    std::vector<Vorn::UTF16Char> utf16;

    /// The number of units of the text.
    unsigned int length() const { return static_cast<unsigned int>((isUTF16 ? utf16.size() : utf8.size()) - 1); }
};

/// Reads a file as UTF-16 if it begins with a byte order mark of UTF-16, in either order, otherwise as UTF-8.
/// Throws `std::runtime_error` with a message for users if the file cannot be read.
TextFile readTextFile(const std::filesystem::path& path);
