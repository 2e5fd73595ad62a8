// Operations on many vectors, against loops over the operations on one.
#include "Vorn/GeometryBatch.h"

#include "Support/Floats.h"
#include "Support/Report.h"
#include "Vorn/Geometry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <deque>
#include <string>
#include <vector>

namespace {

using Vorn::ConstVectorSpan;
using Vorn::FloatRect;
using Vorn::Matrix3;
using Vorn::Vector2;
using Vorn::VectorSpan;

struct Vertex {
    Vector2 position;
    unsigned int colour;
    Vector2 moved;
};

// An operation in both forms, and on one vector.
struct Operation {
    const char* name;
    void (*inPlace)(VectorSpan vectors);
    void (*copying)(ConstVectorSpan source, VectorSpan target);
    Vector2 (*single)(const Vector2& vector);
};

const Matrix3 MATRIX(0.5f, -3.0f, 100.0f, 1.0f / 3.0f, 7.0f, -0.1f, 5.0f, 5.0f, 5.0f);

const Operation OPERATIONS[] = {
    {"transform", [](VectorSpan vectors) { Vorn::transform(MATRIX, vectors); },
     [](ConstVectorSpan source, VectorSpan target) { Vorn::transform(MATRIX, source, target); },
     [](const Vector2& vector) { return MATRIX * vector; }},
    {"normaliseApproximately", [](VectorSpan vectors) { Vorn::normaliseApproximately(vectors); },
     [](ConstVectorSpan source, VectorSpan target) { Vorn::normaliseApproximately(source, target); },
     [](const Vector2& vector) { return vector.normalisedCopy(); }},
};

class GeometryBatch : public testing::TestWithParam<Operation> {
protected:
    static std::vector<Vector2> singly(const std::vector<Vector2>& vectors) {
        std::vector<Vector2> results;
        for (const Vector2& vector : vectors) results.push_back(GetParam().single(vector));
        return results;
    }
};

INSTANTIATE_TEST_SUITE_P(All, GeometryBatch, testing::ValuesIn(OPERATIONS),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

void expectSame(const std::vector<Vector2>& actual, const std::vector<Vector2>& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i) ASSERT_TRUE(same(actual[i], expected[i])) << "vector " << i;
}

std::vector<Vector2> someVectors(std::size_t count) {
    RandomFloats random(61);
    std::vector<Vector2> vectors;
    for (std::size_t i = 0; i < count; ++i) vectors.push_back(random.record<Vector2>());
    return vectors;
}

TEST_P(GeometryBatch, AllFormsGiveTheResultsOfOneVector) {
    for (const std::size_t count : {0u, 1u, 2u, 3u, 5u, 16u, 100u, 1001u}) {
        SCOPED_TRACE(count);
        const std::vector<Vector2> vectors = someVectors(count);
        const std::vector<Vector2> expected = singly(vectors);

        std::vector<Vector2> changed = vectors;
        GetParam().inPlace(changed);
        expectSame(changed, expected);

        changed.assign(count, Vector2::ZERO);
        GetParam().copying(vectors, changed);
        expectSame(changed, expected);

        std::vector<Vertex> vertices(count);
        for (std::size_t i = 0; i < count; ++i) vertices[i] = {vectors[i], 0xC0FFEE, Vector2::UNIT_X};
        GetParam().copying(VectorSpan(vertices, &Vertex::position), VectorSpan(vertices, &Vertex::moved));
        for (std::size_t i = 0; i < count; ++i) {
            ASSERT_TRUE(same(vertices[i].moved, expected[i])) << i;
            ASSERT_TRUE(same(vertices[i].position, vectors[i])) << i;
        }
        GetParam().inPlace(VectorSpan(vertices, &Vertex::position));
        for (std::size_t i = 0; i < count; ++i) {
            ASSERT_TRUE(same(vertices[i].position, expected[i])) << i;
            ASSERT_EQ(vertices[i].colour, 0xC0FFEEu) << i;
        }
    }
}

// Source and target in one array of floats. Positions and strides are in floats.
struct Overlap {
    const char* name;
    std::size_t count, source, sourceStride, target, targetStride;
    bool isAccepted;
};

constexpr Overlap OVERLAPS[] = {
    {"one behind the other", 4, 0, 2, 8, 2, true},
    {"one before the other", 4, 8, 2, 0, 2, true},
    {"the same", 4, 4, 2, 4, 2, true},
    {"the same in larger elements", 4, 4, 5, 4, 5, true},
    {"shifted by one vector", 4, 0, 2, 2, 2, false},
    {"shifted back by one vector", 4, 2, 2, 0, 2, false},
    {"shifted by one float", 4, 0, 2, 1, 2, false},
    {"the last on the first", 4, 0, 2, 6, 2, false},
    {"the first on the last", 4, 6, 2, 0, 2, false},
    {"half of the last on half of the first", 4, 0, 2, 7, 2, false},
    {"another member of the same elements", 4, 0, 5, 2, 5, true},
    {"a member before it", 4, 3, 5, 0, 5, true},
    {"another member of the next elements", 4, 0, 5, 8, 5, true},
    {"members that overlap", 4, 0, 5, 1, 5, false},
    {"members that overlap across elements", 4, 0, 5, 4, 5, false},
    {"members that overlap across elements, back", 4, 4, 5, 0, 5, false},
    {"the same member of the next elements", 4, 0, 4, 4, 4, false},
    {"exactly beside each other", 4, 0, 4, 2, 4, true},
    {"other strides from the same start", 4, 0, 2, 0, 4, false},
    {"other strides with no vector in common", 2, 0, 8, 2, 2, false},
    {"other strides, apart", 4, 0, 2, 8, 4, true},
    {"other strides, back and apart", 4, 14, 2, 0, 4, true},
    {"other strides, back and not apart", 4, 13, 2, 0, 4, false},
    {"one vector in place, other strides", 1, 0, 2, 0, 4, true},
    {"one vector on itself, shifted", 1, 0, 2, 1, 2, false},
    {"one vector beside another", 1, 0, 2, 2, 2, true},
    {"no vector", 0, 0, 2, 1, 2, true},
};

TEST_P(GeometryBatch, RefusesTargetsThatOverlap) {
    for (const Overlap& row : OVERLAPS) {
        SCOPED_TRACE(row.name);
        std::vector<float> floats(40);
        RandomFloats random(62);
        std::generate(floats.begin(), floats.end(), [&] { return random.next(); });
        std::vector<float> expected = floats;
        const auto at = [](std::vector<float>& all, std::size_t index) {
            return reinterpret_cast<Vector2*>(all.data() + index);
        };
        const auto run = [&] {
            GetParam().copying({at(floats, row.source), row.count, row.sourceStride * sizeof(float)},
                               {at(floats, row.target), row.count, row.targetStride * sizeof(float)});
        };
        if (!row.isAccepted) {
            std::string function = "Vorn::";
            function += GetParam().name;
            expectRaises<1>(run, "areSeparate(source, target) : source overlaps target!", function,
                            "Source/Vorn/GeometryBatch");
        } else {
            run();
            const std::vector<float> before = expected;
            for (std::size_t i = 0; i < row.count; ++i) {
                const std::size_t from = row.source + i * row.sourceStride, to = row.target + i * row.targetStride;
                const Vector2 result = GetParam().single(Vector2(before[from], before[from + 1]));
                expected[to] = result.x;
                expected[to + 1] = result.y;
            }
        }
        for (std::size_t i = 0; i < floats.size(); ++i) EXPECT_TRUE(sameBits(floats[i], expected[i])) << "float " << i;
    }
}

TEST_P(GeometryBatch, RefusesDifferentCounts) {
    std::vector<Vector2> source(3, Vector2::UNIT_X), target(2, Vector2::ZERO);
    const auto run = [&] { GetParam().copying(source, target); };
    std::string function = "Vorn::";
    function += GetParam().name;
    expectRaises<1>(run, "source.count() == target.count() : different counts!", function, "Source/Vorn/GeometryBatch");
    EXPECT_EQ(target[0], Vector2::ZERO);
}

TEST(GeometryBatches, TheMatrixCanBeAmongTheVectors) {
    Matrix3 matrices[2] = {MATRIX, MATRIX};
    Vorn::transform(matrices[0], VectorSpan(reinterpret_cast<Vector2*>(matrices), 9));
    const float* const m = MATRIX.m;
    EXPECT_TRUE(same(Vector2(matrices[0].m), MATRIX * Vector2(m[0], m[1])));
    EXPECT_TRUE(same(Vector2(matrices[1].m + 1), MATRIX * Vector2(m[1], m[2])));
    EXPECT_TRUE(same(Vector2(matrices[1].m + 7), MATRIX * Vector2(m[7], m[8])));
}

TEST(GeometryBatches, ZeroVectorsStayZero) {
    std::vector<Vector2> vectors(9, Vector2(-0.0f, 0.0f));
    Vorn::normaliseApproximately(vectors);
    for (const Vector2& vector : vectors) EXPECT_TRUE(same(vector, Vector2(-0.0f, 0.0f)));
}

TEST(GeometryBatches, BoundsContainAllPoints) {
    RandomFloats random(63);
    for (std::size_t count = 1; count < 70; ++count) {
        std::vector<Vertex> vertices(count);
        for (Vertex& vertex : vertices) vertex.moved = random.record<Vector2>();
        std::vector<Vector2> points;
        for (const Vertex& vertex : vertices) points.push_back(vertex.moved);
        const std::deque<Vector2> others(points.begin(), points.end()); // not contiguous
        const FloatRect expected = Vorn::boundsOf(others);
        EXPECT_TRUE(same(Vorn::boundsOf(points), expected)) << count;
        EXPECT_TRUE(same(Vorn::boundsOf(ConstVectorSpan(points)), expected)) << count;
        EXPECT_TRUE(same(Vorn::boundsOf(VectorSpan(vertices, &Vertex::moved)), expected)) << count;
    }
    const std::vector<Vector2> nothing(100, Vector2(NOT_A_NUMBER, -0.0f));
    EXPECT_TRUE(same(Vorn::boundsOf(nothing), FloatRect(NOT_A_NUMBER, -0.0f, NOT_A_NUMBER, -0.0f)));
    expectRaises<4>([] { Vorn::boundsOf(ConstVectorSpan()); }, "no points!", "Vorn::boundsOf",
                    "Source/Vorn/GeometryBatch");
}

// For points that are numbers, the bounds are those that a rectangle grows to.
TEST(GeometryBatches, BoundsAreTheUnionOfThePoints) {
    RandomFloats random(64);
    for (int round = 0; round < repetitions(2000, 100); ++round) {
        std::vector<Vector2> points(1 + random.below(60));
        for (Vector2& point : points) {
            do point = random.record<Vector2>();
            while (std::isnan(point.x) || std::isnan(point.y));
        }
        FloatRect expected(points[0]);
        for (const Vector2& point : points) expected |= point;
        EXPECT_EQ(Vorn::boundsOf(ConstVectorSpan(points)), expected);
    }
}

} // namespace
