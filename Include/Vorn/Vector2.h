// Vector2: a vector of the plane.
//
// Lengths rest on a fast inverse square root that is accurate to about 0.2 per cent: take it where many vectors are
// normalised and nobody measures. Where the exact length counts, take the root of squaredLength() or
// ComplexAngle::normalise().
//
// An expression is evaluated in double and rounded to float once, where it is stored or returned, so results have the
// same bits on every platform.
//
// Cost: a value of 8 bytes; everything inlines and nothing allocates. What is not noexcept has a check.
// Threads: plain values, which share nothing.
#pragma once

#include "Vorn/XYPair.h"

#include <cstring> // std::memcpy, for the bits of a float

namespace Vorn {

class Matrix3;

/// What each divisor of planar geometry is compared with before it divides.
inline constexpr float VORN_ZERO = 0.0f;

/// Two floats with the arithmetic of the plane.
class Vector2 : public XYPair<float, float> {
public:
    static const Vector2 ZERO;            ///< (0, 0)
    static const Vector2 UNIT_X;          ///< (1, 0)
    static const Vector2 UNIT_Y;          ///< (0, 1)
    static const Vector2 NEGATIVE_UNIT_X; ///< (-1, 0)
    static const Vector2 NEGATIVE_UNIT_Y; ///< (0, -1)
    static const Vector2 UNIT_SCALE;      ///< (1, 1)

    /// Leaves both components unwritten, also in `Vector2()`; write `Vector2::ZERO` for zero.
    Vector2() noexcept {}

    using XYPair<float, float>::XYPair; // from a record, an array, one float for both components, two floats
    constexpr Vector2(const Vector2& other) noexcept = default;
    constexpr Vector2(const Pair& pair) noexcept : Pair(pair) {}

    constexpr Vector2& operator=(const Vector2& other) noexcept = default;
    constexpr Vector2& operator=(const Pair& pair) noexcept { return *this = Vector2(pair); }

    /// Both components take the value.
    constexpr Vector2& operator=(float value) noexcept { return *this = Vector2(value); }

    /// Component by component; a float acts on both.
    /// @{
    constexpr Vector2 operator+(const Pair& other) const noexcept { return {x + other.x, y + other.y}; }
    constexpr Vector2 operator+(float val) const noexcept { return *this + Pair(val); }
    constexpr Vector2& operator+=(const Pair& other) noexcept { return *this = *this + other; }
    constexpr Vector2& operator+=(float val) noexcept { return *this = *this + val; }
    constexpr Vector2 operator-(const Pair& other) const noexcept { return {x - other.x, y - other.y}; }
    constexpr Vector2 operator-(float val) const noexcept { return *this - Pair(val); }
    constexpr Vector2& operator-=(const Pair& other) noexcept { return *this = *this - other; }
    constexpr Vector2& operator-=(float val) noexcept { return *this = *this - val; }
    constexpr Vector2 operator*(const Pair& other) const noexcept { return {x * other.x, y * other.y}; }
    constexpr Vector2 operator*(float val) const noexcept { return *this * Pair(val); }
    constexpr Vector2& operator*=(const Pair& other) noexcept { return *this = *this * other; }
    constexpr Vector2& operator*=(float val) noexcept { return *this = *this * val; }
    /// @}

    /// Divides component by component. A divisor that is zero of either sign or NaN raises Exception 1, with the text
    /// "other.x < VORN_ZERO || other.x > VORN_ZERO : divide by zero!" or its like, and nothing has changed.
    /// @{
    Vector2 operator/(const Pair& other) const {
        VORN_ASSERT(other.x < VORN_ZERO || other.x > VORN_ZERO, "divide by zero!");
        VORN_ASSERT(other.y < VORN_ZERO || other.y > VORN_ZERO, "divide by zero!");
        return quotient(other);
    }
    Vector2 operator/(float val) const {
        VORN_ASSERT(val < VORN_ZERO || val > VORN_ZERO, "divide by zero!");
        return quotient(Pair(val));
    }
    Vector2& operator/=(const Pair& other) {
        VORN_ASSERT(other.x < VORN_ZERO || other.x > VORN_ZERO, "divide by zero!");
        VORN_ASSERT(other.y < VORN_ZERO || other.y > VORN_ZERO, "divide by zero!");
        return *this = quotient(other);
    }
    Vector2& operator/=(float val) {
        VORN_ASSERT(val < VORN_ZERO || val > VORN_ZERO, "divide by zero!");
        return *this = quotient(Pair(val));
    }
    /// @}

    /// The vector as a row with a third element 1, times the matrix: the translation is `m[6]` and `m[7]`.
    /// @warning This is not `matrix * vector`, which takes the translation from `m[2]` and `m[5]`, where
    ///     `Matrix3::makeTransform` puts it; this one ignores those two. Include Matrix3.h to use it.
    /// @{
    constexpr Vector2 operator*(const Matrix3& matrix) const noexcept;
    constexpr Vector2& operator*=(const Matrix3& matrix) noexcept;
    /// @}

    constexpr const Vector2& operator+() const noexcept { return *this; }
    constexpr Vector2 operator-() const noexcept { return {-x, -y}; }

    /// `x*other.x + y*other.y`.
    /// @{
    constexpr float dot(const Pair& other) const noexcept { return float(double(x) * other.x + double(y) * other.y); }
    constexpr float dotProduct(const Pair& other) const noexcept { return dot(other); }
    /// @}

    /// `x*other.y - y*other.x`: positive if `other` lies on the side to which `x` turns towards `y`.
    /// @{
    constexpr float cross(const Pair& other) const noexcept { return float(double(x) * other.y - double(y) * other.x); }
    constexpr float crossProduct(const Pair& other) const noexcept { return cross(other); }
    /// @}

    constexpr float squaredLength() const noexcept { return dot(*this); }

    /// About 0.2 per cent off: 1 divided by the length, by the fast inverse square root.
    /// @warning Only for lengths from about 1.1e-19 to 1.8e19, whose squares are normal floats. Below, it falls short
    ///     and never exceeds the 1.98e19 of the zero vector; above, the square overflows, and it is negative infinity.
    float inverseLength() const noexcept;

    /// About 0.2 per cent off, and never 0: the length, as 1 divided by `inverseLength`.
    /// @warning The zero vector gives about 5.05e-20, and one of more than about 1.8e19 negative infinity. Ask `isZero`
    ///     whether a vector has a length.
    float length() const noexcept;

    /// About 0.2 per cent off: scales to a length close to 1, usually a little less. The zero vector stays zero, and
    /// one outside the bounds of `inverseLength` comes out short, or infinite or NaN.
    void normalise() noexcept { *this *= inverseLength(); }

    /// As `normalise`, into `out` or the result.
    /// @{
    void normalisedCopy(Pair& out) const noexcept { out = normalisedCopy(); }
    Vector2 normalisedCopy() const noexcept { return *this * inverseLength(); }
    /// @}

    /// Whether `squaredLength` is below 2 to the power -23, the case up to a length of about 0.000345. NaN gives false.
    /// @{
    constexpr bool isZeroLength() const noexcept { return squaredLength() < 1.1920928955078125e-07f; }
    constexpr bool isZero() const noexcept { return isZeroLength(); }
    /// @}

    /// True only if the relation holds for `x` and for `y`, so that two vectors can fail all four: no order to sort by.
    /// @{
    constexpr bool operator<(const Pair& other) const noexcept { return x < other.x && y < other.y; }
    constexpr bool operator>(const Pair& other) const noexcept { return x > other.x && y > other.y; }
    constexpr bool operator<=(const Pair& other) const noexcept { return x <= other.x && y <= other.y; }
    constexpr bool operator>=(const Pair& other) const noexcept { return x >= other.x && y >= other.y; }
    /// @}

    /// Takes each component of `other`, a NaN too, unless that is greater than the own one.
    constexpr void upperLimit(const Pair& other) noexcept {
        *this = Vector2(other.x > x ? x : other.x, other.y > y ? y : other.y);
    }

    /// Takes each component of `other`, a NaN too, unless the own one is greater.
    constexpr void lowerLimit(const Pair& other) noexcept {
        *this = Vector2(x > other.x ? x : other.x, y > other.y ? y : other.y);
    }

    /// The point halfway to `other`.
    constexpr Vector2 midPoint(const Pair& other) const noexcept {
        return {float((double(other.x) + x) * 0.5), float((double(other.y) + y) * 0.5)};
    }

    /// `(-y, x)`: a quarter turn from `x` towards `y`.
    constexpr Vector2 perpendicular() const noexcept { return {-y, x}; }

    /// The same into `out`.
    /// @warning `out.x` is written before `x` is read: with the vector itself as `out`, both components become `-y`.
    ///     Write `v = v.perpendicular()`.
    constexpr void perpendicular(Pair& out) const noexcept {
        out.x = -y;
        out.y = x;
    }

    /// Mirrors at a line through the origin with this normal, which is taken as it stands: give it the length 1.
    /// @{
    constexpr Vector2 reflect(const Pair& normal) const noexcept {
        const float d = float(double(normal.y) * y + double(normal.x) * x);
        const float t = d * -2.0f;
        return {float(double(normal.x) * t + x), float(double(t) * normal.y + y)};
    }
    constexpr void reflect(const Pair& normal, Pair& out) const noexcept { out = reflect(normal); }
    /// @}

private:
    constexpr Vector2 quotient(const Pair& other) const noexcept { return {x / other.x, y / other.y}; }
};

inline constexpr Vector2 Vector2::ZERO(0.0f, 0.0f);
inline constexpr Vector2 Vector2::UNIT_X(1.0f, 0.0f);
inline constexpr Vector2 Vector2::UNIT_Y(0.0f, 1.0f);
inline constexpr Vector2 Vector2::NEGATIVE_UNIT_X(-1.0f, 0.0f);
inline constexpr Vector2 Vector2::NEGATIVE_UNIT_Y(0.0f, -1.0f);
inline constexpr Vector2 Vector2::UNIT_SCALE(1.0f, 1.0f);

static_assert(sizeof(Vector2) == 8, "a pair and nothing else");

inline float Vector2::inverseLength() const noexcept {
    const float s = squaredLength();

    // Halving the bits of a float halves its exponent, and the subtraction makes that the inverse: a first guess with
    // 3 per cent of error, of which one Newton step leaves 0.2. The exact result depends on the constant, on
    // subtracting before shifting, and on rounding only at the end.
    unsigned int bits;
    std::memcpy(&bits, &s, sizeof bits);
    bits = (0xBE6EB50Cu - bits) >> 1;
    float guess;
    std::memcpy(&guess, &bits, sizeof guess);
    return float((guess * 0.5) * (3.0 - double(s) * guess * guess));
}

inline float Vector2::length() const noexcept {
    const float inverse = inverseLength();
    return inverse > 0.0f ? 1.0f / inverse : inverse;
}

} // namespace Vorn
