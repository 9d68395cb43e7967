#include "audio/ChannelFold.h"

#include <algorithm>
#include <iterator>

std::uint32_t PlayedChannels(std::uint32_t channels) {
    constexpr std::uint32_t kPlayable[] = {1, 2, 4, 6, 8};
    return std::ranges::find(kPlayable, channels) != std::end(kPlayable) ? channels : 2;
}

void FoldToStereo(std::span<const std::int16_t> samples, std::uint32_t channels,
                  std::vector<std::int16_t>& folded) {
    folded.clear();
    if (channels < 2) {
        return;
    }
    for (std::size_t begin = 0; begin < samples.size(); begin += channels) {
        int sums[2] = {0, 0};
        for (std::size_t channel = 0; channel < channels; ++channel) {
            sums[channel % 2] += samples[begin + channel];
        }
        folded.push_back(static_cast<std::int16_t>(sums[0] / static_cast<int>((channels + 1) / 2)));
        folded.push_back(static_cast<std::int16_t>(sums[1] / static_cast<int>(channels / 2)));
    }
}
