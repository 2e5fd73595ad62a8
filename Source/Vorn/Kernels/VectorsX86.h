/// @file
/// VectorsX86: vectors of the instruction sets of x86, as far as the flags of the including file allow. Private.
///
/// All is in an unnamed namespace, so that each file keeps its own copies. A mask has one bit for each byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <immintrin.h>

namespace VornPrivate {
namespace {

/// Vectors of 16 bytes.
struct V16 {
    using Bytes = __m128i;
    static constexpr std::size_t SIZE = 16;
    /// Bits of a unit of two bytes in the result of `equalUnits`.
    static constexpr unsigned int UNIT_BITS = 2;

    static Bytes load(const void* at) { return _mm_loadu_si128(static_cast<const __m128i*>(at)); }
    static void store(void* at, Bytes v) { _mm_storeu_si128(static_cast<__m128i*>(at), v); }
    static Bytes zero() { return _mm_setzero_si128(); }
    static Bytes splat8(unsigned int byte) { return _mm_set1_epi8(static_cast<char>(byte)); }
    static Bytes splat16(unsigned int unit) { return _mm_set1_epi16(static_cast<short>(unit)); }
    static Bytes bitAnd(Bytes a, Bytes b) { return _mm_and_si128(a, b); }
    static Bytes bitOr(Bytes a, Bytes b) { return _mm_or_si128(a, b); }
    static Bytes bitXor(Bytes a, Bytes b) { return _mm_xor_si128(a, b); }
    static Bytes max8(Bytes a, Bytes b) { return _mm_max_epu8(a, b); }
    static Bytes min8(Bytes a, Bytes b) { return _mm_min_epu8(a, b); }
    static Bytes subtractSaturated8(Bytes a, Bytes b) { return _mm_subs_epu8(a, b); }
    static Bytes sub16(Bytes a, Bytes b) { return _mm_sub_epi16(a, b); }
    static Bytes subtractSaturated16(Bytes a, Bytes b) { return _mm_subs_epu16(a, b); }
    static bool isZero(Bytes v) {
#ifdef __SSE4_1__
        return _mm_testz_si128(v, v);
#else
        return _mm_movemask_epi8(_mm_cmpeq_epi8(v, zero())) == 0xFFFF;
#endif
    }
    /// The bytes of the result have their top bits clear if all bytes of both are 0x01 to 0x7F.
    static Bytes plain(Bytes v) { return _mm_andnot_si128(_mm_cmpgt_epi8(v, zero()), splat8(0xFF)); }
    /// The sum with 1 for each unit of `v` that is at least `least`.
    static Bytes countAtLeast16(Bytes sum, Bytes v, Bytes least) {
        return _mm_sub_epi16(sum, _mm_cmpeq_epi16(_mm_subs_epu16(least, v), zero()));
    }
    static std::uint64_t equal8(Bytes a, Bytes b) { return maskOf(_mm_cmpeq_epi8(a, b)); }
    static std::uint64_t equalUnits(Bytes a, Bytes b) { return maskOf(_mm_cmpeq_epi16(a, b)); }
    static std::uint64_t greaterSigned8(Bytes a, Bytes b) { return maskOf(_mm_cmpgt_epi8(a, b)); }
    static std::uint64_t maskOf(Bytes v) { return static_cast<std::uint32_t>(_mm_movemask_epi8(v)); }
#ifdef __SSSE3__
    static Bytes highNibbles(Bytes v) { return bitAnd(_mm_srli_epi16(v, 4), splat8(0x0F)); }
    static Bytes tableOf(const unsigned char* table) { return load(table); }
    static Bytes lookUp(Bytes table, Bytes indices) { return _mm_shuffle_epi8(table, indices); }
    /// The bytes that stand `N` places before those of `v`, which follows `last`.
    template <int N>
    static Bytes previous(Bytes v, Bytes last) {
        return _mm_alignr_epi8(v, last, 16 - N);
    }
#endif

    // For conversions.
    static std::uint64_t maskOfTops(Bytes v) { return maskOf(v); }
    /// The bytes from 0x80 to 0xBF.
    static Bytes trails(Bytes v) { return _mm_cmplt_epi8(v, _mm_set1_epi8(-64)); }
    static Bytes equal16(Bytes a, Bytes b) { return _mm_cmpeq_epi16(a, b); }
    static Bytes greater32(Bytes a, Bytes b) { return _mm_cmpgt_epi32(a, b); }
    static Bytes splat32(unsigned int word) { return _mm_set1_epi32(static_cast<int>(word)); }
    static Bytes add16(Bytes a, Bytes b) { return _mm_add_epi16(a, b); }
    template <int N>
    static Bytes shiftLeft16(Bytes v) {
        return _mm_slli_epi16(v, N);
    }
    template <int N>
    static Bytes shiftRight16(Bytes v) {
        return _mm_srli_epi16(v, N);
    }
    template <int N>
    static Bytes shiftLeft32(Bytes v) {
        return _mm_slli_epi32(v, N);
    }
    template <int N>
    static Bytes shiftRight32(Bytes v) {
        return _mm_srli_epi32(v, N);
    }
    /// The bytes behind `N` zero bytes.
    template <int N>
    static Bytes behind(Bytes v) {
        return _mm_slli_si128(v, N);
    }
    static Bytes withoutFirst(Bytes v) { return _mm_srli_si128(v, 1); }
    static Bytes unpackLow8(Bytes a, Bytes b) { return _mm_unpacklo_epi8(a, b); }
    static Bytes unpackHigh8(Bytes a, Bytes b) { return _mm_unpackhi_epi8(a, b); }
    static Bytes unpackLow16(Bytes a, Bytes b) { return _mm_unpacklo_epi16(a, b); }
    static Bytes unpackHigh16(Bytes a, Bytes b) { return _mm_unpackhi_epi16(a, b); }
    /// One bit for each unit or word of a vector of ones and zeros.
    static unsigned int maskOf16(Bytes v) {
        return static_cast<unsigned int>(_mm_movemask_epi8(_mm_packs_epi16(v, zero())));
    }
    static unsigned int maskOf32(Bytes v) { return static_cast<unsigned int>(_mm_movemask_ps(_mm_castsi128_ps(v))); }
#ifdef __SSE4_1__
    static Bytes blend(Bytes mask, Bytes set, Bytes clear) { return _mm_blendv_epi8(clear, set, mask); }
#endif
    static void widen(Bytes v, void* dest) {
        store(dest, _mm_unpacklo_epi8(v, zero()));
        store(static_cast<unsigned char*>(dest) + 16, _mm_unpackhi_epi8(v, zero()));
    }
    /// The units of two vectors, all below 0x80, as bytes.
    static Bytes narrow(Bytes low, Bytes high) { return _mm_packus_epi16(low, high); }
};

#ifdef __AVX2__
/// Vectors of 32 bytes.
struct V32 {
    using Bytes = __m256i;
    static constexpr std::size_t SIZE = 32;
    static constexpr unsigned int UNIT_BITS = 2;

    static Bytes load(const void* at) { return _mm256_loadu_si256(static_cast<const __m256i*>(at)); }
    static void store(void* at, Bytes v) { _mm256_storeu_si256(static_cast<__m256i*>(at), v); }
    static Bytes zero() { return _mm256_setzero_si256(); }
    static Bytes splat8(unsigned int byte) { return _mm256_set1_epi8(static_cast<char>(byte)); }
    static Bytes splat16(unsigned int unit) { return _mm256_set1_epi16(static_cast<short>(unit)); }
    static Bytes bitAnd(Bytes a, Bytes b) { return _mm256_and_si256(a, b); }
    static Bytes bitOr(Bytes a, Bytes b) { return _mm256_or_si256(a, b); }
    static Bytes bitXor(Bytes a, Bytes b) { return _mm256_xor_si256(a, b); }
    static Bytes max8(Bytes a, Bytes b) { return _mm256_max_epu8(a, b); }
    static Bytes min8(Bytes a, Bytes b) { return _mm256_min_epu8(a, b); }
    static Bytes subtractSaturated8(Bytes a, Bytes b) { return _mm256_subs_epu8(a, b); }
    static Bytes sub16(Bytes a, Bytes b) { return _mm256_sub_epi16(a, b); }
    static Bytes subtractSaturated16(Bytes a, Bytes b) { return _mm256_subs_epu16(a, b); }
    static bool isZero(Bytes v) { return _mm256_testz_si256(v, v); }
    static Bytes plain(Bytes v) { return _mm256_andnot_si256(_mm256_cmpgt_epi8(v, zero()), splat8(0xFF)); }
    static Bytes countAtLeast16(Bytes sum, Bytes v, Bytes least) {
        return _mm256_sub_epi16(sum, _mm256_cmpeq_epi16(_mm256_subs_epu16(least, v), zero()));
    }
    static std::uint64_t equal8(Bytes a, Bytes b) { return maskOf(_mm256_cmpeq_epi8(a, b)); }
    static std::uint64_t equalUnits(Bytes a, Bytes b) { return maskOf(_mm256_cmpeq_epi16(a, b)); }
    static std::uint64_t greaterSigned8(Bytes a, Bytes b) { return maskOf(_mm256_cmpgt_epi8(a, b)); }
    static std::uint64_t maskOf(Bytes v) { return static_cast<std::uint32_t>(_mm256_movemask_epi8(v)); }
    static Bytes highNibbles(Bytes v) { return bitAnd(_mm256_srli_epi16(v, 4), splat8(0x0F)); }
    static Bytes tableOf(const unsigned char* table) { return _mm256_broadcastsi128_si256(V16::load(table)); }
    static Bytes lookUp(Bytes table, Bytes indices) { return _mm256_shuffle_epi8(table, indices); }
    template <int N>
    static Bytes previous(Bytes v, Bytes last) {
        return _mm256_alignr_epi8(v, _mm256_permute2x128_si256(last, v, 0x21), 16 - N);
    }
    static void widen(Bytes v, void* dest) {
        store(dest, _mm256_cvtepu8_epi16(_mm256_castsi256_si128(v)));
        store(static_cast<unsigned char*>(dest) + 32, _mm256_cvtepu8_epi16(_mm256_extracti128_si256(v, 1)));
    }
    static Bytes narrow(Bytes low, Bytes high) {
        return _mm256_permute4x64_epi64(_mm256_packus_epi16(low, high), 0xD8);
    }
};
#endif

#ifdef __AVX512BW__
/// Vectors of 64 bytes.
struct V64 {
    using Bytes = __m512i;
    static constexpr std::size_t SIZE = 64;
    static constexpr unsigned int UNIT_BITS = 1;

    static Bytes load(const void* at) { return _mm512_loadu_si512(at); }
    /// Loads fewer than 64 bytes, and takes the others of `rest`.
    static Bytes loadLast(const void* at, std::size_t count, Bytes rest) {
        return _mm512_mask_loadu_epi8(rest, (std::uint64_t(1) << count) - 1, at);
    }
    static void store(void* at, Bytes v) { _mm512_storeu_si512(at, v); }
    static Bytes zero() { return _mm512_setzero_si512(); }
    static Bytes splat8(unsigned int byte) { return _mm512_set1_epi8(static_cast<char>(byte)); }
    static Bytes splat16(unsigned int unit) { return _mm512_set1_epi16(static_cast<short>(unit)); }
    static Bytes bitAnd(Bytes a, Bytes b) { return _mm512_and_si512(a, b); }
    static Bytes bitOr(Bytes a, Bytes b) { return _mm512_or_si512(a, b); }
    static Bytes bitXor(Bytes a, Bytes b) { return _mm512_xor_si512(a, b); }
    static Bytes max8(Bytes a, Bytes b) { return _mm512_max_epu8(a, b); }
    static Bytes min8(Bytes a, Bytes b) { return _mm512_min_epu8(a, b); }
    static Bytes subtractSaturated8(Bytes a, Bytes b) { return _mm512_subs_epu8(a, b); }
    static Bytes sub16(Bytes a, Bytes b) { return _mm512_sub_epi16(a, b); }
    static Bytes subtractSaturated16(Bytes a, Bytes b) { return _mm512_subs_epu16(a, b); }
    static bool isZero(Bytes v) { return _mm512_test_epi8_mask(v, v) == 0; }
    static Bytes plain(Bytes v) { return _mm512_maskz_set1_epi8(_mm512_cmpgt_epi8_mask(splat8(1), v), -1); }
    static Bytes countAtLeast16(Bytes sum, Bytes v, Bytes least) {
        return _mm512_mask_sub_epi16(sum, _mm512_cmpge_epu16_mask(v, least), sum, splat16(0xFFFF));
    }
    static std::uint64_t equal8(Bytes a, Bytes b) { return _mm512_cmpeq_epi8_mask(a, b); }
    static std::uint64_t equalUnits(Bytes a, Bytes b) { return _mm512_cmpeq_epi16_mask(a, b); }
    static std::uint64_t greaterSigned8(Bytes a, Bytes b) { return _mm512_cmpgt_epi8_mask(a, b); }
    static Bytes highNibbles(Bytes v) { return bitAnd(_mm512_srli_epi16(v, 4), splat8(0x0F)); }
    static Bytes tableOf(const unsigned char* table) { return _mm512_broadcast_i32x4(V16::load(table)); }
    static Bytes lookUp(Bytes table, Bytes indices) { return _mm512_shuffle_epi8(table, indices); }
    template <int N>
    static Bytes previous(Bytes v, Bytes last) {
        return _mm512_alignr_epi8(v, _mm512_alignr_epi32(v, last, 12), 16 - N);
    }
    static void widen(Bytes v, void* dest) {
        store(dest, _mm512_cvtepu8_epi16(_mm512_castsi512_si256(v)));
        store(static_cast<unsigned char*>(dest) + 64, _mm512_cvtepu8_epi16(_mm512_extracti64x4_epi64(v, 1)));
    }
    static Bytes narrow(Bytes low, Bytes high) {
        return _mm512_inserti64x4(_mm512_castsi256_si512(_mm512_cvtepi16_epi8(low)), _mm512_cvtepi16_epi8(high), 1);
    }
};
#endif

} // namespace
} // namespace VornPrivate
