#include "Vorn/ComplexAngle.h"

#include "Support/Floats.h"

#include <gtest/gtest.h>

namespace {

using Vorn::ComplexAngle;
using Vorn::Vector2;
using Pair = Vorn::XYPair<float, float>;
using Two = std::array<float, 2>;

constexpr float PI = 3.14159265f;

TEST(ComplexAngle, DefaultConstructorWritesNothing) { expectUnwrittenByDefault<ComplexAngle>(); }

TEST(ComplexAngle, ConstantsHaveTheirValues) {
    EXPECT_TRUE(same(ComplexAngle::IDENTITY, Two{1.0f, 0.0f}));
    EXPECT_TRUE(same(ComplexAngle::ZERO, Two{0.0f, 0.0f}));
}

TEST(ComplexAngle, TwoFloatsArePartsAndOneIsAnAngle) {
    const Vorn::XYPairBase<float> record{1.0f, 2.0f};
    const float elements[] = {3.0f, 4.0f};
    EXPECT_TRUE(same(ComplexAngle(record), Two{1.0f, 2.0f}));
    EXPECT_TRUE(same(ComplexAngle(elements), Two{3.0f, 4.0f}));
    EXPECT_TRUE(same(ComplexAngle(Pair(5.0f, 6.0f)), Two{5.0f, 6.0f}));
    EXPECT_TRUE(same(ComplexAngle(Vector2(5.0f, 6.0f)), Two{5.0f, 6.0f}));
    EXPECT_TRUE(same(ComplexAngle(ComplexAngle(5.0f, 6.0f)), Two{5.0f, 6.0f}));
    EXPECT_TRUE(same(ComplexAngle(0.0f, 1.0f), Two{0.0f, 1.0f}));
    EXPECT_TRUE(same(ComplexAngle(0.0f), Two{1.0f, 0.0f}));
    EXPECT_TRUE(same(ComplexAngle(-0.0f), Two{1.0f, -0.0f}));
}

TEST(ComplexAngle, AssignmentCopiesOrTakesAnAngle) {
    ComplexAngle angle(1.0f, 2.0f);
    EXPECT_EQ(&(angle = ComplexAngle(3.0f, 4.0f)), &angle);
    EXPECT_TRUE(same(angle, Two{3.0f, 4.0f}));
    EXPECT_EQ(&(angle = Pair(5.0f, 6.0f)), &angle);
    EXPECT_TRUE(same(angle, Two{5.0f, 6.0f}));
    EXPECT_EQ(&(angle = 0.0f), &angle);
    EXPECT_TRUE(same(angle, Two{1.0f, 0.0f}));
}

// The expected bits are those of the correctly rounded sine and cosine.
TEST(ComplexAngle, SineAndCosineAreTakenInDouble) {
    struct Row {
        float radians;
        unsigned int cosine;
        unsigned int sine;
    };
    const Row rows[] = {
        {0.5f, 0x3F60A940, 0x3EF57744},    {1.0f, 0x3F0A5140, 0x3F576AA4},      {-1.0f, 0x3F0A5140, 0xBF576AA4},
        {PI, 0xBF800000, 0xB3BBBD2E},      {PI / 2.0f, 0xB33BBD2E, 0x3F800000}, {100.0f, 0x3F5CC0EE, 0xBF01A12E},
        {1.0e10f, 0x3F5F84C5, 0xBEF99A64}, {DENORMAL, 0x3F800000, 0x00000001},
    };
    for (const Row& row : rows) {
        const ComplexAngle angle(row.radians);
        EXPECT_EQ(std::bit_cast<unsigned int>(angle.x), row.cosine) << std::hex << row.radians;
        EXPECT_EQ(std::bit_cast<unsigned int>(angle.y), row.sine) << row.radians;
    }
    EXPECT_TRUE(same(ComplexAngle(INFINITE), Two{NOT_A_NUMBER, NOT_A_NUMBER}));

    RandomFloats random(74);
    for (int round = 0; round < repetitions(100000); ++round) {
        const float radians = random.next();
        const Two expected = {static_cast<float>(std::cos(static_cast<double>(radians))),
                              static_cast<float>(std::sin(static_cast<double>(radians)))};
        ComplexAngle assigned;
        assigned = radians;
        ASSERT_TRUE(same(ComplexAngle(radians), expected)) << radians;
        ASSERT_TRUE(same(assigned, expected)) << radians;
    }
}

// --- The plain reference ---

float floatOf(double value) { return static_cast<float>(value); }

float squareOf(const Two& a) { return floatOf(static_cast<double>(a[0]) * a[0] + static_cast<double>(a[1]) * a[1]); }

Two productOf(const Two& a, const Two& b) {
    const double ax = a[0], ay = a[1], bx = b[0], by = b[1];
    return {floatOf(bx * ax - by * ay), floatOf(bx * ay + ax * by)};
}

struct Form {
    const char* name;
    ComplexAngle (*actual)(const ComplexAngle& a, const ComplexAngle& b);
    Two (*expected)(const Two& a, const Two& b);
};

const Form FORMS[] = {
    {"+=",
     [](const ComplexAngle& a, const ComplexAngle& b) {
         ComplexAngle r(a);
         EXPECT_EQ(&(r += b), &r);
         return r;
     },
     [](const Two& a, const Two& b) {
         return Two{a[0] + b[0], a[1] + b[1]};
     }},
    {"+", [](const ComplexAngle& a, const ComplexAngle& b) { return a + b; },
     [](const Two& a, const Two& b) {
         return Two{a[0] + b[0], a[1] + b[1]};
     }},
    {"-=",
     [](const ComplexAngle& a, const ComplexAngle& b) {
         ComplexAngle r(a);
         EXPECT_EQ(&(r -= b), &r);
         return r;
     },
     [](const Two& a, const Two& b) {
         return Two{a[0] - b[0], a[1] - b[1]};
     }},
    {"-", [](const ComplexAngle& a, const ComplexAngle& b) { return a - b; },
     [](const Two& a, const Two& b) {
         return Two{a[0] - b[0], a[1] - b[1]};
     }},
    {"negation", [](const ComplexAngle& a, const ComplexAngle&) { return -a; },
     [](const Two& a, const Two&) {
         return Two{-a[0], -a[1]};
     }},
    {"*=",
     [](const ComplexAngle& a, const ComplexAngle& b) {
         ComplexAngle r(a);
         EXPECT_EQ(&(r *= b), &r);
         return r;
     },
     productOf},
    {"*", [](const ComplexAngle& a, const ComplexAngle& b) { return a * b; }, productOf},
    {"*= a vector",
     [](const ComplexAngle& a, const ComplexAngle& b) {
         ComplexAngle r(a);
         r *= Vector2(b);
         return r;
     },
     productOf},
    {"* pair", [](const ComplexAngle& a, const ComplexAngle& b) { return a * static_cast<const Pair&>(b); }, productOf},
    {"* vector", [](const ComplexAngle& a, const ComplexAngle& b) { return ComplexAngle(a * Vector2(b)); },
     [](const Two& a, const Two& v) {
         const double x = a[0], y = a[1], vx = v[0], vy = v[1];
         return Two{floatOf(vx * x - vy * y), floatOf(y * vx + vy * x)};
     }},
    {"*= float",
     [](const ComplexAngle& a, const ComplexAngle& b) {
         ComplexAngle r(a);
         EXPECT_EQ(&(r *= b.x), &r);
         return r;
     },
     [](const Two& a, const Two& b) {
         return Two{a[0] * b[0], a[1] * b[0]};
     }},
    {"* float", [](const ComplexAngle& a, const ComplexAngle& b) { return a * b.x; },
     [](const Two& a, const Two& b) {
         return Two{a[0] * b[0], a[1] * b[0]};
     }},
    {"dot", [](const ComplexAngle& a, const ComplexAngle& b) { return ComplexAngle(a.dot(b), a.dotProduct(b)); },
     [](const Two& a, const Two& b) {
         const float dot = floatOf(static_cast<double>(a[0]) * b[0] + static_cast<double>(a[1]) * b[1]);
         return Two{dot, dot};
     }},
    {"normalise",
     [](const ComplexAngle& a, const ComplexAngle&) {
         ComplexAngle r(a);
         r.normalise();
         return r;
     },
     [](const Two& a, const Two&) {
         const float length = floatOf(std::sqrt(static_cast<double>(squareOf(a))));
         const float f = floatOf(1.0 / static_cast<double>(length));
         return Two{a[0] * f, a[1] * f};
     }},
    {"what normalise returns",
     [](const ComplexAngle& a, const ComplexAngle&) {
         ComplexAngle r(a);
         return ComplexAngle(r.normalise(), 0.0f);
     },
     [](const Two& a, const Two&) {
         return Two{squareOf(a), 0.0f};
     }},
    {"inverse", [](const ComplexAngle& a, const ComplexAngle&) { return a.inverse(); },
     [](const Two& a, const Two&) {
         const float s = squareOf(a);
         if (!(s > 0)) return Two{0.0f, 0.0f};
         const float f = floatOf(1.0 / static_cast<double>(s));
         return Two{a[0] * f, -a[1] * f};
     }},
};

TEST(ComplexAngle, EveryFormHasTheBitsOfThePlainFormula) {
    RandomFloats random(75);
    for (int round = 0; round < repetitions(100000); ++round) {
        const ComplexAngle a = random.record<ComplexAngle>();
        const ComplexAngle b = random.record<ComplexAngle>();
        for (const Form& form : FORMS) {
            ASSERT_TRUE(same(form.actual(a, b), form.expected(floatsOf(a), floatsOf(b))))
                << form.name << " of " << describe(a) << "and " << describe(b);
        }
    }
}

TEST(ComplexAngle, ProductAddsTheAngles) {
    EXPECT_TRUE(ComplexAngle(0.0f, 1.0f) * ComplexAngle(0.0f, 1.0f) == ComplexAngle(-1.0f, 0.0f));
    const ComplexAngle sum = ComplexAngle(0.3f) * ComplexAngle(0.4f);
    EXPECT_NEAR(sum.x, std::cos(0.7f), 1e-6f);
    EXPECT_NEAR(sum.y, std::sin(0.7f), 1e-6f);
    ComplexAngle itself(0.0f, 2.0f);
    itself *= itself; // the old y counts
    EXPECT_TRUE(same(itself, Two{-4.0f, 0.0f}));
}

TEST(ComplexAngle, RotatesFromXTowardsY) {
    const Vector2 rotated = ComplexAngle(0.0f, 1.0f) * Vector2(2.0f, 1.0f);
    EXPECT_TRUE(same(rotated, Two{-1.0f, 2.0f}));
}

TEST(ComplexAngle, NormaliseReturnsTheSquaredLength) {
    ComplexAngle angle(3.0f, 4.0f);
    EXPECT_EQ(angle.normalise(), 25.0f);
    EXPECT_FLOAT_EQ(angle.x, 0.6f);
    EXPECT_FLOAT_EQ(angle.y, 0.8f);
    ComplexAngle zero(0.0f, 0.0f);
    EXPECT_TRUE(same(zero.normalise(), 0.0f));
    EXPECT_TRUE(same(zero, Two{NOT_A_NUMBER, NOT_A_NUMBER}));
}

TEST(ComplexAngle, InverseTurnsBackAndChangesNothing) {
    const ComplexAngle angle(0.0f, 2.0f);
    EXPECT_TRUE(same(angle.inverse(), Two{0.0f, -0.5f}));
    EXPECT_TRUE(same(angle, Two{0.0f, 2.0f}));
    EXPECT_TRUE(same(ComplexAngle(0.0f, 0.0f).inverse(), Two{0.0f, 0.0f}));
    EXPECT_TRUE(same(ComplexAngle(NOT_A_NUMBER, 1.0f).inverse(), Two{0.0f, 0.0f}));
}

TEST(ComplexAngle, SignsAreTheValueItselfAndAHalfTurn) {
    const ComplexAngle angle(0.25f, -0.5f);
    EXPECT_EQ(&+angle, &angle);
    EXPECT_TRUE(same(-angle, Two{-0.25f, 0.5f}));
}

} // namespace
