// Operations on arrays of vectors, compared with loops over those on one vector and with glm, which computes in float.
#include "Vorn/GeometryBatchOperations.h"

#include <glm/glm.hpp>

#include <cmath>

namespace {

const float* const m = BATCH_MATRIX.m;
const glm::mat3 GLM_MATRIX(m[0], m[3], m[6], m[1], m[4], m[7], m[2], m[5], m[8]); // column by column

struct GlmVertex {
    glm::vec2 position;
    unsigned int colour;
    glm::vec2 texture;
};

std::vector<glm::vec2> glmVectors(std::size_t count) {
    std::vector<glm::vec2> vectors;
    for (const Vector2& vector : batchVectors(count)) vectors.emplace_back(vector.x, vector.y);
    return vectors;
}

std::vector<GlmVertex> glmVertices(std::size_t count) {
    std::vector<GlmVertex> vertices;
    for (const glm::vec2& vector : glmVectors(count)) vertices.push_back({vector, 7, glm::vec2(0.0f, 1.0f)});
    return vertices;
}

bool isClose(const glm::vec2& actual, const Vector2& expected, double tolerance) {
    return std::fabs(double(actual.x) - double(expected.x)) <= tolerance &&
           std::fabs(double(actual.y) - double(expected.y)) <= tolerance;
}
bool isTransformedVector(const glm::vec2& source, const glm::vec2& target) {
    return isClose(target, BATCH_MATRIX * Vector2(source.x, source.y), 1e-4);
}

void transformVectorsSingly(Run& run) {
    measureBatch(
        run, batchVectors(run.size()),
        [](const auto& source, auto& target) {
            for (std::size_t i = 0; i < source.size(); ++i) target[i] = BATCH_MATRIX * source[i];
        },
        isTransformed);
}
void transformVectorsWithGlm(Run& run) {
    measureBatch(
        run, glmVectors(run.size()),
        [](const auto& source, auto& target) {
            for (std::size_t i = 0; i < source.size(); ++i)
                target[i] = glm::vec2(GLM_MATRIX * glm::vec3(source[i], 1.0f));
        },
        isTransformedVector);
}

void transformVerticesSingly(Run& run) {
    measureBatch(
        run, batchVertices(run.size()),
        [](const auto& source, auto& target) {
            for (std::size_t i = 0; i < source.size(); ++i) target[i].position = BATCH_MATRIX * source[i].position;
        },
        [](const Vertex& source, const Vertex& target) { return isTransformed(source.position, target.position); });
}
void transformVerticesWithGlm(Run& run) {
    measureBatch(
        run, glmVertices(run.size()),
        [](const auto& source, auto& target) {
            for (std::size_t i = 0; i < source.size(); ++i)
                target[i].position = glm::vec2(GLM_MATRIX * glm::vec3(source[i].position, 1.0f));
        },
        [](const GlmVertex& source, const GlmVertex& target) {
            return isTransformedVector(source.position, target.position);
        });
}

void normaliseVectorsSingly(Run& run) {
    measureBatch(
        run, batchVectors(run.size()),
        [](const auto& source, auto& target) {
            for (std::size_t i = 0; i < source.size(); ++i) target[i] = source[i].normalisedCopy();
        },
        isNormalised);
}
void normaliseVectorsWithGlm(Run& run) {
    measureBatch(
        run, glmVectors(run.size()),
        [](const auto& source, auto& target) {
            for (std::size_t i = 0; i < source.size(); ++i) target[i] = glm::normalize(source[i]);
        },
        [](const glm::vec2& source, const glm::vec2& target) {
            return isClose(target, Vector2(source.x, source.y).normalisedCopy(), 0.003); // an error of 0.2 %
        });
}

void boundVectorsSingly(Run& run) {
    const std::vector<Vector2> points = batchVectors(run.size());
    const auto bound = [&points] {
        FloatRect bounds(points[0]);
        for (const Vector2& point : points) bounds |= point;
        return bounds;
    };
    run.expect(bound(), Vorn::boundsOf(Vorn::ConstVectorSpan(points)));
    for (auto _ : run.loop()) benchmark::DoNotOptimize(bound());
    run.countItems(points.size());
}
void boundVectorsWithGlm(Run& run) {
    const std::vector<glm::vec2> points = glmVectors(run.size());
    struct Box {
        glm::vec2 low, high;
    };
    const auto bound = [&points] {
        Box box{points[0], points[0]};
        for (const glm::vec2& point : points) box = {glm::min(box.low, point), glm::max(box.high, point)};
        return box;
    };
    const Box box = bound();
    const std::vector<Vector2> expected = batchVectors(run.size());
    run.expect(FloatRect(box.low.x, box.low.y, box.high.x, box.high.y),
               Vorn::boundsOf(Vorn::ConstVectorSpan(expected)));
    for (auto _ : run.loop()) benchmark::DoNotOptimize(bound());
    run.countItems(points.size());
}

[[maybe_unused]] const bool registered =
    addBenchmarks("Geometry/transform of an array/Vorn", BATCH_SIZES, transformVectors) &&
    addBenchmarks("Geometry/transform of an array/Vorn, one by one", BATCH_SIZES, transformVectorsSingly) &&
    addBenchmarks("Geometry/transform of an array/glm", BATCH_SIZES, transformVectorsWithGlm) &&
    addBenchmarks("Geometry/transform inside vertices/Vorn", BATCH_SIZES, transformVertices) &&
    addBenchmarks("Geometry/transform inside vertices/Vorn, one by one", BATCH_SIZES, transformVerticesSingly) &&
    addBenchmarks("Geometry/transform inside vertices/glm", BATCH_SIZES, transformVerticesWithGlm) &&
    addBenchmarks("Geometry/normalise an array/Vorn", BATCH_SIZES, normaliseVectors) &&
    addBenchmarks("Geometry/normalise an array/Vorn, one by one", BATCH_SIZES, normaliseVectorsSingly) &&
    addBenchmarks("Geometry/normalise an array/glm", BATCH_SIZES, normaliseVectorsWithGlm) &&
    addBenchmarks("Geometry/bounds of an array/Vorn", BATCH_SIZES, boundVectors) &&
    addBenchmarks("Geometry/bounds of an array/Vorn, one by one", BATCH_SIZES, boundVectorsSingly) &&
    addBenchmarks("Geometry/bounds of an array/glm", BATCH_SIZES, boundVectorsWithGlm);

} // namespace
