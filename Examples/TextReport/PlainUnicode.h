// PlainUnicode: simple implementations of the encodings for comparison, slow and independent of the library.
#pragma once

#include <Vorn/Vorn.h>

#include <optional>
#include <vector>

/// The index of the unit at which the first invalid character begins; no value for valid text.
std::optional<unsigned int> findBadCharacter(const std::vector<unsigned char>& text, unsigned int length);
std::optional<unsigned int> findBadCharacter(const std::vector<Vorn::UTF16Char>& text, unsigned int length);

/// Converts a valid text to the other encoding. U+0000 is 0xC0 0x80 in UTF-8.
std::vector<Vorn::UTF16Char> convert(const std::vector<unsigned char>& text, unsigned int length);
std::vector<unsigned char> convert(const std::vector<Vorn::UTF16Char>& text, unsigned int length);
