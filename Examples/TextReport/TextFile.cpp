#include "TextFile.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace {

using Bytes = std::vector<unsigned char>;

Bytes readBytes(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error(path.string() + ": " + std::generic_category().message(errno));
    Bytes bytes;
    char block[65536];
    while (file.read(block, sizeof(block)), file.gcount() > 0) bytes.insert(bytes.end(), block, block + file.gcount());
    if (file.bad()) throw std::runtime_error(path.string() + ": reading failed");
    if (bytes.size() >= 0xFFFFFFFF) throw std::runtime_error(path.string() + ": too large for one text");
    return bytes;
}

bool startsWith(const Bytes& bytes, std::initializer_list<unsigned char> mark) {
    return bytes.size() >= mark.size() && std::equal(mark.begin(), mark.end(), bytes.begin());
}

} // namespace

TextFile readTextFile(const std::filesystem::path& path) {
    const Bytes bytes = readBytes(path);
    TextFile text;
    text.fileSize = bytes.size();
    const bool littleEndian = startsWith(bytes, {0xFF, 0xFE});
    text.isUTF16 = littleEndian || startsWith(bytes, {0xFE, 0xFF});
    if (text.isUTF16) {
        if (bytes.size() % 2 != 0) throw std::runtime_error(path.string() + ": UTF-16 with an odd number of bytes");
        for (std::size_t i = 2; i < bytes.size(); i += 2) {
            const unsigned int low = bytes[littleEndian ? i : i + 1];
            const unsigned int high = bytes[littleEndian ? i + 1 : i];
            text.utf16.push_back(static_cast<Vorn::UTF16Char>(high << 8 | low));
        }
        text.utf16.push_back(0);
    } else {
        text.utf8.assign(bytes.begin() + (startsWith(bytes, {0xEF, 0xBB, 0xBF}) ? 3 : 0), bytes.end());
        text.utf8.push_back(0);
    }
    return text;
}
