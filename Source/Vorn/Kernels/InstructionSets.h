/// @file
/// InstructionSets: the instruction sets that this build has kernels for. Private.
#pragma once

#if defined(__x86_64__) || defined(__i386__)
#define VORN_X86_KERNELS
#elif defined(__aarch64__)
#define VORN_NEON_KERNELS
#endif
