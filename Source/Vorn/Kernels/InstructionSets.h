/// @file
/// InstructionSets: the instruction sets that this build has kernels for, and those of the processor. Private.
#pragma once

#if defined(__x86_64__) || defined(__i386__)
#define VORN_X86_KERNELS
#elif defined(__aarch64__)
#define VORN_NEON_KERNELS
#endif

#ifdef VORN_X86_KERNELS
namespace VornPrivate {

/// Whether the processor has all instructions that the kernels of a name are compiled with. The files of the kernels
/// cannot say so themselves: all of their code may contain these instructions.
/// @{
bool hasSSE2() noexcept;
bool hasSSE42() noexcept;
bool hasAVX2() noexcept;
bool hasAVX512() noexcept;
/// @}

} // namespace VornPrivate
#endif
