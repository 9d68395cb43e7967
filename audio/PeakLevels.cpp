#include "audio/PeakLevels.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

// Wide enough for the compiler to keep whole vectors of running peaks; even, so that a lane always
// holds the same side.
constexpr std::size_t kLanes = 32;

/// Peaks of the lanes of one parity.
float SidePeak(const std::array<std::int16_t, kLanes>& lowest,
               const std::array<std::int16_t, kLanes>& highest, std::size_t parity) {
    int peak = 0;
    for (std::size_t lane = parity; lane < kLanes; lane += 2) {
        peak = std::max({peak, -int{lowest[lane]}, int{highest[lane]}});
    }
    return static_cast<float>(peak) / 32768.0F;
}

/// The even and the odd samples' peaks.
PeakLevels MeasureAlternating(std::span<const std::int16_t> samples) {
    std::array<std::int16_t, kLanes> lowest{};
    std::array<std::int16_t, kLanes> highest{};
    const std::int16_t* from = samples.data();
    const std::int16_t* end = from + samples.size();
    for (; end - from >= static_cast<std::ptrdiff_t>(kLanes); from += kLanes) {
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            lowest[lane] = std::min(lowest[lane], from[lane]);
            highest[lane] = std::max(highest[lane], from[lane]);
        }
    }
    for (std::size_t lane = 0; from < end; ++from, ++lane) {
        lowest[lane] = std::min(lowest[lane], *from);
        highest[lane] = std::max(highest[lane], *from);
    }
    return {SidePeak(lowest, highest, 0), SidePeak(lowest, highest, 1)};
}

/// For an odd number of channels, whose sides change places with every sample frame.
PeakLevels MeasureBySampleFrame(std::span<const std::int16_t> samples, std::uint32_t channels) {
    PeakLevels peaks;
    for (std::size_t begin = 0; begin < samples.size(); begin += channels) {
        peaks = Larger(peaks, MeasureAlternating(samples.subspan(begin, channels)));
    }
    return peaks;
}

} // namespace

PeakLevels MeasurePeaks(std::span<const std::int16_t> samples, std::uint32_t channels) {
    if (channels == 1) {
        const PeakLevels peaks = MeasureAlternating(samples);
        const float peak = std::max(peaks.left, peaks.right);
        return {peak, peak};
    }
    return channels % 2 == 0 ? MeasureAlternating(samples)
                             : MeasureBySampleFrame(samples, channels);
}

PeakLevels Larger(const PeakLevels& a, const PeakLevels& b) {
    return {std::max(a.left, b.left), std::max(a.right, b.right)};
}
