#include "finish/FrameRuns.h"

#include <algorithm>
#include <cmath>

namespace {

void Append(std::vector<FrameRun>& runs, const FrameRun& run) {
    if (run.begin >= run.end) {
        return;
    }
    if (!runs.empty() && runs.back().end == run.begin) {
        runs.back().end = run.end;
    } else {
        runs.push_back(run);
    }
}

/// The frames of a span that some gaps leave over, which may overlap.
/// @param gaps  by where they begin
std::vector<FrameRun> Without(FrameRun span, std::span<const FrameRun> gaps) {
    std::vector<FrameRun> runs;
    for (const FrameRun& gap : gaps) {
        Append(runs, {span.begin, std::min(gap.begin, span.end)});
        span.begin = std::max(span.begin, gap.end);
    }
    Append(runs, span);
    return runs;
}

} // namespace

/// Frames behind the last one follow it.
long long FrameRuns::FrameAt(long long place) const {
    for (const FrameRun& run : m_held) {
        if (place < run.end - run.begin || &run == &m_held.back()) {
            return run.begin + place;
        }
        place -= run.end - run.begin;
    }
    return place;
}

std::optional<long long> FrameRuns::PlaceOf(long long frame) const {
    long long place = 0;
    for (const FrameRun& run : m_held) {
        if (frame < run.end) {
            return frame < run.begin ? std::nullopt : std::optional(place + frame - run.begin);
        }
        place += run.end - run.begin;
    }
    return std::nullopt;
}

long long FrameRuns::Map(long long position) const {
    return FrameAt(position / m_samples) * m_samples + position % m_samples;
}

/// Of the file that the edits began with. At either end of this, the mark that is there already.
SampleSpan FrameRuns::Map(const CutRange& range, double rateHz) const {
    const long long begin = SampleAt(range.start, rateHz);
    SampleSpan mapped{begin == 0 ? m_wanted.begin : Map(begin), m_wanted.end};
    if (std::isfinite(range.end)) {
        // At a join something ends with what is before it.
        const long long end = SampleAt(range.end, rateHz);
        mapped.end = end == 0 ? Map(0) : Map(end - 1) + 1;
    }
    return mapped;
}

std::vector<FrameRun> FrameRuns::HeldAfter(const std::vector<FrameRun>& left) const {
    std::vector<FrameRun> held;
    for (const FrameRun& taken : left) {
        long long place = 0; // of a run's first frame
        for (const FrameRun& run : m_held) {
            const long long size = run.end - run.begin;
            Append(held, {run.begin + std::max(0LL, taken.begin - place),
                          run.begin + std::min(size, taken.end - place)});
            place += size;
        }
    }
    return held;
}

FrameRuns FrameRuns::Narrowed(const CutRange& range, double rateHz) const {
    const SampleSpan asked = Map(range, rateHz);
    FrameRuns narrowed = *this;
    narrowed.m_wanted = {std::max(m_wanted.begin, asked.begin), std::min(m_wanted.end, asked.end)};
    return narrowed;
}

/// The frames that a removal has taken out from between others.
FrameRun FrameRuns::Between(const FrameEdit& edit) const {
    if (edit.left.size() > 1) {
        return {FrameAt(edit.left.front().end - 1) + 1, FrameAt(edit.left.back().begin)};
    }
    const long long end = (SampleAt(edit.range.end, edit.rateHz) + edit.samples - 1) / edit.samples;
    if (edit.left.empty() || edit.left.front().end >= end) {
        return {};
    }
    // Nothing was left behind it, as the last frame always goes.
    return {FrameAt(edit.left.front().end - 1) + 1, FrameAt(end - 1) + 1};
}

FrameRuns FrameRuns::After(const FrameEdit& edit) const {
    FrameRuns before = *this;
    before.m_samples = m_held.back().end == kUnlimited ? edit.samples : m_samples;
    FrameRuns after = edit.keep ? before.Narrowed(edit.range, edit.rateHz) : before;
    after.m_held = before.HeldAfter(edit.left);
    if (edit.keep) {
        return after;
    }
    const SampleSpan asked = before.Map(edit.range, edit.rateHz);
    if (asked.end >= m_wanted.end) {
        after.m_wanted.end = std::min(m_wanted.end, asked.begin);
    } else if (asked.begin <= m_wanted.begin) {
        after.m_wanted.begin = std::max(m_wanted.begin, asked.end);
    } else {
        const Gap gap{before.Between(edit), asked};
        after.m_gaps.insert(std::ranges::upper_bound(after.m_gaps, BeginOf(gap), {}, &BeginOf),
                            gap);
    }
    return after;
}

FinishPlan FrameRuns::Plan(const FrameGrid& grid) const {
    const long long samples = grid.samplesPerFrame;
    FinishPlan plan;
    plan.wanted = {std::max(m_wanted.begin, grid.music.begin),
                   std::min(m_wanted.end, grid.music.end)};
    std::vector<FrameRun> gaps;
    for (const Gap& gap : m_gaps) {
        // What stands before and behind the music would not be heard.
        if (gap.asked.end >= grid.music.end) {
            plan.wanted.end = std::min(plan.wanted.end, gap.asked.begin);
        } else if (gap.asked.begin <= grid.music.begin) {
            plan.wanted.begin = std::max(plan.wanted.begin, gap.asked.end);
        } else {
            gaps.push_back(gap.frames);
        }
    }
    if (plan.wanted.begin < plan.wanted.end) {
        plan.runs =
            Without({plan.wanted.begin / samples, (plan.wanted.end + samples - 1) / samples}, gaps);
    }
    if (!plan.runs.empty()) {
        plan.wanted.begin = std::max(plan.wanted.begin, plan.runs.front().begin * samples);
        plan.wanted.end = std::min(plan.wanted.end, plan.runs.back().end * samples);
    }
    return AtFrames(grid, std::move(plan));
}
