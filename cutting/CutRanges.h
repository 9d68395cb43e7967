#pragma once

#include <span>
#include <string>
#include <vector>

/// A stretch of a file's playing time, in seconds from its beginning; start is not greater than
/// end. The MP3 cutters and the plain WAV cutter take the times in single precision.
struct CutRange {
    double start = 0.0;
    double end = 0.0;
};

/// A range that becomes a file of its own.
struct CutPiece {
    std::string path; ///< the output; an existing file is overwritten. Not the source itself
    CutRange range;
};

/// The ranges in ascending order; those that touch are one.
std::vector<CutRange> MergedRanges(std::span<const CutRange> ranges);
