// The copy of a std::string would never be freed.
// expect: "a standard text would be leaked: write s = s + text"
#include "Vorn/String/String.h"

#include <string>

int main() {
    Vorn::String s("a");
#ifdef VORN_WRONG_LINE
    s += std::string("b");
#else
    s += Vorn::String("b");
#endif
    return s.isEmpty();
}
