#pragma once

#include "audio/FrameDecoder.h"
#include "audio/FrameIndex.h"
#include "audio/FrameWalker.h"
#include "audio/SoundnessCheck.h"

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

    /// Gets ready to decode a frame in the middle of a sound block, through no more frames than it
    /// takes to make the same of it.
    /// @return false when that cannot be, and nothing has changed
    [[nodiscard]] bool BeginNear(std::int64_t frame);

    /// Decodes the block's next frame; silence where the file no longer holds it. What could not be
    /// read or decoded is reported to the file; the block is then silent to its end, so that what
    /// comes after it stays in its place.
    /// @param samples  SamplesPerFrame() of them
    void DecodeFrame(std::int16_t* samples);

    std::size_t SamplesPerFrame() const { return m_decoder.SamplesPerFrame(); }

private:
    /// Frames [first, end) of a block, of which those before `decoded` are there for what they
    /// leave in the reservoir only.
    struct Lead {
        std::int64_t first;
        std::int64_t decoded;
        std::int64_t end;
    };
    struct Place {
        std::int64_t offsetBytes;
        std::uint32_t mainDataBytes;
    };

    [[nodiscard]] bool MapBlock(std::int64_t block);
    std::vector<Lead> PlanLeads(std::int64_t frame, const SoundBlocks::Doubts& doubts);
    std::uint32_t MainDataBegin(std::int64_t frame);
    std::int64_t FillingFrom(std::int64_t frame, std::uint32_t bytes) const;
    void LeadThrough(std::int64_t offsetBytes, std::int64_t filling, std::int64_t decoded);
    void ReportUnless(bool isDecoded);
    [[nodiscard]] bool DecodeCurrent(std::int16_t* samples);
    void NoteSoundness();
    [[nodiscard]] bool Step();
    void Report(const ReadError& cause) const;

    const std::shared_ptr<const File> m_file;
    std::shared_ptr<const FrameIndex> m_index;
    FileWindow m_window;
    FrameWalker m_walker;
    FrameDecoder m_decoder;
    std::int64_t m_frame = 0;            // that is decoded next
    bool m_isLost = false;               // the walk has lost count of the frames
    SoundnessCheck m_check;              // of the block that is decoded from its beginning
    SoundBlocks::Doubts m_doubts;        // in that block
    std::int64_t m_mappedBlock = -1;     // whose frames' places are known
    std::vector<Place> m_places;         // of the mapped block's frames
    std::vector<std::int16_t> m_dropped; // a frame that only leads the decoder up to a block
};
