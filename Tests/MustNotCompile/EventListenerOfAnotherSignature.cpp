// A listener must take the arguments of the event, or the first of them.
// expect: "the callable cannot be called with the delegate's Args, or does not return its Result"
#include "Vorn/SharedObjects/Event.h"

int main() {
    Vorn::Event<int> scored;
#ifdef VORN_WRONG_LINE
    scored.add([](const char*) {});
#else
    scored.add([](int) {});
#endif
    scored(1);
}
