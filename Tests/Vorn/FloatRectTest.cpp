#include "Vorn/FloatRect.h"

#include "Support/Floats.h"
#include "Support/Report.h"

#include <gtest/gtest.h>

namespace {

using Vorn::FloatRect;
using Vorn::Matrix3;
using Vorn::Vector2;
using Rect = Vorn::Rect<float, float>;
using RectBase = Vorn::RectBase<float>;
using Pair = Vorn::XYPair<float, float>;
using Two = std::array<float, 2>;
using Four = std::array<float, 4>;

constexpr const char* FILE_TEXT = "Include/Vorn/FloatRect";
constexpr FloatRect COUNTED(1, 2, 3, 4);

TEST(FloatRect, DefaultConstructorWritesNothing) { expectUnwrittenByDefault<FloatRect>(); }

TEST(FloatRect, ConstructorsFillAsThoseOfRect) {
    const Pair a(1.0f, 2.0f);
    const Pair b(3.0f, 4.0f);
    EXPECT_TRUE(same(FloatRect(1, 2, 3, 4), Four{1, 2, 3, 4}));
    EXPECT_TRUE(same(FloatRect(1, 2, 3), Four{1, 2, 3, 2}));
    EXPECT_TRUE(same(FloatRect(1, 2), Four{1, 2, 1, 2}));
    EXPECT_EQ(FloatRect(1, 2).width(), 0.0f);
    EXPECT_EQ(FloatRect(1, 2).height(), 0.0f);
    EXPECT_TRUE(same(FloatRect(5.0f), Four{5, 5, 5, 5}));
    EXPECT_TRUE(same(FloatRect(a), Four{1, 2, 1, 2}));
    EXPECT_TRUE(same(FloatRect(a, b), Four{1, 2, 3, 4}));
    EXPECT_TRUE(same(FloatRect(Vector2(1, 2), Vector2(3, 4)), Four{1, 2, 3, 4}));
    EXPECT_TRUE(same(FloatRect(RectBase{1, 2, 3, 4}), Four{1, 2, 3, 4}));
    EXPECT_TRUE(same(FloatRect(Rect(1, 2, 3, 4)), Four{1, 2, 3, 4}));
    EXPECT_TRUE(same(FloatRect(COUNTED), Four{1, 2, 3, 4}));
    EXPECT_TRUE(same(FloatRect::ZERO, Four{0, 0, 0, 0}));
}

TEST(FloatRect, AssignmentCopies) {
    FloatRect rect(0.0f);
    EXPECT_EQ(&(rect = COUNTED), &rect);
    EXPECT_TRUE(same(rect, COUNTED));
    EXPECT_EQ(&(rect = Rect(5, 6, 7, 8)), &rect);
    EXPECT_TRUE(same(rect, Four{5, 6, 7, 8}));
    EXPECT_EQ(&(rect = RectBase{9, 10, 11, 12}), &rect);
    EXPECT_TRUE(same(rect, Four{9, 10, 11, 12}));
}

TEST(FloatRect, AccessByNumberComesFromRect) {
    EXPECT_EQ(COUNTED[2], 3.0f);
    EXPECT_EQ(COUNTED.getSide(1, 1), 4.0f);
    EXPECT_EQ(COUNTED.getSide(0, 1), 3.0f);
    FloatRect rect(COUNTED);
    rect.setByCorner(1, 5, 6);
    EXPECT_TRUE(same(rect, Four{5, 2, 3, 6}));
    rect.setAll(7.0f);
    EXPECT_TRUE(same(rect, Four{7, 7, 7, 7}));
    EXPECT_TRUE(COUNTED == FloatRect(1, 2, 3, 4));
    EXPECT_TRUE(COUNTED != rect);
}

float floatOf(double value) { return static_cast<float>(value); }

TEST(FloatRect, SizeAndPlaceHaveTheBitsOfThePlainFormula) {
    RandomFloats random(80);
    for (int round = 0; round < repetitions(100000); ++round) {
        const FloatRect rect = random.record<FloatRect>();
        const double left = rect.left, top = rect.top, right = rect.right, bottom = rect.bottom;
        const float width = floatOf(right - left);
        const float height = floatOf(bottom - top);
        Vector2 size;
        rect.getSize(size);
        ASSERT_TRUE(same(Two{rect.getWidth(), rect.getHeight()}, Two{width, height})) << describe(rect);
        ASSERT_TRUE(same(Two{rect.width(), rect.height()}, Two{width, height})) << describe(rect);
        ASSERT_TRUE(same(Two{rect.getSize(0), rect.getSize(1)}, Two{width, height})) << describe(rect);
        ASSERT_TRUE(same(rect.getSize(), Two{width, height})) << describe(rect);
        ASSERT_TRUE(same(rect.size(), Two{width, height})) << describe(rect);
        ASSERT_TRUE(same(size, Two{width, height})) << describe(rect);
        ASSERT_TRUE(same(rect.areaSize(), floatOf((bottom - top) * (right - left)))) << describe(rect);
        ASSERT_TRUE(same(rect.getCenter(), Two{floatOf((right + left) * 0.5), floatOf((bottom + top) * 0.5)}))
            << describe(rect);
        ASSERT_TRUE(same(rect.getHalfSize(), Two{floatOf((right - left) * 0.5), floatOf((bottom - top) * 0.5)}))
            << describe(rect);
    }
}

TEST(FloatRect, AreaIsNegativeIfOnePairIsInverted) {
    EXPECT_EQ(FloatRect(0, 0, 2, 3).areaSize(), 6.0f);
    EXPECT_EQ(FloatRect(2, 0, 0, 3).areaSize(), -6.0f);
    EXPECT_EQ(FloatRect(2, 3, 0, 0).areaSize(), 6.0f);
}

TEST(FloatRect, CentreDoesNotOverflow) {
    EXPECT_TRUE(same(FloatRect(LARGEST, -LARGEST, LARGEST, LARGEST).getCenter(), Two{LARGEST, 0.0f}));
    EXPECT_TRUE(same(FloatRect(-LARGEST, 0, LARGEST, 1).getHalfSize(), Two{LARGEST, 0.5f}));
}

// --- Tests ---

TEST(FloatRect, QuestionsFollowThePlainComparisons) {
    RandomFloats random(81);
    for (int round = 0; round < repetitions(100000); ++round) {
        const FloatRect a = random.record<FloatRect>();
        const FloatRect b = random.record<FloatRect>();
        const Four s = floatsOf(a);
        const auto holdsForAll = [&s](const Four& o, auto relation) {
            return relation(s[0], o[0]) && relation(s[1], o[1]) && relation(s[2], o[2]) && relation(s[3], o[3]);
        };
        const auto less = [](float x, float y) { return x < y; };
        const auto lessEqual = [](float x, float y) { return x <= y; };
        const auto greater = [](float x, float y) { return x > y; };
        const auto greaterEqual = [](float x, float y) { return x >= y; };
        const Four rect = floatsOf(b);
        const Vector2 vec(b.left, b.top);
        const Four point = {vec.x, vec.y, vec.x, vec.y};
        const float val = b.left;
        const Four all = {val, val, val, val};
        const std::string what = describe(a) + "and " + describe(b);
        ASSERT_EQ(a < b, holdsForAll(rect, less)) << what;
        ASSERT_EQ(a < vec, holdsForAll(point, less)) << what;
        ASSERT_EQ(a < val, holdsForAll(all, less)) << what;
        ASSERT_EQ(a <= b, holdsForAll(rect, lessEqual)) << what;
        ASSERT_EQ(a <= vec, holdsForAll(point, lessEqual)) << what;
        ASSERT_EQ(a <= val, holdsForAll(all, lessEqual)) << what;
        ASSERT_EQ(a > b, holdsForAll(rect, greater)) << what;
        ASSERT_EQ(a > vec, holdsForAll(point, greater)) << what;
        ASSERT_EQ(a > val, holdsForAll(all, greater)) << what;
        ASSERT_EQ(a >= b, holdsForAll(rect, greaterEqual)) << what;
        ASSERT_EQ(a >= vec, holdsForAll(point, greaterEqual)) << what;
        ASSERT_EQ(a >= val, holdsForAll(all, greaterEqual)) << what;

        ASSERT_EQ(a.isNormalised(), a.right >= a.left && a.bottom >= a.top) << what;
        const bool inside = vec.x >= a.left && vec.x <= a.right && vec.y >= a.top && vec.y <= a.bottom;
        ASSERT_EQ(a.isInside(vec), inside) << what;
        ASSERT_EQ(a.isInside(vec.x, vec.y), inside) << what;
        const bool horizontal = b.right > a.left || a.right > b.left;
        const bool vertical = b.bottom > a.top || a.bottom > b.top;
        ASSERT_EQ(a.intersects(b), horizontal && vertical) << what;
        ASSERT_EQ(a.intersects(b.left, b.top, b.right, b.bottom), horizontal && vertical) << what;
    }
}

TEST(FloatRect, IntersectsIsNoOverlapTest) {
    EXPECT_TRUE(FloatRect(0, 0, 1, 1).intersects(FloatRect(5, 5, 6, 6)));
    EXPECT_TRUE(FloatRect(5, 5, 6, 6).intersects(FloatRect(0, 0, 1, 1)));
    EXPECT_FALSE(FloatRect(2, 0, 2, 1).intersects(FloatRect(2, 0, 2, 1)));
    EXPECT_FALSE(FloatRect(0, 2, 1, 2).intersects(FloatRect(5, 2, 6, 2)));
    EXPECT_TRUE(FloatRect(2, 0, 2, 1).intersects(FloatRect(3, 0, 3, 1)));
    EXPECT_FALSE(FloatRect(NOT_A_NUMBER).intersects(FloatRect(NOT_A_NUMBER)));
}

TEST(FloatRect, EdgesAreInside) {
    const FloatRect rect(1, 2, 3, 4);
    for (const float x : {1.0f, 2.0f, 3.0f}) {
        for (const float y : {2.0f, 3.0f, 4.0f}) EXPECT_TRUE(rect.isInside(x, y)) << x << " " << y;
    }
    for (const Vector2 point : {Vector2(0.5f, 3), Vector2(3.5f, 3), Vector2(2, 1.5f), Vector2(2, 4.5f),
                                Vector2(NOT_A_NUMBER, 3), Vector2(2, NOT_A_NUMBER)}) {
        EXPECT_FALSE(rect.isInside(point)) << describe(point);
    }
}

TEST(FloatRect, RelationsNeedAllFourSides) {
    EXPECT_TRUE(FloatRect(0, 0, 1, 1) < FloatRect(1, 1, 2, 2));
    EXPECT_FALSE(FloatRect(0, 0, 1, 1) < FloatRect(0, 1, 2, 2));
    EXPECT_FALSE(FloatRect(0, 0, 1, 1) < FloatRect(1, 1, 2, 1));
    EXPECT_TRUE(FloatRect(0, 0, 1, 1) <= FloatRect(0, 0, 1, 1));
}

// --- Arithmetic that is not in the table of forms ---

TEST(FloatRect, IncrementsReturnTheNewOrTheOldValue) {
    FloatRect rect(1, 2, 3, 4);
    EXPECT_EQ(&++rect, &rect);
    EXPECT_TRUE(same(rect, Four{2, 3, 4, 5}));
    EXPECT_EQ(&--rect, &rect);
    EXPECT_TRUE(same(rect, Four{1, 2, 3, 4}));
    EXPECT_TRUE(same(rect++, Four{1, 2, 3, 4}));
    EXPECT_TRUE(same(rect, Four{2, 3, 4, 5}));
    EXPECT_TRUE(same(rect--, Four{2, 3, 4, 5}));
    EXPECT_TRUE(same(rect, Four{1, 2, 3, 4}));
}

TEST(FloatRect, SignsKeepEachSideInItsPlace) {
    EXPECT_EQ(&+COUNTED, &COUNTED);
    EXPECT_TRUE(same(-COUNTED, Four{-1, -2, -3, -4}));
    EXPECT_TRUE(same(-FloatRect::ZERO, Four{-0.0f, -0.0f, -0.0f, -0.0f}));
}

struct Divisor {
    FloatRect rect;
    const char* message;
};

TEST(FloatRect, DivisionAndRemainderCheckSideBySide) {
    const char* const left = "rect.left < VORN_ZERO || rect.left > VORN_ZERO : left is zero!";
    const char* const top = "rect.top < VORN_ZERO || rect.top > VORN_ZERO : top is zero!";
    const char* const right = "rect.right < VORN_ZERO || rect.right > VORN_ZERO : right is zero!";
    const char* const bottom = "rect.bottom < VORN_ZERO || rect.bottom > VORN_ZERO : bottom is zero!";
    const Divisor divisors[] = {
        {{0, 0, 0, 0}, left},
        {{1, 0, 0, 0}, top},
        {{1, 1, 0, 0}, right},
        {{1, 1, 1, 0}, bottom},
        {{-0.0f, 1, 1, 1}, left},
        {{1, -0.0f, 1, 1}, top},
        {{1, 1, -0.0f, 1}, right},
        {{1, 1, 1, -0.0f}, bottom},
        {{NOT_A_NUMBER, 1, 1, 1}, left},
        {{1, NOT_A_NUMBER, 1, 1}, top},
        {{1, 1, NOT_A_NUMBER, 1}, right},
        {{1, 1, 1, NOT_A_NUMBER}, bottom},
    };
    for (const Divisor& divisor : divisors) {
        FloatRect rect(COUNTED);
        expectRaises<1>([&] { rect /= divisor.rect; }, divisor.message, "Vorn::FloatRect::operator /=", FILE_TEXT);
        expectRaises<1>([&] { rect %= divisor.rect; }, divisor.message, "Vorn::FloatRect::operator %=", FILE_TEXT);
        expectRaises<1>([&] { (void)(rect / divisor.rect); }, divisor.message, "Vorn::FloatRect::operator /",
                        FILE_TEXT);
        expectRaises<1>([&] { (void)(rect % divisor.rect); }, divisor.message, "Vorn::FloatRect::operator %",
                        FILE_TEXT);
        EXPECT_TRUE(same(rect, COUNTED));
    }
}

TEST(FloatRect, DivisionAndRemainderCheckXAndThenY) {
    const char* const x = "vec.x < VORN_ZERO || vec.x > VORN_ZERO : x is zero!";
    const char* const y = "vec.y < VORN_ZERO || vec.y > VORN_ZERO : y is zero!";
    struct Row {
        Vector2 vec;
        const char* message;
    };
    for (const Row& row : {Row{{0, 0}, x}, Row{{1, 0}, y}, Row{{-0.0f, 1}, x}, Row{{1, -0.0f}, y},
                           Row{{NOT_A_NUMBER, 1}, x}, Row{{1, NOT_A_NUMBER}, y}}) {
        FloatRect rect(COUNTED);
        expectRaises<1>([&] { rect /= row.vec; }, row.message, "Vorn::FloatRect::operator /=", FILE_TEXT);
        expectRaises<1>([&] { rect %= row.vec; }, row.message, "Vorn::FloatRect::operator %=", FILE_TEXT);
        expectRaises<1>([&] { (void)(rect / row.vec); }, row.message, "Vorn::FloatRect::operator /", FILE_TEXT);
        expectRaises<1>([&] { (void)(rect % row.vec); }, row.message, "Vorn::FloatRect::operator %", FILE_TEXT);
        EXPECT_TRUE(same(rect, COUNTED));
    }
}

TEST(FloatRect, DivisionAndRemainderCheckAFloat) {
    const char* const message = "val < VORN_ZERO || val > VORN_ZERO : val is zero!";
    for (const float val : {0.0f, -0.0f, NOT_A_NUMBER}) {
        FloatRect rect(COUNTED);
        expectRaises<1>([&] { rect /= val; }, message, "Vorn::FloatRect::operator /=", FILE_TEXT);
        expectRaises<1>([&] { rect %= val; }, message, "Vorn::FloatRect::operator %=", FILE_TEXT);
        expectRaises<1>([&] { (void)(rect / val); }, message, "Vorn::FloatRect::operator /", FILE_TEXT);
        expectRaises<1>([&] { (void)(rect % val); }, message, "Vorn::FloatRect::operator %", FILE_TEXT);
        EXPECT_TRUE(same(rect, COUNTED));
    }
}

TEST(FloatRect, RemainderHasTheSignOfTheSide) {
    FloatRect rect(-3, 3, -4, 5.5f);
    rect %= 2.0f;
    EXPECT_TRUE(same(rect, Four{-1.0f, 1.0f, -0.0f, 1.5f}));
    EXPECT_TRUE(same(FloatRect(-3, 3, -4, 5.5f) % -2.0f, Four{-1.0f, 1.0f, -0.0f, 1.5f}));
}

TEST(FloatRect, DenormalDivisorsDivide) {
    EXPECT_TRUE(same(FloatRect(DENORMAL, 0, 1, -1) / DENORMAL, Four{1.0f, 0.0f, INFINITE, -INFINITE}));
    EXPECT_TRUE(same(FloatRect(1, 1, 1, 1) % DENORMAL, Four{0, 0, 0, 0}));
}

// --- Set operations ---

TEST(FloatRect, IntersectionOfStrangersIsInverted) {
    EXPECT_TRUE(same(FloatRect(0, 0, 1, 1) & FloatRect(5, 5, 6, 6), Four{5, 5, 1, 1}));
    EXPECT_FALSE((FloatRect(0, 0, 1, 1) & FloatRect(5, 5, 6, 6)).isNormalised());
}

TEST(FloatRect, GrowingAnInvertedAxisDiffersInPlaceAndInCopies) {
    const FloatRect inverted(10, 10, 0, 0);
    FloatRect inPlace(inverted);
    inPlace.merge(5.0f, 5.0f); // the low side moves, so the high side is not looked at
    EXPECT_TRUE(same(inPlace, Four{5, 5, 0, 0}));
    inPlace = inverted;
    inPlace |= Vector2(5, 5);
    EXPECT_TRUE(same(inPlace, Four{5, 5, 0, 0}));
    EXPECT_TRUE(same(inverted.mergedCopy(5.0f, 5.0f), Four{5, 5, 5, 5}));
    EXPECT_TRUE(same(inverted | Vector2(5, 5), Four{5, 5, 5, 5}));
}

TEST(FloatRect, SetOperationsKeepTheOwnSideOfEqualsAndBesideNaN) {
    const FloatRect rect(0.0f, 1, -0.0f, 2);
    const FloatRect other(-0.0f, NOT_A_NUMBER, 0.0f, NOT_A_NUMBER);
    EXPECT_TRUE(same(rect | other, rect));
    EXPECT_TRUE(same(rect & other, rect));
}

// --- Sides exchanged ---

TEST(FloatRect, NormaliseAndItsCopyDifferOnNaN) {
    struct Row {
        FloatRect rect;
        Four inPlace;
        Four copy;
    };
    const float nan = NOT_A_NUMBER;
    const Row rows[] = {
        {{1, 2, 3, 4}, {1, 2, 3, 4}, {1, 2, 3, 4}},
        {{3, 2, 1, 4}, {1, 2, 3, 4}, {1, 2, 3, 4}},
        {{1, 4, 3, 2}, {1, 2, 3, 4}, {1, 2, 3, 4}},
        {{3, 4, 1, 2}, {1, 2, 3, 4}, {1, 2, 3, 4}},
        {{0.0f, 2, -0.0f, 2}, {0.0f, 2, -0.0f, 2}, {0.0f, 2, -0.0f, 2}},
        {{nan, 4, 3, 2}, {nan, 2, 3, 4}, {3, 2, nan, 4}},
        {{3, 2, nan, 4}, {3, 2, nan, 4}, {nan, 2, 3, 4}},
        {{1, nan, 3, 2}, {1, nan, 3, 2}, {1, 2, 3, nan}},
        {{3, 2, 1, nan}, {1, 2, 3, nan}, {1, nan, 3, 2}},
    };
    for (const Row& row : rows) {
        FloatRect inPlace(row.rect);
        inPlace.normalise();
        FloatRect out(9.0f);
        row.rect.normalisedCopy(out);
        FloatRect intoItself(row.rect);
        intoItself.normalisedCopy(intoItself);
        EXPECT_TRUE(same(inPlace, row.inPlace)) << describe(row.rect);
        EXPECT_TRUE(same(row.rect.normalisedCopy(), row.copy)) << describe(row.rect);
        EXPECT_TRUE(same(out, row.copy)) << describe(row.rect);
        EXPECT_TRUE(same(intoItself, row.copy)) << describe(row.rect);
    }
}

TEST(FloatRect, ReflectInPlaceByOrientationReflectsNothing) {
    FloatRect rect(COUNTED);
    rect.reflect(0);
    rect.reflect(1);
    EXPECT_TRUE(same(rect, COUNTED));
    EXPECT_TRUE(same(rect.reflectedCopy(0), Four{3, 2, 1, 4}));
    EXPECT_TRUE(same(rect.reflectedCopy(1), Four{1, 4, 3, 2}));
}

TEST(FloatRect, OrientationsBeyondOneRaise) {
    const char* const message = "orient < 2 : invalid orientation!";
    for (const unsigned int orient : {2u, 3u, 0xFFFFFFFFu}) {
        FloatRect rect(COUNTED);
        FloatRect out(9.0f);
        expectRaises<1>([&] { (void)rect.getSize(orient); }, message, "Vorn::FloatRect::getSize", FILE_TEXT);
        expectRaises<1>([&] { rect.reflect(orient); }, message, "Vorn::FloatRect::reflect", FILE_TEXT);
        expectRaises<1>([&] { (void)rect.reflectedCopy(orient); }, message, "Vorn::FloatRect::reflectedCopy",
                        FILE_TEXT);
        expectRaises<1>([&] { rect.reflectedCopy(out, orient); }, message, "Vorn::FloatRect::reflectedCopy", FILE_TEXT);
        EXPECT_TRUE(same(rect, COUNTED));
        EXPECT_TRUE(same(out, Four{9, 9, 9, 9}));
    }
}

// --- Ratios ---

TEST(FloatRect, RatiosConvertBothWays) {
    const FloatRect rect(0, 0, 10, 20);
    const FloatRect ratio = rect.createRatioCopy(FloatRect(5, 5, 10, 10));
    EXPECT_TRUE(same(ratio, Four{0.5f, 0.25f, 1.0f, 0.5f}));
    EXPECT_TRUE(same(rect.applyRatioCopy(ratio), Four{5, 5, 10, 10}));
}

TEST(FloatRect, AnAxisWithoutExtentGivesZeroFractions) {
    const FloatRect other(5, 5, 10, 10);
    EXPECT_TRUE(same(FloatRect(3, 0, 3, 20).createRatioCopy(other), Four{0, 0.25f, 0, 0.5f}));
    EXPECT_TRUE(same(FloatRect(0, 3, 10, 1).createRatioCopy(other), Four{0.5f, 0, 1, 0}));
    EXPECT_TRUE(same(FloatRect(NOT_A_NUMBER, 0, 10, 20).createRatioCopy(other), Four{0, 0.25f, 0, 0.5f}));
}

TEST(FloatRect, RatioOfItselfIsTheWhole) {
    FloatRect rect(2, 3, 6, 11);
    rect.createRatio(rect);
    EXPECT_TRUE(same(rect, Four{0, 0, 1, 1}));
    rect = FloatRect(2, 3, 6, 11);
    rect.applyRatio(rect);
    EXPECT_TRUE(same(rect, Four{2 + 2 * 4, 3 + 3 * 8, 2 + 6 * 4, 3 + 11 * 8}));
}

// --- Transformation ---

TEST(FloatRect, TransformationIsExactForScaleAndTranslation) {
    EXPECT_TRUE(same(FloatRect(0, 0, 2, 2) * Matrix3::IDENTITY, Four{0, 0, 2, 2}));
    Matrix3 matrix;
    matrix.makeTransform(Vorn::ComplexAngle::IDENTITY, Vector2(2, -3), Vector2(10, 20));
    FloatRect rect(1, 2, 3, 4);
    EXPECT_EQ(&(rect *= matrix), &rect);
    EXPECT_TRUE(same(rect, Four{12, 8, 16, 14}));            // normalised, though y is mirrored
    EXPECT_TRUE(same(FloatRect(3, 4, 1, 2) * matrix, rect)); // and though the rectangle was inverted
    EXPECT_TRUE(same(FloatRect(2, 0, 0, 2) * Matrix3::IDENTITY, Four{0, 0, 2, 2}));
}

TEST(FloatRect, RotationIsNoBoundingBox) {
    Matrix3 quarterTurn;
    quarterTurn.makeTransform(Vorn::ComplexAngle(0, 1), Vector2::UNIT_SCALE, Vector2::ZERO);
    EXPECT_TRUE(same(FloatRect(0, 0, 4, 2) * quarterTurn, Four{-2, 0, 0, 4})); // as a bounding box would be
    Matrix3 eighthTurn;
    eighthTurn.makeTransform(Vorn::ComplexAngle(0.5f, 0.5f), Vector2::UNIT_SCALE, Vector2::ZERO);
    // The half size uses m[3] for x and m[1] for y, and is the absolute value of the sum.
    EXPECT_TRUE(same(FloatRect(-4, -2, 4, 2) * eighthTurn, Four{-3, -1, 3, 1}));
    EXPECT_TRUE(same(FloatRect(-1, -1, 1, 1) * Matrix3(1, 10, 0, 100, 1, 0, 0, 0, 1), Four{-101, -11, 101, 11}));
}

TEST(FloatRect, TransformationHasTheBitsOfThePlainFormula) {
    RandomFloats random(82);
    for (int round = 0; round < repetitions(100000); ++round) {
        const FloatRect rect = random.record<FloatRect>();
        const Matrix3 matrix = random.record<Matrix3>();
        const float* const m = matrix.m;
        const double cx = floatOf((static_cast<double>(rect.right) + rect.left) * 0.5);
        const double cy = floatOf((static_cast<double>(rect.bottom) + rect.top) * 0.5);
        const double hx = floatOf((static_cast<double>(rect.right) - rect.left) * 0.5);
        const double hy = floatOf((static_cast<double>(rect.bottom) - rect.top) * 0.5);
        const double x = m[0] * cx + m[1] * cy + m[2];
        const double y = m[3] * cx + m[4] * cy + m[5];
        const double halfX = std::fabs(m[0] * hx + m[3] * hy);
        const double halfY = std::fabs(m[1] * hx + m[4] * hy);
        const Four expected = {floatOf(x - halfX), floatOf(y - halfY), floatOf(x + halfX), floatOf(y + halfY)};
        FloatRect inPlace(rect);
        inPlace *= matrix;
        ASSERT_TRUE(same(rect * matrix, expected)) << describe(rect) << "and " << describe(matrix);
        ASSERT_TRUE(same(inPlace, expected)) << describe(rect) << "and " << describe(matrix);
    }
}

} // namespace
