#include "platform/WriteThrough.h"

#include <chrono>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>

namespace {

constexpr auto kInterval = std::chrono::milliseconds(5);
constexpr off_t kLeastBytes = off_t{4} * 1024 * 1024; // in smaller pieces a disk is slower

/// @return up to where the file has been sent out now
off_t SendOut(int descriptor, off_t sentBytes) {
#ifdef __linux__
    struct stat status {};
    if (fstat(descriptor, &status) == 0 && status.st_size - sentBytes >= kLeastBytes) {
        // Only begins it; what goes wrong is told by the sync at the end.
        sync_file_range(descriptor, sentBytes, status.st_size - sentBytes, SYNC_FILE_RANGE_WRITE);
        return status.st_size;
    }
#endif
    return sentBytes;
}

} // namespace

std::shared_ptr<WriteThrough> WriteThrough::OfProcess() {
    static std::mutex mutex;
    static std::weak_ptr<WriteThrough> current;
    const std::lock_guard lock(mutex);
    std::shared_ptr<WriteThrough> result = current.lock();
    if (result == nullptr) {
        result = std::make_shared<WriteThrough>();
        current = result;
    }
    return result;
}

WriteThrough::WriteThrough() {
    try {
        m_thread = std::jthread([this](const std::stop_token& stop) { Run(stop); });
    } catch (const std::system_error&) {
        // The system has no more threads: all of it goes out at the end.
    }
}

void WriteThrough::Add(int descriptor) {
    const std::lock_guard lock(m_mutex);
    m_sentBytes[descriptor] = 0;
}

void WriteThrough::Remove(int descriptor) {
    const std::lock_guard lock(m_mutex);
    m_sentBytes.erase(descriptor);
}

void WriteThrough::Run(const std::stop_token& stop) {
    std::unique_lock lock(m_mutex);
    while (!m_stopped.wait_for(lock, stop, kInterval, [] { return false; }) &&
           !stop.stop_requested()) {
        for (auto& [descriptor, sentBytes] : m_sentBytes) {
            sentBytes = SendOut(descriptor, sentBytes);
        }
    }
}
