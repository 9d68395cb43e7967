#pragma once

#include <string>

// What the sliders of the list of quiet places stand for, and how it is told.

/// Of the level: half decibels below full scale.
namespace QuietLevelScale {
inline constexpr int kLeast = -180; ///< -90 dB: one step of 16 bits
inline constexpr int kMost = -40;   ///< -20 dB

float LevelOf(int halfDecibels);
/// The nearest step of the slider. Nothing but numbers above 0 is a level.
int StepOf(float level);
/// As decibels and as a share of full scale: -60.0 dB (0.100 %).
std::string TextOf(int halfDecibels);
} // namespace QuietLevelScale

/// Of the length: blocks of 20 ms.
namespace QuietLengthScale {
inline constexpr int kLeast = 1;
inline constexpr int kMost = 250; ///< 5 s

float SecondsOf(int blocks);
int StepOf(float seconds);
} // namespace QuietLengthScale
