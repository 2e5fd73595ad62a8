/// @file
/// ComplexAngle: a rotation of the plane as a complex number, the cosine in x and the sine in y.
///
/// Construction from radians computes a sine and a cosine. Afterwards, rotating a vector and adding an angle take four
/// multiplications. A value of another length than 1 also scales what it rotates. Rounding changes the length in long
/// chains of products: call normalise() from time to time.
///
/// Each expression is evaluated in double and rounded to float once, where it is stored or returned. Results have the
/// same bits on every platform, except for the sign and the payload of a NaN.
///
/// Cost: a value of 8 bytes; all operations are inline and allocate and throw nothing.
///
/// Threads: objects share no state.
#pragma once

#include "Vorn/Private/Surprise.h"
#include "Vorn/Vector2.h"

#include <cmath> // std::cos, std::sin, std::sqrt

namespace Vorn {

/// A rotation; with another length than 1, also a scale.
class ComplexAngle : public XYPair<float, float> {
public:
    static const ComplexAngle IDENTITY; ///< (1, 0): no rotation
    static const ComplexAngle ZERO;     ///< (0, 0): not a rotation

    /// Leaves both parts uninitialised, also in `ComplexAngle()`. For no rotation write `ComplexAngle::IDENTITY`.
    ComplexAngle() noexcept {}

    constexpr ComplexAngle(const ComplexAngle& other) noexcept = default;
    constexpr ComplexAngle(const Pair& pair) noexcept : Pair(pair) {}
    constexpr ComplexAngle(const XYPairBase<float>& pair) noexcept : Pair(pair) {}
    constexpr explicit ComplexAngle(const float* const elements) noexcept : Pair(elements) {}

    /// Sets the parts: `realPart` is the cosine, `imaginaryPart` the sine.
    constexpr ComplexAngle(float realPart, float imaginaryPart) noexcept : Pair(realPart, imaginaryPart) {}

    /// Builds the rotation by an angle in radians. The float is NOT copied to both parts, as it is in Vector2.
    explicit ComplexAngle(float radians) noexcept
        : Pair(float(std::cos(double(radians))), float(std::sin(double(radians)))) {}

    constexpr ComplexAngle& operator=(const ComplexAngle& other) noexcept = default;
    constexpr ComplexAngle& operator=(const Pair& pair) noexcept { return *this = ComplexAngle(pair); }

    /// Becomes the rotation by an angle in radians.
    ComplexAngle& operator=(float radians) noexcept { return *this = ComplexAngle(radians); }

    /// Adds or subtracts the complex numbers part by part, NOT the angles. `*` adds angles.
    /// @{
    constexpr ComplexAngle operator+(const Pair& other) const noexcept { return {x + other.x, y + other.y}; }
    constexpr ComplexAngle& operator+=(const Pair& other) noexcept { return *this = *this + other; }
    constexpr ComplexAngle operator-(const Pair& other) const noexcept { return {x - other.x, y - other.y}; }
    constexpr ComplexAngle& operator-=(const Pair& other) noexcept { return *this = *this - other; }
    /// @}

    constexpr const ComplexAngle& operator+() const noexcept { return *this; }

    /// Negates both parts, which adds half a turn. This is NOT the opposite rotation; that is `inverse`.
    VORN_SURPRISE("adds half a turn; for the opposite rotation use inverse()")
    constexpr ComplexAngle operator-() const noexcept { return {-x, -y}; }

    /// Combines two rotations: the angles are added, the lengths multiplied.
    /// @{
    constexpr ComplexAngle operator*(const Pair& other) const noexcept {
        return {float(double(other.x) * double(x) - double(other.y) * double(y)),
                float(double(other.x) * double(y) + double(x) * double(other.y))};
    }
    constexpr ComplexAngle& operator*=(const Pair& other) noexcept { return *this = *this * other; }
    /// @}

    /// Multiplies both parts by the float. This scales; it does NOT multiply the angle.
    /// @{
    constexpr ComplexAngle operator*(float val) const noexcept { return {x * val, y * val}; }
    constexpr ComplexAngle& operator*=(float val) noexcept { return *this = *this * val; }
    /// @}

    /// Returns the rotated vector.
    constexpr Vector2 operator*(const Vector2& vec) const noexcept { return *this * static_cast<const Pair&>(vec); }

    /// The dot product, `x*other.x + y*other.y`.
    /// @{
    constexpr float dot(const Pair& other) const noexcept {
        return float(double(x) * double(other.x) + double(y) * double(other.y));
    }
    constexpr float dotProduct(const Pair& other) const noexcept { return dot(other); }
    /// @}

    /// Scales to the length 1 with the exact square root; returns the SQUARED length before scaling.
    /// @warning (0, 0) becomes NaN in both parts.
    float normalise() noexcept {
        const float s = dot(*this);
        *this *= 1.0f / std::sqrt(s);
        return s;
    }

    /// Returns the opposite rotation with the inverse length, or `ZERO` if the squared length is 0 or NaN. This object
    /// stays unchanged.
    constexpr ComplexAngle inverse() const noexcept {
        const float s = dot(*this);
        if (!(s > 0.0f)) return ZERO;
        const float f = 1.0f / s;
        return {x * f, -y * f};
    }
};

inline constexpr ComplexAngle ComplexAngle::IDENTITY(1.0f, 0.0f);
inline constexpr ComplexAngle ComplexAngle::ZERO(0.0f, 0.0f);

static_assert(sizeof(ComplexAngle) == 8, "a pair and nothing else");

} // namespace Vorn
