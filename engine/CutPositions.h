#pragma once

#include <limits>

/// A start or an end that is not set.
inline constexpr unsigned long long kUnsetPosition = std::numeric_limits<unsigned long long>::max();

/// Start and end of a range, as byte positions in the decoded stream of a file. Each may be unset,
/// and the start may lie behind the end.
struct CutPositions {
    unsigned long long start = kUnsetPosition;
    unsigned long long end = kUnsetPosition;

    bool operator==(const CutPositions&) const = default;
};
