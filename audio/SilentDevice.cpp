#include "audio/SilentDevice.h"

#include <algorithm>
#include <chrono>

namespace {

constexpr std::uint32_t kPeriodsPerSecond = 50;

} // namespace

SilentDevice::SilentDevice(const OutputFormat& format)
    : m_format(format),
      m_samples(std::max(format.rateHz / kPeriodsPerSecond, 1U) * std::size_t{format.channels}),
      m_thread(&SilentDevice::Run, this) {
}

SilentDevice::~SilentDevice() {
    {
        const std::lock_guard lock(m_mutex);
        m_quit = true;
    }
    m_changed.notify_one();
    m_thread.join();
}

void SilentDevice::Start(SampleSource& source) {
    {
        const std::lock_guard lock(m_mutex);
        m_source = &source;
    }
    m_changed.notify_one();
}

void SilentDevice::Stop() {
    {
        const std::lock_guard lock(m_mutex);
        m_source = nullptr;
    }
    m_changed.notify_one();
}

void SilentDevice::Run() {
    const auto sampleFrames = static_cast<std::int64_t>(m_samples.size() / m_format.channels);
    const std::chrono::nanoseconds period(sampleFrames * 1'000'000'000 / m_format.rateHz);
    std::unique_lock lock(m_mutex);
    while (!m_quit) {
        m_changed.wait(lock, [&] { return m_quit || m_source != nullptr; });
        auto next = std::chrono::steady_clock::now();
        while (!m_quit && m_source != nullptr) {
            m_source->Fill(m_samples.data(), sampleFrames);
            next += period;
            m_changed.wait_until(lock, next, [&] { return m_quit || m_source == nullptr; });
        }
    }
}
