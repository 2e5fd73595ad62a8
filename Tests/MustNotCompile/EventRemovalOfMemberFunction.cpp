// A pointer to a member function of an argument is a new listener each time.
// expect: "a lambda or a pointer to a member function is found again only by the Connection that add returned"
#include "Vorn/SharedObjects/Event.h"

struct Board {
    void show() {}
};

int main() {
    Vorn::Event<Board*> scored;
    Vorn::Connection connection = scored.add(&Board::show);
#ifdef VORN_WRONG_LINE
    return scored.remove(&Board::show);
#else
    return connection.disconnect();
#endif
}
