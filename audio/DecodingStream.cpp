#include "audio/DecodingStream.h"

#include <algorithm>
#include <cmath>
#include <utility>

DecodingStream::DecodingStream(std::unique_ptr<Decoder> decoder, std::shared_ptr<const File> file)
    : Stream(decoder->Format()), m_meter(std::move(decoder), std::move(file)) {
}

void DecodingStream::CompleteLevels() {
    const std::lock_guard lock(m_mutex);
    m_meter.Complete();
}

bool DecodingStream::SetPosition(std::int64_t sampleFrame) {
    const std::lock_guard lock(m_mutex);
    m_meter.Leave();
    m_position = sampleFrame;
    m_origin = sampleFrame;
    m_askedSeconds = 0;
    m_ended = false;
    return true;
}

bool DecodingStream::MeasureLevels(double seconds, PeakLevels& levels) {
    const std::lock_guard lock(m_mutex);
    if (m_position >= Format().sampleFrames) {
        m_ended = true;
        return false;
    }
    m_askedSeconds += seconds;
    const std::int64_t asked =
        m_origin + static_cast<std::int64_t>(std::floor(m_askedSeconds * Format().rateHz + 0.5));
    const std::int64_t end = std::min(asked, Format().sampleFrames);
    m_ended = asked > end;
    levels = end > m_position ? m_meter.Measure(m_position, end) : PeakLevels();
    m_position = std::max(end, m_position.load());
    return true;
}
