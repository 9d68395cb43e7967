#pragma once

#include "finish/FinishPlan.h"

#include <vector>

/// What one file holds of another, in frames of an MP3 or sample frames of a WAV, counted from 0.
/// Every frame of the result is in one of the three lists.
struct Comparison {
    /// Consecutive frames of the result that are consecutive frames of the source, byte for byte.
    struct Run {
        long long result = 0; ///< the first one in the result
        long long source = 0; ///< the first one in the source
        long long count = 0;

        friend bool operator==(const Run&, const Run&) = default;
    };

    std::vector<Run> runs;         ///< ascending in the result
    std::vector<FrameRun> altered; ///< of the result: by making joins, see MatchFrames
    std::vector<FrameRun> foreign; ///< of the result: from elsewhere

    /// Of the result.
    long long CountFrames() const;
};

/// How many frames the stretches have.
long long CountFrames(const std::vector<FrameRun>& stretches);

/// Puts a frame behind the stretches, into the last one where it adjoins that.
void AppendFrame(std::vector<FrameRun>& stretches, long long frame);
