// A function must take the arguments of the delegate.
// expect: "the function cannot be called with the delegate's Args, or does not return its Result"
#include "Vorn/SharedObjects/Delegate.h"

inline void show(int) {}

int main() {
#ifdef VORN_WRONG_LINE
    const auto shown = Vorn::Delegate<void, const char*>::bind<&show>();
    shown("1");
#else
    const auto shown = Vorn::Delegate<void, int>::bind<&show>();
    shown(1);
#endif
}
