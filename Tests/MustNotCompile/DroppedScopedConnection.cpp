// The listener would leave the event at the end of the statement.
// expect: "nodiscard"
#include "Vorn/SharedObjects/Event.h"

int main() {
    Vorn::Event<int> event;
#ifdef VORN_WRONG_LINE
    Vorn::ScopedConnection(event.add([](int) {}));
#else
    const Vorn::ScopedConnection held(event.add([](int) {}));
#endif
}
