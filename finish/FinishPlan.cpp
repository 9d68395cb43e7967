#include "finish/FinishPlan.h"

#include <algorithm>
#include <cmath>

namespace {

/// Within the music.
long long PositionOf(const FrameGrid& grid, double seconds) {
    return std::clamp(SampleAt(seconds, grid.rateHz), grid.music.begin, grid.music.end);
}

long long FrameUnder(const FrameGrid& grid, long long position) {
    return position / grid.samplesPerFrame;
}

long long FrameBehind(const FrameGrid& grid, long long position) {
    return (position + grid.samplesPerFrame - 1) / grid.samplesPerFrame;
}

long long NearestFrame(const FrameGrid& grid, long long position) {
    return (position + grid.samplesPerFrame / 2) / grid.samplesPerFrame;
}

} // namespace

long long SampleAt(double seconds, double rateHz) {
    constexpr double kRounding = 1e-6;
    constexpr double kMost = 1e15; // more than any file has
    return static_cast<long long>(std::min(std::floor(seconds * rateHz + kRounding), kMost));
}

FinishPlan AtFrames(const FrameGrid& grid, FinishPlan plan) {
    if (grid.hasEdges || plan.runs.empty()) {
        return plan;
    }
    FrameRun& first = plan.runs.front();
    FrameRun& last = plan.runs.back();
    first.begin = std::min(NearestFrame(grid, plan.wanted.begin), first.end - 1);
    last.end = std::max(NearestFrame(grid, plan.wanted.end), last.begin + 1);
    return plan;
}

FinishPlan PlanExtract(const FrameGrid& grid, const CutRange& range) {
    FinishPlan plan;
    plan.wanted = {PositionOf(grid, range.start), PositionOf(grid, range.end)};
    if (plan.wanted.begin < plan.wanted.end) {
        plan.runs = {{FrameUnder(grid, plan.wanted.begin), FrameBehind(grid, plan.wanted.end)}};
    }
    return AtFrames(grid, std::move(plan));
}

FinishPlan PlanRemoval(const FrameGrid& grid, std::span<const CutRange> ranges) {
    FinishPlan plan;
    plan.wanted = grid.music;
    FrameRun run{0, FrameBehind(grid, grid.music.end)};
    for (const CutRange& range : MergedRanges(ranges)) {
        const long long from = PositionOf(grid, range.start);
        const long long to = PositionOf(grid, range.end);
        if (to >= grid.music.end) {
            plan.wanted.end = from;
            run.end = FrameBehind(grid, from);
        } else if (from <= grid.music.begin || NearestFrame(grid, from) <= run.begin) {
            if (plan.runs.empty()) {
                plan.wanted.begin = to;
                run.begin = FrameUnder(grid, to);
            } else {
                run.begin = std::max(run.begin, NearestFrame(grid, to));
            }
        } else if (NearestFrame(grid, from) >= NearestFrame(grid, to)) {
            ++plan.idleRemovals;
        } else {
            plan.runs.push_back({run.begin, NearestFrame(grid, from)});
            run.begin = NearestFrame(grid, to);
        }
    }
    if (run.begin < run.end) {
        plan.runs.push_back(run);
    } else if (!plan.runs.empty()) {
        plan.wanted.end = std::min(plan.wanted.end, plan.runs.back().end * grid.samplesPerFrame);
    }
    if (plan.wanted.begin >= plan.wanted.end) {
        plan.runs.clear();
    }
    return AtFrames(grid, std::move(plan));
}
