/// @file
/// TextKernelTables: the table of each instruction set, and what kernels of several sets share. Private.
///
/// The files of kernels are compiled with the flags of their instruction set. They call no inline function with
/// external linkage, such as those of the standard library: the linker could keep their copy for callers on every
/// processor.
#pragma once

#include "InstructionSets.h"
#include "TextKernels.h"

namespace VornPrivate {

extern const TextKernels portableTextKernels;
#ifdef VORN_X86_KERNELS
extern const TextKernels sse2TextKernels;
extern const TextKernels sse42TextKernels;
#ifdef VORN_AVX_KERNELS
extern const TextKernels avx2TextKernels;
extern const TextKernels avx512TextKernels;
#endif
#endif
#ifdef VORN_NEON_KERNELS
extern const TextKernels neonTextKernels;
#endif

/// Shuffles of a vector of 16 bytes that move the selected units to the front. A word is selected by a bit of the
/// index.
struct Shuffles {
    alignas(16) unsigned char bytes[256][16];
};
extern const Shuffles COMPRESS_WORDS;
/// Words of two bytes, of which the second alone is selected if a bit of the index is set.
extern const Shuffles COMPRESS_PAIRS;
/// Words of 32 bits with the bytes of a character in the lowest three, of which the last one, two or all three are
/// selected: bit k of the index is set for two bytes at least, and bit k + 4 for three.
extern const Shuffles COMPRESS_CHARACTERS;

/// The portable kernels, for sets that have no better one.
namespace portable {
UTF8Run scanUTF8(const unsigned char* text, std::size_t length) noexcept;
UTF8Run measureUTF8(const unsigned char* text, std::size_t length, bool full) noexcept;
TextProgress toUTF16(const unsigned char* source, std::size_t length, UTF16Char* dest, std::size_t room,
                     bool exact) noexcept;
TextProgress toUTF8(const UTF16Char* source, std::size_t length, unsigned char* dest, std::size_t room,
                    Pairs pairs) noexcept;
TextProgress match(const UTF16Char* wide, std::size_t wideLength, const unsigned char* text, std::size_t length,
                   bool full) noexcept;
} // namespace portable

} // namespace VornPrivate
