/// @file
/// Vector2: a vector of the plane, two floats with arithmetic.
///
/// Lengths use a fast inverse square root with an error of about 0.2 per cent. Where the exact length matters, call
/// `exactLength` or `exactNormalised` of Vorn/Geometry.h.
///
/// Each expression is evaluated in double and rounded to float once, where it is stored or returned. Results have the
/// same bits on every platform, except for the sign and the payload of a NaN. For that, the inline operations of all
/// geometry headers need the flags of the including module: `-ffp-contract=off`, which the CMake target and pkg-config
/// add, no `-ffast-math`, and on 32-bit x86 `-msse2 -mfpmath=sse`. The operations of GeometryBatch.h do not depend on
/// them.
///
/// Cost: a value of 8 bytes; all operations are inline and allocate nothing. An operation that is not `noexcept` checks
/// its arguments.
///
/// Threads: objects share no state.
#pragma once

#include "Vorn/Private/Surprise.h"
#include "Vorn/XYPair.h"

#include <cstring> // std::memcpy, for the bits of a float

VORN_ALLOW_SURPRISES_BEGIN // the operations call each other

namespace Vorn {

class Matrix3;

/// The value that every divisor of a geometry operation is compared with before the division.
inline constexpr float VORN_ZERO = 0.0f;

/// A vector of the plane. Lengths are approximate; see Vorn/Vector2.h.
class Vector2 : public XYPair<float, float> {
public:
    static const Vector2 ZERO;            ///< (0, 0)
    static const Vector2 UNIT_X;          ///< (1, 0)
    static const Vector2 UNIT_Y;          ///< (0, 1)
    static const Vector2 NEGATIVE_UNIT_X; ///< (-1, 0)
    static const Vector2 NEGATIVE_UNIT_Y; ///< (0, -1)
    static const Vector2 UNIT_SCALE;      ///< (1, 1)

    /// Leaves both components uninitialised, also in `Vector2()`. For zero write `Vector2::ZERO`.
    Vector2() noexcept {}

    using XYPair<float, float>::XYPair; // from an XYPairBase, an array, one float for both components, two floats
    constexpr Vector2(const Vector2& other) noexcept = default;
    constexpr Vector2(const Pair& pair) noexcept : Pair(pair) {}

    constexpr Vector2& operator=(const Vector2& other) noexcept = default;
    constexpr Vector2& operator=(const Pair& pair) noexcept { return *this = Vector2(pair); }

    /// Sets both components to the value.
    constexpr Vector2& operator=(float value) noexcept { return *this = Vector2(value); }

    /// Adds, subtracts or multiplies component by component. A float applies to both components.
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
    friend constexpr Vector2 operator*(float val, const Vector2& vec) noexcept { return vec * val; }
    /// @}

    /// Divides component by component. A float divides both components.
    /// Throws `Exception<1>` and leaves the vector unchanged if a divisor is 0.0, -0.0 or NaN: "other.x < VORN_ZERO ||
    /// other.x > VORN_ZERO : divide by zero!", the same for `other.y`, or "val < VORN_ZERO || val > VORN_ZERO : divide
    /// by zero!".
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

    /// Multiplies the row (x, y, 1) by the matrix: the translation is `m[6]` and `m[7]`, NOT `m[2]` and `m[5]`.
    /// @warning `Matrix3::makeTransform` stores the translation in `m[2]` and `m[5]`, which this operation ignores. To
    ///     transform a vector write `matrix * vector`. Defined in Matrix3.h.
    /// @{
    VORN_SURPRISE("ignores the translation of Matrix3::makeTransform; use matrix * vector")
    constexpr Vector2 operator*(const Matrix3& matrix) const noexcept;
    VORN_SURPRISE("ignores the translation of Matrix3::makeTransform; use matrix * vector")
    constexpr Vector2& operator*=(const Matrix3& matrix) noexcept;
    /// @}

    constexpr const Vector2& operator+() const noexcept { return *this; }
    constexpr Vector2 operator-() const noexcept { return {-x, -y}; }

    /// The dot product, `x*other.x + y*other.y`.
    /// @{
    constexpr float dot(const Pair& other) const noexcept {
        return float(double(x) * double(other.x) + double(y) * double(other.y));
    }
    constexpr float dotProduct(const Pair& other) const noexcept { return dot(other); }
    /// @}

    /// The cross product, `x*other.y - y*other.x`: positive if the shorter turn from this vector to `other` has the
    /// direction from the x axis to the y axis.
    /// @{
    constexpr float cross(const Pair& other) const noexcept {
        return float(double(x) * double(other.y) - double(y) * double(other.x));
    }
    constexpr float crossProduct(const Pair& other) const noexcept { return cross(other); }
    /// @}

    /// The square of the exact length, rounded to float.
    constexpr float squaredLength() const noexcept { return dot(*this); }

    /// 1 divided by the length, with an error of about 0.2 per cent.
    /// @warning Valid for lengths from about 1.1e-19 to 1.8e19, whose squares are normal floats. For smaller lengths
    ///     the result is too small: at most 1.98e19, the result for the zero vector. For larger ones the square
    ///     overflows and the result is negative infinity.
    VORN_SURPRISE("has an error of 0.2 per cent; use 1.0f / exactLength(v)")
    float inverseLength() const noexcept;

    /// The length with an error of about 0.2 per cent, and never 0.
    /// @warning Returns about 5.05e-20 for the zero vector: test it with `isZero`. Returns negative infinity for
    ///     lengths above about 1.8e19.
    VORN_SURPRISE("has an error of 0.2 per cent; use exactLength(v)")
    float length() const noexcept;

    /// Scales the vector to a length of 1 with an error of about 0.2 per cent. The zero vector stays zero.
    /// @warning A vector that is shorter than the limits of `inverseLength` stays too short; the components of a longer
    ///     one become infinite or NaN.
    VORN_SURPRISE("has an error of 0.2 per cent; use v = exactNormalised(v)")
    void normalise() noexcept { *this *= inverseLength(); }

    /// Returns the result of `normalise`, or writes it to `out`; this vector stays unchanged.
    /// @{
    VORN_SURPRISE("has an error of 0.2 per cent; use v = exactNormalised(v)")
    void normalisedCopy(Pair& out) const noexcept { out = normalisedCopy(); }
    VORN_SURPRISE("has an error of 0.2 per cent; use v = exactNormalised(v)")
    Vector2 normalisedCopy() const noexcept { return *this * inverseLength(); }
    /// @}

    /// Returns true if `squaredLength` is below 2 to the power -23: NOT only for zero, but for lengths up to about
    /// 0.000345. Returns false for NaN. For an exact test compare with `Vector2::ZERO`.
    /// @{
    VORN_SURPRISE("is true for lengths up to 0.000345; use v == Vector2::ZERO")
    constexpr bool isZeroLength() const noexcept { return squaredLength() < 1.1920928955078125e-07f; }
    VORN_SURPRISE("is true for lengths up to 0.000345; use v == Vector2::ZERO")
    constexpr bool isZero() const noexcept { return isZeroLength(); }
    /// @}

    /// Returns true only if the relation holds for `x` and for `y`. This is NOT an order to sort by: two vectors can
    /// fail all four relations.
    /// @{
    VORN_SURPRISE("is no order: the relation must hold for each component; compare one component")
    constexpr bool operator<(const Pair& other) const noexcept { return x < other.x && y < other.y; }
    VORN_SURPRISE("is no order: the relation must hold for each component; compare one component")
    constexpr bool operator>(const Pair& other) const noexcept { return x > other.x && y > other.y; }
    VORN_SURPRISE("is no order: the relation must hold for each component; compare one component")
    constexpr bool operator<=(const Pair& other) const noexcept { return x <= other.x && y <= other.y; }
    VORN_SURPRISE("is no order: the relation must hold for each component; compare one component")
    constexpr bool operator>=(const Pair& other) const noexcept { return x >= other.x && y >= other.y; }
    /// @}

    /// Limits each component to at most that of `other`; if either one is NaN, the component of `other` is taken.
    constexpr void upperLimit(const Pair& other) noexcept {
        *this = Vector2(other.x > x ? x : other.x, other.y > y ? y : other.y);
    }

    /// Limits each component to at least that of `other`; if either one is NaN, the component of `other` is taken.
    constexpr void lowerLimit(const Pair& other) noexcept {
        *this = Vector2(x > other.x ? x : other.x, y > other.y ? y : other.y);
    }

    /// The point halfway to `other`.
    constexpr Vector2 midPoint(const Pair& other) const noexcept {
        return {float((double(other.x) + double(x)) * 0.5), float((double(other.y) + double(y)) * 0.5)};
    }

    /// The vector turned by a quarter from the x axis to the y axis: `(-y, x)`.
    constexpr Vector2 perpendicular() const noexcept { return {-y, x}; }

    /// Writes `(-y, x)` to `out`, which must NOT be the vector itself.
    /// @warning `out.x` is written before `x` is read: `v.perpendicular(v)` sets both components to `-y`. Write `v =
    ///     v.perpendicular()`.
    constexpr void perpendicular(Pair& out) const noexcept {
        out.x = -y;
        out.y = x;
    }

    /// Reflects the vector at the line through the origin that is perpendicular to `normal`, a vector of length 1.
    /// @{
    constexpr Vector2 reflect(const Pair& normal) const noexcept {
        const float d = float(double(normal.y) * double(y) + double(normal.x) * double(x));
        const float t = d * -2.0f;
        return {float(double(normal.x) * double(t) + double(x)), float(double(t) * double(normal.y) + double(y))};
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

    // Halving the bits of a float halves its exponent; the subtraction inverts it. The first guess has an error of 3
    // per cent, and one Newton step reduces it to 0.2. The bits of the result depend on the constant, on subtracting
    // before shifting, and on rounding only at the end.
    unsigned int bits;
    std::memcpy(&bits, &s, sizeof bits);
    bits = (0xBE6EB50Cu - bits) >> 1;
    float guess;
    std::memcpy(&guess, &bits, sizeof guess);
    return float((double(guess) * 0.5) * (3.0 - double(s) * double(guess) * double(guess)));
}

inline float Vector2::length() const noexcept {
    const float inverse = inverseLength();
    return inverse > 0.0f ? 1.0f / inverse : inverse;
}

} // namespace Vorn

VORN_ALLOW_SURPRISES_END
