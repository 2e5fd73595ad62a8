#include "Vorn/Vector2.h"

#include "Support/Floats.h"
#include "Support/Report.h"
#include "Vorn/ComplexAngle.h"

#include <gtest/gtest.h>

namespace {

using Vorn::ComplexAngle;
using Vorn::Vector2;
using Pair = Vorn::XYPair<float, float>;
using Two = std::array<float, 2>;

TEST(Vector2, DefaultConstructorWritesNothing) { expectUnwrittenByDefault<Vector2>(); }

TEST(Vector2, ConstructorsFillFromWhatTheyTake) {
    const Vorn::XYPairBase<float> record{1.0f, 2.0f};
    const float elements[] = {3.0f, 4.0f};
    EXPECT_TRUE(same(Vector2(record), Two{1.0f, 2.0f}));
    EXPECT_TRUE(same(Vector2(elements), Two{3.0f, 4.0f}));
    EXPECT_TRUE(same(Vector2(6.0f), Two{6.0f, 6.0f}));
    EXPECT_TRUE(same(Vector2(7.0f, 8.0f), Two{7.0f, 8.0f}));
    EXPECT_TRUE(same(Vector2(Vector2(7.0f, 8.0f)), Two{7.0f, 8.0f}));
    EXPECT_TRUE(same(Vector2(Pair(9.0f, 10.0f)), Two{9.0f, 10.0f}));
    EXPECT_TRUE(same(Vector2(ComplexAngle(9.0f, 10.0f)), Two{9.0f, 10.0f}));
}

TEST(Vector2, AssignmentCopiesOrFills) {
    Vector2 vector(1.0f, 2.0f);
    EXPECT_EQ(&(vector = Vector2(3.0f, 4.0f)), &vector);
    EXPECT_TRUE(same(vector, Two{3.0f, 4.0f}));
    EXPECT_EQ(&(vector = Pair(5.0f, 6.0f)), &vector);
    EXPECT_TRUE(same(vector, Two{5.0f, 6.0f}));
    EXPECT_EQ(&(vector = 7.0f), &vector);
    EXPECT_TRUE(same(vector, Two{7.0f, 7.0f}));
}

TEST(Vector2, ConstantsHaveTheirValues) {
    EXPECT_TRUE(same(Vector2::ZERO, Two{0.0f, 0.0f}));
    EXPECT_TRUE(same(Vector2::UNIT_X, Two{1.0f, 0.0f}));
    EXPECT_TRUE(same(Vector2::UNIT_Y, Two{0.0f, 1.0f}));
    EXPECT_TRUE(same(Vector2::NEGATIVE_UNIT_X, Two{-1.0f, 0.0f}));
    EXPECT_TRUE(same(Vector2::NEGATIVE_UNIT_Y, Two{0.0f, -1.0f}));
    EXPECT_TRUE(same(Vector2::UNIT_SCALE, Two{1.0f, 1.0f}));
    EXPECT_TRUE(same(Vorn::VORN_ZERO, 0.0f));
}

// --- The reference: each formula in double, rounded where specified ---

float inverseLengthOf(float s) {
    const unsigned int bits = (0xBE6EB50Cu - std::bit_cast<unsigned int>(s)) / 2;
    const double y = static_cast<double>(std::bit_cast<float>(bits));
    const double newton = 3.0 - static_cast<double>(s) * y * y;
    return static_cast<float>(y * 0.5 * newton);
}

float squaredLengthOf(const Two& v) {
    return static_cast<float>(static_cast<double>(v[0]) * v[0] + static_cast<double>(v[1]) * v[1]);
}

Two reflectionOf(const Two& v, const Two& normal) {
    const float d = static_cast<float>(static_cast<double>(normal[1]) * v[1] + static_cast<double>(normal[0]) * v[0]);
    const float t = static_cast<float>(static_cast<double>(d) * -2.0);
    return {static_cast<float>(static_cast<double>(normal[0]) * t + v[0]),
            static_cast<float>(static_cast<double>(t) * normal[1] + v[1])};
}

template <class Operation>
Two each(const Two& a, const Two& b, Operation operation) {
    Two result{};
    for (std::size_t i = 0; i < 2; ++i) {
        result[i] = static_cast<float>(operation(static_cast<double>(a[i]), static_cast<double>(b[i])));
    }
    return result;
}

Two added(const Two& a, const Two& b) {
    return each(a, b, [](double x, double y) { return x + y; });
}
Two subtracted(const Two& a, const Two& b) {
    return each(a, b, [](double x, double y) { return x - y; });
}
Two multiplied(const Two& a, const Two& b) {
    return each(a, b, [](double x, double y) { return x * y; });
}
Two divided(const Two& a, const Two& b) {
    return each(a, b, [](double x, double y) { return x / y; });
}

struct Form {
    const char* name;
    Vector2 (*actual)(const Vector2& v, const Vector2& other);
    Two (*expected)(const Two& v, const Two& other);
};

// Operations with another vector as parameter, or with its x as a float.
const Form FORMS[] = {
    {"+=",
     [](const Vector2& v, const Vector2& o) {
         Vector2 r(v);
         EXPECT_EQ(&(r += o), &r);
         return r;
     },
     added},
    {"+", [](const Vector2& v, const Vector2& o) { return v + o; }, added},
    {"-=",
     [](const Vector2& v, const Vector2& o) {
         Vector2 r(v);
         EXPECT_EQ(&(r -= o), &r);
         return r;
     },
     subtracted},
    {"-", [](const Vector2& v, const Vector2& o) { return v - o; }, subtracted},
    {"*=",
     [](const Vector2& v, const Vector2& o) {
         Vector2 r(v);
         EXPECT_EQ(&(r *= o), &r);
         return r;
     },
     multiplied},
    {"*", [](const Vector2& v, const Vector2& o) { return v * o; }, multiplied},
    {"+= float",
     [](const Vector2& v, const Vector2& o) {
         Vector2 r(v);
         EXPECT_EQ(&(r += o.x), &r);
         return r;
     },
     [](const Two& v, const Two& o) {
         return added(v, {o[0], o[0]});
     }},
    {"+ float", [](const Vector2& v, const Vector2& o) { return v + o.x; },
     [](const Two& v, const Two& o) {
         return added(v, {o[0], o[0]});
     }},
    {"-= float",
     [](const Vector2& v, const Vector2& o) {
         Vector2 r(v);
         EXPECT_EQ(&(r -= o.x), &r);
         return r;
     },
     [](const Two& v, const Two& o) {
         return subtracted(v, {o[0], o[0]});
     }},
    {"- float", [](const Vector2& v, const Vector2& o) { return v - o.x; },
     [](const Two& v, const Two& o) {
         return subtracted(v, {o[0], o[0]});
     }},
    {"*= float",
     [](const Vector2& v, const Vector2& o) {
         Vector2 r(v);
         EXPECT_EQ(&(r *= o.x), &r);
         return r;
     },
     [](const Two& v, const Two& o) {
         return multiplied(v, {o[0], o[0]});
     }},
    {"* float", [](const Vector2& v, const Vector2& o) { return v * o.x; },
     [](const Two& v, const Two& o) {
         return multiplied(v, {o[0], o[0]});
     }},
    {"negation", [](const Vector2& v, const Vector2&) { return -v; },
     [](const Two& v, const Two&) {
         return Two{-v[0], -v[1]};
     }},
    {"upperLimit",
     [](const Vector2& v, const Vector2& o) {
         Vector2 r(v);
         r.upperLimit(o);
         return r;
     },
     [](const Two& v, const Two& o) {
         Two result = o;
         for (std::size_t i = 0; i < 2; ++i) {
             if (o[i] > v[i]) result[i] = v[i];
         }
         return result;
     }},
    {"lowerLimit",
     [](const Vector2& v, const Vector2& o) {
         Vector2 r(v);
         r.lowerLimit(o);
         return r;
     },
     [](const Two& v, const Two& o) {
         Two result = o;
         for (std::size_t i = 0; i < 2; ++i) {
             if (v[i] > o[i]) result[i] = v[i];
         }
         return result;
     }},
    {"midPoint", [](const Vector2& v, const Vector2& o) { return v.midPoint(o); },
     [](const Two& v, const Two& o) { return each(o, v, [](double a, double b) { return (a + b) * 0.5; }); }},
    {"perpendicular", [](const Vector2& v, const Vector2&) { return v.perpendicular(); },
     [](const Two& v, const Two&) {
         return Two{-v[1], v[0]};
     }},
    {"perpendicular(out)",
     [](const Vector2& v, const Vector2& o) {
         Vector2 r(o);
         v.perpendicular(r);
         return r;
     },
     [](const Two& v, const Two&) {
         return Two{-v[1], v[0]};
     }},
    {"reflect", [](const Vector2& v, const Vector2& o) { return v.reflect(o); }, reflectionOf},
    {"reflect(out)",
     [](const Vector2& v, const Vector2& o) {
         Vector2 r;
         v.reflect(o, r);
         return r;
     },
     reflectionOf},
    {"reflect into the normal",
     [](const Vector2& v, const Vector2& o) {
         Vector2 r(o);
         v.reflect(r, r);
         return r;
     },
     reflectionOf},
    {"reflect into itself",
     [](const Vector2& v, const Vector2& o) {
         Vector2 r(v);
         r.reflect(o, r);
         return r;
     },
     reflectionOf},
    {"normalise",
     [](const Vector2& v, const Vector2&) {
         Vector2 r(v);
         r.normalise();
         return r;
     },
     [](const Two& v, const Two&) {
         const float f = inverseLengthOf(squaredLengthOf(v));
         return multiplied(v, {f, f});
     }},
    {"normalisedCopy", [](const Vector2& v, const Vector2&) { return v.normalisedCopy(); },
     [](const Two& v, const Two&) {
         const float f = inverseLengthOf(squaredLengthOf(v));
         return multiplied(v, {f, f});
     }},
    {"normalisedCopy(out)",
     [](const Vector2& v, const Vector2& o) {
         Vector2 r(o);
         v.normalisedCopy(r);
         return r;
     },
     [](const Two& v, const Two&) {
         const float f = inverseLengthOf(squaredLengthOf(v));
         return multiplied(v, {f, f});
     }},
    {"lengths", [](const Vector2& v, const Vector2&) { return Vector2(v.length(), v.inverseLength()); },
     [](const Two& v, const Two&) {
         const float inverse = inverseLengthOf(squaredLengthOf(v));
         return Two{inverse > 0 ? static_cast<float>(1.0 / static_cast<double>(inverse)) : inverse, inverse};
     }},
    {"dot", [](const Vector2& v, const Vector2& o) { return Vector2(v.dot(o), v.dotProduct(o)); },
     [](const Two& v, const Two& o) {
         const float dot = static_cast<float>(static_cast<double>(v[0]) * o[0] + static_cast<double>(v[1]) * o[1]);
         return Two{dot, dot};
     }},
    {"cross", [](const Vector2& v, const Vector2& o) { return Vector2(v.cross(o), v.crossProduct(o)); },
     [](const Two& v, const Two& o) {
         const float cross = static_cast<float>(static_cast<double>(v[0]) * o[1] - static_cast<double>(v[1]) * o[0]);
         return Two{cross, cross};
     }},
    {"squaredLength", [](const Vector2& v, const Vector2&) { return Vector2(v.squaredLength()); },
     [](const Two& v, const Two&) {
         return Two{squaredLengthOf(v), squaredLengthOf(v)};
     }},
};

TEST(Vector2, EveryFormHasTheBitsOfThePlainFormula) {
    RandomFloats random(71);
    for (int round = 0; round < repetitions(100000); ++round) {
        const Vector2 v = random.record<Vector2>();
        const Vector2 other = random.record<Vector2>();
        for (const Form& form : FORMS) {
            ASSERT_TRUE(same(form.actual(v, other), form.expected(floatsOf(v), floatsOf(other))))
                << form.name << " of " << describe(v) << "and " << describe(other);
        }
    }
}

TEST(Vector2, RelationsHoldOnlyIfBothComponentsDo) {
    RandomFloats random(72);
    for (int round = 0; round < repetitions(100000); ++round) {
        const Vector2 a = random.record<Vector2>();
        const Vector2 b = random.record<Vector2>();
        ASSERT_EQ(a < b, a.x < b.x && a.y < b.y) << describe(a) << "and " << describe(b);
        ASSERT_EQ(a > b, a.x > b.x && a.y > b.y) << describe(a) << "and " << describe(b);
        ASSERT_EQ(a <= b, a.x <= b.x && a.y <= b.y) << describe(a) << "and " << describe(b);
        ASSERT_EQ(a >= b, a.x >= b.x && a.y >= b.y) << describe(a) << "and " << describe(b);
        ASSERT_EQ(a.isZero(), squaredLengthOf(floatsOf(a)) < std::bit_cast<float>(0x34000000u)) << describe(a);
        ASSERT_EQ(a.isZeroLength(), a.isZero()) << describe(a);
    }
}

TEST(Vector2, RelationsCanAllFail) {
    const Vector2 a(1.0f, 5.0f);
    const Vector2 b(2.0f, 4.0f);
    EXPECT_FALSE(a < b);
    EXPECT_FALSE(a > b);
    EXPECT_FALSE(a <= b);
    EXPECT_FALSE(a >= b);
    EXPECT_FALSE(Vector2(1.0f, 2.0f) < Vector2(1.0f, 3.0f)); // x is equal
    EXPECT_TRUE(Vector2(1.0f, 2.0f) <= Vector2(1.0f, 3.0f));
    const Vector2 nan(NOT_A_NUMBER, 1.0f);
    EXPECT_FALSE(nan < a || nan > a || nan <= a || nan >= a);
    EXPECT_FALSE(nan <= nan || nan >= nan);
}

TEST(Vector2, LengthsAreFastAndNotExact) {
    EXPECT_NEAR(Vector2(3.0f, 4.0f).length(), 5.0078f, 0.0001f);
    EXPECT_NEAR(Vector2(1.0f, 0.0f).inverseLength(), 0.99831f, 0.00001f);
    EXPECT_LT(Vector2(1.0f, 0.0f).normalisedCopy().x, 1.0f);
    EXPECT_NEAR(Vector2::ZERO.length(), 5.0459e-20f, 0.0001e-20f);
    EXPECT_TRUE(Vector2::ZERO.isZero());
    EXPECT_TRUE(same(Vector2::ZERO.normalisedCopy(), Vector2::ZERO));
    EXPECT_EQ(Vector2(INFINITE, 0.0f).inverseLength(), -INFINITE);
    EXPECT_EQ(Vector2(INFINITE, 0.0f).length(), -INFINITE); // not above 0, so it comes as it is
    EXPECT_TRUE(std::isnan(Vector2(NOT_A_NUMBER, 0.0f).length()));
}

TEST(Vector2, InverseLengthIsWithinAFifthOfAPerCent) {
    for (float length = 1.1e-19f; length < 1.8e19f; length *= 1.0173f) {
        const double product = static_cast<double>(Vector2(length, 0.0f).inverseLength()) * static_cast<double>(length);
        EXPECT_NEAR(product, 1.0, 0.002) << length;
    }
}

TEST(Vector2, InverseLengthFailsWhereTheSquareIsNoNormalFloat) {
    for (const float length : {1.0e-19f, 1.0e-20f, 1.0e-22f}) { // the square is denormal: too short, more and more
        const double product = static_cast<double>(Vector2(length, 0.0f).inverseLength()) * static_cast<double>(length);
        EXPECT_LT(product, 0.998) << length;
        EXPECT_GT(product, 0.001) << length;
    }
    EXPECT_LT(Vector2(1.0e-22f, 0.0f).normalisedCopy().x, 0.01f);
    for (const float length : {1.9e19f, 1.0e30f, LARGEST}) { // the square is infinite
        EXPECT_EQ(Vector2(length, 0.0f).inverseLength(), -INFINITE) << length;
        EXPECT_EQ(Vector2(length, 0.0f).length(), -INFINITE) << length;
        EXPECT_TRUE(same(Vector2(length, 1.0f).normalisedCopy(), Two{-INFINITE, -INFINITE})) << length;
        EXPECT_TRUE(std::isnan(Vector2(length, 0.0f).normalisedCopy().y)) << length;
    }
}

TEST(Vector2, ZeroIsASquaredLengthBelowTwoToTheMinus23) {
    EXPECT_TRUE(Vector2(0.0003f, 0.0f).isZero());
    EXPECT_FALSE(Vector2(0.001f, 0.0f).isZero());
    const float edge = std::ldexp(1.0f, -12); // two such squares make exactly the threshold
    EXPECT_FALSE(Vector2(edge, edge).isZero());
    EXPECT_TRUE(Vector2(edge, std::nextafter(edge, 0.0f)).isZero());
    EXPECT_FALSE(Vector2(NOT_A_NUMBER, 0.0f).isZero());
}

TEST(Vector2, ZeroComparesTheRoundedSquaredLength) {
    const double threshold = std::ldexp(1.0, -23);
    const float x = 3.4526698e-04f; // its square is just below the threshold, and y nearly fills the gap
    const float y = static_cast<float>(std::sqrt(threshold - static_cast<double>(x) * x - std::ldexp(1.0, -50)));
    const double exact = static_cast<double>(x) * x + static_cast<double>(y) * y;
    ASSERT_LT(exact, threshold);
    ASSERT_EQ(static_cast<double>(static_cast<float>(exact)), threshold);
    EXPECT_FALSE(Vector2(x, y).isZero());
}

TEST(Vector2, UnaryPlusIsTheVectorItself) {
    const Vector2 vector(1.0f, 2.0f);
    EXPECT_EQ(&+vector, &vector);
    EXPECT_TRUE(same(-Vector2(0.0f, -1.0f), Two{-0.0f, 1.0f}));
}

TEST(Vector2, LimitsTakeTheOtherValueOfEquals) {
    Vector2 vector(0.0f, NOT_A_NUMBER);
    vector.upperLimit(Vector2(-0.0f, 3.0f));
    EXPECT_TRUE(same(vector, Two{-0.0f, 3.0f}));
    vector = Vector2(0.0f, 3.0f);
    vector.lowerLimit(Vector2(-0.0f, NOT_A_NUMBER));
    EXPECT_TRUE(same(vector, Two{-0.0f, NOT_A_NUMBER}));
    vector = Vector2(1.0f, 5.0f);
    vector.upperLimit(Vector2(3.0f, 3.0f));
    EXPECT_TRUE(same(vector, Two{1.0f, 3.0f}));
    vector = Vector2(1.0f, 5.0f);
    vector.lowerLimit(Vector2(3.0f, 3.0f));
    EXPECT_TRUE(same(vector, Two{3.0f, 5.0f}));
}

TEST(Vector2, PerpendicularIsAQuarterTurn) {
    EXPECT_TRUE(same(Vector2(1.0f, 0.0f).perpendicular(), Two{-0.0f, 1.0f}));
    EXPECT_TRUE(Vector2(1.0f, 0.0f).perpendicular() == Vector2(0.0f, 1.0f));
    Vector2 itself(3.0f, 4.0f);
    itself.perpendicular(itself);
    EXPECT_TRUE(same(itself, Two{-4.0f, -4.0f})); // x is written before it is read
}

TEST(Vector2, ReflectionMirrorsAtTheLineOfTheNormal) {
    EXPECT_TRUE(same(Vector2(1.0f, -1.0f).reflect(Vector2(0.0f, 1.0f)), Two{1.0f, 1.0f}));
    EXPECT_TRUE(same(Vector2(1.0f, -1.0f).reflect(Vector2(0.0f, 2.0f)), Two{1.0f, 7.0f})); // the normal as it stands
}

TEST(Vector2, MidPointDoesNotOverflow) {
    EXPECT_TRUE(same(Vector2(LARGEST, 0.0f).midPoint(Vector2(LARGEST, 1.0f)), Two{LARGEST, 0.5f}));
}

// --- Division ---

struct DivisorRow {
    Vector2 divisor;
    const char* message; // null: divides
};

constexpr const char* X_MESSAGE = "other.x < VORN_ZERO || other.x > VORN_ZERO : divide by zero!";
constexpr const char* Y_MESSAGE = "other.y < VORN_ZERO || other.y > VORN_ZERO : divide by zero!";
constexpr const char* VAL_MESSAGE = "val < VORN_ZERO || val > VORN_ZERO : divide by zero!";
constexpr const char* DIVIDE = "Vorn::Vector2::operator /";
constexpr const char* DIVIDE_IN_PLACE = "Vorn::Vector2::operator /=";
constexpr const char* FILE_TEXT = "Include/Vorn/Vector2";

TEST(Vector2, DivisionChecksXAndThenYAndChangesNothing) {
    const DivisorRow rows[] = {
        {{0.0f, 1.0f}, X_MESSAGE},         {{-0.0f, 1.0f}, X_MESSAGE}, {{NOT_A_NUMBER, 1.0f}, X_MESSAGE},
        {{0.0f, 0.0f}, X_MESSAGE},         {{1.0f, 0.0f}, Y_MESSAGE},  {{1.0f, -0.0f}, Y_MESSAGE},
        {{1.0f, NOT_A_NUMBER}, Y_MESSAGE},
    };
    for (const DivisorRow& row : rows) {
        Vector2 vector(6.0f, 8.0f);
        expectRaises<1>([&] { vector /= row.divisor; }, row.message, DIVIDE_IN_PLACE, FILE_TEXT);
        expectRaises<1>([&] { (void)(vector / row.divisor); }, row.message, DIVIDE, FILE_TEXT);
        EXPECT_TRUE(same(vector, Two{6.0f, 8.0f}));
    }
    for (const float val : {0.0f, -0.0f, NOT_A_NUMBER}) {
        Vector2 vector(6.0f, 8.0f);
        expectRaises<1>([&] { vector /= val; }, VAL_MESSAGE, DIVIDE_IN_PLACE, FILE_TEXT);
        expectRaises<1>([&] { (void)(vector / val); }, VAL_MESSAGE, DIVIDE, FILE_TEXT);
        EXPECT_TRUE(same(vector, Two{6.0f, 8.0f}));
    }
}

TEST(Vector2, DivisionIsATrueDivision) {
    RandomFloats random(73);
    for (int round = 0; round < repetitions(100000); ++round) {
        const Vector2 v = random.record<Vector2>();
        const Vector2 divisor = random.record<Vector2>();
        const bool xDivides = divisor.x != 0.0f && divisor.x == divisor.x;
        const bool yDivides = divisor.y != 0.0f && divisor.y == divisor.y;
        Vector2 inPlace(v);
        if (xDivides && yDivides) {
            const Two expected = divided(floatsOf(v), floatsOf(divisor));
            EXPECT_EQ(&(inPlace /= divisor), &inPlace);
            ASSERT_TRUE(same(inPlace, expected)) << describe(v) << "by " << describe(divisor);
            ASSERT_TRUE(same(v / divisor, expected)) << describe(v) << "by " << describe(divisor);
        }
        if (xDivides) {
            const Two expected = divided(floatsOf(v), {divisor.x, divisor.x});
            inPlace = v;
            EXPECT_EQ(&(inPlace /= divisor.x), &inPlace);
            ASSERT_TRUE(same(inPlace, expected)) << describe(v) << "by " << divisor.x;
            ASSERT_TRUE(same(v / divisor.x, expected)) << describe(v) << "by " << divisor.x;
        }
    }
    Vector2 byDenormal(DENORMAL, -1.0f);
    byDenormal /= DENORMAL;
    EXPECT_TRUE(same(byDenormal, Two{1.0f, -INFINITE}));
}

TEST(Vector2, AnOperandMayBeTheVectorItself) {
    Vector2 vector(3.0f, 4.0f);
    const Vector2& itself = vector;
    vector += itself;
    EXPECT_TRUE(same(vector, Two{6.0f, 8.0f}));
    vector *= itself;
    EXPECT_TRUE(same(vector, Two{36.0f, 64.0f}));
    vector /= itself;
    EXPECT_TRUE(same(vector, Two{1.0f, 1.0f}));
    vector.normalisedCopy(vector);
    EXPECT_TRUE(same(vector, Vector2(1.0f, 1.0f).normalisedCopy()));
    vector -= itself;
    EXPECT_TRUE(same(vector, Two{0.0f, 0.0f}));
}

TEST(Vector2, TakesARotationWhereItTakesAPair) {
    EXPECT_TRUE(same(Vector2(1.0f, 2.0f) + ComplexAngle(3.0f, 4.0f), Two{4.0f, 6.0f}));
    EXPECT_EQ(Vector2(1.0f, 2.0f).dot(ComplexAngle(3.0f, 4.0f)), 11.0f);
    ComplexAngle out;
    Vector2(1.0f, 2.0f).perpendicular(out);
    EXPECT_TRUE(same(out, Two{-2.0f, 1.0f}));
}

} // namespace
