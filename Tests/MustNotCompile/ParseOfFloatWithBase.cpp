// A floating-point number has no base of its own: "0x" stands before hexadecimal digits.
// expect: "only integers have a base: write parse<T>(text)"
#include "Vorn/Text/TextNumbers.h"

int main() {
#ifdef VORN_WRONG_LINE
    return Vorn::parse<double>("1.8", 16).has_value();
#else
    return Vorn::parse<double>("0x1.8").has_value();
#endif
}
