// Sentinels: the noncharacters that stand for results that are no character. Support of UTF8.h, UTF16.h and UTF32.h;
// not for direct use.
#pragma once

namespace VornPrivate {

inline constexpr unsigned int TRAIL_BYTE = 0xFDD0;       ///< a UTF-8 trail byte
inline constexpr unsigned int FIRST_SURROGATE = 0xFDD1;  ///< a first surrogate; a second one must follow
inline constexpr unsigned int SECOND_SURROGATE = 0xFDD2; ///< a second surrogate
inline constexpr unsigned int LEAD_OF_TWO = 0xFDD2;      ///< a byte that leads a 2-byte sequence
inline constexpr unsigned int LEAD_OF_THREE = 0xFDD3;    ///< a byte that leads a 3-byte sequence
inline constexpr unsigned int LEAD_OF_FOUR = 0xFDD4;     ///< a byte that leads a 4-byte sequence
inline constexpr unsigned int INVALID_CHARACTER = 0xFDEF;
inline constexpr unsigned int END_OF_BUFFER = 0xFFFF; ///< the index of a reader is at or past the end

} // namespace VornPrivate
