// Planar geometry over arrays of 4096 elements, compared with glm on the same values. glm computes in float. "glm in
// double" computes as this library is specified to: in double, with one rounding.
#include "Support/Measure.h"

#include <Vorn/FloatRect.h>
#include <benchmark/benchmark.h>
#include <glm/glm.hpp>

#include <cstring>
#include <random>
#include <vector>

namespace {

using Vorn::FloatRect;
using Vorn::Matrix3;
using Vorn::Vector2;

constexpr std::size_t COUNT = 4096;

/// A rectangle of glm vectors.
struct GlmRect {
    glm::vec2 low;
    glm::vec2 high;
};

/// The same values in the types of both libraries.
struct Inputs {
    Inputs() {
        std::mt19937 random(20);
        const auto next = [&random](float low, float high) {
            return low + (high - low) * static_cast<float>(random() >> 8) / static_cast<float>(1 << 24);
        };
        for (std::size_t i = 0; i < COUNT; ++i) {
            vectors.emplace_back(next(-100, 100), next(-100, 100));
            Matrix3 matrix;
            matrix.makeTransform(next(-3, 3), Vector2(next(0.5f, 2), next(0.5f, 2)), vectors.back());
            matrices.push_back(matrix);
            rects.emplace_back(next(-50, 0), next(-50, 0), next(0, 50), next(0, 50));
        }
        for (const Vector2& v : vectors) glmVectors.emplace_back(v.x, v.y);
        for (const Matrix3& matrix : matrices) {
            const float* const m = matrix.m;
            glmMatrices.emplace_back(m[0], m[3], m[6], m[1], m[4], m[7], m[2], m[5], m[8]); // column by column
        }
        for (const FloatRect& r : rects) glmRects.push_back({{r.left, r.top}, {r.right, r.bottom}});
    }

    std::vector<Vector2> vectors;
    std::vector<Matrix3> matrices;
    std::vector<FloatRect> rects;
    std::vector<glm::vec2> glmVectors;
    std::vector<glm::mat3> glmMatrices;
    std::vector<GlmRect> glmRects;
};

// The other operand of element i is element i of the array read from its end.
std::size_t other(std::size_t i) { return COUNT - 1 - i; }

std::vector<float> floatsOf(const std::vector<unsigned char>& results) { return {results.begin(), results.end()}; }
std::vector<float> floatsOf(const std::vector<glm::mat3>& results) {
    std::vector<float> floats;
    for (const glm::mat3& matrix : results) {
        for (int i = 0; i < 9; ++i) floats.push_back(matrix[i % 3][i / 3]);
    }
    return floats;
}
template <class Result>
std::vector<float> floatsOf(const std::vector<Result>& results) {
    std::vector<float> floats(results.size() * sizeof(Result) / sizeof(float));
    std::memcpy(floats.data(), static_cast<const void*>(results.data()), floats.size() * sizeof(float));
    return floats;
}

// Measures `operation` on every element, after comparing its results with those of `expected`.
template <class Operation, class Expected>
void measure(Run& run, Operation operation, Expected expected) {
    static const Inputs in;
    std::vector<decltype(operation(in, 0))> results(COUNT);
    std::vector<decltype(expected(in, 0))> expectedResults;
    for (std::size_t i = 0; i < COUNT; ++i) {
        results[i] = operation(in, i);
        expectedResults.push_back(expected(in, i));
    }
    const std::vector<float> floats = floatsOf(results), expectedFloats = floatsOf(expectedResults);
    run.expect(floats.size(), expectedFloats.size());
    for (std::size_t i = 0; i < floats.size(); ++i)
        run.expectClose(floats[i], expectedFloats[i], 0.003, 1.0); // normalise has an error of 0.2 %
    for (auto _ : run.loop()) {
        for (std::size_t i = 0; i < COUNT; ++i) results[i] = operation(in, i);
        benchmark::DoNotOptimize(results.data());
        benchmark::ClobberMemory();
    }
    run.countItems(COUNT);
}

// --- The operations ---

constexpr auto normaliseWithVorn = [](const Inputs& in, std::size_t i) { return in.vectors[i].normalisedCopy(); };
constexpr auto normaliseWithGlm = [](const Inputs& in, std::size_t i) { return glm::normalize(in.glmVectors[i]); };

constexpr auto transformWithVorn = [](const Inputs& in, std::size_t i) {
    return in.matrices[i] * in.vectors[other(i)];
};
constexpr auto transformWithGlm = [](const Inputs& in, std::size_t i) {
    return glm::vec2(in.glmMatrices[i] * glm::vec3(in.glmVectors[other(i)], 1.0f));
};
constexpr auto transformWithGlmInDouble = [](const Inputs& in, std::size_t i) {
    return glm::vec2(glm::dmat3(in.glmMatrices[i]) * glm::dvec3(in.glmVectors[other(i)], 1.0));
};

constexpr auto multiplyWithVorn = [](const Inputs& in, std::size_t i) {
    return in.matrices[i] * in.matrices[other(i)];
};
constexpr auto multiplyWithGlm = [](const Inputs& in, std::size_t i) {
    return in.glmMatrices[i] * in.glmMatrices[other(i)];
};
constexpr auto multiplyWithGlmInDouble = [](const Inputs& in, std::size_t i) {
    return glm::mat3(glm::dmat3(in.glmMatrices[i]) * glm::dmat3(in.glmMatrices[other(i)]));
};

constexpr auto invertWithVorn = [](const Inputs& in, std::size_t i) { return in.matrices[i].inversedCopy(); };
constexpr auto invertWithGlm = [](const Inputs& in, std::size_t i) { return glm::inverse(in.glmMatrices[i]); };
constexpr auto invertWithGlmInDouble = [](const Inputs& in, std::size_t i) {
    return glm::mat3(glm::inverse(glm::dmat3(in.glmMatrices[i])));
};

constexpr auto uniteWithVorn = [](const Inputs& in, std::size_t i) { return in.rects[i] | in.rects[other(i)]; };
constexpr auto uniteWithGlm = [](const Inputs& in, std::size_t i) {
    const GlmRect& a = in.glmRects[i];
    const GlmRect& b = in.glmRects[other(i)];
    return GlmRect{glm::min(a.low, b.low), glm::max(a.high, b.high)};
};

constexpr auto intersectWithVorn = [](const Inputs& in, std::size_t i) { return in.rects[i] & in.rects[other(i)]; };
constexpr auto intersectWithGlm = [](const Inputs& in, std::size_t i) {
    const GlmRect& a = in.glmRects[i];
    const GlmRect& b = in.glmRects[other(i)];
    return GlmRect{glm::max(a.low, b.low), glm::min(a.high, b.high)};
};

constexpr auto containWithVorn = [](const Inputs& in, std::size_t i) {
    return static_cast<unsigned char>(in.rects[i].isInside(in.vectors[other(i)]));
};
constexpr auto containWithGlm = [](const Inputs& in, std::size_t i) {
    const GlmRect& rect = in.glmRects[i];
    const glm::vec2& point = in.glmVectors[other(i)];
    return static_cast<unsigned char>(glm::all(glm::greaterThanEqual(point, rect.low)) &&
                                      glm::all(glm::lessThanEqual(point, rect.high)));
};

// --- Their names ---

template <class Operation, class Expected>
bool add(const char* name, Operation operation, Expected expected) {
    return addBenchmark(name, COUNT, [=](Run& run) { measure(run, operation, expected); });
}

[[maybe_unused]] const bool registered =
    add("Geometry/normalise/Vorn", normaliseWithVorn, normaliseWithGlm) &&
    add("Geometry/normalise/glm", normaliseWithGlm, normaliseWithGlm) &&
    add("Geometry/matrix times vector/Vorn", transformWithVorn, transformWithGlm) &&
    add("Geometry/matrix times vector/glm", transformWithGlm, transformWithGlm) &&
    add("Geometry/matrix times vector/glm in double", transformWithGlmInDouble, transformWithGlm) &&
    add("Geometry/matrix product/Vorn", multiplyWithVorn, multiplyWithGlm) &&
    add("Geometry/matrix product/glm", multiplyWithGlm, multiplyWithGlm) &&
    add("Geometry/matrix product/glm in double", multiplyWithGlmInDouble, multiplyWithGlm) &&
    add("Geometry/matrix inverse/Vorn", invertWithVorn, invertWithGlm) &&
    add("Geometry/matrix inverse/glm", invertWithGlm, invertWithGlm) &&
    add("Geometry/matrix inverse/glm in double", invertWithGlmInDouble, invertWithGlm) &&
    add("Geometry/rectangle union/Vorn", uniteWithVorn, uniteWithGlm) &&
    add("Geometry/rectangle union/glm", uniteWithGlm, uniteWithGlm) &&
    add("Geometry/rectangle intersection/Vorn", intersectWithVorn, intersectWithGlm) &&
    add("Geometry/rectangle intersection/glm", intersectWithGlm, intersectWithGlm) &&
    add("Geometry/point in rectangle/Vorn", containWithVorn, containWithGlm) &&
    add("Geometry/point in rectangle/glm", containWithGlm, containWithGlm);

} // namespace
