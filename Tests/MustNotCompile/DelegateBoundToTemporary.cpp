// A delegate does not count the object that it is bound to, so a temporary would leave it dangling.
// expect: "the object would be destroyed at the end of the statement: bind a variable"
#include "Vorn/SharedObjects/Delegate.h"

struct Door {
    void open() {}
};

int main() {
#ifdef VORN_WRONG_LINE
    const auto opener = Vorn::Delegate<void>::bind<&Door::open>(Door());
#else
    Door door;
    const auto opener = Vorn::Delegate<void>::bind<&Door::open>(door);
#endif
    opener();
}
