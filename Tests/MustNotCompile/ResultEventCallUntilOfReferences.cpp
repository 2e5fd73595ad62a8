// References cannot be kept in a vector or an optional.
// expect: "results that are references are visited with callEach"
#include "Vorn/SharedObjects/ResultEvent.h"

int main() {
    Vorn::ResultEvent<int&> asked;
#ifdef VORN_WRONG_LINE
    asked.callUntil([](int) { return true; });
#else
    asked.callEach([](int&) {});
#endif
}
