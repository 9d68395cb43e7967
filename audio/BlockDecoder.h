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

    /// Decodes the block's next frame; silence where the file no longer holds it. What could not be
    /// read or decoded is reported to the file; the block is then silent to its end, so that what
    /// comes after it stays in its place.
    /// @param samples  SamplesPerFrame() of them
    void DecodeFrame(std::int16_t* samples);

    std::size_t SamplesPerFrame() const { return m_decoder.SamplesPerFrame(); }

private:
    bool Step();
    void Report(const ReadError& cause) const;

    const std::shared_ptr<const File> m_file;
    std::shared_ptr<const FrameIndex> m_index;
    FileWindow m_window;
    FrameWalker m_walker;
    FrameDecoder m_decoder;
    std::int64_t m_frame = 0;            // that is decoded next
    bool m_isLost = false;               // the walk has lost count of the frames
    std::vector<std::int16_t> m_dropped; // a frame that only leads the decoder up to a block
};
