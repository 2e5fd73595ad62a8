/// @file
/// Config: macros for the compiler and the platform, used by the other headers.
#pragma once

#if defined(_WIN32) && defined(VORN_STATIC) // defined by the CMake package and by pkg-config for the static library
#define VORN_API
#elif defined(_WIN32)
#if defined(VORN_BUILDING_LIBRARY)
#define VORN_API __declspec(dllexport)
#else
#define VORN_API __declspec(dllimport)
#endif
#else
/// Exports a symbol from the shared library; all other symbols are hidden.
#define VORN_API __attribute__((visibility("default")))
#endif

/// Marks a function that runs only after a check has failed: it is not inlined and is placed apart from hot code.
#define VORN_COLD __attribute__((cold, noinline))

/// The value of `condition`; the compiler expects true.
#define VORN_LIKELY(condition) __builtin_expect(!!(condition), 1)

/// Makes the compiler check the arguments of a function that formats like `printf`. Both indices count from 1, and a
/// member function's `this` is the first argument. `firstIndex` is 0 for a `std::va_list`.
#if defined(__MINGW32__) && !defined(__clang__)
#define VORN_PRINTF(formatIndex, firstIndex) __attribute__((format(gnu_printf, formatIndex, firstIndex)))
#else
#define VORN_PRINTF(formatIndex, firstIndex) __attribute__((format(printf, formatIndex, firstIndex)))
#endif

static_assert(sizeof(unsigned int) == 4, "lengths, codes and packed words are unsigned int of 32 bits");
static_assert(sizeof(short) == 2 && sizeof(long long) == 8, "integers are parsed and printed in these widths");
