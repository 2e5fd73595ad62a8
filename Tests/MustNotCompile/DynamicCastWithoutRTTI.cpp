// A cast to a derived class asks the object for its type.
// expect: "dynamicSharedCast needs RTTI: compile without -fno-rtti, or use staticSharedCast"
// flags: -fno-rtti
#include "Vorn/SharedObjects/SharedPtr.h"

struct Door : Vorn::DynamicObject {};
struct Gate : Door {};

int main() {
    const auto door = Vorn::makeShared<Door>();
    return Vorn::dynamicSharedCast<Gate>(door) ? 1 : 0;
}
