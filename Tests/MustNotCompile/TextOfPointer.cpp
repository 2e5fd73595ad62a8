// VORN_TEXT takes literals only: a pointer does not tell the length of its text.
// expect(GNU): "expected ')' before string constant"
// expect(Clang): "expected ')'"
#include "Vorn/Text/MakeString.h"

namespace {

const char* title = "Options";

} // namespace

int main() {
#ifdef VORN_WRONG_LINE
    return VORN_TEXT(title).isEmpty();
#else
    return VORN_TEXT("Options").isEmpty() || !*title;
#endif
}
