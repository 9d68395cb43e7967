#include "app/SceneStretch.h"

#include <algorithm>

CutPositions StretchAround(unsigned long long position,
                           const std::vector<unsigned long long>& sceneChanges,
                           unsigned long long length) {
    const auto next = std::ranges::upper_bound(sceneChanges, position);
    return {next == sceneChanges.begin() ? 0 : *std::prev(next),
            next == sceneChanges.end() ? length : *next};
}
