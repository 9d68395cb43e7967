#include "audio/PeakIndexCache.h"

#include <algorithm>

PeakIndexCache& PeakIndexCache::Shared() {
    // Never destroyed: streams that nobody freed may go at the very end.
    static auto* const cache = new PeakIndexCache;
    return *cache;
}

void PeakIndexCache::Enable(bool isEnabled) {
    const std::lock_guard lock(m_mutex);
    m_isEnabled = isEnabled;
    if (!isEnabled) {
        m_indexes.clear();
    }
}

std::shared_ptr<PeakIndex> PeakIndexCache::IndexOf(const FileState& state,
                                                   const AudioFormat& format, SeekCost cost) {
    const std::lock_guard lock(m_mutex);
    if (!m_isEnabled) {
        return nullptr;
    }
    const auto found =
        std::ranges::find_if(m_indexes, [&](const auto& entry) { return entry.first == state; });
    // What could not be read when the file was opened may have made it shorter.
    if (found != m_indexes.end() && found->second->Format() == format) {
        m_indexes.splice(m_indexes.begin(), m_indexes, found);
        return found->second;
    }
    auto index = PeakIndex::Make(format, cost);
    if (found != m_indexes.end()) {
        m_indexes.erase(found);
    }
    if (index) {
        m_indexes.emplace_front(state, index);
        DropOldest();
    }
    return index;
}

void PeakIndexCache::Forget(const std::shared_ptr<PeakIndex>& index) {
    const std::lock_guard lock(m_mutex);
    m_indexes.remove_if([&](const auto& entry) { return entry.second == index; });
}

void PeakIndexCache::DropOldest() {
    std::size_t bytes = 0;
    for (const auto& [state, index] : m_indexes) {
        bytes += index->Bytes();
    }
    for (; bytes > kCapacityBytes && m_indexes.size() > 1; m_indexes.pop_back()) {
        bytes -= m_indexes.back().second->Bytes();
    }
}
