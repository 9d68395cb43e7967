#pragma once

#include "audio/PeakMeter.h"
#include "audio/Stream.h"

#include <atomic>
#include <memory>
#include <mutex>

/// A stream whose samples are measured, not played.
class DecodingStream : public Stream {
public:
    /// @param file  that the decoder reads
    DecodingStream(std::unique_ptr<Decoder> decoder, std::shared_ptr<const File> file);

    // Waits for no decoding.
    std::int64_t Position() override { return m_position; }
    bool IsActive() override { return !m_ended; }

    bool SetPosition(std::int64_t sampleFrame) override;
    std::vector<std::int64_t> SeekInfo() const override { return m_meter.Source().SeekInfo(); }
    std::optional<ReadFailure> Failure() const override { return m_meter.Source().Failure(); }
    std::int64_t LevelsKnown() const override { return m_meter.Known(); }
    void CompleteLevels() override;
    bool MeasureLevels(double seconds, PeakLevels& levels) override;

private:
    // under the mutex
    std::mutex m_mutex;
    PeakMeter m_meter;
    std::int64_t m_origin = 0; // where the stretches asked for began
    double m_askedSeconds = 0; // the sum of their lengths

    // shared: atomic, written under the mutex
    std::atomic<std::int64_t> m_position{0};
    std::atomic<bool> m_ended{false}; // a stretch was cut short
};
