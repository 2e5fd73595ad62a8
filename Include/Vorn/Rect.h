// Rect: four independent sides, left, top, right and bottom; the base of FloatRect.
//
// RectBase is the plain record, Rect adds construction, access by number and equality. A rectangle may be inverted,
// with left beyond right, and nothing here minds. For everything that computes take FloatRect.
//
// Numbers are part of the interface:
//
//     side           0 left, 1 top, 2 right, 3 bottom
//     orientation    0 horizontal (left, right), 1 vertical (top, bottom)
//     end            0 the low side (left, top), 1 the high side (right, bottom); side = 2 * end + orientation
//     corner         0 left top, 1 left bottom, 2 right top, 3 right bottom
//
// Cost: a value of 16 bytes; everything inlines and nothing allocates. What is not noexcept has a check.
// Threads: plain values, which share nothing.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/XYPair.h"

namespace Vorn {

/// Four sides, a plain record.
template <class Component>
struct RectBase {
    Component left;
    Component top;
    Component right;
    Component bottom;
};

/// Four sides of `Component`s that are handed over as `Parameter`s. Defined for floats and for nothing else.
template <class Component, class Parameter>
class Rect;

/// Four sides of floats.
template <>
class Rect<float, float> : public RectBase<float> {
public:
    using Pair = XYPair<float, float>;

    /// Leaves all four sides unwritten, also in `Rect<float, float>()`; write `(0.0f)` for zero.
    Rect() noexcept {}

    constexpr Rect(const RectBase<float>& rect) noexcept : RectBase<float>(rect) {}
    constexpr Rect(const Rect& other) noexcept = default;

    /// In the order left, top, right, bottom.
    constexpr Rect(float leftSide, float topSide, float rightSide, float bottomSide) noexcept
        : RectBase<float>{leftSide, topSide, rightSide, bottomSide} {}

    /// A horizontal line: the second float is top and bottom.
    constexpr Rect(float leftSide, float topAndBottom, float rightSide) noexcept
        : Rect(leftSide, topAndBottom, rightSide, topAndBottom) {}

    /// A point: both floats say where, none is a size.
    constexpr Rect(float x, float y) noexcept : Rect(x, y, x, y) {}

    /// All four sides take the value.
    constexpr explicit Rect(float value) noexcept : Rect(value, value, value, value) {}

    /// A point.
    constexpr explicit Rect(const Pair& point) noexcept : Rect(point.x, point.y) {}

    /// Two opposite corners.
    constexpr Rect(const Pair& leftTop, const Pair& rightBottom) noexcept
        : Rect(leftTop.x, leftTop.y, rightBottom.x, rightBottom.y) {}

    constexpr Rect& operator=(const Rect& other) noexcept = default;
    constexpr Rect& operator=(const RectBase<float>& rect) noexcept { return *this = Rect(rect); }

    /// As the constructors with the same arguments.
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

    /// By side number. Exception 1 "side < 4 : Invalid side!" for any other.
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

    /// By orientation and end, which `side` holds here: 0 the low one, 1 the high one. Exception 1 "orient < 2 :
    /// Invalid orient!" or "side < 2 : Invalid side!" for any other.
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

    /// Sets both ends of an orientation. Exception 1 "orient < 2 : invalid orientation" for any other.
    void setByOrient(unsigned int orient, float low, float high) {
        VORN_ASSERT(orient < 2, "invalid orientation", "Vorn::Rect<float,float>::setByOrient");
        this->*SIDES[orient] = low;
        this->*SIDES[2 + orient] = high;
    }

    /// Sets the two sides that meet in a corner; the other two stay. Exception 1 "corner < 4 : Invalid corner!" for any
    /// other number.
    /// @{
    void setByCorner(unsigned int corner, float x, float y) {
        VORN_ASSERT(corner < 4, "Invalid corner!", "Vorn::Rect<float,float>::setByCorner");
        this->*SIDES[corner & 2] = x;
        this->*SIDES[2 * (corner & 1) + 1] = y;
    }
    void setByCorner(unsigned int corner, const Pair& point) { setByCorner(corner, point.x, point.y); }
    /// @}

    /// Exact comparison of floats: 0.0 equals -0.0, and a NaN equals nothing, not even itself.
    constexpr bool operator==(const Rect& other) const noexcept {
        return left == other.left && top == other.top && right == other.right && bottom == other.bottom;
    }
    constexpr bool operator!=(const Rect& other) const noexcept { return !(*this == other); }

private:
    static constexpr float RectBase<float>::*SIDES[4] = {&RectBase<float>::left, &RectBase<float>::top,
                                                         &RectBase<float>::right, &RectBase<float>::bottom};
};

static_assert(sizeof(Rect<float, float>) == 16, "four floats and nothing else");

} // namespace Vorn
