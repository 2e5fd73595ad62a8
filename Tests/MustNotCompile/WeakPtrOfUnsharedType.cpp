// Only a shared object knows its control block.
// expect: "only a SharedObjectBase or InterfaceBase knows its owners: make the WeakPtr of a SharedPtr"
#include "Vorn/SharedObjects/WeakPtr.h"

#ifdef VORN_WRONG_LINE
struct Door {};
#else
struct Door : Vorn::SharedObjectBase {};
#endif

void watch(Door* door) { const Vorn::WeakPtr<Door> weak(door); }

int main() {}
