/// @file
/// StringDataScan: the validation of a text on construction of its string record. Private.
#pragma once

#include "Vorn/String/StringDataTypes.h"
#include "Vorn/Types.h"

namespace VornPrivate {

/// The bit of a scan result that states that the text contains U+0000. The two bits below it are the
/// StringDataSubCharset.
inline constexpr unsigned int SCAN_HAS_NULL = 4;

} // namespace VornPrivate

namespace Vorn {

/// Validates a text in one pass. Returns the scan result: the charset, and SCAN_HAS_NULL. A `length` of 0xFFFFFFFF is
/// replaced with the number of units before the terminator. Throws `Exception<4>`: "Buffer is null!", `Exception<7>` if
/// the text is malformed, and `Exception<4>`: "length : text too long!" if no terminator is found.
/// @{
unsigned int stringDataScanBuffer(const unsigned char* buffer, unsigned int& length);
unsigned int stringDataScanBuffer(const UTF16Char* buffer, unsigned int& length);
/// @}

} // namespace Vorn
