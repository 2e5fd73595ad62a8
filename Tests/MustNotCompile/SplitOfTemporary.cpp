// The pieces of a temporary standard string would dangle.
// expect: "a part of this temporary string would dangle: keep the string in a variable, or pass a String"
#include "Vorn/Text/TextPieces.h"

#include <string>

int main() {
    const std::string row = "a,b";
#ifdef VORN_WRONG_LINE
    for (Vorn::TextView piece : Vorn::split(row + ",c", ',')) static_cast<void>(piece);
#else
    for (Vorn::TextView piece : Vorn::split(row, ',')) static_cast<void>(piece);
#endif
}
