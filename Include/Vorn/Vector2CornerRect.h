/// @file
/// Vector2CornerRect: a rectangle as four independent corners, the result of a rotation by a matrix.
///
/// Use FloatRect for rectangles that are parallel to the axes.
///
/// Cost: a plain struct of 32 bytes.
///
/// Threads: objects share no state.
#pragma once

#include "Vorn/Vector2.h"

namespace Vorn {

/// Four points in any order. `Matrix3` transforms each of them.
struct Vector2CornerRect {
    Vector2 corners[4];
};

static_assert(sizeof(Vector2CornerRect) == 32, "four points and nothing else");

} // namespace Vorn
