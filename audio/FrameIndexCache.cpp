#include "audio/FrameIndexCache.h"

#include <algorithm>

FrameIndexCache& FrameIndexCache::Shared() {
    static FrameIndexCache cache;
    return cache;
}

std::shared_ptr<const FrameIndex>
FrameIndexCache::IndexOf(const std::shared_ptr<const File>& file) {
    if (auto known = Find(file->State())) {
        return known;
    }
    FileWindow window(file);
    const auto stream = FindMpegStream(window);
    if (!stream) {
        if (window.Error()) {
            file->Failures().Report({0, *window.Error()});
        }
        return nullptr;
    }
    auto index = std::make_shared<const FrameIndex>(FrameIndex::Build(window, *stream));
    if (index->Failure()) {
        file->Failures().Report(*index->Failure());
        return index; // the next one may be able to read it
    }
    // A file that was written to meanwhile may hold something else by now.
    if (file->CurrentState() == file->State()) {
        Keep(file->State(), index);
    }
    return index;
}

std::shared_ptr<const FrameIndex> FrameIndexCache::Find(const FileState& state) {
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_indexes.begin(), m_indexes.end(),
                                    [&](const auto& entry) { return entry.first == state; });
    if (found == m_indexes.end()) {
        return nullptr;
    }
    m_indexes.splice(m_indexes.begin(), m_indexes, found);
    return found->second;
}

void FrameIndexCache::Keep(const FileState& state, std::shared_ptr<const FrameIndex> index) {
    const std::lock_guard lock(m_mutex);
    m_indexes.emplace_front(state, std::move(index));
    if (m_indexes.size() > kCapacity) {
        m_indexes.pop_back();
    }
}
