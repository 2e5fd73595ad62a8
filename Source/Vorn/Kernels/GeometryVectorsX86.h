/// @file
/// GeometryVectorsX86: what the vectors of geometry have in common on x86: one or two vectors in 16 bytes. Private.
///
/// All is in an unnamed namespace, so that each file keeps its own copies.
#pragma once

#include <cstddef>
#include <immintrin.h>

namespace VornPrivate {
namespace {

inline __m128 loadVector(const unsigned char* at) {
    return _mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(at)));
}
inline void storeVector(unsigned char* at, __m128 v) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(at), _mm_castps_si128(v));
}

template <bool IsPacked>
__m128 loadTwoVectors(const unsigned char* at, std::size_t stride) {
    if constexpr (IsPacked) return _mm_loadu_ps(reinterpret_cast<const float*>(at));
    return _mm_movelh_ps(loadVector(at), loadVector(at + stride));
}
template <bool IsPacked>
void storeTwoVectors(unsigned char* at, std::size_t stride, __m128 v) {
    if constexpr (IsPacked) {
        _mm_storeu_ps(reinterpret_cast<float*>(at), v);
    } else {
        storeVector(at, v);
        storeVector(at + stride, _mm_movehl_ps(v, v));
    }
}

inline __m128 shiftedDifference4(unsigned int minuend, __m128 v) {
    const __m128i difference = _mm_sub_epi32(_mm_set1_epi32(static_cast<int>(minuend)), _mm_castps_si128(v));
    return _mm_castsi128_ps(_mm_srli_epi32(difference, 1));
}

} // namespace
} // namespace VornPrivate
