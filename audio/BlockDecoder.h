#pragma once

#include "audio/FrameDecoder.h"
#include "audio/FrameIndex.h"
#include "audio/FrameWalker.h"

#include <cstdint>
#include <memory>
#include <vector>

/// Decodes the blocks of an MPEG stream (see FrameIndex), each frame by frame. One thread at a
/// time.
class BlockDecoder {
public:
    BlockDecoder(std::shared_ptr<const File> file, std::shared_ptr<const FrameIndex> index);
    ~BlockDecoder() = default;
    BlockDecoder(const BlockDecoder&) = delete; // the walker refers to the window
    BlockDecoder& operator=(const BlockDecoder&) = delete;

    /// Gets ready to decode the first frame of a block.
    void Begin(std::int64_t block);

    /// Decodes the block's next frame; silence where the file no longer holds it.
    /// @param samples  SamplesPerFrame() of them
    void DecodeFrame(std::int16_t* samples);

    std::size_t SamplesPerFrame() const { return m_decoder.SamplesPerFrame(); }

private:
    std::shared_ptr<const FrameIndex> m_index;
    FileWindow m_window;
    FrameWalker m_walker;
    FrameDecoder m_decoder;
    std::vector<std::int16_t> m_dropped; // a frame that only leads the decoder up to a block
};
