/// @file
/// Matrix3: a 3 by 3 matrix of floats for transformations of the plane.
///
/// Vectors are columns: write `matrix * vector`; `a * b` applies b first. The translation is stored in m[2] and m[5].
/// For rotations alone, ComplexAngle is smaller and faster.
///
/// Each expression is evaluated in double and rounded to float once, where it is stored or returned. Results have the
/// same bits on every platform, except for the sign and the payload of a NaN.
///
/// Cost: a value of 36 bytes; operations allocate nothing, and all except the inverse are inline.
///
/// Threads: objects share no state.
#pragma once

#include "Vorn/ComplexAngle.h"
#include "Vorn/Config.h"
#include "Vorn/Private/DoublePair.h"
#include "Vorn/Private/Surprise.h"
#include "Vorn/Vector2.h"
#include "Vorn/Vector2CornerRect.h"

#include <cstring> // std::memcmp

VORN_ALLOW_SURPRISES_BEGIN // the operations call each other

namespace Vorn {

/// A 3 by 3 matrix of floats, stored row by row.
///
/// An operation with `Copy` in its name leaves the matrix unchanged. The form whose first parameter is `Matrix3& out`
/// writes the result to `out`, which may be the matrix itself; the other form returns it.
class Matrix3 {
public:
    static const Matrix3 IDENTITY;
    static const Matrix3 ZERO;

    /// Leaves all nine elements uninitialised, also in `Matrix3()`. Write `Matrix3::IDENTITY` or `Matrix3::ZERO`.
    Matrix3() noexcept {}

    /// Sets the elements, row by row.
    constexpr Matrix3(float m0, float m1, float m2, float m3, float m4, float m5, float m6, float m7, float m8) noexcept
        : m{m0, m1, m2, m3, m4, m5, m6, m7, m8} {}

    /// Sets all nine elements to the value.
    constexpr explicit Matrix3(float val) noexcept : m{val, val, val, val, val, val, val, val, val} {}

    /// Compares the bytes, NOT the floats: 0.0 differs from -0.0, and a NaN equals a NaN with the same bits. Vectors
    /// and rectangles compare floats.
    /// @{
    VORN_SURPRISE("compares bytes, so that 0.0 differs from -0.0; compare the elements")
    bool operator==(const Matrix3& other) const noexcept {
        return std::memcmp(m, other.m, sizeof m) == 0; // NOLINT(bugprone-suspicious-memory-comparison): bytes are meant
    }
    VORN_SURPRISE("compares bytes, so that 0.0 differs from -0.0; compare the elements")
    bool operator!=(const Matrix3& other) const noexcept { return !(*this == other); }
    /// @}

    /// Multiplies every element by the float.
    /// @{
    constexpr Matrix3 operator*(float val) const noexcept {
        return {m[0] * val, m[1] * val, m[2] * val, m[3] * val, m[4] * val,
                m[5] * val, m[6] * val, m[7] * val, m[8] * val};
    }
    constexpr Matrix3& operator*=(float val) noexcept { return *this = *this * val; }
    constexpr void multiply(float val) noexcept { *this = *this * val; }
    constexpr void multiplyCopy(Matrix3& out, float val) const noexcept { out = *this * val; }
    constexpr Matrix3 multiplyCopy(float val) const noexcept { return *this * val; }
    /// @}

    /// Adds or subtracts element by element.
    /// @{
    constexpr Matrix3 operator+(const Matrix3& other) const noexcept {
        const float* const o = other.m;
        return {m[0] + o[0], m[1] + o[1], m[2] + o[2], m[3] + o[3], m[4] + o[4],
                m[5] + o[5], m[6] + o[6], m[7] + o[7], m[8] + o[8]};
    }
    constexpr Matrix3& operator+=(const Matrix3& other) noexcept { return *this = *this + other; }
    constexpr Matrix3 operator-(const Matrix3& other) const noexcept {
        const float* const o = other.m;
        return {m[0] - o[0], m[1] - o[1], m[2] - o[2], m[3] - o[3], m[4] - o[4],
                m[5] - o[5], m[6] - o[6], m[7] - o[7], m[8] - o[8]};
    }
    constexpr Matrix3& operator-=(const Matrix3& other) noexcept { return *this = *this - other; }
    /// @}

    /// The matrix product; the result applies `other` first.
    /// @{
    constexpr Matrix3 operator*(const Matrix3& other) const noexcept {
        using Pair = VornPrivate::DoublePair;
        const Pair left[] = {Pair::load(other.m), Pair::load(other.m + 3), Pair::load(other.m + 6)};
        const Pair right[] = {Pair::load(other.m + 1), Pair::load(other.m + 4), Pair::load(other.m + 7)};
        Matrix3 result(0.0f);
        for (int row = 0; row < 9; row += 3) {
            const Pair a01 = Pair::load(m + row);
            const Pair a12 = Pair::load(m + row + 1);
            const Pair a[] = {a01.firsts(), a01.seconds(), a12.seconds()};
            (a[0] * left[0] + a[1] * left[1] + a[2] * left[2]).store(result.m + row);
            result.m[row + 2] = float((a[0] * right[0] + a[1] * right[1] + a[2] * right[2]).second());
        }
        return result;
    }
    constexpr Matrix3& operator*=(const Matrix3& other) noexcept { return *this = *this * other; }
    /// @}

    /// Exchanges rows and columns.
    /// @{
    constexpr void transpose() noexcept { *this = transposedCopy(); }
    constexpr Matrix3 transposedCopy() const noexcept { return {m[0], m[3], m[6], m[1], m[4], m[7], m[2], m[5], m[8]}; }
    /// @}

    /// Inverts the matrix, by cofactors. A determinant that is NaN is accepted and gives a matrix of NaN.
    /// Throws `Exception<2>`: "Invalid matrix. Unable to build inverse." if the absolute value of the determinant is at
    /// most 2 to the power -23. The matrix and `out` then stay unchanged.
    /// @{
    void inverse() { *this = inversedCopy(); }
    void inversedCopy(Matrix3& out) const { out = inversedCopy(); }
    VORN_API Matrix3 inversedCopy() const;
    /// @}

    /// Sets the translation, `m[2]` and `m[5]`.
    /// @{
    constexpr void setTrans(const Vector2& trans) noexcept { setTrans(trans.x, trans.y); }
    constexpr void setTrans(float x, float y) noexcept {
        m[2] = x;
        m[5] = y;
    }
    /// @}

    /// Returns the translation, `m[2]` and `m[5]`, or writes it to `out`.
    /// @{
    constexpr Vector2 getTrans() const noexcept { return {m[2], m[5]}; }
    constexpr void getTrans(Vector2& out) const noexcept { out = getTrans(); }
    /// @}

    /// Adds to `m[2]` and `m[5]`. This is NOT a product with a translation: scale and rotation do not apply to the
    /// amount.
    /// @{
    VORN_SURPRISE("adds to m[2] and m[5], without scale and rotation; use matrix * translation")
    constexpr void translate(const Vector2& trans) noexcept { translate(trans.x, trans.y); }
    VORN_SURPRISE("adds to m[2] and m[5], without scale and rotation; use matrix * translation")
    constexpr void translate(float x, float y) noexcept { setTrans(m[2] + x, m[5] + y); }
    VORN_SURPRISE("adds to m[2] and m[5], without scale and rotation; use matrix * translation")
    constexpr void translatedCopy(Matrix3& out, const Vector2& trans) const noexcept { out = translatedCopy(trans); }
    VORN_SURPRISE("adds to m[2] and m[5], without scale and rotation; use matrix * translation")
    constexpr void translatedCopy(Matrix3& out, float x, float y) const noexcept { out = translatedCopy(x, y); }
    VORN_SURPRISE("adds to m[2] and m[5], without scale and rotation; use matrix * translation")
    constexpr Matrix3 translatedCopy(const Vector2& trans) const noexcept { return translatedCopy(trans.x, trans.y); }
    VORN_SURPRISE("adds to m[2] and m[5], without scale and rotation; use matrix * translation")
    constexpr Matrix3 translatedCopy(float x, float y) const noexcept {
        Matrix3 result(*this);
        result.translate(x, y);
        return result;
    }
    /// @}

    /// Becomes the matrix of a translation.
    /// @{
    constexpr void makeTranslation(const Vector2& trans) noexcept { makeTranslation(trans.x, trans.y); }
    constexpr void makeTranslation(float x, float y) noexcept {
        *this = Matrix3(1.0f, 0.0f, x, 0.0f, 1.0f, y, 0.0f, 0.0f, 1.0f);
    }
    /// @}

    /// Scales the results of the matrix: multiplies row 0 by the first value and row 1 by the second, including the
    /// translation.
    /// @{
    constexpr void scale(const Vector2& factor) noexcept { scale(factor.x, factor.y); }
    constexpr void scale(float x, float y) noexcept { *this = scaledCopy(x, y); }
    constexpr void scaledCopy(Matrix3& out, const Vector2& factor) const noexcept { out = scaledCopy(factor); }
    constexpr void scaledCopy(Matrix3& out, float x, float y) const noexcept { out = scaledCopy(x, y); }
    constexpr Matrix3 scaledCopy(const Vector2& factor) const noexcept { return scaledCopy(factor.x, factor.y); }
    constexpr Matrix3 scaledCopy(float x, float y) const noexcept {
        return {m[0] * x, m[1] * x, m[2] * x, m[3] * y, m[4] * y, m[5] * y, m[6], m[7], m[8]};
    }
    /// @}

    /// Becomes the matrix that first scales, then rotates, then translates. `radians` is the angle of the rotation.
    /// @{
    constexpr void makeTransform(const ComplexAngle& rotation, const Vector2& factor, const Vector2& trans) noexcept {
        *this = Matrix3(rotation.x * factor.x, -(rotation.y * factor.y), trans.x, // row 0
                        rotation.y * factor.x, factor.y * rotation.x, trans.y,    // row 1
                        0.0f, 0.0f, 1.0f);
    }
    void makeTransform(float radians, const Vector2& factor, const Vector2& trans) noexcept {
        makeTransform(ComplexAngle(radians), factor, trans);
    }
    /// @}

    /// Becomes the matrix that rotates by the opposite angle, then scales by `factor`, then translates by `-trans`.
    /// This is NOT the inverse of `makeTransform`.
    /// @warning The factor is not inverted, and the translation is neither rotated nor scaled. The result is the
    ///     inverse of `makeTransform` only without rotation and with a factor of 1. Otherwise call `makeTransform`,
    ///     then `inverseAtAnyScale`.
    /// @{
    VORN_SURPRISE("is not the inverse of makeTransform; use makeTransform(...), then inverseAtAnyScale()")
    constexpr void makeInverseTransform(const ComplexAngle& rotation, const Vector2& factor,
                                        const Vector2& trans) noexcept {
        *this = Matrix3(rotation.x * factor.x, rotation.y * factor.x, -trans.x,    // row 0
                        -(factor.y * rotation.y), factor.y * rotation.x, -trans.y, // row 1
                        0.0f, 0.0f, 1.0f);
    }
    VORN_SURPRISE("is not the inverse of makeTransform; use makeTransform(...), then inverseAtAnyScale()")
    void makeInverseTransform(float radians, const Vector2& factor, const Vector2& trans) noexcept {
        makeInverseTransform(ComplexAngle(radians), factor, trans);
    }
    /// @}

    /// Transforms the column (x, y, 1). Row 2 is not read, and there is no division by a third component.
    /// @{
    constexpr Vector2 operator*(const Vector2& vec) const noexcept { return transformCopy(vec); }
    constexpr void transform(Vector2& vec) const noexcept { vec = transformCopy(vec); }
    constexpr void transformCopy(XYPairBase<float>& out, const XYPairBase<float>& vec) const noexcept {
        out = transformCopy(Vector2(vec));
    }
    constexpr Vector2 transformCopy(const Vector2& vec) const noexcept {
        return {float(double(m[0]) * double(vec.x) + double(m[1]) * double(vec.y) + double(m[2])),
                float(double(m[3]) * double(vec.x) + double(m[4]) * double(vec.y) + double(m[5]))};
    }
    /// @}

    /// Transforms each of the four points.
    constexpr Vector2CornerRect operator*(const Vector2CornerRect& rect) const noexcept {
        return {{transformCopy(rect.corners[0]), transformCopy(rect.corners[1]), transformCopy(rect.corners[2]),
                 transformCopy(rect.corners[3])}};
    }

    /// The elements, row by row: element (row, column) is `m[3*row + column]`.
    float m[9];
};

inline constexpr Matrix3 Matrix3::IDENTITY(1.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 1.0f);
inline constexpr Matrix3 Matrix3::ZERO(0.0f);

static_assert(sizeof(Matrix3) == 36, "nine floats and nothing else");

constexpr Vector2 Vector2::operator*(const Matrix3& matrix) const noexcept {
    const float* const m = matrix.m;
    return {float(double(m[3]) * double(y) + double(m[0]) * double(x) + double(m[6])),
            float(double(m[1]) * double(x) + double(m[4]) * double(y) + double(m[7]))};
}

constexpr Vector2& Vector2::operator*=(const Matrix3& matrix) noexcept { return *this = *this * matrix; }

} // namespace Vorn

VORN_ALLOW_SURPRISES_END
