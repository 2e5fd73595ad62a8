// Every kernel of every instruction set that this machine supports, against the operations of one vector: all lengths
// and offsets at both edges of guarded pages, special floats at every position, and random vectors.
#include "Vorn/Kernels/GeometryKernels.h"

#include "Support/Effort.h"
#include "Support/Floats.h"
#include "Support/GuardedBuffer.h"
#include "Vorn/Matrix3.h"
#include "Vorn/Vector2.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using Vorn::Matrix3;
using Vorn::Vector2;
using VornPrivate::GeometryKernels;

using Vectors = std::vector<Vector2>;
using Sides = Vorn::RectBase<float>;

constexpr std::size_t WIDEST_VECTOR = 64;
constexpr std::size_t LARGEST_COUNT =
    4 * (4 * WIDEST_VECTOR / sizeof(Vector2)) + 3; // bounds are taken of four registers

const Matrix3 MATRIX(0.75f, -1.1f, 3.3f, 1e-3f, 2.5f, -1e6f, 9.0f, 9.0f, 9.0f);

class GeometryKernelsTest : public testing::TestWithParam<const GeometryKernels*> {
protected:
    void SetUp() override {
        if (!kernels().isSupported()) GTEST_SKIP() << "this processor does not support " << kernels().name;
    }
    static const GeometryKernels& kernels() { return *GetParam(); }
};

std::vector<const GeometryKernels*> kernelsOfThisBuild() {
    std::vector<const GeometryKernels*> all;
    for (const GeometryKernels* const* at = VornPrivate::allGeometryKernels; *at; ++at) all.push_back(*at);
    return all;
}

INSTANTIATE_TEST_SUITE_P(All, GeometryKernelsTest, testing::ValuesIn(kernelsOfThisBuild()), [](const auto& parameter) {
    std::string name;
    for (const char c : std::string(parameter.param->name))
        if (std::isalnum(static_cast<unsigned char>(c))) name += c;
    return name;
});

// --- The meaning, one vector after the other ---

Vectors transformed(const Matrix3& matrix, const Vectors& vectors) {
    Vectors results;
    for (const Vector2& vector : vectors) results.push_back(matrix * vector);
    return results;
}

Vectors normalised(Vectors vectors) {
    for (Vector2& vector : vectors) vector.normalise();
    return vectors;
}

void extend(float value, float& low, float& high) {
    if (std::isnan(value)) return;
    if (std::isnan(low) || value < low) low = value;
    if (std::isnan(high) || value > high) high = value;
}

Sides bounded(const Vectors& vectors) {
    Sides sides{NOT_A_NUMBER, NOT_A_NUMBER, NOT_A_NUMBER, NOT_A_NUMBER};
    for (const Vector2& vector : vectors) {
        extend(vector.x, sides.left, sides.right);
        extend(vector.y, sides.top, sides.bottom);
    }
    return sides;
}

// --- Vectors in memory ---

struct Layout {
    std::size_t stride = sizeof(Vector2);
    std::size_t offset = 0; // from the guarded edge
    GuardedEdge edge = GuardedEdge::END;
};

// Copies of vectors, with bytes of one value around them, between guarded pages.
class Placed {
public:
    Placed(const Vectors& vectors, const Layout& layout)
        : m_layout(layout), m_count(vectors.size()),
          m_memory(m_count == 0 ? 0 : layout.offset + (m_count - 1) * layout.stride + sizeof(Vector2), layout.edge) {
        if (m_count == 0) return;
        std::memset(m_memory.data(), FILLING, m_memory.units().size());
        for (std::size_t i = 0; i < m_count; ++i) std::memcpy(at(i), &vectors[i], sizeof(Vector2));
    }

    VornPrivate::VectorSource source() const { return {at(0), m_layout.stride}; }
    VornPrivate::VectorTarget target() const { return {at(0), m_layout.stride}; }

    Vectors vectors() const {
        Vectors all(m_count);
        for (std::size_t i = 0; i < m_count; ++i) std::memcpy(static_cast<void*>(&all[i]), at(i), sizeof(Vector2));
        return all;
    }

    // Whether a byte around the vectors has changed.
    bool isDamaged() {
        for (std::size_t i = 0; i < m_count; ++i) std::memset(at(i), FILLING, sizeof(Vector2));
        const auto units = m_memory.units();
        return std::any_of(units.begin(), units.end(), [](unsigned char unit) { return unit != FILLING; });
    }

private:
    static constexpr unsigned char FILLING = 0xA5;

    unsigned char* at(std::size_t i) const {
        return m_memory.data() + (m_layout.edge == GuardedEdge::START ? m_layout.offset : 0) + i * m_layout.stride;
    }

    Layout m_layout;
    std::size_t m_count;
    GuardedBuffer<unsigned char> m_memory;
};

testing::AssertionResult sameVectors(const Vectors& actual, const Vectors& expected, const Vectors& input) {
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const testing::AssertionResult result = same(actual[i], expected[i]);
        if (!result) {
            return testing::AssertionFailure() << "vector " << i << " of " << expected.size() << ", "
                                               << describe(input[i]) << ": " << result.message();
        }
    }
    return testing::AssertionSuccess();
}

// Calls `run(source, target, count)` out of place and in place.
template <class Run>
void expectVectors(Run run, const Vectors& input, const Vectors& expected, const Layout& from, const Layout& to) {
    Placed source(input, from), target(Vectors(input.size(), Vector2(77.0f)), to);
    run(source.source(), target.target(), input.size());
    EXPECT_TRUE(sameVectors(target.vectors(), expected, input));
    EXPECT_TRUE(sameVectors(source.vectors(), input, input)) << "the source has changed";
    run(source.source(), source.target(), input.size());
    EXPECT_TRUE(sameVectors(source.vectors(), expected, input)) << "in place";
    EXPECT_FALSE(source.isDamaged() || target.isDamaged()) << "bytes around the vectors have changed";
}

void expectAll(const GeometryKernels& kernels, const Vectors& input, const Matrix3& matrix, const Layout& from,
               const Layout& to) {
    SCOPED_TRACE(std::string(kernels.name) + ", " + std::to_string(input.size()) + " vectors, strides " +
                 std::to_string(from.stride) + " and " + std::to_string(to.stride) + ", offset " +
                 std::to_string(from.offset));
    using Source = VornPrivate::VectorSource;
    using Target = VornPrivate::VectorTarget;
    expectVectors(
        [&](Source source, Target target, std::size_t count) { kernels.transform(matrix.m, source, target, count); },
        input, transformed(matrix, input), from, to);
    expectVectors([&](Source source, Target target, std::size_t count) { kernels.normalise(source, target, count); },
                  input, normalised(input), from, to);
    if (input.empty()) return;
    const Placed points(input, from);
    EXPECT_TRUE(same(kernels.bound(points.source(), input.size()), bounded(input)));
}

Vectors randomVectors(RandomFloats& random, std::size_t count) {
    Vectors vectors;
    for (std::size_t i = 0; i < count; ++i) vectors.push_back(random.record<Vector2>());
    return vectors;
}

// --- Tests ---

TEST_P(GeometryKernelsTest, AllCountsAndStridesAtBothEdges) {
    RandomFloats random(51);
    for (std::size_t count = 0; count <= LARGEST_COUNT && !HasFailure(); ++count) {
        const Vectors vectors = randomVectors(random, count);
        for (const std::size_t stride : {8u, 12u, 16u, 20u, 36u, 68u}) {
            for (const GuardedEdge edge : {GuardedEdge::END, GuardedEdge::START}) {
                expectAll(kernels(), vectors, MATRIX, {stride, 0, edge}, {stride, 0, edge});
                expectAll(kernels(), vectors, MATRIX, {stride, 0, edge}, {28 - stride % 28 + 8, 0, edge});
            }
        }
    }
}

TEST_P(GeometryKernelsTest, AllOffsets) {
    RandomFloats random(52);
    for (std::size_t offset = 0; offset < WIDEST_VECTOR && !HasFailure(); ++offset) {
        for (std::size_t count = 0; count <= 4 * WIDEST_VECTOR / sizeof(Vector2); ++count) {
            const Vectors vectors = randomVectors(random, count);
            for (const GuardedEdge edge : {GuardedEdge::END, GuardedEdge::START})
                expectAll(kernels(), vectors, MATRIX, {8, offset, edge}, {8, 63 - offset, edge});
        }
    }
}

TEST_P(GeometryKernelsTest, SpecialFloatsAtEveryPosition) {
    static constexpr float SPECIAL[] = {0.0f,      -0.0f,    INFINITE, -INFINITE, NOT_A_NUMBER,    DENORMAL,
                                        -DENORMAL, LARGEST,  -LARGEST, 1e-30f,    1.17549435e-38f, 1.3e19f,
                                        -2e19f,    1.08e-19f};
    RandomFloats random(53);
    for (const std::size_t count : {1u, 7u, 33u, 71u}) {
        Vectors vectors;
        for (std::size_t i = 0; i < count; ++i) {
            const float value = static_cast<float>(random.below(1000)) - 500.0f;
            vectors.emplace_back(value, value / 3.0f);
        }
        for (std::size_t i = 0; i < count && !HasFailure(); ++i) {
            for (const float special : SPECIAL) {
                Vectors changed = vectors;
                changed[i].x = special;
                expectAll(kernels(), changed, MATRIX, {}, {});
                changed[i] = Vector2(1.0f, special);
                expectAll(kernels(), changed, MATRIX, {16}, {12});
                changed[i] = Vector2(special, special);
                expectAll(kernels(), changed, MATRIX, {}, {});
                if (special == 0.0f) continue;
                Vectors others(count, Vector2(special, 1.0f));
                others[i] = Vector2(-1.0f, special);
                expectAll(kernels(), others, Matrix3(special, 0, -0.0f, -0.0f, special, 1, 0, 0, 0), {}, {});
            }
        }
    }
}

// The first zero counts, wherever the zeros of both signs stand.
TEST_P(GeometryKernelsTest, BoundsHaveTheSignOfTheFirstZero) {
    static constexpr float VALUES[] = {0.0f, -0.0f, 0.0f, -0.0f, NOT_A_NUMBER, 1.0f, -1.0f};
    RandomFloats random(54);
    for (int i = 0; i < repetitions(100000, 4000) && !HasFailure(); ++i) {
        const unsigned int end = 4 + random.below(4);
        Vectors vectors(1 + random.below(150));
        for (Vector2& vector : vectors) vector = Vector2(VALUES[random.below(end)], VALUES[random.below(end)]);
        const Placed points(vectors, {8 + 4 * std::size_t(random.below(3))});
        EXPECT_TRUE(same(kernels().bound(points.source(), vectors.size()), bounded(vectors)));
    }
}

TEST_P(GeometryKernelsTest, RandomVectors) {
    constexpr std::size_t COUNT = 1000;
    RandomFloats random(55);
    std::vector<unsigned char> memory(COUNT * 24 + 64);
    for (int round = 0; round < repetitions(10000, 20) && !HasFailure(); ++round) {
        const Vectors vectors = randomVectors(random, COUNT);
        const Matrix3 matrix = random.record<Matrix3>();
        const std::size_t stride = round % 4 == 0 ? 8 + 4 * std::size_t(random.below(5)) : 8;
        unsigned char* const start = memory.data() + random.below(64);
        const auto place = [&] {
            for (std::size_t i = 0; i < COUNT; ++i) std::memcpy(start + i * stride, &vectors[i], sizeof(Vector2));
        };
        const auto results = [&] {
            Vectors all(COUNT);
            for (std::size_t i = 0; i < COUNT; ++i)
                std::memcpy(static_cast<void*>(&all[i]), start + i * stride, sizeof(Vector2));
            return all;
        };
        place();
        EXPECT_TRUE(same(kernels().bound({start, stride}, COUNT), bounded(vectors)));
        kernels().transform(matrix.m, {start, stride}, {start, stride}, COUNT);
        EXPECT_TRUE(sameVectors(results(), transformed(matrix, vectors), vectors)) << describe(matrix);
        place();
        kernels().normalise({start, stride}, {start, stride}, COUNT);
        EXPECT_TRUE(sameVectors(results(), normalised(vectors), vectors));
    }
}

TEST(GeometryKernels, TheFastestSupportedOnesAreChosen) {
    const GeometryKernels* expected = nullptr;
    for (const GeometryKernels* const kernels : kernelsOfThisBuild())
        if (kernels->isSupported()) expected = kernels;
    EXPECT_EQ(&VornPrivate::geometryKernels(), expected);
    EXPECT_STREQ(kernelsOfThisBuild().front()->name, "portable");
}

} // namespace
