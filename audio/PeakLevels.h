#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>

/// Largest absolute sample of each side, as a part of 32768: 0 to 1.
struct PeakLevels {
    float left = 0;
    float right = 0;
};

/// The same as whole numbers, 0 to 32768: of stretches so short that the conversion would count.
struct PeakSamples {
    int left = 0;
    int right = 0;

    PeakLevels Levels() const {
        return {static_cast<float>(left) / 32768.0F, static_cast<float>(right) / 32768.0F};
    }
    void Raise(const PeakSamples& other) {
        left = std::max(left, other.left);
        right = std::max(right, other.right);
    }
};

/// Measures the peaks of interleaved samples: left is the even, right the odd channels; mono gives
/// both.
/// @param samples  whole sample frames
PeakSamples MeasurePeaks(std::span<const std::int16_t> samples, std::uint32_t channels);

/// The highest of the values at even and of those at odd places; the lowest there can be of none.
std::pair<int, int> HighestAlternating(std::span<const std::int16_t> values);

/// The larger of both for each side.
PeakLevels Larger(const PeakLevels& a, const PeakLevels& b);
