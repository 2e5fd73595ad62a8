// The kernels of AVX2. Conversions work on 16 bytes, as their shuffles do.
#include "TextKernelTables.h"

#ifdef VORN_AVX_KERNELS
#include "VectorConvert.h"
#include "VectorScan.h"
#include "VectorsX86.h"

namespace VornPrivate {

constinit const TextKernels avx2TextKernels = {
    "AVX2",
    hasAVX2,
    scanUTF8<V32>,
    measureUTF8<V32>,
    scanUTF16<V32>,
    measureUTF16<V32>,
    widenASCII<V32>,
    narrowASCII<V32>,
    skipASCII8<V32>,
    skipASCII16<V32>,
    skipTerminatedASCII<V32>,
    convertToUTF16<V16>,
    convertToUTF8<V16>,
    matchEncodings<V16>,
    matchUnits<V32>,
    count8<V32>,
    count16<V32>,
    findZero<V32>,
    locate8<V32>,
};

} // namespace VornPrivate
#endif
