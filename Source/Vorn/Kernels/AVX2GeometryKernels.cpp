// The kernels of AVX2 and FMA. A sum of two products of floats is fused, which gives the same bits: the products are
// exact in double.
#include "GeometryKernelTables.h"

#ifdef VORN_AVX_KERNELS
#include "GeometryLoops.h"
#include "GeometryVectorsX86.h"

namespace VornPrivate {

namespace {

/// See SSE2Vectors.
struct AVX2Vectors {
    using Doubles = __m256d;
    using Half = __m128;
    using Floats = __m256;
    static constexpr std::size_t COUNT = 2;

    template <bool IsPacked>
    static Half loadHalf(const unsigned char* at, std::size_t stride) {
        return loadTwoVectors<IsPacked>(at, stride);
    }
    template <bool IsPacked>
    static void storeHalf(unsigned char* at, std::size_t stride, Half v) {
        storeTwoVectors<IsPacked>(at, stride, v);
    }
    template <bool IsPacked>
    static Floats loadFloats(const unsigned char* at, std::size_t stride) {
        if constexpr (IsPacked) return _mm256_loadu_ps(reinterpret_cast<const float*>(at));
        return _mm256_insertf128_ps(_mm256_castps128_ps256(loadHalf<false>(at, stride)),
                                    loadHalf<false>(at + 2 * stride, stride), 1);
    }
    template <bool IsPacked>
    static void storeFloats(unsigned char* at, std::size_t stride, Floats v) {
        if constexpr (IsPacked) {
            _mm256_storeu_ps(reinterpret_cast<float*>(at), v);
        } else {
            storeHalf<false>(at, stride, lowHalf(v));
            storeHalf<false>(at + 2 * stride, stride, highHalf(v));
        }
    }

    static Half lowHalf(Floats v) { return _mm256_castps256_ps128(v); }
    static Half highHalf(Floats v) { return _mm256_extractf128_ps(v, 1); }
    static Doubles widen(Half v) { return _mm256_cvtps_pd(v); }
    static Half narrow(Doubles v) { return _mm256_cvtpd_ps(v); }
    static Doubles pairs(double x, double y) { return _mm256_setr_pd(x, y, x, y); }
    static Doubles exchanged(Doubles v) { return _mm256_permute_pd(v, 5); }
    static Doubles add(Doubles a, Doubles b) { return _mm256_add_pd(a, b); }
    static Doubles subtract(Doubles a, Doubles b) { return _mm256_sub_pd(a, b); }
    static Doubles multiply(Doubles a, Doubles b) { return _mm256_mul_pd(a, b); }
    static Doubles sumOfProducts(Doubles a, Doubles b, Doubles c, Doubles d) {
        return _mm256_fmadd_pd(a, b, multiply(c, d));
    }
    // The vectors come in the order 0, 2, 1, 3.
    static Doubles sumsOfPairs(Doubles a, Doubles b) { return add(_mm256_unpacklo_pd(a, b), _mm256_unpackhi_pd(a, b)); }
    static Floats doubled(Half v) {
        return _mm256_permutevar8x32_ps(_mm256_castps128_ps256(v), _mm256_setr_epi32(0, 0, 2, 2, 1, 1, 3, 3));
    }
    static Half shiftedDifference(unsigned int minuend, Half v) { return shiftedDifference4(minuend, v); }

    static Floats all(float value) { return _mm256_set1_ps(value); }
    static Floats multiply(Floats a, Floats b) { return _mm256_mul_ps(a, b); }
    static Floats min(Floats a, Floats b) { return _mm256_min_ps(a, b); }
    static Floats max(Floats a, Floats b) { return _mm256_max_ps(a, b); }
};

} // namespace

constinit const GeometryKernels avx2GeometryKernels = {
    "AVX2", hasAVX2, transform<AVX2Vectors>, normalise<AVX2Vectors>, bound<AVX2Vectors>,
};

} // namespace VornPrivate
#endif
