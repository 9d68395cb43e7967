#pragma once

#include "cutting/CutRanges.h"
#include "finish/FrameRuns.h"

#include <optional>
#include <string>

/// What edits have made of a file, one after the other.
struct EditedAudio {
    FrameRuns runs;
    /// The file that they have made. What is finished is compared with it; empty: with nothing.
    std::string path;
    /// Only this of it, see FrameRuns::Narrowed.
    std::optional<CutRange> range{};

    FinishPlan Plan(const FrameGrid& grid) const {
        return (range ? runs.Narrowed(*range, grid.rateHz) : runs).Plan(grid);
    }
};
