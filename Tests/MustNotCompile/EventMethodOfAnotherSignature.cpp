// A method must take the arguments of the event, or the first of them.
// expect: "the method cannot be called on this object with the delegate's Args, or does not return its Result"
#include "Vorn/SharedObjects/Event.h"

struct Board {
    void show(int) {}
    void name(const char*) {}
};

int main() {
    Board board;
    Vorn::Event<int> scored;
#ifdef VORN_WRONG_LINE
    scored.add<&Board::name>(board);
#else
    scored.add<&Board::show>(board);
#endif
    scored(1);
}
