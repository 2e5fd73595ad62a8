/// @file
/// TextSearch: the search for one text in another. Private.
#pragma once

#include <cstddef>
#include <string_view>

namespace VornPrivate {

/// Returns the offset of the first occurrence of `needle` in `text`, or `std::string_view::npos`. The empty needle is
/// found at 0. Allocates nothing. The time is linear in the sum of both lengths for all texts.
std::size_t findText(std::string_view text, std::string_view needle) noexcept;

/// The same, also in linear time but slower on ordinary text. `findText` continues with this search if too many
/// comparisons fail. The needle has at least one byte.
std::size_t findTextTwoWay(std::string_view text, std::string_view needle) noexcept;

} // namespace VornPrivate
