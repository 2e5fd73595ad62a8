// ReportSize: the one check of the length of a report text.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <limits>

namespace VornPrivate {

/// Converts the length of a report text in bytes to the `int` that holds it. A text of more than 2^31 - 1 bytes ends
/// the process, as running out of memory does where report texts are made.
inline int reportSize(std::uint64_t size) noexcept {
    if (size > static_cast<std::uint64_t>(std::numeric_limits<int>::max())) std::abort();
    return static_cast<int>(size);
}

} // namespace VornPrivate
