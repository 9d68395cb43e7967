#include "audio/DecodingStream.h"

#include <algorithm>
#include <cmath>
#include <utility>

DecodingStream::DecodingStream(std::unique_ptr<Decoder> decoder)
    : Stream(decoder->Format()), m_decoder(std::move(decoder)) {
}

bool DecodingStream::SetPosition(std::int64_t sampleFrame) {
    const std::lock_guard lock(m_mutex);
    m_decoder->Seek(sampleFrame);
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
    levels = {};
    while (m_position < end) {
        const auto samples = m_decoder->Read(end - m_position);
        if (samples.empty()) {
            break;
        }
        levels = Larger(levels, MeasurePeaks(samples, Format().channels));
        m_position += static_cast<std::int64_t>(samples.size() / Format().channels);
    }
    return true;
}
