#pragma once

#include <array>
#include <cstddef>

// When the controls of the main window are enabled, and what the zoom commands stand for.

inline constexpr std::array<int, 7> kZoomFactors = {1, 2, 5, 10, 20, 50, 100}; ///< of the menu

constexpr bool IsZoomAllowed(int factor, int maxZoom) {
    return factor == 1 || factor <= maxZoom;
}

/// The next factor of the menu above a zoom factor, the largest allowed one where that is less.
constexpr int ZoomAbove(int zoom, int maxZoom) {
    for (const int factor : kZoomFactors) {
        if (factor > zoom) {
            return IsZoomAllowed(factor, maxZoom) ? factor : maxZoom;
        }
    }
    return zoom;
}

/// The next factor of the menu below a zoom factor; 1 below 1.
constexpr int ZoomBelow(int zoom) {
    int below = 1;
    for (const int factor : kZoomFactors) {
        below = factor < zoom ? factor : below;
    }
    return below;
}

/// Cutting, extracting and saving a range need both ends of it.
/// @param definedPositions  how many places the cut positions name
constexpr bool CanCut(int definedPositions) {
    return definedPositions == 2;
}

constexpr bool CanSplit(int definedPositions) {
    return definedPositions > 0;
}

/// The opened file itself, the only entry at first, need not be saved.
constexpr bool CanSave(std::size_t historyEntries) {
    return historyEntries > 1;
}

constexpr bool CanMoveBetweenScenes(std::size_t sceneChanges) {
    return sceneChanges >= 2;
}
