// TextBenchmark: validation, conversions and copies of handles, compared with ICU and std::string.
#pragma once

#include "Support/Corpus.h"

#include <vector>

/// Registers the benchmarks of texts for each of `texts`, which must outlive the run.
void registerTextBenchmarks(const std::vector<SampleText>& texts);
