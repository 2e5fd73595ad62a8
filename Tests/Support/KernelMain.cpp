// The main function of tests that depend on kernels. With --kernels=NAME they run with these kernels of text. With
// --chosen=NAME they fail unless the library chooses these itself, for text and for geometry.
#include "Vorn/Kernels/GeometryKernels.h"
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
        const std::string geometry = VornPrivate::geometryKernels().name;
        std::printf("kernels: %s, of geometry: %s\n", chosen.c_str(), geometry.c_str());
        if (chosen != expected || geometry != expected) {
            std::printf("failed: expected %s\n", expected.c_str());
            return 1;
        }
    }
    return RUN_ALL_TESTS();
}
