// The deleter is chosen where the first pointer to an object is made, so the type must be complete there.
// expect(GNU): "invalid application of 'sizeof' to incomplete type 'Door'"
// expect(Clang): "invalid application of 'sizeof' to an incomplete type 'Door'"
#include "Vorn/SharedObjects/SharedPtr.h"

struct Door;
Door* makeDoor();
#ifndef VORN_WRONG_LINE
struct Door {};
#endif

void open() { const Vorn::SharedPtr<Door> door(makeDoor()); }

int main() {}
