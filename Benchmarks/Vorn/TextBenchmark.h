// TextBenchmark: validation, conversions and copies of handles, compared with ICU, simdjson and std::string.
#pragma once

#include "Support/Corpus.h"

#include <vector>

// Each function registers its benchmarks for each of `texts`, which must outlive the run.

/// Validation, conversions and equality.
void registerTextBenchmarks(const std::vector<SampleText>& texts);

/// The same operations with each set of kernels that the processor supports: variants "kernels NAME".
__attribute__((visibility("default"))) void registerKernelBenchmarks(const std::vector<SampleText>& texts);
/// Whether any of those failed.
__attribute__((visibility("default"))) bool haveKernelBenchmarksFailed();

/// Copies of strings.
void registerCopyBenchmarks(const std::vector<SampleText>& texts);
