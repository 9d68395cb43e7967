#include "audio/bass.h"
#include "engine/Klipra.h"
#include "engine/OpenStream.h"
#include "engine/QuietStretches.h"

#include <algorithm>
#include <limits>

namespace {

constexpr float kBlockSeconds = 0.02F;

/// One 20 ms block of a stream.
struct Block {
    QWORD position = 0; // where it begins
    float levels[2] = {};

    bool IsQuiet(float threshold) const { return levels[0] < threshold && levels[1] < threshold; }
};

/// Reads a file in blocks, on a stream of its own.
class BlockReader {
public:
    explicit BlockReader(const std::string& path) : m_stream(OpenDecodingStream(path)) {}
    BlockReader(const BlockReader&) = delete;
    BlockReader& operator=(const BlockReader&) = delete;
    ~BlockReader() { BASS_StreamFree(m_stream); }

    /// @return false when the stream ended before or within the block
    bool Read(Block& block) const {
        block.position = BASS_ChannelGetPosition(m_stream, BASS_POS_BYTE);
        return BASS_ChannelGetLevelEx(m_stream, block.levels, kBlockSeconds, BASS_LEVEL_STEREO) !=
                   FALSE &&
               BASS_ChannelIsActive(m_stream) != BASS_ACTIVE_STOPPED;
    }

private:
    HSTREAM m_stream;
};

int RequiredBlocks(float thresholdSeconds) {
    constexpr int kMost = std::numeric_limits<int>::max();
    const float blocks = std::max(thresholdSeconds / kBlockSeconds, 1.0F); // not a number stays so
    return blocks < static_cast<float>(kMost) ? static_cast<int>(blocks) : kMost;
}

} // namespace

int Klipra::SearchSceanChange() {
    PlayStop();
    sceneChangePositions.clear();
    m_searchPosition = 0;
    if (const HistoryItem* const item = FindCurrentHistoryItem(); item != nullptr) {
        const BlockReader reader(item->path);
        QuietStretches stretches(RequiredBlocks(thresholdTime), sceneChangePositions);
        for (Block block; reader.Read(block);) {
            m_searchPosition.store(block.position, std::memory_order_relaxed);
            if (block.IsQuiet(thresholdLevel)) {
                stretches.AddQuietBlock(block.position);
            } else {
                stretches.AddLoudBlock(block.position);
            }
        }
        stretches.Finish();
    }
    if (!sceneChangePositions.empty()) {
        SetCurrentPosition(sceneChangePositions.front());
    }
    return static_cast<int>(sceneChangePositions.size());
}
