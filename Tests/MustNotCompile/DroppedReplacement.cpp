// A changed text is a new text; the old one stays as it is.
// expect: "nodiscard"
#include "Vorn/Text.h"

int main() {
    Vorn::String row = Vorn::makeString("a,b");
#ifdef VORN_WRONG_LINE
    Vorn::replaceAll(row, ",", ";");
#else
    row = Vorn::replaceAll(row, ",", ";");
#endif
}
