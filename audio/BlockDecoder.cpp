#include "audio/BlockDecoder.h"

#include <algorithm>
#include <utility>

BlockDecoder::BlockDecoder(std::shared_ptr<const File> file,
                           std::shared_ptr<const FrameIndex> index)
    : m_index(std::move(index)), m_window(std::move(file)), m_walker(m_window, m_index->Stream()),
      m_decoder(m_index->Stream().first), m_dropped(m_decoder.SamplesPerFrame()) {
}

void BlockDecoder::Begin(std::int64_t block) {
    const FrameIndex::Block& start = m_index->Blocks()[static_cast<std::size_t>(block)];
    m_decoder.Clear();
    m_walker.MoveTo(start.offsetBytes);
    for (std::int64_t left = start.prerollFrames; left > 0 && m_walker.Next(); --left) {
        if (left > FrameIndex::kOverlapFrames) {
            m_decoder.FillReservoir(m_walker.Bytes(), m_walker.Header());
        } else {
            m_decoder.Decode(m_walker.Bytes(), m_walker.Header().sizeBytes, m_dropped.data());
        }
    }
}

void BlockDecoder::DecodeFrame(std::int16_t* samples) {
    if (m_walker.Next()) {
        m_decoder.Decode(m_walker.Bytes(), m_walker.Header().sizeBytes, samples);
    } else {
        std::fill_n(samples, SamplesPerFrame(), std::int16_t{0});
    }
}
