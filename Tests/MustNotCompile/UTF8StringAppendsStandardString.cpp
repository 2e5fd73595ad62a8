// The copy of a std::string would never be freed.
// expect: "a standard text would be leaked: write append(makeString(text))"
#include "Vorn/String/UTF8String.h"

#include <string>

int main() {
    Vorn::UTF8String s("a");
#ifdef VORN_WRONG_LINE
    s.append(std::string("b"));
#else
    s.append(Vorn::String("b"));
#endif
    return s.isEmpty();
}
