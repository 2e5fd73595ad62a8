/// @file
/// XYPair: two floats, x and y; the base class of Vector2 and ComplexAngle.
///
/// XYPairBase is the plain struct; XYPair adds constructors, access by index and equality. A parameter of type
/// XYPair<float, float> accepts a Vector2 and a ComplexAngle. Use Vector2 for arithmetic and ComplexAngle for
/// rotations.
///
/// Cost: a value of 8 bytes; all operations are inline and allocate nothing. An operation that is not `noexcept` checks
/// its arguments.
///
/// Threads: objects share no state.
#pragma once

#include "Vorn/Assert.h"

namespace Vorn {

/// A plain struct of two components.
template <class Component>
struct XYPairBase {
    Component x;
    Component y;
};

/// A pair of `Component`s that are passed as `Parameter`s. Only `XYPair<float, float>` is defined.
template <class Component, class Parameter>
class XYPair;

/// A pair of floats.
template <>
class XYPair<float, float> : public XYPairBase<float> {
public:
    /// The parameter type of operations that accept vectors and rotations.
    using Pair = XYPair<float, float>;

    /// Leaves both components uninitialised, also in `XYPair<float, float>()`. For zero write `(0.0f)`.
    XYPair() noexcept {}

    constexpr XYPair(const XYPairBase<float>& pair) noexcept : XYPairBase<float>(pair) {}
    constexpr XYPair(const XYPair& other) noexcept = default;

    /// Copies `x` from element 0 and `y` from element 1.
    constexpr explicit XYPair(const float* const elements) noexcept : XYPairBase<float>{elements[0], elements[1]} {}

    /// Sets both components to the value.
    constexpr explicit XYPair(float value) noexcept : XYPairBase<float>{value, value} {}

    constexpr XYPair(float valueX, float valueY) noexcept : XYPairBase<float>{valueX, valueY} {}

    constexpr XYPair& operator=(const XYPair& other) noexcept = default;

    /// Sets both components to the value.
    constexpr XYPair& operator=(float value) noexcept {
        x = value;
        y = value;
        return *this;
    }

    /// Component 0 is `x`, component 1 is `y`.
    /// Throws `Exception<1>`: "index <= 1 : Invalid index!".
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

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wfloat-equal"
    /// Compares the floats exactly: 0.0 equals -0.0, and NaN equals nothing, including itself.
    constexpr bool operator==(const XYPair& other) const noexcept { return x == other.x && y == other.y; }
#pragma GCC diagnostic pop
    constexpr bool operator!=(const XYPair& other) const noexcept { return !(*this == other); }
};

static_assert(sizeof(XYPair<float, float>) == 8, "two floats and nothing else");

} // namespace Vorn
