#pragma once

#include "audio/MpegStream.h"
#include "audio/ReadFailures.h"
#include "audio/SoundBlocks.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

/// Where to begin decoding for any place of an MPEG stream.
///
/// The frames are grouped in blocks, and decoding always begins at the beginning of a block, from a
/// cleared decoder that is first led through the frames before it on which the block depends. What
/// a block decodes to is therefore the same whoever decodes it, whatever he decoded before, even
/// where frames are damaged. Where none is, decoding may begin inside a block too.
///
/// Immutable once built, but for what is learnt of its blocks. Any thread.
class FrameIndex {
public:
    /// After so many frames the synthesis filterbank's buffer stands as it did before. Who has led
    /// the decoder through as many frames, but for multiples of it, as an uninterrupted decode
    /// would have even gets its roundings.
    static constexpr std::int64_t kPhaseFrames = 8;
    static constexpr std::int64_t kBlockFrames = 64 * kPhaseFrames;

    /// The hybrid filterbank overlaps by a granule, in MPEG 2 a whole frame, and the synthesis
    /// filterbank reaches back by less than two Layer I frames.
    static constexpr std::int64_t kOverlapFrames = 2;

    /// Where to begin reading for one block.
    struct Block {
        std::int64_t offsetBytes; ///< of the first frame to lead the decoder through
        std::int64_t
            prerollFrames; ///< how many of those come before the block's own: the last
                           ///< kOverlapFrames for their sound, the others for the reservoir
    };

    /// Reads the stream's frame headers once from beginning to end, stepping over what cannot be
    /// read.
    [[nodiscard]] static FrameIndex Build(FileWindow& window, const MpegStream& stream);

    const MpegStream& Stream() const { return m_stream; }
    std::int64_t FrameCount() const { return m_frameCount; }
    const std::vector<Block>& Blocks() const { return m_blocks; }
    /// How many frames a block holds; the last one may hold fewer.
    std::int64_t FramesOfBlock(std::int64_t block) const;

    SoundBlocks& Sound() const { return *m_sound; }

    /// Where frames are missing because they could not be read.
    const std::optional<ReadFailure>& Failure() const { return m_failure; }

private:
    explicit FrameIndex(const MpegStream& stream) : m_stream(stream) {}
    void NoteError(const std::optional<ReadError>& error, std::int64_t frame);

    MpegStream m_stream;
    std::int64_t m_frameCount = 0;
    std::vector<Block> m_blocks;
    std::unique_ptr<SoundBlocks> m_sound;
    std::optional<ReadFailure> m_failure;
};
