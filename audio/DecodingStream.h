#pragma once

#include "audio/Stream.h"

#include <atomic>
#include <memory>
#include <mutex>

/// A stream whose samples are measured, not played.
class DecodingStream : public Stream {
public:
    explicit DecodingStream(std::unique_ptr<Decoder> decoder);

    // Waits for no decoding.
    std::int64_t Position() override { return m_position; }
    bool IsActive() override { return !m_ended; }

    bool SetPosition(std::int64_t sampleFrame) override;
    std::vector<std::int64_t> SeekInfo() const override { return m_decoder->SeekInfo(); }
    std::optional<ReadFailure> Failure() const override { return m_decoder->Failure(); }
    bool MeasureLevels(double seconds, PeakLevels& levels) override;

private:
    // under the mutex
    std::mutex m_mutex;
    const std::unique_ptr<Decoder> m_decoder;
    std::int64_t m_origin = 0; // where the stretches asked for began
    double m_askedSeconds = 0; // the sum of their lengths

    // shared: atomic, written under the mutex
    std::atomic<std::int64_t> m_position{0};
    std::atomic<bool> m_ended{false}; // a stretch was cut short
};
