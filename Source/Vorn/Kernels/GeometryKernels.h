/// @file
/// GeometryKernels: the inner loops of operations on arrays of vectors, for each instruction set. Private.
///
/// A vector is two floats, x and y, at any address. The source and the target of an operation are the same vectors, or
/// have none in common. Nothing here throws. Nothing outside the given vectors is read or written.
///
/// The portable kernels call the operations of one vector and are the meaning of all others, which give the same bits.
#pragma once

#include "Vorn/Rect.h"

#include <atomic>
#include <cstddef>

namespace VornPrivate {

/// Vectors in memory. `stride` is the number of bytes from each one to the next.
struct VectorSource {
    const unsigned char* start;
    std::size_t stride;
};
struct VectorTarget {
    unsigned char* start;
    std::size_t stride;
};

/// The kernels of one instruction set.
struct GeometryKernels {
    const char* name;
    bool (*isSupported)() noexcept;

    /// Writes the products of a matrix, given by the nine elements of a Matrix3, and each vector. The elements are read
    /// before anything is written.
    void (*transform)(const float* matrix, VectorSource source, VectorTarget target, std::size_t count) noexcept;
    /// Writes the result of `Vector2::normalisedCopy` for each vector.
    void (*normalise)(VectorSource source, VectorTarget target, std::size_t count) noexcept;
    /// Returns the least and the greatest number of each axis. NaN is ignored; an axis without a number is NaN. Of the
    /// two zeros, the first one counts.
    Vorn::RectBase<float> (*bound)(VectorSource points, std::size_t count) noexcept;
};

/// The kernels of all instruction sets that this build knows, the portable ones first and the fastest last, and a null
/// pointer behind them.
extern const GeometryKernels* const allGeometryKernels[];

/// The first use replaces the null pointer. Relaxed: all threads store the same address of constant data.
extern std::atomic<const GeometryKernels*> chosenGeometryKernels;
const GeometryKernels& chooseGeometryKernels() noexcept;

/// Returns the fastest kernels that this processor supports. Callable at any time, also before `main`.
inline const GeometryKernels& geometryKernels() noexcept {
    const GeometryKernels* const chosen = chosenGeometryKernels.load(std::memory_order_relaxed);
    return chosen ? *chosen : chooseGeometryKernels();
}

} // namespace VornPrivate
