// A part of a text is returned; the text stays as it is.
// expect: "nodiscard"
#include "Vorn/Text.h"

int main() {
    Vorn::String row = Vorn::makeString(" a ");
#ifdef VORN_WRONG_LINE
    Vorn::trim(row);
#else
    row = Vorn::trim(row);
#endif
}
