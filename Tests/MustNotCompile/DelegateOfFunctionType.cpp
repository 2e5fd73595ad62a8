// A delegate is written with the result and the arguments of its target, and not with their function type.
// expect: "write Delegate<Result, Args...> and not Delegate<Result(Args...)>"
#include "Vorn/SharedObjects/Delegate.h"

#ifdef VORN_WRONG_LINE
Vorn::Delegate<void(int)> wrong;
#else
Vorn::Delegate<void, int> right;
#endif

int main() {}
