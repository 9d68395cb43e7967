#pragma once

#include "comparing/Comparison.h"

class SampleReader;

/// Finds the samples of one WAV in another, which have the same number of bytes in a sample frame.
/// What is found is equal in every byte. A stretch of less than 2,048 sample frames between others,
/// in a file of minutes much less, may not be found. Throws what SampleReader throws.
[[nodiscard]] Comparison MatchSamples(SampleReader& source, SampleReader& result);
