#pragma once

#include "audio/OutputDevice.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

/// Takes samples in real time and drops them: what plays where there is no output device.
class SilentDevice : public OutputDevice {
public:
    /// @throws std::system_error when no thread can be started
    explicit SilentDevice(const OutputFormat& format);
    ~SilentDevice() override;
    SilentDevice(const SilentDevice&) = delete;
    SilentDevice& operator=(const SilentDevice&) = delete;

    const OutputFormat& Format() const override { return m_format; }
    bool IsAudible() const override { return false; }
    void Start(SampleSource& source) override;
    void Stop() override;

private:
    void Run();

    const OutputFormat m_format;
    std::vector<std::int16_t> m_samples; // of one period

    // under the mutex
    std::mutex m_mutex;
    std::condition_variable m_changed;
    SampleSource* m_source = nullptr;
    bool m_quit = false;

    std::thread m_thread; // last, for it uses all of the above
};
