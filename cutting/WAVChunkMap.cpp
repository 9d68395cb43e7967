#include "cutting/WAVChunkMap.h"

#include <algorithm>

WAVChunkMap::WAVChunkMap(const std::vector<SampleRange>& kept, long long total) : m_total(total) {
    long long begin = 0;
    for (const SampleRange& range : kept) {
        if (!m_kept.empty() && m_kept.back().end == range.begin) {
            m_kept.back().end = range.end;
        } else {
            m_kept.push_back(range);
            m_begins.push_back(begin);
        }
        begin += range.end - range.begin;
    }
}

std::optional<long long> WAVChunkMap::Map(long long position) const {
    const auto range = std::ranges::lower_bound(m_kept, position, {}, &SampleRange::end);
    return range == m_kept.end() || position < range->begin ? std::nullopt
                                                            : std::optional(KeptBefore(position));
}

long long WAVChunkMap::KeptIn(const SampleRange& stretch) const {
    return KeptBefore(std::max(stretch.begin, stretch.end)) - KeptBefore(stretch.begin);
}

long long WAVChunkMap::KeptBefore(long long position) const {
    const auto behind = std::ranges::upper_bound(m_kept, position, {}, &SampleRange::begin);
    if (behind == m_kept.begin()) {
        return 0;
    }
    const auto index = static_cast<std::size_t>(behind - m_kept.begin() - 1);
    return m_begins[index] + std::min(position, m_kept[index].end) - m_kept[index].begin;
}
