// Units of 16 bits are char16_t in the library, and would be wchar_t here.
// expect: "the library was built with a wchar_t of 32 bits: compile without -fshort-wchar"
// flags: -fshort-wchar
#include "Vorn/Text.h"

int main() { return Vorn::contains("key=value", '=') ? 0 : 1; }
