#pragma once

#include "audio/FrameIndex.h"

#include <cstddef>
#include <list>
#include <memory>
#include <mutex>
#include <utility>

/// Keeps the frame indexes of the files opened last, so that one is not read again as long as it is
/// the same. A file is known by its inode, size and times, whatever its path is by now.
///
/// Any thread.
class FrameIndexCache {
public:
    /// The one of the process.
    static FrameIndexCache& Shared();

    /// The kept index, or a new one.
    /// @return null when the file holds no MPEG audio
    [[nodiscard]] std::shared_ptr<const FrameIndex>
    IndexOf(const std::shared_ptr<const File>& file);

private:
    static constexpr std::size_t kCapacity = 64;

    std::shared_ptr<const FrameIndex> Find(const FileState& state);
    void Keep(const FileState& state, std::shared_ptr<const FrameIndex> index);

    std::mutex m_mutex;
    std::list<std::pair<FileState, std::shared_ptr<const FrameIndex>>> m_indexes; // latest first
};
