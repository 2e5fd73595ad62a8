// An event is written with the arguments of its listeners, and not with their function type.
// expect: "write Event<Args...> and not Event<void(Args...)>"
#include "Vorn/SharedObjects/Event.h"

#ifdef VORN_WRONG_LINE
Vorn::Event<void(int)> scored;
#else
Vorn::Event<int> scored;
#endif

int main() {}
