#include "GeometryKernels.h"

#include "GeometryKernelTables.h"

namespace VornPrivate {

constinit std::atomic<const GeometryKernels*> chosenGeometryKernels{nullptr};

constinit const GeometryKernels* const allGeometryKernels[] = {
    &portableGeometryKernels,
#ifdef VORN_X86_KERNELS
    &sse2GeometryKernels,
#ifdef VORN_AVX_KERNELS
    &avx2GeometryKernels,
    &avx512GeometryKernels,
#endif
#endif
#ifdef VORN_NEON_KERNELS
    &neonGeometryKernels,
#endif
    nullptr,
};

const GeometryKernels& chooseGeometryKernels() noexcept {
    const GeometryKernels* best = &portableGeometryKernels;
    for (const GeometryKernels* const* kernels = allGeometryKernels; *kernels; ++kernels)
        if ((*kernels)->isSupported()) best = *kernels;
    chosenGeometryKernels.store(best, std::memory_order_relaxed);
    return *best;
}

} // namespace VornPrivate
