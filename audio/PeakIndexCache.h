#pragma once

#include "audio/File.h"
#include "audio/PeakIndex.h"

#include <atomic>
#include <cstddef>
#include <list>
#include <memory>
#include <mutex>
#include <utility>

/// Keeps the levels of the files measured last, as long as each is the same file.
///
/// Any thread.
class PeakIndexCache {
public:
    /// The one of the process.
    static PeakIndexCache& Shared();

    /// Whether levels are remembered at all. What was is forgotten when they no longer are.
    void Enable(bool isEnabled);

    /// The kept index of a file in this state, or an empty one.
    /// @return null when none can be had; see PeakIndex::Make
    [[nodiscard]] std::shared_ptr<PeakIndex> IndexOf(const FileState& state,
                                                     const AudioFormat& format, SeekCost cost);
    /// The file has changed.
    void Forget(const std::shared_ptr<PeakIndex>& index);

private:
    static constexpr std::size_t kCapacityBytes = 160'000'000;

    void DropOldest();

    std::atomic<bool> m_isEnabled{true};
    std::mutex m_mutex;
    std::list<std::pair<FileState, std::shared_ptr<PeakIndex>>> m_indexes; // latest first
};
