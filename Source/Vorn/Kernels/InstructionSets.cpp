#include "InstructionSets.h"

#ifdef VORN_X86_KERNELS
namespace VornPrivate {

// __builtin_cpu_init: a kernel can be chosen before the constructors run.

bool hasSSE2() noexcept {
    __builtin_cpu_init();
    return __builtin_cpu_supports("sse2");
}

bool hasSSE42() noexcept {
    __builtin_cpu_init();
    return __builtin_cpu_supports("sse4.2") && __builtin_cpu_supports("popcnt");
}

bool hasAVX2() noexcept {
    return hasSSE42() && __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") &&
           __builtin_cpu_supports("bmi");
}

bool hasAVX512() noexcept {
    return hasAVX2() && __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("avx512f") &&
           __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl") &&
           __builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("avx512vbmi2");
}

} // namespace VornPrivate
#endif
