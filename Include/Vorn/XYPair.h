// XYPair: two floats, x and y; the base of vectors and of rotations.
//
// XYPairBase is the plain record, XYPair adds construction, access by index and equality. Whatever takes an
// XYPair<float, float> takes a Vector2 or a ComplexAngle too. Take Vector2 for arithmetic and ComplexAngle for
// rotations.
//
// Cost: a value of 8 bytes; everything inlines and nothing allocates. What is not noexcept has a check.
// Threads: plain values, which share nothing.
#pragma once

#include "Vorn/Assert.h"

namespace Vorn {

/// Two components, a plain record.
template <class Component>
struct XYPairBase {
    Component x;
    Component y;
};

/// A pair of `Component`s that are handed over as `Parameter`s. Defined for floats and for nothing else.
template <class Component, class Parameter>
class XYPair;

/// A pair of floats.
template <>
class XYPair<float, float> : public XYPairBase<float> {
public:
    /// What an operation takes where vectors and rotations are welcome alike.
    using Pair = XYPair<float, float>;

    /// Leaves both components unwritten, also in `XYPair<float, float>()`; write `(0.0f)` for zero.
    XYPair() noexcept {}

    constexpr XYPair(const XYPairBase<float>& pair) noexcept : XYPairBase<float>(pair) {}
    constexpr XYPair(const XYPair& other) noexcept = default;

    /// Takes `x` from element 0 and `y` from element 1.
    constexpr explicit XYPair(const float* const elements) noexcept : XYPairBase<float>{elements[0], elements[1]} {}

    /// Both components take the value.
    constexpr explicit XYPair(float value) noexcept : XYPairBase<float>{value, value} {}

    constexpr XYPair(float valueX, float valueY) noexcept : XYPairBase<float>{valueX, valueY} {}

    constexpr XYPair& operator=(const XYPair& other) noexcept = default;

    /// Both components take the value.
    constexpr XYPair& operator=(float value) noexcept {
        x = value;
        y = value;
        return *this;
    }

    /// Component 0 is `x`, 1 is `y`. Exception 1 "index <= 1 : Invalid index!" for any other.
    /// @{
    const float& operator[](unsigned int index) const {
        VORN_ASSERT(index <= 1, "Invalid index!", "Vorn::XYPair<float,float>::operator []");
        return index == 0 ? x : y;
    }
    float& operator[](unsigned int index) {
        VORN_ASSERT(index <= 1, "Invalid index!", "Vorn::XYPair<float,float>::operator []");
        return index == 0 ? x : y;
    }
    /// @}

    /// Exact comparison of floats: 0.0 equals -0.0, and a NaN equals nothing, not even itself.
    constexpr bool operator==(const XYPair& other) const noexcept { return x == other.x && y == other.y; }
    constexpr bool operator!=(const XYPair& other) const noexcept { return !(*this == other); }
};

static_assert(sizeof(XYPair<float, float>) == 8, "two floats and nothing else");

} // namespace Vorn
