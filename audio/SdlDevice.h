#pragma once

#include "audio/OutputDevice.h"

#include <memory>

/// The system's default output device, opened with SDL, which converts to what the device wants.
class SdlDevice : public OutputDevice {
public:
    /// SDL's audio must be initialised.
    /// @return null when there is no device or it cannot be opened
    [[nodiscard]] static std::unique_ptr<SdlDevice> Open(const OutputFormat& format);

    ~SdlDevice() override;
    SdlDevice(const SdlDevice&) = delete;
    SdlDevice& operator=(const SdlDevice&) = delete;

    const OutputFormat& Format() const override { return m_format; }
    bool IsAudible() const override;
    void Start(SampleSource& source) override;
    void Stop() override;

private:
    explicit SdlDevice(const OutputFormat& format) : m_format(format) {}
    static void Callback(void* self, std::uint8_t* bytes, int count);

    const OutputFormat m_format;
    std::uint32_t m_device = 0;       // SDL's number of it
    SampleSource* m_source = nullptr; // under SDL's lock of the device
};
