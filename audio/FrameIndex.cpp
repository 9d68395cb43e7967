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

    /// What has to be decoded before the frame that comes after the ones added.
    FrameIndex::Block Preroll(const FrameHeader& header, std::int64_t nextOffsetBytes) const {
        // The hybrid filterbank overlaps by a granule, in MPEG 2 a whole frame, and the synthesis
        // filterbank reaches back further by less than two Layer I frames: two frames must decode
        // rightly, and the oldest of them may draw all of the bit reservoir from those before.
        constexpr std::int64_t kOverlapFrames = 2;
        constexpr std::int64_t kPhaseFrames = 8;
        const std::int64_t available = std::min(m_count, kCapacity - kPhaseFrames);
        const std::uint32_t reservoirBytes =
            header.layer != 3 ? 0 : (header.lowSamplingRate ? 255 : 511);
        std::int64_t frames = kOverlapFrames;
        std::uint32_t filledBytes = 0;
        while (frames < available && filledBytes < reservoirBytes) {
            filledBytes += Back(++frames).mainDataBytes;
        }
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
    RecentFrames recent;
    FrameWalker walker(window, stream);
    while (walker.Next()) {
        if (index.m_frameCount % kBlockFrames == 0) {
            index.m_blocks.push_back(recent.Preroll(stream.first, walker.OffsetBytes()));
        }
        recent.Add(walker.OffsetBytes(), walker.Header().MainDataBytes());
        ++index.m_frameCount;
    }
    return index;
}

std::int64_t FrameIndex::FramesOfBlock(std::int64_t block) const {
    return std::min(kBlockFrames, m_frameCount - block * kBlockFrames);
}
