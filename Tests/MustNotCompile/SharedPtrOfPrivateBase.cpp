// The control block of a shared object is kept in its base, which a pointer must be able to reach.
// expect: "the shared base is private or there are several: the object's record cannot be found"
#include "Vorn/SharedObjects/SharedPtr.h"

#ifdef VORN_WRONG_LINE
class Door : Vorn::SharedObjectBase {};
#else
class Door : public Vorn::SharedObjectBase {};
#endif

int main() { const Vorn::SharedPtr<Door> door(new Door); }
