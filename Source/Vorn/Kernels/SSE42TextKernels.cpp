// The kernels of SSE4.2 and POPCNT.
#include "TextKernelTables.h"

#ifdef VORN_X86_KERNELS
#include "VectorConvert.h"
#include "VectorScan.h"
#include "VectorsX86.h"

namespace VornPrivate {

constinit const TextKernels sse42TextKernels = {
    "SSE4.2",
    hasSSE42,
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
