#pragma once

#include "cutting/CutRanges.h"
#include "finish/FinishPlan.h"

#include <optional>
#include <span>
#include <vector>

/// What the cutter has made of a file.
struct FrameEdit {
    bool keep = true;      ///< only the range, or everything but it
    CutRange range;        ///< that was asked for; an infinite end is the end of the file
    double rateHz = 0.0;   ///< sample frames in a second of playing time
    long long samples = 1; ///< of each channel in a frame; 1 of a WAV, whose frames are its samples
    std::vector<FrameRun> left; ///< frames of the file that the result holds, ascending and apart
};

/// What the result of edits, one made from the other, is of the file that they began with: which of
/// its frames the result holds, and what finishing is to make of them.
///
/// The two are not the same. The cutters copy whole frames, lose one here and there and keep one at
/// the beginning that nobody asked for. A finished file begins and ends where the person set the
/// marks, and has all frames but those that were removed. Inside a file a join stays where it was
/// heard.
class FrameRuns {
public:
    /// The file itself, whatever is in it.
    FrameRuns() = default;

    /// What an edit makes of this.
    FrameRuns After(const FrameEdit& edit) const;
    /// Only a range of this, see FrameEdit; the frames that are held stay.
    FrameRuns Narrowed(const CutRange& range, double rateHz) const;

    /// What to write.
    /// @param grid  of the file that the edits began with
    FinishPlan Plan(const FrameGrid& grid) const;

    /// The frames held, ascending, those that adjoin as one.
    const std::vector<FrameRun>& Held() const { return m_held; }
    /// Which of the frames held this one is, from 0; none where it is not among them.
    std::optional<long long> PlaceOf(long long frame) const;

private:
    /// A stretch that was removed.
    struct Gap {
        FrameRun frames; // may be none
        SampleSpan asked;
    };
    static long long BeginOf(const Gap& gap) { return gap.frames.begin; }

    long long FrameAt(long long place) const;
    long long Map(long long position) const;
    SampleSpan Map(const CutRange& range, double rateHz) const;
    std::vector<FrameRun> HeldAfter(const std::vector<FrameRun>& left) const;
    FrameRun Between(const FrameEdit& edit) const;

    static constexpr long long kUnlimited = 1LL << 52; // frames and sample frames: more than any

    std::vector<FrameRun> m_held{{0, kUnlimited}};
    SampleSpan m_wanted{0, kUnlimited};
    std::vector<Gap> m_gaps; // by where they begin; later ones may cover earlier ones
    long long m_samples = 1; // in a frame; of the file itself any number would do
};
