/// @file
/// HexDigit: the digits of hexadecimal text.
#pragma once

#include "Vorn/Private/UnicodeBits.h" // range tests without branches

namespace VornPrivate {

/// The upper-case digit of a value from 0 to 15.
constexpr unsigned char hexDigitChar(unsigned int v) noexcept {
    return static_cast<unsigned char>(v + select(belowMask(v, 10), '0', 'A' - 10));
}

} // namespace VornPrivate
