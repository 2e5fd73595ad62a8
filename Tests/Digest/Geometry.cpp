// The bits of geometry. A program that is compiled with its own flags inlines it; see CMakeLists.txt.
#include "Digest/Digest.h"
#include "Digest/Samples.h"

#include "Vorn/ComplexAngle.h"
#include "Vorn/FloatRect.h"
#include "Vorn/Geometry.h"
#include "Vorn/Matrix3.h"

using Vorn::ComplexAngle;
using Vorn::FloatRect;
using Vorn::Matrix3;
using Vorn::Vector2;
namespace Pin = Vorn::RectPoint;

namespace {

void addRect(Digest& digest, const FloatRect& rect) { digest.addAll(rect.left, rect.top, rect.right, rect.bottom); }

void addMatrix(Digest& digest, const Matrix3& matrix) {
    for (const float element : matrix.m) digest.add(element);
}

void addVectors(Digest& digest, const Vector2& a, const Vector2& b, float scale) {
    digest.addAll(a + b, a - b, a * b, a * scale, -a, a.midPoint(b), a.perpendicular(), a.reflect(b));
    digest.addAll(a.dot(b), a.cross(b), a.squaredLength(), a.length(), a.inverseLength(), a.normalisedCopy());
    digest.addAll(Vorn::exactLength(a), Vorn::exactNormalised(a), a.isZeroLength(), a < b, a == b);
    // A sum of products of two operations, which a fused multiply-add would round once.
    digest.addAll(a * scale + b, a * b - b * scale, a.normalisedCopy() * scale + b, a.length() * scale - b.x);
    digest.addOutcome([&] { digest.add(a / b); });

    ComplexAngle angle(a.x, a.y);
    digest.addAll(angle * ComplexAngle(b.x, b.y), angle * scale + b, angle.inverse(), angle * b);
    digest.add(angle.normalise());
    digest.addAll(angle, angle * scale - b);
}

void addRects(Digest& digest, const FloatRect& a, const FloatRect& b, const Vector2& v, const Matrix3& matrix) {
    const FloatRect results[] = {a + b,
                                 a - b,
                                 a * b,
                                 a * v,
                                 a | b,
                                 a & b,
                                 a | v,
                                 -a,
                                 a.normalisedCopy(),
                                 a.applyRatioCopy(b),
                                 a.createRatioCopy(b),
                                 a * matrix,
                                 Vorn::boundsOf(a, matrix),
                                 a * v.x + b,
                                 a * b - a * v.y};
    for (const FloatRect& result : results) addRect(digest, result);
    digest.addAll(a.getSize(), a.getCenter(), a.getHalfSize(), a.areaSize(), a.isInside(v), a.intersects(b),
                  Vorn::overlaps(a, b));
    digest.addOutcome([&] { addRect(digest, a / b); });
    digest.addOutcome([&] { addRect(digest, a % b); });
    for (const unsigned int pin : {Pin::CENTRE, Pin::LEFT, Pin::TOP_RIGHT, Pin::BOTTOM, Pin::BOTTOM_RIGHT}) {
        addRect(digest, a.inflatedCopy(v.x, v.y, pin, b.left, b.top));
        addRect(digest, a.resizedCopy(v.x, v.y, pin, b.left, b.top));
        addRect(digest, Vorn::anchored(a, v, pin, b.left));
    }
}

void addMatrices(Digest& digest, const Matrix3& a, const Matrix3& b, const Vector2& v) {
    for (const Matrix3& result : {a * b, a + b, a - b, a * v.x, a.transposedCopy(), a.scaledCopy(v),
                                  a.translatedCopy(v), a.scaledCopy(v).translatedCopy(v), a * v.x + b * v.y})
        addMatrix(digest, result);
    digest.addAll(a * v, v * a);
    digest.addOutcome([&] { addMatrix(digest, a.inversedCopy()); });
    if (const auto inverse = Vorn::inverseAtAnyScale(a)) addMatrix(digest, *inverse);
    Matrix3 made;
    made.makeTransform(ComplexAngle(b.m[0], b.m[1]), v, Vector2(a.m[0], a.m[1]));
    addMatrix(digest, made);
    addMatrix(digest, made.translatedCopy(v));
    made.makeInverseTransform(ComplexAngle(b.m[0], b.m[1]), v, Vector2(a.m[0], a.m[1]));
    addMatrix(digest, made);
}

} // namespace

void digestGeometry(Digest& digest) {
    const std::vector<float> floats = sampleFloats(1500);
    Random random(13);
    const auto ordinary = [&] { return static_cast<float>(random.below(200001)) / 1000.0f - 100.0f; };
    for (std::size_t i = 0; i + 20 <= 2 * floats.size(); i += 2) {
        float f[20];
        for (std::size_t j = 0; j < 20; ++j)
            f[j] = i < floats.size() && i + 20 <= floats.size() ? floats[i + j] : ordinary();
        const Vector2 a(f[0], f[1]), b(f[2], f[3]);
        const Matrix3 m(f[2], f[3], f[4], f[5], f[6], f[7], f[8], f[9], f[10]);
        const Matrix3 n(f[11], f[12], f[13], f[14], f[15], f[16], f[17], f[18], f[19]);
        addVectors(digest, a, b, f[4]);
        addRects(digest, FloatRect(f[0], f[1], f[2], f[3]), FloatRect(f[4], f[5], f[6], f[7]), Vector2(f[8], f[9]), m);
        addMatrices(digest, m, n, a);
    }
    // Lengths whose correct rounding is decided by a tie, or nearly so.
    for (unsigned int i = 0; i < 3000; ++i) {
        const Vector2 v(static_cast<float>(16777216 - i), static_cast<float>(random.below(1 << 13)));
        digest.addAll(Vorn::exactLength(v), Vorn::exactNormalised(v));
    }
    for (int i = -360; i <= 360; ++i) digest.add(ComplexAngle(static_cast<float>(i) * 0.0174532925f));
}
