/// @file
/// Rect: a rectangle as four independent sides, left, top, right and bottom; the base class of FloatRect.
///
/// RectBase is the plain struct; Rect adds constructors, access by number and equality. A rectangle may be inverted
/// (left greater than right, or top greater than bottom); no operation here checks that. Use FloatRect for arithmetic.
///
/// Sides, orientations, ends and corners have fixed numbers:
///
///     side           0 left, 1 top, 2 right, 3 bottom
///     orientation    0 horizontal (left, right), 1 vertical (top, bottom)
///     end            0 the low side (left, top), 1 the high side (right, bottom); side = 2 * end + orientation
///     corner         0 left top, 1 left bottom, 2 right top, 3 right bottom
///
/// Cost: a value of 16 bytes; all operations are inline and allocate nothing. An operation that is not `noexcept`
/// checks its arguments.
///
/// Threads: objects share no state.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/XYPair.h"

namespace Vorn {

/// A plain struct of four sides.
template <class Component>
struct RectBase {
    Component left;
    Component top;
    Component right;
    Component bottom;
};

/// Four sides of type `Component` that are passed as `Parameter`s. Only `Rect<float, float>` is defined.
template <class Component, class Parameter>
class Rect;

/// Four sides of floats.
template <>
class Rect<float, float> : public RectBase<float> {
public:
    using Pair = XYPair<float, float>;

    /// Leaves all four sides uninitialised, also in `Rect<float, float>()`. For zero write `(0.0f)`.
    Rect() noexcept {}

    constexpr Rect(const RectBase<float>& rect) noexcept : RectBase<float>(rect) {}
    constexpr Rect(const Rect& other) noexcept = default;

    /// Sets the four sides.
    constexpr Rect(float leftSide, float topSide, float rightSide, float bottomSide) noexcept
        : RectBase<float>{leftSide, topSide, rightSide, bottomSide} {}

    /// A horizontal line: `topAndBottom` is the top and the bottom side.
    constexpr Rect(float leftSide, float topAndBottom, float rightSide) noexcept
        : Rect(leftSide, topAndBottom, rightSide, topAndBottom) {}

    /// A point, NOT a size: `x` is left and right, `y` is top and bottom.
    constexpr Rect(float x, float y) noexcept : Rect(x, y, x, y) {}

    /// Sets all four sides to the value.
    constexpr explicit Rect(float value) noexcept : Rect(value, value, value, value) {}

    /// A point: `point.x` is left and right, `point.y` is top and bottom.
    constexpr explicit Rect(const Pair& point) noexcept : Rect(point.x, point.y) {}

    /// A rectangle from two opposite corners.
    constexpr Rect(const Pair& leftTop, const Pair& rightBottom) noexcept
        : Rect(leftTop.x, leftTop.y, rightBottom.x, rightBottom.y) {}

    constexpr Rect& operator=(const Rect& other) noexcept = default;
    constexpr Rect& operator=(const RectBase<float>& rect) noexcept { return *this = Rect(rect); }

    /// Sets all four sides as the constructor with the same parameters does.
    /// @{
    constexpr void setAll(float leftSide, float topSide, float rightSide, float bottomSide) noexcept {
        *this = Rect(leftSide, topSide, rightSide, bottomSide);
    }
    constexpr void setAll(float leftSide, float topAndBottom, float rightSide) noexcept {
        *this = Rect(leftSide, topAndBottom, rightSide);
    }
    constexpr void setAll(float x, float y) noexcept { *this = Rect(x, y); }
    constexpr void setAll(float value) noexcept { *this = Rect(value); }
    constexpr void setAll(const Pair& point) noexcept { *this = Rect(point); }
    constexpr void setAll(const Pair& leftTop, const Pair& rightBottom) noexcept { *this = Rect(leftTop, rightBottom); }
    /// @}

    /// Access to a side by its number, 0 to 3.
    /// Throws `Exception<1>`: "side < 4 : Invalid side!".
    /// @{
    float operator[](unsigned int side) const {
        VORN_ASSERT(side < 4, "Invalid side!", "Vorn::Rect<float,float>::operator []");
        return this->*SIDES[side];
    }
    float& operator[](unsigned int side) {
        VORN_ASSERT(side < 4, "Invalid side!", "Vorn::Rect<float,float>::operator []");
        return this->*SIDES[side];
    }
    float getSide(unsigned int side) const {
        VORN_ASSERT(side < 4, "Invalid side!", "Vorn::Rect<float,float>::getSide");
        return this->*SIDES[side];
    }
    void setSide(unsigned int side, float value) {
        VORN_ASSERT(side < 4, "Invalid side!", "Vorn::Rect<float,float>::setSide");
        this->*SIDES[side] = value;
    }
    /// @}

    /// Access to a side by orientation and end: `side` is the END, 0 for low or 1 for high, NOT a side number.
    /// Throws `Exception<1>`: "orient < 2 : Invalid orient!" or "side < 2 : Invalid side!".
    /// @{
    float getSide(unsigned int orient, unsigned int side) const {
        VORN_ASSERT(orient < 2, "Invalid orient!", "Vorn::Rect<float,float>::getSide");
        VORN_ASSERT(side < 2, "Invalid side!", "Vorn::Rect<float,float>::getSide");
        return this->*SIDES[2 * side + orient];
    }
    void setSide(unsigned int orient, unsigned int side, float value) {
        VORN_ASSERT(orient < 2, "Invalid orient!", "Vorn::Rect<float,float>::setSide");
        VORN_ASSERT(side < 2, "Invalid side!", "Vorn::Rect<float,float>::setSide");
        this->*SIDES[2 * side + orient] = value;
    }
    /// @}

    /// Sets both sides of an orientation.
    /// Throws `Exception<1>`: "orient < 2 : invalid orientation".
    void setByOrient(unsigned int orient, float low, float high) {
        VORN_ASSERT(orient < 2, "invalid orientation", "Vorn::Rect<float,float>::setByOrient");
        this->*SIDES[orient] = low;
        this->*SIDES[2 + orient] = high;
    }

    /// Sets the two sides that meet in a corner.
    /// Throws `Exception<1>`: "corner < 4 : Invalid corner!".
    /// @{
    void setByCorner(unsigned int corner, float x, float y) {
        VORN_ASSERT(corner < 4, "Invalid corner!", "Vorn::Rect<float,float>::setByCorner");
        this->*SIDES[corner & 2] = x;
        this->*SIDES[2 * (corner & 1) + 1] = y;
    }
    void setByCorner(unsigned int corner, const Pair& point) { setByCorner(corner, point.x, point.y); }
    /// @}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wfloat-equal"
    /// Compares the floats exactly: 0.0 equals -0.0, and NaN equals nothing, including itself.
    constexpr bool operator==(const Rect& other) const noexcept {
        return left == other.left && top == other.top && right == other.right && bottom == other.bottom;
    }
#pragma GCC diagnostic pop
    constexpr bool operator!=(const Rect& other) const noexcept { return !(*this == other); }

private:
    static constexpr float RectBase<float>::*SIDES[4] = {&RectBase<float>::left, &RectBase<float>::top,
                                                         &RectBase<float>::right, &RectBase<float>::bottom};
};

static_assert(sizeof(Rect<float, float>) == 16, "four floats and nothing else");

} // namespace Vorn
