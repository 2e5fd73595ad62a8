#include "TextKernels.h"

#include "TextKernelTables.h"

namespace VornPrivate {

constinit std::atomic<const TextKernels*> chosenTextKernels{nullptr};

constinit const TextKernels* const allTextKernels[] = {
    &portableTextKernels,
#ifdef VORN_X86_KERNELS
    &sse2TextKernels,
    &sse42TextKernels,
#ifdef VORN_AVX_KERNELS
    &avx2TextKernels,
    &avx512TextKernels,
#endif
#endif
#ifdef VORN_NEON_KERNELS
    &neonTextKernels,
#endif
    nullptr,
};

const TextKernels& chooseTextKernels() noexcept {
    const TextKernels* best = &portableTextKernels;
    for (const TextKernels* const* kernels = allTextKernels; *kernels; ++kernels)
        if ((*kernels)->isSupported()) best = *kernels;
    chosenTextKernels.store(best, std::memory_order_relaxed);
    return *best;
}

namespace {

constexpr Shuffles compressWords() {
    Shuffles shuffles{};
    for (unsigned int index = 0; index < 256; ++index) {
        unsigned int at = 0;
        for (unsigned int k = 0; k < 8; ++k) {
            if (!(index >> k & 1)) continue;
            shuffles.bytes[index][at++] = static_cast<unsigned char>(2 * k);
            shuffles.bytes[index][at++] = static_cast<unsigned char>(2 * k + 1);
        }
        while (at < 16) shuffles.bytes[index][at++] = 0x80;
    }
    return shuffles;
}

constexpr Shuffles compressPairs() {
    Shuffles shuffles{};
    for (unsigned int index = 0; index < 256; ++index) {
        unsigned int at = 0;
        for (unsigned int k = 0; k < 8; ++k) {
            if (!(index >> k & 1)) shuffles.bytes[index][at++] = static_cast<unsigned char>(2 * k);
            shuffles.bytes[index][at++] = static_cast<unsigned char>(2 * k + 1);
        }
        while (at < 16) shuffles.bytes[index][at++] = 0x80;
    }
    return shuffles;
}

constexpr Shuffles compressCharacters() {
    Shuffles shuffles{};
    for (unsigned int index = 0; index < 256; ++index) {
        unsigned int at = 0;
        for (unsigned int k = 0; k < 4; ++k) {
            const unsigned int size = 1 + (index >> k & 1) + (index >> (k + 4) & 1);
            for (unsigned int byte = 3 - size; byte < 3; ++byte)
                shuffles.bytes[index][at++] = static_cast<unsigned char>(4 * k + byte);
        }
        while (at < 16) shuffles.bytes[index][at++] = 0x80;
    }
    return shuffles;
}

} // namespace

constinit const Shuffles COMPRESS_WORDS = compressWords();
constinit const Shuffles COMPRESS_PAIRS = compressPairs();
constinit const Shuffles COMPRESS_CHARACTERS = compressCharacters();

} // namespace VornPrivate
