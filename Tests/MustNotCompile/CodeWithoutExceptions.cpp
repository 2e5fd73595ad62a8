// A failure of the library would end a program without exceptions.
// expect: "Vorn reports failures as exceptions: compile without -fno-exceptions"
// flags: -fno-exceptions
#include "Vorn/Text.h"

int main() { return Vorn::contains("key=value", '=') ? 0 : 1; }
