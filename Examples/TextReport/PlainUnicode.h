// PlainUnicode: encodings by the book, written for comparison: slow, obvious, and independent of the library.
#pragma once

#include <Vorn/Vorn.h>

#include <optional>
#include <vector>

/// Unit at which the first character starts that the library refuses; none in a good text.
std::optional<unsigned int> findBadCharacter(const std::vector<unsigned char>& text, unsigned int length);
std::optional<unsigned int> findBadCharacter(const std::vector<Vorn::UTF16Char>& text, unsigned int length);

/// A good text in the other encoding, U+0000 as 0xC0 0x80 in UTF-8.
std::vector<Vorn::UTF16Char> convert(const std::vector<unsigned char>& text, unsigned int length);
std::vector<unsigned char> convert(const std::vector<Vorn::UTF16Char>& text, unsigned int length);
