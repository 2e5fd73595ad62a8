/// @file
/// TextScan: validates a text of which a string is to be made. Private.
#pragma once

#include "Vorn/Text/RecordAccess.h"
#include "Vorn/Text/TextView.h"

#include <cstdint>

namespace VornPrivate {

/// What a scan finds out about a text and the string of it.
struct TextScan {
    TextProperties properties;
    std::uint64_t length = 0;                   ///< units of the string in the encoding of the text
    bool isSame = true;                         ///< true if the string has the units of the text
    unsigned int errorOffset = Vorn::NOT_FOUND; ///< the first malformed unit, unless it is replaced
    const char* error = nullptr;                ///< the reason, or null
};

/// Validates a text. With `isReplacing`, malformed parts and noncharacters count as U+FFFD and are no error.
TextScan scanText(Vorn::TextView text, bool isReplacing);

/// Validates a text. Throws `Exception<7>` with the offset and the reason if it is malformed.
TextScan requireValid(Vorn::TextView text);

} // namespace VornPrivate
