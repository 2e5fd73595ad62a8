// The library is not built with flags that change results, which define this macro.
// expect: "Vorn needs exact results of float operations: compile without -ffast-math and its parts"
#ifdef VORN_WRONG_LINE
#define __FAST_MATH__ 1
#endif

#include "../../Source/Vorn/FloatArithmetic.cpp"
