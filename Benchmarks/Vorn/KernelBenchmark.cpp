// The operations of TextBenchmark.cpp in a copy of the library whose kernels are chosen, one set after the other.
#include "Support/Measure.h"
#include "Vorn/Kernels/TextKernels.h"
#include "Vorn/TextBenchmark.h"
#include "Vorn/TextOperations.h"

#include <benchmark/benchmark.h>

#include <string>

void registerKernelBenchmarks(const std::vector<SampleText>& texts) {
    const struct {
        const char* name;
        void (*function)(Run&, const SampleText&);
    } operations[] = {
        {"scan UTF-8", scanUTF8},
        {"scan UTF-16", scanUTF16},
        {"convert to UTF-16", toUTF16},
        {"convert to UTF-8", toUTF8},
        {"equal in UTF-8 and UTF-16", equalAcrossEncodings},
    };
    for (const SampleText& text : texts) {
        for (const auto& operation : operations) {
            for (const VornPrivate::TextKernels* const* set = VornPrivate::allTextKernels; *set; ++set) {
                const VornPrivate::TextKernels* const kernels = *set;
                if (!kernels->isSupported()) continue;
                std::string name = "Texts/";
                name += operation.name;
                name += ", " + text.name + "/kernels " + kernels->name;
                addBenchmark(name, text.utf16.size(), [function = operation.function, kernels, &text](Run& run) {
                    VornPrivate::chosenTextKernels.store(kernels, std::memory_order_relaxed);
                    function(run, text);
                });
            }
        }
    }
}

bool haveKernelBenchmarksFailed() { return Run::hasFailed(); }
