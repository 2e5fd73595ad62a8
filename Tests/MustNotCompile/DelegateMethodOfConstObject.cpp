// A method that changes its object cannot be bound to a constant one.
// expect: "the method cannot be called on this object with the delegate's Args, or does not return its Result"
#include "Vorn/SharedObjects/Delegate.h"

struct Door {
    void open() {}
    void look() const {}
};

int main() {
    const Door door;
#ifdef VORN_WRONG_LINE
    const auto delegate = Vorn::Delegate<void, void>::bind<&Door::open>(door);
#else
    const auto delegate = Vorn::Delegate<void, void>::bind<&Door::look>(door);
#endif
    delegate();
}
