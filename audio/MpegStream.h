#pragma once

#include "audio/FileWindow.h"
#include "audio/FrameHeader.h"

#include <cstdint>
#include <optional>

/// Where the MPEG audio of a file lies, and what every frame of it has in common.
struct MpegStream {
    FrameHeader first;           ///< the first frame's, a VBR header frame included
    std::int64_t beginBytes = 0; ///< offset of the first frame that is decoded
    std::int64_t endBytes = 0;   ///< offset of the trailing tags, or the file's size
};

/// Finds the audio: leaves out the tags at both ends, finds the first frame and steps over it when
/// it is a Xing, Info or VBRI header.
/// @return nothing when no frame begins within bitstream::kSearchBytes after the leading tags
[[nodiscard]] std::optional<MpegStream> FindMpegStream(FileWindow& window);

/// The header at an offset, if a frame of the stream begins there; it may be cut short.
[[nodiscard]] std::optional<FrameHeader> HeaderAt(FileWindow& window, const MpegStream& stream,
                                                  std::int64_t offset);

/// True when the frame is followed at once by another header of the stream, or by the stream's end
/// (less than a header may be left of a file that was cut short).
[[nodiscard]] bool IsFollowed(FileWindow& window, const MpegStream& stream, std::int64_t offset,
                              const FrameHeader& header);
