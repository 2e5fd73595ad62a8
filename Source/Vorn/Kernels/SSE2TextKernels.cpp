// The kernels of the baseline of x86-64. UTF-8 without a shuffle of bytes is left to the portable kernels.
#include "TextKernelTables.h"

#ifdef VORN_X86_KERNELS
#include "VectorScan.h"
#include "VectorsX86.h"

namespace VornPrivate {

constinit const TextKernels sse2TextKernels = {
    "SSE2",
    hasSSE2,
    portable::scanUTF8,
    portable::measureUTF8,
    scanUTF16<V16>,
    measureUTF16<V16>,
    widenASCII<V16>,
    narrowASCII<V16>,
    skipASCII8<V16>,
    skipASCII16<V16>,
    skipTerminatedASCII<V16>,
    portable::toUTF16,
    portable::toUTF8,
    portable::match,
    matchUnits<V16>,
    count8<V16>,
    count16<V16>,
    findZero<V16>,
    locate8<V16>,
};

} // namespace VornPrivate
#endif
