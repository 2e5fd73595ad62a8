// A member function needs an object.
// expect: "a member function needs its object: bind<&Door::open>(door)"
#include "Vorn/SharedObjects/Delegate.h"

struct Door {
    void open() {}
};

int main() {
#ifdef VORN_WRONG_LINE
    const auto opener = Vorn::Delegate<void, void>::bind<&Door::open>();
#else
    Door door;
    const auto opener = Vorn::Delegate<void, void>::bind<&Door::open>(door);
#endif
    opener();
}
