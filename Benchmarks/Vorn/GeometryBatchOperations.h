// GeometryBatchOperations: the library's part of the benchmarks of arrays of vectors. It is compiled twice: for the
// library, and for the copy of it whose kernels are chosen.
#pragma once

#include "Support/Measure.h"

#include <Vorn/GeometryBatch.h>
#include <benchmark/benchmark.h>

#include <cstddef>
#include <initializer_list>
#include <random>
#include <vector>

namespace {

using Vorn::FloatRect;
using Vorn::Matrix3;
using Vorn::Vector2;

/// The sizes of the arrays: a rectangle, a shape, a scene that fits into the first cache with its results, and one that
/// does not fit into the second.
inline constexpr std::initializer_list<std::size_t> BATCH_SIZES = {4, 64, 1024, 4096, 262144};

inline const Matrix3 BATCH_MATRIX(0.8f, -0.6f, 12.5f, 0.7f, 0.9f, -40.25f, 0.0f, 0.0f, 1.0f);

struct Vertex {
    Vector2 position;
    unsigned int colour;
    Vector2 texture;
};

inline std::vector<Vector2> batchVectors(std::size_t count) {
    std::mt19937 random(21);
    const auto next = [&random] { return static_cast<float>(static_cast<int>(random() >> 8) - (1 << 23)) / 83886.0f; };
    std::vector<Vector2> vectors;
    for (std::size_t i = 0; i < count; ++i) {
        const float x = next();
        vectors.emplace_back(x, next());
    }
    return vectors;
}

inline std::vector<Vertex> batchVertices(std::size_t count) {
    std::vector<Vertex> vertices;
    for (const Vector2& vector : batchVectors(count)) vertices.push_back({vector, 7, Vector2::UNIT_Y});
    return vertices;
}

/// Measures an operation from one array into another one. The results are those of `single` for each element.
template <class Element, class Operation, class Single>
void measureBatch(Run& run, const std::vector<Element>& source, Operation operation, Single single) {
    std::vector<Element> target = source;
    operation(source, target);
    for (std::size_t i = 0; i < source.size(); ++i) run.expect(single(source[i], target[i]), true);
    for (auto _ : run.loop()) {
        operation(source, target);
        benchmark::DoNotOptimize(target.data());
        benchmark::ClobberMemory();
    }
    run.countItems(source.size());
}

inline bool isTransformed(const Vector2& source, const Vector2& target) { return BATCH_MATRIX * source == target; }
inline bool isNormalised(const Vector2& source, const Vector2& target) { return source.normalisedCopy() == target; }

inline void transformVectors(Run& run) {
    measureBatch(
        run, batchVectors(run.size()),
        [](const auto& source, auto& target) { Vorn::transform(BATCH_MATRIX, source, target); }, isTransformed);
}

inline void transformVertices(Run& run) {
    measureBatch(
        run, batchVertices(run.size()),
        [](const auto& source, auto& target) {
            Vorn::transform(BATCH_MATRIX, Vorn::ConstVectorSpan(source, &Vertex::position),
                            Vorn::VectorSpan(target, &Vertex::position));
        },
        [](const Vertex& source, const Vertex& target) { return isTransformed(source.position, target.position); });
}

inline void normaliseVectors(Run& run) {
    measureBatch(
        run, batchVectors(run.size()),
        [](const auto& source, auto& target) { Vorn::normaliseApproximately(source, target); }, isNormalised);
}

inline void boundVectors(Run& run) {
    const std::vector<Vector2> points = batchVectors(run.size());
    FloatRect expected(points[0]);
    for (const Vector2& point : points) expected |= point;
    FloatRect bounds = Vorn::boundsOf(Vorn::ConstVectorSpan(points));
    run.expect(bounds, expected);
    for (auto _ : run.loop()) {
        bounds = Vorn::boundsOf(Vorn::ConstVectorSpan(points));
        benchmark::DoNotOptimize(bounds);
    }
    run.countItems(points.size());
}

} // namespace
