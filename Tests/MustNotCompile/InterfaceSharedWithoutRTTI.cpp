// The first pointer to an object must know how to destroy it, which its interface does not tell.
// expect: "a pointer to an interface needs RTTI: share the object itself and convert its SharedPtr"
// flags: -fno-rtti
#include "Vorn/SharedObjects/SharedPtr.h"

struct Door : Vorn::InterfaceBase {};
struct Gate : Vorn::DynamicObject, Door {
    Vorn::SharedObjectBase* getSharedObject() override { return this; }
};

int main() {
    Door* const door = new Gate;
    const Vorn::SharedPtr<Door> shared(door);
}
