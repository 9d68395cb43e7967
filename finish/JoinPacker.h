#pragma once

#include "finish/FinishPlan.h"
#include "finish/FinishedFile.h"
#include "finish/MainDataPacker.h"
#include "finish/SourceFrames.h"

#include <map>
#include <optional>

/// Writes the runs of a Layer III source to a file, so that each frame behind a join is decoded
/// from all of its main data.
class JoinPacker {
public:
    /// How a join came out.
    struct Join {
        int framesMoved = 0;
        int framesFaded = 0;
    };

    JoinPacker(SourceFrames& frames, FinishedFile& file) : m_frames(frames), m_file(file) {}

    /// Loads what the first run needs.
    /// @return how many frames will stand before its first one: some that exist, and some that are
    ///         made
    long long Begin(const FrameRun& run, long long wantedBegin);
    /// To be written; after Begin.
    const SourceFrame& FirstFrame() const;

    /// Writes the first run.
    void WriteFirst(const FrameRun& run);
    /// Writes a run behind the one before. Both may change by a few frames.
    Join WriteNext(FrameRun& before, FrameRun& run);
    /// Writes what is still held back.
    void End();

    /// How many frames there are in front of the place that comes next.
    long long FramesBefore() const {
        return m_file.Frames() + static_cast<long long>(m_packer.Seats().size());
    }

private:
    struct Trial {
        MainDataPacker packer;
        long long next = 0; // the frame behind the last one placed
    };

    std::optional<Trial> TryRun(MainDataPacker packer, long long begin, long long end) const;
    std::optional<Trial> TryJoin(const MainDataPacker& packer, long long begin,
                                 long long end) const;
    std::optional<MainDataPacker> WithEndMoved(long long end, int frames) const;
    std::optional<Trial> TryMoved(FrameRun& before, FrameRun& run, int distance) const;
    Trial Fade(const FrameRun& run, Join& join) const;
    const SourceFrame& Frame(long long number) const;
    void Commit(const Trial& trial, long long begin);
    void Finish(const FrameRun& run, long long next);
    void PlaceUpTo(long long next, long long end);
    void Write(std::size_t seats);

    SourceFrames& m_frames;
    FinishedFile& m_file;
    MainDataPacker m_packer;
    std::map<long long, SourceFrame> m_seated; // by number; those of seats that are not yet written
    std::map<long long, SourceFrame> m_behind; // the frames behind the last run
    long long m_first = 0;                     // the first frame that is written
    unsigned int m_carriers = 0;
};
