// A lock that nobody holds keeps nothing alive.
// expect: "nodiscard"
#include "Vorn/SharedObjects/WeakPtr.h"

int main() {
    const auto shared = Vorn::makeShared<int>(1);
    const Vorn::WeakPtr<int> weak = shared;
#ifdef VORN_WRONG_LINE
    weak.lock();
#else
    const auto locked = weak.lock();
    return locked ? 0 : 1;
#endif
}
