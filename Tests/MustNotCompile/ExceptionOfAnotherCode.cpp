// The family of exceptions has four codes.
// expect: "the family has the codes 1, 2, 4 and 7"
#include "Vorn/Assert.h"

int main() {
#ifdef VORN_WRONG_LINE
    VORN_THROW(3, "no such code");
#else
    VORN_THROW(4, "such a code");
#endif
}
