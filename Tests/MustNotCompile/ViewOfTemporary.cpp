// The text would be destroyed before the result is used.
// expect(GNU): "use of deleted function"
// expect(Clang): "call to deleted function 'view'"
#include "Vorn/String/Interop.h"

int main() {
    const Vorn::String text("text");
#ifdef VORN_WRONG_LINE
    return Vorn::view(Vorn::String(text)).empty();
#else
    return Vorn::view(text).empty();
#endif
}
