// The library is not built where float expressions keep more bits, as on the x87 unit of 32-bit x86.
// expect: "Vorn needs floats without excess precision: on 32-bit x86 compile with -msse2 -mfpmath=sse"
#include <cfloat>

#ifdef VORN_WRONG_LINE
#undef FLT_EVAL_METHOD
#define FLT_EVAL_METHOD 2
#endif

#include "../../Source/Vorn/FloatArithmetic.cpp"
