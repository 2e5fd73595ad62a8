/// @file
/// RectPoint: the point of a rectangle that keeps its position in a resize. See FloatRect::inflate and
/// FloatRect::resize.
#pragma once

namespace Vorn {

/// The nine pins. Each axis has a flag for its low side (left, top) and one for its high side (right, bottom). A pin
/// sets at most one flag of each axis; an axis without a flag is centred.
namespace RectPoint {
enum Flags : unsigned int {
    CENTRE = 0,
    LEFT = 1,
    TOP = 2,
    RIGHT = 4,
    BOTTOM = 8,
    TOP_LEFT = TOP | LEFT,
    TOP_RIGHT = TOP | RIGHT,
    BOTTOM_LEFT = BOTTOM | LEFT,
    BOTTOM_RIGHT = BOTTOM | RIGHT
};
} // namespace RectPoint

} // namespace Vorn
