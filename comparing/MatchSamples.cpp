#include "comparing/MatchSamples.h"

#include "comparing/NextCandidates.h"
#include "comparing/SampleIndex.h"
#include "comparing/SampleReader.h"

#include <algorithm>
#include <functional>
#include <optional>

namespace {

constexpr long long kAnyCount = 1LL << 62;

class SampleMatcher {
public:
    SampleMatcher(SampleReader& source, SampleReader& result)
        : m_source(source), m_result(result), m_index(source),
          m_hash(static_cast<std::size_t>(m_index.Block()), source.FrameBytes()) {}

    Comparison Match() {
        Comparison comparison;
        for (long long next = 0; next < m_result.Count();) {
            const std::optional<Comparison::Run> run = FindRun(next);
            const long long begin = run ? run->result : m_result.Count();
            if (begin > next) {
                comparison.foreign.push_back({next, begin});
            }
            if (run) {
                comparison.runs.push_back(*run);
                m_next = run->source + run->count;
            }
            next = run ? begin + run->count : begin;
        }
        return comparison;
    }

private:
    /// Two places where the files are the same.
    struct Anchor {
        long long source = 0;
        long long result = 0;
    };

    /// The first run at or behind a sample frame of the result; none where there is none any more.
    std::optional<Comparison::Run> FindRun(long long begin) {
        const Anchors anchors = FindAnchors(begin);
        if (anchors.sure) {
            const Comparison::Run run = RunThrough(*anchors.sure, begin);
            if (!anchors.likely || run.result <= anchors.likely->result) {
                return run;
            }
        }
        return anchors.likely ? RunThrough(*anchors.likely, begin) : FindTail(begin);
    }

    Comparison::Run RunThrough(const Anchor& anchor, long long begin) {
        const long long before = CountBefore(anchor, begin);
        return {anchor.result - before, anchor.source - before,
                before + CountFrom(anchor, kAnyCount)};
    }

    /// What is too short for a block: all of it anywhere, or as much of it as the source ends with.
    std::optional<Comparison::Run> FindTail(long long begin) {
        const long long count = m_result.Count() - begin;
        if (count < m_index.Block()) {
            const auto bytes = m_result.Read(begin, count);
            m_read.assign(bytes.begin(), bytes.end());
            const std::optional<long long> place = FindInSource(m_read);
            if (place) {
                return Comparison::Run{begin, *place, count};
            }
        }
        const long long tail = CountBefore({m_source.Count(), m_result.Count()}, begin);
        return tail == 0 ? std::nullopt
                         : std::optional(Comparison::Run{m_result.Count() - tail,
                                                         m_source.Count() - tail, tail});
    }

    /// The first sample frame from which on the source has these bytes.
    std::optional<long long> FindInSource(std::span<const std::uint8_t> bytes) {
        const auto frameBytes = static_cast<std::ptrdiff_t>(m_source.FrameBytes());
        const long long overlap = std::ssize(bytes) / frameBytes - 1;
        const std::boyer_moore_horspool_searcher searcher(bytes.begin(), bytes.end());
        for (long long begin = 0; begin + overlap < m_source.Count();) {
            const long long count = std::min(m_source.MostFrames(), m_source.Count() - begin);
            const auto window = m_source.Read(begin, count);
            for (auto at = window.begin();; ++at) {
                at = searcher(at, window.end()).first;
                if (at == window.end()) {
                    break;
                }
                if ((at - window.begin()) % frameBytes == 0) {
                    return begin + (at - window.begin()) / frameBytes;
                }
            }
            begin += count - overlap;
        }
        return std::nullopt;
    }

    /// What a run can be found by.
    struct Anchors {
        std::optional<Anchor> sure;   ///< a block of which there is only one
        std::optional<Anchor> likely; ///< one before it of which there are many, where most fits
    };

    /// A sure one is looked for behind a likely one too, as far as silence or a test tone may last.
    Anchors FindAnchors(long long begin) {
        constexpr long long kLong = 1024; // blocks
        Anchors anchors;
        m_hash.Restart();
        for (long long read = begin; read < m_result.Count();) {
            const long long count = std::min(m_result.MostFrames(), m_result.Count() - read);
            const std::span<const std::uint8_t> bytes = m_result.Read(read, count);
            // What is looked at in between may take the bytes away.
            m_read.assign(bytes.begin(), bytes.end());
            for (std::size_t i = 0; i < m_read.size(); i += m_result.FrameBytes()) {
                m_hash.Take(&m_read[i]);
                ++read;
                if (m_hash.IsFull()) {
                    NoteAnchor(read - m_index.Block(), anchors);
                }
                if (anchors.sure ||
                    (anchors.likely && read - anchors.likely->result > kLong * m_index.Block())) {
                    return anchors;
                }
            }
        }
        return anchors;
    }

    void NoteAnchor(long long result, Anchors& anchors) {
        const auto found = m_index.Find(m_hash.Get());
        if (found.size() == 1) {
            anchors.sure = LongestOf(found, result);
        } else if (!found.empty() && !anchors.likely) {
            anchors.likely = LongestOf(found, result);
        }
    }

    std::optional<Anchor> LongestOf(std::span<const SampleIndex::Entry> blocks, long long result) {
        constexpr long long kMostFrames = 1 << 16;
        const auto next = static_cast<std::uint64_t>(m_next / m_index.Block());
        Anchor best;
        long long longest = m_index.Block() - 1; // less is no match, whatever the hash says
        for (const SampleIndex::Entry& entry :
             NextCandidates(blocks, next, &SampleIndex::Entry::block)) {
            const Anchor anchor{static_cast<long long>(entry.block) * m_index.Block(), result};
            const long long count = CountFrom(anchor, kMostFrames);
            if (count > longest) {
                longest = count;
                best = anchor;
            }
        }
        return longest < m_index.Block() ? std::nullopt : std::optional(best);
    }

    /// How many sample frames are the same from there on.
    long long CountFrom(Anchor at, long long most) {
        const long long end =
            std::min({most, m_source.Count() - at.source, m_result.Count() - at.result});
        return CountWhile(end, [&](long long done, long long count) {
            const auto ours = m_result.Read(at.result + done, count);
            const auto theirs = m_source.Read(at.source + done, count);
            return std::mismatch(ours.begin(), ours.end(), theirs.begin()).first - ours.begin();
        });
    }

    /// How many are the same before it, none of them before a sample frame of the result.
    long long CountBefore(Anchor at, long long begin) {
        const long long end = std::min(at.source, at.result - begin);
        return CountWhile(end, [&](long long done, long long count) {
            const auto ours = m_result.Read(at.result - done - count, count);
            const auto theirs = m_source.Read(at.source - done - count, count);
            return std::mismatch(ours.rbegin(), ours.rend(), theirs.rbegin()).first - ours.rbegin();
        });
    }

    /// @param compare  tells how many bytes of the next sample frames are the same
    template <typename Compare>
    long long CountWhile(long long end, Compare compare) {
        const auto frameBytes = static_cast<long long>(m_result.FrameBytes());
        for (long long done = 0; done < end;) {
            const long long count = std::min(m_result.MostFrames(), end - done);
            const long long equal = compare(done, count) / frameBytes;
            if (equal < count) {
                return done + equal;
            }
            done += count;
        }
        return end;
    }

    SampleReader& m_source;
    SampleReader& m_result;
    SampleIndex m_index;
    RollingHash m_hash;
    std::vector<std::uint8_t> m_read;
    long long m_next = 0; // behind what was found last in the source
};

} // namespace

Comparison MatchSamples(SampleReader& source, SampleReader& result) {
    return SampleMatcher(source, result).Match();
}
