#pragma once

#include "audio/Stream.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

/// The open streams by their handles. A handle is never 0 and not given out again soon. Any thread.
class HandleTable {
public:
    /// @return the stream's handle
    std::uint32_t Add(std::shared_ptr<Stream> stream);

    /// @return null for an unknown handle
    std::shared_ptr<Stream> Find(std::uint32_t handle) const;

    /// Takes the stream out.
    /// @return null for an unknown handle
    std::shared_ptr<Stream> Remove(std::uint32_t handle);
    /// Takes all streams out, in no particular order.
    std::vector<std::shared_ptr<Stream>> RemoveAll();

private:
    // under the mutex
    mutable std::mutex m_mutex;
    std::unordered_map<std::uint32_t, std::shared_ptr<Stream>> m_streams;
    std::uint32_t m_last = 0; // the handle given out last
};
