/// @file
/// TextBlock: allocates and clears blocks of text. Private.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace VornPrivate {

/// The text of the static records of empty strings.
template <class CharType>
inline constexpr CharType EMPTY_TEXT[] = {0};

/// Allocates a block for `length` units and a terminator. Throws `std::bad_alloc`, also for a size that no pointer of
/// the process can address.
template <class CharType>
std::unique_ptr<CharType[]> allocateText(std::uint64_t length) {
    const std::uint64_t size = length + 1;
    return std::unique_ptr<CharType[]>(new CharType[size < SIZE_MAX ? static_cast<std::size_t>(size) : SIZE_MAX]);
}

/// Sets the units of a block from `written` up to `size` to zero.
template <class CharType>
void clearUnwritten(CharType* block, std::size_t written, std::size_t size) {
    if (written < size) std::fill(block + written, block + size, static_cast<CharType>(0));
}

} // namespace VornPrivate
