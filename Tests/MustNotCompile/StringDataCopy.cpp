// Records of texts are shared through String, not copied.
// expect(GNU): "use of deleted function 'Vorn::StringData::StringData(const Vorn::StringData&)'"
// expect(Clang): "call to deleted constructor of 'const Vorn::StringData'"
#include "Vorn/String/String.h"

int main() {
    const Vorn::String text("text");
#ifdef VORN_WRONG_LINE
    const Vorn::StringData copy(*text.getData());
#else
    const Vorn::String copy(text);
#endif
    return copy.isEmpty();
}
