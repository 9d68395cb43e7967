#pragma once

#include "audio/Decoder.h"
#include "audio/FrameIndex.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

/// An opened MPEG audio file and the index of its frames; shared by those that decode it.
struct Mp3File {
    /// @return nothing when the file holds no MPEG audio
    [[nodiscard]] static std::optional<Mp3File> Open(const std::shared_ptr<const File>& file);

    AudioFormat Format() const;
    /// How many sample frames a block of the index decodes to; the last one may have fewer.
    std::int64_t BlockSampleFrames() const;

    /// The file's state and the index as a block of numbers.
    std::vector<std::int64_t> SeekInfo() const;

    std::shared_ptr<const File> file;
    std::shared_ptr<const FrameIndex> index;
};
