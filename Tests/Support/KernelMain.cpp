// The main function of tests that depend on the kernels of text. With --kernels=NAME they run with these kernels. With
// --chosen=NAME they fail unless the library chooses these itself.
#include "Vorn/Kernels/TextKernels.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>

namespace {

// Returns the text behind the name of an option, or an empty one.
std::string optionOf(int argumentCount, char** arguments, const std::string& option) {
    for (int i = 1; i < argumentCount; ++i) {
        const std::string argument = arguments[i];
        if (argument.compare(0, option.size(), option) == 0) return argument.substr(option.size());
    }
    return "";
}

} // namespace

int main(int argumentCount, char** arguments) {
    testing::InitGoogleTest(&argumentCount, arguments);
    const std::string name = optionOf(argumentCount, arguments, "--kernels=");
    if (!name.empty()) {
        const VornPrivate::TextKernels* const* kernels = VornPrivate::allTextKernels;
        while (*kernels && (*kernels)->name != name) ++kernels;
        if (!*kernels || !(*kernels)->isSupported()) {
            std::printf("skipped: no kernels of %s on this machine\n", name.c_str());
            return 0;
        }
        VornPrivate::chosenTextKernels.store(*kernels);
    }
    const std::string expected = optionOf(argumentCount, arguments, "--chosen=");
    if (!expected.empty()) {
        const std::string chosen = VornPrivate::textKernels().name;
        std::printf("kernels: %s\n", chosen.c_str());
        if (chosen != expected) {
            std::printf("failed: expected %s\n", expected.c_str());
            return 1;
        }
    }
    return RUN_ALL_TESTS();
}
