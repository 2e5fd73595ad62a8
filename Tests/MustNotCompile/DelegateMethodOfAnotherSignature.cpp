// A method must take the arguments of the delegate, or the first of them.
// expect: "the method cannot be called on this object with the delegate's Args, or does not return its Result"
#include "Vorn/SharedObjects/Delegate.h"

struct Door {
    void openFor(const char*) {}
    void openBy(int) {}
};

int main() {
    Door door;
#ifdef VORN_WRONG_LINE
    const auto opener = Vorn::Delegate<void, int>::bind<&Door::openFor>(door);
#else
    const auto opener = Vorn::Delegate<void, int>::bind<&Door::openBy>(door);
#endif
    opener(1);
}
