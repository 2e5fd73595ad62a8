// A delegate is bound to an object. A pointer would be taken for the object.
// expect: "bind the object itself and not a pointer to it: bind<&Door::open>(*door)"
#include "Vorn/SharedObjects/Delegate.h"

struct Door {
    void open() {}
};

int main() {
    Door door;
    Door* const pointer = &door;
#ifdef VORN_WRONG_LINE
    const auto opener = Vorn::Delegate<void, void>::bind<&Door::open>(pointer);
#else
    const auto opener = Vorn::Delegate<void, void>::bind<&Door::open>(*pointer);
#endif
    opener();
}
