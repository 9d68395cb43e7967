#include "audio/ReadFailures.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace {

/// Those that somebody has. Never destroyed: streams that nobody freed may go at the very end.
struct Registry {
    std::mutex mutex;
    std::vector<std::pair<FileState, std::weak_ptr<ReadFailures>>> entries; // under the mutex
};

Registry& TheRegistry() {
    static auto* const registry = new Registry;
    return *registry;
}

} // namespace

std::shared_ptr<ReadFailures> ReadFailures::Of(const FileState& state) {
    Registry& registry = TheRegistry();
    const std::lock_guard lock(registry.mutex);
    std::erase_if(registry.entries, [](const auto& entry) { return entry.second.expired(); });
    for (const auto& [known, failures] : registry.entries) {
        if (auto shared = known == state ? failures.lock() : nullptr) {
            return shared;
        }
    }
    auto failures = std::make_shared<ReadFailures>();
    registry.entries.emplace_back(state, failures);
    return failures;
}

void ReadFailures::Report(const ReadFailure& failure) {
    const std::lock_guard lock(m_mutex);
    if (!m_first || failure.sampleFrame < m_first->sampleFrame) {
        m_first = failure;
    }
}

std::optional<ReadFailure> ReadFailures::First() const {
    const std::lock_guard lock(m_mutex);
    return m_first;
}
