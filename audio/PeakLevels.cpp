#include "audio/PeakLevels.h"

#include "audio/SampleLanes.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace {

/// The even and the odd samples' peaks.
PeakSamples MeasureAlternating(std::span<const std::int16_t> samples) {
    const std::size_t pairs = samples.size() < kLanes ? 0 : samples.size() / 2 * 2;
    PeakSamples peaks = pairs > 0 ? MeasurePairs(samples.data(), pairs) : PeakSamples();
    for (std::size_t i = pairs; i < samples.size(); ++i) {
        int& peak = i % 2 == 0 ? peaks.left : peaks.right;
        peak = std::max(peak, std::abs(int{samples[i]}));
    }
    return peaks;
}

/// For an odd number of channels, whose sides change places with every sample frame.
PeakSamples MeasureBySampleFrame(std::span<const std::int16_t> samples, std::uint32_t channels) {
    PeakSamples peaks;
    for (std::size_t begin = 0; begin < samples.size(); begin += channels) {
        peaks.Raise(MeasureAlternating(samples.subspan(begin, channels)));
    }
    return peaks;
}

} // namespace

PeakSamples MeasurePeaks(std::span<const std::int16_t> samples, std::uint32_t channels) {
    if (channels == 1) {
        const PeakSamples peaks = MeasureAlternating(samples);
        const int peak = std::max(peaks.left, peaks.right);
        return {peak, peak};
    }
    return channels % 2 == 0 ? MeasureAlternating(samples)
                             : MeasureBySampleFrame(samples, channels);
}

std::pair<int, int> HighestAlternating(std::span<const std::int16_t> values) {
    const Lanes lowestOfAll = Lanes{} + std::numeric_limits<std::int16_t>::min();
    Lanes highest = lowestOfAll;
    for (; values.size() >= kLanes; values = values.subspan(kLanes)) {
        Lanes lanes;
        std::memcpy(&lanes, values.data(), sizeof lanes);
        highest = Higher(lanes, highest);
    }
    Lanes rest = lowestOfAll;
    std::memcpy(&rest, values.data(), values.size_bytes());
    highest = Fold(Higher(rest, highest), Higher);
    return {int{highest[0]}, int{highest[1]}};
}

PeakLevels Larger(const PeakLevels& a, const PeakLevels& b) {
    return {std::max(a.left, b.left), std::max(a.right, b.right)};
}
