// A delegate does not count the object that it is bound to, so a temporary would leave it dangling.
// expect(GNU): "use of deleted function"
// expect(Clang): "call to deleted function 'bind'"
#include "Vorn/SharedObjects/Delegate.h"

struct Door {
    void open() {}
};

int main() {
#ifdef VORN_WRONG_LINE
    const auto opener = Vorn::Delegate<void, void>::bind<&Door::open>(Door());
#else
    Door door;
    const auto opener = Vorn::Delegate<void, void>::bind<&Door::open>(door);
#endif
    opener();
}
