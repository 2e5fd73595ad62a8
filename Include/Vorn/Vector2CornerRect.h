// Vector2CornerRect: a rectangle as four free corners, the form that it takes once a matrix has rotated it.
//
// For upright rectangles take FloatRect. A plain record of 32 bytes, which shares nothing.
#pragma once

#include "Vorn/Vector2.h"

namespace Vorn {

/// Four points. Their order is the caller's; `Matrix3` transforms all four alike.
struct Vector2CornerRect {
    Vector2 corners[4];
};

static_assert(sizeof(Vector2CornerRect) == 32, "four points and nothing else");

} // namespace Vorn
