#pragma once

#include <cstdint>

/// What a device plays. Its samples are 16-bit signed, interleaved, in the device's format.
class SampleSource {
public:
    virtual ~SampleSource() = default;

    /// Hands out the next sample frames. Called in time with the output, on the device's thread:
    /// must not lock, allocate or read a file.
    virtual void Fill(std::int16_t* samples, std::int64_t sampleFrames) noexcept = 0;
};

/// In what form a device takes samples, whatever the hardware makes of them.
struct OutputFormat {
    std::uint32_t rateHz = 0;
    std::uint32_t channels = 0;

    bool operator==(const OutputFormat&) const = default;
};

/// Something that takes samples at the pace of its rate.
class OutputDevice {
public:
    virtual ~OutputDevice() = default;

    virtual const OutputFormat& Format() const = 0;

    /// Whether what it takes can be heard: not with a stand-in, nor once the system has lost the
    /// device.
    virtual bool IsAudible() const = 0;

    /// Plays this source until stopped.
    virtual void Start(SampleSource& source) = 0;

    /// When it returns, the source is not being asked and will not be. What was handed out is still
    /// heard.
    virtual void Stop() = 0;
};
