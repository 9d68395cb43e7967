#include "cli/Progress.h"

#include "cli/Report.h"

#include <chrono>
#include <cstdio>
#include <unistd.h>

namespace {

constexpr auto kPatience = std::chrono::milliseconds(500);
constexpr auto kInterval = std::chrono::milliseconds(100);

} // namespace

Progress::Progress(std::function<std::string()> describe) : m_describe(std::move(describe)) {
    if (isatty(STDERR_FILENO) != 0) {
        m_thread = std::jthread([this](const std::stop_token& stop) { Show(stop); });
    }
}

Progress::~Progress() = default;

void Progress::Show(const std::stop_token& stop) {
    std::unique_lock lock(m_mutex);
    auto wait = kPatience;
    bool isShown = false;
    while (!m_stopped.wait_for(lock, stop, wait, [] { return false; }) && !stop.stop_requested()) {
        std::fprintf(stderr, "%s%s", kWipeLine, m_describe().c_str());
        isShown = true;
        wait = kInterval;
    }
    if (isShown) {
        std::fputs(kWipeLine, stderr);
    }
}
