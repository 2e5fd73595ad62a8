// Numbers are parsed; other types have operations of their own.
// expect: "parse reads bool, integers (signed char and unsigned char, not char), float and double"
#include "Vorn/Text/TextNumbers.h"

#include <string>

int main() {
#ifdef VORN_WRONG_LINE
    return Vorn::parse<std::string>("text").has_value();
#else
    return Vorn::parse<int>("42").has_value();
#endif
}
