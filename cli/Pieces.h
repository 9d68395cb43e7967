#pragma once

#include "cli/Arguments.h"
#include "engine/FormatType.h"

#include <string>
#include <vector>

/// A range in seconds from the beginning of the audio, begin <= end.
struct TimeRange {
    double begin = 0.0;
    double end = 0.0;
};

/// One file that is to be cut from a source.
struct Piece {
    std::string output;
    std::vector<TimeRange> ranges{}; ///< one where it is kept, one or more where they go
    bool keep = true;                ///< true: the range; false: everything but the ranges
    std::string title{};             ///< for its tags, UTF-8; empty where it has none
};

/// Writes all pieces, or none, as the options say: finished, with tags, without replacing anything,
/// or not at all but with a line about each on standard output.
/// @return false after a failure, which has been reported
[[nodiscard]] bool WritePieces(const std::string& source, FormatType format,
                               const std::vector<Piece>& pieces, const Arguments& arguments);
