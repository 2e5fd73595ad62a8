// A position in a temporary range would dangle.
// expect(GNU): "use of deleted function"
// expect(Clang): "call to deleted member function"
#include "Vorn/Text/TextPieces.h"

int main() {
#ifdef VORN_WRONG_LINE
    Vorn::split("a,b", ',').begin();
#else
    const auto pieces = Vorn::split("a,b", ',');
    pieces.begin();
#endif
}
