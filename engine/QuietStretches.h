#pragma once

#include <vector>

/// Finds the quiet stretches in a sequence of blocks: runs of consecutive quiet blocks.
///
/// A stretch that is long enough gives its middle, one of 100 blocks or more its beginning and its
/// end, and one that lasts to the end of the sequence its beginning alone. A loud block ends a
/// stretch whether it was long enough or not.
class QuietStretches {
public:
    /// @param required   blocks that a stretch has at least; 1 or more
    /// @param positions  where the positions are appended, ascending
    QuietStretches(int required, std::vector<unsigned long long>& positions)
        : m_required(required), m_positions(positions) {}

    void AddQuietBlock(unsigned long long position); ///< where the block begins
    void AddLoudBlock(unsigned long long position);  ///< where the block begins
    void Finish(); ///< the sequence has ended: to be called once, after all blocks

private:
    int m_required;
    std::vector<unsigned long long>& m_positions;
    unsigned long long m_start = 0; // of the stretch under way
    int m_count = 0;                // of its blocks
};
