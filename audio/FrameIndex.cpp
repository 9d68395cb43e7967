#include "audio/FrameIndex.h"

#include "audio/FrameWalker.h"

#include <algorithm>
#include <array>

namespace {

/// The frames before the current one, as far back as a block can depend on them.
class RecentFrames {
public:
    void Add(std::int64_t offsetBytes, std::uint32_t mainDataBytes) {
        m_frames[static_cast<std::size_t>(m_count++ % kCapacity)] = {offsetBytes, mainDataBytes};
    }

    /// What the decoder has to be led through before the frame that comes after the ones added.
    FrameIndex::Block Preroll(const FrameHeader& header, std::int64_t nextOffsetBytes) const {
        const std::int64_t available = std::min(m_count, kCapacity - FrameIndex::kPhaseFrames);
        std::int64_t frames = FrameIndex::kOverlapFrames;
        std::uint32_t filledBytes = 0;
        while (frames < available && filledBytes < header.MaxReservoirBytes()) {
            filledBytes += Back(++frames).mainDataBytes;
        }
        constexpr std::int64_t kPhaseFrames = FrameIndex::kPhaseFrames;
        frames = std::min((frames + kPhaseFrames - 1) / kPhaseFrames * kPhaseFrames, m_count);
        return {frames > 0 ? Back(frames).offsetBytes : nextOffsetBytes, frames};
    }

private:
    struct Frame {
        std::int64_t offsetBytes;
        std::uint32_t mainDataBytes;
    };

    // Small frames fill the reservoir by a single byte each at worst.
    static constexpr std::int64_t kCapacity = 512;

    const Frame& Back(std::int64_t frames) const {
        return m_frames[static_cast<std::size_t>((m_count - frames) % kCapacity)];
    }

    std::array<Frame, kCapacity> m_frames{};
    std::int64_t m_count = 0;
};

} // namespace

FrameIndex FrameIndex::Build(FileWindow& window, const MpegStream& stream) {
    FrameIndex index(stream);
    const auto errorInTags = window.Error();
    window.ForgetError();
    RecentFrames recent;
    FrameWalker walker(window, stream);
    while (walker.Next()) {
        index.NoteError(window.Error(), index.m_frameCount);
        if (index.m_frameCount % kBlockFrames == 0) {
            index.m_blocks.push_back(recent.Preroll(stream.first, walker.OffsetBytes()));
        }
        recent.Add(walker.OffsetBytes(), walker.Header().MainDataBytes());
        ++index.m_frameCount;
    }
    index.NoteError(window.Error(), index.m_frameCount);
    const bool isInFront = errorInTags && errorInTags->offsetBytes < stream.beginBytes;
    index.NoteError(errorInTags, isInFront ? 0 : index.m_frameCount);
    index.m_sound = std::make_unique<SoundBlocks>(index.m_blocks.size());
    return index;
}

void FrameIndex::NoteError(const std::optional<ReadError>& error, std::int64_t frame) {
    if (error && !m_failure) {
        m_failure = ReadFailure{frame * m_stream.first.sampleFrames, *error};
    }
}

std::int64_t FrameIndex::FramesOfBlock(std::int64_t block) const {
    return std::min(kBlockFrames, m_frameCount - block * kBlockFrames);
}
