// The result of a method must convert to that of the delegate.
// expect: "the method cannot be called on this object with the delegate's Args, or does not return its Result"
#include "Vorn/SharedObjects/Delegate.h"

struct Door {
    void open() {}
    int width() { return 1; }
};

int main() {
    const auto door = Vorn::makeShared<Door>();
#ifdef VORN_WRONG_LINE
    const auto width = Vorn::Delegate<int, void>::bindShared<&Door::open>(door);
#else
    const auto width = Vorn::Delegate<int, void>::bindShared<&Door::width>(door);
#endif
    return width() - 1;
}
