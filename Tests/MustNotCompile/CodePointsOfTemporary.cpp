// The text would be destroyed before the loop begins.
// expect(GNU): "use of deleted function"
// expect(Clang): "call to deleted function 'codePoints'"
#include "Vorn/Text/CodePoints.h"

int main() {
    const Vorn::String text("text");
    unsigned int sum = 0;
#ifdef VORN_WRONG_LINE
    for (const Vorn::UTF32Char c : Vorn::codePoints(Vorn::String(text))) sum += c;
#else
    for (const Vorn::UTF32Char c : Vorn::codePoints(text)) sum += c;
#endif
    return sum == 0;
}
