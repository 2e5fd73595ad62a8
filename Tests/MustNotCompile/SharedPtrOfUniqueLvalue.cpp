// A unique pointer gives its object away only where the line says so.
// expect(GNU): "no matching function for call to 'Vorn::SharedPtr<Door>::SharedPtr(std::unique_ptr<Door>&)'"
// expect(Clang): "no matching constructor for initialization of 'const Vorn::SharedPtr<Door>'"
#include "Vorn/SharedObjects/SharedPtr.h"

#include <memory>

struct Door {};

int main() {
    std::unique_ptr<Door> owner(new Door);
#ifdef VORN_WRONG_LINE
    const Vorn::SharedPtr<Door> door(owner);
#else
    const Vorn::SharedPtr<Door> door(std::move(owner));
#endif
}
