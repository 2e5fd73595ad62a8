/// @file
/// Geometry: exact lengths, bounds, anchored rectangles, overlaps and inverses, as free functions.
///
///     const auto badge = Vorn::anchored(panel, Vorn::Vector2(16.0f, 16.0f), Vorn::RectPoint::TOP_RIGHT, 4.0f);
///     const auto area = Vorn::boundsOf(rect, matrix);
///
/// Results have the same bits on every platform, with the flags that Vector2.h names. For drawing many objects, the
/// operations of Vector2 with an error of 0.2 per cent are faster than the exact ones.
///
/// Cost: nothing is allocated.
///
/// Threads: nothing is shared.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/FloatRect.h"
#include "Vorn/GeometryBatch.h"
#include "Vorn/Matrix3.h"
#include "Vorn/Private/ExactVector.h" // the roundings
#include "Vorn/Vector2.h"
#include "Vorn/Vector2CornerRect.h"

#include <cmath>
#include <iterator>
#include <limits>
#include <optional>
#include <type_traits>
#include <utility>

namespace Vorn {

/// Returns the length: the float nearest to it, for all finite vectors. 0 only for the zero vector. Infinity if no
/// float is as large, which is possible above 2.4e38 in both components, and if a component is infinite; NaN if one is
/// NaN and none is infinite.
[[nodiscard]] inline float exactLength(const Vector2& vec) noexcept {
    if (std::isinf(vec.x) || std::isinf(vec.y)) return std::numeric_limits<float>::infinity();
    return VornPrivate::ExactVector(vec.x, vec.y).length();
}

/// Returns the vector of length 1 with the same direction: each component is the float nearest to it, for all finite
/// vectors. The zero vector gives `Vector2::ZERO`; an infinite or NaN component gives two NaNs.
[[nodiscard]] inline Vector2 exactNormalised(const Vector2& vec) noexcept {
    if (!std::isfinite(vec.x) || !std::isfinite(vec.y)) return Vector2(std::numeric_limits<float>::quiet_NaN());
    if (vec.x == 0.0f && vec.y == 0.0f) return Vector2::ZERO;
    const VornPrivate::ExactVector exact(vec.x, vec.y);
    return {exact.fraction(vec.x), exact.fraction(vec.y)};
}

/// Returns the corners in the order of their numbers in Rect.h: left top, left bottom, right top, right bottom.
[[nodiscard]] constexpr Vector2CornerRect cornersOf(const FloatRect& rect) noexcept {
    return {{Vector2(rect.left, rect.top), Vector2(rect.left, rect.bottom), Vector2(rect.right, rect.top),
             Vector2(rect.right, rect.bottom)}};
}

/// Returns the smallest rectangle that contains the points of a range, such as a `std::vector<Vector2>` or an array.
/// NaN coordinates are ignored; an axis on which all are NaN is NaN. If a side is zero and points have zeros of both
/// signs there, the side has the sign of the first one.
///
/// Throws `Exception<4>`: "no points!" for an empty range.
template <class Points, class = decltype(std::begin(std::declval<const Points&>()))>
[[nodiscard]] FloatRect boundsOf(const Points& points) {
    if constexpr (std::is_convertible_v<const Points&, ConstVectorSpan>) {
        if (std::size(points) >= 16) return boundsOf(ConstVectorSpan(points)); // for fewer, a loop is as fast
    }
    VornPrivate::Bounds x, y;
    bool isEmpty = true;
    for (const Vector2& point : points) {
        x.add(point.x);
        y.add(point.y);
        isEmpty = false;
    }
    if (isEmpty) VORN_THROW(E::PARAMETER, "no points!");
    return {x.low(), y.low(), x.high(), y.high()};
}

/// Returns the smallest rectangle that contains the corners.
[[nodiscard]] inline FloatRect boundsOf(const Vector2CornerRect& rect) { return boundsOf(rect.corners); }

/// Returns the smallest rectangle that contains `matrix * cornersOf(rect)`: also right for rotations.
[[nodiscard]] inline FloatRect boundsOf(const FloatRect& rect, const Matrix3& matrix) {
    return boundsOf(matrix * cornersOf(rect));
}

/// Returns true if the rectangles share an area. False if they only touch, if one has no area, if one is inverted, and
/// beside NaN.
[[nodiscard]] constexpr bool overlaps(const FloatRect& a, const FloatRect& b) noexcept {
    const auto overlap = [](float low1, float high1, float low2, float high2) {
        return low1 < high1 && low2 < high2 && low1 < high2 && low2 < high1;
    };
    return overlap(a.left, a.right, b.left, b.right) && overlap(a.top, a.bottom, b.top, b.bottom);
}

/// Returns a rectangle of `size` inside `around`: at the sides that `pin` names (one of the nine values of RectPoint),
/// with `margin` between these sides and those of `around`; in the middle of an axis of which `pin` names no side. It
/// may be larger than `around`, and a negative margin puts it outside. Each side is rounded once.
///
/// Throws `Exception<1>`: "isPin : invalid pin!".
/// @{
[[nodiscard]] inline FloatRect anchored(const FloatRect& around, const Vector2& size, unsigned int pin,
                                        const Vector2& margin) {
    const bool isPin = pin < 16 && (pin & RectPoint::LEFT) * (pin & RectPoint::RIGHT) == 0 &&
                       (pin & RectPoint::TOP) * (pin & RectPoint::BOTTOM) == 0;
    VORN_ASSERT(isPin, "invalid pin!", "Vorn::anchored");
    const auto start = [](double low, double high, double length, double distance, bool isLow, bool isHigh) {
        return isLow ? low + distance : isHigh ? high - distance - length : (low + high - length) * 0.5;
    };
    const double left = start(double(around.left), double(around.right), double(size.x), double(margin.x),
                              pin & RectPoint::LEFT, pin & RectPoint::RIGHT);
    const double top = start(double(around.top), double(around.bottom), double(size.y), double(margin.y),
                             pin & RectPoint::TOP, pin & RectPoint::BOTTOM);
    return {float(left), float(top), float(left + double(size.x)), float(top + double(size.y))};
}
[[nodiscard]] inline FloatRect anchored(const FloatRect& around, const Vector2& size, unsigned int pin,
                                        float margin = 0.0f) {
    return anchored(around, size, pin, Vector2(margin));
}
/// @}

/// Returns the inverse of a matrix of any scale: the size of the determinant does not matter, only that it is larger
/// than 2 to the power -26 of the sum of the absolute values of its terms. Each element has an error of at most one
/// unit in its last place. Returns no value for other matrices, which are singular or close to it, for matrices with an
/// element that is infinite or NaN, and if an element of the inverse is larger than any float.
[[nodiscard]] inline std::optional<Matrix3> inverseAtAnyScale(const Matrix3& matrix) noexcept {
    // Products of floats are exact in double, so each cofactor is rounded once.
    const auto cofactor = [&](int a, int b, int c, int d) {
        return double(matrix.m[a]) * double(matrix.m[b]) - double(matrix.m[c]) * double(matrix.m[d]);
    };
    const double adjugate[9] = {cofactor(4, 8, 5, 7), cofactor(2, 7, 1, 8), cofactor(1, 5, 2, 4),
                                cofactor(5, 6, 3, 8), cofactor(0, 8, 2, 6), cofactor(2, 3, 0, 5),
                                cofactor(3, 7, 4, 6), cofactor(1, 6, 0, 7), cofactor(0, 4, 1, 3)};
    const double terms[3] = {double(matrix.m[0]) * adjugate[0], double(matrix.m[1]) * adjugate[3],
                             double(matrix.m[2]) * adjugate[6]};
    const double determinant = terms[0] + terms[1] + terms[2];
    const double size = std::fabs(terms[0]) + std::fabs(terms[1]) + std::fabs(terms[2]);
    if (!(std::fabs(determinant) > size * 0x1p-26)) return std::nullopt;
    Matrix3 result(0.0f);
    for (int i = 0; i < 9; ++i) {
        result.m[i] = float(adjugate[i] / determinant);
        if (!std::isfinite(result.m[i])) return std::nullopt;
    }
    return result;
}

} // namespace Vorn
