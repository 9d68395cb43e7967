#include "finish/FrameRuns.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <set>

namespace {

using Frames = std::vector<long long>;

std::vector<FrameRun> RunsOf(const Frames& frames) {
    std::vector<FrameRun> runs;
    for (const long long frame : frames) {
        if (runs.empty() || runs.back().end != frame) {
            runs.push_back({frame, frame});
        }
        ++runs.back().end;
    }
    return runs;
}

/// The result of edits, frame by frame.
struct Model {
    long long samples; // of a frame
    Frames held;       // of the file that the edits began with
    std::set<long long> removed{};
    SampleSpan wanted;

    long long Length() const { return static_cast<long long>(held.size()) * samples; }
    long long Source(long long position) const {
        return held[static_cast<std::size_t>(position / samples)] * samples + position % samples;
    }
    Frames Part(long long begin, long long end) const {
        const auto size = static_cast<long long>(held.size());
        begin = std::clamp(begin, 0LL, size);
        end = std::clamp(end, begin, size);
        return {held.begin() + begin, held.begin() + end};
    }

    /// Cuts as the cutters do: whole frames, perhaps without the first one and the last one.
    /// @return the frames of this that are left
    Frames Edit(bool keep, long long from, long long to, long long lost) {
        const long long first = from / samples + lost;
        const long long behind = (to + samples - 1) / samples + lost;
        const bool isWAV = samples == 1;
        const SampleSpan asked{from == 0 ? wanted.begin : Source(from),
                               to == Length() ? wanted.end : Source(to - 1) + 1};
        Frames left = Part(first, isWAV ? behind : behind + 1);
        if (keep) {
            wanted = {std::max(wanted.begin, asked.begin), std::min(wanted.end, asked.end)};
        } else {
            left = Part(lost, isWAV ? first : first + 1);
            const Frames tail = Part(behind, static_cast<long long>(held.size()) - (isWAV ? 0 : 1));
            if (asked.end >= wanted.end) {
                wanted.end = std::min(wanted.end, asked.begin);
            } else if (asked.begin <= wanted.begin) {
                wanted.begin = std::max(wanted.begin, asked.end);
            } else if (!left.empty()) {
                const long long end = tail.empty() ? (asked.end + samples - 1) / samples : tail[0];
                for (long long frame = left.back() + 1; frame < end; ++frame) {
                    removed.insert(frame);
                }
            }
            left.insert(left.end(), tail.begin(), tail.end());
        }
        Frames places;
        for (const long long frame : left) {
            places.push_back(std::ranges::find(held, frame) - held.begin());
        }
        held = left;
        return places;
    }
};

} // namespace

TEST(FrameRuns, FollowEveryChainOfEdits) {
    constexpr long long kFrames = 300;
    for (unsigned int seed = 0; seed < 200; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto below = [&](long long limit) {
            return static_cast<long long>(random() % static_cast<unsigned long long>(limit));
        };
        Model model{seed % 3 == 0 ? 1LL : 10LL, {}, {}, {0, 0}};
        for (long long frame = 0; frame < kFrames; ++frame) {
            model.held.push_back(frame);
        }
        model.wanted.end = model.Length();
        const long long lost = model.samples > 1 && seed % 2 == 0 ? 1 : 0;
        const FrameGrid grid{.samplesPerFrame = static_cast<unsigned int>(model.samples),
                             .rateHz = 1,
                             .music = {0, kFrames * model.samples}};
        FrameRuns runs;
        for (int edit = 0; edit < 12 && model.held.size() > 8; ++edit) {
            const bool keep = below(3) == 0;
            const long long length = model.Length();
            const long long size = keep ? length / 2 : length / 5;
            long long from = below(length - size);
            long long to = from + 1 + below(size);
            from = below(6) == 0 ? 0 : from;
            to = below(6) == 0 ? length : to;
            const bool isToEnd = to == length;
            const CutRange asked{static_cast<double>(from),
                                 isToEnd ? HUGE_VAL : static_cast<double>(to)};
            const auto narrowed = runs.Narrowed(asked, 1.0).Plan(grid).wanted;
            if (keep) {
                Model range = model;
                range.Edit(true, from, to, lost);
                if (range.wanted.begin < range.wanted.end && range.removed.empty()) {
                    EXPECT_EQ(narrowed.begin, range.wanted.begin);
                    EXPECT_EQ(narrowed.end, range.wanted.end);
                }
            }
            const std::vector<FrameRun> left = RunsOf(model.Edit(keep, from, to, lost));
            runs = runs.After({keep, asked, 1.0, model.samples, left});
            ASSERT_EQ(runs.Held(), RunsOf(model.held)) << edit;
            Frames wanted;
            const FinishPlan plan = runs.Plan(grid);
            for (long long frame = 0; model.wanted.begin < model.wanted.end && frame < kFrames;
                 ++frame) {
                if (frame >= model.wanted.begin / model.samples &&
                    frame * model.samples < model.wanted.end && !model.removed.contains(frame)) {
                    wanted.push_back(frame);
                }
                const auto held = std::ranges::find(model.held, frame);
                EXPECT_EQ(runs.PlaceOf(frame), held == model.held.end()
                                                   ? std::nullopt
                                                   : std::optional(held - model.held.begin()));
            }
            ASSERT_EQ(plan.runs, RunsOf(wanted)) << edit;
        }
    }
}

TEST(FrameRuns, EndWithTheMusicOfTheFileAndWhereTheMarksAre) {
    // The encoder has put 15 samples in front and 25 behind.
    const FrameGrid grid{.samplesPerFrame = 10, .rateHz = 1, .music = {15, 275}};
    const auto wanted = [&](const FrameRuns& runs) {
        const FinishPlan plan = runs.Plan(grid);
        return std::pair(plan.wanted.begin, plan.wanted.end);
    };
    const auto removal = [](long long from, long long to) {
        const double end = to == 300 ? HUGE_VAL : static_cast<double>(to);
        return FrameEdit{
            false, {static_cast<double>(from), end}, 1.0, 10, {{0, from / 10 + 1}, {to / 10, 29}}};
    };
    EXPECT_EQ(wanted(FrameRuns()), std::pair(15LL, 275LL));
    EXPECT_EQ(wanted(FrameRuns().After(removal(12, 54))), std::pair(54LL, 275LL));
    EXPECT_EQ(wanted(FrameRuns().After(removal(203, 280))), std::pair(15LL, 203LL));
    EXPECT_EQ(wanted(FrameRuns().After(removal(203, 300))), std::pair(15LL, 203LL));
    const FrameRuns joined = FrameRuns().After(removal(103, 204));
    EXPECT_EQ(wanted(joined), std::pair(15LL, 275LL));
    EXPECT_EQ(joined.Plan(grid).runs, (std::vector<FrameRun>{{1, 11}, {20, 28}}));
    // Behind the join everything lies 90 samples further back.
    EXPECT_EQ(wanted(joined.Narrowed({20.0, 125.0}, 1.0)), std::pair(20LL, 215LL));
}
