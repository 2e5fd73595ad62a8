// The kernels of SSE2.
#include "GeometryKernelTables.h"

#ifdef VORN_X86_KERNELS
#include "GeometryLoops.h"
#include "GeometryVectorsX86.h"

namespace VornPrivate {

namespace {

struct SSE2Vectors {
    using Doubles = __m128d;
    using Half = __m128; // the lower two floats
    using Floats = __m128;
    static constexpr std::size_t COUNT = 1;

    template <bool>
    static Half loadHalf(const unsigned char* at, std::size_t) {
        return loadVector(at);
    }
    template <bool>
    static void storeHalf(unsigned char* at, std::size_t, Half v) {
        storeVector(at, v);
    }
    template <bool IsPacked>
    static Floats loadFloats(const unsigned char* at, std::size_t stride) {
        return loadTwoVectors<IsPacked>(at, stride);
    }
    template <bool IsPacked>
    static void storeFloats(unsigned char* at, std::size_t stride, Floats v) {
        storeTwoVectors<IsPacked>(at, stride, v);
    }

    static Half lowHalf(Floats v) { return v; }
    static Half highHalf(Floats v) { return _mm_movehl_ps(v, v); }
    static Doubles widen(Half v) { return _mm_cvtps_pd(v); }
    static Half narrow(Doubles v) { return _mm_cvtpd_ps(v); }
    static Doubles pairs(double x, double y) { return _mm_setr_pd(x, y); }
    static Doubles exchanged(Doubles v) { return _mm_shuffle_pd(v, v, 1); }
    static Doubles add(Doubles a, Doubles b) { return _mm_add_pd(a, b); }
    static Doubles subtract(Doubles a, Doubles b) { return _mm_sub_pd(a, b); }
    static Doubles multiply(Doubles a, Doubles b) { return _mm_mul_pd(a, b); }
    static Doubles sumOfProducts(Doubles a, Doubles b, Doubles c, Doubles d) {
        return add(multiply(a, b), multiply(c, d));
    }
    /// The sums of the pairs of both, in any order that `doubled` reverts.
    static Doubles sumsOfPairs(Doubles a, Doubles b) { return add(_mm_unpacklo_pd(a, b), _mm_unpackhi_pd(a, b)); }
    static Floats doubled(Half v) { return _mm_unpacklo_ps(v, v); }
    /// The bits of the floats, subtracted from `minuend` and then shifted right by one.
    static Half shiftedDifference(unsigned int minuend, Half v) { return shiftedDifference4(minuend, v); }

    static Floats all(float value) { return _mm_set1_ps(value); }
    static Floats multiply(Floats a, Floats b) { return _mm_mul_ps(a, b); }
    static Floats min(Floats a, Floats b) { return _mm_min_ps(a, b); }
    static Floats max(Floats a, Floats b) { return _mm_max_ps(a, b); }
};

} // namespace

constinit const GeometryKernels sse2GeometryKernels = {
    "SSE2", hasSSE2, transform<SSE2Vectors>, normalise<SSE2Vectors>, bound<SSE2Vectors>,
};

} // namespace VornPrivate
#endif
