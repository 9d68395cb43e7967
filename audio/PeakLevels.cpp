#include "audio/PeakLevels.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace {

/// Eight samples in one register (GCC and Clang); the compilers do not find this by themselves, and
/// what they do instead costs a seventh of the time that decoding takes.
using Lanes = std::int16_t __attribute__((vector_size(16)));
constexpr std::size_t kLanes = sizeof(Lanes) / sizeof(std::int16_t);

/// Running extremes; as the number of lanes is even, a lane always holds the same side.
struct Extremes {
    Lanes lowest{};
    Lanes highest{};

    void Add(const std::int16_t* samples, std::size_t count = kLanes) {
        Lanes lanes{};
        std::memcpy(&lanes, samples, count * sizeof(std::int16_t));
        lowest = lanes < lowest ? lanes : lowest;
        highest = lanes > highest ? lanes : highest;
    }

    float Peak(std::size_t parity) const {
        int peak = 0;
        for (std::size_t lane = parity; lane < kLanes; lane += 2) {
            peak = std::max({peak, -int{lowest[lane]}, int{highest[lane]}});
        }
        return static_cast<float>(peak) / 32768.0F;
    }
};

/// The even and the odd samples' peaks.
PeakLevels MeasureAlternating(std::span<const std::int16_t> samples) {
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
    if (left > 0) {
        first.Add(from, left);
    }
    return Larger({first.Peak(0), first.Peak(1)}, {second.Peak(0), second.Peak(1)});
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
