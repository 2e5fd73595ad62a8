// DoublePair: two doubles that are computed together. Support of Matrix3.h; not for direct use.
//
// A matrix operation in double spends more time on the conversion of floats than on arithmetic. SSE2 converts two
// floats at once. clang++ generates that from plain code; g++ does not and needs the intrinsics below. Both forms give
// the same bits, and both can be evaluated at compile time.
#pragma once

namespace VornPrivate {

#if defined(__SSE2__) && !defined(__clang__)

typedef double DoubleLanes __attribute__((vector_size(16)));
typedef float FloatLanes __attribute__((vector_size(16)));

inline DoubleLanes loadTogether(const float* source) noexcept {
    double bits;
    __builtin_memcpy(&bits, source, sizeof bits);
    return __builtin_ia32_cvtps2pd(reinterpret_cast<FloatLanes>(DoubleLanes{bits, 0.0}));
}
inline void storeTogether(DoubleLanes lanes, float* target) noexcept {
    const double bits = reinterpret_cast<DoubleLanes>(__builtin_ia32_cvtpd2ps(lanes))[0];
    __builtin_memcpy(target, &bits, sizeof bits);
}
#define VORN_PRIVATE_CONVERT_TOGETHER !__builtin_is_constant_evaluated()

#else

struct DoubleLanes {
    constexpr double operator[](int lane) const noexcept { return lane == 0 ? first : second; }
    friend constexpr DoubleLanes operator+(DoubleLanes a, DoubleLanes b) noexcept {
        return {a.first + b.first, a.second + b.second};
    }
    friend constexpr DoubleLanes operator-(DoubleLanes a, DoubleLanes b) noexcept {
        return {a.first - b.first, a.second - b.second};
    }
    friend constexpr DoubleLanes operator*(DoubleLanes a, DoubleLanes b) noexcept {
        return {a.first * b.first, a.second * b.second};
    }

    double first;
    double second;
};

#endif

/// Two doubles.
struct DoublePair {
    /// Loads the two floats at `source`.
    static constexpr DoublePair load(const float* source) noexcept {
#if defined(VORN_PRIVATE_CONVERT_TOGETHER)
        if (VORN_PRIVATE_CONVERT_TOGETHER) return {loadTogether(source)};
#endif
        return {DoubleLanes{double(source[0]), double(source[1])}};
    }

    /// Rounds both to float and stores them.
    constexpr void store(float* target) const noexcept {
#if defined(VORN_PRIVATE_CONVERT_TOGETHER)
        if (VORN_PRIVATE_CONVERT_TOGETHER) return storeTogether(lanes, target);
#endif
        target[0] = float(lanes[0]);
        target[1] = float(lanes[1]);
    }

    constexpr double first() const noexcept { return lanes[0]; }
    constexpr double second() const noexcept { return lanes[1]; }

    /// Two copies of the first double; two copies of the second.
    constexpr DoublePair firsts() const noexcept { return {DoubleLanes{lanes[0], lanes[0]}}; }
    constexpr DoublePair seconds() const noexcept { return {DoubleLanes{lanes[1], lanes[1]}}; }

    friend constexpr DoublePair operator+(DoublePair a, DoublePair b) noexcept { return {a.lanes + b.lanes}; }
    friend constexpr DoublePair operator-(DoublePair a, DoublePair b) noexcept { return {a.lanes - b.lanes}; }
    friend constexpr DoublePair operator*(DoublePair a, DoublePair b) noexcept { return {a.lanes * b.lanes}; }

    DoubleLanes lanes;
};

#undef VORN_PRIVATE_CONVERT_TOGETHER

} // namespace VornPrivate
