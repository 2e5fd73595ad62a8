#include "Vorn/GeometryStreams.h"

#include "Support/Floats.h"
#include "Vorn/ComplexAngle.h"

#include <gtest/gtest.h>

#include <charconv>
#include <iomanip>
#include <locale>
#include <sstream>

namespace {

using Vorn::ComplexAngle;
using Vorn::FloatRect;
using Vorn::Matrix3;
using Vorn::Vector2;

template <class Value>
std::string textOf(const Value& value) {
    std::ostringstream stream;
    stream << value;
    return stream.str();
}

TEST(GeometryStreams, WritesEachType) {
    EXPECT_EQ(textOf(Vector2(1.0f, 2.5f)), "(1, 2.5)");
    EXPECT_EQ(textOf(ComplexAngle(0.0f, -1.0f)), "(0, -1)");
    EXPECT_EQ(textOf(FloatRect(0.1f, -0.0f, 1e20f, 16777216.0f)), "(0.1, -0, 1e+20, 16777216)");
    EXPECT_EQ(textOf(Matrix3(1, 2, 3, 4, 5, 6, 7, 8, 9.5f)), "(1, 2, 3; 4, 5, 6; 7, 8, 9.5)");
    EXPECT_EQ(textOf(Vector2(INFINITE, NOT_A_NUMBER)), "(inf, nan)");
}

TEST(GeometryStreams, AppliesTheWidthToTheWholeText) {
    std::ostringstream stream;
    stream << std::setw(10) << Vector2(1, 2) << '|' << std::left << std::setfill('.') << std::setw(10)
           << ComplexAngle(1, 2) << '|' << std::right << std::setw(14) << FloatRect(1, 2, 3, 4) << '|' << std::setw(3)
           << Vector2(1, 2) << '|' << Vector2(3, 4) << std::setw(31) << Matrix3(1, 2, 3, 4, 5, 6, 7, 8, 9);
    EXPECT_EQ(stream.str(), "    (1, 2)|(1, 2)....|..(1, 2, 3, 4)|(1, 2)|(3, 4)....(1, 2, 3; 4, 5, 6; 7, 8, 9)");
}

TEST(GeometryStreams, IgnoresPrecisionAndLocale) {
    struct Comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        std::string do_grouping() const override { return "\3"; }
    };
    std::ostringstream stream;
    stream.imbue(std::locale(std::locale::classic(), new Comma));
    stream << std::fixed << std::setprecision(2) << std::showpos << Vector2(12345.678f, 0.5f);
    EXPECT_EQ(stream.str(), "(12345.678, 0.5)");
}

TEST(GeometryStreams, EachNumberIsReadBack) {
    RandomFloats random(21);
    for (int i = 0; i < repetitions(20000, 1000); ++i) {
        const Matrix3 matrix = random.record<Matrix3>();
        const std::string text = textOf(matrix);
        ASSERT_EQ(text.front(), '(');
        const char* at = text.data();
        for (int k = 0; k < 9; ++k) {
            at += k == 0 ? 1 : 2;
            float value = 0.0f;
            at = std::from_chars(at, text.data() + text.size(), value).ptr;
            ASSERT_TRUE(sameBits(value, matrix.m[k])) << text << " element " << k;
        }
        ASSERT_EQ(std::string(at), ")");
    }
}

} // namespace
