// No code: refuses compilers and flags with which results would not have the promised bits.
#include <cfloat>
#include <limits>

#if defined(__FAST_MATH__) || defined(__ASSOCIATIVE_MATH__) || defined(__RECIPROCAL_MATH__) || \
    defined(__NO_SIGNED_ZEROS__) || (defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__)
#error "Vorn needs exact results of float operations: compile without -ffast-math and its parts"
#endif

#if FLT_EVAL_METHOD != 0
#error "Vorn needs floats without excess precision: on 32-bit x86 compile with -msse2 -mfpmath=sse"
#endif

static_assert(std::numeric_limits<float>::is_iec559 && std::numeric_limits<double>::is_iec559,
              "Vorn needs the floats of IEC 60559");
