#include "platform/FolderHold.h"

#include <chrono>
#include <fcntl.h>
#include <map>
#include <mutex>
#include <sys/file.h>
#include <thread>
#include <unistd.h>
#include <utility>

FolderHold::FolderHold(const std::string& folder, int operation, int attempts)
    : m_descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    for (; IsHeld() && flock(m_descriptor, operation | LOCK_NB) != 0; --attempts) {
        if (attempts <= 1) {
            close(std::exchange(m_descriptor, -1));
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

FolderHold::FolderHold(FolderHold&& other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1)) {
}

FolderHold::~FolderHold() {
    if (IsHeld()) {
        close(m_descriptor);
    }
}

std::shared_ptr<FolderHold> FolderHold::Of(const std::string& folder) {
    constexpr int kAttempts = 100; // one of us who has it alone has soon done
    static std::mutex mutex;
    static std::map<std::string, std::weak_ptr<FolderHold>> holds;
    const std::lock_guard lock(mutex);
    std::erase_if(holds, [](const auto& hold) { return hold.second.expired(); });
    std::shared_ptr<FolderHold> hold = holds[folder].lock();
    if (hold == nullptr) {
        hold.reset(new FolderHold(folder, LOCK_SH, kAttempts));
        holds[folder] = hold;
    }
    return hold;
}

FolderHold FolderHold::Alone(const std::string& folder) {
    return {folder, LOCK_EX, 1};
}
