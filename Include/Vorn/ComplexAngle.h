// ComplexAngle: a rotation of the plane as a complex number, the cosine in x and the sine in y.
//
// Once it is built, rotating and adding angles takes four multiplications and no trigonometry. Building one from
// radians takes a sine and a cosine. A value need not have unit length: what it rotates is scaled by that length, and a
// long chain of products drifts away from 1, so normalise() now and then.
//
// Cost: a value of 8 bytes; everything inlines and nothing allocates or raises.
// Threads: plain values, which share nothing.
#pragma once

#include "Vorn/Vector2.h"

#include <cmath> // std::cos, std::sin, std::sqrt

namespace Vorn {

/// A rotation, and for other lengths than 1 a scale with it.
class ComplexAngle : public XYPair<float, float> {
public:
    static const ComplexAngle IDENTITY; ///< (1, 0): turns by nothing
    static const ComplexAngle ZERO;     ///< (0, 0): no rotation at all

    /// Leaves both parts unwritten, also in `ComplexAngle()`; write `ComplexAngle::IDENTITY` for no rotation.
    ComplexAngle() noexcept {}

    constexpr ComplexAngle(const ComplexAngle& other) noexcept = default;
    constexpr ComplexAngle(const Pair& pair) noexcept : Pair(pair) {}
    constexpr ComplexAngle(const XYPairBase<float>& pair) noexcept : Pair(pair) {}
    constexpr explicit ComplexAngle(const float* const elements) noexcept : Pair(elements) {}

    /// The parts themselves: `realPart` is the cosine, `imaginaryPart` the sine.
    constexpr ComplexAngle(float realPart, float imaginaryPart) noexcept : Pair(realPart, imaginaryPart) {}

    /// One float is an angle in radians, where a Vector2 takes it for both components.
    explicit ComplexAngle(float radians) noexcept
        : Pair(float(std::cos(double(radians))), float(std::sin(double(radians)))) {}

    constexpr ComplexAngle& operator=(const ComplexAngle& other) noexcept = default;
    constexpr ComplexAngle& operator=(const Pair& pair) noexcept { return *this = ComplexAngle(pair); }

    /// One float is an angle in radians.
    ComplexAngle& operator=(float radians) noexcept { return *this = ComplexAngle(radians); }

    /// Part by part: the sum of the numbers. The product adds the angles.
    /// @{
    constexpr ComplexAngle operator+(const Pair& other) const noexcept { return {x + other.x, y + other.y}; }
    constexpr ComplexAngle& operator+=(const Pair& other) noexcept { return *this = *this + other; }
    constexpr ComplexAngle operator-(const Pair& other) const noexcept { return {x - other.x, y - other.y}; }
    constexpr ComplexAngle& operator-=(const Pair& other) noexcept { return *this = *this - other; }
    /// @}

    constexpr const ComplexAngle& operator+() const noexcept { return *this; }

    /// A half turn on: negates both parts. For the opposite rotation take `inverse`.
    constexpr ComplexAngle operator-() const noexcept { return {-x, -y}; }

    /// One rotation after the other: the angles add, the lengths multiply.
    /// @{
    constexpr ComplexAngle operator*(const Pair& other) const noexcept {
        return {float(double(other.x) * x - double(other.y) * y), float(double(other.x) * y + double(x) * other.y)};
    }
    constexpr ComplexAngle& operator*=(const Pair& other) noexcept { return *this = *this * other; }
    /// @}

    /// Both parts times the float: a scale, not a multiple of the angle.
    /// @{
    constexpr ComplexAngle operator*(float val) const noexcept { return {x * val, y * val}; }
    constexpr ComplexAngle& operator*=(float val) noexcept { return *this = *this * val; }
    /// @}

    /// The vector, rotated.
    constexpr Vector2 operator*(const Vector2& vec) const noexcept { return *this * static_cast<const Pair&>(vec); }

    /// `x*other.x + y*other.y`.
    /// @{
    constexpr float dot(const Pair& other) const noexcept { return float(double(x) * other.x + double(y) * other.y); }
    constexpr float dotProduct(const Pair& other) const noexcept { return dot(other); }
    /// @}

    /// Returns the SQUARED length from before; scales to the length 1, by the exact square root.
    /// @warning (0, 0) becomes NaN in both parts.
    float normalise() noexcept {
        const float s = dot(*this);
        *this *= 1.0f / std::sqrt(s);
        return s;
    }

    /// The opposite rotation, with the inverse length. Changes nothing; (0, 0) and NaN give `ZERO`.
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
