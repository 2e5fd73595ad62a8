#include "Vorn/Matrix3.h"

#include "Support/Floats.h"
#include "Support/Report.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Vorn::ComplexAngle;
using Vorn::Matrix3;
using Vorn::Vector2;
using Vorn::Vector2CornerRect;
using Two = std::array<float, 2>;
using Nine = std::array<float, 9>;

constexpr Matrix3 COUNTED(1, 2, 3, 4, 5, 6, 7, 8, 9);

TEST(Matrix3, DefaultConstructorWritesNothing) { expectUnwrittenByDefault<Matrix3>(); }

TEST(Matrix3, ConstructorsFillInStorageOrder) {
    EXPECT_TRUE(same(COUNTED, Nine{1, 2, 3, 4, 5, 6, 7, 8, 9}));
    EXPECT_TRUE(same(Matrix3(2.5f), Nine{2.5f, 2.5f, 2.5f, 2.5f, 2.5f, 2.5f, 2.5f, 2.5f, 2.5f}));
    Matrix3 copy(COUNTED);
    EXPECT_TRUE(same(copy, COUNTED));
    EXPECT_EQ(&(copy = Matrix3::ZERO), &copy);
    EXPECT_TRUE(same(copy, Nine{}));
}

TEST(Matrix3, ConstantsHaveTheirValues) {
    EXPECT_TRUE(same(Matrix3::IDENTITY, Nine{1, 0, 0, 0, 1, 0, 0, 0, 1}));
    EXPECT_TRUE(same(Matrix3::ZERO, Nine{}));
}

TEST(Matrix3, EqualityComparesBytes) {
    EXPECT_FALSE(Matrix3(0.0f) == Matrix3(-0.0f));
    EXPECT_TRUE(Matrix3(0.0f) != Matrix3(-0.0f));
    const Matrix3 nan(NOT_A_NUMBER);
    const Matrix3 copy(nan);
    EXPECT_TRUE(nan == copy);
    EXPECT_FALSE(nan != copy);
    for (int i = 0; i < 9; ++i) {
        Matrix3 other(COUNTED);
        other.m[i] += 1.0f;
        EXPECT_FALSE(COUNTED == other) << i;
        EXPECT_TRUE(COUNTED != other) << i;
    }
}

// --- The plain reference ---

float floatOf(double value) { return static_cast<float>(value); }

template <class Operation>
Nine each(const Nine& a, const Nine& b, Operation operation) {
    Nine result{};
    for (std::size_t i = 0; i < 9; ++i) {
        result[i] = floatOf(operation(static_cast<double>(a[i]), static_cast<double>(b[i])));
    }
    return result;
}

Nine sumOf(const Nine& a, const Nine& b) {
    return each(a, b, [](double x, double y) { return x + y; });
}
Nine differenceOf(const Nine& a, const Nine& b) {
    return each(a, b, [](double x, double y) { return x - y; });
}
Nine scaledBy(const Nine& a, float factor) {
    Nine factors;
    factors.fill(factor);
    return each(a, factors, [](double x, double y) { return x * y; });
}
Nine productOf(const Nine& a, const Nine& b) {
    Nine result{};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            double sum = static_cast<double>(a[3 * row]) * b[column];
            for (std::size_t k = 1; k < 3; ++k) sum += static_cast<double>(a[3 * row + k]) * b[3 * k + column];
            result[3 * row + column] = floatOf(sum);
        }
    }
    return result;
}
Nine transposeOf(const Nine& a) {
    Nine result{};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) result[3 * column + row] = a[3 * row + column];
    }
    return result;
}
Nine translationOf(const Nine& a, const Nine& b) {
    Nine result(a);
    result[2] = a[2] + b[0];
    result[5] = a[5] + b[1];
    return result;
}
Nine rowsScaled(const Nine& a, const Nine& b) {
    Nine result(a);
    for (std::size_t i = 0; i < 6; ++i) result[i] = a[i] * b[i / 3];
    return result;
}
Two timesColumn(const Nine& m, const Two& v) {
    Two result{};
    for (std::size_t row = 0; row < 2; ++row) {
        double sum = static_cast<double>(m[3 * row]) * v[0];
        sum += static_cast<double>(m[3 * row + 1]) * v[1];
        result[row] = floatOf(sum + static_cast<double>(m[3 * row + 2]));
    }
    return result;
}

// The first two elements of the second matrix are used as a vector, and the first one as a float.
Vector2 vectorOf(const Matrix3& b) { return {b.m[0], b.m[1]}; }

struct Form {
    const char* name;
    void (*actual)(Matrix3& result, const Matrix3& b); // `result` comes as the first matrix
    Nine (*expected)(const Nine& a, const Nine& b);
};

const Form FORMS[] = {
    {"multiply", [](Matrix3& r, const Matrix3& b) { r.multiply(b.m[0]); },
     [](const Nine& a, const Nine& b) { return scaledBy(a, b[0]); }},
    {"*= float", [](Matrix3& r, const Matrix3& b) { EXPECT_EQ(&(r *= b.m[0]), &r); },
     [](const Nine& a, const Nine& b) { return scaledBy(a, b[0]); }},
    {"multiplyCopy(out)",
     [](Matrix3& r, const Matrix3& b) {
         const Matrix3 a(r);
         a.multiplyCopy(r, b.m[0]);
     },
     [](const Nine& a, const Nine& b) { return scaledBy(a, b[0]); }},
    {"multiplyCopy", [](Matrix3& r, const Matrix3& b) { r = r.multiplyCopy(b.m[0]); },
     [](const Nine& a, const Nine& b) { return scaledBy(a, b[0]); }},
    {"* float", [](Matrix3& r, const Matrix3& b) { r = r * b.m[0]; },
     [](const Nine& a, const Nine& b) { return scaledBy(a, b[0]); }},
    {"+=", [](Matrix3& r, const Matrix3& b) { EXPECT_EQ(&(r += b), &r); }, sumOf},
    {"+", [](Matrix3& r, const Matrix3& b) { r = r + b; }, sumOf},
    {"-=", [](Matrix3& r, const Matrix3& b) { EXPECT_EQ(&(r -= b), &r); }, differenceOf},
    {"-", [](Matrix3& r, const Matrix3& b) { r = r - b; }, differenceOf},
    {"*=", [](Matrix3& r, const Matrix3& b) { EXPECT_EQ(&(r *= b), &r); }, productOf},
    {"*", [](Matrix3& r, const Matrix3& b) { r = r * b; }, productOf},
    {"*= itself", [](Matrix3& r, const Matrix3&) { r *= r; },
     [](const Nine& a, const Nine&) { return productOf(a, a); }},
    {"transpose", [](Matrix3& r, const Matrix3&) { r.transpose(); },
     [](const Nine& a, const Nine&) { return transposeOf(a); }},
    {"transposedCopy", [](Matrix3& r, const Matrix3&) { r = r.transposedCopy(); },
     [](const Nine& a, const Nine&) { return transposeOf(a); }},
    {"setTrans", [](Matrix3& r, const Matrix3& b) { r.setTrans(vectorOf(b)); },
     [](const Nine& a, const Nine& b) { return Nine{a[0], a[1], b[0], a[3], a[4], b[1], a[6], a[7], a[8]}; }},
    {"setTrans(x, y)", [](Matrix3& r, const Matrix3& b) { r.setTrans(b.m[0], b.m[1]); },
     [](const Nine& a, const Nine& b) { return Nine{a[0], a[1], b[0], a[3], a[4], b[1], a[6], a[7], a[8]}; }},
    {"translate", [](Matrix3& r, const Matrix3& b) { r.translate(vectorOf(b)); }, translationOf},
    {"translate(x, y)", [](Matrix3& r, const Matrix3& b) { r.translate(b.m[0], b.m[1]); }, translationOf},
    {"translatedCopy(out)",
     [](Matrix3& r, const Matrix3& b) {
         const Matrix3 a(r);
         a.translatedCopy(r, vectorOf(b));
     },
     translationOf},
    {"translatedCopy(out, x, y)",
     [](Matrix3& r, const Matrix3& b) {
         const Matrix3 a(r);
         a.translatedCopy(r, b.m[0], b.m[1]);
     },
     translationOf},
    {"translatedCopy", [](Matrix3& r, const Matrix3& b) { r = r.translatedCopy(vectorOf(b)); }, translationOf},
    {"translatedCopy(x, y)", [](Matrix3& r, const Matrix3& b) { r = r.translatedCopy(b.m[0], b.m[1]); }, translationOf},
    {"makeTranslation", [](Matrix3& r, const Matrix3& b) { r.makeTranslation(vectorOf(b)); },
     [](const Nine&, const Nine& b) { return Nine{1, 0, b[0], 0, 1, b[1], 0, 0, 1}; }},
    {"makeTranslation(x, y)", [](Matrix3& r, const Matrix3& b) { r.makeTranslation(b.m[0], b.m[1]); },
     [](const Nine&, const Nine& b) { return Nine{1, 0, b[0], 0, 1, b[1], 0, 0, 1}; }},
    {"scale", [](Matrix3& r, const Matrix3& b) { r.scale(vectorOf(b)); }, rowsScaled},
    {"scale(x, y)", [](Matrix3& r, const Matrix3& b) { r.scale(b.m[0], b.m[1]); }, rowsScaled},
    {"scaledCopy(out)",
     [](Matrix3& r, const Matrix3& b) {
         const Matrix3 a(r);
         a.scaledCopy(r, vectorOf(b));
     },
     rowsScaled},
    {"scaledCopy(out, x, y)",
     [](Matrix3& r, const Matrix3& b) {
         const Matrix3 a(r);
         a.scaledCopy(r, b.m[0], b.m[1]);
     },
     rowsScaled},
    {"scaledCopy", [](Matrix3& r, const Matrix3& b) { r = r.scaledCopy(vectorOf(b)); }, rowsScaled},
    {"scaledCopy(x, y)", [](Matrix3& r, const Matrix3& b) { r = r.scaledCopy(b.m[0], b.m[1]); }, rowsScaled},
    {"makeTransform",
     [](Matrix3& r, const Matrix3& b) {
         r.makeTransform(ComplexAngle(b.m[0], b.m[1]), Vector2(b.m[2], b.m[3]), Vector2(b.m[4], b.m[5]));
     },
     [](const Nine&, const Nine& b) {
         const float ax = b[0], ay = b[1], sx = b[2], sy = b[3];
         return Nine{ax * sx, -(ay * sy), b[4], ay * sx, sy * ax, b[5], 0, 0, 1};
     }},
    {"makeInverseTransform",
     [](Matrix3& r, const Matrix3& b) {
         r.makeInverseTransform(ComplexAngle(b.m[0], b.m[1]), Vector2(b.m[2], b.m[3]), Vector2(b.m[4], b.m[5]));
     },
     [](const Nine&, const Nine& b) {
         const float ax = b[0], ay = b[1], sx = b[2], sy = b[3];
         return Nine{ax * sx, ay * sx, -b[4], -(sy * ay), sy * ax, -b[5], 0, 0, 1};
     }},
};

TEST(Matrix3, EveryFormHasTheBitsOfThePlainFormula) {
    RandomFloats random(76);
    for (int round = 0; round < repetitions(100000) / 3; ++round) {
        const Matrix3 a = random.record<Matrix3>();
        const Matrix3 b = random.record<Matrix3>();
        for (const Form& form : FORMS) {
            Matrix3 result(a);
            form.actual(result, b);
            ASSERT_TRUE(same(result, form.expected(floatsOf(a), floatsOf(b))))
                << form.name << " of " << describe(a) << "and " << describe(b);
        }
    }
}

TEST(Matrix3, ColumnVectorsTakeTheTranslationFromTheThirdColumn) {
    RandomFloats random(77);
    for (int round = 0; round < repetitions(100000); ++round) {
        const Matrix3 matrix = random.record<Matrix3>();
        const Vector2 vec = random.record<Vector2>();
        const Two expected = timesColumn(floatsOf(matrix), floatsOf(vec));
        Vector2 inPlace(vec);
        matrix.transform(inPlace);
        Vorn::XYPairBase<float> out{};
        matrix.transformCopy(out, vec);
        Vector2 aliased(vec);
        matrix.transformCopy(aliased, aliased);
        ASSERT_TRUE(same(matrix * vec, expected)) << describe(matrix) << "and " << describe(vec);
        ASSERT_TRUE(same(matrix.transformCopy(vec), expected)) << describe(matrix) << "and " << describe(vec);
        ASSERT_TRUE(same(inPlace, expected)) << describe(matrix) << "and " << describe(vec);
        ASSERT_TRUE(same(out, expected)) << describe(matrix) << "and " << describe(vec);
        ASSERT_TRUE(same(aliased, expected)) << describe(matrix) << "and " << describe(vec);
        ASSERT_TRUE(same(matrix.getTrans(), Two{matrix.m[2], matrix.m[5]}));
        Vector2 translation;
        matrix.getTrans(translation);
        ASSERT_TRUE(same(translation, Two{matrix.m[2], matrix.m[5]}));
    }
}

TEST(Matrix3, RowVectorsTakeTheTranslationFromTheThirdRow) {
    RandomFloats random(78);
    for (int round = 0; round < repetitions(100000); ++round) {
        const Matrix3 matrix = random.record<Matrix3>();
        const Vector2 vec = random.record<Vector2>();
        const float* const m = matrix.m;
        const double x = vec.x, y = vec.y;
        const Two expected = {floatOf(m[3] * y + m[0] * x + m[6]), floatOf(m[1] * x + m[4] * y + m[7])};
        Vector2 inPlace(vec);
        EXPECT_EQ(&(inPlace *= matrix), &inPlace);
        ASSERT_TRUE(same(vec * matrix, expected)) << describe(matrix) << "and " << describe(vec);
        ASSERT_TRUE(same(inPlace, expected)) << describe(matrix) << "and " << describe(vec);
    }
}

TEST(Matrix3, TheTwoDirectionsDifferForATranslation) {
    Matrix3 matrix;
    matrix.makeTranslation(10.0f, 20.0f);
    EXPECT_TRUE(same(matrix * Vector2(1.0f, 2.0f), Two{11.0f, 22.0f}));
    EXPECT_TRUE(same(Vector2(1.0f, 2.0f) * matrix, Two{1.0f, 2.0f}));
}

TEST(Matrix3, TransformsFourCornersAlike) {
    const Vector2CornerRect rect{{{1.0f, 2.0f}, {3.0f, 4.0f}, {-5.0f, 6.0f}, {0.5f, -0.0f}}};
    const Vector2CornerRect result = COUNTED * rect;
    for (int i = 0; i < 4; ++i) EXPECT_TRUE(same(result.corners[i], COUNTED * rect.corners[i])) << i;
    EXPECT_TRUE(same(result.corners[1], Two{14.0f, 38.0f}));
}

TEST(Matrix3, RowTwoIsNotReadForVectors) {
    Matrix3 matrix(COUNTED);
    matrix.m[6] = matrix.m[7] = matrix.m[8] = NOT_A_NUMBER;
    EXPECT_TRUE(same(matrix * Vector2(1.0f, 1.0f), Two{6.0f, 15.0f}));
}

TEST(Matrix3, ProductAppliesTheRightOneFirst) {
    Matrix3 scaling(Matrix3::IDENTITY);
    scaling.scale(2.0f, 3.0f);
    Matrix3 moving;
    moving.makeTranslation(Vector2(10.0f, 20.0f));
    EXPECT_TRUE(same(moving * scaling * Vector2(1.0f, 1.0f), Two{12.0f, 23.0f}));
    EXPECT_TRUE(same(scaling * moving * Vector2(1.0f, 1.0f), Two{22.0f, 63.0f}));
}

TEST(Matrix3, TranslateAddsRawValuesAndScaleScalesTheTranslation) {
    Matrix3 matrix(Matrix3::IDENTITY);
    matrix.scale(2.0f, 3.0f);
    matrix.translate(10.0f, 20.0f);
    EXPECT_TRUE(same(matrix, Nine{2, 0, 10, 0, 3, 20, 0, 0, 1}));
    matrix.scale(Vector2(2.0f, 3.0f));
    EXPECT_TRUE(same(matrix, Nine{4, 0, 20, 0, 9, 60, 0, 0, 1}));
}

TEST(Matrix3, TransformScalesThenRotatesThenTranslates) {
    const Vector2 translation(7.0f, -8.0f);
    Matrix3 matrix;
    matrix.makeTransform(0.0f, Vector2::UNIT_SCALE, translation);
    EXPECT_TRUE(same(matrix * Vector2::ZERO, translation));
    matrix.makeTransform(ComplexAngle(0.0f, 1.0f), Vector2(2.0f, 3.0f), Vector2(10.0f, 20.0f));
    EXPECT_TRUE(same(matrix * Vector2(1.0f, 1.0f), Two{7.0f, 22.0f}));
}

TEST(Matrix3, AnAngleInRadiansForwardsToItsRotation) {
    const Vector2 factor(2.0f, -3.0f);
    const Vector2 translation(5.0f, 7.0f);
    for (const float radians : {0.0f, 0.7f, -2.5f, 100.0f}) {
        Matrix3 actual, expected;
        actual.makeTransform(radians, factor, translation);
        expected.makeTransform(ComplexAngle(radians), factor, translation);
        EXPECT_TRUE(actual == expected) << radians;
        actual.makeInverseTransform(radians, factor, translation);
        expected.makeInverseTransform(ComplexAngle(radians), factor, translation);
        EXPECT_TRUE(actual == expected) << radians;
    }
}

TEST(Matrix3, InverseTransformIsNoInverse) {
    Matrix3 matrix;
    matrix.makeInverseTransform(ComplexAngle(0.6f, 0.8f), Vector2(2.0f, 3.0f), Vector2(5.0f, 7.0f));
    EXPECT_TRUE(same(matrix, Nine{0.6f * 2.0f, 0.8f * 2.0f, -5.0f, -(3.0f * 0.8f), 3.0f * 0.6f, -7.0f, 0, 0, 1}));
    Matrix3 forward;
    forward.makeTransform(0.0f, Vector2::UNIT_SCALE, Vector2(5.0f, 7.0f));
    matrix.makeInverseTransform(0.0f, Vector2::UNIT_SCALE, Vector2(5.0f, 7.0f));
    EXPECT_TRUE(same(forward * matrix * Vector2(1.0f, 2.0f), Two{1.0f, 2.0f})); // without rotation and scale it is
}

// --- Inverse ---

constexpr const char* MESSAGE = "Invalid matrix. Unable to build inverse.";

struct Inversion {
    Nine result;
    float determinant;
};

Inversion inversionOf(const Nine& m) {
    const double a = m[0], b = m[1], c = m[2], d = m[3], e = m[4], f = m[5], g = m[6], h = m[7], i = m[8];
    const Nine r = {floatOf(i * e - h * f), floatOf(h * c - b * i), floatOf(b * f - c * e),
                    floatOf(g * f - d * i), floatOf(a * i - g * c), floatOf(d * c - f * a),
                    floatOf(d * h - g * e), floatOf(b * g - h * a), floatOf(a * e - d * b)};
    const float det = floatOf(r[0] * a + b * r[3] + r[6] * c);
    return {scaledBy(r, floatOf(1.0 / static_cast<double>(det))), det};
}

TEST(Matrix3, InverseHasTheBitsOfThePlainFormulaOrRaises) {
    RandomFloats random(79);
    int raised = 0;
    int inverted = 0;
    const int rounds = repetitions(100000, 2000);
    for (int round = 0; round < rounds; ++round) {
        Matrix3 matrix = random.record<Matrix3>();
        if (round % 2 == 0) { // mostly ordinary ones
            for (float& element : matrix.m) element = static_cast<float>(random.below(2001)) / 100.0f - 10.0f;
        }
        const Inversion expected = inversionOf(floatsOf(matrix));
        if (std::fabs(expected.determinant) <= std::bit_cast<float>(0x34000000u)) {
            if (++raised < 50)
                expectRaises<2>([&] { (void)matrix.inversedCopy(); }, MESSAGE, "Vorn::Matrix3::inversedCopy",
                                "Source/Vorn/Matrix3");
            continue;
        }
        ++inverted;
        Matrix3 inPlace(matrix);
        inPlace.inverse();
        Matrix3 out;
        matrix.inversedCopy(out);
        ASSERT_TRUE(same(matrix.inversedCopy(), expected.result)) << describe(matrix);
        ASSERT_TRUE(same(inPlace, expected.result)) << describe(matrix);
        ASSERT_TRUE(same(out, expected.result)) << describe(matrix);
    }
    EXPECT_GT(raised, 10);
    EXPECT_GT(inverted, rounds / 2);
}

TEST(Matrix3, InverseUndoes) {
    EXPECT_TRUE(floatsOf(Matrix3::IDENTITY.inversedCopy()) == floatsOf(Matrix3::IDENTITY));
    Matrix3 matrix;
    matrix.makeTransform(0.5f, Vector2(2.0f, 3.0f), Vector2(10.0f, 20.0f));
    const Vector2 back = matrix.inversedCopy() * (matrix * Vector2(4.0f, 5.0f));
    EXPECT_NEAR(back.x, 4.0f, 1e-5f);
    EXPECT_NEAR(back.y, 5.0f, 1e-5f);
}

TEST(Matrix3, InverseOfASingularMatrixRaisesAndChangesNothing) {
    const Matrix3 singular[] = {Matrix3::ZERO, COUNTED, Matrix3(1.1e-7f, 0, 0, 0, 1, 0, 0, 0, 1),
                                Matrix3(-1.1e-7f, 0, 0, 0, 1, 0, 0, 0, 1),
                                Matrix3(std::ldexp(1.0f, -23), 0, 0, 0, 1, 0, 0, 0, 1)};
    for (const Matrix3& original : singular) {
        Matrix3 matrix(original);
        Matrix3 out(COUNTED);
        for (const Report& report :
             {reportOf<2>([&] { (void)matrix.inversedCopy(); }), reportOf<2>([&] { matrix.inversedCopy(out); }),
              reportOf<2>([&] { matrix.inverse(); })}) {
            EXPECT_EQ(report.message, MESSAGE);
            EXPECT_EQ(report.type, "::Vorn::E::INTERNAL");
            EXPECT_EQ(report.function, "Vorn::Matrix3::inversedCopy");
            EXPECT_EQ(report.file, "Source/Vorn/Matrix3");
        }
        EXPECT_TRUE(matrix == original);
        EXPECT_TRUE(out == COUNTED);
    }
}

TEST(Matrix3, AFailedInverseReachesTheLog) {
    static std::string logged;
    logged.clear();
    Vorn::AllExceptions::setLogCallback([](const char* text) { logged = text; });
    (void)reportOf<2>([] { (void)Matrix3::ZERO.inversedCopy(); });
    Vorn::AllExceptions::setLogCallback(nullptr);
    EXPECT_NE(logged.find(": Vorn::Matrix3::inversedCopy: Exception: ::Vorn::E::INTERNAL:Invalid matrix. Unable to "
                          "build inverse."),
              std::string::npos)
        << logged;
}

TEST(Matrix3, DeterminantsBeyondTheThresholdInvert) {
    for (const float det : {1.2e-7f, -1.2e-7f, std::nextafter(std::ldexp(1.0f, -23), 1.0f)}) {
        const Matrix3 result = Matrix3(det, 0, 0, 0, 1, 0, 0, 0, 1).inversedCopy();
        EXPECT_FLOAT_EQ(result.m[0], 1.0f / det);
    }
}

TEST(Matrix3, NaNInvertsToNaN) {
    const Nine result = floatsOf(Matrix3(NOT_A_NUMBER).inversedCopy());
    EXPECT_TRUE(std::all_of(result.begin(), result.end(), [](float value) { return std::isnan(value); }));
}

} // namespace
