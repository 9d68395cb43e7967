#pragma once

#include <array>
#include <cstdint>

/// The colour of each distance from the centre line of a wave image, in pixels. In memory a colour
/// is the bytes R, G, B and one that is not used.
using LevelColors = std::array<std::uint32_t, 101>;

/// From green at the centre line to red at half the height; black (0) is the centre line itself and
/// what lies beyond.
/// @param height  of the image, in pixels
LevelColors MakeLevelColors(int height);
