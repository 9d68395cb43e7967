#include "audio/BlockDecoder.h"

#include <algorithm>
#include <cerrno>
#include <utility>

BlockDecoder::BlockDecoder(std::shared_ptr<const File> file,
                           std::shared_ptr<const FrameIndex> index)
    : m_file(std::move(file)), m_index(std::move(index)), m_window(m_file),
      m_walker(m_window, m_index->Stream()), m_decoder(m_index->Stream().first),
      m_dropped(m_decoder.SamplesPerFrame()) {
}

void BlockDecoder::Begin(std::int64_t block) {
    const FrameIndex::Block& start = m_index->Blocks()[static_cast<std::size_t>(block)];
    m_frame = block * FrameIndex::kBlockFrames;
    m_isLost = false;
    m_window.ForgetError();
    m_decoder.Clear();
    m_walker.MoveTo(start.offsetBytes);
    for (std::int64_t left = start.prerollFrames; left > 0 && Step(); --left) {
        const std::uint8_t* frame = m_walker.Bytes();
        if (left > FrameIndex::kOverlapFrames) {
            m_decoder.FillReservoir(frame, m_walker.Header());
        } else {
            m_decoder.Decode(frame, m_walker.Header().sizeBytes, m_dropped.data());
        }
    }
}

void BlockDecoder::DecodeFrame(std::int16_t* samples) {
    if (!Step()) {
        std::fill_n(samples, SamplesPerFrame(), std::int16_t{0});
    } else if (!m_decoder.Decode(m_walker.Bytes(), m_walker.Header().sizeBytes, samples)) {
        Report({m_walker.OffsetBytes(), ENOMEM});
    }
    if (m_window.Error()) {
        Report(*m_window.Error());
    }
    ++m_frame;
}

/// Steps to the next frame.
/// @return false when there is none, or none that can be told
bool BlockDecoder::Step() {
    const bool isThere = !m_isLost && m_walker.Next();
    // The walk leaves out what it cannot read. The index has to have done so too.
    m_isLost = m_isLost || (m_window.Error() && !m_index->Failure());
    return isThere && !m_isLost;
}

void BlockDecoder::Report(const ReadError& cause) const {
    m_file->Failures().Report({m_frame * m_index->Stream().first.sampleFrames, cause});
}
