#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <vector>

/// What decoding has taught about the blocks of a stream: in which of them every frame is made from
/// nothing but what stands in the file shortly before it, so that decoding may begin there
/// anywhere. Any thread.
class SoundBlocks {
public:
    /// The doubtful frames of a block, counted from its first, in ascending order: those that the
    /// decoder may have given up in the middle.
    using Doubts = std::vector<std::int64_t>;

    explicit SoundBlocks(std::size_t blocks) : m_doubts(blocks) {}

    void Mark(std::int64_t block, const Doubts& doubts) {
        const std::lock_guard lock(m_mutex);
        m_doubts[static_cast<std::size_t>(block)] = doubts;
    }
    /// @return nothing for a block that is not known to be sound
    std::optional<Doubts> Find(std::int64_t block) const {
        const std::lock_guard lock(m_mutex);
        return m_doubts[static_cast<std::size_t>(block)];
    }

private:
    mutable std::mutex m_mutex;
    std::vector<std::optional<Doubts>> m_doubts; // by block
};
