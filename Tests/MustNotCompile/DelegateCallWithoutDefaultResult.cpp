// An empty delegate has no result of a type without a default; `tryCall` returns an empty optional instead.
// expect: "take tryCall: there is no value to give without a target"
#include "Vorn/SharedObjects/Delegate.h"

struct Ticket {
    explicit Ticket(int n) : number(n) {}
    int number;
};

int main() {
    const Vorn::Delegate<Ticket, void> sell;
#ifdef VORN_WRONG_LINE
    return sell().number;
#else
    const auto ticket = sell.tryCall();
    return ticket ? ticket->number : 0;
#endif
}
