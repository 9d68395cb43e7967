#pragma once

#include <cstdint>

/// Divides a stream into granules, the stretches whose peaks are remembered: a block of 20 ms, as
/// the search for quiet places measures them, holds the same number of granules each. Blocks begin
/// where that search's stretches do, to the sample frame. Granules may be empty where a block has
/// fewer sample frames than granules.
///
/// Positions are in sample frames. Immutable.
class PeakGrid {
public:
    /// In single precision as the search hands it over. As it has 24 bits its multiples are exact
    /// in double precision, and so are the sums that a level measurement keeps.
    static constexpr double kBlockSeconds = 0.02F;

    PeakGrid(std::uint32_t rateHz, std::int64_t sampleFrames, std::int64_t granulesPerBlock);

    /// How many granules there are.
    std::int64_t Count() const { return m_count; }
    /// Where a granule begins; the length for Count() and beyond.
    std::int64_t Begin(std::int64_t granule) const;
    /// The first granule that begins at or after a position; Count() when none does.
    std::int64_t FirstFrom(std::int64_t sampleFrame) const;
    /// The last granule that begins at or before a position; Count() for the length.
    std::int64_t LastUpTo(std::int64_t sampleFrame) const;

    /// The granules in order: one after the other costs less than each by its number.
    class Walk {
    public:
        Walk(const PeakGrid& grid, std::int64_t granule);

        std::int64_t Granule() const { return m_block * m_grid->m_granulesPerBlock + m_part; }
        std::int64_t End() const { return m_end; }
        void Next();

    private:
        void FindEnd();

        const PeakGrid* m_grid;
        std::int64_t m_block;
        std::int64_t m_part; // of the block
        std::int64_t m_blockBegin;
        std::int64_t m_blockEnd;
        std::int64_t m_end = 0;
    };

private:
    std::int64_t BlockBegin(std::int64_t block) const;
    std::int64_t BlockAt(std::int64_t sampleFrame) const;

    double m_rateHz;
    std::int64_t m_sampleFrames;
    std::int64_t m_granulesPerBlock;
    std::int64_t m_count;
};
