// An array of a derived class is no array of its base: elements have another size.
// expect(GNU): "conversion from 'SharedPtr<Closed []>' to non-scalar type 'SharedPtr<Door []>' requested"
// expect(Clang): "no viable conversion from 'const SharedPtr<Closed[]>' to 'const SharedPtr<Door[]>'"
#include "Vorn/SharedObjects/SharedPtr.h"

struct Door {
    int width = 0;
};
struct Closed : Door {
    int lock = 0;
};

int main() {
    const Vorn::SharedPtr<Closed[]> closed(new Closed[2]);
#ifdef VORN_WRONG_LINE
    const Vorn::SharedPtr<Door[]> doors = closed;
#else
    const Vorn::SharedPtr<const Closed[]> doors = closed;
#endif
    return doors[0].width;
}
