/// @file
/// Text: includes the headers of everyday text. Vorn/Text/FormatFmt.h and Vorn/Text/FormatStd.h, which need libraries
/// or time of their own, are not among them.
///
///     const String title = makeString(line);
///     if (startsWith(title, "#")) show(trim(slice(title, 1)));
#pragma once

#include "Vorn/Text/CharacterSet.h"
#include "Vorn/Text/CodePoints.h"
#include "Vorn/Text/MakeString.h"
#include "Vorn/Text/Name.h"
#include "Vorn/Text/TextBuilder.h"
#include "Vorn/Text/TextChange.h"
#include "Vorn/Text/TextConversion.h"
#include "Vorn/Text/TextNumbers.h"
#include "Vorn/Text/TextOrder.h"
#include "Vorn/Text/TextPieces.h"
#include "Vorn/Text/TextSearch.h"
#include "Vorn/Text/TextStreams.h"
#include "Vorn/Text/TextView.h"
