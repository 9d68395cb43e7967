#pragma once

#include <algorithm>
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
        std::int64_t Begin() const { return m_begin; }
        std::int64_t End() const { return std::min(m_end, m_grid->m_sampleFrames); }
        void Next() {
            m_begin = End();
            if (++m_part == m_grid->m_granulesPerBlock) {
                ++m_block;
                BeginBlock(0);
            } else {
                // Where a division would put it, which takes several times as long.
                m_end += m_least;
                m_rest += m_more;
                if (m_rest >= m_grid->m_granulesPerBlock) {
                    m_rest -= m_grid->m_granulesPerBlock;
                    ++m_end;
                }
            }
        }

    private:
        void BeginBlock(std::int64_t part);

        const PeakGrid* m_grid;
        std::int64_t m_block;
        std::int64_t m_part = 0;  // of the block
        std::int64_t m_least = 0; // sample frames of a granule, some have one more
        std::int64_t m_more = 0;  // how many of the block
        std::int64_t m_rest = 0;  // of the division that gives the end
        std::int64_t m_begin;
        std::int64_t m_end = 0; // may lie behind the length
    };

private:
    std::int64_t BlockBegin(std::int64_t block) const;
    std::int64_t BlockAt(std::int64_t sampleFrame) const;

    double m_rateHz;
    std::int64_t m_sampleFrames;
    std::int64_t m_granulesPerBlock;
    std::int64_t m_count;
};
