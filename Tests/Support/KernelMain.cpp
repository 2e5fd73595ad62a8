// The main function of tests that run with one set of kernels of text: --kernels=NAME. Without it, the library chooses.
#include "Vorn/Kernels/TextKernels.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>

int main(int argumentCount, char** arguments) {
    testing::InitGoogleTest(&argumentCount, arguments);
    const std::string option = "--kernels=";
    for (int i = 1; i < argumentCount; ++i) {
        const std::string argument = arguments[i];
        if (argument.compare(0, option.size(), option) != 0) continue;
        const std::string name = argument.substr(option.size());
        const VornPrivate::TextKernels* const* kernels = VornPrivate::allTextKernels;
        while (*kernels && (*kernels)->name != name) ++kernels;
        if (!*kernels || !(*kernels)->isSupported()) {
            std::printf("skipped: no kernels of %s on this machine\n", name.c_str());
            return 0;
        }
        VornPrivate::chosenTextKernels.store(*kernels);
    }
    return RUN_ALL_TESTS();
}
