// Units of texts for tests of strings in both encodings.
#pragma once

#include "Vorn/Types.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// ASCII text as units of one encoding, with nothing behind them.
template <class CharType>
std::vector<CharType> unitsOf(std::string_view ascii) {
    std::vector<CharType> units;
    for (const char c : ascii) units.push_back(static_cast<CharType>(static_cast<unsigned char>(c)));
    return units;
}

/// Units in a block of array new that ends with the last of them, so that the address sanitizer sees any step beyond.
template <class CharType>
CharType* newBlock(const std::vector<CharType>& units) {
    CharType* const block = new CharType[units.size()];
    std::copy(units.begin(), units.end(), block);
    return block;
}

/// The same for ASCII text; end it with "\0"s to have it terminated.
template <class CharType>
CharType* newBlock(std::string_view ascii) {
    return newBlock(unitsOf<CharType>(ascii));
}

/// A caller's buffer, as `newBlock` makes it.
template <class CharType>
std::unique_ptr<CharType[]> callerBuffer(std::string_view ascii) {
    return std::unique_ptr<CharType[]>(newBlock<CharType>(ascii));
}

/// Units that are ASCII as a text.
template <class CharType>
std::string narrow(const CharType* units, std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) text.push_back(static_cast<char>(units[i]));
    return text;
}

/// A terminated text of ASCII units.
template <class CharType>
std::string narrow(const CharType* units) {
    std::size_t size = 0;
    while (units[size]) ++size;
    return narrow(units, size);
}

/// The encoding that is not `CharType`'s.
template <class CharType>
using OtherEncoding = std::conditional_t<sizeof(CharType) == 1, Vorn::UTF16Char, unsigned char>;
