#pragma once

#include "engine/CutPositions.h"

#include <vector>

/// The stretch that a position lies in: from the last scene change at it or before it, else the
/// beginning, to the first one behind it, else the end.
/// @param sceneChanges  ascending
CutPositions StretchAround(unsigned long long position,
                           const std::vector<unsigned long long>& sceneChanges,
                           unsigned long long length);
