// The kernels of AVX-512, for processors that also support VBMI2: older ones lower their clock for vectors of 64 bytes.
// A sum of two products of floats is fused, which gives the same bits: the products are exact in double.
#include "GeometryKernelTables.h"

#ifdef VORN_AVX_KERNELS
#include "GeometryLoops.h"
#include "GeometryVectorsX86.h"

namespace VornPrivate {

namespace {

/// See SSE2Vectors.
struct AVX512Vectors {
    using Doubles = __m512d;
    using Half = __m256;
    using Floats = __m512;
    static constexpr std::size_t COUNT = 4;

    template <bool IsPacked>
    static Half loadHalf(const unsigned char* at, std::size_t stride) {
        if constexpr (IsPacked) return _mm256_loadu_ps(reinterpret_cast<const float*>(at));
        return _mm256_insertf128_ps(_mm256_castps128_ps256(loadTwoVectors<false>(at, stride)),
                                    loadTwoVectors<false>(at + 2 * stride, stride), 1);
    }
    template <bool IsPacked>
    static void storeHalf(unsigned char* at, std::size_t stride, Half v) {
        if constexpr (IsPacked) {
            _mm256_storeu_ps(reinterpret_cast<float*>(at), v);
        } else {
            storeTwoVectors<false>(at, stride, _mm256_castps256_ps128(v));
            storeTwoVectors<false>(at + 2 * stride, stride, _mm256_extractf128_ps(v, 1));
        }
    }
    template <bool IsPacked>
    static Floats loadFloats(const unsigned char* at, std::size_t stride) {
        if constexpr (IsPacked) return _mm512_loadu_ps(at);
        return _mm512_castpd_ps(
            _mm512_insertf64x4(_mm512_castpd256_pd512(_mm256_castps_pd(loadHalf<false>(at, stride))),
                               _mm256_castps_pd(loadHalf<false>(at + 4 * stride, stride)), 1));
    }
    template <bool IsPacked>
    static void storeFloats(unsigned char* at, std::size_t stride, Floats v) {
        if constexpr (IsPacked) {
            _mm512_storeu_ps(at, v);
        } else {
            storeHalf<false>(at, stride, lowHalf(v));
            storeHalf<false>(at + 4 * stride, stride, highHalf(v));
        }
    }

    static Half lowHalf(Floats v) { return _mm512_castps512_ps256(v); }
    static Half highHalf(Floats v) { return _mm256_castpd_ps(_mm512_extractf64x4_pd(_mm512_castps_pd(v), 1)); }
    static Doubles widen(Half v) { return _mm512_cvtps_pd(v); }
    static Half narrow(Doubles v) { return _mm512_cvtpd_ps(v); }
    static Doubles pairs(double x, double y) { return _mm512_setr_pd(x, y, x, y, x, y, x, y); }
    static Doubles exchanged(Doubles v) { return _mm512_permute_pd(v, 0x55); }
    static Doubles add(Doubles a, Doubles b) { return _mm512_add_pd(a, b); }
    static Doubles subtract(Doubles a, Doubles b) { return _mm512_sub_pd(a, b); }
    static Doubles multiply(Doubles a, Doubles b) { return _mm512_mul_pd(a, b); }
    static Doubles sumOfProducts(Doubles a, Doubles b, Doubles c, Doubles d) {
        return _mm512_fmadd_pd(a, b, multiply(c, d));
    }
    // The vectors come in the order 0, 4, 1, 5, 2, 6, 3, 7.
    static Doubles sumsOfPairs(Doubles a, Doubles b) { return add(_mm512_unpacklo_pd(a, b), _mm512_unpackhi_pd(a, b)); }
    static Floats doubled(Half v) {
        const __m512i order = _mm512_setr_epi32(0, 0, 2, 2, 4, 4, 6, 6, 1, 1, 3, 3, 5, 5, 7, 7);
        return _mm512_permutexvar_ps(order, _mm512_castps256_ps512(v));
    }
    static Half shiftedDifference(unsigned int minuend, Half v) {
        const __m256i difference =
            _mm256_sub_epi32(_mm256_set1_epi32(static_cast<int>(minuend)), _mm256_castps_si256(v));
        return _mm256_castsi256_ps(_mm256_srli_epi32(difference, 1));
    }

    static Floats all(float value) { return _mm512_set1_ps(value); }
    static Floats multiply(Floats a, Floats b) { return _mm512_mul_ps(a, b); }
    static Floats min(Floats a, Floats b) { return _mm512_min_ps(a, b); }
    static Floats max(Floats a, Floats b) { return _mm512_max_ps(a, b); }
};

} // namespace

constinit const GeometryKernels avx512GeometryKernels = {
    "AVX-512", hasAVX512, transform<AVX512Vectors>, normalise<AVX512Vectors>, bound<AVX512Vectors>,
};

} // namespace VornPrivate
#endif
