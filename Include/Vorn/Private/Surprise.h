/// @file
/// Surprise: compiler warnings at calls of operations whose result is not what their name promises.
///
/// The warning says what the operation does and which call to write in its place. It is that of a deprecated operation,
/// though none of these will be removed: with `-Werror`, add `-Wno-error=deprecated-declarations`.
///
/// A program that defines VORN_NO_SURPRISE_WARNINGS before it includes the library gets no such warnings. For a place:
///
///     VORN_ALLOW_SURPRISES_BEGIN
///     const bool isOther = name.endsWith(".png");
///     VORN_ALLOW_SURPRISES_END
#pragma once

/// Makes the compiler warn of each call of the function that is declared here. `text` is a string literal: what the
/// function does, and what to write.
#if defined(VORN_NO_SURPRISE_WARNINGS)
#define VORN_SURPRISE(text)
#else
#define VORN_SURPRISE(text) __attribute__((deprecated(text)))
#endif

/// Calls between these two lines give no warning.
/// @{
#define VORN_ALLOW_SURPRISES_BEGIN \
    _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Wdeprecated-declarations\"")
#define VORN_ALLOW_SURPRISES_END _Pragma("GCC diagnostic pop")
/// @}

/// Stands behind a parameter of a constructor that keeps a reference to its argument: clang warns if the object
/// outlives a temporary argument. Other compilers do not know it.
#if defined(__clang__)
#define VORN_LIFETIMEBOUND [[clang::lifetimebound]]
#else
#define VORN_LIFETIMEBOUND
#endif
