// The portable kernels: the operations of one vector in a loop.
#include "GeometryKernelTables.h"

#include "Vorn/Matrix3.h"
#include "Vorn/Private/ExactVector.h" // Bounds
#include "Vorn/Vector2.h"

#include <cstring>

namespace VornPrivate {

namespace {

using Vorn::Matrix3;
using Vorn::Vector2;

bool isSupported() noexcept { return true; }

Vector2 read(const unsigned char* at) noexcept {
    Vector2 vector;
    std::memcpy(static_cast<void*>(&vector), at, sizeof vector);
    return vector;
}

template <class Operation>
void apply(VectorSource source, VectorTarget target, std::size_t count, Operation operation) noexcept {
    for (std::size_t i = 0; i < count; ++i) {
        const Vector2 result = operation(read(source.start + i * source.stride));
        std::memcpy(target.start + i * target.stride, &result, sizeof result);
    }
}

void transform(const float* matrix, VectorSource source, VectorTarget target, std::size_t count) noexcept {
    const Matrix3 copy(matrix[0], matrix[1], matrix[2], matrix[3], matrix[4], matrix[5], matrix[6], matrix[7],
                       matrix[8]);
    apply(source, target, count, [&copy](const Vector2& vector) { return copy * vector; });
}

void normalise(VectorSource source, VectorTarget target, std::size_t count) noexcept {
    apply(source, target, count, [](const Vector2& vector) { return vector.normalisedCopy(); });
}

Vorn::RectBase<float> bound(VectorSource points, std::size_t count) noexcept {
    Bounds x, y;
    for (std::size_t i = 0; i < count; ++i) {
        const Vector2 point = read(points.start + i * points.stride);
        x.add(point.x);
        y.add(point.y);
    }
    return {x.low(), y.low(), x.high(), y.high()};
}

} // namespace

constinit const GeometryKernels portableGeometryKernels = {"portable", isSupported, transform, normalise, bound};

} // namespace VornPrivate
