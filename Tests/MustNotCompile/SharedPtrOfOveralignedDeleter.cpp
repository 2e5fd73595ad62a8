// A control block, which holds the deleter, is freed by plain operator delete.
// expect: "a control block is freed without its alignment: give the deleter an ordinary one"
#include "Vorn/SharedObjects/SharedPtr.h"

struct alignas(64) Aligned {
    void operator()(int* number) const { delete number; }
};

struct Ordinary {
    void operator()(int* number) const { delete number; }
};

int main() {
#ifdef VORN_WRONG_LINE
    const Vorn::SharedPtr<int> number(new int(0), Aligned());
#else
    const Vorn::SharedPtr<int> number(new int(0), Ordinary());
#endif
    return *number;
}
