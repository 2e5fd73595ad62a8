// Two lambdas are two listeners, even if they are written alike.
// expect: "a lambda or a pointer to a member function is found again only by the Connection that add returned"
#include "Vorn/SharedObjects/Event.h"

int main() {
    Vorn::Event<int> scored;
    const auto show = [](int) {};
    const Vorn::Connection connection = scored.add(show);
#ifdef VORN_WRONG_LINE
    return scored.contains(show);
#else
    return connection.isConnected();
#endif
}
