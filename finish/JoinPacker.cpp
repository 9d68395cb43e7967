#include "finish/JoinPacker.h"

#include "finish/SeatWriter.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr long long kAhead = 70;  // frames after which a run is in step, or never
constexpr long long kTail = 120;  // frames of a run that the next join may reach back to
constexpr long long kMovable = 5; // frames by which a join may move
constexpr long long kMade = -1;   // the number of a frame that is made

/// An unpadded frame like this one, to be left empty.
SourceFrame Carrier(const SourceFrame& like) {
    SourceFrame carrier = like;
    carrier.mainData.clear();
    for (unsigned int& bytes : carrier.packed.payloadBytes) {
        bytes -= bytes > 0 ? carrier.facts.padding : 0;
    }
    return carrier;
}

} // namespace

long long JoinPacker::Begin(const FrameRun& run, long long wantedBegin) {
    const long long overlap = m_frames.IsLSF() ? 2 : 1; // two granules
    m_first = std::max(0LL, run.begin - overlap);
    m_frames.Load(m_first - SourceFrames::kReach, m_first + kAhead);
    const SourceFrame* const first = m_frames.Get(m_first);
    if (first == nullptr) {
        return 0;
    }
    const long long samples = m_frames.SamplesPerFrame();
    const unsigned int need =
        m_first == 0 || first->packed.isOpaque ? 0 : first->packed.mainDataBegin;
    m_seated.emplace(kMade, Carrier(*first));
    const PackedFrame& like = m_seated.at(kMade).packed;
    constexpr unsigned int kMostCarriers = 2;
    unsigned int index = like.bitrateIndex;
    const auto needed = [&] {
        return (need + like.payloadBytes[index] - 1) / like.payloadBytes[index];
    };
    m_carriers = need == 0 ? 0 : like.payloadBytes[index] > 0 ? needed() : kMostCarriers + 1;
    while (m_carriers > kMostCarriers && index + 1 < like.payloadBytes.size()) {
        // One larger frame: players decode only a few frames ahead of the first one wanted.
        ++index;
        m_carriers = like.payloadBytes[index] >= need ? 1 : m_carriers;
    }
    if (m_carriers == 0 && wantedBegin - m_first * samples < kDecoderDelay) {
        m_carriers = 1; // the delay would be negative
    }
    m_packer.AddCarriers(like, index, m_carriers, need);
    return run.begin - m_first + m_carriers;
}

const SourceFrame& JoinPacker::FirstFrame() const {
    return *m_frames.Get(m_first);
}

void JoinPacker::WriteFirst(const FrameRun& run) {
    const auto trial = TryRun(m_packer, m_first, run.end);
    if (trial) {
        Commit(*trial, m_first);
    }
    Finish(run, trial ? trial->next : m_first);
}

JoinPacker::Join JoinPacker::WriteNext(FrameRun& before, FrameRun& run) {
    m_behind.clear();
    for (long long number = before.end; number < before.end + kMovable; ++number) {
        if (const SourceFrame* const frame = m_frames.Get(number)) {
            m_behind.emplace(number, *frame);
        }
    }
    m_frames.Load(run.begin - kMovable - SourceFrames::kReach, run.begin + kMovable + kAhead);
    Join join;
    std::optional<Trial> trial;
    const FrameRun asked = run;
    for (int distance = 0; !trial && distance <= kMovable; ++distance) {
        trial = TryMoved(before, run, distance);
        join.framesMoved = distance;
    }
    if (!trial) {
        join.framesMoved = 0;
        run = asked;
        trial = Fade(run, join);
    }
    Commit(*trial, run.begin);
    Finish(run, trial->next);
    return join;
}

void JoinPacker::End() {
    Write(m_packer.Seats().size());
}

/// Places frames until one is in step with its source: all that follow it are then too.
std::optional<JoinPacker::Trial> JoinPacker::TryRun(MainDataPacker packer, long long begin,
                                                    long long end) const {
    constexpr long long kMostLate = 64;
    long long number = begin;
    for (; number < end && m_frames.Get(number) != nullptr; ++number) {
        const auto placed = packer.Place(m_frames.Get(number)->packed, number);
        if (placed == MainDataPacker::Placed::InStep) {
            return Trial{std::move(packer), number + 1};
        }
        if (placed == MainDataPacker::Placed::DoesNotFit || number - begin >= kMostLate) {
            return std::nullopt;
        }
    }
    return Trial{std::move(packer), number};
}

/// Places a run behind what is there, with more room before it where that is needed.
std::optional<JoinPacker::Trial> JoinPacker::TryJoin(const MainDataPacker& packer, long long begin,
                                                     long long end) const {
    MainDataPacker joined = packer;
    joined.BeginRun();
    if (auto trial = TryRun(joined, begin, end)) {
        return trial;
    }
    MainDataPacker enlarged = packer;
    if (!enlarged.Enlarge(Frame(begin).packed.mainDataBegin)) {
        return std::nullopt;
    }
    enlarged.BeginRun();
    return TryRun(std::move(enlarged), begin, end);
}

/// The frames before a join, with so many more of them, or less.
std::optional<MainDataPacker> JoinPacker::WithEndMoved(long long end, int frames) const {
    MainDataPacker packer = m_packer;
    for (int i = 0; i > frames; --i) {
        if (packer.Seats().size() < 2 || packer.Seats().back().id == kMade) {
            return std::nullopt;
        }
        packer.Pop();
    }
    for (int i = 0; i < frames; ++i) {
        const auto behind = m_behind.find(end + i);
        if (behind == m_behind.end() || packer.Place(behind->second.packed, behind->first) ==
                                            MainDataPacker::Placed::DoesNotFit) {
            return std::nullopt;
        }
    }
    return packer;
}

/// Tries all ways to move the end before the join and the beginning behind it by so many frames in
/// all; changes both as the first that works.
std::optional<JoinPacker::Trial> JoinPacker::TryMoved(FrameRun& before, FrameRun& run,
                                                      int distance) const {
    for (int endMoved = -distance; endMoved <= distance; ++endMoved) {
        const int rest = distance - std::abs(endMoved);
        for (const int beginMoved : {-rest, rest}) {
            const FrameRun left{before.begin, before.end + endMoved};
            const FrameRun right{run.begin + beginMoved, run.end};
            const bool isPossible = left.begin < left.end && right.begin < right.end &&
                                    left.end < right.begin && m_frames.Get(right.begin) != nullptr;
            const auto packer =
                isPossible ? WithEndMoved(before.end, endMoved) : std::optional<MainDataPacker>();
            auto trial = packer ? TryJoin(*packer, right.begin, right.end) : std::optional<Trial>();
            if (trial) {
                before = left;
                run = right;
                return trial;
            }
        }
    }
    return std::nullopt;
}

/// Gives up the sound of as few frames behind the join as it takes to have room for the others.
JoinPacker::Trial JoinPacker::Fade(const FrameRun& run, Join& join) const {
    MainDataPacker packer = m_packer;
    packer.BeginRun();
    long long number = run.begin;
    while (number < run.end && m_frames.Get(number) != nullptr) {
        packer.PlaceEmpty(m_frames.Get(number)->packed, number);
        ++number;
        ++join.framesFaded;
        if (auto trial = TryRun(packer, number, run.end)) {
            return *std::move(trial);
        }
    }
    return {packer, number};
}

const SourceFrame& JoinPacker::Frame(long long number) const {
    if (const SourceFrame* const frame = m_frames.Get(number)) {
        return *frame;
    }
    return m_behind.at(number);
}

void JoinPacker::Commit(const Trial& trial, long long begin) {
    m_packer = trial.packer;
    for (const auto& [number, frame] : m_behind) {
        m_seated.insert_or_assign(number, frame);
    }
    for (long long number = begin; number < trial.next; ++number) {
        m_seated.insert_or_assign(number, Frame(number));
    }
}

/// Writes the rest of a run, all of it in step.
void JoinPacker::Finish(const FrameRun& run, long long next) {
    PlaceUpTo(next, std::min(run.end, m_frames.Next()));
    if (run.end - m_frames.Next() > 2 * kTail) {
        Write(m_packer.Seats().size());
        m_packer.Restart();
        m_frames.Pass(run.end - kTail,
                      [&](std::span<const std::uint8_t> frame) { m_file.WriteFrame(frame); });
    }
    const long long begin = std::max(next, std::min(m_frames.Next(), run.end));
    m_frames.Load(begin, run.end + kMovable);
    PlaceUpTo(begin, run.end);
}

void JoinPacker::PlaceUpTo(long long next, long long end) {
    constexpr std::size_t kMostSeats = 400;
    for (; next < end && m_frames.Get(next) != nullptr; ++next) {
        const SourceFrame& frame = *m_frames.Get(next);
        if (m_packer.Place(frame.packed, next) == MainDataPacker::Placed::DoesNotFit) {
            PackedFrame opaque = frame.packed;
            opaque.isOpaque = true;
            m_packer.Place(opaque, next);
        }
        m_seated.insert_or_assign(next, frame);
        if (m_packer.Seats().size() > kMostSeats) {
            Write(m_packer.Settled());
        }
    }
}

void JoinPacker::Write(std::size_t seats) {
    WriteSeats(m_packer, seats, m_seated, m_file);
    const long long first =
        m_packer.Seats().empty() ? m_frames.Next() : m_packer.Seats().front().id;
    std::erase_if(m_seated, [&](const auto& seated) {
        return seated.first != kMade && first != kMade && seated.first < first;
    });
}
