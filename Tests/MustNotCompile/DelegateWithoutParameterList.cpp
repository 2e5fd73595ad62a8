// A signature without arguments is written with `void`.
// expect: "a callable without arguments is written Delegate<Result, void>"
#include "Vorn/SharedObjects/Delegate.h"

#ifdef VORN_WRONG_LINE
Vorn::Delegate<int> wrong;
#else
Vorn::Delegate<int, void> right;
#endif

int main() {}
