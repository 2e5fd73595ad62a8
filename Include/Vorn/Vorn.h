// Vorn: every public header.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/Config.h"
#include "Vorn/Exception.h"
#include "Vorn/ExceptionString.h"
#include "Vorn/String/String.h"
#include "Vorn/String/StringData.h"
#include "Vorn/String/StringDataHelper.h"
#include "Vorn/String/StringDataTypes.h"
#include "Vorn/String/UTF16.h"
#include "Vorn/String/UTF32.h"
#include "Vorn/String/UTF8.h"
#include "Vorn/String/Unicode.h"
#include "Vorn/Types.h"
