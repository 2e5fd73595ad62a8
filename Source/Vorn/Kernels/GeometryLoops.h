/// @file
/// GeometryLoops: the kernels of geometry over the vectors of an instruction set. Private.
///
/// `V::Doubles` holds V::COUNT vectors, `V::Half` the same vectors as floats, and `V::Floats` twice as many. All is in
/// an unnamed namespace, so that each file keeps its own copies.
#pragma once

#include "GeometryKernels.h"

namespace VornPrivate {
namespace {

constexpr std::size_t VECTOR_BYTES = 2 * sizeof(float);

/// Calls `run.block<IsPacked>(source, target)` for blocks of N vectors, four of them in each round of the loop. The
/// last, incomplete block is padded with zeros in memory of its own.
template <std::size_t N, bool IsPacked, class Run>
void runBlocks(VectorSource source, VectorTarget target, std::size_t count, Run run) noexcept {
    if constexpr (IsPacked) source.stride = target.stride = VECTOR_BYTES;
    const auto runBlock = [&] {
        run.template block<IsPacked>(source, target);
        source.start += N * source.stride;
        target.start += N * target.stride;
    };
    for (; count >= 4 * N; count -= 4 * N)
        for (int k = 0; k < 4; ++k) runBlock();
    for (; count >= N; count -= N) runBlock();
    if (count == 0) return;
    float block[2 * N] = {};
    unsigned char* const start = reinterpret_cast<unsigned char*>(block);
    for (std::size_t i = 0; i < count; ++i)
        __builtin_memcpy(start + i * VECTOR_BYTES, source.start + i * source.stride, VECTOR_BYTES);
    run.template block<true>({start, VECTOR_BYTES}, {start, VECTOR_BYTES});
    for (std::size_t i = 0; i < count; ++i)
        __builtin_memcpy(target.start + i * target.stride, start + i * VECTOR_BYTES, VECTOR_BYTES);
}

template <std::size_t N, class Run>
void runBlocks(VectorSource source, VectorTarget target, std::size_t count, Run run) noexcept {
    if (source.stride == VECTOR_BYTES && target.stride == VECTOR_BYTES) {
        runBlocks<N, true>(source, target, count, run);
    } else {
        runBlocks<N, false>(source, target, count, run);
    }
}

/// Products of floats are exact in double, so their sum is the same in either order.
template <class V>
struct Transformation {
    explicit Transformation(const float* m) noexcept
        : own(V::pairs(m[0], m[4])), other(V::pairs(m[1], m[3])), translation(V::pairs(m[2], m[5])) {}

    template <bool IsPacked>
    void block(VectorSource source, VectorTarget target) const noexcept {
        const auto vectors = V::widen(V::template loadHalf<IsPacked>(source.start, source.stride));
        const auto linear = V::sumOfProducts(vectors, own, V::exchanged(vectors), other);
        V::template storeHalf<IsPacked>(target.start, target.stride, V::narrow(V::add(linear, translation)));
    }

    typename V::Doubles own;   // the factors of a component for itself
    typename V::Doubles other; // and for the other component
    typename V::Doubles translation;
};

template <class V>
void transform(const float* matrix, VectorSource source, VectorTarget target, std::size_t count) noexcept {
    runBlocks<V::COUNT>(source, target, count, Transformation<V>(matrix));
}

/// The steps of `Vector2::inverseLength`, which round where it does.
template <class V>
struct Normalisation {
    template <bool IsPacked>
    void block(VectorSource source, VectorTarget target) const noexcept {
        const auto vectors = V::template loadFloats<IsPacked>(source.start, source.stride);
        const auto low = V::widen(V::lowHalf(vectors)), high = V::widen(V::highHalf(vectors));
        const auto squares = V::narrow(V::sumsOfPairs(V::multiply(low, low), V::multiply(high, high)));
        const auto guess = V::widen(V::shiftedDifference(0xBE6EB50Cu, squares));
        const auto product = V::multiply(V::multiply(V::widen(squares), guess), guess);
        const auto inverse =
            V::multiply(V::multiply(guess, V::pairs(0.5, 0.5)), V::subtract(V::pairs(3.0, 3.0), product));
        V::template storeFloats<IsPacked>(target.start, target.stride,
                                          V::multiply(vectors, V::doubled(V::narrow(inverse))));
    }
};

template <class V>
void normalise(VectorSource source, VectorTarget target, std::size_t count) noexcept {
    runBlocks<2 * V::COUNT>(source, target, count, Normalisation<V>());
}

/// The bounds of the vectors that one lane has met: of equal numbers the first one.
template <class V>
struct BoundsInLanes {
    void add(typename V::Floats values) noexcept {
        // These are the second operand if the first is NaN, and if both are zero.
        low = V::min(values, low);
        high = V::max(values, high);
    }

    typename V::Floats low = V::all(__builtin_inff());
    typename V::Floats high = V::all(-__builtin_inff());
};

/// Returns the first zero of an axis. `rows` have it in one of their lanes.
template <class V, std::size_t ROWS>
float firstZero(const typename V::Floats (&rows)[ROWS], std::size_t firstLane, VectorSource axis) noexcept {
    constexpr std::size_t LANES = 4 * V::COUNT;
    bool isFound = false, isUnique = true;
    float result = 0.0f;
    for (const auto& row : rows) {
        float lanes[LANES];
        V::template storeFloats<true>(reinterpret_cast<unsigned char*>(lanes), VECTOR_BYTES, row);
        for (std::size_t i = firstLane; i < LANES; i += 2) {
            if (lanes[i] != 0.0f) continue;
            if (isFound && __builtin_signbit(lanes[i]) != __builtin_signbit(result)) isUnique = false;
            isFound = true;
            result = lanes[i];
        }
    }
    if (isUnique) return result;
    do {
        __builtin_memcpy(&result, axis.start, sizeof result);
        axis.start += axis.stride;
    } while (result != 0.0f);
    return result;
}

/// Returns the number that no other one in the lanes of one axis is further than.
template <class V, class IsFurther>
float furthest(typename V::Floats row, std::size_t firstLane, IsFurther isFurther) noexcept {
    constexpr std::size_t LANES = 4 * V::COUNT;
    float lanes[LANES];
    V::template storeFloats<true>(reinterpret_cast<unsigned char*>(lanes), VECTOR_BYTES, row);
    float result = lanes[firstLane];
    for (std::size_t i = firstLane + 2; i < LANES; i += 2)
        if (isFurther(lanes[i], result)) result = lanes[i];
    return result;
}

template <class V, bool IsPacked>
Vorn::RectBase<float> boundAll(VectorSource points, std::size_t count) noexcept {
    constexpr std::size_t N = 2 * V::COUNT;
    const std::size_t stride = IsPacked ? VECTOR_BYTES : points.stride;
    const VectorSource axes[2] = {{points.start, stride}, {points.start + sizeof(float), stride}};

    BoundsInLanes<V> bounds[4]; // of every fourth vector register: a comparison waits for the one before
    for (; count >= 4 * N; count -= 4 * N) {
        for (BoundsInLanes<V>& row : bounds) {
            row.add(V::template loadFloats<IsPacked>(points.start, stride));
            points.start += N * stride;
        }
    }
    for (; count >= N; count -= N) {
        bounds[0].add(V::template loadFloats<IsPacked>(points.start, stride));
        points.start += N * stride;
    }
    if (count > 0) {
        float block[2 * N];
        for (float& value : block) value = __builtin_nanf("");
        unsigned char* const start = reinterpret_cast<unsigned char*>(block);
        for (std::size_t i = 0; i < count; ++i)
            __builtin_memcpy(start + i * VECTOR_BYTES, points.start + i * stride, VECTOR_BYTES);
        bounds[0].add(V::template loadFloats<true>(start, VECTOR_BYTES));
    }

    const typename V::Floats lows[4] = {bounds[0].low, bounds[1].low, bounds[2].low, bounds[3].low};
    const typename V::Floats highs[4] = {bounds[0].high, bounds[1].high, bounds[2].high, bounds[3].high};
    const auto lowest = V::min(V::min(lows[0], lows[1]), V::min(lows[2], lows[3]));
    const auto highest = V::max(V::max(highs[0], highs[1]), V::max(highs[2], highs[3]));
    float sides[4];
    for (std::size_t axis = 0; axis < 2; ++axis) {
        float low = furthest<V>(lowest, axis, [](float a, float b) { return a < b; });
        float high = furthest<V>(highest, axis, [](float a, float b) { return a > b; });
        if (low == 0.0f) low = firstZero<V>(lows, axis, axes[axis]);
        if (high == 0.0f) high = firstZero<V>(highs, axis, axes[axis]);
        const bool hasNumber = low <= high;
        sides[axis] = hasNumber ? low : __builtin_nanf("");
        sides[axis + 2] = hasNumber ? high : __builtin_nanf("");
    }
    return {sides[0], sides[1], sides[2], sides[3]};
}

template <class V>
Vorn::RectBase<float> bound(VectorSource points, std::size_t count) noexcept {
    return points.stride == VECTOR_BYTES ? boundAll<V, true>(points, count) : boundAll<V, false>(points, count);
}

} // namespace
} // namespace VornPrivate
