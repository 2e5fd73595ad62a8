// The text would be destroyed before the result is used.
// expect(GNU): "use of deleted function"
// expect(Clang): "call to deleted function 'bytes'"
#include "Vorn/String/Interop.h"

int main() {
    const Vorn::String text("text");
#ifdef VORN_WRONG_LINE
    return Vorn::bytes(Vorn::String(text)).size() == 0;
#else
    return Vorn::bytes(text).size() == 0;
#endif
}
