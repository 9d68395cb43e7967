#pragma once

/// Width and height in pixels.
struct SIZE {
    int width = 0;
    int height = 0;

    bool operator==(const SIZE&) const = default;
};
