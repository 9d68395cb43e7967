#include "comparing/MatchFrames.h"

#include "comparing/NextCandidates.h"

#include <algorithm>
#include <span>

namespace {

using Key = std::uint64_t FramePrint::*;

/// The frames of a file by a hash.
class PrintIndex {
public:
    PrintIndex(const std::vector<FramePrint>& prints, Key key) : m_prints(prints), m_key(key) {
        for (std::size_t i = 0; i < prints.size(); ++i) {
            if (prints[i].*key != 0) {
                m_frames.push_back(static_cast<std::uint32_t>(i));
            }
        }
        std::ranges::sort(m_frames, [&](std::uint32_t a, std::uint32_t b) {
            return prints[a].*key != prints[b].*key ? prints[a].*key < prints[b].*key : a < b;
        });
    }

    /// Ascending.
    std::span<const std::uint32_t> Find(const FramePrint& print) const {
        const auto hash = [&](std::uint32_t frame) { return m_prints[frame].*m_key; };
        return {std::ranges::lower_bound(m_frames, print.*m_key, {}, hash),
                std::ranges::upper_bound(m_frames, print.*m_key, {}, hash)};
    }

private:
    const std::vector<FramePrint>& m_prints;
    Key m_key;
    std::vector<std::uint32_t> m_frames;
};

class Matcher {
public:
    Matcher(const std::vector<FramePrint>& source, const std::vector<FramePrint>& result)
        : m_source(source), m_result(result), m_places(result.size(), kNone),
          m_isAltered(result.size()) {}

    Comparison Match() {
        MatchBy(&FramePrint::bytes);
        if (std::ranges::find(m_places, kNone) != m_places.end()) {
            MatchBy(&FramePrint::sound);
            MarkMute();
        }
        return Compare();
    }

private:
    static constexpr long long kNone = -1;

    bool IsEqual(long long place, std::size_t frame, Key key) const {
        return place >= 0 && place < std::ssize(m_source) && m_result[frame].*key != 0 &&
               m_source[static_cast<std::size_t>(place)].*key == m_result[frame].*key;
    }

    /// Where the frame has no place yet and is equal to the one there.
    void PlaceAt(long long place, std::size_t frame, Key key) {
        if (m_places[frame] == kNone && IsEqual(place, frame, key)) {
            m_places[frame] = place;
            m_isAltered[frame] = key == &FramePrint::sound;
        }
    }

    /// Where the frame would be if it followed the one before it.
    long long PlaceBehindLast(std::size_t frame) const {
        return frame > 0 && m_places[frame - 1] != kNone ? m_places[frame - 1] + 1 : kNone;
    }
    long long PlaceBeforeNext(std::size_t frame) const {
        const bool isKnown = frame + 1 < m_places.size() && m_places[frame + 1] != kNone;
        return isKnown ? m_places[frame + 1] - 1 : kNone;
    }

    /// Frames that there is one of are certain; their neighbours follow from them; what is left
    /// goes where most of it fits.
    void MatchBy(Key key) {
        const PrintIndex index(m_source, key);
        for (std::size_t i = 0; i < m_result.size(); ++i) {
            const auto found = index.Find(m_result[i]);
            PlaceAt(found.size() == 1 ? found.front() : kNone, i, key);
        }
        for (std::size_t i = 0; i < m_result.size(); ++i) {
            PlaceAt(PlaceBehindLast(i), i, key);
        }
        for (std::size_t i = m_result.size(); i-- > 0;) {
            PlaceAt(PlaceBeforeNext(i), i, key);
        }
        long long next = 0;
        for (std::size_t i = 0; i < m_result.size(); ++i) {
            PlaceAt(PlaceBehindLast(i), i, key);
            if (m_places[i] == kNone) {
                PlaceAt(LongestOf(index.Find(m_result[i]), i, key, next), i, key);
            }
            next = m_places[i] == kNone ? next : m_places[i] + 1;
        }
    }

    /// Where the most frames from this one on are.
    /// @return kNone where there are no candidates
    long long LongestOf(std::span<const std::uint32_t> candidates, std::size_t frame, Key key,
                        long long next) const {
        long long best = kNone;
        std::size_t longest = 0;
        for (const std::uint32_t place : NextCandidates(candidates, next)) {
            const std::size_t length = CountEqual(place, frame, key);
            if (length > longest) {
                longest = length;
                best = place;
            }
        }
        return best;
    }

    std::size_t CountEqual(long long place, std::size_t frame, Key key) const {
        constexpr std::size_t kMost = 1024;
        std::size_t count = 0;
        while (count < kMost && frame + count < m_result.size() &&
               m_places[frame + count] == kNone &&
               IsEqual(place + static_cast<long long>(count), frame + count, key)) {
            ++count;
        }
        return count;
    }

    /// Frames that a join mutes, and those that it puts in to carry the data of the next ones.
    void MarkMute() {
        constexpr int kMostTogether = 6;
        const auto mark = [&](std::size_t frame, int& run) {
            if (m_places[frame] != kNone) {
                run = 0;
            } else if (m_result[frame].isMute && run < kMostTogether) {
                m_isAltered[frame] = true;
                ++run;
            } else {
                run = kMostTogether;
            }
        };
        int run = kMostTogether;
        for (std::size_t i = 0; i < m_result.size(); ++i) {
            mark(i, run);
        }
        run = kMostTogether;
        for (std::size_t i = m_result.size(); i-- > 0;) {
            mark(i, run);
        }
    }

    Comparison Compare() const {
        Comparison comparison;
        for (std::size_t i = 0; i < m_result.size(); ++i) {
            const auto frame = static_cast<long long>(i);
            const long long place = m_places[i];
            if (m_isAltered[i] || place == kNone) {
                AppendFrame(m_isAltered[i] ? comparison.altered : comparison.foreign, frame);
                continue;
            }
            std::vector<Comparison::Run>& runs = comparison.runs;
            if (runs.empty() || runs.back().result + runs.back().count != frame ||
                runs.back().source + runs.back().count != place) {
                runs.push_back({frame, place, 0});
            }
            ++runs.back().count;
        }
        return comparison;
    }

    const std::vector<FramePrint>& m_source;
    const std::vector<FramePrint>& m_result;
    std::vector<long long> m_places; // of the result's frames in the source
    std::vector<bool> m_isAltered;
};

} // namespace

Comparison MatchFrames(const std::vector<FramePrint>& source,
                       const std::vector<FramePrint>& result) {
    return Matcher(source, result).Match();
}
