#include "engine/QuietStretches.h"

#include <algorithm>
#include <limits>

namespace {

int RequiredBlocks(float seconds) {
    constexpr int kMost = std::numeric_limits<int>::max();
    const float blocks =
        std::max(seconds / BlockReader::kBlockSeconds, 1.0F); // not a number stays so
    return blocks < static_cast<float>(kMost) ? static_cast<int>(blocks) : kMost;
}

} // namespace

void QuietStretch::AppendPositions(std::vector<unsigned long long>& positions) const {
    constexpr int kLongStretch = 100;
    if (lastsToTheEnd) {
        positions.push_back(begin);
    } else if (blocks >= kLongStretch) {
        positions.push_back(begin);
        positions.push_back(end);
    } else {
        positions.push_back((begin + end) / 2);
    }
}

QuietStretches::QuietStretches(float level, float leastSeconds)
    : m_level(level), m_requiredBlocks(RequiredBlocks(leastSeconds)) {
}

void QuietStretches::Add(const Block& block) {
    if (!(block.levels[0] < m_level && block.levels[1] < m_level)) {
        End(block.position);
        return;
    }
    if (m_current.blocks == 0) {
        m_current.begin = block.position;
    }
    ++m_current.blocks;
    m_current.loudest = std::max({m_current.loudest, block.levels[0], block.levels[1]});
}

void QuietStretches::End(unsigned long long position) {
    if (m_current.blocks >= m_requiredBlocks) {
        m_current.end = position;
        m_found.push_back(m_current);
    }
    m_current = {};
}

void QuietStretches::Finish(unsigned long long length) {
    m_current.lastsToTheEnd = true;
    End(length);
}
