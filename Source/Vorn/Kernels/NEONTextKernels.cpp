// The kernels of NEON, which every AArch64 processor has.
#include "TextKernelTables.h"

#ifdef VORN_NEON_KERNELS
#include "VectorConvert.h"
#include "VectorScan.h"

#include <arm_neon.h>

namespace VornPrivate {

namespace {

bool isSupported() noexcept { return true; }

/// Vectors of 16 bytes. A mask has one bit for each byte.
struct V16 {
    using Bytes = uint8x16_t;
    static constexpr std::size_t SIZE = 16;
    static constexpr unsigned int UNIT_BITS = 2;

    static uint16x8_t units(Bytes v) { return vreinterpretq_u16_u8(v); }
    static Bytes bytes(uint16x8_t v) { return vreinterpretq_u8_u16(v); }

    static Bytes load(const void* at) { return vld1q_u8(static_cast<const unsigned char*>(at)); }
    static void store(void* at, Bytes v) { vst1q_u8(static_cast<unsigned char*>(at), v); }
    static Bytes zero() { return vdupq_n_u8(0); }
    static Bytes splat8(unsigned int byte) { return vdupq_n_u8(static_cast<std::uint8_t>(byte)); }
    static Bytes splat16(unsigned int unit) { return bytes(vdupq_n_u16(static_cast<std::uint16_t>(unit))); }
    static Bytes bitAnd(Bytes a, Bytes b) { return vandq_u8(a, b); }
    static Bytes bitOr(Bytes a, Bytes b) { return vorrq_u8(a, b); }
    static Bytes bitXor(Bytes a, Bytes b) { return veorq_u8(a, b); }
    static Bytes max8(Bytes a, Bytes b) { return vmaxq_u8(a, b); }
    static Bytes min8(Bytes a, Bytes b) { return vminq_u8(a, b); }
    static Bytes subtractSaturated8(Bytes a, Bytes b) { return vqsubq_u8(a, b); }
    static Bytes sub16(Bytes a, Bytes b) { return bytes(vsubq_u16(units(a), units(b))); }
    static Bytes subtractSaturated16(Bytes a, Bytes b) { return bytes(vqsubq_u16(units(a), units(b))); }
    static bool isZero(Bytes v) { return vmaxvq_u8(v) == 0; }
    static Bytes plain(Bytes v) { return vcleq_s8(vreinterpretq_s8_u8(v), vdupq_n_s8(0)); }
    static Bytes countAtLeast16(Bytes sum, Bytes v, Bytes least) {
        return bytes(vsubq_u16(units(sum), vcgeq_u16(units(v), units(least))));
    }
    static std::uint64_t equal8(Bytes a, Bytes b) { return maskOf(vceqq_u8(a, b)); }
    static std::uint64_t equalUnits(Bytes a, Bytes b) { return maskOf(bytes(vceqq_u16(units(a), units(b)))); }
    static std::uint64_t greaterSigned8(Bytes a, Bytes b) {
        return maskOf(vcgtq_s8(vreinterpretq_s8_u8(a), vreinterpretq_s8_u8(b)));
    }
    static std::uint64_t maskOf(Bytes v) {
        const Bytes bits = {1, 2, 4, 8, 16, 32, 64, 128, 1, 2, 4, 8, 16, 32, 64, 128};
        const Bytes selected = vandq_u8(v, bits);
        return vaddv_u8(vget_low_u8(selected)) | static_cast<std::uint64_t>(vaddv_u8(vget_high_u8(selected))) << 8;
    }
    static Bytes highNibbles(Bytes v) { return vshrq_n_u8(v, 4); }
    static Bytes tableOf(const unsigned char* table) { return load(table); }
    static Bytes lookUp(Bytes table, Bytes indices) { return vqtbl1q_u8(table, indices); }
    template <int N>
    static Bytes previous(Bytes v, Bytes last) {
        return vextq_u8(last, v, 16 - N);
    }
    static void widen(Bytes v, void* dest) {
        store(dest, bytes(vmovl_u8(vget_low_u8(v))));
        store(static_cast<unsigned char*>(dest) + 16, bytes(vmovl_u8(vget_high_u8(v))));
    }
    static Bytes narrow(Bytes low, Bytes high) { return vcombine_u8(vmovn_u16(units(low)), vmovn_u16(units(high))); }

    // For conversions.
    static uint32x4_t words(Bytes v) { return vreinterpretq_u32_u8(v); }
    static Bytes bytes(uint32x4_t v) { return vreinterpretq_u8_u32(v); }
    /// Zero if no byte has its top bit set.
    static std::uint64_t maskOfTops(Bytes v) { return vmaxvq_u8(v) >> 7; }
    /// The bytes from 0x80 to 0xBF.
    static Bytes trails(Bytes v) { return vcltq_s8(vreinterpretq_s8_u8(v), vdupq_n_s8(-64)); }
    static Bytes equal16(Bytes a, Bytes b) { return bytes(vceqq_u16(units(a), units(b))); }
    static Bytes greater32(Bytes a, Bytes b) { return bytes(vcgtq_u32(words(a), words(b))); }
    static Bytes splat32(unsigned int word) { return bytes(vdupq_n_u32(word)); }
    static Bytes add16(Bytes a, Bytes b) { return bytes(vaddq_u16(units(a), units(b))); }
    template <int N>
    static Bytes shiftLeft16(Bytes v) {
        return bytes(vshlq_n_u16(units(v), N));
    }
    template <int N>
    static Bytes shiftRight16(Bytes v) {
        return bytes(vshrq_n_u16(units(v), N));
    }
    template <int N>
    static Bytes shiftLeft32(Bytes v) {
        return bytes(vshlq_n_u32(words(v), N));
    }
    template <int N>
    static Bytes shiftRight32(Bytes v) {
        return bytes(vshrq_n_u32(words(v), N));
    }
    /// The bytes behind `N` zero bytes.
    template <int N>
    static Bytes behind(Bytes v) {
        return vextq_u8(zero(), v, 16 - N);
    }
    static Bytes withoutFirst(Bytes v) { return vextq_u8(v, zero(), 1); }
    static Bytes unpackLow8(Bytes a, Bytes b) { return vzip1q_u8(a, b); }
    static Bytes unpackHigh8(Bytes a, Bytes b) { return vzip2q_u8(a, b); }
    static Bytes unpackLow16(Bytes a, Bytes b) { return bytes(vzip1q_u16(units(a), units(b))); }
    static Bytes unpackHigh16(Bytes a, Bytes b) { return bytes(vzip2q_u16(units(a), units(b))); }
    /// One bit for each unit or word of a vector of ones and zeros.
    static unsigned int maskOf16(Bytes v) {
        const uint16x8_t bits = {1, 2, 4, 8, 16, 32, 64, 128};
        return vaddvq_u16(vandq_u16(units(v), bits));
    }
    static unsigned int maskOf32(Bytes v) {
        const uint32x4_t bits = {1, 2, 4, 8};
        return vaddvq_u32(vandq_u32(words(v), bits));
    }
    static Bytes blend(Bytes mask, Bytes set, Bytes clear) { return vbslq_u8(mask, set, clear); }
};

} // namespace

constinit const TextKernels neonTextKernels = {
    "NEON",
    isSupported,
    scanUTF8<V16>,
    measureUTF8<V16>,
    scanUTF16<V16>,
    measureUTF16<V16>,
    widenASCII<V16>,
    narrowASCII<V16>,
    skipASCII8<V16>,
    skipASCII16<V16>,
    skipTerminatedASCII<V16>,
    convertToUTF16<V16>,
    convertToUTF8<V16>,
    matchEncodings<V16>,
    matchUnits<V16>,
    count8<V16>,
    count16<V16>,
    findZero<V16>,
    locate8<V16>,
};

} // namespace VornPrivate
#endif
