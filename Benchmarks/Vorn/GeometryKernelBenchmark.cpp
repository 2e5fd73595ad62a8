// The operations of GeometryBatchBenchmark.cpp in a copy of the library whose kernels are chosen, one set after the
// other.
#include "Vorn/GeometryBatchOperations.h"
#include "Vorn/Kernels/GeometryKernels.h"

#include <string>

namespace {

bool addForAllKernels() {
    const struct {
        const char* name;
        void (*function)(Run&);
    } operations[] = {
        {"transform of an array", transformVectors},
        {"transform inside vertices", transformVertices},
        {"normalise an array", normaliseVectors},
        {"bounds of an array", boundVectors},
    };
    for (const auto& operation : operations) {
        for (const VornPrivate::GeometryKernels* const* set = VornPrivate::allGeometryKernels; *set; ++set) {
            const VornPrivate::GeometryKernels* const kernels = *set;
            if (!kernels->isSupported()) continue;
            std::string name = "Geometry/";
            name += operation.name;
            name += "/kernels ";
            name += kernels->name;
            addBenchmarks(name, BATCH_SIZES, [function = operation.function, kernels](Run& run) {
                VornPrivate::chosenGeometryKernels.store(kernels, std::memory_order_relaxed);
                function(run);
            });
        }
    }
    return true;
}

[[maybe_unused]] const bool registered = addForAllKernels();

} // namespace
