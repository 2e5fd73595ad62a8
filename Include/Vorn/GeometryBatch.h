/// @file
/// GeometryBatch: operations on many vectors, with the vector instructions of the processor.
///
///     Vorn::transform(matrix, points);                                        // in place
///     Vorn::transform(matrix, points, transformed);                           // into another array
///     Vorn::transform(matrix, Vorn::VectorSpan(vertices, &Vertex::position)); // inside larger elements
///     const Vorn::FloatRect bounds = Vorn::boundsOf(points);
///
/// Each result has the bits of the operation on one vector, on every processor; which NaN a result is, is open, as it
/// is for one vector. Choosing the instructions needs no preparation.
///
/// An operation with two spans reads `source` and writes `target`, which have the same count. They may be the same
/// vectors, or different members of the same elements. It throws `Exception<1>` before it writes anything:
/// "source.count() == target.count() : different counts!"; "areSeparate(source, target) : source overlaps target!" if
/// they share memory in any other way, or if spans of different strides reach into each other.
///
/// Cost: nothing is allocated. For fewer than about 16 vectors a loop over the operations on one is as fast or faster.
///
/// Threads: nothing is shared.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/FloatRect.h"
#include "Vorn/Matrix3.h"
#include "Vorn/Vector2.h"
#include "Vorn/VectorSpan.h"

namespace Vorn {

/// Transforms each point: writes `matrix * vector`. For directions pass a matrix without the translation, a copy after
/// `setTrans(0.0f, 0.0f)`.
/// @{
VORN_API void transform(const Matrix3& matrix, VectorSpan vectors) noexcept;
VORN_API void transform(const Matrix3& matrix, ConstVectorSpan source, VectorSpan target);
/// @}

/// Scales each vector to a length of 1 with an error of about 0.2 per cent, as `Vector2::normalise` does, within the
/// same limits. The zero vector stays zero. For exact lengths call `exactNormalised` for each vector.
/// @{
VORN_API void normaliseApproximately(VectorSpan vectors) noexcept;
VORN_API void normaliseApproximately(ConstVectorSpan source, VectorSpan target);
/// @}

/// Returns the smallest rectangle that contains the points. NaN coordinates are ignored; an axis on which all are NaN
/// is NaN. If a side is zero and points have zeros of both signs there, the side has the sign of the first one.
///
/// Throws `Exception<4>`: "no points!" for an empty span.
[[nodiscard]] VORN_API FloatRect boundsOf(ConstVectorSpan points);

} // namespace Vorn
