#include "audio/PeakLevels.h"

#include "audio/SampleLanes.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>

namespace {

/// Running extremes; as the number of lanes is even, a lane always holds the same side.
struct Extremes {
    Lanes lowest{};
    Lanes highest{};

    void Add(const std::int16_t* samples, std::size_t count = kLanes) {
        Lanes lanes{};
        std::memcpy(&lanes, samples, count * sizeof(std::int16_t));
        lowest = Lower(lanes, lowest);
        highest = Higher(lanes, highest);
    }

    void Add(const Extremes& other) {
        lowest = Lower(other.lowest, lowest);
        highest = Higher(other.highest, highest);
    }

    PeakSamples Peaks() const {
        const Lanes low = Fold(lowest, Lower);
        const Lanes high = Fold(highest, Higher);
        const auto peak = [&](std::size_t side) {
            return std::max(-int{low[side]}, int{high[side]});
        };
        return {peak(0), peak(1)};
    }
};

/// The even and the odd samples' peaks.
PeakSamples MeasureAlternating(std::span<const std::int16_t> samples) {
    // Two, so that one need not wait for the other's result.
    Extremes first;
    Extremes second;
    const std::int16_t* from = samples.data();
    std::size_t left = samples.size();
    for (; left >= 2 * kLanes; left -= 2 * kLanes, from += 2 * kLanes) {
        first.Add(from);
        second.Add(from + kLanes);
    }
    for (; left >= kLanes; left -= kLanes, from += kLanes) {
        first.Add(from);
    }
    if (left > 0 && samples.size() >= kLanes && left % 2 == 0) {
        first.Add(from + left - kLanes); // some once more; a copy of a changing size takes longer
    } else if (left > 0) {
        first.Add(from, left);
    }
    first.Add(second);
    return first.Peaks();
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
