/// @file
/// GeometryKernelTables: the table of each instruction set. Private.
///
/// The files of kernels are compiled with the flags of their instruction set. They call no inline function with
/// external linkage, such as those of Matrix3: the linker could keep their copy for callers on every processor.
#pragma once

#include "GeometryKernels.h"
#include "InstructionSets.h"

namespace VornPrivate {

extern const GeometryKernels portableGeometryKernels;
#ifdef VORN_X86_KERNELS
extern const GeometryKernels sse2GeometryKernels;
#ifdef VORN_AVX_KERNELS
extern const GeometryKernels avx2GeometryKernels;
extern const GeometryKernels avx512GeometryKernels;
#endif
#endif
#ifdef VORN_NEON_KERNELS
extern const GeometryKernels neonGeometryKernels;
#endif

} // namespace VornPrivate
