// An event without arguments has an empty list of them.
// expect: "an event without arguments is written Event<>"
#include "Vorn/SharedObjects/Event.h"

#ifdef VORN_WRONG_LINE
Vorn::Event<void> closed;
#else
Vorn::Event<> closed;
#endif

int main() {}
