// Vorn: every public header.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/Config.h"
#include "Vorn/Exception.h"
#include "Vorn/ExceptionString.h"
#include "Vorn/Types.h"
