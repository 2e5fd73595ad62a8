// Unicode: all operations on single characters under one name.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/String/UTF16.h"
#include "Vorn/String/UTF32.h"
#include "Vorn/String/UTF8.h"

namespace Vorn {

/// UTF8, UTF16 and UTF32 in one, so that callers may write `Unicode::getUTF32Char`.
class VORN_API Unicode : public UTF8, public UTF16, public UTF32 {};

} // namespace Vorn
