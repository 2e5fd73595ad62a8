// The references compute in floats of 128 bits, or check the definition of a result directly.
#include "Vorn/Geometry.h"

#include "Support/Floats.h"
#include "Support/Report.h"
#include "Vorn/ComplexAngle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat> // LDBL_MANT_DIG
#include <list>
#include <vector>

namespace {

using Vorn::FloatRect;
using Vorn::Matrix3;
using Vorn::Vector2;
using Four = std::array<float, 4>;
namespace Pin = Vorn::RectPoint;

#if LDBL_MANT_DIG == 113
using Wide = long double;
#else
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
using Wide = __float128;
#pragma GCC diagnostic pop
#endif

Wide squareOf(Wide value) { return value * value; }

// The middles between a float that is not negative and its neighbours; below 0 there is none, and infinity stands for
// two to the power 128.
Wide upperMiddle(float value) {
    const float next = std::nextafter(value, INFINITE);
    return (Wide(value) + (std::isinf(next) ? Wide(0x1p128) : Wide(next))) / 2;
}
Wide lowerMiddle(float value) {
    const float before = std::nextafter(value, 0.0f);
    return (Wide(before) + (std::isinf(value) ? Wide(0x1p128) : Wide(value))) / 2;
}
bool isEven(float value) { return (std::bit_cast<unsigned int>(value) & 1) == 0; }

// The sign of square - root^2 * (larger + smaller). The products are exact; the sum may need more bits than there are.
int signOf(Wide square, Wide root, Wide larger, Wide smaller) {
    const Wide rest = square - root * root * larger, less = root * root * smaller;
    return rest > less ? 1 : rest < less ? -1 : 0;
}

// Whether `value` is the float nearest to x where x^2 * (larger + smaller) = square; of two the even one.
testing::AssertionResult isNearestRoot(float value, Wide square, Wide larger, Wide smaller) {
    if (!(value >= 0.0f)) return testing::AssertionFailure() << value << " is negative or NaN";
    const int low = value == 0.0f ? 1 : signOf(square, lowerMiddle(value), larger, smaller);
    const int high = std::isinf(value) ? -1 : signOf(square, upperMiddle(value), larger, smaller);
    if (low < 0 || (low == 0 && !isEven(value))) return testing::AssertionFailure() << value << " is too large";
    if (high > 0 || (high == 0 && !isEven(value))) return testing::AssertionFailure() << value << " is too small";
    return testing::AssertionSuccess();
}

void expectExact(const Vector2& vector) {
    const Wide x = squareOf(vector.x), y = squareOf(vector.y);
    EXPECT_TRUE(isNearestRoot(Vorn::exactLength(vector), x + y, 1, 0)) << describe(vector);
    if (x + y == 0) return;
    const Vector2 unit = Vorn::exactNormalised(vector);
    EXPECT_TRUE(isNearestRoot(std::fabs(unit.x), x, std::max(x, y), std::min(x, y))) << describe(vector);
    EXPECT_TRUE(isNearestRoot(std::fabs(unit.y), y, std::max(x, y), std::min(x, y))) << describe(vector);
    EXPECT_EQ(std::signbit(unit.x), std::signbit(vector.x)) << describe(vector);
    EXPECT_EQ(std::signbit(unit.y), std::signbit(vector.y)) << describe(vector);
}

TEST(GeometryFunctions, ExactLengthsAreTheNearestFloats) {
    RandomFloats random(31);
    for (int i = 0; i < repetitions(1000000, 20000); ++i) {
        const Vector2 vector = random.record<Vector2>();
        if (std::isfinite(vector.x) && std::isfinite(vector.y)) expectExact(vector);
    }
    for (float x : {0.0f, DENORMAL, 3 * DENORMAL, 1.17549435e-38f, 1e-20f, 1.0f, 3.0f, 1.84e19f, 2.41e38f, LARGEST})
        for (float y : {0.0f, DENORMAL, 4 * DENORMAL, 1.17549435e-38f, 1e-20f, 1.0f, 4.0f, 1.84e19f, 2.40e38f, LARGEST})
            for (const float sign : {1.0f, -1.0f}) expectExact(Vector2(sign * x, y));
}

// Lengths at and beside the middle between two floats: x = a^2 - b^2 and y = 2ab have the length a^2 + b^2 of 25 bits.
TEST(GeometryFunctions, ExactLengthsBesideMiddlesAreTheNearestFloats) {
    int ties = 0;
    RandomFloats random(32);
    for (int i = 0; i < repetitions(200000, 10000); ++i) {
        const unsigned long long a = 3000 + random.below(2700), b = 1 + random.below(2999);
        const unsigned long long c = a * a + b * b, x = a * a - b * b, y = 2 * a * b;
        if (x >= 1 << 24 || y >= 1 << 24) continue;
        ties += c >= 1 << 24 && c % 2 == 1;
        const float scale = std::ldexp(1.0f, static_cast<int>(random.below(200)) - 120);
        const Vector2 vector(static_cast<float>(x) * scale, static_cast<float>(y) * scale);
        expectExact(vector);
        expectExact(Vector2(std::nextafter(vector.x, INFINITE), vector.y));
        expectExact(Vector2(vector.x, std::nextafter(vector.y, 0.0f)));
    }
    EXPECT_GT(ties, 100);
    // The shorter side decides far below the last bit of the square.
    for (int exponent = 0; exponent < 140; ++exponent)
        for (const float x : {1.0f, 1.0f + 0x1p-23f, 16777215.0f}) expectExact(Vector2(x, std::ldexp(1.0f, -exponent)));
}

TEST(GeometryFunctions, ExactLengthsOfSpecialVectorsAreDocumented) {
    EXPECT_TRUE(sameBits(Vorn::exactLength(Vector2(-0.0f, -0.0f)), 0.0f));
    EXPECT_EQ(Vorn::exactLength(Vector2(LARGEST, LARGEST)), INFINITE);
    EXPECT_EQ(Vorn::exactLength(Vector2(-INFINITE, NOT_A_NUMBER)), INFINITE);
    EXPECT_TRUE(std::isnan(Vorn::exactLength(Vector2(1.0f, NOT_A_NUMBER))));
    EXPECT_TRUE(same(Vorn::exactNormalised(Vector2(-0.0f, 0.0f)), Vector2::ZERO));
    for (const float special : {INFINITE, -INFINITE, NOT_A_NUMBER}) {
        const Vector2 unit = Vorn::exactNormalised(Vector2(special, 1.0f));
        EXPECT_TRUE(std::isnan(unit.x) && std::isnan(unit.y));
    }
    EXPECT_TRUE(same(Vorn::exactNormalised(Vector2(LARGEST, 0.0f)), Vector2::UNIT_X));
    EXPECT_TRUE(same(Vorn::exactNormalised(Vector2(0.0f, -DENORMAL)), Vector2(0.0f, -1.0f)));
}

TEST(GeometryFunctions, FloatsMultiplyVectors) {
    constexpr Vector2 twice = 2.0f * Vector2(1.0f, -3.0f);
    EXPECT_TRUE(same(twice, Vector2(2.0f, -6.0f)));
}

TEST(GeometryFunctions, CornersHaveTheNumbersOfRect) {
    const Vorn::Vector2CornerRect corners = Vorn::cornersOf(FloatRect(1, 2, 3, 4));
    for (unsigned int corner = 0; corner < 4; ++corner) {
        FloatRect moved = FloatRect::ZERO;
        moved.setByCorner(corner, corners.corners[corner]);
        FloatRect expected = FloatRect::ZERO;
        expected.setByCorner(corner, corner & 2 ? 3.0f : 1.0f, corner & 1 ? 4.0f : 2.0f);
        EXPECT_TRUE(same(moved, expected)) << corner;
    }
}

TEST(GeometryFunctions, BoundsContainAllPoints) {
    EXPECT_TRUE(same(Vorn::boundsOf(std::vector<Vector2>{{1, 5}, {-2, 3}, {0, 9}}), Four{-2, 3, 1, 9}));
    EXPECT_TRUE(same(Vorn::boundsOf(std::list<Vector2>{{1, 5}}), Four{1, 5, 1, 5}));
    const Vector2 array[] = {{NOT_A_NUMBER, NOT_A_NUMBER}, {1, NOT_A_NUMBER}, {-INFINITE, NOT_A_NUMBER}};
    EXPECT_TRUE(same(Vorn::boundsOf(array), Four{-INFINITE, NOT_A_NUMBER, 1, NOT_A_NUMBER}));
    expectRaises<4>([] { Vorn::boundsOf(std::vector<Vector2>()); }, "no points!", "Vorn::boundsOf",
                    "Include/Vorn/Geometry");
    Matrix3 quarter;
    quarter.makeTransform(Vorn::ComplexAngle(0.0f, 1.0f), Vector2(2.0f, 2.0f), Vector2(10.0f, 0.0f));
    EXPECT_TRUE(same(Vorn::boundsOf(FloatRect(1, 2, 4, 3), quarter), Four{4, 2, 6, 8}));
    RandomFloats random(33);
    for (int i = 0; i < repetitions(20000, 1000); ++i) {
        const FloatRect rect(random.record<FloatRect>());
        const Matrix3 matrix = random.record<Matrix3>();
        Four expected = {INFINITE, INFINITE, -INFINITE, -INFINITE};
        bool hasX = false, hasY = false;
        for (const float x : {rect.left, rect.right}) {
            for (const float y : {rect.top, rect.bottom}) {
                const Vector2 point = matrix * Vector2(x, y);
                hasX |= point.x == point.x;
                hasY |= point.y == point.y;
                expected = {std::fmin(expected[0], point.x), std::fmin(expected[1], point.y),
                            std::fmax(expected[2], point.x), std::fmax(expected[3], point.y)};
            }
        }
        if (!hasX) expected[0] = expected[2] = NOT_A_NUMBER;
        if (!hasY) expected[1] = expected[3] = NOT_A_NUMBER;
        for (float& side : expected) side += 0.0f; // which zero is first does not matter here
        FloatRect actual = Vorn::boundsOf(rect, matrix);
        actual += 0.0f;
        ASSERT_TRUE(same(actual, expected)) << describe(rect) << describe(matrix);
    }
}

TEST(GeometryFunctions, OverlapsShareAnArea) {
    const struct {
        FloatRect a, b;
        bool expected;
    } rows[] = {
        {{0, 0, 2, 2}, {1, 1, 3, 3}, true},
        {{0, 0, 4, 4}, {1, 1, 2, 2}, true},
        {{0, 0, 2, 2}, {0, 0, 2, 2}, true},
        {{0, 0, 2, 2}, {2, 0, 4, 2}, false}, // an edge
        {{0, 0, 2, 2}, {2, 2, 4, 4}, false}, // a corner
        {{0, 0, 2, 2}, {5, 0, 6, 2}, false},
        {{0, 0, 2, 2}, {0, 5, 2, 6}, false},
        {{0, 0, 2, 2}, {1, 0, 1, 2}, false}, // no area
        {{2, 2, 0, 0}, {0, 0, 2, 2}, false}, // inverted
        {{0, 0, NOT_A_NUMBER, 2}, {0, 0, 2, 2}, false},
        {{-INFINITE, -INFINITE, INFINITE, INFINITE}, {0, 0, 1, 1}, true},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Vorn::overlaps(row.a, row.b), row.expected) << describe(row.a) << describe(row.b);
        EXPECT_EQ(Vorn::overlaps(row.b, row.a), row.expected) << describe(row.a) << describe(row.b);
    }
    RandomFloats random(34);
    for (int i = 0; i < repetitions(100000, 5000); ++i) {
        const FloatRect a(random.record<FloatRect>()), b(random.record<FloatRect>());
        const FloatRect common = a & b;
        const bool isOrdered = a.left < a.right && a.top < a.bottom && b.left < b.right && b.top < b.bottom;
        ASSERT_EQ(Vorn::overlaps(a, b), isOrdered && common.left < common.right && common.top < common.bottom);
    }
}

TEST(GeometryFunctions, AnchoredKeepsTheSidesOfThePin) {
    const FloatRect around(10, 20, 110, 80);
    const struct {
        unsigned int pin;
        Four expected;
    } rows[] = {{Pin::CENTRE, {50, 40, 70, 60}},       {Pin::LEFT, {13, 40, 33, 60}},
                {Pin::TOP, {50, 23, 70, 43}},          {Pin::RIGHT, {87, 40, 107, 60}},
                {Pin::BOTTOM, {50, 57, 70, 77}},       {Pin::TOP_LEFT, {13, 23, 33, 43}},
                {Pin::TOP_RIGHT, {87, 23, 107, 43}},   {Pin::BOTTOM_LEFT, {13, 57, 33, 77}},
                {Pin::BOTTOM_RIGHT, {87, 57, 107, 77}}};
    for (const auto& row : rows)
        EXPECT_TRUE(same(Vorn::anchored(around, Vector2(20, 20), row.pin, 3.0f), row.expected)) << row.pin;
    EXPECT_TRUE(same(Vorn::anchored(around, Vector2(20, 10), Pin::BOTTOM_RIGHT), Four{90, 70, 110, 80}));
    EXPECT_TRUE(same(Vorn::anchored(around, Vector2(20, 10), Pin::TOP_LEFT, Vector2(1, -15)), Four{11, 5, 31, 15}));
    EXPECT_TRUE(same(Vorn::anchored(around, Vector2(200, 100), Pin::CENTRE), Four{-40, 0, 160, 100}));
    for (unsigned int pin = 0; pin < 40; ++pin) {
        bool isKnown = false;
        for (const auto& row : rows) isKnown |= row.pin == pin;
        if (isKnown) continue;
        expectRaises<1>([&] { Vorn::anchored(around, Vector2(1, 1), pin); }, "isPin : invalid pin!", "Vorn::anchored",
                        "Include/Vorn/Geometry");
    }
    expectRaises<1>([&] { Vorn::anchored(around, Vector2(1, 1), 0x80000000u); }, "isPin : invalid pin!");
}

// The inverse, by the adjugate in floats of 128 bits.
struct WideInverse {
    explicit WideInverse(const Matrix3& matrix) {
        const float* const m = matrix.m;
        const auto minor = [&](int a, int b, int c, int d) { return Wide(m[a]) * m[b] - Wide(m[c]) * m[d]; };
        const Wide adjugate[9] = {minor(4, 8, 5, 7),  -minor(1, 8, 2, 7), minor(1, 5, 2, 4),
                                  -minor(3, 8, 5, 6), minor(0, 8, 2, 6),  -minor(0, 5, 2, 3),
                                  minor(3, 7, 4, 6),  -minor(0, 7, 1, 6), minor(0, 4, 1, 3)};
        const Wide terms[] = {m[0] * adjugate[0], m[1] * adjugate[3], m[2] * adjugate[6]};
        const Wide determinant = terms[0] + terms[1] + terms[2];
        const auto magnitude = [](Wide value) { return value < 0 ? -value : value; };
        const Wide size = magnitude(terms[0]) + magnitude(terms[1]) + magnitude(terms[2]);
        conditioning = size > 0 ? magnitude(determinant) / size : 0;
        for (int i = 0; i < 9; ++i) elements[i] = determinant != 0 ? adjugate[i] / determinant : 0;
    }
    Wide elements[9];
    Wide conditioning; // 1 if nothing cancels in the determinant
};

TEST(GeometryFunctions, InversesOfAnyScaleAreExactToOneUnit) {
    RandomFloats random(35);
    int inverted = 0, refused = 0;
    for (int i = 0; i < repetitions(200000, 5000); ++i) {
        Matrix3 matrix = random.record<Matrix3>();
        if (i % 3 == 0) { // a product of a row by a column, nearly
            for (int k = 3; k < 9; ++k) matrix.m[k] = matrix.m[k % 3] * matrix.m[k - k % 3];
        }
        bool isFinite = true;
        for (const float element : matrix.m) isFinite &= std::isfinite(element);
        const std::optional<Matrix3> actual = Vorn::inverseAtAnyScale(matrix);
        if (!isFinite) {
            EXPECT_FALSE(actual) << describe(matrix);
            continue;
        }
        const WideInverse expected(matrix);
        bool isLarge = false;
        for (const Wide element : expected.elements) isLarge |= !std::isfinite(static_cast<float>(element));
        if (expected.conditioning > Wide(0x1.001p-26) && !isLarge) {
            ASSERT_TRUE(actual) << describe(matrix);
        }
        if (expected.conditioning < Wide(0x1.ffep-27)) {
            ASSERT_FALSE(actual) << describe(matrix);
        }
        refused += !actual;
        if (!actual) continue;
        ++inverted;
        for (int k = 0; k < 9; ++k) {
            const float nearest = static_cast<float>(expected.elements[k]);
            const float value = actual->m[k];
            ASSERT_TRUE(value == nearest || std::nextafter(nearest, INFINITE) == value ||
                        std::nextafter(nearest, -INFINITE) == value)
                << describe(matrix) << " element " << k << ": " << value << ", expected " << nearest;
        }
    }
    EXPECT_GT(inverted, repetitions(200000, 5000) / 20);
    EXPECT_GT(refused, repetitions(200000, 5000) / 20);
}

TEST(GeometryFunctions, InversesOfSpecialMatrices) {
    const auto scaled = [](float scale) { return Matrix3(scale, 0, 0, 0, scale, 0, 0, 0, 1); };
    EXPECT_THROW(scaled(1e-6f).inversedCopy(), Vorn::Exception<2>);
    EXPECT_TRUE(same(*Vorn::inverseAtAnyScale(scaled(0x1p-60f)), scaled(0x1p60f)));
    EXPECT_TRUE(same(*Vorn::inverseAtAnyScale(scaled(0x1p120f)), scaled(0x1p-120f)));
    EXPECT_FALSE(Vorn::inverseAtAnyScale(scaled(DENORMAL))); // the inverse is larger than any float
    EXPECT_FALSE(Vorn::inverseAtAnyScale(Matrix3::ZERO));
    EXPECT_FALSE(Vorn::inverseAtAnyScale(Matrix3(1, 2, 3, 4, 5, 6, 7, 8, 9)));
    EXPECT_FALSE(Vorn::inverseAtAnyScale(Matrix3(NOT_A_NUMBER)));
}

} // namespace
