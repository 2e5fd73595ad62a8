#include "Vorn/Geometry.h"
#include "Documentation/Surprises/Surprise.h"
#include "Vorn/ComplexAngle.h"
#include "Vorn/FloatRect.h"
#include "Vorn/Matrix3.h"
#include "Vorn/RectPoint.h"
#include "Vorn/Vector2.h"
#include "Vorn/Vector2CornerRect.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>

namespace {

using namespace Vorn;

constexpr float NAN_VALUE = std::numeric_limits<float>::quiet_NaN();

// The bytes of an object that was built by default over bytes of 0xA5.
template <class T>
bool isLeftUnwritten() {
    alignas(T) unsigned char storage[sizeof(T)], before[sizeof(T)];
    std::memset(storage, 0xA5, sizeof storage);
    std::memcpy(before, storage, sizeof storage);
    T* volatile object = new (storage) T;
    static_cast<void>(object);
    return std::memcmp(storage, before, sizeof storage) == 0;
}

void expectSides(const FloatRect& rect, float left, float top, float right, float bottom) {
    EXPECT_FLOAT_EQ(rect.left, left);
    EXPECT_FLOAT_EQ(rect.top, top);
    EXPECT_FLOAT_EQ(rect.right, right);
    EXPECT_FLOAT_EQ(rect.bottom, bottom);
}

Matrix3 translation(float x, float y) {
    Matrix3 matrix;
    matrix.makeTranslation(x, y);
    return matrix;
}

Matrix3 rotation(float radians) {
    Matrix3 matrix;
    matrix.makeTransform(radians, Vector2(1, 1), Vector2(0, 0));
    return matrix;
}

float widthOf(const Vector2CornerRect& rect) {
    const auto byX = [](const Vector2& a, const Vector2& b) { return a.x < b.x; };
    const auto bounds = std::minmax_element(std::begin(rect.corners), std::end(rect.corners), byX);
    return bounds.second->x - bounds.first->x;
}

} // namespace

const Surprises GEOMETRY_SURPRISES = {
    {"`Vector2()`, `FloatRect()`, `Matrix3()` and their like",
     [] {
#ifndef __OPTIMIZE__ // an optimiser may drop the bytes that the object is built over
         EXPECT_TRUE(isLeftUnwritten<Vector2>());
         EXPECT_TRUE(isLeftUnwritten<FloatRect>());
         EXPECT_TRUE(isLeftUnwritten<Matrix3>());
         EXPECT_TRUE(isLeftUnwritten<ComplexAngle>());
#else
         EXPECT_FALSE(std::is_trivially_default_constructible_v<Vector2>) << "an empty constructor";
#endif
     },
     [] {
         EXPECT_EQ(Vector2::ZERO.x + Vector2::ZERO.y, 0.0f);
         expectSides(FloatRect::ZERO, 0, 0, 0, 0);
         EXPECT_EQ(Matrix3::IDENTITY.m[0], 1.0f);
     }},
    {"`Vector2::length`, `inverseLength`, `normalise`, `normalisedCopy`",
     [] {
         float worst = 0;
         for (float x = 1; x < 5; x += 0.01f) {
             worst = std::max(worst, std::abs(Vector2(x, 0).length() / x - 1));
             worst = std::max(worst, std::abs(Vector2(x, 0).normalisedCopy().x - 1));
             worst = std::max(worst, std::abs(Vector2(x, 0).inverseLength() * x - 1));
         }
         EXPECT_GT(worst, 0.001f);
         EXPECT_LT(worst, 0.0025f);
     },
     [] {
         EXPECT_EQ(exactLength(Vector2(3, 4)), 5.0f);
         EXPECT_EQ(exactNormalised(Vector2(3, 4)).x, 0.6f);
     }},
    {"`Vector2::length` of the zero vector", [] { EXPECT_NEAR(Vector2::ZERO.length(), 5.05e-20f, 0.01e-20f); },
     [] { EXPECT_EQ(exactLength(Vector2::ZERO), 0.0f); }},
    {"`Vector2::length` and its like beyond about 1.8e19",
     [] {
         EXPECT_EQ(Vector2(2e19f, 0).length(), -std::numeric_limits<float>::infinity());
         EXPECT_LT(Vector2(1e-20f, 0).inverseLength(), 0.5e20f);
     },
     [] {
         EXPECT_EQ(exactLength(Vector2(2e19f, 0)), 2e19f);
         EXPECT_EQ(exactNormalised(Vector2(1e-20f, 0)).x, 1.0f);
     }},
    {"`Vector2::isZero`", [] { EXPECT_TRUE(Vector2(0.0003f, 0).isZero()); },
     [] {
         EXPECT_FALSE(Vector2(0.0003f, 0) == Vector2::ZERO);
         EXPECT_TRUE(Vector2(0, 0) == Vector2::ZERO);
     }},
    {"`Vector2` and `FloatRect`, `<` `<=` `>` `>=`",
     [] {
         const Vector2 a(1, 2), b(2, 1);
         EXPECT_FALSE(a < b || a <= b || a > b || a >= b);
         const FloatRect r(1, 2, 1, 2), s(2, 1, 2, 1);
         EXPECT_FALSE(r < s || r <= s || r > s || r >= s);
     },
     [] { EXPECT_TRUE(Vector2(1, 2).x < Vector2(2, 1).x); }},
    {"`Vector2::upperLimit`, `lowerLimit` beside NaN",
     [] {
         Vector2 number(1, NAN_VALUE);
         number.upperLimit(Vector2(NAN_VALUE, 2));
         EXPECT_TRUE(std::isnan(number.x));
         EXPECT_EQ(number.y, 2.0f);
     },
     [] {
         Vector2 number(1, 1);
         const Vector2 limit(NAN_VALUE, 0);
         if (!std::isnan(limit.x) && !std::isnan(limit.y)) number.upperLimit(limit);
         EXPECT_EQ(number.x, 1.0f);
     }},
    {"`v.perpendicular(v)`",
     [] {
         Vector2 v(3, 4);
         v.perpendicular(v);
         EXPECT_EQ(v.x, -4.0f);
         EXPECT_EQ(v.y, -4.0f);
     },
     [] {
         Vector2 v(3, 4);
         v = v.perpendicular();
         EXPECT_EQ(v.x, -4.0f);
         EXPECT_EQ(v.y, 3.0f);
     }},
    {"`ComplexAngle(f)`, `angle = f`",
     [] {
         ComplexAngle angle = ComplexAngle::IDENTITY;
         angle = 0.5f;
         EXPECT_FLOAT_EQ(ComplexAngle(0.5f).x, std::cos(0.5f));
         EXPECT_FLOAT_EQ(angle.y, std::sin(0.5f));
     },
     [] { EXPECT_EQ(ComplexAngle(0.5f, 0.5f).y, 0.5f); }},
    {"`-angle`",
     [] {
         const ComplexAngle negated = -ComplexAngle(0.5f);
         EXPECT_NEAR(std::atan2(negated.y, negated.x), 0.5 - 3.14159265, 1e-5);
     },
     [] {
         const ComplexAngle inverse = ComplexAngle(0.5f).inverse();
         EXPECT_NEAR(std::atan2(inverse.y, inverse.x), -0.5, 1e-5);
     }},
    {"`ComplexAngle::normalise`",
     [] {
         ComplexAngle angle(3, 4), zero(0, 0);
         EXPECT_EQ(angle.normalise(), 25.0f);
         zero.normalise();
         EXPECT_TRUE(std::isnan(zero.x));
     },
     [] {
         ComplexAngle angle(3, 4);
         EXPECT_EQ(std::sqrt(angle.normalise()), 5.0f);
     }},
    {"`vector * matrix`",
     [] {
         Matrix3 matrix = Matrix3::IDENTITY;
         matrix.m[6] = 5;
         matrix.m[7] = 7;
         const Vector2 moved = Vector2(1, 1) * matrix, same = Vector2(1, 1) * translation(5, 7);
         EXPECT_EQ(moved.x, 6.0f);
         EXPECT_EQ(moved.y, 8.0f);
         EXPECT_EQ(same.x, 1.0f);
     },
     [] { EXPECT_EQ((translation(5, 7) * Vector2(1, 1)).y, 8.0f); }},
    {"`Matrix3 ==`",
     [] {
         EXPECT_FALSE(Matrix3(0.0f) == Matrix3(-0.0f));
         EXPECT_TRUE(Matrix3(NAN_VALUE) == Matrix3(NAN_VALUE));
     },
     [] {
         const Matrix3 a(0.0f), b(-0.0f);
         EXPECT_TRUE(std::equal(std::begin(a.m), std::end(a.m), std::begin(b.m)));
     }},
    {"`Matrix3::translate`",
     [] {
         Matrix3 matrix = Matrix3::IDENTITY;
         matrix.scale(2, 2);
         matrix.translate(3, 4);
         EXPECT_EQ(matrix.m[2], 3.0f);
         EXPECT_EQ(matrix.m[5], 4.0f);
     },
     [] {
         Matrix3 matrix = Matrix3::IDENTITY;
         matrix.scale(2, 2);
         EXPECT_EQ((matrix * translation(3, 4)).m[2], 6.0f);
     }},
    {"`Matrix3::makeInverseTransform`",
     [] {
         Matrix3 matrix, inverse;
         matrix.makeTransform(0.0f, Vector2(2, 2), Vector2(3, 4));
         inverse.makeInverseTransform(0.0f, Vector2(2, 2), Vector2(3, 4));
         EXPECT_EQ(inverse.m[0], 2.0f);
         EXPECT_EQ(inverse.m[2], -3.0f);
         EXPECT_NE((inverse * (matrix * Vector2(1, 1))).x, 1.0f);
     },
     [] {
         Matrix3 matrix;
         matrix.makeTransform(0.5f, Vector2(2, 2), Vector2(3, 4));
         Matrix3 inverse = matrix;
         inverse.inverse();
         EXPECT_NEAR((inverse * (matrix * Vector2(1, 1))).x, 1.0f, 1e-5f);
     }},
    {"`FloatRect(x, y)`", [] { expectSides(FloatRect(3, 4), 3, 4, 3, 4); },
     [] {
         const FloatRect rect(0, 0, 3, 4);
         EXPECT_EQ(rect.width(), 3.0f);
         EXPECT_EQ(rect.height(), 4.0f);
     }},
    {"`FloatRect::intersects`",
     [] {
         EXPECT_TRUE(FloatRect(0, 0, 1, 1).intersects(FloatRect(100, 100, 101, 101)));
         EXPECT_FALSE(FloatRect(5, 0, 5, 1).intersects(FloatRect(5, 0, 5, 1)));
     },
     [] {
         EXPECT_FALSE(overlaps(FloatRect(0, 0, 1, 1), FloatRect(100, 100, 101, 101)));
         EXPECT_TRUE(overlaps(FloatRect(0, 0, 10, 10), FloatRect(5, 5, 15, 15)));
         EXPECT_FALSE((FloatRect(0, 0, 1, 1) & FloatRect(100, 100, 101, 101)).isNormalised());
         EXPECT_TRUE((FloatRect(0, 0, 10, 10) & FloatRect(5, 5, 15, 15)).isNormalised());
     }},
    {"`rect & other` of strangers", [] { expectSides(FloatRect(0, 0, 1, 1) & FloatRect(5, 5, 6, 6), 5, 5, 1, 1); },
     [] { EXPECT_FALSE((FloatRect(0, 0, 1, 1) & FloatRect(5, 5, 6, 6)).isNormalised()); }},
    {"`merge(x, y)`, `\\|= vector` on an inverted axis",
     [] {
         FloatRect merged(10, 10, 0, 0), joined(10, 10, 0, 0);
         merged.merge(5, 5);
         joined |= Vector2(5, 5);
         expectSides(merged, 5, 5, 0, 0);
         expectSides(joined, 5, 5, 0, 0);
         expectSides(FloatRect(10, 10, 0, 0).mergedCopy(5, 5), 5, 5, 5, 5);
     },
     [] {
         FloatRect merged(10, 10, 0, 0);
         merged.normalise();
         merged.merge(5, 5);
         expectSides(merged, 0, 0, 10, 10);
     }},
    {"`normalisedCopy` beside NaN",
     [] {
         FloatRect rect(NAN_VALUE, 0, 1, 1);
         EXPECT_TRUE(std::isnan(rect.normalisedCopy().right)) << "swapped";
         rect.normalise();
         EXPECT_TRUE(std::isnan(rect.left)) << "not swapped";
     },
     [] {
         const FloatRect rect(3, 0, 1, 1);
         ASSERT_FALSE(std::isnan(rect.left) || std::isnan(rect.right));
         EXPECT_EQ(rect.normalisedCopy().left, 1.0f);
     }},
    {"`FloatRect::reflect(orient)`",
     [] {
         FloatRect rect(0, 1, 2, 3);
         rect.reflect(0);
         rect.reflect(1);
         expectSides(rect, 0, 1, 2, 3);
         EXPECT_THROW(rect.reflect(2), Exception<1>);
     },
     [] {
         FloatRect rect(0, 1, 2, 3);
         rect.reflectHorz();
         expectSides(rect, 2, 1, 0, 3);
         rect.reflectVert();
         expectSides(rect, 2, 3, 0, 1);
     }},
    {"`-rect`", [] { expectSides(-FloatRect(0, 1, 2, 3), 0, -1, -2, -3); },
     [] {
         expectSides((-FloatRect(0, 1, 2, 3)).invertedCopy(), -2, -3, 0, -1);
         EXPECT_TRUE((-FloatRect(0, 1, 2, 3)).invertedCopy().isNormalised());
     }},
    {"`createRatio` on an axis whose size is not above 0",
     [] {
         FloatRect rect(5, 5, 5, 10);
         rect.createRatio(FloatRect(1, 6, 2, 7));
         EXPECT_EQ(rect.left, 0.0f);
         EXPECT_EQ(rect.right, 0.0f);
     },
     [] {
         const FloatRect rect(5, 5, 5, 10);
         EXPECT_FALSE(rect.width() > 0);
         EXPECT_TRUE(rect.height() > 0);
     }},
    {"`rect * matrix`",
     [] {
         const FloatRect rect(0, 0, 2, 1);
         expectSides(rect * translation(3, 4), 3, 4, 5, 5);
         EXPECT_LT((rect * rotation(-0.7f)).width(), widthOf(rotation(-0.7f) * cornersOf(rect)) - 0.1f);
     },
     [] {
         const float expected = 2 * std::cos(0.7f) + std::sin(0.7f);
         EXPECT_NEAR(boundsOf(FloatRect(0, 0, 2, 1), rotation(0.7f)).width(), expected, 1e-5f);
     }},
    {"`rect * matrix` of an inverted rectangle",
     [] { EXPECT_TRUE((FloatRect(2, 1, 0, 0) * translation(3, 4)).isNormalised()); },
     [] { EXPECT_TRUE((FloatRect(2, 1, 0, 0).normalisedCopy() * translation(3, 4)).isNormalised()); }},
    {"`inflate`, `resize` with a pin on a high side",
     [] {
         FloatRect rect(0, 0, 10, 10);
         rect.inflate(1, 1, RectPoint::RIGHT, 0, 0);
         EXPECT_EQ(rect.left, 2.0f);
         EXPECT_EQ(rect.right, 14.0f);
     },
     [] {
         const FloatRect rect = anchored(FloatRect(0, 0, 10, 10), Vector2(12, 12), RectPoint::RIGHT);
         expectSides(rect, -2, -1, 10, 11);
     }},
    {"The offset of `inflate`, `resize`",
     [] {
         FloatRect rect(0, 0, 10, 10);
         rect.inflate(0, 0, RectPoint::CENTRE, 3, 4);
         expectSides(rect, -3, -4, 7, 6);
     },
     [] {
         FloatRect rect(0, 0, 10, 10);
         rect.inflate(0, 0, RectPoint::CENTRE, -3, -4);
         expectSides(rect, 3, 4, 13, 14);
     }},
    {"`inflate(amount, pin, x, y)` with one float",
     [] {
         FloatRect rect(0, 0, 10, 10);
         EXPECT_NO_THROW(rect.inflate(1.0f, 16u, 0.0f, 0.0f));
     },
     [] {
         FloatRect rect(0, 0, 10, 10);
         EXPECT_THROW(rect.inflate(1.0f, 1.0f, 16u, 0.0f, 0.0f), AllExceptions);
     }},
};
