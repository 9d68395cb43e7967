#include "audio/HandleTable.h"

#include <utility>

std::uint32_t HandleTable::Add(std::shared_ptr<Stream> stream) {
    const std::lock_guard lock(m_mutex);
    do {
        ++m_last;
    } while (m_last == 0 || m_streams.contains(m_last));
    m_streams.emplace(m_last, std::move(stream));
    return m_last;
}

std::shared_ptr<Stream> HandleTable::Find(std::uint32_t handle) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_streams.find(handle);
    return found != m_streams.end() ? found->second : nullptr;
}

std::shared_ptr<Stream> HandleTable::Remove(std::uint32_t handle) {
    const std::lock_guard lock(m_mutex);
    auto node = m_streams.extract(handle);
    return node ? std::move(node.mapped()) : nullptr;
}

std::vector<std::shared_ptr<Stream>> HandleTable::RemoveAll() {
    const std::lock_guard lock(m_mutex);
    std::vector<std::shared_ptr<Stream>> streams;
    streams.reserve(m_streams.size());
    for (auto& [handle, stream] : m_streams) {
        streams.push_back(std::move(stream));
    }
    m_streams.clear();
    return streams;
}
