// A container of bytes is no range of code points: its encoding is unknown.
// expect(GNU): "no matching function for call to 'makeString"
// expect(Clang): "no matching function for call to 'makeString'"
#include "Vorn/Text/MakeString.h"

#include <vector>

int main() {
    const std::vector<unsigned char> bytes = {'t', 'e', 'x', 't'};
#ifdef VORN_WRONG_LINE
    return Vorn::makeString(bytes).isEmpty();
#else
    return Vorn::makeString(Vorn::TextView(bytes.data(), bytes.size())).isEmpty();
#endif
}
