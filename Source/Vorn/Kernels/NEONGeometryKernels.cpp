// The kernels of NEON, which every AArch64 processor supports. A sum of two products of floats is fused, which gives
// the same bits: the products are exact in double.
#include "GeometryKernelTables.h"

#ifdef VORN_NEON_KERNELS
#include "GeometryLoops.h"

#include <arm_neon.h>

namespace VornPrivate {

namespace {

bool isSupported() noexcept { return true; }

/// See SSE2Vectors.
struct NEONVectors {
    using Doubles = float64x2_t;
    using Half = float32x2_t;
    using Floats = float32x4_t;
    static constexpr std::size_t COUNT = 1;

    template <bool>
    static Half loadHalf(const unsigned char* at, std::size_t) {
        return vreinterpret_f32_u8(vld1_u8(at));
    }
    template <bool>
    static void storeHalf(unsigned char* at, std::size_t, Half v) {
        vst1_u8(at, vreinterpret_u8_f32(v));
    }
    template <bool IsPacked>
    static Floats loadFloats(const unsigned char* at, std::size_t stride) {
        if constexpr (IsPacked) return vreinterpretq_f32_u8(vld1q_u8(at));
        return vcombine_f32(loadHalf<false>(at, stride), loadHalf<false>(at + stride, stride));
    }
    template <bool IsPacked>
    static void storeFloats(unsigned char* at, std::size_t stride, Floats v) {
        if constexpr (IsPacked) {
            vst1q_u8(at, vreinterpretq_u8_f32(v));
        } else {
            storeHalf<false>(at, stride, lowHalf(v));
            storeHalf<false>(at + stride, stride, highHalf(v));
        }
    }

    static Half lowHalf(Floats v) { return vget_low_f32(v); }
    static Half highHalf(Floats v) { return vget_high_f32(v); }
    static Doubles widen(Half v) { return vcvt_f64_f32(v); }
    static Half narrow(Doubles v) { return vcvt_f32_f64(v); }
    static Doubles pairs(double x, double y) { return Doubles{x, y}; }
    static Doubles exchanged(Doubles v) { return vextq_f64(v, v, 1); }
    static Doubles add(Doubles a, Doubles b) { return vaddq_f64(a, b); }
    static Doubles subtract(Doubles a, Doubles b) { return vsubq_f64(a, b); }
    static Doubles multiply(Doubles a, Doubles b) { return vmulq_f64(a, b); }
    static Doubles sumOfProducts(Doubles a, Doubles b, Doubles c, Doubles d) { return vfmaq_f64(multiply(c, d), a, b); }
    static Doubles sumsOfPairs(Doubles a, Doubles b) { return vpaddq_f64(a, b); }
    static Floats doubled(Half v) { return vcombine_f32(vdup_lane_f32(v, 0), vdup_lane_f32(v, 1)); }
    static Half shiftedDifference(unsigned int minuend, Half v) {
        return vreinterpret_f32_u32(vshr_n_u32(vsub_u32(vdup_n_u32(minuend), vreinterpret_u32_f32(v)), 1));
    }

    static Floats all(float value) { return vdupq_n_f32(value); }
    static Floats multiply(Floats a, Floats b) { return vmulq_f32(a, b); }
    // vminq_f32 and vmaxq_f32 return NaN if one operand is NaN, and order the zeros.
    static Floats min(Floats a, Floats b) { return vbslq_f32(vcltq_f32(a, b), a, b); }
    static Floats max(Floats a, Floats b) { return vbslq_f32(vcgtq_f32(a, b), a, b); }
};

} // namespace

constinit const GeometryKernels neonGeometryKernels = {
    "NEON", isSupported, transform<NEONVectors>, normalise<NEONVectors>, bound<NEONVectors>,
};

} // namespace VornPrivate
#endif
