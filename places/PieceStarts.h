#pragma once

#include <vector>

/// Leaves out places until no piece between two of them, before the first or behind the last is
/// shorter than so many seconds, and none without need: as many stay as can.
/// @param places  seconds, ascending, inside the recording
/// @param length  of the recording, seconds
std::vector<double> WithoutShortPieces(const std::vector<double>& places, double length,
                                       double leastSeconds);
