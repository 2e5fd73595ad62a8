// RectPoint: the points of a rectangle that a resizing can be pinned to. See FloatRect::inflate.
#pragma once

namespace Vorn {

/// The nine pins. Each axis has a low flag (left, top) and a high flag (right, bottom); a pin sets one at most.
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
