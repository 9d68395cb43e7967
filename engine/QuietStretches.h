#pragma once

#include "engine/BlockReader.h"

#include <vector>

/// A run of consecutive quiet blocks. Positions are bytes of the decoded stream.
struct QuietStretch {
    unsigned long long begin = 0;
    unsigned long long end = 0; ///< where the block after it begins, or the stream ends
    int blocks = 0;             ///< 1 or more
    float loudest = 0.0F;       ///< its largest sample, 0 to 1
    bool lastsToTheEnd = false; ///< of the stream

    /// Appends the positions that it is found by: its middle; its beginning and its end when it has
    /// 100 blocks or more, which is two seconds; its beginning alone when it lasts to the end.
    void AppendPositions(std::vector<unsigned long long>& positions) const;
};

/// Finds the quiet stretches in a sequence of blocks. A loud block ends a stretch whether it was
/// long enough or not.
class QuietStretches {
public:
    /// @param level        0 to 1; a block is quiet when both its sides are below it
    /// @param leastSeconds  what a stretch lasts at least, in whole blocks, at least one
    QuietStretches(float level, float leastSeconds);

    void Add(const Block& block);
    /// The stream has ended: to be called once, after all blocks.
    /// @param length  of the stream, bytes
    void Finish(unsigned long long length);

    /// Those that are long enough, in order.
    const std::vector<QuietStretch>& Found() const { return m_found; }

private:
    void End(unsigned long long position);

    const float m_level;
    const int m_requiredBlocks;
    std::vector<QuietStretch> m_found;
    QuietStretch m_current; // the one under way; none while it has no blocks
};
