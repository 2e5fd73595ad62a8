// The address of an object is a temporary pointer.
// expect(GNU): "use of deleted function"
// expect(Clang): "call to deleted function 'bind'"
#include "Vorn/SharedObjects/Delegate.h"

struct Door {
    void open() {}
};

int main() {
    Door door;
#ifdef VORN_WRONG_LINE
    const auto opener = Vorn::Delegate<void, void>::bind<&Door::open>(&door);
#else
    const auto opener = Vorn::Delegate<void, void>::bind<&Door::open>(door);
#endif
    opener();
}
