#pragma once

#include <cstdint>
#include <span>

/// Largest absolute sample of each side, as a part of 32768: 0 to 1.
struct PeakLevels {
    float left = 0;
    float right = 0;
};

/// Measures the peaks of interleaved samples: left is the even, right the odd channels; mono gives
/// both.
/// @param samples  whole sample frames
PeakLevels MeasurePeaks(std::span<const std::int16_t> samples, std::uint32_t channels);

/// The larger of both for each side.
PeakLevels Larger(const PeakLevels& a, const PeakLevels& b);
