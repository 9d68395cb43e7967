#pragma once

#include "cutting/CutRanges.h"
#include "finish/GaplessEdges.h"

#include <span>
#include <vector>

/// Consecutive audio frames [begin, end) of a source, counted from 0 without that of its header.
struct FrameRun {
    long long begin = 0;
    long long end = 0;

    friend bool operator==(const FrameRun&, const FrameRun&) = default;
};

/// What a finished file is made of.
struct FinishPlan {
    std::vector<FrameRun> runs; ///< ascending, apart, none of them empty; none: nothing is left
    SampleSpan wanted;          ///< the first and the last sample frame that are wanted
    int idleRemovals = 0;       ///< that are shorter than a frame and remove nothing
};

/// What there is to plan with.
struct FrameGrid {
    unsigned int samplesPerFrame = 0;
    unsigned int rateHz = 0;
    SampleSpan music;     ///< see MusicOf
    bool hasEdges = true; ///< begins and ends within a frame: Layer III
};

/// The sample frame that a time lies in; a millionth of one is allowed for rounding.
/// @param seconds  finite
long long SampleAt(double seconds, double rateHz);

/// What is kept of one range, exactly.
FinishPlan PlanExtract(const FrameGrid& grid, const CutRange& range);

/// What is kept where ranges are removed: inside the music at the nearest frames, at its ends
/// exactly.
FinishPlan PlanRemoval(const FrameGrid& grid, std::span<const CutRange> ranges);

/// Where a result cannot begin and end within a frame: at the frames that are nearest.
FinishPlan AtFrames(const FrameGrid& grid, FinishPlan plan);
