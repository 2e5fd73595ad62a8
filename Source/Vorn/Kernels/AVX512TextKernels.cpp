// The kernels of AVX-512 with VBMI2. Conversions compress the results of 32 or 16 lanes, and their loads and stores are
// masked, so that they reach the end of a text and write nothing behind it.
#include "TextKernelTables.h"

#ifdef VORN_AVX_KERNELS
#include "VectorScan.h"
#include "VectorsX86.h"

namespace VornPrivate {

namespace {

/// A mask of the lowest `size` bits.
inline std::uint64_t lowest(std::size_t size) {
    return size >= 64 ? ~std::uint64_t(0) : (std::uint64_t(1) << size) - 1;
}

/// Indices of `vpermb` that move bytes into words of 16 bits, from `start` on.
struct WordIndices {
    alignas(64) unsigned char bytes[64];
    constexpr explicit WordIndices(int start) : bytes() {
        for (int k = 0; k < 32; ++k) bytes[2 * k] = static_cast<unsigned char>((start + k) & 63);
    }
};
constexpr WordIndices FROM_0(0), FROM_0_BEFORE_1(-1), FROM_0_BEFORE_2(-2), FROM_32(32), FROM_32_BEFORE_1(31),
    FROM_32_BEFORE_2(30);

/// Bytes as words, with a high byte of zero.
inline __m512i wordsAt(const WordIndices& indices, __m512i bytes) {
    return _mm512_maskz_permutexvar_epi8(0x5555555555555555, _mm512_load_si512(indices.bytes), bytes);
}

/// UTF-8 to UTF-16. The code of a character is formed in the word of each of its bytes, from that byte and the two
/// before it. The word of the last byte has all of it, and is selected. See VectorConvert.h.
TextProgress convertToUTF16(const unsigned char* source, std::size_t length, UTF16Char* dest, std::size_t room,
                            bool exact) noexcept {
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < length) {
        const std::size_t size = smaller(length - i, 64);
        const __m512i bytes = _mm512_maskz_loadu_epi8(lowest(size), source + i);
        const std::uint64_t high = _mm512_movepi8_mask(bytes);
        if (high == 0) {
            const std::size_t units = smaller(size, room - j);
            _mm512_mask_storeu_epi16(dest + j, static_cast<__mmask32>(lowest(units)),
                                     _mm512_cvtepu8_epi16(_mm512_castsi512_si256(bytes)));
            if (units > 32) {
                _mm512_mask_storeu_epi16(dest + j + 32, static_cast<__mmask32>(lowest(units - 32)),
                                         _mm512_cvtepu8_epi16(_mm512_extracti64x4_epi64(bytes, 1)));
            }
            i += units;
            j += units;
            if (units < size) break;
            continue;
        }
        const std::uint64_t trails = _mm512_cmplt_epi8_mask(bytes, V64::splat8(0xC0));
        const std::uint64_t starts = ~trails;
        // A character is selected if the byte behind it starts another one. Behind the text are zeros.
        const bool isNextStart = i + 64 >= length || (source[i + 64] & 0xC0) != 0x80;
        const std::uint64_t ends = (starts >> 1 | std::uint64_t(isNextStart) << 63) & lowest(size);
        if (ends == 0) break; // malformed
        const std::uint64_t seconds = trails & trails << 1;
        const std::uint64_t thirds = seconds & trails << 2; // third trail bytes
        const std::uint64_t selected = exact ? ends | thirds >> 1 : ends;
        if (onesIn(selected) > room - j) break;
        // Whole vectors are stored faster. Behind both halves, 128 bytes have 32 characters at least.
        const bool isFarFromEnd = length - i >= 64 + 128 && room - j >= 2 * 32;
        const auto store = [&](unsigned int half, const WordIndices& at, const WordIndices& before1,
                               const WordIndices& before2) {
            const auto bitsOf = [=](std::uint64_t mask) { return static_cast<__mmask32>(mask >> 32 * half); };
            const __m512i byte = wordsAt(at, bytes);
            const __m512i tail = V64::bitAnd(byte, V64::splat16(0x3F));
            const __m512i middle = V64::bitAnd(_mm512_slli_epi16(wordsAt(before1, bytes), 6), V64::splat16(0xFC0));
            __m512i words = _mm512_mask_add_epi16(byte, bitsOf(trails), tail, middle);
            words =
                _mm512_mask_add_epi16(words, bitsOf(seconds), words, _mm512_slli_epi16(wordsAt(before2, bytes), 12));
            if (thirds) {
                words = _mm512_mask_add_epi16(words, bitsOf(thirds), V64::bitAnd(words, V64::splat16(0x3FF)),
                                              V64::splat16(0xDC00));
                // 110110 and the bits of the code above the lowest ten, less 0x40.
                const __m512i top = V64::bitOr(
                    _mm512_slli_epi16(V64::bitAnd(wordsAt(before2, bytes), V64::splat16(0x07)), 8),
                    V64::bitOr(_mm512_slli_epi16(V64::bitAnd(wordsAt(before1, bytes), V64::splat16(0x3F)), 2),
                               V64::bitAnd(_mm512_srli_epi16(byte, 4), V64::splat16(0x03))));
                words = _mm512_mask_add_epi16(words, bitsOf(thirds >> 1), top, V64::splat16(0xD800 - 0x40));
            }
            const std::size_t count = onesIn(bitsOf(selected));
            words = _mm512_maskz_compress_epi16(bitsOf(selected), words);
            if (isFarFromEnd)
                V64::store(dest + j, words);
            else
                _mm512_mask_storeu_epi16(dest + j, static_cast<__mmask32>(lowest(count)), words);
            j += count;
        };
        store(0, FROM_0, FROM_0_BEFORE_1, FROM_0_BEFORE_2);
        if (size > 32) store(1, FROM_32, FROM_32_BEFORE_1, FROM_32_BEFORE_2);
        i += 64 - static_cast<std::size_t>(__builtin_clzll(ends)); // the last character can be incomplete
    }
    return {i, j};
}

/// The bytes of up to 16 units in UTF-8, each in a word of 32 bits whose other bytes are zero.
struct Encoded {
    __m512i words;
    std::size_t units; ///< 0 if the units cannot be encoded
};

template <bool Whole>
inline Encoded encode(const UTF16Char* source, std::size_t length, Pairs pairs) {
    std::size_t size = Whole ? 16 : smaller(length, 16);
    const __m512i units = _mm512_cvtepu16_epi32(
        Whole ? V32::load(source) : _mm256_maskz_loadu_epi16(static_cast<__mmask16>(lowest(size)), source));
    const auto splat = [](unsigned int word) { return _mm512_set1_epi32(static_cast<int>(word)); };
    const auto bitAnd = [=](__m512i words, unsigned int bits) { return _mm512_and_si512(words, splat(bits)); };
    const __mmask16 isShort = _mm512_cmplt_epu32_mask(_mm512_sub_epi32(units, splat(1)), splat(0x7F));
    const __mmask16 isTwo = _mm512_cmplt_epu32_mask(units, splat(0x800));
    const __m512i middle = bitAnd(_mm512_slli_epi32(units, 2), 0x3F00);
    const __m512i tail = _mm512_slli_epi32(bitAnd(units, 0x3F), 16);
    const __m512i joined = _mm512_or_si512(_mm512_or_si512(middle, tail), _mm512_srli_epi32(units, 12));
    __m512i words = _mm512_or_si512(joined, _mm512_mask_mov_epi32(splat(0x8080E0), isTwo, splat(0x80C000)));
    words = _mm512_mask_slli_epi32(words, isShort, units, 16);

    if (pairs != Pairs::APART) {
        const bool exact = pairs == Pairs::EXACT;
        const __m512i kind = bitAnd(units, 0xFC00);
        unsigned int firsts = _mm512_cmpeq_epi32_mask(kind, splat(0xD800));
        if (firsts) {
            if (firsts & firsts << 1) return {words, 0}; // which of them is the unit behind another one?
            if (firsts >> (size - 1) & 1) --size;        // the unit behind it is not in this block
            firsts &= static_cast<unsigned int>(lowest(size));
            const __mmask16 first = static_cast<__mmask16>(firsts);
            const __mmask16 second = static_cast<__mmask16>(firsts << 1);
            // The word behind each one.
            const __m512i next = _mm512_alignr_epi32(_mm512_setzero_si512(), units, 1);
            const __m512i added = _mm512_add_epi32(bitAnd(units, exact ? 0x3FF : 0xFFFF), splat(exact ? 0x40 : 4));
            __m512i bytes = bitAnd(_mm512_srli_epi32(added, 8), exact ? 7 : 3);
            bytes = _mm512_or_si512(bytes, _mm512_slli_epi32(bitAnd(exact ? added : units, 0xFC), 6));
            bytes = _mm512_add_epi32(bytes, splat(exact ? 0x80F0 : 0x90F0));
            bytes = _mm512_or_si512(bytes, _mm512_slli_epi32(bitAnd(units, 3), 20));
            bytes = _mm512_or_si512(bytes, _mm512_slli_epi32(bitAnd(next, 0x3C0), 10));
            bytes = _mm512_or_si512(bytes, _mm512_slli_epi32(bitAnd(next, 0x3F), 24));
            bytes = _mm512_or_si512(bytes, splat(0x80800000));
            words = _mm512_mask_mov_epi32(words, first, bytes);
            words = _mm512_mask_mov_epi32(words, second, _mm512_setzero_si512());
            return {_mm512_maskz_mov_epi32(static_cast<__mmask16>(lowest(size)), words), size};
        }
    }
    if (Whole) return {words, 16};
    // Absent units are zero, which would be encoded as two bytes.
    return {_mm512_maskz_mov_epi32(static_cast<__mmask16>(lowest(size)), words), size};
}

/// Bytes that have been moved together.
struct Packed {
    __m512i bytes;
    std::size_t size;
};

/// Removes the zero bytes.
inline Packed packedOf(__m512i bytes) {
    const __mmask64 keep = _mm512_test_epi8_mask(bytes, bytes);
    return {_mm512_maskz_compress_epi8(keep, bytes), onesIn(keep)};
}

inline bool isBelow800(__m512i units) { return _mm512_test_epi16_mask(units, V64::splat16(0xF800)) == 0; }

/// Encodes 32 units below 0x800.
inline Packed packed32(__m512i units) {
    const __mmask32 isShort = _mm512_cmplt_epu16_mask(V64::sub16(units, V64::splat16(1)), V64::splat16(0x7F));
    const __m512i tail = _mm512_slli_epi16(V64::bitAnd(units, V64::splat16(0x3F)), 8);
    const __m512i words = V64::bitOr(V64::bitOr(_mm512_srli_epi16(units, 6), tail), V64::splat16(0x80C0));
    return packedOf(_mm512_mask_slli_epi16(words, isShort, units, 8));
}

/// Surrogates in 32 units, one bit each.
struct Surrogates {
    __mmask32 firsts, seconds;
    std::size_t whole; ///< units without the first half of a pair at the end
    bool areAlone;     ///< true if all others are below 0x800, and all surrogates are in pairs

    explicit Surrogates(__m512i units) {
        const __m512i kind = V64::bitAnd(units, V64::splat16(0xFC00));
        firsts = _mm512_cmpeq_epi16_mask(kind, V64::splat16(0xD800));
        seconds = _mm512_cmpeq_epi16_mask(kind, V64::splat16(0xDC00));
        const __mmask32 isLong = _mm512_test_epi16_mask(units, V64::splat16(0xF800));
        areAlone = isLong == (firsts | seconds) && firsts << 1 == seconds;
        whole = 32 - (firsts >> 31);
    }
};

/// Encodes 32 units below 0x800 or in pairs. Returns two bytes too many if a pair is not complete.
inline Packed packed32(__m512i units, const Surrogates& surrogates, bool exact) {
    const auto bits = [](__m512i words, unsigned int mask) { return V64::bitAnd(words, V64::splat16(mask)); };
    const __mmask32 isShort = _mm512_cmplt_epu16_mask(V64::sub16(units, V64::splat16(1)), V64::splat16(0x7F));
    const __m512i tail = _mm512_slli_epi16(bits(units, 0x3F), 8);
    const __m512i shifted = _mm512_srli_epi16(units, 6);
    __m512i words = V64::bitOr(V64::bitOr(shifted, tail), V64::splat16(0x80C0));
    const __m512i sum = _mm512_add_epi16(bits(units, exact ? 0x3FF : 0xFFFF), V64::splat16(exact ? 0x40 : 4));
    const __m512i first = V64::bitOr(bits(_mm512_srli_epi16(sum, 8), exact ? 7 : 3),
                                     _mm512_slli_epi16(bits(exact ? sum : units, 0xFC), 6));
    words = _mm512_mask_add_epi16(words, surrogates.firsts, first, V64::splat16(exact ? 0x80F0 : 0x90F0));
    const __m512i before = V64::previous<2>(units, V64::zero());
    const __m512i second = V64::bitOr(V64::bitOr(tail, bits(shifted, 0x0F)), _mm512_slli_epi16(bits(before, 3), 4));
    words = _mm512_mask_add_epi16(words, surrogates.seconds, second, V64::splat16(0x8080));
    return packedOf(_mm512_mask_slli_epi16(words, isShort, units, 8));
}

/// Stores bytes of a text of which `left` units are not converted yet. Returns false if there is no room.
inline bool storePacked(const Packed& packed, unsigned char* dest, std::size_t room, std::size_t left) {
    if (packed.size > room) return false;
    // Whole vectors are stored faster. 64 units become 64 bytes at least.
    if (left >= 64 && room >= 64)
        V64::store(dest, packed.bytes);
    else
        _mm512_mask_storeu_epi8(dest, lowest(packed.size), packed.bytes);
    return true;
}

/// Converts blocks of 32 units that are below 0x800 or in pairs. Out of line, so that the constants of each loop fit
/// the registers.
[[gnu::noinline]] TextProgress convertPairs(const UTF16Char* source, std::size_t length, unsigned char* dest,
                                            std::size_t room, bool exact) noexcept {
    std::size_t i = 0;
    std::size_t j = 0;
    while (length - i >= 32) {
        const __m512i units = V64::load(source + i);
        const Surrogates surrogates(units);
        if (surrogates.firsts == 0 || !surrogates.areAlone) break;
        const Packed packed = packed32(units, surrogates, exact);
        if (!storePacked(packed, dest + j, room - j, length - i)) break;
        i += surrogates.whole;
        j += packed.size - 2 * (32 - surrogates.whole);
    }
    return {i, j};
}

TextProgress convertToUTF8(const UTF16Char* source, std::size_t length, unsigned char* dest, std::size_t room,
                           Pairs pairs) noexcept {
    std::size_t i = 0;
    std::size_t j = 0;
    const auto store = [&](const Packed& packed) {
        if (!storePacked(packed, dest + j, room - j, length - i)) return false;
        j += packed.size;
        return true;
    };
    while (length - i >= 32) {
        const __m512i units = V64::load(source + i);
        if (V64::isZero(notPlain16<V64>(units))) {
            if (room - j < 32) break;
            V32::store(dest + j, _mm512_cvtepi16_epi8(units));
            i += 32;
            j += 32;
            continue;
        }
        if (isBelow800(units)) {
            if (!store(packed32(units))) break;
            i += 32;
            continue;
        }
        if (pairs != Pairs::APART && !V64::isZero(surrogates<V64>(units))) {
            const TextProgress done = convertPairs(source + i, length - i, dest + j, room - j, pairs == Pairs::EXACT);
            i += done.source;
            j += done.dest;
            if (done.source != 0) continue;
        }
        const Encoded encoded = encode<true>(source + i, 16, pairs);
        if (encoded.units == 0 || !store(packedOf(encoded.words))) break;
        i += encoded.units;
    }
    while (i < length) {
        const Encoded encoded = encode<false>(source + i, length - i, pairs);
        if (encoded.units == 0 || !store(packedOf(encoded.words))) break;
        i += encoded.units;
    }
    return {i, j};
}

/// Returns true if a block of 16 units has U+0000 or a noncharacter, or a surrogate that is in no pair. `size` is
/// reduced by a first surrogate at its end.
inline bool hasRefusedUnits(const UTF16Char* wide, std::size_t& size, bool full) {
    const __m256i units = _mm256_mask_loadu_epi16(_mm256_set1_epi16(0x20), static_cast<__mmask16>(lowest(size)), wide);
    if (!V32::isZero(refusedUnits<V32>(units))) return true;
    if (V32::isZero(surrogates<V32>(units))) return false;
    if (!full) return true;
    const auto maskOf = [=](unsigned int bits, unsigned int value) -> unsigned int {
        return _mm256_cmpeq_epi16_mask(V32::bitAnd(units, V32::splat16(bits)), V32::splat16(value));
    };
    unsigned int firsts = maskOf(0xFC00, 0xD800);
    if (firsts >> (size - 1) & 1) firsts &= ~(1u << --size);
    return firsts << 1 != maskOf(0xFC00, 0xDC00) || (maskOf(0xFC3F, 0xD83F) << 1 & maskOf(0xFFFE, 0xDFFE)) != 0;
}

/// Returns true if the text, which is not shorter, does not start with these bytes.
inline bool differs(const Packed& packed, const unsigned char* text, std::size_t length) {
    const __mmask64 all = lowest(packed.size);
    const __m512i bytes = length >= 64 ? V64::load(text) : _mm512_maskz_loadu_epi8(all, text);
    return _mm512_mask_cmpneq_epi8_mask(all, bytes, packed.bytes) != 0;
}

/// Compares blocks of 32 units that are below 0x800 or in pairs. Out of line, so that the constants of each loop fit
/// the registers.
[[gnu::noinline]] TextProgress matchPairs(const UTF16Char* wide, std::size_t wideLength, const unsigned char* text,
                                          std::size_t length) noexcept {
    std::size_t i = 0;
    std::size_t j = 0;
    while (wideLength - i >= 32 && length - j >= 64) {
        const __m512i units = V64::load(wide + i);
        const Surrogates surrogates(units);
        if (surrogates.firsts == 0 || !surrogates.areAlone) break;
        const auto maskOf = [=](unsigned int bits, unsigned int value) -> unsigned int {
            return _mm512_cmpeq_epi16_mask(V64::bitAnd(units, V64::splat16(bits)), V64::splat16(value));
        };
        const bool hasNoncharacters = (maskOf(0xFC3F, 0xD83F) << 1 & maskOf(0xFFFE, 0xDFFE)) != 0;
        if (hasNoncharacters || _mm512_test_epi16_mask(units, units) != 0xFFFFFFFF) break;
        Packed packed = packed32(units, surrogates, true);
        packed.size -= 2 * (32 - surrogates.whole);
        if (differs(packed, text + j, length - j)) break;
        i += surrogates.whole;
        j += packed.size;
    }
    return {i, j};
}

TextProgress matchEncodings(const UTF16Char* wide, std::size_t wideLength, const unsigned char* text,
                            std::size_t length, bool full) noexcept {
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < wideLength) {
        if (wideLength - i >= 32 && length - j >= 64) {
            const __m512i units = V64::load(wide + i);
            if (V64::isZero(notPlain16<V64>(units))) {
                const __m256i difference = V32::bitXor(_mm512_cvtepi16_epi8(units), V32::load(text + j));
                if (!V32::isZero(difference)) break;
                i += 32;
                j += 32;
                continue;
            }
            if (isBelow800(units) && _mm512_test_epi16_mask(units, units) == 0xFFFFFFFF) {
                const Packed packed = packed32(units);
                if (differs(packed, text + j, length - j)) break;
                i += 32;
                j += packed.size;
                continue;
            }
            if (length - j >= 128 && V64::isZero(V64::bitOr(refusedUnits<V64>(units), surrogates<V64>(units)))) {
                const Packed low = packedOf(encode<true>(wide + i, 16, Pairs::APART).words);
                const Packed high = packedOf(encode<true>(wide + i + 16, 16, Pairs::APART).words);
                if (differs(low, text + j, 64) || differs(high, text + j + low.size, 64)) break;
                i += 32;
                j += low.size + high.size;
                continue;
            }
            const TextProgress pairs =
                full ? matchPairs(wide + i, wideLength - i, text + j, length - j) : TextProgress{0, 0};
            if (pairs.source != 0) {
                i += pairs.source;
                j += pairs.dest;
                continue;
            }
        }
        std::size_t units = smaller(wideLength - i, 16);
        if (hasRefusedUnits(wide + i, units, full) || units == 0) break;
        const Pairs pairs = full ? Pairs::EXACT : Pairs::APART;
        const Encoded encoded = units == 16 ? encode<true>(wide + i, 16, pairs) : encode<false>(wide + i, units, pairs);
        const Packed packed = packedOf(encoded.words);
        if (packed.size > length - j || differs(packed, text + j, length - j)) break;
        i += encoded.units;
        j += packed.size;
    }
    return {i, j};
}

} // namespace

constinit const TextKernels avx512TextKernels = {
    "AVX-512 VBMI2",
    hasAVX512,
    scanUTF8<V64>,
    measureUTF8<V64>,
    scanUTF16<V64>,
    measureUTF16<V64>,
    widenASCII<V64>,
    narrowASCII<V64>,
    skipASCII8<V64>,
    skipASCII16<V64>,
    skipTerminatedASCII<V64>,
    convertToUTF16,
    convertToUTF8,
    matchEncodings,
    matchUnits<V64>,
    count8<V64>,
    count16<V64>,
    findZero<V64>,
    locate8<V64>,
};

} // namespace VornPrivate
#endif
