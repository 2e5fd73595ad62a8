// A callable must take the arguments of the delegate, or the first of them.
// expect: "the callable cannot be called with the delegate's Args, or does not return its Result"
#include "Vorn/SharedObjects/Delegate.h"

int main() {
#ifdef VORN_WRONG_LINE
    const Vorn::Delegate<void, int> shown = [](const char*) {};
#else
    const Vorn::Delegate<void, int> shown = [](int) {};
#endif
    shown(1);
}
