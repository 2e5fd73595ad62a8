// Each listener gets the arguments, so none may move from them.
// expect: "each listener is given the arguments anew"
#include "Vorn/SharedObjects/Event.h"

#include <string>

#ifdef VORN_WRONG_LINE
Vorn::Event<std::string&&> renamed;
#else
Vorn::Event<const std::string&> renamed;
#endif

int main() {}
