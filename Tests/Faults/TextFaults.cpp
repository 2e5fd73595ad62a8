#include "Faults/Operation.h"
#include "Vorn/Text/TextView.h"

namespace {

using namespace Vorn;

} // namespace

std::vector<Operation> textOperations() {
    return {
        {"TextView_OfBothEncodings",
         Outcome::ALLOCATES_NOTHING,
         {"TextView::isInUTF16"},
         [](Attempt& attempt) {
             const String string("\xF0\x9F\x98\x80");
             string.getData()->getBuffer<UTF16Char>();
             attempt([&] { EXPECT_TRUE(TextView(string).isUTF8()); });
         }},
    };
}
