// Picture: a layout as an SVG picture.
#pragma once

#include "PanelFile.h"
#include "PanelLayout.h"

#include <string>

/// The SVG text of the picture. Coordinates are rounded, so that the text is the same on every platform.
std::string drawPicture(const PanelFile& file, const PanelLayout& layout);
