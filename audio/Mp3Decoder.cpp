#include "audio/Mp3Decoder.h"

#include <algorithm>

Mp3Decoder::Mp3Decoder(const Mp3File& mp3)
    : m_mp3(mp3), m_format(mp3.Format()), m_blocks(mp3.file, mp3.index),
      m_samples(m_blocks.SamplesPerFrame()) {
}

std::span<const std::int16_t> Mp3Decoder::Read(std::int64_t maxSampleFrames) {
    if (m_position >= m_format.sampleFrames) {
        return {};
    }
    const std::int64_t frameSampleFrames = m_mp3.index->Stream().first.sampleFrames;
    DecodeUpTo(m_position / frameSampleFrames);
    const std::int64_t skipped = m_position % frameSampleFrames;
    const std::int64_t count = std::min(maxSampleFrames, frameSampleFrames - skipped);
    m_position += count;
    return std::span(m_samples).subspan(static_cast<std::size_t>(skipped * m_format.channels),
                                        static_cast<std::size_t>(count * m_format.channels));
}

/// Decodes on to this frame; when it lies elsewhere, from the beginning of its block or from near
/// it.
void Mp3Decoder::DecodeUpTo(std::int64_t frame) {
    constexpr std::int64_t kBlockFrames = FrameIndex::kBlockFrames;
    constexpr std::int64_t kNearFrames = 8; // decoding these costs less than to begin anew
    const std::int64_t block = frame / kBlockFrames;
    const bool isAhead = m_frame >= 0 && frame >= m_frame && block == m_frame / kBlockFrames;
    if (isAhead && frame - m_frame <= kNearFrames) {
        // as it comes
    } else if (m_blocks.BeginNear(frame)) {
        m_frame = frame - 1;
    } else if (!isAhead) {
        m_blocks.Begin(block);
        m_frame = block * kBlockFrames - 1;
    }
    for (; m_frame < frame; ++m_frame) {
        m_blocks.DecodeFrame(m_samples.data());
    }
}
