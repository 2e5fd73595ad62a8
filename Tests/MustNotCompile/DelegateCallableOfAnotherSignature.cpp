// A callable must take the arguments of the delegate.
// expect: "the callable cannot be called with the delegate's Args, or does not return its Result"
#include "Vorn/SharedObjects/Delegate.h"

int main() {
#ifdef VORN_WRONG_LINE
    const auto shown = Vorn::Delegate<void, int>::bindCallable([] {});
#else
    const auto shown = Vorn::Delegate<void, int>::bindCallable([](int) {});
#endif
    shown(1);
}
