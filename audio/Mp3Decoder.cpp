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

/// Decodes on to this frame, or from the beginning of its block when it lies elsewhere.
void Mp3Decoder::DecodeUpTo(std::int64_t frame) {
    constexpr std::int64_t kBlockFrames = FrameIndex::kBlockFrames;
    const std::int64_t block = frame / kBlockFrames;
    if (m_frame < 0 || frame < m_frame || block != m_frame / kBlockFrames) {
        m_blocks.Begin(block);
        m_frame = block * kBlockFrames - 1;
    }
    for (; m_frame < frame; ++m_frame) {
        m_blocks.DecodeFrame(m_samples.data());
    }
}
