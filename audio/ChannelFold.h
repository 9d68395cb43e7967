#pragma once

#include <cstdint>
#include <span>
#include <vector>

/// How many channels a stream is played with: its own number where devices take that many, else 2.
std::uint32_t PlayedChannels(std::uint32_t channels);

/// Folds sample frames down to two channels: the means of the even and of the odd ones.
/// @param channels  at least 2
/// @param folded    resized to the result
void FoldToStereo(std::span<const std::int16_t> samples, std::uint32_t channels,
                  std::vector<std::int16_t>& folded);
