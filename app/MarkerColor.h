#pragma once

#include "app/Markers.h"

#include <QColor>

inline QColor MarkerColor(const MarkerStyle& style) {
    constexpr std::uint32_t kByte = 0xFF;
    return {static_cast<int>(style.color & kByte), static_cast<int>(style.color >> 8 & kByte),
            static_cast<int>(style.color >> 16 & kByte)};
}
