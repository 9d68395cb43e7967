#pragma once

#include <optional>
#include <vector>

/// Sample frames of a WAV file, from 0: those from `begin` up to, not including, `end`.
struct SampleRange {
    long long begin = 0;
    long long end = 0;

    friend bool operator==(const SampleRange&, const SampleRange&) = default;
};

/// Where the sample frames of a source come to lie in a file that is made of some of them.
class WAVChunkMap {
public:
    /// @param kept   in ascending order, none empty, none overlapping; those that touch are one
    /// @param total  how many sample frames the source has
    WAVChunkMap(const std::vector<SampleRange>& kept, long long total);

    /// The place in the result of a place in the source; none where it was cut out. A place at the
    /// end of what is kept is the end of that piece of the result.
    std::optional<long long> Map(long long position) const;

    /// How many sample frames of a stretch of the source are kept.
    long long KeptIn(const SampleRange& stretch) const;

    long long ResultFrames() const { return KeptIn({0, m_total}); }
    bool IsWhole() const { return ResultFrames() == m_total; } ///< nothing was cut out
    const std::vector<SampleRange>& Kept() const { return m_kept; }

private:
    long long KeptBefore(long long position) const;

    std::vector<SampleRange> m_kept;
    std::vector<long long> m_begins; // of each range, in the result
    long long m_total;
};
