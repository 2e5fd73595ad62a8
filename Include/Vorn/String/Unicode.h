/// @file
/// Unicode: all operations on single characters in one class.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/String/UTF16.h"
#include "Vorn/String/UTF32.h"
#include "Vorn/String/UTF8.h"

namespace Vorn {

/// Combines UTF8, UTF16 and UTF32, so that all their operations can be called as `Unicode::getUTF32Char`.
class VORN_API Unicode : public UTF8, public UTF16, public UTF32 {};

} // namespace Vorn
