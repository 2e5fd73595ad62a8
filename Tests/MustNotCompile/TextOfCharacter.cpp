// A char is a character, and other types are no numbers.
// expect: "numbers are bool, integers, float and double"
#include "Vorn/Text/TextNumbers.h"

int main() {
#ifdef VORN_WRONG_LINE
    return Vorn::toText('a').isEmpty();
#else
    return Vorn::toText(static_cast<int>('a')).isEmpty();
#endif
}
