#include "audio/Mp3File.h"

#include "audio/FrameIndexCache.h"

#include <utility>

std::optional<Mp3File> Mp3File::Open(const std::shared_ptr<const File>& file) {
    auto index = FrameIndexCache::Shared().IndexOf(file);
    if (!index) {
        return std::nullopt;
    }
    return Mp3File{file, std::move(index)};
}

AudioFormat Mp3File::Format() const {
    const FrameHeader& first = index->Stream().first;
    return {first.rateHz, first.channels, index->FrameCount() * first.sampleFrames};
}

std::int64_t Mp3File::BlockSampleFrames() const {
    return FrameIndex::kBlockFrames * index->Stream().first.sampleFrames;
}

std::vector<std::int64_t> Mp3File::SeekInfo() const {
    const FileState& state = file->State();
    std::vector<std::int64_t> info{state.device,
                                   state.inode,
                                   state.sizeBytes,
                                   state.modifiedNanoseconds,
                                   state.changedNanoseconds,
                                   index->FrameCount()};
    info.reserve(info.size() + 2 * index->Blocks().size());
    for (const FrameIndex::Block& block : index->Blocks()) {
        info.push_back(block.offsetBytes);
        info.push_back(block.prerollFrames);
    }
    return info;
}
