#include "Vorn/GeometryBatch.h"

#include "Kernels/GeometryKernels.h"

#include "Vorn/Assert.h"

#include <cstdint>

namespace Vorn {

namespace {

using VornPrivate::VectorSource;
using VornPrivate::VectorTarget;

VectorSource sourceOf(ConstVectorSpan vectors) noexcept {
    return {reinterpret_cast<const unsigned char*>(vectors.first()), vectors.stride()};
}
VectorTarget targetOf(VectorSpan vectors) noexcept {
    return {reinterpret_cast<unsigned char*>(vectors.first()), vectors.stride()};
}

/// Whether no vector of `target` shares memory with one of `source`, unless both are the same in all.
bool areSeparate(ConstVectorSpan source, VectorSpan target) noexcept {
    if (source.count() == 0) return true;
    const auto from = reinterpret_cast<std::uintptr_t>(source.first());
    const auto to = reinterpret_cast<std::uintptr_t>(target.first());
    const std::size_t last = source.count() - 1;
    const std::uintptr_t distance = from < to ? to - from : from - to;
    const std::size_t firstStride = from < to ? source.stride() : target.stride();
    if (distance >= last * firstStride + sizeof(Vector2)) return true;
    if (source.stride() != target.stride()) return last == 0 && distance == 0;
    if (distance == 0) return true;
    const std::uintptr_t offset = distance % firstStride;
    return offset >= sizeof(Vector2) && offset <= firstStride - sizeof(Vector2);
}

} // namespace

void transform(const Matrix3& matrix, VectorSpan vectors) noexcept {
    VornPrivate::geometryKernels().transform(matrix.m, sourceOf(vectors), targetOf(vectors), vectors.count());
}

void transform(const Matrix3& matrix, ConstVectorSpan source, VectorSpan target) {
    VORN_ASSERT(source.count() == target.count(), "different counts!");
    VORN_ASSERT(areSeparate(source, target), "source overlaps target!");
    VornPrivate::geometryKernels().transform(matrix.m, sourceOf(source), targetOf(target), source.count());
}

void normaliseApproximately(VectorSpan vectors) noexcept {
    VornPrivate::geometryKernels().normalise(sourceOf(vectors), targetOf(vectors), vectors.count());
}

void normaliseApproximately(ConstVectorSpan source, VectorSpan target) {
    VORN_ASSERT(source.count() == target.count(), "different counts!");
    VORN_ASSERT(areSeparate(source, target), "source overlaps target!");
    VornPrivate::geometryKernels().normalise(sourceOf(source), targetOf(target), source.count());
}

FloatRect boundsOf(ConstVectorSpan points) {
    if (points.count() == 0) VORN_THROW(E::PARAMETER, "no points!");
    return VornPrivate::geometryKernels().bound(sourceOf(points), points.count());
}

} // namespace Vorn
