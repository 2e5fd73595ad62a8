// Geometry of whole arrays, of lengths around those of vectors.
#include "Digest/Digest.h"
#include "Digest/Samples.h"

#include "Vorn/GeometryBatch.h"

using Vorn::ConstVectorSpan;
using Vorn::Vector2;

void digestBatches(Digest& digest) {
    const std::vector<float> floats = sampleFloats(300);
    Random random(16);
    for (unsigned int length = 0; length < 70; ++length) {
        std::vector<Vector2> points, results(length, Vector2::ZERO);
        for (unsigned int i = 0; i < length; ++i) {
            const std::size_t at = random.below(static_cast<unsigned int>(floats.size() - 1));
            points.emplace_back(floats[at], floats[at + 1]);
        }
        const float* const m = floats.data() + 20 + length;
        const Vorn::Matrix3 matrix(m[0], m[1], m[2], m[3], m[4], m[5], m[6], m[7], m[8]);
        const auto addResults = [&] {
            for (const Vector2& result : results) digest.add(result);
        };
        Vorn::transform(matrix, ConstVectorSpan(points), results);
        addResults();
        Vorn::normaliseApproximately(ConstVectorSpan(points), results);
        addResults();
        digest.addOutcome([&] {
            const Vorn::FloatRect bounds = Vorn::boundsOf(ConstVectorSpan(points));
            digest.addAll(bounds.left, bounds.top, bounds.right, bounds.bottom);
        });
    }
}
