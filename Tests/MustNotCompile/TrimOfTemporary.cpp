// The part of a temporary standard string would dangle.
// expect: "a part of this temporary string would dangle: keep the string in a variable, or pass a String"
#include "Vorn/Text/TextPieces.h"

#include <string>

int main() {
    const std::string padded = " text ";
#ifdef VORN_WRONG_LINE
    return Vorn::trim(padded + " ").getLength() != 4;
#else
    return Vorn::trim(padded).getLength() != 4;
#endif
}
