/// @file
/// ReportSize: the check of the length of a report text.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <limits>

namespace VornPrivate {

/// Converts the length of a report text in bytes to `int`. Calls `abort` for more than 2^31 - 1 bytes, as the functions
/// that build report texts do if memory ends.
inline int reportSize(std::uint64_t size) noexcept {
    if (size > static_cast<std::uint64_t>(std::numeric_limits<int>::max())) std::abort();
    return static_cast<int>(size);
}

} // namespace VornPrivate
