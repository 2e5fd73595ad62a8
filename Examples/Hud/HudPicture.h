// HudPicture: draws a display.
#pragma once

#include "HudFile.h"

/// Returns the display as an SVG picture.
Vorn::String drawPicture(const Hud& hud);
