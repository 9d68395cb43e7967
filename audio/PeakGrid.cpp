#include "audio/PeakGrid.h"

#include <algorithm>

PeakGrid::PeakGrid(std::uint32_t rateHz, std::int64_t sampleFrames, std::int64_t granulesPerBlock)
    : m_rateHz(rateHz), m_sampleFrames(sampleFrames), m_granulesPerBlock(granulesPerBlock),
      m_count(FirstFrom(sampleFrames)) {
}

std::int64_t PeakGrid::Begin(std::int64_t granule) const {
    const std::int64_t block = granule / m_granulesPerBlock;
    const std::int64_t begin = BlockBegin(block);
    const std::int64_t sampleFrames = BlockBegin(block + 1) - begin;
    return std::min(begin + sampleFrames * (granule % m_granulesPerBlock) / m_granulesPerBlock,
                    m_sampleFrames);
}

std::int64_t PeakGrid::FirstFrom(std::int64_t sampleFrame) const {
    if (sampleFrame <= 0) {
        return 0;
    }
    // The one after that which holds the sample frame before.
    const std::int64_t held = sampleFrame - 1;
    const std::int64_t block = BlockAt(held);
    const std::int64_t begin = BlockBegin(block);
    const std::int64_t sampleFrames = BlockBegin(block + 1) - begin;
    const std::int64_t part =
        ((held - begin + 1) * m_granulesPerBlock - 1) / sampleFrames; // begins at or before it
    return block * m_granulesPerBlock + part + 1;
}

std::int64_t PeakGrid::LastUpTo(std::int64_t sampleFrame) const {
    return sampleFrame >= m_sampleFrames ? m_count : FirstFrom(sampleFrame + 1) - 1;
}

std::int64_t PeakGrid::BlockBegin(std::int64_t block) const {
    // None is negative, so that this rounds as a measurement does.
    // NOLINTNEXTLINE(bugprone-incorrect-roundings)
    return static_cast<std::int64_t>(static_cast<double>(block) * kBlockSeconds * m_rateHz + 0.5);
}

/// The block that holds a sample frame.
std::int64_t PeakGrid::BlockAt(std::int64_t sampleFrame) const {
    auto block =
        static_cast<std::int64_t>(static_cast<double>(sampleFrame) / (kBlockSeconds * m_rateHz));
    while (block > 0 && BlockBegin(block) > sampleFrame) {
        --block;
    }
    while (BlockBegin(block + 1) <= sampleFrame) {
        ++block;
    }
    return block;
}

PeakGrid::Walk::Walk(const PeakGrid& grid, std::int64_t granule)
    : m_grid(&grid), m_block(granule / grid.m_granulesPerBlock), m_begin(grid.Begin(granule)) {
    BeginBlock(granule % grid.m_granulesPerBlock);
}

void PeakGrid::Walk::BeginBlock(std::int64_t part) {
    const std::int64_t granules = m_grid->m_granulesPerBlock;
    const std::int64_t begin = m_grid->BlockBegin(m_block);
    const std::int64_t sampleFrames = m_grid->BlockBegin(m_block + 1) - begin;
    m_part = part;
    m_least = sampleFrames / granules;
    m_more = sampleFrames % granules;
    m_end = begin + sampleFrames * (part + 1) / granules;
    m_rest = sampleFrames * (part + 1) % granules;
}
